#include <gtest/gtest.h>

#include <string>

#include "SatCommonUtils/Text.h"

namespace {

using namespace std::string_literals;
using SatCommonUtils::GetBOMLength;
using SatCommonUtils::ReadBOM;
using SatCommonUtils::RecognizeBOM;
using SatCommonUtils::TSatBOM;

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

TEST(ReadBom, LeavesThePosition) {
  for (const char* text : {"\xFF\xFE text", "\xFF", "plain text"}) {
    TKvMemoryStream stream{text};
    stream.SetPos(1);
    ReadBOM(&stream);
    EXPECT_EQ(stream.GetPos(), 1u);
  }
}

}  // namespace
