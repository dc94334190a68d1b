// The log saved to streams.
#include <gmock/gmock.h>

#include <stdexcept>
#include <string>

#include "log/LogTest.h"

namespace {

using log_test::FullStream;
using log_test::FunctionStream;
using log_test::Joined;
using log_test::MixedLines;
using log_test::MixedLog;
using log_test::Texts;
using SatCommonUtils::TSatLog;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(SatLogStreamTest, EachLineIsOneWriteAndNothingStandsBetweenThem) {
  FullStream stream(~0ul);
  EXPECT_TRUE(MixedLog().SaveToStream(&stream));
  EXPECT_EQ(stream.writes, MixedLines());
}

TEST(SatLogStreamTest, MessagesWithoutLineEndsMakeOneRunOnLine) {
  TSatLog log;
  log.AppendMessage(TSatLog::mtInfo, "one");
  log.AppendMessage(TSatLog::mtError, "two");
  log.AppendMessage(TSatLog::mtDebug, "three");
  TKvMemoryStream stream;
  EXPECT_TRUE(log.SaveToStream(&stream));
  EXPECT_EQ(stream.Bytes(), "i one! twoD three");
}

TEST(SatLogStreamTest, BytesAreTheTextsOwn) {
  TSatLog log;
  const std::string text("\xEF\xBB\xBF\0\xFC\r\r\n", 8);
  log.AppendMessage(TSatLog::mtWarning, text);
  TKvMemoryStream stream;
  EXPECT_TRUE(log.SaveToStream(&stream));
  EXPECT_EQ(stream.Bytes(), "* " + text);
}

TEST(SatLogStreamTest, WritingGoesOnWhereTheStreamStands) {
  TKvMemoryStream stream("before: ");
  ASSERT_TRUE(stream.SetPos(8));
  EXPECT_TRUE(MixedLog().SaveToStream(&stream));
  EXPECT_EQ(stream.Bytes(), "before: " + Joined(MixedLines()));
}

TEST(SatLogStreamTest, AnEmptyLogIsSavedWithoutAWrite) {
  FullStream stream(0);
  EXPECT_TRUE(TSatLog().SaveToStream(&stream));
  EXPECT_THAT(stream.writes, IsEmpty());
}

TEST(SatLogStreamTest, AStreamThatIsFullAtAnyByteGivesFalseAndKeepsWhatFits) {
  const std::string whole = Joined(MixedLines());
  for (unsigned long room = 0; room < whole.size(); ++room) {
    FullStream stream(room);
    EXPECT_FALSE(MixedLog().SaveToStream(&stream)) << room;
    EXPECT_EQ(stream.bytes, whole.substr(0, room));
  }
}

TEST(SatLogStreamTest, TheWriteThatMeetsTheEndIsTheLast) {
  const unsigned long size = Joined(MixedLines()).size();
  for (unsigned long room = 0; room < size; ++room) {
    FullStream stream(room);
    MixedLog().SaveToStream(&stream);
    EXPECT_GT(Joined(stream.writes).size(), room);
    stream.writes.pop_back();
    EXPECT_LE(Joined(stream.writes).size(), room);
  }
}

TEST(SatLogStreamTest, AStreamWithJustEnoughRoomGivesTrue) {
  FullStream stream(Joined(MixedLines()).size());
  EXPECT_TRUE(MixedLog().SaveToStream(&stream));
  EXPECT_EQ(stream.bytes, Joined(MixedLines()));
}

TEST(SatLogStreamTest, AWriteOneByteShortEndsTheSavingAlthoughTheNextWouldSucceed) {
  for (unsigned long bad = 0; bad < MixedLines().size(); ++bad) {
    unsigned long writes = 0;
    FunctionStream stream(
        [&](const std::string& line) { return line.size() - (writes++ == bad ? 1 : 0); });
    EXPECT_FALSE(MixedLog().SaveToStream(&stream));
    EXPECT_EQ(writes, bad + 1);
  }
}

TEST(SatLogStreamTest, AWriteThatReportsMoreThanTheLineIsNoFailure) {
  unsigned long writes = 0;
  FunctionStream stream([&](const std::string& line) { return ++writes, line.size() + 1; });
  EXPECT_TRUE(MixedLog().SaveToStream(&stream));
  EXPECT_EQ(writes, 6u);
}

TEST(SatLogStreamTest, WhatAStreamThrowsPassesAndTheLogStays) {
  for (unsigned long bad = 0; bad < MixedLines().size(); ++bad) {
    const TSatLog log = MixedLog();
    unsigned long writes = 0;
    FunctionStream stream([&](const std::string& line) {
      if (writes++ == bad) throw std::out_of_range("the stream's own");
      return line.size();
    });
    EXPECT_THROW(log.SaveToStream(&stream), std::out_of_range);
    EXPECT_EQ(writes, bad + 1);
    EXPECT_EQ(log.items, MixedLog().items);
  }
}

TEST(SatLogStreamTest, AStreamMayLogIntoTheLogThatIsSaved) {
  TSatLog log = MixedLog();
  Texts lines;
  FunctionStream stream([&](const std::string& line) {
    lines.push_back(line);
    log.AppendMessage(TSatLog::mtDebug, line);
    return line.size();
  });
  EXPECT_TRUE(log.SaveToStream(&stream));
  EXPECT_EQ(lines, MixedLines());
  EXPECT_EQ(log.items.size(), 12u);
}

TEST(SatLogStreamTest, AFileThatIsNotOpenGivesFalse) {
  TKvFileStream closed;
  EXPECT_FALSE(MixedLog().SaveToStream(&closed));
}

}  // namespace
