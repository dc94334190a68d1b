// The log while allocations fail.
#include <gtest/gtest.h>

#include <new>
#include <string>

#include "log/LogTest.h"
#include "support/EveryAllocation.h"
#include "support/FailingNew.h"
#include "support/TempFolder.h"

namespace {

using log_test::Item;
using log_test::Items;
using log_test::Joined;
using log_test::MixedLines;
using log_test::MixedLog;
using log_test::Texts;
using ravelin_test::FailuresOf;
using SatCommonUtils::TSatLog;

constexpr unsigned long kMostAllocations = 1000;

const std::string kLong(100, 'x');

TEST(SatLogMemoryTest, AMessageThatCannotBeAddedLeavesTheLogAsItWas) {
  TSatLog log = MixedLog();
  log.items.shrink_to_fit();
  const unsigned long failures = FailuresOf([&] { log.AppendMessage(TSatLog::mtInfo, kLong); },
                                            [&] {
                                              EXPECT_EQ(log.items, MixedLog().items);
                                              EXPECT_EQ(log.firstError, "first error\n");
                                            });
  EXPECT_GE(failures, 2u);
  EXPECT_EQ(log.items.size(), 7u);
  EXPECT_EQ(log.items.back(), (Item{TSatLog::mtInfo, kLong}));
}

TEST(SatLogMemoryTest, AFirstErrorThatCannotBeAddedLeavesTheLogAsItWas) {
  TSatLog log;
  const unsigned long failures = FailuresOf([&] { log.AppendMessage(TSatLog::mtError, kLong); },
                                            [&] {
                                              EXPECT_TRUE(log.items.empty());
                                              EXPECT_EQ(log.firstError, "");
                                            });
  EXPECT_GE(failures, 3u);
  EXPECT_EQ(log.items, Items({{TSatLog::mtError, kLong}}));
  EXPECT_EQ(log.firstError, kLong);
}

TEST(SatLogMemoryTest, ADroppedDebugMessageAllocatesNothing) {
  TSatLog log;
  log.skipDebugMessages = true;
  EXPECT_EQ(FailuresOf([&] { log.AppendMessage(TSatLog::mtDebug, kLong); }), 0u);
}

TEST(SatLogMemoryTest, TheGettersPassTheFailureAndGiveTheWholeLater) {
  const TSatLog log = MixedLog();
  Items all, alarms;
  Texts errors;
  EXPECT_GE(FailuresOf([&] { log.GetMessages(&all); }), 1u);
  EXPECT_EQ(all, log.items);
  EXPECT_GE(FailuresOf([&] { log.GetAlarmMessages(&alarms); }), 1u);
  EXPECT_EQ(alarms, Items({log.items[1], log.items[2], log.items[5]}));
  EXPECT_GE(FailuresOf([&] { log.GetErrorMessages(&errors); }), 1u);
  EXPECT_EQ(errors, Texts({log.items[1].message, log.items[5].message}));
}

TEST(SatLogMemoryTest, AMessageLineThatCannotBeMadePassesTheFailure) {
  const Item item = {TSatLog::mtError, kLong};
  std::string line;
  EXPECT_GE(FailuresOf([&] { line = item.GetMsgLine(); }), 1u);
  EXPECT_EQ(line, "! " + kLong);
}

/// Whether the bytes are the first lines of the mixed log, none of them cut.
bool HoldsWholeLines(const std::string& bytes) {
  const Texts lines = MixedLines();
  std::string whole;
  for (unsigned long i = 0; i < lines.size() && whole.size() < bytes.size(); ++i) whole += lines[i];
  return whole == bytes;
}

/// Saves with so many allocations; false when one failed, in opening the file or in a line.
bool SaveWithAllocations(const std::string& path, unsigned long successes) {
  const TSatLog log = MixedLog();
  const ravelin_test::FailingNew failing(successes);
  try {
    return log.SaveToFile(path);
  } catch (const std::bad_alloc&) {
    return false;
  }
}

TEST(SatLogMemoryTest, AFileThatCannotBeSavedForWantOfMemoryHoldsWholeLines) {
  const TempFolder folder;
  const std::string path = folder.Write("log", "");
  unsigned long failures = 0;
  while (failures < kMostAllocations && !SaveWithAllocations(path, failures)) {
    ++failures;
    EXPECT_TRUE(HoldsWholeLines(folder.Read("log"))) << folder.Read("log");
  }
  EXPECT_GE(failures, 2u);
  EXPECT_EQ(folder.Read("log"), Joined(MixedLines()));
}

TEST(SatLogMemoryTest, PrintingPassesTheFailureOfALine) {
  const TSatLog log = MixedLog();
  unsigned long printed = 0;
  const log_test::DebugSink sink([&](const std::string&) { ++printed; });
  EXPECT_GE(FailuresOf([&] {
              printed = 0;
              log.DebugOutput();
            }),
            1u);
  EXPECT_EQ(printed, 6u);
}

}  // namespace
