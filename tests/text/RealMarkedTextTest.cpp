// Reads real texts in several encodings, where they are at hand, and compares what was read with
// the facts about them.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "SatCommonUtils/Text.h"
#include "support/RealData.h"

namespace {

using ravelin_test::BytesOfFile;
using ravelin_test::DataFolder;
using SatCommonUtils::PseudoUTF16toUTF8BOM;
using SatCommonUtils::ReadBOM;

/// What is known about a file.
struct Fact {
  std::string file;
  std::string source;      ///< the text that it was made from
  std::string characters;  ///< how many it has, the mark not counted; may be unknown

  bool Is(const std::string& encoding) const {
    return file.find("." + encoding) != std::string::npos &&
           file.find("_nobom") == std::string::npos;
  }
};

class RealMarkedText : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::is_directory(DataFolder() + "/bom")) {
      GTEST_SKIP() << "no real texts in " << DataFolder()
                   << "; RAVELIN_TEST_DATA names another folder";
    }
    std::ifstream table(DataFolder() + "/bom/facts.csv");
    std::string line;
    std::getline(table, line);
    while (std::getline(table, line)) facts_.push_back(FactOf(line));
    ASSERT_GT(facts_.size(), 0u);
  }

  std::vector<Fact> facts_;

 private:
  static Fact FactOf(const std::string& line) {
    std::istringstream fields(line);
    Fact fact;
    std::string bytes;
    std::string first;
    std::string what;
    std::getline(fields, fact.file, ',');
    std::getline(fields, bytes, ',');
    std::getline(fields, first, ',');
    std::getline(fields, what, ',');
    std::getline(fields, fact.characters, ',');
    fact.source = what.substr(0, what.find_first_of(" :"));
    return fact;
  }
};

TEST_F(RealMarkedText, TheMarkIsThatOfTheEncoding) {
  const std::map<std::string, int> marks = {
      {"utf8_", 1}, {"utf16be_", 2}, {"utf16le_", 3}, {"utf32be_", 4}, {"utf32le_", 5}};
  unsigned long compared = 0;
  for (const Fact& fact : facts_) {
    TKvFileStream stream(TKvPath(DataFolder() + "/" + fact.file), kvOpenRead, kvShareAll);
    for (const auto& [encoding, mark] : marks) {
      if (!fact.Is(encoding)) continue;
      EXPECT_EQ(ReadBOM(&stream), mark) << fact.file;
      ++compared;
    }
  }
  EXPECT_GE(compared, 5u);
}

TEST_F(RealMarkedText, ATextWithoutAMarkHasNone) {
  for (const char* name :
       {"empty.txt", "only_one_byte.txt", "M103595705LE_pds3.utf16le_nobom.txt"}) {
    TKvFileStream stream(TKvPath(DataFolder() + "/bom/" + name), kvOpenRead, kvShareAll);
    EXPECT_EQ(ReadBOM(&stream), 0) << name;
    EXPECT_EQ(PseudoUTF16toUTF8BOM(&stream), "") << name;
  }
}

TEST_F(RealMarkedText, Utf16GivesAByteACharacter) {
  unsigned long compared = 0;
  for (const Fact& fact : facts_) {
    if (!fact.Is("utf16")) continue;
    TKvFileStream stream(TKvPath(DataFolder() + "/" + fact.file), kvOpenRead, kvShareAll);
    EXPECT_EQ(std::to_string(PseudoUTF16toUTF8BOM(&stream).size()), fact.characters) << fact.file;
    ++compared;
  }
  EXPECT_GE(compared, 2u);
}

TEST_F(RealMarkedText, Utf16GivesTheTextThatItWasMadeFrom) {
  unsigned long compared = 0;
  for (const Fact& fact : facts_) {
    if (!fact.Is("utf16")) continue;
    const std::string source = BytesOfFile(DataFolder() + "/" + fact.source);
    TKvFileStream stream(TKvPath(DataFolder() + "/" + fact.file), kvOpenRead, kvShareAll);
    const std::string text = PseudoUTF16toUTF8BOM(&stream);
    EXPECT_EQ(text, source.substr(0, text.size())) << fact.file;
    ++compared;
  }
  EXPECT_GE(compared, 2u);
}

}  // namespace
