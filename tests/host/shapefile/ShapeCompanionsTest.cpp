#include "host/shapefile/ShapeCompanions.h"

#include <gtest/gtest.h>

#include <string>

#include "host/HostError.h"
#include "shapefile/ShapeFiles.h"

namespace {

using namespace shape_test;
using ravelin::MakeShapeCompanions;

TEST(ShapeCompanions, TheIndexIsAHeaderAndWhereTheRecordLies) {
  const std::string main = FileOf({kSquare}).Bytes();
  const std::string index = MakeShapeCompanions(main, "a.shp").index;
  ASSERT_EQ(index.size(), 108u);
  std::string header = main.substr(0, 100);
  header.replace(24, 4, BigInt(54));
  EXPECT_EQ(index.substr(0, 100), header);
  EXPECT_EQ(index.substr(100), BigInt(50) + BigInt(64));
}

TEST(ShapeCompanions, TheAttributesAreOneNumberForTheOneRecord) {
  const std::string table = MakeShapeCompanions(FileOf({kSquare}).Bytes(), "a.shp").attributes;
  EXPECT_EQ(table.substr(4, 8), LittleInt(1) + std::string("\x41\0\x0A\0", 4));
  EXPECT_EQ(table.substr(32, 3), std::string("ID\0", 3));
  EXPECT_EQ(table.substr(65, 10), "         1");
}

TEST(ShapeCompanions, AreTheSameEveryTime) {
  const std::string main = FileOf({kSquare}).Bytes();
  EXPECT_EQ(MakeShapeCompanions(main, "a").attributes, MakeShapeCompanions(main, "b").attributes);
}

TEST(ShapeCompanions, AMainFileWithoutARecordIsRefused) {
  std::string header = FileOf({kSquare}).Bytes().substr(0, 100);
  header.replace(24, 4, BigInt(50));
  EXPECT_THROW(MakeShapeCompanions(header, "a.shp"), ravelin::HostError);
}

}  // namespace
