// Texts that arrive as C pointers.
#pragma once

#include <stdexcept>
#include <string>

namespace SatCommonUtils {

/// The text as a string. A null text throws std::logic_error with the words that callers rely on,
/// whatever the standard library at hand would say.
inline std::string TextOrThrow(const char* text) {
  if (text == nullptr) throw std::logic_error("basic_string::_M_construct null not valid");
  return text;
}

}  // namespace SatCommonUtils
