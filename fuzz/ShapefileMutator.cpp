// Changes the rings of a polygon's file and stores the counts and lengths that fit them; one change
// in three is of any bytes.
#include <algorithm>
#include <vector>

#include "fuzz/Mutator.h"

namespace {

constexpr std::size_t kHeaderBytes = 100;
constexpr std::size_t kPartsAt = 152;
constexpr std::size_t kPointBytes = 16;
constexpr std::size_t kMostPoints = 1000;

using Rings = std::vector<std::string>;  // the bytes of their points

std::uint32_t LittleAt(const std::string& bytes, std::size_t at) {
  std::uint32_t value = 0;
  std::memcpy(&value, bytes.data() + at, sizeof value);
  return value;
}

std::string Little(std::size_t number) {
  const auto value = static_cast<std::uint32_t>(number);
  std::string bytes(sizeof value, '\0');
  std::memcpy(bytes.data(), &value, sizeof value);
  return bytes;
}

std::string Big(std::size_t number) {
  std::string bytes = Little(number);
  std::reverse(bytes.begin(), bytes.end());
  return bytes;
}

/// The rings as far as the counts and indices fit the bytes.
Rings RingsOf(const std::string& file) {
  Rings rings;
  const std::size_t parts = LittleAt(file, kPartsAt - 8);
  if (parts > (file.size() - kPartsAt) / 4) return rings;
  const std::size_t pointsAt = kPartsAt + 4 * parts;
  const std::size_t points = (file.size() - pointsAt) / kPointBytes;
  for (std::size_t part = 0; part < parts; ++part) {
    const std::size_t begin = LittleAt(file, kPartsAt + 4 * part);
    const std::size_t end = part + 1 < parts ? LittleAt(file, kPartsAt + 4 * (part + 1)) : points;
    if (begin > end || end > points) return rings;
    rings.push_back(file.substr(pointsAt + begin * kPointBytes, (end - begin) * kPointBytes));
  }
  return rings;
}

/// Whole points, the last one the first again.
std::string Closed(std::string ring) {
  ring.resize(std::min(ring.size() / kPointBytes, kMostPoints) * kPointBytes);
  if (ring.size() >= kPointBytes) {
    ring.replace(ring.size() - kPointBytes, kPointBytes, ring, 0, kPointBytes);
  }
  return ring;
}

void ChangeOne(Rings& rings, Random& random) {
  if (rings.empty()) rings.emplace_back(4 * kPointBytes, '\0');
  const std::size_t place = Below(rings.size(), random);
  const auto chosen = rings.begin() + static_cast<std::ptrdiff_t>(place);
  std::string& ring = *chosen;
  const std::size_t point = Below(ring.size() / kPointBytes, random) * kPointBytes;
  switch (random() % 5) {
    case 0:
      rings.push_back(std::string(ring));
      break;
    case 1:
      rings.erase(chosen);
      break;
    case 2:
      ring.insert(point, ring.substr(point, kPointBytes));
      break;
    case 3:
      ring.erase(point, kPointBytes);
      break;
    default:
      ring = Closed(Mutated(ring));
  }
}

/// The file of these rings, its boxes and type those of `former`.
std::string FileOf(const Rings& rings, const std::string& former) {
  std::string indices;
  std::string points;
  for (const std::string& ring : rings) {
    indices += Little(points.size() / kPointBytes);
    points += ring;
  }
  const std::string record = former.substr(kHeaderBytes + 8, kPartsAt - 8 - kHeaderBytes - 8) +
                             Little(rings.size()) + Little(points.size() / kPointBytes) + indices +
                             points;
  const std::size_t size = kHeaderBytes + 8 + record.size();
  return former.substr(0, 24) + Big(size / 2) + former.substr(28, kHeaderBytes - 28) + Big(1) +
         Big(record.size() / 2) + record;
}

}  // namespace

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                    unsigned int seed) {
  Random random(seed);
  if (size < kPartsAt || random() % 3 == 0) return LLVMFuzzerMutate(data, size, maxSize);
  const std::string file(reinterpret_cast<const char*>(data), size);
  Rings rings = RingsOf(file);
  ChangeOne(rings, random);
  const std::string changed = FileOf(rings, file);
  // A file that is cut would not be what its counts say.
  if (changed.size() > maxSize) return LLVMFuzzerMutate(data, size, maxSize);
  return Replace(changed, data, maxSize);
}
