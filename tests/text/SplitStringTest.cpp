// Splitting into fields, with and without quoted sections.
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "SatCommonUtils/Text.h"
#include "kv/Growth.h"
#include "support/FailingNew.h"
#include "text/RecordingProgress.h"
#include "text/SplitModel.h"

namespace {

using SatCommonUtils::SplitString;
using SatCommonUtils::SplitStringQuot;
using text_test::RecordingProgress;
using Fields = std::vector<std::string>;
using Result = split_model::Result<std::string>;
using ArraySplitter = unsigned int (*)(const char*, const char*, std::string*, unsigned int,
                                       TKvProgressHandler*, bool);

const ArraySplitter kSplit = SplitString;
const ArraySplitter kSplitQuot = SplitStringQuot;

/// The fields by the array form, which must leave the elements behind them alone.
Result ByArray(ArraySplitter split, const std::string& text, const std::string& separators,
               unsigned int maxCount, bool keepEmpty) {
  Result result;
  result.found.assign(maxCount + 1, "untouched");
  result.count =
      split(text.c_str(), separators.c_str(), result.found.data(), maxCount, nullptr, keepEmpty);
  for (std::size_t i = result.count; i < result.found.size(); ++i) {
    EXPECT_EQ(result.found[i], "untouched");
  }
  result.found.resize(result.count);
  return result;
}

Fields Split(const std::string& text, const std::string& separators, bool keepEmpty = false,
             unsigned int maxCount = 20) {
  return ByArray(kSplit, text, separators, maxCount, keepEmpty).found;
}

Fields SplitQuot(const std::string& text, const std::string& separators, bool keepEmpty = false,
                 unsigned int maxCount = 20) {
  return ByArray(kSplitQuot, text, separators, maxCount, keepEmpty).found;
}

Fields SplitQuotAll(const std::string& text, const std::string& separators,
                    bool keepEmpty = false) {
  Fields fields;
  const unsigned int count = SplitStringQuot(text.c_str(), separators.c_str(), &fields, keepEmpty);
  EXPECT_EQ(count, fields.size());
  return fields;
}

/// How many fields there are, by an array that is not there.
unsigned int Count(ArraySplitter split, const std::string& text, unsigned int maxCount,
                   bool keepEmpty) {
  return split(text.c_str(), ",", nullptr, maxCount, nullptr, keepEmpty);
}

/// What both array forms have in common.
class ArraySplitters : public testing::TestWithParam<ArraySplitter> {
 protected:
  Fields Found(const std::string& text, bool keepEmpty, unsigned int maxCount = 20) const {
    return ByArray(GetParam(), text, ",", maxCount, keepEmpty).found;
  }
};

TEST_P(ArraySplitters, PassOverEmptyFields) {
  EXPECT_EQ(Found("a,,b", false), (Fields{"a", "b"}));
  EXPECT_EQ(Found(",a,", false), (Fields{"a"}));
  EXPECT_EQ(Found(",,,", false), (Fields{}));
}

TEST_P(ArraySplitters, KeepEmptyFieldsWhenTold) {
  EXPECT_EQ(Found("a,,b", true), (Fields{"a", "", "b"}));
  EXPECT_EQ(Found(",a,", true), (Fields{"", "a", ""}));
  EXPECT_EQ(Found(",,", true), (Fields{"", "", ""}));
}

TEST_P(ArraySplitters, FindOneEmptyFieldInAnEmptyTextOnlyWhenEmptyFieldsAreKept) {
  EXPECT_EQ(Found("", true), (Fields{""}));
  EXPECT_EQ(Found("", false), (Fields{}));
}

TEST_P(ArraySplitters, TakeAnyByteOfTheSetAsASeparator) {
  EXPECT_EQ(ByArray(GetParam(),
                    "a;b,c\td\xFF"
                    "e",
                    ",;\t\xFF", 9, false)
                .found,
            (Fields{"a", "b", "c", "d", "e"}));
}

TEST_P(ArraySplitters, TakeAnEmptySetAsNoSeparator) {
  EXPECT_EQ(ByArray(GetParam(), "a,b c", "", 9, false).found, (Fields{"a,b c"}));
}

TEST_P(ArraySplitters, KeepEveryOtherByteAsItIs) {
  EXPECT_EQ(Found(" \x01 \x80,\xFF\r\n", false), (Fields{" \x01 \x80", "\xFF\r\n"}));
}

TEST_P(ArraySplitters, StopAtTheMostFields) {
  EXPECT_EQ(Found("a,b,c", false, 2), (Fields{"a", "b"}));
  EXPECT_EQ(Found("a,b,c", false, 3), (Fields{"a", "b", "c"}));
}

TEST_P(ArraySplitters, DoNotReadBehindTheSeparatorAtWhichTheyStop) {
  const std::vector<char> noEnd = {'a', ',', 'b', ','};
  std::string out[2];
  EXPECT_EQ(GetParam()(noEnd.data(), ",", out, 2, nullptr, false), 2u);
  EXPECT_EQ(out[1], "b");
}

TEST_P(ArraySplitters, PassOverEmptyFieldsWithoutCountingThem) {
  EXPECT_EQ(Found(",,a,,b,,c", false, 2), (Fields{"a", "b"}));
}

TEST_P(ArraySplitters, WithoutRoomGiveNoneAtASeparatorThatEndsNoField) {
  EXPECT_EQ(Count(GetParam(), ",a,b,c", 0, false), 0u);
}

TEST_P(ArraySplitters, WithoutRoomCountToTheEndOnceThereWasAField) {
  EXPECT_EQ(Count(GetParam(), "a,,b,c", 0, false), 3u);
  EXPECT_EQ(Count(GetParam(), "a,b,c", 0, false), 3u);
  EXPECT_EQ(Count(GetParam(), ",a,,b", 0, true), 4u);
}

TEST_P(ArraySplitters, WithoutRoomStoreNothing) {
  std::string out = "untouched";
  EXPECT_EQ(GetParam()("a,b", ",", &out, 0, nullptr, false), 2u);
  EXPECT_EQ(out, "untouched");
}

TEST_P(ArraySplitters, CountWithoutAnArray) {
  EXPECT_EQ(Count(GetParam(), "a,,b", 10, false), 2u);
  EXPECT_EQ(Count(GetParam(), "a,,b", 10, true), 3u);
  EXPECT_EQ(Count(GetParam(), "a,,b", 1, true), 1u);
}

TEST_P(ArraySplitters, ReplaceWhatTheArrayHeld) {
  std::string out[2] = {std::string(5000, 'x'), "y"};
  EXPECT_EQ(GetParam()("a,", ",", out, 2, nullptr, true), 2u);
  EXPECT_EQ(out[0], "a");
  EXPECT_EQ(out[1], "");
}

TEST_P(ArraySplitters, TakeOneStepOfProgressAField) {
  RecordingProgress progress;
  EXPECT_EQ(GetParam()("a,,b,c", ",", nullptr, 10, &progress, false), 3u);
  EXPECT_EQ(progress.steps, 3u);
  EXPECT_EQ(progress.starts, 1);
  EXPECT_EQ(progress.stops, 1);
  EXPECT_TRUE(progress.isIndefinite);
}

TEST_P(ArraySplitters, TakeAStepForAnEmptyFieldThatIsKept) {
  RecordingProgress progress;
  EXPECT_EQ(GetParam()("a,,b,c", ",", nullptr, 3, &progress, true), 3u);
  EXPECT_EQ(progress.steps, 3u);
}

TEST_P(ArraySplitters, TakeNoStepWhenThereIsNoField) {
  RecordingProgress progress;
  EXPECT_EQ(GetParam()(",,", ",", nullptr, 3, &progress, false), 0u);
  EXPECT_EQ(progress.steps, 0u);
  EXPECT_EQ(progress.stops, 1);
}

TEST_P(ArraySplitters, LetTheExceptionOfTheHandlerPassAndStopTheProgress) {
  RecordingProgress progress(2);
  std::string out[3] = {"x", "y", "z"};
  EXPECT_THROW(GetParam()("a,b,c", ",", out, 3, &progress, false), std::runtime_error);
  EXPECT_EQ(progress.stops, 1);
  EXPECT_EQ(Fields(out, out + 3), (Fields{"a", "b", "z"}));
}

TEST_P(ArraySplitters, LetAFailedAllocationPassAndStopTheProgress) {
  const std::string text = "a," + std::string(100, 'b') + ",c";
  RecordingProgress progress;
  std::string out[3];
  const auto split = [&] {
    const ravelin_test::FailingNew failing(0);
    GetParam()(text.c_str(), ",", out, 3, &progress, false);
  };
  EXPECT_THROW(split(), std::bad_alloc);
  EXPECT_EQ(Fields(out, out + 3), (Fields{"a", "", ""}));
  EXPECT_EQ(progress.steps, 1u);
  EXPECT_EQ(progress.stops, 1);
}

TEST_P(ArraySplitters, TakeTimeInProportionToTheText) {
  for (const char* const piece : {"a,", ",", "\"", "abcdefg", "\",\"", "\"\","}) {
    std::string text;
    const auto split = [&](unsigned long count) {
      text.clear();
      for (unsigned long i = 0; i < count; ++i) text += piece;
      GetParam()(text.c_str(), ",;\t", nullptr, 0xFFFFFFFF, nullptr, true);
    };
    EXPECT_TRUE(kv_test::IsLinear(5000, split)) << piece;
  }
}

INSTANTIATE_TEST_SUITE_P(, ArraySplitters, testing::Values(kSplit, kSplitQuot),
                         [](const auto& tested) {
                           return tested.param == kSplit ? "Plain" : "Quoted";
                         });

/// Bytes that all differ from the separator, and from their neighbours.
std::string Letters(std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += static_cast<char>('a' + i % 23);
  return text;
}

TEST(SplitString, EndsAFieldAt4095BytesAndLosesTheNext) {
  const std::string text = Letters(5000);
  EXPECT_EQ(Split(text, ","), (Fields{text.substr(0, 4095), text.substr(4096)}));
}

TEST(SplitString, LosesNothingOfAFieldOf4095Bytes) {
  const std::string text = Letters(4095);
  EXPECT_EQ(Split(text, ",", true), (Fields{text}));
  EXPECT_EQ(Split(text + ",b", ",", true), (Fields{text, "b"}));
}

TEST(SplitString, TakesTheLostByteForASeparatorAtTheEndToo) {
  const std::string text = Letters(4096);
  EXPECT_EQ(Split(text, ",", false), (Fields{text.substr(0, 4095)}));
  EXPECT_EQ(Split(text, ",", true), (Fields{text.substr(0, 4095), ""}));
}

TEST(SplitString, TakesASeparatorBehindTheLostByteForAnother) {
  const std::string text = Letters(4096);
  EXPECT_EQ(Split(text + ",b", ",", true), (Fields{text.substr(0, 4095), "", "b"}));
}

TEST(SplitString, LosesOneByteOfEvery4096) {
  const std::string text = Letters(3 * 4096 + 10);
  EXPECT_EQ(Split(text, ","), (Fields{text.substr(0, 4095), text.substr(4096, 4095),
                                      text.substr(8192, 4095), text.substr(12288)}));
}

TEST(SplitString, StopsAtTheMostFieldsBehindALostByte) {
  const std::string text = Letters(5000);
  EXPECT_EQ(Split(text, ",", false, 1), (Fields{text.substr(0, 4095)}));
}

TEST(SplitString, TakesADoubleQuoteForAnyByte) {
  EXPECT_EQ(Split("\"a,b\"", ","), (Fields{"\"a", "b\""}));
}

TEST(SplitStringQuot, DoesNotEndAFieldBetweenQuotes) {
  const std::string text = "x;\"a;b\";y";
  EXPECT_EQ(SplitQuot(text, ";"), (Fields{"x", "\"a;b\"", "y"}));
  EXPECT_EQ(SplitQuotAll(text, ";"), (Fields{"x", "\"a;b\"", "y"}));
}

TEST(SplitStringQuot, OpensAQuotedSectionInsideAField) {
  EXPECT_EQ(SplitQuot("a\"b,c\"d,e", ","), (Fields{"a\"b,c\"d", "e"}));
  EXPECT_EQ(SplitQuotAll("a\"b,c\"d,e", ","), (Fields{"a\"b,c\"d", "e"}));
}

TEST(SplitStringQuot, KeepsADoubledQuoteAndTheSectionOpen) {
  const std::string text = "\"a\"\",b\",c";
  EXPECT_EQ(SplitQuot(text, ","), (Fields{"\"a\"\",b\"", "c"}));
  EXPECT_EQ(SplitQuotAll(text, ","), (Fields{"\"a\"\",b\"", "c"}));
}

TEST(SplitStringQuot, ClosesASectionAtTheThirdOfThreeQuotes) {
  EXPECT_EQ(SplitQuot("\"a\"\"\",b", ","), (Fields{"\"a\"\"\"", "b"}));
}

TEST(SplitStringQuot, OpensAndClosesAtTwoQuotesOutsideASection) {
  EXPECT_EQ(SplitQuot("\"\",a", ","), (Fields{"\"\"", "a"}));
}

TEST(SplitStringQuot, EndsAnOpenSectionWithTheText) {
  EXPECT_EQ(SplitQuot("a,\"b,c", ","), (Fields{"a", "\"b,c"}));
  EXPECT_EQ(SplitQuotAll("a,\"b,c", ","), (Fields{"a", "\"b,c"}));
  EXPECT_EQ(SplitQuotAll("a,\"", ","), (Fields{"a", "\""}));
  EXPECT_EQ(SplitQuotAll("\"b\"\"", ","), (Fields{"\"b\"\""}));
}

TEST(SplitStringQuot, TakesADoubleQuoteThatSeparatesOnlyForASeparator) {
  EXPECT_EQ(SplitQuot("a\"b,c\"d", ",\""), (Fields{"a", "b", "c", "d"}));
  EXPECT_EQ(SplitQuotAll("\"a\"", "\"", true), (Fields{"", "a", ""}));
}

TEST(SplitStringQuot, TakesFieldsOfAnyLength) {
  const std::string text = Letters(100000);
  EXPECT_EQ(SplitQuot(text + ",\"" + text, ","), (Fields{text, "\"" + text}));
  EXPECT_EQ(SplitQuotAll(text + "," + text, ","), (Fields{text, text}));
}

TEST(SplitStringQuot, PutsFieldsBehindThoseOfTheVectorAndCountsOnlyItsOwn) {
  Fields fields = {"before"};
  EXPECT_EQ(SplitStringQuot("a,b", ",", &fields, false), 2u);
  EXPECT_EQ(SplitStringQuot("c,,d", ",", &fields, true), 3u);
  EXPECT_EQ(fields, (Fields{"before", "a", "b", "c", "", "d"}));
}

TEST(SplitStringQuot, FindsEmptyFieldsForTheVectorOnlyWhenTheyAreKept) {
  EXPECT_EQ(SplitQuotAll(",a,,", ",", true), (Fields{"", "a", "", ""}));
  EXPECT_EQ(SplitQuotAll(",a,,", ",", false), (Fields{"a"}));
  EXPECT_EQ(SplitQuotAll("", ",", true), (Fields{""}));
  EXPECT_EQ(SplitQuotAll("", ",", false), (Fields{}));
}

TEST(SplitStringQuot, CountsWithoutAVector) {
  Fields* const none = nullptr;
  EXPECT_EQ(SplitStringQuot("a,\"b,c\",,d", ",", none, false), 3u);
  EXPECT_EQ(SplitStringQuot("a,\"b,c\",,d", ",", none, true), 4u);
}

TEST(SplitStringQuot, LeavesTheFieldsBeforeAFailedAllocationInTheVector) {
  const std::string longer(100, 'b');
  const std::string text = "a," + longer + ",c," + longer;
  const Fields all = {"a", longer, "c", longer};
  bool isDone = false;
  unsigned long failures = 0;
  for (; !isDone; ++failures) {
    Fields fields;
    isDone = true;
    try {
      const ravelin_test::FailingNew failing(failures);
      SplitStringQuot(text.c_str(), ",", &fields, false);
    } catch (const std::bad_alloc&) {
      isDone = false;
    }
    EXPECT_TRUE(isDone ? fields == all : fields.size() < all.size());
    EXPECT_EQ(fields, Fields(all.begin(), all.begin() + static_cast<long>(fields.size())));
  }
  EXPECT_GT(failures, 4u);
}

TEST(SplitStringQuot, TakesTimeInProportionToTheTextWithAVectorToo) {
  for (const char* const piece : {"a,", ",", "\"", "\",\""}) {
    const auto split = [&](unsigned long count) {
      std::string text;
      for (unsigned long i = 0; i < count; ++i) text += piece;
      Fields fields;
      SplitStringQuot(text.c_str(), ",;\t", &fields, true);
    };
    EXPECT_TRUE(kv_test::IsLinear(5000, split)) << piece;
  }
}

/// Short texts of few characters, so that everything meets everything; some with long runs.
class RandomTexts {
 public:
  explicit RandomTexts(unsigned int seed) : random_(seed) {}

  std::string Text() {
    std::string text;
    const unsigned long pieces = Below(12);
    for (unsigned long i = 0; i < pieces; ++i) text += Piece();
    return text;
  }

  std::string Separators() {
    std::string separators;
    const unsigned long count = Below(4);
    for (unsigned long i = 0; i < count; ++i) separators += ",;\" a"[Below(5)];
    return separators;
  }

  unsigned long Below(unsigned long end) { return random_() % end; }

 private:
  std::string Piece() {
    const std::string letter(1, "ab,;\"\" "[Below(7)]);
    if (Below(200) != 0) return letter;
    return std::string(4090 + Below(12), letter[0]);
  }

  std::mt19937 random_;
};

TEST(SplitString, AgreesWithTheModelOnRandomTexts) {
  RandomTexts random(61);
  for (int i = 0; i < 100000; ++i) {
    const std::string text = random.Text();
    const std::string separators = random.Separators();
    const auto maxCount = static_cast<unsigned int>(1 + random.Below(9));
    const bool keepEmpty = random.Below(2) == 0;
    ASSERT_EQ(ByArray(kSplit, text, separators, maxCount, keepEmpty),
              split_model::Split(text, separators, maxCount, keepEmpty))
        << text << " at " << separators;
    ASSERT_EQ(kSplit(text.c_str(), separators.c_str(), nullptr, 0, nullptr, keepEmpty),
              split_model::Split(text, separators, 0, keepEmpty).count)
        << text << " at " << separators;
  }
}

TEST(SplitStringQuot, AgreesWithTheModelOnRandomTexts) {
  RandomTexts random(62);
  for (int i = 0; i < 100000; ++i) {
    const std::string text = random.Text();
    const std::string separators = random.Separators();
    const auto maxCount = static_cast<unsigned int>(1 + random.Below(9));
    const bool keepEmpty = random.Below(2) == 0;
    ASSERT_EQ(ByArray(kSplitQuot, text, separators, maxCount, keepEmpty),
              split_model::SplitQuot(text, separators, maxCount, keepEmpty, true))
        << text << " at " << separators;
    ASSERT_EQ(SplitQuotAll(text, separators, keepEmpty),
              split_model::SplitQuot(text, separators, 0, keepEmpty, false).found)
        << text << " at " << separators;
  }
}

}  // namespace
