#include "host/io/InsideFolder.h"

#include <gtest/gtest.h>

namespace {

using ravelin::IsInsideFolder;

TEST(InsideFolder, IsWhatLiesInItOrBelow) {
  EXPECT_TRUE(IsInsideFolder("/a/b/c", "/a/b"));
  EXPECT_TRUE(IsInsideFolder("/a/b/c/d", "/a/b"));
  EXPECT_TRUE(IsInsideFolder("/c", "/"));
}

TEST(InsideFolder, IsNotWhatOnlyBeginsAlike) {
  EXPECT_FALSE(IsInsideFolder("/a/bc", "/a/b"));
  EXPECT_FALSE(IsInsideFolder("/a", "/a/b"));
  EXPECT_FALSE(IsInsideFolder("/x/a/b", "/a/b"));
}

}  // namespace
