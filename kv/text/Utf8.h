// Well-formedness of UTF-8 (RFC 3629, section 4).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kv {

/// Bytes of the well-formed character at the front of `text`, which is not empty; 0 when there is
/// none. Overlong forms, surrogates and values above U+10FFFF are not well-formed.
std::size_t Utf8CharacterLength(std::string_view text);

/// The code point of a well-formed character of `length` bytes at the front of `text`.
char32_t Utf8CodePoint(std::string_view text, std::size_t length);

/// Appends a code point up to U+10FFFF.
void AppendUtf8(std::string* text, char32_t code);

}  // namespace kv
