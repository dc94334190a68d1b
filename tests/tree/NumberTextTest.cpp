// Numbers of string trees against the C library's formatting and scanning.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>

#include "kv/CommaLocale.h"
#include "tree/TreeTest.h"

namespace {

using namespace tree_test;

std::string Formatted(double number) {
  char text[64];
  std::snprintf(text, sizeof text, "%.16lg", number);
  return text;
}

std::string Stored(double number) {
  TStringTree tree(0, 0, nullptr, "");
  tree.InsertDouble("", 1, 0, number);
  return tree.fields[0]->values[0];
}

TEST(NumberTextTest, DoublesOfAllBitsAreStoredAsTheLibraryFormatsThem) {
  std::mt19937_64 random(4);
  for (int i = 0; i < 20000; ++i) {
    const std::uint64_t bits = random();
    double number;
    std::memcpy(&number, &bits, sizeof number);
    ASSERT_EQ(Stored(number), Formatted(number));
    ASSERT_EQ(Stored(static_cast<float>(number)), Formatted(static_cast<float>(number)));
    const double whole = static_cast<double>(static_cast<std::int64_t>(bits) >> (bits % 60));
    ASSERT_EQ(Stored(whole), Formatted(whole));
  }
}

const char* const kTexts[] = {"0x1p3", "0X1.8", "+5",  "-.5",         ".",
                              "1e",    "1e+",   "1e5", "inf",         "infin",
                              "nan",   "-",     "+-1", "0x",          "1.2.3",
                              "1,5",   "1 2",   "e5",  "99999999999", "-99999999999999999999",
                              "1e999", "1e-999"};

TEST(NumberTextTest, TextsAreReadAsTheLibraryScansThem) {
  for (const char* text : kTexts) {
    TStringTree tree(0, 0, nullptr, "");
    tree.InsertString("", 1, 0, text);
    double number = 77;
    double scanned = 77;
    EXPECT_EQ(tree.GetDouble(1, 0, &number), std::sscanf(text, "%lf", &scanned) == 1) << text;
    EXPECT_EQ(std::to_string(number), std::to_string(scanned)) << text;
    int integer = 77;
    int scannedInteger = 77;
    EXPECT_EQ(tree.GetInteger(1, 0, &integer), std::sscanf(text, "%d", &scannedInteger) == 1)
        << text;
    EXPECT_EQ(integer, scannedInteger) << text;
  }
}

TEST(NumberTextTest, TheDecimalSignIsADotInEveryLocale) {
  const kv_test::CommaLocale locale;
  if (!locale.IsThere()) GTEST_SKIP() << "there is no locale with a decimal comma";
  ASSERT_EQ(Formatted(0.5), "0,5");
  EXPECT_EQ(Stored(0.5), "0.5");
  TStringTree tree(0, 0, nullptr, "");
  tree.InsertString("", 1, 0, "0.5");
  double number = 0;
  EXPECT_TRUE(tree.GetDouble(1, 0, &number));
  EXPECT_EQ(number, 0.5);
  EXPECT_EQ(Formatted(0.5), "0,5") << "the program's locale is as it was";
}

}  // namespace
