#include "Kv/Text.h"
#include "SatCommonUtils/Text.h"

namespace SatCommonUtils {

bool RemoveQuotes(const std::string& text, std::string* out) {
  *out = trim(text);
  if (out->size() < 2 || out->front() != '"' || out->back() != '"') return false;
  out->pop_back();
  out->erase(0, 1);
  return true;
}

std::string RemoveQuotes(const std::string& text) {
  std::string inside;
  return RemoveQuotes(text, &inside) ? inside : text;
}

std::string RemoveQuotesAndWhitespaces(const std::string& text) {
  constexpr const char* kRemoved = " \t\r\n\"";
  const std::size_t first = text.find_first_not_of(kRemoved);
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(kRemoved) + 1 - first);
}

std::string RemoveTrailingSymbol(const std::string& text, char symbol, bool all) {
  if (all) return text.substr(0, text.find_last_not_of(symbol) + 1);
  const bool isThere = !text.empty() && text.back() == symbol;
  return text.substr(0, text.size() - (isThere ? 1 : 0));
}

}  // namespace SatCommonUtils
