// Real inputs and the facts about them, where they are at hand. A test program that uses this
// defines RAVELIN_TEST_DATA_DIR, the folder beside the checkout.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

namespace ravelin_test {

/// Where real inputs lie: the folder that RAVELIN_TEST_DATA names, else the one beside the
/// checkout.
inline std::string DataFolder() {
  const char* named = std::getenv("RAVELIN_TEST_DATA");
  return named != nullptr ? named : RAVELIN_TEST_DATA_DIR;
}

/// The bytes of a file that must be there.
inline std::string BytesOfFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file) << path;
  return std::string(std::istreambuf_iterator<char>(file), {});
}

/// The fields of a line of comma-separated values, which may be in quotes.
inline std::vector<std::string> CsvFields(const std::string& line) {
  std::vector<std::string> fields(1);
  bool isQuoted = false;
  for (const char c : line) {
    if (c == '"') {
      isQuoted = !isQuoted;
    } else if (c == ',' && !isQuoted) {
      fields.emplace_back();
    } else if (c != '\r') {
      fields.back() += c;
    }
  }
  return fields;
}

/// The values of a line by the names in the first line.
using CsvRecord = std::map<std::string, std::string>;

/// The lines of a table of comma-separated values, each with as many fields as the first.
inline std::vector<CsvRecord> ReadCsv(const std::string& path) {
  std::ifstream table(path);
  std::string line;
  std::getline(table, line);
  const std::vector<std::string> keys = CsvFields(line);
  std::vector<CsvRecord> records;
  while (std::getline(table, line)) {
    const std::vector<std::string> fields = CsvFields(line);
    EXPECT_EQ(fields.size(), keys.size()) << line;
    CsvRecord& record = records.emplace_back();
    for (std::size_t i = 0; i < keys.size() && i < fields.size(); ++i) record[keys[i]] = fields[i];
  }
  return records;
}

}  // namespace ravelin_test
