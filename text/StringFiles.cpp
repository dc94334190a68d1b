#include "Kv/Path.h"
#include "Kv/Stream.h"
#include "SatCommonUtils/Text.h"

namespace SatCommonUtils {

bool WriteStringToFile(const std::string& fileName, const std::string& content) {
  try {
    TKvFileStream file;
    if (!file.Open(TKvPath(fileName), kvOpenWrite, kvShareAll)) return false;
    return file.Write(content.data(), content.size()) == content.size();
  } catch (...) {
    return false;
  }
}

std::string ReadStringFromFile(const std::string& fileName) {
  try {
    TKvFileStream file;
    if (!file.Open(TKvPath(fileName), kvOpenRead, kvShareAll)) return {};
    std::string content(file.getSize(), '\0');
    if (file.Read(content.data(), content.size()) != content.size()) return {};
    return content;
  } catch (...) {
    return {};
  }
}

}  // namespace SatCommonUtils
