#include "bench/metadata/Labels.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace RavelinBench {
namespace {

std::string Repeated(int bytes, const std::string& piece) {
  std::string text;
  while (text.size() < static_cast<std::size_t>(bytes)) text += piece;
  return text;
}

std::filesystem::path DataFolder() {
  const char* const named = std::getenv("RAVELIN_TEST_DATA");
  return named != nullptr ? named : RAVELIN_TEST_DATA_DIR;
}

}  // namespace

std::string Statements(TDialect dialect, int count) {
  const bool nasa = dialect == TDialect::kNasa;
  const std::string opening = nasa ? "GROUP = GROUP_" : "BEGIN_GROUP = GROUP_";
  const std::string ending = nasa ? "\n" : ";\n";
  std::string text;
  for (int i = 0; i < count; ++i) {
    const std::string group = std::to_string(i / 100);
    if (i % 100 == 0) text.append(opening).append(group).append(ending);
    text.append("  PARAMETER_").append(std::to_string(i)).append(" = \"value of ");
    text.append(std::to_string(7 * i)).append("\"").append(ending);
    if (i % 100 == 99 || i + 1 == count)
      text.append("END_GROUP = GROUP_").append(group).append(ending);
  }
  return text + "END" + ending;
}

std::vector<TText> HostileLabels(int bytes) {
  return {{"open_quotes", Repeated(bytes, "a = \"b;\n")},
          {"quoted_ends", Repeated(bytes, "a=\";\"\n")},
          {"far_equals_sign", Repeated(bytes, "a\n") + "= 1;\n"},
          {"vertical_tabs", Repeated(bytes, "\v\n") + "a = 1\n"},
          {"mixture", Repeated(bytes, "a\na\nb = \"\\\n\vc = (\n= 3\n\"\nBEGIN_GROUP = x\n")}};
}

std::string Sections(int bytes) {
  std::string text = "COMPD_CS[\"all\",GEOGCS[\"one\"";
  for (int i = 0; text.size() < static_cast<std::size_t>(bytes); ++i) {
    text += ",AXIS[\"Easting " + std::to_string(i) + "\",EAST]";
  }
  return text + "]]";
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
