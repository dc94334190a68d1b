#include "host/sample/SceneClouds.h"

#include <cstdlib>

#include "host/sample/SceneNoise.h"
#include "host/sample/SceneTerrain.h"

namespace ravelin {

namespace {

struct Cloud {
  int x;
  int y;
  int radius;
};

constexpr Cloud kClouds[] = {{1010, 120, 24}, {1046, 142, 19}, {968, 98, 13},  {1094, 196, 15},
                             {930, 196, 17},  {1150, 92, 17},  {1000, 236, 9}, {866, 128, 8},
                             {1120, 300, 12}, {838, 286, 13},  {872, 306, 9},  {120, 590, 17},
                             {152, 606, 12},  {70, 640, 9},    {210, 560, 7},  {480, 840, 12},
                             {1010, 800, 14}, {1048, 812, 9},  {640, 60, 8}};

/// Pixels from a shadow to its cloud, eastward and northward: a base 1,000 m above the ground.
constexpr int kShadowShift = 22;

/// The depth of the clouds, 0 where there are none.
SceneGrid<Fixed> PileUp() {
  const SceneNoise billows(611, 26, 4);
  const SceneNoise shapes(631, 44, 2);
  SceneGrid<Fixed> depth(kSceneWidth, kSceneHeight);
  for (const Cloud& cloud : kClouds) {
    const int reach = 2 * cloud.radius;
    for (int y = std::max(0, cloud.y - reach); y < std::min(kSceneHeight, cloud.y + reach); ++y) {
      for (int x = std::max(0, cloud.x - reach); x < std::min(kSceneWidth, cloud.x + reach); ++x) {
        const Fixed distance =
            Length((x - cloud.x) * kOne, (y - cloud.y) * kOne * 5 / 4) / cloud.radius;
        const Fixed ragged = Times(billows.At(x * kOne, y * kOne), 78000) +
                             Times(shapes.At(x * kOne, y * kOne), 50000);
        depth(x, y) = std::max(depth(x, y), kOne - distance + ragged);
      }
    }
  }
  return depth;
}

/// Thin at the edge for some way, then closed.
Fixed CoverOf(Fixed depth) {
  const Fixed closed = SmoothStep(-FixedRatio(12, 100), FixedRatio(66, 100), depth);
  return Times(closed, closed);
}

/// Brighter where the cloud is deep and on the side of the sun.
Fixed BrightnessAt(const SceneGrid<Fixed>& depth, int x, int y) {
  const int east = std::min(x + 3, kSceneWidth - 1);
  const int north = std::max(y - 3, 0);
  const Fixed towardsSun = depth(x, y) - depth(east, north);
  const Fixed brightness = FixedRatio(30, 100) + Times(depth(x, y), FixedRatio(24, 100)) +
                           Times(towardsSun, FixedRatio(40, 100));
  return std::clamp(brightness, FixedRatio(22, 100), FixedRatio(80, 100));
}

/// The shadow has a soft edge: it is the mean of the cover around the cloud.
Fixed ShadowAt(const SceneGrid<Fixed>& cover, int x, int y) {
  Fixed sum = 0;
  for (int dy = -2; dy <= 2; dy += 2) {
    for (int dx = -2; dx <= 2; dx += 2) {
      const int cloudX = x + kShadowShift + dx;
      const int cloudY = y - kShadowShift + dy;
      if (cover.Contains(cloudX, cloudY)) sum += cover(cloudX, cloudY);
    }
  }
  return sum / 9;
}

}  // namespace

SceneClouds MakeClouds() {
  const SceneGrid<Fixed> depth = PileUp();
  SceneClouds clouds{depth, depth, depth};
  for (std::size_t i = 0; i < depth.Size(); ++i) clouds.cover[i] = CoverOf(depth[i]);
  for (int y = 0; y < kSceneHeight; ++y) {
    for (int x = 0; x < kSceneWidth; ++x) {
      clouds.brightness(x, y) = BrightnessAt(depth, x, y);
      clouds.shadow(x, y) = ShadowAt(clouds.cover, x, y);
    }
  }
  return clouds;
}

}  // namespace ravelin
