#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "XIniTest.h"

namespace kv_test {
namespace {

TEST(XIniWriter, FailsEveryWriteUnlessAClassDerives) {
  TKvXIniWriter writer;
  EXPECT_FALSE(writer.WriteS<std::string>("a", "b"));
  EXPECT_FALSE(writer.WriteS<int>("a", 1));
  EXPECT_FALSE(writer.WriteS<double>("a", 1));
  EXPECT_EQ(writer.BeginSectionS("a"), 0U);
  EXPECT_FALSE(writer.EndSection(0));
  EXPECT_THROW(writer.BeginSectionSE("a"), TKvError);
  EXPECT_THROW(writer.BeginSectionCompactSE("a"), TKvError);
  EXPECT_THROW(writer.ReportWriteError(), TKvError);
}

class RecordingWriter : public TKvXIniWriter {
 public:
  std::vector<std::pair<std::string, std::string>> items;
  std::vector<std::pair<std::string, bool>> sections;
  unsigned long nextSection = 5;
  int reports = 0;

  bool EndSection(unsigned long) override { return true; }
  void ReportWriteError() override { ++reports; }

 protected:
  bool WriteItemText(const std::string& name, std::string_view value) override {
    items.emplace_back(name, value);
    return true;
  }
  unsigned long OpenSection(const std::string& name, bool compact) override {
    sections.emplace_back(name, compact);
    return nextSection;
  }
};

TEST(XIniWriter, HandsEveryItemToTheDerivedClassAsText) {
  RecordingWriter writer;
  EXPECT_TRUE(writer.WriteS<std::string>("s", std::string("\0", 1)));
  EXPECT_TRUE(writer.WriteS<int>("i", -7));
  EXPECT_TRUE(writer.WriteS<double>("d", 0.1));
  EXPECT_THAT(writer.items, testing::ElementsAre(testing::Pair("s", std::string("\0", 1)),
                                                 testing::Pair("i", "-7"),
                                                 testing::Pair("d", "0.10000000000000001")));
}

TEST(XIniWriter, HandsEverySectionToTheDerivedClass) {
  RecordingWriter writer;
  EXPECT_EQ(writer.BeginSectionS("a"), 5U);
  EXPECT_EQ(writer.BeginSectionSE("b"), 5U);
  EXPECT_EQ(writer.BeginSectionCompactSE("c"), 5U);
  EXPECT_THAT(writer.sections,
              testing::ElementsAre(testing::Pair("a", false), testing::Pair("b", false),
                                   testing::Pair("c", true)));
}

TEST(XIniWriter, ThrowsForASectionThatFailsEvenWhenTheReportReturns) {
  RecordingWriter writer;
  writer.nextSection = 0;
  EXPECT_THROW(writer.BeginSectionSE("a"), TKvError);
  EXPECT_EQ(writer.reports, 1);
  EXPECT_EQ(writer.BeginSectionS("a"), 0U);
  EXPECT_EQ(writer.reports, 1);
}

}  // namespace
}  // namespace kv_test
