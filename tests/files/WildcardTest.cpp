// The matcher behind the masks of file-name lists; hidden in the module and compiled in.
#include "files/Wildcard.h"

#include <gtest/gtest.h>

#include <string>

namespace {

bool Matches(const std::string& name, const std::string& mask) {
  return SatCommonUtils::Wildcard(mask).Matches(name);
}

TEST(WildcardTest, AStarStandsForTheRestOfItsPiece) {
  EXPECT_TRUE(Matches("scene.tif", "*.tif"));
  EXPECT_TRUE(Matches("scene.tif", "sc*.tif"));
  EXPECT_FALSE(Matches("scene.tif", "*.img"));
}

TEST(WildcardTest, LetterCaseIsIgnored) {
  EXPECT_TRUE(Matches("scene.TIF", "*.tif"));
  EXPECT_TRUE(Matches("scene.tif", "SCENE.T?F"));
}

}  // namespace
