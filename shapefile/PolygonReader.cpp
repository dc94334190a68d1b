#include "shapefile/PolygonReader.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace SatCommonUtils {
namespace {

/// Three points and the one that closes the ring.
constexpr long kLeastPoints = 4;

/// Points of a stream, read a block at a time: rings of few points are many, and a read a ring may
/// be a call of the system.
class TPointReader {
 public:
  TPointReader(TKvStream& stream, unsigned long points)
      : stream_(stream), left_(points), block_(std::min(points, kBlock)) {}

  /// Appends the next points to the ring, or passes over them when it is null.
  bool Take(unsigned long count, TShapeFileRing* ring) {
    while (count > 0) {
      if (next_ == end_ && !Fill()) return false;
      const unsigned long part = std::min(count, end_ - next_);
      const TShapeFilePoint* const first = block_.data() + next_;
      if (ring != nullptr) ring->insert(ring->end(), first, first + part);
      next_ += part;
      count -= part;
    }
    return true;
  }

  /// Passes over all that are left.
  bool TakeRest() { return Take(left_ + (end_ - next_), nullptr); }

 private:
  static constexpr unsigned long kBlock = 2048;

  bool Fill() {
    next_ = 0;
    end_ = std::min<unsigned long>(left_, block_.size());
    left_ -= end_;
    const unsigned long bytes = end_ * sizeof(TShapeFilePoint);
    return stream_.Read(block_.data(), bytes) == bytes;
  }

  TKvStream& stream_;
  unsigned long left_;  ///< not read yet
  std::vector<TShapeFilePoint> block_;
  unsigned long next_ = 0;  ///< [next_, end_) of the block are read and not taken yet
  unsigned long end_ = 0;
};

/// Where each ring ends: a ring ends where the next one begins, the last one behind the last point.
std::vector<int> RingEnds(std::vector<int> parts, int numPoints) {
  if (parts.empty()) return {numPoints};
  parts.erase(parts.begin());
  parts.push_back(numPoints);
  return parts;
}

}  // namespace

bool ReadPolygonRings(TKvStream& stream, int numParts, int numPoints,
                      std::vector<TShapeFileRing>* rings) {
  std::vector<int> parts(static_cast<unsigned long>(numParts));
  const unsigned long partBytes = parts.size() * sizeof(int);
  if (stream.Read(parts.data(), partBytes) != partBytes) return false;

  TPointReader reader(stream, static_cast<unsigned long>(numPoints));
  std::vector<TShapeFileRing> whole;
  bool good = true;
  long begin = 0;
  for (const long end : RingEnds(std::move(parts), numPoints)) {
    good = end <= numPoints && end - begin >= kLeastPoints;
    if (!good) break;
    const auto stored = static_cast<unsigned long>(end - begin - 1);
    TShapeFileRing& ring = whole.emplace_back();
    ring.reserve(stored);
    if (!reader.Take(stored, &ring) || !reader.Take(1, nullptr)) return false;
    begin = end;
  }
  if (!reader.TakeRest()) return false;
  rings->insert(rings->end(), std::make_move_iterator(whole.begin()),
                std::make_move_iterator(whole.end()));
  return good;
}

}  // namespace SatCommonUtils
