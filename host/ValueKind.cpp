#include "host/ValueKind.h"

#include <algorithm>
#include <array>
#include <sstream>

namespace ravelin {
namespace {

constexpr std::array<const char*, 5> kTypeNames = {"text", "file", "folder", "choice", "keyed"};

}  // namespace

ValueKind FileValue() {
  return {ValueKind::kFile, {}};
}

ValueKind FolderValue() {
  return {ValueKind::kFolder, {}};
}

ValueKind ChoiceValue(const std::vector<std::string>& words) {
  return {ValueKind::kChoice, words};
}

ValueKind KeyedFileValue(const std::vector<std::string>& keys,
                         const std::vector<std::string>& endings) {
  ValueKind kind = {ValueKind::kKeyedFile, {}};
  for (const std::string& key : keys) kind.words.push_back(key + "=");
  for (const std::string& ending : endings) kind.words.push_back(":" + ending);
  return kind;
}

std::string RefusalOf(const std::string& text, const ValueKind& kind) {
  const std::vector<std::string>& words = kind.words;
  if (kind.type != ValueKind::kChoice) return "";
  if (std::find(words.begin(), words.end(), text) != words.end()) return "";
  std::string refusal = "'" + text + "' is neither ";
  for (const std::string& word : words) refusal += (&word == &words[0] ? "" : " nor ") + word;
  return refusal;
}

std::string ToText(const ValueKind& kind) {
  std::string text = kTypeNames[kind.type];
  for (const std::string& word : kind.words) text += " " + word;
  return text;
}

ValueKind ParseValueKind(const std::string& text) {
  std::istringstream stream(text);
  std::string word;
  stream >> word;
  const auto type = std::find(kTypeNames.begin(), kTypeNames.end(), word);
  if (type == kTypeNames.end()) return {};
  ValueKind kind = {static_cast<ValueKind::Type>(type - kTypeNames.begin()), {}};
  while (stream >> word) kind.words.push_back(word);
  return kind;
}

}  // namespace ravelin
