#include <type_traits>

#include "SatCommonUtils/Shapefile.h"
#include "shapefile/ByteOrder.h"
#include "shapefile/DebugLines.h"

namespace SatCommonUtils {

static_assert(sizeof(TShapeFileHeader) == 100 && std::is_trivially_copyable_v<TShapeFileHeader>);

namespace {

constexpr int kFileCode = 9994;
constexpr int kVersion = 1000;

}  // namespace

TShapeFileHeader::TShapeFileHeader() = default;

TShapeFileHeader::operator bool() const {
  if (Swapped(fileCode) != kFileCode) return false;
  const TShapeFileType type = IntToShapeFileType(shapeType);
  if (type == sftInvalid || version != kVersion) return false;
  // Written so that NaN fails.
  if (!(xMax >= xMin && yMax >= yMin)) return false;
  if (IsZtype(type)) return zMax >= zMin;
  if (IsMtype(type)) return mMax >= mMin;
  return true;
}

void TShapeFileHeader::DebugOutput(const std::string& title) const {
  PrintTitle(title);
  PrintField("FileCode", Swapped(fileCode));
  PrintField("Unused1", Swapped(unused1));
  PrintField("Unused2", Swapped(unused2));
  PrintField("Unused3", Swapped(unused3));
  PrintField("Unused4", Swapped(unused4));
  PrintField("Unused5", Swapped(unused5));
  PrintField("FileLength", static_cast<int>(LengthInBytes(fileLength)));
  PrintField("Version", version);
  PrintField("ShapeType", shapeType);
  PrintField("BoundingBox: Xmin", xMin);
  PrintField("BoundingBox: Ymin", yMin);
  PrintField("BoundingBox: Xmax", xMax);
  PrintField("BoundingBox: Ymax", yMax);
  PrintField("BoundingBox: Zmin", zMin);
  PrintField("BoundingBox: Zmax", zMax);
  PrintField("BoundingBox: Mmin", mMin);
  PrintField("BoundingBox: Mmax", mMax);
  PrintEnd(title);
}

}  // namespace SatCommonUtils
