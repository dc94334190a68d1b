#include <gtest/gtest.h>

#include <string>

#include "Kv/Text.h"
#include "kv/ForeignLocale.h"

namespace {

const std::string kSpace = "\x20\x09\x0D\x0A\x0B\x0C";

void ExpectTheSixBytesTrimmed() {
  for (int value = 0; value < 256; ++value) {
    const std::string byte(1, static_cast<char>(value));
    const bool space = kSpace.find(byte) != std::string::npos;
    const std::string kept = space ? "" : byte;
    EXPECT_EQ(trim(byte), kept) << value;
    EXPECT_EQ(trim(byte + "x"), kept + "x") << value;
    EXPECT_EQ(trim("x" + byte), "x" + kept) << value;
    EXPECT_EQ(trim("x" + byte + "x"), "x" + byte + "x") << value;
  }
}

}  // namespace

TEST(Trim, TakesAwaySpaceTabCrLfVtFfAndNoOtherByte) {
  ExpectTheSixBytesTrimmed();
}

TEST(Trim, TakesAwayTheSameInAnotherLocale) {
  const kv_test::ForeignLocale locale;
  if (!locale.IsThere()) GTEST_SKIP() << "this machine has no Turkish locale";
  ExpectTheSixBytesTrimmed();
}

TEST(Trim, TakesAwayRunsAtBothEnds) {
  EXPECT_EQ(trim(kSpace + "a  b" + kSpace), "a  b");
}

TEST(Trim, LeavesNothingOfSpaceAlone) {
  EXPECT_EQ(trim(kSpace + kSpace), "");
}

TEST(Trim, LeavesTheEmptyTextEmpty) {
  EXPECT_EQ(trim(""), "");
}

TEST(Trim, KeepsNulBytes) {
  const std::string text("\0 a \0", 5);
  EXPECT_EQ(trim(" " + text + " "), text);
}
