#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>

#include "SatCommonUtils/Text.h"
#include "kv/Growth.h"
#include "support/FailingNew.h"
#include "text/HostStream.h"

namespace {

using namespace std::string_literals;
using SatCommonUtils::PseudoUTF16toUTF8;
using SatCommonUtils::PseudoUTF16toUTF8BOM;
using testing::ElementsAre;
using text_test::HostStream;
using Call = HostStream::Call;

std::string Converted(const std::string& bytes) {
  TKvMemoryStream stream(bytes);
  return PseudoUTF16toUTF8BOM(&stream);
}

/// From a stream of `bytes`, whose position is elsewhere.
std::string ConvertedFrom(unsigned long offset, const std::string& bytes, bool littleEndian) {
  HostStream stream(bytes);
  stream.SetPos(1);
  return PseudoUTF16toUTF8(&stream, littleEndian, offset);
}

/// Every second byte, written as plainly as can be.
std::string EverySecond(const std::string& bytes, unsigned long start) {
  std::string text;
  for (unsigned long i = start; i < bytes.size(); i += 2) text += bytes[i];
  return text;
}

std::string RandomBytes(std::mt19937& random, unsigned long length) {
  std::string bytes(length, '\0');
  for (char& c : bytes) c = static_cast<char>(random());
  return bytes;
}

TEST(PseudoUtf16OfBytes, KeepsTheLowBytesInOrder) {
  EXPECT_EQ(PseudoUTF16toUTF8("A\0B\x20"s, true), "AB");
  EXPECT_EQ(PseudoUTF16toUTF8("\0A\x20\x42"s, false), "AB");
}

TEST(PseudoUtf16OfBytes, GivesSingleBytesForLatin1) {
  EXPECT_EQ(PseudoUTF16toUTF8("\x80\0\xFC\0\xFF\0"s, true), "\x80\xFC\xFF");
}

TEST(PseudoUtf16OfBytes, GivesANulByteForALowByteOfZero) {
  EXPECT_EQ(PseudoUTF16toUTF8("\0\x01"s, true), "\0"s);
}

TEST(PseudoUtf16OfBytes, TakesTheLastByteOfAnOddLengthForALowByteWhenLittleEndian) {
  EXPECT_EQ(PseudoUTF16toUTF8("A\0B"s, true), "AB");
  EXPECT_EQ(PseudoUTF16toUTF8("A", true), "A");
}

TEST(PseudoUtf16OfBytes, DropsTheLastByteOfAnOddLengthWhenBigEndian) {
  EXPECT_EQ(PseudoUTF16toUTF8("\0A\x42"s, false), "A");
  EXPECT_EQ(PseudoUTF16toUTF8("A", false), "");
}

TEST(PseudoUtf16OfBytes, GivesNothingForNothing) {
  EXPECT_EQ(PseudoUTF16toUTF8("", true), "");
  EXPECT_EQ(PseudoUTF16toUTF8("", false), "");
}

TEST(PseudoUtf16OfBytes, EqualsAPlainLoopAtEveryLength) {
  std::mt19937 random(1);
  for (unsigned long length = 0; length < 300; ++length) {
    const std::string bytes = RandomBytes(random, length);
    ASSERT_EQ(PseudoUTF16toUTF8(bytes, true), EverySecond(bytes, 0)) << length;
    ASSERT_EQ(PseudoUTF16toUTF8(bytes, false), EverySecond(bytes, 1)) << length;
  }
}

TEST(PseudoUtf16OfAStream, ReadsFromTheOffsetWhereverTheStreamStands) {
  EXPECT_EQ(ConvertedFrom(0, "A\0B\0"s, true), "AB");
  EXPECT_EQ(ConvertedFrom(2, "A\0B\0"s, true), "B");
  EXPECT_EQ(ConvertedFrom(1, "A\0B\0"s, false), "B");
  EXPECT_EQ(ConvertedFrom(1, "xA\0B\0"s, true), "AB");
}

TEST(PseudoUtf16OfAStream, LeavesAnOddLastByteOut) {
  EXPECT_EQ(ConvertedFrom(0, "A\0B"s, true), "A");
  EXPECT_EQ(ConvertedFrom(0, "\0A\0"s, false), "A");
}

TEST(PseudoUtf16OfAStream, GivesNothingWhenLessThanAUnitIsLeft) {
  EXPECT_EQ(ConvertedFrom(0, "A", true), "");
  EXPECT_EQ(ConvertedFrom(3, "A\0B\0"s, true), "");
  EXPECT_EQ(ConvertedFrom(4, "A\0B\0"s, true), "");
}

TEST(PseudoUtf16OfAStream, GivesNothingFromAnOffsetBehindTheEnd) {
  EXPECT_EQ(ConvertedFrom(5, "A\0B\0"s, true), "");
  EXPECT_EQ(ConvertedFrom(~0ul, "A\0B\0"s, true), "");
}

TEST(PseudoUtf16OfAStream, LeavesTheStreamBehindTheLastUnit) {
  for (const auto& [offset, end] :
       {std::pair(0ul, 4ul), std::pair(3ul, 5ul), std::pair(4ul, 4ul)}) {
    HostStream stream("A\0B\0C"s);
    PseudoUTF16toUTF8(&stream, true, offset);
    EXPECT_EQ(stream.Position(), end) << offset;
  }
}

TEST(PseudoUtf16OfAStream, EqualsAPlainLoopAroundEveryMultipleOfAChunk) {
  std::mt19937 random(2);
  for (const unsigned long middle : {0ul, 1024ul, 2048ul, 3072ul}) {
    for (unsigned long length = middle < 5 ? 0 : middle - 5; length < middle + 5; ++length) {
      for (unsigned long offset = 0; offset < 4; ++offset) {
        const std::string bytes = RandomBytes(random, offset + length);
        const std::string units = bytes.substr(offset, length / 2 * 2);
        ASSERT_EQ(ConvertedFrom(offset, bytes, true), EverySecond(units, 0)) << length;
        ASSERT_EQ(ConvertedFrom(offset, bytes, false), EverySecond(units, 1)) << length;
      }
    }
  }
}

TEST(PseudoUtf16OfAStream, ReadsChunksOf1024Bytes) {
  HostStream stream("\xFF\xFE" + std::string(3000, 'A'));
  EXPECT_EQ(PseudoUTF16toUTF8BOM(&stream), std::string(1500, 'A'));
  EXPECT_THAT(stream.readCounts, ElementsAre(4, 1024, 1024, 952));
}

TEST(PseudoUtf16OfAStream, GivesNothingOfATextOfWhichAChunkFallsShort) {
  for (const unsigned long readable : {2999ul, 2048ul, 2047ul, 1024ul, 1ul, 0ul}) {
    HostStream stream(std::string(3000, 'A'));
    stream.readable = readable;
    EXPECT_EQ(PseudoUTF16toUTF8(&stream, true, 0), "") << readable;
  }
}

TEST(PseudoUtf16OfAStream, GivesNothingOfAStreamThatClaimsMoreThanItHas) {
  HostStream stream(std::string(3000, 'A'));
  stream.size = ~0ul;
  EXPECT_EQ(PseudoUTF16toUTF8(&stream, true, 0), "");
}

TEST(PseudoUtf16OfAStream, GivesNothingWhereTheStreamCannotGoToTheOffset) {
  HostStream stream("A\0B\0"s);
  stream.seeks = false;
  EXPECT_EQ(PseudoUTF16toUTF8(&stream, true, 2), "");
}

TEST(PseudoUtf16OfAStream, PassesWhatTheStreamThrows) {
  for (const Call call : {Call::kSetPos, Call::kGetSize, Call::kRead}) {
    HostStream stream("A\0B\0"s);
    stream.throwing = call;
    EXPECT_THROW(PseudoUTF16toUTF8(&stream, true, 0), std::runtime_error);
  }
}

TEST(PseudoUtf16OfAStream, PassesAnAllocationThatFails) {
  HostStream stream(std::string(3000, 'A'));
  stream.readCounts.reserve(10);
  stream.setOffsets.reserve(10);
  const auto convertWithoutMemory = [&] {
    const ravelin_test::FailingNew failing(0);
    return PseudoUTF16toUTF8(&stream, true, 0);
  };
  EXPECT_THROW(convertWithoutMemory(), std::bad_alloc);
}

TEST(PseudoUtf16WithAMark, ReadsWhatFollowsTheMarkInItsByteOrder) {
  EXPECT_EQ(Converted("\xFF\xFE\x41\0\x42\0"s), "AB");
  EXPECT_EQ(Converted("\xFE\xFF\0\x41\0\x42"s), "AB");
}

TEST(PseudoUtf16WithAMark, ReadsAllOfItWhereverTheStreamStands) {
  for (unsigned long pos = 0; pos <= 6; ++pos) {
    TKvMemoryStream stream("\xFE\xFF\0\x41\0\x42"s);
    stream.SetPos(pos);
    EXPECT_EQ(PseudoUTF16toUTF8BOM(&stream), "AB") << pos;
  }
}

TEST(PseudoUtf16WithAMark, GivesNothingForAMarkAlone) {
  EXPECT_EQ(Converted("\xFF\xFE"), "");
  EXPECT_EQ(Converted("\xFE\xFF"), "");
}

TEST(PseudoUtf16WithAMark, GivesNothingForOtherMarksAndNone) {
  EXPECT_EQ(Converted("\xEF\xBB\xBFtext"), "");
  EXPECT_EQ(Converted("\xFF\xFE\0\0A\0\0\0"s), "");
  EXPECT_EQ(Converted("\0\0\xFE\xFF\0\0\0A"s), "");
  EXPECT_EQ(Converted("A\0B\0"s), "");
  EXPECT_EQ(Converted(""), "");
}

TEST(PseudoUtf16WithAMark, LeavesThePositionOfAStreamThatItDoesNotRead) {
  for (const std::string& bytes : {"\xEF\xBB\xBFtext"s, "\xFF\xFE\0\0A\0\0\0"s, "text"s}) {
    HostStream stream(bytes);
    stream.SetPos(1);
    EXPECT_EQ(PseudoUTF16toUTF8BOM(&stream), "");
    EXPECT_EQ(stream.Position(), 1u);
  }
}

TEST(PseudoUtf16WithAMark, ReadsAStreamCutAtEveryByte) {
  const std::string whole = "\xFE\xFF\0A\0B\0C\0D"s;
  const char* const texts[] = {"", "", "", "", "A", "A", "AB", "AB", "ABC", "ABC", "ABCD"};
  for (unsigned long length = 0; length <= whole.size(); ++length) {
    EXPECT_EQ(Converted(whole.substr(0, length)), texts[length]) << length;
  }
}

TEST(PseudoUtf16Growth, BytesAndStreamsAreReadInLinearTime) {
  EXPECT_TRUE(kv_test::IsLinear(500000, [](unsigned long size) {
    const std::string bytes(2 * size, 'A');
    TKvMemoryStream stream(bytes);
    EXPECT_EQ(PseudoUTF16toUTF8(bytes, true).size(), size);
    EXPECT_EQ(PseudoUTF16toUTF8(&stream, true, 0).size(), size);
  }));
}

}  // namespace
