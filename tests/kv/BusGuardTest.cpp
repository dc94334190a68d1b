// The SIGBUS handler of the services beside those of the host.
#include <pthread.h>
#include <setjmp.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "BuildKind.h"
#include "Kv/Services.h"
#include "Kv/Stream.h"
#include "gtest/gtest.h"
#include "support/TempFolder.h"

namespace {

using testing::ExitedWithCode;
using testing::KilledBySignal;

constexpr unsigned long kPage = 4096;

using InfoHandler = void (*)(int, siginfo_t*, void*);

struct sigaction Current() {
  struct sigaction action = {};
  sigaction(SIGBUS, nullptr, &action);
  return action;
}

void Set(void (*handler)(int), int flags = 0) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = flags;
  sigaction(SIGBUS, &action, nullptr);
}

void SetWithInfo(InfoHandler handler, int flags = 0) {
  struct sigaction action = {};
  action.sa_sigaction = handler;
  action.sa_flags = SA_SIGINFO | flags;
  sigaction(SIGBUS, &action, nullptr);
}

// A page of memory whose file ends before it.
char* PageBehindTheEnd() {
  const int file = ::memfd_create("cut", 0);
  if (file < 0 || ::ftruncate(file, static_cast<off_t>(kPage)) != 0) std::abort();
  void* const page = ::mmap(nullptr, kPage, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  if (page == MAP_FAILED || ::ftruncate(file, 0) != 0) std::abort();
  ::close(file);
  return static_cast<char*>(page);
}

// A fault that is nobody's read.
void Fault() {
  *static_cast<volatile char*>(PageBehindTheEnd()) = 'x';
}

// In the programs that end by a signal.
void WithoutCoreFile() {
  const struct rlimit none = {0, 0};
  ::setrlimit(RLIMIT_CORE, &none);
}

// Reads over the end of a file that was cut under the stream: a guarded fault. Returns what is
// read.
unsigned long ReadCutFile() {
  const TempFolder folder;
  folder.Write("a", std::string(3 * kPage, 'x'));
  TKvFileStream stream(TKvPath(folder / "a"), kvOpenRead, kvShareAll);
  std::string bytes(3 * kPage, '\0');
  stream.Read(bytes.data(), 1);
  std::filesystem::resize_file(folder / "a", 100);
  stream.SetPos(0);
  return stream.Read(bytes.data(), bytes.size());
}

bool IsBlocked(int signal) {
  sigset_t blocked;
  pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
  return sigismember(&blocked, signal) == 1;
}

class BusGuardTest : public testing::Test {
 protected:
  BusGuardTest() : former_(Current()) {}
  ~BusGuardTest() override {
    Deinit_KvServices();
    sigaction(SIGBUS, &former_, nullptr);
  }

 private:
  const struct sigaction former_;
};

class BusGuardDeathTest : public BusGuardTest {};

// A handler that cannot be removed stays for the life of the program: in a program of its own.
template <class Body>
void ExpectInChild(Body body) {
  const auto whole = [&body] {
    body();
    std::_Exit(testing::Test::HasFailure() ? 1 : 0);
  };
  EXPECT_EXIT(whole(), ExitedWithCode(0), "");
}

volatile sig_atomic_t calls = 0;

void Count(int) {
  calls = calls + 1;
}
void CountWithInfo(int, siginfo_t*, void*) {
  calls = calls + 1;
}
void Exit7(int) {
  std::_Exit(7);
}

TEST_F(BusGuardTest, IsInstalledByInitAndRemovedByDeinit) {
  Set(Count, SA_RESTART);
  Init_KvServices();
  EXPECT_NE(Current().sa_handler, &Count);
  Deinit_KvServices();
  EXPECT_EQ(Current().sa_handler, &Count);
  EXPECT_EQ(Current().sa_flags & (SA_SIGINFO | SA_RESTART), SA_RESTART);
}

TEST_F(BusGuardTest, PutsBackTheDefault) {
  Set(SIG_DFL);
  Init_KvServices();
  Deinit_KvServices();
  EXPECT_EQ(Current().sa_handler, SIG_DFL);
}

TEST_F(BusGuardDeathTest, AHandlerInstalledSinceIsLeftWhereItIs) {
  ExpectInChild([] {
    Init_KvServices();
    SetWithInfo(CountWithInfo);
    Deinit_KvServices();
    EXPECT_EQ(Current().sa_sigaction, &CountWithInfo);
  });
}

TEST_F(BusGuardTest, AFaultOfAReadReachesNoHandlerOfTheHost) {
  calls = 0;
  Set(Count);
  Init_KvServices();
  EXPECT_EQ(ReadCutFile(), 100u);
  EXPECT_EQ(calls, 0);
}

TEST_F(BusGuardTest, AFaultOfAReadLeavesTheSignalMaskAlone) {
  Init_KvServices();
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGUSR1);
  sigset_t former;
  pthread_sigmask(SIG_BLOCK, &set, &former);
  EXPECT_EQ(ReadCutFile(), 100u);
  sigset_t after;
  pthread_sigmask(SIG_SETMASK, &former, &after);
  EXPECT_EQ(sigismember(&after, SIGUSR1), 1);
  EXPECT_EQ(sigismember(&after, SIGBUS), 0);
}

TEST_F(BusGuardTest, AThreadThatBlocksTheSignalReadsSafelyToo) {
  Init_KvServices();
  unsigned long read = 0;
  std::thread thread([&] {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
    read = ReadCutFile();
  });
  thread.join();
  EXPECT_EQ(read, 100u);
}

TEST_F(BusGuardTest, ASignalSentIsPassedOnWithoutServicesBeingTouched) {
  calls = 0;
  Set(Count);
  Init_KvServices();
  raise(SIGBUS);
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(ReadCutFile(), 100u);
  raise(SIGBUS);
  EXPECT_EQ(calls, 2);
}

TEST_F(BusGuardTest, SignalsSentDuringReadsArePassedOnAndTheReadsGoOn) {
  calls = 0;
  SetWithInfo(CountWithInfo);
  Init_KvServices();
  const TempFolder folder;
  const std::string bytes(64 * kPage, 'x');
  folder.Write("a", bytes);
  TKvFileStream stream(TKvPath(folder / "a"), kvOpenRead, kvShareAll);
  std::atomic<bool> done{false};
  const pthread_t reader = pthread_self();
  std::thread sender([&] {
    for (int i = 0; i < 300; ++i) {
      pthread_kill(reader, SIGBUS);
      ::usleep(20);
    }
    done = true;
  });
  bool same = true;
  while (!done) {
    std::string read(bytes.size(), '\0');
    stream.SetPos(0);
    same = same && stream.Read(read.data(), read.size()) == read.size() && read == bytes;
  }
  sender.join();
  EXPECT_TRUE(same);
  EXPECT_GT(calls, 0);
}

TEST_F(BusGuardTest, ASignalSentThatTheHostIgnoresStaysIgnored) {
  Set(SIG_IGN);
  Init_KvServices();
  raise(SIGBUS);
  EXPECT_EQ(ReadCutFile(), 100u);
}

char* faultingPage = nullptr;
volatile sig_atomic_t seenAddress = 0;
volatile sig_atomic_t seenBlocked = 0;

// Makes the page readable, so that the program goes on behind the fault.
void Mend(int, siginfo_t* info, void*) {
  calls = calls + 1;
  seenAddress = info->si_addr == faultingPage;
  seenBlocked = (IsBlocked(SIGBUS) ? 1 : 0) + (IsBlocked(SIGUSR2) ? 2 : 0);
  ::mmap(faultingPage, kPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1,
         0);
}

char ReadFaultingPage() {
  faultingPage = PageBehindTheEnd();
  return *static_cast<volatile char*>(faultingPage);
}

TEST_F(BusGuardTest, AForeignFaultReachesTheHandlerFoundWithAllThatItIsTold) {
  calls = 0;
  SetWithInfo(Mend);
  Init_KvServices();
  EXPECT_EQ(ReadFaultingPage(), '\0');
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(seenAddress, 1);
}

TEST_F(BusGuardTest, TheHandlerFoundRunsWithTheSignalsBlockedThatItAskedFor) {
  struct sigaction action = {};
  action.sa_sigaction = Mend;
  action.sa_flags = SA_SIGINFO;
  sigaddset(&action.sa_mask, SIGUSR2);
  sigaction(SIGBUS, &action, nullptr);
  Init_KvServices();
  ReadFaultingPage();
  EXPECT_EQ(seenBlocked, 3);
  EXPECT_FALSE(IsBlocked(SIGBUS));
  EXPECT_FALSE(IsBlocked(SIGUSR2));
}

TEST_F(BusGuardTest, AHandlerFoundThatWantsNothingBlockedHasNothingBlocked) {
  if (kv_test::kSanitized) GTEST_SKIP() << "the sanitizer blocks signals in every handler";
  SetWithInfo(Mend, SA_NODEFER);
  Init_KvServices();
  ReadFaultingPage();
  EXPECT_EQ(seenBlocked, 0);
}

TEST_F(BusGuardTest, AFaultOfTheBufferReadIntoIsTheHosts) {
  calls = 0;
  SetWithInfo(Mend);
  Init_KvServices();
  const TempFolder folder;
  folder.Write("a", std::string(100, 'x'));
  TKvFileStream stream(TKvPath(folder / "a"), kvOpenRead, kvShareAll);
  faultingPage = PageBehindTheEnd();
  EXPECT_EQ(stream.Read(faultingPage, 100), 100u);
  EXPECT_EQ(std::string(faultingPage, 100), std::string(100, 'x'));
  EXPECT_EQ(calls, 1);
}

sigjmp_buf hostJump;
void Jump(int) {
  siglongjmp(hostJump, 1);
}

// Whether the fault was left by the jump of the host's handler.
bool FaultAndJump() {
  if (sigsetjmp(hostJump, 1) != 0) return true;
  Fault();
  return false;
}

TEST_F(BusGuardTest, AHandlerFoundThatJumpsAwayHarmsNoLaterRead) {
  Set(Jump);
  Init_KvServices();
  for (int i = 0; i < 3; ++i) {
    EXPECT_TRUE(FaultAndJump());
    EXPECT_EQ(ReadCutFile(), 100u);
  }
}

struct sigaction below;
// A host's handler that was installed later and passes everything on.
void PassOn(int signal, siginfo_t* info, void* context) {
  calls = calls + 1;
  if (below.sa_flags & SA_SIGINFO) below.sa_sigaction(signal, info, context);
}

void InstallPassOn() {
  below = Current();
  SetWithInfo(PassOn);
}

TEST_F(BusGuardDeathTest, GuardsThroughALaterHandlerThatPassesOn) {
  ExpectInChild([] {
    calls = 0;
    Init_KvServices();
    InstallPassOn();
    EXPECT_EQ(ReadCutFile(), 100u);
    EXPECT_EQ(ReadCutFile(), 100u);
    EXPECT_FALSE(IsBlocked(SIGBUS));
    EXPECT_GE(calls, 2);
  });
}

volatile sig_atomic_t bottomCalls = 0;
void Bottom(int) {
  bottomCalls = bottomCalls + 1;
}

TEST_F(BusGuardDeathTest, InstalledAgainAboveItselfItStillReachesTheFirstHandler) {
  ExpectInChild([] {
    Set(Bottom);
    Init_KvServices();
    InstallPassOn();
    Deinit_KvServices();
    Init_KvServices();
    bottomCalls = 0;
    calls = 0;
    raise(SIGBUS);
    EXPECT_EQ(bottomCalls, 1);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(ReadCutFile(), 100u);
  });
}

TEST_F(BusGuardDeathTest, LeftBelowALaterHandlerItServesAgainWhenThatOneGoes) {
  ExpectInChild([] {
    Set(Bottom);
    Init_KvServices();
    const struct sigaction own = Current();
    SetWithInfo(CountWithInfo);
    Deinit_KvServices();
    sigaction(SIGBUS, &own, nullptr);
    bottomCalls = 0;
    raise(SIGBUS);
    EXPECT_EQ(bottomCalls, 1);
    Init_KvServices();
    EXPECT_EQ(ReadCutFile(), 100u);
    Deinit_KvServices();
    EXPECT_EQ(Current().sa_handler, &Bottom);
  });
}

TEST_F(BusGuardDeathTest, HostsThatAlwaysPutTheirHandlerAboveCostNoMoreThanTheGuard) {
  ExpectInChild([] {
    Set(Bottom);
    for (int i = 0; i < 20; ++i) {
      Init_KvServices();
      EXPECT_EQ(ReadCutFile(), 100u);
      SetWithInfo(CountWithInfo);
      Deinit_KvServices();
    }
  });
}

TEST_F(BusGuardDeathTest, AForeignFaultReachesAPlainHandler) {
  Set(Exit7);
  Init_KvServices();
  EXPECT_EXIT(Fault(), ExitedWithCode(7), "");
}

TEST_F(BusGuardDeathTest, AForeignFaultEndsTheProgramByDefault) {
  Set(SIG_DFL);
  Init_KvServices();
  EXPECT_EXIT((WithoutCoreFile(), Fault()), KilledBySignal(SIGBUS), "");
}

TEST_F(BusGuardDeathTest, ASignalSentEndsTheProgramByDefault) {
  Set(SIG_DFL);
  Init_KvServices();
  EXPECT_EXIT((WithoutCoreFile(), raise(SIGBUS)), KilledBySignal(SIGBUS), "");
}

TEST_F(BusGuardDeathTest, AForeignFaultCannotBeIgnored) {
  Set(SIG_IGN);
  Init_KvServices();
  EXPECT_EXIT((WithoutCoreFile(), Fault()), KilledBySignal(SIGBUS), "");
}

TEST_F(BusGuardDeathTest, AHandlerForOneSignalGetsOnlyOne) {
  Set(Count, static_cast<int>(SA_RESETHAND));
  Init_KvServices();
  raise(SIGBUS);
  EXPECT_EXIT((WithoutCoreFile(), raise(SIGBUS)), KilledBySignal(SIGBUS), "");
}

}  // namespace
