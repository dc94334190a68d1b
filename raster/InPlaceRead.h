// How the compositors get a band's pixels: through a buffer, or, from the module's own raw bands,
// in place, where the band has read them. What is read, and what a failure gives, is the same.
#pragma once

#include "SatCommonUtils/Raster.h"

namespace SatCommonUtils {

/// What a host asked a raster for.
struct TBandRequest {
  const TKvDibRect& rect;
  const TInterpolationQuality& quality;
  int param;
  TKvProgressHandler* progress;
};

/// Rows of pixels from the bottom one, `step` bytes from a row to the next one up.
struct TPixelRows {
  const unsigned char* bottom;
  long step;
};

/// Whether nobody can see the band's read buffer between its being sized for a block and its
/// reading: it is one of the module's raw readers, nothing derived from them, in its usual state
/// (one kind, one sample of 2 bytes a pixel), on one of the framework's own streams. Such a reader
/// need not find the block zeroed; it zeroes the rows that it cannot read.
bool ClearsWhatItLeavesUnread(const TBasePushbroomDibData& band);

/// Whether the band answers the request by reading exactly `pixels` of which `part` lies inside it,
/// and no code of others runs meanwhile, which might use the band's read buffer again while it is
/// still needed: ClearsWhatItLeavesUnread is true of the band.
bool CanReadInPlace(TBasePushbroomDibData& band, const TBandRequest& request,
                    const TKvDibRectI& pixels, const TKvDibRectI& part);

/// Gets a band's pixels; the result is that of its GetRect. With `part`, which must satisfy
/// CanReadInPlace, `*rows` shows them in the band's read buffer, until its next request, unless the
/// read fails. Else they go to `buffer` and `*rows` stays as it is.
int ReadBand(TBasePushbroomDibData& band, const TBandRequest& request, const TKvDibRectI* part,
             const TKvDibDataOutBuffer& buffer, TPixelRows* rows);

/// The most bytes a pixel that the band's GetRect writes. More than its channels say where a host
/// has changed them, or has set up a raster anew inside an envelope.
long WrittenBytesPerPixel(const TBasePushbroomDibData& band);

}  // namespace SatCommonUtils
