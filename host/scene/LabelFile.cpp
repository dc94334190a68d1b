#include "host/scene/LabelFile.h"

#include <algorithm>
#include <array>
#include <set>
#include <string_view>
#include <vector>

#include "Kv/Text.h"
#include "SatCommonUtils/Files.h"
#include "host/HostError.h"
#include "host/io/TextEncoding.h"
#include "host/io/TextInput.h"
#include "host/xml/XmlConversion.h"

namespace ravelin {
namespace {

constexpr unsigned long kLongestLabel = 16UL << 20;
constexpr std::size_t kMostNames = 10;  ///< of files, in one message

// Behind '#' stands what the name ends with.
constexpr std::array<const char*, 5> kMasks = {"#_mtl.txt", "#.lbl", "#.pvl", "#.met",
                                               "#label.txt"};
constexpr const char* kMaskText = "*_mtl.txt, *.lbl, *.pvl, *.met or *label.txt";

/// The words that open a group, with the dialect that each belongs to.
struct OpeningWord {
  std::string_view word;
  Dialect dialect;
};
constexpr std::array<OpeningWord, 4> kOpeningWords = {{
    {"GROUP", Dialect::kNasa},
    {"OBJECT", Dialect::kNasa},
    {"BEGIN_GROUP", Dialect::kPvl},
    {"BEGIN_OBJECT", Dialect::kPvl},
}};

std::set<std::string> LabelNames(const std::string& folder) {
  SatCommonUtils::TFilenamesList files;
  SatCommonUtils::FillFolderFilesList(folder, &files, nullptr);
  std::vector<std::string> names;
  for (const char* mask : kMasks) files.FindAll(mask, &names);
  return {names.begin(), names.end()};
}

std::string ListOf(const std::set<std::string>& names) {
  std::string list;
  std::size_t listed = 0;
  for (const std::string& name : names) {
    if (listed++ == kMostNames) {
      return list + " and " + std::to_string(names.size() - kMostNames) + " more";
    }
    list += (list.empty() ? "" : ", ") + name;
  }
  return list;
}

/// The letters and '_' that a line begins with, behind blanks.
std::string_view FirstWord(std::string_view line) {
  const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
  const auto isLetter = [](char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
  };
  const auto* const begin = std::find_if_not(line.begin(), line.end(), isBlank);
  const auto* const end = std::find_if_not(begin, line.end(), isLetter);
  return line.substr(static_cast<std::size_t>(begin - line.begin()),
                     static_cast<std::size_t>(end - begin));
}

const OpeningWord* FindOpeningWord(std::string_view line) {
  const std::string word = toupper(std::string(FirstWord(line)));
  const auto* const found = std::find_if(kOpeningWords.begin(), kOpeningWords.end(),
                                         [&](const OpeningWord& w) { return w.word == word; });
  return found == kOpeningWords.end() ? nullptr : found;
}

/// Sets dialect and reason by the text; false when it does not tell.
bool TellDialect(LabelFile& label) {
  std::string_view rest = label.text;
  unsigned long number = 1;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    if (const OpeningWord* word = FindOpeningWord(rest.substr(0, end))) {
      label.dialect = word->dialect;
      label.reason = "line " + std::to_string(number) + " begins with " + std::string(word->word);
      return true;
    }
    rest.remove_prefix(std::min(end + 1, rest.size()));
    ++number;
  }
  return false;
}

}  // namespace

std::string DialectName(Dialect dialect) {
  return dialect == Dialect::kPvl ? "pvl" : "nasa";
}

std::optional<Dialect> ParseDialect(const std::string& text) {
  for (const Dialect dialect : {Dialect::kPvl, Dialect::kNasa}) {
    if (text == DialectName(dialect)) return dialect;
  }
  return std::nullopt;
}

std::string FindLabel(const std::string& folder) {
  const std::set<std::string> names = LabelNames(folder);
  if (names.size() == 1) return *names.begin();
  if (names.empty()) {
    throw HostError(folder, std::string("has no label: no file there is called ") + kMaskText,
                    "name it with --label FILE");
  }
  throw HostError(folder, "has several labels: " + ListOf(names), "choose one with --label FILE");
}

LabelFile ReadLabel(const std::string& path, std::optional<Dialect> dialect) {
  LabelFile label = {path, DecodedText(ReadTextInput(path, kLongestLabel).text, path), {}, ""};
  if (dialect) {
    label.dialect = *dialect;
    label.reason = "asked for by --dialect";
    return label;
  }
  if (!TellDialect(label)) {
    throw HostError(path, "no line of it begins with GROUP or BEGIN_GROUP to tell the dialect",
                    "give --dialect pvl or --dialect nasa, or another --label");
  }
  return label;
}

std::string LabelXml(const LabelFile& label) {
  const XmlConversion convert = label.dialect == Dialect::kPvl ? PvlXml : NasaPvlXml;
  return convert(label.text, label.path);
}

}  // namespace ravelin
