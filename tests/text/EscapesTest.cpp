#include <gtest/gtest.h>

#include <string>

#include "SatCommonUtils/Text.h"

namespace {

using SatCommonUtils::Decode;
using SatCommonUtils::Encode;

/// The buffer form into a buffer of just that size.
std::string Encoded(const std::string& text) {
  std::string out(Encode(text.data(), text.size(), nullptr, 0), '#');
  EXPECT_EQ(Encode(text.data(), text.size(), out.data(), 0), out.size());
  return out;
}

/// The buffer form into a buffer as large as the source.
std::string Decoded(const std::string& text) {
  std::string out(text.size(), '#');
  out.resize(Decode(text.data(), text.size(), out.data(), 0));
  return out;
}

unsigned long EncodedLength(const std::string& text) {
  return Encode(text.data(), text.size(), nullptr, 0);
}

unsigned long DecodedLength(const std::string& text) {
  return Decode(text.data(), text.size(), nullptr, 0);
}

TEST(Encode, WritesTabsAndLineEndsAsABackslashAndALetter) {
  EXPECT_EQ(Encoded("\tx\n"), "\\tx\\n");
  EXPECT_EQ(Encoded("\r"), "\\r");
}

TEST(Encode, LeavesEveryOtherByteAsItIs) {
  for (int c = 0; c < 256; ++c) {
    if (c == '\t' || c == '\n' || c == '\r') continue;
    const std::string text(20, static_cast<char>(c));
    EXPECT_EQ(Encoded(text), text) << c;
  }
}

TEST(Encode, LeavesTheBackslashAsItIs) {
  EXPECT_EQ(Encoded("\\n\\"), "\\n\\");
}

TEST(Encode, MeasuresWithoutABuffer) {
  EXPECT_EQ(EncodedLength("\tx\n"), 5u);
  EXPECT_EQ(EncodedLength("plain text, longer than a word"), 30u);
}

TEST(Encode, GivesNothingForNothing) {
  char buffer = '#';
  EXPECT_EQ(Encode("\t", 0, nullptr, 0), 0u);
  EXPECT_EQ(Encode("\t", 0, &buffer, 0), 0u);
  EXPECT_EQ(buffer, '#');
}

TEST(Encode, WritesBehindTheOffset) {
  std::string buffer = "######";
  EXPECT_EQ(Encode("a\n", 2, buffer.data(), 2), 3u);
  EXPECT_EQ(buffer, "##a\\n#");
}

TEST(Encode, ReplacesWhatTheStringHeld) {
  std::string out = "held before";
  Encode("a\tb", &out);
  EXPECT_EQ(out, "a\\tb");
}

TEST(Decode, ReadsTheLettersBehindABackslash) {
  EXPECT_EQ(Decoded("\\tx\\n\\r"), "\tx\n\r");
}

TEST(Decode, LeavesABackslashBeforeAnyOtherByte) {
  EXPECT_EQ(Decoded("\\q"), "\\q");
  EXPECT_EQ(Decoded("\\T\\ \\\t"), "\\T\\ \\\t");
}

TEST(Decode, TakesASecondBackslashWithTheFirst) {
  EXPECT_EQ(Decoded("\\\\n"), "\\\\n");
}

TEST(Decode, DropsABackslashAtTheEnd) {
  EXPECT_EQ(Decoded("a\\"), "a");
  EXPECT_EQ(Decoded("\\"), "");
  EXPECT_EQ(Decoded("\\\\\\"), "\\\\");
}

TEST(Decode, CountsABackslashAtTheEndWhenItMeasures) {
  EXPECT_EQ(DecodedLength("a\\"), 2u);
  EXPECT_EQ(DecodedLength("\\\\\\"), 3u);
}

TEST(Decode, MeasuresWithoutABuffer) {
  EXPECT_EQ(DecodedLength("\\tx\\n"), 3u);
  EXPECT_EQ(DecodedLength("\\q\\"), 3u);
}

TEST(Decode, GivesNothingForNothing) {
  char buffer = '#';
  EXPECT_EQ(Decode("\\", 0, nullptr, 0), 0u);
  EXPECT_EQ(Decode("\\", 0, &buffer, 0), 0u);
  EXPECT_EQ(buffer, '#');
}

TEST(Decode, WritesBehindTheOffset) {
  std::string buffer = "######";
  EXPECT_EQ(Decode("a\\n", 3, buffer.data(), 2), 2u);
  EXPECT_EQ(buffer, "##a\n##");
}

TEST(Decode, ReplacesWhatTheStringHeld) {
  std::string out = "held before";
  Decode("a\\tb\\", &out);
  EXPECT_EQ(out, "a\tb");
}

TEST(Decode, GivesBackEveryTextWithoutABackslash) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const std::string text = {static_cast<char>(first), static_cast<char>(second)};
      if (text.find('\\') != std::string::npos) continue;
      EXPECT_EQ(Decoded(Encoded(text)), text);
    }
  }
}

TEST(Decode, TakesABackslashInFrontOfAnEscapedByteForAPair) {
  EXPECT_EQ(Decoded(Encoded("\\\t")), "\\\\t");
}

TEST(Decode, ReadsALetterBehindABackslashThatWasThereBeforeEncoding) {
  EXPECT_EQ(Decoded(Encoded("\\n")), "\n");
}

}  // namespace
