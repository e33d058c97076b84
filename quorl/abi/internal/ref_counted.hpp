// What every binary object of ours has in common: a table pointer at offset 0, a count of
// references, and its destruction when the count reaches 0.
#pragma once

#include <atomic>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "quorl/abi/internal/guid.hpp"
#include "quorl/abi/quorl.h"

namespace quorl::abi {

/// A counted object whose binary form is `Interface`, a structure of quorl.h; `Derived` is the
/// class itself and answers further identifiers by a static `bool Answers(const GUID&)`.
template <class Derived, class Interface>
class Counted : public Interface {
 public:
  explicit Counted(const std::remove_cvref_t<decltype(*Interface::table)>& slots) noexcept {
    this->table = &slots;
  }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  static HRESULT QueryInterface(Interface* self, const GUID* identifier, void** out) noexcept {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    if (identifier == nullptr) return E_POINTER;
    if (!(*identifier == IID_IUnknown) && !Derived::Answers(*identifier)) return E_NOINTERFACE;
    AddRef(self);
    *out = self;
    return S_OK;
  }
  static std::uint32_t AddRef(Interface* self) noexcept {
    return From(self)->count_.fetch_add(1, std::memory_order_relaxed) + 1;
  }
  static std::uint32_t Release(Interface* self) noexcept {
    const std::uint32_t left = From(self)->count_.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left == 0) delete From(self);
    return left;
  }
  static Derived* From(Interface* self) noexcept { return static_cast<Derived*>(self); }

 protected:
  ~Counted() = default;

 private:
  std::atomic<std::uint32_t> count_{1};
};

/// A counted reference to any binary object; it counts by itself.
template <class Interface>
class Reference {
 public:
  Reference() noexcept = default;
  /// Takes over a reference that the caller has.
  static Reference Adopt(Interface* object) noexcept {
    Reference reference;
    reference.object_ = object;
    return reference;
  }
  /// Counts once more.
  static Reference Share(Interface* object) noexcept {
    if (object != nullptr) object->table->AddRef(object);
    return Adopt(object);
  }
  Reference(Reference&& other) noexcept : object_(other.Detach()) {}
  Reference& operator=(Reference&& other) noexcept {
    Reference former = Adopt(object_);
    object_ = other.Detach();
    return *this;
  }
  ~Reference() {
    if (object_ != nullptr) object_->table->Release(object_);
  }

  Interface* Get() const noexcept { return object_; }
  /// For a function that puts a reference here.
  void** Receive() noexcept { return reinterpret_cast<void**>(&object_); }
  Interface* Detach() noexcept { return std::exchange(object_, nullptr); }

 private:
  Interface* object_ = nullptr;
};

}  // namespace quorl::abi
