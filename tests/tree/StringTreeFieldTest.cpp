#include <gtest/gtest.h>

#include <string>

#include "tree/TreeTest.h"

namespace {

using namespace tree_test;

TEST(StringTreeFieldTest, AValueIsEscapedInText) {
  const TStringTreeField field(1, 0, std::string("a\tb\n"), "");
  char buffer[] = "#########";
  EXPECT_EQ(field.ValueToString(0, buffer, 1), 6u);
  EXPECT_STREQ(buffer, "#a\\tb\\n##");
}

TEST(StringTreeFieldTest, MeasuringAValueGivesItsEscapedLength) {
  EXPECT_EQ(TStringTreeField(1, 0, std::string("a\tb\n"), "").ValueToString(0, nullptr, 7), 6u);
}

TEST(StringTreeFieldTest, AValueAsAStringIsNotEscaped) {
  EXPECT_EQ(TStringTreeField(1, 0, std::string("a\tb\n"), "").ValueToString(0), "a\tb\n");
}

TEST(StringTreeFieldTest, APieceOfTextIsUnescaped) {
  TStringTreeField field(1, 0, std::string("old"), "");
  EXPECT_TRUE(field.StringToValue("a\\tb\\q and more", 6, 0));
  EXPECT_EQ(field.values[0], "a\tb\\q");
}

TEST(StringTreeFieldTest, APieceOfTheValueItselfIsUnescaped) {
  TStringTreeField field(1, 0, std::string("abc\\tdef"), "");
  EXPECT_TRUE(field.StringToValue(field.values[0].data() + 2, 4, 0));
  EXPECT_EQ(field.values[0], "c\td");
  EXPECT_TRUE(field.StringToValue(field.values[0], 0));
  EXPECT_EQ(field.values[0], "c\td");
}

TEST(StringTreeFieldTest, AStringIsTakenAsItIs) {
  TStringTreeField field(1, 0, std::string("old"), "");
  EXPECT_TRUE(field.StringToValue(std::string("a\\tb"), 0));
  EXPECT_EQ(field.values[0], "a\\tb");
}

TEST(StringTreeFieldTest, ABackslashAtTheEndOfAValueIsLostInText) {
  TStringTreeField field(1, 0, std::string("old"), "");
  EXPECT_TRUE(field.StringToValue("a\\", 2, 0));
  EXPECT_EQ(field.values[0], "a");
}

TEST(StringTreeFieldTest, AValueThatIsNotThereIsEmptyAndNotSet) {
  TStringTreeField field(1, 0, std::string("only"), "");
  EXPECT_EQ(field.ValueToString(1), "");
  EXPECT_EQ(field.ValueToString(1, nullptr, 0), 0u);
  EXPECT_FALSE(field.StringToValue("x", 1, 1));
  EXPECT_FALSE(field.StringToValue(std::string("x"), ~0UL));
  EXPECT_EQ(DescribeField(field), "S(1,0)0:[4:only;]");
}

}  // namespace
