#include "host/shapefile/ShapeCompanions.h"

#include <gtest/gtest.h>

#include <string>

#include "shapefile/ShapeFiles.h"

namespace {

using namespace shape_test;
using ravelin::MakeShapeCompanions;

TEST(ShapeCompanions, TheIndexIsAHeaderAndWhereTheRecordLies) {
  const std::string main = FileOf({kSquare}).Bytes();
  const std::string index = MakeShapeCompanions(main).index;
  ASSERT_EQ(index.size(), 108u);
  std::string header = main.substr(0, 100);
  header.replace(24, 4, BigInt(54));
  EXPECT_EQ(index.substr(0, 100), header);
  EXPECT_EQ(index.substr(100), BigInt(50) + BigInt(64));
}

TEST(ShapeCompanions, TheAttributesAreOneNumberForTheOneRecord) {
  const std::string table = MakeShapeCompanions(FileOf({kSquare}).Bytes()).attributes;
  EXPECT_EQ(table.substr(0, 4), "\x03\x5F\x07\x1A");
  EXPECT_EQ(table.substr(4, 28),
            LittleInt(1) + std::string("\x41\0\x0A", 3) + std::string(21, '\0'));
  EXPECT_EQ(table.substr(32, 16), "ID" + std::string(9, '\0') + "N" + std::string(4, '\0'));
  EXPECT_EQ(table.substr(48, 16), "\x09" + std::string(15, '\0'));
  EXPECT_EQ(table.substr(64), "\r         1\x1A");
}

}  // namespace
