#include "host/shapefile/ShapeCompanions.h"

#include <string_view>

namespace ravelin {
namespace {

using std::literals::operator""sv;

// Places in a main file: where its length stands in the header, and where its first record begins.
constexpr std::size_t kLengthAt = 24;
constexpr std::size_t kRecordAt = 100;

/// The header of the main file, with the length of the index in units of two bytes, and of the one
/// record its place, in the same units, and its length, which the main file tells in its own
/// header.
std::string Index(const std::string& mainFile) {
  std::string index = mainFile.substr(0, kRecordAt);
  index.replace(kLengthAt, 4, "\0\0\0\x36"sv);
  return index.append("\0\0\0\x32"sv).append(mainFile, kRecordAt + 4, 4);
}

/// A table of dBASE III: one record, of ten bytes, behind a header of 65. Its date is always the
/// same, so that the same points give the same files.
std::string Attributes() {
  std::string table("\x03\x5F\x07\x1A\x01\0\0\0\x41\0\x0A\0"sv);
  table.resize(32);
  table.append("ID\0\0\0\0\0\0\0\0\0N\0\0\0\0\x09"sv);
  table.resize(64);
  // The end of the header, a record that is not deleted, the end of the file.
  return table.append("\r         1\x1A"sv);
}

}  // namespace

ShapeCompanions MakeShapeCompanions(const std::string& mainFile) {
  return {Index(mainFile), Attributes()};
}

}  // namespace ravelin
