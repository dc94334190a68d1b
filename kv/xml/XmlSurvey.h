// One look over an XML text before it is parsed.
#pragma once

#include <string_view>

namespace kv {

/// What a text holds. What it does not hold needs no further look at the text.
struct XmlSurvey {
  bool odd = false;        ///< bytes beyond ASCII, or control characters that XML does not allow
  bool reference = false;  ///< '&'
  bool piece = false;      ///< "<!" or "<?" behind its first byte
  bool mark = false;       ///< the first two bytes of a mark
};

/// Looks at the whole text once, at memory speed. A mark does not begin with '<'; one of fewer than
/// two bytes is not looked for.
XmlSurvey SurveyXml(std::string_view text, std::string_view mark);

}  // namespace kv
