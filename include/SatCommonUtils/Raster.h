/// @file
/// Rasters of pushbroom scanners: raw 16-bit bands, an envelope around any framework raster, the
/// compositor of separate bands and the raster stitched from super tiles.
///
/// Requests and output buffers count rows from the bottom (Kv/Raster.h); files and read buffers
/// hold the top row first. Samples are unsigned 16-bit in the machine's byte order once they are
/// read. Pixels outside a raster are left as they are in the output, except by the super-tiled
/// raster, which blanks the whole request first. GetRect returns 3 when pixels were written and 2
/// when none were.
///
/// Threads: a raster's buffers, and those of the rasters that it holds, serve all its calls; calls
/// on one raster must not overlap.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "Kv/Raster.h"
#include "Kv/Stream.h"
#include "Kv/VarA.h"
#include "SatCommonUtils/Export.h"

namespace SatCommonUtils {

/// @{
/// Reverses the bytes of the value in place; a double is treated as a 64-bit pattern.
RAVELIN_EXPORT void EndianSwap(unsigned short* value);
RAVELIN_EXPORT void EndianSwap(unsigned int* value);
RAVELIN_EXPORT void EndianSwap(double* value);
/// @}

/// The bands of the first, second and third visible channel, counted from 0; negative: no band.
struct TVisibleBandsOrder {
  long first;   ///< shown as red
  long second;  ///< shown as green
  long third;   ///< shown as blue
};

/// What all band rasters share: size, number of bands, channel description and a hook that reads a
/// block of pixels. Empty after construction; a subclass's setup fills it.
class RAVELIN_EXPORT TBasePushbroomDibData : public TKvMultiScaleDibData {
 public:
  TKvDibChannels channels;  ///< what Channels() returns
  long width = 0;           ///< pixels a row at full resolution
  long height = 0;          ///< rows at full resolution
  long bandsCount = 0;      ///< bands
  bool bandFlag = false;    ///< the host's own
  std::string bandName;     ///< the host's own

  TBasePushbroomDibData();
  TBasePushbroomDibData(const TBasePushbroomDibData&) = delete;
  TBasePushbroomDibData& operator=(const TBasePushbroomDibData&) = delete;
  ~TBasePushbroomDibData() override;

  const TKvDibChannels& Channels() const override;
  void PurgeCache() override = 0;

  /// Reads the block at `pos` = {x, y from the top} of `size` = {w, h} pixels into the raster's
  /// read buffer. False here: there is none.
  virtual bool AllocReadData(long* pos, long* size);
  /// The samples read last, top row first, rows packed; null here. Owned by the raster, valid until
  /// its next request.
  virtual unsigned short* GetReadBuffer() const;

  /// Gives every band the kind of the visible channel that shows it (6, 4, 3 for the first, second
  /// and third; the first match wins) and 32 to the rest. False, and nothing changes, when `order`
  /// is null, the raster has no band or one, or all three are negative.
  bool SetVisibleBandsOrder(const TVisibleBandsOrder* order);
  /// Replaces the channel kinds; false, and nothing changes, unless there is one for every band.
  bool SetChannelsBands(const std::vector<int>& kinds);
  /// Prints the channel kinds to the debug sink, a line each between two frame lines.
  void DebugOutputChannels() const;
};

/// A band raster with a read buffer of samples of type T and the rectangle reading that all
/// file-backed bands share. The module offers it for unsigned short.
template <class T>
class TPushbroomDibData : public TBasePushbroomDibData {
 public:
  TPushbroomDibData();
  ~TPushbroomDibData() override;

  using TBasePushbroomDibData::GetRect;
  /// Reads the part of the request inside the band and copies it into `out`, bottom row first.
  /// Returns 2, the output untouched, when nothing of the request is inside, the read buffer cannot
  /// be allocated or the read fails. Throws std::logic_error "@TPushbroomDibData<T>::GetRect -
  /// Invalid scale" for a level other than 0.
  int GetRect(const TKvDibDataOutBuffer& out, const TKvDibRect& rect,
              const TInterpolationQuality& quality, int param,
              TKvProgressHandler* progress) override;
  /// Grows the read buffer to the block, zeroes the block and calls ReadData. False when the buffer
  /// cannot be allocated or the read fails.
  bool AllocReadData(long* pos, long* size) override;
  /// The read buffer; null before the first read.
  unsigned short* GetReadBuffer() const override;
  /// Fills the read buffer, sized and zeroed for the block; arguments as for AllocReadData.
  virtual bool ReadData(long* pos, long* size) = 0;

 protected:
  T* readBuffer = nullptr;  ///< owned, made by new T[readBufferSize]
  long readBufferSize = 0;  ///< elements
};

/// A headerless file of samples of type T, one band: `height` rows of `width` samples, top row
/// first, no padding.
template <class T>
class TRawDibData : public TPushbroomDibData<T> {
 public:
  var_a_legacy::var_a<TKvStream*> stream;  ///< the band file; empty when not set up

  TRawDibData();
  ~TRawDibData() override;

  /// Takes the band's file and size in pixels. False, and the reader is empty, when the width or
  /// height is 0 or the reference is empty. A reader is set up once in its life: each successful
  /// setup appends one more channel kind, which callers rely on, and the reads after a second one
  /// no longer match the file. The file's size is not looked at.
  bool Setup(var_a_legacy::var_a<TKvStream*> stream, unsigned long width, unsigned long height);

  /// One positioned read a row, of exactly the requested width. False when the row cache cannot be
  /// allocated, the stream throws, cannot be positioned or reads short: the rows read before stay
  /// in the read buffer, the rest is zero.
  bool ReadData(long* pos, long* size) override;
  /// Lets the stream drop what it buffers.
  void PurgeCache() override;

 protected:
  T* rowCache = nullptr;           ///< one row as read; owned
  unsigned long rowCacheSize = 0;  ///< bytes

 private:
  friend class TRawWordDibData;

  void Clear();
  bool GrowRowCache(unsigned long rowBytes);
  void FreeRowCache();
  bool ReadRows(const long* pos, const long* size, bool swapBytes);
  bool TryReadRows(const long* pos, const long* size, bool swapBytes, long* rows);
};

extern template class RAVELIN_EXPORT TPushbroomDibData<unsigned short>;
extern template class RAVELIN_EXPORT TRawDibData<unsigned short>;

/// A raw band of 16-bit samples with a declared byte order.
///
///     var_a_legacy::var_a<TKvStream*> file(new TKvFileStream(path, kvOpenRead, kvShareAll));
///     TRawWordDibData band;
///     band.Setup(file, 8192, 8192, TRawWordDibData::boBigEndian);
class RAVELIN_EXPORT TRawWordDibData : public TRawDibData<unsigned short> {
 public:
  /// The byte order of the samples in the file.
  enum TBytesOrder : int {
    boLittleEndian = 0,  ///< samples are used as read
    boBigEndian = 1,     ///< the two bytes of every sample are exchanged
  };

  TBytesOrder bytesOrder = boLittleEndian;  ///< that of the file

  TRawWordDibData();
  ~TRawWordDibData() override;

  /// Keeps `order`, also when it then fails, and sets up as TRawDibData does.
  bool Setup(var_a_legacy::var_a<TKvStream*> stream, unsigned long width, unsigned long height,
             TBytesOrder order);
  /// As TRawDibData, then in the machine's order; after a failed read the samples read stay as they
  /// are in the file.
  bool ReadData(long* pos, long* size) override;
};

/// Any framework raster as a band. Size, channels and levels are copied once, at construction;
/// pixel requests and cache purges are forwarded, results and exceptions pass unchanged.
class RAVELIN_EXPORT TPushbroomDibDataEnvelope : public TBasePushbroomDibData {
 public:
  var_a_legacy::var_a<TKvDibData*> data;  ///< the wrapped raster, kept alive

  /// `data` must not be empty; `name` and `flag` go to bandName and bandFlag.
  TPushbroomDibDataEnvelope(var_a_legacy::var_a<TKvDibData*> data, std::string name, bool flag);
  ~TPushbroomDibDataEnvelope() override;

  using TBasePushbroomDibData::GetRect;
  int GetRect(const TKvDibDataOutBuffer& out, const TKvDibRect& rect,
              const TInterpolationQuality& quality, int param,
              TKvProgressHandler* progress) override;
  void PurgeCache() override;
};

/// An output buffer that owns its bytes: they are freed with array delete at destruction.
struct TKvDibDataOutBufferAutoRelease : TKvDibDataOutBuffer {
  TKvDibDataOutBufferAutoRelease() : TKvDibDataOutBuffer{nullptr, 0} {}
  TKvDibDataOutBufferAutoRelease(const TKvDibDataOutBufferAutoRelease&) = delete;
  TKvDibDataOutBufferAutoRelease& operator=(const TKvDibDataOutBufferAutoRelease&) = delete;
  ~TKvDibDataOutBufferAutoRelease() { delete[] data; }
};

/// Separately stored bands of one size as one raster of many channels, interleaved by pixel. Shares
/// the band rasters.
class RAVELIN_EXPORT TSeparateBandsDibData : public TBasePushbroomDibData {
 public:
  /// The bands by channel-kind code.
  std::map<int, var_a_legacy::var_a<TBasePushbroomDibData*>> bands;
  /// The key of the band that fills each output channel.
  std::map<unsigned int, int> channelBands;

  TSeparateBandsDibData();
  ~TSeparateBandsDibData() override;

  /// Releases all bands; empty afterwards.
  void Reset();
  /// Takes the bands, which must agree in width, height and sample size. Channels are the bands 6,
  /// 4 and 3 first when all three are there and the others in ascending order behind them, else all
  /// in ascending order. False, and the compositor is empty, when `bands` is empty or they differ.
  bool Setup(const std::map<int, var_a_legacy::var_a<TBasePushbroomDibData*>>& bands);

  using TBasePushbroomDibData::GetRect;
  /// Asks every band once for the whole rectangle and interleaves what they give. Returns 2, the
  /// output untouched, when nothing of the request is inside, memory is short or a band fails.
  /// Throws std::logic_error "@TSeparateBandsDibData::GetRectMS - Invalid scale" for a level other
  /// than 0; exceptions of a band pass.
  int GetRect(const TKvDibDataOutBuffer& out, const TKvDibRect& rect,
              const TInterpolationQuality& quality, int param,
              TKvProgressHandler* progress) override;
  /// Purges every band, in key order.
  void PurgeCache() override;

 private:
  bool Take(const std::map<int, var_a_legacy::var_a<TBasePushbroomDibData*>>& bands);
};

/// One super tile. Full-resolution pixels, columns from the left and rows from the top of the
/// stitched raster, `right` and `bottom` inclusive.
struct TSuperTileData {
  long left;     ///< first column
  long top;      ///< first row
  long right;    ///< last column
  long bottom;   ///< last row
  long srcLeft;  ///< column in the tile's own raster where the tile's content starts
  long srcTop;   ///< row from the top in the tile's own raster where it starts
  var_a_legacy::var_a<TBasePushbroomDibData*> raster;  ///< the tile's own, shared
  std::string fileName;                                ///< carried for the host
};

/// Width and height of the tiles' common extent. False, both 0, for an empty set and for an extent
/// one pixel wide or high, which is refused on purpose.
RAVELIN_EXPORT bool GetStitchedRasterDimensions(const std::vector<TSuperTileData>& tiles,
                                                unsigned long* width, unsigned long* height);
/// The tiles' common number of bands and bytes per sample: the first that is not 0, which every
/// later tile must have. False when they differ or one stays 0. Every tile's raster must be set.
RAVELIN_EXPORT bool GetStitchedRasterRadiometry(const std::vector<TSuperTileData>& tiles,
                                                unsigned long* bands, unsigned long* sampleSize);
/// Whether every tile has a sane place and a raster of exactly its size, and all have the same
/// radiometry. Coverage and overlaps are not checked. False for an empty set.
RAVELIN_EXPORT bool CheckSuperTilesDataset(const std::vector<TSuperTileData>& tiles);
/// Appends every tile's file name to `names`; returns how many names it then holds.
RAVELIN_EXPORT unsigned long GetSuperTilesFileNames(const std::vector<TSuperTileData>& tiles,
                                                    std::vector<std::string>* names);

/// A raster stitched from super tiles, with as many levels as every tile has. Shares the tiles'
/// rasters.
class RAVELIN_EXPORT TSuperTiledDibDataEnvelope : public TBasePushbroomDibData {
 public:
  std::vector<TSuperTileData> tiles;  ///< in drawing order

  TSuperTiledDibDataEnvelope();
  ~TSuperTiledDibDataEnvelope() override;

  /// Releases all tiles; empty afterwards.
  void Reset();
  /// Takes the tiles. One band gets the kind 1; more get their kinds by `order`, or, when that is
  /// refused, the channel description of the first tile. False, and the raster is empty, when the
  /// dimensions or the radiometry are refused. Every tile's raster must be set.
  bool Setup(const std::vector<TSuperTileData>& tiles, const TVisibleBandsOrder* order);

  using TBasePushbroomDibData::GetRect;
  /// Blanks the request, then asks every tile that it touches for exactly its part and pastes it,
  /// later tiles over earlier ones. After a tile that fails no later one is drawn, and 2 is
  /// returned. Throws std::logic_error "@TPushbroomDibData<T>::GetRect - Invalid scale" for a level
  /// that the raster does not have; exceptions of a tile's raster pass.
  int GetRect(const TKvDibDataOutBuffer& out, const TKvDibRect& rect,
              const TInterpolationQuality& quality, int param,
              TKvProgressHandler* progress) override;
  /// Purges every tile's raster, in order.
  void PurgeCache() override;

  /// Grows the tile buffer to bytesPerPixel x size[0] x size[1] + 4 bytes and clears all of it.
  /// False when it cannot be allocated.
  bool AllocTileBuffer(long* size, unsigned long bytesPerPixel);
  /// Frees the tile buffer; the next request makes one anew.
  void FreeTileBuffer();

 protected:
  unsigned char* tileBuffer = nullptr;  ///< owned
  unsigned long tileBufferSize = 0;     ///< bytes

 private:
  struct TStitching;

  bool DrawTile(const TSuperTileData& tile, const TStitching& work);
  bool Take(const std::vector<TSuperTileData>& given, const TVisibleBandsOrder* order);
  bool GrowTileBuffer(long bytes);
  void ClearTileBuffer();
};

}  // namespace SatCommonUtils
