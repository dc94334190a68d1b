// A folder of a test's own and what is put into it.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace kv_test {

/// A new folder, removed with all in it at the end.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    path_ = (std::filesystem::temp_directory_path() / "kv-test-XXXXXX").string();
    if (!::mkdtemp(path_.data())) throw std::runtime_error("cannot make " + path_);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::string& Path() const { return path_; }
  std::string Path(const std::string& name) const { return path_ + "/" + name; }

  /// Writes a file and returns its path.
  std::string File(const std::string& name, const std::string& bytes) const {
    std::ofstream(Path(name), std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return Path(name);
  }
  /// Makes a file that takes no room: `size` zero bytes.
  std::string SparseFile(const std::string& name, unsigned long size) const {
    File(name, "");
    std::filesystem::resize_file(Path(name), size);
    return Path(name);
  }
  std::string Contents(const std::string& name) const {
    std::ifstream in(Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  }

 private:
  std::string path_;
};

}  // namespace kv_test
