#include <climits>
#include <cstring>
#include <stdexcept>

#include "Kv/Raster.h"
#include "raster/BufferMath.h"

TKvDibData::~TKvDibData() = default;

TKvDibRect TKvDibData::BoundsEx(const TKvDibRect& rect) const {
  TKvDibRect bounds = Bounds();
  bounds.scale = rect.scale;
  return bounds;
}

void TKvDibData::FillDefaultColor(const TKvDibDataOutBuffer& out,
                                  const vec_t_<unsigned long, 2>& size) {
  if (out.data == nullptr || size[0] == 0 || size[1] == 0) return;
  const TKvDibChannels& channels = Channels();
  const unsigned long pixel = kv::CheckedProduct(channels.sampleSize, channels.kinds.size());
  const unsigned long row = kv::CheckedProduct(size[0], pixel);
  if (row == 0) return;
  const unsigned long lastRow = size[1] - 1;
  long lastOffset = 0;
  if (row > LONG_MAX || lastRow > LONG_MAX ||
      !kv::OffsetInBuffer(static_cast<long>(lastRow), out.stride, static_cast<long>(row),
                          &lastOffset)) {
    throw std::length_error("Raster size overflows");
  }
  // With a stride of 0 every row is the same one.
  const long rows = out.stride == 0 ? 1 : static_cast<long>(size[1]);
  for (long y = 0; y < rows; ++y) std::memset(out.data + y * out.stride, 0, row);
}

std::string TKvDibData::GetImageName() const {
  return {};
}
