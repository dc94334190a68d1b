#include "host/raster/BandArgument.h"

#include <stdexcept>

#include "Kv/Text.h"
#include "host/ParseNumber.h"

namespace ravelin {
namespace {

constexpr std::string_view kBig = ":big";
constexpr std::string_view kLittle = ":little";

std::string_view OrderSuffix(std::string_view name) {
  for (const std::string_view suffix : {kBig, kLittle}) {
    if (name.ends_with(suffix)) return suffix;
  }
  return {};
}

}  // namespace

int ParseBandKey(std::string_view text) {
  const std::string name = tolower(std::string(text));
  if (name == "red") return kRedKey;
  if (name == "green") return kGreenKey;
  if (name == "blue") return kBlueKey;
  const std::optional<int> key = ParseNumber<int>(text);
  if (!key) {
    throw std::invalid_argument("'" + std::string(text) +
                                "' is no band key: give red, green, blue or a whole number");
  }
  return *key;
}

BytesOrder ParseBytesOrder(std::string_view suffix) {
  if (suffix.empty() || suffix == kLittle) return SatCommonUtils::TRawWordDibData::boLittleEndian;
  if (suffix == kBig) return SatCommonUtils::TRawWordDibData::boBigEndian;
  throw std::invalid_argument("'" + std::string(suffix) +
                              "' is no byte order: give :big or :little");
}

BandArgument ParseBandArgument(std::string_view text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos) {
    throw std::invalid_argument("'" + std::string(text) + "' is not of the form KEY=FILE");
  }
  const std::string_view name = text.substr(equals + 1);
  const std::string_view suffix = OrderSuffix(name);
  const std::string_view file = name.substr(0, name.size() - suffix.size());
  if (file.empty()) {
    throw std::invalid_argument("'" + std::string(text) + "' names no file: give KEY=FILE");
  }
  return {ParseBandKey(text.substr(0, equals)), std::string(file), ParseBytesOrder(suffix)};
}

std::string BandName(int key) {
  switch (key) {
    case kRedKey:
      return "Red";
    case kGreenKey:
      return "Green";
    case kBlueKey:
      return "Blue";
    default:
      return "Band " + std::to_string(key);
  }
}

}  // namespace ravelin
