// Tells each change of a key, or of what is below it, as it happens. There is no daemon: the
// registry's file is looked at ten times a second, and read where it has changed.
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <string>
#include <utility>

#include "examples/command/output.hpp"
#include "examples/settings/commands.hpp"
#include "examples/settings/difference.hpp"
#include "examples/settings/failure.hpp"
#include "examples/settings/keys.hpp"
#include "examples/settings/messages.hpp"

namespace settings {

using namespace quorl;
namespace {

constexpr timespec kPause{.tv_sec = 0, .tv_nsec = 100'000'000};

volatile std::sig_atomic_t is_ended = 0;

// The waiting between two looks. Signals that end a program end it there, or where it waits for a
// reader that does not read; a second one ends it wherever it is.
class Patience {
 public:
  Patience() {
    sigemptyset(&ends_);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
      struct sigaction action {};
      sigaction(signal, nullptr, &action);
      // Whoever starts it with `nohup` wants it to go on.
      if (signal == SIGHUP && action.sa_handler == SIG_IGN) continue;
      action.sa_handler = [](int) { is_ended = 1; };
      action.sa_flags = static_cast<int>(SA_RESETHAND);
      sigaction(signal, &action, nullptr);
      sigaddset(&ends_, signal);
    }
  }

  // Waits for a moment, or until a signal comes; false when the reader has gone away.
  bool Wait() const {
    sigset_t usual;
    // A signal that comes before the waiting is kept for it.
    sigprocmask(SIG_BLOCK, &ends_, &usual);
    constexpr timespec kNone{};
    pollfd reader{.fd = STDOUT_FILENO, .events = 0, .revents = 0};
    const int ready = ppoll(&reader, 1, is_ended == 0 ? &kPause : &kNone, &usual);
    const bool is_there = ready == 0 || (ready < 0 && errno == EINTR);
    sigprocmask(SIG_SETMASK, &usual, nullptr);
    return is_there;
  }

 private:
  sigset_t ends_{};
};

// The content below a key as of the last look.
class Content {
 public:
  Content(PersistentStore& store, KeyPlace place, std::string name)
      : store_(store), place_(std::move(place)), name_(std::move(name)) {
    mark_ = Mark();
    Read(keys_);
  }

  bool IsThere() const { return !keys_.empty(); }

  // Calls `tell` with each difference since the last look.
  template <class Tell>
  void LookAgain(Tell tell) {
    const HiveMark mark = Mark();
    if (mark == mark_) return;
    RegistryText keys;
    Read(keys);
    for (const Difference& difference : DifferencesBetween(keys_, keys)) tell(difference);
    keys_ = std::move(keys);
    // Taken before the reading: what changed meanwhile is looked at once more.
    mark_ = mark;
  }

 private:
  HiveMark Mark() const {
    HiveMark mark;
    const Int32 code = store_.Mark(static_cast<StoreRoot>(place_.root), mark);
    if (code != kDone) throw Refusal(messages::kAbout(name_, SentenceOfCode(code)));
    return mark;
  }
  void Read(RegistryText& keys) const {
    OnStore(name_, [&] { keys = KeysOf(place_).value_or(RegistryText()); });
  }

  PersistentStore& store_;
  KeyPlace place_;
  std::string name_;
  HiveMark mark_;
  RegistryText keys_;
};

// "%T" and the like of the moment.
std::string Now(const char* format, bool is_local) {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  is_local ? localtime_r(&now, &parts) : gmtime_r(&now, &parts);
  std::array<char, 64> text{};
  return {text.data(), std::strftime(text.data(), text.size(), format, &parts)};
}

void TellChange(const Difference& difference, bool is_json) {
  if (is_json) {
    JsonObject object = JsonOf(difference);
    object.Add("time", Now("%FT%TZ", false));
    command::Print(object.Text() + '\n');
  } else {
    command::Print(LinesOf(difference, Now("%T ", true)));
  }
}

}  // namespace

int Watch(const Request& request) {
  const std::string& name = request.arguments[0];
  const KeyPlace place = PlaceOf(name);
  const Patience patience;
  Content content(request.store, place, name);
  command::Tell(content.IsThere() ? messages::kWatching(name) : messages::kWatchingAbsent(name));
  bool is_going_on = true;
  while (is_going_on && patience.Wait()) {
    // The last look comes after the signal that ends it.
    is_going_on = is_ended == 0;
    content.LookAgain(
        [&](const Difference& difference) { TellChange(difference, request.Has("--json")); });
    command::Flush();
    TellOfDamage(request.store);
  }
  return kSuccess;
}

}  // namespace settings
