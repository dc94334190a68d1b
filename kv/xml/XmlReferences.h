// Entity and character references in XML text.
#pragma once

#include <cstddef>
#include <string_view>

namespace kv {

/// The offset of the first '&' that begins neither one of XML's five entities nor a reference to a
/// character that XML allows; npos when there is none. Comments, CDATA sections and processing
/// instructions hold no references. Linear; looks at markup only when there is a '&' to doubt.
std::size_t FindUnknownReference(std::string_view text);

}  // namespace kv
