// Numbers of a string tree as text, in the C locale whatever the program's locale is.
#pragma once

#include <string>

namespace SatCommonUtils {

/// "%d" and "%.16lg".
std::string NumberToText(int number);
std::string NumberToText(double number);

/// The number at the beginning of a text, as "%d" and "%lf" scan it; false, and `*number` stays,
/// when there is none.
bool TextToNumber(const std::string& text, int* number);
bool TextToNumber(const std::string& text, double* number);

}  // namespace SatCommonUtils
