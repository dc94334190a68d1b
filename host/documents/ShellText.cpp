#include "host/documents/ShellText.h"

namespace ravelin {

std::string ShellQuoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

std::string Joined(const std::vector<std::string>& words, const std::string& separator) {
  std::string joined;
  for (const std::string& word : words) joined += (&word == &words[0] ? "" : separator) + word;
  return joined;
}

std::vector<std::string> Keys(const ValueKind& kind) {
  std::vector<std::string> keys;
  for (const std::string& word : kind.words) {
    if (word.ends_with('=')) keys.push_back(word);
  }
  return keys;
}

std::vector<std::string> Endings(const ValueKind& kind) {
  std::vector<std::string> endings;
  for (const std::string& word : kind.words) {
    if (word.starts_with(':')) endings.push_back(word.substr(1));
  }
  return endings;
}

}  // namespace ravelin
