// A shapefile as the command looks at it: read, or refused for a reason.
#pragma once

#include <optional>
#include <string>

#include "SatCommonUtils/Shapefile.h"

namespace ravelin {

struct ShapeFile {
  unsigned long bytes = 0;
  /// The header, when the file has one with the code of shapefiles, whether it is valid or not.
  std::optional<SatCommonUtils::TShapeFileHeader> header;
  SatCommonUtils::TShapeFilePolygonData polygon;
  unsigned long restBytes = 0;  ///< behind the first record, when the polygon was read
  std::string refusal;          ///< why the polygon was not read; empty: it was
};

/// Reads any file. Throws HostError when it is missing, no regular file or cannot be opened or
/// read.
ShapeFile ReadShapeFile(const std::string& path);

/// "polygon", "point Z", ...; "unknown" for a code that is no type.
std::string ShapeTypeName(int code);

/// Bytes of the file as its header says.
unsigned int StoredShapeBytes(const SatCommonUtils::TShapeFileHeader& header);

}  // namespace ravelin
