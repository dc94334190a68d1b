#include <algorithm>
#include <cstddef>
#include <string_view>

#include "Kv/Text.h"
#include "text/Utf8.h"
#include "text/Windows1252.h"

namespace {

// Without branches, so that the compiler checks many bytes at once.
bool IsAscii(std::string_view text) {
  unsigned char bits = 0;
  for (const char c : text) bits |= static_cast<unsigned char>(c);
  return bits < 0x80;
}

bool IsUtf8(std::string_view text) {
  constexpr std::size_t kBlock = 256;
  while (!text.empty()) {
    const std::size_t block = std::min(kBlock, text.size());
    if (IsAscii(text.substr(0, block))) {
      text.remove_prefix(block);
      continue;
    }
    std::size_t checked = 0;
    while (checked < block) {
      const std::size_t length = kv::Utf8CharacterLength(text.substr(checked));
      if (length == 0) return false;
      checked += length;
    }
    text.remove_prefix(checked);
  }
  return true;
}

}  // namespace

std::string KvAnsiToChar(const std::string& text, TKvCharEncoding encoding) {
  if (encoding != kvEncodingUtf8 || IsUtf8(text)) return text;
  std::string converted;
  converted.reserve(text.size());
  for (const char c : text) {
    kv::AppendUtf8(&converted, kv::Windows1252CodePoint(static_cast<unsigned char>(c)));
  }
  return converted;
}
