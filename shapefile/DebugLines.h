// The lines that headers are printed in.
#pragma once

#include <string>

namespace SatCommonUtils {

/// The lines before and behind what is printed under a title.
void PrintTitle(const std::string& title);
void PrintEnd(const std::string& title);

/// "name value", the value as printf writes %d and %lg.
void PrintField(const std::string& name, int value);
void PrintField(const std::string& name, double value);

/// "x y", each as printf writes %20lf.
void PrintPoint(double x, double y);

}  // namespace SatCommonUtils
