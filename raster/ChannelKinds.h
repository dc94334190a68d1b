// The channel-kind codes that the module writes.
#pragma once

namespace SatCommonUtils {

inline constexpr int kSingleBand = 1;
inline constexpr int kThirdVisible = 3;
inline constexpr int kSecondVisible = 4;
inline constexpr int kFirstVisible = 6;
inline constexpr int kOtherBand = 32;

}  // namespace SatCommonUtils
