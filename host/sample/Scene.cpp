#include "host/sample/Scene.h"

#include "host/sample/SceneClouds.h"
#include "host/sample/SceneCover.h"
#include "host/sample/SceneNoise.h"

namespace ravelin {

namespace {

/// Light from the sky, of all light on level ground: more in blue than in infrared.
constexpr Spectrum kSkylight = Reflectance(3000, 2800, 2600, 2000);
/// Haze between ground and sensor.
constexpr Spectrum kHaze = Reflectance(35, 22, 14, 5);
/// The largest part that the sensor's noise adds or takes.
constexpr Fixed kSensorNoise = FixedRatio(11, 10000);
constexpr std::uint32_t kNoiseSeed = 701;

using Picture = SceneGrid<Spectrum>;

Spectrum Illuminate(const Spectrum& ground, Fixed sunlight) {
  Spectrum seen;
  for (std::size_t band = 0; band < ground.size(); ++band) {
    const Fixed light = kSkylight[band] + Times(kOne - kSkylight[band], sunlight);
    seen[band] = Times(ground[band], light) + kHaze[band];
  }
  return seen;
}

Picture PaintScene() {
  const SceneTerrain terrain = MakeTerrain();
  const SceneClouds clouds = MakeClouds();
  const SceneCover cover(terrain);
  Picture picture(kSceneWidth, kSceneHeight);
  for (int y = 0; y < kSceneHeight; ++y) {
    for (int x = 0; x < kSceneWidth; ++x) {
      const Fixed sunlight =
          Times(terrain.light(x, y), kOne - Times(clouds.shadow(x, y), FixedRatio(88, 100)));
      const Fixed brightness = clouds.brightness(x, y);
      const Spectrum cloud{brightness, brightness, brightness, brightness - brightness / 20};
      picture(x, y) = Mix(Illuminate(cover.At(x, y), sunlight), cloud, clouds.cover(x, y));
    }
  }
  return picture;
}

/// What the sensor's optics make of a pixel: its neighbours shine in.
Fixed Blur(const Picture& picture, int x, int y, std::size_t band) {
  const int left = std::max(x - 1, 0);
  const int right = std::min(x + 1, picture.Width() - 1);
  const auto row = [&](int atY) {
    return picture(left, atY)[band] + 4 * picture(x, atY)[band] + picture(right, atY)[band];
  };
  const int above = std::max(y - 1, 0);
  const int below = std::min(y + 1, picture.Height() - 1);
  return (row(above) + 4 * row(y) + row(below)) / 36;
}

std::uint16_t ToSample(Fixed reflectance) {
  const std::int64_t tenMillionths = std::int64_t{reflectance} * 10000000 / kOne;
  return static_cast<std::uint16_t>(
      std::clamp<std::int64_t>((tenMillionths + 2000000) / 275, 1, 65535));
}

SceneGrid<std::uint16_t> Sense(const Picture& picture, std::size_t band) {
  SceneGrid<std::uint16_t> samples(picture.Width(), picture.Height());
  const std::uint32_t seed = kNoiseSeed + static_cast<std::uint32_t>(band);
  for (int y = 0; y < picture.Height(); ++y) {
    for (int x = 0; x < picture.Width(); ++x) {
      const Fixed noise = Times(2 * SceneRandom(x, y, seed) - kOne, kSensorNoise);
      samples(x, y) = ToSample(Blur(picture, x, y, band) + noise);
    }
  }
  return samples;
}

}  // namespace

Scene MakeScene() {
  const Picture picture = PaintScene();
  Scene scene;
  for (std::size_t band = 0; band < scene.size(); ++band) scene[band] = Sense(picture, band);
  return scene;
}

}  // namespace ravelin
