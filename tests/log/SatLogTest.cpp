// Messages as they are added and handed out.
#include <gmock/gmock.h>

#include <climits>
#include <string>
#include <thread>
#include <vector>

#include "log/LogTest.h"

namespace {

using log_test::Item;
using log_test::Items;
using log_test::MixedLines;
using log_test::MixedLog;
using log_test::Texts;
using log_test::Type;
using SatCommonUtils::TSatLog;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(SatLogTest, EachTypeHasItsSymbol) {
  EXPECT_EQ(TSatLog::GetTypeSymbol(TSatLog::mtDebug), "D");
  EXPECT_EQ(TSatLog::GetTypeSymbol(TSatLog::mtError), "!");
  EXPECT_EQ(TSatLog::GetTypeSymbol(TSatLog::mtWarning), "*");
  EXPECT_EQ(TSatLog::GetTypeSymbol(TSatLog::mtInfo), "i");
}

TEST(SatLogTest, AnyOtherTypeHasAQuestionMark) {
  for (const int value : {INT_MIN, -1, 4, 7, 256, 257, INT_MAX}) {
    EXPECT_EQ(TSatLog::GetTypeSymbol(Type(value)), "?") << value;
  }
}

TEST(SatLogTest, ANewLogIsEmptyAndKeepsDebugMessages) {
  const TSatLog log;
  EXPECT_THAT(log.items, IsEmpty());
  EXPECT_EQ(log.firstError, "");
  EXPECT_FALSE(log.skipDebugMessages);
}

TEST(SatLogTest, MessagesAreKeptInTheOrderOfTheirArrival) {
  TSatLog log;
  log.AppendMessage(TSatLog::mtInfo, "a");
  log.AppendMessage(TSatLog::mtDebug, "b");
  log.AppendMessage(TSatLog::mtInfo, "c");
  EXPECT_THAT(log.items, ElementsAre(Item{TSatLog::mtInfo, "a"}, Item{TSatLog::mtDebug, "b"},
                                     Item{TSatLog::mtInfo, "c"}));
}

TEST(SatLogTest, ATextIsKeptAsItIs) {
  const std::string text("\0\xFF\r\n\t %s ", 9);
  TSatLog log;
  log.AppendMessage(TSatLog::mtInfo, text);
  EXPECT_EQ(log.items[0].message, text);
}

TEST(SatLogTest, AnEmptyTextIsAMessage) {
  TSatLog log;
  log.AppendMessage(TSatLog::mtWarning, "");
  EXPECT_THAT(log.items, ElementsAre(Item{TSatLog::mtWarning, ""}));
}

TEST(SatLogTest, DebugMessagesAreDroppedWhileTheyAreSkippedAndNoOthers) {
  TSatLog log;
  log.skipDebugMessages = true;
  for (const int value : {0, 1, 2, 3, 7, -1}) log.AppendMessage(Type(value), "m");
  EXPECT_THAT(log.items,
              ElementsAre(Item{TSatLog::mtError, "m"}, Item{TSatLog::mtWarning, "m"},
                          Item{TSatLog::mtInfo, "m"}, Item{Type(7), "m"}, Item{Type(-1), "m"}));
}

TEST(SatLogTest, SkippingIsLookedUpAtEveryMessage) {
  TSatLog log;
  log.AppendMessage(TSatLog::mtDebug, "kept");
  log.skipDebugMessages = true;
  log.AppendMessage(TSatLog::mtDebug, "dropped");
  log.skipDebugMessages = false;
  log.AppendMessage(TSatLog::mtDebug, "kept too");
  EXPECT_THAT(log.items,
              ElementsAre(Item{TSatLog::mtDebug, "kept"}, Item{TSatLog::mtDebug, "kept too"}));
}

TEST(SatLogTest, TheFirstErrorStays) {
  TSatLog log;
  log.AppendMessage(TSatLog::mtError, "A");
  log.AppendMessage(TSatLog::mtError, "B");
  EXPECT_EQ(log.firstError, "A");
  Texts errors;
  EXPECT_EQ(log.GetErrorMessages(&errors), 2u);
  EXPECT_THAT(errors, ElementsAre("A", "B"));
}

TEST(SatLogTest, AnErrorWithoutATextLeavesTheFirstErrorToALaterOne) {
  TSatLog log;
  log.AppendMessage(TSatLog::mtError, "");
  EXPECT_EQ(log.firstError, "");
  log.AppendMessage(TSatLog::mtError, "B");
  log.AppendMessage(TSatLog::mtError, "C");
  EXPECT_EQ(log.firstError, "B");
  EXPECT_EQ(log.items.size(), 3u);
}

TEST(SatLogTest, OtherMessagesAreNoFirstError) {
  TSatLog log;
  for (const int value : {0, 2, 3, 7, -1}) log.AppendMessage(Type(value), "m");
  EXPECT_EQ(log.firstError, "");
}

TEST(SatLogTest, AMessageOfTheLogItselfMayBeAddedAgain) {
  TSatLog log;
  log.AppendMessage(TSatLog::mtInfo, std::string(100, 'x'));
  for (int i = 0; i < 100; ++i) log.AppendMessage(TSatLog::mtError, log.items[0].message);
  EXPECT_EQ(log.items.size(), 101u);
  EXPECT_EQ(log.items.back().message, std::string(100, 'x'));
  EXPECT_EQ(log.firstError, std::string(100, 'x'));
}

TEST(SatLogTest, TheFirstErrorMayBeAddedAgain) {
  TSatLog log;
  log.AppendMessage(TSatLog::mtError, std::string(100, 'x'));
  log.AppendMessage(TSatLog::mtError, log.firstError);
  EXPECT_EQ(log.items[1].message, std::string(100, 'x'));
  EXPECT_EQ(log.firstError, std::string(100, 'x'));
}

TEST(SatLogTest, AllMessagesAreHandedOutAsACopy) {
  const TSatLog log = MixedLog();
  Items all;
  EXPECT_EQ(log.GetMessages(&all), 6u);
  EXPECT_EQ(all, log.items);
  all[0].message = "changed";
  EXPECT_EQ(log.items[0].message, "d\n");
}

TEST(SatLogTest, AlarmsAreErrorsAndWarningsInTheOrderOfTheLog) {
  TSatLog log;
  for (const int value : {3, 2, 0, 1, 7, 2, -1, 1}) {
    log.AppendMessage(Type(value), std::to_string(log.items.size()));
  }
  Items alarms;
  EXPECT_EQ(log.GetAlarmMessages(&alarms), 4u);
  EXPECT_THAT(alarms, ElementsAre(Item{TSatLog::mtWarning, "1"}, Item{TSatLog::mtError, "3"},
                                  Item{TSatLog::mtWarning, "5"}, Item{TSatLog::mtError, "7"}));
}

TEST(SatLogTest, ErrorMessagesAreTheTextsOfErrorsAlone) {
  Texts errors;
  EXPECT_EQ(MixedLog().GetErrorMessages(&errors), 2u);
  EXPECT_THAT(errors, ElementsAre("first error\n", std::string(100, 'e')));
}

TEST(SatLogTest, AMessageOfNoKindIsStoredAndLedByAQuestionMarkAndPassesNoFilter) {
  TSatLog log;
  log.AppendMessage(Type(7), "odd");
  EXPECT_THAT(log.items, ElementsAre(Item{Type(7), "odd"}));
  EXPECT_EQ(log.items[0].GetMsgLine(), "? odd");
  Items alarms;
  EXPECT_EQ(log.GetAlarmMessages(&alarms), 0u);
  Texts errors;
  EXPECT_EQ(log.GetErrorMessages(&errors), 0u);
}

TEST(SatLogTest, WhatTheListsHeldBeforeIsGone) {
  const TSatLog log = MixedLog();
  Items all(100, Item{TSatLog::mtError, "old"});
  EXPECT_EQ(log.GetMessages(&all), 6u);
  EXPECT_EQ(all, log.items);
  Items alarms(100, Item{TSatLog::mtError, "old"});
  EXPECT_EQ(log.GetAlarmMessages(&alarms), 3u);
  EXPECT_THAT(alarms, ElementsAre(log.items[1], log.items[2], log.items[5]));
  Texts errors(100, "old");
  EXPECT_EQ(log.GetErrorMessages(&errors), 2u);
  EXPECT_THAT(errors, ElementsAre(log.items[1].message, log.items[5].message));
}

TEST(SatLogTest, AnEmptyLogEmptiesTheLists) {
  const TSatLog log;
  Items all(1), alarms(1);
  Texts errors(1);
  EXPECT_EQ(log.GetMessages(&all), 0u);
  EXPECT_EQ(log.GetAlarmMessages(&alarms), 0u);
  EXPECT_EQ(log.GetErrorMessages(&errors), 0u);
  EXPECT_THAT(all, IsEmpty());
  EXPECT_THAT(alarms, IsEmpty());
  EXPECT_THAT(errors, IsEmpty());
}

TEST(SatLogTest, AMessageLineIsSymbolSpaceAndText) {
  EXPECT_EQ((Item{TSatLog::mtError, "File not found"}.GetMsgLine()), "! File not found");
  EXPECT_EQ((Item{TSatLog::mtDebug, "a"}.GetMsgLine()), "D a");
  EXPECT_EQ((Item{TSatLog::mtWarning, "a\n"}.GetMsgLine()), "* a\n");
  EXPECT_EQ((Item{TSatLog::mtInfo, ""}.GetMsgLine()), "i ");
}

TEST(SatLogTest, ACopyOfALogIsIndependent) {
  TSatLog log = MixedLog();
  const TSatLog copy = log;
  log.AppendMessage(TSatLog::mtInfo, "more");
  EXPECT_EQ(copy.items.size(), 6u);
  EXPECT_EQ(copy.firstError, "first error\n");
}

TEST(SatLogTest, EachLineIsPrintedToTheDebugSink) {
  Texts lines;
  const log_test::DebugSink sink([&](const std::string& line) { lines.push_back(line); });
  MixedLog().DebugOutput();
  EXPECT_EQ(lines, MixedLines());
}

TEST(SatLogTest, AnEmptyLogPrintsNothing) {
  Texts lines;
  const log_test::DebugSink sink([&](const std::string& line) { lines.push_back(line); });
  TSatLog().DebugOutput();
  EXPECT_THAT(lines, IsEmpty());
}

TEST(SatLogTest, ADebugSinkMayLogIntoTheLogThatIsPrinted) {
  TSatLog log = MixedLog();
  Texts lines;
  const log_test::DebugSink sink([&](const std::string& line) {
    lines.push_back(line);
    log.AppendMessage(TSatLog::mtDebug, line);
  });
  log.DebugOutput();
  EXPECT_EQ(lines, MixedLines());
  EXPECT_EQ(log.items.size(), 12u);
}

TEST(SatLogTest, ADebugSinkMayEmptyTheLogThatIsPrinted) {
  TSatLog log = MixedLog();
  Texts lines;
  const log_test::DebugSink sink([&](const std::string& line) {
    lines.push_back(line);
    log.items = Items();
  });
  log.DebugOutput();
  EXPECT_THAT(lines, ElementsAre("D d\n"));
}

TEST(SatLogTest, AThrowingDebugSinkIsAskedForEveryLine) {
  Texts lines;
  const log_test::DebugSink sink([&](const std::string& line) {
    lines.push_back(line);
    throw 1;
  });
  MixedLog().DebugOutput();
  EXPECT_EQ(lines, MixedLines());
}

// Under the thread sanitizer this finds writes of calls that are const.
TEST(SatLogTest, ConstCallsMayOverlap) {
  const TSatLog log = MixedLog();
  std::vector<std::thread> threads;
  std::vector<std::string> saved(4);
  for (std::string& bytes : saved) {
    threads.emplace_back([&log, &bytes] {
      for (int i = 0; i < 100; ++i) {
        Items all, alarms;
        Texts errors;
        log_test::FullStream stream(~0ul);
        const bool isGood = log.GetMessages(&all) == 6 && log.GetAlarmMessages(&alarms) == 3 &&
                            log.GetErrorMessages(&errors) == 2 && log.SaveToStream(&stream);
        bytes = isGood ? stream.bytes : "a call failed";
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_THAT(saved, ::testing::Each(log_test::Joined(MixedLines())));
}

}  // namespace
