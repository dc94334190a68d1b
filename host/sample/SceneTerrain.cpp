#include "host/sample/SceneTerrain.h"

#include <iterator>

#include "host/sample/SceneDrainage.h"
#include "host/sample/SceneNoise.h"
#include "host/sample/SceneRivers.h"
#include "host/sample/SceneSun.h"

namespace ravelin {

namespace {

/// The relief is carved on a larger area, so that nothing shows where it ends. Pixels.
constexpr int kMargin = 96;
constexpr int kFineCell = 2;

constexpr Fixed Pixels(int count) {
  return count * kOne;
}

/// Pixels from the coast, positive on land, before the rivers have their say.
class Coast {
 public:
  Fixed At(Fixed x, Fixed y) const {
    const Fixed line = Times(Pixels(815) - x, FixedRatio(443, 1000)) +
                       Times(Pixels(715) - y, FixedRatio(897, 1000));
    return line + 80 * bays_.At(x, y) + 18 * coves_.At(x, y);
  }

 private:
  SceneNoise bays_{11, 430, 1};
  SceneNoise coves_{31, 110, 4};
};

struct Place {
  Fixed x;
  Fixed y;
};

/// The broad valley that the main river takes from the mountains to the sea.
class TrunkValley {
 public:
  /// Pixels from the middle of the valley, at most about 1900.
  Fixed DistanceAt(Fixed x, Fixed y) const {
    const Fixed bentX = x + 34 * bends_.At(x, y);
    const Fixed bentY = y + 34 * bends_.At(y, x);
    Fixed nearest = Pixels(1900);
    for (std::size_t i = 0; i + 1 < std::size(kCourse); ++i) {
      nearest = std::min(nearest, DistanceTo(kCourse[i], kCourse[i + 1], bentX, bentY));
    }
    return nearest;
  }

 private:
  static constexpr Place kCourse[] = {{Pixels(250), Pixels(-60)}, {Pixels(330), Pixels(130)},
                                      {Pixels(270), Pixels(300)}, {Pixels(410), Pixels(440)},
                                      {Pixels(640), Pixels(500)}, {Pixels(760), Pixels(620)},
                                      {Pixels(930), Pixels(690)}};

  static Fixed DistanceTo(const Place& a, const Place& b, Fixed x, Fixed y) {
    const std::int64_t alongX = b.x - a.x;
    const std::int64_t alongY = b.y - a.y;
    const std::int64_t unit = (alongX * alongX + alongY * alongY) / kOne;
    const std::int64_t along = alongX * (x - a.x) + alongY * (y - a.y);
    const auto part = static_cast<Fixed>(std::clamp<std::int64_t>(along / unit, 0, kOne));
    return Length(x - Mix(a.x, b.x, part), y - Mix(a.y, b.y, part));
  }

  SceneNoise bends_{41, 150, 2};
};

/// How fast each place rises while the relief is carved, and where it starts.
class Uplift {
 public:
  /// 0 in the plain, 1 in the mountains.
  Fixed MountainsAt(Fixed x, Fixed y) const {
    const Fixed inland = coast_.At(x, y) + 120 * front_.At(x, y);
    const Fixed besideValley = SmoothStep(Pixels(22), Pixels(120), valley_.DistanceAt(x, y));
    return Times(SmoothStep(Pixels(340), Pixels(560), inland), besideValley);
  }

  /// Metres a round.
  Fixed RateAt(Fixed x, Fixed y) const {
    const Fixed mountains = MountainsAt(x, y);
    const Fixed massif = FixedRatio(60, 100) + Times(massifs_.At(x, y), FixedRatio(55, 100));
    const Fixed hills = SmoothStep(FixedRatio(1, 10), FixedRatio(6, 10), hills_.At(x, y));
    return 42 * Times(mountains, massif) + 5 * Times(hills, kOne - mountains);
  }

  /// Metres above the sea.
  Fixed StartAt(Fixed x, Fixed y) const {
    const Fixed shore = coast_.At(x, y);
    if (shore <= 0) return shore / 4;
    const Fixed rough = kOne + rough_.At(x, y);
    return 1 + shore / 8 + valley_.DistanceAt(x, y) / 6 +
           10 * Times(rough, std::min(kOne, shore / 40)) + 420 * Times(MountainsAt(x, y), rough);
  }

 private:
  Coast coast_;
  TrunkValley valley_;
  SceneNoise front_{51, 480, 2};
  SceneNoise massifs_{71, 330, 2};
  SceneNoise hills_{91, 210, 2};
  SceneNoise rough_{111, 160, 6};
};

/// The pixel at the middle of a cell.
Fixed CellMiddle(int cell, int cellSize) {
  return cell * cellSize * kOne + cellSize * (kOne / 2) - Pixels(kMargin);
}

template <class Value>
SceneGrid<Fixed> FillCells(int cellSize, const Value& value) {
  SceneGrid<Fixed> grid((kSceneWidth + 2 * kMargin) / cellSize,
                        (kSceneHeight + 2 * kMargin) / cellSize);
  for (int y = 0; y < grid.Height(); ++y) {
    for (int x = 0; x < grid.Width(); ++x) {
      grid(x, y) = value(CellMiddle(x, cellSize), CellMiddle(y, cellSize));
    }
  }
  return grid;
}

/// Quadratic B-spline weights of three neighbouring cells.
struct SplineWeights {
  Fixed before;
  Fixed middle;
  Fixed after;

  explicit SplineWeights(Fixed offset)
      : before(Times(kOne / 2 - offset, kOne / 2 - offset) / 2),
        middle(3 * kOne / 4 - Times(offset, offset)),
        after(kOne - before - middle) {}
};

/// A grid of cells as a smooth surface.
class Surface {
 public:
  Surface(const SceneGrid<Fixed>& cells, int cellSize) : cells_(cells), cellSize_(cellSize) {}

  /// `x` and `y` in pixels of the scene; the rim of the grid goes on outside it.
  Fixed At(Fixed x, Fixed y) const {
    const Fixed column = (x + Pixels(kMargin)) / cellSize_;
    const Fixed row = (y + Pixels(kMargin)) / cellSize_;
    const int cellX = column >> kFixedBits;
    const int cellY = row >> kFixedBits;
    const SplineWeights across((column & (kOne - 1)) - kOne / 2);
    const SplineWeights down((row & (kOne - 1)) - kOne / 2);
    return Times(Row(cellX, cellY - 1, across), down.before) +
           Times(Row(cellX, cellY, across), down.middle) +
           Times(Row(cellX, cellY + 1, across), down.after);
  }

 private:
  Fixed Row(int x, int y, const SplineWeights& weights) const {
    return Times(Cell(x - 1, y), weights.before) + Times(Cell(x, y), weights.middle) +
           Times(Cell(x + 1, y), weights.after);
  }

  Fixed Cell(int x, int y) const {
    return cells_(std::clamp(x, 0, cells_.Width() - 1), std::clamp(y, 0, cells_.Height() - 1));
  }

  const SceneGrid<Fixed>& cells_;
  int cellSize_;
};

struct CarvedRelief {
  SceneGrid<Fixed> height;
  SceneDrainage drainage;
};

struct CarvingStage {
  int cellSize;
  int rounds;
};

/// Valleys on coarse cells first, their side valleys on finer ones. Each cell size divides kMargin
/// and the size of the scene.
constexpr CarvingStage kStages[] = {{6, 30}, {4, 9}, {kFineCell, 3}};

SceneErosion ErosionAt(const CarvingStage& stage) {
  const Fixed steepest = FixedRatio(82, 100) * stage.cellSize * kScenePixelSize;
  return {FixedRatio(9, 100), steepest, FixedRatio(7, 100), stage.rounds};
}

SceneGrid<Fixed> Refine(const SceneGrid<Fixed>& cells, int cellSize, int newCellSize) {
  const SceneNoise rough(131, 10, 2);
  const Surface surface(cells, cellSize);
  return FillCells(newCellSize, [&](Fixed x, Fixed y) {
    const Fixed height = surface.At(x, y);
    if (height <= 0) return height;
    return std::max(1, height + Times(2 * kOne + height / 40, rough.At(x, y)));
  });
}

CarvedRelief CarveRelief() {
  const Uplift uplift;
  int cellSize = kStages[0].cellSize;
  CarvedRelief relief{FillCells(cellSize, [&](Fixed x, Fixed y) { return uplift.StartAt(x, y); }),
                      {}};
  for (const CarvingStage& stage : kStages) {
    if (stage.cellSize != cellSize) relief.height = Refine(relief.height, cellSize, stage.cellSize);
    cellSize = stage.cellSize;
    const SceneGrid<Fixed> rate =
        FillCells(cellSize, [&](Fixed x, Fixed y) { return uplift.RateAt(x, y); });
    relief.drainage = Erode(&relief.height, rate, ErosionAt(stage));
  }
  return relief;
}

/// Bends straight lines: rivers wind in the plain, crests waver in the mountains.
class Meander {
 public:
  /// The place on the carved relief that a pixel shows; `height` is the relief's at the pixel.
  Place At(Fixed x, Fixed y, Fixed height) const {
    const Fixed mountain = SmoothStep(150 * kOne, 700 * kOne, height);
    const Fixed reach = Mix(19 * kOne, 7 * kOne, mountain);
    return {x + Times(reach, eastward_.At(x, y)), y + Times(reach, southward_.At(x, y))};
  }

 private:
  SceneNoise eastward_{151, 58, 2};
  SceneNoise southward_{171, 58, 2};
};

/// Gullies and crags smaller than a cell; metres.
Fixed RoughnessAt(const SceneNoise& crags, Fixed x, Fixed y, Fixed height) {
  const Fixed amount = SmoothStep(220 * kOne, 900 * kOne, height);
  return 64 * Times(amount, crags.RidgesAt(x, y));
}

void SampleRelief(const CarvedRelief& relief, SceneTerrain* terrain) {
  const Coast coast;
  const Meander meander;
  const SceneNoise crags(191, 26, 3);
  const Surface heights(relief.height, kFineCell);
  const SceneGrid<Fixed> bankCells =
      MeasureBanks(relief.drainage, relief.height.Width(), kFineCell, 900);
  const Surface banks(bankCells, 1);
  for (int y = 0; y < kSceneHeight; ++y) {
    for (int x = 0; x < kSceneWidth; ++x) {
      const Fixed placeX = x * kOne + kOne / 2;
      const Fixed placeY = y * kOne + kOne / 2;
      const Place place = meander.At(placeX, placeY, heights.At(placeX, placeY));
      const Fixed height = heights.At(place.x, place.y);
      terrain->shore(x, y) = coast.At(place.x, place.y);
      terrain->height(x, y) = height + RoughnessAt(crags, placeX, placeY, height);
      terrain->bank(x, y) = banks.At(place.x, place.y);
    }
  }
}

void LightRelief(SceneTerrain* terrain) {
  for (int y = 0; y < kSceneHeight; ++y) {
    for (int x = 0; x < kSceneWidth; ++x) {
      const auto heightAt = [&](int atX, int atY) {
        return terrain->height(std::clamp(atX, 0, kSceneWidth - 1),
                               std::clamp(atY, 0, kSceneHeight - 1));
      };
      const Fixed east = (heightAt(x + 1, y) - heightAt(x - 1, y)) / (2 * kScenePixelSize);
      const Fixed south = (heightAt(x, y + 1) - heightAt(x, y - 1)) / (2 * kScenePixelSize);
      terrain->slope(x, y) = Length(east, south);
      terrain->light(x, y) = SunlightOn(east, south);
    }
  }
}

}  // namespace

SceneTerrain MakeTerrain() {
  const SceneGrid<Fixed> empty(kSceneWidth, kSceneHeight);
  SceneTerrain terrain{empty, empty, empty, empty, empty};
  SampleRelief(CarveRelief(), &terrain);
  LightRelief(&terrain);
  return terrain;
}

}  // namespace ravelin
