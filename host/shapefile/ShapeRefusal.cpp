#include "host/shapefile/ShapeRefusal.h"

#include <vector>

#include "SatCommonUtils/Raster.h"
#include "SatCommonUtils/Shapefile.h"
#include "host/shapefile/ShapeFile.h"

namespace ravelin {
namespace {

using namespace SatCommonUtils;
using std::to_string;

constexpr int kFileCode = 9994;
constexpr int kVersion = 1000;
constexpr unsigned long kRecordEnd = sizeof(TShapeFileHeader) + sizeof(TShapeFilePolygonHeader);
constexpr long kLeastPoints = 4;

// Each of these gives the reason, or nothing when there is none in what it looks at.

std::string CodeFault(int stored) {
  if (stored == kFileCode) return "the file code 9994 is stored in the wrong byte order";
  auto code = static_cast<unsigned int>(stored);
  EndianSwap(&code);
  if (code == kFileCode) return {};
  return "no shapefile: the file code is " + to_string(static_cast<int>(code)) + ", not 9994";
}

std::string TypeFault(int type) {
  if (IntToShapeFileType(type) == sftInvalid) {
    return "shape type " + to_string(type) + " is not known";
  }
  if (type == sftPolygon || type == sftPolygonZ) return {};
  return ShapeTypeName(type) + " files are not read";
}

bool InOrder(double low, double high) {
  return low <= high;
}

/// `THeader` is the file's or the record's.
template <class THeader>
std::string BoxFault(const THeader& header, const std::string& where) {
  if (InOrder(header.xMin, header.xMax) && InOrder(header.yMin, header.yMax)) return {};
  return "the box of " + where + " ends before it begins, or is no number";
}

std::string HeaderFault(const TShapeFileHeader& header, unsigned long size) {
  std::string fault = CodeFault(header.fileCode);
  if (fault.empty() && header.version != kVersion) {
    fault = "version " + to_string(header.version) + " is not known, only 1000 is";
  }
  if (fault.empty()) fault = TypeFault(header.shapeType);
  if (fault.empty()) fault = BoxFault(header, "the header");
  if (fault.empty() && header.shapeType == sftPolygonZ && !InOrder(header.zMin, header.zMax)) {
    fault = "the heights of the header end before they begin, or are no numbers";
  }
  if (fault.empty() && StoredShapeBytes(header) != size) {
    fault = "stored length " + to_string(StoredShapeBytes(header)) + " but the file has " +
            to_string(size) + " bytes";
  }
  return fault;
}

std::string CountsFault(const TShapeFilePolygonHeader& record, unsigned long size) {
  std::string counts = "the first record counts " + to_string(record.numPoints) + " points in " +
                       to_string(record.numParts) + " parts";
  if (record.numParts < 0 || record.numPoints < 0) return counts;
  if (record.numPoints < record.numParts) return counts + ", fewer points than parts";
  const unsigned long needed = kRecordEnd + 4UL * static_cast<unsigned long>(record.numParts) +
                               16UL * static_cast<unsigned long>(record.numPoints);
  if (needed <= size) return {};
  return counts + ", which takes " + to_string(needed) + " bytes, but the file has " +
         to_string(size);
}

std::string RecordFault(const TShapeFilePolygonHeader& record, unsigned long size) {
  if (record.shapeType != sftPolygon && record.shapeType != sftPolygonZ) {
    return "the first record is of shape type " + to_string(record.shapeType) + " (" +
           ShapeTypeName(record.shapeType) + "), not a polygon";
  }
  std::string fault = BoxFault(record, "the first record");
  return fault.empty() ? CountsFault(record, size) : fault;
}

/// Of the ring with this number, counted from 1.
std::string RingFault(unsigned long number, long begin, long end, long points) {
  std::string index = "the start index of ring " + to_string(number + 1) + " is " + to_string(end);
  if (end < 0) return index;
  if (end > points) return index + ", beyond the " + to_string(points) + " points";
  if (end < begin) return index + ", before ring " + to_string(number) + " begins";
  if (end - begin >= kLeastPoints) return {};
  return "ring " + to_string(number) + " has " + to_string(end - begin) +
         " points, a ring needs 4 with its closing point";
}

/// `parts` are the start indices.
std::string RingsFault(const std::vector<int>& parts, long points) {
  long begin = 0;
  for (unsigned long number = 1; number < parts.size(); ++number) {
    std::string fault = RingFault(number, begin, parts[number], points);
    if (!fault.empty()) return fault;
    begin = parts[number];
  }
  return RingFault(parts.empty() ? 1 : parts.size(), begin, points, points);
}

template <class THeader>
bool Read(TKvStream& stream, THeader* header) {
  return stream.Read(header, sizeof *header) == sizeof *header;
}

std::string RecordRefusal(TKvStream& stream, unsigned long size) {
  TShapeFilePolygonHeader record;
  if (size <= sizeof(TShapeFileHeader)) return "there is no record";
  if (!Read(stream, &record)) {
    return "the first record is cut short: the file has " + to_string(size) +
           " bytes, a polygon's begin takes " + to_string(kRecordEnd);
  }
  std::string fault = RecordFault(record, size);
  if (!fault.empty()) return fault;
  std::vector<int> parts(static_cast<unsigned long>(record.numParts));
  const unsigned long bytes = parts.size() * sizeof(int);
  if (stream.Read(parts.data(), bytes) != bytes) return {};
  return RingsFault(parts, record.numPoints);
}

}  // namespace

std::string ShapeRefusal(TKvStream& stream) {
  const unsigned long size = stream.getSize();
  TShapeFileHeader header;
  if (!stream.SetPos(0) || !Read(stream, &header)) {
    return "no shapefile: it has " + to_string(size) + " bytes, the header alone has 100";
  }
  std::string fault = HeaderFault(header, size);
  if (fault.empty()) fault = RecordRefusal(stream, size);
  return fault.empty() ? kShapeUnreadable : fault;
}

}  // namespace ravelin
