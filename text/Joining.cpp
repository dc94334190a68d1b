#include <utility>

#include "Kv/Text.h"
#include "SatCommonUtils/Text.h"

namespace SatCommonUtils {

std::string CombineStrings(std::string a, std::string b, std::string c, std::string d,
                           std::string e) {
  std::string result = trim(std::move(a));
  for (const std::string* next : {&b, &c, &d, &e}) {
    if (!next->empty()) result.append(1, ' ').append(*next);
  }
  return result;
}

bool SetIfNotEmpty(std::string* target, const std::string& value, bool trimFirst) {
  std::string result = trimFirst ? trim(value) : value;
  if (result.empty()) return false;
  *target = std::move(result);
  return true;
}

std::string GetNotEmptyDef(const std::string& value, const std::string& def, bool trimFirst) {
  std::string result = trimFirst ? trim(value) : value;
  return result.empty() ? def : result;
}

}  // namespace SatCommonUtils
