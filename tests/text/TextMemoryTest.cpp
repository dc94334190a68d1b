// Operations on texts while allocations fail.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "SatCommonUtils/Text.h"
#include "support/EveryAllocation.h"
#include "support/TempFolder.h"

namespace {

using namespace SatCommonUtils;
using ravelin_test::GivesEverywhere;
using ravelin_test::ThrowsEverywhere;
using Texts = std::vector<std::string>;

const std::string kLong(100, 'x');
const std::string kFields = kLong + "," + kLong + ",\"" + kLong + "\"";

TEST(TextMemoryTest, Splitting) {
  ThrowsEverywhere("SplitString", [] {
    std::string out[4];
    const unsigned int count = SplitString(kFields.c_str(), ",", out, 4, nullptr, false);
    return std::pair(count, out[2]);
  });
  ThrowsEverywhere("SplitStringQuot to an array", [] {
    std::string out[4];
    const unsigned int count = SplitStringQuot(kFields.c_str(), ",", out, 4, nullptr, true);
    return std::pair(count, out[2]);
  });
  ThrowsEverywhere("SplitStringQuot to a vector", [] {
    Texts out;
    SplitStringQuot(kFields.c_str(), ",", &out, true);
    return out;
  });
  ThrowsEverywhere("SplitStringIntoDoubles", [] {
    std::vector<double> out;
    SplitStringIntoDoubles("1,2,3,4,5", ",", &out, nullptr);
    return out;
  });
}

TEST(TextMemoryTest, JoiningAndPadding) {
  ThrowsEverywhere("CombineStrings",
                   [] { return CombineStrings(kLong, kLong, kLong, kLong, kLong); });
  ThrowsEverywhere("SetIfNotEmpty", [] {
    std::string target;
    SetIfNotEmpty(&target, kLong, true);
    return target;
  });
  ThrowsEverywhere("GetNotEmptyDef", [] { return GetNotEmptyDef(" ", kLong, true); });
  ThrowsEverywhere("LeftPadding", [] { return LeftPadding(kLong, 200, ' '); });
  ThrowsEverywhere("RightPadding", [] { return RightPadding(kLong, 200, ' '); });
}

TEST(TextMemoryTest, Quotes) {
  const std::string quoted = "\"" + kLong + "\"";
  ThrowsEverywhere("RemoveQuotes", [&] { return RemoveQuotes(quoted); });
  ThrowsEverywhere("RemoveQuotes to a text", [&] {
    std::string out;
    const bool both = RemoveQuotes(quoted, &out);
    return std::pair(both, out);
  });
  ThrowsEverywhere("RemoveQuotesAndWhitespaces",
                   [&] { return RemoveQuotesAndWhitespaces(quoted + " "); });
  ThrowsEverywhere("RemoveTrailingSymbol", [&] { return RemoveTrailingSymbol(quoted, '"', true); });
}

TEST(TextMemoryTest, Numbering) {
  ThrowsEverywhere("GenerateNextString", [] { return GenerateNextString(kLong + "[9]"); });
  ThrowsEverywhere("GenerateNumeratedString", [] { return GenerateNumeratedString(kLong); });
  ThrowsEverywhere("DeNumerateString", [] {
    std::string text = kLong + "(7)";
    const int number = DeNumerateString(&text);
    return std::pair(number, text);
  });
  const Texts existing = {kLong, kLong + "[1]"};
  for (const bool caseSensitive : {false, true}) {
    ThrowsEverywhere("GenerateUniqueString",
                     [&] { return GenerateUniqueString(kLong, existing, caseSensitive); });
  }
}

TEST(TextMemoryTest, EscapesAndUnits) {
  ThrowsEverywhere("Encode", [] {
    std::string out;
    Encode(kLong + "\t", &out);
    return out;
  });
  ThrowsEverywhere("Decode", [] {
    std::string out;
    Decode(kLong + "\\t", &out);
    return out;
  });
  ThrowsEverywhere("PseudoUTF16toUTF8", [] { return PseudoUTF16toUTF8(kLong, true); });
  TKvMemoryStream stream("\xff\xfe" + kLong);
  ThrowsEverywhere("PseudoUTF16toUTF8 of a stream",
                   [&] { return PseudoUTF16toUTF8(&stream, true, 2); });
  ThrowsEverywhere("PseudoUTF16toUTF8BOM", [&] { return PseudoUTF16toUTF8BOM(&stream); });
}

TEST(TextMemoryTest, NumbersAndParts) {
  const double number = 1;
  ThrowsEverywhere("ValueToString", [&] { return ValueToString(number, "%100.3f"); });
  ThrowsEverywhere("ValueToString of a float", [] { return ValueToString(1.0f, "%100.3f"); });
  ThrowsEverywhere("ValueToString of a whole number", [] { return ValueToString(1u, "%100u"); });
  ThrowsEverywhere("StringBegins", [] { return StringBegins(kLong, kLong, false); });
  ThrowsEverywhere("StringContains", [] { return StringContains(kLong, kLong, false); });
  ThrowsEverywhere("StringEnds", [] { return StringEnds(kLong, kLong, false); });
  for (const bool caseSensitive : {false, true}) {
    ThrowsEverywhere("CutStringHead", [&] { return CutStringHead(kLong, "x", caseSensitive); });
    ThrowsEverywhere("CutStringTail",
                     [&] { return CutStringTail(kLong + "y", "y", caseSensitive); });
  }
}

TEST(TextMemoryTest, WhatThrowsItsNameWithoutMemoryThrowsThatOrBadAlloc) {
  for (unsigned long successes = 0; successes < 3; ++successes) {
    const long live = ravelin_test::LiveAllocations();
    for (const bool real : {false, true}) {
      std::string said;
      said.reserve(40);
      try {
        const ravelin_test::FailingNew failing(successes);
        if (real) {
          StringToDoubleE("x");
        } else {
          StringToIntE("x");
        }
      } catch (const std::bad_alloc&) {
        said = "no memory";
      } catch (const std::runtime_error& error) {
        said = error.what();
      }
      const std::string name = real ? "StringToDoubleE" : "StringToIntE";
      EXPECT_EQ(said, ravelin_test::AllocationFailed() ? "no memory" : name);
    }
    EXPECT_EQ(ravelin_test::LiveAllocations(), live);
  }
}

TEST(TextMemoryTest, Files) {
  const TempFolder folder;
  const std::string path = folder / "a-name-that-is-too-long-to-be-held-in-the-string-itself";
  GivesEverywhere(
      "WriteStringToFile", [&] { return WriteStringToFile(path, kLong); }, false);
  GivesEverywhere(
      "ReadStringFromFile", [&] { return ReadStringFromFile(path); }, std::string());
}

}  // namespace
