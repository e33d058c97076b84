#include "tools/type_names.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include "quorl/runtime/utf.hpp"

namespace quorl::tools {

using namespace frame;
namespace {

struct Names {
  VariantType type;
  StringView value;
  std::string_view described;
  std::string_view argument;
  std::string_view result;
};

constexpr std::array kNames{
    Names{VariantType::kInt16, u"Int16", "short", "int32_t ", "int16_t"},
    Names{VariantType::kInt32, u"Int32", "long", "int32_t ", "int32_t"},
    Names{VariantType::kDouble, u"Double", "double", "double ", "double"},
    Names{VariantType::kCurrency, u"Currency", "CURRENCY", "int64_t ", "int64_t"},
    Names{VariantType::kDate, u"Date", "DATE", "double ", "double"},
    Names{VariantType::kString, u"String", "BSTR", "BSTR ", "BSTR"},
    Names{VariantType::kObject, u"Object", "IDispatch*", "QuorlDispatch* ", "QuorlDispatch*"},
    Names{VariantType::kBoolean, u"Boolean", "VARIANT_BOOL", "int16_t ", "int16_t"},
    Names{VariantType::kVariant, u"Variant", "VARIANT", "VARIANT ", "VARIANT"},
};

const Names& NamesOf(VariantType type) { return *std::ranges::find(kNames, type, &Names::type); }

}  // namespace

std::vector<VariantType> ValueTypes() {
  std::vector<VariantType> types;
  for (const Names& names : kNames) types.push_back(names.type);
  return types;
}

StringView ValueTypeName(VariantType type) { return NamesOf(type).value; }

std::string DescribedType(VariantType type, const std::string& published, bool by_reference) {
  std::string name = published.empty() ? std::string(NamesOf(type).described) : published;
  if (!published.empty() && type == VariantType::kObject) name += "*";
  return by_reference ? name + "*" : name;
}

std::string SlotArgumentType(const TypeRow& type) {
  if (type.by_reference) return SlotResultType(type) + "* ";
  if (!type.name.empty() && type.type == VariantType::kObject) {
    return "Quorl" + Utf8(type.name) + "* ";
  }
  return std::string(NamesOf(type.type).argument);
}

std::string SlotResultType(const TypeRow& type) { return std::string(NamesOf(type.type).result); }

}  // namespace quorl::tools
