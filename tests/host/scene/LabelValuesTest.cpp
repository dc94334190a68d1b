#include "host/scene/LabelValues.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/scene/support/Scopes.h"
#include "host/support/ErrorOf.h"
#include "host/xml/XmlConversion.h"

namespace {

using namespace ravelin;
using testing::ElementsAre;
using testing::HasSubstr;

std::vector<LabelGroup> ValuesOf(const std::string& text) {
  return ReadLabelValues(NasaPvlXml(text, "x.lbl"), "x.lbl");
}

/// Every value as PATH=TEXT.
std::vector<std::string> Listed(const std::vector<LabelGroup>& groups) {
  std::vector<std::string> list;
  for (const LabelGroup& group : groups) {
    for (const LabelValue& value : group.values) {
      list.push_back(group.Path(value) + "=" + value.text);
    }
  }
  return list;
}

TEST(LabelValues, ListGroupsAndValuesInTheirOrder) {
  EXPECT_THAT(Listed(ValuesOf("Z = 0\nGROUP = A\nB = 1\nGROUP = C\nD = \"two words\"\n"
                              "END_GROUP = C\nE = (1, 2)\nEND_GROUP = A\nGROUP = F\nG = 3\n"
                              "END_GROUP = F\n")),
              ElementsAre("Z=0", "A/B=1", "A/E=1,2", "A/C/D=two words", "F/G=3"));
}

TEST(LabelValues, KeepValuesOfOneName) {
  EXPECT_THAT(Listed(ValuesOf("A = 1\nA = 2\n")), ElementsAre("A=1", "A=2"));
}

TEST(LabelValues, ReadNamesThatXmlDoesNotHave) {
  EXPECT_THAT(Listed(ReadLabelValues("<xini><_ _name=\"two words\">1</_><_>2</_></xini>", "x.lbl")),
              ElementsAre("two words=1"));
}

TEST(LabelValues, LeaveOutWhatIsNotText) {
  EXPECT_THAT(Listed(ValuesOf("A = \x01\nB = 2\n")), ElementsAre("B=2"));
}

TEST(LabelValues, RefuseWhatIsNoXml) {
  EXPECT_THAT(ErrorOf([] { ReadLabelValues("<a>", "x.lbl"); }),
              HasSubstr("x.lbl: its XML cannot be read back"));
}

TEST(LabelValues, RefuseGroupsWithoutEnd) {
  std::string text;
  for (int depth = 0; depth < 100; ++depth) text += "GROUP = A\nB = 1\n";
  EXPECT_EQ(ValuesOf(text).size(), 101u);
  EXPECT_THAT(ErrorOf([&] { ValuesOf(text + "GROUP = A\nB = 1\n"); }),
              HasSubstr("groups lie more than 100 deep"));
}

TEST(LabelNumber, StandsBeforeAUnit) {
  const std::vector<LabelGroup> groups = ValuesOf("A = 12.5 <m>\nB = x\nC = -1E2\nD = inf\n");
  const LabelGroup& group = groups.front();
  EXPECT_EQ(LabelNumber(group, group.values[0]), 12.5);
  EXPECT_EQ(LabelNumber(group, group.values[1]), std::nullopt);
  EXPECT_EQ(LabelNumber(group, group.values[2]), -100);
  EXPECT_EQ(LabelNumber(group, group.values[3]), std::nullopt);
}

TEST(LabelText, IsThatOfTheFirstValueOfTheName) {
  const std::vector<LabelGroup> groups = ValuesOf("A = one\nA = two\n");
  EXPECT_EQ(LabelText(groups.front(), groups.front().values[1]), "one");
}

}  // namespace
