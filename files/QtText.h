// Texts on their way to Qt; QtToKvStr is the way back.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <cstddef>
#include <string>

namespace SatCommonUtils {

/// UTF-8 up to the first NUL; bytes that are no UTF-8 become U+FFFD.
inline QString KvStrToQt(const std::string& text) {
  return QString::fromUtf8(text.c_str());
}

/// The last part of a path of Qt's, in UTF-8.
inline std::string FileNameOf(const QString& path) {
  const QByteArray name = path.midRef(path.lastIndexOf(QLatin1Char('/')) + 1).toUtf8();
  return std::string(name.constData(), static_cast<std::size_t>(name.size()));
}

}  // namespace SatCommonUtils
