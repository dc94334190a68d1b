// What the command says and returns, case by case.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <vector>

#include "host/support/RunCommand.h"
#include "host/support/Samples.h"
#include "support/TempFolder.h"

namespace {

using testing::HasSubstr;
using Words = std::vector<std::string>;

struct Case {
  const char* name;
  Words arguments;
  int exitCode;
  std::string err;
};

std::ostream& operator<<(std::ostream& out, const Case& c) {
  return out << c.name;
}

// A folder with a 4 x 3 band, files that are not, and indexes.
class CommandLine : public testing::TestWithParam<Case> {
 protected:
  void SetUp() override {
    folder_.Write("b.raw", LittleBytes({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
    folder_.Write("c.raw", LittleBytes({9, 8, 7, 6, 5, 4, 3, 2, 1, 0, 1, 2}));
    folder_.Write("short.raw", std::string(20, 'x'));
    folder_.Write("long.raw", std::string(30, 'x'));
    folder_.MakeFolder("folder");
    folder_.Write("scene.idx", "0 0 3 2 0 0 4 3 red=b.raw\n");
    folder_.Write("bad.idx", "# scene\n0 0 3 2 0 0 4 three red=b.raw\n");
    folder_.Write("gone.idx", "0 0 3 2 0 0 4 3 red=gone.raw\n");
    folder_.Write("out.idx", "0 0 3 2 0 0 4 3 red=../b.raw\n");
  }

  CommandResult Run(const Words& arguments) { return RunCommand(arguments, folder_.Path()); }

  TempFolder folder_;
};

TEST_P(CommandLine, EndsAsDocumented) {
  const auto before = folder_.Names();
  const CommandResult result = Run(GetParam().arguments);
  EXPECT_EQ(result.exitCode, GetParam().exitCode);
  EXPECT_EQ(result.err, GetParam().err);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(folder_.Names(), before);
}

const Case kWrongUse[] = {
    {"NoSubcommand", {}, 2, "ravelin: A subcommand is required; see ravelin --help\n"},
    {"UnknownSubcommand", {"paint"}, 2, "ravelin: 'paint' is not known; see ravelin --help\n"},
    {"ComposeWithoutSize",
     {"compose", "--band", "1=b.raw", "-o", "a.png"},
     2,
     "ravelin: --size is required; see ravelin compose --help\n"},
    {"ComposeWithoutBand",
     {"compose", "--size", "4x3", "-o", "a.png"},
     2,
     "ravelin: --band is required; see ravelin compose --help\n"},
    {"ComposeWithoutOutput",
     {"compose", "--size", "4x3", "--band", "1=b.raw"},
     2,
     "ravelin: --output is required; see ravelin compose --help\n"},
    {"MalformedSize",
     {"compose", "--size", "4*3", "--band", "1=b.raw", "-o", "a.png"},
     2,
     "ravelin: --size: '4*3' is not WxH in whole pixels from 1 to 2147483647; see ravelin compose "
     "--help\n"},
    {"ZeroSize",
     {"compose", "--size", "0x3", "--band", "1=b.raw", "-o", "a.png"},
     2,
     "ravelin: --size: '0x3' is not WxH in whole pixels from 1 to 2147483647; see ravelin compose "
     "--help\n"},
    {"MalformedOffset",
     {"compose", "--size", "4x3", "--offset", "-1", "--band", "1=b.raw", "-o", "a.png"},
     2,
     "ravelin: --offset: '-1' is not a whole number of bytes from 0; see ravelin compose --help\n"},
    {"MalformedBand",
     {"compose", "--size", "4x3", "--band", "b.raw", "-o", "a.png"},
     2,
     "ravelin: --band: 'b.raw' is not of the form KEY=FILE; see ravelin compose --help\n"},
    {"UnknownKey",
     {"compose", "--size", "4x3", "--band", "pink=b.raw", "-o", "a.png"},
     2,
     "ravelin: --band: 'pink' is no band key: give red, green, blue or a whole number; see ravelin "
     "compose --help\n"},
    {"KeyTwice",
     {"compose", "--size", "4x3", "--band", "red=b.raw", "6=c.raw", "-o", "a.png"},
     2,
     "ravelin: --band: '6=c.raw' gives the key 6 a second file: give each band a key of its own; "
     "see ravelin compose --help\n"},
    {"MalformedRect",
     {"compose", "--size", "4x3", "--band", "1=b.raw", "--rect", "0,0,4", "-o", "a.png"},
     2,
     "ravelin: --rect: '0,0,4' is not X,Y,W,H in whole pixels, X and Y from 0, W and H from 1; see "
     "ravelin compose --help\n"},
    {"OtherBits",
     {"compose", "--size", "4x3", "--band", "1=b.raw", "--bits", "12", "-o", "a.png"},
     2,
     "ravelin: --bits: '12' is neither 8 nor 16; see ravelin compose --help\n"},
    {"UnknownEnding",
     {"compose", "--size", "4x3", "--band", "1=b.raw", "-o", "a.tif"},
     2,
     "ravelin: a.tif: cannot tell the format: end the name in .png or .bip; see ravelin compose "
     "--help\n"},
    {"PictureOptionForInterleaved",
     {"stitch", "scene.idx", "--bits", "16", "-o", "a.bip"},
     2,
     "ravelin: a.bip: a .bip holds samples as they are: --stretch and --bits are for a .png; see "
     "ravelin stitch --help\n"},
    {"MalformedLevel",
     {"stitch", "scene.idx", "--level", "x", "-o", "a.png"},
     2,
     "ravelin: --level: 'x' is not a whole number from 0; see ravelin stitch --help\n"},
    {"StitchWithoutIndex",
     {"stitch", "-o", "a.png"},
     2,
     "ravelin: INDEX is required; see ravelin stitch --help\n"},
    {"InfoWithoutFile", {"info"}, 2, "ravelin: FILE is required; see ravelin info --help\n"},
};

const Case kFailedWork[] = {
    {"MissingBand",
     {"compose", "--size", "4x3", "--band", "1=gone.raw", "-o", "a.png"},
     1,
     "ravelin: gone.raw: no such file; check the name\n"},
    {"FolderAsBand",
     {"compose", "--size", "4x3", "--band", "1=folder", "-o", "a.png"},
     1,
     "ravelin: folder: is a folder; name a file in it\n"},
    {"ShortBand",
     {"compose", "--size", "4x3", "--band", "1=short.raw", "-o", "a.png"},
     1,
     "ravelin: short.raw: holds 20 bytes, but 4 x 3 pixels of 2 bytes make 24; check --size and "
     "--offset, or add --allow-short\n"},
    {"LongBand",
     {"compose", "--size", "4x3", "--allow-short", "--band", "1=long.raw", "-o", "a.png"},
     1,
     "ravelin: long.raw: holds 30 bytes, but 4 x 3 pixels of 2 bytes make 24; check --size and "
     "--offset\n"},
    {"BandOfAnotherSizeThanTheOthers",
     {"compose", "--size", "4x3", "--band", "1=b.raw", "2=short.raw", "-o", "a.png"},
     1,
     "ravelin: short.raw: holds 20 bytes, but 4 x 3 pixels of 2 bytes make 24; check --size and "
     "--offset, or add --allow-short\n"},
    {"SizeThatNoFileHas",
     {"compose", "--size", "2147483647x2147483647", "--offset", "18446744073709551615", "--band",
      "1=b.raw", "-o", "a.png"},
     1,
     "ravelin: b.raw: cannot hold 2147483647 x 2147483647 pixels behind 18446744073709551615 "
     "bytes: "
     "no file is that long; check --size and --offset\n"},
    {"RectOutside",
     {"compose", "--size", "4x3", "--band", "1=b.raw", "--rect", "1,0,4,3", "-o", "a.png"},
     1,
     "ravelin: --rect: does not lie inside the image of 4 x 3 pixels; give X,Y,W,H with X + W up "
     "to "
     "4 and Y + H up to 3\n"},
    {"MissingOutputFolder",
     {"compose", "--size", "4x3", "--band", "1=b.raw", "-o", "none/a.png"},
     1,
     "ravelin: none/a.png: cannot be written: No such file or directory; make its folder first or "
     "name another\n"},
    {"MissingIndex",
     {"stitch", "gone", "-o", "a.png"},
     1,
     "ravelin: gone: no such file; check the name\n"},
    {"MalformedIndex",
     {"stitch", "bad.idx", "-o", "a.png"},
     1,
     "ravelin: bad.idx: line 2: height is 'three', not a whole number from 1 to 2147483646; give "
     "left top right bottom srcLeft srcTop width height, then the files\n"},
    {"LevelThatIsNotThere",
     {"stitch", "scene.idx", "--level", "1", "-o", "a.png"},
     1,
     "ravelin: scene.idx: has no level 1; give --level from 0 to 0\n"},
    {"IndexThatLeadsOutside",
     {"stitch", "out.idx", "-o", "a.png"},
     1,
     "ravelin: ../b.raw: leads outside the folder of the index; add --allow-outside if the index "
     "may read it\n"},
    {"InfoOnMissingFile", {"info", "x.bip"}, 1, "ravelin: x.bip: no such file; check the name\n"},
    {"ControlBytesInNames",
     {"info", "\x1b[31m"},
     1,
     "ravelin: \\x1b[31m: no such file; check the name\n"},
};

std::string NameOf(const testing::TestParamInfo<Case>& info) {
  return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(WrongUse, CommandLine, testing::ValuesIn(kWrongUse), NameOf);
INSTANTIATE_TEST_SUITE_P(FailedWork, CommandLine, testing::ValuesIn(kFailedWork), NameOf);

class Help : public testing::TestWithParam<Words> {};

TEST_P(Help, ShowsUsageOptionsAndAnExampleWithoutFailing) {
  Words arguments = GetParam();
  arguments.emplace_back("--help");
  const CommandResult result = RunCommand(arguments, "/");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(result.out, HasSubstr("Usage: ravelin"));
  EXPECT_THAT(result.out, HasSubstr("Options:"));
  EXPECT_THAT(result.out, HasSubstr("Example:\n  ravelin "));
}

TEST_P(Help, FitsATerminalOfAHundredColumns) {
  Words arguments = GetParam();
  arguments.emplace_back("-h");
  std::istringstream lines(RunCommand(arguments, "/").out);
  for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 100u) << line;
}

INSTANTIATE_TEST_SUITE_P(EveryLevel, Help,
                         testing::Values(Words{}, Words{"compose"}, Words{"stitch"},
                                         Words{"info"}));

TEST(CommandLineHelp, ListsTheSubcommandsAndTheExitCodes) {
  const CommandResult result = RunCommand({"--help"}, "/");
  for (const char* name : {"compose", "stitch", "info"}) EXPECT_THAT(result.out, HasSubstr(name));
  EXPECT_THAT(result.out, HasSubstr("Exit codes: 0 done, 1 the work failed, 2 wrong use."));
}

TEST(CommandLineVersion, IsPrinted) {
  const CommandResult result = RunCommand({"--version"}, "/");
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, testing::MatchesRegex("ravelin [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST(InfoCommand, PrintsText) {
  TempFolder folder;
  folder.Write("b.raw", std::string(24, 'x'));
  folder.Write("t.idx", "0 0 3 2 0 0 4 3 red=b.raw\n");
  const CommandResult result = RunCommand({"info", "t.idx"}, folder.Path());
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out,
            "t.idx: tile index\n  size     4 x 3 pixels\n  bands    1: Red\n  tiles    1\n"
            "  files    1 present, 0 missing, 0 of the wrong size, 0 outside the folder of the "
            "index\n");
}

TEST(InfoCommand, PrintsJson) {
  TempFolder folder;
  folder.Write("t.idx", "0 0 3 2 0 0 4 3 red=b.raw\n");
  const CommandResult result = RunCommand({"info", "--json", "t.idx"}, folder.Path());
  EXPECT_EQ(result.exitCode, 0);
  const auto json = nlohmann::json::parse(result.out);
  EXPECT_EQ(json["kind"], "tile index");
  EXPECT_EQ(json["files"]["missing"], 1);
}

}  // namespace
