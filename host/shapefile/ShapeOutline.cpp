#include "host/shapefile/ShapeOutline.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <utility>

#include "host/raster/PngWriter.h"

namespace ravelin {
namespace {

using SatCommonUtils::TShapeFilePoint;
using Rings = std::vector<SatCommonUtils::TShapeFileRing>;

constexpr double kMargin = 8;  // pixels around the box
constexpr std::uint8_t kWhite = 255;
constexpr std::uint8_t kInside = 224;

/// A range of coordinates, halved: the width of a range may be no number, half of it always is.
struct HalfRange {
  double low = DBL_MAX;
  double high = -DBL_MAX;

  void Add(double value) {
    low = std::min(low, value / 2);
    high = std::max(high, value / 2);
  }
  double Width() const { return high - low; }
  /// 0 at the low end, 1 at the high one.
  double Place(double value) const {
    return Width() > 0 ? std::clamp((value / 2 - low) / Width(), 0.0, 1.0) : 0.5;
  }
};

/// From coordinates to pixels; pixel centres lie at whole numbers.
class Projection {
 public:
  Projection(const Rings& rings, const ImageSize& most) {
    for (const auto& ring : rings) {
      for (const TShapeFilePoint& point : ring) {
        x_.Add(point.x);
        y_.Add(point.y);
      }
    }
    Fit(static_cast<double>(most.width - 1) - 2 * kMargin,
        static_cast<double>(most.height - 1) - 2 * kMargin);
  }

  ImageSize Size() const { return {Pixels(width_), Pixels(height_)}; }

  TShapeFilePoint operator()(const TShapeFilePoint& point) const {
    return {kMargin + x_.Place(point.x) * width_, kMargin + (1 - y_.Place(point.y)) * height_};
  }

 private:
  static long Pixels(double length) {
    return static_cast<long>(std::ceil(length + 2 * kMargin)) + 1;
  }

  void Fit(double width, double height) {
    const bool wide = x_.Width() / width >= y_.Width() / height;
    width_ = wide ? width : height * (x_.Width() / y_.Width());
    height_ = wide && x_.Width() > 0 ? width * (y_.Width() / x_.Width()) : height;
    height_ = std::min(height_, height);  // widths so small that they are rounded
  }

  HalfRange x_;
  HalfRange y_;
  double width_ = 0;  // of the box, in pixels
  double height_ = 0;
};

class Canvas {
 public:
  explicit Canvas(const ImageSize& size)
      : size_(size),
        pixels_(Count(size.width, size.height), kWhite),
        edges_(Count(size.width + 1, size.height), 0) {}

  /// An edge of what is filled: a row's pixels behind it change sides.
  void Edge(TShapeFilePoint a, TShapeFilePoint b) {
    if (a.y > b.y) std::swap(a, b);
    const long end = std::min(static_cast<long>(std::ceil(b.y)), size_.height);
    for (long row = std::max(0L, static_cast<long>(std::ceil(a.y))); row < end; ++row) {
      const double x = a.x + (b.x - a.x) * ((static_cast<double>(row) - a.y) / (b.y - a.y));
      const long column = std::clamp(static_cast<long>(std::ceil(x)), 0L, size_.width);
      edges_[Count(size_.width + 1, row) + static_cast<std::size_t>(column)] ^= 1;
    }
  }

  void Fill() {
    for (long row = 0; row < size_.height; ++row) {
      std::uint8_t inside = 0;
      for (long column = 0; column < size_.width; ++column) {
        inside ^= edges_[Count(size_.width + 1, row) + static_cast<std::size_t>(column)];
        if (inside != 0) At(column, row) = kInside;
      }
    }
  }

  void Line(const TShapeFilePoint& a, const TShapeFilePoint& b) {
    const double length = std::max(std::abs(b.x - a.x), std::abs(b.y - a.y));
    const long steps = std::max(1L, static_cast<long>(std::ceil(length)));
    for (long i = 0; i <= steps; ++i) {
      const double part = static_cast<double>(i) / static_cast<double>(steps);
      Dot(a.x + (b.x - a.x) * part, a.y + (b.y - a.y) * part);
    }
  }

  GreyPicture Take() { return {size_, std::move(pixels_)}; }

 private:
  static std::size_t Count(long width, long rows) {
    return static_cast<std::size_t>(width) * static_cast<std::size_t>(rows);
  }

  std::uint8_t& At(long column, long row) {
    return pixels_[Count(size_.width, row) + static_cast<std::size_t>(column)];
  }

  /// Darkens the four pixels around a place, the nearer the darker.
  void Dot(double x, double y) {
    const auto column = static_cast<long>(std::floor(x));
    const auto row = static_cast<long>(std::floor(y));
    const double right = x - static_cast<double>(column);
    const double below = y - static_cast<double>(row);
    Darken(column, row, (1 - right) * (1 - below));
    Darken(column + 1, row, right * (1 - below));
    Darken(column, row + 1, (1 - right) * below);
    Darken(column + 1, row + 1, right * below);
  }

  void Darken(long column, long row, double share) {
    if (column < 0 || row < 0 || column >= size_.width || row >= size_.height) return;
    const double dark = std::min(1.0, 2 * share);
    std::uint8_t& pixel = At(column, row);
    pixel = std::min(pixel, static_cast<std::uint8_t>(std::lround((1 - dark) * kInside)));
  }

  ImageSize size_;
  std::vector<std::uint8_t> pixels_;
  std::vector<std::uint8_t> edges_;  // one more a row
};

/// Calls `draw` with the ends of every line, in pixels.
template <class Draw>
void ForEachLine(const Rings& rings, const Projection& project, Draw draw) {
  for (const auto& ring : rings) {
    for (std::size_t i = 0; i < ring.size(); ++i) {
      draw(project(ring[i]), project(ring[i + 1 == ring.size() ? 0 : i + 1]));
    }
  }
}

}  // namespace

bool CanBeDrawn(const Rings& rings) {
  return std::all_of(rings.begin(), rings.end(), [](const auto& ring) {
    return std::all_of(ring.begin(), ring.end(), [](const TShapeFilePoint& point) {
      return std::isfinite(point.x) && std::isfinite(point.y);
    });
  });
}

GreyPicture DrawOutline(const Rings& rings, const ImageSize& most) {
  const Projection project(rings, most);
  Canvas canvas(project.Size());
  ForEachLine(rings, project, [&](auto a, auto b) { canvas.Edge(a, b); });
  canvas.Fill();
  ForEachLine(rings, project, [&](auto a, auto b) { canvas.Line(a, b); });
  return canvas.Take();
}

void WriteGreyPicture(const GreyPicture& picture, PendingFile& file, const std::string& name) {
  PngWriter writer(file, {picture.size.width, picture.size.height, 1, 8}, name);
  for (long row = 0; row < picture.size.height; ++row) {
    writer.WriteRow(picture.pixels.data() + row * picture.size.width);
  }
  writer.Finish();
}

}  // namespace ravelin
