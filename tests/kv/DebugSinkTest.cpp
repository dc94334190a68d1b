#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "Kv/Services.h"
#include "gmock/gmock.h"
#include "gtest/gtest.h"

namespace {

using testing::ElementsAre;
using testing::ExitedWithCode;

// Collects the lines while it lives.
class DebugSinkTest : public testing::Test {
 protected:
  void Collect() {
    KvSetDebugSink([this](const std::string& line) { lines.push_back(line); });
  }
  ~DebugSinkTest() override { KvSetDebugSink(nullptr); }

  std::vector<std::string> lines;
};

TEST_F(DebugSinkTest, GetsEachLineAsGiven) {
  Collect();
  KvPrintDbgMsg("one");
  KvPrintDbgMsg("");
  KvPrintDbgMsg(std::string("a\0b\n", 4));
  EXPECT_THAT(lines, ElementsAre("one", "", std::string("a\0b\n", 4)));
}

TEST_F(DebugSinkTest, TheFormerOneIsReturned) {
  Collect();
  const TKvDebugSink former = KvSetDebugSink(nullptr);
  ASSERT_TRUE(former);
  former("one");
  EXPECT_THAT(lines, ElementsAre("one"));
}

TEST_F(DebugSinkTest, TheDefaultIsReturnedAsEmpty) {
  EXPECT_FALSE(KvSetDebugSink([](const std::string&) {}));
  EXPECT_TRUE(KvSetDebugSink(nullptr));
  EXPECT_FALSE(KvSetDebugSink(nullptr));
}

TEST_F(DebugSinkTest, TheNextOneGetsTheNextLines) {
  Collect();
  std::vector<std::string> others;
  KvPrintDbgMsg("one");
  KvSetDebugSink([&](const std::string& line) { others.push_back(line); });
  KvPrintDbgMsg("two");
  EXPECT_THAT(lines, ElementsAre("one"));
  EXPECT_THAT(others, ElementsAre("two"));
}

TEST_F(DebugSinkTest, MayReplaceItselfWhileItPrints) {
  Collect();
  const TKvDebugSink collecting = KvSetDebugSink(nullptr);
  KvSetDebugSink([&](const std::string& line) {
    KvSetDebugSink(collecting);
    lines.push_back("first " + line);
  });
  KvPrintDbgMsg("one");
  KvPrintDbgMsg("two");
  EXPECT_THAT(lines, ElementsAre("first one", "two"));
}

TEST_F(DebugSinkTest, WhatItThrowsIsDropped) {
  KvSetDebugSink([](const std::string&) { throw std::runtime_error("full"); });
  EXPECT_NO_THROW(KvPrintDbgMsg("one"));
  Collect();
  KvPrintDbgMsg("two");
  EXPECT_THAT(lines, ElementsAre("two"));
}

TEST_F(DebugSinkTest, IsCalledByOneThreadAtATime) {
  std::atomic<int> inside{0};
  bool alone = true;
  KvSetDebugSink([&](const std::string& line) {
    if (inside.fetch_add(1) != 0) alone = false;
    lines.push_back(line);
    inside.fetch_sub(1);
  });
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([t] {
      for (int i = 0; i < 500; ++i) KvPrintDbgMsg("line of " + std::to_string(t));
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_TRUE(alone);
  EXPECT_EQ(lines.size(), 2000u);
  for (int t = 0; t < 4; ++t) {
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "line of " + std::to_string(t)), 500);
  }
}

TEST_F(DebugSinkTest, CanBeReplacedWhileOthersPrint) {
  std::atomic<int> calls{0};
  KvSetDebugSink([&calls](const std::string&) { ++calls; });
  std::thread printer([] {
    for (int i = 0; i < 1000; ++i) KvPrintDbgMsg("line");
  });
  for (int i = 0; i < 100; ++i) {
    const auto own = std::make_unique<int>(i);
    KvSetDebugSink([&calls, number = own.get()](const std::string&) { calls += *number >= 0; });
    KvSetDebugSink([&calls](const std::string&) { ++calls; });
  }
  printer.join();
  EXPECT_EQ(calls, 1000);
}

TEST(DebugSinkDeathTest, TheDefaultIsStandardErrorWithALineEnd) {
  EXPECT_EXIT((KvPrintDbgMsg("one"), KvPrintDbgMsg("two"), std::_Exit(0)), ExitedWithCode(0),
              "^one\ntwo\n$");
}

TEST(DebugSinkDeathTest, ALineThatTheSinkPrintsGoesToStandardError) {
  KvSetDebugSink([](const std::string& line) { KvPrintDbgMsg("inner " + line); });
  EXPECT_EXIT((KvPrintDbgMsg("one"), std::_Exit(0)), ExitedWithCode(0), "^inner one\n$");
  KvSetDebugSink(nullptr);
}

}  // namespace
