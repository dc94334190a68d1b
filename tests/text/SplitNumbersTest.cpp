// Splitting into numbers, which must be those of the C library's scan to the last bit.
#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <new>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "SatCommonUtils/Text.h"
#include "kv/BuildKind.h"
#include "kv/CommaLocale.h"
#include "kv/Growth.h"
#include "support/FailingNew.h"
#include "text/RecordingProgress.h"
#include "text/SplitModel.h"

namespace {

using SatCommonUtils::SplitStringIntoDoubles;
using text_test::RecordingProgress;
using Numbers = std::vector<double>;
using Result = split_model::Result<double>;

constexpr double kUntouched = -777;

/// The numbers by the array form, which must leave the elements behind them alone.
Result ByArray(const std::string& text, const std::string& separators, unsigned int maxCount) {
  Result result;
  result.found.assign(maxCount + 1, kUntouched);
  result.count = SplitStringIntoDoubles(text.c_str(), separators.c_str(), result.found.data(),
                                        maxCount, false, nullptr);
  for (std::size_t i = result.count; i < result.found.size(); ++i) {
    EXPECT_EQ(result.found[i], kUntouched);
  }
  result.found.resize(result.count);
  return result;
}

Result ByVector(const std::string& text, const std::string& separators) {
  Result result;
  result.found = {1, 2, 3};
  result.count = SplitStringIntoDoubles(text.c_str(), separators.c_str(), &result.found, nullptr);
  return result;
}

/// The numbers by the array and the vector form, which must find the same.
Numbers Split(const std::string& text, const std::string& separators) {
  const Result result = ByArray(text, separators, 20);
  EXPECT_EQ(result, ByVector(text, separators));
  return result.found;
}

Numbers SplitReversed(const std::string& text, const std::string& separators,
                      unsigned int maxCount) {
  Numbers out(maxCount, kUntouched);
  SplitStringIntoDoubles(text.c_str(), separators.c_str(), out.data(), maxCount, true, nullptr);
  return out;
}

unsigned int Count(const std::string& text, unsigned int maxCount) {
  double* const none = nullptr;
  return SplitStringIntoDoubles(text.c_str(), " ", none, maxCount, false, nullptr);
}

TEST(SplitStringIntoDoubles, PassesOverTokensThatBeginWithNoNumber) {
  EXPECT_EQ(Split("1 2 x 3", " "), (Numbers{1, 2, 3}));
  EXPECT_EQ(Split("x y", " "), (Numbers{}));
  EXPECT_EQ(Split("- + . e5 -. +-1 --1", " "), (Numbers{}));
}

TEST(SplitStringIntoDoubles, PassesOverEmptyTokens) {
  EXPECT_EQ(Split("1,,2", ","), (Numbers{1, 2}));
  EXPECT_EQ(Split(",1,2,", ","), (Numbers{1, 2}));
  EXPECT_EQ(Split(",,", ","), (Numbers{}));
  EXPECT_EQ(Split("", ","), (Numbers{}));
}

TEST(SplitStringIntoDoubles, IgnoresWhatFollowsANumber) {
  EXPECT_EQ(Split("12abc;1.5.7;3 x;4-5;1e5x;1e2e3", ";"), (Numbers{12, 1.5, 3, 4, 1e5, 100}));
}

TEST(SplitStringIntoDoubles, TakesBlanksAloneForTheNumberBefore) {
  EXPECT_EQ(Split("5, ,6,\t\n,x, ", ","), (Numbers{5, 5, 6, 6, 6}));
}

TEST(SplitStringIntoDoubles, TakesBlanksAloneForZeroBeforeTheFirstNumber) {
  EXPECT_EQ(Split(" ,x, ,5", ","), (Numbers{0, 0, 5}));
}

TEST(SplitStringIntoDoubles, ForgetsTheNumbersOfTheCallBefore) {
  EXPECT_EQ(Split("5", ","), (Numbers{5}));
  EXPECT_EQ(Split(" ", ","), (Numbers{0}));
}

TEST(SplitStringIntoDoubles, SkipsBlanksBeforeANumber) {
  EXPECT_EQ(Split(" 1,\t\n\v\f\r2, -3 , +4", ","), (Numbers{1, 2, -3, 4}));
}

TEST(SplitStringIntoDoubles, ReadsSignsPointsAndExponents) {
  EXPECT_EQ(Split("+1 -2 .5 5. -.25 1e3 1E-2 +2.5e+1", " "),
            (Numbers{1, -2, .5, 5, -.25, 1000, .01, 25}));
}

TEST(SplitStringIntoDoubles, ReadsMinusZero) {
  const Numbers numbers = Split("-0 -0.0 -0e5 -1e-999", " ");
  ASSERT_EQ(numbers.size(), 4u);
  for (const double number : numbers) EXPECT_TRUE(number == 0 && std::signbit(number));
}

TEST(SplitStringIntoDoubles, ReadsHalvesOfExponentsAsNone) {
  EXPECT_EQ(Split("1e 2e+ 3e- 4E 5ex", " "), (Numbers{1, 2, 3, 4, 5}));
}

TEST(SplitStringIntoDoubles, ReadsHexadecimalNumbers) {
  EXPECT_EQ(Split("0x10 -0XfF 0x1.8p1 0x.8 0x1p", " "), (Numbers{16, -255, 3, .5, 1}));
}

TEST(SplitStringIntoDoubles, PassesOverAHexadecimalPrefixAlone) {
  EXPECT_EQ(Split("0x 0xg -0x 7", " "), (Numbers{7}));
}

TEST(SplitStringIntoDoubles, ReadsInfinitiesAndNotANumber) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(Split("inf -INF Infinity infx", " "),
            (Numbers{kInfinity, -kInfinity, kInfinity, kInfinity}));
  for (const double number : Split("nan -NaN nan( nan(1) nanx", " ")) {
    EXPECT_TRUE(std::isnan(number));
  }
  EXPECT_EQ(Split("nan -NaN nan( nan(1) nanx", " ").size(), 5u);
}

TEST(SplitStringIntoDoubles, PassesOverHalvesOfTheirNames) {
  EXPECT_EQ(Split("i in infi infinit n na -n 7", " "), (Numbers{7}));
}

TEST(SplitStringIntoDoubles, ReadsNumbersBeyondTheRangeAsTheScanDoes) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(Split("1e999 -1e999 1e-999 1e99999999999999999999 0e99999999999999999999", " "),
            (Numbers{kInfinity, -kInfinity, 0, kInfinity, 0}));
}

TEST(SplitStringIntoDoubles, ReadsTheSmallestAndTheLargestNumbers) {
  EXPECT_EQ(Split("4.9406564584124654e-324 2.2250738585072011e-308 1.7976931348623157e308", " "),
            (Numbers{std::numeric_limits<double>::denorm_min(), 2.2250738585072011e-308,
                     std::numeric_limits<double>::max()}));
}

TEST(SplitStringIntoDoubles, ReadsIntegersAboveThoseThatDoublesHold) {
  EXPECT_EQ(Split("9007199254740992 9007199254740993 -9007199254740995 18446744073709551617", " "),
            (Numbers{9007199254740992.0, 9007199254740992.0, -9007199254740996.0,
                     18446744073709551616.0}));
}

TEST(SplitStringIntoDoubles, ReadsTokensOfAnyLength) {
  const std::string zeros(100000, '0');
  EXPECT_EQ(Split(zeros + "1.5," + zeros + "2" + zeros + "x,1." + zeros + "1,3", ","),
            (Numbers{1.5, std::numeric_limits<double>::infinity(), 1, 3}));
  EXPECT_EQ(Split(std::string(100000, ' ') + "7" + std::string(100000, 'x') + ",8", ","),
            (Numbers{7, 8}));
}

TEST(SplitStringIntoDoubles, RoundsHalvesByTheLastOfThousandsOfDigits) {
  const std::string half = "9007199254740993." + std::string(5000, '0');
  EXPECT_EQ(Split(half + "," + half + "1", ","), (Numbers{9007199254740992.0, 9007199254740994.0}));
}

TEST(SplitStringIntoDoubles, TakesCharactersOfNumbersAsSeparatorsToo) {
  EXPECT_EQ(Split("1.5", "."), (Numbers{1, 5}));
  EXPECT_EQ(Split("12-34", "-"), (Numbers{12, 34}));
  EXPECT_EQ(Split("1203", "0"), (Numbers{12, 3}));
  EXPECT_EQ(Split("1e5", "e"), (Numbers{1, 5}));
  EXPECT_EQ(Split("-12-34", "4"), (Numbers{-12}));
}

TEST(SplitStringIntoDoubles, TakesAnEmptySetAsNoSeparator) {
  EXPECT_EQ(Split("1,2 3", ""), (Numbers{1}));
}

TEST(SplitStringIntoDoubles, StopsAtTheMostNumbers) {
  EXPECT_EQ(ByArray("1 2 x 3 4", " ", 3).found, (Numbers{1, 2, 3}));
  EXPECT_EQ(ByArray("1 2", " ", 2).found, (Numbers{1, 2}));
}

TEST(SplitStringIntoDoubles, DoesNotReadBehindTheSeparatorAtWhichItStops) {
  const std::vector<char> noEnd = {'1', ' ', '-', '2', '.', '5', ' '};
  double out[2];
  EXPECT_EQ(SplitStringIntoDoubles(noEnd.data(), " ", out, 2, false, nullptr), 2u);
  EXPECT_EQ(out[1], -2.5);
}

TEST(SplitStringIntoDoubles, WithoutRoomGivesNoneAtASeparatorThatEndsNoNumber) {
  EXPECT_EQ(Count(" 1 2", 0), 0u);
  EXPECT_EQ(Count("x 1 2", 0), 0u);
}

TEST(SplitStringIntoDoubles, WithoutRoomCountsToTheEndOnceThereWasANumber) {
  EXPECT_EQ(Count("1 x  2 3", 0), 3u);
}

TEST(SplitStringIntoDoubles, WithoutRoomStoresNothing) {
  double out = kUntouched;
  EXPECT_EQ(SplitStringIntoDoubles("1 2", " ", &out, 0, false, nullptr), 2u);
  EXPECT_EQ(SplitStringIntoDoubles("1 2", " ", &out, 0, true, nullptr), 2u);
  EXPECT_EQ(out, kUntouched);
}

TEST(SplitStringIntoDoubles, CountsWithoutAnArray) {
  EXPECT_EQ(Count("1 x  2 3", 10), 3u);
  EXPECT_EQ(Count("1 x  2 3", 2), 2u);
  double* const none = nullptr;
  EXPECT_EQ(SplitStringIntoDoubles("1 2", " ", none, 10, true, nullptr), 2u);
}

TEST(SplitStringIntoDoubles, FillsTheArrayFromItsEndWhenReversed) {
  EXPECT_EQ(SplitReversed("1 2 x 3", " ", 3), (Numbers{3, 2, 1}));
}

TEST(SplitStringIntoDoubles, LeavesTheBeginningOfTheArrayAloneWhenReversed) {
  EXPECT_EQ(SplitReversed("1 2", " ", 4), (Numbers{kUntouched, kUntouched, 2, 1}));
}

TEST(SplitStringIntoDoubles, StopsAtTheMostNumbersWhenReversed) {
  EXPECT_EQ(SplitReversed("1 2 3", " ", 2), (Numbers{2, 1}));
}

TEST(SplitStringIntoDoubles, ReplacesWhatTheVectorHeld) {
  Numbers numbers = {7, 8, 9};
  EXPECT_EQ(SplitStringIntoDoubles("1 2", " ", &numbers, nullptr), 2u);
  EXPECT_EQ(numbers, (Numbers{1, 2}));
  EXPECT_EQ(SplitStringIntoDoubles("", " ", &numbers, nullptr), 0u);
  EXPECT_EQ(numbers, (Numbers{}));
}

TEST(SplitStringIntoDoubles, TakesOneStepOfProgressANumber) {
  RecordingProgress progress;
  double out[4];
  EXPECT_EQ(SplitStringIntoDoubles("1 x  2 3", " ", out, 4, false, &progress), 3u);
  EXPECT_EQ(progress.steps, 3u);
  EXPECT_EQ(progress.starts, 1);
  EXPECT_EQ(progress.stops, 1);
  EXPECT_TRUE(progress.isIndefinite);
}

TEST(SplitStringIntoDoubles, TakesOneStepOfProgressANumberOfTheVector) {
  RecordingProgress progress;
  Numbers numbers;
  EXPECT_EQ(SplitStringIntoDoubles("1 x  2 3", " ", &numbers, &progress), 3u);
  EXPECT_EQ(progress.steps, 3u);
  EXPECT_EQ(progress.stops, 1);
}

TEST(SplitStringIntoDoubles, LetsTheExceptionOfTheHandlerPassAndStopsTheProgress) {
  RecordingProgress progress(2);
  double out[3] = {kUntouched, kUntouched, kUntouched};
  EXPECT_THROW(SplitStringIntoDoubles("1 2 3", " ", out, 3, false, &progress), std::runtime_error);
  EXPECT_EQ(progress.stops, 1);
  EXPECT_EQ(Numbers(out, out + 3), (Numbers{1, 2, kUntouched}));
}

TEST(SplitStringIntoDoubles, LetsTheExceptionOfTheHandlerPassFromTheVectorFormToo) {
  RecordingProgress progress(2);
  Numbers numbers;
  EXPECT_THROW(SplitStringIntoDoubles("1 2 3", " ", &numbers, &progress), std::runtime_error);
  EXPECT_EQ(progress.stops, 1);
}

TEST(SplitStringIntoDoubles, LetsAFailedAllocationPassAndStopsTheProgress) {
  const std::string text = "1 2 3 4 " + std::string(100, '5') + "x";
  bool isDone = false;
  unsigned long failures = 0;
  for (; !isDone; ++failures) {
    Numbers numbers;
    RecordingProgress progress;
    isDone = true;
    try {
      const ravelin_test::FailingNew failing(failures);
      SplitStringIntoDoubles(text.c_str(), " ", &numbers, &progress);
    } catch (const std::bad_alloc&) {
      isDone = false;
    }
    EXPECT_EQ(numbers.size(), progress.steps);
    EXPECT_EQ(isDone, numbers.size() == 5);
    EXPECT_EQ(progress.stops, 1);
  }
  EXPECT_GT(failures, 4u);
}

TEST(SplitStringIntoDoubles, ReadsTheDecimalSignOfTheLocale) {
  const kv_test::CommaLocale locale;
  if (!locale.IsThere()) GTEST_SKIP() << "no locale with a decimal comma can be made";
  EXPECT_EQ(Split("1,5;2.5;-3,25e1;4", ";"), (Numbers{1.5, 2, -32.5, 4}));
}

TEST(SplitStringIntoDoubles, RoundsAsTheMachineIsSetTo) {
  for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
    ASSERT_EQ(std::fesetround(mode), 0);
    const Result scanned =
        split_model::SplitNumbers("0.1 -0.1 1e23 9007199254740993", " ", 0, false);
    const Result split = ByVector("0.1 -0.1 1e23 9007199254740993", " ");
    std::fesetround(FE_TONEAREST);
    EXPECT_EQ(split, scanned);
  }
}

TEST(SplitStringIntoDoubles, TakesTimeInProportionToTheText) {
  for (const char* const piece :
       {"1,", "1", "1x", "1x,", " ", " ,", ",", "-", "inf,", "nan(", "0x1", "1e5", "1.", "1e,"}) {
    const auto split = [&](unsigned long count) {
      std::string text;
      for (unsigned long i = 0; i < count; ++i) text += piece;
      Numbers numbers;
      SplitStringIntoDoubles(text.c_str(), ",;", &numbers, nullptr);
    };
    EXPECT_TRUE(kv_test::IsLinear(5000, split)) << piece;
  }
}

/// Tokens of all kinds that a scan tells apart, and lists of them.
class RandomTokens {
 public:
  explicit RandomTokens(unsigned int seed, char point = '.') : random_(seed), point_(point) {}

  std::string List() {
    std::string list;
    const unsigned long count = 1 + Below(6);
    for (unsigned long i = 0; i < count; ++i) list += Token() + ",;,;,;; "[Below(8)];
    return list;
  }

  unsigned long Below(unsigned long end) { return random_() % end; }

 private:
  std::string Token() {
    switch (Below(8)) {
      case 0:
        return AnyCharacters();
      case 1:
        return Printed("%.*g", Below(25));
      case 2:
        return Printed("%.*e", Below(25));
      case 3:
        return Printed("%.*a", Below(15));
      case 4:
        return Decimal(400);
      default:
        return Decimal(24);
    }
  }

  std::string AnyCharacters() {
    static const std::string kAll = "0123456789.,+-eExXpPaAfFinINty() \t\rz";
    std::string text;
    const unsigned long count = Below(7);
    for (unsigned long i = 0; i < count; ++i) text += kAll[Below(kAll.size())];
    return text;
  }

  /// Any bits as a double.
  std::string Printed(const char* format, unsigned long precision) {
    const std::uint64_t bits = random_();
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    char text[500];
    std::snprintf(text, sizeof text, format, static_cast<int>(precision), value);
    return text;
  }

  std::string Decimal(unsigned long mostDigits) {
    std::string text = Blanks() + Sign() + Digits(mostDigits);
    if (Below(2) == 0) text += point_ + Digits(mostDigits);
    if (Below(3) == 0) text += (Below(2) == 0 ? "e" : "E") + Sign() + Digits(4);
    return text + Blanks() + (Below(8) == 0 ? AnyCharacters() : "");
  }

  std::string Digits(unsigned long most) {
    std::string text;
    const unsigned long count = Below(most);
    const bool isOneDigit = Below(4) == 0;
    for (unsigned long i = 0; i < count; ++i) {
      text += static_cast<char>('0' + (isOneDigit ? 9 * Below(2) : Below(10)));
    }
    return text;
  }

  std::string Sign() { return std::vector<std::string>{"", "", "-", "+"}[Below(4)]; }
  std::string Blanks() {
    return std::vector<std::string>{"", "", "", " ", "\t ", "\n\v\f\r "}[Below(6)];
  }

  std::mt19937_64 random_;
  char point_;
};

/// Lists at separators that no number, some numbers and most numbers are made of: a tenth of the
/// cases where a sanitizer looks on, which makes each scan many times longer.
void CompareWithTheScan(RandomTokens* random, int cases) {
  if (kv_test::kSanitized) cases /= 10;
  const std::string kSeparators[] = {",;", ";", ";,", " ,;", ";.", ";-", ";e5"};
  for (int i = 0; i < cases; ++i) {
    const std::string text = random->List();
    const std::string& separators = kSeparators[random->Below(std::size(kSeparators))];
    const auto maxCount = static_cast<unsigned int>(1 + random->Below(6));
    ASSERT_EQ(ByVector(text, separators), split_model::SplitNumbers(text, separators, 0, false))
        << text << " at " << separators;
    ASSERT_EQ(ByArray(text, separators, maxCount),
              split_model::SplitNumbers(text, separators, maxCount, true))
        << text << " at " << separators;
    ASSERT_EQ(SplitStringIntoDoubles(text.c_str(), separators.c_str(),
                                     static_cast<double*>(nullptr), 0, false, nullptr),
              split_model::SplitNumbers(text, separators, 0, true).count)
        << text << " at " << separators;
  }
}

TEST(SplitStringIntoDoubles, AgreesWithTheScanToTheLastBit) {
  RandomTokens random(63);
  CompareWithTheScan(&random, 200000);
}

TEST(SplitStringIntoDoubles, AgreesWithTheScanInALocaleWithAComma) {
  const kv_test::CommaLocale locale;
  if (!locale.IsThere()) GTEST_SKIP() << "no locale with a decimal comma can be made";
  RandomTokens commas(64, ',');
  CompareWithTheScan(&commas, 50000);
  RandomTokens points(65);
  CompareWithTheScan(&points, 50000);
}

}  // namespace
