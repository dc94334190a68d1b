// The encoding of an XML text.
#pragma once

#include <string>
#include <string_view>

namespace kv {

/// The text as UTF-8 without a byte-order mark: a view of `bytes` or of `*converted`. UTF-16 is
/// known by its byte-order mark or by the first two characters; everything else by the declaration,
/// UTF-8 when it names none. ISO-8859-1 and Windows-1252 are converted. A text of ASCII alone may
/// declare any other encoding. Throws TKvError for an encoding that is not read. What is converted
/// is not checked: a broken surrogate becomes U+FFFD.
std::string_view XmlAsUtf8(std::string_view bytes, std::string* converted);

}  // namespace kv
