// Output texts, to a file or to standard output.
#pragma once

#include <string>

namespace ravelin {

/// Writes to standard output; throws HostError when that takes less.
void PrintText(const std::string& text);

/// Writes the file at `path`, which appears only when it is complete, or prints the text when the
/// path is empty. Throws HostError.
void WriteTextOutput(const std::string& text, const std::string& path);

}  // namespace ravelin
