#include "quorl/abi/internal/class_registration.hpp"

#include "quorl/abi/internal/guid.hpp"
#include "quorl/abi/internal/percent_text.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/store/operations.hpp"

namespace quorl::abi {
namespace {

// The unnamed text value of a key below the root of classes; empty where there is none.
std::string DefaultValueOf(StringView path) {
  KeyHandle key = 0;
  if (RegOpenKeyExA(kClassesRoot, ToAnsi(path), 0, kReadValues, &key) != kDone) return {};
  std::string text;
  Int32 size = 0;
  if (RegQueryValueExA(key, "", nullptr, nullptr, nullptr, &size) == kDone) {
    text.resize(static_cast<std::size_t>(size));
    if (RegQueryValueExA(key, "", nullptr, nullptr, text.data(), &size) != kDone) text.clear();
  }
  RegCloseKey(key);
  // The terminator is stored with the text.
  return text.substr(0, text.find('\0'));
}

}  // namespace

bool FindClassIdentifier(StringView progid, GUID& out) {
  // A name with a level of its own would lead elsewhere.
  if (progid.empty() || progid.find(u'\\') != StringView::npos) return false;
  return ReadGuidText(FromAnsi(DefaultValueOf(String(progid) + u"\\Clsid")), out);
}

std::string FindLibraryPath(const GUID& class_identifier) {
  const String key = u"CLSID\\" + GuidText(class_identifier) + u"\\InprocServer32";
  return PercentUnescaped(DefaultValueOf(key));
}

}  // namespace quorl::abi
