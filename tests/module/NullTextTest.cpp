#include "module/NullText.h"

#include <gtest/gtest.h>

#include <typeinfo>

namespace {

using SatCommonUtils::TextOrThrow;

TEST(NullTextTest, ATextIsTakenAsItIs) {
  EXPECT_EQ(TextOrThrow("some text"), "some text");
  EXPECT_EQ(TextOrThrow("\xFF\t "), "\xFF\t ");
}

TEST(NullTextTest, AnEmptyTextIsNotANullText) {
  EXPECT_EQ(TextOrThrow(""), "");
}

TEST(NullTextTest, ANullTextRaisesALogicErrorOfFixedWords) {
  try {
    TextOrThrow(nullptr);
    FAIL() << "nothing was thrown";
  } catch (const std::exception& error) {
    EXPECT_EQ(typeid(error), typeid(std::logic_error));
    EXPECT_STREQ(error.what(), "basic_string::_M_construct null not valid");
  }
}

}  // namespace
