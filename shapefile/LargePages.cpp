#include "shapefile/LargePages.h"

#include <sys/mman.h>

#include <cstdint>

namespace SatCommonUtils {

void AskForLargePages(void* memory, std::size_t bytes) noexcept {
  constexpr std::uintptr_t kPage = std::uintptr_t{1} << 21;
  char* const begin = static_cast<char*>(memory);
  const std::size_t before = (kPage - reinterpret_cast<std::uintptr_t>(begin) % kPage) % kPage;
  if (bytes < before + kPage) return;
  ::madvise(begin + before, (bytes - before) / kPage * kPage, MADV_HUGEPAGE);
}

}  // namespace SatCommonUtils
