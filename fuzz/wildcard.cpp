// Any mask and names, a line each: the searches of a list agree with each other and with what masks
// mean.
#include <string>
#include <string_view>
#include <vector>

#include "SatCommonUtils/Files.h"
#include "fuzz/FuzzInput.h"
#include "tests/files/WildcardModel.h"

namespace {

using SatCommonUtils::TFilenamesList;

std::vector<std::string> Lines(std::string_view text) {
  std::vector<std::string> lines(1);
  for (const char c : text) {
    if (c == '\n') {
      lines.emplace_back();
    } else {
      lines.back() += c;
    }
  }
  return lines;
}

/// The names that a walk with FindFirst and FindNext visits.
std::vector<std::string> Walk(const TFilenamesList& list, const std::string& mask) {
  std::vector<std::string> names;
  std::string name;
  for (bool found = list.FindFirst(mask); found; found = list.FindNext(mask)) {
    Require(list.GetCurrent(&name), "a search that finds leaves the cursor on a name");
    names.push_back(name);
  }
  Require(!list.GetCurrent(&name), "a search that finds nothing leaves the cursor at the end");
  return names;
}

void RemoveAll(TFilenamesList list, const std::string& mask, std::size_t count) {
  while (list.Remove(mask)) --count;
  Require(count == 0 && list.FindAll(mask, nullptr) == 0, "each match is removed once");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<std::string> lines =
      Lines(std::string_view(reinterpret_cast<const char*>(data), size));
  const std::string& mask = lines[0];
  TFilenamesList list;
  std::vector<std::string> expected;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    list.Insert(lines[i]);
    if (files_test::Matches(lines[i], mask)) expected.push_back(lines[i]);
  }
  std::vector<std::string> all;
  Require(list.FindAll(mask, &all) == expected.size() && all == expected, "the matches are found");
  Require(Walk(list, mask) == expected, "a walk visits every match once");
  std::string first;
  Require(list.Find(mask, &first) == !expected.empty(), "a match is found when there is one");
  Require(expected.empty() || first == expected[0], "the first match is found");
  RemoveAll(list, mask, expected.size());
  return 0;
}
