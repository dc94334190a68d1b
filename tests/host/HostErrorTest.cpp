#include "host/HostError.h"

#include <gtest/gtest.h>

namespace {

TEST(HostError, SaysFileThenWhatThenRemedy) {
  EXPECT_STREQ(ravelin::HostError("a.raw", "no such file", "check the name").what(),
               "a.raw: no such file; check the name");
}

TEST(HostError, PrintsControlBytesAsNumbers) {
  EXPECT_EQ(ravelin::Printable("a\x1b[31m\n\x7f\t"), "a\\x1b[31m\\x0a\\x7f\\x09");
}

TEST(HostError, PrintsOtherBytesAsTheyAre) {
  EXPECT_EQ(ravelin::Printable("gr\xc3\xbcn \xff"), "gr\xc3\xbcn \xff");
}

}  // namespace
