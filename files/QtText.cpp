#include "files/QtText.h"

#include <QtCore/QByteArray>

#include "SatCommonUtils/Files.h"

std::string QtToKvStr(const QString& text) {
  return text.toUtf8().constData();
}
