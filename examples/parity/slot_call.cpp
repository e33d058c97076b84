#include "examples/parity/slot_call.hpp"

#include <algorithm>
#include <array>
#include <cstring>

namespace parity {

namespace {

// The arguments of any slot. The calling conventions of both processors hand over whole numbers and
// pointers in one row of registers and real numbers in another, each in its own order, and a callee
// looks at those that it knows of. A VARIANT goes to the stack on x86-64, and as a pointer among
// the whole numbers on AArch64.
class SlotArguments {
 public:
  void AddWhole(std::int64_t number) { Add(wholes_, whole_count_, number); }
  void AddPointer(void* pointer) { AddWhole(reinterpret_cast<std::int64_t>(pointer)); }
  void AddReal(double number) { Add(reals_, real_count_, number); }
  void AddVariant(VARIANT& variant) {
#if defined(__aarch64__)
    AddPointer(&variant);
#else
    Add(variants_, variant_count_, variant);
#endif
  }

  // Whether there was room for all; the processor is one of those two.
  bool Fits() const {
#if defined(__x86_64__) || defined(__aarch64__)
    return fits_;
#else
    return false;
#endif
  }

  HRESULT Call(QuorlDispatch* object, std::size_t place) const {
    using W = std::int64_t;
    using Function = HRESULT (*)(void*, W, W, W, W, W, double, double, double, double, VARIANT,
                                 VARIANT, VARIANT, VARIANT);
    Function function = nullptr;
    std::memcpy(&function, reinterpret_cast<const char*>(object->table) + place * sizeof(void*),
                sizeof(function));
    const auto& w = wholes_;
    const auto& r = reals_;
    const auto& v = variants_;
    return function(object, w[0], w[1], w[2], w[3], w[4], r[0], r[1], r[2], r[3], v[0], v[1], v[2],
                    v[3]);
  }

 private:
  template <class Row, class Element>
  void Add(Row& row, std::size_t& count, const Element& element) {
    fits_ = fits_ && count < row.size();
    if (fits_) row[count++] = element;
  }

  std::array<std::int64_t, 5> wholes_{};
  std::array<double, 4> reals_{};
  std::array<VARIANT, 4> variants_{};
  std::size_t whole_count_ = 0;
  std::size_t real_count_ = 0;
  std::size_t variant_count_ = 0;
  bool fits_ = true;
};

// The one member that answers; null where the number of arguments would have to decide.
const Slot* FindSlot(const std::vector<Slot>& slots, std::int32_t id, std::uint16_t flags) {
  const Slot* found = nullptr;
  for (const Slot& slot : slots) {
    if (slot.function.id != id || (slot.function.invoke_kind & flags) == 0) continue;
    if (found != nullptr) return nullptr;
    found = &slot;
  }
  return found;
}

// The value of each parameter; empty where the call is a wrong one.
std::optional<std::vector<const Value*>> Placed(const Slot& slot,
                                                const std::vector<std::int32_t>& ids,
                                                const std::vector<Argument>& arguments) {
  std::vector<const Value*> placed(slot.parameters.size());
  std::size_t position = 0;
  auto named = ids.begin();
  for (const Argument& argument : arguments) {
    std::size_t place = position++;
    if (argument.name) {
      const std::int32_t id = *named++;
      place = id == QUORL_PUT_VALUE ? placed.size() - 1 : static_cast<std::size_t>(id);
    }
    if (place >= placed.size() || placed[place] != nullptr) return std::nullopt;
    placed[place] = &argument.value;
  }
  for (std::size_t i = 0; i < placed.size(); ++i) {
    const Slot::Parameter& parameter = slot.parameters[i];
    const bool is_missing =
        placed[i] == nullptr ||
        (placed[i]->Target().type == VT_ERROR && placed[i]->Target().If<std::int64_t>() &&
         *placed[i]->Target().If<std::int64_t>() == DISP_E_PARAMNOTFOUND);
    if (!is_missing || (placed[i] != nullptr && !parameter.is_optional)) continue;
    if (!parameter.is_optional) return std::nullopt;
    placed[i] = &parameter.otherwise;
  }
  return placed;
}

bool IsOneOf(std::uint16_t type, std::initializer_list<std::uint16_t> types) {
  return std::ranges::find(types, type) != types.end();
}

// Adds an argument, which `passed` owns. False where it is not of the parameter's type, or of a
// narrower one that a compiler widens.
bool AddArgument(std::uint16_t type, const Value& value, Passed& passed, SlotArguments& slot) {
  if (type == VT_VARIANT) {
    slot.AddVariant(*passed.Address());
    return true;
  }
  const Value& target = value.Target();
  VARIANT& content = *passed.Target();
  const bool is_single = !target.If<Array>() && !target.If<UnknownValue>();
  if (!is_single) return false;
  if ((type & VT_BYREF) != 0) {
    if (target.type != (type & ~VT_BYREF)) return false;
    slot.AddPointer(&content.value);
    return true;
  }
  if (type == VT_R8) {
    if (!IsOneOf(target.type, {VT_R8, VT_R4, VT_I2, VT_I4})) return false;
    const double* const real = target.If<double>();
    slot.AddReal(real != nullptr ? *real : static_cast<double>(*target.If<std::int64_t>()));
    return true;
  }
  const bool is_whole = IsOneOf(type, {VT_I2, VT_I4}) && IsOneOf(target.type, {VT_I2, VT_I4});
  if (target.type != type && !is_whole) return false;
  const std::int64_t* const whole = target.If<std::int64_t>();
  if (type == VT_BOOL && *whole != 0 && *whole != -1) return false;
  if (type == VT_DATE) {
    slot.AddReal(*target.If<double>());
  } else if (whole != nullptr) {
    slot.AddWhole(*whole);
  } else {
    slot.AddPointer(type == VT_BSTR ? static_cast<void*>(content.value.bstr)
                                    : content.value.dispatch);
  }
  return true;
}

// The thread's failure, which the call left there.
void TakeErrorInfo(Outcome& outcome) {
  Counted<QuorlErrorInfo> info;
  if (GetErrorInfo(0, info.Receive()) != S_OK) return;
  BSTR source = nullptr;
  BSTR description = nullptr;
  info.Get()->table->GetSource(info.Get(), &source);
  info.Get()->table->GetDescription(info.Get(), &description);
  outcome.source = TakeText(source);
  outcome.description = TakeText(description);
}

Value TypeDefault(std::uint16_t type) {
  switch (type & ~VT_BYREF) {
    case VT_BSTR:
      return {VT_BSTR, std::u16string()};
    case VT_DISPATCH:
      return {VT_DISPATCH, ObjectValue{}};
    case VT_R8:
    case VT_DATE:
      return {static_cast<std::uint16_t>(type & ~VT_BYREF), 0.0};
    case VT_VARIANT:
      return {VT_ERROR, std::int64_t{DISP_E_PARAMNOTFOUND}};
    default:
      return {static_cast<std::uint16_t>(type & ~VT_BYREF), std::int64_t{0}};
  }
}

// Takes the name. A default is of the type that it was written in: a number may stand for a Double.
Slot::Parameter ParameterOf(const QuorlArgument& argument) {
  const Value written = ValueOf(argument.default_value);
  const bool is_given = written.type != VT_ERROR;
  return {TakeText(argument.name), argument.type, argument.optional != 0,
          is_given ? written : TypeDefault(argument.type)};
}

}  // namespace

std::vector<Slot> SlotsOf(QuorlDispatch* object) {
  std::vector<Slot> slots;
  Counted<> answered;
  Counted<QuorlTypeInfo> info;
  QuorlTypeAttributes attributes{};
  if (object->table->GetTypeInfo(object, 0, 0, answered.Receive()) < 0 || !answered ||
      answered.Get()->table->QueryInterface(answered.Get(), &QUORL_IID_TYPE_INFO, info.Receive()) <
          0 ||
      info.Get()->table->GetTypeAttributes(info.Get(), &attributes) < 0) {
    return slots;
  }
  for (std::uint32_t i = 0; i < attributes.functions; ++i) {
    Slot slot{};
    BSTR name = nullptr;
    if (info.Get()->table->GetFunction(info.Get(), i, &slot.function) < 0 ||
        info.Get()->table->GetDocumentation(info.Get(), slot.function.id, &name, nullptr) < 0) {
      return {};
    }
    slot.name = TakeText(name);
    for (std::uint32_t place = 0; place < slot.function.argument_count; ++place) {
      QuorlArgument argument{};
      if (info.Get()->table->GetArgument(info.Get(), i, place, &argument) < 0) return {};
      slot.parameters.push_back(ParameterOf(argument));
      VariantClear(&argument.default_value);
    }
    slots.push_back(std::move(slot));
  }
  return slots;
}

std::optional<Outcome> CallThroughTable(QuorlDispatch* object, const std::vector<Slot>& slots,
                                        const Identifiers& ids, const Entry& entry) {
  const Slot* const slot = FindSlot(slots, ids.member, entry.flags);
  if (slot == nullptr) return std::nullopt;
  const auto placed = Placed(*slot, ids.named, entry.arguments);
  if (!placed) return std::nullopt;
  SlotArguments arguments;
  std::vector<Passed> passed;
  for (const Value* value : *placed) passed.emplace_back(*value);
  for (std::size_t i = 0; i < passed.size(); ++i) {
    if (!AddArgument(slot->parameters[i].type, *(*placed)[i], passed[i], arguments)) {
      return std::nullopt;
    }
  }
  const std::uint16_t type = slot->function.result_type;
  Passed result;
  VARIANT& place = *result.Address();
  if (type != VT_EMPTY) {
    arguments.AddPointer(type == VT_VARIANT ? static_cast<void*>(&place) : &place.value);
  }
  if (!arguments.Fits()) return std::nullopt;
  SetErrorInfo(0, nullptr);
  const HRESULT code = arguments.Call(object, slot->function.table_slot);
  Outcome outcome;
  if (code >= 0) {
    if (type != VT_VARIANT) place.vt = type;
    outcome.result = ValueOf(place);
  } else {
    outcome.kind = Outcome::Kind::kFails;
    outcome.number = NumberOf(code);
    TakeErrorInfo(outcome);
  }
  for (const Argument& argument : entry.arguments) {
    if (!argument.value.If<ReferenceValue>()) continue;
    const auto at = std::ranges::find(*placed, &argument.value) - placed->begin();
    outcome.written_back.push_back(ValueOf(passed[static_cast<std::size_t>(at)].Get()));
  }
  return outcome;
}

}  // namespace parity
