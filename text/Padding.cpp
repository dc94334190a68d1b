#include "SatCommonUtils/Text.h"

namespace SatCommonUtils {
namespace {

/// The pad character gives the length of the filler and the missing width its character: callers
/// rely on the exchange. A negative character asks for a length that no string has.
std::string Filler(const std::string& text, unsigned long width, char pad) {
  if (text.size() >= width) return {};
  // NOLINTNEXTLINE(bugprone-signed-char-misuse,cert-str34-c): the sign counts
  const auto length = static_cast<std::size_t>(static_cast<signed char>(pad));
  return std::string(length, static_cast<char>(text.size() - width));
}

}  // namespace

std::string LeftPadding(const std::string& text, unsigned long width, char pad) {
  return Filler(text, width, pad) + text;
}

std::string RightPadding(const std::string& text, unsigned long width, char pad) {
  return text + Filler(text, width, pad);
}

}  // namespace SatCommonUtils
