#include "host/raster/PixelArea.h"

#include "host/ParseNumber.h"

namespace ravelin {
namespace {

std::optional<long> ParseSide(std::string_view text, long smallest) {
  const std::optional<long> side = ParseNumber<long>(text);
  if (!side || *side < smallest || *side > kMaxSide) return std::nullopt;
  return side;
}

// What stands before the first separator, which is taken off `rest` together with it.
std::string_view TakeField(std::string_view& rest, char separator) {
  const std::size_t end = rest.find(separator);
  const std::string_view field = rest.substr(0, end);
  rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
  return field;
}

}  // namespace

std::optional<ImageSize> ParseSize(std::string_view text) {
  const std::string_view first = TakeField(text, 'x');
  const std::optional<long> width = ParseSide(first, 1);
  const std::optional<long> height = ParseSide(text, 1);
  if (!width || !height) return std::nullopt;
  return ImageSize{*width, *height};
}

std::optional<PixelArea> ParseArea(std::string_view text) {
  const std::optional<long> x = ParseSide(TakeField(text, ','), 0);
  const std::optional<long> y = ParseSide(TakeField(text, ','), 0);
  const std::optional<long> width = ParseSide(TakeField(text, ','), 1);
  const std::optional<long> height = ParseSide(text, 1);
  if (!x || !y || !width || !height) return std::nullopt;
  return PixelArea{*x, *y, *width, *height};
}

bool Inside(const PixelArea& area, const ImageSize& size) {
  return area.x >= 0 && area.y >= 0 && area.x < size.width && area.y < size.height &&
         area.width <= size.width - area.x && area.height <= size.height - area.y;
}

std::string ToText(const ImageSize& size) {
  return std::to_string(size.width) + " x " + std::to_string(size.height);
}

}  // namespace ravelin
