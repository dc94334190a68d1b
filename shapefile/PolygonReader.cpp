#include "shapefile/PolygonReader.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "shapefile/LargePages.h"

namespace SatCommonUtils {
namespace {

/// Three points and the one that closes the ring.
constexpr long kLeastPoints = 4;

/// Points of a stream, read a block at a time: rings of few points are many, and a read a ring may
/// be a call of the system. Whole blocks of a long ring are read to where they stay.
class TPointReader {
 public:
  TPointReader(TKvStream& stream, unsigned long points)
      : stream_(stream), left_(points), block_(std::min(points, kBlock)) {}

  /// Appends the next points to the ring.
  bool Take(unsigned long count, TShapeFileRing& ring) {
    while (count > 0) {
      unsigned long part = std::min(count, end_ - next_);
      if (part > 0) {
        ring.insert(ring.end(), block_.data() + next_, block_.data() + next_ + part);
        next_ += part;
      } else if (count >= kBlock) {
        part = kBlock;
        ring.resize(ring.size() + part);
        if (!Read(ring.data() + ring.size() - part, part)) return false;
      } else if (!Fill()) {
        return false;
      }
      count -= part;
    }
    return true;
  }

  bool Skip(unsigned long count) {
    while (count > 0) {
      if (next_ == end_ && !Fill()) return false;
      const unsigned long part = std::min(count, end_ - next_);
      next_ += part;
      count -= part;
    }
    return true;
  }

  /// Passes over all that are left.
  bool SkipRest() { return Skip(left_ + (end_ - next_)); }

 private:
  /// 128 KiB: what was just filled with default points is still in the processor's cache when the
  /// file's points come over it.
  static constexpr unsigned long kBlock = 8192;

  bool Fill() {
    next_ = 0;
    end_ = std::min<unsigned long>(left_, block_.size());
    return Read(block_.data(), end_);
  }

  bool Read(TShapeFilePoint* points, unsigned long count) {
    left_ -= count;
    const unsigned long bytes = count * sizeof *points;
    return stream_.Read(points, bytes) == bytes;
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
    AskForLargePages(ring.data(), stored * sizeof(TShapeFilePoint));
    if (!reader.Take(stored, ring) || !reader.Skip(1)) return false;
    begin = end;
  }
  if (!reader.SkipRest()) return false;
  rings->insert(rings->end(), std::make_move_iterator(whole.begin()),
                std::make_move_iterator(whole.end()));
  return good;
}

}  // namespace SatCommonUtils
