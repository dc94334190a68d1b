#include "host/sample/SceneTowns.h"

#include <cstdlib>
#include <iterator>

#include "host/sample/SceneTerrain.h"

namespace ravelin {

namespace {

struct Town {
  int x;
  int y;
  int radius;
  Fixed cosine;  ///< direction of its streets
  Fixed sine;
};

constexpr Town kTowns[] = {
    {735, 500, 52, 61183, 23486}, {905, 640, 26, 53020, 38521},  {425, 470, 20, 65177, 6850},
    {330, 640, 22, 41243, 50931}, {1010, 420, 18, 26656, 59870}, {560, 780, 16, 61183, 23486},
    {1110, 560, 14, 65177, 6850}, {290, 300, 12, 53020, 38521},  {130, 780, 13, 41243, 50931},
};

struct Road {
  std::size_t from;
  std::size_t to;
};

constexpr Road kRoads[] = {{0, 1}, {0, 2}, {0, 4}, {2, 7}, {2, 3}, {0, 5}, {3, 8}, {4, 6}, {3, 5}};

constexpr int kBlock = 7;
constexpr std::uint32_t kHouseSeed = 551;

constexpr Spectrum kStreet = Reflectance(720, 790, 840, 1450);
constexpr Spectrum kGarden = Reflectance(360, 610, 450, 2900);
constexpr Spectrum kRoofs[] = {Reflectance(780, 840, 900, 1400), Reflectance(600, 740, 1050, 1700),
                               Reflectance(1250, 1360, 1430, 1900),
                               Reflectance(520, 570, 610, 1150)};

int Remainder(int value, int divisor) {
  return ((value % divisor) + divisor) % divisor;
}

}  // namespace

SceneTowns::SceneTowns() : roads_(kSceneWidth, kSceneHeight) {
  for (const Road& road : kRoads) LayRoad(road.from, road.to);
}

Fixed SceneTowns::BuiltUpAt(int x, int y) const {
  Fixed builtUp = 0;
  for (const Town& town : kTowns) {
    if (std::abs(x - town.x) > 2 * town.radius || std::abs(y - town.y) > 2 * town.radius) continue;
    const Fixed distance = Length((x - town.x) * kOne, (y - town.y) * kOne) / town.radius;
    const Fixed density = kOne - distance + Times(outskirts_.At(x * kOne, y * kOne), 55000);
    builtUp = std::max(builtUp, SmoothStep(0, kOne / 5, density));
  }
  return builtUp;
}

Spectrum SceneTowns::StreetsAt(int x, int y) const {
  const Town* nearest = &kTowns[0];
  for (const Town& town : kTowns) {
    if (Length(x - town.x, y - town.y) < Length(x - nearest->x, y - nearest->y)) nearest = &town;
  }
  const int across =
      (Times(x * kOne, nearest->cosine) + Times(y * kOne, nearest->sine)) >> kFixedBits;
  const int along =
      (Times(y * kOne, nearest->cosine) - Times(x * kOne, nearest->sine)) >> kFixedBits;
  if (Remainder(across, kBlock) == 0 || Remainder(along, kBlock + 3) == 0) return kStreet;
  const std::uint32_t house = SceneHash(across / 2, along / 2, kHouseSeed);
  if (house % 5u < 2u) return kGarden;
  const std::uint32_t roof = (house >> 8) % 16u;
  return kRoofs[roof < 6 ? 0 : roof < 10 ? 1 : roof < 11 ? 2 : 3];
}

void SceneTowns::LayRoad(std::size_t from, std::size_t to) {
  const Town& a = kTowns[from];
  const Town& b = kTowns[to];
  const int steps = 4 * std::max(std::abs(b.x - a.x), std::abs(b.y - a.y));
  for (int step = 0; step <= steps; ++step) {
    const Fixed part = FixedRatio(step, steps);
    const Fixed x = Mix(a.x * kOne, b.x * kOne, part);
    const Fixed y = Mix(a.y * kOne, b.y * kOne, part);
    const Fixed slack = 90 * Times(part, kOne - part);
    Pave(x + Times(slack, bends_.At(x, y)), y + Times(slack, bends_.At(y, x)));
  }
}

void SceneTowns::Pave(Fixed x, Fixed y) {
  for (int row = (y >> kFixedBits) - 1; row <= (y >> kFixedBits) + 1; ++row) {
    for (int column = (x >> kFixedBits) - 1; column <= (x >> kFixedBits) + 1; ++column) {
      if (!roads_.Contains(column, row)) continue;
      const Fixed away = Length(column * kOne + kOne / 2 - x, row * kOne + kOne / 2 - y);
      roads_(column, row) = std::max(roads_(column, row), std::clamp(kOne - away, 0, kOne));
    }
  }
}

}  // namespace ravelin
