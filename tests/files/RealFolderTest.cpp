// Scans the folders of real products, where they are at hand, and compares with their listing.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "SatCommonUtils/Files.h"

namespace {

using SatCommonUtils::TFilenamesList;
using testing::UnorderedElementsAreArray;
namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class RealFolderTest : public testing::Test {
 protected:
  void SetUp() override {
    const char* const named = std::getenv("RAVELIN_TEST_DATA");
    const fs::path data = named != nullptr ? named : RAVELIN_TEST_DATA_DIR;
    std::ifstream lines(data / "folder_listing.tsv");
    if (!lines) GTEST_SKIP() << "no real folders in " << data;
    top = (data / "folder").string();
    for (std::string size, path; std::getline(lines, size, '\t') && std::getline(lines, path);) {
      files.push_back(fs::path(top) / path);
    }
    ASSERT_EQ(files.size(), 16u);
  }

  /// The names of the files that are not hidden: of a folder's own, or of all below it.
  Names NamesIn(const fs::path& folder, bool own) const {
    Names names;
    for (const fs::path& file : files) {
      const std::string relative = file.lexically_relative(folder).string();
      const bool inside = own ? file.parent_path() == folder : relative.rfind("..", 0) != 0;
      if (inside && file.filename().string()[0] != '.') names.push_back(file.filename().string());
    }
    return names;
  }

  std::string top;
  std::vector<fs::path> files;
};

Names Walk(const TFilenamesList& list) {
  Names names;
  std::string name;
  for (bool more = list.GetFirst(&name); more; more = list.GetNext(&name)) names.push_back(name);
  return names;
}

TEST_F(RealFolderTest, EveryFolderListsItsOwnFiles) {
  for (const fs::path& file : files) {
    TFilenamesList list;
    SatCommonUtils::FillFolderFilesList(file.parent_path().string(), &list, nullptr);
    EXPECT_THAT(Walk(list), UnorderedElementsAreArray(NamesIn(file.parent_path(), true)));
  }
}

TEST_F(RealFolderTest, TheTreeHoldsTheFilesOfEverySubtree) {
  std::map<std::string, TFilenamesList> tree;
  SatCommonUtils::FillFolderAndSubfoldersFilesList(top, &tree, false, nullptr);
  EXPECT_EQ(tree.size(), 7u);
  for (const auto& [folder, list] : tree) {
    EXPECT_THAT(Walk(list), UnorderedElementsAreArray(NamesIn(folder, false))) << folder;
  }
}

TEST_F(RealFolderTest, FilesCountTwiceAsMuchWithEveryFolderDown) {
  unsigned long expected = 0;
  for (const fs::path& file : files) {
    const fs::path relative = file.lexically_relative(top);
    const auto depth = std::distance(relative.begin(), relative.end()) - 1;
    if (relative.filename().string()[0] != '.') expected += 1UL << depth;
  }
  std::map<std::string, TFilenamesList> tree;
  EXPECT_EQ(SatCommonUtils::FillFolderAndSubfoldersFilesList(top, &tree, false, nullptr), expected);
}

TEST_F(RealFolderTest, MasksFindTheKindsOfFilesInAnyLetterCase) {
  std::map<std::string, TFilenamesList> tree;
  SatCommonUtils::FillFolderAndSubfoldersFilesList(top, &tree, false, nullptr);
  const TFilenamesList& all = tree[top];
  EXPECT_EQ(all.FindAll("*.imd", nullptr), 3u);
  EXPECT_EQ(all.FindAll("#_mtl.txt", nullptr), 2u);
  EXPECT_EQ(all.FindAll("*.shp", nullptr), 2u);
  EXPECT_EQ(all.FindAll("*.lbl", nullptr), 3u);
  EXPECT_EQ(all.FindAll("#.lbl", nullptr), 4u);
  EXPECT_EQ(all.FindAll("*", nullptr), 1u);
}

TEST_F(RealFolderTest, EveryFileIsFoundByItsNameInLowerCase) {
  for (const fs::path& file : files) {
    std::string lower = file.filename().string();
    for (char& c : lower) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    std::string found;
    const bool hidden = lower[0] == '.';
    EXPECT_EQ(SatCommonUtils::FileExists(file.parent_path().string(), lower, &found), !hidden);
    EXPECT_EQ(found, hidden ? "" : file.filename().string());
  }
}

}  // namespace
