// From a member to its row: types, slot of the table and call by name, all read off the pointer to
// the member.
#pragma once

#include <cstddef>
#include <span>
#include <tuple>
#include <type_traits>
#include <utility>

#include "quorl/frame/internal/component_object.hpp"
#include "quorl/frame/internal/guarded.hpp"
#include "quorl/frame/internal/marshal.hpp"
#include "quorl/frame/internal/member_row.hpp"

namespace quorl::frame {

/// How a member is reached: each gives `Class`, `Result`, `Parameters` (a tuple) and `Invoke`.
template <auto Member>
struct Access;

template <class R, class... P, R (*Member)(P...)>
struct Access<Member> {
  using Result = R;
  using Parameters = std::tuple<P...>;
  template <class Class>
  static R Invoke(Class&, P... arguments) {
    return Member(std::forward<P>(arguments)...);
  }
};

template <class C, class R, class... P, R (C::*Member)(P...)>
struct Access<Member> {
  using Result = R;
  using Parameters = std::tuple<P...>;
  static R Invoke(C& object, P... arguments) {
    return (object.*Member)(std::forward<P>(arguments)...);
  }
};

template <class C, class R, class... P, R (C::*Member)(P...) const>
struct Access<Member> {
  using Result = R;
  using Parameters = std::tuple<P...>;
  static R Invoke(const C& object, P... arguments) {
    return (object.*Member)(std::forward<P>(arguments)...);
  }
};

/// The pointer itself, without the noexcept that its type may carry.
template <class R, class... P>
constexpr auto Plain(R (*member)(P...)) {
  return member;
}
template <class C, class R, class... P>
constexpr auto Plain(R (C::*member)(P...)) {
  return member;
}
template <class C, class R, class... P>
constexpr auto Plain(R (C::*member)(P...) const) {
  return member;
}

/// A public data member, read and written.
template <auto Field>
struct FieldRead;
template <auto Field>
struct FieldWrite;

template <class C, class T, T C::*Field>
struct FieldRead<Field> {
  using Result = T;
  using Parameters = std::tuple<>;
  static const T& Invoke(const C& object) { return object.*Field; }
};

template <class C, class T, T C::*Field>
struct FieldWrite<Field> {
  using Result = void;
  using Parameters = std::tuple<T>;
  template <class Value>
  static void Invoke(C& object, const Value& value) {
    object.*Field = T(value);
  }
};

/// Holders of arguments, made strictly from left to right, so that the first bad one is the one
/// that is reported.
template <class... Holders>
class InOrder;

template <>
class InOrder<> {
 public:
  template <class Function, class... Before>
  decltype(auto) Apply(Function&& function, Before&... before) {
    return function(before...);
  }
};

template <class Head, class... Tail>
class InOrder<Head, Tail...> {
 public:
  template <class In, class... Rest>
  explicit InOrder(In& in, Rest&... rest) : head_(in), tail_(rest...) {}

  template <class Function, class... Before>
  decltype(auto) Apply(Function&& function, Before&... before) {
    return tail_.Apply(function, before..., head_);
  }

 private:
  Head head_;
  InOrder<Tail...> tail_;
};

/// The result of a member as a Variant.
template <class Result>
Variant AsVariant(Result&& result) {
  if constexpr (std::is_enum_v<std::remove_cvref_t<Result>>) {
    return static_cast<Int32>(result);
  } else {
    return std::forward<Result>(result);
  }
}

/// The call by name of a member of `Class` reached by `Way`.
template <class Class, class Way, class... P>
Variant CallByName(void* instance, std::span<Variant> arguments) {
  return [&]<std::size_t... I>(std::index_sequence<I...>)->Variant {
    InOrder<typename Wire<P>::FromVariant...> held(arguments[I]...);
    return held.Apply([&](auto&... values) -> Variant {
      auto& object = *static_cast<Class*>(instance);
      if constexpr (std::is_void_v<typename Way::Result>) {
        Way::Invoke(object, values...);
        return Empty;
      } else {
        return AsVariant(Way::Invoke(object, values...));
      }
    });
  }
  (std::index_sequence_for<P...>{});
}

/// The slot of a member of `Class` reached by `Way`.
template <class Class, class Way, class Result, class... P>
struct SlotOf {
  static HRESULT Call(QuorlDispatch* self, typename Wire<P>::In... in,
                      typename Wire<Result>::Out* result) noexcept {
    if (result == nullptr) return E_POINTER;
    const typename Wire<Result>::Former former(result);
    return Guarded([&] {
      const KeptAlive kept(self);
      InOrder<typename Wire<P>::FromSlot...> held(in...);
      Wire<Result>::Write(result, held.Apply([&](auto&... values) -> decltype(auto) {
        return Way::Invoke(InstanceOf<Class>::In(self), values...);
      }));
    });
  }
};

template <class Class, class Way, class... P>
struct SlotOf<Class, Way, void, P...> {
  static HRESULT Call(QuorlDispatch* self, typename Wire<P>::In... in) noexcept {
    if ((false || ... || IsAbsent(in))) return E_POINTER;
    return Guarded([&] {
      const KeptAlive kept(self);
      InOrder<typename Wire<P>::FromSlot...> held(in...);
      held.Apply([&](auto&... values) { Way::Invoke(InstanceOf<Class>::In(self), values...); });
    });
  }
};

/// A row that remembers its slot's type.
template <class Class, class Way, class Parameters = typename Way::Parameters>
struct TypedRow;

template <class Class, class Way, class... P>
struct TypedRow<Class, Way, std::tuple<P...>> : MemberRow {
  static constexpr auto kSlot = &SlotOf<Class, Way, typename Way::Result, P...>::Call;

  constexpr TypedRow(StringView its_name, MemberKind its_kind, FewOf<Argument> its_arguments) {
    name = its_name;
    kind = its_kind;
    arguments = its_arguments;
    types = {{Wire<P>::kType...}, sizeof...(P)};
    if constexpr (!std::is_void_v<typename Way::Result>) result = Wire<typename Way::Result>::kType;
    call = &CallByName<Class, Way, P...>;
    if (arguments.count != types.count) throw "the row names another number of arguments";
  }

  /// The place in the description's listing, where it is not the place in the table.
  constexpr TypedRow Listed(int place) const {
    TypedRow row = *this;
    row.listing = place;
    return row;
  }
  constexpr TypedRow Helped(StringView text) const {
    TypedRow row = *this;
    row.help = text;
    return row;
  }
};

template <class... Arguments>
constexpr FewOf<Argument> ArgumentList(const Arguments&... arguments) {
  return {{arguments...}, sizeof...(Arguments)};
}

/// Makes the rows of one class.
template <class Class>
struct RowsOf {
  template <auto Member, class... Arguments>
  static constexpr auto Method(StringView name, const Arguments&... arguments) {
    return TypedRow<Class, Access<Plain(Member)>>(name, MemberKind::kMethod,
                                                  ArgumentList(arguments...));
  }
  /// A property's get, without indices or with them.
  template <class Result, Result (Class::*Member)() const>
  static constexpr auto Get(StringView name) {
    return TypedRow<Class, Access<Plain(Member)>>(name, MemberKind::kGet, {});
  }
  template <auto Member, class... Arguments>
  static constexpr auto IndexedGet(StringView name, const Arguments&... arguments) {
    return TypedRow<Class, Access<Plain(Member)>>(name, MemberKind::kGet,
                                                  ArgumentList(arguments...));
  }
  template <class Value, void (Class::*Member)(Value)>
  static constexpr auto Put(StringView name, StringView argument) {
    return TypedRow<Class, Access<Plain(Member)>>(name, MemberKind::kPut,
                                                  ArgumentList(Required(argument)));
  }
  /// A public data member: its get and its put.
  template <auto Field>
  static constexpr auto Property(StringView name, StringView argument) {
    return std::tuple(TypedRow<Class, FieldRead<Field>>(name, MemberKind::kGet, {}),
                      TypedRow<Class, FieldWrite<Field>>(name, MemberKind::kPut,
                                                         ArgumentList(Required(argument))));
  }
};

}  // namespace quorl::frame
