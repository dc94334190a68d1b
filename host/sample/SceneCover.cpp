#include "host/sample/SceneCover.h"

namespace ravelin {

namespace {

constexpr Spectrum kDeepSea = Reflectance(330, 250, 110, 60);
constexpr Spectrum kShallowSea = Reflectance(560, 620, 310, 90);
constexpr Spectrum kMuddySea = Reflectance(640, 800, 660, 210);
constexpr Spectrum kSurf = Reflectance(1000, 1080, 1050, 800);
constexpr Spectrum kSand = Reflectance(1150, 1450, 1750, 2300);
constexpr Spectrum kRiver = Reflectance(430, 520, 360, 160);
constexpr Spectrum kGravel = Reflectance(800, 980, 1110, 1500);
constexpr Spectrum kConifers = Reflectance(170, 290, 190, 2200);
constexpr Spectrum kBroadleaf = Reflectance(210, 430, 240, 3400);
constexpr Spectrum kMeadow = Reflectance(390, 720, 520, 3400);
constexpr Spectrum kTussock = Reflectance(480, 720, 860, 2500);
constexpr Spectrum kRock = Reflectance(620, 730, 800, 1300);
constexpr Spectrum kScree = Reflectance(800, 930, 1030, 1500);
constexpr Spectrum kSnow = Reflectance(6900, 6900, 6700, 5600);

constexpr Fixed Pixels(int count) {
  return count * kOne;
}
constexpr Fixed Metres(int count) {
  return count * kOne;
}
constexpr Fixed Percent(int count) {
  return FixedRatio(count, 100);
}

/// Where the main river meets the sea.
constexpr Fixed kMouthX = Pixels(874);
constexpr Fixed kMouthY = Pixels(690);

}  // namespace

struct SceneCover::Site {
  int column;
  int row;
  Fixed x;
  Fixed y;
  Fixed height;
  Fixed slope;
  Fixed shore;
  Fixed bank;
  Fixed region;
  Fixed patch;
  Fixed grain;
};

Spectrum SceneCover::At(int x, int y) const {
  const Fixed placeX = Pixels(x) + kOne / 2;
  const Fixed placeY = Pixels(y) + kOne / 2;
  const Site site{x,
                  y,
                  placeX,
                  placeY,
                  terrain_.height(x, y),
                  terrain_.slope(x, y),
                  terrain_.shore(x, y),
                  terrain_.bank(x, y),
                  regions_.At(placeX, placeY),
                  patches_.At(placeX, placeY),
                  grain_.At(placeX, placeY)};
  return site.shore <= 0 ? SeaAt(site) : LandAt(site);
}

Spectrum SceneCover::SeaAt(const Site& site) const {
  const Fixed depth = -site.shore;
  const Fixed deep = SmoothStep(0, Pixels(70), depth + 24 * site.region + 8 * site.patch);
  const Fixed fromMouth = Length(site.x - kMouthX - depth / 3, site.y - kMouthY);
  const Fixed mud =
      kOne - SmoothStep(Pixels(0), Pixels(170), fromMouth + 34 * site.region + 7 * site.patch);
  Spectrum sea = Mix(kShallowSea, kDeepSea, deep);
  sea = Mix(sea, kMuddySea, Times(mud, Percent(85)));
  const Fixed surf = kOne - SmoothStep(kOne / 2, Pixels(2), depth + site.grain);
  return Mix(sea, kSurf, surf / 2);
}

Spectrum SceneCover::LandAt(const Site& site) const {
  const Fixed steep = SmoothStep(Percent(9), Percent(16), site.slope + site.patch / 20);
  const Fixed high = SmoothStep(Metres(330), Metres(420), site.height + 60 * site.patch);
  const Fixed mountain = std::max(steep, high);
  Spectrum land{};
  if (mountain < kOne) land = PlainAt(site);
  if (mountain > 0) land = Mix(land, MountainAt(site), mountain);
  return AddRiver(site, AddBeach(site, land));
}

Spectrum SceneCover::PlainAt(const Site& site) const {
  Spectrum plain = fields_.At(site.x, site.y);
  const Fixed wooded = SmoothStep(Percent(34), Percent(40), site.region + site.patch / 2);
  const Fixed riverside = kOne - SmoothStep(Pixels(3), Pixels(5), site.bank - 5 * site.patch);
  plain = Mix(plain, WoodAt(site), std::max(wooded, riverside));
  const Fixed builtUp = towns_.BuiltUpAt(site.column, site.row);
  if (builtUp > 0) plain = Mix(plain, towns_.StreetsAt(site.column, site.row), builtUp);
  return Mix(plain, kRoad, Times(towns_.RoadAt(site.column, site.row), Percent(80)));
}

Spectrum SceneCover::WoodAt(const Site& site) const {
  const Fixed conifers =
      SmoothStep(-Percent(15), Percent(15), site.region - site.patch / 2 + site.height / 2000);
  const Fixed tone = kOne + site.grain / 5 + site.patch / 8;
  return Brighten(Mix(kBroadleaf, kConifers, conifers), tone);
}

Spectrum SceneCover::MountainAt(const Site& site) const {
  const Fixed level = site.height + 170 * site.region + 90 * site.patch;
  const Fixed tone = kOne + site.grain / 7 + site.patch / 7;
  Spectrum ground =
      Brighten(Mix(kMeadow, kTussock, SmoothStep(Metres(200), Metres(800), level)), tone);
  const Fixed wooded = SmoothStep(-Percent(20), -Percent(6), site.patch - site.region / 2);
  const Fixed belowTreeLine = kOne - SmoothStep(Metres(930), Metres(1040), level + 40 * site.grain);
  ground = Mix(ground, WoodAt(site), Times(wooded, belowTreeLine));
  const Fixed bare = std::max(SmoothStep(Metres(1180), Metres(1520), level + 100 * site.grain),
                              SmoothStep(Percent(98), Percent(125), site.slope + site.patch / 3));
  const Spectrum stone = Mix(kRock, kScree, SmoothStep(-Percent(10), Percent(30), site.patch));
  ground = Mix(ground, Brighten(stone, tone), bare);
  const Fixed snowLine = site.height + 130 * site.patch + 60 * site.grain -
                         220 * std::max(0, site.slope - Percent(50));
  return Mix(ground, kSnow, SmoothStep(Metres(1540), Metres(1640), snowLine));
}

Spectrum SceneCover::AddBeach(const Site& site, const Spectrum& land) const {
  const Fixed width = Pixels(3) + 4 * site.patch + 4 * site.region;
  return Mix(land, kSand, kOne - SmoothStep(0, kOne, site.shore - width));
}

Spectrum SceneCover::AddRiver(const Site& site, const Spectrum& land) const {
  const Fixed gravel = kOne - SmoothStep(-kOne / 2, kOne * 3 / 2, site.bank - 4 * site.patch);
  const Fixed bars = SmoothStep(-Percent(5), Percent(15), site.region + site.grain / 4);
  const Spectrum banks = Mix(land, kGravel, Times(gravel, bars));
  return Mix(banks, kRiver, std::clamp(kOne / 2 - site.bank, 0, kOne));
}

}  // namespace ravelin
