// An instance of a class in binary form: its table, its support for error info, its count.
//
// The tables of all classes begin with the same seven slots, which are here and know the class only
// by its catalogue row.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "quorl/abi/quorl.h"

namespace quorl {

class Object;
class Registry;

namespace frame {

struct ClassRow;

/// Who holds an object: hidden instances do not keep the library from being unloaded.
enum class Holder { kHost, kLibrary };

/// What every instance has before its own state.
struct ComponentObject : QuorlDispatch {
  ComponentObject(const ClassRow& of_class, Holder holder) noexcept;
  ComponentObject(const ComponentObject&) = delete;
  ComponentObject& operator=(const ComponentObject&) = delete;

  QuorlSupportErrorInfo support;
  std::atomic<std::uint32_t> count{1};
  const ClassRow& row;
  const Holder held_by;

 protected:
  ~ComponentObject();
};

/// What stands behind a pointer that a host passes to a slot.
inline ComponentObject& At(QuorlDispatch* self) noexcept {
  return *static_cast<ComponentObject*>(self);
}

/// An instance of a class.
template <class Class>
struct InstanceOf : ComponentObject {
  using ComponentObject::ComponentObject;
  Class instance;

  static Class& In(QuorlDispatch* self) noexcept {
    return static_cast<InstanceOf&>(At(self)).instance;
  }
};

/// The seven slots with which every class's table begins.
HRESULT QueryInterface(QuorlDispatch* self, const GUID* identifier, void** out) noexcept;
std::uint32_t AddRef(QuorlDispatch* self) noexcept;
std::uint32_t Release(QuorlDispatch* self) noexcept;
HRESULT GetTypeInfoCount(QuorlDispatch* self, std::uint32_t* count) noexcept;
HRESULT GetTypeInfo(QuorlDispatch* self, std::uint32_t index, std::uint32_t lcid,
                    void** out) noexcept;
HRESULT GetIDsOfNames(QuorlDispatch* self, const GUID* identifier, const char16_t** names,
                      std::uint32_t count, std::uint32_t lcid, std::int32_t* ids) noexcept;
HRESULT Invoke(QuorlDispatch* self, std::int32_t id, const GUID* identifier, std::uint32_t lcid,
               std::uint16_t flags, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* info,
               std::uint32_t* wrong_argument) noexcept;

inline constexpr std::size_t kCommonSlotCount = sizeof(QuorlDispatchTable) / sizeof(void*);
inline constexpr QuorlDispatchTable kCommonSlots{
    &QueryInterface, &AddRef, &Release, &GetTypeInfoCount, &GetTypeInfo, &GetIDsOfNames, &Invoke};

/// A counted reference that keeps an object alive during a call of its own. It is needed where the
/// call may come to code of the host, which may release its last reference meanwhile: a member that
/// works on the object may free an object of the host's, one that does not may be given one.
class KeptAlive {
 public:
  KeptAlive(QuorlDispatch* object, bool is_needed) noexcept
      : object_(is_needed ? object : nullptr) {
    if (object_ != nullptr) AddRef(object_);
  }
  ~KeptAlive() {
    if (object_ != nullptr) Release(object_);
  }
  KeptAlive(const KeptAlive&) = delete;
  KeptAlive& operator=(const KeptAlive&) = delete;

 private:
  QuorlDispatch* object_;
};

/// What keeps the library loaded: objects and factories of hosts, and their locks.
void CountUse(int change) noexcept;
bool IsInUse() noexcept;

/// The instance behind the `Registry` that a caller of `Forms` passes. Failure 91 for null, 13 for
/// an object that is no Registry of this library. It belongs to the caller, whose reference keeps
/// it for the call.
Registry& RegistryBehind(QuorlDispatch* pointer);
Registry& RegistryBehind(const Object& object);

}  // namespace frame
}  // namespace quorl
