#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "SatCommonUtils/Raster.h"
#include "raster/ChannelKinds.h"
#include "raster/PixelKernels.h"
#include "raster/RequestMath.h"

namespace SatCommonUtils {
namespace {

/// A row as it is in the file becomes a row of samples. Pixels of more than one sample give their
/// first one.
template <class T>
void CopyRow(T* to, const T* row, long pixels, unsigned long bytesPerPixel, bool swapBytes) {
  const auto count = static_cast<std::size_t>(pixels);
  if (bytesPerPixel != sizeof(T)) {
    const auto* from = reinterpret_cast<const unsigned char*>(row);
    const std::size_t bytes = std::min(bytesPerPixel, sizeof(T));
    for (std::size_t i = 0; i < count; ++i, from += bytesPerPixel) {
      std::memcpy(to + i, from, bytes);
    }
    if (swapBytes) Kernels().copySwapped(to, to, count);
  } else if (swapBytes) {
    Kernels().copySwapped(to, row, count);
  } else {
    std::memcpy(to, row, count * sizeof(T));
  }
}

/// Where the rows of a block lie in the file.
struct TRowOffsets {
  unsigned long first;
  unsigned long step;
};

/// Empty when the block lies before the file's beginning or beyond any offset.
std::optional<TRowOffsets> OffsetsInFile(const long* pos, const long* size, long width,
                                         unsigned long bytesPerPixel) {
  long lastRow;
  if (pos[1] < 0 || __builtin_add_overflow(pos[1], size[1], &lastRow)) return std::nullopt;
  const std::optional<long> step = SizeProduct(width, bytesPerPixel);
  const std::optional<long> end = SizeProduct(lastRow, width, bytesPerPixel);
  const std::optional<long> left = SizeProduct(pos[0], bytesPerPixel);
  long beyond;
  if (!step || !end || !left || __builtin_add_overflow(*end, *left, &beyond)) return std::nullopt;
  return TRowOffsets{static_cast<unsigned long>(pos[1] * *step + *left),
                     static_cast<unsigned long>(*step)};
}

}  // namespace

template <class T>
TRawDibData<T>::TRawDibData() = default;

template <class T>
TRawDibData<T>::~TRawDibData() {
  Clear();
}

template <class T>
// The interface takes the reference by value. NOLINTNEXTLINE(performance-unnecessary-value-param)
bool TRawDibData<T>::Setup(var_a_legacy::var_a<TKvStream*> stream, unsigned long width,
                           unsigned long height) {
  Clear();
  if (width == 0 || height == 0 || !stream) return false;
  this->stream = std::move(stream);
  this->width = static_cast<long>(width);
  this->height = static_cast<long>(height);
  this->bandsCount = 1;
  this->channels.sampleType = 1;
  this->channels.sampleSize = 2;
  std::vector<int>& kinds = this->channels.kinds;
  const std::size_t kindsBefore = kinds.size();
  try {
    // The list of kinds is not emptied: every successful setup appends one more, and callers rely
    // on it.
    kinds.push_back(kSingleBand);
    this->FillDefaultLevelBounds({width, height}, 1);
  } catch (const std::bad_alloc&) {
    kinds.resize(kindsBefore);
    Clear();
    return false;
  }
  return true;
}

template <class T>
void TRawDibData<T>::Clear() {
  stream.reset();
  this->width = 0;
  this->height = 0;
  this->bandsCount = 0;
  FreeRowCache();
}

template <class T>
void TRawDibData<T>::FreeRowCache() {
  delete[] rowCache;
  rowCache = nullptr;
  rowCacheSize = 0;
}

template <class T>
bool TRawDibData<T>::ReadData(long* pos, long* size) {
  return ReadRows(pos, size, false);
}

template <class T>
bool TRawDibData<T>::GrowRowCache(unsigned long rowBytes) {
  if (rowCacheSize >= rowBytes) return true;
  FreeRowCache();
  try {
    rowCache = new T[rowBytes / sizeof(T) + (rowBytes % sizeof(T) != 0 ? 1 : 0)];
  } catch (const std::bad_alloc&) {
    return false;
  }
  rowCacheSize = rowBytes;
  return true;
}

template <class T>
bool TRawDibData<T>::ReadRows(const long* pos, const long* size, bool swapBytes) {
  long rows = 0;
  if (TryReadRows(pos, size, swapBytes, &rows)) return true;
  // The caller finds the rows read so far as they are in the file, and zeros behind them.
  const std::optional<long> samples = SizeProduct(size[0], size[1]);
  if (!samples || *samples == 0 || *samples > this->readBufferSize) return false;
  T* const block = this->readBuffer;
  const auto read = static_cast<std::size_t>(rows * size[0]);
  if (swapBytes) Kernels().copySwapped(block, block, read);
  std::memset(block + read, 0, (static_cast<std::size_t>(*samples) - read) * sizeof(T));
  return false;
}

template <class T>
bool TRawDibData<T>::TryReadRows(const long* pos, const long* size, bool swapBytes, long* rows) {
  const unsigned long kinds = this->channels.kinds.size();
  const std::optional<long> bytesPerPixel = SizeProduct(kinds, this->channels.sampleSize);
  const std::optional<long> rowBytes =
      bytesPerPixel ? SizeProduct(size[0], *bytesPerPixel) : std::nullopt;
  if (!rowBytes) FreeRowCache();  // as for one that cannot be allocated
  if (!rowBytes || !GrowRowCache(static_cast<unsigned long>(*rowBytes))) return false;
  if (size[1] < 1) return true;

  const auto pixelBytes = static_cast<unsigned long>(*bytesPerPixel);
  const std::optional<long> samples = SizeProduct(size[0], size[1]);
  const std::optional<TRowOffsets> offsets = OffsetsInFile(pos, size, this->width, pixelBytes);
  if (!samples || *samples > this->readBufferSize || !offsets || !stream) return false;

  T* to = this->readBuffer;
  const auto bytes = static_cast<unsigned long>(*rowBytes);
  unsigned long offset = offsets->first;
  try {
    for (; *rows < size[1]; ++*rows, offset += offsets->step, to += size[0]) {
      if (!stream->SetPos(offset) || stream->Read(rowCache, bytes) < bytes) return false;
      if (bytes > 0) CopyRow(to, rowCache, size[0], pixelBytes, swapBytes);
    }
  } catch (...) {  // whatever the stream throws is a failed read
    return false;
  }
  return true;
}

template <class T>
void TRawDibData<T>::PurgeCache() {
  if (!stream) return;
  try {
    stream->Purge();
  } catch (...) {  // nothing was promised but an attempt
  }
}

template class TRawDibData<unsigned short>;

TRawWordDibData::TRawWordDibData() = default;
TRawWordDibData::~TRawWordDibData() = default;

bool TRawWordDibData::Setup(var_a_legacy::var_a<TKvStream*> stream, unsigned long width,
                            unsigned long height, TBytesOrder order) {
  bytesOrder = order;
  return TRawDibData<unsigned short>::Setup(std::move(stream), width, height);
}

bool TRawWordDibData::ReadData(long* pos, long* size) {
  return ReadRows(pos, size, bytesOrder == boBigEndian);
}

}  // namespace SatCommonUtils
