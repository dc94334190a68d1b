#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <random>
#include <string>

#include "Kv/Text.h"

namespace {

// UTF-8 of the Windows-1252 bytes from 0x80 on, as Python's codec cp1252 gives it.
const std::array<const char*, 128> kUtf8OfWindows1252 = {
    "\xE2\x82\xAC", "\xEF\xBF\xBD", "\xE2\x80\x9A", "\xC6\x92",     "\xE2\x80\x9E", "\xE2\x80\xA6",
    "\xE2\x80\xA0", "\xE2\x80\xA1", "\xCB\x86",     "\xE2\x80\xB0", "\xC5\xA0",     "\xE2\x80\xB9",
    "\xC5\x92",     "\xEF\xBF\xBD", "\xC5\xBD",     "\xEF\xBF\xBD", "\xEF\xBF\xBD", "\xE2\x80\x98",
    "\xE2\x80\x99", "\xE2\x80\x9C", "\xE2\x80\x9D", "\xE2\x80\xA2", "\xE2\x80\x93", "\xE2\x80\x94",
    "\xCB\x9C",     "\xE2\x84\xA2", "\xC5\xA1",     "\xE2\x80\xBA", "\xC5\x93",     "\xEF\xBF\xBD",
    "\xC5\xBE",     "\xC5\xB8",     "\xC2\xA0",     "\xC2\xA1",     "\xC2\xA2",     "\xC2\xA3",
    "\xC2\xA4",     "\xC2\xA5",     "\xC2\xA6",     "\xC2\xA7",     "\xC2\xA8",     "\xC2\xA9",
    "\xC2\xAA",     "\xC2\xAB",     "\xC2\xAC",     "\xC2\xAD",     "\xC2\xAE",     "\xC2\xAF",
    "\xC2\xB0",     "\xC2\xB1",     "\xC2\xB2",     "\xC2\xB3",     "\xC2\xB4",     "\xC2\xB5",
    "\xC2\xB6",     "\xC2\xB7",     "\xC2\xB8",     "\xC2\xB9",     "\xC2\xBA",     "\xC2\xBB",
    "\xC2\xBC",     "\xC2\xBD",     "\xC2\xBE",     "\xC2\xBF",     "\xC3\x80",     "\xC3\x81",
    "\xC3\x82",     "\xC3\x83",     "\xC3\x84",     "\xC3\x85",     "\xC3\x86",     "\xC3\x87",
    "\xC3\x88",     "\xC3\x89",     "\xC3\x8A",     "\xC3\x8B",     "\xC3\x8C",     "\xC3\x8D",
    "\xC3\x8E",     "\xC3\x8F",     "\xC3\x90",     "\xC3\x91",     "\xC3\x92",     "\xC3\x93",
    "\xC3\x94",     "\xC3\x95",     "\xC3\x96",     "\xC3\x97",     "\xC3\x98",     "\xC3\x99",
    "\xC3\x9A",     "\xC3\x9B",     "\xC3\x9C",     "\xC3\x9D",     "\xC3\x9E",     "\xC3\x9F",
    "\xC3\xA0",     "\xC3\xA1",     "\xC3\xA2",     "\xC3\xA3",     "\xC3\xA4",     "\xC3\xA5",
    "\xC3\xA6",     "\xC3\xA7",     "\xC3\xA8",     "\xC3\xA9",     "\xC3\xAA",     "\xC3\xAB",
    "\xC3\xAC",     "\xC3\xAD",     "\xC3\xAE",     "\xC3\xAF",     "\xC3\xB0",     "\xC3\xB1",
    "\xC3\xB2",     "\xC3\xB3",     "\xC3\xB4",     "\xC3\xB5",     "\xC3\xB6",     "\xC3\xB7",
    "\xC3\xB8",     "\xC3\xB9",     "\xC3\xBA",     "\xC3\xBB",     "\xC3\xBC",     "\xC3\xBD",
    "\xC3\xBE",     "\xC3\xBF"};

std::string Windows1252ToUtf8(const std::string& text) {
  std::string converted;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      converted += c;
    } else {
      converted += kUtf8OfWindows1252[byte - 0x80U];
    }
  }
  return converted;
}

// How many bytes the lead byte announces; 0 when it is none.
std::size_t AnnouncedLength(unsigned lead) {
  if (lead < 0x80) return 1;
  if (lead >> 5U == 6) return 2;
  if (lead >> 4U == 14) return 3;
  if (lead >> 3U == 30) return 4;
  return 0;
}

// Decodes every character and then asks whether it was the shortest form of an allowed one.
bool IsUtf8Naively(const std::string& text) {
  constexpr std::array<unsigned, 5> kLeadMask = {0, 0x7F, 0x1F, 0x0F, 0x07};
  constexpr std::array<unsigned, 5> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
  for (std::size_t i = 0; i < text.size();) {
    const unsigned lead = static_cast<unsigned char>(text[i]);
    const std::size_t length = AnnouncedLength(lead);
    if (length == 0 || i + length > text.size()) return false;
    unsigned point = lead & kLeadMask[length];
    for (std::size_t k = 1; k < length; ++k) {
      const unsigned next = static_cast<unsigned char>(text[i + k]);
      if (next / 64 != 2) return false;
      point = point * 64 + next % 64;
    }
    if (point < kSmallest[length] || point > 0x10FFFF) return false;
    if (point >= 0xD800 && point <= 0xDFFF) return false;
    i += length;
  }
  return true;
}

std::string Expected(const std::string& text) {
  return IsUtf8Naively(text) ? text : Windows1252ToUtf8(text);
}

std::string ToUtf8(const std::string& text) {
  return KvAnsiToChar(text, kvEncodingUtf8);
}

std::string AllBytes() {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  return bytes;
}

}  // namespace

TEST(AnsiToChar, LeavesTextToAnsiUnchanged) {
  EXPECT_EQ(KvAnsiToChar(AllBytes(), kvEncodingAnsi), AllBytes());
  EXPECT_EQ(KvAnsiToChar("\xC3\xA9", kvEncodingAnsi), "\xC3\xA9");
}

TEST(AnsiToChar, EncodingsHaveTheirCodes) {
  EXPECT_EQ(static_cast<int>(kvEncodingAnsi), 0);
  EXPECT_EQ(static_cast<int>(kvEncodingUtf8), 1);
}

TEST(AnsiToChar, LeavesTheEmptyTextEmpty) {
  EXPECT_EQ(ToUtf8(""), "");
}

TEST(AnsiToChar, LeavesAsciiUnchanged) {
  const std::string ascii = AllBytes().substr(0, 128);
  EXPECT_EQ(ToUtf8(ascii), ascii);
}

TEST(AnsiToChar, LeavesValidUtf8Unchanged) {
  const std::string text =
      "\xEF\xBB\xBF"
      "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x9B\xB0";
  EXPECT_EQ(ToUtf8(text), text);
}

TEST(AnsiToChar, LeavesTheFirstAndLastCharacterOfEachLengthUnchanged) {
  for (const char* text :
       {"\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
        "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"}) {
    EXPECT_EQ(ToUtf8(text), text);
  }
}

TEST(AnsiToChar, ReadsEveryHighByteAsWindows1252) {
  for (unsigned byte = 0x80; byte < 0x100; ++byte) {
    EXPECT_EQ(ToUtf8(std::string(1, static_cast<char>(byte))), kUtf8OfWindows1252[byte - 0x80U])
        << byte;
  }
}

TEST(AnsiToChar, ReadsTheFiveUnassignedCodesAsReplacementCharacters) {
  for (const char* code : {"\x81", "\x8D", "\x8F", "\x90", "\x9D"}) {
    EXPECT_EQ(ToUtf8(code), "\xEF\xBF\xBD");
  }
}

TEST(AnsiToChar, OneInvalidByteMakesTheWholeTextWindows1252) {
  EXPECT_EQ(ToUtf8("\xC3\xA9\xFF"), "\xC3\x83\xC2\xA9\xC3\xBF");
  EXPECT_EQ(ToUtf8("\xFF\xC3\xA9"), "\xC3\xBF\xC3\x83\xC2\xA9");
}

TEST(AnsiToChar, KeepsAsciiBytesOfWindows1252Text) {
  EXPECT_EQ(ToUtf8("A\xE9z"), "A\xC3\xA9z");
  EXPECT_EQ(ToUtf8(std::string("\0\xE9\0", 3)), std::string("\0\xC3\xA9\0", 4));
}

TEST(AnsiToChar, RefusesOverlongForms) {
  for (const char* text : {"\xC0\xAF", "\xC1\xBF", "\xE0\x9F\xBF", "\xE0\x80\xAF",
                           "\xF0\x8F\xBF\xBF", "\xF0\x80\x80\xAF"}) {
    EXPECT_EQ(ToUtf8(text), Windows1252ToUtf8(text));
    EXPECT_NE(ToUtf8(text), text);
  }
}

TEST(AnsiToChar, RefusesSurrogates) {
  for (const char* text : {"\xED\xA0\x80", "\xED\xAF\xBF", "\xED\xB0\x80", "\xED\xBF\xBF"}) {
    EXPECT_EQ(ToUtf8(text), Windows1252ToUtf8(text));
  }
}

TEST(AnsiToChar, RefusesCodePointsThatDoNotExist) {
  for (const char* text : {"\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xF8\x88\x80\x80\x80",
                           "\xFC\x84\x80\x80\x80\x80", "\xFE", "\xFF"}) {
    EXPECT_EQ(ToUtf8(text), Windows1252ToUtf8(text));
  }
}

TEST(AnsiToChar, RefusesAContinuationByteOnItsOwn) {
  EXPECT_EQ(ToUtf8("a\x80z"), "a\xE2\x82\xACz");
}

TEST(AnsiToChar, RefusesACharacterCutAtAnyByte) {
  for (const std::string text : {"\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x9B\xB0"}) {
    for (std::size_t length = 1; length < text.size(); ++length) {
      std::string cut("x");
      cut.append(text, 0, length);
      EXPECT_EQ(ToUtf8(cut), Windows1252ToUtf8(cut));
      EXPECT_EQ(ToUtf8(cut + "y"), Windows1252ToUtf8(cut + "y"));
    }
  }
}

TEST(AnsiToChar, AgreesWithANaiveModelOnEveryThreeByteText) {
  // Every lead byte before every pair of bytes at the borders of the ranges.
  const std::string borders = std::string("\0", 1) + "\x41\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xFF";
  for (int lead = 0; lead < 256; ++lead) {
    for (const char second : borders) {
      for (const char third : borders) {
        const std::string text = {static_cast<char>(lead), second, third};
        ASSERT_EQ(ToUtf8(text), Expected(text));
        ASSERT_EQ(ToUtf8(text + "\x80"), Expected(text + "\x80"));
      }
    }
  }
}

TEST(AnsiToChar, AgreesWithANaiveModelOnRandomBytes) {
  std::mt19937 random(1252);
  const std::string likely = "a\x80\x8F\x90\x9F\xA0\xBF\xC2\xDF\xE0\xE2\xED\xEF\xF0\xF3\xF4";
  for (int i = 0; i < 100000; ++i) {
    std::string text(random() % 9, '\0');
    for (char& c : text) {
      c = i % 4 == 0 ? static_cast<char>(random() & 0xFFU) : likely[random() % likely.size()];
    }
    ASSERT_EQ(ToUtf8(text), Expected(text));
  }
}

TEST(AnsiToChar, ResultIsAtMostThreeTimesAsLong) {
  EXPECT_EQ(ToUtf8(std::string(1000, '\x80')).size(), 3000U);
}

TEST(AnsiToChar, TakesMegabytesThatFailAtTheirLastByte) {
  std::string text;
  for (int i = 0; i < (1 << 20); ++i) text += "\xE2\x82\xAC";
  ASSERT_EQ(ToUtf8(text), text);
  text += '\x80';
  EXPECT_EQ(ToUtf8(text), Windows1252ToUtf8(text));
}
