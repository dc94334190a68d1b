#include "host/io/MakeFolder.h"

#include <filesystem>
#include <system_error>

#include "host/HostError.h"

namespace ravelin {

void MakeFolder(const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (!error && !std::filesystem::is_directory(folder, error) && !error) {
    error = std::make_error_code(std::errc::not_a_directory);
  }
  if (error) {
    throw HostError(folder, "cannot make this folder: " + error.message(),
                    "name a folder that you may write to");
  }
}

}  // namespace ravelin
