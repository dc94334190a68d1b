#include "host/scene/SceneOptions.h"

namespace ravelin {

BandChoice ParseBandChoice(std::string_view text) {
  const BandArgument band = ParseBandArgument(text);
  const bool ordered = text.ends_with(":big") || text.ends_with(":little");
  return {band.key, band.file, ordered ? std::optional(band.order) : std::nullopt};
}

std::optional<BytesOrder> ParseOrderName(std::string_view text) {
  for (const BytesOrder order : {BytesOrder::boBigEndian, BytesOrder::boLittleEndian}) {
    if (text == OrderName(order)) return order;
  }
  return std::nullopt;
}

std::string OrderName(BytesOrder order) {
  return order == BytesOrder::boBigEndian ? "big" : "little";
}

}  // namespace ravelin
