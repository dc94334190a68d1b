// Reading a PNG back.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct PngFile {
  long width = 0;
  long height = 0;
  int channels = 0;
  int bits = 0;
  std::vector<std::uint16_t> samples;  ///< top row first, pixels interleaved
};

/// Throws std::runtime_error when the file is no whole PNG.
PngFile ReadPng(const std::string& path);
