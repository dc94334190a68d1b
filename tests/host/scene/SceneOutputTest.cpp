#include "host/scene/SceneOutput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/HostError.h"
#include "host/scene/support/Scopes.h"
#include "support/TempFolder.h"

namespace {

using namespace ravelin;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(SceneOutput, PutsAllFilesInPlaceTogether) {
  TempFolder folder;
  SceneOutput output(folder.Path());
  output.AddBytes("b", "two");
  output.AddBytes("a", "one!");
  EXPECT_EQ(folder.Names().size(), 2u);
  EXPECT_FALSE(folder.Has("a"));
  output.Commit();
  EXPECT_THAT(folder.Names(), ElementsAre("a", "b"));
  EXPECT_EQ(folder.Read("a"), "one!");
}

TEST(SceneOutput, TellsNamesAndSizesInTheirOrder) {
  TempFolder folder;
  SceneOutput output(folder.Path());
  output.AddBytes("b", "two");
  output.AddBytes("a", "one!");
  const std::vector<SceneOutput::File> files = output.Files();
  ASSERT_EQ(files.size(), 2u);
  EXPECT_EQ(files[0].name, "b");
  EXPECT_EQ(files[0].bytes, 3u);
  EXPECT_EQ(files[1].bytes, 4u);
}

TEST(SceneOutput, LeavesNothingWithoutACommit) {
  TempFolder folder;
  folder.Write("a", "former");
  {
    SceneOutput output(folder.Path());
    output.AddBytes("a", "new");
    output.AddBytes("b", "new");
  }
  EXPECT_THAT(folder.Names(), ElementsAre("a"));
  EXPECT_EQ(folder.Read("a"), "former");
}

// What the list of temporary files alone takes away: the file is there again after its own removal.
TEST(SceneOutput, HasItsTemporaryFilesInTheListOfThem) {
  for (const char* name : {"lower", "With Capitals"}) {
    TempFolder folder;
    folder.MakeFolder(name);
    std::string temporary;
    {
      SceneOutput output(folder / name);
      temporary = output.Add("a").TemporaryPath();
      ASSERT_TRUE(std::filesystem::exists(temporary));
      output.Commit();
      folder.Write(temporary.substr(folder.Path().size() + 1), "left behind");
    }
    EXPECT_FALSE(std::filesystem::exists(temporary)) << name;
    EXPECT_TRUE(folder.Has(std::string(name) + "/a"));
  }
}

TEST(SceneOutput, FailsInAFolderThatIsNotThere) {
  TempFolder folder;
  SceneOutput output(folder / "gone");
  EXPECT_THROW(output.Add("a"), HostError);
  EXPECT_THAT(folder.Names(), IsEmpty());
}

}  // namespace
