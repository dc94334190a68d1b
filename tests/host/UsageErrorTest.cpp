#include "host/UsageError.h"

#include <gtest/gtest.h>

namespace {

using ravelin::UsageError;

TEST(UsageError, SaysWhatItIsAboutAndWhatIsWrong) {
  EXPECT_STREQ(UsageError("--level", "'x' is no number").what(), "--level: 'x' is no number");
}

TEST(UsageError, SaysAMessageAsItIs) {
  EXPECT_STREQ(UsageError("FOLDER is required").what(), "FOLDER is required");
}

}  // namespace
