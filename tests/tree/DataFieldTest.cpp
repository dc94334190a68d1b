#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <type_traits>

#include "metadata/RecordingWriter.h"
#include "tree/TreeTest.h"

namespace {

using namespace tree_test;
using metadata_test::RecordingWriter;

std::string Written(const Field& field, std::size_t depth) {
  std::string line(field.WriteToString(nullptr, 0, depth), '#');
  EXPECT_EQ(field.WriteToString(line.data(), 0, depth), line.size());
  return line;
}

/// The field that a line gives; `*rest` is what lies behind the position.
std::string Read(const std::string& text, std::string* rest = nullptr) {
  TStringTreeField field(0, 0, nullptr, 0, "");
  std::size_t position = 0;
  field.ReadFromString(text.c_str(), &position);
  if (rest != nullptr) *rest = text.substr(position);
  return DescribeField(field);
}

TEST(DataFieldTest, TheArrayConstructorCopiesTheValues) {
  std::string values[] = {"a", "b"};
  const Field field(3, 4, values, 2, "x");
  values[0] = "changed";
  EXPECT_EQ(DescribeField(field), "G(3,4)1:x[1:a;1:b;]");
  EXPECT_NE(field.values, values);
}

TEST(DataFieldTest, TheValueConstructorMakesAFieldOfOneValue) {
  const Field field(3, 4, std::string("a"), "x");
  EXPECT_EQ(DescribeField(field), "G(3,4)1:x[1:a;]");
}

TEST(DataFieldTest, AFieldForReadingStartsEmpty) {
  const Field field(0, 0, nullptr, 0, "");
  EXPECT_EQ(field.count, 0u);
  EXPECT_EQ(field.values, nullptr);
  EXPECT_EQ(DescribeField(field), "G(0,0)0:[]");
}

TEST(DataFieldTest, IsNotCopied) {
  static_assert(!std::is_copy_constructible_v<Field>);
  static_assert(!std::is_copy_assignable_v<Field>);
  static_assert(!std::has_virtual_destructor_v<Field>);
  static_assert(std::is_polymorphic_v<Field>);
}

TEST(DataFieldTest, TheGeneralConversionsOfValuesDoNothing) {
  Field field(1, 0, std::string("value"), "");
  char buffer[] = "untouched";
  EXPECT_EQ(field.ValueToString(0, buffer, 0), 0u);
  EXPECT_EQ(field.ValueToString(0, nullptr, 0), 0u);
  EXPECT_STREQ(buffer, "untouched");
  EXPECT_EQ(field.ValueToString(0), "");
  EXPECT_FALSE(field.StringToValue("text", 4, 0));
  EXPECT_FALSE(field.StringToValue(std::string("text"), 0));
  EXPECT_EQ(field.values[0], "value");
}

TEST(DataFieldTest, AGeneralFieldWrittenAndReadKeepsAllButItsValues) {
  std::string values[] = {"a", "b", "c"};
  const Field field(3, 4, values, 3, "x\ty");
  const std::string line = Written(field, 0);
  EXPECT_EQ(line, "(3,4)[3]x\\ty\t\t\t\n");
  Field read(0, 0, nullptr, 0, "");
  std::size_t position = 0;
  read.ReadFromString(line.c_str(), &position);
  EXPECT_EQ(DescribeField(read), "G(3,4)3:x\ty[0:;0:;0:;]");
  EXPECT_EQ(position, line.size());
}

TEST(DataFieldTest, ALineIsPrefixHeaderAndValuesBehindTabs) {
  std::string values[] = {"a", "b"};
  const TStringTreeField field(3, 0, values, 2, "x");
  EXPECT_EQ(field.WriteToString(nullptr, 0, 2), 16u);
  EXPECT_EQ(Written(field, 2), "\t\t(3,0)[2]x\ta\tb\n");
}

TEST(DataFieldTest, ALineIsWrittenAtThePositionWithoutANul) {
  const TStringTreeField field(3, 0, std::string("a"), "x");
  char buffer[] = "################";
  EXPECT_EQ(field.WriteToString(buffer, 2, 0), 12u);
  EXPECT_STREQ(buffer, "##(3,0)[1]x\ta\n##");
}

TEST(DataFieldTest, NegativeKeysWriteNothingAlsoWhenMeasured) {
  for (const auto& [tag, idx] : {std::pair(-1, 0), std::pair(0, -1), std::pair(-1, -1)}) {
    const TStringTreeField field(tag, idx, std::string("a"), "x");
    char buffer[] = "##";
    EXPECT_EQ(field.WriteToString(nullptr, 0, 3), 0u);
    EXPECT_EQ(field.WriteToString(buffer, 0, 3), 0u);
    EXPECT_STREQ(buffer, "##");
  }
}

TEST(DataFieldTest, AFieldWithoutValuesEndsBehindItsHeader) {
  EXPECT_EQ(Written(TStringTreeField(3, 0, nullptr, 0, "x"), 1), "\t(3,0)[0]x\n");
}

TEST(DataFieldTest, EveryNumberOfDigitsIsCounted) {
  for (const int number :
       {0, 1, 2, 9, 10, 11, 99, 100, 101, 999, 1000, 99999, 100000, 2147483647}) {
    const std::string digits = std::to_string(number);
    EXPECT_EQ(Written(TStringTreeField(number, 7, std::string(), ""), 0),
              "(" + digits + ",7)[1]\t\n");
    EXPECT_EQ(Written(TStringTreeField(7, number, std::string(), ""), 0),
              "(7," + digits + ")[1]\t\n");
  }
}

TEST(DataFieldTest, EveryNumberOfValuesIsCounted) {
  for (const std::size_t count : {9UL, 10UL, 99UL, 100UL, 101UL, 1000UL}) {
    std::vector<std::string> values(count);
    EXPECT_EQ(Written(TStringTreeField(1, 0, values.data(), count, ""), 0),
              "(1,0)[" + std::to_string(count) + "]" + std::string(count, '\t') + "\n");
  }
}

TEST(DataFieldTest, HeadersAreEscapedInText) {
  EXPECT_EQ(Written(TStringTreeField(1, 0, std::string("v"), "a\tb\rc\nd\\"), 0),
            "(1,0)[1]a\\tb\\rc\\nd\\\tv\n");
}

TEST(DataFieldTest, ReadingEndsBehindTheLineFeed) {
  std::string rest;
  EXPECT_EQ(Read("(3,4)[2]x\\ty\ta\\nb\tc\n(1,1)", &rest), "S(3,4)3:x\ty[3:a\nb;1:c;]");
  EXPECT_EQ(rest, "(1,1)");
}

TEST(DataFieldTest, ReadingBeginsAtThePosition) {
  TStringTreeField field(0, 0, nullptr, 0, "");
  std::size_t position = 5;
  field.ReadFromString("#####(3,4)[1]x\ty\n##", &position);
  EXPECT_EQ(DescribeField(field), "S(3,4)1:x[1:y;]");
  EXPECT_EQ(position, 17u);
}

TEST(DataFieldTest, MissingValuesStayEmpty) {
  EXPECT_EQ(Read("(3,4)[3]x\ta\n and more text"), "S(3,4)1:x[1:a;0:;0:;]");
}

TEST(DataFieldTest, ValuesBeyondTheCountAreDropped) {
  std::string rest;
  EXPECT_EQ(Read("(3,4)[1]x\ta\tb\tc\nrest", &rest), "S(3,4)1:x[1:a;]");
  EXPECT_EQ(rest, "rest");
}

/// Writes down what it is to set its values from, and sets none.
struct AskedField : Field {
  using Field::Field;
  bool StringToValue(const char* text, std::size_t length, std::size_t i) override {
    return StringToValue(std::string(text, length), i);
  }
  bool StringToValue(const std::string& text, std::size_t i) override {
    asked += std::to_string(i) + "=" + text + ";";
    return false;
  }
  std::string asked;
};

TEST(DataFieldTest, ADerivedClassIsAskedForTheValuesOfTheCountOnly) {
  AskedField field(0, 0, nullptr, 0, "");
  std::size_t position = 0;
  field.ReadFromString("(3,4)[2]x\ta\tb\tc\td\n", &position);
  EXPECT_EQ(field.asked, "0=a;1=b;");
}

TEST(DataFieldTest, ADerivedClassPutsEachValueWhereItsPositionSays) {
  struct Placed : Field {
    using Field::Field;
    std::size_t ValueToString(std::size_t i, char* buffer, std::size_t position) const override {
      const std::string text = std::to_string(i) + "@" + std::to_string(position);
      if (buffer != nullptr) text.copy(buffer + position, text.size());
      return text.size();
    }
  };
  std::string values[] = {"a", "b"};
  const Placed field(3, 4, values, 2, "x");
  EXPECT_EQ(field.WriteToString(nullptr, 5, 1), 21u);
  char buffer[] = "#############################";
  EXPECT_EQ(field.WriteToString(buffer, 5, 1), 21u);
  EXPECT_STREQ(buffer, "#####\t(3,4)[2]x\t0@16\t1@21\n###");
}

TEST(DataFieldTest, ValuesTooLongForAnyTextThrow) {
  struct Endless : Field {
    using Field::Field;
    std::size_t ValueToString(std::size_t, char*, std::size_t) const override {
      return static_cast<std::size_t>(-1);
    }
  };
  std::string values[] = {"a", "b"};
  const Endless field(3, 4, values, 2, "x");
  EXPECT_THROW(field.WriteToString(nullptr, 0, 0), std::length_error);
}

TEST(DataFieldTest, TheHeaderOfAFieldWithoutValuesRunsOnToTheNextTab) {
  std::string rest;
  EXPECT_EQ(Read("(3,4)[0]x\n(5,6)[1]y\tz\nrest", &rest), "S(3,4)11:x\n(5,6)[1]y[]");
  EXPECT_EQ(rest, "rest");
}

TEST(DataFieldTest, ANumberThatIsNotThereLeavesWhatWasThere) {
  EXPECT_EQ(Read("(x,4)[1]h\tv\n"), "S(0,0)1:h[]");
  EXPECT_EQ(Read("(3;4)[1]h\tv\n"), "S(3,0)1:h[]");
  EXPECT_EQ(Read("(3,4)(1]h\tv\n"), "S(3,4)1:h[]");
  EXPECT_EQ(Read("(3,4)[]h\tv\n"), "S(3,4)1:h[]");
  TStringTreeField field(8, 9, std::string("old"), "old");
  std::size_t position = 0;
  field.ReadFromString("(3;4)]h\tv\n", &position);
  EXPECT_EQ(DescribeField(field), "S(3,9)1:h[1:v;]");
}

TEST(DataFieldTest, ReadingReplacesHeaderAndValues) {
  TStringTreeField field(1, 1, std::string("old"), "old");
  std::size_t position = 0;
  field.ReadFromString("(3,4)[2]new\ta\tb\n", &position);
  EXPECT_EQ(DescribeField(field), "S(3,4)3:new[1:a;1:b;]");
}

TEST(DataFieldTest, TheNulEndsReadingWhereverItStands) {
  std::string rest = "none";
  EXPECT_EQ(Read("", &rest), "S(0,0)0:[]");
  EXPECT_EQ(Read("(3,4", &rest), "S(3,4)0:[]");
  EXPECT_EQ(rest, "");
  EXPECT_EQ(Read("(3,4)[1]head", &rest), "S(3,4)4:head[0:;]");
  EXPECT_EQ(rest, "");
  EXPECT_EQ(Read("(3,4)[2]head\ta\tb", &rest), "S(3,4)4:head[1:a;1:b;]");
  EXPECT_EQ(rest, "");
}

TEST(DataFieldTest, ACountThatTheRestOfTheTextCannotHoldThrowsAndKeepsTheValues) {
  for (const std::string count :
       {"3", "4000000000", "18446744073709551615", "-1", "99999999999999999999999999"}) {
    TStringTreeField field(1, 1, std::string("old"), "old");
    std::size_t position = 0;
    const std::string text = "(3,4)[" + count + "]new\ta";
    EXPECT_THROW(field.ReadFromString(text.c_str(), &position), std::length_error) << count;
    EXPECT_EQ(DescribeField(field), "S(3,4)3:new[3:old;]");
    EXPECT_EQ(position, 0u);
  }
}

TEST(DataFieldTest, ACountThatTheRestOfTheTextJustHoldsIsTaken) {
  EXPECT_EQ(Read("(3,4)[2]h\ta"), "S(3,4)1:h[1:a;0:;]");
  EXPECT_EQ(Read("(3,4)[3]h\t\t\t"), "S(3,4)1:h[0:;0:;0:;]");
  EXPECT_THROW(Read("(3,4)[4]h\t\t\t"), std::length_error);
}

TEST(DataFieldTest, XmlIsThreeItemsAndTheValuesInACompactSection) {
  std::string values[] = {"a\t", "b"};
  const TStringTreeField field(3, 4, values, 2, "x");
  RecordingWriter writer;
  EXPECT_TRUE(field.WriteToXML(&writer));
  EXPECT_EQ(writer.calls, (std::vector<std::string>{"tag=3", "idx=4", "hdr=x", "begin compact data",
                                                    "=a\t", "=b", "end 4711"}));
}

TEST(DataFieldTest, XmlOfAGeneralFieldHasEmptyValues) {
  const Field field(3, 4, std::string("a"), "x");
  RecordingWriter writer;
  EXPECT_TRUE(field.WriteToXML(&writer));
  EXPECT_EQ(writer.calls, (std::vector<std::string>{"tag=3", "idx=4", "hdr=x", "begin compact data",
                                                    "=", "end 4711"}));
}

TEST(DataFieldTest, XmlOfAFieldWithoutValuesHasAnEmptySection) {
  const TStringTreeField field(3, 4, nullptr, 0, "x");
  RecordingWriter writer;
  EXPECT_TRUE(field.WriteToXML(&writer));
  EXPECT_EQ(writer.calls, (std::vector<std::string>{"tag=3", "idx=4", "hdr=x", "begin compact data",
                                                    "end 4711"}));
}

TEST(DataFieldTest, NegativeKeysWriteNoXmlAndGiveTrue) {
  RecordingWriter writer;
  EXPECT_TRUE(TStringTreeField(-1, 0, std::string("a"), "x").WriteToXML(&writer));
  EXPECT_TRUE(TStringTreeField(0, -1, std::string("a"), "x").WriteToXML(&writer));
  EXPECT_TRUE(writer.calls.empty());
}

/// A refused item is recorded and not thrown.
class ForgivingWriter : public RecordingWriter {
 public:
  void ReportWriteError() override { calls.push_back("report"); }
};

TEST(DataFieldTest, EachRefusedItemIsReportedAndWritingGoesOn) {
  const TStringTreeField field(3, 4, std::string("a"), "x");
  ForgivingWriter writer;
  writer.itemResult = false;
  EXPECT_TRUE(field.WriteToXML(&writer));
  EXPECT_EQ(writer.calls,
            (std::vector<std::string>{"tag=3", "report", "idx=4", "report", "hdr=x", "report",
                                      "begin compact data", "=a", "report", "end 4711"}));
}

TEST(DataFieldTest, AWriterThatThrowsGivesFalse) {
  const TStringTreeField field(3, 4, std::string("a"), "x");
  RecordingWriter refusing;
  refusing.itemResult = false;
  EXPECT_FALSE(field.WriteToXML(&refusing));
  EXPECT_EQ(refusing.calls, (std::vector<std::string>{"tag=3"}));
  RecordingWriter closed;
  closed.sectionId = 0;
  EXPECT_FALSE(field.WriteToXML(&closed));
  RecordingWriter throwing;
  throwing.endThrows = true;
  EXPECT_FALSE(field.WriteToXML(&throwing));
}

/// Reads a field from a document's root; "failed " in front when it gives false.
std::string ReadDocument(const std::string& xml) {
  TKvXIniReader reader(StreamPointer(new TKvMemoryStream(xml)));
  TStringTreeField field(8, 9, std::string("old"), "old");
  const bool isRead = field.ReadFromXML(&reader, 0);
  return (isRead ? "" : "failed ") + DescribeField(field);
}

std::string ReadXml(const std::string& content) {
  return ReadDocument(Document(content));
}

TEST(DataFieldTest, ReadsItsXml) {
  EXPECT_EQ(ReadXml("<tag>3</tag><idx>4</idx><hdr>x</hdr><data><_>a</_><_/><_>c</_></data>"),
            "S(3,4)1:x[1:a;0:;1:c;]");
}

TEST(DataFieldTest, ReadsXmlWithoutValues) {
  EXPECT_EQ(ReadXml("<tag>3</tag><idx>4</idx><hdr>x</hdr><data/>"), "S(3,4)1:x[]");
}

TEST(DataFieldTest, ReadsItsItemsInAnyOrderAndAsAttributes) {
  EXPECT_EQ(ReadXml("<data><_>a</_></data><hdr>x</hdr><idx>4</idx><other/><tag>3</tag>"),
            "S(3,4)1:x[1:a;]");
  EXPECT_EQ(ReadDocument("<xini tag=\"3\" idx=\"4\" hdr=\"x\"><data><_>a</_></data></xini>"),
            "S(3,4)1:x[1:a;]");
}

TEST(DataFieldTest, TheReaderStandsWhereItStoodAfterReadingXml) {
  TKvXIniReader reader(StreamPointer(
      new TKvMemoryStream(Document("<tag>3</tag><idx>4</idx><hdr>x</hdr><data><_>a</_></data>"))));
  TStringTreeField field(0, 0, nullptr, 0, "");
  EXPECT_TRUE(field.ReadFromXML(&reader, 0));
  EXPECT_EQ(reader.GetItemCount(), 4u);
}

TEST(DataFieldTest, ADerivedClassIsAskedForEachValueOfXmlWhateverItAnswers) {
  TKvXIniReader reader(StreamPointer(new TKvMemoryStream(
      Document("<tag>3</tag><idx>4</idx><hdr>x</hdr><data><_>a</_><_>b</_></data>"))));
  AskedField field(0, 0, nullptr, 0, "");
  EXPECT_TRUE(field.ReadFromXML(&reader, 0));
  EXPECT_EQ(field.asked, "0=a;1=b;");
}

TEST(DataFieldTest, AReaderThatThrowsAnythingMakesReadingXmlGiveFalse) {
  struct Throwing : TKvXIniReader {
    using TKvXIniReader::TKvXIniReader;
    unsigned long GetItemCount() const override { throw 1; }
  };
  Throwing reader(StreamPointer(
      new TKvMemoryStream(Document("<tag>3</tag><idx>4</idx><hdr>x</hdr><data><_>a</_></data>"))));
  TStringTreeField field(0, 0, nullptr, 0, "");
  EXPECT_FALSE(field.ReadFromXML(&reader, 0));
  EXPECT_EQ(DescribeField(field), "S(3,4)1:x[]");
}

TEST(DataFieldTest, MissingXmlGivesFalseAndKeepsWhatWasRead) {
  EXPECT_EQ(ReadXml(""), "failed S(8,9)3:old[3:old;]");
  EXPECT_EQ(ReadXml("<tag>3</tag>"), "failed S(3,9)3:old[3:old;]");
  EXPECT_EQ(ReadXml("<tag>3</tag><idx>4</idx>"), "failed S(3,4)3:old[3:old;]");
  EXPECT_EQ(ReadXml("<tag>3</tag><idx>4</idx><hdr>x</hdr>"), "failed S(3,4)1:x[3:old;]");
  EXPECT_EQ(ReadXml("<tag>3x</tag><idx>4</idx><hdr>x</hdr>"), "failed S(8,9)3:old[3:old;]");
}

TEST(DataFieldTest, AValueThatCannotBeReadKeepsThoseBeforeIt) {
  EXPECT_EQ(ReadXml("<tag>3</tag><idx>4</idx><hdr>x</hdr>"
                    "<data><_>a</_><_><inner/></_><_>c</_></data>"),
            "failed S(3,4)1:x[1:a;0:;0:;]");
}

}  // namespace
