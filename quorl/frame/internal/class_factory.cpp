#include "quorl/frame/internal/class_factory.hpp"

#include <atomic>
#include <mutex>
#include <new>

#include "quorl/abi/internal/guarded.hpp"
#include "quorl/abi/internal/ref_counted.hpp"
#include "quorl/frame/internal/catalogue.hpp"

namespace quorl::frame {
namespace {

// Guards the places of the hidden instances. Sound before any code of the library runs and until
// its memory is gone, as these places are.
constinit std::mutex hidden_guard;

// Destroys the hidden instances when the library is unloaded. One that a host still holds stays:
// where the whole process ends, the host may release it after this, and may even ask for it again.
struct DestroyWithLibrary {
  ~DestroyWithLibrary() {
    const std::scoped_lock lock(hidden_guard);
    for (const ClassRow& row : Catalogue()) {
      if (*row.hidden == nullptr || (*row.hidden)->count.load() > 1) continue;
      row.destroy(*row.hidden);
      *row.hidden = nullptr;
    }
  }
};

// The hidden instance of a class, made at the first use; a failure to make it is tried again.
ComponentObject* HiddenInstance(const ClassRow& row) {
  static const DestroyWithLibrary at_the_end;
  const std::scoped_lock lock(hidden_guard);
  if (*row.hidden == nullptr) *row.hidden = row.make(row, Holder::kLibrary);
  return *row.hidden;
}

// A class's factory. That of a global class has a second interface, which gives the hidden
// instance.
class Factory final : public abi::Counted<Factory, QuorlClassFactory> {
 public:
  explicit Factory(const ClassRow& row) noexcept : Counted(kTable), row_(row) { CountUse(+1); }
  ~Factory() { CountUse(-1); }

  static bool Answers(const GUID& identifier) { return identifier == IID_IClassFactory; }

  static HRESULT QueryInterface(QuorlClassFactory* self, const GUID* identifier,
                                void** out) noexcept {
    Factory& factory = *From(self);
    const bool wants_global = out != nullptr && identifier != nullptr &&
                              factory.row_.kind == ClassKind::kGlobal &&
                              *identifier == QUORL_IID_GLOBAL_FACTORY;
    if (!wants_global) return Counted::QueryInterface(self, identifier, out);
    AddRef(self);
    *out = &factory.global_;
    return S_OK;
  }

  static HRESULT CreateInstance(QuorlClassFactory* self, void* outer, const GUID* identifier,
                                void** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    if (identifier == nullptr) return E_POINTER;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    return abi::GuardedSlot([&] {
      QuorlDispatch* object = From(self)->row_.make(From(self)->row_, Holder::kHost);
      const HRESULT code = frame::QueryInterface(object, identifier, out);
      frame::Release(object);
      return code;
    });
  }

  static HRESULT LockServer(QuorlClassFactory*, std::int32_t lock) {
    static std::atomic<int> locks{0};
    int held = locks.load();
    do {
      if (lock == 0 && held == 0) return E_UNEXPECTED;
    } while (!locks.compare_exchange_weak(held, lock != 0 ? held + 1 : held - 1));
    CountUse(lock != 0 ? +1 : -1);
    return S_OK;
  }

 private:
  struct Global : QuorlGlobalFactory {
    Factory* owner;
  };
  static Factory* OwnerOf(QuorlGlobalFactory* self) { return static_cast<Global*>(self)->owner; }

  static HRESULT GlobalQuery(QuorlGlobalFactory* self, const GUID* identifier, void** out) {
    return QueryInterface(OwnerOf(self), identifier, out);
  }
  static std::uint32_t GlobalAddRef(QuorlGlobalFactory* self) { return AddRef(OwnerOf(self)); }
  static std::uint32_t GlobalRelease(QuorlGlobalFactory* self) { return Release(OwnerOf(self)); }

  static HRESULT GetGlobalObject(QuorlGlobalFactory* self, void** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    return abi::GuardedSlot([&] {
      ComponentObject* instance = HiddenInstance(OwnerOf(self)->row_);
      frame::AddRef(instance);
      *out = static_cast<QuorlDispatch*>(instance);
      return S_OK;
    });
  }

  static const QuorlClassFactoryTable kTable;
  static const QuorlGlobalFactoryTable kGlobalTable;

  const ClassRow& row_;
  Global global_{{&kGlobalTable}, this};
};

const QuorlClassFactoryTable Factory::kTable{QueryInterface, AddRef, Release, CreateInstance,
                                             LockServer};
const QuorlGlobalFactoryTable Factory::kGlobalTable{GlobalQuery, GlobalAddRef, GlobalRelease,
                                                    GetGlobalObject};

}  // namespace

HRESULT GetFactory(const ClassRow& row, const GUID& identifier, void** out) noexcept {
  auto* factory = new (std::nothrow) Factory(row);
  if (factory == nullptr) return E_OUTOFMEMORY;
  const HRESULT code = Factory::QueryInterface(factory, &identifier, out);
  Factory::Release(factory);
  return code;
}

}  // namespace quorl::frame
