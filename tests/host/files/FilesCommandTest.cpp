#include "host/files/FilesCommand.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "host/support/Subcommand.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;
using Json = nlohmann::json;
using Words = std::vector<std::string>;
namespace fs = std::filesystem;

class FilesCommand : public testing::Test {
 protected:
  /// A folder `product` with files, folders, and what is not listed.
  void SetUp() override {
    for (const char* path : {"product", "product/sub", "product/sub/deeper", "product/.hidden"}) {
      folder.MakeFolder(path);
    }
    for (const char* file : {"product/b.TIF", "product/a.tif", "product/scene_MTL.txt",
                             "product/.hidden.tif", "product/.hidden/c.tif", "product/sub/B.tif",
                             "product/sub/deeper/a.b.tif", "product/sub/deeper/z.Tif"}) {
      folder.Write(file, "");
    }
  }

  CommandResult Files(Words arguments) const {
    return RunSubcommand("files", std::move(arguments), folder);
  }

  void ExpectOutput(const Words& arguments, const std::string& out) const {
    ExpectDone(Files(arguments), out);
  }

  void ExpectFailure(const Words& arguments, const std::string& err) const {
    ::ExpectFailure(Files(arguments), err);
  }

  void ExpectWrongUse(const Words& arguments, const std::string& err) const {
    const CommandResult result = Files(arguments);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, StartsWith("ravelin: "));
    EXPECT_THAT(result.err, HasSubstr(err));
  }

  TempFolder folder;
};

TEST_F(FilesCommand, ListsTheFilesOfAFolderSorted) {
  ExpectOutput({"product"}, "product/a.tif\nproduct/b.TIF\nproduct/scene_MTL.txt\n");
}

TEST_F(FilesCommand, DoesNotDoubleASlashBehindTheFolder) {
  ExpectOutput({"product/sub/"}, "product/sub/B.tif\n");
}

TEST_F(FilesCommand, ListsTheFoldersBelowToo) {
  ExpectOutput({"product", "--recursive"},
               "product/a.tif\nproduct/b.TIF\nproduct/scene_MTL.txt\nproduct/sub/B.tif\n"
               "product/sub/deeper/a.b.tif\nproduct/sub/deeper/z.Tif\n");
}

TEST_F(FilesCommand, ListsFoldersBesideEachOtherSorted) {
  for (const char* name : {"c", "a", "b"}) {
    folder.MakeFolder(std::string("product/sub/") + name);
    folder.Write(std::string("product/sub/") + name + "/f", "");
  }
  ExpectOutput({"product/sub", "--recursive", "--mask", "f"},
               "product/sub/a/f\nproduct/sub/b/f\nproduct/sub/c/f\n");
}

TEST_F(FilesCommand, ListsWhatAMaskMatches) {
  ExpectOutput({"product", "--mask", "*.tif"}, "product/a.tif\nproduct/b.TIF\n");
  ExpectOutput({"product", "--mask", "#_mtl.txt"}, "product/scene_MTL.txt\n");
  ExpectOutput({"--recursive", "--mask", "*.*.*", "product"}, "product/sub/deeper/a.b.tif\n");
}

TEST_F(FilesCommand, AListingWithoutAFileIsEmpty) {
  folder.MakeFolder("empty");
  ExpectOutput({"empty"}, "");
  ExpectOutput({"product", "--mask", "*.img"}, "");
  ExpectOutput({"product", "--mask", ""}, "");
}

TEST_F(FilesCommand, PrintsTheListingAsJson) {
  const CommandResult result = Files({"product", "--recursive", "--mask", "*.TIF", "--json"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(Json::parse(result.out),
            Json::parse(R"({"folder": "product", "mask": "*.TIF", "count": 4, "folders": [
                {"folder": "product", "files": ["a.tif", "b.TIF"]},
                {"folder": "product/sub", "files": ["B.tif"]},
                {"folder": "product/sub/deeper", "files": ["z.Tif"]}],
                "skipped": [], "namesNotUtf8": 0})"));
}

TEST_F(FilesCommand, TheMaskIsNullInTheJsonWhenThereIsNone) {
  const Json listing = Json::parse(Files({"product/.hidden", "--json"}).out);
  EXPECT_TRUE(listing.at("mask").is_null());
  EXPECT_EQ(listing.at("count"), 1);
}

TEST_F(FilesCommand, FollowsLinksToFilesButNotToFolders) {
  fs::create_symlink("../../product", folder / "product/sub/loop");
  fs::create_symlink("B.tif", folder / "product/sub/link.tif");
  fs::create_symlink("nowhere", folder / "product/sub/broken.tif");
  ExpectOutput({"product/sub", "--recursive", "--mask", "*.tif"},
               "product/sub/B.tif\nproduct/sub/link.tif\nproduct/sub/deeper/z.Tif\n");
}

TEST_F(FilesCommand, ListsAFolderThatIsALink) {
  fs::create_symlink("product/sub", folder / "link");
  ExpectOutput({"link"}, "link/B.tif\n");
}

TEST_F(FilesCommand, SaysHowManyNamesAreNotUtf8) {
  folder.Write("product/sub/latin\xfc.tif", "");
  folder.MakeFolder("product/sub/folder\xfc");
  const CommandResult text = Files({"product/sub"});
  EXPECT_EQ(text.exitCode, 0);
  EXPECT_EQ(text.out, "product/sub/B.tif\n");
  EXPECT_EQ(text.err,
            "ravelin: product/sub: note: names that are not UTF-8: 2; they are left out\n");
  EXPECT_EQ(Json::parse(Files({"product", "--recursive", "--json"}).out).at("namesNotUtf8"), 2);
}

TEST_F(FilesCommand, PrintsControlBytesAsDigitsAndAsTheyAreInJson) {
  folder.MakeFolder("odd");
  folder.Write("odd/a\nb\x1b[2J", "");
  ExpectOutput({"odd"}, "odd/a\\x0ab\\x1b[2J\n");
  EXPECT_EQ(Json::parse(Files({"odd", "--json"}).out).at("folders").at(0).at("files").at(0),
            "a\nb\x1b[2J");
}

TEST_F(FilesCommand, ListsNamesOfOtherAlphabetsWhateverTheLocale) {
  folder.MakeFolder("\xc3\x9c");
  folder.Write("\xc3\x9c/\xc3\x84.shp", "");
  for (const char* locale : {"C", "C.UTF-8", "none_XX"}) {
    const CommandResult result =
        RunCommand({"files", "\xc3\x9c"}, folder.Path(), [locale] { setenv("LC_ALL", locale, 1); });
    EXPECT_EQ(result.out, "\xc3\x9c/\xc3\x84.shp\n") << locale;
    EXPECT_EQ(result.err, "") << locale;
  }
}

TEST_F(FilesCommand, ListsAFolderWhoseNameBeginsWithAColon) {
  folder.MakeFolder(":odd");
  folder.Write(":odd/a", "");
  ExpectOutput({":odd"}, "./:odd/a\n");
  ExpectOutput({"find", ":odd", "A"}, "./:odd/a\n");
}

TEST_F(FilesCommand, SkipsAFolderThatCannotBeRead) {
  if (geteuid() == 0) GTEST_SKIP() << "root may read every folder";
  fs::permissions(folder / "product/sub", fs::perms::none);
  const CommandResult text = Files({"product", "--recursive", "--mask", "*.tif"});
  EXPECT_EQ(text.exitCode, 0);
  EXPECT_EQ(text.out, "product/a.tif\nproduct/b.TIF\n");
  EXPECT_EQ(text.err,
            "ravelin: product/sub: note: cannot be read: Permission denied; it is skipped\n");
  const Json listing = Json::parse(Files({"product", "--recursive", "--json"}).out);
  EXPECT_EQ(listing.at("skipped"),
            Json::parse(R"([{"folder": "product/sub", "reason": "Permission denied"}])"));
  fs::permissions(folder / "product/sub", fs::perms::owner_all);
}

TEST_F(FilesCommand, FailsForAFolderThatCannotBeRead) {
  if (geteuid() == 0) GTEST_SKIP() << "root may read every folder";
  fs::permissions(folder / "product/sub", fs::perms::none);
  ExpectFailure({"product/sub"},
                "product/sub: cannot be read: Permission denied; check permissions");
  fs::permissions(folder / "product/sub", fs::perms::owner_all);
}

TEST_F(FilesCommand, FailsForWhatIsNoFolder) {
  ExpectFailure({"missing"}, "missing: no such folder; check the name");
  ExpectFailure({""}, ": no such folder; check the name");
  ExpectFailure({"product/a.tif"}, "product/a.tif: is not a folder; name the folder that it is in");
  ExpectFailure({"latin\xfc"}, "latin\xfc: its name is not UTF-8; rename it or link to it");
}

TEST_F(FilesCommand, FailsWhenTheListingCannotBeWritten) {
  const CommandResult result = RunSubcommand("files", {"product"}, folder, ToFullDisk);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("standard output: cannot be written"));
}

TEST_F(FilesCommand, FindsAFileInAnyLetterCase) {
  ExpectOutput({"find", "product", "SCENE_mtl.TXT"}, "product/scene_MTL.txt\n");
  ExpectOutput({"find", "product/sub/", "b.tif"}, "product/sub/B.tif\n");
}

TEST_F(FilesCommand, FindsAFileByWildcards) {
  ExpectOutput({"find", "product/sub/deeper", "[y-z].*"}, "product/sub/deeper/z.Tif\n");
}

TEST_F(FilesCommand, SaysThatAFileIsNotThere) {
  ExpectFailure({"find", "product", "nix.tif"},
                "product: has no file 'nix.tif', in whatever letter case; list its files with "
                "ravelin files");
  ExpectFailure({"find", "product", ".hidden.tif"},
                "product: has no file '.hidden.tif', in whatever letter case; list its files with "
                "ravelin files");
  ExpectFailure({"find", "missing", "a"}, "missing: no such folder; check the name");
}

TEST_F(FilesCommand, ListsAFolderThatIsCalledFind) {
  folder.MakeFolder("find");
  folder.Write("find/a", "");
  ExpectOutput({"./find"}, "./find/a\n");
}

TEST_F(FilesCommand, RefusesWhatItDoesNotUnderstand) {
  ExpectWrongUse({}, "FOLDER is required");
  ExpectWrongUse({"product", "more"}, "more");
  ExpectWrongUse({"product", "--mask"}, "--mask");
  ExpectWrongUse({"product", "--unknown"}, "--unknown");
  ExpectWrongUse({"find", "product"}, "NAME is required");
  ExpectWrongUse({"product", "find", "product", "a.tif"}, "find");
  ExpectWrongUse({"--json", "find", "product", "a.tif"}, "find");
}

TEST_F(FilesCommand, HasHelp) {
  for (const Words& words : {Words{"--help"}, Words{"find", "--help"}}) {
    const CommandResult result = Files(words);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("FOLDER"));
    EXPECT_THAT(result.out, HasSubstr("Example:"));
  }
}

}  // namespace
