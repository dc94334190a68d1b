#include "xini/Base64.h"

#include <array>
#include <cstddef>

namespace {

constexpr std::string_view kDigits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr unsigned char kNoDigit = 64;

constexpr std::array<unsigned char, 256> ValuesOfDigits() {
  std::array<unsigned char, 256> values{};
  values.fill(kNoDigit);
  for (std::size_t i = 0; i < kDigits.size(); ++i) {
    values[static_cast<unsigned char>(kDigits[i])] = static_cast<unsigned char>(i);
  }
  return values;
}

constexpr std::array<unsigned char, 256> kValues = ValuesOfDigits();

bool IsSpace(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

}  // namespace

namespace kv {

std::string EncodeBase64(std::string_view bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::string_view group = bytes.substr(i, 3);
    unsigned bits = 0;
    for (std::size_t k = 0; k < 3; ++k) {
      bits = (bits << 8U) | (k < group.size() ? static_cast<unsigned char>(group[k]) : 0U);
    }
    for (std::size_t k = 0; k < 4; ++k) {
      text += k <= group.size() ? kDigits[(bits >> (18 - 6 * k)) & 63U] : '=';
    }
  }
  return text;
}

bool DecodeBase64(std::string_view text, std::string* bytes) {
  bytes->clear();
  bytes->reserve(text.size() / 4 * 3);
  unsigned bits = 0;
  unsigned digits = 0;
  unsigned padding = 0;
  for (const char c : text) {
    if (IsSpace(c)) continue;
    if (c == '=') {
      ++padding;
      continue;
    }
    const unsigned value = kValues[static_cast<unsigned char>(c)];
    if (value == kNoDigit || padding != 0) return false;
    bits = ((bits << 6U) | value) & 0xFFFU;
    digits = (digits + 1) % 4;
    if (digits != 1)
      *bytes += static_cast<char>((bits >> (digits == 0 ? 0U : 8U - 2 * digits)) & 0xFFU);
  }
  const unsigned unused = digits == 2 ? bits & 0xFU : digits == 3 ? bits & 0x3U : 0U;
  return digits != 1 && padding == (4 - digits) % 4 && unused == 0;
}

}  // namespace kv
