// Arguments of every kind for the component's members, sound and damaged.
#pragma once

#include "tests/support/component.hpp"
#include "tests/support/random.hpp"

namespace quorl {

/// Chooses from 0 to `count` - 1.
using Pick = std::function<std::size_t(std::size_t count)>;

/// One of the ways in which a member is called.
using Way = CallResult (*)(QuorlDispatch*, const ClassRow&, const MemberRow&, std::span<Variant>);

inline const std::vector<Variant>& SampleValues() {
  static const std::vector<Variant> values = [] {
    std::vector<Variant> made{Empty, Null, Missing, true, false, Byte{7}, Int16{-3}, Object()};
    for (const StringView text :
         {u"", u" ", u"été", u"12", u"-3,5", u"1e9", u"deux trois  quatre", u"01/02/2020", u"FR",
          u"Key\\Sub", u"{7323691B-C1B8-4582-9D2F-2E8D4CC2ACEA}", u"\xD800x"}) {
      made.emplace_back(text);
    }
    made.emplace_back(String(300, u'o'));
    for (const Int32 number : {-1, 0, 0, 1, 1, 2, 2, 3, 40, 40000, INT32_MAX, INT32_MIN + 1}) {
      made.emplace_back(number);
    }
    for (const Double number : {0.0, 1.0, -1.0, 2.5, -1.25, 1.005, 41234.5, 1e15, -1e300}) {
      made.emplace_back(number);
    }
    for (const std::int64_t amount : {0, -15000, 123456789}) {
      made.emplace_back(Currency::FromTenThousandths(amount));
    }
    made.emplace_back(Date(43862.5));
    made.emplace_back(Array::OfStrings(std::array<String, 2>{u"a", u"b"}));
    return made;
  }();
  return values;
}

/// A value for an argument of that type.
inline Variant SomeArgument(const frame::TypeRow& type, const Pick& pick, FakeHost& host,
                            QuorlDispatch* registry) {
  if (type.by_reference) return Int16(pick(8) == 0 ? u',' : u'.');
  if (type.type == VariantType::kObject) {
    if (pick(8) == 0) return Object();
    return abi::ObjectOf(type.name == u"Registry" ? registry : &host);
  }
  const auto& values = SampleValues();
  const VariantType wanted = type.type == VariantType::kInt16 ? VariantType::kInt32 : type.type;
  for (;;) {
    const Variant& value = values[pick(values.size())];
    if (wanted == VariantType::kVariant || value.Type() == wanted) return value;
  }
}

/// What can be wrong with an array of two Int32s that is passed as one of `vt`.
struct Damage {
  const char* what;
  int vt;
  void (*work)(SAFEARRAY&);
  bool is_good = false;
};

inline constexpr Damage kDamages[] = {
    {"none", VT_I4, [](SAFEARRAY&) {}, true},
    {"laid out by a host", VT_I4, [](SAFEARRAY& array) { array.features = 0x12; }, true},
    {"of other elements", VT_R4, [](SAFEARRAY&) {}},
    {"of texts it says", VT_BSTR, [](SAFEARRAY&) {}},
    {"no data", VT_I4, [](SAFEARRAY& array) { array.data = nullptr; }},
    {"other size", VT_I4, [](SAFEARRAY& array) { array.element_size = 8; }},
    {"no dimension", VT_I4, [](SAFEARRAY& array) { array.dimensions = 0; }},
    {"many dimensions", VT_I4, [](SAFEARRAY& array) { array.dimensions = 0xFFFF; }},
    {"absurd count", VT_I4, [](SAFEARRAY& array) { array.bounds[0].count = UINT32_MAX; }},
    {"absurd bound", VT_I4, [](SAFEARRAY& array) { array.bounds[0].lower = INT32_MAX; }},
};

}  // namespace quorl
