// The escapes of the text form, applied to strings.
#pragma once

#include <cstddef>
#include <string>

#include "SatCommonUtils/Text.h"
#include "tree/TextSink.h"

namespace SatCommonUtils {

inline void PutEncoded(const std::string& text, TTextSink* sink) {
  sink->Skip(Encode(text.data(), text.size(), sink->Buffer(), sink->Position()));
}

/// Decoding never makes a text longer.
inline void DecodeTo(const char* text, std::size_t length, std::string* decoded) {
  decoded->resize(length);
  decoded->resize(Decode(text, length, decoded->data(), 0));
}

}  // namespace SatCommonUtils
