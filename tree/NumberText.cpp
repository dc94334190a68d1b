#include "tree/NumberText.h"

#include <locale.h>

#include <charconv>
#include <cstdio>

namespace SatCommonUtils {
namespace {

/// This thread's locale is C while it lives.
class TClassicLocale {
 public:
  TClassicLocale() : classic_(newlocale(LC_ALL_MASK, "C", nullptr)), former_(uselocale(classic_)) {}
  TClassicLocale(const TClassicLocale&) = delete;
  TClassicLocale& operator=(const TClassicLocale&) = delete;
  ~TClassicLocale() {
    uselocale(former_);
    if (classic_ != nullptr) freelocale(classic_);
  }

 private:
  locale_t classic_;
  locale_t former_;
};

}  // namespace

std::string NumberToText(int number) {
  return std::to_string(number);
}

std::string NumberToText(double number) {
  constexpr int kDigits = 16;
  char text[kDigits + 16];
  const std::to_chars_result result =
      std::to_chars(text, text + sizeof text, number, std::chars_format::general, kDigits);
  return {text, result.ptr};
}

// What this scan makes of a text is what callers rely on. NOLINTBEGIN(cert-err34-c)
bool TextToNumber(const std::string& text, int* number) {
  return std::sscanf(text.c_str(), "%d", number) == 1;
}

bool TextToNumber(const std::string& text, double* number) {
  const TClassicLocale locale;
  return std::sscanf(text.c_str(), "%lf", number) == 1;
}
// NOLINTEND(cert-err34-c)

}  // namespace SatCommonUtils
