#include "host/raster/AreaReader.h"

#include <algorithm>
#include <utility>

#include "host/HostError.h"

namespace ravelin {
namespace {

constexpr long kRowsPerBlock = 256;
constexpr long kMaxBlockBytes = 64L << 20;
constexpr long kMaxRowBytes = 256L << 20;
// What has been read is not read again soon: files are told so after this much of it.
constexpr std::size_t kPurgeBytes = std::size_t{32} << 20;

}  // namespace

AreaReader::AreaReader(SatCommonUtils::TBasePushbroomDibData& raster, unsigned long level,
                       const PixelArea& area, std::string name)
    : raster_(raster),
      level_(level),
      area_(area),
      name_(std::move(name)),
      levelHeight_(static_cast<long>(raster.GetScaleDimensions(level)[1])) {
  const long pixelBytes = Channels() * static_cast<long>(sizeof(std::uint16_t));
  if (area.width > kMaxRowBytes / pixelBytes) {
    throw HostError(name_,
                    "a row of " + std::to_string(area.width) + " pixels and " +
                        std::to_string(Channels()) + " bands is longer than " +
                        std::to_string(kMaxRowBytes) + " bytes",
                    "give a narrower --rect");
  }
  const long rowBytes = area.width * pixelBytes;
  blockRows_ = std::min({kRowsPerBlock, std::max(1L, kMaxBlockBytes / rowBytes), area.height});
}

void AreaReader::ReadBlocks(const BlockUser& use, TKvProgressHandler* progress) {
  block_.resize(static_cast<std::size_t>(blockRows_ * area_.width * Channels()));
  for (long top = 0; top < area_.height; top += blockRows_) {
    const long rows = std::min(blockRows_, area_.height - top);
    ReadRows(top, rows);
    PurgeSometimes(rows);
    use(block_.data(), rows);
    rowsRead_ += static_cast<unsigned long>(rows);
    if (progress != nullptr) progress->Step(rowsRead_);
  }
}

// Rasters give the bottom row first: the output begins at the block's last row and goes up.
void AreaReader::ReadRows(long top, long rows) {
  const long rowSamples = area_.width * Channels();
  const TKvDibDataOutBuffer out = {
      reinterpret_cast<unsigned char*>(block_.data() + (rows - 1) * rowSamples),
      -rowSamples * static_cast<long>(sizeof(std::uint16_t))};
  const long bottom = levelHeight_ - (area_.y + top + rows);
  const TKvDibRect rect = raster_.RectI2Rect(level_, {area_.x, bottom, area_.width, rows});
  if (raster_.GetRect(out, rect, iqNearest, 0, nullptr) != kvDibWritten) {
    throw HostError(name_,
                    "rows " + std::to_string(area_.y + top) + " to " +
                        std::to_string(area_.y + top + rows - 1) + " could not be read",
                    "check the files, or give a narrower --rect when memory is short");
  }
}

void AreaReader::PurgeSometimes(long rows) {
  unpurgedBytes_ += static_cast<std::size_t>(rows * area_.width * Channels()) * sizeof(block_[0]);
  if (unpurgedBytes_ < kPurgeBytes) return;
  raster_.PurgeCache();
  unpurgedBytes_ = 0;
}

}  // namespace ravelin
