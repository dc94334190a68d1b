#include "bench/support/Floor.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>

namespace RavelinBench {

void ScanFor(char mark, std::string_view text) {
  const char* at = text.data();
  const char* const end = at + text.size();
  while (at != nullptr) {
    at = static_cast<const char*>(std::memchr(at, mark, static_cast<std::size_t>(end - at)));
    benchmark::DoNotOptimize(at);
    if (at != nullptr) ++at;
  }
}

void CopyLines(std::string_view text, std::string* to) {
  char* out = to->data();
  while (!text.empty()) {
    const void* const feed = std::memchr(text.data(), '\n', text.size());
    const std::size_t length =
        feed == nullptr
            ? text.size()
            : static_cast<std::size_t>(static_cast<const char*>(feed) + 1 - text.data());
    std::memcpy(out, text.data(), length);
    out += length;
    text.remove_prefix(length);
  }
  benchmark::DoNotOptimize(to->data());
}

std::vector<std::string_view> Pieces(std::string_view xml) {
  std::vector<std::string_view> pieces;
  while (!xml.empty()) {
    const bool mark = std::strchr("\t<>/\n", xml.front()) != nullptr;
    const std::size_t other =
        mark ? xml.find_first_not_of(xml.front() == '\t' ? "\t" : "</") : xml.find_first_of("<>\n");
    const std::size_t length = std::min(std::max<std::size_t>(other, 1), xml.size());
    pieces.push_back(xml.substr(0, length));
    xml.remove_prefix(length);
  }
  return pieces;
}

std::string Joined(const std::vector<std::string_view>& pieces) {
  std::string text;
  for (const std::string_view piece : pieces) text.append(piece);
  return text;
}

}  // namespace RavelinBench
