#include "bench/raster/FileMap.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <stdexcept>

namespace RavelinBench {
namespace {

constexpr std::size_t kLargePage = std::size_t{2} << 20;

}  // namespace

TFileMap::TFileMap(const std::string& path) {
  const std::size_t size = std::filesystem::file_size(path);
  areaSize_ = size + kLargePage;
  area_ = ::mmap(nullptr, areaSize_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (area_ == MAP_FAILED) throw std::runtime_error("no address space for " + path);
  const std::size_t over = reinterpret_cast<std::uintptr_t>(area_) % kLargePage;
  void* const begin = static_cast<unsigned char*>(area_) + (kLargePage - over) % kLargePage;
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  void* const mapped = ::mmap(begin, size, PROT_READ, MAP_SHARED | MAP_FIXED, file, 0);
  ::close(file);
  if (mapped == MAP_FAILED) {
    ::munmap(area_, areaSize_);
    throw std::runtime_error("cannot map " + path);
  }
  bytes_ = static_cast<const unsigned char*>(mapped);
  // Both only make it faster: systems that cannot do them refuse.
  ::madvise(mapped, size, MADV_HUGEPAGE);
  ::madvise(mapped, size, MADV_POPULATE_READ);
}

TFileMap::~TFileMap() {
  ::munmap(area_, areaSize_);
}

}  // namespace RavelinBench
