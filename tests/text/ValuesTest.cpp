#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "SatCommonUtils/Text.h"
#include "kv/CommaLocale.h"
#include "kv/Growth.h"
#include "support/FailingNew.h"

namespace {

using namespace std::string_literals;
using SatCommonUtils::StringToDoubleDef;
using SatCommonUtils::StringToDoubleE;
using SatCommonUtils::StringToIntDef;
using SatCommonUtils::StringToIntE;
using SatCommonUtils::ValueFromString;
using SatCommonUtils::ValueToString;

/// What `action` throws as std::runtime_error; "nothing" when it throws nothing.
std::string MessageOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "nothing";
}

/// Whether all bits are the same, of a NaN too.
template <class T>
bool SameBits(T a, T b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

TEST(StringToDouble, ReadsTheNumberAtTheBeginning) {
  EXPECT_EQ(StringToDoubleDef("3.5", 9), 3.5);
  EXPECT_EQ(StringToDoubleE("3.5"), 3.5);
  EXPECT_EQ(StringToDoubleE("-1e3"), -1000);
}

TEST(StringToDouble, SkipsWhiteSpaceInFront) {
  EXPECT_EQ(StringToDoubleDef(" \t\r\n\v\f7", 9), 7);
  EXPECT_EQ(StringToDoubleE(" \t\r\n\v\f7"), 7);
}

TEST(StringToDouble, IgnoresWhatFollows) {
  EXPECT_EQ(StringToDoubleDef("12abc", 9), 12);
  EXPECT_EQ(StringToDoubleE("12 34"), 12);
}

TEST(StringToDouble, ReadsHexadecimalInfinityAndNan) {
  EXPECT_EQ(StringToDoubleE("0x1p4"), 16);
  EXPECT_EQ(StringToDoubleE("-Infinity"), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(StringToDoubleE("inf"), std::numeric_limits<double>::infinity());
  EXPECT_TRUE(std::isnan(StringToDoubleE("nan")));
}

TEST(StringToDouble, GivesTheDefaultForAnEmptyText) {
  EXPECT_EQ(StringToDoubleDef("", 5.5), 5.5);
}

TEST(StringToDouble, GivesTheDefaultForWhatIsNoNumber) {
  for (const char* text : {"abc", "-", "+.", ".", "e5", "in", "0x", "na", " x"}) {
    EXPECT_EQ(StringToDoubleDef(text, 5.5), 5.5) << text;
  }
}

TEST(StringToDouble, ThrowsItsNameForAnEmptyTextAndForWhatIsNoNumber) {
  for (const char* text : {"", "abc", "-", "in", " x"}) {
    EXPECT_EQ(MessageOf([&] { StringToDoubleE(text); }), "StringToDoubleE") << text;
  }
}

TEST(StringToDouble, TakesWhiteSpaceAloneForZero) {
  EXPECT_EQ(StringToDoubleDef(" ", 5.5), 0);
  EXPECT_EQ(StringToDoubleE(" \t\n"), 0);
}

TEST(StringToDouble, EndsAtANul) {
  EXPECT_EQ(StringToDoubleE("1\0002"s), 1);
  EXPECT_EQ(StringToDoubleDef("\0001"s, 5.5), 0);
  EXPECT_EQ(StringToDoubleDef(" \0001"s, 5.5), 0);
  EXPECT_EQ(StringToDoubleDef("-\0001"s, 5.5), 5.5);
}

TEST(StringToInt, ReadsTheNumberAtTheBeginning) {
  EXPECT_EQ(StringToIntDef("42x", 5), 42);
  EXPECT_EQ(StringToIntDef(" 7", 5), 7);
  EXPECT_EQ(StringToIntE("-12.9"), -12);
  EXPECT_EQ(StringToIntE("+3"), 3);
}

TEST(StringToInt, ReadsDecimalDigitsOnly) {
  EXPECT_EQ(StringToIntE("010"), 10);
  EXPECT_EQ(StringToIntE("0x10"), 0);
}

TEST(StringToInt, GivesTheDefaultForAnEmptyTextAndForWhatIsNoNumber) {
  for (const char* text : {"", "x", "-", ".5", "--1", " +"}) {
    EXPECT_EQ(StringToIntDef(text, 5), 5) << text;
  }
}

TEST(StringToInt, ThrowsItsNameForAnEmptyTextAndForWhatIsNoNumber) {
  for (const char* text : {"", "x", "-", " +"}) {
    EXPECT_EQ(MessageOf([&] { StringToIntE(text); }), "StringToIntE") << text;
  }
}

TEST(StringToInt, TakesWhiteSpaceAloneForZero) {
  EXPECT_EQ(StringToIntDef("  ", 5), 0);
  EXPECT_EQ(StringToIntE("\n"), 0);
}

TEST(StringToInt, EndsAtANul) {
  EXPECT_EQ(StringToIntE("1\0002"s), 1);
  EXPECT_EQ(StringToIntDef("\0001"s, 5), 0);
}

TEST(ValueFromString, ReadsADouble) {
  double value = 9;
  EXPECT_TRUE(ValueFromString("3.5", &value));
  EXPECT_EQ(value, 3.5);
  EXPECT_TRUE(ValueFromString(" -0.1m", &value));
  EXPECT_EQ(value, -0.1);
}

TEST(ValueFromString, ReadsAFloatRoundedOnce) {
  float value = 9;
  EXPECT_TRUE(ValueFromString("0.1", &value));
  EXPECT_EQ(value, 0.1F);
  // Halfway between two floats but for its last digit, which a double cannot hold.
  EXPECT_TRUE(ValueFromString("1.00000005960464477540", &value));
  EXPECT_EQ(value, std::nextafter(1.0F, 2.0F));
}

TEST(ValueFromString, ReadsAnUnsignedNumber) {
  unsigned int value = 9;
  EXPECT_TRUE(ValueFromString("4294967295", &value));
  EXPECT_EQ(value, 4294967295U);
  EXPECT_TRUE(ValueFromString(" 12abc", &value));
  EXPECT_EQ(value, 12U);
}

TEST(ValueFromString, WrapsAnUnsignedNumberWithAMinus) {
  unsigned int value = 9;
  EXPECT_TRUE(ValueFromString("-1", &value));
  EXPECT_EQ(value, 4294967295U);
}

template <class T>
void ExpectNoValue(const std::string& text) {
  T value = 9;
  EXPECT_FALSE(ValueFromString(text, &value)) << text;
  EXPECT_EQ(value, T(9));
}

TEST(ValueFromString, FindsNoneInAnEmptyTextInWhiteSpaceAndInOtherText) {
  for (const std::string& text : {""s, " "s, " \t\n"s, "abc"s, "-"s, " \0001"s, "\0001"s}) {
    ExpectNoValue<double>(text);
    ExpectNoValue<float>(text);
    ExpectNoValue<unsigned int>(text);
  }
}

TEST(ValueToString, GivesADoubleSixDigits) {
  EXPECT_EQ(ValueToString(2.0), "2");
  EXPECT_EQ(ValueToString(0.1), "0.1");
  EXPECT_EQ(ValueToString(1e20), "1e+20");
  EXPECT_EQ(ValueToString(123456789.0), "1.23457e+08");
  EXPECT_EQ(ValueToString(-0.0), "-0");
  EXPECT_EQ(ValueToString(std::numeric_limits<double>::infinity()), "inf");
}

TEST(ValueToString, GivesAFloatSixDigits) {
  EXPECT_EQ(ValueToString(0.1F), "0.1");
  EXPECT_EQ(ValueToString(16777216.0F), "1.67772e+07");
}

TEST(ValueToString, GivesAnUnsignedNumberInDigits) {
  EXPECT_EQ(ValueToString(7U), "7");
  EXPECT_EQ(ValueToString(4294967295U), "4294967295");
}

TEST(ValueToString, FollowsAFormat) {
  EXPECT_EQ(ValueToString(1.5, "%.3f"), "1.500");
  EXPECT_EQ(ValueToString(0.1F, "%.9g"), "0.100000001");
  EXPECT_EQ(ValueToString(255U, "0x%04x;"), "0x00ff;");
  EXPECT_EQ(ValueToString(1.5, "no number"), "no number");
  EXPECT_EQ(ValueToString(1.5, ""), "");
}

/// A format that pads to `width`.
std::string PaddingFormat(unsigned long width, char conversion) {
  std::string format = "%";
  return format.append(std::to_string(width)) + conversion;
}

TEST(ValueToString, CutsNothingOfALongText) {
  for (const unsigned long width : {62ul, 63ul, 64ul, 65ul, 200ul, 100000ul}) {
    EXPECT_EQ(ValueToString(7U, PaddingFormat(width, 'u').c_str()),
              std::string(width - 1, ' ') + "7");
  }
  EXPECT_EQ(ValueToString(1e300, "%f").size(), 308u);
  EXPECT_EQ(ValueToString(std::numeric_limits<float>::max(), "%.100f").size(), 140u);
}

TEST(ValueToString, EndsAtANul) {
  EXPECT_EQ(ValueToString(0U, "a%cb"), "a");
  EXPECT_EQ(ValueToString(0U, "%-100cb"), "");
}

TEST(ValueToString, IsEmptyWhenPrintfRefusesTheFormat) {
  EXPECT_EQ(ValueToString(1U, "%2147483648u"), "");
}

// Against the C library.

/// A text of the characters of numbers, mostly short.
std::string RandomNumberLikeText(std::mt19937& random) {
  static const std::vector<std::string> kPieces = {"0",
                                                   "1",
                                                   "9",
                                                   "123456789",
                                                   ".",
                                                   ",",
                                                   "e",
                                                   "E+",
                                                   "e-3",
                                                   "+",
                                                   "-",
                                                   " ",
                                                   "\t",
                                                   "inf",
                                                   "INFINITY",
                                                   "nan",
                                                   "0x",
                                                   "0X1",
                                                   "p",
                                                   "P-2",
                                                   "abc",
                                                   "\n",
                                                   "x",
                                                   "in",
                                                   "i",
                                                   "n",
                                                   "nan(1)",
                                                   "_",
                                                   "\0"s,
                                                   "\xA0",
                                                   "99999999999999999999"};
  std::string text;
  const unsigned long count = random() % 7;
  for (unsigned long i = 0; i < count; ++i) {
    if (random() % 60 == 0) {
      text.append(random() % 700, "0 1."[random() % 4]);
    } else {
      text += kPieces[random() % kPieces.size()];
    }
  }
  return text;
}

void ExpectDoubleAsScanned(const std::string& text) {
  double scanned = 0;
  const bool isTaken = !text.empty() && std::sscanf(text.c_str(), "%lf", &scanned) != 0;
  ASSERT_TRUE(SameBits(StringToDoubleDef(text, 5.5), isTaken ? scanned : 5.5)) << text;
  if (isTaken) {
    ASSERT_TRUE(SameBits(StringToDoubleE(text), scanned)) << text;
  } else {
    ASSERT_THROW(StringToDoubleE(text), std::runtime_error) << text;
  }
}

void ExpectIntAsScanned(const std::string& text) {
  int scanned = 0;
  const bool isTaken = !text.empty() && std::sscanf(text.c_str(), "%d", &scanned) != 0;
  ASSERT_EQ(StringToIntDef(text, 5), isTaken ? scanned : 5) << text;
  if (isTaken) {
    ASSERT_EQ(StringToIntE(text), scanned) << text;
  } else {
    ASSERT_THROW(StringToIntE(text), std::runtime_error) << text;
  }
}

template <class T>
void ExpectValueAsScanned(const std::string& text, const char* format) {
  T scanned = 0;
  const bool isTaken = std::sscanf(text.c_str(), format, &scanned) == 1;
  T value = 9;
  ASSERT_EQ(ValueFromString(text, &value), isTaken) << text;
  ASSERT_TRUE(SameBits(value, isTaken ? scanned : T(9))) << text;
}

void ExpectAllAsScanned(unsigned int seed, int count) {
  std::mt19937 random(seed);
  for (int i = 0; i < count; ++i) {
    const std::string text = RandomNumberLikeText(random);
    ExpectDoubleAsScanned(text);
    ExpectIntAsScanned(text);
    ExpectValueAsScanned<double>(text, "%lg");
    ExpectValueAsScanned<float>(text, "%g");
    ExpectValueAsScanned<unsigned int>(text, "%u");
    if (testing::Test::HasFatalFailure()) return;
  }
}

TEST(ValuesModel, RandomTextsAreReadAsByTheScan) {
  ExpectAllAsScanned(1, 100000);
}

TEST(ValuesModel, RandomTextsAreReadAsByTheScanWhereTheDecimalSignIsAComma) {
  const kv_test::CommaLocale locale;
  if (!locale.IsThere()) GTEST_SKIP() << "no locale with a decimal comma";
  EXPECT_EQ(StringToDoubleE("1,5"), 1.5);
  EXPECT_EQ(StringToDoubleE("1.5"), 1);
  ExpectAllAsScanned(2, 100000);
}

TEST(ValuesModel, NumbersOfEveryLengthAreReadAsByTheScan) {
  for (unsigned long length = 1; length < 600; ++length) {
    const std::string digits(length, '1');
    for (const std::string& text :
         {digits, digits + "x", digits + ".5e-3", "0." + digits, std::string(length, ' ') + "1x",
          std::string(length, '0') + "1", std::string(length, '0') + "x1", digits + "e+",
          "0x" + digits + "p-3", std::string(length, '-'), digits + "inf"}) {
      ExpectDoubleAsScanned(text);
      ExpectIntAsScanned(text);
      ExpectValueAsScanned<float>(text, "%g");
      ExpectValueAsScanned<unsigned int>(text, "%u");
      if (HasFatalFailure()) return;
    }
  }
}

template <class T>
T RandomBits(std::mt19937& random) {
  const std::array<unsigned int, 2> bits = {static_cast<unsigned int>(random()),
                                            static_cast<unsigned int>(random())};
  T value;
  std::memcpy(&value, bits.data(), sizeof value);
  return value;
}

template <class T>
std::string Printed(const char* format, T value) {
  std::array<char, 1000> text;
  std::snprintf(text.data(), text.size(), format, value);
  return text.data();
}

void ExpectAllAsPrinted(unsigned int seed) {
  std::mt19937 random(seed);
  for (int i = 0; i < 100000; ++i) {
    const auto d =
        random() % 4 == 0 ? static_cast<double>(random() % 1000) / 8 : RandomBits<double>(random);
    const auto f = RandomBits<float>(random);
    const auto u = static_cast<unsigned int>(random());
    ASSERT_EQ(ValueToString(d), Printed("%lg", d));
    ASSERT_EQ(ValueToString(f), Printed("%g", static_cast<double>(f)));
    ASSERT_EQ(ValueToString(u), Printed("%u", u));
    const char* const formats[] = {"%.17g", "%f", "%e", "%a", "%+12.3f|", "%-70.1g|"};
    const char* const format = formats[random() % 6];
    ASSERT_EQ(ValueToString(d, format), Printed(format, d));
    ASSERT_EQ(ValueToString(f, format), Printed(format, static_cast<double>(f)));
    const char* const whole[] = {"%x", "%08u", "%-70o|", "%d"};
    ASSERT_EQ(ValueToString(u, whole[i % 4]), Printed(whole[i % 4], u));
  }
}

TEST(ValuesModel, RandomNumbersAreWrittenAsByPrintf) {
  ExpectAllAsPrinted(3);
}

TEST(ValuesModel, RandomNumbersAreWrittenAsByPrintfWhereTheDecimalSignIsAComma) {
  const kv_test::CommaLocale locale;
  if (!locale.IsThere()) GTEST_SKIP() << "no locale with a decimal comma";
  EXPECT_EQ(ValueToString(0.5), "0,5");
  ExpectAllAsPrinted(4);
}

/// Whether a text that `make` gives for a size is read in linear time by all functions.
bool ReadsLinearly(const std::function<std::string(unsigned long)>& make) {
  return kv_test::IsLinear(300000, [&](unsigned long size) {
    const std::string text = make(size);
    double number;
    float single;
    unsigned int whole;
    StringToDoubleDef(text, 0);
    StringToIntDef(text, 0);
    ValueFromString(text, &number);
    ValueFromString(text, &single);
    ValueFromString(text, &whole);
  });
}

TEST(ValuesGrowth, LongNumbersAreReadInLinearTime) {
  EXPECT_TRUE(ReadsLinearly([](unsigned long size) { return std::string(size, '0') + "1"; }));
}

TEST(ValuesGrowth, LongWhiteSpaceIsSkippedInLinearTime) {
  EXPECT_TRUE(ReadsLinearly([](unsigned long size) { return std::string(3 * size, ' ') + "1"; }));
}

TEST(ValuesGrowth, LongWidthsAreWrittenInLinearTime) {
  EXPECT_TRUE(kv_test::IsLinear(1000000, [](unsigned long size) {
    EXPECT_EQ(ValueToString(1.0, PaddingFormat(size, 'f').c_str()).size(), size);
  }));
}

TEST(ValuesGrowth, ReadingManyNumbersOffOneTextDoesNotLookAtAllOfItEachTime) {
  std::string text;
  for (int i = 0; i < 1000000; ++i) text += "1 ";
  const auto cost = [](const std::string& numbers) {
    const double begin = kv_test::ThreadSeconds();
    double sum = 0;
    for (int i = 0; i < 20000; ++i) sum += StringToDoubleDef(numbers, 0);
    EXPECT_EQ(sum, 20000);
    return kv_test::ThreadSeconds() - begin;
  };
  // The second text is a hundred thousand times as long.
  const double small = cost(text.substr(0, 20));
  EXPECT_LT(cost(text), 20 * small);
}

TEST(ValuesMemory, ReadingNeedsNoneOfItsOwn) {
  const std::string text = std::string(1000, ' ') + "12345";
  const std::string digits = std::string(1000, '0') + "7";
  const ravelin_test::FailingNew failing(0);
  EXPECT_EQ(StringToDoubleDef(text, 0), 12345);
  EXPECT_EQ(StringToIntDef(digits, 0), 7);
}

}  // namespace
