// Reads any bytes as the main file of a polygon, as the plain model does: what is read fits the
// bytes, and one ring written and read again is the same.
#include <cstdint>
#include <cstring>
#include <string>

#include "SatCommonUtils/Shapefile.h"
#include "fuzz/FuzzInput.h"
#include "shapefile/ShapeFiles.h"

namespace {

using namespace SatCommonUtils;

bool SamePoints(const TShapeFileRing& a, const TShapeFileRing& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof a[0]) == 0;
}

void CheckHeader(const std::string& bytes) {
  TKvMemoryStream stream(bytes);
  const TShapeFileType type = CheckShapeFile(&stream);
  TKvMemoryStream again(bytes);
  TShapeFileData data;
  const bool read = data.Initialize(&again);
  Require(!read || data.info.shapeType == type, "a header that is read has the type checked");
  Require(!read || !IsMtype(type), "M types are refused");
}

void CheckRings(const TShapeFilePolygonData& data, const std::string& bytes) {
  Require(data.info.fileLength == bytes.size(), "the length is that of the bytes");
  unsigned long at = std::string::npos;
  for (const TShapeFileRing& ring : data.rings) {
    Require(ring.size() >= 3, "a ring has three points");
    if (at == std::string::npos) {
      const auto* const first = reinterpret_cast<const char*>(ring.data());
      at = bytes.find(std::string(first, sizeof ring[0]), 152);
    }
  }
  Require(at != std::string::npos, "the first point stands in the bytes");
  const unsigned long total = data.GetPointsNumber();
  Require(152 + total * 16 <= bytes.size(), "there are no more points than the bytes hold");
}

void CheckWriting(const TShapeFilePolygonData& data) {
  TShapeFilePolygonData one;
  if (!one.Setup({data.rings.front()})) return;  // coordinates that are no numbers
  TKvMemoryStream stream;
  Require(one.Write(&stream), "a ring can be written");
  Require(stream.Bytes().size() == one.info.fileLength, "a file is as long as it was to be");
  TShapeFilePolygonData back;
  Require(back.Initialize(&stream), "a ring that was written can be read");
  Require(back.rings.size() == 1 && SamePoints(back.rings[0], one.rings[0]),
          "a ring that was written is read unchanged");
}

/// With the stored length made right, so that mutations reach what lies behind.
std::string WithLength(std::string bytes) {
  const auto words = static_cast<std::uint32_t>(bytes.size() / 2);
  for (unsigned int i = 0; bytes.size() >= 100 && i < 4; ++i) {
    bytes[24 + i] = static_cast<char>(words >> (24 - 8 * i) & 0xff);
  }
  return bytes;
}

void Check(const std::string& bytes) {
  CheckHeader(bytes);
  TKvMemoryStream stream(bytes);
  TShapeFilePolygonData data;
  const bool read = data.Initialize(&stream);
  const shape_test::TModelResult expected = shape_test::ReadByModel(bytes);
  Require(read == expected.good, "a file is read when the model reads it");
  Require(shape_test::BytesOf(data.rings) == shape_test::BytesOf(expected.rings),
          "the rings are the model's");
  if (!read) return;
  Require(data, "what was read is valid");
  CheckRings(data, bytes);
  CheckWriting(data);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  Check(bytes);
  Check(WithLength(bytes));
  return 0;
}
