// The worker behind WktSectionToXml.
#pragma once

#include <string>

namespace SatCommonUtils {

/// Converts one section of a WKT text that starts at `*pos`, with all sections inside it.
///
/// With a `name`, `*pos` points at the section's '['. Without one the section is a document: its
/// XML begins with a declaration that names `encoding`, and what stands before the first '['
/// becomes its name. Appends the XML to `*out` and leaves `*pos` behind the closing ']', or at
/// `length` when the text ends first. False, and nothing is appended, when `*pos` is not before
/// `length`.
bool WktSectionToXml(const char* text, unsigned long length, unsigned long* pos,
                     unsigned long depth, const std::string& encoding, const std::string& name,
                     std::string* out);

}  // namespace SatCommonUtils
