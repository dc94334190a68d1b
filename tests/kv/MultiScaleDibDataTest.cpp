#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <new>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "Kv/Raster.h"

namespace {

using Size = vec_t_<unsigned long, 2>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kHuge = std::numeric_limits<double>::max();
constexpr double kTiny = std::numeric_limits<double>::denorm_min();
constexpr long kLargestEdge = 1L << 52;

// Supplies what TKvMultiScaleDibData leaves pure and opens its bounds.
class LeveledDibData : public TKvMultiScaleDibData {
 public:
  using TKvMultiScaleDibData::GetRect;
  using TKvMultiScaleDibData::levelBounds;

  LeveledDibData() = default;
  LeveledDibData(Size size, unsigned long levels) { FillDefaultLevelBounds(size, levels); }
  const TKvDibChannels& Channels() const override { return channels_; }
  void PurgeCache() override {}

 private:
  TKvDibChannels channels_{0, 1, {1}};
};

// Records the calls of the level form.
class RecordingDibData : public LeveledDibData {
 public:
  using LeveledDibData::GetRect;
  using LeveledDibData::LeveledDibData;
  int GetRect(unsigned long level, const TKvDibRectI& rect,
              const TKvDibDataOutBuffer& out) override {
    ++calls;
    lastLevel = level;
    lastRect = rect;
    lastOut = out;
    return kvDibWritten;
  }
  int calls = 0;
  unsigned long lastLevel = 0;
  TKvDibRectI lastRect{};
  TKvDibDataOutBuffer lastOut{};
};

TKvDibRect Request(double x, double y, double w, double h, double scale) {
  return {{{x, y}}, {{w, h}}, scale};
}

// A request of scale `scale` that is valid otherwise.
TKvDibRect AtScale(double scale) {
  return Request(0, 0, 10, 10, scale);
}

std::string Text(const TKvDibRectI& r) {
  return std::to_string(r.x) + " " + std::to_string(r.y) + " " + std::to_string(r.w) + " " +
         std::to_string(r.h);
}

std::string Text(unsigned long level, const TKvDibRectI& r) {
  return std::to_string(level) + ": " + Text(r);
}

// "level: x y w h" of Rect2RectI on a raster of 100 x 80 pixels and 3 levels.
std::string Converted(const TKvDibRect& rect, bool clip = false) {
  LeveledDibData raster({{100, 80}}, 3);
  TKvDibRectI rectI{1, 2, 3, 4};
  const unsigned long level = raster.Rect2RectI(rect, iqNearest, 0, &rectI, clip);
  return Text(level, rectI);
}

const std::vector<TKvDibRect>& InvalidRequests() {
  static const std::vector<TKvDibRect> kRequests = {
      Request(kNaN, 0, 10, 10, 4),      Request(0, kNaN, 10, 10, 4),
      Request(kInfinity, 0, 10, 10, 4), Request(0, -kInfinity, 10, 10, 4),
      Request(0, 0, kNaN, 10, 4),       Request(0, 0, 10, kNaN, 4),
      Request(0, 0, kInfinity, 10, 4),  Request(0, 0, 10, kInfinity, 4),
      Request(0, 0, -kInfinity, 10, 4), Request(0, 0, -1, 10, 4),
      Request(0, 0, 10, -kTiny, 4),     Request(0, 0, 10, 10, 0),
      Request(0, 0, 10, 10, -4),        Request(0, 0, 10, 10, kNaN),
      Request(0, 0, 10, 10, kInfinity), Request(0, 0, 10, 10, -kInfinity),
      Request(5, 5, -kHuge, -kHuge, 1), Request(-kInfinity, kNaN, kNaN, -1, kNaN)};
  return kRequests;
}

// Naive model of the covering rectangle along one axis.
std::pair<long, long> NaiveSpan(double pos, double size, unsigned long level) {
  long double divisor = 1;
  for (unsigned long i = 0; i < level; ++i) divisor *= 2;
  const auto snap = [](long double q, bool up) -> long {
    const auto limit = static_cast<long double>(kLargestEdge);
    if (q > limit) q = limit;
    if (q < -limit) q = -limit;
    const auto below = static_cast<long>(std::floor(q));
    const long double above = q - static_cast<long double>(below);
    if (above <= 1e-6L) return below;
    if (1 - above <= 1e-6L) return below + 1;
    return up ? below + 1 : below;
  };
  const long low = snap(static_cast<long double>(pos) / divisor, false);
  if (size == 0) return {low, 0};
  const long high =
      snap((static_cast<long double>(pos) + static_cast<long double>(size)) / divisor, true);
  return {low, high - low};
}

unsigned long NaiveLevel(double scale) {
  unsigned long level = 0;
  for (double power = 2; power <= scale; power *= 2) ++level;
  return level;
}

class RandomRequests {
 public:
  TKvDibRect Next() {
    const double scale = Scale();
    const double pixel = std::ldexp(1.0, static_cast<int>(NaiveLevel(scale)));
    return {{{Coordinate(pixel), Coordinate(pixel)}},
            {{std::fabs(Coordinate(pixel)), std::fabs(Coordinate(pixel))}},
            scale};
  }

 private:
  double Uniform(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random_);
  }

  double Scale() {
    const double power = std::ldexp(1.0, static_cast<int>(random_() % 24) - 3);
    return random_() % 2 == 0 ? power : power * Uniform(1, 2);
  }

  // Whole pixels of the level, beside them on either side of the tolerance, or anything, small and
  // large.
  double Coordinate(double pixel) {
    const double reach = std::ldexp(1.0, static_cast<int>(random_() % 30));
    const double whole = std::floor(Uniform(-reach, reach));
    switch (random_() % 6) {
      case 0:
        return 0;
      case 1:
        return whole * pixel;
      case 2:
        return (whole + Uniform(-9e-7, 9e-7)) * pixel;
      case 3:
        return (whole + (random_() % 2 == 0 ? 3e-6 : -3e-6)) * pixel;
      case 4:
        return whole * pixel * 1e7;
      default:
        return Uniform(-reach, reach) * pixel;
    }
  }

  std::mt19937_64 random_{20240229};
};

}  // namespace

TEST(InterpolationLevel, IsTheLargestPowerOfTwoNotAboveTheScale) {
  const LeveledDibData raster({{100, 80}}, 3);
  EXPECT_EQ(raster.GetInterpolationLevel(AtScale(1), iqNearest, nullptr), 0U);
  EXPECT_EQ(raster.GetInterpolationLevel(AtScale(1.999), iqNearest, nullptr), 0U);
  EXPECT_EQ(raster.GetInterpolationLevel(AtScale(2), iqNearest, nullptr), 1U);
  EXPECT_EQ(raster.GetInterpolationLevel(AtScale(3), iqNearest, nullptr), 1U);
  EXPECT_EQ(raster.GetInterpolationLevel(AtScale(4), iqNearest, nullptr), 2U);
  EXPECT_EQ(raster.GetInterpolationLevel(AtScale(std::nextafter(4.0, 0.0)), iqNearest, nullptr),
            1U);
}

TEST(InterpolationLevel, IsZeroForAScaleBelowOne) {
  const LeveledDibData raster({{100, 80}}, 3);
  for (const double scale : {0.999, 0.5, 0.25, kTiny}) {
    bool exact = true;
    EXPECT_EQ(raster.GetInterpolationLevel(AtScale(scale), iqNearest, &exact), 0U);
    EXPECT_FALSE(exact);
  }
}

TEST(InterpolationLevel, IsNotCutToTheLevelsOfTheRaster) {
  const LeveledDibData raster({{100, 80}}, 3);
  EXPECT_EQ(raster.GetInterpolationLevel(AtScale(1024), iqNearest, nullptr), 10U);
  EXPECT_EQ(LeveledDibData().GetInterpolationLevel(AtScale(8), iqNearest, nullptr), 3U);
}

TEST(InterpolationLevel, IsRightForEveryPowerThatADoubleHolds) {
  const LeveledDibData raster;
  for (int power = 0; power < 1024; ++power) {
    const auto level = static_cast<unsigned long>(power);
    const double scale = std::ldexp(1.0, power);
    bool exact = false;
    EXPECT_EQ(raster.GetInterpolationLevel(AtScale(scale), iqNearest, &exact), level);
    EXPECT_TRUE(exact);
    const double above = std::nextafter(scale, kInfinity);
    EXPECT_EQ(raster.GetInterpolationLevel(AtScale(above), iqNearest, &exact), level);
    EXPECT_FALSE(exact);
  }
}

TEST(InterpolationLevel, TellsWhetherTheScaleIsTheLevelsOwn) {
  const LeveledDibData raster({{100, 80}}, 3);
  bool exact = false;
  raster.GetInterpolationLevel(AtScale(4), iqNearest, &exact);
  EXPECT_TRUE(exact);
  raster.GetInterpolationLevel(AtScale(4.5), iqNearest, &exact);
  EXPECT_FALSE(exact);
}

TEST(InterpolationLevel, DoesNotDependOnTheQuality) {
  const LeveledDibData raster({{100, 80}}, 3);
  bool exact = false;
  EXPECT_EQ(raster.GetInterpolationLevel(AtScale(4), iqBilinear, &exact), 2U);
  EXPECT_TRUE(exact);
}

TEST(InterpolationLevel, IsZeroAndNotExactForAnInvalidRequest) {
  const LeveledDibData raster({{100, 80}}, 3);
  for (const TKvDibRect& rect : InvalidRequests()) {
    bool exact = true;
    EXPECT_EQ(raster.GetInterpolationLevel(rect, iqNearest, &exact), 0U);
    EXPECT_FALSE(exact);
    EXPECT_EQ(raster.GetInterpolationLevel(rect, iqNearest, nullptr), 0U);
  }
}

TEST(Rect2RectI, TakesWholePixelsAsTheyAre) {
  EXPECT_EQ(Converted(Request(3, 4, 10, 20, 1)), "0: 3 4 10 20");
}

TEST(Rect2RectI, DividesByTheLevel) {
  EXPECT_EQ(Converted(Request(8, 12, 40, 20, 4)), "2: 2 3 10 5");
}

TEST(Rect2RectI, CoversThePixelsThatTheRequestTouches) {
  EXPECT_EQ(Converted(Request(3.5, 4.25, 1, 1, 1)), "0: 3 4 2 2");
  EXPECT_EQ(Converted(Request(3, 5, 10, 10, 4)), "2: 0 1 4 3");
}

TEST(Rect2RectI, DividesByTheLevelAndNotByTheScale) {
  EXPECT_EQ(Converted(Request(6, 6, 12, 12, 3)), "1: 3 3 6 6");
}

TEST(Rect2RectI, DoesNotDivideForAScaleBelowOne) {
  EXPECT_EQ(Converted(Request(6, 7, 12, 13, 0.25)), "0: 6 7 12 13");
}

TEST(Rect2RectI, TakesAQuotientNearAWholeNumberForIt) {
  EXPECT_EQ(Converted(Request(2.9999995, 3.0000005, 4, 4, 1)), "0: 3 3 4 4");
  EXPECT_EQ(Converted(Request(2.99999, 3.00001, 4, 4, 1)), "0: 2 3 5 5");
}

TEST(Rect2RectI, MeasuresTheToleranceInPixelsOfTheLevel) {
  EXPECT_EQ(Converted(Request(4 - 3e-6, 0, 8 + 6e-6, 8, 4)), "2: 1 0 2 2");
}

TEST(Rect2RectI, GivesZeroForASizeOfZero) {
  EXPECT_EQ(Converted(Request(3, 4, 0, 7, 1)), "0: 3 4 0 7");
  EXPECT_EQ(Converted(Request(3.5, 4, 6, 0, 1)), "0: 3 4 7 0");
  EXPECT_EQ(Converted(Request(3.5, -4.5, 0, 0, 1)), "0: 3 -5 0 0");
}

TEST(Rect2RectI, ASizeOfZeroSnapsItsEdgeToo) {
  EXPECT_EQ(Converted(Request(3.9999999, 4, 0, 1, 1)), "0: 4 4 0 1");
}

TEST(Rect2RectI, StartsLeftOfAndBelowTheRasterWhenAsked) {
  EXPECT_EQ(Converted(Request(-3.5, -8, 10, 4, 2)), "1: -2 -4 6 2");
}

TEST(Rect2RectI, ReachesBeyondTheRasterWhenNotClipped) {
  EXPECT_EQ(Converted(Request(-10, -10, 1000, 1000, 1)), "0: -10 -10 1000 1000");
}

TEST(Rect2RectI, ClipsToTheSizeOfTheLevel) {
  EXPECT_EQ(Converted(Request(-10, -10, 1000, 1000, 1), true), "0: 0 0 100 80");
  EXPECT_EQ(Converted(Request(-10, -10, 1000, 1000, 4), true), "2: 0 0 25 20");
  EXPECT_EQ(Converted(Request(90, 70, 50, 50, 1), true), "0: 90 70 10 10");
  EXPECT_EQ(Converted(Request(3, 4, 5, 6, 1), true), "0: 3 4 5 6");
}

TEST(Rect2RectI, GivesAllZeroWhenClippingLeavesNothing) {
  EXPECT_EQ(Converted(Request(100, 0, 5, 5, 1), true), "0: 0 0 0 0");
  EXPECT_EQ(Converted(Request(0, 80, 5, 5, 1), true), "0: 0 0 0 0");
  EXPECT_EQ(Converted(Request(-5, 10, 5, 5, 1), true), "0: 0 0 0 0");
  EXPECT_EQ(Converted(Request(10, -5, 5, 5, 1), true), "0: 0 0 0 0");
  EXPECT_EQ(Converted(Request(10, 10, 0, 5, 2), true), "1: 0 0 0 0");
  EXPECT_EQ(Converted(Request(10, 10, 5, 0, 2), true), "1: 0 0 0 0");
}

TEST(Rect2RectI, ClipsToNothingAtALevelThatIsNotThere) {
  EXPECT_EQ(Converted(AtScale(8), true), "3: 0 0 0 0");
  EXPECT_EQ(Converted(AtScale(8), false), "3: 0 0 2 2");
}

TEST(Rect2RectI, ClipsToTheSizeThatADerivingClassGives) {
  class Narrow : public LeveledDibData {
   public:
    using LeveledDibData::LeveledDibData;
    Size GetScaleDimensions(unsigned long /*level*/) const override { return {{2, 3}}; }
  };
  Narrow raster({{100, 80}}, 3);
  TKvDibRectI rectI{};
  raster.Rect2RectI(Request(0, 0, 50, 50, 1), iqNearest, 0, &rectI, true);
  EXPECT_EQ(Text(rectI), "0 0 2 3");
}

TEST(Rect2RectI, GivesTheLevelThatADerivingClassGives) {
  class Distant : public LeveledDibData {
   public:
    unsigned long GetInterpolationLevel(const TKvDibRect& /*rect*/,
                                        const TInterpolationQuality& /*quality*/,
                                        bool* /*exact*/) const override {
      return ULONG_MAX;
    }
  };
  Distant raster;
  TKvDibRectI rectI{};
  EXPECT_EQ(raster.Rect2RectI(Request(0, 0, 50, 50, 1), iqNearest, 0, &rectI, false), ULONG_MAX);
  EXPECT_EQ(Text(rectI), "0 0 0 0");
}

TEST(Rect2RectI, GivesAnEmptyRequestAtLevelZeroForAnInvalidOne) {
  for (const TKvDibRect& rect : InvalidRequests()) {
    EXPECT_EQ(Converted(rect, false), "0: 0 0 0 0");
    EXPECT_EQ(Converted(rect, true), "0: 0 0 0 0");
  }
}

TEST(Rect2RectI, SaturatesItsEdges) {
  const std::string most = std::to_string(kLargestEdge);
  const std::string whole = std::to_string(2 * kLargestEdge);
  EXPECT_EQ(Converted(Request(0, 0, 1e300, 1e16, 1)), "0: 0 0 " + most + " " + most);
  EXPECT_EQ(Converted(Request(-1e300, -1e16, 1, 1, 1)), "0: -" + most + " -" + most + " 0 0");
  EXPECT_EQ(Converted(Request(1e300, 1e16, 1, 1, 1)), "0: " + most + " " + most + " 0 0");
  EXPECT_EQ(Converted(Request(-1e20, -1e20, 2e20, 2e20, 1)),
            "0: -" + most + " -" + most + " " + whole + " " + whole);
}

TEST(Rect2RectI, SaturatesWhereTheSumOfPositionAndSizeOverflows) {
  EXPECT_EQ(Converted(Request(kHuge, 0, kHuge, 1, 1)),
            "0: " + std::to_string(kLargestEdge) + " 0 0 1");
}

TEST(Rect2RectI, IsExactWhereOnlyTheSumOfPositionAndSizeOverflows) {
  EXPECT_EQ(Converted(Request(0x1p1023, 0, 0x1p1023, 0, 0x1p1023)), "1023: 1 0 1 0");
}

TEST(Rect2RectI, KeepsASmallSizeAtALargePosition) {
  EXPECT_EQ(
      Converted(Request(0x1p52 - 2, 0x1p51, 0.25, 0.25, 1)),
      "0: " + std::to_string(kLargestEdge - 2) + " " + std::to_string(kLargestEdge / 2) + " 1 1");
}

TEST(Rect2RectI, ClipsSaturatedEdges) {
  EXPECT_EQ(Converted(Request(-1e300, -1e300, 1e308, 1e308, 1), true), "0: 0 0 100 80");
}

TEST(Rect2RectI, ClipsToARasterLargerThanAnyRequest) {
  LeveledDibData raster({{ULONG_MAX, ULONG_MAX}}, 1);
  TKvDibRectI rectI{};
  raster.Rect2RectI(Request(-1, 5, 1e30, 7, 1), iqNearest, 0, &rectI, true);
  EXPECT_EQ(Text(rectI), "0 5 " + std::to_string(kLargestEdge) + " 7");
}

TEST(Rect2RectI, IgnoresParamAndQuality) {
  LeveledDibData raster({{100, 80}}, 3);
  TKvDibRectI rectI{};
  EXPECT_EQ(raster.Rect2RectI(Request(8, 12, 40, 20, 4), iqBilinear, -77, &rectI, false), 2U);
  EXPECT_EQ(Text(rectI), "2 3 10 5");
}

TEST(Rect2RectI, GivesTheLevelWithoutARectangleToFill) {
  LeveledDibData raster({{100, 80}}, 3);
  EXPECT_EQ(raster.Rect2RectI(AtScale(4), iqNearest, 0, nullptr, false), 2U);
  EXPECT_EQ(raster.Rect2RectI(AtScale(4), iqNearest, 0, nullptr, true), 2U);
  EXPECT_EQ(raster.Rect2RectI(AtScale(kNaN), iqNearest, 0, nullptr, true), 0U);
}

TEST(Rect2RectI, AgreesWithANaiveModel) {
  LeveledDibData raster({{100, 80}}, 3);
  RandomRequests requests;
  for (int i = 0; i < 100000; ++i) {
    const TKvDibRect rect = requests.Next();
    const unsigned long expectedLevel = NaiveLevel(rect.scale);
    const auto [x, w] = NaiveSpan(rect.pos[0], rect.size[0], expectedLevel);
    const auto [y, h] = NaiveSpan(rect.pos[1], rect.size[1], expectedLevel);
    TKvDibRectI rectI{};
    const unsigned long level = raster.Rect2RectI(rect, iqNearest, 0, &rectI, false);
    ASSERT_EQ(Text(level, rectI), Text(expectedLevel, {x, y, w, h}))
        << std::hexfloat << rect.pos[0] << " " << rect.pos[1] << " " << rect.size[0] << " "
        << rect.size[1] << " " << rect.scale;
  }
}

TEST(Rect2RectI, ClippingKeepsExactlyThePixelsInside) {
  LeveledDibData raster({{1001, 77}}, 20);
  RandomRequests requests;
  for (int i = 0; i < 100000; ++i) {
    const TKvDibRect rect = requests.Next();
    TKvDibRectI whole{};
    TKvDibRectI cut{};
    const unsigned long level = raster.Rect2RectI(rect, iqNearest, 0, &whole, false);
    ASSERT_EQ(raster.Rect2RectI(rect, iqNearest, 0, &cut, true), level);
    const Size size = raster.GetScaleDimensions(level);
    const long left = std::max(whole.x, 0L);
    const long bottom = std::max(whole.y, 0L);
    const long right = std::min(whole.x + whole.w, static_cast<long>(size[0]));
    const long top = std::min(whole.y + whole.h, static_cast<long>(size[1]));
    const bool empty = left >= right || bottom >= top;
    ASSERT_EQ(Text(cut),
              empty ? "0 0 0 0" : Text(TKvDibRectI{left, bottom, right - left, top - bottom}));
  }
}

TEST(RectI2Rect, MultipliesByTheLevel) {
  LeveledDibData raster({{100, 80}}, 3);
  const TKvDibRect rect = raster.RectI2Rect(3, {1, -2, 3, 4});
  EXPECT_EQ(rect.pos, (vec_t_<double, 2>{{8, -16}}));
  EXPECT_EQ(rect.size, (vec_t_<double, 2>{{24, 32}}));
  EXPECT_EQ(rect.scale, 8);
}

TEST(RectI2Rect, IsTheInverseOfRect2RectI) {
  LeveledDibData raster({{100, 80}}, 3);
  std::mt19937_64 random(7);
  for (int i = 0; i < 10000; ++i) {
    const auto side = [&random] { return static_cast<long>(random() >> (13 + random() % 50)); };
    const unsigned long level = random() % 900;
    const TKvDibRectI rectI = {side() - (1L << 50), -side(), side() / 4, side() / 4};
    TKvDibRectI back{};
    ASSERT_EQ(raster.Rect2RectI(raster.RectI2Rect(level, rectI), iqNearest, 0, &back, false),
              level);
    ASSERT_EQ(Text(back), Text(rectI));
  }
}

TEST(RectI2Rect, TakesLevelsBeyondEveryDouble) {
  LeveledDibData raster({{100, 80}}, 3);
  const TKvDibRect rect = raster.RectI2Rect(ULONG_MAX, {0, -1, 1, 0});
  EXPECT_EQ(rect.pos, (vec_t_<double, 2>{{0, -kInfinity}}));
  EXPECT_EQ(rect.size, (vec_t_<double, 2>{{kInfinity, 0}}));
  EXPECT_EQ(rect.scale, kInfinity);
}

TEST(LevelBounds, AreNoneAtFirst) {
  const LeveledDibData raster;
  EXPECT_EQ(raster.GetAllLevels(nullptr), 0U);
}

TEST(LevelBounds, FillGivesEveryLevelTheFullSizeAndItsScale) {
  LeveledDibData raster;
  raster.FillDefaultLevelBounds({{100, 80}}, 4);
  std::vector<TKvDibRect> levels;
  EXPECT_EQ(raster.GetAllLevels(&levels), 4U);
  ASSERT_EQ(levels.size(), 4U);
  double scale = 1;
  for (const TKvDibRect& level : levels) {
    EXPECT_EQ(level.pos, (vec_t_<double, 2>{{0, 0}}));
    EXPECT_EQ(level.size, (vec_t_<double, 2>{{100, 80}}));
    EXPECT_EQ(level.scale, scale);
    scale *= 2;
  }
}

TEST(LevelBounds, FillReplacesTheFormerLevels) {
  LeveledDibData raster({{100, 80}}, 4);
  raster.FillDefaultLevelBounds({{10, 8}}, 2);
  EXPECT_EQ(raster.GetAllLevels(nullptr), 2U);
  EXPECT_EQ(raster.Bounds().size, (vec_t_<double, 2>{{10, 8}}));
}

TEST(LevelBounds, FillWithNoLevelsLeavesNone) {
  LeveledDibData raster({{100, 80}}, 4);
  raster.FillDefaultLevelBounds({{10, 8}}, 0);
  EXPECT_EQ(raster.GetAllLevels(nullptr), 0U);
}

TEST(LevelBounds, FillWithTooManyLevelsThrowsAndKeepsTheFormer) {
  LeveledDibData raster({{100, 80}}, 4);
  EXPECT_THROW(raster.FillDefaultLevelBounds({{10, 8}}, ULONG_MAX), std::length_error);
  EXPECT_EQ(raster.GetAllLevels(nullptr), 4U);
  EXPECT_EQ(raster.Bounds().size, (vec_t_<double, 2>{{100, 80}}));
}

TEST(LevelBounds, FillTakesScalesBeyondEveryDoubleForInfinite) {
  const LeveledDibData raster({{1, 1}}, 1100);
  std::vector<TKvDibRect> levels;
  raster.GetAllLevels(&levels);
  EXPECT_EQ(levels[1023].scale, 0x1p1023);
  EXPECT_EQ(levels[1024].scale, kInfinity);
  EXPECT_EQ(levels[1099].scale, kInfinity);
}

TEST(LevelBounds, ResetLeavesNoLevels) {
  LeveledDibData raster({{100, 80}}, 4);
  raster.ResetLevelBounds();
  EXPECT_EQ(raster.GetAllLevels(nullptr), 0U);
  EXPECT_EQ(raster.GetScaleDimensions(0), (Size{{0, 0}}));
}

TEST(LevelBounds, GetAllLevelsReplacesWhatTheListHolds) {
  const LeveledDibData raster({{100, 80}}, 2);
  std::vector<TKvDibRect> levels(7, Request(1, 2, 3, 4, 5));
  EXPECT_EQ(raster.GetAllLevels(&levels), 2U);
  ASSERT_EQ(levels.size(), 2U);
  EXPECT_EQ(levels[0].size, (vec_t_<double, 2>{{100, 80}}));
}

TEST(LevelBounds, GetAllLevelsEmptiesTheListWhenThereAreNone) {
  const LeveledDibData raster;
  std::vector<TKvDibRect> levels(7, Request(1, 2, 3, 4, 5));
  EXPECT_EQ(raster.GetAllLevels(&levels), 0U);
  EXPECT_TRUE(levels.empty());
}

TEST(Bounds, AreThoseOfLevelZero) {
  const LeveledDibData raster({{100, 80}}, 3);
  const TKvDibRect bounds = raster.Bounds();
  EXPECT_EQ(bounds.pos, (vec_t_<double, 2>{{0, 0}}));
  EXPECT_EQ(bounds.size, (vec_t_<double, 2>{{100, 80}}));
  EXPECT_EQ(bounds.scale, 1);
}

TEST(Bounds, AreAllZeroWithoutLevels) {
  const TKvDibRect bounds = LeveledDibData().Bounds();
  EXPECT_EQ(bounds.pos, (vec_t_<double, 2>{{0, 0}}));
  EXPECT_EQ(bounds.size, (vec_t_<double, 2>{{0, 0}}));
  EXPECT_EQ(bounds.scale, 0);
}

TEST(ScaleDimensions, HalveTheSidesRoundingUp) {
  const LeveledDibData raster({{100, 7}}, 5);
  EXPECT_EQ(raster.GetScaleDimensions(0), (Size{{100, 7}}));
  EXPECT_EQ(raster.GetScaleDimensions(1), (Size{{50, 4}}));
  EXPECT_EQ(raster.GetScaleDimensions(2), (Size{{25, 2}}));
  EXPECT_EQ(raster.GetScaleDimensions(3), (Size{{13, 1}}));
  EXPECT_EQ(raster.GetScaleDimensions(4), (Size{{7, 1}}));
}

TEST(ScaleDimensions, EndAtOnePixel) {
  const LeveledDibData raster({{5, 3}}, 200);
  for (const unsigned long level : {3UL, 63UL, 64UL, 65UL, 128UL, 199UL}) {
    EXPECT_EQ(raster.GetScaleDimensions(level), (Size{{1, 1}})) << level;
  }
}

TEST(ScaleDimensions, AreZeroForALevelThatIsNotThere) {
  const LeveledDibData raster({{100, 80}}, 3);
  EXPECT_EQ(raster.GetScaleDimensions(3), (Size{{0, 0}}));
  EXPECT_EQ(raster.GetScaleDimensions(ULONG_MAX), (Size{{0, 0}}));
  EXPECT_EQ(LeveledDibData().GetScaleDimensions(0), (Size{{0, 0}}));
}

TEST(ScaleDimensions, AreZeroForAnEmptyRaster) {
  EXPECT_EQ(LeveledDibData({{0, 80}}, 3).GetScaleDimensions(0), (Size{{0, 0}}));
  EXPECT_EQ(LeveledDibData({{100, 0}}, 3).GetScaleDimensions(1), (Size{{0, 0}}));
  EXPECT_EQ(LeveledDibData({{0, 0}}, 3).GetScaleDimensions(2), (Size{{0, 0}}));
}

TEST(ScaleDimensions, TakeAnySizeThatADerivingClassMayHaveLeft) {
  LeveledDibData raster({{100, 80}}, 2);
  for (const double empty : {kNaN, -1.0, -kInfinity, -kHuge, 0.0, -0.0, 0.5}) {
    raster.levelBounds[0].size = {{empty, 80}};
    EXPECT_EQ(raster.GetScaleDimensions(0), (Size{{0, 0}})) << empty;
  }
  for (const double full : {kInfinity, kHuge, 0x1p64}) {
    raster.levelBounds[0].size = {{full, 80}};
    EXPECT_EQ(raster.GetScaleDimensions(0), (Size{{ULONG_MAX, 80}})) << full;
    EXPECT_EQ(raster.GetScaleDimensions(1), (Size{{1UL << 63, 40}})) << full;
  }
  raster.levelBounds[0].size = {{0x1p63, 80.75}};
  EXPECT_EQ(raster.GetScaleDimensions(0), (Size{{1UL << 63, 80}}));
}

TEST(ScaleDimensions, ComeFromTheBoundsOfLevelZero) {
  LeveledDibData raster({{100, 80}}, 2);
  raster.levelBounds[1].size = {{3, 3}};
  EXPECT_EQ(raster.GetScaleDimensions(1), (Size{{50, 40}}));
}

TEST(BaseGetRect, AsksTheLevelFormForTheConvertedRequest) {
  RecordingDibData raster({{100, 80}}, 3);
  unsigned char byte = 0;
  EXPECT_EQ(raster.GetRect({&byte, 17}, Request(-8, 12, 400, 20, 4), iqNearest, 0, nullptr),
            kvDibWritten);
  EXPECT_EQ(raster.calls, 1);
  EXPECT_EQ(Text(raster.lastLevel, raster.lastRect), "2: -2 3 100 5");
  EXPECT_EQ(raster.lastOut.data, &byte);
  EXPECT_EQ(raster.lastOut.stride, 17);
}

TEST(BaseGetRect, ThrowsForALevelThatIsNotThere) {
  RecordingDibData raster({{100, 80}}, 3);
  try {
    raster.GetRect({nullptr, 0}, AtScale(8), iqNearest, 0, nullptr);
    FAIL() << "nothing was thrown";
  } catch (const std::logic_error& error) {
    EXPECT_STREQ(error.what(), "@TKvMultiScaleDibData::GetRect - Invalid scale");
  }
  EXPECT_EQ(raster.calls, 0);
}

TEST(BaseGetRect, ThrowsWithoutLevelsWhateverIsAsked) {
  RecordingDibData raster;
  EXPECT_THROW(raster.GetRect({nullptr, 0}, AtScale(1), iqNearest, 0, nullptr), std::logic_error);
  EXPECT_THROW(raster.GetRect({nullptr, 0}, AtScale(kNaN), iqNearest, 0, nullptr),
               std::logic_error);
}

TEST(BaseGetRect, AsksForNothingAtLevelZeroWhenTheRequestIsInvalid) {
  for (const TKvDibRect& rect : InvalidRequests()) {
    RecordingDibData raster({{100, 80}}, 3);
    raster.GetRect({nullptr, 0}, rect, iqNearest, 0, nullptr);
    EXPECT_EQ(Text(raster.lastLevel, raster.lastRect), "0: 0 0 0 0");
  }
}

TEST(BaseGetRect, CountsTheLevelsThatADerivingClassGives) {
  class Deeper : public RecordingDibData {
   public:
    unsigned long GetAllLevels(std::vector<TKvDibRect>* /*levels*/) const override { return 11; }
  };
  Deeper raster;
  EXPECT_EQ(raster.GetRect({nullptr, 0}, AtScale(1024), iqNearest, 0, nullptr), kvDibWritten);
  EXPECT_THROW(raster.GetRect({nullptr, 0}, AtScale(2048), iqNearest, 0, nullptr),
               std::logic_error);
}

TEST(BaseGetRect, HandsItsParamToTheConversion) {
  class Tagged : public RecordingDibData {
   public:
    using RecordingDibData::RecordingDibData;
    unsigned long Rect2RectI(const TKvDibRect& rect, const TInterpolationQuality& quality,
                             int param, TKvDibRectI* rectI, bool clip) override {
      lastParam = param;
      lastClip = clip;
      return RecordingDibData::Rect2RectI(rect, quality, param, rectI, clip);
    }
    int lastParam = 0;
    bool lastClip = true;
  };
  Tagged raster({{100, 80}}, 3);
  raster.GetRect({nullptr, 0}, AtScale(1), iqNearest, 31, nullptr);
  EXPECT_EQ(raster.lastParam, 31);
  EXPECT_FALSE(raster.lastClip);
}

TEST(BaseGetRect, TheLevelFormWritesNothing) {
  LeveledDibData raster({{100, 80}}, 3);
  unsigned char byte = 0xEE;
  EXPECT_EQ(raster.GetRect(0, {0, 0, 1, 1}, {&byte, 1}), kvDibNothing);
  EXPECT_EQ(raster.GetRect(ULONG_MAX, {0, 0, 1, 1}, {&byte, 1}), kvDibNothing);
  EXPECT_EQ(byte, 0xEE);
}
