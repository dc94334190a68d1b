#include <string>
#include <utility>

#include "SatCommonUtils/Text.h"
#include "SatCommonUtils/Tree.h"
#include "tree/EscapedText.h"

namespace SatCommonUtils {

std::size_t TStringTreeField::ValueToString(std::size_t i, char* buffer,
                                            std::size_t position) const {
  if (i >= count) return 0;
  return Encode(values[i].data(), values[i].size(), buffer, position);
}

std::string TStringTreeField::ValueToString(std::size_t i) const {
  return i < count ? values[i] : std::string();
}

bool TStringTreeField::StringToValue(const char* text, std::size_t length, std::size_t i) {
  if (i >= count) return false;
  // The text may lie in the value that it is for.
  std::string value;
  DecodeTo(text, length, &value);
  values[i] = std::move(value);
  return true;
}

bool TStringTreeField::StringToValue(const std::string& text, std::size_t i) {
  if (i >= count) return false;
  values[i] = text;
  return true;
}

}  // namespace SatCommonUtils
