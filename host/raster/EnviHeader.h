// The text header that stands beside an image of interleaved samples (ENVI header).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ravelin {

/// What a header says. Format: a first line "ENVI", then `name = value` lines; a value in braces
/// may run over several lines (NV5 Geospatial, "ENVI Header Files").
struct EnviHeader {
  unsigned long samples = 0;  ///< pixels a row
  unsigned long lines = 0;    ///< rows
  unsigned long bands = 0;
  unsigned long headerOffset = 0;  ///< bytes before the first pixel
  int dataType = 12;               ///< 12: unsigned 16-bit
  std::string interleave = "bip";
  int byteOrder = 0;  ///< 0 little-endian, 1 big-endian
  std::vector<std::string> bandNames;
};

/// Longest header that is read.
constexpr unsigned long kMaxEnviHeaderBytes = 1ul << 20;

/// The header's text.
std::string FormatEnviHeader(const EnviHeader& header);

/// Reads a header. Names in any case and any order, blanks, unknown names, comments (`;`) and
/// missing optional names are tolerated; samples, lines, bands and data type must be there. Throws
/// HostError naming `file` and the line. Linear in the text.
EnviHeader ParseEnviHeader(std::string_view text, const std::string& file);

/// Bytes of one sample of an ENVI data type; 0 for an unknown one.
unsigned long EnviSampleBytes(int dataType);
/// "unsigned 16-bit" and so on; "unknown" for an unknown one.
std::string EnviTypeName(int dataType);

/// The header that stands beside an image: the image's ending replaced by .hdr.
std::string EnviHeaderPath(const std::string& imagePath);

}  // namespace ravelin
