#include <cstring>
#include <new>
#include <stdexcept>

#include "SatCommonUtils/Raster.h"
#include "raster/InPlaceRead.h"
#include "raster/RequestMath.h"

namespace SatCommonUtils {

template <class T>
TPushbroomDibData<T>::TPushbroomDibData() = default;

template <class T>
TPushbroomDibData<T>::~TPushbroomDibData() {
  delete[] readBuffer;
}

template <class T>
bool TPushbroomDibData<T>::AllocReadData(long* pos, long* size) {
  const bool none = size[0] < 1 || size[1] < 1 || bandsCount < 1;
  const std::optional<long> samples = none ? 0 : SizeProduct(size[0], size[1], bandsCount);
  if (!samples || *samples > readBufferSize) {
    delete[] readBuffer;
    readBuffer = nullptr;
    readBufferSize = 0;
    if (!samples) return false;
    try {
      readBuffer = new T[static_cast<std::size_t>(*samples)];
    } catch (const std::bad_alloc&) {
      return false;
    }
    readBufferSize = *samples;
  }
  if (*samples > 0 && !ClearsWhatItLeavesUnread(*this)) {
    std::memset(readBuffer, 0, static_cast<std::size_t>(*samples) * sizeof(T));
  }
  return ReadData(pos, size);
}

template <class T>
unsigned short* TPushbroomDibData<T>::GetReadBuffer() const {
  static_assert(sizeof(T) == sizeof(unsigned short));
  return readBuffer;
}

template <class T>
int TPushbroomDibData<T>::GetRect(const TKvDibDataOutBuffer& out, const TKvDibRect& rect,
                                  const TInterpolationQuality& quality, int param,
                                  TKvProgressHandler* /*progress*/) {
  TKvDibRectI request;
  if (Rect2RectI(rect, quality, param, &request, false) != 0) {
    throw std::logic_error("@TPushbroomDibData<T>::GetRect - Invalid scale");
  }
  const std::optional<TInnerPart> part = CutToRaster(request, width, height);
  if (!part) return kvDibNothing;

  const TKvDibRectI& inner = part->rect;
  long pos[2] = {inner.x, height - inner.y - inner.h};
  long size[2] = {inner.w, inner.h};
  if (!AllocReadData(pos, size)) return kvDibNothing;

  const std::optional<long> rowSamples = SizeProduct(inner.w, bandsCount);
  const std::optional<long> samples = SizeProduct(inner.w, inner.h, bandsCount);
  if (!rowSamples || !samples || *samples > readBufferSize) return kvDibNothing;
  constexpr long sampleBytes = sizeof(T);
  unsigned char* to = PixelAddress(out, part->skipX, part->skipY, sampleBytes * bandsCount);
  if (to == nullptr) return kvDibNothing;
  if (*rowSamples == 0) return kvDibWritten;
  const auto rowBytes = static_cast<std::size_t>(*rowSamples * sampleBytes);
  for (long row = 0; row < inner.h; ++row) {
    std::memcpy(to + row * out.stride, readBuffer + (inner.h - 1 - row) * *rowSamples, rowBytes);
  }
  return kvDibWritten;
}

template class TPushbroomDibData<unsigned short>;

}  // namespace SatCommonUtils
