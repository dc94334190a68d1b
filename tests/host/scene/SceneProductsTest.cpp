// The sample and a real scene, and other programs that open what became of them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "host/scene/support/JsonSchema.h"
#include "host/support/RunCommand.h"
#include "support/TempFolder.h"

namespace {

using testing::HasSubstr;
using Words = std::vector<std::string>;

nlohmann::json Schema() {
  std::ifstream file(RAVELIN_SOURCE_FOLDER "/docs/scene.schema.json");
  return nlohmann::json::parse(file);
}

std::string BytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

/// The sample and all that becomes of it in the folder `out`, made once for all tests.
class SampleScene : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder_ = new TempFolder;
    RunCommand({"sample", "sample"}, folder_->Path());
    result_ = RunCommand({"scene", "sample", "-o", "out", "--pixels", "--json"}, folder_->Path());
  }
  static void TearDownTestSuite() {
    delete folder_;
    folder_ = nullptr;
  }

  /// What a program says of the files; skips the test where there is no such program.
  static std::string Ask(const std::string& command) {
    const std::string call = "cd '" + folder_->Path() + "/out' && " + command + " > ../said 2>&1";
    const int status = std::system(call.c_str());
    EXPECT_EQ(status, 0) << command;
    return folder_->Read("said");
  }
  static bool Has(const std::string& program) {
    return std::system(("command -v " + program + " >/dev/null 2>&1").c_str()) == 0;
  }

  static TempFolder* folder_;
  static CommandResult result_;
};

TempFolder* SampleScene::folder_ = nullptr;
CommandResult SampleScene::result_;

TEST_F(SampleScene, IsDone) {
  EXPECT_EQ(result_.exitCode, 0);
  EXPECT_EQ(result_.err, "");
  const nlohmann::json summary = nlohmann::json::parse(result_.out);
  EXPECT_EQ(SchemaFault(summary, Schema()), "");
  const nlohmann::json& scene = summary["scenes"][0];
  EXPECT_EQ(scene["tiles"], 9);
  EXPECT_EQ(scene["bands"].size(), 4u);
  EXPECT_EQ(scene["warnings"].size(), 0u);
  EXPECT_EQ(scene["files"].size(), 13u);
}

TEST_F(SampleScene, IsThatOfTheOtherCommands) {
  const CommandResult stitch =
      RunCommand({"stitch", "sample/tiles/index.txt", "-o", "stitched.bip"}, folder_->Path());
  EXPECT_EQ(stitch.err, "");
  EXPECT_TRUE(folder_->Read("out/pixels.bip") == folder_->Read("stitched.bip"));
  const CommandResult compose =
      RunCommand({"compose", "--size", "1200x900", "--band", "red=sample/red.raw:big",
                  "green=sample/green.raw", "blue=sample/blue.raw:big", "-o", "composed.png"},
                 folder_->Path());
  EXPECT_EQ(compose.err, "");
  EXPECT_TRUE(folder_->Read("out/quicklook.png") == folder_->Read("composed.png"));
  const CommandResult xml = RunCommand({"xml", "nasa-pvl", "sample/sample.lbl"}, folder_->Path());
  EXPECT_EQ(folder_->Read("out/metadata.xml"), xml.out);
}

TEST_F(SampleScene, IsTheSameFromItsBands) {
  const CommandResult composed =
      RunCommand({"scene", "sample", "-o", "bands", "--pixels", "--quiet", "--band",
                  "3=blue.raw:big", "4=GREEN.RAW:little", "6=red.raw:big", "32=nir.raw:little"},
                 folder_->Path());
  EXPECT_EQ(composed.err, "");
  EXPECT_TRUE(folder_->Read("out/pixels.bip") == folder_->Read("bands/pixels.bip"));
}

TEST_F(SampleScene, HasPixelsForGdal) {
  if (!Has("gdalinfo")) GTEST_SKIP() << "no gdalinfo here";
  const std::string info = Ask("gdalinfo pixels.bip");
  EXPECT_THAT(info, HasSubstr("Size is 1200, 900"));
  EXPECT_THAT(info, HasSubstr("Description = Band 32"));
}

TEST_F(SampleScene, HasAFootprintForOgr) {
  if (!Has("ogrinfo")) GTEST_SKIP() << "no ogrinfo here";
  const std::string info = Ask("ogrinfo -al footprint.shp");
  EXPECT_THAT(info, HasSubstr("POLYGON ((543000 5172000,578970 5172000,578970 5145030,"
                              "543000 5145030,543000 5172000))"));
  EXPECT_THAT(info, HasSubstr("ID[\"EPSG\",32759]"));
}

TEST_F(SampleScene, HasWellFormedXml) {
  if (!Has("xmllint")) GTEST_SKIP() << "no xmllint here";
  EXPECT_EQ(Ask("xmllint --noout metadata.xml projection.xml scene.xml"), "");
}

TEST_F(SampleScene, HasWholePictures) {
  if (!Has("pngcheck")) GTEST_SKIP() << "no pngcheck here";
  EXPECT_THAT(Ask("pngcheck quicklook.png footprint.png"),
              HasSubstr("No errors were detected in 2 of the 2 files tested."));
}

class RealProduct : public testing::Test {
 protected:
  void SetUp() override {
    const char* given = std::getenv("RAVELIN_TEST_DATA");
    data_ = given != nullptr ? given : std::string(RAVELIN_SOURCE_FOLDER) + "/../shared/data";
    for (const std::string& data : {data_ + "/raster", data_}) {
      scene_ = data + "/scene";
      if (std::filesystem::is_directory(scene_)) return;
    }
    GTEST_SKIP() << "no real scenes at " << data_ << "; name their folder in RAVELIN_TEST_DATA";
  }

  CommandResult Run(const Words& more) const {
    Words arguments = {"scene", scene_, "-o", "out"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunCommand(arguments, folder_.Path());
  }

  static std::string Band(const std::string& name) {
    return "LC08_L2SP_218074_20190114_20200829_02_T1_SR_" + name;
  }

  std::string data_;
  std::string scene_;
  TempFolder folder_;
};

TEST_F(RealProduct, BecomesTheSamePixelsAsByOtherPrograms) {
  const CommandResult result =
      Run({"--json", "--pixels", "--band", "12=" + Band("B2_le.raw:little"),
           "13=" + Band("b3_be.raw:big"), "14=" + Band("B4_le.raw:little"),
           "15=" + Band("B5_be.raw:big"), "16=" + Band("B6_le.raw:little"),
           "17=" + Band("B7_be.raw:big")});
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_TRUE(folder_.Read("out/pixels.bip") == BytesOf(scene_ + "/expected_all_bands_le.bip"));
  const nlohmann::json summary = nlohmann::json::parse(result.out);
  EXPECT_EQ(SchemaFault(summary, Schema()), "");
  const nlohmann::json& scene = summary["scenes"][0];
  EXPECT_EQ(scene["size"]["width"], 400);
  EXPECT_EQ(scene["bands"][1]["statistics"]["minimum"], 2196);
  EXPECT_EQ(scene["bands"][1]["statistics"]["maximum"], 29981);
  EXPECT_DOUBLE_EQ(scene["bands"][1]["statistics"]["mean"], 1118706263 / 120000.0);
  EXPECT_EQ(scene["cornersDegrees"]["upperLeft"][0], -45.36143);
  EXPECT_TRUE(folder_.Has("out/footprint.prj"));
}

TEST_F(RealProduct, AsksForTheOrderOfItsBands) {
  const CommandResult result = Run({});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("SAMPLE_TYPE is missing; give --order big or --order little"));
}

TEST_F(RealProduct, LacksBandsThatItsLabelNames) {
  const CommandResult result = Run({"--order", "little"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr(Band("B1.raw: no such file; check FILE_NAME_BAND_1")));
}

/// The bands that a real label names, laid down as zeros in raw files of the label's size.
class RealLabel : public RealProduct {
 protected:
  nlohmann::json SceneOf(const std::string& label, const Words& more) const {
    folder_.MakeFolder("product");
    std::filesystem::copy_file(data_ + "/pvl/nasa/mtl/" + label, folder_ / ("product/" + label));
    std::filesystem::permissions(folder_ / ("product/" + label), std::filesystem::perms(0600));
    for (const std::string& file : more) {
      folder_.WriteSparse("product/" + file, bytes_);
    }
    const CommandResult result = RunCommand(
        {"scene", "product", "-o", "out", "--order", "little", "--json"}, folder_.Path());
    EXPECT_EQ(result.err, "");
    return nlohmann::json::parse(result.out)["scenes"][0];
  }

  void SetUp() override {
    RealProduct::SetUp();
    if (!IsSkipped() && !std::filesystem::is_directory(data_ + "/pvl/nasa/mtl")) {
      GTEST_SKIP() << "no real labels at " << data_;
    }
  }

  unsigned long bytes_ = 0;
};

TEST_F(RealLabel, OfALevel2ProductNamesItsOwnFiles) {
  bytes_ = 433ul * 267 * 2;
  Words files;
  for (int band = 1; band <= 7; ++band) {
    files.push_back("LC08_L2SP_204023_20200927_20201006_02_T1_SR_B" + std::to_string(band) +
                    ".raw");
  }
  const nlohmann::json scene = SceneOf("LC08_L2SP_204023_20200927_20201006_02_T1_MTL.txt", files);
  ASSERT_EQ(scene["bands"].size(), 7u);
  EXPECT_EQ(scene["bands"][0]["name"], "Red");
  EXPECT_EQ(scene["bands"][0]["file"], "LC08_L2SP_204023_20200927_20201006_02_T1_SR_B4.TIF");
  EXPECT_EQ(scene["bands"][6]["key"], 107);
}

TEST_F(RealLabel, OfAnOlderProductGivesSizeAndRoles) {
  bytes_ = 7751ul * 6931 * 2;
  Words files;
  for (int band = 1; band <= 7; ++band) {
    files.push_back("LT52240631988227CUB02_B" + std::to_string(band) + ".RAW");
  }
  const nlohmann::json scene = SceneOf("LT52240631988227CUB02_MTL.txt", files);
  EXPECT_EQ(scene["size"]["width"], 7751);
  EXPECT_EQ(scene["bands"][0]["file"], "LT52240631988227CUB02_B3.TIF");
  EXPECT_EQ(scene["bands"][3]["key"], 104);
  EXPECT_EQ(scene["cornersProjection"]["lowerRight"][0], 719100);
}

TEST_F(RealLabel, LeavesOutThePanchromaticBand) {
  bytes_ = 7981ul * 7031 * 2;
  Words files;
  for (const char* band : {"1", "2", "3", "4", "5", "7"}) {
    files.push_back(std::string("LE07_L1TP_160031_20110416_20161210_01_T1_B") + band + ".raw");
  }
  const nlohmann::json scene = SceneOf("LE07_L1TP_160031_20110416_20161210_01_T1_MTL.TXT", files);
  EXPECT_EQ(scene["bands"].size(), 6u);
  EXPECT_THAT(scene["warnings"].dump(), HasSubstr("B8.TIF: its size is 15961 x 14061"));
}

}  // namespace
