#include "Kv/Text.h"
#include "SatCommonUtils/Metadata.h"

namespace SatCommonUtils {

bool WriteNotEmptyString(TKvXIniWriter* writer, std::string name, std::string value) {
  const std::string trimmed = trim(std::move(value));
  return trimmed.empty() || writer->WriteS(name, trimmed);
}

bool WriteNonZeroInt(TKvXIniWriter* writer, std::string name, int value) {
  return value == 0 || writer->WriteS(name, value);
}

bool WritePositiveInt(TKvXIniWriter* writer, std::string name, int value) {
  return value < 1 || writer->WriteS(name, value);
}

bool WriteNonNegativeInt(TKvXIniWriter* writer, std::string name, int value) {
  return value < 0 || writer->WriteS(name, value);
}

bool WriteNonZeroDouble(TKvXIniWriter* writer, std::string name, double value) {
  return value == 0.0 || writer->WriteS(name, value);
}

}  // namespace SatCommonUtils
