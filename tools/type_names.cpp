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
  std::string_view described;
  std::string_view argument;
  std::string_view result;
};

constexpr std::array kNames{
    Names{VariantType::kInt16, "short", "int32_t ", "int16_t"},
    Names{VariantType::kInt32, "long", "int32_t ", "int32_t"},
    Names{VariantType::kDouble, "double", "double ", "double"},
    Names{VariantType::kCurrency, "CURRENCY", "int64_t ", "int64_t"},
    Names{VariantType::kDate, "DATE", "double ", "double"},
    Names{VariantType::kString, "BSTR", "BSTR ", "BSTR"},
    Names{VariantType::kObject, "IDispatch*", "QuorlDispatch* ", "QuorlDispatch*"},
    Names{VariantType::kBoolean, "VARIANT_BOOL", "int16_t ", "int16_t"},
    Names{VariantType::kVariant, "VARIANT", "VARIANT ", "VARIANT"},
};

const Names& NamesOf(const TypeRow& type) {
  return *std::ranges::find(kNames, type.type, &Names::type);
}

}  // namespace

std::string DescribedType(const TypeRow& type) {
  std::string name = type.name.empty() ? std::string(NamesOf(type).described) : Utf8(type.name);
  if (!type.name.empty() && type.type == VariantType::kObject) name = "_" + name + "*";
  return type.by_reference ? name + "*" : name;
}

std::string SlotArgumentType(const TypeRow& type) {
  if (type.by_reference) return SlotResultType(type) + "* ";
  if (!type.name.empty() && type.type == VariantType::kObject) {
    return "Quorl" + Utf8(type.name) + "* ";
  }
  return std::string(NamesOf(type).argument);
}

std::string SlotResultType(const TypeRow& type) { return std::string(NamesOf(type).result); }

}  // namespace quorl::tools
