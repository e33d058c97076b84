#include "quorl/abi/internal/class_registration.hpp"

#include "quorl/abi/internal/errors.hpp"
#include "quorl/abi/internal/guid.hpp"
#include "quorl/abi/internal/machine_classes.hpp"
#include "quorl/abi/internal/percent_text.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/store/open_key.hpp"
#include "quorl/store/operations.hpp"

namespace quorl::abi {
namespace {

// Reads the unnamed value of a key below the root of classes.
Int32 ReadDefaultValue(const std::string& path, std::string& text) {
  KeyHandle handle = 0;
  Int32 code = RegOpenKeyExA(kClassesRoot, path, 0, kReadValues, &handle);
  const OpenKey key(handle);
  Int32 size = 0;
  if (code == kDone) code = RegQueryValueExA(handle, "", nullptr, nullptr, nullptr, &size);
  while (code == kDone || code == kBufferTooSmall) {
    text.resize(static_cast<std::size_t>(size));
    code = RegQueryValueExA(handle, "", nullptr, nullptr, text.data(), &size);
    if (code != kBufferTooSmall) break;
  }
  return code;
}

// Whether a code says that there is no such key, that no key can have that name, or that this user
// has no place for settings.
bool IsNothing(Int32 code) {
  return code == kAbsent || code == kKeyDeleted || code == kWrongArgument ||
         code == kFolderNotFound;
}

// The unnamed text value of a key below the root of classes; empty where there is none. Raises the
// code of a store that cannot be read.
std::string DefaultValueOf(StringView path) {
  std::string text;
  const Int32 code = ReadDefaultValue(ToAnsi(path), text);
  if (IsNothing(code)) return {};
  RequireDone(code);
  // The terminator is stored with the text.
  return text.substr(0, text.find('\0'));
}

}  // namespace

bool FindClassIdentifier(StringView progid, GUID& out) {
  // A name with a level of its own would lead elsewhere.
  if (progid.empty() || progid.find(u'\\') != StringView::npos) return false;
  const std::string text = DefaultValueOf(String(progid) + u"\\Clsid");
  return text.empty() ? FindMachineClass(progid, out) : ReadGuidText(FromAnsi(text), out);
}

std::string FindLibraryPath(const GUID& class_identifier) {
  const String key = u"CLSID\\" + GuidText(class_identifier) + u"\\InprocServer32";
  const std::string path = DefaultValueOf(key);
  return path.empty() ? FindMachineLibrary(class_identifier) : PercentUnescaped(path);
}

}  // namespace quorl::abi
