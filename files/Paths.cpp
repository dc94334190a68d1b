#include <string>
#include <utility>

#include "Kv/Path.h"
#include "SatCommonUtils/Files.h"

namespace SatCommonUtils {

void SplitPathFilename(std::string path, std::string* folder, std::string* name) {
  const TKvPath whole(path);
  std::string folderPart = whole.path(false).remSlash().toSysStr();
  std::string namePart = whole.fileName();
  *folder = std::move(folderPart);
  *name = std::move(namePart);
}

void SplitPathFilename2(std::string path, std::string* folder, std::string* name) {
  const std::size_t separator = path.find_last_of("\\/");
  const bool hasFolder = separator != std::string::npos;
  std::string folderPart = hasFolder ? path.substr(0, separator) : std::string();
  if (hasFolder) path.erase(0, separator + 1);
  *folder = std::move(folderPart);
  *name = std::move(path);
}

std::string ChangeFileExt(std::string name, std::string ext) {
  return CutFileExt(std::move(name)) + "." + ext;
}

std::string CutFileExt(std::string name) {
  const std::size_t dot = name.rfind('.');
  if (dot != std::string::npos) name.resize(dot);
  return name;
}

std::string GetFileExt(std::string name) {
  const std::size_t dot = name.rfind('.');
  return dot == std::string::npos ? std::string() : name.substr(dot + 1);
}

std::string RemoveTrailingBackslash(const std::string& path) {
  const bool hasOne = !path.empty() && path.back() == '\\';
  return path.substr(0, path.size() - (hasOne ? 1 : 0));
}

std::string AddTrailingBackslash(const std::string& path) {
  const bool needsOne = !path.empty() && path.back() != '\\';
  return needsOne ? path + '\\' : path;
}

std::string GetUpperFolder(const std::string& path) {
  const std::string folder = RemoveTrailingBackslash(path);
  const std::size_t separator = folder.rfind('\\');
  return separator == std::string::npos ? std::string() : folder.substr(0, separator);
}

std::string GetFolderName(const std::string& path) {
  const std::string folder = RemoveTrailingBackslash(path);
  const std::size_t separator = folder.rfind('\\');
  return separator == std::string::npos ? folder : folder.substr(separator + 1);
}

}  // namespace SatCommonUtils
