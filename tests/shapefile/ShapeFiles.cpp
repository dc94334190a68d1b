#include "shapefile/ShapeFiles.h"

namespace shape_test {
namespace {

/// Takes little-endian and big-endian numbers off a text, one after the other.
class TBytes {
 public:
  explicit TBytes(const std::string& bytes) : bytes_(bytes) {}

  bool Has(unsigned long count) const { return bytes_.size() - pos_ >= count; }
  void Skip(unsigned long count) { pos_ += count; }
  int Big() {
    unsigned int value = 0;
    for (int i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(bytes_[pos_++]);
    return static_cast<int>(value);
  }
  int Little() {
    unsigned int value = 0;
    for (unsigned int i = 0; i < 4; ++i) {
      value |= static_cast<unsigned int>(static_cast<unsigned char>(bytes_[pos_++])) << 8 * i;
    }
    return static_cast<int>(value);
  }
  double Double() {
    double value = 0;
    std::memcpy(&value, bytes_.data() + pos_, sizeof value);
    pos_ += sizeof value;
    return value;
  }

 private:
  const std::string& bytes_;
  unsigned long pos_ = 0;
};

bool HeaderIsThatOfAPolygonFile(TBytes& bytes, unsigned long size) {
  if (!bytes.Has(100)) return false;
  const int code = bytes.Big();
  bytes.Skip(20);
  const unsigned int length = static_cast<unsigned int>(bytes.Big()) * 2;
  const int version = bytes.Little();
  const int type = bytes.Little();
  const double xMin = bytes.Double(), yMin = bytes.Double();
  const double xMax = bytes.Double(), yMax = bytes.Double();
  const double zMin = bytes.Double(), zMax = bytes.Double();
  bytes.Skip(16);
  return code == 9994 && version == 1000 && length == size && (type == 5 || type == 15) &&
         xMin <= xMax && yMin <= yMax && (type == 5 || zMin <= zMax);
}

/// The points of a part without its last one; none when it is too short or lies outside.
std::optional<TShapeFileRing> Ring(const std::vector<TShapeFilePoint>& points, long begin,
                                   long end) {
  if (begin < 0 || end > static_cast<long>(points.size()) || end - begin < 4) return std::nullopt;
  return TShapeFileRing(points.begin() + begin, points.begin() + end - 1);
}

}  // namespace

TModelResult ReadByModel(const std::string& text) {
  TBytes bytes(text);
  if (!HeaderIsThatOfAPolygonFile(bytes, text.size()) || !bytes.Has(52)) return {};
  bytes.Skip(8);
  const int type = bytes.Little();
  const double xMin = bytes.Double(), yMin = bytes.Double();
  const double xMax = bytes.Double(), yMax = bytes.Double();
  const int numParts = bytes.Little(), numPoints = bytes.Little();
  if ((type != 5 && type != 15) || !(xMin <= xMax) || !(yMin <= yMax)) return {};
  if (numParts < 0 || numPoints < numParts) return {};
  if (!bytes.Has(4UL * static_cast<unsigned int>(numParts) +
                 16UL * static_cast<unsigned int>(numPoints))) {
    return {};
  }
  std::vector<long> starts;
  for (int i = 0; i < numParts; ++i) starts.push_back(bytes.Little());
  std::vector<TShapeFilePoint> points;
  for (int i = 0; i < numPoints; ++i) {
    const double x = bytes.Double();
    points.push_back({x, bytes.Double()});
  }
  if (starts.empty()) starts.push_back(0);
  starts.front() = 0;
  starts.push_back(numPoints);
  TModelResult result;
  for (unsigned long i = 0; i + 1 < starts.size(); ++i) {
    const auto ring = Ring(points, starts[i], starts[i + 1]);
    if (!ring) return result;
    result.rings.push_back(*ring);
  }
  result.good = true;
  return result;
}

}  // namespace shape_test
