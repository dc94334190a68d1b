// Numbers in texts compared with the C library, and beginnings and ends of strings with searches.
#include <array>
#include <cstdio>
#include <stdexcept>
#include <string>

#include "Kv/Text.h"
#include "SatCommonUtils/Text.h"
#include "fuzz/FuzzInput.h"

namespace {

template <class T>
bool SameBits(T a, T b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

template <class T, class Default, class Throwing>
void CheckConversion(const std::string& text, const char* format, Default withDefault,
                     Throwing orThrow) {
  T scanned = 0;
  const bool isTaken = !text.empty() && std::sscanf(text.c_str(), format, &scanned) != 0;
  Require(SameBits(withDefault(text, T(5)), isTaken ? scanned : T(5)),
          "a number is that of the scan, or the default");
  try {
    Require(SameBits(orThrow(text), scanned) && isTaken, "a number is that of the scan");
  } catch (const std::runtime_error&) {
    Require(!isTaken, "what the scan takes throws nothing");
  }
}

template <class T>
void CheckValue(const std::string& text, const char* format) {
  T scanned = 0;
  const bool isTaken = std::sscanf(text.c_str(), format, &scanned) == 1;
  T value = 9;
  Require(SatCommonUtils::ValueFromString(text, &value) == isTaken,
          "a value is there when the scan stores one");
  Require(SameBits(value, isTaken ? scanned : T(9)), "a value is that of the scan, or stays");
}

void CheckNumbers(const std::string& text) {
  CheckConversion<double>(text, "%lf", SatCommonUtils::StringToDoubleDef,
                          SatCommonUtils::StringToDoubleE);
  CheckConversion<int>(text, "%d", SatCommonUtils::StringToIntDef, SatCommonUtils::StringToIntE);
  CheckValue<double>(text, "%lg");
  CheckValue<float>(text, "%g");
  CheckValue<unsigned int>(text, "%u");
}

template <class T>
std::string Printed(const std::string& format, T value) {
  std::array<char, 2000> text;
  std::snprintf(text.data(), text.size(), format.c_str(), value);
  return text.data();
}

/// Widths and precisions of up to three digits.
std::string FormatOf(FuzzInput* input, const std::string& conversions) {
  std::string format = "%";
  for (const char flag : {'-', '+', ' ', '#', '0'}) {
    if (input->Between(0, 3) == 0) format += flag;
  }
  format += std::to_string(input->Between(1, 256));
  if (input->Between(0, 1) == 0)
    format.append(1, '.').append(std::to_string(input->Between(0, 255)));
  return format +
         conversions[static_cast<std::size_t>(input->Between(0, 255)) % conversions.size()];
}

void CheckFormats(FuzzInput* input) {
  using SatCommonUtils::ValueToString;
  const auto number = input->Take<double>();
  const auto single = input->Take<float>();
  const auto whole = input->Take<unsigned int>();
  Require(ValueToString(number) == Printed("%lg", number), "a double is printed");
  Require(ValueToString(single) == Printed("%g", static_cast<double>(single)),
          "a float is printed");
  Require(ValueToString(whole) == Printed("%u", whole), "an unsigned number is printed");
  const std::string format = FormatOf(input, "aefgAEFG");
  Require(ValueToString(number, format.c_str()) == Printed(format, number),
          "a double is printed in a format");
  Require(ValueToString(single, format.c_str()) == Printed(format, static_cast<double>(single)),
          "a float is printed in a format");
  const std::string digits = FormatOf(input, "udxXoic");
  Require(ValueToString(whole, digits.c_str()) == Printed(digits, whole),
          "an unsigned number is printed in a format");
}

void CheckPredicates(const std::string& text, const std::string& part, bool caseSensitive) {
  const std::string t = caseSensitive ? text : toupper(text);
  const std::string p = caseSensitive ? part : toupper(part);
  const bool begins = t.find(p) == 0;
  const bool ends =
      t.size() >= p.size() && (caseSensitive ? t.rfind(p) : t.find(p)) == t.size() - p.size();
  Require(SatCommonUtils::StringBegins(text, part, caseSensitive) == begins,
          "a text begins with what is found first at its beginning");
  Require(
      SatCommonUtils::StringContains(text, part, caseSensitive) == (t.find(p) != std::string::npos),
      "a text contains what is found");
  Require(SatCommonUtils::StringEnds(text, part, caseSensitive) == ends,
          "a text ends with what is found at its end");
  Require(SatCommonUtils::CutStringHead(text, part, caseSensitive) ==
              (begins ? text.substr(part.size()) : text),
          "a head is cut off");
  Require(SatCommonUtils::CutStringTail(text, part, caseSensitive) ==
              (ends ? text.substr(0, text.size() - part.size()) : text),
          "a tail is cut off");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  CheckNumbers(text);
  FuzzInput input(data, size);
  CheckFormats(&input);
  // The first byte says how much of the rest is looked for in what remains.
  const std::size_t length = size == 0 ? 0 : 1 + data[0] % size;
  const std::string part = length < 2 ? "" : text.substr(1, length - 1);
  for (const bool caseSensitive : {true, false}) {
    CheckPredicates(text.substr(length), part, caseSensitive);
  }
  return 0;
}
