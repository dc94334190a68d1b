#include "host/raster/PngWriter.h"

#include <png.h>

#include <csetjmp>
#include <new>

#include "host/HostError.h"

namespace ravelin {

// libpng leaves an operation by longjmp: the functions that it leaves hold nothing that would have
// to be destroyed, and no exception crosses it.
struct PngWriter::Callbacks {
  static void Write(png_structp png, png_bytep bytes, png_size_t count) {
    auto* writer = static_cast<PngWriter*>(png_get_io_ptr(png));
    if (!Append(*writer, bytes, count)) png_error(png, "write error");
  }

  static bool Append(PngWriter& writer, png_const_bytep bytes, png_size_t count) noexcept {
    try {
      writer.file_.Write(bytes, count);
      return true;
    } catch (...) {
      writer.writeError_ = std::current_exception();
      return false;
    }
  }

  static void Error(png_structp png, png_const_charp message) {
    Keep(*static_cast<PngWriter*>(png_get_error_ptr(png)), message);
    png_longjmp(png, 1);
  }

  static void Keep(PngWriter& writer, png_const_charp message) noexcept {
    try {
      writer.error_ = message;
    } catch (...) {
      writer.writeError_ = std::current_exception();
    }
  }

  static void Warning(png_structp, png_const_charp) {}
  static void Flush(png_structp) {}

  static bool WriteHeader(png_structp png, png_infop info, const PngFormat& format) {
    if (setjmp(png_jmpbuf(png)) != 0) return false;
    png_set_user_limits(png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    png_set_IHDR(png, info, static_cast<png_uint_32>(format.width),
                 static_cast<png_uint_32>(format.height), format.bits,
                 format.channels == 1 ? PNG_COLOR_TYPE_GRAY : PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    return true;
  }

  static bool WriteRow(png_structp png, png_const_bytep row) {
    if (setjmp(png_jmpbuf(png)) != 0) return false;
    png_write_row(png, row);
    return true;
  }

  static bool WriteEnd(png_structp png) {
    if (setjmp(png_jmpbuf(png)) != 0) return false;
    png_write_end(png, nullptr);
    return true;
  }
};

PngWriter::PngWriter(PendingFile& file, const PngFormat& format, const std::string& name)
    : file_(file), name_(name) {
  png_ = png_create_write_struct(PNG_LIBPNG_VER_STRING, this, Callbacks::Error, Callbacks::Warning);
  if (png_ == nullptr) throw std::bad_alloc();
  info_ = png_create_info_struct(png_);
  if (info_ == nullptr) {
    png_destroy_write_struct(&png_, nullptr);
    throw std::bad_alloc();
  }
  png_set_write_fn(png_, this, Callbacks::Write, Callbacks::Flush);
  if (!Callbacks::WriteHeader(png_, info_, format)) {
    png_destroy_write_struct(&png_, &info_);
    Fail();
  }
}

PngWriter::~PngWriter() {
  png_destroy_write_struct(&png_, &info_);
}

void PngWriter::WriteRow(const std::uint8_t* row) {
  if (!Callbacks::WriteRow(png_, row)) Fail();
}

void PngWriter::Finish() {
  if (!Callbacks::WriteEnd(png_)) Fail();
}

void PngWriter::Fail() {
  if (writeError_) std::rethrow_exception(writeError_);
  throw HostError(name_, "cannot be made a PNG: " + error_,
                  "give a smaller --rect or write a .bip");
}

}  // namespace ravelin
