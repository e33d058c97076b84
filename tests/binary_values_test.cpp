// Texts, arrays, Variants and identifiers in binary form, as a host makes and reads them.
#include <gtest/gtest.h>

#include "quorl/runtime/screen.hpp"
#include "tests/support/component.hpp"

namespace quorl {
namespace {

using abi::operator==;

TEST(BinaryValues, TextsKnowTheirLength) {
  EXPECT_EQ(SysAllocString(nullptr), nullptr);
  EXPECT_EQ(SysStringLen(nullptr), 0u);
  SysFreeString(nullptr);
  for (const char16_t* units : {u"a\0b", static_cast<const char16_t*>(nullptr)}) {
    BSTR text = SysAllocStringLen(units, 3);
    EXPECT_EQ(SysStringLen(text), 3u);
    EXPECT_EQ(reinterpret_cast<std::uint32_t*>(text)[-1], 6u);
    EXPECT_EQ(StringView(text, 4), units == nullptr ? String(4, 0) : String(units, 4));
    SysFreeString(text);
  }
  EXPECT_EQ(SysAllocStringLen(nullptr, UINT32_MAX), nullptr);
}

TEST(BinaryValues, TextsComeFromUtf8AndGoBack) {
  using namespace std::string_literals;
  const std::tuple<std::string, String, HRESULT> cases[] = {
      {"", u"", S_OK},
      {"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", u"\u00E9\u20AC\U0001F600", S_OK},
      {"a\0b"s, u"a\0b"s, S_OK},
      {"a\xFFz", u"a\uFFFDz", S_FALSE},
  };
  BSTR text = nullptr;
  char* bytes = nullptr;
  std::size_t length = 0;
  for (const auto& [utf8, utf16, code] : cases) {
    EXPECT_EQ(QuorlFromUtf8Len(utf8.data(), utf8.size(), &text), code);
    EXPECT_EQ(QuorlToUtf8(text, &bytes, &length), S_OK);
    EXPECT_EQ(Taken(text), utf16);
    EXPECT_EQ(std::string(bytes, length + 1), Utf8(utf16) + '\0');
    QuorlFreeUtf8(bytes);
  }
  EXPECT_EQ(QuorlFromUtf8("z", &text), S_OK);
  text[0] = 0xD800;
  EXPECT_EQ(QuorlToUtf8(text, &bytes, nullptr), S_FALSE);
  EXPECT_STREQ(bytes, "\xEF\xBF\xBD");
  QuorlFreeUtf8(bytes);
  SysFreeString(text);
  EXPECT_EQ(QuorlFromUtf8(nullptr, &text), S_OK);
  EXPECT_EQ(Taken(text), u"");
  EXPECT_EQ(QuorlFromUtf8Len(nullptr, 1, &text), E_POINTER);
  EXPECT_EQ(text, nullptr);
  EXPECT_EQ(QuorlToUtf8(text, nullptr, &length), E_POINTER);
  EXPECT_EQ(QuorlFromUtf8("", nullptr), E_POINTER);
}

TEST(BinaryValues, ArraysRunLeftmostSubscriptFirst) {
  const QuorlBound bounds[] = {{2, 1}, {3, -1}};
  SAFEARRAY* array = SafeArrayCreate(VT_I4, 2, bounds);
  for (std::int32_t i = 0; i < 6; ++i) {
    const std::int32_t at[] = {1 + i % 2, i / 2 - 1};
    std::int32_t value = i;
    EXPECT_EQ(SafeArrayPutElement(array, at, &value), S_OK);
    EXPECT_EQ(SafeArrayGetElement(array, at, &value), S_OK);
    EXPECT_EQ(value, i);
  }
  void* data = nullptr;
  EXPECT_EQ(SafeArrayAccessData(array, &data), S_OK);
  const std::int32_t expected[] = {0, 1, 2, 3, 4, 5};
  EXPECT_EQ(std::memcmp(data, expected, sizeof(expected)), 0);
  // The layout that a host may read by itself.
  std::uint32_t words[10];
  std::memcpy(words, array, sizeof(words));
  EXPECT_EQ(
      (std::vector{words[0] & 0xFFFF, words[1], words[2], words[6], words[7], words[8], words[9]}),
      (std::vector<std::uint32_t>{2, 4, 1, 3, UINT32_MAX, 2, 1}));
  // What is accessed is not freed, nor taken from the Variant that holds it.
  VARIANT whole = Raw(VT_ARRAY | VT_I4, array);
  const VARIANT other = Raw(VT_I4, 1);
  EXPECT_EQ(SafeArrayDestroy(array), E_UNEXPECTED);
  EXPECT_EQ(VariantClear(&whole), E_UNEXPECTED);
  EXPECT_EQ(VariantCopy(&whole, &other), E_UNEXPECTED);
  EXPECT_TRUE(whole.vt == (VT_ARRAY | VT_I4) && whole.value.array == array);
  EXPECT_EQ(SafeArrayUnaccessData(array), S_OK);
  EXPECT_EQ(SafeArrayUnaccessData(array), E_UNEXPECTED);
  std::int32_t low = 0;
  std::int32_t high = 0;
  for (const std::uint32_t dimension : {3U, 2U, 0U}) {
    const HRESULT code = dimension == 2 ? S_OK : DISP_E_BADINDEX;
    EXPECT_EQ(SafeArrayGetLBound(array, dimension, &low), code);
    EXPECT_EQ(SafeArrayGetUBound(array, dimension, &high), code);
  }
  EXPECT_TRUE(low == -1 && high == 1);
  const std::int32_t outside[] = {3, 0};
  EXPECT_EQ(SafeArrayPutElement(array, outside, &low), DISP_E_BADINDEX);
  EXPECT_EQ(SafeArrayGetElement(array, outside, &low), DISP_E_BADINDEX);
  // The same order through the runtime's array and back.
  const Variant value = abi::FromBinary(whole);
  EXPECT_EQ(value.If<Array>()->Get({2, -1}), Variant(1));
  const OwnedVariant back(value);
  EXPECT_EQ(std::memcmp(back.Get().value.array->data, expected, sizeof(expected)), 0);
  EXPECT_EQ(abi::FromBinary(back.Get()), value);
  EXPECT_EQ(VariantClear(&whole), S_OK);
}

TEST(BinaryValues, ArraysHaveTheirLimits) {
  const QuorlBound largest[] = {{INT32_MAX / 4, 0}};
  const QuorlBound too_large[] = {{INT32_MAX / 4 + 1, 0}};
  SAFEARRAY* array = SafeArrayCreate(VT_I4, 1, largest);
  EXPECT_NE(array, nullptr);
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
  EXPECT_EQ(SafeArrayDestroy(nullptr), S_OK);
  SAFEARRAY* bytes = SafeArrayCreate(VT_UI1, 1, largest);
  std::uint16_t told = 0;
  EXPECT_EQ(SafeArrayGetVartype(bytes, &told), S_OK);
  EXPECT_EQ(told, VT_UI1);
  EXPECT_EQ(SafeArrayDestroy(bytes), S_OK);
  EXPECT_EQ(SafeArrayCreate(VT_I4, 1, too_large), nullptr);
  EXPECT_EQ(SafeArrayCreate(VT_I4, 0, largest), nullptr);
  EXPECT_EQ(SafeArrayCreate(99, 1, largest), nullptr);
  EXPECT_EQ(SafeArrayCreate(VT_I4, 1, nullptr), nullptr);
}

TEST(BinaryValues, ElementsOfArraysAreCopiedInAndOut) {
  FakeHost host;
  const QuorlBound bounds[] = {{2, 0}};
  const std::int32_t second[] = {1};
  const std::pair<Variant, int> values[] = {
      {u"text", QUORL_ARRAY_OF_TEXTS}, {abi::ObjectOf(&host), QUORL_ARRAY_OF_OBJECTS}, {2.5, 0}};
  for (const auto& [value, features] : values) {
    OwnedVariant binary(value);
    for (const std::uint16_t vt : {binary.Get().vt, std::uint16_t{VT_VARIANT}}) {
      const bool is_variant = vt == VT_VARIANT;
      SAFEARRAY* array = SafeArrayCreate(vt, 1, bounds);
      std::uint16_t told = 0;
      EXPECT_EQ(SafeArrayGetVartype(array, &told), S_OK);
      EXPECT_EQ(told, vt);
      EXPECT_EQ(array->features & 0xFFF, is_variant ? QUORL_ARRAY_OF_VARIANTS : features);
      void* source = is_variant                           ? static_cast<void*>(binary.Address())
                     : vt == VT_BSTR || vt == VT_DISPATCH ? binary.Get().value.reference
                                                          : &binary.Address()->value;
      OwnedVariant got;
      // So often that nothing may be left behind by a copy.
      for (int round = 0; round < 100; ++round) {
        VariantClear(got.Address());
        EXPECT_EQ(SafeArrayPutElement(array, second, source), S_OK);
        if (!is_variant) got.Address()->vt = vt;
        void* place = is_variant ? static_cast<void*>(got.Address()) : &got.Address()->value;
        EXPECT_EQ(SafeArrayGetElement(array, second, place), S_OK);
      }
      EXPECT_EQ(abi::FromBinary(got.Get()) == value, !value.Holds<Object>());
      EXPECT_TRUE(vt != VT_BSTR || got.Get().value.bstr != binary.Get().value.bstr);
      // A deep copy has elements of its own.
      OwnedVariant copy;
      const VARIANT whole = Raw(VT_ARRAY | vt, array);
      EXPECT_EQ(VariantCopy(copy.Address(), &whole), S_OK);
      EXPECT_NE(copy.Get().value.array, array);
      EXPECT_EQ(SafeArrayDestroy(array), S_OK);
      EXPECT_EQ(abi::FromBinary(copy.Get()).If<Array>()->Size(), 2u);
    }
  }
  EXPECT_EQ(host.references, 2u);  // ours and that of `values`
}

TEST(BinaryValues, VariantsAreCopiedDeepAndReferencesStay) {
  OwnedVariant text(Variant(u"text"));
  OwnedVariant copy(Variant(u"former"));
  EXPECT_EQ(VariantCopy(copy.Address(), &text.Get()), S_OK);
  EXPECT_NE(copy.Get().value.bstr, text.Get().value.bstr);
  EXPECT_EQ(VariantCopy(copy.Address(), copy.Address()), S_OK);
  EXPECT_EQ(abi::FromBinary(copy.Get()), Variant(u"text"));
  const VARIANT reference = Raw(VT_BYREF | VT_VARIANT, text.Address());
  EXPECT_EQ(VariantCopy(copy.Address(), &reference), S_OK);
  EXPECT_EQ(copy.Get().value.reference, text.Address());
  EXPECT_EQ(VariantClear(copy.Address()), S_OK);
  EXPECT_EQ(abi::FromBinary(text.Get()), Variant(u"text"));
  VARIANT damaged = Raw(99, 1);
  EXPECT_EQ(VariantCopy(copy.Address(), &damaged), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(VariantClear(&damaged), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(damaged.vt, VT_EMPTY);
  EXPECT_EQ(VariantClear(nullptr), E_POINTER);
  EXPECT_EQ(VariantCopy(nullptr, &damaged), E_POINTER);
}

TEST(BinaryValues, IdentifiersAsText) {
  GUID guid{};
  EXPECT_EQ(CLSIDFromString(u"{1cf2B120-547D-101b-8E65-08002B2BD119}", &guid), S_OK);
  EXPECT_TRUE(guid == IID_IErrorInfo);
  char16_t text[40] = u"untouched";
  EXPECT_EQ(StringFromGUID2(&guid, text, 38), 0);
  EXPECT_EQ(StringView(text), u"untouched");
  EXPECT_EQ(StringFromGUID2(&guid, text, 40), 39);
  EXPECT_EQ(StringView(text), u"{1CF2B120-547D-101B-8E65-08002B2BD119}");
  const String good = text;
  String other = good;
  other[9] = u' ';
  for (const String& bad : {String(), good.substr(1), good.substr(0, 36) + u"}", good + u" ",
                            good.substr(0, 36) + u"G}", other}) {
    EXPECT_EQ(CLSIDFromString(bad.c_str(), &guid), CO_E_CLASSSTRING) << Utf8(bad);
  }
  EXPECT_EQ(CLSIDFromString(nullptr, &guid), E_POINTER);
}

TEST(BinaryValues, SettingsOfTheProcessAreChecked) {
  EXPECT_EQ(QuorlSetLocale(u"xx-YY"), E_INVALIDARG);
  EXPECT_EQ(QuorlSetLocale(u"de-DE"), S_OK);
  EXPECT_EQ(ToString(Variant(2.5)), u"2,5");
  EXPECT_EQ(QuorlSetLocale(nullptr), S_OK);
  EXPECT_EQ(QuorlSetScreen(1e300, 1), E_INVALIDARG);
  EXPECT_EQ(QuorlSetScreen(800, 600), S_OK);
  EXPECT_EQ(Screen::Height(), 600);
}

}  // namespace
}  // namespace quorl
