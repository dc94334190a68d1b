#include "host/io/TextEncoding.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "host/HostError.h"
#include "host/support/ErrorOf.h"

namespace {

using namespace std::string_literals;
using ravelin::DecodedText;
using ravelin::HostError;
using ravelin::RefuseUtf32;

std::string Decoded(const std::string& bytes) {
  return DecodedText(bytes, "a.txt");
}

/// The message of a text that is refused.
std::string Refusal(const std::string& bytes) {
  return ErrorOf([&] { Decoded(bytes); });
}

TEST(DecodedText, KeepsABytesTextAsItIs) {
  EXPECT_EQ(Decoded(""), "");
  EXPECT_EQ(Decoded("A"), "A");
  EXPECT_EQ(Decoded("A = 1\r\n"), "A = 1\r\n");
  EXPECT_EQ(Decoded("Z\xFCrich \xC3\xBC"), "Z\xFCrich \xC3\xBC");
  EXPECT_EQ(Decoded("AB\0\0"s), "AB\0\0"s);
}

TEST(DecodedText, DropsAMarkOfUtf8) {
  EXPECT_EQ(Decoded("\xEF\xBB\xBF\xC3\xBC"), "\xC3\xBC");
  EXPECT_EQ(Decoded("\xEF\xBB\xBF"), "");
}

TEST(DecodedText, DropsOneMarkOnly) {
  EXPECT_EQ(Decoded("\xEF\xBB\xBF\xEF\xBB\xBF"), "\xEF\xBB\xBF");
}

TEST(DecodedText, ReadsUtf16WithAMark) {
  EXPECT_EQ(Decoded("\xFF\xFE\x41\0\x42\0"s), "AB");
  EXPECT_EQ(Decoded("\xFE\xFF\0\x41\0\x42"s), "AB");
  EXPECT_EQ(Decoded("\xFF\xFE"), "");
  EXPECT_EQ(Decoded("\xFE\xFF"), "");
}

TEST(DecodedText, ReadsUtf16WithoutAMark) {
  EXPECT_EQ(Decoded("A\0B\0"s), "AB");
  EXPECT_EQ(Decoded("\0A\0B"s), "AB");
  EXPECT_EQ(Decoded("A\0"s), "A");
  EXPECT_EQ(Decoded("\0A"s), "A");
}

TEST(DecodedText, GivesUtf8ForLatinCharactersOfUtf16) {
  EXPECT_EQ(Decoded("\xFF\xFE\x7F\0\x80\0\xB0\0\xFF\0"s), "\x7F\xC2\x80\xC2\xB0\xC3\xBF");
  EXPECT_EQ(Decoded("\xFE\xFF\0\x7F\0\x80\0\xB0\0\xFF"s), "\x7F\xC2\x80\xC2\xB0\xC3\xBF");
}

TEST(DecodedText, LeavesAHalfUnitAtTheEndOfUtf16Out) {
  EXPECT_EQ(Decoded("\xFF\xFE\x41\0\x42"s), "A");
  EXPECT_EQ(Decoded("\xFE\xFF\0\x41\0"s), "A");
}

TEST(DecodedText, RefusesUtf16BeyondLatin1AndNamesTheLine) {
  EXPECT_EQ(Refusal("\xFF\xFE\0\x01"s),
            "a.txt: is UTF-16 with a character beyond U+00FF at line 1; convert it to UTF-8");
  EXPECT_EQ(Refusal("\xFE\xFF\0\n\0\n\x20\xAC"s),
            "a.txt: is UTF-16 with a character beyond U+00FF at line 3; convert it to UTF-8");
  EXPECT_EQ(Refusal("A\0\n\0\xAC\x20"s),
            "a.txt: is UTF-16 with a character beyond U+00FF at line 2; convert it to UTF-8");
}

TEST(DecodedText, RefusesUtf32) {
  const std::string message = "a.txt: is UTF-32; convert it to UTF-8";
  EXPECT_EQ(Refusal("\xFF\xFE\0\0A\0\0\0"s), message);
  EXPECT_EQ(Refusal("\0\0\xFE\xFF\0\0\0A"s), message);
  EXPECT_EQ(Refusal("A\0\0\0"s), message);
  EXPECT_EQ(Refusal("\0\0\0A"s), message);
}

TEST(DecodedText, TakesZeroBytesThatAreNoFirstCharacterForPartsOfTheText) {
  EXPECT_EQ(Decoded("\0\0\0\0"s), "\0\0\0\0"s);
  EXPECT_EQ(Decoded("\0"s), "\0"s);
  EXPECT_EQ(Decoded("ABC\0"s), "ABC\0"s);
}

TEST(RefuseUtf32, TakesEverythingElse) {
  for (const std::string& bytes : {""s, "A"s, "\xFF\xFE\x41\0"s, "\xEF\xBB\xBF"s, "A\0B\0"s}) {
    EXPECT_NO_THROW(RefuseUtf32(bytes, "a.txt"));
  }
  EXPECT_THROW(RefuseUtf32("\xFF\xFE\0\0"s, "a.txt"), HostError);
}

// A text cut at every byte is either decoded or refused, never read beyond its end.
TEST(DecodedText, TakesATextCutAtEveryByte) {
  const std::string whole = "\xFE\xFF\0A\0\xFC\0\n"s;
  const char* const texts[] = {"",  "\xFE",      "",          "",           "A",
                               "A", "A\xC3\xBC", "A\xC3\xBC", "A\xC3\xBC\n"};
  for (unsigned long length = 0; length <= whole.size(); ++length) {
    EXPECT_EQ(Decoded(whole.substr(0, length)), texts[length]) << length;
  }
}

class RealEncodedText : public ::testing::Test {
 protected:
  void SetUp() override {
    const char* named = std::getenv("RAVELIN_TEST_DATA");
    data_ = named != nullptr ? named : RAVELIN_SOURCE_FOLDER "/../shared/data";
    if (!std::filesystem::is_directory(data_ + "/bom")) {
      GTEST_SKIP() << "no real texts in " << data_ << "; RAVELIN_TEST_DATA names another folder";
    }
  }

  std::string BytesOf(const std::string& name) const {
    std::ifstream file(data_ + "/bom/" + name, std::ios::binary);
    EXPECT_TRUE(file) << name;
    return std::string(std::istreambuf_iterator<char>(file), {});
  }

  std::string data_;
};

TEST_F(RealEncodedText, IsTheSameTextInUtf8AndUtf16) {
  for (const std::string name : {"07JAN27", "LC08_L2SP_218074_20190114_20200829_02_T1_MTL",
                                 "M103595705LE_pds3", "latin-1-degreesymb"}) {
    const std::string text = Decoded(BytesOf(name + ".utf8_bom.txt"));
    EXPECT_GT(text.size(), 800u);
    EXPECT_EQ(Decoded(BytesOf(name + ".utf16le_bom.txt")), text) << name;
    EXPECT_EQ(Decoded(BytesOf(name + ".utf16be_bom.txt")), text) << name;
  }
}

TEST_F(RealEncodedText, IsKnownAsUtf16WithoutAMark) {
  EXPECT_EQ(Decoded(BytesOf("M103595705LE_pds3.utf16le_nobom.txt")),
            Decoded(BytesOf("M103595705LE_pds3.utf8_bom.txt")));
}

TEST_F(RealEncodedText, IsReadUpToACut) {
  const std::string text = Decoded(BytesOf("M103595705LE_pds3.utf8_bom.txt"));
  EXPECT_EQ(Decoded(BytesOf("M103595705LE_pds3.utf16le_odd.txt")), text.substr(0, 499));
  EXPECT_EQ(Decoded(BytesOf("M103595705LE_pds3.utf16be_1024.txt")), text.substr(0, 512));
}

TEST_F(RealEncodedText, IsRefusedInUtf32) {
  EXPECT_EQ(Refusal(BytesOf("M103595705LE_pds3.utf32le_bom.txt")),
            "a.txt: is UTF-32; convert it to UTF-8");
  EXPECT_EQ(Refusal(BytesOf("M103595705LE_pds3.utf32be_bom.txt")),
            "a.txt: is UTF-32; convert it to UTF-8");
}

}  // namespace
