#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "SatCommonUtils/Text.h"
#include "text/GuardedBytes.h"
#include "text/HostStream.h"

namespace {

using namespace std::string_literals;
using SatCommonUtils::GetBOMLength;
using SatCommonUtils::ReadBOM;
using SatCommonUtils::RecognizeBOM;
using SatCommonUtils::TSatBOM;
using testing::ElementsAre;
using text_test::HostStream;
using Call = HostStream::Call;

TSatBOM MarkOf(const std::string& bytes) {
  TKvMemoryStream stream(bytes);
  return ReadBOM(&stream);
}

TEST(RecognizeBom, KnowsUtf8) {
  EXPECT_EQ(RecognizeBOM("\xEF\xBB\xBF\x41"), 1);
}

TEST(RecognizeBom, KnowsUtf16BigEndian) {
  EXPECT_EQ(RecognizeBOM("\xFE\xFF\0\x41"), 2);
}

TEST(RecognizeBom, KnowsUtf16LittleEndian) {
  EXPECT_EQ(RecognizeBOM("\xFF\xFE\x41\0"), 3);
  EXPECT_EQ(RecognizeBOM("\xFF\xFE\0\x41"), 3);
}

TEST(RecognizeBom, KnowsUtf32BigEndian) {
  EXPECT_EQ(RecognizeBOM("\0\0\xFE\xFF"), 4);
}

TEST(RecognizeBom, KnowsUtf32LittleEndian) {
  EXPECT_EQ(RecognizeBOM("\xFF\xFE\0\0"), 5);
}

TEST(RecognizeBom, TakesAnythingElseForNoMark) {
  for (const char* bytes : {"text", "\xEF\xBB\xBE\x41", "\xEF\xBC\xBF\x41", "\xFE\xFE\x41\x41",
                            "\xFF\xFF\0\0", "\0\0\xFF\xFE", "\0\x01\xFE\xFF"}) {
    EXPECT_EQ(RecognizeBOM(bytes), 0);
  }
}

TEST(GetBomLength, IsTheNumberOfTheMarksBytes) {
  const unsigned long lengths[] = {0, 3, 2, 2, 4, 4};
  for (int mark = 0; mark <= 5; ++mark) {
    EXPECT_EQ(GetBOMLength(static_cast<TSatBOM>(mark)), lengths[mark]) << mark;
  }
}

TEST(GetBomLength, IsNothingForAValueThatIsNoMark) {
  for (const int mark : {-1, 6, 100, 0x7fffffff}) {
    EXPECT_EQ(GetBOMLength(static_cast<TSatBOM>(mark)), 0u) << mark;
  }
}

TEST(ReadBom, KnowsEveryMarkAtTheStartOfAStream) {
  EXPECT_EQ(MarkOf("\xEF\xBB\xBFtext"), 1);
  EXPECT_EQ(MarkOf("\xFE\xFF\0A"s), 2);
  EXPECT_EQ(MarkOf("\xFF\xFE"
                   "A\0"s),
            3);
  EXPECT_EQ(MarkOf("\0\0\xFE\xFF\0\0\0A"s), 4);
  EXPECT_EQ(MarkOf("\xFF\xFE\0\0A\0\0\0"s), 5);
  EXPECT_EQ(MarkOf("text"), 0);
}

TEST(ReadBom, KnowsAMarkThatIsTheWholeStream) {
  EXPECT_EQ(MarkOf("\xFF\xFE"), 3);
  EXPECT_EQ(MarkOf("\xFE\xFF"), 2);
  EXPECT_EQ(MarkOf("\xEF\xBB\xBF"), 1);
  EXPECT_EQ(MarkOf("\xFF\xFE\0\0"s), 5);
}

TEST(ReadBom, TakesAMarkThatIsCutForNone) {
  EXPECT_EQ(MarkOf(""), 0);
  EXPECT_EQ(MarkOf("\xEF"), 0);
  EXPECT_EQ(MarkOf("\xEF\xBB"), 0);
  EXPECT_EQ(MarkOf("\xFF"), 0);
  EXPECT_EQ(MarkOf("\0\0\xFE"s), 0);
}

TEST(ReadBom, TakesThreeBytesForUtf16WhenTheFourthOfUtf32IsMissing) {
  EXPECT_EQ(MarkOf("\xFF\xFE\0"s), 3);
}

TEST(ReadBom, LooksAtTheStartWhereverTheStreamStands) {
  for (unsigned long pos = 0; pos <= 8; ++pos) {
    TKvMemoryStream stream("\xFF\xFE\xEF\xBB\xBF   "s);
    stream.SetPos(pos);
    EXPECT_EQ(ReadBOM(&stream), 3) << pos;
    EXPECT_EQ(stream.GetPos(), pos);
  }
}

TEST(ReadBom, LeavesThePosition) {
  for (const char* text : {"\xFF\xFE text", "\xFF", "plain text"}) {
    TKvMemoryStream stream{text};
    stream.SetPos(1);
    ReadBOM(&stream);
    EXPECT_EQ(stream.GetPos(), 1u);
  }
}

TEST(ReadBom, AsksForNoMoreThanFourBytes) {
  HostStream stream("\xEF\xBB\xBF text");
  ReadBOM(&stream);
  EXPECT_THAT(stream.readCounts, ElementsAre(4));
  HostStream small("\xFF\xFE");
  ReadBOM(&small);
  EXPECT_THAT(small.readCounts, ElementsAre(2));
}

TEST(ReadBom, FindsNoMarkWhenTheReadFallsShort) {
  for (unsigned long readable = 0; readable < 4; ++readable) {
    HostStream stream("\xFF\xFE text");
    stream.SetPos(3);
    stream.readable = readable;
    EXPECT_EQ(ReadBOM(&stream), 0) << readable;
    EXPECT_EQ(stream.Position(), 3u);
  }
}

TEST(ReadBom, FindsNoMarkInAStreamThatClaimsMoreThanItHas) {
  HostStream stream("\xFF\xFE");
  stream.size = ~0ul;
  EXPECT_EQ(ReadBOM(&stream), 0);
}

TEST(ReadBom, FindsNoMarkWhereTheStreamCannotGoToItsStart) {
  HostStream stream("\xFF\xFE text");
  stream.SetPos(3);
  stream.seeks = false;
  EXPECT_EQ(ReadBOM(&stream), 0);
  EXPECT_THAT(stream.readCounts, ElementsAre());
  EXPECT_THAT(stream.setOffsets, ElementsAre(3, 0, 3)) << "it is sent back all the same";
}

TEST(ReadBom, PassesWhatTheStreamThrowsAndRestoresThePosition) {
  for (const Call call : {Call::kGetSize, Call::kRead}) {
    HostStream stream("\xFF\xFE text");
    stream.SetPos(3);
    stream.throwing = call;
    EXPECT_THROW(ReadBOM(&stream), std::runtime_error);
    EXPECT_EQ(stream.Position(), 3u);
  }
}

TEST(ReadBom, PassesWhatTheStreamThrowsAboutItsPosition) {
  for (const Call call : {Call::kGetPos, Call::kSetPos}) {
    HostStream stream("\xFF\xFE text");
    stream.throwing = call;
    EXPECT_THROW(ReadBOM(&stream), std::runtime_error);
  }
}

TEST(RecognizeBom, LooksAtNoMoreThanFourBytes) {
  for (const std::string& bytes : {"\xEF\xBB\xBF\0"s, "\xFF\xFE\0\0"s, "\0\0\xFE\xFF"s, "text"s}) {
    const text_test::GuardedBytes guarded(bytes, text_test::GuardedBytes::Edge::kBehind);
    EXPECT_EQ(RecognizeBOM(guarded.Data()), MarkOf(bytes));
  }
}

// Every combination of the bytes that marks are made of, and others.
TEST(RecognizeBom, TakesTheMarksAloneForMarks) {
  const std::string bytes = "\xEF\xBB\xBF\xFE\xFF\x01\0\x41"s;
  for (unsigned long number = 0; number < 4096; ++number) {
    std::string text;
    for (unsigned long i = 0; i < 4; ++i) text += bytes[number >> (3 * i) & 7];
    int expected = 0;
    if (text.starts_with("\xEF\xBB\xBF")) expected = 1;
    if (text.starts_with("\xFE\xFF")) expected = 2;
    if (text.starts_with("\xFF\xFE")) expected = text.substr(2) == "\0\0"s ? 5 : 3;
    if (text == "\0\0\xFE\xFF"s) expected = 4;
    EXPECT_EQ(RecognizeBOM(text.data()), expected) << number;
  }
}

}  // namespace
