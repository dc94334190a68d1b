#include <algorithm>
#include <array>

#include "SatCommonUtils/Text.h"

namespace SatCommonUtils {
namespace {

constexpr unsigned long kUnit = 2;
constexpr unsigned long kChunk = 1024;  ///< bytes of one read, whole units

void AppendLowBytes(const char* bytes, unsigned long length, bool littleEndian, std::string* text) {
  const unsigned long start = littleEndian ? 0 : 1;
  if (length <= start) return;
  const unsigned long count = (length - start + 1) / kUnit;
  const unsigned long before = text->size();
  text->resize(before + count);
  char* const to = text->data() + before;
  for (unsigned long i = 0; i < count; ++i) to[i] = bytes[start + kUnit * i];
}

}  // namespace

std::string PseudoUTF16toUTF8(const std::string& bytes, bool littleEndian) {
  std::string text;
  AppendLowBytes(bytes.data(), bytes.size(), littleEndian, &text);
  return text;
}

std::string PseudoUTF16toUTF8(TKvStream* stream, bool littleEndian, unsigned long offset) {
  if (!stream->SetPos(offset)) return {};
  const unsigned long size = stream->getSize();
  std::string text;
  std::array<char, kChunk> chunk;
  unsigned long left = size > offset ? (size - offset) / kUnit * kUnit : 0;
  while (left > 0) {
    const unsigned long count = std::min(left, kChunk);
    if (stream->Read(chunk.data(), count) < count) return {};
    AppendLowBytes(chunk.data(), count, littleEndian, &text);
    left -= count;
  }
  return text;
}

std::string PseudoUTF16toUTF8BOM(TKvStream* stream) {
  const TSatBOM mark = ReadBOM(stream);
  if (mark != bomUTF16LE && mark != bomUTF16BE) return {};
  return PseudoUTF16toUTF8(stream, mark == bomUTF16LE, GetBOMLength(mark));
}

}  // namespace SatCommonUtils
