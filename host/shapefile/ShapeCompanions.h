// The files that lie beside a shapefile's main file.
#pragma once

#include <string>

namespace ravelin {

/// Their bytes.
struct ShapeCompanions {
  std::string index;       ///< .shx
  std::string attributes;  ///< .dbf: the field ID, 1 for the one record
};

/// Makes them for a main file with these bytes, which hold a header and one record.
ShapeCompanions MakeShapeCompanions(const std::string& mainFile);

}  // namespace ravelin
