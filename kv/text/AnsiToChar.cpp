#include <cstddef>
#include <string_view>

#include "Kv/Text.h"
#include "text/Utf8.h"
#include "text/Windows1252.h"

namespace {

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = kv::Utf8CharacterLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
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
