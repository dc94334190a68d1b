#include "services/BusGuard.h"

#include <pthread.h>
#include <setjmp.h>
#include <signal.h>
#include <ucontext.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <utility>

namespace kv {

std::atomic<bool> BusGuard::active_{false};

namespace {

constexpr std::uintptr_t kPage = 4096;  // the smallest there is

struct GuardedRead {
  std::uintptr_t begin;  // whole pages: a memory error is reported by its page
  std::uintptr_t end;
  sigjmp_buf onFault;
};

struct ThreadState {
  GuardedRead* volatile read;  // in progress on this thread, or null
  bool takesSignal;            // known not to block SIGBUS
};

// Initial-exec: reaching it never allocates, so the handler may.
__attribute__((tls_model("initial-exec"))) thread_local constinit ThreadState thread{nullptr,
                                                                                     false};

// One installation of the handler. Each has a handler function of its own, so that one that could
// not be removed keeps passing on to what it found, also when another is installed above it.
struct Installation {
  struct sigaction found;
  std::atomic<bool> inUse;      // installed, or left below somebody else's handler
  std::atomic<bool> foundOnce;  // `found` was SA_RESETHAND and has been called
};
constexpr std::size_t kInstallations = 8;
std::array<Installation, kInstallations> installations;

bool IsFault(const siginfo_t& info) {
  return info.si_code > 0 && info.si_code != BUS_MCEERR_AO;
}

void EndAsByDefault(int signal, const siginfo_t& info) {
  struct sigaction byDefault = {};
  byDefault.sa_handler = SIG_DFL;
  sigaction(signal, &byDefault, nullptr);
  // A fault comes again on return; what was sent has to be sent again.
  if (!IsFault(info)) raise(signal);
}

void CallFound(const struct sigaction& found, int signal, siginfo_t* info, void* context) {
  sigset_t block = found.sa_mask;
  if (!(found.sa_flags & SA_NODEFER)) sigaddset(&block, signal);
  sigset_t before;
  pthread_sigmask(SIG_BLOCK, &block, &before);
  if (found.sa_flags & SA_SIGINFO) {
    found.sa_sigaction(signal, info, context);
  } else {
    found.sa_handler(signal);
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

void PassOn(Installation& own, int signal, siginfo_t* info, void* context) {
  const struct sigaction& found = own.found;
  const bool plain = !(found.sa_flags & SA_SIGINFO);
  // Like the system, which does not let a fault be ignored.
  if (plain && found.sa_handler == SIG_IGN && !IsFault(*info)) return;
  const bool once = (found.sa_flags & static_cast<int>(SA_RESETHAND)) != 0;
  if ((plain && (found.sa_handler == SIG_DFL || found.sa_handler == SIG_IGN)) ||
      (once && own.foundOnce.exchange(true))) {
    EndAsByDefault(signal, *info);
  } else {
    CallFound(found, signal, info, context);
  }
}

void Handle(Installation& own, int signal, siginfo_t* info, void* context) {
  GuardedRead* const read = thread.read;
  const auto address = reinterpret_cast<std::uintptr_t>(info->si_addr);
  if (read && info->si_code > 0 && address >= read->begin && address < read->end) {
    // Whoever called the handler may have blocked signals for it, a handler above this one, too.
    pthread_sigmask(SIG_SETMASK, &static_cast<const ucontext_t*>(context)->uc_sigmask, nullptr);
    siglongjmp(read->onFault, 1);
  }
  const int error = errno;
  PassOn(own, signal, info, context);
  errno = error;
}

using Handler = void (*)(int, siginfo_t*, void*);

template <std::size_t... I>
constexpr std::array<Handler, sizeof...(I)> MakeHandlers(std::index_sequence<I...>) {
  return {+[](int signal, siginfo_t* info, void* context) {
    Handle(installations[I], signal, info, context);
  }...};
}
constexpr auto handlers = MakeHandlers(std::make_index_sequence<kInstallations>());

bool InstallAs(std::size_t index) {
  Installation& own = installations[index];
  if (sigaction(SIGBUS, nullptr, &own.found) != 0) return false;
  own.foundOnce = false;
  struct sigaction action = {};
  action.sa_sigaction = handlers[index];
  // Nothing is deferred: a handler passed on to may fault in a read. Interrupted calls go on as
  // they did with the handler found.
  action.sa_flags = SA_SIGINFO | SA_NODEFER | SA_ONSTACK | (own.found.sa_flags & SA_RESTART);
  sigemptyset(&action.sa_mask);
  own.inUse = sigaction(SIGBUS, &action, nullptr) == 0;
  return own.inUse;
}

// The installation whose handler is the process's now; kInstallations when it is somebody else's.
std::size_t OnTop() {
  struct sigaction current = {};
  if (sigaction(SIGBUS, nullptr, &current) != 0) return kInstallations;
  if (!(current.sa_flags & SA_SIGINFO)) return kInstallations;
  const auto* const own = std::find(handlers.begin(), handlers.end(), current.sa_sigaction);
  return static_cast<std::size_t>(own - handlers.begin());
}

// Announces a read to the handler for as long as it lives.
class Announcement {
 public:
  Announcement(GuardedRead& read, const void* from, std::size_t count) : outer_(thread.read) {
    read.begin = reinterpret_cast<std::uintptr_t>(from) & ~(kPage - 1);
    read.end = (reinterpret_cast<std::uintptr_t>(from) + count + kPage - 1) & ~(kPage - 1);
    thread.read = &read;
    std::atomic_signal_fence(std::memory_order_seq_cst);
  }
  Announcement(const Announcement&) = delete;
  Announcement& operator=(const Announcement&) = delete;
  ~Announcement() {
    std::atomic_signal_fence(std::memory_order_seq_cst);
    thread.read = outer_;
  }

 private:
  GuardedRead* const outer_;
};

bool ThreadTakesSignal() noexcept {
  if (!thread.takesSignal) BusGuard::RecheckThread();
  return thread.takesSignal;
}

}  // namespace

void BusGuard::Install() {
  if (OnTop() < kInstallations) {  // left below another handler, which has gone since
    active_ = true;
    return;
  }
  const auto* const unused = std::find_if(installations.begin(), installations.end(),
                                          [](const Installation& each) { return !each.inUse; });
  if (unused == installations.end()) return;
  active_ = InstallAs(static_cast<std::size_t>(unused - installations.begin()));
}

void BusGuard::Remove() {
  active_ = false;
  const std::size_t own = OnTop();
  if (own == kInstallations) return;
  sigaction(SIGBUS, &installations[own].found, nullptr);
  installations[own].inUse = false;
}

void BusGuard::RecheckThread() noexcept {
  sigset_t blocked;
  thread.takesSignal =
      pthread_sigmask(SIG_BLOCK, nullptr, &blocked) == 0 && sigismember(&blocked, SIGBUS) == 0;
}

// The two below hold nothing that changes between sigsetjmp and the fault. The signal mask is not
// saved, which would be a system call: the handler knows it.

bool BusGuard::Copy(void* to, const void* from, std::size_t count) noexcept {
  if (!ThreadTakesSignal()) return false;
  GuardedRead read;
  const Announcement announcement(read, from, count);
  if (sigsetjmp(read.onFault, 0) != 0) return false;
  std::memcpy(to, from, count);
  return true;
}

bool BusGuard::HoldsNonZero(const void* from, std::size_t count) noexcept {
  if (!ThreadTakesSignal()) return false;
  GuardedRead read;
  const Announcement announcement(read, from, count);
  if (sigsetjmp(read.onFault, 0) != 0) return false;
  const char* const bytes = static_cast<const char*>(from);
  // All are zero exactly when the first is and each equals the next.
  return *bytes != 0 || std::memcmp(bytes, bytes + 1, count - 1) != 0;
}

}  // namespace kv
