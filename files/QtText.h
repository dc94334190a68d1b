// Texts on their way to Qt; QtToKvStr is the way back.
#pragma once

#include <QtCore/QString>
#include <string>

namespace SatCommonUtils {

/// UTF-8 up to the first NUL; bytes that are no UTF-8 become U+FFFD.
inline QString KvStrToQt(const std::string& text) {
  return QString::fromUtf8(text.c_str());
}

}  // namespace SatCommonUtils
