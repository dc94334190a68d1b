// Words and lists of words in scripts of shells.
#pragma once

#include <string>
#include <vector>

#include "host/ValueKind.h"

namespace ravelin {

/// The text as one word of bash and zsh.
std::string ShellQuoted(const std::string& text);

std::string Joined(const std::vector<std::string>& words, const std::string& separator);

/// The keys of a file with a key, each with its '='.
std::vector<std::string> Keys(const ValueKind& kind);
/// What may stand behind its ':'.
std::vector<std::string> Endings(const ValueKind& kind);

}  // namespace ravelin
