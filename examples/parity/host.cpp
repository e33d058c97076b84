#include "examples/parity/host.hpp"

#include <filesystem>

namespace parity {

namespace {

// The contract's own form of UTF-8 texts.
class Wide {
 public:
  explicit Wide(const std::string& text) { QuorlFromUtf8Len(text.data(), text.size(), &text_); }
  Wide(const Wide&) = delete;
  Wide& operator=(const Wide&) = delete;
  ~Wide() { SysFreeString(text_); }
  const char16_t* Get() const { return text_; }

 private:
  BSTR text_ = nullptr;
};

HRESULT KeepSettings(const std::string& store) {
  if (store.empty()) return QuorlSetStore(nullptr, nullptr);
  // The library takes no relative folder.
  const std::filesystem::path folder = std::filesystem::absolute(store);
  return QuorlSetStore(Wide(folder).Get(), Wide(folder / "machine").Get());
}

}  // namespace

bool SetUp(const Header& header, const std::string& component, const std::string& store,
           std::string& refused) {
  refused = store;
  if (KeepSettings(store) < 0) return false;
  refused = header.locale;
  if (QuorlSetLocale(Wide(header.locale).Get()) < 0) return false;
  refused = "screen";
  if (QuorlSetScreen(header.screen_width, header.screen_height) < 0) return false;
  refused = component;
  return QuorlRegister(Wide(component).Get()) >= 0;
}

Counted<> NewObject(const Name& class_name) {
  GUID class_identifier{};
  Counted<> object;
  if (CLSIDFromProgID((u"Quorl." + class_name).c_str(), &class_identifier) >= 0) {
    CoCreateInstance(&class_identifier, nullptr, 0, &IID_IDispatch, object.Receive());
  }
  return object;
}

}  // namespace parity
