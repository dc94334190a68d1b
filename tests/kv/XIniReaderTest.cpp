#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "CommaLocale.h"
#include "XIniTest.h"

namespace kv_test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr unsigned long kNone = ~0UL;

std::string ReadError(const std::string& text) {
  return ErrorOf([&] { const TKvXIniReader reader(MakeStream(text)); });
}

std::string FirstValue(const std::string& text) {
  return TKvXIniReader(MakeStream(text)).ReadE<std::string>(0);
}

TEST(XIniReader, StandsInsideTheRootElementAtFirstWhateverItsName) {
  EXPECT_EQ(FirstValue("<anything><a>1</a></anything>"), "1");
  EXPECT_EQ(FirstValue("<xini><a>1</a></xini>"), "1");
}

TEST(XIniReader, ListsAttributesInOrderThenChildElementsInOrder) {
  TKvXIniReader reader(MakeStream("<r b='1' a='2'><d>3</d><c>4</c></r>"));
  ASSERT_EQ(reader.GetItemCount(), 4U);
  for (unsigned long i = 0; i < 4; ++i) EXPECT_EQ(reader.ReadE<int>(i), static_cast<int>(i) + 1);
  EXPECT_EQ(reader.FindF("b", 0), 0U);
  EXPECT_EQ(reader.FindF("a", 0), 1U);
  EXPECT_EQ(reader.FindF("d", 0), 2U);
  EXPECT_EQ(reader.FindF("c", 0), 3U);
}

TEST(XIniReader, DoesNotCountAttributesThatBeginWithAnUnderscore) {
  TKvXIniReader reader(MakeStream("<r _x='1' a='2' _name='3'/>"));
  EXPECT_EQ(reader.GetItemCount(), 1U);
  EXPECT_EQ(reader.FindF("_x", 0), kNone);
  EXPECT_EQ(reader.ReadE<int>(0), 2);
}

TEST(XIniReader, DoesNotCountTextAndCommentsOfASection) {
  TKvXIniReader reader(MakeStream("<r> text <!-- c --><a>1</a><?p?> more <![CDATA[x]]></r>"));
  EXPECT_EQ(reader.GetItemCount(), 1U);
}

TEST(XIniReader, TellsWhichPositionsAreThere) {
  TKvXIniReader reader(MakeStream("<r a='1'><b/></r>"));
  EXPECT_TRUE(reader.HasItem(0));
  EXPECT_TRUE(reader.HasItem(1));
  EXPECT_FALSE(reader.HasItem(2));
  EXPECT_FALSE(reader.HasItem(kNone));
}

TEST(XIniReader, FindsTheFirstItemOfANameAtAPositionOrBehindIt) {
  TKvXIniReader reader(MakeStream("<r><a/><b/><a/><b/></r>"));
  EXPECT_EQ(reader.FindF("b", 0), 1U);
  EXPECT_EQ(reader.FindF("b", 1), 1U);
  EXPECT_EQ(reader.FindF("b", 2), 3U);
  EXPECT_EQ(reader.FindF("b", 4), kNone);
  EXPECT_EQ(reader.FindF("b", kNone), kNone);
  EXPECT_EQ(reader.FindF("c", 0), kNone);
  EXPECT_EQ(reader.FindF(nullptr, 0), kNone);
}

TEST(XIniReader, FindsUnnamedItemsByTheEmptyName) {
  TKvXIniReader reader(MakeStream("<r><a/><_/><_/></r>"));
  EXPECT_EQ(reader.FindF("", 0), 1U);
  EXPECT_EQ(reader.FindF("", 2), 2U);
}

TEST(XIniReader, FindsItemsAsANaiveSearchDoes) {
  std::mt19937 random(3);
  std::string text = "<r>";
  std::vector<std::string> names;
  for (int i = 0; i < 300; ++i) {
    names.push_back(std::string(1, static_cast<char>('a' + random() % 20)));
    text += "<" + names.back() + "/>";
  }
  TKvXIniReader reader(MakeStream(text + "</r>"));
  for (int i = 0; i < 20000; ++i) {
    const std::string name(1, static_cast<char>('a' + random() % 22));
    const unsigned long start = random() % 310;
    unsigned long expected = start;
    while (expected < names.size() && names[expected] != name) ++expected;
    if (expected >= names.size()) expected = kNone;
    ASSERT_EQ(reader.FindF(name.c_str(), start), expected);
  }
}

TEST(XIniReader, FindsAnItemWhicheverPositionsWereAskedForBefore) {
  for (const unsigned long count : {0UL, 1UL, 7UL, 8UL, 9UL, 15UL, 16UL, 17UL, 40UL}) {
    std::string text = "<r first=''>";
    for (unsigned long i = 1; i <= count; ++i) text += "<n" + std::to_string(i) + "/>";
    for (unsigned long asked = 0; asked <= count + 2; ++asked) {
      TKvXIniReader reader(MakeStream(text + "</r>"));
      ASSERT_EQ(reader.HasItem(asked), asked <= count);
      ASSERT_EQ(reader.FindF("first", 0), 0U);
      ASSERT_EQ(reader.FindF("n0", 0), kNone);
      for (unsigned long i = 1; i <= count; ++i) {
        ASSERT_EQ(reader.FindF(("n" + std::to_string(i)).c_str(), i % 3 == 0 ? i : 0), i);
        ASSERT_EQ(reader.FindF(("n" + std::to_string(i)).c_str(), i + 1), kNone);
      }
      ASSERT_EQ(reader.GetItemCount(), count + 1);
    }
  }
}

TEST(XIniReader, FindsNoItemFromTheLastPositions) {
  TKvXIniReader reader(MakeStream("<r><a/></r>"));
  EXPECT_EQ(reader.FindF("a", kNone), kNone);
  EXPECT_EQ(reader.FindF("a", kNone - 1), kNone);
  EXPECT_EQ(reader.FindF("a", kNone - 20), kNone);
}

TEST(XIniReader, ThrowsWhenANameThatMustBeThereIsNot) {
  TKvXIniReader reader(MakeStream("<r><a/></r>"));
  EXPECT_EQ(reader.FindFE("a", 0), 0U);
  EXPECT_EQ(ErrorOf([&] { reader.FindFE("a", 1); }), "XML-ini: there is no item \"a\"");
  EXPECT_THROW(reader.FindFE(nullptr, 0), TKvError);
}

TEST(XIniReader, CutsLongNamesInMessages) {
  TKvXIniReader reader(MakeStream("<r/>"));
  const std::string name(60, 'a');
  EXPECT_EQ(ErrorOf([&] { reader.FindFE(name.c_str(), 0); }),
            "XML-ini: there is no item \"" + name + "\"");
  EXPECT_EQ(ErrorOf([&] { reader.FindFE((name + "b").c_str(), 0); }),
            "XML-ini: there is no item \"" + name + "...\"");
}

TEST(XIniReader, EntersAndLeavesSectionsByName) {
  TKvXIniReader reader(MakeStream("<r><s><t><a>1</a></t></s><a>2</a></r>"));
  const unsigned long s = reader.EnterSectionSE("s");
  const unsigned long t = reader.EnterSectionSE("t");
  EXPECT_NE(s, 0U);
  EXPECT_NE(t, s);
  EXPECT_EQ(reader.ReadE<int>(0), 1);
  reader.LeaveSection(t);
  EXPECT_EQ(reader.GetItemCount(), 1U);
  reader.LeaveSection(s);
  EXPECT_EQ(reader.ReadE<int>(1), 2);
}

TEST(XIniReader, LeavesTheSectionsWithinOnesThatAreLeft) {
  TKvXIniReader reader(MakeStream("<r><s><t><u/></t></s><a>2</a></r>"));
  const unsigned long s = reader.EnterSectionSE("s");
  reader.EnterSectionSE("t");
  reader.EnterSectionSE("u");
  reader.LeaveSection(s);
  EXPECT_EQ(reader.ReadE<int>(1), 2);
}

TEST(XIniReader, StaysWhereItIsWhenTheSectionToLeaveIsNotEntered) {
  TKvXIniReader reader(MakeStream("<r><s><t><a>1</a></t></s></r>"));
  const unsigned long s = reader.EnterSectionSE("s");
  const unsigned long t = reader.EnterSectionSE("t");
  reader.LeaveSection(0);
  reader.LeaveSection(kNone);
  EXPECT_EQ(reader.FindF("a", 0), 0U);
  reader.LeaveSection(t);
  reader.LeaveSection(t);
  EXPECT_EQ(reader.FindF("t", 0), 0U);
  reader.LeaveSection(s);
  reader.LeaveSection(s);
  EXPECT_EQ(reader.FindF("s", 0), 0U);
}

TEST(XIniReader, ThrowsForASectionThatIsNotThere) {
  TKvXIniReader reader(MakeStream("<r a='1'><s/></r>"));
  EXPECT_EQ(ErrorOf([&] { reader.EnterSectionSE("t"); }), "XML-ini: there is no section \"t\"");
  EXPECT_THROW(reader.EnterSectionSE("a"), TKvError);
}

TEST(XIniReader, EntersTheElementWhereAnAttributeHasTheSameName) {
  TKvXIniReader reader(MakeStream("<r s='1'><s><a/></s></r>"));
  reader.EnterSectionSE("s");
  EXPECT_EQ(reader.FindF("a", 0), 0U);
}

TEST(XIniReader, EntersTheElementAtAPosition) {
  TKvXIniReader reader(MakeStream("<r><s/><s><a>1</a></s></r>"));
  const unsigned long section = reader.EnterItem(1);
  EXPECT_EQ(reader.ReadE<int>(0), 1);
  reader.LeaveSection(section);
  EXPECT_EQ(reader.GetItemCount(), 2U);
}

TEST(XIniReader, FindsNoItemsInALeaf) {
  TKvXIniReader reader(MakeStream("<r><a>text</a></r>"));
  reader.EnterItem(0);
  EXPECT_EQ(reader.GetItemCount(), 0U);
}

TEST(XIniReader, EntersNeitherAnAttributeNorAPositionThatIsNotThere) {
  TKvXIniReader reader(MakeStream("<r a='1'><s/></r>"));
  EXPECT_THROW(reader.EnterItem(0), TKvError);
  EXPECT_THROW(reader.EnterItem(2), TKvError);
  EXPECT_THROW(reader.EnterItem(kNone), TKvError);
  EXPECT_EQ(reader.GetItemCount(), 2U);
}

TEST(XIniReader, ReadsTheTextOfAnElementExactly) {
  EXPECT_EQ(FirstValue("<r><a> b </a></r>"), " b ");
  EXPECT_EQ(FirstValue("<r><a>\n\t </a></r>"), "\n\t ");
  EXPECT_EQ(FirstValue("<r>\n<a/>\n</r>"), "");
  EXPECT_EQ(FirstValue("<r><a></a></r>"), "");
}

TEST(XIniReader, JoinsThePiecesOfAnElementsText) {
  EXPECT_EQ(FirstValue("<r><a> <!-- c --> b<![CDATA[<&amp;> ]]> <?p?>\n</a></r>"),
            "  b<&amp;>  \n");
}

TEST(XIniReader, ReadsThePredefinedEntitiesAndCharacterReferences) {
  EXPECT_EQ(FirstValue("<r><a>&amp;&lt;&gt;&quot;&apos;&#13;&#x41;&#x20AC;&#128512;</a></r>"),
            "&<>\"'\rA\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_EQ(FirstValue("<r a='&amp;&lt;&gt;&quot;&apos;&#9;&#10;&#13;'/>"), "&<>\"'\t\n\r");
}

TEST(XIniReader, ReadsLineEndsAsLineFeedsAndWhiteSpaceInAttributesAsSpaces) {
  EXPECT_EQ(FirstValue("<r><a>1\r\n2\r3\n4</a></r>"), "1\n2\n3\n4");
  EXPECT_EQ(FirstValue("<r a='1\r\n2\t3\n4'/>"), "1 2 3 4");
}

TEST(XIniReader, ReadsBase64NamesAndValues) {
  TKvXIniReader reader(
      MakeStream("<r><_ _name='/w==' _enc='name'>1</_><a _enc='value'> AA\nE= </a>"
                 "<_ _name='AA==' _enc='name value'>AQ==</_></r>"));
  EXPECT_EQ(reader.FindF("\xFF", 0), 0U);
  EXPECT_EQ(reader.ReadE<std::string>(0), "1");
  EXPECT_EQ(reader.ReadE<std::string>(1), std::string("\0\1", 2));
  EXPECT_EQ(reader.ReadE<std::string>(2), "\x01");
}

TEST(XIniReader, EntersASectionWhoseNameHoldsAZeroByte) {
  TKvXIniReader reader(MakeStream("<r><_ _name='YQBi' _enc='name'><x/></_></r>"));
  EXPECT_EQ(reader.FindF("a", 0), kNone);
  reader.EnterSectionSE(std::string("a\0b", 3));
  EXPECT_EQ(reader.FindF("x", 0), 0U);
}

TEST(XIniReader, FindsAmongManyASectionWhoseNameHoldsAZeroByte) {
  std::string text = "<r>";
  for (int i = 0; i < 20; ++i) text += "<_ _name='YQ==' _enc='name'/>";
  TKvXIniReader reader(MakeStream(text + "<_ _name='YQBi' _enc='name'><x/></_></r>"));
  EXPECT_EQ(reader.FindF("a", 0), 0U);
  EXPECT_EQ(reader.FindF("a", 19), 19U);
  EXPECT_EQ(reader.FindF("a", 20), kNone);
  reader.EnterSectionSE(std::string("a\0b", 3));
  EXPECT_EQ(reader.FindF("x", 0), 0U);
}

TEST(XIniReader, RefusesBrokenBase64WithItsPlace) {
  EXPECT_THAT(ReadError("<r>\n <a _enc='value'>AAE</a></r>"),
              StartsWith("XML, line 2, column 3: the value is not base64"));
  EXPECT_THAT(ReadError("<r>\n <_ _name='?' _enc='name'/></r>"),
              StartsWith("XML, line 2, column 3: the name is not base64"));
  EXPECT_THAT(ReadError("<r><s><a _enc='rot13'>x</a></s></r>"),
              StartsWith("XML, line 1, column 8: \"_enc\""));
}

TEST(XIniReader, ThrowsForAPositionThatIsNotThere) {
  TKvXIniReader reader(MakeStream("<r/>"));
  EXPECT_THROW(reader.ReadE<std::string>(0), TKvError);
  EXPECT_THROW(reader.ReadE<int>(kNone), TKvError);
}

TEST(XIniReader, ReadsNoValueFromAnElementWithChildElements) {
  TKvXIniReader reader(MakeStream("<r><a>1<b/></a></r>"));
  EXPECT_EQ(ErrorOf([&] { reader.ReadE<std::string>(0); }),
            "XML-ini: \"a\" is a section, not a value");
}

// Numbers.

template <class T>
bool Reads(const std::string& value, T expected) {
  const TKvXIniReader reader(MakeStream("<r a='" + value + "'/>"));
  return reader.ReadE<T>(0) == expected;
}

template <class T>
bool Refuses(const std::string& value) {
  const TKvXIniReader reader(MakeStream("<r a='" + value + "'/>"));
  return ErrorOf([&] { reader.ReadE<T>(0); }) != "nothing";
}

TEST(XIniReader, ReadsIntegers) {
  EXPECT_TRUE(Reads<int>("0", 0));
  EXPECT_TRUE(Reads<int>("-12", -12));
  EXPECT_TRUE(Reads<int>("+12", 12));
  EXPECT_TRUE(Reads<int>("2147483647", 2147483647));
  EXPECT_TRUE(Reads<int>("-2147483648", std::numeric_limits<int>::min()));
}

TEST(XIniReader, RefusesWhatIsNotAnIntegerAsAWhole) {
  for (const char* text : {"", " ", " 1", "1 ", "1.0", "1e2", "0x1", "12abc", "+", "-", "+-1",
                           "--1", "2147483648", "-2147483649", "99999999999999999999"}) {
    EXPECT_TRUE(Refuses<int>(text)) << text;
  }
}

TEST(XIniReader, SaysWhichItemIsNotANumber) {
  const TKvXIniReader reader(MakeStream("<r><a>x</a></r>"));
  EXPECT_EQ(ErrorOf([&] { reader.ReadE<int>(0); }), "XML-ini: \"a\" is not an integer: \"x\"");
  EXPECT_EQ(ErrorOf([&] { reader.ReadE<double>(0); }), "XML-ini: \"a\" is not a number: \"x\"");
}

TEST(XIniReader, ReadsDoubles) {
  EXPECT_TRUE(Reads<double>("0.5", 0.5));
  EXPECT_TRUE(Reads<double>("+0.5", 0.5));
  EXPECT_TRUE(Reads<double>("-1e-3", -1e-3));
  EXPECT_TRUE(Reads<double>("7", 7));
  EXPECT_TRUE(Reads<double>("4.9406564584124654e-324", 4.9406564584124654e-324));
  EXPECT_TRUE(Reads<double>("inf", std::numeric_limits<double>::infinity()));
  EXPECT_TRUE(Reads<double>("-inf", -std::numeric_limits<double>::infinity()));
}

TEST(XIniReader, ReadsNaN) {
  EXPECT_TRUE(std::isnan(TKvXIniReader(MakeStream("<r a='nan'/>")).ReadE<double>(0)));
}

TEST(XIniReader, RefusesWhatIsNotADoubleAsAWhole) {
  for (const char* text : {"", " ", " 1", "1 ", "1,5", "1.5x", "0x1p3", "+", "+-1", "e5", "1e",
                           "1e999", "-1e999", "infinite"}) {
    EXPECT_TRUE(Refuses<double>(text)) << text;
  }
}

TEST(XIniReader, ReadsADotWhateverTheLocale) {
  const CommaLocale locale;
  if (!locale.IsThere()) GTEST_SKIP() << "the machine has no locale with a decimal comma";
  EXPECT_TRUE(Reads<double>("0.5", 0.5));
  EXPECT_TRUE(Refuses<double>("0,5"));
}

// What is refused.

TEST(XIniReader, RefusesAMissingOrClosedStream) {
  EXPECT_EQ(ErrorOf([] { const TKvXIniReader reader{StreamPointer()}; }),
            "XML: the stream is not open");
  EXPECT_EQ(ErrorOf([] { const TKvXIniReader reader(StreamPointer(new TKvFileStream)); }),
            "XML: the stream is not open");
}

TEST(XIniReader, RefusesAnEmptyText) {
  EXPECT_EQ(ReadError(""), "XML, line 1, column 1: no root element");
  EXPECT_EQ(ReadError("<!-- nothing -->\n"), "XML, line 2, column 1: no root element");
}

TEST(XIniReader, RefusesDocumentTypes) {
  EXPECT_THAT(ReadError("<!DOCTYPE r>\n<r/>"), HasSubstr("document types are not read"));
  EXPECT_THAT(ReadError("<!DOCTYPE r SYSTEM 'http://127.0.0.1/x.dtd'><r/>"),
              HasSubstr("document types are not read"));
  EXPECT_NE(ReadError("<!DOCTYPE r [<!ENTITY e 'x'>]><r>&e;</r>"), "nothing");
  EXPECT_NE(ReadError("<r/><!DOCTYPE r>"), "nothing");
  EXPECT_NE(ReadError("<r><!DOCTYPE r></r>"), "nothing");
  EXPECT_NE(ReadError("<!DOCTYPE r"), "nothing");
}

TEST(XIniReader, RefusesEntitiesBeyondThePredefinedWithTheirPlace) {
  EXPECT_EQ(ReadError("<r>\n\xC3\xA9&foo;</r>"),
            "XML, line 2, column 2: unknown entity or character reference");
  EXPECT_NE(ReadError("<r a='&foo;'/>"), "nothing");
  EXPECT_NE(ReadError("<r>a & b</r>"), "nothing");
  EXPECT_NE(ReadError("<r>&amp</r>"), "nothing");
  EXPECT_NE(ReadError("<r>&;</r>"), "nothing");
  EXPECT_NE(ReadError("<r>&"), "nothing");
}

TEST(XIniReader, RefusesReferencesToCharactersThatXmlForbids) {
  for (const char* reference :
       {"&#0;", "&#1;", "&#x0;", "&#xD800;", "&#xFFFE;", "&#x110000;", "&#4294967361;", "&#;",
        "&#x;", "&#-1;", "&#X41;", "&#65", "&#6 5;"}) {
    EXPECT_NE(ReadError(std::string("<r>") + reference + "</r>"), "nothing") << reference;
  }
}

TEST(XIniReader, TakesAmpersandsInCommentsCdataAndInstructions) {
  EXPECT_EQ(ReadError("<?p &x;?><!-- &x; --><r a='>'><![CDATA[&x;]]><!-- &y; --></r>"), "nothing");
  EXPECT_NE(ReadError("<?p &x;?><!-- &x; --><r><![CDATA[&x;]]>&x;</r>"), "nothing");
  EXPECT_NE(ReadError("<r a=\"<!--\" b='&x;'/>"), "nothing");
  EXPECT_NE(ReadError("<r a='>' b='&x;'>--></r>"), "nothing");
}

TEST(XIniReader, RefusesCharactersThatXmlForbidsWithTheirPlace) {
  EXPECT_EQ(ReadError(std::string("<r>\n a\0</r>", 11)),
            "XML, line 2, column 3: not a character of XML in UTF-8");
  EXPECT_NE(ReadError("<r>\x01</r>"), "nothing");
  EXPECT_NE(ReadError("<r>\xFF</r>"), "nothing");
  EXPECT_NE(ReadError("<r>\xEF\xBF\xBE</r>"), "nothing");
  EXPECT_NE(ReadError("<r>\xED\xA0\x80</r>"), "nothing");
}

TEST(XIniReader, RefusesAnythingButOneElementAtTheTop) {
  EXPECT_EQ(ReadError(" \n<r/>\n<!-- c -->\n"), "nothing");
  EXPECT_THAT(ReadError("<r/>\n<s/>"), StartsWith("XML, line 2, column 2: a second root"));
  EXPECT_THAT(ReadError("<r/> text"), HasSubstr("text outside the root element"));
  EXPECT_THAT(ReadError("text <r/>"), HasSubstr("text outside the root element"));
  EXPECT_THAT(ReadError("<![CDATA[ ]]><r/>"), HasSubstr("text outside the root element"));
}

TEST(XIniReader, SaysLineAndColumnOfWhatIsNotXml) {
  EXPECT_THAT(ReadError("<r>\n<a></b></r>"), StartsWith("XML, line 2, column "));
  EXPECT_THAT(ReadError("<r>\n\n  <a b=c/></r>"), StartsWith("XML, line 3, column "));
}

TEST(XIniReader, RefusesEveryDocumentCutShort) {
  const std::string whole = Document("\t<a>b</a>\n\t<_ _name=\"x&#13;\" _enc=\"value\">AA==</_>\n");
  for (std::size_t size = 0; size + 1 < whole.size(); ++size) {
    EXPECT_NE(ReadError(whole.substr(0, size)), "nothing") << size;
  }
}

TEST(XIniReader, ReadsOrRefusesTwistedDocuments) {
  const std::string whole =
      Document("\t<a b=\"c\">d&#13;</a>\n\t<_ _name=\"eA==\" _enc=\"name value\">AA==</_>\n");
  std::mt19937 random(5);
  unsigned long refused = 0;
  for (int i = 0; i < 20000; ++i) {
    std::string twisted = whole;
    const unsigned long changes = 1 + random() % 3;
    for (unsigned long k = 0; k < changes; ++k) {
      twisted[random() % twisted.size()] = whole[random() % whole.size()];
    }
    refused += ReadError(twisted) != "nothing";
  }
  EXPECT_GT(refused, 1000U);
  EXPECT_LT(refused, 20000U);
}

// Encodings.

TEST(XIniReader, PassesOverAByteOrderMark) {
  EXPECT_EQ(FirstValue("\xEF\xBB\xBF<r><a>\xC3\xA9</a></r>"), "\xC3\xA9");
}

std::string Utf16(const std::u16string& text, bool bigEndian) {
  std::string bytes;
  for (const char16_t unit : text) {
    const char high = static_cast<char>(unit >> 8U);
    const char low = static_cast<char>(unit & 0xFFU);
    bytes += bigEndian ? high : low;
    bytes += bigEndian ? low : high;
  }
  return bytes;
}

TEST(XIniReader, ReadsUtf16WithAndWithoutAByteOrderMark) {
  const std::string value = "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
  for (const bool bigEndian : {false, true}) {
    EXPECT_EQ(FirstValue(Utf16(u"\uFEFF<r><a>\u00E9\u20AC\U0001F600</a></r>", bigEndian)), value);
    EXPECT_EQ(
        FirstValue(Utf16(u"<?xml version='1.0'?><r><a>\u00E9\u20AC\U0001F600</a></r>", bigEndian)),
        value);
  }
}

TEST(XIniReader, ReadsBrokenSurrogatesAsReplacementCharacters) {
  const std::u16string text = {0xFEFF, '<',    'r', ' ',    'a',  '=', '\'',
                               0xDC00, 0xD800, 'x', 0xD800, '\'', '/', '>'};
  EXPECT_EQ(FirstValue(Utf16(text, true)), "\xEF\xBF\xBD\xEF\xBF\xBDx\xEF\xBF\xBD");
}

TEST(XIniReader, RefusesUtf16ThatEndsWithinACharacter) {
  for (const bool bigEndian : {false, true}) {
    EXPECT_THAT(ReadError(Utf16(u"\uFEFF<r/>", bigEndian) + " "),
                HasSubstr("text outside the root element"));
  }
}

TEST(XIniReader, ReadsTheSingleByteEncodingsThatADeclarationNames) {
  const std::string rest = "?><r><a>\xE9\x80</a></r>";
  EXPECT_EQ(FirstValue("<?xml version='1.0' encoding='ISO-8859-1'" + rest), "\xC3\xA9\xC2\x80");
  EXPECT_EQ(FirstValue("<?xml version='1.0' encoding='Latin1'" + rest), "\xC3\xA9\xC2\x80");
  EXPECT_EQ(FirstValue("<?xml version='1.0' encoding=\"windows-1252\"" + rest),
            "\xC3\xA9\xE2\x82\xAC");
}

TEST(XIniReader, RefusesOtherEncodingsUnlessTheTextIsAscii) {
  const std::string declaration = "<?xml version='1.0' encoding='Shift_JIS'?>";
  EXPECT_EQ(FirstValue(declaration + "<r a='x'/>"), "x");
  EXPECT_EQ(ReadError(declaration + "<r a='\xC3\xA9'/>"),
            "XML: the encoding shift_jis is not supported");
}

// Streams.

TEST(XIniReader, ReadsTheStreamFromItsBeginning) {
  const StreamPointer stream = MakeStream("<r a='1'/>");
  stream->SetPos(5);
  EXPECT_EQ(TKvXIniReader(stream).ReadE<int>(0), 1);
}

TEST(XIniReader, LeavesAMemoryStreamAtItsEnd) {
  const std::string text = "<r a='1'/>";
  const StreamPointer stream = MakeStream(text);
  EXPECT_EQ(TKvXIniReader(stream).ReadE<int>(0), 1);
  EXPECT_EQ(stream->GetPos(), text.size());
  EXPECT_TRUE(stream->Eof());
}

/// A memory stream whose reads give other bytes than it holds.
class TwistedStream : public TKvMemoryStream {
 public:
  using TKvMemoryStream::TKvMemoryStream;
  unsigned long Read(void* buffer, unsigned long count) override {
    const unsigned long got = TKvMemoryStream::Read(buffer, count);
    char* const bytes = static_cast<char*>(buffer);
    std::replace(bytes, bytes + got, '1', '2');
    return got;
  }
};

TEST(XIniReader, ReadsTheBytesThatADerivedStreamGives) {
  const StreamPointer stream(new TwistedStream("<r a='1'/>"));
  EXPECT_EQ(TKvXIniReader(stream).ReadE<int>(0), 2);
}

/// A stream that gives its bytes in small pieces, cannot be positioned, and states any size.
class OddStream : public LimitedStream {
 public:
  OddStream(std::string bytes, unsigned long size)
      : LimitedStream(0), bytes_(std::move(bytes)), size_(size) {}
  unsigned long Read(void* buffer, unsigned long count) override {
    largest_ = std::max(largest_, count);
    const unsigned long got = std::min({count, 7UL, bytes_.size() - pos_});
    bytes_.copy(static_cast<char*>(buffer), got, pos_);
    pos_ += got;
    return got;
  }
  unsigned long getSize() const override { return size_; }
  unsigned long Largest() const { return largest_; }

 private:
  std::string bytes_;
  unsigned long size_;
  unsigned long pos_ = 0;
  unsigned long largest_ = 0;
};

TEST(XIniReader, ReadsAStreamThatGivesItsBytesInPieces) {
  const std::string value(300000, 'x');
  const StreamPointer stream(new OddStream("<r a='" + value + "'/>", 0));
  EXPECT_EQ(TKvXIniReader(stream).ReadE<std::string>(0), value);
}

TEST(XIniReader, TakesMemoryForWhatComesNotForWhatTheStreamStates) {
  auto* odd = new OddStream("<r a='1'/>", ~0UL);
  const StreamPointer stream(odd);
  EXPECT_EQ(TKvXIniReader(stream).ReadE<int>(0), 1);
  EXPECT_LE(odd->Largest(), 1UL << 20U);
}

// Size.

TEST(XIniReader, ReadsNestingOfAnyDepth) {
  constexpr int kDepth = 100000;
  std::string text;
  for (int i = 0; i < kDepth; ++i) text += "<s>";
  text += "<a>1</a>";
  for (int i = 0; i < kDepth; ++i) text += "</s>";
  TKvXIniReader reader(MakeStream(text));
  for (int i = 1; i < kDepth; ++i) ASSERT_NE(reader.EnterItem(0), 0U);
  EXPECT_EQ(reader.ReadE<int>(0), 1);
}

TEST(XIniReader, CountsNestingAsDeepAsItIsWithBase64Inside) {
  constexpr int kDepth = 100000;
  std::string text;
  for (int i = 0; i < kDepth; ++i) text += "<s>";
  text += "<a _enc='value'>?</a>";
  for (int i = 0; i < kDepth; ++i) text += "</s>";
  EXPECT_THAT(ReadError(text), HasSubstr("the value is not base64"));
}

TEST(XIniReader, ASectionEnteredAfterAnotherHasItsOwnItemsAndNames) {
  TKvXIniReader reader(
      MakeStream("<r><s><a>1</a><_ _name='b c'>2</_><_ _enc='name' _name='AQ=='>3</_><_>4</_></s>"
                 "<s d='5'><a>6</a></s><s/><s><_ _enc='name' _name='Ag=='>7</_></s></r>"));
  const auto found = [&](const char* name) {
    const unsigned long item = reader.FindF(name, 0);
    return item == kNone ? "none" : reader.ReadE<std::string>(item);
  };
  const auto all = [&](unsigned long section) {
    const unsigned long entered = reader.EnterItem(section);
    std::string values = std::to_string(reader.GetItemCount());
    for (const char* name : {"a", "b c", "\x01", "", "d", "\x02"}) values += " " + found(name);
    reader.LeaveSection(entered);
    return values;
  };
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(all(0), "4 1 2 3 4 none none");
    EXPECT_EQ(all(1), "2 6 none none none 5 none");
    EXPECT_EQ(all(2), "0 none none none none none none");
    EXPECT_EQ(all(3), "1 none none none none none 7");
  }
  EXPECT_EQ(reader.GetItemCount(), 4U);
}

TEST(XIniReader, ANameThatBeginsLikeAnotherIsAnother) {
  const TKvXIniReader reader(MakeStream("<r><ab/><abcd/><abc/><a/></r>"));
  EXPECT_EQ(reader.FindF("abc", 0), 2U);
  EXPECT_EQ(reader.FindF("a", 0), 3U);
  EXPECT_EQ(reader.FindF("abcde", 0), kNone);
  EXPECT_EQ(reader.FindF("", 0), kNone);
}

TEST(XIniReader, FindsAnEncodedValueWhereverItStands) {
  for (std::size_t before = 0; before < 40; ++before) {
    for (std::size_t behind = 0; behind < 20; ++behind) {
      const std::string text = "<r" + std::string(before, ' ') + "><a _enc='value'>YQ==</a" +
                               std::string(behind, ' ') + "></r>";
      ASSERT_EQ(FirstValue(text), "a") << before << " " << behind;
    }
  }
}

TEST(XIniReader, VisitsManyItemsByPositionAndByName) {
  constexpr unsigned long kCount = 100000;
  const std::string text = Written([](TKvXIniStreamWriter& writer) {
    for (unsigned long i = 0; i < kCount; ++i) {
      const unsigned long section =
          writer.BeginSectionS(std::string("s").append(std::to_string(i)));
      writer.WriteS<int>("a", static_cast<int>(i));
      writer.EndSection(section);
    }
  });
  TKvXIniReader reader(MakeStream(text));
  ASSERT_EQ(reader.GetItemCount(), kCount);
  for (unsigned long i = 0; i < kCount; ++i) {
    ASSERT_EQ(reader.FindF(std::string("s").append(std::to_string(i)).c_str(), 0), i);
    const unsigned long section = reader.EnterItem(i);
    ASSERT_EQ(reader.ReadE<int>(0), static_cast<int>(i));
    reader.LeaveSection(section);
  }
}

}  // namespace
}  // namespace kv_test
