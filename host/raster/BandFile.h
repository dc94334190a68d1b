// A raw band file as a raster that reports its failures.
#pragma once

#include <string>

#include "Kv/VarA.h"
#include "SatCommonUtils/Raster.h"
#include "host/raster/BandArgument.h"
#include "host/raster/PixelArea.h"

namespace ravelin {

/// How a band file is laid out: `offset` bytes that are skipped, then rows of 16-bit samples, top
/// row first, without padding.
struct BandLayout {
  ImageSize size;
  unsigned long offset = 0;
  BytesOrder order = SatCommonUtils::TRawWordDibData::boLittleEndian;
  bool allowShort = false;  ///< take a file that ends early; what is missing is black
  std::string remedy;       ///< what to do about a file of another size
  std::string shortRemedy;  ///< and about one that is too short
};

/// The bytes that a file of this layout has. Throws HostError naming `file` when that is no number
/// that a file size can be.
unsigned long BandFileBytes(const std::string& file, const BandLayout& layout);

/// A band whose failed reads are a HostError naming the file, thrown out of GetRect: a compositor
/// would take a band that wrote nothing for one that did.
class BandFile : public SatCommonUtils::TRawWordDibData {
 public:
  /// Opens the file. Throws HostError when it cannot be opened, is longer than the layout says, or
  /// is shorter and that is not allowed.
  BandFile(const std::string& path, const BandLayout& layout);

  /// Bytes that the file is short of its layout; 0 unless that is allowed.
  unsigned long MissingBytes() const { return missing_; }

  using TRawWordDibData::GetRect;
  int GetRect(const TKvDibDataOutBuffer& out, const TKvDibRect& rect,
              const TInterpolationQuality& quality, int param,
              TKvProgressHandler* progress) override;

 private:
  void CheckSize(const BandLayout& layout);
  var_a_legacy::var_a<TKvStream*> OpenPixels(const BandLayout& layout) const;

  std::string path_;
  unsigned long missing_ = 0;
};

}  // namespace ravelin
