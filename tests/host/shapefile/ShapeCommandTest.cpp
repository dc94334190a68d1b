#include "host/shapefile/ShapeCommand.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <cmath>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "host/support/PngFile.h"
#include "host/support/Subcommand.h"
#include "shapefile/ShapeFiles.h"

namespace {

using namespace shape_test;
using testing::ElementsAre;
using testing::HasSubstr;
using Words = std::vector<std::string>;

const char* const kSquareText = "0 0\n0 10\n10 10\n10 0\n";

CommandResult Shape(const TempFolder& folder, Words arguments) {
  return RunSubcommand("shape", std::move(arguments), folder);
}

void ExpectWrongUse(const CommandResult& result, const std::string& part) {
  EXPECT_EQ(result.exitCode, 2);
  EXPECT_THAT(result.err, HasSubstr(part));
}

TEST(ShapeCommand, TellsOfAPolygon) {
  TempFolder folder;
  folder.Write("a.shp", FileOf({kSquare, kTriangle}).Bytes());
  ExpectDone(Shape(folder, {"info", "a.shp"}),
             "a.shp: shapefile\n"
             "  type     5 (polygon)\n"
             "  box      x 0 to 10, y 0 to 10\n"
             "  rings    2\n"
             "  points   7, closing points not counted\n"
             "  file     304 bytes, as the header says\n");
}

TEST(ShapeCommand, TellsOfHeightsAndOfWhatIsNotRead) {
  TempFolder folder;
  TModelFile file = FileOf({kSquare});
  file.type = file.recordType = 15;
  file.zMin = -0.5;
  file.zMax = 1e30;
  std::string bytes = file.Bytes() + std::string(20, '\0');
  bytes.replace(24, 4, BigInt(128));
  folder.Write("a.shp", bytes);
  ExpectDone(Shape(folder, {"info", "a.shp"}),
             "a.shp: shapefile\n"
             "  type     15 (polygon Z)\n"
             "  box      x 0 to 10, y 0 to 10\n"
             "  heights  -0.5 to 1e+30\n"
             "  rings    1\n"
             "  points   4, closing points not counted\n"
             "  file     256 bytes, as the header says\n"
             "  rest     20 bytes behind the first record are not read\n");
}

TEST(ShapeCommand, TellsWhyATypeIsRefused) {
  TempFolder folder;
  TModelFile file = FileOf({kSquare});
  file.type = 25;
  folder.Write("a.shp", file.Bytes());
  ExpectDone(Shape(folder, {"info", "a.shp"}),
             "a.shp: shapefile\n"
             "  type     25 (polygon M)\n"
             "  box      x 0 to 10, y 0 to 10\n"
             "  file     236 bytes, as the header says\n"
             "  refused  polygon M files are not read\n");
}

TEST(ShapeCommand, TellsWhyALengthIsRefused) {
  TempFolder folder;
  folder.Write("a.shp", FileOf({kSquare}).Bytes() + "tail");
  ExpectDone(Shape(folder, {"info", "a.shp"}),
             "a.shp: shapefile\n"
             "  type     5 (polygon)\n"
             "  box      x 0 to 10, y 0 to 10\n"
             "  file     240 bytes, but the header says 236\n"
             "  refused  stored length 236 but the file has 240 bytes\n");
}

TEST(ShapeCommand, TellsOfAnyFile) {
  TempFolder folder;
  folder.Write("a.txt", "");
  folder.Write("b.txt", std::string(200, 'x'));
  ExpectDone(Shape(folder, {"info", "a.txt"}),
             "a.txt: not a shapefile\n"
             "  file     0 bytes\n"
             "  refused  no shapefile: it has 0 bytes, the header alone has 100\n");
  ExpectDone(Shape(folder, {"info", "b.txt"}),
             "b.txt: not a shapefile\n"
             "  file     200 bytes\n"
             "  refused  no shapefile: the file code is 2021161080, not 9994\n");
}

TEST(ShapeCommand, TellsTheSameAsJson) {
  TempFolder folder;
  folder.Write("a.shp", FileOf({kSquare, kTriangle}).Bytes());
  const CommandResult result = Shape(folder, {"info", "a.shp", "--json"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(nlohmann::json::parse(result.out), nlohmann::json::parse(R"({
    "file": "a.shp", "kind": "shapefile", "bytes": 304, "type": 5, "typeName": "polygon",
    "version": 1000, "storedBytes": 304, "box": {"xMin": 0.0, "yMin": 0.0, "xMax": 10.0,
    "yMax": 10.0}, "read": true, "rings": 2, "points": 7, "ringSizes": [4, 3],
    "restBytes": 0})"));
}

TEST(ShapeCommand, TellsRefusalsAsJson) {
  TempFolder folder;
  TModelFile file = FileOf({kSquare});
  file.type = 13;
  file.zMin = 1;
  file.zMax = NAN;
  folder.Write("a\xFF.shp", file.Bytes());
  const CommandResult result = Shape(folder, {"info", "a\xFF.shp", "--json"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(nlohmann::json::parse(result.out), nlohmann::json::parse(R"({
    "file": "aÿ.shp", "kind": "shapefile", "bytes": 236, "type": 13, "typeName": "polyline Z",
    "version": 1000, "storedBytes": 236, "box": {"xMin": 0.0, "yMin": 0.0, "xMax": 10.0,
    "yMax": 10.0}, "heights": {"zMin": 1.0, "zMax": null}, "read": false,
    "refusal": "polyline Z files are not read"})"));
}

TEST(ShapeCommand, FailsOnFilesThatAreNotThere) {
  TempFolder folder;
  folder.MakeFolder("b");
  ExpectFailure(Shape(folder, {"info", "gone"}), "gone: no such file; check the name");
  ExpectFailure(Shape(folder, {"info", "b"}), "b: is a folder; name a file in it");
  ExpectFailure(Shape(folder, {"show", "gone", "-o", "a.png"}),
                "gone: no such file; check the name");
  ExpectFailure(Shape(folder, {"from-points", "gone", "-o", "a.shp"}),
                "gone: no such file; check the name");
}

TEST(ShapeCommand, FailsWhenStandardOutputIsFull) {
  TempFolder folder;
  folder.Write("a.shp", FileOf({kSquare}).Bytes());
  const CommandResult result = RunSubcommand("shape", {"info", "a.shp"}, folder, ToFullDisk);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err,
            "ravelin: standard output: cannot be written; free some space or write elsewhere\n");
}

TEST(ShapeCommand, DrawsAnOutline) {
  TempFolder folder;
  folder.Write("a.shp", FileOf({kSquare}).Bytes());
  ExpectDone(Shape(folder, {"show", "a.shp", "-o", "a.png", "--size", "117x217"}));
  const PngFile png = ReadPng(folder / "a.png");
  EXPECT_EQ(png.width, 117);
  EXPECT_EQ(png.height, 117);
  EXPECT_EQ(png.channels, 1);
  EXPECT_EQ(png.samples[58 * 117 + 8], 0);
  EXPECT_EQ(png.samples[58 * 117 + 58], 224);
  EXPECT_EQ(png.samples[58 * 117 + 2], 255);
}

TEST(ShapeCommand, DrawsAThousandPixelsUnlessToldOtherwise) {
  TempFolder folder;
  folder.Write("a.shp", FileOf({{{0, 0}, {0, 1}, {2, 1}, {2, 0}}}).Bytes());
  ExpectDone(Shape(folder, {"show", "a.shp", "-o", "a.png"}));
  const PngFile png = ReadPng(folder / "a.png");
  EXPECT_EQ(png.width, 1000);
  EXPECT_EQ(png.height, 509);
}

TEST(ShapeCommand, DoesNotDrawWhatIsRefused) {
  TempFolder folder;
  folder.Write("a.shp", FileOf({kSquare}).Bytes() + "tail");
  folder.Write("b.shp", FileOf({{{NAN, 0}, {1, 1}, {2, 2}}}).Bytes());
  ExpectFailure(Shape(folder, {"show", "a.shp", "-o", "a.png"}),
                "a.shp: stored length 236 but the file has 240 bytes; give the main file of a "
                "polygon or polygon Z");
  ExpectFailure(Shape(folder, {"show", "b.shp", "-o", "a.png"}),
                "b.shp: holds points that are no finite numbers and cannot be drawn; remove them");
  EXPECT_FALSE(folder.Has("a.png"));
}

TEST(ShapeCommand, RefusesSizesAndEndingsThatAreNone) {
  TempFolder folder;
  folder.Write("a.shp", FileOf({kSquare}).Bytes());
  folder.Write("a.txt", kSquareText);
  for (const char* size : {"31x100", "100x31", "100x16385", "a", "100"}) {
    ExpectWrongUse(Shape(folder, {"show", "a.shp", "-o", "a.png", "--size", size}),
                   "is not WxH with pixels from 32 to 16384");
  }
  ExpectWrongUse(Shape(folder, {"show", "a.shp", "-o", "a.jpg"}), "end the name in .png");
  ExpectWrongUse(Shape(folder, {"from-points", "a.txt", "-o", "a.png"}), "end the name in .shp");
  ExpectWrongUse(Shape(folder, {}), "");
}

TEST(ShapeCommand, MakesAShapefileOfPoints) {
  TempFolder folder;
  folder.Write("a.txt", kSquareText);
  ExpectDone(Shape(folder, {"from-points", "a.txt", "-o", "b.shp"}));
  EXPECT_THAT(folder.Names(), ElementsAre("a.txt", "b.dbf", "b.shp", "b.shx"));
  EXPECT_EQ(folder.Read("b.shp"), FileOf({kSquare}).Bytes());
  EXPECT_EQ(folder.Read("b.shx").size(), 108u);
  EXPECT_EQ(folder.Read("b.dbf").size(), 76u);
}

TEST(ShapeCommand, DropsAClosingPoint) {
  TempFolder folder;
  folder.Write("a.txt", std::string(kSquareText) + "0 0\n");
  ExpectDone(Shape(folder, {"from-points", "a.txt", "-o", "b.shp"}));
  EXPECT_EQ(folder.Read("b.shp"), FileOf({kSquare}).Bytes());
}

TEST(ShapeCommand, TurnsAnAnticlockwiseRingAndSaysSo) {
  TempFolder folder;
  folder.Write("a.txt", "0 0\n10 0\n10 10\n0 10\n");
  const CommandResult result = Shape(folder, {"from-points", "a.txt", "-o", "b.shp"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err,
            "ravelin: a.txt: note: the points run anticlockwise; they are written clockwise, as "
            "the format wants it\n");
  EXPECT_EQ(folder.Read("b.shp"), FileOf({kSquare}).Bytes());
}

TEST(ShapeCommand, WritesTheCoordinateSystemBeside) {
  TempFolder folder;
  folder.Write("a.txt", kSquareText);
  folder.Write("c.wkt", "GEOGCS[\"x\"]\n");
  ExpectDone(Shape(folder, {"from-points", "a.txt", "-o", "b.shp", "--wkt", "c.wkt"}));
  EXPECT_EQ(folder.Read("b.prj"), "GEOGCS[\"x\"]\n");
}

TEST(ShapeCommand, RefusesAnEmptyCoordinateSystem) {
  TempFolder folder;
  folder.Write("a.txt", kSquareText);
  folder.Write("c.wkt", " \n");
  ExpectFailure(Shape(folder, {"from-points", "a.txt", "-o", "b.shp", "--wkt", "c.wkt"}),
                "c.wkt: is empty; give the WKT of a coordinate system");
  EXPECT_THAT(folder.Names(), ElementsAre("a.txt", "c.wkt"));
}

TEST(ShapeCommand, NotesFilesFromBeforeThatWouldBelongToTheNewOne) {
  TempFolder folder;
  folder.Write("a.txt", kSquareText);
  folder.Write("b.prj", "old");
  folder.Write("b.qix", "old");
  const CommandResult result = Shape(folder, {"from-points", "a.txt", "-o", "b.shp"});
  EXPECT_EQ(result.exitCode, 0);
  const std::string rest =
      ": note: was there already and stays; remove it if it does not belong to the new shapefile\n";
  EXPECT_EQ(result.err, "ravelin: b.prj" + rest + "ravelin: b.qix" + rest);
  EXPECT_EQ(folder.Read("b.prj"), "old");
}

TEST(ShapeCommand, ReadsPointsFromStandardInput) {
  TempFolder folder;
  folder.Write("a.txt", kSquareText);
  const CommandResult result = RunSubcommand("shape", {"from-points", "-", "-o", "b.shp"}, folder,
                                             FromFile(folder / "a.txt"));
  ExpectDone(result);
  EXPECT_EQ(folder.Read("b.shp"), FileOf({kSquare}).Bytes());
}

TEST(ShapeCommand, SaysWhichLineIsNotAPoint) {
  TempFolder folder;
  folder.Write("a.txt", "0 0\n1 b\n2 2\n");
  ExpectFailure(Shape(folder, {"from-points", "a.txt", "-o", "b.shp"}),
                "a.txt: line 2: '1 b' is not two numbers; give x and y, with blanks between them, "
                "on each line");
  EXPECT_THAT(folder.Names(), ElementsAre("a.txt"));
}

TEST(ShapeCommand, WritesAllFilesOrNoneOnAFullDisk) {
  TempFolder folder;
  folder.Write("a.txt", kSquareText);
  folder.Write("c.wkt", std::string(150, 'x'));
  for (const rlim_t most : {0UL, 1UL, 75UL, 76UL, 107UL, 108UL, 149UL, 150UL, 235UL}) {
    const CommandResult result = RunCommand(
        {"shape", "from-points", "a.txt", "-o", "b.shp", "--wkt", "c.wkt"}, folder.Path(), [most] {
          signal(SIGXFSZ, SIG_IGN);
          const rlimit limit = {most, most};
          setrlimit(RLIMIT_FSIZE, &limit);
        });
    EXPECT_EQ(result.exitCode, 1) << most;
    EXPECT_THAT(folder.Names(), ElementsAre("a.txt", "c.wkt")) << most;
  }
}

TEST(ShapeCommand, WritesNothingWhenOneOfTheFilesCannotBe) {
  for (const char* name : {"b.shp", "b.shx", "b.dbf", "b.prj"}) {
    TempFolder folder;
    folder.Write("a.txt", kSquareText);
    folder.Write("c.wkt", "x");
    folder.MakeFolder(name);
    ExpectFailure(Shape(folder, {"from-points", "a.txt", "-o", "b.shp", "--wkt", "c.wkt"}),
                  std::string(name) + ": is a folder; name a file to write");
    EXPECT_EQ(folder.Names().size(), 3u);
  }
}

TEST(ShapeCommand, MayReplaceItsOwnInputs) {
  TempFolder folder;
  folder.Write("b.shp", kSquareText);
  folder.Write("b.prj", "GEOGCS[\"x\"]");
  ExpectDone(Shape(folder, {"from-points", "b.shp", "-o", "b.shp", "--wkt", "b.prj"}));
  EXPECT_EQ(folder.Read("b.shp"), FileOf({kSquare}).Bytes());
  EXPECT_EQ(folder.Read("b.prj"), "GEOGCS[\"x\"]");
}

TEST(ShapeCommand, OtherProgramsOpenWhatItMakes) {
  if (std::system("command -v ogrinfo >/dev/null") != 0) GTEST_SKIP() << "no ogrinfo here";
  TempFolder folder;
  folder.Write("a.txt", "6.5 44.5\n6.5 47.25\n9.5 47.25\n9.5 44.5\n");
  folder.Write("c.wkt",
               "GEOGCS[\"WGS 84\",DATUM[\"WGS_1984\",SPHEROID[\"WGS 84\",6378137,298.257223563]],"
               "PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433]]");
  ExpectDone(Shape(folder, {"from-points", "a.txt", "-o", "b.shp", "--wkt", "c.wkt"}));
  const std::string command =
      "cd '" + folder.Path() + "' && ogrinfo -ro -al b.shp >out.txt 2>err.txt";
  ASSERT_EQ(std::system(command.c_str()), 0);
  EXPECT_EQ(folder.Read("err.txt"), "");
  const std::string told = folder.Read("out.txt");
  EXPECT_THAT(told, HasSubstr("Feature Count: 1\n"));
  EXPECT_THAT(told, HasSubstr("Extent: (6.500000, 44.500000) - (9.500000, 47.250000)\n"));
  EXPECT_THAT(told, HasSubstr("WGS 84"));
  EXPECT_THAT(told, HasSubstr("ID (Integer) = 1\n"));
  EXPECT_THAT(told, HasSubstr("POLYGON ((6.5 44.5,6.5 47.25,9.5 47.25,9.5 44.5,6.5 44.5))"));
}

}  // namespace
