// Converts the labels of real products, where they are at hand.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "Kv/XmlItem.h"
#include "metadata/PvlTest.h"
#include "support/RealData.h"

namespace metadata_test {
namespace {

namespace fs = std::filesystem;
using ravelin_test::BytesOfFile;

fs::path DataFolder() {
  return ravelin_test::DataFolder();
}

std::vector<fs::path> FilesIn(const fs::path& folder) {
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

/// One value of a document: the names of its sections, its own name, the value.
struct Value {
  std::string path, name, text;
  bool operator==(const Value&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Value& value) {
  return out << value.path << ' ' << value.name << ' ' << testing::PrintToString(value.text);
}

struct Contents {
  std::vector<Value> values;
  unsigned long sections = 0;
};

void Collect(const TKvXmlElement& element, const std::string& path, Contents* contents) {
  for (unsigned long i = 0; i < element.items.size(); ++i) {
    const auto child = element.items[i];
    const TKvXmlElement& inner = child->Element();
    const std::string name = inner.attributes.get_value("_name", inner.tag);
    if (inner.items.size() == 0) {
      contents->values.push_back({path, name, inner.items.get_text()});
    } else {
      ++contents->sections;
      Collect(inner, path.empty() ? name : path + "/" + name, contents);
    }
  }
}

Contents ReadDocument(const std::string& xml) {
  Contents contents;
  Collect(TKvXmlItem::Parse(xml)->Element(), "", &contents);
  return contents;
}

/// Resolves \\, \t, \n and \r.
std::string Unescaped(const std::string& text) {
  const std::map<char, char> meanings = {{'t', '\t'}, {'n', '\n'}, {'r', '\r'}, {'\\', '\\'}};
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    plain += text[i] == '\\' ? meanings.at(text.at(++i)) : text[i];
  }
  return plain;
}

std::vector<Value> ReadExpectedValues(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::vector<Value> values;
  for (std::string line; std::getline(file, line);) {
    std::stringstream fields(line);
    Value value;
    std::getline(fields, value.path, '\t');
    std::getline(fields, value.name, '\t');
    std::getline(fields, value.text);
    value.text = Unescaped(value.text);
    values.push_back(value);
  }
  return values;
}

/// The rows of facts.csv by their file, each a field by its column.
std::map<std::string, std::map<std::string, std::string>> ReadFacts(const fs::path& path) {
  std::ifstream file(path);
  const auto fields = [](const std::string& line) {
    std::stringstream row(line);
    std::vector<std::string> all;
    for (std::string field; std::getline(row, field, ',');) all.push_back(field);
    return all;
  };
  std::string line;
  std::getline(file, line);
  const std::vector<std::string> columns = fields(line);
  std::map<std::string, std::map<std::string, std::string>> facts;
  while (std::getline(file, line)) {
    const std::vector<std::string> row = fields(line);
    for (std::size_t i = 0; i < columns.size(); ++i) facts[row.at(0)][columns[i]] = row.at(i);
  }
  return facts;
}

class RealLabel : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!fs::exists(DataFolder() / "pvl")) {
      GTEST_SKIP() << "no real labels in " << DataFolder()
                   << "; RAVELIN_TEST_DATA names another folder";
    }
  }
  static fs::path Folder(Dialect dialect) {
    return DataFolder() / "pvl" / (dialect == Dialect::kNasa ? "nasa" : "general");
  }
};

TEST_F(RealLabel, IsConvertedAsTheModelDoes) {
  for (const Dialect dialect : {Dialect::kGeneral, Dialect::kNasa}) {
    for (const fs::path& path : FilesIn(Folder(dialect))) {
      const std::string text = BytesOfFile(path);
      EXPECT_EQ(ConvertText(dialect, text), ExpectedOutcome(dialect, text)) << path;
    }
  }
}

TEST_F(RealLabel, IsConvertedByTheOtherDialectAsTheModelDoes) {
  for (const fs::path& path : FilesIn(DataFolder() / "pvl")) {
    const std::string text = BytesOfFile(path);
    for (const Dialect dialect : {Dialect::kGeneral, Dialect::kNasa}) {
      EXPECT_EQ(ConvertText(dialect, text), ExpectedOutcome(dialect, text)) << path;
    }
  }
}

TEST_F(RealLabel, GivesTheSameFromAFileAsFromMemory) {
  for (const Dialect dialect : {Dialect::kGeneral, Dialect::kNasa}) {
    for (const fs::path& path : FilesIn(Folder(dialect))) {
      const StreamPointer in(new TKvFileStream(TKvPath(path.string()), kvOpenRead, kvShareAll));
      EXPECT_EQ(ConvertStream(dialect, in), ConvertText(dialect, BytesOfFile(path))) << path;
    }
  }
}

/// Converts the labels of one folder and gives those that fail, by their names.
std::set<std::string> Failing(const fs::path& folder, Dialect dialect) {
  std::set<std::string> failing;
  for (const fs::path& path : FilesIn(folder)) {
    if (!ConvertText(dialect, BytesOfFile(path)).result) failing.insert(path.filename().string());
  }
  return failing;
}

TEST_F(RealLabel, OfTheGeneralDialectConverts) {
  EXPECT_THAT(Failing(Folder(Dialect::kGeneral), Dialect::kGeneral), testing::IsEmpty());
}

TEST_F(RealLabel, OfTheNasaDialectConverts) {
  EXPECT_THAT(Failing(Folder(Dialect::kNasa), Dialect::kNasa), testing::IsEmpty());
}

/// A label for which all values are known.
struct KnownLabel {
  fs::path path;
  fs::path expected;
  Dialect dialect;
};

std::vector<KnownLabel> KnownLabels() {
  std::vector<KnownLabel> labels;
  for (const auto& [name, row] : ReadFacts(DataFolder() / "pvl/facts.csv")) {
    const fs::path path = DataFolder() / name;
    const fs::path expected = DataFolder() / "pvl/expected" / (path.filename().string() + ".tsv");
    if (!fs::exists(expected)) continue;
    labels.push_back(
        {path, expected, row.at("dialect") == "NASA" ? Dialect::kNasa : Dialect::kGeneral});
  }
  return labels;
}

TEST_F(RealLabel, HasAllItsValuesAndSections) {
  const auto facts = ReadFacts(DataFolder() / "pvl/facts.csv");
  const std::vector<KnownLabel> labels = KnownLabels();
  EXPECT_GE(labels.size(), 18u);
  for (const auto& [path, expected, dialect] : labels) {
    const Outcome outcome = ConvertText(dialect, BytesOfFile(path));
    EXPECT_TRUE(outcome.result) << path;
    const Contents contents = ReadDocument(outcome.xml);
    EXPECT_EQ(contents.values, ReadExpectedValues(expected)) << path;
    const auto& row = facts.at(fs::relative(path, DataFolder()).generic_string());
    const std::string keyword = dialect == Dialect::kNasa ? "GROUP" : "BEGIN_GROUP";
    EXPECT_EQ(std::to_string(contents.sections), row.at(keyword)) << path;
  }
}

}  // namespace
}  // namespace metadata_test
