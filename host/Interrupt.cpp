#include "host/Interrupt.h"

#include <unistd.h>

#include <array>

namespace ravelin {
namespace {

constexpr std::array<int, 3> kInterrupts = {SIGINT, SIGTERM, SIGHUP};

// Changed only while the interrupts are held back, so the handler always finds a whole list.
TemporaryName* registered = nullptr;

sigset_t Interrupts() {
  sigset_t set;
  sigemptyset(&set);
  for (const int number : kInterrupts) sigaddset(&set, number);
  return set;
}

void RemoveAndDie(int number) {
  RemoveTemporaryFiles();
  signal(number, SIG_DFL);
  raise(number);
}

}  // namespace

void RemoveTemporaryFiles() {
  for (const TemporaryName* name = registered; name != nullptr; name = name->next_) {
    if (!name->path_.empty()) unlink(name->path_.c_str());
  }
}

void InstallInterruptHandlers() {
  for (const int number : kInterrupts) {
    struct sigaction action = {};
    sigaction(number, nullptr, &action);
    if (action.sa_handler == SIG_IGN) continue;
    action = {};
    action.sa_handler = RemoveAndDie;
    action.sa_mask = Interrupts();
    sigaction(number, &action, nullptr);
  }
  signal(SIGXFSZ, SIG_IGN);
}

InterruptBlock::InterruptBlock() {
  const sigset_t set = Interrupts();
  pthread_sigmask(SIG_BLOCK, &set, &former_);
}

InterruptBlock::~InterruptBlock() {
  pthread_sigmask(SIG_SETMASK, &former_, nullptr);
}

TemporaryName::TemporaryName() {
  const InterruptBlock block;
  next_ = registered;
  registered = this;
}

TemporaryName::~TemporaryName() {
  const InterruptBlock block;
  TemporaryName** link = &registered;
  while (*link != this) link = &(*link)->next_;
  *link = next_;
}

void TemporaryName::Set(const std::string& path) {
  const InterruptBlock block;
  path_ = path;
}

}  // namespace ravelin
