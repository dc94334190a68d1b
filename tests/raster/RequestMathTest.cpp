#include "raster/RequestMath.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <random>
#include <vector>

namespace {

using SatCommonUtils::BufferBytes;
using SatCommonUtils::BytesPerPixel;
using SatCommonUtils::CutToRaster;
using SatCommonUtils::PixelAddress;
using SatCommonUtils::SameRect;
using SatCommonUtils::SaturatedDifference;
using SatCommonUtils::SaturatedSum;
using SatCommonUtils::SignedSize;
using SatCommonUtils::SizeProduct;
using SatCommonUtils::TInnerPart;

__extension__ typedef __int128 Wide;

constexpr long kLeast = std::numeric_limits<long>::min();
constexpr long kMost = std::numeric_limits<long>::max();
constexpr long kEdge = 1L << 52;

/// Numbers around which arithmetic goes wrong, and the ones beside them.
std::vector<long> OddNumbers() {
  std::vector<long> numbers = {kLeast, kLeast + 1, kMost - 1, kMost};
  for (long centre : {0L, 1L << 31, 1L << 32, 3037000500L, kEdge, kEdge + kEdge, 1L << 62}) {
    for (long beside : {-1L, 0L, 1L}) {
      numbers.push_back(centre + beside);
      numbers.push_back(-centre + beside);
    }
  }
  return numbers;
}

bool IsLong(Wide value) {
  return value >= kLeast && value <= kMost;
}

long Held(Wide value) {
  if (value < kLeast) return kLeast;
  return value > kMost ? kMost : static_cast<long>(value);
}

/// Numbers of every magnitude, often odd ones.
class RandomNumbers {
 public:
  explicit RandomNumbers(unsigned int seed) : random_(seed) {}

  long Any() {
    if (random_() % 4 == 0) return odd_[random_() % odd_.size()];
    const long value = static_cast<long>(random_() >> (1 + random_() % 63));
    return random_() % 2 == 0 ? value : -value;
  }
  long Below(long limit) {
    return static_cast<long>(random_() % static_cast<unsigned long>(limit));
  }

 private:
  std::mt19937_64 random_;
  std::vector<long> odd_ = OddNumbers();
};

std::optional<long> ProductModel(const std::vector<Wide>& sizes) {
  Wide product = 1;
  for (const Wide size : sizes) {
    if (size < 0) return std::nullopt;
    product *= size;
    if (!IsLong(product)) return std::nullopt;
  }
  return static_cast<long>(product);
}

std::optional<long> BufferBytesModel(long pixels, long rows, long bytes, long written) {
  const std::optional<long> packed = ProductModel({pixels, rows, bytes});
  if (!packed) return std::nullopt;
  const Wide excess = written > bytes ? Wide{pixels} * (Wide{written} - bytes) : 0;
  const Wide all = *packed + excess + 4;
  return IsLong(excess) && IsLong(all) ? std::optional<long>(static_cast<long>(all)) : std::nullopt;
}

/// The part that CutToRaster gives, from the pixels that lie in both.
std::optional<TInnerPart> CutModel(const TKvDibRectI& request, long width, long height) {
  const Wide left = std::max<Wide>(request.x, 0);
  const Wide bottom = std::max<Wide>(request.y, 0);
  const Wide right = std::min<Wide>(Wide{request.x} + request.w, width);
  const Wide top = std::min<Wide>(Wide{request.y} + request.h, height);
  if (request.w < 1 || request.h < 1 || right <= left || top <= bottom) return std::nullopt;
  return TInnerPart{{static_cast<long>(left), static_cast<long>(bottom),
                     static_cast<long>(right - left), static_cast<long>(top - bottom)},
                    static_cast<long>(left - request.x),
                    static_cast<long>(bottom - request.y)};
}

void ExpectCutAsModelled(const TKvDibRectI& request, long width, long height) {
  const std::optional<TInnerPart> part = CutToRaster(request, width, height);
  const std::optional<TInnerPart> model = CutModel(request, width, height);
  ASSERT_EQ(part.has_value(), model.has_value())
      << request.x << ' ' << request.y << ' ' << request.w << ' ' << request.h << " in " << width
      << " x " << height;
  if (!part) return;
  EXPECT_TRUE(SameRect(part->rect, model->rect));
  EXPECT_EQ(part->skipX, model->skipX);
  EXPECT_EQ(part->skipY, model->skipY);
}

TEST(RequestMathTest, ASumIsHeldAtTheEndsOfTheRange) {
  EXPECT_EQ(SaturatedSum(kMost, 1), kMost);
  EXPECT_EQ(SaturatedSum(kLeast, -1), kLeast);
  EXPECT_EQ(SaturatedSum(kMost, kMost), kMost);
  EXPECT_EQ(SaturatedSum(kLeast, kLeast), kLeast);
  EXPECT_EQ(SaturatedSum(kLeast, kMost), -1);
  for (long a : OddNumbers()) {
    for (long b : OddNumbers()) EXPECT_EQ(SaturatedSum(a, b), Held(Wide{a} + b)) << a << ' ' << b;
  }
}

TEST(RequestMathTest, ADifferenceIsHeldAtTheEndsOfTheRange) {
  EXPECT_EQ(SaturatedDifference(kMost, -1), kMost);
  EXPECT_EQ(SaturatedDifference(kLeast, 1), kLeast);
  EXPECT_EQ(SaturatedDifference(0, kLeast), kMost);
  EXPECT_EQ(SaturatedDifference(-1, kLeast), kMost);
  EXPECT_EQ(SaturatedDifference(kLeast, kLeast), 0);
  for (long a : OddNumbers()) {
    for (long b : OddNumbers()) {
      EXPECT_EQ(SaturatedDifference(a, b), Held(Wide{a} - b)) << a << ' ' << b;
    }
  }
}

TEST(RequestMathTest, RandomSumsAndDifferencesAreThoseOfWiderNumbers) {
  RandomNumbers random(20240501);
  for (int i = 0; i < 200000; ++i) {
    const long a = random.Any();
    const long b = random.Any();
    ASSERT_EQ(SaturatedSum(a, b), Held(Wide{a} + b)) << a << ' ' << b;
    ASSERT_EQ(SaturatedDifference(a, b), Held(Wide{a} - b)) << a << ' ' << b;
  }
}

TEST(RequestMathTest, AProductOfSizesIsExactUpToTheEndOfTheRange) {
  EXPECT_EQ(SizeProduct(kMost), kMost);
  EXPECT_EQ(SizeProduct(kMost, 1L), kMost);
  EXPECT_EQ(SizeProduct(49L, 73L, 127L, 337L, 92737L, 649657L), kMost);
  EXPECT_EQ(SizeProduct(1L << 31, 1L << 31), 1L << 62);
  EXPECT_EQ(SizeProduct(0L, kMost), 0);
}

TEST(RequestMathTest, AProductThatLeavesTheRangeIsEmpty) {
  EXPECT_EQ(SizeProduct(1L << 62, 2L), std::nullopt);
  EXPECT_EQ(SizeProduct(1L << 32, 1L << 31), std::nullopt);
  EXPECT_EQ(SizeProduct(kMost, kMost, kMost), std::nullopt);
  EXPECT_EQ(SizeProduct(kEdge, kEdge), std::nullopt);
}

TEST(RequestMathTest, AProductWithANegativeSizeIsEmptyEvenBesideZero) {
  EXPECT_EQ(SizeProduct(-1L), std::nullopt);
  EXPECT_EQ(SizeProduct(0L, -1L), std::nullopt);
  EXPECT_EQ(SizeProduct(-1L, 0L), std::nullopt);
  EXPECT_EQ(SizeProduct(-3L, -3L), std::nullopt);
  EXPECT_EQ(SizeProduct(kLeast, 1L), std::nullopt);
}

TEST(RequestMathTest, UnsignedSizesBeyondTheSignedRangeLeaveIt) {
  constexpr unsigned long most = std::numeric_limits<unsigned long>::max();
  EXPECT_EQ(SizeProduct(most), std::nullopt);
  EXPECT_EQ(SizeProduct(1L, 1UL << 63), std::nullopt);
  EXPECT_EQ(SizeProduct(1UL << 63, 2UL), std::nullopt);
  EXPECT_EQ(SizeProduct(0L, most), 0);
  EXPECT_EQ(SizeProduct(static_cast<unsigned long>(kMost), 1UL), kMost);
}

TEST(RequestMathTest, RandomProductsAreThoseOfWiderNumbers) {
  RandomNumbers random(20240502);
  for (int i = 0; i < 200000; ++i) {
    const long a = random.Any();
    const long b = random.Any();
    const long c = random.Any();
    const auto u = static_cast<unsigned long>(c);
    ASSERT_EQ(SizeProduct(a, b), ProductModel({a, b})) << a << ' ' << b;
    ASSERT_EQ(SizeProduct(a, b, c), ProductModel({a, b, c})) << a << ' ' << b << ' ' << c;
    ASSERT_EQ(SizeProduct(a, u), ProductModel({a, u})) << a << ' ' << u;
    ASSERT_EQ(SizeProduct(u, a), ProductModel({u, a})) << u << ' ' << a;
  }
}

TEST(RequestMathTest, ASizeBeyondTheSignedRangeIsHeldAtItsEnd) {
  EXPECT_EQ(SignedSize(0), 0);
  EXPECT_EQ(SignedSize(static_cast<unsigned long>(kMost)), kMost);
  EXPECT_EQ(SignedSize(1UL << 63), kMost);
  EXPECT_EQ(SignedSize(std::numeric_limits<unsigned long>::max()), kMost);
}

TEST(RequestMathTest, RectanglesAreTheSameWhenAllFourNumbersAre) {
  const TKvDibRectI rect = {1, 2, 3, 4};
  EXPECT_TRUE(SameRect(rect, {1, 2, 3, 4}));
  EXPECT_FALSE(SameRect(rect, {9, 2, 3, 4}));
  EXPECT_FALSE(SameRect(rect, {1, 9, 3, 4}));
  EXPECT_FALSE(SameRect(rect, {1, 2, 9, 4}));
  EXPECT_FALSE(SameRect(rect, {1, 2, 3, 9}));
}

TEST(RequestMathTest, APixelHasTheBytesOfAllItsChannels) {
  EXPECT_EQ(BytesPerPixel({1, 2, {6, 4, 3}}), 6);
  EXPECT_EQ(BytesPerPixel({1, 0, {6, 4, 3}}), 0);
  EXPECT_EQ(BytesPerPixel({1, 2, {}}), 0);
  EXPECT_EQ(BytesPerPixel({1, static_cast<unsigned long>(kMost), {1}}), kMost);
}

TEST(RequestMathTest, APixelWhoseBytesLeaveTheRangeHasMinusOne) {
  EXPECT_EQ(BytesPerPixel({1, 1UL << 62, {1, 1}}), -1);
  EXPECT_EQ(BytesPerPixel({1, 1UL << 63, {1}}), -1);
  EXPECT_EQ(BytesPerPixel({1, std::numeric_limits<unsigned long>::max(), {1, 1, 1}}), -1);
}

TEST(RequestMathTest, ABufferHasFourBytesMoreThanItsRows) {
  EXPECT_EQ(BufferBytes(5, 7, 2, 2), 74);
  EXPECT_EQ(BufferBytes(5, 7, 0, 0), 4);
  EXPECT_EQ(BufferBytes(0, 7, 2, 2), 4);
  EXPECT_EQ(BufferBytes(5, 0, 2, 2), 4);
}

TEST(RequestMathTest, ABufferHasRoomForALastRowThatIsWrittenLonger) {
  EXPECT_EQ(BufferBytes(5, 7, 2, 6), 94);
  EXPECT_EQ(BufferBytes(5, 7, 0, 6), 34);
}

TEST(RequestMathTest, WritingFewerBytesAPixelThanItHasMakesABufferNoShorter) {
  EXPECT_EQ(BufferBytes(5, 7, 6, 2), 214);
  EXPECT_EQ(BufferBytes(5, 7, 6, -1), 214);
}

TEST(RequestMathTest, ABufferMayBeAsLongAsTheRangeAndNoLonger) {
  EXPECT_EQ(BufferBytes(kMost - 4, 1, 1, 1), kMost);
  EXPECT_EQ(BufferBytes(kMost - 3, 1, 1, 1), std::nullopt);
  EXPECT_EQ(BufferBytes(1, 1, 1, kMost - 4), kMost);
  EXPECT_EQ(BufferBytes(1, 1, 1, kMost - 3), std::nullopt);
  EXPECT_EQ(BufferBytes(2, 1, 1, kMost), std::nullopt);
  EXPECT_EQ(BufferBytes(kEdge, kEdge, 1, 1), std::nullopt);
}

TEST(RequestMathTest, NegativeSizesHaveNoBuffer) {
  EXPECT_EQ(BufferBytes(-1, 1, 1, 1), std::nullopt);
  EXPECT_EQ(BufferBytes(1, -1, 1, 1), std::nullopt);
  EXPECT_EQ(BufferBytes(1, 1, -1, 1), std::nullopt);
  EXPECT_EQ(BufferBytes(kLeast, kLeast, kLeast, kLeast), std::nullopt);
  EXPECT_EQ(BufferBytes(0, 0, kLeast, kMost), std::nullopt);
  EXPECT_EQ(BufferBytes(0, -1, 0, 0), std::nullopt);
}

TEST(RequestMathTest, RandomBuffersAreAsLongAsWiderNumbersSay) {
  RandomNumbers random(20240503);
  int fitting = 0;
  for (int i = 0; i < 200000; ++i) {
    const bool small = random.Below(2) == 0;
    const long pixels = small ? random.Below(100000) : random.Any();
    const long rows = small ? random.Below(100000) : random.Any();
    const long bytes = random.Below(3) == 0 ? random.Any() : random.Below(20);
    const long written = random.Below(3) == 0 ? random.Any() : random.Below(40);
    const std::optional<long> model = BufferBytesModel(pixels, rows, bytes, written);
    ASSERT_EQ(BufferBytes(pixels, rows, bytes, written), model)
        << pixels << ' ' << rows << ' ' << bytes << ' ' << written;
    fitting += model ? 1 : 0;
  }
  EXPECT_GT(fitting, 50000);
}

TEST(RequestMathTest, ARequestInsideTheRasterIsItsOwnPart) {
  const std::optional<TInnerPart> part = CutToRaster({2, 1, 3, 4}, 8, 6);
  ASSERT_TRUE(part);
  EXPECT_TRUE(SameRect(part->rect, {2, 1, 3, 4}));
  EXPECT_EQ(part->skipX, 0);
  EXPECT_EQ(part->skipY, 0);
}

TEST(RequestMathTest, WhatIsCutOffLeftAndBelowIsSkipped) {
  const std::optional<TInnerPart> part = CutToRaster({-3, -2, 20, 20}, 8, 6);
  ASSERT_TRUE(part);
  EXPECT_TRUE(SameRect(part->rect, {0, 0, 8, 6}));
  EXPECT_EQ(part->skipX, 3);
  EXPECT_EQ(part->skipY, 2);
}

TEST(RequestMathTest, NothingIsCutFromARasterWithoutPixels) {
  EXPECT_FALSE(CutToRaster({0, 0, 4, 4}, 0, 6));
  EXPECT_FALSE(CutToRaster({0, 0, 4, 4}, 8, 0));
  EXPECT_FALSE(CutToRaster({-9, -9, 20, 20}, -1, 6));
  EXPECT_FALSE(CutToRaster({kLeast, kLeast, kMost, kMost}, kLeast, kLeast));
}

TEST(RequestMathTest, RequestsAtTheEndsOfTheRangeAreCutExactly) {
  for (long start : OddNumbers()) {
    for (long length : OddNumbers()) {
      for (long side : {0L, 1L, 8L, kEdge, kMost, kLeast}) {
        ExpectCutAsModelled({start, 1, length, 2}, side, 6);
        ExpectCutAsModelled({1, start, 2, length}, 8, side);
      }
    }
  }
}

TEST(RequestMathTest, RandomRequestsAreCutToThePixelsInBoth) {
  RandomNumbers random(20240504);
  for (int i = 0; i < 100000; ++i) {
    ExpectCutAsModelled({random.Any(), random.Any(), random.Any(), random.Any()}, random.Any(),
                        random.Any());
    ExpectCutAsModelled(
        {random.Below(30) - 15, random.Below(30) - 15, random.Below(20) - 2, random.Below(20) - 2},
        random.Below(12), random.Below(12));
    if (HasFatalFailure()) return;
  }
}

TEST(RequestMathTest, APixelLiesAtItsColumnAndRow) {
  std::array<unsigned char, 1000> bytes;
  const TKvDibDataOutBuffer up = {bytes.data(), 40};
  EXPECT_EQ(PixelAddress(up, 0, 0, 6), bytes.data());
  EXPECT_EQ(PixelAddress(up, 3, 2, 6), bytes.data() + 98);
  const TKvDibDataOutBuffer down = {bytes.data() + 500, -40};
  EXPECT_EQ(PixelAddress(down, 3, 2, 6), bytes.data() + 438);
  const TKvDibDataOutBuffer same = {bytes.data() + 500, 0};
  EXPECT_EQ(PixelAddress(same, 3, kMost, 6), bytes.data() + 518);
}

TEST(RequestMathTest, APixelBeyondAnyAddressHasNone) {
  std::array<unsigned char, 8> bytes;
  for (long stride : {kLeast, kLeast + 1, -(1L << 62), 1L << 62, kMost}) {
    EXPECT_EQ(PixelAddress({bytes.data(), stride}, 0, 1, 1), nullptr) << stride;
    EXPECT_EQ(PixelAddress({bytes.data(), stride}, 1, kMost, 1), nullptr) << stride;
  }
  EXPECT_EQ(PixelAddress({bytes.data(), 1}, kEdge, 0, kEdge), nullptr);
  EXPECT_EQ(PixelAddress({bytes.data(), kEdge}, 0, kEdge, 1), nullptr);
  EXPECT_EQ(PixelAddress({bytes.data(), 1}, kMost, kMost, 1), nullptr);
}

TEST(RequestMathTest, ARandomPixelLiesWhereWiderNumbersSayOrNowhere) {
  RandomNumbers random(20240505);
  std::array<unsigned char, 4096> bytes;
  unsigned char* const middle = bytes.data() + 2048;
  // Farther than any buffer reaches, whatever the machine.
  constexpr Wide kNowhere = Wide{1} << 57;
  for (int i = 0; i < 200000; ++i) {
    const bool near = i % 2 == 0;
    const long x = near ? random.Below(20) : random.Any();
    const long y = near ? random.Below(20) : random.Any();
    const long stride = near ? random.Below(161) - 80 : random.Any();
    const long pixel = near ? random.Below(20) : random.Any();
    const unsigned char* address = PixelAddress({middle, stride}, x, y, pixel);
    const Wide column = Wide{x} * pixel;
    const Wide row = Wide{y} * stride;
    const bool nowhere =
        !IsLong(column) || !IsLong(row) || column + row > kNowhere || column + row < -kNowhere;
    if (nowhere) {
      ASSERT_EQ(address, nullptr) << x << ' ' << y << ' ' << stride << ' ' << pixel;
    } else if (near) {
      ASSERT_EQ(address, middle + static_cast<long>(column + row));
    }
  }
}

}  // namespace
