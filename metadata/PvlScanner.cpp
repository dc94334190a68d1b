#include "metadata/PvlScanner.h"

#include <utility>

#include "Kv/Text.h"

namespace SatCommonUtils {
namespace {

/// Reads a name and the blanks around it. Returns the position of the '=' behind it, which is the
/// first from `start` on; npos when there is none or something else stands before it.
std::size_t ScanName(TPvlText& text, std::size_t start, std::string* name) {
  const std::size_t first = text.SkipTrimmed(start, TPvlText::sdBefore);
  const std::size_t last = text.SkipName(first);
  const std::size_t equals = text.SkipTrimmed(last, TPvlText::sdBehind);
  if (equals == start || equals == text.Size() || text[equals] != '=') return std::string::npos;
  name->assign(text.Data() + first, last - first);
  return equals;
}

/// Takes a value apart from `pos` on; returns the position behind its ';', npos when none ends it.
std::size_t ScanValue(const TPvlText& text, std::size_t pos, std::string* value) {
  value->clear();
  bool quoted = false;
  char previous = '=';
  TPvlSpecials specials(text.Data(), text.Size());
  while (pos < text.Size()) {
    const std::size_t plain = pos;
    pos = specials.Find(pos);
    if (pos > plain) {
      if (previous == '\\') value->push_back('\\');
      value->append(text.Data() + plain, pos - plain);
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
  const std::size_t equals = ScanName(text, start, name);
  if (equals == std::string::npos || !text.MayEnd(equals + 1)) return false;
  const std::size_t end = ScanValue(text, equals + 1, value);
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
