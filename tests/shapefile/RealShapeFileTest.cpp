// Reads real main files, where they are at hand, and compares with what other programs read in
// them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "SatCommonUtils/Shapefile.h"
#include "shapefile/ShapeFiles.h"
#include "support/RealData.h"

namespace {

using namespace SatCommonUtils;
using namespace shape_test;
using ravelin_test::BytesOfFile;
using ravelin_test::DataFolder;
using Record = ravelin_test::CsvRecord;

/// The whole numbers between "[" and "]".
std::vector<unsigned long> Sizes(const std::string& rings) {
  const std::size_t begin = rings.find('[') + 1;
  std::istringstream text(rings.substr(begin, rings.find(']') - begin));
  std::vector<unsigned long> sizes;
  for (std::string size; std::getline(text, size, ',');) sizes.push_back(std::stoul(size));
  return sizes;
}

TShapeFilePoint FirstPoint(const std::string& rings) {
  const std::size_t begin = rings.find("first point (") + 13;
  const std::string text = rings.substr(begin);
  return {std::stod(text), std::stod(text.substr(text.find(',') + 1))};
}

bool IsPolygonFile(const Record& fact) {
  return (fact.at("shape_type") == "5" || fact.at("shape_type") == "15") &&
         fact.at("length_matches") == "1";
}

bool ReadsAsTheModel(const std::string& bytes) {
  const TModelResult expected = ReadByModel(bytes);
  TKvMemoryStream stream(bytes);
  TShapeFilePolygonData data;
  return data.Initialize(&stream) == expected.good &&
         BytesOf(data.rings) == BytesOf(expected.rings);
}

class RealShapeFileTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::is_directory(DataFolder() + "/shp")) {
      GTEST_SKIP() << "no real files in " << DataFolder()
                   << "; RAVELIN_TEST_DATA names another folder";
    }
    facts_ = ravelin_test::ReadCsv(DataFolder() + "/shp/facts.csv");
    ASSERT_GT(facts_.size(), 0u);
  }

  static std::string Path(const Record& fact) { return DataFolder() + "/" + fact.at("file"); }

  std::vector<Record> facts_;
};

TEST_F(RealShapeFileTest, TheTypeIsThatOfTheFacts) {
  for (const Record& fact : facts_) {
    EXPECT_EQ(std::to_string(CheckShapeFile(Path(fact))), fact.at("shape_type")) << fact.at("file");
  }
}

TEST_F(RealShapeFileTest, PolygonFilesOfTheRightLengthAreReadAndNoOthers) {
  unsigned long read = 0;
  for (const Record& fact : facts_) {
    TShapeFilePolygonData data;
    EXPECT_EQ(data.InitializeFromFile(Path(fact)), IsPolygonFile(fact)) << fact.at("file");
    if (data) ++read;
  }
  EXPECT_GT(read, 0u);
  EXPECT_LT(read, facts_.size());
}

TEST_F(RealShapeFileTest, LengthAndBoxAreThoseOfTheFacts) {
  for (const Record& fact : facts_) {
    if (!IsPolygonFile(fact)) continue;
    SCOPED_TRACE(fact.at("file"));
    TShapeFilePolygonData data;
    data.InitializeFromFile(Path(fact));
    EXPECT_EQ(std::to_string(data.info.fileLength), fact.at("header_length_bytes"));
    EXPECT_EQ(data.info.xMin, std::stod(fact.at("xMin")));
    EXPECT_EQ(data.info.yMin, std::stod(fact.at("yMin")));
    EXPECT_EQ(data.info.xMax, std::stod(fact.at("xMax")));
    EXPECT_EQ(data.info.yMax, std::stod(fact.at("yMax")));
    if (data.info.shapeType != sftPolygonZ) continue;
    EXPECT_EQ(data.info.zMin, std::stod(fact.at("zMin")));
    EXPECT_EQ(data.info.zMax, std::stod(fact.at("zMax")));
  }
}

TEST_F(RealShapeFileTest, RingsAndPointsAreAsManyAsCounted) {
  for (const Record& fact : facts_) {
    if (!IsPolygonFile(fact)) continue;
    SCOPED_TRACE(fact.at("file"));
    TShapeFilePolygonData data;
    data.InitializeFromFile(Path(fact));
    EXPECT_EQ(std::to_string(data.rings.size()), fact.at("first_record_parts"));
    EXPECT_EQ(std::to_string(data.GetPointsNumber()), fact.at("first_record_points"));
    const std::vector<unsigned long> sizes = Sizes(fact.at("rings"));
    ASSERT_LE(sizes.size(), data.rings.size());
    for (std::size_t i = 0; i < sizes.size(); ++i) EXPECT_EQ(data.rings[i].size() + 1, sizes[i]);
  }
}

TEST_F(RealShapeFileTest, TheFirstPointIsThatOfTheFacts) {
  for (const Record& fact : facts_) {
    if (!IsPolygonFile(fact)) continue;
    TShapeFilePolygonData data;
    ASSERT_TRUE(data.InitializeFromFile(Path(fact)));
    EXPECT_EQ(data.rings[0][0].x, FirstPoint(fact.at("rings")).x) << fact.at("file");
    EXPECT_EQ(data.rings[0][0].y, FirstPoint(fact.at("rings")).y) << fact.at("file");
  }
}

TEST_F(RealShapeFileTest, EveryFileIsReadAsThePlainReaderSays) {
  for (const Record& fact : facts_) {
    EXPECT_TRUE(ReadsAsTheModel(BytesOfFile(Path(fact)))) << fact.at("file");
  }
}

TEST_F(RealShapeFileTest, EveryFileCutAtAThousandPlacesGivesFalse) {
  for (const Record& fact : facts_) {
    const std::string bytes = BytesOfFile(Path(fact));
    const unsigned long step = std::max(1UL, bytes.size() / 1000);
    for (unsigned long size = 0; size < bytes.size(); size += step) {
      // A file that is longer than it says becomes right by cutting.
      if (!IsPolygonFile(fact) && std::to_string(size) == fact.at("header_length_bytes")) continue;
      TKvMemoryStream stream(bytes.substr(0, size));
      TShapeFilePolygonData data;
      ASSERT_FALSE(data.Initialize(&stream)) << fact.at("file") << " cut to " << size;
      ASSERT_TRUE(data.rings.empty());
    }
  }
}

TEST_F(RealShapeFileTest, EveryByteOfTheFirst156OfSmallFilesMayHaveEveryValue) {
  unsigned long files = 0;
  for (const Record& fact : facts_) {
    const std::string bytes = BytesOfFile(Path(fact));
    if (!IsPolygonFile(fact) || bytes.size() > 600) continue;
    ++files;
    for (unsigned long at = 0; at < 156; ++at) {
      std::string changed = bytes;
      for (int value = 0; value < 256; ++value) {
        changed[at] = static_cast<char>(value);
        ASSERT_TRUE(ReadsAsTheModel(changed))
            << fact.at("file") << ": byte " << at << " is " << value;
      }
    }
  }
  EXPECT_GT(files, 0u);
}

}  // namespace
