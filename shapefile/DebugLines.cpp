#include "shapefile/DebugLines.h"

#include <array>
#include <cfloat>
#include <cstdio>

#include "Kv/Services.h"

namespace SatCommonUtils {

void PrintTitle(const std::string& title) {
  ::KvPrintDbgMsg("----- " + title + " -----");
}

void PrintEnd(const std::string& title) {
  ::KvPrintDbgMsg("^^^^^ " + title + " ^^^^^");
}

void PrintField(const std::string& name, int value) {
  std::array<char, 16> text;
  std::snprintf(text.data(), text.size(), "%d", value);
  ::KvPrintDbgMsg(name + " " + text.data());
}

void PrintField(const std::string& name, double value) {
  std::array<char, 32> text;
  std::snprintf(text.data(), text.size(), "%lg", value);
  ::KvPrintDbgMsg(name + " " + text.data());
}

void PrintPoint(double x, double y) {
  // Sign, the digits of the largest double, a point of up to four bytes, six digits; twice.
  constexpr std::size_t kLongest = 2 * (1 + DBL_MAX_10_EXP + 1 + 4 + 6) + 2;
  std::array<char, kLongest> text;
  std::snprintf(text.data(), text.size(), "%20lf %20lf", x, y);
  ::KvPrintDbgMsg(text.data());
}

}  // namespace SatCommonUtils
