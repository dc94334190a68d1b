#include "host/shapefile/PointText.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "host/HostError.h"
#include "host/ParseNumber.h"

namespace ravelin {
namespace {

using SatCommonUtils::TShapeFilePoint;
using SatCommonUtils::TShapeFileRing;

constexpr std::string_view kBlanks = " \t\r\v\f";
constexpr std::size_t kShownBytes = 60;

/// Takes the next word off the line; empty when there is none.
std::string_view TakeWord(std::string_view* line) {
  line->remove_prefix(std::min(line->find_first_not_of(kBlanks), line->size()));
  const std::string_view word = line->substr(0, line->find_first_of(kBlanks));
  line->remove_prefix(word.size());
  return word;
}

std::optional<double> ParseCoordinate(std::string_view word) {
  if (word.size() > 1 && word[0] == '+' && word[1] != '-') word.remove_prefix(1);
  const std::optional<double> value = ParseNumber<double>(word);
  return value && std::isfinite(*value) ? value : std::nullopt;
}

[[noreturn]] void Fail(const std::string& name, unsigned long number, std::string_view line) {
  std::string shown(line.substr(0, kShownBytes));
  if (line.size() > kShownBytes) shown += "...";
  throw HostError(name, "line " + std::to_string(number) + ": '" + shown + "' is not two numbers",
                  "give x and y, with blanks between them, on each line");
}

std::string_view TakeLine(std::string_view* text) {
  const std::string_view line = text->substr(0, text->find('\n'));
  text->remove_prefix(std::min(line.size() + 1, text->size()));
  return line.substr(0, line.find_last_not_of(kBlanks) + 1);
}

bool Same(const TShapeFilePoint& a, const TShapeFilePoint& b) {
  return a.x == b.x && a.y == b.y;
}

}  // namespace

TShapeFileRing ParsePoints(std::string_view text, const std::string& name) {
  if (text.starts_with("\xef\xbb\xbf")) text.remove_prefix(3);
  TShapeFileRing ring;
  for (unsigned long number = 1; !text.empty(); ++number) {
    const std::string_view line = TakeLine(&text);
    std::string_view rest = line;
    const std::string_view first = TakeWord(&rest);
    if (first.empty() || first[0] == '#') continue;
    const std::optional<double> x = ParseCoordinate(first);
    const std::optional<double> y = ParseCoordinate(TakeWord(&rest));
    if (!x || !y || !TakeWord(&rest).empty()) Fail(name, number, line);
    ring.push_back({*x, *y});
  }
  if (ring.size() > 1 && Same(ring.front(), ring.back())) ring.pop_back();
  if (ring.size() < 3) {
    throw HostError(name, "has " + std::to_string(ring.size()) + " points for the ring",
                    "give at least 3");
  }
  return ring;
}

}  // namespace ravelin
