#include <algorithm>
#include <climits>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "Kv/Raster.h"

namespace {

constexpr long kLargestEdge = 1L << 52;
constexpr long double kSnapDistance = 1e-6;

bool IsSize(double value) {
  return std::isfinite(value) && value >= 0;
}

bool IsScale(double value) {
  return std::isfinite(value) && value > 0;
}

bool IsRequest(const TKvDibRect& rect) {
  return std::isfinite(rect.pos[0]) && std::isfinite(rect.pos[1]) && IsSize(rect.size[0]) &&
         IsSize(rect.size[1]) && IsScale(rect.scale);
}

// An exponent as ldexp takes it; from here on every double but 0 is infinite, or vanishes.
int Exponent(unsigned long level) {
  constexpr unsigned long kBeyondDouble = 4096;
  return static_cast<int>(std::min(level, kBeyondDouble));
}

double ToFull(double value, unsigned long level) {
  return std::ldexp(value, Exponent(level));
}

// The quotient's whole number when it is one but for rounding, else what `round` makes of it.
template <class Round>
long ToEdge(long double quotient, Round round) {
  constexpr auto kLimit = static_cast<long double>(kLargestEdge);
  if (quotient <= -kLimit) return -kLargestEdge;
  if (quotient >= kLimit) return kLargestEdge;
  const long double nearest = std::round(quotient);
  const bool whole = std::fabs(quotient - nearest) <= kSnapDistance;
  return static_cast<long>(whole ? nearest : round(quotient));
}

struct Span {
  long start, length;
};

// In long double, where the sum of a large position and a small size does not lose the size, nor
// overflow.
Span CoveringSpan(long double pos, long double size, unsigned long level) {
  const auto toLevel = [level](long double value) { return std::ldexp(value, -Exponent(level)); };
  const long start = ToEdge(toLevel(pos), [](long double q) { return std::floor(q); });
  if (size == 0) return {start, 0};
  const long end = ToEdge(toLevel(pos + size), [](long double q) { return std::ceil(q); });
  return {start, end - start};
}

Span Clipped(const Span& span, unsigned long side) {
  const long end = static_cast<long>(std::min<unsigned long>(side, LONG_MAX));
  const long low = std::max(span.start, 0L);
  const long high = std::min(span.start + span.length, end);
  return {low, std::max(high - low, 0L)};
}

// Bounds are doubles that a deriving class may have filled with anything.
unsigned long ToSide(double size) {
  constexpr double kBeyondUnsignedLong = 0x1p64;
  if (!(size >= 1)) return 0;
  return size < kBeyondUnsignedLong ? static_cast<unsigned long>(size) : ULONG_MAX;
}

unsigned long SideAtLevel(unsigned long side, unsigned long level) {
  return level < sizeof(side) * CHAR_BIT ? ((side - 1) >> level) + 1 : 1;
}

}  // namespace

TKvMultiScaleDibData::TKvMultiScaleDibData() = default;
TKvMultiScaleDibData::~TKvMultiScaleDibData() = default;

TKvDibRect TKvMultiScaleDibData::Bounds() const {
  return levelBounds.empty() ? TKvDibRect{} : levelBounds.front();
}

unsigned long TKvMultiScaleDibData::GetInterpolationLevel(const TKvDibRect& rect,
                                                          const TInterpolationQuality& /*quality*/,
                                                          bool* exact) const {
  if (exact != nullptr) *exact = false;
  if (!IsRequest(rect) || rect.scale < 1) return 0;
  const int level = std::ilogb(rect.scale);
  if (exact != nullptr) *exact = rect.scale == std::ldexp(1.0, level);
  return static_cast<unsigned long>(level);
}

unsigned long TKvMultiScaleDibData::Rect2RectI(const TKvDibRect& rect,
                                               const TInterpolationQuality& quality, int /*param*/,
                                               TKvDibRectI* rectI, bool clip) {
  if (rectI != nullptr) *rectI = {0, 0, 0, 0};
  if (!IsRequest(rect)) return 0;
  const unsigned long level = GetInterpolationLevel(rect, quality, nullptr);
  if (rectI == nullptr) return level;
  Span across = CoveringSpan(rect.pos[0], rect.size[0], level);
  Span up = CoveringSpan(rect.pos[1], rect.size[1], level);
  if (clip) {
    const vec_t_<unsigned long, 2> size = GetScaleDimensions(level);
    across = Clipped(across, size[0]);
    up = Clipped(up, size[1]);
    if (across.length == 0 || up.length == 0) return level;
  }
  *rectI = {across.start, up.start, across.length, up.length};
  return level;
}

TKvDibRect TKvMultiScaleDibData::RectI2Rect(unsigned long level, const TKvDibRectI& rectI) {
  const auto toFull = [level](long value) { return ToFull(static_cast<double>(value), level); };
  return {
      {{toFull(rectI.x), toFull(rectI.y)}}, {{toFull(rectI.w), toFull(rectI.h)}}, ToFull(1, level)};
}

int TKvMultiScaleDibData::GetRect(const TKvDibDataOutBuffer& out, const TKvDibRect& rect,
                                  const TInterpolationQuality& quality, int param,
                                  TKvProgressHandler* /*progress*/) {
  TKvDibRectI rectI{};
  const unsigned long level = Rect2RectI(rect, quality, param, &rectI, false);
  if (level >= GetAllLevels(nullptr)) {
    throw std::logic_error("@TKvMultiScaleDibData::GetRect - Invalid scale");
  }
  return GetRect(level, rectI, out);
}

int TKvMultiScaleDibData::GetRect(unsigned long /*level*/, const TKvDibRectI& /*rect*/,
                                  const TKvDibDataOutBuffer& /*out*/) {
  return kvDibNothing;
}

void TKvMultiScaleDibData::ResetLevelBounds() {
  levelBounds.clear();
}

void TKvMultiScaleDibData::FillDefaultLevelBounds(vec_t_<unsigned long, 2> size,
                                                  unsigned long levels) {
  const vec_t_<double, 2> sides = {{static_cast<double>(size[0]), static_cast<double>(size[1])}};
  std::vector<TKvDibRect> bounds(levels);
  for (unsigned long level = 0; level < levels; ++level) {
    bounds[level] = {{{0, 0}}, sides, ToFull(1, level)};
  }
  levelBounds = std::move(bounds);
}

unsigned long TKvMultiScaleDibData::GetAllLevels(std::vector<TKvDibRect>* levels) const {
  if (levels != nullptr) *levels = levelBounds;
  return levelBounds.size();
}

vec_t_<unsigned long, 2> TKvMultiScaleDibData::GetScaleDimensions(unsigned long level) const {
  if (level >= levelBounds.size()) return {{0, 0}};
  const unsigned long width = ToSide(levelBounds.front().size[0]);
  const unsigned long height = ToSide(levelBounds.front().size[1]);
  if (width == 0 || height == 0) return {{0, 0}};
  return {{SideAtLevel(width, level), SideAtLevel(height, level)}};
}
