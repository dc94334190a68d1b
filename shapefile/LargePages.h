// Large pages for memory that is about to be filled.
#pragma once

#include <cstddef>

namespace SatCommonUtils {

/// Asks the system to back what lies in whole large pages of 2 MiB inside this new memory with such
/// pages: it hands each out at the first touch, where it else hands out 4 KiB 512 times. The memory
/// stays what it is; the system may not comply.
void AskForLargePages(void* memory, std::size_t bytes) noexcept;

}  // namespace SatCommonUtils
