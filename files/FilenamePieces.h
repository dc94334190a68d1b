// File names in pieces.
#pragma once

#include <string>
#include <vector>

namespace SatCommonUtils {

/// Replaces what `*pieces` holds by the runs of bytes between the dots of the name: n dots give
/// n + 1 pieces, empty ones included. "a..b" gives "a", "" and "b"; an empty name one empty piece.
void break_filename(std::string name, std::vector<std::string>* pieces);

}  // namespace SatCommonUtils
