#include "bench/raster/DataSet.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <random>
#include <stdexcept>

#include "bench/support/Size.h"

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

/// A side in pixels; twice as long in large images, a quarter as long in a quick run.
long Side(long full, bool isLarge) {
  return full * (isLarge ? 2 : 1) / (IsQuick() ? 4 : 1);
}

constexpr long kTilesAcross = 8;
constexpr long kMosaicSide = 8192;

std::string FileName(const TDataSet& set, std::size_t i) {
  return set.name + (set.isLarge ? "_large_" : "_") + std::to_string(i) + ".img";
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

TDataSet RawBand(const std::filesystem::path& folder, bool isLarge) {
  TDataSet set = Bands(folder, 1, isLarge);
  set.name = "raw";
  set.width = set.height = Side(8192, isLarge);
  set.files[0] = {(folder / FileName(set, 0)).string(), set.width, set.height, 1};
  return set;
}

TDataSet Bands(const std::filesystem::path& folder, int channels, bool isLarge) {
  const long side = Side(4096, isLarge);
  TDataSet set{"bands" + std::to_string(channels), side, side, channels, 1, 0, isLarge, {}};
  for (int channel = 0; channel < channels; ++channel) {
    const std::string file = FileName(set, static_cast<std::size_t>(channel));
    const auto seed = static_cast<unsigned>(100 * channels + channel);
    set.files.push_back({(folder / file).string(), side, side, seed});
  }
  return set;
}

TDataSet Mosaic(const std::filesystem::path& folder, bool isLarge) {
  const long across = kTilesAcross * (isLarge ? 2 : 1);
  const long side = Side(kMosaicSide, false) / kTilesAcross;
  TDataSet set{"mosaic", across * side, across * side, 1, across, 0, isLarge, {}};
  for (std::size_t tile = 0; tile < static_cast<std::size_t>(across * across); ++tile) {
    const auto seed = static_cast<unsigned>(1000 + tile);
    set.files.push_back({(folder / FileName(set, tile)).string(), side, side, seed});
  }
  return set;
}

TDataSet MosaicLevel(unsigned long level, bool isLarge) {
  TDataSet set = Mosaic({}, isLarge);
  set.width >>= level;
  set.height >>= level;
  set.level = level;
  return set;
}

void MakeFiles(const TDataSet& set) {
  if (set.level > 0) return;
  for (const TRawFile& file : set.files) {
    const auto bytes = static_cast<std::size_t>(file.width * file.height * 2);
    WriteWhole(file.path, Noise(bytes, file.seed).data(), bytes);
  }
}

}  // namespace RavelinBench
