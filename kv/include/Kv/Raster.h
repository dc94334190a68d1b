/// @file
/// Rasters: requests, channel descriptions, the abstract base classes and an in-memory raster.
///
/// Pixel coordinates are those of full resolution, x from the left, y from the bottom. Output
/// buffers hold rows from the bottom, channels interleaved within a pixel; strides are in bytes.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Kv/Export.h"
#include "Kv/Vec.h"

class TKvProgressHandler;

/// A rectangle of full-resolution pixels. `scale` is the number of full-resolution pixels to one
/// pixel asked for, along each axis: 1 is full resolution, 2 half. A request may start left of the
/// raster or below it. A negative, infinite or NaN size, an infinite or NaN position, and a scale
/// that is not a positive finite number make an empty request, {0, 0, 0, 0} of level 0.
struct TKvDibRect {
  vec_t_<double, 2> pos;   ///< the lower left corner, {x, y}
  vec_t_<double, 2> size;  ///< {width, height}
  double scale;            ///< full-resolution pixels to one asked for
};

/// A rectangle of the pixels of one level; level L halves full resolution L times.
struct TKvDibRectI {
  long x;  ///< first column, from the left
  long y;  ///< first row, from the bottom
  long w;  ///< columns
  long h;  ///< rows
};

/// The caller's pixels: the first byte, and the bytes from a row to the next one up.
struct TKvDibDataOutBuffer {
  unsigned char* data;  ///< the lower left pixel's first byte; the caller's
  long stride;          ///< bytes from a row to the next one up
};

/// How a host wants pixels between samples; handed on to the raster that is asked.
enum TInterpolationQuality : int {
  iqNearest = 0,   ///< the nearest sample
  iqBilinear = 1,  ///< the weighted mean of the four around it
};

/// Results of GetRect. Bit 2: no failure; bit 1: pixels were written.
enum TKvDibResult : int {
  kvDibNothing = 2,  ///< no failure, and no pixel was written
  kvDibWritten = 3,  ///< pixels were written
};

/// What the samples of a pixel are: a sample-type code, bytes per sample, and one kind code per
/// channel in channel order.
struct TKvDibChannels {
  int sampleType;            ///< the host's code of the type of the samples
  unsigned long sampleSize;  ///< bytes per sample
  std::vector<int> kinds;    ///< a kind code per channel, in channel order
};

/// 1 "Gray", 3 "Blue", 4 "Green", 6 "Red", 32 "Other", else "Kind N".
KV_EXPORT std::string ChannelKindToText(int kind);

/// Abstract raster. The order of the virtual operations is part of the binary interface.
///
/// Threads: calls on one raster must not overlap unless its class says otherwise.
class KV_EXPORT TKvDibData {
 public:
  virtual ~TKvDibData();
  /// The whole raster at full resolution; all zero when it is empty.
  virtual TKvDibRect Bounds() const = 0;
  /// Bounds() with the scale of `rect` in place of its own.
  virtual TKvDibRect BoundsEx(const TKvDibRect& rect) const;
  /// What the samples of a pixel are; the raster owns the description.
  virtual const TKvDibChannels& Channels() const = 0;
  /// The largest L with 2^L not above the scale, 0 for a scale below 1; never cut to the levels
  /// that the raster has. `*exact` (may be null) tells whether the scale is 2^L; it is false where
  /// the scale, the position or the size makes an empty request.
  virtual unsigned long GetInterpolationLevel(const TKvDibRect& rect,
                                              const TInterpolationQuality& quality,
                                              bool* exact) const = 0;
  /// Writes the pixels of `rect` that lie inside the raster into `out`, whose first pixel is the
  /// request's lower left one. Returns 3 when pixels were written, 2 when none; a result without
  /// bit 2 is a failure.
  virtual int GetRect(const TKvDibDataOutBuffer& out, const TKvDibRect& rect,
                      const TInterpolationQuality& quality, int param,
                      TKvProgressHandler* progress) = 0;
  /// Sets `size` pixels to zero, rows `out.stride` apart, downwards when it is negative. Nothing
  /// when `out.data` is null. Throws std::length_error for a size that no buffer can have.
  virtual void FillDefaultColor(const TKvDibDataOutBuffer& out,
                                const vec_t_<unsigned long, 2>& size);
  /// Drops what the raster holds only for speed.
  virtual void PurgeCache() = 0;
  /// Replaces what `levels` holds by the bounds of every level (null: only counts); returns their
  /// number.
  virtual unsigned long GetAllLevels(std::vector<TKvDibRect>* levels) const = 0;
  /// Width and height at a level; {0, 0} for an empty raster or a level that is not there.
  virtual vec_t_<unsigned long, 2> GetScaleDimensions(unsigned long level) const = 0;
  /// Empty unless overridden.
  virtual std::string GetImageName() const;
};

/// Adds levels to a raster, level L halving the pixels L times.
class KV_EXPORT TKvMultiScaleDibData : public TKvDibData {
 public:
  TKvMultiScaleDibData();
  ~TKvMultiScaleDibData() override;

  TKvDibRect Bounds() const override;
  unsigned long GetInterpolationLevel(const TKvDibRect& rect, const TInterpolationQuality& quality,
                                      bool* exact) const override;
  /// Rect2RectI, then the level form. Throws std::logic_error when the level is not there.
  int GetRect(const TKvDibDataOutBuffer& out, const TKvDibRect& rect,
              const TInterpolationQuality& quality, int param,
              TKvProgressHandler* progress) override;
  unsigned long GetAllLevels(std::vector<TKvDibRect>* levels) const override;
  /// Each side is ((side - 1) >> level) + 1.
  vec_t_<unsigned long, 2> GetScaleDimensions(unsigned long level) const override;

  /// Returns the level of GetInterpolationLevel and stores the smallest rectangle of that level
  /// that covers the request: each edge divided by 2^level, a quotient within 1e-6 of a whole
  /// number being that number, a size of 0 giving 0. With `clip` it is cut to the level's size, {0,
  /// 0, 0, 0} when nothing is left. `param` is the host's own tag and ignored here. Edges saturate
  /// at +-2^52.
  virtual unsigned long Rect2RectI(const TKvDibRect& rect, const TInterpolationQuality& quality,
                                   int param, TKvDibRectI* rectI, bool clip);
  /// The inverse; the scale is 2^level.
  virtual TKvDibRect RectI2Rect(unsigned long level, const TKvDibRectI& rectI);
  /// No levels.
  virtual void ResetLevelBounds();
  /// `levels` levels, every one with position 0 and the full-resolution size, level L with scale
  /// 2^L. Throws std::length_error or std::bad_alloc when there are too many, and keeps the former
  /// ones.
  virtual void FillDefaultLevelBounds(vec_t_<unsigned long, 2> size, unsigned long levels);
  /// Pixels of one level. Returns 2 here, and anywhere for a level that is not there.
  virtual int GetRect(unsigned long level, const TKvDibRectI& rect, const TKvDibDataOutBuffer& out);

 protected:
  /// What GetAllLevels lists. A deriving class may fill it with anything: a size that is not a
  /// number or below 1 counts as 0, one beyond the integers as the largest.
  std::vector<TKvDibRect> levelBounds;
};

/// A raster in memory, filled by its owner. Samples of 1, 2, 4 and 8 bytes are unsigned integers in
/// the machine's byte order; of any other size, bytes without a meaning.
///
///     TKvMemoryDibData raster(640, 480, {0, 1, {6, 4, 3}}, 3);
///     std::memcpy(raster.Pixels(), rgb, 640 * 480 * 3);
///     raster.BuildLevels();
///
/// Ownership: the raster owns its pixels, which stay at their address while it lives; copies are
/// deep. Refilling or resetting the level bounds changes what is listed, never the pixels.
/// Threads: several may read one raster while none writes to it.
class KV_EXPORT TKvMemoryDibData : public TKvMultiScaleDibData {
 public:
  /// Zero pixels at every level. Throws std::length_error when the size overflows, std::bad_alloc
  /// when memory is short. A side, a sample size or a number of channels of 0 makes a raster
  /// without pixels.
  TKvMemoryDibData(unsigned long width, unsigned long height, const TKvDibChannels& channels,
                   unsigned long levels);
  /// Pixels of its own, the same.
  TKvMemoryDibData(const TKvMemoryDibData& other) = default;
  /// The same; when memory is short, it throws std::bad_alloc and stays as it was.
  TKvMemoryDibData& operator=(const TKvMemoryDibData& other) {
    // Member by member, a failing allocation would leave sizes that are not those of the pixels.
    TKvMemoryDibData copy(other);
    levelBounds.swap(copy.levelBounds);
    std::swap(channels_, copy.channels_);
    std::swap(pixelSize_, copy.pixelSize_);
    levels_.swap(copy.levels_);
    return *this;
  }
  ~TKvMemoryDibData() override;

  /// Level 0: rows from the bottom, pixels interleaved, no padding. Null for an empty raster.
  unsigned char* Pixels();
  /// Fills the other levels: each pixel the mean, halves rounded up, of the up to 2 x 2 pixels of
  /// the level below that it covers, channel by channel. Samples that are not of 1, 2, 4 or 8 bytes
  /// are those of the lower left of these pixels. Linear in the pixels of level 0.
  void BuildLevels();

  const TKvDibChannels& Channels() const override;
  void PurgeCache() override;
  using TKvMultiScaleDibData::GetRect;
  /// Copies only what lies inside: pixel (x, y) of the level goes to out.data + (y - rect.y) *
  /// stride + (x - rect.x) * bytes of a pixel. Returns 3 when a pixel was written, 2 otherwise,
  /// also when `out.data` is null or the place lies farther from it than any buffer reaches.
  int GetRect(unsigned long level, const TKvDibRectI& rect,
              const TKvDibDataOutBuffer& out) override;

 private:
  struct Level {
    vec_t_<unsigned long, 2> size;
    std::vector<unsigned char> pixels;
  };

  void BuildLevel(const Level& below, Level& level) const;

  TKvDibChannels channels_;
  unsigned long pixelSize_;
  std::vector<Level> levels_;
};
