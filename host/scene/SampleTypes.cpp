#include "host/scene/SampleTypes.h"

#include <array>
#include <utility>

#include "Kv/Text.h"

namespace ravelin {
namespace {

// Planetary Data System Standards Reference, "Data Type Definitions": a name without a machine is
// that of the most significant byte first.
constexpr std::array<std::pair<const char*, BytesOrder>, 7> kTypes = {{
    {"MSB_UNSIGNED_INTEGER", BytesOrder::boBigEndian},
    {"UNSIGNED_INTEGER", BytesOrder::boBigEndian},
    {"SUN_UNSIGNED_INTEGER", BytesOrder::boBigEndian},
    {"MAC_UNSIGNED_INTEGER", BytesOrder::boBigEndian},
    {"LSB_UNSIGNED_INTEGER", BytesOrder::boLittleEndian},
    {"PC_UNSIGNED_INTEGER", BytesOrder::boLittleEndian},
    {"VAX_UNSIGNED_INTEGER", BytesOrder::boLittleEndian},
}};

}  // namespace

std::optional<BytesOrder> OrderOfSampleType(const std::string& sampleType) {
  const std::string upper = toupper(sampleType);
  for (const auto& [name, order] : kTypes) {
    if (upper == name) return order;
  }
  return std::nullopt;
}

}  // namespace ravelin
