// Numbers as text, the same in every locale.
#pragma once

#include <array>
#include <string_view>

namespace kv {

/// A number's text: "%d" of an int; "%.17g" with a dot of a double, "inf", "-inf" and "nan".
class NumberText {
 public:
  explicit NumberText(int value);
  explicit NumberText(double value);

  std::string_view View() const { return {text_.data(), size_}; }

 private:
  std::array<char, 32> text_;
  std::size_t size_;
};

/// Whether the whole text is a number that its type can hold, which is then stored. A leading '+'
/// is taken.
bool ParseNumber(std::string_view text, int* value);
bool ParseNumber(std::string_view text, double* value);
/// The same for a text that ends with a NUL; quick where it has a few digits and nothing else.
bool ParseNumber(const char* text, int* value);

}  // namespace kv
