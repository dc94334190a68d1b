// Lists of files while allocations fail.
#include <gtest/gtest.h>

#include <QString>
#include <string>
#include <utility>
#include <vector>

#include "Kv/Services.h"
#include "SatCommonUtils/Files.h"
#include "support/EveryAllocation.h"

namespace {

using namespace SatCommonUtils;
using ravelin_test::ThrowsEverywhere;

const std::string kFirst = "a name that is too long to be kept inside a string object.tif";
const std::string kSecond = "b name that is too long to be kept inside a string object.imd";

TFilenamesList LongList() {
  TFilenamesList list;
  list.Insert(kFirst);
  list.Insert(kSecond);
  list.GetFirst(nullptr);
  return list;
}

std::string Current(const TFilenamesList& list) {
  std::string name;
  return list.GetCurrent(&name) ? name : "the end";
}

TEST(FilesMemoryTest, ListsAreCopied) {
  const TFilenamesList list = LongList();
  ThrowsEverywhere("copy", [&] { return Current(TFilenamesList(list)); });
  ThrowsEverywhere("assignment", [&] {
    TFilenamesList target;
    target = list;
    target.GetFirst(nullptr);
    return Current(target);
  });
}

TEST(FilesMemoryTest, AnAssignmentThatFailsLeavesAListThatCanBeUsed) {
  const TFilenamesList list = LongList();
  for (unsigned long successes = 0; successes < 3; ++successes) {
    TFilenamesList target;
    target.Insert("mine");
    target.GetFirst(nullptr);
    ravelin_test::RunFailing([&] { return &(target = list); }, successes, 1);
    target.Insert("more");
    target.GetFirst(nullptr);
    while (target.GetNext(nullptr)) {
    }
    EXPECT_TRUE(target.FindFirst("more"));
  }
}

TEST(FilesMemoryTest, NamesAreFound) {
  const TFilenamesList list = LongList();
  ThrowsEverywhere("GetFirst", [&] {
    std::string name;
    list.GetFirst(&name);
    return name;
  });
  ThrowsEverywhere("GetNext", [&] {
    std::string name;
    list.GetFirst(nullptr);
    list.GetNext(&name);
    return name;
  });
  ThrowsEverywhere("Find", [&] {
    std::string name;
    const bool found = list.Find("*.imd", &name);
    return std::pair(found, name);
  });
  ThrowsEverywhere("FindAll", [&] {
    std::vector<std::string> names;
    list.FindAll("*.*", &names);
    return names;
  });
  ThrowsEverywhere("FindNext", [&] {
    list.FindFirst(kFirst);
    return list.FindNext(kSecond);
  });
}

TEST(FilesMemoryTest, ARemovalThatFailsRemovesNothing) {
  for (unsigned long successes = 0;; ++successes) {
    TFilenamesList list = LongList();
    const auto removed =
        ravelin_test::RunFailing([&] { return list.Remove(kFirst); }, successes, ~0ul);
    std::vector<std::string> names;
    EXPECT_EQ(list.FindAll("*.*", &names), removed ? 1u : 2u);
    if (removed) break;
  }
}

TEST(FilesMemoryTest, ListsArePrinted) {
  const TFilenamesList list = LongList();
  TTemporaryFilesList temporary;
  temporary.InsertFile(kFirst);
  unsigned long printed = 0;
  const TKvDebugSink former = KvSetDebugSink([&](const std::string&) { ++printed; });
  ThrowsEverywhere("names", [&] {
    printed = 0;
    list.DebugOutput(kFirst);
    return printed;
  });
  ThrowsEverywhere("temporary files", [&] {
    printed = 0;
    temporary.DebugOutput();
    return printed;
  });
  KvSetDebugSink(former);
}

TEST(FilesMemoryTest, TextsOfQtAreConverted) {
  const QString text(100, QChar('x'));
  ThrowsEverywhere("QtToKvStr", [&] { return QtToKvStr(text); });
}

}  // namespace
