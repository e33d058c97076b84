// What a call costs a host of the component, which is loaded as a host loads it.
#include <dlfcn.h>

#include <array>
#include <cstdio>
#include <cstdlib>

#include "bench/component/inputs.hpp"
#include "quorl/abi/quorl.h"
#include "quorl/numeric/math.hpp"

namespace {

using namespace quorl;
using namespace quorl::bench;

constexpr const char* kWho = "Quorl";

template <class Interface>
Interface* Make(const GUID& class_identifier, const GUID& identifier) {
  static void* const library = dlopen(QUORL_BINARY_DIR "/libquorl.so", RTLD_NOW);
  void* symbol = library == nullptr ? nullptr : dlsym(library, "DllGetClassObject");
  void* factory = nullptr;
  void* object = nullptr;
  if (symbol != nullptr) {
    reinterpret_cast<DllGetClassObjectFunction>(symbol)(&class_identifier, &IID_IClassFactory,
                                                        &factory);
  }
  if (factory != nullptr) {
    auto* maker = static_cast<QuorlClassFactory*>(factory);
    maker->table->CreateInstance(maker, nullptr, &identifier, &object);
    maker->table->Release(maker);
  }
  if (object == nullptr) {
    std::fputs("libquorl.so gives no object\n", stderr);
    std::exit(1);
  }
  return static_cast<Interface*>(object);
}

VARIANT Whole(std::int32_t number) {
  VARIANT value{};
  value.vt = VT_I4;
  value.value.i4 = number;
  return value;
}

class NamedMin {
 public:
  std::int32_t Identifier() const {
    const char16_t* name = u"Min";
    std::int32_t identifier = 0;
    object_->table->GetIDsOfNames(object_, nullptr, &name, 1, 0, &identifier);
    return identifier;
  }
  std::int32_t Call(std::int32_t identifier, std::pair<std::int32_t, std::int32_t> pair) const {
    std::array<VARIANT, 2> arguments{Whole(pair.second), Whole(pair.first)};
    DISPPARAMS parameters{arguments.data(), nullptr, 2, 0};
    VARIANT result{};
    object_->table->Invoke(object_, identifier, nullptr, 0, DISPATCH_METHOD, &parameters, &result,
                           nullptr, nullptr);
    return result.value.i4;
  }

 private:
  // A counted object's table begins with those of every dispatch object.
  QuorlDispatch* object_ =
      reinterpret_cast<QuorlDispatch*>(Make<QuorlMath>(QUORL_CLSID_Math, QUORL_IID_Math));
};

void TokensThroughTable() {
  auto* strings = Make<QuorlStrings>(QUORL_CLSID_Strings, QUORL_IID_Strings);
  BSTR separator = SysAllocString(u";");
  for (const std::size_t units : {30U, 300U, 3'000U, 30'000U}) {
    const String line(units, u'a');
    BSTR text = SysAllocStringLen(line.data(), static_cast<std::uint32_t>(units));
    Measure(
        "GetToken through the table, all N units", AtSize(kWho, units),
        [] { return std::array{1}; },
        [=](int index) {
          BSTR result = nullptr;
          strings->table->GetToken(strings, text, separator, index, &result);
          SysFreeString(result);
          return result;
        });
  }
}

const AtStart rows([] {
  const NamedMin min;
  Measure(kByName, kWho, Pairs, [=](auto pair) { return min.Call(min.Identifier(), pair); });
  Measure(kByIdentifier, kWho, Pairs,
          [=, identifier = min.Identifier()](auto pair) { return min.Call(identifier, pair); });
  auto* math = Make<QuorlMath>(QUORL_CLSID_Math, QUORL_IID_Math);
  Measure(kThroughTable, kWho, Pairs, [=](auto pair) {
    VARIANT result{};
    math->table->Min(math, Whole(pair.first), Whole(pair.second), &result);
    return result.value.i4;
  });
  Measure(kThroughTable, "plain call in C++", Pairs,
          [](auto pair) { return Math::Min(pair.first, pair.second); });
  TokensThroughTable();
});

}  // namespace
