#include "examples/parity/recorder.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "examples/command/system_error.hpp"
#include "examples/parity/binary.hpp"
#include "examples/parity/log_text.hpp"
#include "examples/parity/read_log.hpp"

namespace parity {

namespace {

constexpr std::uint32_t kMostArguments = 255;

/// Whose object it is.
enum class Side { kComponent, kHost };

Side Other(Side side) { return side == Side::kComponent ? Side::kHost : Side::kComponent; }

// The names that were asked for, by the identifiers that they got.
struct Names {
  std::map<std::int32_t, Name> members;
  std::map<std::pair<std::int32_t, std::int32_t>, Name> arguments;
};

// ------------------------------------------------------------------------------------ the file

// The log's file. Whoever writes learns nothing of a failure, which is told once.
class File {
 public:
  explicit File(const char* path)
      : path_(path), file_(open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600)) {
    if (file_ < 0) Fail(errno);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() { Close(); }

  void Write(std::string_view text) {
    while (file_ >= 0 && !text.empty()) {
      const ssize_t written = write(file_, text.data(), text.size());
      if (written >= 0) {
        text.remove_prefix(static_cast<std::size_t>(written));
      } else if (errno != EINTR) {
        Fail(errno);
      }
    }
  }
  void Fail(int error) {
    constexpr Message<2> kFailed{
        "parity: '{0}' cannot be written: {1}; the calls are recorded no more\n",
        "parity : « {0} » ne peut être écrit : {1} ; les appels ne sont plus "
        "enregistrés\n"};
    if (!is_told_) {
      static_cast<void>(
          std::fputs(kFailed(path_, command::SystemErrorText(error)).c_str(), stderr));
    }
    is_told_ = true;
    Close();
  }
  void Close() {
    if (file_ >= 0) close(file_);
    file_ = -1;
  }

 private:
  std::string path_;
  bool is_told_ = false;
  int file_;
};

// ------------------------------------------------------------------------------- the recording

class Proxy;

// What the recorded objects of one log share.
class Recording : public std::enable_shared_from_this<Recording> {
 public:
  Recording(const char* path, const std::string& header) : file_(path) {
    file_.Write(std::string(kFirstLine) + '\n' + header);
  }

  void End() {
    const std::scoped_lock lock(mutex_);
    file_.Write("end " + std::to_string(calls_) + '\n');
    file_.Close();
  }
  void Fail(int error) {
    const std::scoped_lock lock(mutex_);
    file_.Fail(error);
  }

  void Begin(const Entry& entry) {
    const std::scoped_lock lock(mutex_);
    Put(Written(entry));
    calls_ += entry.kind == Entry::Kind::kCall;
    ++depth_;
  }
  // Objects that went away meanwhile are released in the log after the outermost call.
  void Finish(const Outcome& outcome) {
    const std::scoped_lock lock(mutex_);
    --depth_;
    Put(Written(outcome));
    if (depth_ != 0) return;
    for (const std::uint32_t number : std::exchange(released_, {})) PutRelease(number);
  }

  // A proxy in front of that object, counted once more; made if there is none.
  Counted<> ProxyFor(QuorlDispatch* object, Side side, const Name& class_name);
  // The object as the other side sees it. `giver` is the side that it comes from; what stands in
  // front of a host's object for the first time goes to `made`, which keeps it alive.
  void Cross(ObjectValue& object, Side giver, std::vector<Counted<>>& made);

  // The counts of proxies are changed here, where they are also looked up.
  std::uint32_t Count(std::uint32_t& count) {
    const std::scoped_lock lock(mutex_);
    return ++count;
  }
  std::uint32_t Discount(Proxy& proxy, std::uint32_t& count) noexcept;

 private:
  using Key = std::pair<Side, QuorlDispatch*>;

  // For all of these the caller has the lock.
  Counted<> KnownProxy(const Key& key);
  void Put(const std::string& line) { file_.Write(std::string(2 * depth_, ' ') + line + '\n'); }
  void PutRelease(std::uint32_t number) { Put("release " + std::to_string(number)); }

  std::mutex mutex_;
  File file_;
  std::map<Key, Proxy*> proxies_;
  std::map<Name, std::shared_ptr<Names>> names_;  // by class
  std::vector<std::uint32_t> released_;
  std::uint32_t last_number_ = 0;
  std::size_t calls_ = 0;
  std::size_t depth_ = 0;
};

// ---------------------------------------------------------------------------- recorded objects

class Proxy : public QuorlDispatch {
 public:
  Proxy(std::shared_ptr<Recording> recording, QuorlDispatch* inner, Side side, std::uint32_t number,
        std::shared_ptr<Names> names)
      : QuorlDispatch{&kTable},
        recording_(std::move(recording)),
        inner_(Counted<>::Share(inner)),
        names_(std::move(names)),
        number_(number),
        side_(side) {}

  static Proxy* Behind(QuorlDispatch* object, const Recording& recording) {
    if (object == nullptr || object->table != &kTable) return nullptr;
    auto* const proxy = static_cast<Proxy*>(object);
    return proxy->recording_.get() == &recording ? proxy : nullptr;
  }
  QuorlDispatch* Inner() const { return inner_.Get(); }
  std::uint32_t Number() const { return number_; }
  Side ObjectSide() const { return side_; }

 private:
  friend class Recording;

  // A call on its way in, as it is written and as it is passed on.
  struct Call {
    Entry entry;
    std::vector<Counted<>> made;
    std::vector<Passed> rebuilt;
    std::vector<VARIANT> arguments;  // in the caller's order
    std::vector<std::size_t> order;  // the place in the log of each of them
  };

  static Proxy& At(QuorlDispatch* self) { return *static_cast<Proxy*>(self); }

  // ----------------------------------------------------------------------------- the slots

  static HRESULT QueryInterface(QuorlDispatch* self, const GUID* identifier, void** out) {
    const auto is = [identifier](const GUID& known) {
      return std::memcmp(identifier, &known, sizeof(known)) == 0;
    };
    const bool is_own =
        out != nullptr && identifier != nullptr && (is(IID_IUnknown) || is(IID_IDispatch));
    QuorlDispatch* const inner = At(self).Inner();
    if (!is_own) return inner->table->QueryInterface(inner, identifier, out);
    AddRef(self);
    *out = self;
    return S_OK;
  }
  static std::uint32_t AddRef(QuorlDispatch* self) {
    return At(self).recording_->Count(At(self).count_);
  }
  static std::uint32_t Release(QuorlDispatch* self) {
    const std::shared_ptr<Recording> recording = At(self).recording_;
    const std::uint32_t left = recording->Discount(At(self), At(self).count_);
    if (left == 0) delete &At(self);
    return left;
  }
  static HRESULT GetTypeInfoCount(QuorlDispatch* self, std::uint32_t* count) {
    QuorlDispatch* const inner = At(self).Inner();
    return inner->table->GetTypeInfoCount(inner, count);
  }
  static HRESULT GetTypeInfo(QuorlDispatch* self, std::uint32_t index, std::uint32_t lcid,
                             void** out) {
    QuorlDispatch* const inner = At(self).Inner();
    return inner->table->GetTypeInfo(inner, index, lcid, out);
  }
  static HRESULT GetIDsOfNames(QuorlDispatch* self, const GUID* identifier, const char16_t** names,
                               std::uint32_t count, std::uint32_t lcid, std::int32_t* ids) {
    QuorlDispatch* const inner = At(self).Inner();
    const HRESULT code = inner->table->GetIDsOfNames(inner, identifier, names, count, lcid, ids);
    const bool is_wrong =
        names == nullptr || ids == nullptr || count == 0 || count > kMostArguments;
    if (is_wrong || std::count(names, names + count, nullptr) != 0) return code;
    At(self).Noting([&] { At(self).NoteNames(names, count, ids, code); });
    return code;
  }
  static HRESULT Invoke(QuorlDispatch* self, std::int32_t id, const GUID* identifier,
                        std::uint32_t lcid, std::uint16_t flags, DISPPARAMS* parameters,
                        VARIANT* result, EXCEPINFO* info, std::uint32_t* wrong_argument) {
    Proxy& proxy = At(self);
    // Host and component may let go of this object while it is called.
    const auto held = Counted<>::Share(self);
    QuorlDispatch* const inner = proxy.Inner();
    Call call;
    if (IsWrong(parameters) || !proxy.Noting([&] { proxy.Begin(call, id, flags, *parameters); })) {
      return inner->table->Invoke(inner, id, identifier, lcid, flags, parameters, result, info,
                                  wrong_argument);
    }
    DISPPARAMS passed = *parameters;
    passed.arguments = call.arguments.data();
    Record record;
    std::uint32_t wrong = 0;
    const HRESULT code = inner->table->Invoke(inner, id, identifier, lcid, flags, &passed, result,
                                              record.Address(), &wrong);
    proxy.Noting([&] { proxy.Finish(call, code, result, record, wrong); });
    if (info != nullptr && code == DISP_E_EXCEPTION) *info = record.Detach();
    if (wrong_argument != nullptr && code < 0) *wrong_argument = wrong;
    return code;
  }
  static const QuorlDispatchTable kTable;

  // ------------------------------------------------------------------------- what is noted

  // Nothing that fails here reaches the caller; false when memory ran out.
  template <class Work>
  bool Noting(Work work) noexcept {
    try {
      work();
      return true;
    } catch (const std::exception&) {
      recording_->Fail(ENOMEM);
      return false;
    }
  }

  static bool IsWrong(const DISPPARAMS* parameters) {
    return parameters == nullptr || parameters->argument_count > kMostArguments ||
           parameters->named_count > parameters->argument_count ||
           (parameters->argument_count != 0 && parameters->arguments == nullptr) ||
           (parameters->named_count != 0 && parameters->named == nullptr);
  }

  void NoteNames(const char16_t** names, std::uint32_t count, const std::int32_t* ids,
                 HRESULT code) {
    if (code >= 0) {
      names_->members[ids[0]] = names[0];
      for (std::uint32_t i = 1; i < count; ++i) names_->arguments[{ids[0], ids[i]}] = names[i];
      return;
    }
    Entry entry;
    entry.kind = Entry::Kind::kFind;
    entry.object = number_;
    entry.name = names[0];
    for (std::uint32_t i = 1; i < count; ++i) entry.arguments.push_back({names[i], {}});
    recording_->Begin(entry);
    Record none;
    recording_->Finish(OutcomeOf(code, nullptr, none, 0));
  }

  // A host may know identifiers from another object of the class; the component tells their names.
  Name NameOf(std::int32_t id) {
    const auto known = names_->members.find(id);
    if (known != names_->members.end()) return known->second;
    Counted<QuorlTypeInfo> info;
    Counted<> answered;
    BSTR name = nullptr;
    if (id > 0 && inner_.Get()->table->GetTypeInfo(Inner(), 0, 0, answered.Receive()) >= 0 &&
        answered &&
        answered.Get()->table->QueryInterface(answered.Get(), &QUORL_IID_TYPE_INFO,
                                              info.Receive()) >= 0 &&
        info.Get()->table->GetDocumentation(info.Get(), id, &name, nullptr) >= 0) {
      return names_->members[id] = TakeText(name);
    }
    return Numbered(id);
  }
  Name ArgumentName(std::int32_t member, std::int32_t id) const {
    if (id == QUORL_PUT_VALUE) return kPutValue;
    const auto known = names_->arguments.find({member, id});
    return known == names_->arguments.end() ? Numbered(id) : known->second;
  }

  void Begin(Call& call, std::int32_t id, std::uint16_t flags, const DISPPARAMS& parameters) {
    call.entry.object = number_;
    call.entry.flags = flags;
    call.entry.name = NameOf(id);
    call.entry.arguments =
        ArgumentsOf(parameters, [&](std::int32_t named) { return ArgumentName(id, named); });
    call.order = BinaryOrder(call.entry.arguments);
    call.arguments.assign(parameters.arguments, parameters.arguments + parameters.argument_count);
    for (std::size_t i = 0; i < call.order.size(); ++i) {
      Value& value = call.entry.arguments[call.order[i]].value;
      if (!Cross(value, Other(side_), call.made)) continue;
      call.rebuilt.emplace_back(value);
      call.arguments[i] = call.rebuilt.back().Get();
    }
    recording_->Begin(call.entry);
  }

  void Finish(Call& call, HRESULT code, VARIANT* result, Record& record, std::uint32_t wrong) {
    Outcome outcome = OutcomeOf(code, result, record, wrong);
    if (outcome.result && Cross(*outcome.result, side_, call.made)) {
      Passed rebuilt(*outcome.result);
      VariantClear(result);
      *result = rebuilt.Detach();
    }
    for (std::size_t place = 0; place < call.order.size(); ++place) {
      const auto found = std::ranges::find(call.order, place);
      Value now = ValueOf(call.arguments[static_cast<std::size_t>(found - call.order.begin())]);
      if (!now.If<ReferenceValue>()) continue;
      Cross(now, side_, call.made);
      outcome.written_back.push_back(std::move(now));
    }
    recording_->Finish(outcome);
  }

  // Whether there are objects in the value.
  bool Cross(Value& value, Side giver, std::vector<Counted<>>& made) {
    bool has_objects = false;
    ForEachObject(value, [&](ObjectValue& object) {
      has_objects = true;
      recording_->Cross(object, giver, made);
    });
    return has_objects;
  }

  std::shared_ptr<Recording> recording_;
  Counted<> inner_;
  std::shared_ptr<Names> names_;
  std::uint32_t number_;
  std::uint32_t count_ = 1;
  Side side_;
};

const QuorlDispatchTable Proxy::kTable{QueryInterface, AddRef,        Release, GetTypeInfoCount,
                                       GetTypeInfo,    GetIDsOfNames, Invoke};

// Counted here and not by AddRef, which takes the lock.
Counted<> Recording::KnownProxy(const Key& key) {
  const auto known = proxies_.find(key);
  if (known == proxies_.end()) return {};
  ++known->second->count_;
  return Counted<>::Adopt(known->second);
}

Counted<> Recording::ProxyFor(QuorlDispatch* object, Side side, const Name& class_name) {
  const std::scoped_lock lock(mutex_);
  if (auto known = KnownProxy({side, object})) return known;
  auto& names = names_[class_name];
  if (names == nullptr || side == Side::kHost) names = std::make_shared<Names>();
  auto proxy = std::make_unique<Proxy>(shared_from_this(), object, side, last_number_ + 1, names);
  Entry entry;
  entry.kind = side == Side::kHost ? Entry::Kind::kHost : Entry::Kind::kObject;
  entry.object = ++last_number_;
  entry.name = class_name;
  Put(Written(entry));
  proxies_[{side, object}] = proxy.get();
  return Counted<>::Adopt(proxy.release());
}

void Recording::Cross(ObjectValue& object, Side giver, std::vector<Counted<>>& made) {
  if (object.pointer == nullptr) return;
  if (Proxy* const given = Proxy::Behind(object.pointer, *this)) {
    object.number = given->Number();
    if (given->ObjectSide() != giver) object.pointer = given->Inner();
    return;
  }
  Counted<> proxy;
  if (giver == Side::kHost) {
    proxy = ProxyFor(object.pointer, giver, {});
  } else {
    const std::scoped_lock lock(mutex_);
    proxy = KnownProxy({giver, object.pointer});
  }
  if (!proxy) return;  // one that the component made by itself is none of the log's
  object.pointer = proxy.Get();
  object.number = Proxy::Behind(object.pointer, *this)->Number();
  made.push_back(std::move(proxy));
}

std::uint32_t Recording::Discount(Proxy& proxy, std::uint32_t& count) noexcept {
  const std::scoped_lock lock(mutex_);
  if (--count != 0) return count;
  proxies_.erase({proxy.ObjectSide(), proxy.Inner()});
  try {
    depth_ == 0 ? PutRelease(proxy.Number()) : released_.push_back(proxy.Number());
  } catch (const std::bad_alloc&) {
    file_.Fail(ENOMEM);
  }
  return 0;
}

}  // namespace

}  // namespace parity

struct ParityRecorder {
  std::shared_ptr<parity::Recording> recording;
};

extern "C" {

HRESULT ParityOpen(const char* path, const char* header, ParityRecorder** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  if (path == nullptr) return E_POINTER;
  try {
    const std::string lines = header == nullptr ? "" : header;
    const parity::Log log =
        parity::ReadLog(std::string(parity::kFirstLine) + '\n' + lines + "end 0\n");
    if (!log.entries.empty() || !log.ended_with) return E_INVALIDARG;
    *out = new ParityRecorder{std::make_shared<parity::Recording>(path, lines)};
    return S_OK;
  } catch (const parity::Unreadable&) {
    return E_INVALIDARG;
  } catch (const std::exception&) {
    return E_OUTOFMEMORY;
  }
}

HRESULT ParityRecord(ParityRecorder* recorder, const char16_t* class_name, QuorlDispatch* object,
                     QuorlDispatch** recorded) {
  if (recorded == nullptr) return E_POINTER;
  *recorded = nullptr;
  if (recorder == nullptr || class_name == nullptr || object == nullptr) return E_POINTER;
  try {
    if (parity::Proxy::Behind(object, *recorder->recording) != nullptr) {
      object->table->AddRef(object);
      *recorded = object;
      return S_OK;
    }
    auto made = recorder->recording->ProxyFor(object, parity::Side::kComponent, class_name);
    made.Get()->table->AddRef(made.Get());
    *recorded = made.Get();
    return S_OK;
  } catch (const std::exception&) {
    return E_OUTOFMEMORY;
  }
}

void ParityClose(ParityRecorder* recorder) {
  if (recorder != nullptr) recorder->recording->End();
  delete recorder;
}

}  // extern "C"
