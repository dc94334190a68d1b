#include <cstring>
#include <new>
#include <stdexcept>

#include "SatCommonUtils/Raster.h"
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
  const std::optional<long> needed = SizeProduct(size[0], size[1], bandsCount);
  if (!needed) return false;
  const auto count = static_cast<std::size_t>(*needed);
  if (*needed > readBufferSize) {
    delete[] readBuffer;
    readBuffer = nullptr;
    readBufferSize = 0;
    try {
      readBuffer = new T[count];
    } catch (const std::bad_alloc&) {
      return false;
    }
    readBufferSize = *needed;
  }
  if (count > 0) std::memset(readBuffer, 0, count * sizeof(T));
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

  long pos[2] = {part->rect.x, height - part->rect.y - part->rect.h};
  long size[2] = {part->rect.w, part->rect.h};
  if (!AllocReadData(pos, size)) return kvDibNothing;

  const std::optional<long> rowSamples = SizeProduct(size[0], bandsCount);
  const std::optional<long> samples = SizeProduct(size[0], size[1], bandsCount);
  if (!rowSamples || !samples || *samples > readBufferSize) return kvDibNothing;
  constexpr long sampleBytes = sizeof(T);
  unsigned char* to = PixelAddress(out, part->skipX, part->skipY, sampleBytes * bandsCount);
  if (to == nullptr) return kvDibNothing;
  const auto rowBytes = static_cast<std::size_t>(*rowSamples * sampleBytes);
  for (long row = size[1] - 1; row >= 0; --row, to += out.stride) {
    std::memcpy(to, readBuffer + row * *rowSamples, rowBytes);
  }
  return kvDibWritten;
}

template class TPushbroomDibData<unsigned short>;

}  // namespace SatCommonUtils
