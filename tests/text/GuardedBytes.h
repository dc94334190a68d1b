// Memory whose neighbours cannot be touched.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>
#include <string>

namespace text_test {

/// `size` bytes between two pages that end the program when they are read or written. The bytes
/// touch the page behind them, or the one before them.
class GuardedBytes {
 public:
  enum class Edge { kBehind, kBefore };

  GuardedBytes(unsigned long size, Edge edge) : size_(size) {
    const auto page = static_cast<unsigned long>(::sysconf(_SC_PAGESIZE));
    const unsigned long inside = (size + page - 1) / page * page;
    whole_ = inside + 2 * page;
    void* const map = ::mmap(nullptr, whole_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (map == MAP_FAILED) throw std::runtime_error("no memory to guard");
    map_ = static_cast<char*>(map);
    if (inside > 0 && ::mprotect(map_ + page, inside, PROT_READ | PROT_WRITE) != 0) {
      throw std::runtime_error("no memory to use");
    }
    bytes_ = edge == Edge::kBehind ? map_ + page + inside - size : map_ + page;
  }
  GuardedBytes(const std::string& bytes, Edge edge) : GuardedBytes(bytes.size(), edge) {
    std::copy(bytes.begin(), bytes.end(), bytes_);
  }
  GuardedBytes(const GuardedBytes&) = delete;
  GuardedBytes& operator=(const GuardedBytes&) = delete;
  ~GuardedBytes() { ::munmap(map_, whole_); }

  char* Data() const { return bytes_; }
  std::string Text() const { return {bytes_, size_}; }

 private:
  char* map_ = nullptr;
  char* bytes_ = nullptr;
  unsigned long size_;
  unsigned long whole_ = 0;
};

}  // namespace text_test
