#include "host/shapefile/ShapeFile.h"

#include <new>

#include "Kv/Stream.h"
#include "SatCommonUtils/Raster.h"
#include "host/HostError.h"
#include "host/io/InputFile.h"
#include "host/shapefile/ShapeRefusal.h"

namespace ravelin {
namespace {

using namespace SatCommonUtils;

constexpr unsigned int kFileCode = 9994;
constexpr unsigned long kContentBegin = 108;

unsigned int FromBigEndian(int stored) {
  auto value = static_cast<unsigned int>(stored);
  EndianSwap(&value);
  return value;
}

std::optional<TShapeFileHeader> ReadHeader(TKvStream& stream) {
  TShapeFileHeader header;
  if (!stream.SetPos(0) || stream.Read(&header, sizeof header) != sizeof header ||
      FromBigEndian(header.fileCode) != kFileCode) {
    return std::nullopt;
  }
  return header;
}

/// A file whose reads throw where they fall short before its end: what cannot be read is no reason
/// to say what the file is not.
class ReadableFile : public TKvFileStream {
 public:
  explicit ReadableFile(const std::string& path) : path_(path) {
    if (!Open(TKvPath(path), kvOpenRead, kvShareAll)) {
      throw HostError(path, "cannot be opened", "check its permissions");
    }
  }

  unsigned long Read(void* buffer, unsigned long count) override {
    const unsigned long done = TKvFileStream::Read(buffer, count);
    if (done < count && GetPos() < getSize()) {
      throw HostError(path_, "cannot be read to its end",
                      "check the disk, or whether it is being written");
    }
    return done;
  }

 private:
  std::string path_;
};

/// Bytes behind the first record, as far as the record says how long it is.
unsigned long RestBytes(TKvStream& stream, unsigned long size) {
  TShapeFilePolygonHeader record;
  if (!stream.SetPos(sizeof(TShapeFileHeader))) return 0;
  if (stream.Read(&record, sizeof record) != sizeof record) return 0;
  const unsigned long end = kContentBegin + 2UL * FromBigEndian(record.contentLength);
  return end < size ? size - end : 0;
}

}  // namespace

ShapeFile ReadShapeFile(const std::string& path) {
  ShapeFile file;
  file.bytes = RegularFileSize(path);
  ReadableFile stream(path);
  file.header = ReadHeader(stream);
  if (file.polygon.Initialize(&stream)) {
    file.restBytes = RestBytes(stream, file.bytes);
  } else {
    file.refusal = ShapeRefusal(stream);
    // Reads that fall short have thrown.
    if (file.refusal == kShapeUnreadable) throw std::bad_alloc();
  }
  return file;
}

std::string ShapeTypeName(int code) {
  switch (IntToShapeFileType(code)) {
    case sftNull:
      return "null shape";
    case sftPoint:
      return "point";
    case sftPolyline:
      return "polyline";
    case sftPolygon:
      return "polygon";
    case sftMultipoint:
      return "multipoint";
    case sftPointZ:
      return "point Z";
    case sftPolylineZ:
      return "polyline Z";
    case sftPolygonZ:
      return "polygon Z";
    case sftMultipointZ:
      return "multipoint Z";
    case sftPointM:
      return "point M";
    case sftPolylineM:
      return "polyline M";
    case sftPolygonM:
      return "polygon M";
    case sftMultipointM:
      return "multipoint M";
    case sftMultipatch:
      return "multipatch";
    default:
      return "unknown";
  }
}

unsigned int StoredShapeBytes(const TShapeFileHeader& header) {
  return FromBigEndian(header.fileLength) * 2;
}

}  // namespace ravelin
