#include "quorl/frame/internal/class_factory.hpp"

#include <array>
#include <atomic>
#include <mutex>
#include <new>

#include "quorl/abi/internal/ref_counted.hpp"
#include "quorl/frame/internal/catalogue.hpp"
#include "quorl/frame/internal/guarded.hpp"

namespace quorl::frame {
namespace {

using abi::operator==;

constexpr std::size_t kClassCount = 12;

// Both are sound before any code of the library runs and until its memory is gone.
constinit std::mutex hidden_guard;
constinit std::array<ComponentObject*, kClassCount> hidden_instances{};

// Ends the hidden instances when the library is unloaded. One that a host still holds stays: where
// the whole process ends, the host may let go of it after this, and may even ask for it again.
struct EndWithLibrary {
  ~EndWithLibrary() {
    const std::scoped_lock lock(hidden_guard);
    for (ComponentObject*& instance : hidden_instances) {
      if (instance == nullptr || instance->count.load() > 1) continue;
      instance->row.end(instance);
      instance = nullptr;
    }
  }
};

// The hidden instance of a class, made at the first use; a failure to make it is tried again.
ComponentObject* HiddenInstance(const ClassRow& row) {
  static const EndWithLibrary end;
  const std::scoped_lock lock(hidden_guard);
  ComponentObject*& instance =
      hidden_instances[static_cast<std::size_t>(&row - Catalogue().data())];
  if (instance == nullptr) instance = row.make(row, Holder::kLibrary);
  return instance;
}

class GlobalFactory final : public abi::Counted<GlobalFactory, QuorlGlobalFactory> {
 public:
  explicit GlobalFactory(const ClassRow& row) noexcept : Counted(kTable), row_(row) {
    CountUse(+1);
  }
  ~GlobalFactory() { CountUse(-1); }

  static bool Answers(const GUID& identifier) { return identifier == QUORL_IID_GLOBAL_FACTORY; }

  static HRESULT GetGlobalObject(QuorlGlobalFactory* self, void** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    return Guarded([&] {
      ComponentObject* instance = HiddenInstance(From(self)->row_);
      frame::AddRef(instance);
      *out = static_cast<QuorlDispatch*>(instance);
    });
  }

 private:
  static const QuorlGlobalFactoryTable kTable;

  const ClassRow& row_;
};

const QuorlGlobalFactoryTable GlobalFactory::kTable{QueryInterface, AddRef, Release,
                                                    GetGlobalObject};

class ClassFactory final : public abi::Counted<ClassFactory, QuorlClassFactory> {
 public:
  explicit ClassFactory(const ClassRow& row) noexcept : Counted(kTable), row_(row) { CountUse(+1); }
  ~ClassFactory() { CountUse(-1); }

  static bool Answers(const GUID& identifier) { return identifier == IID_IClassFactory; }

  static HRESULT CreateInstance(QuorlClassFactory* self, void* outer, const GUID* identifier,
                                void** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    if (identifier == nullptr) return E_POINTER;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    HRESULT answered = S_OK;
    const HRESULT made = Guarded([&] {
      QuorlDispatch* object = From(self)->row_.make(From(self)->row_, Holder::kHost);
      answered = frame::QueryInterface(object, identifier, out);
      frame::Release(object);
    });
    return made == S_OK ? answered : made;
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
  static const QuorlClassFactoryTable kTable;

  const ClassRow& row_;
};

const QuorlClassFactoryTable ClassFactory::kTable{QueryInterface, AddRef, Release, CreateInstance,
                                                  LockServer};

// A new object, asked for the interface that the caller wants.
template <class Factory>
HRESULT Give(const ClassRow& row, const GUID& identifier, void** out) noexcept {
  auto* factory = new (std::nothrow) Factory(row);
  if (factory == nullptr) return E_OUTOFMEMORY;
  const HRESULT code = Factory::QueryInterface(factory, &identifier, out);
  Factory::Release(factory);
  return code;
}

}  // namespace

HRESULT GetFactory(const ClassRow& row, const GUID& identifier, void** out) noexcept {
  const bool wants_global = identifier == QUORL_IID_GLOBAL_FACTORY;
  if (wants_global && row.kind != ClassKind::kGlobal) return E_NOINTERFACE;
  return wants_global ? Give<GlobalFactory>(row, identifier, out)
                      : Give<ClassFactory>(row, identifier, out);
}

}  // namespace quorl::frame
