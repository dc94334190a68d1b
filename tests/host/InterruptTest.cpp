#include "host/Interrupt.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <thread>

#include "host/support/RunCommand.h"
#include "support/TempFolder.h"

namespace {

using testing::ElementsAre;

// A command that works long enough to be interrupted, stopped while its temporary file is there.
class Interrupt : public testing::Test {
 protected:
  void SetUp() override {
    folder_.WriteSparse("a", 30000ul * 30000 * 2);
    folder_.Write("o.png", "former");
  }

  bool HasTemporaryFile() const {
    for (const std::string& name : folder_.Names()) {
      if (name.ends_with(".tmp")) return true;
    }
    return false;
  }

  CommandResult InterruptedBy(int number, const std::function<void()>& prepare = {}) {
    RunningCommand command({"compose", "--size", "30000x30000", "--band", "1=a", "-o", "o.png"},
                           folder_.Path(), prepare);
    for (int i = 0; i < 4000 && !HasTemporaryFile(); ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    EXPECT_TRUE(HasTemporaryFile());
    kill(command.Process(), number);
    if (prepare) kill(command.Process(), SIGTERM);
    return command.Wait();
  }

  TempFolder folder_;
};

TEST_F(Interrupt, FromTheKeyboardLeavesWhatWasThere) {
  EXPECT_EQ(InterruptedBy(SIGINT).signalNumber, SIGINT);
  EXPECT_THAT(folder_.Names(), ElementsAre("a", "o.png"));
  EXPECT_EQ(folder_.Read("o.png"), "former");
}

TEST_F(Interrupt, ByTerminationLeavesWhatWasThere) {
  EXPECT_EQ(InterruptedBy(SIGTERM).signalNumber, SIGTERM);
  EXPECT_THAT(folder_.Names(), ElementsAre("a", "o.png"));
}

TEST_F(Interrupt, ByHangUpLeavesWhatWasThere) {
  EXPECT_EQ(InterruptedBy(SIGHUP).signalNumber, SIGHUP);
  EXPECT_THAT(folder_.Names(), ElementsAre("a", "o.png"));
}

TEST_F(Interrupt, StaysIgnoredWhenTheCommandWasStartedSo) {
  EXPECT_EQ(InterruptedBy(SIGINT, [] { signal(SIGINT, SIG_IGN); }).signalNumber, SIGTERM);
  EXPECT_THAT(folder_.Names(), ElementsAre("a", "o.png"));
}

TEST(TemporaryName, IsForgottenWhenItIsEmptiedOrGone) {
  TempFolder folder;
  folder.Write("a", "");
  folder.Write("b", "");
  folder.Write("c", "");
  {
    ravelin::TemporaryName gone;
    gone.Set(folder / "a");
  }
  ravelin::TemporaryName emptied;
  emptied.Set(folder / "b");
  emptied.Set("");
  ravelin::TemporaryName kept;
  kept.Set(folder / "c");
  ravelin::RemoveTemporaryFiles();
  EXPECT_THAT(folder.Names(), ElementsAre("a", "b"));
}

}  // namespace
