#include <gtest/gtest.h>

#include <string>

#include "Kv/Text.h"
#include "kv/ForeignLocale.h"

namespace {

const std::string kUpper = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
const std::string kLower = "abcdefghijklmnopqrstuvwxyz";

// `byte` with the letters of `from` replaced by those of `to`.
std::string Folded(char byte, const std::string& from, const std::string& to) {
  const std::size_t letter = from.find(byte);
  return std::string(1, letter == std::string::npos ? byte : to[letter]);
}

void ExpectAsciiFolding() {
  for (int value = 0; value < 256; ++value) {
    const char byte = static_cast<char>(value);
    EXPECT_EQ(tolower(std::string(1, byte)), Folded(byte, kUpper, kLower)) << value;
    EXPECT_EQ(toupper(std::string(1, byte)), Folded(byte, kLower, kUpper)) << value;
  }
}

}  // namespace

TEST(Case, FoldsTheAsciiLettersAndNoOtherByte) {
  ExpectAsciiFolding();
}

TEST(Case, FoldsTheSameInAnotherLocale) {
  const kv_test::ForeignLocale locale;
  if (!locale.IsThere()) GTEST_SKIP() << "this machine has no Turkish locale";
  ExpectAsciiFolding();
}

TEST(Case, ToLowerFoldsEveryLetterOfAText) {
  EXPECT_EQ(tolower("Mixed CASE 123 _-[]{}@`"), "mixed case 123 _-[]{}@`");
}

TEST(Case, ToUpperFoldsEveryLetterOfAText) {
  EXPECT_EQ(toupper("Mixed case 123 _-[]{}@`"), "MIXED CASE 123 _-[]{}@`");
}

TEST(Case, KeepsTheLengthOfTextThatIsNotAscii) {
  const std::string sharpS =
      "stra\xC3\x9F"
      "e \xC4\xB0";
  EXPECT_EQ(toupper(sharpS),
            "STRA\xC3\x9F"
            "E \xC4\xB0");
  EXPECT_EQ(tolower(sharpS), sharpS);
}

TEST(Case, FoldsBeyondANulByte) {
  EXPECT_EQ(tolower(std::string("A\0B", 3)), std::string("a\0b", 3));
  EXPECT_EQ(toupper(std::string("a\0b", 3)), std::string("A\0B", 3));
}

TEST(Case, LeavesTheEmptyTextEmpty) {
  EXPECT_EQ(tolower(std::string()), "");
  EXPECT_EQ(toupper(std::string()), "");
}

TEST(Case, LeavesItsArgumentAsItIs) {
  const std::string text = "aB";
  EXPECT_EQ(tolower(text), "ab");
  EXPECT_EQ(toupper(text), "AB");
  EXPECT_EQ(text, "aB");
}
