// Which characters XML 1.0 (fifth edition) allows where.
#pragma once

#include <cstddef>
#include <string_view>

namespace kv {

/// Production Char.
bool IsXmlCharacter(char32_t code);

/// The offset of the first byte that begins no character that XML allows, bytes that are not UTF-8
/// included; npos when all of `text` is allowed. Linear, at memory speed over ASCII.
std::size_t FindNonXml(std::string_view text);

/// Whether XML can carry `text`.
inline bool IsXmlText(std::string_view text) {
  return FindNonXml(text) == std::string_view::npos;
}

/// Production Name, without the colon.
bool IsXmlName(std::string_view text);

}  // namespace kv
