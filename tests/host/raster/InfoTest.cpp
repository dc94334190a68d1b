#include "host/raster/Info.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "host/HostError.h"
#include "host/support/Samples.h"
#include "support/TempFolder.h"

namespace {

using Json = nlohmann::ordered_json;
using ravelin::DescribeFile;
using testing::HasSubstr;

const char* const kHeader =
    "ENVI\nsamples = 3\nlines = 2\nbands = 1\nheader offset = 4\ndata type = 12\n"
    "interleave = bip\nbyte order = 1\nband names = {Red}\n";

TEST(Info, DescribesAnImageByItsHeader) {
  TempFolder folder;
  folder.Write("a.bip", std::string(16, 'x'));
  folder.Write("a.hdr", kHeader);
  const Json json = DescribeFile(folder / "a.bip");
  EXPECT_EQ(json["kind"], "image");
  EXPECT_EQ(json["width"], 3);
  EXPECT_EQ(json["height"], 2);
  EXPECT_EQ(json["bands"], 1);
  EXPECT_EQ(json["bandNames"], Json::array({"Red"}));
  EXPECT_EQ(json["sampleType"], "unsigned 16-bit");
  EXPECT_EQ(json["byteOrder"], "big-endian");
  EXPECT_EQ(json["interleave"], "bip");
  EXPECT_EQ(json["headerOffset"], 4);
  EXPECT_EQ(json["bytes"], 16);
  EXPECT_EQ(json["expectedBytes"], 16);
  EXPECT_EQ(json["complete"], true);
}

TEST(Info, SaysWhenAnImageHasAnotherSizeThanItsHeaderSays) {
  TempFolder folder;
  folder.Write("a.bip", std::string(15, 'x'));
  folder.Write("a.hdr", kHeader);
  const Json json = DescribeFile(folder / "a.bip");
  EXPECT_EQ(json["complete"], false);
  EXPECT_THAT(ravelin::DescriptionText(json), HasSubstr("15 bytes, but the header says 16"));
}

TEST(Info, FindsAHeaderNamedAfterTheWholeImage) {
  TempFolder folder;
  folder.Write("a.bip", std::string(16, 'x'));
  folder.Write("a.bip.hdr", kHeader);
  EXPECT_EQ(DescribeFile(folder / "a.bip")["header"], folder / "a.bip.hdr");
}

TEST(Info, SaysThatAnImageHasNoHeader) {
  TempFolder folder;
  folder.Write("a.bip", "");
  EXPECT_THROW(DescribeFile(folder / "a.bip"), ravelin::HostError);
}

TEST(Info, DoesNotKnowTheBytesOfSizesThatOverflow) {
  TempFolder folder;
  folder.Write("a.bip", "");
  folder.Write("a.hdr",
               "ENVI\nsamples = 9999999999999\nlines = 9999999999999\nbands = 1\ndata type = 12\n");
  const Json json = DescribeFile(folder / "a.bip");
  EXPECT_TRUE(json["expectedBytes"].is_null());
  EXPECT_EQ(json["complete"], false);
  EXPECT_THAT(ravelin::DescriptionText(json), HasSubstr("but the header says unknown"));
}

TEST(Info, DescribesAnIndex) {
  TempFolder folder;
  folder.Write("a", std::string(8, 'x'));
  folder.Write("t.idx", "0 0 1 1 0 0 2 2 6=a\n");
  const Json json = DescribeFile(folder / "t.idx");
  EXPECT_EQ(json["kind"], "tile index");
  EXPECT_EQ(json["tiles"], 1);
  EXPECT_EQ(json["width"], 2);
  EXPECT_EQ(json["height"], 2);
  EXPECT_EQ(json["keys"], Json::array({6}));
  EXPECT_EQ(json["bandNames"], Json::array({"Red"}));
  EXPECT_EQ(json["files"]["present"], 1);
  EXPECT_EQ(json["complete"], true);
}

TEST(Info, CountsTheFilesOfAnIndexThatAreNotAsTheyShouldBe) {
  TempFolder folder;
  folder.Write("short", "1234567");
  folder.Write("t.idx",
               "0 0 1 1 0 0 2 2 1=short\n2 0 3 1 0 0 2 2 1=gone\n4 0 5 1 0 0 2 2 1=/etc/passwd\n");
  const Json json = DescribeFile(folder / "t.idx");
  EXPECT_EQ(json["complete"], false);
  EXPECT_EQ(json["files"]["wrongSize"], 1);
  EXPECT_EQ(json["files"]["missing"], 1);
  EXPECT_EQ(json["files"]["outside"], 1);
  const std::string text = ravelin::DescriptionText(json);
  EXPECT_THAT(text, HasSubstr("line 1: short: wrong size: 7 bytes instead of 8\n"));
  EXPECT_THAT(text, HasSubstr("line 2: gone: missing\n"));
  EXPECT_THAT(text, HasSubstr("line 3: /etc/passwd: outside\n"));
}

TEST(Info, CountsAFileOfAnIndexThatCannotBeFoundAsMissingAndNotAsOutside) {
  TempFolder folder;
  std::filesystem::create_symlink("circle", folder / "circle");
  folder.Write("t.idx", "0 0 1 1 0 0 2 2 1=circle\n");
  const Json files = DescribeFile(folder / "t.idx")["files"];
  EXPECT_EQ(files["missing"], 1);
  EXPECT_EQ(files["outside"], 0);
}

TEST(Info, DoesNotLookAtFilesOutsideTheFolder) {
  TempFolder folder;
  folder.Write("t.idx", "0 0 1 1 0 0 2 2 1=/etc/passwd\n");
  const Json fault = DescribeFile(folder / "t.idx")["files"]["faults"][0];
  EXPECT_FALSE(fault.contains("bytes"));
}

TEST(Info, PrintsNamesWithoutControlBytes) {
  TempFolder folder;
  folder.Write("t.idx", "0 0 1 1 0 0 2 2 1=\x1b[31m\n");
  EXPECT_THAT(ravelin::DescriptionText(DescribeFile(folder / "t.idx")), HasSubstr("\\x1b[31m"));
}

TEST(Info, ReadsNamesThatAreNoUtf8AsWindows1252) {
  TempFolder folder;
  folder.Write("t.idx", "0 0 1 1 0 0 2 2 1=gr\xfcn\n");
  const Json json = DescribeFile(folder / "t.idx");
  EXPECT_EQ(json["files"]["faults"][0]["file"], "gr\xc3\xbcn");
  EXPECT_NO_THROW(json.dump());
}

}  // namespace
