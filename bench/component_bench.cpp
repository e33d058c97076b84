// What a call costs a host: the member in C++, through the component's table, and by name.
#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

#include "quorl/abi/quorl.h"
#include "quorl/money/money.hpp"
#include "quorl/numeric/math.hpp"
#include "quorl/text/strings.hpp"

namespace {

using namespace quorl;

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

// One call by name as hosts make it again and again: the identifier is known.
class NamedCall {
 public:
  NamedCall(void* object, const char16_t* name) : object_(static_cast<QuorlDispatch*>(object)) {
    object_->table->GetIDsOfNames(object_, nullptr, &name, 1, 0, &id_);
  }

  void operator()(VARIANT* arguments, std::uint32_t count) {
    DISPPARAMS parameters{arguments, nullptr, count, 0};
    VARIANT result{};
    object_->table->Invoke(object_, id_, nullptr, 0, DISPATCH_METHOD, &parameters, &result, nullptr,
                           nullptr);
    benchmark::DoNotOptimize(result);
    VariantClear(&result);
  }

 private:
  QuorlDispatch* object_;
  std::int32_t id_ = 0;
};

VARIANT Whole(std::int32_t number) {
  VARIANT value{};
  value.vt = VT_I4;
  value.value.i4 = number;
  return value;
}

void MinInCpp(benchmark::State& state) {
  const Variant a = 3;
  const Variant b = 5;
  for (auto _ : state) benchmark::DoNotOptimize(Math::Min(a, b));
}
BENCHMARK(MinInCpp);

void MinBySlot(benchmark::State& state) {
  auto* math = Make<QuorlMath>(QUORL_CLSID_Math, QUORL_IID_Math);
  for (auto _ : state) {
    VARIANT result{};
    math->table->Min(math, Whole(3), Whole(5), &result);
    benchmark::DoNotOptimize(result);
  }
}
BENCHMARK(MinBySlot);

void MinByName(benchmark::State& state) {
  NamedCall call(Make<QuorlMath>(QUORL_CLSID_Math, QUORL_IID_Math), u"Min");
  VARIANT arguments[] = {Whole(5), Whole(3)};
  for (auto _ : state) call(arguments, 2);
}
BENCHMARK(MinByName);

constexpr const char16_t* kSentence = u"Bruxelles 1000 Belgique";

void GetTokenInCpp(benchmark::State& state) {
  const String text = kSentence;
  for (auto _ : state) benchmark::DoNotOptimize(Strings::GetToken(text, u" ", 2));
}
BENCHMARK(GetTokenInCpp);

void GetTokenBySlot(benchmark::State& state) {
  auto* strings = Make<QuorlStrings>(QUORL_CLSID_Strings, QUORL_IID_Strings);
  BSTR text = SysAllocString(kSentence);
  BSTR separator = SysAllocString(u" ");
  BSTR result = nullptr;
  for (auto _ : state) {
    strings->table->GetToken(strings, text, separator, 2, &result);
    benchmark::DoNotOptimize(result);
  }
  for (BSTR owned : {text, separator, result}) SysFreeString(owned);
}
BENCHMARK(GetTokenBySlot);

void GetTokenByName(benchmark::State& state) {
  NamedCall call(Make<QuorlStrings>(QUORL_CLSID_Strings, QUORL_IID_Strings), u"GetToken");
  VARIANT arguments[] = {Whole(2), {}, {}};
  for (int i : {1, 2}) {
    arguments[i].vt = VT_BSTR;
    arguments[i].value.bstr = SysAllocString(i == 1 ? u" " : kSentence);
  }
  for (auto _ : state) call(arguments, 3);
  for (VARIANT& argument : arguments) VariantClear(&argument);
}
BENCHMARK(GetTokenByName);

constexpr std::int64_t kAmount = 12802100;  // 1280.21

void ToTextInCpp(benchmark::State& state) {
  Money money;
  money.Language = u"FR";
  for (auto _ : state) {
    benchmark::DoNotOptimize(money.ToText(Currency::FromTenThousandths(kAmount)));
  }
}
BENCHMARK(ToTextInCpp);

QuorlMoney* FrenchMoney() {
  auto* money = Make<QuorlMoney>(QUORL_CLSID_Money, QUORL_IID_Money);
  BSTR french = SysAllocString(u"FR");
  money->table->put_Language(money, french);
  SysFreeString(french);
  return money;
}

void ToTextBySlot(benchmark::State& state) {
  QuorlMoney* money = FrenchMoney();
  BSTR result = nullptr;
  for (auto _ : state) {
    money->table->ToText(money, kAmount, &result);
    benchmark::DoNotOptimize(result);
  }
  SysFreeString(result);
}
BENCHMARK(ToTextBySlot);

void ToTextByName(benchmark::State& state) {
  NamedCall call(FrenchMoney(), u"ToText");
  VARIANT amount{};
  amount.vt = VT_CY;
  amount.value.cy = kAmount;
  for (auto _ : state) call(&amount, 1);
}
BENCHMARK(ToTextByName);

}  // namespace
