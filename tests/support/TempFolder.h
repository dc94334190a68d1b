// A folder of a test's own, and files in it.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string>

/// Unique, removed with everything in it at the end.
class TempFolder {
 public:
  TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "ravelin-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = name;
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::string& Path() const { return path_; }
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }

  /// Writes a file and returns its path.
  std::string Write(const std::string& name, const std::string& bytes) const {
    std::ofstream file(*this / name, std::ios::binary);
    file << bytes;
    if (!file.flush()) throw std::runtime_error("cannot write " + name);
    return *this / name;
  }

  std::string Read(const std::string& name) const {
    std::ifstream file(*this / name, std::ios::binary);
    if (!file) throw std::runtime_error("cannot read " + name);
    return std::string(std::istreambuf_iterator<char>(file), {});
  }

  void MakeFolder(const std::string& name) const {
    std::filesystem::create_directory(*this / name);
  }

  /// The same with a file of zeros that takes no space.
  std::string WriteSparse(const std::string& name, unsigned long size) const {
    Write(name, "");
    std::filesystem::resize_file(*this / name, size);
    return *this / name;
  }

  bool Has(const std::string& name) const { return std::filesystem::exists(*this / name); }

  /// Names in the folder.
  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      names.insert(entry.path().filename().string());
    }
    return names;
  }

 private:
  std::string path_;
};
