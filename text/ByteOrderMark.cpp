#include <algorithm>
#include <array>
#include <cstring>

#include "SatCommonUtils/Text.h"

namespace SatCommonUtils {
namespace {

struct TMark {
  TSatBOM mark;
  unsigned long length;
  char bytes[5];
};

/// A mark stands before those that its bytes begin with.
constexpr TMark kMarks[] = {
    {bomUTF8, 3, "\xEF\xBB\xBF"}, {bomUTF32LE, 4, "\xFF\xFE\0\0"}, {bomUTF16LE, 2, "\xFF\xFE"},
    {bomUTF16BE, 2, "\xFE\xFF"},  {bomUTF32BE, 4, "\0\0\xFE\xFF"},
};

TSatBOM MarkAtTheStart(TKvStream& stream) {
  std::array<char, 4> bytes;
  // No mark holds this byte: what is shorter than a mark is not taken for it.
  bytes.fill('\x01');
  if (!stream.SetPos(0)) return bomNone;
  const unsigned long count = std::min(stream.getSize(), bytes.size());
  if (stream.Read(bytes.data(), count) < count) return bomNone;
  return RecognizeBOM(bytes.data());
}

}  // namespace

unsigned long GetBOMLength(TSatBOM mark) {
  for (const TMark& known : kMarks) {
    if (known.mark == mark) return known.length;
  }
  return 0;
}

TSatBOM RecognizeBOM(const char* bytes) {
  for (const TMark& known : kMarks) {
    if (std::memcmp(bytes, known.bytes, known.length) == 0) return known.mark;
  }
  return bomNone;
}

TSatBOM ReadBOM(TKvStream* stream) {
  const unsigned long pos = stream->GetPos();
  TSatBOM mark = bomNone;
  try {
    mark = MarkAtTheStart(*stream);
  } catch (...) {
    stream->SetPos(pos);
    throw;
  }
  stream->SetPos(pos);
  return mark;
}

}  // namespace SatCommonUtils
