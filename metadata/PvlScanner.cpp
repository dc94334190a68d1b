#include "metadata/PvlScanner.h"

#include <array>
#include <string_view>
#include <utility>

#include "Kv/Text.h"

namespace SatCommonUtils {
namespace {

/// Which characters belong to a set.
using TCharacters = std::array<bool, 256>;

constexpr TCharacters CharactersOf(std::string_view members) {
  TCharacters characters{};
  for (const char c : members) characters[static_cast<unsigned char>(c)] = true;
  return characters;
}

constexpr TCharacters kName =
    CharactersOf("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_");
/// What means something in a value.
constexpr TCharacters kSpecial = CharactersOf("\\;\"");

bool IsIn(const TCharacters& characters, char c) {
  return characters[static_cast<unsigned char>(c)];
}

/// The text from `start` to `end`, trimmed, when it is a name. Looks no further than the first
/// character that no name has.
bool ScanName(TPvlText& text, std::size_t start, std::size_t end, std::string* name) {
  const std::size_t first = text.SkipTrimmed(start, TPvlText::sdBefore);
  if (first >= end) {
    name->clear();
    return true;
  }
  std::size_t last = first;
  while (last < end && IsIn(kName, text[last])) ++last;
  if (last != end && text.SkipTrimmed(last, TPvlText::sdBehind) < end) return false;
  name->assign(text.Text(), first, last - first);
  return true;
}

/// Takes a value apart from `pos` on; returns the position behind its ';', npos when none ends it.
std::size_t ScanValue(const std::string& text, std::size_t pos, std::string* value) {
  value->clear();
  bool quoted = false;
  char previous = '=';
  while (pos < text.size()) {
    const std::size_t plain = pos;
    while (pos < text.size() && !IsIn(kSpecial, text[pos])) ++pos;
    if (pos > plain) {
      if (previous == '\\') value->push_back('\\');
      value->append(text, plain, pos - plain);
      previous = text[pos - 1];
      continue;
    }
    const char c = text[pos++];
    if (c == ';' && !quoted) return pos;
    if (c == '"' && previous != '\\') {
      quoted = !quoted;
    } else if (c != '\\') {
      if (previous == '\\' && c != '"') value->push_back('\\');
      value->push_back(c);
    }
    previous = c;
  }
  return std::string::npos;
}

}  // namespace

bool variable_detected(TPvlText& text, std::size_t* pos, std::string* name, std::string* value) {
  const std::size_t start = text.SkipWhite(*pos);
  *pos = start;
  const std::size_t equals = text.FindEquals(start);
  if (equals == std::string::npos || equals == start) return false;
  if (!ScanName(text, start, equals, name) || !text.MayEnd(equals + 1)) return false;
  const std::size_t end = ScanValue(text.Text(), equals + 1, value);
  if (end == std::string::npos) {
    text.LookForEnds();
    return false;
  }
  *pos = end;
  return true;
}

bool unpack_array(const std::string& value, std::vector<std::string>* items) {
  items->clear();
  // Without an opening bracket no list is ever closed.
  if (value.find('(') == std::string::npos) return false;
  std::size_t pos = value.find_first_not_of(" \t\r\n");
  std::string item;
  long depth = 0;
  for (; pos < value.size(); ++pos) {
    const char c = value[pos];
    if (c == '(' && depth == 0) {
      depth = 1;
    } else if (c == ')' && depth == 1) {
      items->push_back(trim(std::move(item)));
      return true;
    } else if (c == ',' && depth == 1) {
      items->push_back(trim(std::move(item)));
      item.clear();
    } else {
      if (c == '(') ++depth;
      if (c == ')') --depth;
      item.push_back(c);
    }
  }
  return false;
}

}  // namespace SatCommonUtils
