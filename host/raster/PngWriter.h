// PNG pictures.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include "host/io/PendingFile.h"

struct png_struct_def;
struct png_info_def;

namespace ravelin {

struct PngFormat {
  long width;
  long height;
  int channels;  ///< 1: grey; 3: red, green, blue
  int bits;      ///< of a sample: 8 or 16
};

/// Writes one picture row by row, top row first.
///
/// Does not own the file, which must outlive it and is not committed by it. Throws HostError naming
/// `name` when the picture cannot be a PNG, and what the file throws.
class PngWriter {
 public:
  PngWriter(PendingFile& file, const PngFormat& format, const std::string& name);
  PngWriter(const PngWriter&) = delete;
  PngWriter& operator=(const PngWriter&) = delete;
  ~PngWriter();

  /// One row: width x channels samples of one byte, or two, the upper byte first.
  void WriteRow(const std::uint8_t* row);
  /// After the last row.
  void Finish();

 private:
  struct Callbacks;

  [[noreturn]] void Fail();

  PendingFile& file_;
  std::string name_;
  std::string error_;
  std::exception_ptr writeError_;
  png_struct_def* png_ = nullptr;
  png_info_def* info_ = nullptr;
};

}  // namespace ravelin
