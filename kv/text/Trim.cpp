#include "Kv/Text.h"

std::string trim(std::string text) {
  constexpr const char* kSpace = " \t\r\n\v\f";
  text.erase(text.find_last_not_of(kSpace) + 1);
  text.erase(0, text.find_first_not_of(kSpace));
  return text;
}
