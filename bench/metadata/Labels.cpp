#include "bench/metadata/Labels.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace RavelinBench {
namespace {

std::string MakeStatements() {
  std::string text;
  for (int i = 0; i < kManyStatements; ++i) {
    if (i % 100 == 0) text += "GROUP = GROUP_" + std::to_string(i / 100) + "\n";
    text += "  PARAMETER_" + std::to_string(i) + " = \"value of " + std::to_string(7 * i) + "\"\n";
    if (i % 100 == 99) text += "END_GROUP = GROUP_" + std::to_string(i / 100) + "\n";
  }
  return text + "END\n";
}

std::string MakeSections() {
  std::string text = "COMPD_CS[\"all\",GEOGCS[\"one\"";
  for (int i = 0; text.size() < 1000000; ++i) {
    text += ",AXIS[\"Easting " + std::to_string(i) + "\",EAST]";
  }
  return text + "]]";
}

std::filesystem::path DataFolder() {
  const char* const named = std::getenv("RAVELIN_TEST_DATA");
  return named != nullptr ? named : RAVELIN_TEST_DATA_DIR;
}

}  // namespace

const std::string& ManyStatements() {
  static const std::string text = MakeStatements();
  return text;
}

const std::string& ManySections() {
  static const std::string text = MakeSections();
  return text;
}

std::vector<TText> RealTexts(const std::string& folder) {
  std::vector<TText> texts;
  const std::filesystem::path path = DataFolder() / folder;
  if (!std::filesystem::is_directory(path)) return texts;
  for (const auto& entry : std::filesystem::directory_iterator(path)) {
    if (entry.path().extension() != ".txt") continue;
    std::ifstream file(entry.path(), std::ios::binary);
    texts.push_back({entry.path().stem().string(), {std::istreambuf_iterator<char>(file), {}}});
  }
  std::sort(texts.begin(), texts.end(),
            [](const TText& a, const TText& b) { return a.name < b.name; });
  return texts;
}

}  // namespace RavelinBench
