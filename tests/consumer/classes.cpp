// A host that has registered nothing asks for classes: by a name in any case, by an unknown one and
// by an identifier; then for the class for which its user has registered what is not there.
#include <cstdio>

#include "quorl/abi/quorl.h"
#include "quorl/store/operations.hpp"

int main() {
  void* object = nullptr;
  const auto show = [](HRESULT code) { std::printf("%08X ", static_cast<unsigned>(code)); };
  const auto show_money = [&] {
    show(CoCreateInstance(&QUORL_CLSID_Money, nullptr, 0, &IID_IUnknown, &object));
  };
  QuorlSetStore(nullptr, nullptr);
  show(QuorlGlobalObject(u"quorl.MATH", &object));
  show(QuorlGlobalObject(u"Quorl.Nothing", &object));
  show_money();
  quorl::KeyHandle key = 0;
  quorl::RegCreateKeyExA(quorl::kClassesRoot,
                         "CLSID\\{0553AA64-C47C-467D-B2DD-13C658FBCA74}\\InprocServer32", 0, "", 0,
                         quorl::kSetValues, nullptr, &key, nullptr);
  quorl::RegSetValueExA(key, "", 0, quorl::REG_SZ, "/nowhere", 9);
  show_money();
}
