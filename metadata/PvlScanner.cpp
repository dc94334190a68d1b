#include "metadata/PvlScanner.h"

#include <algorithm>
#include <utility>

#include "Kv/Text.h"

namespace SatCommonUtils {
namespace {

/// Takes a value apart from `pos` on; returns the position behind its ';', npos when none ends it
/// before `limit`.
std::size_t ScanValue(const TPvlText& text, std::size_t pos, std::size_t limit,
                      std::string* value) {
  value->clear();
  bool quoted = false;
  char previous = '=';
  TPvlSpecials specials(text.Data(), text.Size());
  while (pos < limit) {
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
  const TPvlText::TName& found = text.NameAt(start);
  // No '=' stands behind it, or one where the search starts.
  if (text[found.behind] != '=' || found.behind == start) return false;
  if (!text.MayEnd(found.behind + 1)) return false;
  name->assign(text.Data() + found.begin, found.end - found.begin);
  // Of a value that goes on and on it is first asked whether it ends at all.
  constexpr std::size_t kUsual = 4096;
  const std::size_t begin = found.behind + 1;
  std::size_t end = ScanValue(text, begin, std::min(text.Size(), begin + kUsual), value);
  if (end == std::string::npos) {
    text.LookForEnds();
    if (!text.MayEnd(begin)) return false;
    end = ScanValue(text, begin, text.Size(), value);
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
