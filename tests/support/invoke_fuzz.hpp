// Calls by name made of arbitrary bytes: identifiers, flags, counts, kinds of arguments, damage.
// What a pointer leads to is memory of the right size, as no callee can know better; everything
// else is as the bytes have it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <deque>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "quorl/abi/internal/element.hpp"
#include "quorl/abi/internal/errors.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"
#include "tests/support/component.hpp"

namespace quorl {

using namespace internal;

/// Numbers made of the bytes, zeros behind the last.
class FuzzBytes {
 public:
  explicit FuzzBytes(std::span<const std::uint8_t> bytes) : left_(bytes) {}

  bool IsAtEnd() const { return left_.empty(); }
  template <class Number>
  Number Take() {
    Number number{};
    const std::size_t size = std::min(sizeof(number), left_.size());
    std::memcpy(&number, left_.data(), size);
    left_ = left_.subspan(size);
    return number;
  }
  /// From 0 to `count` - 1.
  std::size_t Below(std::size_t count) { return Take<std::uint8_t>() % count; }

 private:
  std::span<const std::uint8_t> left_;
};

/// Arguments of all kinds, which own what they lead to.
class FuzzArguments {
 public:
  FuzzArguments(FuzzBytes& bytes, std::vector<QuorlDispatch*> objects)
      : bytes_(bytes), objects_(std::move(objects)) {}
  FuzzArguments(const FuzzArguments&) = delete;
  FuzzArguments& operator=(const FuzzArguments&) = delete;
  ~FuzzArguments() {
    for (Place& place : kept_) {
      if (place.is_owned) VariantClear(&place.value);
    }
    for (SAFEARRAY* array : arrays_) SafeArrayDestroy(array);
    for (const BSTR text : texts_) SysFreeString(text);
  }

  VARIANT Next(int depth = 0) {
    VARIANT value{};
    switch (depth > 3 ? 0 : bytes_.Below(8)) {
      case 0:
      case 1:
      case 2:
      case 3:
        return Plain(kTypes[bytes_.Below(std::size(kTypes))]);
      case 4:
        value.vt = VT_BYREF | VT_VARIANT;
        value.value.reference = bytes_.Below(16) == 0 ? nullptr : Kept(Next(depth + 1));
        return value;
      case 5: {
        VARIANT* kept = Kept(Plain(kTypes[bytes_.Below(std::size(kTypes))]));
        value.vt = static_cast<std::uint16_t>(kept->vt | VT_BYREF);
        value.value.reference = &kept->value;
        return value;
      }
      case 6:
        return ArrayOf(kTypes[bytes_.Below(std::size(kTypes))], depth);
      default:
        value.vt = bytes_.Take<std::uint16_t>();
        return value;
    }
  }

 private:
  struct Place {
    VARIANT value{};
    bool is_owned = false;
  };

  static constexpr std::uint16_t kTypes[] = {
      VT_EMPTY, VT_NULL, VT_I2,   VT_I4,   VT_R4,       VT_R8,    VT_CY,   VT_DATE,
      VT_BSTR,  VT_BSTR, VT_BSTR, VT_BSTR, VT_DISPATCH, VT_ERROR, VT_BOOL, VT_UI1};

  // What a reference leads to owns what it holds, as a callee may replace it; what cannot be copied
  // stays as it is.
  VARIANT* Kept(const VARIANT& value) {
    Place& place = kept_.emplace_back();
    place.is_owned = VariantCopy(&place.value, &value) == S_OK;
    if (!place.is_owned) place.value = value;
    return &place.value;
  }

  VARIANT Plain(std::uint16_t vt) {
    VARIANT value{};
    value.vt = vt;
    if (vt == VT_BSTR) {
      value.value.bstr = Text();
    } else if (vt == VT_DISPATCH) {
      value.value.dispatch = objects_[bytes_.Below(objects_.size())];
    } else if (vt == VT_ERROR) {
      value.value.error = bytes_.Below(4) == 0 ? bytes_.Take<std::int32_t>() : DISP_E_PARAMNOTFOUND;
    } else if (vt == VT_I2 || vt == VT_I4) {
      value.value.i4 = bytes_.Below(4) == 0 ? bytes_.Take<std::int32_t>()
                                            : static_cast<std::int32_t>(bytes_.Below(8)) - 1;
    } else {
      value.value.cy = bytes_.Take<std::int64_t>();
    }
    return value;
  }

  BSTR Text() {
    constexpr StringView kTexts[] = {u"",   u"12,5", u"deux trois", u"A\\B",
                                     u"FR", u" ",    u"01/02/2020", u"\xD800"};
    const std::size_t choice = bytes_.Below(16);
    if (choice == 15) return nullptr;
    if (choice < std::size(kTexts)) return texts_.emplace_back(abi::NewBstr(kTexts[choice]));
    char16_t units[8];
    for (char16_t& unit : units) unit = bytes_.Take<std::uint16_t>();
    return texts_.emplace_back(SysAllocStringLen(units, static_cast<std::uint32_t>(choice / 2)));
  }

  VARIANT ArrayOf(std::uint16_t vt, int depth) {
    if (vt <= VT_NULL) vt = VT_VARIANT;
    const QuorlBound bounds[] = {
        {static_cast<std::uint32_t>(bytes_.Below(4)), bytes_.Take<std::int8_t>()}, {2, 0}, {1, 1}};
    const auto dimensions = static_cast<std::uint32_t>(1 + bytes_.Below(3));
    SAFEARRAY* array = SafeArrayCreate(vt, dimensions, bounds);
    arrays_.push_back(array);
    for (std::uint32_t i = 0; i < bounds[0].count; ++i) {
      VARIANT element = vt == VT_VARIANT ? Next(depth + 1) : Plain(vt);
      const Int32 subscripts[] = {bounds[0].lower + static_cast<Int32>(i), 0, 1};
      const bool is_pointer = vt == VT_BSTR || vt == VT_DISPATCH;
      SafeArrayPutElement(array, subscripts,
                          is_pointer         ? *reinterpret_cast<void**>(&element.value)
                          : vt == VT_VARIANT ? static_cast<void*>(&element)
                                             : &element.value);
    }
    VARIANT value{};
    value.vt = static_cast<std::uint16_t>(VT_ARRAY | (bytes_.Below(8) == 0 ? kTypes[2] : vt));
    value.value.array = bytes_.Below(4) == 0 ? Damaged(*array, bounds[0]) : array;
    return value;
  }

  // The same array as one dimension, with one field made of the bytes.
  SAFEARRAY* Damaged(const SAFEARRAY& sound, const QuorlBound& first) {
    SAFEARRAY& array = damaged_.emplace_back(sound);
    array.dimensions = 1;
    array.bounds[0] = first;
    switch (bytes_.Below(6)) {
      case 0:
        array.features = bytes_.Take<std::uint16_t>() & 0xFFF;
        break;
      case 1:
        array.element_size = bytes_.Take<std::uint32_t>();
        break;
      case 2:
        array.data = nullptr;
        break;
      case 3:
        array.dimensions = static_cast<std::uint16_t>(bytes_.Below(2) * 100);
        break;
      case 4:
        array.bounds[0].count |= 0x80000000;
        break;
      default:
        array.bounds[0].lower = INT32_MAX;
        break;
    }
    return &array;
  }

  FuzzBytes& bytes_;
  std::vector<QuorlDispatch*> objects_;
  std::deque<Place> kept_;
  std::deque<SAFEARRAY> damaged_;
  std::vector<SAFEARRAY*> arrays_;
  std::vector<BSTR> texts_;
};

/// One call. Its result and record are ended; what it gave must be one of the contract's codes.
inline void FuzzCall(FuzzBytes& bytes, const ClassRow& row, QuorlDispatch* object,
                     FuzzArguments& source) {
  VARIANT arguments[6];
  std::int32_t named[6];
  for (VARIANT& argument : arguments) argument = source.Next();
  for (std::int32_t& name : named) {
    name = bytes.Below(8) == 0 ? bytes.Take<std::int32_t>()
                               : static_cast<std::int32_t>(bytes.Below(7)) - 3;
  }
  const bool is_absurd = bytes.Below(16) == 0;
  DISPPARAMS parameters{bytes.Below(32) == 0 ? nullptr : arguments,
                        bytes.Below(32) == 0 ? nullptr : named,
                        is_absurd ? bytes.Take<std::uint32_t>() | 8 : std::uint32_t{},
                        is_absurd ? bytes.Take<std::uint32_t>() : std::uint32_t{}};
  std::int32_t id = bytes.Take<std::int16_t>();
  std::uint16_t flags = bytes.Take<std::uint16_t>();
  if (!row.members.empty() && bytes.Below(8) != 0) {
    const MemberRow& member = row.members[bytes.Below(row.members.size())];
    id = IdentifierOf(row, member);
    flags |= FlagOf(member.kind);
    if (!is_absurd) parameters.argument_count = static_cast<std::uint32_t>(member.arguments.count);
    if (bytes.Below(4) == 0) parameters.named_count = static_cast<std::uint32_t>(bytes.Below(4));
  }
  VARIANT result{};
  EXCEPINFO info{};
  std::uint32_t wrong = 0;
  const HRESULT code = object->table->Invoke(
      object, id, nullptr, 0, flags, &parameters, bytes.Below(8) == 0 ? nullptr : &result,
      bytes.Below(8) == 0 ? nullptr : &info, bytes.Below(8) == 0 ? nullptr : &wrong);
  constexpr HRESULT kCodes[] = {S_OK,
                                E_POINTER,
                                DISP_E_MEMBERNOTFOUND,
                                DISP_E_PARAMNOTFOUND,
                                DISP_E_EXCEPTION,
                                DISP_E_BADPARAMCOUNT,
                                DISP_E_PARAMNOTOPTIONAL};
  EXPECT_NE(std::ranges::find(kCodes, code), std::end(kCodes)) << std::hex << code;
  EXPECT_TRUE(code == S_OK || result.vt == VT_EMPTY) << Utf8(row.name) << ' ' << id;
  EXPECT_EQ(VariantClear(&result), S_OK);
  abi::FreeRecord(info);
}

/// A host's life in calls: as many as the bytes suffice for, on objects of every class.
inline void FuzzInvoke(std::span<const std::uint8_t> input) {
  FuzzBytes bytes(input);
  MemoryStore store;
  const ScopedStore guard(store);
  FakeHost host({{u"", u"default"},
                 {u"Count", 2},
                 {u"List", u"deux trois"},
                 {u"ListCount", Int16{2}},
                 {u"ListIndex", Int16{0}},
                 {u"Move", Empty},
                 {u"Name", u"Form"},
                 {u"WindowState", 0}});
  {
    std::vector<Reference<QuorlDispatch>> owned;
    std::vector<QuorlDispatch*> objects{nullptr, &host};
    for (const ClassRow& row : frame::Catalogue()) {
      owned.push_back(Reference<QuorlDispatch>::Adopt(row.make(row, frame::Holder::kHost)));
      objects.push_back(owned.back().Get());
    }
    while (!bytes.IsAtEnd()) {
      host.journal.clear();
      FuzzArguments arguments(bytes, objects);
      const std::size_t place = bytes.Below(owned.size());
      FuzzCall(bytes, frame::Catalogue()[place], owned[place].Get(), arguments);
    }
    // A buffer that holds itself, or two that hold each other, would live for ever.
    for (std::size_t i = 0; i < owned.size(); ++i) {
      if (frame::Catalogue()[i].name == u"RollBuffer") {
        CallNamed(owned[i].Get(), u"BufferSize", DISPATCH_PROPERTYPUT, {{QUORL_PUT_VALUE, 1}});
      }
    }
  }
  EXPECT_EQ(host.references, 1u);
  EXPECT_FALSE(frame::IsInUse());
}

}  // namespace quorl
