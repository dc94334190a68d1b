#include "xml/XmlCharacters.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "text/Utf8.h"

namespace kv {
namespace {

constexpr char32_t kEnd = 0x110000;

std::string Character(char32_t code) {
  std::string text;
  AppendUtf8(&text, code);
  return text;
}

// The productions as the recommendation writes them.
bool IsModelCharacter(char32_t c) {
  return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) ||
         (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0x10FFFF);
}

bool IsModelNameStart(char32_t c) {
  return (c >= 'A' && c <= 'Z') || c == '_' || (c >= 'a' && c <= 'z') || (c >= 0xC0 && c <= 0xD6) ||
         (c >= 0xD8 && c <= 0xF6) || (c >= 0xF8 && c <= 0x2FF) || (c >= 0x370 && c <= 0x37D) ||
         (c >= 0x37F && c <= 0x1FFF) || (c >= 0x200C && c <= 0x200D) ||
         (c >= 0x2070 && c <= 0x218F) || (c >= 0x2C00 && c <= 0x2FEF) ||
         (c >= 0x3001 && c <= 0xD7FF) || (c >= 0xF900 && c <= 0xFDCF) ||
         (c >= 0xFDF0 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0xEFFFF);
}

bool IsModelName(char32_t c) {
  return IsModelNameStart(c) || c == '-' || c == '.' || (c >= '0' && c <= '9') || c == 0xB7 ||
         (c >= 0x0300 && c <= 0x036F) || (c >= 0x203F && c <= 0x2040);
}

TEST(XmlCharacters, AreThoseOfTheRecommendation) {
  for (char32_t code = 0; code < kEnd; ++code) {
    ASSERT_EQ(IsXmlCharacter(code), IsModelCharacter(code)) << static_cast<unsigned>(code);
    ASSERT_EQ(IsXmlText(Character(code)), IsModelCharacter(code)) << static_cast<unsigned>(code);
  }
  EXPECT_FALSE(IsXmlCharacter(kEnd));
}

TEST(XmlCharacters, MakeNamesAsTheRecommendationSaysButForTheColon) {
  for (char32_t code = 0; code < kEnd; ++code) {
    const bool isSurrogate = code >= 0xD800 && code < 0xE000;
    if (isSurrogate) continue;
    ASSERT_EQ(IsXmlName(Character(code)), IsModelNameStart(code)) << static_cast<unsigned>(code);
    ASSERT_EQ(IsXmlName(std::string("a").append(Character(code))), IsModelName(code))
        << static_cast<unsigned>(code);
  }
}

TEST(XmlCharacters, MakeNoNameOfNothing) {
  EXPECT_FALSE(IsXmlName(""));
}

TEST(XmlCharacters, AreNotLookedForOutsideTheText) {
  for (std::size_t length = 1; length <= 50; ++length) {
    const std::vector<char> text(length, 'a');
    EXPECT_TRUE(IsXmlName(std::string_view(text.data(), length))) << length;
  }
}

TEST(XmlCharacters, MakeNoNameOfBytesThatAreNotUtf8) {
  EXPECT_FALSE(IsXmlName("a\xC3"));
  EXPECT_FALSE(IsXmlName("\xFF"));
}

TEST(XmlCharacters, AreFoundMissingAtTheRightPlace) {
  std::mt19937 random(37);
  for (const std::string& bad : {std::string(1, '\0'), std::string("\x1F"), std::string("\x80"),
                                 std::string("\xC3"), std::string("\xEF\xBF\xBF")}) {
    for (int i = 0; i < 300; ++i) {
      std::string text;
      const unsigned long count = random() % 700;
      while (text.size() < count) text += random() % 8 == 0 ? "\xC3\xA9" : "x";
      ASSERT_EQ(FindNonXml(text), std::string::npos);
      const unsigned long place = text.size();
      ASSERT_EQ(FindNonXml(text + bad + "x"), place);
    }
  }
}

TEST(XmlCharacters, AreFoundMissingWhereTheTextEndsWithinOne) {
  const std::string text = std::string(255, 'x') + "\xE2\x82\xAC";
  EXPECT_EQ(FindNonXml(text), std::string::npos);
  EXPECT_EQ(FindNonXml(text.substr(0, 256)), 255U);
  EXPECT_EQ(FindNonXml(text.substr(0, 257)), 255U);
}

}  // namespace
}  // namespace kv
