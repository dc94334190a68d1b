#include <QtCore/QDirIterator>

#include "SatCommonUtils/Files.h"
#include "files/FilenamesListAccess.h"
#include "files/QtText.h"
#include "files/ScanProgress.h"

namespace SatCommonUtils {

unsigned long FillFolderFilesList(std::string folder, TFilenamesList* list,
                                  TKvProgressHandler* progress) {
  TKvProgress scope(progress, false);
  scope.StartIndefinite();
  QDirIterator entries(KvStrToQt(folder), QDir::Files | QDir::NoDot | QDir::NoDotDot);
  while (entries.hasNext()) {
    TFilenamesListAccess::Append(*list, FileNameOf(entries.next()));
    Poll(progress);
  }
  scope.Stop();
  return TFilenamesListAccess::Names(*list).size();
}

}  // namespace SatCommonUtils
