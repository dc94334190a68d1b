#include "raster/InPlaceRead.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "raster/MockBand.h"
#include "raster/RasterTest.h"
#include "raster/RequestMath.h"
#include "raster/ScriptedStream.h"
#include "support/TempFolder.h"

namespace {

using raster_test::MockBand;
using raster_test::Output;
using raster_test::RasterTest;
using raster_test::Request;
using raster_test::ScriptedStream;
using SatCommonUtils::CanReadInPlace;
using SatCommonUtils::ClearsWhatItLeavesUnread;
using SatCommonUtils::CutToRaster;
using SatCommonUtils::ReadBand;
using SatCommonUtils::TBandRequest;
using SatCommonUtils::TBasePushbroomDibData;
using SatCommonUtils::TInnerPart;
using SatCommonUtils::TPixelRows;
using SatCommonUtils::TPushbroomDibDataEnvelope;
using SatCommonUtils::TRawDibData;
using SatCommonUtils::TRawWordDibData;
using SatCommonUtils::TSeparateBandsDibData;
using SatCommonUtils::TSuperTileData;
using SatCommonUtils::TSuperTiledDibDataEnvelope;
using SatCommonUtils::WrittenBytesPerPixel;
using ::testing::IsEmpty;
using BandReference = var_a_legacy::var_a<TBasePushbroomDibData*>;
using Bands = std::map<int, BandReference>;
using DataReference = var_a_legacy::var_a<TKvDibData*>;
using StreamReference = var_a_legacy::var_a<TKvStream*>;
using RawBand = TRawDibData<unsigned short>;

constexpr TInterpolationQuality kQuality = iqNearest;

/// The same behaviour, but as a host's own class, which the general way must serve.
class HostsWordBand : public TRawWordDibData {};
class HostsRawBand : public RawBand {};

/// Looks into a reader without being a class derived from it.
class Buffers : public RawBand {
 public:
  static std::vector<unsigned short> Samples(const TBasePushbroomDibData& band) {
    const auto& reader = static_cast<const RawBand&>(band);
    const unsigned short* const samples = reader.*&Buffers::readBuffer;
    return std::vector<unsigned short>(samples, samples + reader.*&Buffers::readBufferSize);
  }
  static unsigned long RowBytes(const TBasePushbroomDibData& band) {
    return static_cast<const RawBand&>(band).*&Buffers::rowCacheSize;
  }
};

std::string RandomBytes(std::mt19937& random, long count) {
  std::string bytes(static_cast<std::size_t>(count), '\0');
  for (char& b : bytes) b = static_cast<char>(random());
  return bytes;
}

StreamReference InMemory(std::string bytes) {
  return StreamReference(new TKvMemoryStream(std::move(bytes)));
}

// What may be read in place.

class InPlaceReadTest : public RasterTest {
 protected:
  InPlaceReadTest() { EXPECT_TRUE(band.Setup(InMemory(std::string(96, 'x')), 8, 6, kLittle)); }

  static constexpr auto kLittle = TRawWordDibData::boLittleEndian;

  static bool InPlace(TBasePushbroomDibData& asked, const TKvDibRect& rect,
                      const TKvDibRectI& pixels, const TKvDibRectI& part) {
    return CanReadInPlace(asked, {rect, kQuality, 0, nullptr}, pixels, part);
  }
  static bool InPlace(TBasePushbroomDibData& asked) {
    return InPlace(asked, Request(2, 1, 3, 4), {2, 1, 3, 4}, {2, 1, 3, 4});
  }

  TRawWordDibData band;
};

TEST_F(InPlaceReadTest, TheModulesOwnReadersOnTheFrameworksStreamsAreReadInPlace) {
  EXPECT_TRUE(InPlace(band));
  RawBand raw;
  ASSERT_TRUE(raw.Setup(InMemory(std::string(96, 'x')), 8, 6));
  EXPECT_TRUE(InPlace(raw));
  const TempFolder folder;
  const TKvPath path(folder.Write("band.raw", std::string(96, 'x')));
  band.stream = StreamReference(new TKvFileStream(path, kvOpenRead, kvShareAll));
  EXPECT_TRUE(InPlace(band));
}

TEST_F(InPlaceReadTest, AClassDerivedFromAReaderIsAskedThroughItsGetRect) {
  HostsWordBand word;
  HostsRawBand raw;
  ASSERT_TRUE(word.Setup(InMemory(std::string(96, 'x')), 8, 6, kLittle));
  ASSERT_TRUE(raw.Setup(InMemory(std::string(96, 'x')), 8, 6));
  EXPECT_FALSE(InPlace(word));
  EXPECT_FALSE(InPlace(raw));
  EXPECT_FALSE(ClearsWhatItLeavesUnread(word));
  EXPECT_FALSE(ClearsWhatItLeavesUnread(raw));
}

TEST_F(InPlaceReadTest, AStreamOfAHostsOwnIsNeverReadInPlace) {
  class HostsMemoryStream : public TKvMemoryStream {};
  band.stream = StreamReference(new HostsMemoryStream);
  EXPECT_FALSE(InPlace(band));
  band.stream = StreamReference(new ScriptedStream);
  EXPECT_FALSE(InPlace(band));
  band.stream.reset();
  EXPECT_FALSE(InPlace(band));
}

TEST_F(InPlaceReadTest, AnotherStateThanOneKindOfTwoBytesIsNotReadInPlace) {
  band.bandsCount = 2;
  EXPECT_FALSE(InPlace(band));
  band.bandsCount = 1;
  band.channels.kinds = {1, 1};
  EXPECT_FALSE(InPlace(band));
  band.channels.kinds.clear();
  EXPECT_FALSE(InPlace(band));
  band.channels.kinds = {77};
  EXPECT_TRUE(InPlace(band));
  band.channels.sampleSize = 1;
  EXPECT_FALSE(InPlace(band));
}

TEST_F(InPlaceReadTest, OnlyTheRectangleThatTheBandItselfWouldReadIsReadInPlace) {
  const TKvDibRectI part = {2, 1, 3, 4};
  EXPECT_FALSE(InPlace(band, Request(2, 1, 6, 8, 2), {1, 0, 3, 5}, part));
  EXPECT_FALSE(InPlace(band, Request(2, 1, 3, 4), {2, 1, 3, 3}, part));
  EXPECT_FALSE(InPlace(band, Request(2, 1, 3, 4), part, {2, 1, 3, 3}));
  EXPECT_TRUE(InPlace(band, Request(-1, -1, 4, 4), {-1, -1, 4, 4}, {0, 0, 3, 3}));
  EXPECT_FALSE(InPlace(band, Request(8, 1, 3, 4), {8, 1, 3, 4}, {8, 1, 3, 4}));
}

TEST_F(InPlaceReadTest, RowsReadInPlaceAreThoseOfTheReadBufferFromTheBottom) {
  std::mt19937 random(1);
  const std::string file = RandomBytes(random, 96);
  band.stream = InMemory(file);
  const TKvDibRect rect = Request(2, 1, 3, 4);
  const TKvDibRectI part = {2, 1, 3, 4};
  TPixelRows rows{nullptr, 0};
  EXPECT_EQ(ReadBand(band, {rect, kQuality, 0, nullptr}, &part, {nullptr, 0}, &rows), 3);
  ASSERT_EQ(rows.step, -6);
  for (long row = 0; row < 4; ++row) {
    const auto start = static_cast<std::size_t>((6 - 1 - (1 + row)) * 16 + 4);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(rows.bottom + row * rows.step), 6),
              file.substr(start, 6));
  }
}

TEST_F(InPlaceReadTest, AFailedReadInPlaceGivesTwoAndLeavesTheRowsAsTheyWere) {
  band.stream = InMemory(std::string(20, 'x'));
  const TKvDibRect rect = Request(0, 0, 8, 6);
  const TKvDibRectI part = {0, 0, 8, 6};
  const unsigned char byte = 0;
  TPixelRows rows{&byte, 5};
  EXPECT_EQ(ReadBand(band, {rect, kQuality, 0, nullptr}, &part, {nullptr, 0}, &rows), 2);
  EXPECT_EQ(rows.bottom, &byte);
  EXPECT_EQ(rows.step, 5);
}

TEST_F(InPlaceReadTest, ARowCacheThatCannotBeAllocatedLeavesTheBlockZero) {
  long pos[] = {0, 0};
  long column[] = {1, 6};
  long row[] = {6, 1};
  ASSERT_TRUE(ClearsWhatItLeavesUnread(band));
  ASSERT_TRUE(band.AllocReadData(pos, column));
  ASSERT_EQ(Buffers::Samples(band), std::vector<unsigned short>(6, 0x7878));
  {
    const raster_test::ArrayLimit limit(11);
    EXPECT_FALSE(band.AllocReadData(pos, row));
  }
  EXPECT_EQ(Buffers::Samples(band), std::vector<unsigned short>(6, 0));
}

TEST_F(InPlaceReadTest, WithoutAPartTheBandIsAskedThroughItsGetRect) {
  MockBand mock(8, 6, 2, {1});
  mock.result = 7;
  const TKvDibRect rect = Request(0, 0, 8, 6);
  unsigned char byte = 0;
  TPixelRows rows{&byte, 5};
  EXPECT_EQ(ReadBand(mock, {rect, kQuality, 42, nullptr}, nullptr, {&byte, 9}, &rows), 7);
  ASSERT_EQ(mock.calls.size(), 1u);
  EXPECT_EQ(mock.calls[0].out.data, &byte);
  EXPECT_EQ(mock.calls[0].out.stride, 9);
  EXPECT_EQ(mock.calls[0].param, 42);
  EXPECT_EQ(rows.bottom, &byte);
}

TEST_F(InPlaceReadTest, AReaderWritesTheSamplesOfAllItsBands) {
  EXPECT_EQ(WrittenBytesPerPixel(band), 2);
  band.bandsCount = 3;
  EXPECT_EQ(WrittenBytesPerPixel(band), 6);
  band.bandsCount = 0;
  EXPECT_EQ(WrittenBytesPerPixel(band), 2);
  band.bandsCount = -1;
  EXPECT_EQ(WrittenBytesPerPixel(band), 2);
}

TEST_F(InPlaceReadTest, AnEnvelopeWritesWhatTheRasterInItHasNow) {
  auto* inner = new TRawWordDibData;
  ASSERT_TRUE(inner->Setup(InMemory(""), 8, 6, kLittle));
  DataReference wrapped{DataReference(inner)};
  TPushbroomDibDataEnvelope outer(DataReference(new TPushbroomDibDataEnvelope(wrapped, "", false)),
                                  "", false);
  EXPECT_EQ(WrittenBytesPerPixel(outer), 2);
  inner->bandsCount = 5;
  EXPECT_EQ(WrittenBytesPerPixel(outer), 10);
  inner->channels.kinds.assign(7, 1);
  EXPECT_EQ(WrittenBytesPerPixel(outer), 14);
  static_cast<TPushbroomDibDataEnvelope&>(*outer.data).data.reset();
  EXPECT_EQ(WrittenBytesPerPixel(outer), 2);
}

// The same bands once in place and once the general way.

/// What two rasters of the same bands are made from.
struct BandFile {
  long width;
  long height;
  bool word;  ///< the reader with a byte order
  TRawWordDibData::TBytesOrder order;
  std::string bytes;
};

BandFile RandomFile(std::mt19937& random, long width, long height) {
  const long whole = width * height * 2;
  const bool cut = random() % 4 == 0;
  const long size = cut ? static_cast<long>(random() % static_cast<unsigned long>(whole)) : whole;
  return {width, height, random() % 4 != 0,
          random() % 2 == 0 ? TRawWordDibData::boBigEndian : TRawWordDibData::boLittleEndian,
          RandomBytes(random, size)};
}

template <class Word, class Raw>
BandReference MakeBand(const BandFile& file, const StreamReference& stream) {
  const auto width = static_cast<unsigned long>(file.width);
  const auto height = static_cast<unsigned long>(file.height);
  if (file.word) {
    auto* band = new Word;
    BandReference reference(band);
    EXPECT_TRUE(band->Setup(stream, width, height, file.order));
    return reference;
  }
  auto* band = new Raw;
  BandReference reference(band);
  EXPECT_TRUE(band->Setup(stream, width, height));
  return reference;
}

/// One band twice, each on a stream of its own.
struct BandPair {
  BandFile file;
  BandReference own;
  BandReference hosts;

  bool SwapsBytes() const { return file.word && file.order == TRawWordDibData::boBigEndian; }
  /// Rows of the block, from its top, that the file holds whole.
  long WholeRows(const TKvDibRectI& block) const {
    const long top = file.height - block.y - block.h;
    long rows = 0;
    while (rows < block.h && ((top + rows) * file.width + block.x + block.w) * 2 <=
                                 static_cast<long>(file.bytes.size())) {
      ++rows;
    }
    return rows;
  }
  unsigned short SampleInFile(long x, long rowFromTop) const {
    unsigned short sample;
    const auto at = static_cast<std::size_t>((rowFromTop * file.width + x) * 2);
    std::memcpy(&sample, file.bytes.data() + at, sizeof sample);
    return sample;
  }
  /// What the read buffer holds behind a request for the block.
  std::vector<unsigned short> ExpectedSamples(const TKvDibRectI& block) const {
    const long whole = WholeRows(block);
    const bool swapped = SwapsBytes() && whole == block.h;
    std::vector<unsigned short> samples(static_cast<std::size_t>(block.w * block.h), 0);
    for (long row = 0; row < whole; ++row) {
      for (long x = 0; x < block.w; ++x) {
        const unsigned short sample =
            SampleInFile(block.x + x, file.height - block.y - block.h + row);
        samples[static_cast<std::size_t>(row * block.w + x)] =
            swapped ? __builtin_bswap16(sample) : sample;
      }
    }
    return samples;
  }
};

/// Streams in memory or files, served from mappings or not.
class Streams {
 public:
  explicit Streams(unsigned int kind) : kind_(kind % 3) {
    if (kind_ == 2) Init_KvServices();
  }
  Streams(const Streams&) = delete;
  Streams& operator=(const Streams&) = delete;
  ~Streams() {
    if (kind_ == 2) Deinit_KvServices();
  }

  BandPair Open(const BandFile& file) {
    if (kind_ == 0) {
      return Pair(file, InMemory(file.bytes), InMemory(file.bytes));
    }
    const TKvPath path(folder_.Write(std::to_string(files_++), file.bytes));
    return Pair(file, StreamReference(new TKvFileStream(path, kvOpenRead, kvShareAll)),
                StreamReference(new TKvFileStream(path, kvOpenRead, kvShareAll)));
  }

 private:
  static BandPair Pair(const BandFile& file, const StreamReference& own,
                       const StreamReference& hosts) {
    return {file, MakeBand<TRawWordDibData, RawBand>(file, own),
            MakeBand<HostsWordBand, HostsRawBand>(file, hosts)};
  }

  unsigned int kind_;
  TempFolder folder_;
  int files_ = 0;
};

TKvDibRect RandomRequest(std::mt19937& random, long width, long height) {
  const auto draw = [&random](long least, long most) {
    return static_cast<double>(least +
                               static_cast<long>(random() % static_cast<unsigned>(most - least)));
  };
  TKvDibRect rect =
      Request(draw(-4, width + 3), draw(-4, height + 3), draw(0, width + 8), draw(0, height + 8));
  if (random() % 8 == 0) rect.pos[0] += 0.5;
  if (random() % 8 == 0) rect.size[1] += 0.25;
  return rect;
}

void ExpectEqualBands(const BandPair& pair) {
  EXPECT_EQ(Buffers::Samples(*pair.own), Buffers::Samples(*pair.hosts));
  EXPECT_EQ(Buffers::RowBytes(*pair.own), Buffers::RowBytes(*pair.hosts));
  EXPECT_EQ(static_cast<const RawBand&>(*pair.own).stream->GetPos(),
            static_cast<const RawBand&>(*pair.hosts).stream->GetPos());
}

/// Sets the bytes of a channel whose band failed, inside the raster, to one value: they are
/// whatever the block held.
void BlankChannel(Output& out, const TInnerPart& part, long channel, long pixelBytes) {
  for (long row = 0; row < part.rect.h; ++row) {
    for (long x = 0; x < part.rect.w; ++x) {
      const long at = (part.skipX + x) * pixelBytes + 2 * channel;
      out.At(part.skipY + row, at) = 0;
      out.At(part.skipY + row, at + 1) = 0;
    }
  }
}

/// Two compositors of the same bands.
struct CompositorPair {
  std::vector<BandPair> bands;  ///< in channel order
  TSeparateBandsDibData own;
  TSeparateBandsDibData hosts;

  void Setup() {
    Bands ownBands, hostsBands;
    for (std::size_t k = 0; k < bands.size(); ++k) {
      ownBands[100 + static_cast<int>(k)] = bands[k].own;
      hostsBands[100 + static_cast<int>(k)] = bands[k].hosts;
    }
    ASSERT_TRUE(own.Setup(ownBands));
    ASSERT_TRUE(hosts.Setup(hostsBands));
  }
  /// Returns how many bands failed.
  int Compare(const TKvDibRect& rect, bool down) {
    TKvDibRectI pixels;
    own.Rect2RectI(rect, kQuality, 0, &pixels, false);
    const long pixelBytes = 2 * static_cast<long>(bands.size());
    const long stride = pixels.w * pixelBytes + 6;
    Output out(pixels.h + 1, down ? -stride : stride),
        expected(pixels.h + 1, down ? -stride : stride);
    EXPECT_EQ(own.GetRect(out.Buffer(), rect, kQuality, 0, nullptr),
              hosts.GetRect(expected.Buffer(), rect, kQuality, 0, nullptr));
    int failures = 0;
    const std::optional<TInnerPart> part = CutToRaster(pixels, own.width, own.height);
    for (std::size_t k = 0; k < bands.size(); ++k) {
      ExpectEqualBands(bands[k]);
      if (!part) continue;
      ExpectReadBuffer(bands[k], part->rect);
      if (bands[k].WholeRows(part->rect) == part->rect.h) continue;
      ++failures;
      BlankChannel(out, *part, static_cast<long>(k), pixelBytes);
      BlankChannel(expected, *part, static_cast<long>(k), pixelBytes);
    }
    EXPECT_EQ(out.bytes, expected.bytes);
    return failures;
  }
  static void ExpectReadBuffer(const BandPair& band, const TKvDibRectI& block) {
    const std::vector<unsigned short> expected = band.ExpectedSamples(block);
    const std::vector<unsigned short> samples = Buffers::Samples(*band.own);
    ASSERT_GE(samples.size(), expected.size());
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), samples.begin()));
  }
};

TEST_F(InPlaceReadTest, RandomRequestsToACompositorGiveTheSameInPlaceAndTheGeneralWay) {
  std::mt19937 random(20240601);
  int failures = 0;
  for (unsigned int scene = 0; scene < 90; ++scene) {
    Streams streams(scene);
    const long width = 1 + static_cast<long>(random() % 40);
    const long height = 1 + static_cast<long>(random() % 20);
    CompositorPair pair;
    for (std::size_t count = 1 + random() % 9; count > 0; --count) {
      pair.bands.push_back(streams.Open(RandomFile(random, width, height)));
    }
    pair.Setup();
    for (int i = 0; i < 60; ++i) {
      failures += pair.Compare(RandomRequest(random, width, height), random() % 3 == 0);
      ASSERT_FALSE(HasFailure()) << "scene " << scene << ", request " << i;
    }
  }
  EXPECT_GT(failures, 1000);
}

/// Two stitched rasters of the same tiles.
struct StitchedPair {
  std::vector<BandPair> bands;
  TSuperTiledDibDataEnvelope own;
  TSuperTiledDibDataEnvelope hosts;
};

void SetUpStitched(std::mt19937& random, Streams& streams, StitchedPair* pair) {
  std::vector<TSuperTileData> ownTiles, hostsTiles;
  const auto draw = [&random](long least, long most) {
    return least + static_cast<long>(random() % static_cast<unsigned>(most - least));
  };
  for (long count = draw(1, 6); count > 0; --count) {
    const long width = draw(2, 20);
    const long height = draw(2, 20);
    const bool fitting = random() % 2 == 0;
    pair->bands.push_back(streams.Open(
        RandomFile(random, fitting ? width : draw(1, 30), fitting ? height : draw(1, 30))));
    const long left = draw(0, 20);
    const long top = draw(0, 20);
    TSuperTileData tile = {left, top, left + width - 1, top + height - 1, 0, 0, {}, ""};
    if (!fitting) {
      tile.srcLeft = draw(-4, 8);
      tile.srcTop = draw(-4, 8);
    }
    tile.raster = pair->bands.back().own;
    ownTiles.push_back(tile);
    tile.raster = pair->bands.back().hosts;
    hostsTiles.push_back(tile);
  }
  ASSERT_TRUE(pair->own.Setup(ownTiles, nullptr));
  ASSERT_TRUE(pair->hosts.Setup(hostsTiles, nullptr));
}

TEST_F(InPlaceReadTest, RandomRequestsToAStitchedRasterGiveTheSameInPlaceAndTheGeneralWay) {
  std::mt19937 random(20240602);
  int written = 0;
  for (unsigned int scene = 0; scene < 150; ++scene) {
    Streams streams(scene);
    StitchedPair pair;
    SetUpStitched(random, streams, &pair);
    ASSERT_FALSE(HasFatalFailure());
    for (int i = 0; i < 60; ++i) {
      const TKvDibRect rect = RandomRequest(random, pair.own.width, pair.own.height);
      TKvDibRectI pixels;
      pair.own.Rect2RectI(rect, kQuality, 0, &pixels, false);
      const long stride = (random() % 3 == 0 ? -1 : 1) * (2 * pixels.w + 4);
      Output out(pixels.h + 1, stride), expected(pixels.h + 1, stride);
      const int result = pair.own.GetRect(out.Buffer(), rect, kQuality, 0, nullptr);
      ASSERT_EQ(result, pair.hosts.GetRect(expected.Buffer(), rect, kQuality, 0, nullptr));
      ASSERT_EQ(out.bytes, expected.bytes) << "scene " << scene << ", request " << i;
      for (const BandPair& band : pair.bands) ExpectEqualBands(band);
      ASSERT_FALSE(HasFailure()) << "scene " << scene << ", request " << i;
      written += result == 3 ? 1 : 0;
    }
  }
  EXPECT_GT(written, 5000);
}

TEST_F(InPlaceReadTest, FilesCutAtEveryByteLeaveTheSameReadBufferEitherWay) {
  std::mt19937 random(20240603);
  const std::string whole = RandomBytes(random, 5 * 4 * 2);
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    Streams streams(static_cast<unsigned int>(size));
    CompositorPair pair;
    for (const auto order : {TRawWordDibData::boBigEndian, TRawWordDibData::boLittleEndian}) {
      pair.bands.push_back(streams.Open({5, 4, true, order, whole.substr(0, size)}));
    }
    pair.Setup();
    for (const TKvDibRect& rect :
         {Request(0, 0, 5, 4), Request(-1, -1, 4, 4), Request(2, 2, 9, 9), Request(0, 0, 5, 4)}) {
      pair.Compare(rect, false);
    }
    ASSERT_FALSE(HasFailure()) << size << " bytes";
  }
}

// Code of others that runs while a band is read.

/// A stream in memory that runs a host's own code at every read.
class BusyStream : public TKvMemoryStream {
 public:
  using TKvMemoryStream::TKvMemoryStream;
  std::function<void()> busy;

  unsigned long Read(void* buffer, unsigned long count) override {
    if (busy) busy();
    return TKvMemoryStream::Read(buffer, count);
  }
};

class BusyStreamTest : public RasterTest {
 protected:
  BusyStreamTest() {
    std::mt19937 random(7);
    for (const int key : {1, 2, 3}) files[key] = RandomBytes(random, 8 * 6 * 2);
  }

  /// Band 2 reads from a stream that asks the bands 1 and 3 for `asked` meanwhile.
  Bands MakeBands(const TKvDibRect& asked) {
    Bands bands;
    auto* busy = new BusyStream(files[2]);
    for (const int key : {1, 2, 3}) {
      auto* band = new TRawWordDibData;
      bands[key] = BandReference(band);
      const StreamReference stream = key == 2 ? StreamReference(busy) : InMemory(files[key]);
      EXPECT_TRUE(band->Setup(stream, 8, 6, TRawWordDibData::boLittleEndian));
    }
    TBasePushbroomDibData* const first = bands[1].get();
    TBasePushbroomDibData* const third = bands[3].get();
    busy->busy = [this, first, third, asked] {
      ++asks;
      for (TBasePushbroomDibData* band : {first, third}) {
        Output other(20, 40);
        EXPECT_EQ(band->GetRect(other.Buffer(), asked, kQuality, 0, nullptr), 3);
      }
    };
    return bands;
  }
  unsigned short SampleOf(int key, long x, long y) {
    unsigned short sample;
    std::memcpy(&sample, files[key].data() + ((5 - y) * 8 + x) * 2, sizeof sample);
    return sample;
  }

  std::map<int, std::string> files;
  int asks = 0;
};

TEST_F(BusyStreamTest, ACompositionIsRightWhenAStreamAsksTheOtherBandsMeanwhile) {
  for (const TKvDibRect& asked : {Request(0, 0, 8, 6), Request(1, 1, 2, 2), Request(5, 0, 1, 1)}) {
    TSeparateBandsDibData compositor;
    ASSERT_TRUE(compositor.Setup(MakeBands(asked)));
    Output out(3, 24);
    ASSERT_EQ(compositor.GetRect(out.Buffer(), Request(2, 1, 4, 3), kQuality, 0, nullptr), 3);
    for (long y = 0; y < 3; ++y) {
      for (long x = 0; x < 4; ++x) {
        for (int key : {1, 2, 3}) {
          ASSERT_EQ(out.Word(y, 3 * x + key - 1), SampleOf(key, 2 + x, 1 + y)) << key;
        }
      }
    }
  }
  EXPECT_EQ(asks, 9);
}

TEST_F(BusyStreamTest, AStitchedRasterIsRightWhenAStreamAsksTheOtherTilesMeanwhile) {
  for (const TKvDibRect& asked : {Request(0, 0, 8, 6), Request(1, 1, 2, 2)}) {
    const Bands bands = MakeBands(asked);
    std::vector<TSuperTileData> tiles;
    for (const auto& [key, band] : bands) {
      const long left = 8 * (key - 1);
      tiles.push_back({left, 0, left + 7, 5, 0, 0, band, ""});
    }
    TSuperTiledDibDataEnvelope raster;
    ASSERT_TRUE(raster.Setup(tiles, nullptr));
    Output out(6, 48);
    ASSERT_EQ(raster.GetRect(out.Buffer(), Request(0, 0, 24, 6), kQuality, 0, nullptr), 3);
    for (long y = 0; y < 6; ++y) {
      for (long x = 0; x < 24; ++x) {
        ASSERT_EQ(out.Word(y, x), SampleOf(static_cast<int>(x / 8) + 1, x % 8, y)) << x << ' ' << y;
      }
    }
  }
  EXPECT_EQ(asks, 12);
}

/// Changes the block that it was asked for once it has read it.
class ForgetfulBand : public TRawWordDibData {
 public:
  bool ReadData(long* pos, long* size) override {
    const bool read = TRawWordDibData::ReadData(pos, size);
    pos[0] = pos[1] = -1000;
    size[0] = size[1] = 100000;
    return read;
  }
};

TEST_F(InPlaceReadTest, ASizeThatAHostsReadDataChangesDoesNotChangeWhatIsCopied) {
  std::mt19937 random(8);
  const std::string file = RandomBytes(random, 96);
  auto* forgetful = new ForgetfulBand;
  const BandReference reference(forgetful);
  ASSERT_TRUE(forgetful->Setup(InMemory(file), 8, 6, kLittle));
  band.stream = InMemory(file);
  TSeparateBandsDibData compositor;
  ASSERT_TRUE(compositor.Setup({{1, reference}}));
  TSuperTiledDibDataEnvelope stitched;
  ASSERT_TRUE(stitched.Setup({{0, 0, 7, 5, 0, 0, reference, ""}}, nullptr));
  const TKvDibRect rect = Request(2, 1, 4, 3);
  Output expected(3, 10);
  ASSERT_EQ(band.GetRect(expected.Buffer(), rect, kQuality, 0, nullptr), 3);
  for (TBasePushbroomDibData* raster : {static_cast<TBasePushbroomDibData*>(forgetful),
                                        static_cast<TBasePushbroomDibData*>(&compositor),
                                        static_cast<TBasePushbroomDibData*>(&stitched)}) {
    Output out(3, 10);
    EXPECT_EQ(raster->GetRect(out.Buffer(), rect, kQuality, 0, nullptr), 3);
    EXPECT_EQ(out.bytes, expected.bytes);
  }
}

// Rasters that write more bytes a pixel than their channels say: no block may be written beyond its
// end, which the fixture sees.

/// Every way to ask for `raster`'s pixels through a compositor and a stitched raster.
void AskEverywhere(const BandReference& raster, const std::function<void()>& change) {
  TSeparateBandsDibData compositor;
  ASSERT_TRUE(compositor.Setup({{1, raster}, {2, raster}}));
  TSuperTiledDibDataEnvelope stitched;
  ASSERT_TRUE(stitched.Setup({{0, 0, 7, 5, 0, 0, raster, ""}}, nullptr));
  change();
  for (const TKvDibRect& rect :
       {Request(0, 0, 8, 6), Request(7, 5, 1, 1), Request(-2, -2, 12, 12), Request(3, 0, 1, 6)}) {
    Output out(12, 400);
    EXPECT_EQ(compositor.GetRect(out.Buffer(), rect, kQuality, 0, nullptr), 3);
    EXPECT_EQ(stitched.GetRect(out.Buffer(), rect, kQuality, 0, nullptr), 3);
  }
}

TEST_F(InPlaceReadTest, ARawBandWithMoreBandsThanKindsStaysInsideTheBlocks) {
  for (long bands : {2L, 3L, 9L}) {
    auto* raw = new TRawWordDibData;
    const BandReference reference(raw);
    ASSERT_TRUE(raw->Setup(InMemory(std::string(96, 'x')), 8, 6, kLittle));
    AskEverywhere(reference, [raw, bands] { raw->bandsCount = bands; });
  }
}

TEST_F(InPlaceReadTest, ARawBandOfTwoBandsWithoutKindsStaysInsideTheBlocks) {
  auto* raw = new TRawWordDibData;
  const BandReference reference(raw);
  ASSERT_TRUE(raw->Setup(InMemory(std::string(96, 'x')), 8, 6, kLittle));
  AskEverywhere(reference, [raw] {
    raw->bandsCount = 2;
    raw->channels.kinds.clear();
  });
}

TEST_F(InPlaceReadTest, AnEnvelopeWhoseCompositorIsSetUpAgainWithMoreBandsStaysInsideTheBlocks) {
  const auto make = [](int count) {
    Bands bands;
    for (int key = 1; key <= count; ++key) {
      auto* raw = new TRawWordDibData;
      bands[key] = BandReference(raw);
      EXPECT_TRUE(raw->Setup(InMemory(std::string(96, 'x')), 8, 6, kLittle));
    }
    return bands;
  };
  auto* compositor = new TSeparateBandsDibData;
  const DataReference wrapped{DataReference(compositor)};
  ASSERT_TRUE(compositor->Setup(make(1)));
  AskEverywhere(BandReference(new TPushbroomDibDataEnvelope(wrapped, "", false)),
                [&] { ASSERT_TRUE(compositor->Setup(make(7))); });
}

// Rasters without pixels.

TEST_F(InPlaceReadTest, ReadersThatWereNeverSetUpGiveNoPixelsAnywhere) {
  const BandReference empty(new TRawWordDibData);
  const BandReference envelope(new TPushbroomDibDataEnvelope(DataReference(empty), "", false));
  TSeparateBandsDibData compositor;
  ASSERT_TRUE(compositor.Setup({{1, empty}, {2, envelope}}));
  TSuperTiledDibDataEnvelope stitched;
  EXPECT_FALSE(stitched.Setup({{0, 0, 7, 5, 0, 0, empty, ""}}, nullptr));
  for (TBasePushbroomDibData* raster :
       {empty.get(), envelope.get(), static_cast<TBasePushbroomDibData*>(&compositor)}) {
    Output out(4, 32);
    EXPECT_EQ(raster->GetRect(out.Buffer(), Request(-2, -2, 4, 4), kQuality, 0, nullptr), 2);
    EXPECT_TRUE(out.Untouched());
    EXPECT_EQ(raster->GetReadBuffer(), nullptr);
    raster->PurgeCache();
  }
}

TEST_F(InPlaceReadTest, ATileEmptiedAfterTheSetupIsDrawnAsZeros) {
  auto* raw = new TRawWordDibData;
  const BandReference reference(raw);
  ASSERT_TRUE(raw->Setup(InMemory(std::string(96, 'x')), 8, 6, kLittle));
  TSuperTiledDibDataEnvelope stitched;
  ASSERT_TRUE(stitched.Setup({{0, 0, 7, 5, 0, 0, reference, ""}}, nullptr));
  EXPECT_FALSE(raw->Setup(nullptr, 8, 6, kLittle));
  Output out(6, 16), expected(6, 16);
  EXPECT_EQ(stitched.GetRect(out.Buffer(), Request(0, 0, 8, 6), kQuality, 0, nullptr), 3);
  for (long row = 0; row < 6; ++row) std::memset(&expected.At(row, 0), 0, 16);
  EXPECT_EQ(out.bytes, expected.bytes);
}

}  // namespace
