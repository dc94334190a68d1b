#include "xml/XmlSurvey.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace kv {
namespace {

constexpr std::string_view kMark = "_enc";

/// A byte at a time, as the fields say.
XmlSurvey Model(std::string_view text, std::string_view mark) {
  XmlSurvey found;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    const std::string_view two = text.substr(i, 2);
    found.odd |= c >= 0x80 || (c < 0x20 && c != '\t' && c != '\n' && c != '\r');
    found.reference |= c == '&';
    found.piece |= i > 0 && (two == "<!" || two == "<?");
    found.mark |= mark.size() > 1 && two == mark.substr(0, 2);
  }
  return found;
}

void ExpectAsModel(std::string_view text, std::string_view mark) {
  const XmlSurvey found = SurveyXml(text, mark);
  const XmlSurvey expected = Model(text, mark);
  ASSERT_EQ(found.odd, expected.odd) << text;
  ASSERT_EQ(found.reference, expected.reference) << text;
  ASSERT_EQ(found.piece, expected.piece) << text;
  ASSERT_EQ(found.mark, expected.mark) << text;
}

TEST(XmlSurvey, FindsEachByteAtEachPlaceOfEachLength) {
  for (std::size_t length = 0; length < 70; ++length) {
    const std::string plain(length, 'a');
    ExpectAsModel(plain, kMark);
    for (std::size_t place = 0; place < length; ++place) {
      for (const std::string_view odd : {"&", "<!", "<?", "_e", "\x7F", "\x80", "\xFF", "\x1F",
                                         "\n", "\r", "\t", "\v", "<", "!", "_", "?"}) {
        ExpectAsModel(std::string(plain).replace(place, odd.size(), odd), kMark);
      }
    }
  }
}

TEST(XmlSurvey, FindsWhatANaiveLookFinds) {
  std::mt19937 random(5);
  const std::string letters = "aaaaaaaa  bcdefgh=<>/\"'_en!?&\n\r\t\x01\x80";
  for (int i = 0; i < 20000; ++i) {
    std::string text(random() % 100, ' ');
    const std::size_t kinds = 8 + random() % (letters.size() - 8);
    for (char& c : text) c = letters[random() % kinds];
    ExpectAsModel(text, kMark);
  }
}

TEST(XmlSurvey, LooksForNoMarkOfFewerThanTwoBytes) {
  const std::string text = std::string("__\0\0", 4) + std::string(40, '_');
  EXPECT_FALSE(SurveyXml(text, "").mark);
  EXPECT_FALSE(SurveyXml(text, "_").mark);
  EXPECT_TRUE(SurveyXml(text, "__").mark);
}

}  // namespace
}  // namespace kv
