#include "host/sample/SceneDrainage.h"

#include <functional>
#include <queue>
#include <utility>

namespace ravelin {

namespace {

struct Step {
  int x;
  int y;
  Fixed length;
};

constexpr Fixed kDiagonal = 92682;

constexpr Step kSteps[8] = {{-1, 0, kOne},      {1, 0, kOne},        {0, -1, kOne},
                            {0, 1, kOne},       {-1, -1, kDiagonal}, {1, -1, kDiagonal},
                            {-1, 1, kDiagonal}, {1, 1, kDiagonal}};

using Shore = std::pair<Fixed, std::uint32_t>;
using Flood = std::priority_queue<Shore, std::vector<Shore>, std::greater<>>;

/// A flood that rises from the sea; it reaches each cell over the lowest way there is.
class RisingFlood {
 public:
  explicit RisingFlood(const SceneGrid<Fixed>& height)
      : height_(height), level_(height.Width(), height.Height()), reached_(height.Size()) {
    drainage_.receiver.resize(height.Size());
    drainage_.order.reserve(height.Size());
    StartFromSea();
    while (!flood_.empty()) Advance();
  }

  SceneDrainage Take() { return std::move(drainage_); }

 private:
  void StartFromSea() {
    for (std::size_t cell = 0; cell < height_.Size(); ++cell) {
      if (height_[cell] <= 0) Reach(static_cast<std::uint32_t>(cell), 0);
    }
  }

  void Reach(std::uint32_t cell, Fixed level) {
    reached_[cell] = 1;
    level_[cell] = level;
    flood_.emplace(level, cell);
  }

  void Advance() {
    const auto [level, cell] = flood_.top();
    flood_.pop();
    const int x = static_cast<int>(cell) % height_.Width();
    const int y = static_cast<int>(cell) / height_.Width();
    drainage_.receiver[cell] = SteepestReached(x, y, cell);
    drainage_.order.push_back(cell);
    reached_[cell] = 2;
    for (const Step& step : kSteps) {
      if (!height_.Contains(x + step.x, y + step.y)) continue;
      const auto next = static_cast<std::uint32_t>(height_.Index(x + step.x, y + step.y));
      if (reached_[next] == 0) Reach(next, std::max(level + 1, height_[next]));
    }
  }

  std::uint32_t SteepestReached(int x, int y, std::uint32_t cell) const {
    std::uint32_t steepest = cell;
    std::int64_t fall = -1;
    if (height_[cell] <= 0) return cell;
    for (const Step& step : kSteps) {
      if (!height_.Contains(x + step.x, y + step.y)) continue;
      const auto next = static_cast<std::uint32_t>(height_.Index(x + step.x, y + step.y));
      if (reached_[next] != 2) continue;
      const std::int64_t drop = (std::int64_t{level_[cell]} - level_[next]) * kOne / step.length;
      if (drop > fall) {
        fall = drop;
        steepest = next;
      }
    }
    return steepest;
  }

  const SceneGrid<Fixed>& height_;
  SceneGrid<Fixed> level_;
  std::vector<std::uint8_t> reached_;
  Flood flood_;
  SceneDrainage drainage_;
};

void GatherWater(SceneDrainage* drainage) {
  drainage->area.assign(drainage->receiver.size(), 1);
  for (auto cell = drainage->order.rbegin(); cell != drainage->order.rend(); ++cell) {
    const std::uint32_t below = drainage->receiver[*cell];
    if (below != *cell) drainage->area[below] += drainage->area[*cell];
  }
}

bool IsDiagonal(std::uint32_t a, std::uint32_t b, int width) {
  const std::uint32_t distance = a > b ? a - b : b - a;
  return distance != 1 && distance != static_cast<std::uint32_t>(width);
}

void Incise(SceneGrid<Fixed>* height, const SceneGrid<Fixed>& uplift, const SceneErosion& erosion,
            const SceneDrainage& drainage) {
  for (const std::uint32_t cell : drainage.order) {
    const std::uint32_t below = drainage.receiver[cell];
    if (below == cell) continue;
    const Fixed length = IsDiagonal(cell, below, height->Width()) ? kDiagonal : kOne;
    const std::int64_t root = IntegerSqrt(std::uint64_t{drainage.area[cell]} << 16);
    const std::int64_t cut = erosion.incision * root / 256 * kOne / length;
    const std::int64_t raised = std::int64_t{(*height)[cell]} + uplift[cell];
    const std::int64_t cutDown = (raised * kOne + cut * (*height)[below]) / (kOne + cut);
    const std::int64_t highest = (*height)[below] + Times(erosion.steepest, length);
    (*height)[cell] = static_cast<Fixed>(std::clamp<std::int64_t>(cutDown, 1, highest));
  }
}

void Creep(SceneGrid<Fixed>* height, Fixed share) {
  const SceneGrid<Fixed> before = *height;
  for (int y = 1; y + 1 < before.Height(); ++y) {
    for (int x = 1; x + 1 < before.Width(); ++x) {
      if (before(x, y) <= 0) continue;
      const std::int64_t around =
          std::int64_t{before(x - 1, y)} + before(x + 1, y) + before(x, y - 1) + before(x, y + 1);
      const auto mean = static_cast<Fixed>(around / 4);
      (*height)(x, y) = std::max(1, Mix(before(x, y), mean, share));
    }
  }
}

}  // namespace

SceneDrainage RouteWater(const SceneGrid<Fixed>& height) {
  SceneDrainage drainage = RisingFlood(height).Take();
  GatherWater(&drainage);
  return drainage;
}

SceneDrainage Erode(SceneGrid<Fixed>* height, const SceneGrid<Fixed>& uplift,
                    const SceneErosion& erosion) {
  SceneDrainage drainage;
  for (int round = 0; round < erosion.rounds; ++round) {
    drainage = RouteWater(*height);
    Incise(height, uplift, erosion, drainage);
    Creep(height, erosion.creep);
  }
  return drainage;
}

}  // namespace ravelin
