// Text in an unknown encoding to UTF-8.
#include <string>

#include "Kv/Text.h"
#include "fuzz/FuzzInput.h"

namespace {

// Bytes of the UTF-8 sequence at `text`; 0 when there is none. Shortest forms only, no surrogates.
std::size_t SequenceLength(const unsigned char* text, std::size_t left) {
  if (text[0] < 0x80) return 1;
  const std::size_t length = text[0] >= 0xf0 ? 4 : text[0] >= 0xe0 ? 3 : 2;
  if (text[0] < 0xc2 || text[0] > 0xf4 || left < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((text[i] & 0xc0) != 0x80) return 0;
  }
  if (text[0] == 0xe0 && text[1] < 0xa0) return 0;
  if (text[0] == 0xed && text[1] > 0x9f) return 0;
  if (text[0] == 0xf0 && text[1] < 0x90) return 0;
  if (text[0] == 0xf4 && text[1] > 0x8f) return 0;
  return length;
}

bool IsUtf8(const std::string& text) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = SequenceLength(bytes + i, text.size() - i);
    if (length == 0) return false;
    i += length;
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::string utf8 = KvAnsiToChar(text, kvEncodingUtf8);
  Require(IsUtf8(utf8), "the result is UTF-8");
  Require(utf8.size() <= 3 * text.size(), "the result is at most three times as long");
  Require(!IsUtf8(text) || utf8 == text, "UTF-8 is returned as it is");
  Require(KvAnsiToChar(utf8, kvEncodingUtf8) == utf8, "a second conversion changes nothing");
  Require(KvAnsiToChar(text, kvEncodingAnsi) == text, "to ANSI nothing changes");
  return 0;
}
