#include "Kv/Progress.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// Records its calls; throws at those named by `throwAt`.
class Recorder : public TKvProgressHandler {
 public:
  bool NeedsService() override { return true; }
  void Service() override { Record("Service"); }
  void Start(bool indefinite) override { Record(indefinite ? "Start(true)" : "Start(false)"); }
  void Step(unsigned long done) override { Record("Step(" + std::to_string(done) + ")"); }
  void Stop() override { Record("Stop"); }

  std::vector<std::string> calls;
  std::string throwAt;

 private:
  void Record(const std::string& call) {
    calls.push_back(call);
    if (call == throwAt) throw std::runtime_error(call);
  }
};

class SilentHandler : public TKvProgressHandler {
 public:
  bool NeedsService() override { return false; }
  void Service() override { ++services; }
  int services = 0;
};

}  // namespace

TEST(ProgressHandler, DoesNothingUnlessOverridden) {
  SilentHandler silent;
  TKvProgressHandler& handler = silent;
  handler.Start(true);
  handler.Start(false);
  handler.Step(3);
  handler.Stop();
  EXPECT_FALSE(handler.NeedsService());
  EXPECT_EQ(silent.services, 0);
}

TEST(Progress, CallsNothingBeforeItIsStarted) {
  Recorder handler;
  { const TKvProgress progress(&handler, true); }
  EXPECT_THAT(handler.calls, IsEmpty());
}

TEST(Progress, StartIndefiniteStartsTheHandlerIndefinitely) {
  Recorder handler;
  TKvProgress progress(&handler, false);
  progress.StartIndefinite();
  EXPECT_THAT(handler.calls, ElementsAre("Start(true)"));
}

TEST(Progress, StopStopsTheHandler) {
  Recorder handler;
  TKvProgress progress(&handler, false);
  progress.StartIndefinite();
  progress.Stop();
  EXPECT_THAT(handler.calls, ElementsAre("Start(true)", "Stop"));
}

TEST(Progress, StopTwiceStopsTheHandlerOnce) {
  Recorder handler;
  {
    TKvProgress progress(&handler, false);
    progress.StartIndefinite();
    progress.Stop();
    progress.Stop();
  }
  EXPECT_THAT(handler.calls, ElementsAre("Start(true)", "Stop"));
}

TEST(Progress, StopWithoutStartCallsNothing) {
  Recorder handler;
  TKvProgress progress(&handler, false);
  progress.Stop();
  EXPECT_THAT(handler.calls, IsEmpty());
}

TEST(Progress, StopsAtDestructionWhenItStillRuns) {
  Recorder handler;
  {
    TKvProgress progress(&handler, false);
    progress.StartIndefinite();
  }
  EXPECT_THAT(handler.calls, ElementsAre("Start(true)", "Stop"));
}

TEST(Progress, StopsWhenAnExceptionLeavesTheScope) {
  Recorder handler;
  try {
    TKvProgress progress(&handler, false);
    progress.StartIndefinite();
    throw 1;
  } catch (int) {
    handler.calls.emplace_back("caught");
  }
  EXPECT_THAT(handler.calls, ElementsAre("Start(true)", "Stop", "caught"));
}

TEST(Progress, RunsAgainAfterAStop) {
  Recorder handler;
  {
    TKvProgress progress(&handler, false);
    progress.StartIndefinite();
    progress.Stop();
    progress.StartIndefinite();
  }
  EXPECT_THAT(handler.calls, ElementsAre("Start(true)", "Stop", "Start(true)", "Stop"));
}

TEST(Progress, DoesNothingWithoutAHandler) {
  TKvProgress progress(nullptr, true);
  EXPECT_NO_THROW(progress.StartIndefinite());
  EXPECT_NO_THROW(progress.Stop());
  EXPECT_NO_THROW(progress.StartIndefinite());
}

TEST(Progress, KeepsTheHostsTag) {
  Recorder handler;
  EXPECT_TRUE(TKvProgress(&handler, true).Tag());
  EXPECT_FALSE(TKvProgress(&handler, false).Tag());
  EXPECT_TRUE(TKvProgress(nullptr, true).Tag());
}

TEST(Progress, LetsAnExceptionOfStartPassAndDoesNotRunThen) {
  Recorder handler;
  handler.throwAt = "Start(true)";
  {
    TKvProgress progress(&handler, false);
    EXPECT_THROW(progress.StartIndefinite(), std::runtime_error);
  }
  EXPECT_THAT(handler.calls, ElementsAre("Start(true)"));
}

TEST(Progress, LetsAnExceptionOfStopPassAndStopsNoSecondTime) {
  Recorder handler;
  handler.throwAt = "Stop";
  {
    TKvProgress progress(&handler, false);
    progress.StartIndefinite();
    EXPECT_THROW(progress.Stop(), std::runtime_error);
  }
  EXPECT_THAT(handler.calls, ElementsAre("Start(true)", "Stop"));
}

TEST(Progress, LosesAnExceptionOfStopAtDestruction) {
  Recorder handler;
  handler.throwAt = "Stop";
  {
    TKvProgress progress(&handler, false);
    progress.StartIndefinite();
  }
  EXPECT_THAT(handler.calls, ElementsAre("Start(true)", "Stop"));
}

TEST(Progress, ScopesAreNotCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<TKvProgress>);
  EXPECT_FALSE(std::is_copy_assignable_v<TKvProgress>);
  EXPECT_FALSE(std::is_copy_constructible_v<TKvStepProgress>);
  EXPECT_FALSE(std::is_copy_assignable_v<TKvStepProgress>);
}

TEST(StepProgress, StartsWhenMade) {
  Recorder handler;
  const TKvStepProgress progress(&handler);
  EXPECT_THAT(handler.calls, ElementsAre("Start(true)"));
}

TEST(StepProgress, CountsItsSteps) {
  Recorder handler;
  TKvStepProgress progress(&handler);
  progress.Next();
  progress.Next();
  progress.Next();
  EXPECT_THAT(handler.calls, ElementsAre("Start(true)", "Step(1)", "Step(2)", "Step(3)"));
}

TEST(StepProgress, StopsWhenDestroyed) {
  Recorder handler;
  {
    TKvStepProgress progress(&handler);
    progress.Next();
  }
  EXPECT_THAT(handler.calls, ElementsAre("Start(true)", "Step(1)", "Stop"));
}

TEST(StepProgress, DoesNothingWithoutAHandler) {
  TKvStepProgress progress(nullptr);
  EXPECT_NO_THROW(progress.Next());
  EXPECT_NO_THROW(progress.Next());
}

TEST(StepProgress, LetsAnExceptionOfStartPassAndStopsNothing) {
  Recorder handler;
  handler.throwAt = "Start(true)";
  EXPECT_THROW(TKvStepProgress{&handler}, std::runtime_error);
  EXPECT_THAT(handler.calls, ElementsAre("Start(true)"));
}

TEST(StepProgress, LetsAnExceptionOfStepPassAndCountsTheStep) {
  Recorder handler;
  handler.throwAt = "Step(1)";
  {
    TKvStepProgress progress(&handler);
    EXPECT_THROW(progress.Next(), std::runtime_error);
    progress.Next();
  }
  EXPECT_THAT(handler.calls, ElementsAre("Start(true)", "Step(1)", "Step(2)", "Stop"));
}

TEST(StepProgress, LosesAnExceptionOfStopAtDestruction) {
  Recorder handler;
  handler.throwAt = "Stop";
  { const TKvStepProgress progress(&handler); }
  EXPECT_THAT(handler.calls, ElementsAre("Start(true)", "Stop"));
}
