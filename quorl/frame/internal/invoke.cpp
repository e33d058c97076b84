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

constexpr std::uint32_t kNotGiven = UINT32_MAX;

// For each argument of the member, its place in the caller's array.
struct Placing {
  std::array<std::uint32_t, kMostArguments> given;
  HRESULT code = S_OK;
  std::uint32_t wrong = 0;

  Placing() { given.fill(kNotGiven); }

  Placing& Fail(HRESULT failure, std::uint32_t argument = 0) {
    code = failure;
    wrong = argument;
    return *this;
  }
};

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

// An identifier is the place, from 1, of a member's first row; a property's second row follows.
// Where both answer, the number of arguments tells a get from a put.
const MemberRow* FindMember(const ClassRow& row, std::int32_t id, std::uint16_t flags,
                            const DISPPARAMS* parameters) {
  if (id < 1 || static_cast<std::size_t>(id) > row.members.size()) return nullptr;
  const auto rows = row.members.subspan(static_cast<std::size_t>(id) - 1);
  const std::uint32_t count = parameters == nullptr ? 0 : parameters->argument_count;
  const MemberRow* found = nullptr;
  for (const MemberRow& member : rows.first(std::min<std::size_t>(rows.size(), 2))) {
    if (IdentifierOf(row, member) != id || !Answers(member, flags)) continue;
    if (found == nullptr || member.arguments.count == count) found = &member;
  }
  return found;
}

bool HasNullArray(const DISPPARAMS& parameters) {
  return (parameters.argument_count != 0 && parameters.arguments == nullptr) ||
         (parameters.named_count != 0 && parameters.named == nullptr);
}

// The argument that a named identifier means; kNotGiven if there is none.
std::uint32_t PositionOf(const MemberRow& member, std::int32_t named) {
  const auto count = static_cast<std::int32_t>(member.arguments.count);
  if (member.kind == MemberKind::kPut && named == QUORL_PUT_VALUE) named = count - 1;
  return named >= 0 && named < count ? static_cast<std::uint32_t>(named) : kNotGiven;
}

bool MustBeGiven(const MemberRow& member, std::size_t position) {
  return !member.arguments.elements[position].IsOptional();
}

Placing PlaceArguments(const MemberRow& member, const DISPPARAMS& parameters) {
  Placing placing;
  if (parameters.argument_count > member.arguments.count ||
      parameters.named_count > parameters.argument_count) {
    return placing.Fail(DISP_E_BADPARAMCOUNT);
  }
  for (std::uint32_t i = 0; i < parameters.named_count; ++i) {
    const std::uint32_t position = PositionOf(member, parameters.named[i]);
    if (position == kNotGiven || placing.given[position] != kNotGiven) {
      return placing.Fail(DISP_E_PARAMNOTFOUND, i);
    }
    placing.given[position] = i;
  }
  std::uint32_t position = 0;
  for (std::uint32_t i = parameters.argument_count; i-- > parameters.named_count; ++position) {
    if (placing.given[position] != kNotGiven) return placing.Fail(DISP_E_PARAMNOTFOUND, i);
    placing.given[position] = i;
  }
  for (std::size_t i = 0; i < member.arguments.count; ++i) {
    const bool is_given = placing.given[i] != kNotGiven;
    if (!is_given && MustBeGiven(member, i)) return placing.Fail(DISP_E_PARAMNOTOPTIONAL);
  }
  return placing;
}

// What is given as Missing counts as left out, but for a required Variant, which takes it as it is.
bool PassesMissing(const MemberRow& member, std::size_t position) {
  return MustBeGiven(member, position) &&
         member.types.elements[position].type == VariantType::kVariant;
}

HRESULT ReadArguments(const MemberRow& member, const DISPPARAMS& parameters, const Placing& placing,
                      std::span<Variant> values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    const std::uint32_t place = placing.given[i];
    values[i] =
        place == kNotGiven ? Variant(Missing) : abi::FromBinary(parameters.arguments[place]);
    if (!values[i].IsMissing() || PassesMissing(member, i)) continue;
    if (MustBeGiven(member, i)) return DISP_E_PARAMNOTOPTIONAL;
    values[i] = DefaultOf(member.arguments.elements[i], member.types.elements[i]);
  }
  return S_OK;
}

void WriteArgumentsBack(const MemberRow& member, const DISPPARAMS& parameters,
                        const Placing& placing, std::span<const Variant> values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (!member.types.elements[i].by_reference || placing.given[i] == kNotGiven) continue;
    abi::WriteBack(parameters.arguments[placing.given[i]], values[i]);
  }
}

HRESULT Perform(ComponentObject& object, const MemberRow& member, const DISPPARAMS& parameters,
                const Placing& placing, VARIANT* result) {
  std::array<Variant, kMostArguments> storage;
  const std::span<Variant> values(storage.data(), member.arguments.count);
  const HRESULT read = ReadArguments(member, parameters, placing, values);
  if (read != S_OK) return read;
  const Variant given = member.call(object.row.instance(&object), values);
  WriteArgumentsBack(member, parameters, placing, values);
  if (result != nullptr) *result = abi::ToBinary(given);
  return S_OK;
}

// The position of an argument of the member called `name`, in its get or its put; -1 if there is
// none.
std::int32_t ArgumentNamed(const ClassRow& row, StringView name, StringView argument) {
  for (const MemberRow& member : row.members) {
    if (member.name != name) continue;
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
  ids[0] = member == nullptr ? -1 : IdentifierOf(row, *member);
  for (std::uint32_t i = 1; i < count; ++i) {
    ids[i] = member == nullptr ? -1 : ArgumentNamed(row, member->name, names[i]);
    if (ids[i] < 0) code = DISP_E_UNKNOWNNAME;
  }
  return code;
}

HRESULT InvokeMember(ComponentObject& object, std::int32_t id, std::uint16_t flags,
                     const DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* info,
                     std::uint32_t* wrong_argument) noexcept {
  // Cleared at once and freed after the call: an argument may be the same text.
  const auto former =
      result == nullptr ? abi::OwnedVariant() : abi::OwnedVariant::TakenFrom(result);
  const MemberRow* member = FindMember(object.row, id, flags, parameters);
  if (member == nullptr) return DISP_E_MEMBERNOTFOUND;
  if (parameters == nullptr || HasNullArray(*parameters)) return E_POINTER;
  const Placing placing = PlaceArguments(*member, *parameters);
  if (placing.code != S_OK) {
    if (wrong_argument != nullptr) *wrong_argument = placing.wrong;
    return placing.code;
  }
  return abi::Guarded([&] { return Perform(object, *member, *parameters, placing, result); },
                      [&](const RaisedError& error) {
                        if (info != nullptr) abi::FillRecord(error, *info);
                        return DISP_E_EXCEPTION;
                      });
}

}  // namespace quorl::frame
