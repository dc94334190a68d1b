#include "bench/raster/DataSet.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <random>
#include <stdexcept>

namespace RavelinBench {
namespace {

std::vector<std::uint64_t> Noise(std::size_t bytes, unsigned seed) {
  std::mt19937_64 random(seed);
  std::vector<std::uint64_t> noise(bytes / sizeof(std::uint64_t));
  for (std::uint64_t& word : noise) word = random();
  return noise;
}

void WriteWhole(const std::string& path, const void* bytes, std::size_t count) {
  const int file = ::open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
  if (file < 0) throw std::runtime_error("cannot create " + path);
  const auto* next = static_cast<const char*>(bytes);
  while (count > 0) {
    const ssize_t written = ::write(file, next, count);
    if (written <= 0) break;
    next += written;
    count -= static_cast<std::size_t>(written);
  }
  ::close(file);
  if (count > 0) throw std::runtime_error("cannot write " + path);
}

TRawFile MakeFile(const std::filesystem::path& path, long width, long height, unsigned seed) {
  const auto bytes = static_cast<std::size_t>(width * height * 2);
  WriteWhole(path.string(), Noise(bytes, seed).data(), bytes);
  return {path.string(), width, height};
}

}  // namespace

TTempFolder::TTempFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "ravelin-bench-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("cannot make the folder " + name);
  path_ = name;
}

TTempFolder::~TTempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

TDataSet MakeRawBand(const std::filesystem::path& folder) {
  constexpr long kSide = 8192;
  return {"raw", kSide, kSide, 1, 1, {MakeFile(folder / "raw.img", kSide, kSide, 1)}};
}

TDataSet MakeBands(const std::filesystem::path& folder, int channels) {
  constexpr long kSide = 4096;
  const std::string name = "bands" + std::to_string(channels);
  TDataSet set{name, kSide, kSide, channels, 1, {}};
  for (int channel = 0; channel < channels; ++channel) {
    const std::string file = name + "_" + std::to_string(channel) + ".img";
    const auto seed = static_cast<unsigned>(100 * channels + channel);
    set.files.push_back(MakeFile(folder / file, kSide, kSide, seed));
  }
  return set;
}

TDataSet MakeMosaic(const std::filesystem::path& folder) {
  constexpr long kTiles = 8;
  constexpr long kSide = 1024;
  TDataSet set{"mosaic", kTiles * kSide, kTiles * kSide, 1, kTiles, {}};
  for (unsigned tile = 0; tile < kTiles * kTiles; ++tile) {
    const std::string file = "tile" + std::to_string(tile) + ".img";
    set.files.push_back(MakeFile(folder / file, kSide, kSide, 1000 + tile));
  }
  return set;
}

}  // namespace RavelinBench
