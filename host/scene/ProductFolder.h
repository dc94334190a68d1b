// The files of a product.
#pragma once

#include <optional>
#include <string>

namespace ravelin {

/// A folder in which files are looked up as labels name them.
class ProductFolder {
 public:
  /// Throws HostError when there is no such folder or it must not be read.
  explicit ProductFolder(const std::string& path);

  const std::string& Path() const { return path_; }
  /// The folder's own name, with links and "." resolved; empty for the root.
  std::string Name() const;

  /// Where the file is that a label calls `name`: a path below the folder with '/' between names.
  /// Letter case is ignored where nothing has the very name. For NAME.TIF or NAME.TIFF a file
  /// NAME.raw is taken: the pixels of a TIFF are not read. Throws HostError with `remedy` when
  /// there is none, when only a TIFF is there, and when the name or a link leads out of the folder.
  std::string FindBand(const std::string& name, const std::string& remedy) const;

  /// The same without the rule for TIFF; none when there is no such file.
  std::optional<std::string> Find(const std::string& name) const;

 private:
  void RefuseOutside(const std::string& path, const std::string& name) const;

  std::string path_;
  std::string canonical_;
};

}  // namespace ravelin
