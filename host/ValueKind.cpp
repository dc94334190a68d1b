#include "host/ValueKind.h"

#include <algorithm>
#include <array>
#include <sstream>

namespace ravelin {
namespace {

// CLI11 has room for a kind in the name of a validator: a word for the type and its words after it.
constexpr std::array<const char*, 5> kTypeNames = {"text", "file", "folder", "choice", "keyed"};

std::string NameOf(const ValueKind& kind) {
  std::string name = kTypeNames[kind.type];
  for (const std::string& word : kind.words) name += " " + word;
  return name;
}

CLI::Validator Hint(const ValueKind& kind) {
  return CLI::Validator([](const std::string&) { return std::string(); }, "", NameOf(kind));
}

std::string Refusal(const std::string& text, const std::vector<std::string>& words) {
  std::string refusal = "'" + text + "' is neither ";
  for (const std::string& word : words) refusal += (&word == &words[0] ? "" : " nor ") + word;
  return refusal;
}

/// The name of the option's first validator; empty when it has none.
std::string FirstValidator(CLI::Option& option) {
  try {
    return option.get_validator(0)->get_name();
  } catch (const CLI::OptionNotFound&) {
    return "";
  }
}

}  // namespace

CLI::Validator FileValue() {
  return Hint({ValueKind::kFile, {}});
}

CLI::Validator FolderValue() {
  return Hint({ValueKind::kFolder, {}});
}

CLI::Validator KeyedFileValue(const std::vector<std::string>& keys,
                              const std::vector<std::string>& endings) {
  ValueKind kind = {ValueKind::kKeyedFile, {}};
  for (const std::string& key : keys) kind.words.push_back(key + "=");
  for (const std::string& ending : endings) kind.words.push_back(":" + ending);
  return Hint(kind);
}

CLI::Validator ChoiceValue(const std::vector<std::string>& words) {
  const auto check = [words](const std::string& text) {
    const bool known = std::find(words.begin(), words.end(), text) != words.end();
    return known ? std::string() : Refusal(text, words);
  };
  return CLI::Validator(check, "", NameOf({ValueKind::kChoice, words}));
}

ValueKind KindOf(CLI::Option& option) {
  std::istringstream name(FirstValidator(option));
  std::string word;
  name >> word;
  const auto type = std::find(kTypeNames.begin(), kTypeNames.end(), word);
  if (type == kTypeNames.end()) return {};
  ValueKind kind = {static_cast<ValueKind::Type>(type - kTypeNames.begin()), {}};
  while (name >> word) kind.words.push_back(word);
  return kind;
}

}  // namespace ravelin
