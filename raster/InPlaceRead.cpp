#include "raster/InPlaceRead.h"

#include <algorithm>
#include <typeinfo>

#include "raster/RequestMath.h"

namespace SatCommonUtils {
namespace {

constexpr long kSampleBytes = sizeof(unsigned short);

bool IsOwnStream(const TKvStream* stream) {
  return stream != nullptr &&
         (typeid(*stream) == typeid(TKvFileStream) || typeid(*stream) == typeid(TKvMemoryStream));
}

bool ReadInPlace(TBasePushbroomDibData& band, const TKvDibRectI& part, TPixelRows* rows) {
  long pos[2] = {part.x, band.height - part.y - part.h};
  long size[2] = {part.w, part.h};
  if (!band.AllocReadData(pos, size)) return false;
  const unsigned short* lastRow = band.GetReadBuffer() + (part.h - 1) * part.w;
  rows->bottom = reinterpret_cast<const unsigned char*>(lastRow);
  rows->step = -part.w * kSampleBytes;
  return true;
}

}  // namespace

bool ClearsWhatItLeavesUnread(const TBasePushbroomDibData& band) {
  const std::type_info& type = typeid(band);
  if (type != typeid(TRawWordDibData) && type != typeid(TRawDibData<unsigned short>)) return false;
  const auto& reader = static_cast<const TRawDibData<unsigned short>&>(band);
  return IsOwnStream(reader.stream.get()) && band.bandsCount == 1 &&
         band.channels.kinds.size() == 1 && band.channels.sampleSize == kSampleBytes;
}

bool CanReadInPlace(TBasePushbroomDibData& band, const TBandRequest& request,
                    const TKvDibRectI& pixels, const TKvDibRectI& part) {
  if (!ClearsWhatItLeavesUnread(band)) return false;
  TKvDibRectI own;
  const unsigned long level =
      band.Rect2RectI(request.rect, request.quality, request.param, &own, false);
  if (level != 0 || !SameRect(own, pixels)) return false;
  const std::optional<TInnerPart> inside = CutToRaster(own, band.width, band.height);
  return inside && SameRect(inside->rect, part);
}

int ReadBand(TBasePushbroomDibData& band, const TBandRequest& request, const TKvDibRectI* part,
             const TKvDibDataOutBuffer& buffer, TPixelRows* rows) {
  if (part == nullptr) {
    return band.GetRect(buffer, request.rect, request.quality, request.param, request.progress);
  }
  return ReadInPlace(band, *part, rows) ? kvDibWritten : kvDibNothing;
}

long WrittenBytesPerPixel(const TBasePushbroomDibData& band) {
  long most = BytesPerPixel(band.channels);
  const TKvDibData* raster = &band;
  while (const auto* envelope = dynamic_cast<const TPushbroomDibDataEnvelope*>(raster)) {
    raster = envelope->data.get();
    if (raster == nullptr) return most;
    most = std::max(most, BytesPerPixel(raster->Channels()));
  }
  if (const auto* reader = dynamic_cast<const TPushbroomDibData<unsigned short>*>(raster)) {
    most = std::max(most, SizeProduct(reader->bandsCount, kSampleBytes).value_or(0));
  }
  return most;
}

}  // namespace SatCommonUtils
