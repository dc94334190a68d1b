#include "Kv/Path.h"
#include "Kv/Services.h"
#include "Kv/Text.h"
#include "SatCommonUtils/Files.h"
#include "module/DebugPrint.h"

namespace SatCommonUtils {

void TTemporaryFilesList::InsertFile(const std::string& path) {
  files.insert(::tolower(path));
}

void TTemporaryFilesList::DeleteFile(const std::string& path) {
  const std::string entry = ::tolower(path);
  KvDeleteFile(TKvPath(path));
  files.erase(entry);
}

void TTemporaryFilesList::DeleteAllFiles() {
  for (const std::string& path : files) KvDeleteFile(TKvPath(path));
  files.clear();
}

void TTemporaryFilesList::DebugOutput() const {
  const std::set<std::string> paths = files;  // the debug sink may change the list
  KvPrintDbgMsg("-+- Temporary files list ---");
  for (const std::string& path : paths) ::KvPrintDbgMsg(path);
  KvPrintDbgMsg("-^- Temporary files list ---");
}

}  // namespace SatCommonUtils
