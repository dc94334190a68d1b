// What lies beside a main file, compared with what shapelib makes of it.
#include <gtest/gtest.h>
#include <shapefil.h>

#include <string>

#include "host/shapefile/ShapeCompanions.h"
#include "shapefile/ShapeFiles.h"
#include "support/TempFolder.h"

namespace {

using namespace shape_test;
using ravelin::MakeShapeCompanions;

bool RestoreIndex(const std::string& path) {
  SAHooks hooks = {};
  SASetupDefaultHooks(&hooks);
  return SHPRestoreSHX(path.c_str(), "rb", &hooks) != 0;
}

bool WriteAttributes(const std::string& path) {
  const DBFHandle table = DBFCreateEx(path.c_str(), nullptr);
  if (table == nullptr) return false;
  const bool written = DBFAddField(table, "ID", FTInteger, 9, 0) == 0 &&
                       DBFWriteIntegerAttribute(table, 0, 0, 1) != 0;
  DBFClose(table);
  return written;
}

TEST(ShapeCompanions, AreThoseThatShapelibMakes) {
  const TempFolder folder;
  const std::string main = FileOf({kSquare}).Bytes();
  folder.Write("a.shp", main);
  ASSERT_TRUE(RestoreIndex(folder / "a.shp"));
  ASSERT_TRUE(WriteAttributes(folder / "a.dbf"));
  const ravelin::ShapeCompanions companions = MakeShapeCompanions(main);
  EXPECT_EQ(companions.index, folder.Read("a.shx"));
  EXPECT_EQ(companions.attributes, folder.Read("a.dbf"));
}

}  // namespace
