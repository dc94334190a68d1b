#include <algorithm>
#include <array>

#include "bench/raster/FileMap.h"
#include "bench/raster/FusedKernel.h"
#include "bench/raster/Reader.h"
#include "raster/PixelKernels.h"
#include "raster/WideInterleave.h"

namespace RavelinBench {
namespace {

using SatCommonUtils::Kernels;
using SatCommonUtils::kMaxKernelChannels;

constexpr int kMostChannels = 16;

/// Without the fused kernel: samples of a channel that are exchanged before they are interleaved;
/// those of all channels stay in the nearest cache.
constexpr long kPiece = 2048;
/// Rows of a window that are fetched ahead; in longer ones the processor foresees the next bytes.
constexpr long kRowsAhead = 2;
constexpr long kLongestFetched = 16384;

/// A file's pixels.
class TMappedBand {
 public:
  explicit TMappedBand(const TRawFile& file)
      : map_(file.path), rowBytes_(2 * file.width), height_(file.height) {}

  /// The sample of column x in the given row from the top.
  const unsigned char* At(long x, long row) const { return map_.Bytes() + row * rowBytes_ + 2 * x; }

  /// Fetches the samples that come some rows after these, which are read from the bottom.
  void FetchAhead(long x, long row, long width) const {
    if (row < kRowsAhead || 2 * width > kLongestFetched) return;
    const unsigned char* begin = At(x, row - kRowsAhead);
    for (long i = 0; i < 2 * width; i += 64) __builtin_prefetch(begin + i);
  }

  long Height() const { return height_; }

 private:
  TFileMap map_;
  long rowBytes_;
  long height_;
};

std::vector<std::unique_ptr<TMappedBand>> MapAll(const TDataSet& set) {
  std::vector<std::unique_ptr<TMappedBand>> bands;
  for (const TRawFile& file : set.files) bands.push_back(std::make_unique<TMappedBand>(file));
  return bands;
}

void CopyRows(const TMappedBand& band, long x, long bottomRow, long width, long height,
              unsigned char* out, long stride) {
  for (long i = 0; i < height; ++i, out += stride) {
    band.FetchAhead(x, bottomRow - i, width);
    Kernels().copySwapped(out, band.At(x, bottomRow - i), static_cast<std::size_t>(width));
  }
}

class TBandsFloor : public TReader {
 public:
  explicit TBandsFloor(const TDataSet& set) : bands_(MapAll(set)) {}

  void Read(const TWindow& window, unsigned char* out) override {
    const long bottomRow = bands_[0]->Height() - 1 - window.y;
    const auto pixelBytes = 2 * static_cast<long>(bands_.size());
    if (bands_.size() == 1) {
      return CopyRows(*bands_[0], window.x, bottomRow, window.width, window.height, out,
                      2 * window.width);
    }
    for (long i = 0; i < window.height; ++i, out += window.width * pixelBytes) {
      for (const auto& band : bands_) band->FetchAhead(window.x, bottomRow - i, window.width);
      if (fused_ && window.width >= kLeastFused) {
        WriteFused(out, window.x, bottomRow - i, window.width);
        continue;
      }
      for (long x = 0; x < window.width; x += kPiece) {
        const long count = std::min(kPiece, window.width - x);
        WritePiece(out + x * pixelBytes, window.x + x, bottomRow - i, count);
      }
    }
  }

 private:
  void WriteFused(unsigned char* out, long x, long row, long count) const {
    std::array<const unsigned char*, kMaxKernelChannels> rows{};
    for (std::size_t k = 0; k < bands_.size(); ++k) rows[k] = bands_[k]->At(x, row);
    InterleaveSwapped(out, rows.data(), static_cast<int>(bands_.size()),
                      static_cast<std::size_t>(count));
  }

  void WritePiece(unsigned char* out, long x, long row, long count) {
    const auto samples = static_cast<std::size_t>(count);
    std::array<const unsigned char*, kMostChannels> pieces{};
    for (std::size_t k = 0; k < bands_.size(); ++k) {
      Kernels().copySwapped(swapped_[k].data(), bands_[k]->At(x, row), samples);
      pieces[k] = swapped_[k].data();
    }
    if (bands_.size() > kMaxKernelChannels) {
      SatCommonUtils::InterleaveWide(out, pieces.data(), bands_.size(), samples);
    } else {
      Kernels().interleave(out, pieces.data(), static_cast<int>(bands_.size()), samples);
    }
  }

  std::vector<std::unique_ptr<TMappedBand>> bands_;
  bool fused_ = SatCommonUtils::Avx2Kernels() != nullptr && bands_.size() <= kMaxKernelChannels;
  alignas(64) std::array<std::array<unsigned char, 2 * kPiece>, kMostChannels> swapped_{};
};

class TMosaicFloor : public TReader {
 public:
  explicit TMosaicFloor(const TDataSet& set)
      : tiles_(MapAll(set)),
        across_(set.tilesAcross),
        side_(set.files[0].width),
        height_(set.height) {}

  void Read(const TWindow& window, unsigned char* out) override {
    const long top = height_ - window.y - window.height;
    for (long row = top / side_; row <= (top + window.height - 1) / side_; ++row) {
      for (long column = window.x / side_; column <= (window.x + window.width - 1) / side_;
           ++column) {
        CopyTile(window, top, row, column, out);
      }
    }
  }

 private:
  void CopyTile(const TWindow& window, long windowTop, long tileRow, long tileColumn,
                unsigned char* out) const {
    const long left = std::max(window.x, tileColumn * side_);
    const long right = std::min(window.x + window.width, (tileColumn + 1) * side_);
    const long top = std::max(windowTop, tileRow * side_);
    const long bottom = std::min(windowTop + window.height, (tileRow + 1) * side_);
    const long stride = 2 * window.width;
    unsigned char* to = out + (windowTop + window.height - bottom) * stride + 2 * (left - window.x);
    const auto tile = static_cast<std::size_t>(tileRow * across_ + tileColumn);
    CopyRows(*tiles_[tile], left - tileColumn * side_, bottom - 1 - tileRow * side_, right - left,
             bottom - top, to, stride);
  }

  std::vector<std::unique_ptr<TMappedBand>> tiles_;
  long across_;
  long side_;
  long height_;
};

}  // namespace

std::unique_ptr<TReader> MakeFloorReader(const TDataSet& set) {
  if (set.IsMosaic()) return std::make_unique<TMosaicFloor>(set);
  return std::make_unique<TBandsFloor>(set);
}

}  // namespace RavelinBench
