#include <array>
#include <cstdio>
#include <cstring>
#include <stdexcept>

#include "SatCommonUtils/Text.h"
#include "text/ScanNumber.h"

namespace SatCommonUtils {
namespace {

/// Blanks alone make the scan report the end of the text, which is not "no number": true, and the
/// value stays. Odd as that is, callers rely on it.
template <class T>
bool IsScanned(const std::string& text, const char* format, T* value) {
  return !text.empty() && ScanNumber(text.c_str(), format, value) != 0;
}

template <class T>
T ScannedOr(const std::string& text, const char* format, T def) {
  T value{};
  return IsScanned(text, format, &value) ? value : def;
}

template <class T>
T ScannedOrThrow(const std::string& text, const char* format, const char* message) {
  T value{};
  if (!IsScanned(text, format, &value)) throw std::runtime_error(message);
  return value;
}

/// Up to the first NUL, whatever the format gives behind it.
template <class T>
std::string Formatted(const char* format, T value) {
  std::array<char, 64> shortText;
  const int length = std::snprintf(shortText.data(), shortText.size(), format, value);
  if (length < 0) return {};
  const auto size = static_cast<std::size_t>(length);
  if (size < shortText.size()) return shortText.data();
  std::string longText(size, '\0');
  std::snprintf(longText.data(), size + 1, format, value);
  longText.resize(std::strlen(longText.c_str()));
  return longText;
}

}  // namespace

double StringToDoubleDef(const std::string& text, const double& def) {
  return ScannedOr(text, "%lf%n", def);
}

double StringToDoubleE(const std::string& text) {
  return ScannedOrThrow<double>(text, "%lf%n", "StringToDoubleE");
}

int StringToIntDef(const std::string& text, int def) {
  return ScannedOr(text, "%d%n", def);
}

int StringToIntE(const std::string& text) {
  return ScannedOrThrow<int>(text, "%d%n", "StringToIntE");
}

std::string ValueToString(const double& value) {
  return Formatted("%lg", value);
}

std::string ValueToString(const double& value, const char* format) {
  return Formatted(format, value);
}

std::string ValueToString(const float& value) {
  return Formatted("%g", static_cast<double>(value));
}

std::string ValueToString(const float& value, const char* format) {
  return Formatted(format, static_cast<double>(value));
}

std::string ValueToString(const unsigned int& value) {
  return Formatted("%u", value);
}

std::string ValueToString(const unsigned int& value, const char* format) {
  return Formatted(format, value);
}

bool ValueFromString(const std::string& text, double* value) {
  return ScanNumber(text.c_str(), "%lg%n", value) == 1;
}

bool ValueFromString(const std::string& text, float* value) {
  return ScanNumber(text.c_str(), "%g%n", value) == 1;
}

bool ValueFromString(const std::string& text, unsigned int* value) {
  return ScanNumber(text.c_str(), "%u%n", value) == 1;
}

}  // namespace SatCommonUtils
