#include "host/scene/ProductFolder.h"

#include <filesystem>
#include <string_view>
#include <system_error>

#include "Kv/Text.h"
#include "SatCommonUtils/Files.h"
#include "host/HostError.h"
#include "host/files/FolderListing.h"
#include "host/io/FolderEntries.h"
#include "host/io/InsideFolder.h"

namespace ravelin {
namespace {

namespace fs = std::filesystem;

/// A pattern of Qt's that stands for the name itself.
std::string PatternOf(const std::string& name) {
  std::string pattern;
  for (const char c : name) {
    const bool isSpecial = c == '*' || c == '?' || c == '[';
    pattern += isSpecial ? std::string("[") + c + "]" : std::string(1, c);
  }
  return pattern;
}

/// The folder in `parent` that has the name, or the first that has it when case is ignored.
std::optional<std::string> FindFolder(const std::string& parent, const std::string& name) {
  std::error_code error;
  if (fs::is_directory(parent + "/" + name, error)) return parent + "/" + name;
  const std::string wanted = tolower(name);
  std::optional<std::string> found;
  for (const FolderEntry& entry : ReadFolderEntries(parent, &error)) {
    if (tolower(entry.name) != wanted) continue;
    const std::string path = PathIn(parent, entry.name);
    if (fs::is_directory(path, error) && (!found || path < *found)) found = path;
  }
  return found;
}

std::optional<std::string> FindFile(const std::string& folder, const std::string& name) {
  std::error_code error;
  if (name.empty()) return std::nullopt;
  if (fs::exists(folder + "/" + name, error)) return folder + "/" + name;
  std::string found;
  if (!SatCommonUtils::FileExists(folder, PatternOf(name), &found)) return std::nullopt;
  return folder + "/" + found;
}

std::string WithoutTiffEnding(const std::string& name) {
  const std::string lower = tolower(name);
  for (const std::string_view ending : {".tif", ".tiff"}) {
    if (lower.ends_with(ending)) return name.substr(0, name.size() - ending.size());
  }
  return "";
}

std::string CanonicalPath(const std::string& path) {
  std::error_code error;
  std::string canonical = fs::canonical(path, error).string();
  if (error) throw HostError(path, "no such folder: " + error.message(), "check the name");
  return canonical;
}

}  // namespace

ProductFolder::ProductFolder(const std::string& path)
    : path_(path), canonical_(CanonicalPath(path)) {
  std::error_code error;
  if (!fs::is_directory(canonical_, error)) {
    throw HostError(path, "is not a folder", "name the folder of a product");
  }
  error = FolderError(canonical_);
  if (error) throw HostError(path, "cannot be read: " + error.message(), "check its permissions");
  while (path_.size() > 1 && path_.back() == '/') path_.pop_back();
}

std::string ProductFolder::Name() const {
  return fs::path(canonical_).filename().string();
}

void ProductFolder::RefuseOutside(const std::string& path, const std::string& name) const {
  if (name.starts_with('/')) {
    throw HostError(name, "is no name in the folder " + path_, "name a file in that folder");
  }
  std::error_code error;
  const fs::path file = fs::weakly_canonical(path, error);
  if (error) throw HostError(name, "cannot be found: " + error.message(), "check the name");
  if (IsInsideFolder(file, canonical_)) return;
  throw HostError(name, "leads outside the folder " + path_,
                  "put a copy into the folder and name that");
}

std::optional<std::string> ProductFolder::Find(const std::string& name) const {
  RefuseOutside((fs::path(canonical_) / name).string(), name);
  std::string folder = path_;
  std::size_t begin = 0;
  for (std::size_t end = name.find('/'); end != std::string::npos; end = name.find('/', begin)) {
    const std::optional<std::string> inner = FindFolder(folder, name.substr(begin, end - begin));
    if (!inner) return std::nullopt;
    folder = *inner;
    begin = end + 1;
  }
  std::optional<std::string> file = FindFile(folder, name.substr(begin));
  if (file) RefuseOutside(*file, name);
  return file;
}

std::string ProductFolder::FindBand(const std::string& name, const std::string& remedy) const {
  const std::string stem = WithoutTiffEnding(name);
  const std::string wanted = stem.empty() ? name : stem + ".raw";
  const std::optional<std::string> file = Find(wanted);
  if (file) return *file;
  if (!stem.empty() && Find(name)) {
    throw HostError(path_ + "/" + name, "is a TIFF, whose pixels are not read",
                    "convert it to raw samples in " + wanted + ", or " + remedy);
  }
  throw HostError(path_ + "/" + wanted, "no such file", remedy);
}

}  // namespace ravelin
