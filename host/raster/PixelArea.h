// Sizes and areas of images, as people give them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ravelin {

/// Largest width and height that the program takes: what a PNG can have.
constexpr long kMaxSide = 2147483647;

struct ImageSize {
  long width;
  long height;
};

/// An area of an image in pixels: x from the left, y from the top.
struct PixelArea {
  long x;
  long y;
  long width;
  long height;
};

/// "WxH", both from 1 to kMaxSide.
std::optional<ImageSize> ParseSize(std::string_view text);

/// "X,Y,W,H"; X and Y from 0, W and H from 1, all up to kMaxSide.
std::optional<PixelArea> ParseArea(std::string_view text);

/// Whether the whole area lies in an image of `size`.
bool Inside(const PixelArea& area, const ImageSize& size);

/// "W x H".
std::string ToText(const ImageSize& size);

}  // namespace ravelin
