// From a member to its row: types, slot of the table and call by name, all read off the pointer to
// the member.
#pragma once

#include <cstddef>
#include <span>
#include <tuple>
#include <type_traits>
#include <utility>

#include "quorl/abi/internal/guarded.hpp"
#include "quorl/frame/internal/component_object.hpp"
#include "quorl/frame/internal/marshal.hpp"
#include "quorl/frame/internal/member_row.hpp"
#include "quorl/runtime/internal/within_memory.hpp"

namespace quorl::frame {

/// How a member is reached: each gives `Result`, `Parameters` (a tuple) and `Invoke`. The templates
/// below call such a type `Way`.
template <auto Member>
struct Access;

template <class R, class... P, bool kNoexcept, R (*Member)(P...) noexcept(kNoexcept)>
struct Access<Member> {
  static constexpr bool kIsStatic = true;
  using Result = R;
  using Parameters = std::tuple<P...>;
  template <class Class>
  static R Invoke(Class&, P... arguments) {
    return Member(std::forward<P>(arguments)...);
  }
};

template <class C, class R, class... P, bool kNoexcept, R (C::*Member)(P...) noexcept(kNoexcept)>
struct Access<Member> {
  static constexpr bool kIsStatic = false;
  using Result = R;
  using Parameters = std::tuple<P...>;
  static R Invoke(C& object, P... arguments) {
    return (object.*Member)(std::forward<P>(arguments)...);
  }
};

template <class C, class R, class... P, bool kNoexcept,
          R (C::*Member)(P...) const noexcept(kNoexcept)>
struct Access<Member> {
  static constexpr bool kIsStatic = false;
  using Result = R;
  using Parameters = std::tuple<P...>;
  static R Invoke(const C& object, P... arguments) {
    return (object.*Member)(std::forward<P>(arguments)...);
  }
};

/// A public data member, read and written.
template <auto Field>
struct FieldRead;
template <auto Field>
struct FieldWrite;

template <class C, class T, T C::*Field>
struct FieldRead<Field> {
  static constexpr bool kIsStatic = false;
  using Result = T;
  using Parameters = std::tuple<>;
  static const T& Invoke(const C& object) { return object.*Field; }
};

template <class C, class T, T C::*Field>
struct FieldWrite<Field> {
  static constexpr bool kIsStatic = false;
  using Result = void;
  using Parameters = std::tuple<T>;
  template <class Value>
  static void Invoke(C& object, const Value& value) {
    object.*Field = internal::WithinMemory([&] { return T(value); });
  }
};

/// Holders of arguments. Braces make them strictly from left to right, so that the first bad one is
/// the one that is reported.
template <std::size_t kPlace, class Holder>
struct Held {
  Holder holder;
};

template <class Places, class... Holders>
struct AllHeld;

template <std::size_t... kPlaces, class... Holders>
struct AllHeld<std::index_sequence<kPlaces...>, Holders...> : Held<kPlaces, Holders>... {
  template <class Function>
  decltype(auto) Apply(Function&& function) {
    return function(Held<kPlaces, Holders>::holder...);
  }
};

/// Puts the result of a member into the slot of a call by name, unless that is null.
template <class Result>
void GiveResult(const Result& result, VARIANT* out) {
  using Type = Marshal<Result>;
  if (out == nullptr) return;
  if constexpr (std::is_same_v<Result, Variant>) {
    Type::Write(out, result);
  } else {
    Type::Write(reinterpret_cast<typename Type::Out*>(&out->value), result);
    out->vt = static_cast<std::uint16_t>(Type::kType.type);
  }
}

/// The call by name of a member of `Class` reached by `Way`.
template <class Class, class Way, class... P>
void CallByName(QuorlDispatch* self, std::span<const GivenArgument> arguments, VARIANT* result) {
  [&]<std::size_t... I>(std::index_sequence<I...>) {
    AllHeld<std::index_sequence<I...>, typename Marshal<P>::FromGiven...> held{
        {typename Marshal<P>::FromGiven(arguments[I])}...};
    held.Apply([&](auto&... values) {
      auto& object = InstanceOf<Class>::In(self);
      if constexpr (std::is_void_v<typename Way::Result>) {
        Way::Invoke(object, values...);
      } else {
        GiveResult(Way::Invoke(object, values...), result);
      }
    });
  }
  (std::index_sequence_for<P...>{});
}

/// The slot of a member of `Class` reached by `Way`.
template <class Class, class Way, class Result, class... P>
struct SlotOf {
  static HRESULT Call(QuorlDispatch* self, typename Marshal<P>::In... in,
                      typename Marshal<Result>::Out* result) noexcept {
    if (result == nullptr) return E_POINTER;
    const KeptAlive kept(self,
                         !Way::kIsStatic || (MayHoldObject(*result) || ... || MayHoldObject(in)));
    const typename Marshal<Result>::Former former(result);
    return abi::GuardedSlot([&]() -> HRESULT {
      AllHeld<std::index_sequence_for<P...>, typename Marshal<P>::FromSlot...> held{
          {typename Marshal<P>::FromSlot(in)}...};
      Marshal<Result>::Write(result, held.Apply([&](auto&... values) -> decltype(auto) {
        return Way::Invoke(InstanceOf<Class>::In(self), values...);
      }));
      return S_OK;
    });
  }
};

template <class Class, class Way, class... P>
struct SlotOf<Class, Way, void, P...> {
  static HRESULT Call(QuorlDispatch* self, typename Marshal<P>::In... in) noexcept {
    if ((false || ... || IsAbsent(in))) return E_POINTER;
    const KeptAlive kept(self, !Way::kIsStatic || (false || ... || MayHoldObject(in)));
    return abi::GuardedSlot([&]() -> HRESULT {
      AllHeld<std::index_sequence_for<P...>, typename Marshal<P>::FromSlot...> held{
          {typename Marshal<P>::FromSlot(in)}...};
      held.Apply([&](auto&... values) { Way::Invoke(InstanceOf<Class>::In(self), values...); });
      return S_OK;
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
    types = {{Marshal<P>::kType...}, sizeof...(P)};
    if constexpr (!std::is_void_v<typename Way::Result>)
      result = Marshal<typename Way::Result>::kType;
    call = &CallByName<Class, Way, P...>;
    is_static = Way::kIsStatic;
    if (arguments.count != types.count) throw "the row names another number of arguments";
  }

  /// The place in the description's listing, where it is not the place in the table.
  constexpr TypedRow Listed(int place) const {
    TypedRow row = *this;
    row.listing = place;
    return row;
  }
  /// Another name for a put's argument.
  constexpr TypedRow Taking(StringView argument) const {
    TypedRow row = *this;
    row.arguments.elements[0].name = argument;
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
    return TypedRow<Class, Access<Member>>(name, MemberKind::kMethod, ArgumentList(arguments...));
  }
  /// A property's get, without indices or with them.
  template <class Result, Result (Class::*Member)() const>
  static constexpr auto Get(StringView name) {
    return TypedRow<Class, Access<Member>>(name, MemberKind::kGet, {});
  }
  template <auto Member, class... Arguments>
  static constexpr auto IndexedGet(StringView name, const Arguments&... arguments) {
    return TypedRow<Class, Access<Member>>(name, MemberKind::kGet, ArgumentList(arguments...));
  }
  template <class Value, void (Class::*Member)(Value)>
  static constexpr auto Put(StringView name, StringView argument) {
    return TypedRow<Class, Access<Member>>(name, MemberKind::kPut,
                                           ArgumentList(Required(argument)));
  }
  /// A public data member: its get and its put.
  template <auto Member>
  static constexpr auto Field(StringView name, StringView argument) {
    return std::tuple(TypedRow<Class, FieldRead<Member>>(name, MemberKind::kGet, {}),
                      TypedRow<Class, FieldWrite<Member>>(name, MemberKind::kPut,
                                                          ArgumentList(Required(argument))));
  }
};

}  // namespace quorl::frame
