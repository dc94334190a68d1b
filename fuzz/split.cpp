// Splits any bytes into fields and numbers, which must be those of the plain models, and numbers
// and tidies the same bytes.
#include <string>
#include <vector>

#include "Kv/Text.h"
#include "SatCommonUtils/Text.h"
#include "fuzz/FuzzInput.h"
#include "tests/text/SplitModel.h"

namespace {

using SatCommonUtils::SplitString;
using SatCommonUtils::SplitStringIntoDoubles;
using SatCommonUtils::SplitStringQuot;

struct Input {
  unsigned int maxCount;
  bool keepEmpty;
  std::string separators;
  std::string text;
};

/// Up to three separators and, from the fifth byte on, the text.
Input Take(const std::uint8_t* data, std::size_t size) {
  FuzzInput from(data, size);
  Input input;
  const auto flags = from.Take<std::uint8_t>();
  input.maxCount = flags / 2 % 8;
  input.keepEmpty = flags % 2 != 0;
  for (int i = 0; i < 3; ++i) {
    const char separator = from.Take<char>();
    if (separator != '\0') input.separators += separator;
  }
  while (!from.AtEnd()) {
    const char c = from.Take<char>();
    if (c == '\0') break;
    input.text += c;
  }
  return input;
}

using ArraySplitter = unsigned int (*)(const char*, const char*, std::string*, unsigned int,
                                       TKvProgressHandler*, bool);

split_model::Result<std::string> Fields(ArraySplitter split, const Input& input) {
  split_model::Result<std::string> result;
  result.found.resize(input.maxCount);
  result.count = split(input.text.c_str(), input.separators.c_str(), result.found.data(),
                       input.maxCount, nullptr, input.keepEmpty);
  if (result.count < result.found.size()) result.found.resize(result.count);
  return result;
}

/// The model stores fields without an end where there is no room at all.
template <class T>
split_model::Result<T> Stored(split_model::Result<T> result, const Input& input) {
  if (result.found.size() > input.maxCount) result.found.resize(input.maxCount);
  return result;
}

void CheckFields(const Input& input) {
  const std::string& text = input.text;
  const std::string& separators = input.separators;
  const auto plain = split_model::Split(text, separators, input.maxCount, input.keepEmpty);
  Require(Fields(SplitString, input) == Stored(plain, input), "fields are those of the model");
  const auto quoted =
      split_model::SplitQuot(text, separators, input.maxCount, input.keepEmpty, true);
  Require(Fields(SplitStringQuot, input) == Stored(quoted, input),
          "quoted fields are those of the model");

  split_model::Result<std::string> all;
  all.count = SplitStringQuot(text.c_str(), separators.c_str(), &all.found, input.keepEmpty);
  Require(all == split_model::SplitQuot(text, separators, 0, input.keepEmpty, false),
          "all quoted fields are those of the model");
}

void CheckNumbers(const Input& input) {
  const std::string& text = input.text;
  const std::string& separators = input.separators;
  split_model::Result<double> some;
  some.found.resize(input.maxCount);
  some.count = SplitStringIntoDoubles(text.c_str(), separators.c_str(), some.found.data(),
                                      input.maxCount, false, nullptr);
  if (some.count < some.found.size()) some.found.resize(some.count);
  const auto expected = split_model::SplitNumbers(text, separators, input.maxCount, true);
  Require(some == Stored(expected, input), "numbers are those of the scan");

  split_model::Result<double> all;
  all.count = SplitStringIntoDoubles(text.c_str(), separators.c_str(), &all.found, nullptr);
  Require(all == split_model::SplitNumbers(text, separators, 0, false),
          "all numbers are those of the scan");
}

void CheckNumbering(const std::string& text) {
  const std::string next = SatCommonUtils::GenerateNextString(text);
  Require(next != text && next.back() == ']', "the next name is another one with a number");
  Require(SatCommonUtils::GenerateUniqueString(text, {text}, false) == next,
          "a taken name gives the next");
  std::string numbered = SatCommonUtils::GenerateNumeratedString(text);
  const std::string behind = numbered.substr(numbered.rfind('('));
  const int number = SatCommonUtils::DeNumerateString(&numbered);
  Require(behind.compare(1, behind.size() - 2, std::to_string(number)) == 0,
          "the number is the one that was put");
  Require(text.compare(0, numbered.size(), numbered) == 0, "the text is what was in front of it");
}

void CheckQuotes(const std::string& text) {
  std::string inside;
  const bool isQuoted = SatCommonUtils::RemoveQuotes(text, &inside);
  const std::string trimmed = trim(text);
  Require(isQuoted ? trimmed.size() == inside.size() + 2 : trimmed == inside,
          "one pair of quotes is taken off");
  const std::string bare = SatCommonUtils::RemoveQuotesAndWhitespaces(text);
  Require(text.find(bare) != std::string::npos, "only ends are taken off");
  const std::string cut = SatCommonUtils::RemoveTrailingSymbol(text, '/', true);
  Require(cut.empty() || cut.back() != '/', "all symbols at the end are taken off");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Input input = Take(data, size);
  CheckFields(input);
  CheckNumbers(input);
  CheckNumbering(input.text);
  CheckQuotes(input.text);
  return 0;
}
