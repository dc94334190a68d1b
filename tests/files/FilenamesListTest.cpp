#include <gtest/gtest.h>

#include <string>

#include "SatCommonUtils/Files.h"

namespace {

using SatCommonUtils::TFilenamesList;

TEST(FilenamesListTest, AWalkGivesTheNamesInTheOrderOfInsertion) {
  TFilenamesList list;
  for (const char* name : {"b", "a", "c"}) list.Insert(name);
  std::string name;
  ASSERT_TRUE(list.GetFirst(&name));
  EXPECT_EQ(name, "b");
  ASSERT_TRUE(list.GetNext(&name));
  EXPECT_EQ(name, "a");
  ASSERT_TRUE(list.GetNext(&name));
  EXPECT_EQ(name, "c");
  EXPECT_FALSE(list.GetNext(&name));
  EXPECT_EQ(name, "c");
}

}  // namespace
