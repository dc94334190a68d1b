#include "host/io/TextEncoding.h"

#include <array>
#include <cstddef>

#include "Kv/Stream.h"
#include "SatCommonUtils/Text.h"
#include "host/HostError.h"

namespace ravelin {
namespace {

struct Encoding {
  enum Form { kBytes, kUtf16, kUtf32 } form;
  bool isLittleEndian;
  unsigned long markLength;
};

/// The encoding by which of the first four bytes are zero.
Encoding UnmarkedEncoding(const std::string& bytes) {
  std::string zeros;
  for (const char c : bytes.substr(0, 4)) zeros += c == 0 ? '0' : 'x';
  if (zeros == "x000") return {Encoding::kUtf32, true, 0};
  if (zeros == "000x") return {Encoding::kUtf32, false, 0};
  if (zeros.starts_with("x0")) return {Encoding::kUtf16, true, 0};
  if (zeros.starts_with("0x")) return {Encoding::kUtf16, false, 0};
  return {Encoding::kBytes, false, 0};
}

Encoding EncodingOf(const std::string& bytes) {
  std::array<char, 4> start;
  start.fill('\x01');
  bytes.copy(start.data(), start.size());
  const SatCommonUtils::TSatBOM mark = SatCommonUtils::RecognizeBOM(start.data());
  const unsigned long length = SatCommonUtils::GetBOMLength(mark);
  switch (mark) {
    case SatCommonUtils::bomUTF16BE:
    case SatCommonUtils::bomUTF16LE:
      return {Encoding::kUtf16, mark == SatCommonUtils::bomUTF16LE, length};
    case SatCommonUtils::bomUTF32BE:
    case SatCommonUtils::bomUTF32LE:
      return {Encoding::kUtf32, mark == SatCommonUtils::bomUTF32LE, length};
    case SatCommonUtils::bomUTF8:
      return {Encoding::kBytes, false, length};
    default:
      return UnmarkedEncoding(bytes);
  }
}

/// Only the low byte of each character will be read.
void RefuseHighBytes(const std::string& bytes, const Encoding& encoding, const std::string& file) {
  const std::size_t high = encoding.isLittleEndian ? 1 : 0;
  unsigned long line = 1;
  for (std::size_t i = encoding.markLength; i + 1 < bytes.size(); i += 2) {
    if (bytes[i + high] != 0) {
      throw HostError(file,
                      "is UTF-16 with a character beyond U+00FF at line " + std::to_string(line),
                      "convert it to UTF-8");
    }
    if (bytes[i + 1 - high] == '\n') ++line;
  }
}

std::string Utf8FromLatin1(const std::string& latin1) {
  std::string utf8;
  utf8.reserve(latin1.size());
  for (const char c : latin1) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      utf8 += c;
    } else {
      utf8 += static_cast<char>(0xc0 | byte >> 6);
      utf8 += static_cast<char>(0x80 | (byte & 0x3f));
    }
  }
  return utf8;
}

void RefuseUtf32(const Encoding& encoding, const std::string& file) {
  if (encoding.form == Encoding::kUtf32) throw HostError(file, "is UTF-32", "convert it to UTF-8");
}

}  // namespace

std::string DecodedText(const std::string& bytes, const std::string& file) {
  const Encoding encoding = EncodingOf(bytes);
  RefuseUtf32(encoding, file);
  if (encoding.form == Encoding::kBytes) return bytes.substr(encoding.markLength);
  RefuseHighBytes(bytes, encoding, file);
  TKvMemoryStream stream(bytes);
  return Utf8FromLatin1(
      SatCommonUtils::PseudoUTF16toUTF8(&stream, encoding.isLittleEndian, encoding.markLength));
}

void RefuseUtf32(const std::string& bytes, const std::string& file) {
  RefuseUtf32(EncodingOf(bytes), file);
}

}  // namespace ravelin
