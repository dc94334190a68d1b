#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <functional>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "SatCommonUtils/Metadata.h"
#include "kv/CommaLocale.h"

namespace {

using namespace SatCommonUtils;

/// An item whose child "t" has this text, and the same in its attribute "a".
TXmlItem Holding(const std::string& text) {
  return TKvXmlItem::Parse("<r><t a='" + text + "'>" + text + "</t></r>");
}

/// The bits, so that a NaN compares too.
template <class T>
std::string Bits(const T& value) {
  return std::string(reinterpret_cast<const char*>(&value), sizeof value);
}

/// The four readers of one type of number, each reduced to the item it reads.
template <class T>
struct Readers {
  std::function<T(TXmlItem, T)> text;
  std::function<bool(TXmlItem, T*)> textFlag;
  std::function<T(TXmlItem, T)> attribute;
  std::function<bool(TXmlItem, T*)> attributeFlag;
};

template <class T>
Readers<T> ReadersOf();

template <>
Readers<double> ReadersOf<double>() {
  return {
      [](TXmlItem item, double def) { return ReadDoubleFromXMLItemText(item, "t", def); },
      [](TXmlItem item, double* value) { return ReadDoubleFromXMLItemText(item, "t", value); },
      [](TXmlItem item, double def) { return ReadDoubleFromXMLItemAttribute(item, "t", "a", def); },
      [](TXmlItem item, double* value) {
        return ReadDoubleFromXMLItemAttribute(item, "t", "a", value);
      }};
}

template <>
Readers<int> ReadersOf<int>() {
  return {
      [](TXmlItem item, int def) { return ReadIntFromXMLItemText(item, "t", def); },
      [](TXmlItem item, int* value) { return ReadIntFromXMLItemText(item, "t", value); },
      [](TXmlItem item, int def) { return ReadIntFromXMLItemAttribute(item, "t", "a", def); },
      [](TXmlItem item, int* value) { return ReadIntFromXMLItemAttribute(item, "t", "a", value); }};
}

/// Numbers of one type, read from the text and from the attribute.
template <class T>
class XmlItemNumberTest : public ::testing::Test {
 protected:
  static constexpr T kDefault = 77;

  void ExpectNumber(const TXmlItem& item, T expected) const {
    ExpectResults(item, expected, true, expected);
  }
  void ExpectNone(const TXmlItem& item) const { ExpectResults(item, kDefault, false, kDefault); }

  /// `value` is what the flag forms leave behind, which hold the default at first.
  void ExpectResults(const TXmlItem& item, T result, bool flag, T value) const {
    EXPECT_EQ(Bits(readers_.text(item, kDefault)), Bits(result));
    EXPECT_EQ(Bits(readers_.attribute(item, kDefault)), Bits(result));
    T read = kDefault;
    EXPECT_EQ(readers_.textFlag(item, &read), flag);
    EXPECT_EQ(Bits(read), Bits(value));
    read = kDefault;
    EXPECT_EQ(readers_.attributeFlag(item, &read), flag);
    EXPECT_EQ(Bits(read), Bits(value));
  }

  /// What the C library's scan makes of a text, step by step.
  void ExpectScanned(const std::string& text) const {
    SCOPED_TRACE("\"" + text + "\"");
    const TXmlItem item = Holding(text);
    if (text.empty()) return ExpectNone(item);
    T value = kDefault;
    const int count = std::sscanf(text.c_str(), kFormat, &value);
    ExpectResults(item, count == 0 ? kDefault : value, count != 0, value);
  }

  /// Texts of up to `longest` of the characters.
  void ExpectRandomTextsScanned(const std::string& characters, unsigned long longest) const {
    std::mt19937 random(31);
    for (int i = 0; i < 20000 && !this->HasFailure(); ++i) {
      std::string text(random() % (longest + 1), ' ');
      for (char& c : text) c = characters[random() % characters.size()];
      ExpectScanned(text);
    }
  }

 private:
  static constexpr const char* kFormat = std::is_same_v<T, int> ? "%d" : "%lf";
  Readers<T> readers_ = ReadersOf<T>();
};

using Numbers = ::testing::Types<int, double>;
TYPED_TEST_SUITE(XmlItemNumberTest, Numbers);

TYPED_TEST(XmlItemNumberTest, ANumberIsRead) {
  this->ExpectNumber(Holding("12"), 12);
}

TYPED_TEST(XmlItemNumberTest, ANegativeNumberIsRead) {
  this->ExpectNumber(Holding("-12"), -12);
}

TYPED_TEST(XmlItemNumberTest, ZeroIsRead) {
  this->ExpectNumber(Holding("0"), 0);
}

TYPED_TEST(XmlItemNumberTest, ANumberIsReadWhatTheValueHeldBefore) {
  this->ExpectNumber(Holding("77"), 77);
}

TYPED_TEST(XmlItemNumberTest, WhatFollowsTheNumberIsIgnored) {
  this->ExpectNumber(Holding("12abc"), 12);
}

TYPED_TEST(XmlItemNumberTest, BlanksBeforeTheNumberAreSkipped) {
  this->ExpectNumber(Holding(" &#9;&#10;&#13; 12 "), 12);
}

TYPED_TEST(XmlItemNumberTest, AnEmptyItemGivesNone) {
  this->ExpectNone(TXmlItem());
}

TYPED_TEST(XmlItemNumberTest, AMissingChildGivesNone) {
  this->ExpectNone(TKvXmlItem::Parse("<t a='1'>1<u a='2'>2</u></t>"));
}

TYPED_TEST(XmlItemNumberTest, AGrandchildIsNoChild) {
  this->ExpectNone(TKvXmlItem::Parse("<r><u><t a='1'>1</t></u></r>"));
}

TYPED_TEST(XmlItemNumberTest, TheCaseOfTheTagCounts) {
  this->ExpectNone(TKvXmlItem::Parse("<r><T a='1'>1</T></r>"));
}

TYPED_TEST(XmlItemNumberTest, EmptyTextGivesNone) {
  this->ExpectNone(Holding(""));
}

TYPED_TEST(XmlItemNumberTest, AMissingAttributeGivesNone) {
  this->ExpectNone(TKvXmlItem::Parse("<r><t A='1' b='2'/></r>"));
}

TYPED_TEST(XmlItemNumberTest, TextThatIsNoNumberGivesNone) {
  this->ExpectNone(Holding("x12"));
}

TYPED_TEST(XmlItemNumberTest, ASignAloneGivesNone) {
  this->ExpectNone(Holding("- 1"));
}

TYPED_TEST(XmlItemNumberTest, BlanksBeforeWhatIsNoNumberGiveNone) {
  this->ExpectNone(Holding("  x"));
}

TYPED_TEST(XmlItemNumberTest, BlanksAloneGiveTheDefaultAndTrueWithTheValueLeftAlone) {
  for (const char* blanks : {" ", "   ", "&#9;&#10;&#13;"}) {
    this->ExpectResults(Holding(blanks), this->kDefault, true, this->kDefault);
  }
}

TYPED_TEST(XmlItemNumberTest, OnlyTheFirstChildOfTheTagIsRead) {
  this->ExpectNumber(TKvXmlItem::Parse("<r><u/><t a='1'>1</t><t a='2'>2</t></r>"), 1);
}

TYPED_TEST(XmlItemNumberTest, AFirstChildThatIsEmptyHidesLaterOnes) {
  this->ExpectNone(TKvXmlItem::Parse("<r><t/><t a='2'>2</t></r>"));
}

TYPED_TEST(XmlItemNumberTest, AFirstChildThatIsNoNumberHidesLaterOnes) {
  this->ExpectNone(TKvXmlItem::Parse("<r><t a='x'>x</t><t a='2'>2</t></r>"));
}

TYPED_TEST(XmlItemNumberTest, TextsAreReadAsTheCLibraryScansThem) {
  for (const char* text :
       {"+5",  "007",      "0x1F",   "1e3",    "1.9",   "-0",     "-0.0",  ".5",  "5.",
        "1e",  "1e+",      "0x",     "--1",    "+-1",   "1,5",    "1 2",   "inf", "-INF",
        "nan", "infinity", "nan(1)", "0x1p-3", "1e400", "-1e400", "1e-400"}) {
    this->ExpectScanned(text);
  }
}

TYPED_TEST(XmlItemNumberTest, NumbersOutOfRangeAreReadAsTheCLibraryScansThem) {
  for (const char* text :
       {"2147483647", "2147483648", "-2147483648", "-2147483649", "4294967296", "4294967297",
        "9223372036854775807", "9223372036854775808", "-9223372036854775809",
        "99999999999999999999999999", "-99999999999999999999999999"}) {
    this->ExpectScanned(text);
  }
}

TYPED_TEST(XmlItemNumberTest, ANumberOf100000DigitsIsReadAsTheCLibraryScansIt) {
  this->ExpectScanned(std::string(100000, '0') + "5");
  this->ExpectScanned(std::string(100000, '9'));
}

TYPED_TEST(XmlItemNumberTest, RandomTextsAreReadAsTheCLibraryScansThem) {
  this->ExpectRandomTextsScanned("0123456789012345678901234567890+-.eExXpnaifINFty(), ab", 12);
}

TYPED_TEST(XmlItemNumberTest, RandomTextsOfDigitsAreReadAsTheCLibraryScansThem) {
  this->ExpectRandomTextsScanned("0123456789+-.e ", 30);
}

TYPED_TEST(XmlItemNumberTest, TheDecimalSignIsThatOfTheHostsLocale) {
  const kv_test::CommaLocale locale;
  if (!locale.IsThere()) GTEST_SKIP() << "no locale with a decimal comma";
  for (const char* text : {"1,5", "1.5", "-2,25e1", "12"}) this->ExpectScanned(text);
}

TEST(XmlItemIntTest, TheDefaultOfSevenIsGivenWhereThereIsNoNumber) {
  EXPECT_EQ(ReadIntFromXMLItemText(TKvXmlItem::Parse("<r/>"), "t", 7), 7);
  EXPECT_EQ(ReadIntFromXMLItemText(Holding(""), "t", 7), 7);
  EXPECT_EQ(ReadIntFromXMLItemText(Holding("abc"), "t", 7), 7);
  EXPECT_EQ(ReadIntFromXMLItemText(Holding("12abc"), "t", 7), 12);
}

TEST(XmlItemDoubleTest, FractionsAndExponentsAreRead) {
  EXPECT_EQ(ReadDoubleFromXMLItemText(Holding("-1.25e-2m"), "t", 7.0), -0.0125);
  EXPECT_EQ(ReadDoubleFromXMLItemAttribute(Holding("-1.25e-2m"), "t", "a", 7.0), -0.0125);
}

TEST(XmlItemDoubleTest, ADefaultThatIsNotANumberComesBack) {
  const double nan = std::nan("");
  EXPECT_EQ(Bits(ReadDoubleFromXMLItemText(Holding(""), "t", nan)), Bits(nan));
}

TEST(XmlItemStringTest, TheTextOfTheChildIsRead) {
  EXPECT_EQ(ReadStringFromXMLItemText(Holding(" x "), "t", "def"), " x ");
}

TEST(XmlItemStringTest, PiecesOfTextAreJoined) {
  const TXmlItem item = TKvXmlItem::Parse("<r><t>a<u>b</u>c<![CDATA[<d>]]></t></r>");
  EXPECT_EQ(ReadStringFromXMLItemText(item, "t", "def"), "ac<d>");
}

TEST(XmlItemStringTest, AnEmptyTextIsTheEmptyStringAndNotTheDefault) {
  EXPECT_EQ(ReadStringFromXMLItemText(TKvXmlItem::Parse("<r><t/></r>"), "t", "def"), "");
  EXPECT_EQ(ReadStringFromXMLItemText(TKvXmlItem::Parse("<r><t></t></r>"), "t", "def"), "");
}

TEST(XmlItemStringTest, AMissingChildGivesTheDefault) {
  const TXmlItem item = TKvXmlItem::Parse("<t>x<u/></t>");
  EXPECT_EQ(ReadStringFromXMLItemText(item, "t", "def"), "def");
  EXPECT_EQ(ReadStringFromXMLItemAttribute(item, "t", "a", "def"), "def");
}

TEST(XmlItemStringTest, AnEmptyItemGivesTheDefault) {
  EXPECT_EQ(ReadStringFromXMLItemText(TXmlItem(), "t", "def"), "def");
  EXPECT_EQ(ReadStringFromXMLItemAttribute(TXmlItem(), "t", "a", "def"), "def");
}

TEST(XmlItemStringTest, TheFirstChildOfTheTagIsRead) {
  const TXmlItem item = TKvXmlItem::Parse("<r><u/><t a='1'>x</t><t a='2' b='3'>y</t></r>");
  EXPECT_EQ(ReadStringFromXMLItemText(item, "t", "def"), "x");
  EXPECT_EQ(ReadStringFromXMLItemAttribute(item, "t", "a", "def"), "1");
  EXPECT_EQ(ReadStringFromXMLItemAttribute(item, "t", "b", "def"), "def");
}

TEST(XmlItemStringTest, AFirstChildWithEmptyTextHidesLaterOnes) {
  const TXmlItem item = TKvXmlItem::Parse("<r><t/><t>y</t></r>");
  EXPECT_EQ(ReadStringFromXMLItemText(item, "t", "def"), "");
}

TEST(XmlItemStringTest, TheValueOfTheAttributeIsRead) {
  EXPECT_EQ(ReadStringFromXMLItemAttribute(Holding(" x "), "t", "a", "def"), " x ");
}

TEST(XmlItemStringTest, AnEmptyAttributeIsTheEmptyStringAndNotTheDefault) {
  EXPECT_EQ(ReadStringFromXMLItemAttribute(Holding(""), "t", "a", "def"), "");
}

TEST(XmlItemStringTest, AMissingAttributeGivesTheDefault) {
  EXPECT_EQ(ReadStringFromXMLItemAttribute(Holding("x"), "t", "b", "def"), "def");
}

TEST(XmlItemStringTest, TheAttributeOfTheItemItselfIsNotThatOfItsChild) {
  const TXmlItem item = TKvXmlItem::Parse("<r a='1'><t/></r>");
  EXPECT_EQ(ReadStringFromXMLItemAttribute(item, "t", "a", "def"), "def");
}

/// An item whose element is that of another.
class BorrowingItem : public TKvXmlItem {
 public:
  explicit BorrowingItem(TXmlItem lender) : TKvXmlItem(TKvXmlElement()), lender_(lender) {}
  const TKvXmlElement& Element() const override { return lender_->Element(); }

 private:
  TXmlItem lender_;
};

TEST(XmlItemStringTest, TheElementIsTheOneThatTheItemGives) {
  const TXmlItem item(new BorrowingItem(Holding("12")));
  EXPECT_EQ(ReadStringFromXMLItemText(item, "t", "def"), "12");
  EXPECT_EQ(ReadIntFromXMLItemText(item, "t", 7), 12);
  EXPECT_EQ(ReadDoubleFromXMLItemAttribute(item, "t", "a", 7.0), 12.0);
}

TEST(XmlItemStringTest, ReadingLeavesTheCallerHisReference) {
  const TXmlItem item = Holding("12");
  ReadStringFromXMLItemText(item, "t", "");
  ReadIntFromXMLItemAttribute(item, "t", "a", 0);
  EXPECT_EQ(item.use_count(), 1);
}

}  // namespace
