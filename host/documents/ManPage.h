// The manual page of the command.
#pragma once

#include <string>

#include "host/documents/OptionTable.h"

namespace ravelin {

/// The page ravelin(1) for man, in roff.
std::string ManPage(const DocumentedCommand& program, const std::string& version);

/// The text as roff that prints just it, within a line and as an argument of a macro alike.
std::string RoffText(const std::string& text);

}  // namespace ravelin
