// KEY=FILE[:big|:little]: how a band file is named.
#pragma once

#include <string>
#include <string_view>

#include "SatCommonUtils/Raster.h"

namespace ravelin {

using BytesOrder = SatCommonUtils::TRawWordDibData::TBytesOrder;

/// One band: its channel-kind code, its file and the byte order of its samples.
struct BandArgument {
  int key;
  std::string file;
  BytesOrder order;
};

/// Codes of the visible channels.
constexpr int kRedKey = 6;
constexpr int kGreenKey = 4;
constexpr int kBlueKey = 3;

/// Reads KEY: red, green, blue in any case, or a signed 32-bit number. Throws std::invalid_argument
/// saying what is wrong.
int ParseBandKey(std::string_view text);

/// Reads what follows the file name: nothing, ":big" or ":little". Throws std::invalid_argument.
BytesOrder ParseBytesOrder(std::string_view suffix);

/// Reads KEY=FILE[:big|:little]. FILE may hold colons: only a byte order at the very end is taken
/// off. Little when none is given. Throws std::invalid_argument saying what is wrong.
BandArgument ParseBandArgument(std::string_view text);

/// What a band is called in headers and listings: "Red", "Green", "Blue", else "Band KEY".
std::string BandName(int key);

}  // namespace ravelin
