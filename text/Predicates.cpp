#include <cstring>
#include <string_view>

#include "Kv/Text.h"
#include "SatCommonUtils/Text.h"

namespace SatCommonUtils {
namespace {

/// In linear time, which std::string::find does not promise.
std::size_t FirstOccurrence(const std::string& text, const std::string& part) {
  const void* const found = ::memmem(text.data(), text.size(), part.data(), part.size());
  if (found == nullptr) return std::string::npos;
  return static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
}

}  // namespace

bool StringBegins(const std::string& text, const std::string& head, bool caseSensitive) {
  if (text.size() < head.size()) return false;
  const auto start = std::string_view(text).substr(0, head.size());
  return caseSensitive ? start == head : toupper(std::string(start)) == toupper(head);
}

bool StringContains(const std::string& text, const std::string& part, bool caseSensitive) {
  if (!caseSensitive) return StringContains(toupper(text), toupper(part), true);
  return FirstOccurrence(text, part) != std::string::npos;
}

bool StringEnds(const std::string& text, const std::string& tail, bool caseSensitive) {
  if (text.size() < tail.size()) return false;
  const std::size_t start = text.size() - tail.size();
  if (caseSensitive) return text.compare(start, tail.size(), tail) == 0;
  // The first occurrence decides, so a tail that occurs earlier too is none. Callers rely on it.
  return FirstOccurrence(toupper(text), toupper(tail)) == start;
}

std::string CutStringHead(const std::string& text, const std::string& head, bool caseSensitive) {
  return StringBegins(text, head, caseSensitive) ? text.substr(head.size()) : text;
}

std::string CutStringTail(const std::string& text, const std::string& tail, bool caseSensitive) {
  return StringEnds(text, tail, caseSensitive) ? text.substr(0, text.size() - tail.size()) : text;
}

}  // namespace SatCommonUtils
