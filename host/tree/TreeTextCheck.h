// Whether a text is a data tree as one is written: reading itself takes anything.
#pragma once

#include <string>

namespace ravelin {

/// Throws HostError with the line and the reason when the text, which was read from `file`, is not
/// exactly one tree: lines of wrong form, counts that differ from the values there, trees that stay
/// open, text behind the tree.
void CheckTreeText(const std::string& text, const std::string& file);

}  // namespace ravelin
