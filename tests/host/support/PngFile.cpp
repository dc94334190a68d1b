#include "host/support/PngFile.h"

#include <png.h>

#include <csetjmp>
#include <cstdio>
#include <memory>
#include <stdexcept>

namespace {

bool ReadWhole(png_structp png, png_infop info, FILE* file) {
  if (setjmp(png_jmpbuf(png)) != 0) return false;
  png_init_io(png, file);
  png_read_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
  return true;
}

void TakePixels(png_structp png, png_infop info, PngFile& picture) {
  picture.width = png_get_image_width(png, info);
  picture.height = png_get_image_height(png, info);
  picture.channels = png_get_channels(png, info);
  picture.bits = png_get_bit_depth(png, info);
  png_bytepp rows = png_get_rows(png, info);
  for (long y = 0; y < picture.height; ++y) {
    const png_byte* byte = rows[y];
    for (long i = 0; i < picture.width * picture.channels; ++i) {
      unsigned int sample = *byte++;
      if (picture.bits == 16) sample = sample << 8 | *byte++;
      picture.samples.push_back(static_cast<std::uint16_t>(sample));
    }
  }
}

}  // namespace

PngFile ReadPng(const std::string& path) {
  const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
  if (!file) throw std::runtime_error("cannot open " + path);
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  PngFile picture;
  const bool whole = ReadWhole(png, info, file.get());
  if (whole) TakePixels(png, info, picture);
  png_destroy_read_struct(&png, &info, nullptr);
  if (!whole) throw std::runtime_error("no whole PNG: " + path);
  return picture;
}
