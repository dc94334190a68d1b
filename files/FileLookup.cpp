#include <QtCore/QDirIterator>
#include <QtCore/QRegularExpression>

#include "SatCommonUtils/Files.h"
#include "files/QtText.h"

namespace SatCommonUtils {
namespace {

/// Qt prints warnings about patterns that are none; they match nothing.
bool IsPattern(const QString& nameFilter) {
  return QRegularExpression(QRegularExpression::wildcardToRegularExpression(nameFilter)).isValid();
}

}  // namespace

bool FileExists(const std::string& folder, const std::string& nameFilter, std::string* foundName) {
  const QString filter = KvStrToQt(nameFilter);
  if (!IsPattern(filter)) return false;
  QDirIterator entries(KvStrToQt(folder), QStringList(filter),
                       QDir::Files | QDir::NoDot | QDir::NoDotDot);
  if (!entries.hasNext()) return false;
  entries.next();
  if (foundName != nullptr) *foundName = QtToKvStr(entries.fileName());
  return true;
}

}  // namespace SatCommonUtils
