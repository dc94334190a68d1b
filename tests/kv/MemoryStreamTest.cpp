#include <limits>
#include <random>
#include <string>

#include "Kv/Stream.h"
#include "StreamModel.h"
#include "gtest/gtest.h"
#include "support/FailingNew.h"

namespace {

using kv_test::LineLikeBytes;
using kv_test::ReadExact;
using kv_test::ReadLineExact;
using kv_test::StepAndCompare;
using kv_test::StreamModel;

constexpr unsigned long kMost = std::numeric_limits<unsigned long>::max();

unsigned long Write(TKvStream& stream, const std::string& bytes) {
  return stream.Write(bytes.data(), bytes.size());
}

TEST(MemoryStreamTest, ANewStreamIsOpenEmptyAndAtItsEnd) {
  const TKvMemoryStream stream;
  EXPECT_TRUE(stream.IsOpen());
  EXPECT_EQ(stream.getSize(), 0u);
  EXPECT_EQ(stream.GetPos(), 0u);
  EXPECT_TRUE(stream.Eof());
  EXPECT_EQ(stream.Bytes(), "");
}

TEST(MemoryStreamTest, StartsAtTheBeginningOfTheBytesGiven) {
  TKvMemoryStream stream("abc");
  EXPECT_EQ(stream.GetPos(), 0u);
  EXPECT_EQ(stream.getSize(), 3u);
  EXPECT_FALSE(stream.Eof());
  EXPECT_EQ(ReadExact(stream, 3), "abc");
}

TEST(MemoryStreamTest, AReadIsShortAtTheEnd) {
  TKvMemoryStream stream("abc");
  stream.SetPos(1);
  EXPECT_EQ(ReadExact(stream, 10), "bc");
  EXPECT_EQ(stream.GetPos(), 3u);
  EXPECT_TRUE(stream.Eof());
}

TEST(MemoryStreamTest, AReadBehindTheEndGivesNothingAndStaysThere) {
  TKvMemoryStream stream("abc");
  EXPECT_TRUE(stream.SetPos(kMost));
  EXPECT_EQ(ReadExact(stream, 10), "");
  EXPECT_EQ(stream.GetPos(), kMost);
  EXPECT_TRUE(stream.Eof());
}

TEST(MemoryStreamTest, AReadOfNothingLeavesTheBufferAlone) {
  TKvMemoryStream stream("abc");
  EXPECT_EQ(stream.Read(nullptr, 0), 0u);
  EXPECT_FALSE(stream.Eof());
}

TEST(MemoryStreamTest, AWriteReplacesAndExtends) {
  TKvMemoryStream stream("abc");
  stream.SetPos(2);
  EXPECT_EQ(Write(stream, "XYZ"), 3u);
  EXPECT_EQ(stream.Bytes(), "abXYZ");
  EXPECT_EQ(stream.GetPos(), 5u);
}

TEST(MemoryStreamTest, AWriteInsideKeepsWhatFollows) {
  TKvMemoryStream stream("abcde");
  stream.SetPos(1);
  EXPECT_EQ(Write(stream, "XY"), 2u);
  EXPECT_EQ(stream.Bytes(), "aXYde");
}

TEST(MemoryStreamTest, AWriteBehindTheEndFillsTheGapWithZeros) {
  TKvMemoryStream stream("ab");
  stream.SetPos(5);
  EXPECT_EQ(Write(stream, "c"), 1u);
  EXPECT_EQ(stream.Bytes(), std::string("ab\0\0\0c", 6));
}

TEST(MemoryStreamTest, AWriteOfNothingBehindTheEndFillsNoGap) {
  TKvMemoryStream stream("ab");
  stream.SetPos(1000);
  EXPECT_EQ(stream.Write(nullptr, 0), 0u);
  EXPECT_EQ(stream.Bytes(), "ab");
}

TEST(MemoryStreamTest, WhatIsWrittenIsReadBack) {
  TKvMemoryStream stream;
  Write(stream, "line\nrest");
  stream.SetPos(0);
  EXPECT_EQ(ReadLineExact(stream, 20).text, "line");
  EXPECT_EQ(ReadExact(stream, 20), "rest");
}

TEST(MemoryStreamTest, AWriteOfItsOwnBytesDoublesThem) {
  TKvMemoryStream stream("abcdefghijklmnopqrstuvwxyz");
  stream.SetPos(stream.getSize());
  EXPECT_EQ(stream.Write(stream.Bytes().data(), 26), 26u);
  EXPECT_EQ(stream.Bytes(), "abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyz");
}

TEST(MemoryStreamTest, AWriteOfItsOwnBytesMayOverlapThem) {
  TKvMemoryStream stream("abcdef");
  stream.SetPos(1);
  EXPECT_EQ(stream.Write(stream.Bytes().data(), 4), 4u);
  EXPECT_EQ(stream.Bytes(), "aabcdf");
}

TEST(MemoryStreamTest, AWriteWhoseEndCannotBeCountedWritesNothing) {
  TKvMemoryStream stream("abc");
  for (const unsigned long pos : {kMost, kMost - 1, kMost / 2, kMost / 2 - 1}) {
    stream.SetPos(pos);
    EXPECT_EQ(Write(stream, "xyz"), 0u);
    EXPECT_EQ(stream.GetPos(), pos);
  }
  EXPECT_EQ(stream.Bytes(), "abc");
}

TEST(MemoryStreamTest, AWriteThatMemoryCannotHoldWritesNothing) {
  TKvMemoryStream stream("abc");
  stream.SetPos(1000);
  unsigned long written = 1;
  {
    const ravelin_test::FailingNew failing(0);
    written = stream.Write("x", 1);
  }
  EXPECT_EQ(written, 0u);
  EXPECT_EQ(stream.Bytes(), "abc");
  EXPECT_EQ(stream.GetPos(), 1000u);
  EXPECT_EQ(Write(stream, "x"), 1u);
  EXPECT_EQ(stream.getSize(), 1001u);
}

TEST(MemoryStreamTest, ManySmallWritesGrowTheBufferFewTimes) {
  TKvMemoryStream stream;
  unsigned long moves = 0;
  const char* at = stream.Bytes().data();
  for (int i = 0; i < 100000; ++i) {
    stream.Write("x", 1);
    if (stream.Bytes().data() != at) ++moves;
    at = stream.Bytes().data();
  }
  EXPECT_EQ(stream.getSize(), 100000u);
  EXPECT_LT(moves, 40u);
}

TEST(MemoryStreamTest, ALineBufferWithoutRoomEndsALoopOverEof) {
  for (const unsigned long size : {0ul, 1ul}) {
    TKvMemoryStream stream("abc");
    EXPECT_EQ(ReadLineExact(stream, size).consumed, 0u);
    EXPECT_TRUE(stream.Eof());
    EXPECT_TRUE(stream.SetPos(0));
    EXPECT_FALSE(stream.Eof());
    EXPECT_EQ(ReadExact(stream, 3), "abc");
  }
}

TEST(MemoryStreamTest, PurgeLosesNothing) {
  TKvMemoryStream stream("abc");
  stream.SetPos(1);
  stream.Purge();
  EXPECT_EQ(ReadExact(stream, 3), "bc");
}

TEST(MemoryStreamTest, AnswersRandomCallsLikeTheModel) {
  for (unsigned seed = 0; seed < 20; ++seed) {
    std::mt19937 random(seed);
    const std::string bytes = LineLikeBytes(random, random() % 30000);
    TKvMemoryStream stream(bytes);
    StreamModel model(bytes);
    for (int step = 0; step < 1000; ++step) {
      ASSERT_NO_FATAL_FAILURE(StepAndCompare(stream, model, random, bytes.size()))
          << "seed " << seed << " step " << step;
    }
  }
}

}  // namespace
