#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <memory>
#include <string>

#include "tree/TreeTest.h"

namespace {

using namespace tree_test;
using SatCommonUtils::InsertFromString;

TEST(StringTreeTest, AddsNoMembers) {
  EXPECT_EQ(sizeof(TStringTree), sizeof(Tree));
  EXPECT_EQ(sizeof(TStringTreeField), sizeof(Field));
}

TEST(StringTreeTest, EverythingInsertedConsistsOfStringTreesAndTheirFields) {
  TStringTree tree(0, 0, nullptr, "");
  std::string values[] = {"a", "b"};
  tree.InsertField("one", 1, 0, std::string("a"));
  tree.InsertField("two", 2, 0, values, 2);
  tree.InsertSubtree("three", 3, 0);
  tree.subtrees[0]->InsertField("four", 4, 0, std::string("d"));
  EXPECT_EQ(Describe(tree),
            "S(0,0)0:{S(1,0)3:one[1:a;]S(2,0)3:two[1:a;1:b;]S(3,0)5:three{S(4,0)4:four[1:d;]}}");
}

TEST(StringTreeTest, TheFactoriesOfTextAndXmlMakeStringTrees) {
  TStringTree tree(0, 0, nullptr, "");
  using OwnedTree = std::unique_ptr<Tree, SatCommonUtils::TPtrDelete<Tree>>;
  using OwnedField = std::unique_ptr<Field, SatCommonUtils::TPtrDelete<Field>>;
  std::size_t position = 0;
  const OwnedTree fromText(tree.CreateSubtree("(1,2)x\n(3,4)[1]y\tz\n\n", &position));
  EXPECT_EQ(Describe(*fromText), "S(1,2)1:x{S(3,4)1:y[1:z;]}");
  EXPECT_EQ(fromText->parent, &tree);
  position = 0;
  const OwnedField fieldFromText(tree.CreateField("(3,4)[1]y\tz\n", &position));
  EXPECT_EQ(DescribeField(*fieldFromText), "S(3,4)1:y[1:z;]");
  TKvXIniReader reader(StreamPointer(
      new TKvMemoryStream(Document("<tag>1</tag><idx>2</idx><hdr>x</hdr><data><_>a</_></data>"))));
  const OwnedTree fromXml(tree.CreateSubtree(&reader, 0));
  EXPECT_EQ(Describe(*fromXml), "S(1,2)1:x{}");
  EXPECT_EQ(fromXml->parent, &tree);
  const OwnedField fieldFromXml(tree.CreateField(&reader, 0));
  EXPECT_EQ(DescribeField(*fieldFromXml), "S(1,2)1:x[1:a;]");
}

TEST(StringTreeTest, AnIntegerIsFoundAgainAsIntegerDoubleAndString) {
  TStringTree tree(0, 0, nullptr, "");
  EXPECT_TRUE(tree.InsertInteger("Rows", 10, 0, 512));
  int integer = 0;
  double number = 0;
  std::string text;
  EXPECT_TRUE(tree.GetInteger(10, 0, &integer));
  EXPECT_TRUE(tree.GetDouble(10, 0, &number));
  EXPECT_TRUE(tree.GetString(10, 0, &text));
  EXPECT_EQ(integer, 512);
  EXPECT_EQ(number, 512.0);
  EXPECT_EQ(text, "512");
  EXPECT_EQ(Describe(tree), "S(0,0)0:{S(10,0)4:Rows[3:512;]}");
}

TEST(StringTreeTest, IntegersOfAllSizesAreStored) {
  for (const int value : {0, -1, INT_MIN, INT_MAX}) {
    TStringTree tree(0, 0, nullptr, "");
    EXPECT_TRUE(tree.InsertInteger("", 1, 0, value));
    EXPECT_EQ(tree.fields[0]->values[0], std::to_string(value));
    int found = 1;
    EXPECT_TRUE(tree.GetInteger(1, 0, &found));
    EXPECT_EQ(found, value);
  }
}

TEST(StringTreeTest, DoublesAreStoredWithSixteenDigits) {
  TStringTree tree(0, 0, nullptr, "");
  EXPECT_TRUE(tree.InsertDouble("", 1, 0, 0.1));
  EXPECT_TRUE(tree.InsertDouble("", 2, 0, 1.0 / 3.0));
  EXPECT_TRUE(tree.InsertDouble("", 3, 0, 1e300));
  EXPECT_TRUE(tree.InsertDouble("", 4, 0, -0.0));
  EXPECT_TRUE(tree.InsertDouble("", 5, 0, std::numeric_limits<double>::infinity()));
  EXPECT_EQ(Describe(tree),
            "S(0,0)0:{S(1,0)0:[3:0.1;]S(2,0)0:[18:0.3333333333333333;]S(3,0)0:[6:1e+300;]"
            "S(4,0)0:[2:-0;]S(5,0)0:[3:inf;]}");
}

TEST(StringTreeTest, StringsAreStoredAsTheyAre) {
  TStringTree tree(0, 0, nullptr, "");
  const std::string value("a\tb\n\\t\0c", 8);
  EXPECT_TRUE(tree.InsertString("x", 1, 0, value));
  std::string found;
  EXPECT_TRUE(tree.GetString(1, 0, &found));
  EXPECT_EQ(found, value);
}

TEST(StringTreeTest, AnInserterWhoseKeyIsTakenChangesNothing) {
  TStringTree tree(0, 0, nullptr, "");
  tree.InsertString("x", 1, 0, "first");
  EXPECT_FALSE(tree.InsertInteger("y", 1, 0, 2));
  EXPECT_FALSE(tree.InsertDouble("y", 1, 0, 2));
  EXPECT_FALSE(tree.InsertString("y", 1, 0, "second"));
  EXPECT_EQ(Describe(tree), "S(0,0)0:{S(1,0)1:x[5:first;]}");
}

TEST(StringTreeTest, AGetterReadsALeadingNumberBehindBlanks) {
  TStringTree tree(0, 0, nullptr, "");
  tree.InsertString("", 1, 0, " \t\n12abc");
  tree.InsertString("", 2, 0, "-1.5e2kg");
  int integer = 0;
  double number = 0;
  EXPECT_TRUE(tree.GetInteger(1, 0, &integer));
  EXPECT_EQ(integer, 12);
  EXPECT_TRUE(tree.GetDouble(2, 0, &number));
  EXPECT_EQ(number, -150.0);
  EXPECT_TRUE(tree.GetInteger(2, 0, &integer));
  EXPECT_EQ(integer, -1);
}

TEST(StringTreeTest, AnIntegerThatIsNoneIsRecordedWithItsText) {
  TStringTree tree(0, 0, nullptr, "");
  tree.InsertString("x", 7, 0, "abc");
  int value = 99;
  EXPECT_FALSE(tree.GetInteger(7, 0, &value));
  EXPECT_EQ(value, 99);
  EXPECT_EQ(Describe(tree),
            "S(0,0)0:{S(7,0)1:x[3:abc;]S(7,-1)25:Get integer ERROR (tag=7)[3:abc;]}");
}

TEST(StringTreeTest, ADoubleThatIsNoneIsRecordedWithItsText) {
  TStringTree tree(0, 0, nullptr, "");
  tree.InsertString("x", 7, 0, "abc");
  double value = 99;
  EXPECT_FALSE(tree.GetDouble(7, 0, &value));
  EXPECT_EQ(value, 99);
  EXPECT_EQ(Describe(tree),
            "S(0,0)0:{S(7,0)1:x[3:abc;]S(7,-1)24:Get double ERROR (tag=7)[3:abc;]}");
}

TEST(StringTreeTest, BlanksAloneAreNoNumber) {
  TStringTree tree(0, 0, nullptr, "");
  tree.InsertString("x", 7, 0, " ");
  tree.InsertString("x", 8, 0, "");
  int integer = 0;
  double number = 0;
  EXPECT_FALSE(tree.GetInteger(7, 0, &integer));
  EXPECT_FALSE(tree.GetDouble(8, 0, &number));
  EXPECT_EQ(tree.fields.size(), 4u);
}

TEST(StringTreeTest, AMissingNumberIsRecordedWithAnEmptyText) {
  TStringTree tree(0, 0, nullptr, "");
  int integer = 99;
  double number = 99;
  EXPECT_FALSE(tree.GetInteger(7, 0, &integer));
  EXPECT_FALSE(tree.GetDouble(-8, 0, &number));
  EXPECT_EQ(Describe(tree),
            "S(0,0)0:{S(7,-1)25:Get integer ERROR (tag=7)[0:;]"
            "S(-8,-1)25:Get double ERROR (tag=-8)[0:;]}");
}

TEST(StringTreeTest, AMissingStringIsRecordedWithTheCallersValue) {
  TStringTree tree(0, 0, nullptr, "");
  std::string value = "as it was";
  EXPECT_FALSE(tree.GetString(7, 0, &value));
  EXPECT_EQ(value, "as it was");
  EXPECT_EQ(Describe(tree), "S(0,0)0:{S(7,-1)24:Get string ERROR (tag=7)[9:as it was;]}");
}

TEST(StringTreeTest, TheLongestTagFitsItsMessage) {
  TStringTree tree(0, 0, nullptr, "");
  int value = 0;
  tree.GetInteger(INT_MIN, 0, &value);
  EXPECT_EQ(tree.fields[0]->header, "Get integer ERROR (tag=-2147483648)");
}

TEST(StringTreeTest, TwoFailuresOfATagAddOneErrorField) {
  TStringTree tree(0, 0, nullptr, "");
  std::string value = "first";
  EXPECT_FALSE(tree.GetString(7, 0, &value));
  value = "second";
  EXPECT_FALSE(tree.GetString(7, 0, &value));
  EXPECT_FALSE(tree.GetString(7, 1, &value));
  int integer = 0;
  EXPECT_FALSE(tree.GetInteger(7, 0, &integer));
  EXPECT_EQ(Describe(tree), "S(0,0)0:{S(7,-1)24:Get string ERROR (tag=7)[5:first;]}");
}

TEST(StringTreeTest, AFieldWithTwoValuesIsLikeAMissingOne) {
  TStringTree tree(0, 0, nullptr, "");
  std::string values[] = {"1", "2"};
  tree.InsertField("x", 7, 0, values, 2);
  int integer = 99;
  EXPECT_FALSE(tree.GetInteger(7, 0, &integer));
  EXPECT_EQ(integer, 99);
  EXPECT_EQ(tree.fields[1]->values[0], "");
  std::string text = "mine";
  EXPECT_FALSE(tree.GetString(7, 0, &text));
  EXPECT_EQ(text, "mine");
}

TEST(StringTreeTest, AFieldWithoutValuesIsLikeAMissingOne) {
  TStringTree tree(0, 0, nullptr, "");
  tree.InsertField("x", 7, 0, nullptr, 0);
  std::string text = "mine";
  EXPECT_FALSE(tree.GetString(7, 0, &text));
  EXPECT_EQ(text, "mine");
}

TEST(StringTreeTest, TheFirstFieldOfAKeyIsTakenWhateverItHolds) {
  TStringTree tree(0, 0, nullptr, "");
  tree.ReadFromString("(0,0)\n(7,0)[2]x\t1\t2\n(7,0)[1]y\t3\n\n", nullptr, nullptr);
  int integer = 99;
  EXPECT_FALSE(tree.GetInteger(7, 0, &integer));
  EXPECT_EQ(integer, 99);
}

TEST(StringTreeTest, GettersDoNotLookIntoSubtrees) {
  TStringTree tree(0, 0, nullptr, "");
  tree.InsertSubtree("x", 1, 0);
  tree.subtrees[0]->InsertField("y", 7, 0, std::string("1"));
  int integer = 99;
  EXPECT_FALSE(tree.GetInteger(7, 0, &integer));
}

TEST(StringTreeTest, ErrorFieldsAreReadLikeOthersButNeverWritten) {
  TStringTree tree(0, 0, nullptr, "");
  std::string text = "mine";
  EXPECT_FALSE(tree.GetString(7, 0, &text));
  std::string recorded;
  EXPECT_TRUE(tree.GetString(7, -1, &recorded));
  EXPECT_EQ(recorded, "mine");
  EXPECT_EQ(WriteTreeToString(tree), "(0,0)\n\n");
  EXPECT_EQ(ToXml(tree).find("ERROR"), std::string::npos);
}

const char* const kText = "(5,7)Orbit\n(1,0)[1]a\tx\n(2,0)[2]b\ty\tz\n\t(3,0)Inner\n\n\n";

TEST(StringTreeTest, InsertFromStringDropsTheRootLineAndKeepsTheRest) {
  TStringTree tree(8, 9, nullptr, "mine");
  EXPECT_TRUE(InsertFromString(kText, &tree));
  EXPECT_EQ(Describe(tree), "S(8,9)4:mine{S(1,0)1:a[1:x;]S(2,0)1:b[1:y;1:z;]S(3,0)5:Inner{}}");
}

TEST(StringTreeTest, InsertFromStringEndsAtAKeyThatIsTaken) {
  TStringTree tree(0, 0, nullptr, "");
  tree.InsertString("old", 2, 0, "old");
  EXPECT_FALSE(InsertFromString(kText, &tree));
  EXPECT_EQ(Describe(tree), "S(0,0)0:{S(2,0)3:old[3:old;]S(1,0)1:a[1:x;]}");
}

TEST(StringTreeTest, InsertFromStringGivesFalseForACountThatTheTextCannotHold) {
  TStringTree tree(0, 0, nullptr, "");
  EXPECT_FALSE(InsertFromString("(0,0)\n(1,0)[1]a\tb\n(2,0)[99]c\td\n\n", &tree));
  EXPECT_EQ(Describe(tree), "S(0,0)0:{}");
}

TEST(StringTreeTest, InsertFromStringTakesCutAndEmptyTexts) {
  TStringTree tree(0, 0, nullptr, "");
  EXPECT_TRUE(InsertFromString("", &tree));
  EXPECT_EQ(Describe(tree), "S(0,0)0:{}");
  EXPECT_TRUE(InsertFromString("(0,0)\n(1,0)[1]a\tb", &tree));
  EXPECT_EQ(Describe(tree), "S(0,0)0:{S(1,0)1:a[1:b;]}");
}

TEST(StringTreeTest, InsertFromStringEndsAtANulInTheText) {
  TStringTree tree(0, 0, nullptr, "");
  EXPECT_TRUE(InsertFromString(std::string("(0,0)\n(1,0)[1]a\tb\0c\n(2,0)[1]d\te\n\n", 33), &tree));
  EXPECT_EQ(Describe(tree), "S(0,0)0:{S(1,0)1:a[1:b;]}");
}

}  // namespace
