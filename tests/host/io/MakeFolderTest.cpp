#include "host/io/MakeFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "host/HostError.h"
#include "support/TempFolder.h"

namespace {

using ravelin::HostError;
using ravelin::MakeFolder;

TEST(MakeFolder, MakesTheFoldersAboveIt) {
  TempFolder folder;
  MakeFolder(folder / "a/b/c/");
  EXPECT_TRUE(std::filesystem::is_directory(folder / "a/b/c"));
}

TEST(MakeFolder, TakesOneThatIsThere) {
  TempFolder folder;
  folder.Write("a", "");
  MakeFolder(folder.Path());
  EXPECT_TRUE(folder.Has("a"));
}

TEST(MakeFolder, FailsWhereAFileIs) {
  TempFolder folder;
  folder.Write("a", "mine");
  EXPECT_THROW(MakeFolder(folder / "a"), HostError);
  EXPECT_THROW(MakeFolder(folder / "a/b"), HostError);
  EXPECT_EQ(folder.Read("a"), "mine");
}

}  // namespace
