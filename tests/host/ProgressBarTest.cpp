#include "host/ProgressBar.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using ravelin::ProgressBar;

TEST(ProgressBar, DrawsPercentagesOverTheSameLine) {
  std::ostringstream terminal;
  ProgressBar bar(&terminal, 4);
  bar.Step(1);
  EXPECT_EQ(terminal.str(), "\r[##########..............................]  25 %");
  terminal.str("");
  bar.Step(4);
  EXPECT_EQ(terminal.str(), "\r[########################################] 100 %");
}

TEST(ProgressBar, DrawsOnlyWhenThePercentageChanges) {
  std::ostringstream terminal;
  ProgressBar bar(&terminal, 1000);
  bar.Step(500);
  terminal.str("");
  bar.Step(509);
  EXPECT_EQ(terminal.str(), "");
  bar.Step(510);
  EXPECT_NE(terminal.str(), "");
}

TEST(ProgressBar, ClearsItsLineOnceWhenItStops) {
  std::ostringstream terminal;
  {
    ProgressBar bar(&terminal, 2);
    bar.Step(1);
    terminal.str("");
    bar.Stop();
    EXPECT_EQ(terminal.str(), "\r\x1b[K");
  }
  EXPECT_EQ(terminal.str(), "\r\x1b[K");
}

TEST(ProgressBar, ClearsItsLineWhenTheWorkIsGivenUp) {
  std::ostringstream terminal;
  { ProgressBar(&terminal, 2).Step(1); }
  EXPECT_TRUE(terminal.str().ends_with("\r\x1b[K"));
}

TEST(ProgressBar, DrawsNothingBeforeTheFirstStep) {
  std::ostringstream terminal;
  { const ProgressBar bar(&terminal, 2); }
  EXPECT_EQ(terminal.str(), "");
}

TEST(ProgressBar, StopsAtAHundredPercent) {
  std::ostringstream terminal;
  ProgressBar bar(&terminal, 2);
  bar.Step(900);
  EXPECT_TRUE(terminal.str().ends_with("] 100 %"));
}

TEST(ProgressBar, TakesWorkWithoutSteps) {
  std::ostringstream terminal;
  ProgressBar bar(&terminal, 0);
  bar.Step(0);
  EXPECT_EQ(terminal.str(), "");
}

}  // namespace
