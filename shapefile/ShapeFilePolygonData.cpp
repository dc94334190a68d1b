#include <algorithm>
#include <new>
#include <numeric>
#include <utility>

#include "Kv/Services.h"
#include "SatCommonUtils/Shapefile.h"
#include "shapefile/BlockWriter.h"
#include "shapefile/ByteOrder.h"
#include "shapefile/DebugLines.h"
#include "shapefile/PolygonLength.h"
#include "shapefile/PolygonReader.h"

namespace SatCommonUtils {
namespace {

static_assert(sizeof(TShapeFilePoint) == kShapePointBytes);

using TRings = std::vector<TShapeFileRing>;

bool IsPolygon(TShapeFileType type) {
  return type == sftPolygon || type == sftPolygonZ;
}

/// Points of a file of the rings, one more a ring than it holds.
unsigned long PointsNumber(const TRings& rings) {
  return std::accumulate(
      rings.begin(), rings.end(), 0UL,
      [](unsigned long sum, const TShapeFileRing& ring) { return sum + ring.size() + 1; });
}

/// Written so that NaN changes nothing.
void Widen(double value, double* low, double* high) {
  if (value < *low) *low = value;
  if (value > *high) *high = value;
}

void WidenBox(const TRings& rings, TShapeFileHeaderInfo* info) {
  for (const TShapeFileRing& ring : rings) {
    for (const TShapeFilePoint& point : ring) {
      Widen(point.x, &info->xMin, &info->xMax);
      Widen(point.y, &info->yMin, &info->yMax);
    }
  }
}

/// `THeader` is the file's or the record's.
template <class THeader>
void StoreBox(const TShapeFileHeaderInfo& info, THeader* header) {
  header->xMin = info.xMin;
  header->yMin = info.yMin;
  header->xMax = info.xMax;
  header->yMax = info.yMax;
}

TShapeFileHeader FileHeader(const TShapeFileHeaderInfo& info, unsigned int fileBytes) {
  TShapeFileHeader header;
  header.fileCode = Swapped(9994);
  header.fileLength = StoredLength(fileBytes);
  header.version = 1000;
  header.shapeType = sftPolygon;
  StoreBox(info, &header);
  header.zMin = header.zMax = header.mMin = header.mMax = 0;
  return header;
}

TShapeFilePolygonHeader RecordHeader(const TShapeFileHeaderInfo& info, unsigned int fileBytes,
                                     const TRings& rings) {
  TShapeFilePolygonHeader header;
  header.recordNumber = Swapped(1);
  header.contentLength =
      StoredLength(fileBytes - static_cast<unsigned int>(kShapeHeaderBytes + kShapeUncountedBytes));
  header.shapeType = sftPolygon;
  StoreBox(info, &header);
  header.numParts = static_cast<int>(rings.size());
  header.numPoints = static_cast<int>(PointsNumber(rings));
  return header;
}

/// The closing points are not counted, so from the second ring on the indices fall short. Callers
/// rely on these very numbers.
bool WritePartIndices(const TRings& rings, TBlockWriter& out) {
  int start = 0;
  for (const TShapeFileRing& ring : rings) {
    if (!out.Write(&start, sizeof start)) return false;
    start += static_cast<int>(ring.size());
  }
  return true;
}

bool WritePoints(const TRings& rings, TBlockWriter& out) {
  for (const TShapeFileRing& ring : rings) {
    const TShapeFilePoint closing = ring.empty() ? TShapeFilePoint() : ring.front();
    if (!out.Write(ring.data(), ring.size() * sizeof closing)) return false;
    if (!out.Write(&closing, sizeof closing)) return false;
  }
  return true;
}

template <class THeader>
bool WriteHeader(const THeader& header, TKvStream& stream) {
  return stream.Write(&header, sizeof header) == sizeof header;
}

/// Whether the rest of a record with these counts can lie in a stream of `size` bytes.
bool FitsInto(const TShapeFilePolygonHeader& record, unsigned long size) {
  const auto bytes = PolygonFileBytes(static_cast<unsigned long>(record.numParts),
                                      static_cast<unsigned long>(record.numPoints));
  return bytes && *bytes <= size;
}

}  // namespace

TShapeFilePolygonData::TShapeFilePolygonData() {
  info.shapeType = sftPolygon;
}

TShapeFilePolygonData::~TShapeFilePolygonData() = default;

void TShapeFilePolygonData::Reset() {
  info.Reset();
  info.shapeType = sftPolygon;
  TRings().swap(rings);
}

TShapeFilePolygonData::operator bool() const {
  return info && IsPolygon(info.shapeType) && !rings.empty();
}

unsigned int TShapeFilePolygonData::GetPointsNumber() const {
  return static_cast<unsigned int>(PointsNumber(rings));
}

bool TShapeFilePolygonData::Setup(const std::vector<TShapeFileRing>& newRings) {
  TRings copy;
  try {
    copy = newRings;
  } catch (const std::bad_alloc&) {
    copy.clear();
  }
  Reset();
  rings = std::move(copy);
  info.fileLength = PolygonFileBytes(rings.size(), PointsNumber(rings)).value_or(0);
  WidenBox(rings, &info);
  info.zMin = info.zMax = info.mMin = info.mMax = 0;
  if (*this) return true;
  Reset();
  return false;
}

bool TShapeFilePolygonData::Initialize(TKvStream* stream) {
  Reset();
  if (stream == nullptr || !stream->SetPos(0)) return false;
  if (!TShapeFileData::Initialize(stream)) return false;
  const unsigned long size = stream->getSize();
  if (!IsPolygon(info.shapeType) || info.fileLength != size) return false;
  TShapeFilePolygonHeader record;
  if (stream->Read(&record, sizeof record) != sizeof record) return false;
  if (!record || !FitsInto(record, size)) return false;
  try {
    return ReadPolygonRings(*stream, record.numParts, record.numPoints, &rings);
  } catch (const std::bad_alloc&) {
    return false;
  }
}

bool TShapeFilePolygonData::Write(TKvStream* stream) const {
  const auto bytes = PolygonFileBytes(rings.size(), PointsNumber(rings));
  if (stream == nullptr || !*this || !bytes) return false;
  if (!WriteHeader(FileHeader(info, *bytes), *stream)) return false;
  if (!WriteHeader(RecordHeader(info, *bytes, rings), *stream)) return false;
  try {
    TBlockWriter out(*stream);
    return WritePartIndices(rings, out) && WritePoints(rings, out) && out.Flush();
  } catch (const std::bad_alloc&) {
    return false;
  }
}

void TShapeFilePolygonData::DebugOutput() const {
  for (const TShapeFileRing& ring : rings) {
    ::KvPrintDbgMsg("---+--- Ring -------");
    for (const TShapeFilePoint& point : ring) PrintPoint(point.x, point.y);
  }
}

}  // namespace SatCommonUtils
