// Base64 (RFC 4648, section 4).
#pragma once

#include <string>
#include <string_view>

namespace kv {

/// Padded, on one line.
std::string EncodeBase64(std::string_view bytes);

/// The other way; white space is passed over. False for anything that EncodeBase64 would not write.
bool DecodeBase64(std::string_view text, std::string* bytes);

}  // namespace kv
