#include "host/sample/SceneNoise.h"

#include <cstdlib>

namespace ravelin {

namespace {

struct Gradient {
  std::int32_t x;
  std::int32_t y;
};

/// 16 directions of equal length, about 1.4 in units of 1/256.
constexpr Gradient kGradients[16] = {{362, 0},  {334, 139},   {256, 256},   {139, 334},
                                     {0, 362},  {-139, 334},  {-256, 256},  {-334, 139},
                                     {-362, 0}, {-334, -139}, {-256, -256}, {-139, -334},
                                     {0, -362}, {139, -334},  {256, -256},  {334, -139}};

/// The share of the lattice point (x, y) at the offset (dx, dy) from it.
std::int32_t LatticeShare(std::int32_t x, std::int32_t y, std::uint32_t seed, Fixed dx, Fixed dy) {
  const Gradient& gradient = kGradients[SceneHash(x, y, seed) >> 28];
  return (gradient.x * (dx >> 4) + gradient.y * (dy >> 4)) >> 4;
}

/// 6 t^5 - 15 t^4 + 10 t^3.
Fixed Fade(Fixed t) {
  const Fixed inner = Times(t, Times(t, 6 * t - 15 * kOne) + 10 * kOne);
  return Times(Times(t, t), inner);
}

}  // namespace

std::uint32_t SceneHash(std::int32_t x, std::int32_t y, std::uint32_t seed) {
  std::uint32_t bits = seed * 0x9E3779B1u + static_cast<std::uint32_t>(x) * 0x85EBCA77u;
  bits = (bits ^ (bits >> 15)) + static_cast<std::uint32_t>(y) * 0xC2B2AE3Du;
  bits = (bits ^ (bits >> 16)) * 0x7FEB352Du;
  bits = (bits ^ (bits >> 15)) * 0x846CA68Bu;
  return bits ^ (bits >> 16);
}

Fixed SceneRandom(std::int32_t x, std::int32_t y, std::uint32_t seed) {
  return static_cast<Fixed>(SceneHash(x, y, seed) & 0xFFFFu);
}

SceneNoise::SceneNoise(std::uint32_t seed, int wavelength, int octaves)
    : seed_(seed), frequency_(kOne / wavelength), octaves_(octaves) {}

Fixed SceneNoise::OctaveAt(Fixed x, Fixed y, int octave) const {
  const std::int64_t scale = std::int64_t{frequency_} << octave;
  const std::int64_t wideX = (x * scale) >> kFixedBits;
  const std::int64_t wideY = (y * scale) >> kFixedBits;
  const auto left = static_cast<std::int32_t>(wideX >> kFixedBits);
  const auto top = static_cast<std::int32_t>(wideY >> kFixedBits);
  const auto dx = static_cast<Fixed>(wideX & (kOne - 1));
  const auto dy = static_cast<Fixed>(wideY & (kOne - 1));
  const std::uint32_t seed = seed_ + static_cast<std::uint32_t>(octave);
  const Fixed across = Fade(dx);
  const Fixed upper = Mix(LatticeShare(left, top, seed, dx, dy),
                          LatticeShare(left + 1, top, seed, dx - kOne, dy), across);
  const Fixed lower = Mix(LatticeShare(left, top + 1, seed, dx, dy - kOne),
                          LatticeShare(left + 1, top + 1, seed, dx - kOne, dy - kOne), across);
  return Mix(upper, lower, Fade(dy));
}

Fixed SceneNoise::At(Fixed x, Fixed y) const {
  Fixed sum = 0;
  for (int octave = 0; octave < octaves_; ++octave) sum += OctaveAt(x, y, octave) >> octave;
  return sum;
}

Fixed SceneNoise::RidgesAt(Fixed x, Fixed y) const {
  Fixed sum = 0;
  Fixed weight = kOne;
  for (int octave = 0; octave < octaves_; ++octave) {
    const Fixed crest = std::max(0, kOne - 2 * std::abs(OctaveAt(x, y, octave)));
    const Fixed share = Times(Times(crest, crest), weight);
    sum += share >> (octave + 1);
    weight = std::min(kOne, 2 * share);
  }
  return sum;
}

}  // namespace ravelin
