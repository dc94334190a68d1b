#include "host/sample/SceneFields.h"

#include <limits>

namespace ravelin {

namespace {

constexpr int kDistrictSize = 118;
constexpr std::uint32_t kDistrictSeed = 401;
constexpr std::uint32_t kStripSeed = 431;
constexpr std::uint32_t kParcelSeed = 461;

struct District {
  std::uint32_t number = 0;
  Fixed centreX = 0;
  Fixed centreY = 0;
  Fixed edge = 0;  ///< pixels to the next district, about
};

District DistrictOf(int column, int row) {
  const Fixed size = kDistrictSize * kOne;
  return {SceneHash(column, row, kDistrictSeed),
          column * size + Times(size, SceneRandom(column, row, kDistrictSeed + 1)),
          row * size + Times(size, SceneRandom(column, row, kDistrictSeed + 2)), 0};
}

District DistrictAt(Fixed x, Fixed y) {
  const int column = (x >> kFixedBits) / kDistrictSize;
  const int row = (y >> kFixedBits) / kDistrictSize;
  District nearest;
  Fixed least = std::numeric_limits<Fixed>::max();
  Fixed second = least;
  for (int i = 0; i < 9; ++i) {
    const District candidate = DistrictOf(column - 1 + i % 3, row - 1 + i / 3);
    const Fixed distance = Length(x - candidate.centreX, y - candidate.centreY);
    if (distance < least) {
      second = least;
      least = distance;
      nearest = candidate;
    } else {
      second = std::min(second, distance);
    }
  }
  nearest.edge = (second - least) / 2;
  return nearest;
}

struct Direction {
  Fixed cosine;
  Fixed sine;
};

/// Every 15 degrees, shifted by 6.
constexpr Direction kDirections[] = {{65177, 6850},  {61183, 23486}, {53020, 38521},
                                     {41243, 50931}, {26656, 59870}, {10252, 64729}};

/// A stretch of an axis cut at uneven places.
struct Slot {
  int number;
  Fixed edge;  ///< pixels to the nearer end
};

Fixed CutAt(int number, Fixed size, std::uint32_t seed) {
  const Fixed shift = SceneRandom(number, 0, seed) - kOne / 2;
  return number * size + Times(shift, size * 3 / 5);
}

Slot SlotAt(Fixed place, Fixed size, std::uint32_t seed) {
  int number = static_cast<int>((std::int64_t{place} - size / 2) / size);
  while (CutAt(number, size, seed) > place) --number;
  while (CutAt(number + 1, size, seed) <= place) ++number;
  const Fixed before = place - CutAt(number, size, seed);
  const Fixed after = CutAt(number + 1, size, seed) - place;
  return {number, std::min(before, after)};
}

struct Crop {
  int share;  ///< of all parcels, percent
  Spectrum spectrum;
};

constexpr Crop kCrops[] = {
    {20, Reflectance(330, 690, 360, 4300)},    // irrigated pasture
    {13, Reflectance(300, 560, 310, 3900)},    // maize
    {12, Reflectance(430, 780, 560, 3500)},    // meadow
    {9, Reflectance(480, 820, 760, 3000)},     // grazed grass
    {13, Reflectance(640, 1050, 1390, 2950)},  // ripe wheat
    {8, Reflectance(830, 1230, 1640, 2750)},   // stubble
    {11, Reflectance(560, 780, 1060, 1750)},   // dry soil
    {8, Reflectance(410, 540, 690, 1150)},     // fresh furrows
    {6, Reflectance(390, 960, 700, 3900)},     // rape past flower
};

Spectrum CropOf(std::uint32_t parcel) {
  int draw = static_cast<int>(parcel % 100u);
  for (const Crop& crop : kCrops) {
    draw -= crop.share;
    if (draw < 0) return crop.spectrum;
  }
  return kCrops[0].spectrum;
}

constexpr Spectrum kHedge = Reflectance(250, 430, 290, 2600);
constexpr Spectrum kTrack = Reflectance(760, 980, 1180, 2100);

/// Full on the line, 0 from `halfWidth` and half a pixel on.
Fixed LineShare(Fixed distance, Fixed halfWidth) {
  return std::clamp(halfWidth + kOne / 2 - distance, 0, kOne);
}

}  // namespace

Spectrum SceneFields::At(Fixed x, Fixed y) const {
  const Fixed bentX = x + 5 * edges_.At(x, y);
  const Fixed bentY = y + 5 * edges_.At(y, x);
  const District district = DistrictAt(bentX, bentY);
  const Direction& direction = kDirections[district.number % std::size(kDirections)];
  const Fixed offX = bentX - district.centreX;
  const Fixed offY = bentY - district.centreY;
  const Fixed across = Times(offX, direction.cosine) + Times(offY, direction.sine);
  const Fixed along = Times(offY, direction.cosine) - Times(offX, direction.sine);

  const Fixed stripWidth = (10 + static_cast<int>(district.number >> 8) % 8) * kOne;
  const Slot strip = SlotAt(across, stripWidth, district.number + kStripSeed);
  const std::uint32_t stripSeed = SceneHash(strip.number, 0, district.number);
  const Fixed parcelLength =
      stripWidth + Times(stripWidth * 3 / 2, static_cast<Fixed>(stripSeed & 0xFFFF));
  const Slot parcel = SlotAt(along, parcelLength, stripSeed + kParcelSeed);

  const std::uint32_t number = SceneHash(parcel.number, strip.number, district.number);
  const Fixed tone = kOne - kOne / 10 + static_cast<Fixed>(number >> 16) / 5 + growth_.At(x, y) / 7;
  Spectrum field = Brighten(CropOf(number >> 3), tone);
  const Fixed hedge = LineShare(std::min(strip.edge, parcel.edge), kOne / 4) * 3 / 5;
  field = Mix(field, (number & 1u) != 0 ? kHedge : field, hedge);
  return Mix(field, kTrack, LineShare(district.edge, kOne / 4) * 4 / 5);
}

}  // namespace ravelin
