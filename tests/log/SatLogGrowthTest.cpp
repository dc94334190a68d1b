// How the cost of the log's calls grows with its length.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "kv/Growth.h"
#include "log/LogTest.h"
#include "support/TempFolder.h"

namespace {

using log_test::Items;
using log_test::Texts;
using SatCommonUtils::TSatLog;

TSatLog ErrorLog(unsigned long count) {
  TSatLog log;
  for (unsigned long i = 0; i < count; ++i) {
    log.AppendMessage(TSatLog::mtError, "a message that needs memory of its own\n");
  }
  return log;
}

/// Whether the cost of filling a log and using it is linear in its length.
bool IsLinearInTheLog(unsigned long size, const std::function<void(const TSatLog&)>& use) {
  return kv_test::IsLinear(size, [&](unsigned long count) { use(ErrorLog(count)); });
}

TEST(SatLogGrowthTest, AddingMessagesCostsLinearTime) {
  EXPECT_TRUE(IsLinearInTheLog(5000, [](const TSatLog& log) { EXPECT_FALSE(log.items.empty()); }));
}

TEST(SatLogGrowthTest, HandingOutMessagesCostsLinearTime) {
  EXPECT_TRUE(IsLinearInTheLog(2500, [](const TSatLog& log) {
    Items all, alarms;
    Texts errors;
    EXPECT_EQ(log.GetMessages(&all), log.items.size());
    EXPECT_EQ(log.GetAlarmMessages(&alarms), log.items.size());
    EXPECT_EQ(log.GetErrorMessages(&errors), log.items.size());
  }));
}

TEST(SatLogGrowthTest, SavingToAFileCostsLinearTime) {
  TempFolder folder;
  EXPECT_TRUE(IsLinearInTheLog(
      1000, [&](const TSatLog& log) { EXPECT_TRUE(log.SaveToFile(folder / "log")); }));
}

TEST(SatLogGrowthTest, PrintingCostsLinearTime) {
  unsigned long printed = 0;
  const log_test::DebugSink sink([&](const std::string&) { ++printed; });
  EXPECT_TRUE(IsLinearInTheLog(2500, [](const TSatLog& log) { log.DebugOutput(); }));
  EXPECT_GT(printed, 0u);
}

}  // namespace
