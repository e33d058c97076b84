#include "examples/parity/host.hpp"

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

}  // namespace

bool SetUp(const Header& header, const std::string& component, const std::string& store,
           std::string& refused) {
  const Wide user(store);
  const Wide machine(store + "/machine");
  const HRESULT stored =
      store.empty() ? QuorlSetStore(nullptr, nullptr) : QuorlSetStore(user.Get(), machine.Get());
  refused = store;
  if (stored < 0) return false;
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
