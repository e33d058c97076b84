#include "examples/parity/binary.hpp"

#include <array>
#include <cstring>
#include <new>

namespace parity {

namespace {

// The bytes of a value of that type, 0 for a type that has none of its own.
std::size_t SizeOf(std::uint16_t type) {
  switch (type) {
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_R4:
    case VT_ERROR:
      return 4;
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_BSTR:
    case VT_DISPATCH:
      return 8;
    case VT_VARIANT:
      return sizeof(VARIANT);
    default:
      return 0;
  }
}

template <class Plain>
Plain Read(const void* place) {
  Plain plain;
  std::memcpy(&plain, place, sizeof(plain));
  return plain;
}

Value ValueOf(const VARIANT& variant, int depth);

// A single value of that type in memory, in a VARIANT or an array.
Value ValueAt(const void* place, std::uint16_t type, int depth) {
  switch (type) {
    case VT_UI1:
      return {type, std::int64_t{Read<std::uint8_t>(place)}};
    case VT_I2:
    case VT_BOOL:
      return {type, std::int64_t{Read<std::int16_t>(place)}};
    case VT_I4:
    case VT_ERROR:
      return {type, std::int64_t{Read<std::int32_t>(place)}};
    case VT_CY:
      return {type, Read<std::int64_t>(place)};
    case VT_R4:
      return {type, double{Read<float>(place)}};
    case VT_R8:
    case VT_DATE:
      return {type, Read<double>(place)};
    case VT_BSTR:
      return {type, TextOf(Read<BSTR>(place))};
    case VT_DISPATCH: {
      auto* const pointer = Read<QuorlDispatch*>(place);
      return {type, ObjectValue{pointer == nullptr ? 0 : ObjectValue::kUnknown, pointer}};
    }
    default:
      return ValueOf(*static_cast<const VARIANT*>(place), depth + 1);
  }
}

std::size_t CountOf(const Array& array) {
  std::size_t count = 1;
  for (const QuorlBound& bound : array.bounds) count *= bound.count;
  return count;
}

// `source` is sound: the contract's own copy of what a caller gave.
Value ArrayOf(SAFEARRAY* source, int depth) {
  Array array;
  SafeArrayGetVartype(source, &array.type);
  const std::uint32_t dimensions = SafeArrayGetDim(source);
  for (std::uint32_t i = 0; i < dimensions; ++i) {
    array.bounds.push_back(source->bounds[dimensions - 1 - i]);
  }
  const std::size_t count = CountOf(array);
  const auto* place = static_cast<const char*>(source->data);
  array.elements.reserve(count);
  for (std::size_t i = 0; i < count; ++i, place += SizeOf(array.type)) {
    array.elements.push_back(ValueAt(place, array.type, depth));
  }
  const std::uint16_t type = array.type;
  return {type, std::move(array)};
}

Value UnknownOf(std::uint16_t vt) { return {VT_EMPTY, UnknownValue{vt}}; }

// A caller's array may be damaged; the copy of the contract refuses such.
Value ArrayOf(const VARIANT& variant, int depth) {
  Passed copy;
  const HRESULT code = VariantCopy(copy.Address(), &variant);
  if (code == E_OUTOFMEMORY) throw std::bad_alloc();
  const bool is_sound = code >= 0 && copy.Get().value.array != nullptr;
  return is_sound ? ArrayOf(copy.Get().value.array, depth) : UnknownOf(variant.vt);
}

Value ReferenceOf(const VARIANT& variant, int depth) {
  ReferenceValue reference;
  const auto type = static_cast<std::uint16_t>(variant.vt & ~VT_BYREF);
  reference.is_variant = type == VT_VARIANT;
  if (variant.value.reference == nullptr) return UnknownOf(variant.vt);
  if ((type & VT_ARRAY) != 0) {
    VARIANT array{};
    array.vt = type;
    array.value.array = Read<SAFEARRAY*>(variant.value.reference);
    reference.target.push_back(ArrayOf(array, depth + 1));
    if (reference.target.front().If<UnknownValue>()) return UnknownOf(variant.vt);
  } else if (SizeOf(type) != 0) {
    reference.target.push_back(ValueAt(variant.value.reference, type, depth));
  } else {
    return UnknownOf(variant.vt);
  }
  return {reference.is_variant ? std::uint16_t{VT_VARIANT} : reference.target.front().type,
          std::move(reference)};
}

Value ValueOf(const VARIANT& variant, int depth) {
  if (depth > kMostNesting) return UnknownOf(variant.vt);
  if (variant.vt == VT_EMPTY || variant.vt == VT_NULL) return {variant.vt, std::int64_t{0}};
  if ((variant.vt & VT_BYREF) != 0) return ReferenceOf(variant, depth);
  if ((variant.vt & VT_ARRAY) != 0) return ArrayOf(variant, depth);
  const bool is_single = SizeOf(variant.vt) != 0 && variant.vt != VT_VARIANT;
  return is_single ? ValueAt(&variant.value, variant.vt, depth) : UnknownOf(variant.vt);
}

template <class Plain>
void Write(void* place, Plain plain) {
  std::memcpy(place, &plain, sizeof(plain));
}

SAFEARRAY* NewArray(const Array& array);

// Fills a place of its type, which then owns the content. Numbers are in the range of their type.
void WriteAt(void* place, const Value& value) {
  if (const auto* text = value.If<std::u16string>()) return Write(place, NewText(*text));
  if (const auto* array = value.If<Array>()) return Write(place, NewArray(*array));
  if (const auto* object = value.If<ObjectValue>()) {
    if (object->pointer != nullptr) object->pointer->table->AddRef(object->pointer);
    return Write(place, object->pointer);
  }
  if (const auto* real = value.If<double>()) {
    return value.type == VT_R4 ? Write(place, static_cast<float>(*real)) : Write(place, *real);
  }
  if (const auto* whole = value.If<std::int64_t>()) std::memcpy(place, whole, SizeOf(value.type));
}

SAFEARRAY* NewArray(const Array& array) {
  SAFEARRAY* made = SafeArrayCreate(array.type, static_cast<std::uint32_t>(array.bounds.size()),
                                    array.bounds.data());
  if (made == nullptr) throw std::bad_alloc();
  try {
    auto* place = static_cast<char*>(made->data);
    for (const Value& element : array.elements) {
      if (array.type == VT_VARIANT) {
        Write(place, Passed(element).Detach());
      } else {
        WriteAt(place, element);
      }
      place += SizeOf(array.type);
    }
  } catch (...) {
    SafeArrayDestroy(made);
    throw;
  }
  return made;
}

}  // namespace

Passed::Passed(const Value& value) : Passed() {
  if (const auto* unknown = value.If<UnknownValue>()) {
    variant_.vt = unknown->vt;
  } else if (const auto* reference = value.If<ReferenceValue>()) {
    target_ = std::make_unique<Passed>(reference->target.front());
    VARIANT* const target = target_->Address();
    const int type = reference->is_variant ? int{VT_VARIANT} : int{target->vt};
    variant_.vt = static_cast<std::uint16_t>(type | VT_BYREF);
    variant_.value.reference = reference->is_variant ? static_cast<void*>(target) : &target->value;
  } else {
    WriteAt(&variant_.value, value);
    variant_.vt = static_cast<std::uint16_t>(value.type | (value.If<Array>() ? VT_ARRAY : 0));
  }
}

Value ValueOf(const VARIANT& variant) { return ValueOf(variant, 0); }

void WriteBack(const VARIANT& argument, const Value& value) {
  if ((argument.vt & VT_BYREF) == 0 || argument.value.reference == nullptr) return;
  Passed content(value.Target());
  if (argument.vt == (VT_BYREF | VT_VARIANT)) {
    auto* const place = static_cast<VARIANT*>(argument.value.reference);
    if ((place->vt & VT_BYREF) != 0) return WriteBack(*place, value);
    VariantClear(place);
    *place = content.Detach();
  } else if (argument.vt == (VT_BYREF | value.Target().type) && value.Target().If<std::int64_t>()) {
    std::memcpy(argument.value.reference, &content.Get().value, SizeOf(value.Target().type));
  }
}

BSTR NewText(const std::u16string& text) {
  BSTR made = SysAllocStringLen(text.data(), static_cast<std::uint32_t>(text.size()));
  if (made == nullptr) throw std::bad_alloc();
  return made;
}

std::u16string TextOf(BSTR text) {
  return text == nullptr ? std::u16string() : std::u16string(text, SysStringLen(text));
}

std::u16string TakeText(BSTR text) {
  std::u16string taken = TextOf(text);
  SysFreeString(text);
  return taken;
}

std::int32_t NumberOf(HRESULT code) {
  const auto bits = static_cast<std::uint32_t>(code);
  return bits >> 16U == 0x800A ? static_cast<std::int32_t>(bits & 0xFFFFU) : code;
}

Name Numbered(std::int32_t id) {
  const std::string text = '#' + std::to_string(id);
  return {text.begin(), text.end()};
}

std::vector<Argument> ArgumentsOf(const DISPPARAMS& parameters,
                                  const std::function<Name(std::int32_t)>& name_of) {
  std::vector<Argument> arguments;
  for (std::uint32_t i = parameters.argument_count; i-- > parameters.named_count;) {
    arguments.push_back({std::nullopt, ValueOf(parameters.arguments[i])});
  }
  for (std::uint32_t i = 0; i < parameters.named_count; ++i) {
    arguments.push_back({name_of(parameters.named[i]), ValueOf(parameters.arguments[i])});
  }
  return arguments;
}

std::vector<std::size_t> BinaryOrder(const std::vector<Argument>& arguments) {
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i].name) order.push_back(i);
  }
  for (std::size_t i = arguments.size(); i-- > 0;) {
    if (!arguments[i].name) order.push_back(i);
  }
  return order;
}

Record::~Record() {
  SysFreeString(info_.source);
  SysFreeString(info_.description);
  SysFreeString(info_.help_file);
}

void Record::Complete() {
  if (info_.fill_in != nullptr) info_.fill_in(&info_);
  info_.fill_in = nullptr;
}

void Fill(EXCEPINFO& info, std::int32_t number, const std::u16string& source,
          const std::u16string& description) {
  const bool is_small = number >= 0 && number <= 0xFFFF;
  info.scode = is_small ? QUORL_CODE(0x800A0000U + static_cast<std::uint32_t>(number)) : number;
  info.source = NewText(source);
  info.description = NewText(description);
}

Outcome OutcomeOf(HRESULT code, const VARIANT* result, Record& record,
                  std::uint32_t wrong_argument) {
  Outcome outcome;
  if (code >= 0) {
    if (result != nullptr) outcome.result = ValueOf(*result);
  } else if (code == DISP_E_EXCEPTION) {
    record.Complete();
    outcome.kind = Outcome::Kind::kFails;
    outcome.number = record.Number();
    outcome.source = TextOf(record.Get().source);
    outcome.description = TextOf(record.Get().description);
  } else {
    outcome.kind = Outcome::Kind::kRefused;
    outcome.number = code;
    if (code == DISP_E_PARAMNOTFOUND) outcome.wrong_argument = wrong_argument;
  }
  return outcome;
}

}  // namespace parity
