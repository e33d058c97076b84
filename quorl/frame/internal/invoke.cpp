#include "quorl/frame/internal/invoke.hpp"

#include <algorithm>
#include <array>

#include "quorl/abi/internal/errors.hpp"
#include "quorl/abi/internal/guarded.hpp"
#include "quorl/abi/internal/values.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/text_case.hpp"

namespace quorl::frame {

namespace {

bool Answers(const MemberRow& member, std::uint16_t flags) {
  switch (member.kind) {
    case MemberKind::kMethod:
      return (flags & DISPATCH_METHOD) != 0;
    case MemberKind::kGet:
      return (flags & DISPATCH_PROPERTYGET) != 0;
    case MemberKind::kPut:
      return (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  }
  return false;
}

// The rows of an identifier, which is the place, from 1, of the first: none, a member's only one,
// or a property's get and put.
std::span<const MemberRow> RowsOf(const ClassRow& row, std::int32_t id) {
  if (id < 1 || static_cast<std::size_t>(id) > row.members.size()) return {};
  const auto rows = row.members.subspan(static_cast<std::size_t>(id) - 1);
  if (rows[0].identifier != id) return {};
  const bool is_pair = rows.size() > 1 && rows[1].identifier == id;
  return rows.first(is_pair ? 2 : 1);
}

// Where a get and a put both answer, the number of arguments tells which is meant.
const MemberRow* FindMember(const ClassRow& row, std::int32_t id, std::uint16_t flags,
                            const DISPPARAMS* parameters) {
  const std::uint32_t count = parameters == nullptr ? 0 : parameters->argument_count;
  const MemberRow* found = nullptr;
  for (const MemberRow& member : RowsOf(row, id)) {
    if (!Answers(member, flags)) continue;
    if (found == nullptr || member.arguments.count == count) found = &member;
  }
  return found;
}

bool HasNullArray(const DISPPARAMS& parameters) {
  return (parameters.argument_count != 0 && parameters.arguments == nullptr) ||
         (parameters.named_count != 0 && parameters.named == nullptr);
}

// The position of the argument that a named identifier means; beyond the last if there is none.
std::size_t PositionOf(const MemberRow& member, std::int32_t named) {
  const bool is_put_value = member.kind == MemberKind::kPut && named == QUORL_PUT_VALUE;
  return is_put_value ? member.arguments.count - 1 : static_cast<std::uint32_t>(named);
}

bool MustBeGiven(const MemberRow& member, std::size_t position) {
  return !member.arguments.elements[position].IsOptional();
}

// Finds what is passed for each argument. `wrong` becomes the element of the caller's array that
// has no place.
HRESULT PlaceArguments(const MemberRow& member, const DISPPARAMS& parameters,
                       std::span<GivenArgument> arguments, std::uint32_t& wrong) {
  if (parameters.argument_count > arguments.size() ||
      parameters.named_count > parameters.argument_count) {
    return DISP_E_BADPARAMCOUNT;
  }
  const auto place = [&](std::size_t position, std::uint32_t i) {
    const bool is_free = position < arguments.size() && arguments[position].passed == nullptr;
    if (is_free) arguments[position].passed = &parameters.arguments[i];
    if (!is_free) wrong = i;
    return is_free;
  };
  for (std::uint32_t i = 0; i < parameters.named_count; ++i) {
    if (!place(PositionOf(member, parameters.named[i]), i)) return DISP_E_PARAMNOTFOUND;
  }
  std::size_t position = 0;
  for (std::uint32_t i = parameters.argument_count; i-- > parameters.named_count; ++position) {
    if (!place(position, i)) return DISP_E_PARAMNOTFOUND;
  }
  for (position = 0; position < arguments.size(); ++position) {
    if (arguments[position].passed == nullptr && MustBeGiven(member, position)) {
      return DISP_E_PARAMNOTOPTIONAL;
    }
  }
  return S_OK;
}

// What is given as Missing counts as left out, but for a required Variant, which takes it as it is.
bool PassesMissing(const MemberRow& member, std::size_t position) {
  return MustBeGiven(member, position) &&
         member.types.elements[position].type == VariantType::kVariant;
}

// Reads into `values` what cannot be lent.
HRESULT ReadArguments(const MemberRow& member, std::span<GivenArgument> arguments,
                      std::span<Variant> values) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i].CanBeLent()) continue;
    Variant& value = values[i];
    value = arguments[i].passed == nullptr ? Missing : abi::FromBinary(*arguments[i].passed);
    arguments[i].read = &value;
    if (!value.IsMissing() || PassesMissing(member, i)) continue;
    if (MustBeGiven(member, i)) return DISP_E_PARAMNOTOPTIONAL;
    value = DefaultOf(member.arguments.elements[i], member.types.elements[i]);
  }
  return S_OK;
}

void WriteArgumentsBack(const MemberRow& member, std::span<const GivenArgument> arguments) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const auto& [passed, read] = arguments[i];
    if (!member.types.elements[i].by_reference || passed == nullptr || read == nullptr) continue;
    abi::WriteBack(*passed, *read);
  }
}

HRESULT Perform(QuorlDispatch* self, const MemberRow& member, std::span<GivenArgument> arguments,
                VARIANT* result) {
  const auto is_lent = [](const GivenArgument& argument) { return argument.CanBeLent(); };
  if (std::ranges::all_of(arguments, is_lent)) {
    const KeptAlive kept(self, !member.is_static);
    member.call(self, arguments, result);
    return S_OK;
  }
  const auto may_hold = [](const GivenArgument& argument) { return argument.MayHoldObject(); };
  const KeptAlive kept(self, !member.is_static || std::ranges::any_of(arguments, may_hold));
  std::array<Variant, kMostArguments> values;
  const HRESULT read = ReadArguments(member, arguments, values);
  if (read != S_OK) return read;
  member.call(self, arguments, result);
  WriteArgumentsBack(member, arguments);
  return S_OK;
}

// The position of an argument of the member with that identifier, in its get or its put; -1 if
// there is none.
std::int32_t ArgumentNamed(const ClassRow& row, std::int32_t id, StringView argument) {
  for (const MemberRow& member : RowsOf(row, id)) {
    const auto arguments = member.arguments.Span();
    const auto found = std::ranges::find_if(
        arguments, [&](const Argument& known) { return EqualsIgnoringCase(known.name, argument); });
    if (found != arguments.end()) return static_cast<std::int32_t>(found - arguments.begin());
  }
  return -1;
}

}  // namespace

Variant DefaultOf(const Argument& argument, const TypeRow& type) {
  switch (argument.otherwise.kind) {
    case DefaultValue::Kind::kNumber:
      return argument.otherwise.number;
    case DefaultValue::Kind::kText:
      return argument.otherwise.text;
    default:
      break;
  }
  if (type.type == VariantType::kVariant) return Missing;
  if (type.type == VariantType::kObject) return Object();
  return ConvertTo(Empty, type.type);
}

HRESULT IdentifiersOf(const ClassRow& row, const char16_t** names, std::uint32_t count,
                      std::int32_t* ids) noexcept {
  if (count == 0) return S_OK;
  if (names == nullptr || ids == nullptr) return E_POINTER;
  if (std::any_of(names, names + count, [](const char16_t* name) { return name == nullptr; })) {
    return E_POINTER;
  }
  const MemberRow* member = FindByName(row, names[0]);
  HRESULT code = member == nullptr ? DISP_E_UNKNOWNNAME : S_OK;
  ids[0] = member == nullptr ? -1 : member->identifier;
  for (std::uint32_t i = 1; i < count; ++i) {
    ids[i] = ArgumentNamed(row, ids[0], names[i]);
    if (ids[i] < 0) code = DISP_E_UNKNOWNNAME;
  }
  return code;
}

HRESULT Invoke(QuorlDispatch* self, std::int32_t id, const GUID*, std::uint32_t,
               std::uint16_t flags, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* info,
               std::uint32_t* wrong_argument) noexcept {
  const KeptAlive kept_until_freed(self, result != nullptr && abi::MayHoldObject(result->vt));
  const abi::ClearedResult cleared(result);
  const MemberRow* member = FindMember(At(self).row, id, flags, parameters);
  if (member == nullptr) return DISP_E_MEMBERNOTFOUND;
  if (parameters == nullptr || HasNullArray(*parameters)) return E_POINTER;
  std::array<GivenArgument, kMostArguments> storage;
  const std::span<GivenArgument> arguments(storage.data(), member->arguments.count);
  std::uint32_t wrong = 0;
  const HRESULT placed = PlaceArguments(*member, *parameters, arguments, wrong);
  if (placed != S_OK) {
    if (wrong_argument != nullptr) *wrong_argument = wrong;
    return placed;
  }
  const HRESULT code = abi::Guarded([&] { return Perform(self, *member, arguments, result); },
                                    [&](const RaisedError& error) {
                                      if (info != nullptr) abi::FillRecord(error, *info);
                                      return DISP_E_EXCEPTION;
                                    });
  // Where an argument cannot be written back there is no result either.
  if (code != S_OK && result != nullptr) VariantClear(result);
  return code;
}

}  // namespace quorl::frame
