#include "xml/XmlEncoding.h"

#include <algorithm>
#include <cstddef>

#include "Kv/Stream.h"
#include "Kv/Text.h"
#include "text/Utf8.h"
#include "text/Windows1252.h"

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

unsigned char ByteAt(std::string_view text, std::size_t i) {
  return static_cast<unsigned char>(text[i]);
}

bool StartsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

class Utf16Text {
 public:
  Utf16Text(std::string_view bytes, bool bigEndian) : bytes_(bytes), bigEndian_(bigEndian) {}

  std::string ToUtf8() const {
    std::string text;
    text.reserve(bytes_.size() / 2);
    std::size_t i = 0;
    while (i + 1 < bytes_.size()) i += AppendCharacter(i, &text);
    if (i < bytes_.size()) kv::AppendUtf8(&text, kReplacement);
    return text;
  }

 private:
  static constexpr char32_t kReplacement = 0xFFFD;

  static bool IsHigh(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
  static bool IsLow(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

  char32_t UnitAt(std::size_t i) const {
    const char32_t first = ByteAt(bytes_, i);
    const char32_t second = ByteAt(bytes_, i + 1);
    return bigEndian_ ? (first << 8U) | second : (second << 8U) | first;
  }

  // Returns the bytes used.
  std::size_t AppendCharacter(std::size_t i, std::string* text) const {
    const char32_t unit = UnitAt(i);
    if (IsHigh(unit) && i + 3 < bytes_.size() && IsLow(UnitAt(i + 2))) {
      kv::AppendUtf8(text, 0x10000 + ((unit - 0xD800) << 10U) + (UnitAt(i + 2) - 0xDC00));
      return 4;
    }
    kv::AppendUtf8(text, IsHigh(unit) || IsLow(unit) ? kReplacement : unit);
    return 2;
  }

  std::string_view bytes_;
  bool bigEndian_;
};

// The name in the declaration's encoding="...", in lower case; empty when there is none.
std::string DeclaredEncoding(std::string_view text) {
  if (!StartsWith(text, "<?xml")) return {};
  constexpr std::size_t kLongest = 1024;
  const std::string_view declaration = text.substr(0, std::min(text.find("?>"), kLongest));
  constexpr std::string_view kKey = "encoding";
  const std::size_t key = declaration.find(kKey);
  if (key == std::string_view::npos) return {};
  const std::size_t open = declaration.find_first_of("\"'", key + kKey.size());
  if (open == std::string_view::npos) return {};
  const std::size_t close = declaration.find(declaration[open], open + 1);
  if (close == std::string_view::npos) return {};
  return tolower(std::string(declaration.substr(open + 1, close - open - 1)));
}

template <class CodePointOf>
std::string FromSingleBytes(std::string_view bytes, CodePointOf codePointOf) {
  std::string text;
  text.reserve(bytes.size());
  for (const char c : bytes) kv::AppendUtf8(&text, codePointOf(static_cast<unsigned char>(c)));
  return text;
}

bool IsAscii(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string_view FromDeclaredEncoding(std::string_view bytes, std::string* converted) {
  const std::string encoding = DeclaredEncoding(bytes);
  if (encoding.empty() || encoding == "utf-8" || encoding == "utf8" || IsAscii(bytes)) return bytes;
  if (encoding == "iso-8859-1" || encoding == "latin1") {
    *converted = FromSingleBytes(bytes, [](unsigned char byte) { return char32_t{byte}; });
  } else if (encoding == "windows-1252") {
    *converted = FromSingleBytes(bytes, kv::Windows1252CodePoint);
  } else {
    throw TKvError("XML: the encoding " + encoding + " is not supported");
  }
  return *converted;
}

}  // namespace

namespace kv {

std::string_view XmlAsUtf8(std::string_view bytes, std::string* converted) {
  using std::literals::operator""sv;
  const auto fromUtf16 = [&](std::size_t mark, bool bigEndian) -> std::string_view {
    *converted = Utf16Text(bytes.substr(mark), bigEndian).ToUtf8();
    return *converted;
  };
  if (StartsWith(bytes, kUtf8Mark)) return bytes.substr(kUtf8Mark.size());
  if (StartsWith(bytes, "\xFE\xFF"sv)) return fromUtf16(2, true);
  if (StartsWith(bytes, "\xFF\xFE"sv)) return fromUtf16(2, false);
  if (StartsWith(bytes, "\0<\0?"sv)) return fromUtf16(0, true);
  if (StartsWith(bytes, "<\0?\0"sv)) return fromUtf16(0, false);
  return FromDeclaredEncoding(bytes, converted);
}

}  // namespace kv
