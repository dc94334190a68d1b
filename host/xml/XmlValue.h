// Single values of an XML-ini document.
#pragma once

#include <string>

namespace ravelin {

/// The value that `path` leads to, SECTION/.../NAME, in the text of an XML-ini document that was
/// read from `file`. In a name of the path, "\/" is a slash and "\\" a backslash; any other
/// backslash is itself. Throws HostError for what is no such document, and for a part of the path
/// that is not there, naming what is.
std::string XmlValue(const std::string& text, const std::string& path, const std::string& file);

}  // namespace ravelin
