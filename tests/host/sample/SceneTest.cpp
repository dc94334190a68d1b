#include "host/sample/Scene.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

namespace ravelin {
namespace {

enum Band : std::size_t { kBlue, kGreen, kRed, kNir };

double ReflectanceOf(std::uint16_t sample) {
  return sample * 0.0000275 - 0.2;
}

/// The scene, made once for each test process.
const Scene& TheScene() {
  static const Scene scene = MakeScene();
  return scene;
}

using Colour = std::array<double, kSceneBands>;

Colour ColourAt(std::size_t pixel) {
  Colour colour;
  for (std::size_t band = 0; band < colour.size(); ++band) {
    colour[band] = ReflectanceOf(TheScene()[band][pixel]);
  }
  return colour;
}

double VegetationIndex(const Colour& colour) {
  return (colour[kNir] - colour[kRed]) / (colour[kNir] + colour[kRed]);
}

bool IsBright(const Colour& colour) {
  return colour[kBlue] > 0.3 && colour[kGreen] > 0.3 && colour[kRed] > 0.3 && colour[kNir] > 0.3;
}

bool IsWater(const Colour& colour) {
  return colour[kNir] < 0.05;
}

/// The part of all pixels for which `condition` holds.
template <class Condition>
double Share(const Condition& condition) {
  const std::size_t count = TheScene()[0].Size();
  std::size_t hits = 0;
  for (std::size_t pixel = 0; pixel < count; ++pixel) hits += condition(ColourAt(pixel)) ? 1u : 0u;
  return static_cast<double>(hits) / static_cast<double>(count);
}

/// The mean colour of the pixels for which `condition` holds.
template <class Condition>
Colour MeanColour(const Condition& condition) {
  Colour sum = {};
  double count = 0;
  for (std::size_t pixel = 0; pixel < TheScene()[0].Size(); ++pixel) {
    const Colour colour = ColourAt(pixel);
    if (!condition(colour)) continue;
    for (std::size_t band = 0; band < sum.size(); ++band) sum[band] += colour[band];
    ++count;
  }
  for (double& value : sum) value /= count;
  return sum;
}

/// How alike samples are that lie `dx` and `dy` apart: 1 the same, 0 unrelated.
double Correlation(const SceneGrid<std::uint16_t>& band, int dx, int dy) {
  double count = 0, sumA = 0, sumB = 0, sumAA = 0, sumBB = 0, sumAB = 0;
  for (int y = 0; y + dy < band.Height(); ++y) {
    for (int x = 0; x + dx < band.Width(); ++x) {
      const double a = band(x, y);
      const double b = band(x + dx, y + dy);
      ++count;
      sumA += a;
      sumB += b;
      sumAA += a * a;
      sumBB += b * b;
      sumAB += a * b;
    }
  }
  return (count * sumAB - sumA * sumB) /
         std::sqrt((count * sumAA - sumA * sumA) * (count * sumBB - sumB * sumB));
}

TEST(Scene, HasFourBandsOf1200By900) {
  ASSERT_EQ(TheScene().size(), 4u);
  for (const auto& band : TheScene()) {
    EXPECT_EQ(band.Width(), 1200);
    EXPECT_EQ(band.Height(), 900);
  }
}

TEST(Scene, IsTheSameEachTimeItIsMade) {
  const Scene again = MakeScene();
  for (std::size_t band = 0; band < again.size(); ++band) {
    for (std::size_t pixel = 0; pixel < again[band].Size(); ++pixel) {
      ASSERT_EQ(again[band][pixel], TheScene()[band][pixel]) << band << " " << pixel;
    }
  }
}

TEST(Scene, SamplesAreThoseOfSurfaceReflectance) {
  for (const auto& band : TheScene()) {
    for (std::size_t pixel = 0; pixel < band.Size(); ++pixel) {
      ASSERT_GE(band[pixel], 7000);
      ASSERT_LE(band[pixel], 45000);
    }
  }
}

TEST(Scene, AnEighthIsWater) {
  const double water = Share(IsWater);
  EXPECT_GT(water, 0.10);
  EXPECT_LT(water, 0.17);
}

TEST(Scene, WaterIsDarkestInTheNearInfrared) {
  const Colour water = MeanColour(IsWater);
  EXPECT_LT(water[kNir], water[kRed]);
  EXPECT_LT(water[kRed], water[kGreen]);
  EXPECT_LT(water[kRed], water[kBlue]);
}

TEST(Scene, CloudsAndSnowTakeLessThanTheTopTwoPercent) {
  const double bright = Share(IsBright);
  EXPECT_GT(bright, 0.003);
  EXPECT_LT(bright, 0.015);
}

TEST(Scene, VegetationIsDarkInRedAndBrightInTheNearInfrared) {
  const Colour plants = MeanColour([](const Colour& c) { return VegetationIndex(c) > 0.6; });
  EXPECT_GT(plants[kGreen], plants[kRed]);
  EXPECT_GT(plants[kGreen], plants[kBlue]);
  EXPECT_GT(plants[kNir], 5 * plants[kRed]);
}

TEST(Scene, SoilAndRockAreBrighterInRedThanInBlue) {
  const Colour bare = MeanColour(
      [](const Colour& c) { return !IsWater(c) && !IsBright(c) && VegetationIndex(c) < 0.35; });
  EXPECT_GT(bare[kRed], 1.2 * bare[kBlue]);
  EXPECT_GT(bare[kNir], bare[kRed]);
}

TEST(Scene, TheVegetationIndexHasAPeakForWaterAndOneForPlants) {
  const auto within = [](double from, double to) {
    return Share([=](const Colour& c) {
      const double index = VegetationIndex(c);
      return index >= from && index < to;
    });
  };
  const double water = within(-0.6, -0.2);
  const double between = within(-0.2, 0.2);
  const double plants = within(0.6, 1.0);
  EXPECT_GT(water, 0.08);
  EXPECT_LT(between, water / 2);
  EXPECT_GT(plants, 0.4);
}

TEST(Scene, CloudsCastShadowsAwayFromTheSun) {
  const int shift = 22;
  double towards = 0, away = 0, count = 0;
  for (int y = 60; y < 250; ++y) {
    for (int x = 900; x < kSceneWidth - shift; ++x) {
      if (!IsBright(ColourAt(TheScene()[0].Index(x, y)))) continue;
      towards += ReflectanceOf(TheScene()[kNir](x + shift, y - shift));
      away += ReflectanceOf(TheScene()[kNir](x - shift, y + shift));
      ++count;
    }
  }
  ASSERT_GT(count, 1000);
  EXPECT_LT(away / count, 0.6 * towards / count);
}

TEST(Scene, NeighboursAreAlikeInBothDirections) {
  for (const auto& band : TheScene()) {
    const double across = Correlation(band, 1, 0);
    const double down = Correlation(band, 0, 1);
    EXPECT_GT(across, 0.93);
    EXPECT_GT(down, 0.93);
    EXPECT_NEAR(across, down, 0.01);
  }
}

TEST(Scene, DistantPlacesDiffer) {
  for (const auto& band : TheScene()) {
    EXPECT_LT(Correlation(band, 150, 0), 0.5);
    EXPECT_LT(Correlation(band, 0, 150), 0.5);
  }
}

TEST(Scene, TheSensorIsQuiet) {
  for (const auto& band : TheScene()) {
    double sum = 0, squares = 0, count = 0;
    for (int y = 870; y < 890; ++y) {
      for (int x = 1170; x < 1190; ++x) {
        sum += band(x, y);
        squares += static_cast<double>(band(x, y)) * band(x, y);
        ++count;
      }
    }
    const double deviation = std::sqrt(squares / count - sum / count * sum / count);
    EXPECT_GT(deviation, 3);
    EXPECT_LT(deviation, 60);
  }
}

}  // namespace
}  // namespace ravelin
