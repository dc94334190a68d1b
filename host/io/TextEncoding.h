// Texts in the encodings that files come in.
#pragma once

#include <string>

namespace ravelin {

/// The text in `bytes`, which were read from `file`, without its byte-order mark. UTF-16, known by
/// its mark or by a zero byte in its first character, becomes UTF-8; every other text keeps its
/// bytes. Throws HostError for UTF-32 and for UTF-16 with characters beyond U+00FF.
std::string DecodedText(const std::string& bytes, const std::string& file);

/// Throws HostError when the text in `bytes` is UTF-32, by its mark or its first character.
void RefuseUtf32(const std::string& bytes, const std::string& file);

}  // namespace ravelin
