// Converts real WKT texts, where they are at hand, and compares the XML with what another program
// read in them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "Kv/XmlItem.h"
#include "SatCommonUtils/Metadata.h"
#include "support/RealData.h"

namespace {

using ravelin_test::BytesOfFile;
using ravelin_test::DataFolder;
using SatCommonUtils::WktSectionToXml;
using Record = ravelin_test::CsvRecord;

/// The section as the lists in which the other program gives it: name, then items and sections.
nlohmann::json Lists(const TKvXmlItem& section) {
  const TKvXmlElement& element = section.Element();
  nlohmann::json lists = {element.tag};
  for (unsigned long i = 0; i < element.items.size(); ++i) {
    const auto child = element.items[i];
    if (child->Element().tag == "VALUE") {
      lists.push_back(child->Element().items.get_text());
    } else {
      lists.push_back(Lists(*child));
    }
  }
  return lists;
}

/// What can be counted in the lines of the XML.
struct LineCounts {
  unsigned long sections = 0;
  unsigned long values = 0;
  unsigned long depth = 0;

  explicit LineCounts(const std::string& xml) {
    std::istringstream lines(xml.substr(xml.find('\n') + 1));
    for (std::string line; std::getline(lines, line);) Count(line);
  }

 private:
  void Count(const std::string& line) {
    const unsigned long indent = line.find('<');
    if (line.compare(indent, 7, "<VALUE>") == 0) {
      ++values;
    } else if (line[indent + 1] != '/') {
      ++sections;
      depth = std::max(depth, indent + 1);
    }
  }
};

class RealWktTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::is_directory(DataFolder() + "/wkt")) {
      GTEST_SKIP() << "no real texts in " << DataFolder()
                   << "; RAVELIN_TEST_DATA names another folder";
    }
    facts_ = ravelin_test::ReadCsv(DataFolder() + "/wkt/facts.csv");
    ASSERT_GT(facts_.size(), 0u);
  }

  static std::string Converted(const Record& fact) {
    std::string xml;
    EXPECT_TRUE(WktSectionToXml(BytesOfFile(DataFolder() + "/" + fact.at("file")), &xml));
    return xml;
  }

  std::vector<Record> facts_;
};

TEST_F(RealWktTest, EverySectionAndItemIsThereInOrder) {
  unsigned long compared = 0;
  for (const Record& fact : facts_) {
    SCOPED_TRACE(fact.at("file"));
    const std::filesystem::path path(DataFolder() + "/" + fact.at("file"));
    const std::string expected = path.parent_path() / "expected" / path.stem();
    if (!std::filesystem::exists(expected + ".json")) continue;
    std::string xml = Converted(fact);
    for (std::size_t at = 0; (at = xml.find('&', at)) != std::string::npos; ++at) {
      xml.replace(at, 1, "&amp;");  // the conversion does not escape it
    }
    EXPECT_EQ(Lists(*TKvXmlItem::Parse(xml)),
              nlohmann::json::parse(BytesOfFile(expected + ".json")));
    ++compared;
  }
  EXPECT_GT(compared, 0u);
}

TEST_F(RealWktTest, SectionsItemsAndDepthAreAsManyAsCounted) {
  for (const Record& fact : facts_) {
    SCOPED_TRACE(fact.at("file"));
    const LineCounts counts(Converted(fact));
    EXPECT_EQ(std::to_string(counts.sections), fact.at("sections"));
    EXPECT_EQ(std::to_string(counts.values), fact.at("values"));
    EXPECT_EQ(std::to_string(counts.depth), fact.at("depth"));
  }
}

TEST_F(RealWktTest, TheOutermostSectionAndItsNameComeFirst) {
  for (const Record& fact : facts_) {
    SCOPED_TRACE(fact.at("file"));
    const std::string mark = fact.at("bom") == "1" ? "\xEF\xBB\xBF" : "";
    const std::string begin = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n<" + mark +
                              fact.at("outer") + ">\r\n\t<VALUE>\"" + fact.at("name") +
                              "\"</VALUE>\r\n";
    EXPECT_EQ(Converted(fact).substr(0, begin.size()), begin);
  }
}

TEST_F(RealWktTest, ATextWithoutAmpersandsGivesXmlThatParses) {
  unsigned long parsed = 0;
  for (const Record& fact : facts_) {
    if (fact.at("amp_in_text") != "0" || fact.at("bom") != "0") continue;
    SCOPED_TRACE(fact.at("file"));
    EXPECT_EQ(TKvXmlItem::Parse(Converted(fact))->Element().tag, fact.at("outer"));
    ++parsed;
  }
  EXPECT_GT(parsed, 0u);
}

}  // namespace
