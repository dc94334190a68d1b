#include "shapefile/LargePages.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace SatCommonUtils {
namespace {

constexpr std::size_t kMegabyte = std::size_t{1} << 20;

/// Fresh memory of the system.
class Area {
 public:
  explicit Area(std::size_t bytes)
      : bytes_(bytes),
        base_(mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {}
  Area(const Area&) = delete;
  Area& operator=(const Area&) = delete;
  ~Area() { munmap(base_, bytes_); }

  char* Base() const { return static_cast<char*>(base_); }

 private:
  std::size_t bytes_;
  void* base_;
};

/// Whether the system has noted that the memory at `address` should have large pages.
bool HasLargePagesNoted(const char* address) {
  std::ifstream maps("/proc/self/smaps");
  bool here = false;
  for (std::string line; std::getline(maps, line);) {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    if (std::sscanf(line.c_str(), "%lx-%lx ", &begin, &end) == 2) {
      const auto at = reinterpret_cast<std::uintptr_t>(address);
      here = begin <= at && at < end;
    } else if (here && line.rfind("VmFlags:", 0) == 0) {
      return line.find(" hg") != std::string::npos;
    }
  }
  return false;
}

TEST(AskForLargePages, MarksTheWholeLargePagesInside) {
  if (!std::filesystem::exists("/sys/kernel/mm/transparent_hugepage")) GTEST_SKIP();
  const Area area(8 * kMegabyte);
  AskForLargePages(area.Base() + 16, 8 * kMegabyte - 32);
  EXPECT_TRUE(HasLargePagesNoted(area.Base() + 4 * kMegabyte));
}

TEST(AskForLargePages, LeavesMemoryWithoutAWholeLargePageAlone) {
  const Area area(8 * kMegabyte);
  AskForLargePages(area.Base(), 2 * kMegabyte - 1);
  AskForLargePages(area.Base(), 0);
  AskForLargePages(nullptr, 0);
  EXPECT_FALSE(HasLargePagesNoted(area.Base()));
  EXPECT_FALSE(HasLargePagesNoted(area.Base() + kMegabyte));
}

TEST(AskForLargePages, KeepsWhatTheMemoryHolds) {
  std::vector<unsigned char> bytes(5 * kMegabyte + 3);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<unsigned char>(i * 7);
  const std::vector<unsigned char> before = bytes;
  for (std::size_t first = 0; first < 3; ++first) {
    AskForLargePages(bytes.data() + first, bytes.size() - first);
  }
  EXPECT_EQ(bytes, before);
}

}  // namespace
}  // namespace SatCommonUtils
