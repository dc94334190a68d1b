#include "host/sample/SceneRivers.h"

#include <limits>

namespace ravelin {

namespace {

constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();
constexpr int kSmoothingRounds = 10;

struct RiverPoint {
  Fixed x = 0;
  Fixed y = 0;
  Fixed halfWidth = 0;
};

using RiverLine = std::vector<RiverPoint>;

/// Follows each river from its mouth to its source, the tributaries after the river that they join.
class RiverTracer {
 public:
  RiverTracer(const SceneDrainage& drainage, int width, int cellSize, std::uint32_t source)
      : drainage_(drainage),
        width_(static_cast<std::uint32_t>(width)),
        cellSize_(cellSize),
        source_(source),
        upstream_(drainage.area.size(), kNone),
        places_(drainage.area.size()) {
    ChooseUpstream();
  }

  std::vector<RiverLine> Trace() {
    std::vector<RiverLine> lines;
    for (const std::uint32_t cell : drainage_.order) {
      if (drainage_.receiver[cell] == cell) places_[cell] = PlaceOf(cell);
      if (BeginsRiver(cell)) lines.push_back(Follow(cell));
    }
    return lines;
  }

 private:
  bool IsRiver(std::uint32_t cell) const {
    return drainage_.area[cell] >= source_ && drainage_.receiver[cell] != cell;
  }

  bool BeginsRiver(std::uint32_t cell) const {
    return IsRiver(cell) && upstream_[drainage_.receiver[cell]] != cell;
  }

  void ChooseUpstream() {
    for (const std::uint32_t cell : drainage_.order) {
      const std::uint32_t below = drainage_.receiver[cell];
      if (!IsRiver(cell) || !IsRiver(below)) continue;
      const std::uint32_t rival = upstream_[below];
      if (rival == kNone || drainage_.area[cell] > drainage_.area[rival]) upstream_[below] = cell;
    }
  }

  RiverPoint PlaceOf(std::uint32_t cell) const {
    const auto x = static_cast<int>(cell % width_);
    const auto y = static_cast<int>(cell / width_);
    const std::uint32_t root = IntegerSqrt(std::uint64_t{drainage_.area[cell]} << 16);
    return {(2 * x + 1) * cellSize_ * (kOne / 2), (2 * y + 1) * cellSize_ * (kOne / 2),
            static_cast<Fixed>(root) * cellSize_};
  }

  RiverLine Follow(std::uint32_t mouth) {
    std::vector<std::uint32_t> cells;
    for (std::uint32_t cell = mouth; cell != kNone; cell = upstream_[cell]) cells.push_back(cell);
    RiverLine line{places_[drainage_.receiver[mouth]]};
    for (const std::uint32_t cell : cells) line.push_back(PlaceOf(cell));
    line.front().halfWidth = line[1].halfWidth;
    Smooth(&line);
    for (std::size_t i = 0; i < cells.size(); ++i) places_[cells[i]] = line[i + 1];
    return line;
  }

  static void Smooth(RiverLine* line) {
    for (int round = 0; round < kSmoothingRounds; ++round) {
      RiverPoint before = line->front();
      for (std::size_t i = 1; i + 1 < line->size(); ++i) {
        RiverPoint& point = (*line)[i];
        const RiverPoint& after = (*line)[i + 1];
        const RiverPoint kept = point;
        point.x = before.x / 4 + kept.x / 2 + after.x / 4;
        point.y = before.y / 4 + kept.y / 2 + after.y / 4;
        before = kept;
      }
    }
  }

  const SceneDrainage& drainage_;
  std::uint32_t width_;
  int cellSize_;
  std::uint32_t source_;
  std::vector<std::uint32_t> upstream_;
  std::vector<RiverPoint> places_;
};

/// Lowers the distances of the pixels around one stretch of a river.
class StretchPainter {
 public:
  StretchPainter(const RiverPoint& a, const RiverPoint& b, SceneGrid<Fixed>* banks)
      : a_(a), alongX_(b.x - a.x), alongY_(b.y - a.y), widening_(b.halfWidth - a.halfWidth) {
    squaredLength_ = std::int64_t{alongX_} * alongX_ + std::int64_t{alongY_} * alongY_;
    const Fixed reach = kRiverReach + std::max(a.halfWidth, b.halfWidth);
    const int left = std::max(0, (std::min(a.x, b.x) - reach) >> kFixedBits);
    const int top = std::max(0, (std::min(a.y, b.y) - reach) >> kFixedBits);
    const int right = std::min(banks->Width() - 1, (std::max(a.x, b.x) + reach) >> kFixedBits);
    const int bottom = std::min(banks->Height() - 1, (std::max(a.y, b.y) + reach) >> kFixedBits);
    for (int y = top; y <= bottom; ++y) {
      for (int x = left; x <= right; ++x) Lower(&(*banks)(x, y), x, y);
    }
  }

 private:
  void Lower(Fixed* bank, int x, int y) const {
    const std::int64_t dx = std::int64_t{x} * kOne + kOne / 2 - a_.x;
    const std::int64_t dy = std::int64_t{y} * kOne + kOne / 2 - a_.y;
    const std::int64_t along =
        std::clamp<std::int64_t>(dx * alongX_ + dy * alongY_, 0, squaredLength_);
    const std::int64_t unit = squaredLength_ / kOne;
    const auto part =
        static_cast<Fixed>(unit == 0 ? 0 : std::min<std::int64_t>(along / unit, kOne));
    const auto awayX = static_cast<Fixed>(dx - Times(alongX_, part));
    const auto awayY = static_cast<Fixed>(dy - Times(alongY_, part));
    const Fixed halfWidth = a_.halfWidth + Times(widening_, part);
    *bank = std::min(*bank, Length(awayX, awayY) - halfWidth);
  }

  const RiverPoint& a_;
  Fixed alongX_;
  Fixed alongY_;
  Fixed widening_;
  std::int64_t squaredLength_;
};

void Paint(const RiverLine& line, SceneGrid<Fixed>* banks) {
  std::size_t from = 0;
  while (from + 1 < line.size()) {
    const std::size_t to = std::min(from + 2, line.size() - 1);
    StretchPainter(line[from], line[to], banks);
    from = to;
  }
}

}  // namespace

SceneGrid<Fixed> MeasureBanks(const SceneDrainage& drainage, int width, int cellSize,
                              std::uint32_t source) {
  const int height = static_cast<int>(drainage.area.size()) / width;
  SceneGrid<Fixed> banks(width * cellSize, height * cellSize);
  for (std::size_t i = 0; i < banks.Size(); ++i) banks[i] = kRiverReach;
  for (const RiverLine& line : RiverTracer(drainage, width, cellSize, source).Trace()) {
    Paint(line, &banks);
  }
  return banks;
}

}  // namespace ravelin
