#include "host/io/InsideFolder.h"

#include <algorithm>

namespace ravelin {

bool IsInsideFolder(const std::filesystem::path& file, const std::filesystem::path& folder) {
  const auto [end, ignored] = std::mismatch(folder.begin(), folder.end(), file.begin(), file.end());
  return end == folder.end();
}

}  // namespace ravelin
