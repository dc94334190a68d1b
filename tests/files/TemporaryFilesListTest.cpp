// The list of temporary files. It keeps paths in lower case, and folders for temporary files may
// have capitals in theirs; so the tests work in a folder of their own with relative paths.
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "Kv/Services.h"
#include "SatCommonUtils/Files.h"
#include "kv/Growth.h"
#include "support/EveryAllocation.h"
#include "support/TempFolder.h"

namespace {

using ravelin_test::FailuresOf;
using SatCommonUtils::TTemporaryFilesList;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class TemporaryFilesListTest : public ::testing::Test {
 protected:
  TemporaryFilesListTest() { std::filesystem::current_path(folder.Path()); }
  ~TemporaryFilesListTest() override { std::filesystem::current_path(former_); }

  void MakeFiles(const std::vector<std::string>& names) const {
    for (const std::string& name : names) folder.Write(name, "");
  }
  std::vector<std::string> FilesThere() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) {
      names.push_back(entry.path().filename());
    }
    return names;
  }

  TempFolder folder;
  TTemporaryFilesList list;

 private:
  std::filesystem::path former_ = std::filesystem::current_path();
};

/// The lines that `list` prints.
std::vector<std::string> Printed(const TTemporaryFilesList& list) {
  std::vector<std::string> lines;
  const TKvDebugSink former =
      KvSetDebugSink([&](const std::string& line) { lines.push_back(line); });
  list.DebugOutput();
  KvSetDebugSink(former);
  return lines;
}

TEST_F(TemporaryFilesListTest, ANewListIsEmpty) {
  EXPECT_THAT(list.files, IsEmpty());
}

TEST_F(TemporaryFilesListTest, PathsAreKeptInLowerCaseAndInOrder) {
  for (const char* path : {"C.tmp", "Dir/B.TMP", "a"}) list.InsertFile(path);
  EXPECT_THAT(list.files, ElementsAre("a", "c.tmp", "dir/b.tmp"));
}

TEST_F(TemporaryFilesListTest, TheOrderIsThatOfBytes) {
  for (const char* path : {"b", "\xFF", "_", "1", ""}) list.InsertFile(path);
  EXPECT_THAT(list.files, ElementsAre("", "1", "_", "b", "\xFF"));
}

TEST_F(TemporaryFilesListTest, OnlyAsciiLettersChange) {
  list.InsertFile("\xC3\x84\xC4Z");
  EXPECT_THAT(list.files, ElementsAre("\xC3\x84\xC4z"));
}

TEST_F(TemporaryFilesListTest, PathsThatDifferInCaseAreOneEntry) {
  for (const char* path : {"a.tmp", "A.tmp", "a.TMP", "a.tmp"}) list.InsertFile(path);
  EXPECT_THAT(list.files, ElementsAre("a.tmp"));
}

TEST_F(TemporaryFilesListTest, InsertingTouchesNoFile) {
  MakeFiles({"a"});
  list.InsertFile("a");
  list.InsertFile("b");
  EXPECT_THAT(FilesThere(), ElementsAre("a"));
}

TEST_F(TemporaryFilesListTest, DeletingAFileTakesItOffTheList) {
  MakeFiles({"a", "b"});
  list.InsertFile("a");
  list.InsertFile("b");
  list.DeleteFile("a");
  EXPECT_THAT(FilesThere(), ElementsAre("b"));
  EXPECT_THAT(list.files, ElementsAre("b"));
}

TEST_F(TemporaryFilesListTest, DeletingAPathInMixedCaseTakesItsLowerCaseOffTheList) {
  MakeFiles({"Mixed.Tmp"});
  list.InsertFile("mIXED.tMP");
  list.DeleteFile("Mixed.Tmp");
  EXPECT_THAT(FilesThere(), IsEmpty());
  EXPECT_THAT(list.files, IsEmpty());
}

TEST_F(TemporaryFilesListTest, OnlyTheFileWithExactlyThePathIsDeleted) {
  MakeFiles({"mixed", "MIXED", "Mixed"});
  list.InsertFile("mixed");
  list.DeleteFile("Mixed");
  EXPECT_THAT(FilesThere(), UnorderedElementsAre("mixed", "MIXED"));
  EXPECT_THAT(list.files, IsEmpty());
}

TEST_F(TemporaryFilesListTest, AFileThatIsNotInTheListIsDeletedToo) {
  MakeFiles({"a"});
  list.InsertFile("b");
  list.DeleteFile("a");
  EXPECT_THAT(FilesThere(), IsEmpty());
  EXPECT_THAT(list.files, ElementsAre("b"));
}

TEST_F(TemporaryFilesListTest, AFileThatCannotBeDeletedIsTakenOffTheList) {
  std::filesystem::create_directory("folder");
  for (const char* path : {"folder", "missing", "missing/too"}) {
    list.InsertFile(path);
    list.DeleteFile(path);
    EXPECT_THAT(list.files, IsEmpty());
  }
  EXPECT_THAT(FilesThere(), ElementsAre("folder"));
}

TEST_F(TemporaryFilesListTest, APathWithANulByteDeletesNothing) {
  MakeFiles({"a"});
  const std::string path("a\0b", 3);
  list.InsertFile(path);
  list.DeleteFile(path);
  EXPECT_THAT(FilesThere(), ElementsAre("a"));
  EXPECT_THAT(list.files, IsEmpty());
}

TEST_F(TemporaryFilesListTest, AnEntryOfTheListItselfMayBeGiven) {
  MakeFiles({"a"});
  list.InsertFile("a");
  list.DeleteFile(*list.files.begin());
  EXPECT_THAT(FilesThere(), IsEmpty());
  EXPECT_THAT(list.files, IsEmpty());
}

TEST_F(TemporaryFilesListTest, AllFilesOfTheListAreDeletedAndNoOthers) {
  MakeFiles({"a", "b", "c"});
  list.InsertFile("a");
  list.InsertFile("c");
  list.DeleteAllFiles();
  EXPECT_THAT(FilesThere(), ElementsAre("b"));
  EXPECT_THAT(list.files, IsEmpty());
}

TEST_F(TemporaryFilesListTest, DeletingAllDeletesThePathsInLowerCaseAndMissesThoseWithCapitals) {
  MakeFiles({"Mixed", "mixed"});
  list.InsertFile("Mixed");
  list.DeleteAllFiles();
  EXPECT_THAT(FilesThere(), ElementsAre("Mixed"));
  EXPECT_THAT(list.files, IsEmpty());
}

TEST_F(TemporaryFilesListTest, AllFilesAreDeletedInTheOrderOfTheList) {
  std::filesystem::create_directory("target");
  std::filesystem::create_symlink("target", "link");
  MakeFiles({"target/file"});
  list.InsertFile("link/file");
  list.InsertFile("link");
  list.DeleteAllFiles();
  EXPECT_THAT(FilesThere(), ElementsAre("target"));
  EXPECT_TRUE(folder.Has("target/file"));  // no link led there any more
}

TEST_F(TemporaryFilesListTest, TheListIsEmptyThenEvenIfFilesCouldNotBeDeleted) {
  MakeFiles({"z"});
  std::filesystem::create_directory("folder");
  for (const char* path : {"folder", "missing", "z"}) list.InsertFile(path);
  list.DeleteAllFiles();
  EXPECT_THAT(FilesThere(), ElementsAre("folder"));
  EXPECT_THAT(list.files, IsEmpty());
}

TEST_F(TemporaryFilesListTest, DeletingAllOfAnEmptyListDoesNothing) {
  MakeFiles({"a"});
  list.DeleteAllFiles();
  EXPECT_THAT(FilesThere(), ElementsAre("a"));
  EXPECT_THAT(list.files, IsEmpty());
}

TEST_F(TemporaryFilesListTest, TheListIsPrintedInOrderBetweenTwoFrameLines) {
  list.InsertFile("B.tmp");
  list.InsertFile("a %s");
  EXPECT_THAT(Printed(list), ElementsAre("-+- Temporary files list ---", "a %s", "b.tmp",
                                         "-^- Temporary files list ---"));
}

TEST_F(TemporaryFilesListTest, AnEmptyListPrintsTheFrameLinesAlone) {
  EXPECT_THAT(Printed(list),
              ElementsAre("-+- Temporary files list ---", "-^- Temporary files list ---"));
}

TEST_F(TemporaryFilesListTest, ADebugSinkMayChangeTheListThatIsPrinted) {
  list.InsertFile("a");
  list.InsertFile("c");
  std::vector<std::string> lines;
  const TKvDebugSink former = KvSetDebugSink([&](const std::string& line) {
    lines.push_back(line);
    list.files.clear();
    list.InsertFile("b");
  });
  list.DebugOutput();
  KvSetDebugSink(former);
  EXPECT_THAT(
      lines, ElementsAre("-+- Temporary files list ---", "a", "c", "-^- Temporary files list ---"));
  EXPECT_THAT(list.files, ElementsAre("b"));
}

/// A list and a folder as plainly as can be.
struct Model {
  std::vector<std::string> entries;
  std::vector<std::string> files;

  static std::string Lower(std::string name) {
    for (char& c : name) c = c == 'A' ? 'a' : c == 'B' ? 'b' : c;
    return name;
  }
  static void Remove(std::vector<std::string>* names, const std::string& name) {
    names->erase(std::remove(names->begin(), names->end(), name), names->end());
  }
  static void Add(std::vector<std::string>* names, const std::string& name) {
    Remove(names, name);
    names->push_back(name);
    std::sort(names->begin(), names->end());
  }
};

TEST_F(TemporaryFilesListTest, RandomCommandsDoWhatAPlainModelDoes) {
  std::mt19937 random(7401);
  Model model;
  const std::string letters = "aAbB";
  for (int i = 0; i < 100000; ++i) {
    const std::string name = {letters[random() % 4], letters[random() % 4]};
    const unsigned long command = random() % 64;
    if (command < 2) {
      list.DeleteAllFiles();
      for (const std::string& entry : model.entries) Model::Remove(&model.files, entry);
      model.entries.clear();
    } else if (command < 4) {
      MakeFiles({name});
      Model::Add(&model.files, name);
    } else if (command < 16) {
      list.DeleteFile(name);
      Model::Remove(&model.files, name);
      Model::Remove(&model.entries, Model::Lower(name));
    } else {
      list.InsertFile(name);
      Model::Add(&model.entries, Model::Lower(name));
    }
    ASSERT_EQ(std::vector<std::string>(list.files.begin(), list.files.end()), model.entries) << i;
    if (command >= 4 || i % 4 != 0) continue;
    ASSERT_THAT(FilesThere(), ::testing::UnorderedElementsAreArray(model.files)) << i;
  }
}

TEST_F(TemporaryFilesListTest, ManyFilesCostNotMuchMoreThanLinearTime) {
  EXPECT_TRUE(kv_test::IsLinear(1000, [](unsigned long size) {
    TTemporaryFilesList many;
    for (unsigned long i = 0; i < size; ++i) many.InsertFile("Missing" + std::to_string(i));
    for (unsigned long i = 0; i < size; i += 2) many.DeleteFile("Missing" + std::to_string(i));
    many.DeleteAllFiles();
    EXPECT_THAT(many.files, IsEmpty());
  }));
}

/// Too long for a string to hold without memory of its own.
const std::string kLongName = std::string(40, 'a') + ".TMP";
const std::string kLongEntry = std::string(40, 'a') + ".tmp";

TEST_F(TemporaryFilesListTest, AnInsertionThatFailsLeavesTheList) {
  EXPECT_GE(
      FailuresOf([&] { list.InsertFile(kLongName); }, [&] { EXPECT_THAT(list.files, IsEmpty()); }),
      2u);
  EXPECT_THAT(list.files, ElementsAre(kLongEntry));
}

TEST_F(TemporaryFilesListTest, ADeletionThatFailsLeavesFileAndList) {
  MakeFiles({kLongName});
  list.InsertFile(kLongName);
  EXPECT_GE(FailuresOf([&] { list.DeleteFile(kLongName); },
                       [&] {
                         EXPECT_TRUE(std::filesystem::exists(kLongName));
                         EXPECT_THAT(list.files, ElementsAre(kLongEntry));
                       }),
            2u);
  EXPECT_THAT(FilesThere(), IsEmpty());
  EXPECT_THAT(list.files, IsEmpty());
}

TEST_F(TemporaryFilesListTest, ADeletionOfAllThatFailsLeavesTheListAndCanBeRepeated) {
  MakeFiles({kLongEntry, "b" + kLongEntry});
  list.InsertFile(kLongEntry);
  list.InsertFile("b" + kLongEntry);
  EXPECT_GE(FailuresOf([&] { list.DeleteAllFiles(); },
                       [&] { EXPECT_THAT(list.files, ElementsAre(kLongEntry, "b" + kLongEntry)); }),
            2u);
  EXPECT_THAT(FilesThere(), IsEmpty());
  EXPECT_THAT(list.files, IsEmpty());
}

}  // namespace
