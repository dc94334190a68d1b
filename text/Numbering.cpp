#include <algorithm>
#include <cstdio>

#include "Kv/Text.h"
#include "SatCommonUtils/Text.h"

namespace SatCommonUtils {
namespace {

/// What the C library's scan makes of the text between the last opening and the last closing
/// bracket: the number of conversions, or EOF when there are only blanks.
struct TBracketScan {
  std::size_t opening = std::string::npos;  ///< where the opening bracket is
  int result = 0;                           ///< 0 as well when there is no such text
  int number = 0;                           ///< 0 unless one was converted
};

TBracketScan ScanBrackets(const std::string& text, char opening, char closing) {
  TBracketScan scan;
  scan.opening = text.rfind(opening);
  const std::size_t end = text.rfind(closing);
  if (scan.opening == std::string::npos || end == std::string::npos) return scan;
  if (end <= scan.opening + 1) return scan;
  const std::string inside = text.substr(scan.opening + 1, end - scan.opening - 1);
  // NOLINTNEXTLINE(cert-err34-c): whatever the scan makes of the text is promised
  scan.result = std::sscanf(inside.c_str(), "%d", &scan.number);
  return scan;
}

/// One more; the smallest integer follows the largest.
int Successor(int number) {
  return static_cast<int>(static_cast<unsigned int>(number) + 1);
}

std::string NextNumbered(std::string text, char opening, char closing) {
  const TBracketScan scan = ScanBrackets(text, opening, closing);
  if (scan.result == 1) text.resize(scan.opening);
  char suffix[16];
  std::snprintf(suffix, sizeof suffix, "%c%d%c", opening, Successor(scan.number), closing);
  return text.append(suffix);
}

/// `fold` gives of a name what is compared. All numbered candidates begin alike, so the names that
/// begin so are all that has to be searched.
template <class Fold>
std::string FindUnique(const std::string& base, const std::vector<std::string>& existing,
                       Fold fold) {
  std::string candidate = GenerateNextString(base);
  const auto& wanted = fold(base);
  const std::string beginning = fold(candidate.substr(0, candidate.rfind('[') + 1));
  bool isBaseTaken = false;
  std::vector<std::string> numbered;
  for (const std::string& name : existing) {
    const auto& folded = fold(name);
    isBaseTaken = isBaseTaken || folded == wanted;
    if (folded.compare(0, beginning.size(), beginning) == 0) numbered.push_back(folded);
  }
  if (!isBaseTaken) return base;

  std::sort(numbered.begin(), numbered.end());
  while (std::binary_search(numbered.begin(), numbered.end(), fold(candidate))) {
    candidate = GenerateNextString(candidate);
  }
  return candidate;
}

}  // namespace

std::string GenerateNextString(std::string text) {
  return NextNumbered(std::move(text), '[', ']');
}

std::string GenerateNumeratedString(std::string text) {
  return NextNumbered(std::move(text), '(', ')');
}

int DeNumerateString(std::string* text) {
  const TBracketScan scan = ScanBrackets(*text, '(', ')');
  // Blanks alone are cut like a number: callers rely on it.
  if (scan.result == 0) return 0;
  text->resize(scan.opening);
  return scan.number;
}

std::string GenerateUniqueString(const std::string& base, const std::vector<std::string>& existing,
                                 bool caseSensitive) {
  if (caseSensitive) {
    return FindUnique(
        base, existing, [](const std::string& name) -> const auto& { return name; });
  }
  return FindUnique(base, existing, [](const std::string& name) { return tolower(name); });
}

}  // namespace SatCommonUtils
