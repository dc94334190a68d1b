// Reflectances of the demonstration scene in its four bands.
#pragma once

#include <array>

#include "host/sample/SceneFixed.h"

namespace ravelin {

inline constexpr int kSceneBands = 4;

/// Blue, green, red, near infrared; reflectance, 1 for a white surface.
using Spectrum = std::array<Fixed, kSceneBands>;

/// From ten-thousandths.
constexpr Spectrum Reflectance(int blue, int green, int red, int nearInfrared) {
  return {FixedRatio(blue, 10000), FixedRatio(green, 10000), FixedRatio(red, 10000),
          FixedRatio(nearInfrared, 10000)};
}

constexpr Spectrum Mix(const Spectrum& a, const Spectrum& b, Fixed share) {
  return {Mix(a[0], b[0], share), Mix(a[1], b[1], share), Mix(a[2], b[2], share),
          Mix(a[3], b[3], share)};
}

constexpr Spectrum Brighten(const Spectrum& spectrum, Fixed factor) {
  return {Times(spectrum[0], factor), Times(spectrum[1], factor), Times(spectrum[2], factor),
          Times(spectrum[3], factor)};
}

}  // namespace ravelin
