#include <gmock/gmock.h>

#include <filesystem>
#include <limits>

#include "raster/RasterTest.h"
#include "raster/ScriptedStream.h"
#include "support/TempFolder.h"

namespace {

using raster_test::AllocationFailure;
using raster_test::ArrayLimit;
using raster_test::ArrayLog;
using raster_test::Output;
using raster_test::RasterTest;
using raster_test::Request;
using raster_test::ScriptedStream;
using SatCommonUtils::TRawDibData;
using SatCommonUtils::TRawWordDibData;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Transfer = ScriptedStream::Transfer;
using StreamReference = var_a_legacy::var_a<TKvStream*>;

constexpr auto kLittle = TRawWordDibData::boLittleEndian;
constexpr auto kBig = TRawWordDibData::boBigEndian;

class OpenRawWord : public TRawWordDibData {
 public:
  using TRawWordDibData::readBuffer;
  using TRawWordDibData::readBufferSize;
  using TRawWordDibData::rowCache;
  using TRawWordDibData::rowCacheSize;
};

class OpenRaw : public TRawDibData<unsigned short> {
 public:
  using TRawDibData::rowCache;
  using TRawDibData::rowCacheSize;
};

unsigned short SampleAt(long x, long yFromTop) {
  return static_cast<unsigned short>(0x0102 + 259 * x + 4099 * yFromTop);
}

std::string FileOf(long width, long height, TRawWordDibData::TBytesOrder order) {
  std::string bytes;
  for (long y = 0; y < height; ++y) {
    for (long x = 0; x < width; ++x) {
      const char low = static_cast<char>(SampleAt(x, y) & 0xFF);
      const char high = static_cast<char>(SampleAt(x, y) >> 8);
      bytes += order == kBig ? high : low;
      bytes += order == kBig ? low : high;
    }
  }
  return bytes;
}

unsigned short Swapped(unsigned short value) {
  return static_cast<unsigned short>((value >> 8) | (value << 8));
}

class RawBandTest : public RasterTest {
 protected:
  RawBandTest() : stream(new ScriptedStream), reference(stream) {}

  void SetUpBand(long width, long height, TRawWordDibData::TBytesOrder order = kLittle) {
    stream->bytes = FileOf(width, height, order);
    ASSERT_TRUE(band.Setup(reference, static_cast<unsigned long>(width),
                           static_cast<unsigned long>(height), order));
  }
  bool Alloc(long x, long y, long w, long h) {
    long pos[] = {x, y};
    long size[] = {w, h};
    return band.AllocReadData(pos, size);
  }
  bool Read(long x, long y, long w, long h) {
    long pos[] = {x, y};
    long size[] = {w, h};
    return band.ReadData(pos, size);
  }
  std::vector<unsigned short> Buffer(long count) {
    return std::vector<unsigned short>(band.readBuffer, band.readBuffer + count);
  }
  void ExpectEmpty() {
    EXPECT_FALSE(static_cast<bool>(band.stream));
    EXPECT_EQ(band.width, 0);
    EXPECT_EQ(band.height, 0);
    EXPECT_EQ(band.bandsCount, 0);
    EXPECT_EQ(band.rowCache, nullptr);
    EXPECT_EQ(band.rowCacheSize, 0u);
  }

  ScriptedStream* stream;
  StreamReference reference;
  OpenRawWord band;
};

TEST_F(RawBandTest, AReaderIsEmptyAfterConstruction) {
  ExpectEmpty();
  EXPECT_EQ(band.bytesOrder, kLittle);
  EXPECT_EQ(band.channels.sampleType, 1);
  EXPECT_EQ(band.channels.sampleSize, 0u);
  EXPECT_THAT(band.channels.kinds, IsEmpty());
  EXPECT_EQ(band.readBuffer, nullptr);
  EXPECT_EQ(band.readBufferSize, 0);
}

TEST_F(RawBandTest, AnEmptyReaderHasNoPixels) {
  Output out(2, 8);
  EXPECT_EQ(band.GetRect(out.Buffer(), Request(0, 0, 2, 2), iqNearest, 0, nullptr), 2);
  EXPECT_TRUE(out.Untouched());
}

TEST_F(RawBandTest, SetupKeepsTheSizeOneBandAndAReferenceToTheStream) {
  EXPECT_TRUE(band.Setup(reference, 7, 5, kLittle));
  EXPECT_EQ(band.width, 7);
  EXPECT_EQ(band.height, 5);
  EXPECT_EQ(band.bandsCount, 1);
  EXPECT_EQ(band.stream.get(), stream);
  EXPECT_EQ(reference.use_count(), 2);
}

TEST_F(RawBandTest, SetupDescribesOneChannelOfTwoBytes) {
  band.channels.sampleType = 77;
  band.channels.sampleSize = 8;
  ASSERT_TRUE(band.Setup(reference, 7, 5, kLittle));
  EXPECT_EQ(band.channels.sampleType, 1);
  EXPECT_EQ(band.channels.sampleSize, 2u);
  EXPECT_THAT(band.channels.kinds, ElementsAre(1));
}

TEST_F(RawBandTest, SetupGivesExactlyOneLevelAtFullResolution) {
  ASSERT_TRUE(band.Setup(reference, 7, 5, kLittle));
  std::vector<TKvDibRect> levels;
  ASSERT_EQ(band.GetAllLevels(&levels), 1u);
  EXPECT_TRUE(raster_test::operator==(levels[0], Request(0, 0, 7, 5, 1)));
  EXPECT_EQ(band.GetScaleDimensions(0), (vec_t_<unsigned long, 2>{{7, 5}}));
}

TEST_F(RawBandTest, SetupAsksNothingOfTheStream) {
  ASSERT_TRUE(band.Setup(reference, 7, 5, kBig));
  EXPECT_EQ(stream->calls, "");
}

TEST_F(RawBandTest, ASetupWithWidthZeroFailsAndLeavesTheReaderEmpty) {
  EXPECT_FALSE(band.Setup(reference, 0, 5, kLittle));
  ExpectEmpty();
  EXPECT_EQ(reference.use_count(), 1);
}

TEST_F(RawBandTest, ASetupWithHeightZeroFailsAndLeavesTheReaderEmpty) {
  EXPECT_FALSE(band.Setup(reference, 7, 0, kLittle));
  ExpectEmpty();
  EXPECT_EQ(reference.use_count(), 1);
}

TEST_F(RawBandTest, ASetupWithoutStreamFailsAndLeavesTheReaderEmpty) {
  EXPECT_FALSE(band.Setup(StreamReference(), 7, 5, kLittle));
  ExpectEmpty();
}

TEST_F(RawBandTest, AFailedSetupOfANewReaderDescribesNoChannelAndGivesNoLevel) {
  EXPECT_FALSE(band.Setup(reference, 0, 0, kLittle));
  EXPECT_EQ(band.channels.sampleSize, 0u);
  EXPECT_THAT(band.channels.kinds, IsEmpty());
  EXPECT_EQ(band.GetAllLevels(nullptr), 0u);
}

TEST_F(RawBandTest, TheByteOrderIsKeptEvenWhenTheSetupFails) {
  EXPECT_FALSE(band.Setup(reference, 0, 5, kBig));
  EXPECT_EQ(band.bytesOrder, kBig);
  EXPECT_FALSE(band.Setup(StreamReference(), 7, 5, kLittle));
  EXPECT_EQ(band.bytesOrder, kLittle);
}

TEST_F(RawBandTest, AFailedSetupReleasesTheStreamAndTheRowCacheHeldBefore) {
  SetUpBand(4, 3);
  ASSERT_TRUE(Alloc(0, 0, 4, 3));
  ASSERT_NE(band.rowCache, nullptr);
  EXPECT_FALSE(band.Setup(reference, 4, 0, kLittle));
  ExpectEmpty();
  EXPECT_EQ(reference.use_count(), 1);
}

TEST_F(RawBandTest, AFailedSetupKeepsTheChannelKindsAndTheLevel) {
  SetUpBand(4, 3);
  EXPECT_FALSE(band.Setup(reference, 0, 3, kLittle));
  EXPECT_THAT(band.channels.kinds, ElementsAre(1));
  EXPECT_EQ(band.channels.sampleSize, 2u);
  EXPECT_EQ(band.GetScaleDimensions(0), (vec_t_<unsigned long, 2>{{4, 3}}));
}

TEST_F(RawBandTest, ASetupKeepsTheReadBuffer) {
  SetUpBand(4, 3);
  ASSERT_TRUE(Alloc(0, 0, 4, 3));
  const unsigned short* buffer = band.readBuffer;
  EXPECT_FALSE(band.Setup(reference, 4, 0, kLittle));
  EXPECT_TRUE(band.Setup(reference, 4, 3, kLittle));
  EXPECT_EQ(band.readBuffer, buffer);
  EXPECT_EQ(band.readBufferSize, 12);
}

TEST_F(RawBandTest, ASetupLeavesTheNameAndTheFlagOfTheHost) {
  band.bandName = "near infrared";
  band.bandFlag = true;
  EXPECT_FALSE(band.Setup(reference, 4, 0, kLittle));
  EXPECT_TRUE(band.Setup(reference, 4, 3, kLittle));
  EXPECT_EQ(band.bandName, "near infrared");
  EXPECT_TRUE(band.bandFlag);
}

TEST_F(RawBandTest, ASecondSetupTakesTheNewStreamAndDropsTheRowCache) {
  SetUpBand(4, 3);
  ASSERT_TRUE(Alloc(0, 0, 4, 3));
  StreamReference other(new ScriptedStream);
  EXPECT_TRUE(band.Setup(other, 9, 8, kBig));
  EXPECT_EQ(band.stream.get(), other.get());
  EXPECT_EQ(reference.use_count(), 1);
  EXPECT_EQ(band.width, 9);
  EXPECT_EQ(band.height, 8);
  EXPECT_EQ(band.bandsCount, 1);
  EXPECT_EQ(band.GetAllLevels(nullptr), 1u);
  EXPECT_EQ(band.GetScaleDimensions(0), (vec_t_<unsigned long, 2>{{9, 8}}));
  EXPECT_EQ(band.rowCache, nullptr);
  EXPECT_EQ(band.rowCacheSize, 0u);
}

TEST_F(RawBandTest, ASecondSetupMayNameTheStreamThatIsHeld) {
  ASSERT_TRUE(band.Setup(StreamReference(new ScriptedStream), 4, 3, kLittle));
  EXPECT_TRUE(band.Setup(band.stream, 4, 3, kLittle));
  EXPECT_EQ(band.stream.use_count(), 1);
}

TEST_F(RawBandTest, EverySuccessfulSetupAppendsOneMoreKind) {
  SetUpBand(4, 3);
  SetUpBand(4, 3);
  EXPECT_THAT(band.channels.kinds, ElementsAre(1, 1));
  EXPECT_EQ(band.bandsCount, 1);
  EXPECT_FALSE(band.Setup(reference, 0, 3, kLittle));
  SetUpBand(4, 3);
  EXPECT_THAT(band.channels.kinds, ElementsAre(1, 1, 1));
}

TEST_F(RawBandTest, AfterASecondSetupTheReadsHaveTwiceTheBytesAPixel) {
  SetUpBand(4, 3);
  SetUpBand(4, 3);
  stream->endless = true;
  EXPECT_TRUE(Alloc(1, 1, 2, 2));
  EXPECT_THAT(stream->reads,
              ElementsAre(Transfer{(1 * 4 + 1) * 4, 8}, Transfer{(2 * 4 + 1) * 4, 8}));
  EXPECT_EQ(band.readBufferSize, 4);
}

TEST_F(RawBandTest, APixelHasTheBytesThatTheChannelDescriptionSays) {
  SetUpBand(4, 3);
  band.channels.kinds = {1, 1, 1};
  band.channels.sampleSize = 4;
  stream->endless = true;
  EXPECT_TRUE(Alloc(1, 1, 2, 1));
  EXPECT_THAT(stream->reads, ElementsAre(Transfer{(1 * 4 + 1) * 12, 24}));
  EXPECT_EQ(band.rowCacheSize, 24u);
}

TEST_F(RawBandTest, ARowOfAnOddNumberOfBytesStaysInsideTheRowCache) {
  SetUpBand(3, 1);
  band.channels.sampleSize = 3;
  stream->bytes = "AaxBbyCcz";
  const ArrayLog log;
  EXPECT_TRUE(Alloc(0, 0, 3, 1));
  EXPECT_THAT(log.Sizes(), ElementsAre(3u * 2, 10u));
  EXPECT_EQ(band.rowCacheSize, 9u);
  EXPECT_THAT(Buffer(3), ElementsAre(0x6141, 0x6242, 0x6343));
}

TEST_F(RawBandTest, SamplesOfOneByteAreTheLowBytes) {
  SetUpBand(3, 1);
  band.channels.sampleSize = 1;
  stream->bytes = "abc";
  EXPECT_TRUE(Alloc(0, 0, 3, 1));
  EXPECT_THAT(Buffer(3), ElementsAre(0x61, 0x62, 0x63));
  EXPECT_TRUE(Alloc(1, 0, 1, 1));
  EXPECT_THAT(Buffer(1), ElementsAre(0x62));
}

TEST_F(RawBandTest, PixelsOfMoreThanOneSampleGiveTheirFirst) {
  SetUpBand(2, 2, kBig);
  SetUpBand(2, 2, kBig);
  stream->bytes = "AaBbCcDdEeFfGgHh";
  EXPECT_TRUE(Alloc(0, 0, 2, 2));
  EXPECT_THAT(Buffer(4), ElementsAre(0x4161, 0x4363, 0x4565, 0x4767));
}

TEST_F(RawBandTest, ABlockBeforeTheFileOrBeyondAnyOffsetIsNotRead) {
  SetUpBand(4, 3);
  ASSERT_TRUE(Alloc(0, 0, 2, 2));
  stream->Forget();
  constexpr long kMost = std::numeric_limits<long>::max();
  EXPECT_FALSE(Read(-1, 0, 2, 2));
  EXPECT_FALSE(Read(0, -1, 2, 2));
  EXPECT_FALSE(Read(0, kMost, 2, 2));
  EXPECT_FALSE(Read(0, kMost / 4, 2, 2));
  EXPECT_FALSE(Read(0, kMost / 8 - 1, 1, 3));
  EXPECT_THAT(stream->reads, IsEmpty());
}

TEST_F(RawBandTest, AfterASecondSetupNoByteLeavesTheReadBufferNorTheOutput) {
  SetUpBand(4, 3, kBig);
  SetUpBand(4, 3, kBig);
  stream->endless = true;
  Output out(3, 8);
  EXPECT_EQ(band.GetRect(out.Buffer(), Request(0, 0, 4, 3), iqNearest, 0, nullptr), 3);
  Output blank(3, 8);
  for (long row = 0; row < 3; ++row) {
    for (long byte = 0; byte < 8; ++byte) out.At(row, byte) = Output::kGuard;
  }
  EXPECT_EQ(out.bytes, blank.bytes);
}

TEST_F(RawBandTest, ManySetupsNeverMakeAReadLeaveItsBuffers) {
  for (int i = 0; i < 9; ++i) SetUpBand(5, 4, kBig);
  stream->endless = true;
  for (long h = 1; h <= 4; ++h) {
    for (long w = 1; w <= 5; ++w) EXPECT_TRUE(Alloc(0, 0, w, h));
  }
}

TEST_F(RawBandTest, TheReadIsOnePositionedReadARowOfExactlyTheRequestedWidth) {
  SetUpBand(10, 8);
  EXPECT_TRUE(Alloc(3, 2, 4, 3));
  EXPECT_EQ(stream->calls, "SRSRSR");
  EXPECT_THAT(stream->reads,
              ElementsAre(Transfer{(2 * 10 + 3) * 2, 8}, Transfer{(3 * 10 + 3) * 2, 8},
                          Transfer{(4 * 10 + 3) * 2, 8}));
}

TEST_F(RawBandTest, WholeRowsAreStillReadOneByOne) {
  SetUpBand(6, 3);
  EXPECT_TRUE(Alloc(0, 0, 6, 3));
  EXPECT_EQ(stream->calls, "SRSRSR");
  EXPECT_THAT(stream->reads, ElementsAre(Transfer{0, 12}, Transfer{12, 12}, Transfer{24, 12}));
}

TEST_F(RawBandTest, EveryReadIsPositionedAnewWhateverTheStreamStandsAt) {
  SetUpBand(6, 3);
  stream->SetPos(17);
  EXPECT_TRUE(Alloc(0, 0, 2, 1));
  EXPECT_EQ(band.readBuffer[0], SampleAt(0, 0));
}

TEST_F(RawBandTest, TheReadBufferHoldsTheRowsPackedInFileOrder) {
  SetUpBand(5, 4);
  EXPECT_TRUE(Alloc(1, 1, 3, 2));
  EXPECT_THAT(Buffer(6), ElementsAre(SampleAt(1, 1), SampleAt(2, 1), SampleAt(3, 1), SampleAt(1, 2),
                                     SampleAt(2, 2), SampleAt(3, 2)));
}

TEST_F(RawBandTest, ABlockWithoutRowsIsReadWithoutTouchingTheStream) {
  SetUpBand(5, 4);
  EXPECT_TRUE(Read(0, 0, 3, 0));
  EXPECT_TRUE(Read(0, 0, 3, -2));
  EXPECT_TRUE(Read(-1, 1L << 62, 3, 0)) << "wherever it would lie";
  EXPECT_EQ(stream->calls, "");
}

TEST_F(RawBandTest, ABlockWithoutRowsGrowsTheRowCacheAllTheSame) {
  SetUpBand(5, 4);
  EXPECT_TRUE(Alloc(0, 0, 3, 0));
  EXPECT_EQ(band.rowCacheSize, 6u);
  ArrayLimit limit(7);
  EXPECT_FALSE(Alloc(0, 0, 4, 0));
  EXPECT_EQ(band.rowCacheSize, 0u);
}

TEST_F(RawBandTest, TheRowCacheHoldsExactlyTheBytesOfTheWidestRow) {
  SetUpBand(10, 8);
  EXPECT_TRUE(Alloc(0, 0, 4, 3));
  EXPECT_EQ(band.rowCacheSize, 8u);
  EXPECT_TRUE(Alloc(0, 0, 9, 1));
  EXPECT_EQ(band.rowCacheSize, 18u);
}

TEST_F(RawBandTest, TheRowCacheGrowsAndNeverShrinks) {
  SetUpBand(10, 8);
  EXPECT_TRUE(Alloc(0, 0, 9, 3));
  const unsigned short* cache = band.rowCache;
  EXPECT_TRUE(Alloc(0, 0, 2, 2));
  EXPECT_TRUE(Alloc(0, 0, 9, 1));
  EXPECT_EQ(band.rowCache, cache);
  EXPECT_EQ(band.rowCacheSize, 18u);
}

TEST_F(RawBandTest, ARequestNoLargerThanBeforeAllocatesNoArray) {
  SetUpBand(10, 8);
  EXPECT_TRUE(Alloc(0, 0, 9, 3));
  ArrayLog log;
  EXPECT_TRUE(Alloc(0, 0, 9, 3));
  EXPECT_TRUE(Alloc(1, 2, 4, 5));
  EXPECT_THAT(log.Sizes(), IsEmpty());
}

TEST_F(RawBandTest, BuffersThatAreTooSmallAreFreedBeforeLargerOnesAreMade) {
  SetUpBand(10, 8);
  ASSERT_TRUE(Alloc(0, 0, 2, 2));
  const long before = raster_test::LiveArrays();
  const ArrayLog log;
  EXPECT_TRUE(Alloc(0, 0, 9, 3));
  EXPECT_EQ(log.MostAlive(), before);
}

TEST_F(RawBandTest, TheBuffersAreNoLargerThanTheBlockAndTheRow) {
  SetUpBand(10, 8);
  ArrayLog log;
  EXPECT_TRUE(Alloc(0, 0, 9, 3));
  EXPECT_THAT(log.Sizes(), ::testing::UnorderedElementsAre(9u * 3 * 2, 9u * 2));
}

TEST_F(RawBandTest, ARowCacheThatCannotBeAllocatedFailsTheReadBeforeTheStreamIsTouched) {
  SetUpBand(32, 8);
  ASSERT_TRUE(Alloc(0, 0, 4, 8));
  stream->Forget();
  {
    ArrayLimit limit(63);
    EXPECT_FALSE(Alloc(0, 0, 32, 1));
  }
  EXPECT_EQ(stream->calls, "");
  EXPECT_EQ(band.rowCache, nullptr);
  EXPECT_EQ(band.rowCacheSize, 0u);
}

TEST_F(RawBandTest, ARowWhoseBytesCannotBeCountedFailsLikeARowCacheThatCannotBeAllocated) {
  SetUpBand(32, 8);
  for (const long width : {1L << 62, -1L}) {
    ASSERT_TRUE(Alloc(0, 0, 4, 8));
    stream->Forget();
    EXPECT_FALSE(Alloc(0, 0, width, 0));
    EXPECT_EQ(stream->calls, "");
    EXPECT_EQ(band.rowCache, nullptr);
    EXPECT_EQ(band.rowCacheSize, 0u);
  }
}

TEST_F(RawBandTest, AReaderRecoversFromARowCacheThatCouldNotBeAllocated) {
  SetUpBand(32, 8);
  ASSERT_TRUE(Alloc(0, 0, 4, 8));
  {
    ArrayLimit limit(63);
    EXPECT_FALSE(Alloc(0, 0, 32, 1));
    EXPECT_TRUE(Alloc(0, 0, 31, 1));
  }
  EXPECT_TRUE(Alloc(0, 0, 32, 1));
  EXPECT_EQ(band.readBuffer[31], SampleAt(31, 0));
}

TEST_F(RawBandTest, ARowCacheThatCannotBeAllocatedGivesNothingWritten) {
  SetUpBand(32, 8);
  ASSERT_TRUE(Alloc(0, 0, 4, 8));
  Output out(1, 64);
  ArrayLimit limit(63);
  EXPECT_EQ(band.GetRect(out.Buffer(), Request(0, 0, 32, 1), iqNearest, 0, nullptr), 2);
  EXPECT_TRUE(out.Untouched());
}

TEST_F(RawBandTest, AShortReadLeavesTheRowsBeforeItAndZeroInTheRest) {
  SetUpBand(4, 4);
  stream->shortRead = 2;
  EXPECT_FALSE(Alloc(0, 0, 4, 4));
  EXPECT_EQ(stream->reads.size(), 3u);
  EXPECT_THAT(Buffer(16), ElementsAre(SampleAt(0, 0), SampleAt(1, 0), SampleAt(2, 0),
                                      SampleAt(3, 0), SampleAt(0, 1), SampleAt(1, 1),
                                      SampleAt(2, 1), SampleAt(3, 1), 0, 0, 0, 0, 0, 0, 0, 0));
}

TEST_F(RawBandTest, AShortReadLeavesTheRowsBeforeItUnswapped) {
  SetUpBand(2, 3, kBig);
  stream->shortRead = 1;
  EXPECT_FALSE(Alloc(0, 0, 2, 3));
  EXPECT_THAT(Buffer(6), ElementsAre(Swapped(SampleAt(0, 0)), Swapped(SampleAt(1, 0)), 0, 0, 0, 0));
}

TEST_F(RawBandTest, AShortReadOfTheFirstRowLeavesTheBlockZeroAlsoAfterAnEarlierRead) {
  SetUpBand(3, 3);
  ASSERT_TRUE(Alloc(0, 0, 3, 3));
  stream->Forget();
  stream->shortRead = 0;
  EXPECT_FALSE(Alloc(0, 0, 3, 2));
  EXPECT_THAT(Buffer(6), ::testing::Each(0));
}

TEST_F(RawBandTest, AReadThatThrowsFailsAndLeavesTheRowsBeforeItAndZeroInTheRest) {
  SetUpBand(2, 3, kBig);
  stream->throwingRead = 1;
  EXPECT_FALSE(Alloc(0, 0, 2, 3));
  EXPECT_EQ(stream->reads.size(), 2u);
  EXPECT_THAT(Buffer(6), ElementsAre(Swapped(SampleAt(0, 0)), Swapped(SampleAt(1, 0)), 0, 0, 0, 0));
}

TEST_F(RawBandTest, APositioningThatThrowsFailsTheRead) {
  SetUpBand(2, 3);
  stream->throwingSetPos = 1;
  EXPECT_FALSE(Alloc(0, 0, 2, 3));
  EXPECT_EQ(stream->calls, "SRS");
  EXPECT_THAT(Buffer(6), ElementsAre(SampleAt(0, 0), SampleAt(1, 0), 0, 0, 0, 0));
}

TEST_F(RawBandTest, AnExceptionOfAnyTypeIsCaught) {
  SetUpBand(2, 3);
  stream->throwsAnInt = true;
  stream->throwingRead = 0;
  EXPECT_FALSE(Alloc(0, 0, 2, 3));
  stream->Forget();
  stream->throwingRead = -1;
  stream->throwingSetPos = 0;
  EXPECT_FALSE(Alloc(0, 0, 2, 3));
}

TEST_F(RawBandTest, APositioningThatIsRefusedFailsTheRead) {
  SetUpBand(2, 3);
  stream->refusedSetPos = 1;
  EXPECT_FALSE(Alloc(0, 0, 2, 3));
  EXPECT_EQ(stream->reads.size(), 1u);
  EXPECT_THAT(Buffer(6), ElementsAre(SampleAt(0, 0), SampleAt(1, 0), 0, 0, 0, 0));
}

TEST_F(RawBandTest, AFailingStreamGivesNothingWrittenAndLeavesTheOutputUntouched) {
  SetUpBand(4, 4, kBig);
  for (int row = 0; row < 4; ++row) {
    for (int* failure : {&stream->shortRead, &stream->throwingRead, &stream->throwingSetPos,
                         &stream->refusedSetPos}) {
      stream->Forget();
      *failure = row;
      Output out(4, 8);
      EXPECT_EQ(band.GetRect(out.Buffer(), Request(0, 0, 4, 4), iqNearest, 0, nullptr), 2);
      EXPECT_TRUE(out.Untouched());
      *failure = -1;
    }
  }
}

TEST_F(RawBandTest, AReaderServesRequestsAgainOnceItsStreamDoes) {
  SetUpBand(4, 4, kBig);
  stream->throwingRead = 0;
  EXPECT_FALSE(Alloc(0, 0, 4, 4));
  stream->throwingRead = -1;
  EXPECT_TRUE(Alloc(0, 0, 4, 4));
  EXPECT_EQ(band.readBuffer[15], SampleAt(3, 3));
}

TEST_F(RawBandTest, WhatTheStreamSaysOfItsSizeIsNotLookedAt) {
  SetUpBand(4, 4);
  stream->claimedSize = 0;
  EXPECT_TRUE(Alloc(0, 0, 4, 4));
  stream->claimedSize = std::numeric_limits<unsigned long>::max();
  stream->bytes.resize(16);
  EXPECT_FALSE(Alloc(0, 0, 4, 4));
  EXPECT_TRUE(Alloc(0, 0, 4, 2));
}

TEST_F(RawBandTest, AStreamThatBoastsOfMoreBytesThanAskedIsTakenAtTheAskedCount) {
  SetUpBand(3, 2);
  stream->boast = 1000000;
  EXPECT_TRUE(Alloc(0, 0, 3, 2));
  EXPECT_THAT(Buffer(6), ElementsAre(SampleAt(0, 0), SampleAt(1, 0), SampleAt(2, 0), SampleAt(0, 1),
                                     SampleAt(1, 1), SampleAt(2, 1)));
}

TEST_F(RawBandTest, AFileCutAtAnyByteServesExactlyTheRowsThatAreWhole) {
  const std::string whole = FileOf(5, 4, kBig);
  ASSERT_TRUE(band.Setup(reference, 5, 4, kBig));
  for (std::size_t cut = 0; cut <= whole.size(); ++cut) {
    stream->bytes = whole.substr(0, cut);
    for (long rows = 1; rows <= 4; ++rows) {
      Output out(4, 10);
      const int result =
          band.GetRect(out.Buffer(), Request(0, static_cast<double>(4 - rows), 5, double(rows)),
                       iqNearest, 0, nullptr);
      ASSERT_EQ(result, cut >= static_cast<std::size_t>(rows) * 10 ? 3 : 2) << cut << ' ' << rows;
      ASSERT_EQ(out.Untouched(), result == 2);
    }
  }
}

TEST_F(RawBandTest, ARequestBeyondTheEndOfAShortFileFailsAndOneBeforeItDoesNot) {
  SetUpBand(4, 4);
  stream->bytes.resize(4 * 2 * 2 + 4);
  EXPECT_TRUE(Alloc(0, 2, 2, 1));
  EXPECT_FALSE(Alloc(2, 2, 2, 1));
  EXPECT_FALSE(Alloc(0, 3, 1, 1));
}

TEST_F(RawBandTest, ABigEndianFileYieldsItsFirstTwoBytesHighByteFirst) {
  stream->bytes.assign("\x12\x34\x56\x78", 4);
  ASSERT_TRUE(band.Setup(reference, 1, 2, kBig));
  Output out(1, 2);
  EXPECT_EQ(band.GetRect(out.Buffer(), Request(0, 1, 1, 1), iqNearest, 0, nullptr), 3);
  EXPECT_EQ(out.Word(0, 0), 0x1234);
}

TEST_F(RawBandTest, ALittleEndianFileYieldsItsFirstTwoBytesLowByteFirst) {
  stream->bytes.assign("\x12\x34\x56\x78", 4);
  ASSERT_TRUE(band.Setup(reference, 1, 2, kLittle));
  Output out(1, 2);
  EXPECT_EQ(band.GetRect(out.Buffer(), Request(0, 1, 1, 1), iqNearest, 0, nullptr), 3);
  EXPECT_EQ(out.Word(0, 0), 0x3412);
}

TEST_F(RawBandTest, EverySampleOfABigEndianBlockIsSwapped) {
  for (long w = 1; w <= 40; ++w) {
    OpenRawWord fresh;
    stream->bytes = FileOf(40, 3, kBig);
    ASSERT_TRUE(fresh.Setup(reference, 40, 3, kBig));
    long pos[] = {40 - w, 0};
    long size[] = {w, 3};
    ASSERT_TRUE(fresh.AllocReadData(pos, size));
    for (long i = 0; i < 3 * w; ++i) {
      ASSERT_EQ(fresh.readBuffer[i], SampleAt(40 - w + i % w, i / w)) << w << ' ' << i;
    }
  }
}

TEST_F(RawBandTest, AByteOrderThatIsNeitherBehavesLikeLittleEndian) {
  for (int order : {2, -1, 1000, 0x100}) {
    OpenRawWord fresh;
    stream->bytes = FileOf(3, 1, kLittle);
    ASSERT_TRUE(fresh.Setup(reference, 3, 1, static_cast<TRawWordDibData::TBytesOrder>(order)));
    EXPECT_EQ(fresh.bytesOrder, order);
    long pos[] = {0, 0};
    long size[] = {3, 1};
    ASSERT_TRUE(fresh.AllocReadData(pos, size));
    EXPECT_EQ(fresh.readBuffer[2], SampleAt(2, 0));
  }
}

TEST_F(RawBandTest, TheByteOrderCountsAtTheMomentOfTheRead) {
  SetUpBand(3, 1, kBig);
  band.bytesOrder = kLittle;
  ASSERT_TRUE(Alloc(0, 0, 3, 1));
  EXPECT_EQ(band.readBuffer[0], Swapped(SampleAt(0, 0)));
}

TEST_F(RawBandTest, TheGenericReaderUsesSamplesAsTheyAreRead) {
  OpenRaw raw;
  stream->bytes = FileOf(3, 2, kBig);
  ASSERT_TRUE(raw.Setup(reference, 3, 2));
  long pos[] = {0, 0};
  long size[] = {3, 2};
  ASSERT_TRUE(raw.AllocReadData(pos, size));
  EXPECT_EQ(raw.GetReadBuffer()[4], Swapped(SampleAt(1, 1)));
}

TEST_F(RawBandTest, TheGenericReaderIsEmptyUntilASetupSucceeds) {
  OpenRaw raw;
  EXPECT_FALSE(static_cast<bool>(raw.stream));
  EXPECT_EQ(raw.rowCache, nullptr);
  EXPECT_EQ(raw.rowCacheSize, 0u);
  EXPECT_FALSE(raw.Setup(reference, 3, 0));
  EXPECT_FALSE(raw.Setup(StreamReference(), 3, 2));
  EXPECT_EQ(raw.width, 0);
  EXPECT_TRUE(raw.Setup(reference, 3, 2));
  EXPECT_EQ(raw.height, 2);
  EXPECT_THAT(raw.channels.kinds, ElementsAre(1));
}

TEST_F(RawBandTest, PurgingLetsTheStreamPurgeAndKeepsTheBuffers) {
  SetUpBand(4, 3);
  ASSERT_TRUE(Alloc(0, 0, 4, 3));
  stream->Forget();
  const unsigned short* buffer = band.readBuffer;
  const unsigned short* cache = band.rowCache;
  band.PurgeCache();
  EXPECT_EQ(stream->calls, "P");
  EXPECT_EQ(band.readBuffer, buffer);
  EXPECT_EQ(band.readBufferSize, 12);
  EXPECT_EQ(band.rowCache, cache);
  EXPECT_EQ(band.rowCacheSize, 8u);
}

TEST_F(RawBandTest, AStreamThatThrowsWhenPurgedIsCaught) {
  SetUpBand(4, 3);
  stream->throwsInPurge = true;
  EXPECT_NO_THROW(band.PurgeCache());
  stream->throwsAnInt = true;
  EXPECT_NO_THROW(band.PurgeCache());
  EXPECT_EQ(stream->purges, 2);
}

TEST_F(RawBandTest, PurgingAnEmptyReaderDoesNothing) {
  band.PurgeCache();
  ExpectEmpty();
}

TEST_F(RawBandTest, DestroyingTheReaderReleasesTheStream) {
  {
    TRawWordDibData brief;
    ASSERT_TRUE(brief.Setup(reference, 4, 3, kLittle));
    EXPECT_EQ(reference.use_count(), 2);
  }
  EXPECT_EQ(reference.use_count(), 1);
}

TEST_F(RawBandTest, DestroyingTheReaderFreesItsBuffers) {
  stream->bytes = FileOf(4, 3, kLittle);
  const long before = raster_test::LiveArrays();
  {
    TRawWordDibData brief;
    ASSERT_TRUE(brief.Setup(reference, 4, 3, kLittle));
    long pos[] = {0, 0};
    long size[] = {4, 3};
    ASSERT_TRUE(brief.AllocReadData(pos, size));
    EXPECT_EQ(raster_test::LiveArrays(), before + 2);
  }
  EXPECT_EQ(raster_test::LiveArrays(), before);
}

/// Notes how many arrays there are when it goes.
class DyingStream : public TKvMemoryStream {
 public:
  explicit DyingStream(long* arrays) : TKvMemoryStream(FileOf(4, 3, kLittle)), arrays_(arrays) {}
  ~DyingStream() override { *arrays_ = raster_test::LiveArrays(); }

 private:
  long* arrays_;
};

/// Sets the reader up with such a stream and makes it allocate both buffers.
void ReadFromDyingStream(TRawWordDibData& reader, long* arrays) {
  ASSERT_TRUE(reader.Setup(StreamReference(new DyingStream(arrays)), 4, 3, kLittle));
  long pos[] = {0, 0};
  long size[] = {4, 3};
  ASSERT_TRUE(reader.AllocReadData(pos, size));
}

TEST_F(RawBandTest, DestroyingTheReaderReleasesTheStreamBeforeItsBuffers) {
  const long before = raster_test::LiveArrays();
  long arrays = -1;
  {
    TRawWordDibData brief;
    ReadFromDyingStream(brief, &arrays);
  }
  EXPECT_EQ(arrays, before + 2);
}

TEST_F(RawBandTest, ASetupReleasesTheStreamHeldBeforeTheRowCache) {
  const long before = raster_test::LiveArrays();
  long arrays = -1;
  ReadFromDyingStream(band, &arrays);
  EXPECT_TRUE(band.Setup(reference, 4, 3, kLittle));
  EXPECT_EQ(arrays, before + 2);
}

TEST_F(RawBandTest, ReadersMayShareOneStream) {
  SetUpBand(4, 3);
  OpenRawWord other;
  ASSERT_TRUE(other.Setup(reference, 3, 4, kLittle));
  ASSERT_TRUE(Alloc(1, 1, 2, 1));
  long pos[] = {0, 1};
  long size[] = {2, 1};
  ASSERT_TRUE(other.AllocReadData(pos, size));
  ASSERT_TRUE(Alloc(2, 2, 1, 1));
  EXPECT_EQ(other.readBuffer[0], SampleAt(3, 0));
  EXPECT_EQ(band.readBuffer[0], SampleAt(2, 2));
}

TEST_F(RawBandTest, PositionsBeyondFourGibibytesAreExact) {
  stream->endless = true;
  ASSERT_TRUE(band.Setup(reference, 1UL << 33, 1UL << 20, kLittle));
  Output out(1, 4);
  EXPECT_EQ(band.GetRect(out.Buffer(), Request(8589934590.0, 0, 2, 1), iqNearest, 0, nullptr), 3);
  EXPECT_THAT(stream->reads, ElementsAre(Transfer{((1UL << 53) - 2) * 2, 4}));
}

TEST_F(RawBandTest, APositionThatDoesNotFitIntoSixtyFourBitsIsAFailedRead) {
  stream->endless = true;
  ASSERT_TRUE(band.Setup(reference, 1UL << 40, 1UL << 40, kLittle));
  Output out(1, 4);
  EXPECT_EQ(band.GetRect(out.Buffer(), Request(5, 0, 2, 1), iqNearest, 0, nullptr), 2);
  EXPECT_THAT(stream->reads, IsEmpty());
  EXPECT_TRUE(out.Untouched());
}

TEST_F(RawBandTest, ABlockWhoseBytesDoNotFitIntoSixtyFourBitsIsAFailedRead) {
  stream->endless = true;
  ASSERT_TRUE(band.Setup(reference, 1UL << 40, 1UL << 40, kLittle));
  EXPECT_FALSE(Alloc(0, 0, 1L << 40, 1L << 40));
  EXPECT_FALSE(Alloc(0, 0, 1L << 32, 1L << 31));
  EXPECT_FALSE(Alloc(0, 0, 1L << 32, 1L << 32));
  EXPECT_EQ(stream->calls, "");
}

TEST_F(RawBandTest, ASizeBeyondTheSignedRangeServesNoPixel) {
  stream->endless = true;
  Output out(2, 8);
  band.Setup(reference, std::numeric_limits<unsigned long>::max(), 1UL << 63, kLittle);
  EXPECT_EQ(band.GetRect(out.Buffer(), Request(0, 0, 2, 2), iqNearest, 0, nullptr), 2);
  EXPECT_EQ(stream->calls, "");
  EXPECT_TRUE(out.Untouched());
}

TEST_F(RawBandTest, AReadBeyondWhatTheReadBufferHoldsStaysInsideIt) {
  SetUpBand(4, 4, kBig);
  Read(0, 0, 4, 4);
  ASSERT_TRUE(Alloc(0, 0, 2, 1));
  Read(0, 0, 4, 4);
  EXPECT_EQ(band.readBufferSize, 2);
}

TEST_F(RawBandTest, AnyAllocationThatFailsInASetupLeavesTheReaderEmpty) {
  bool taken = false;
  long n = 0;
  for (; !taken && n < 20; ++n) {
    OpenRawWord fresh;
    bool happened = false;
    {
      AllocationFailure failure(n);
      taken = fresh.Setup(reference, 7, 5, kLittle);
      happened = failure.Happened();
    }
    EXPECT_NE(taken, happened);
    if (taken) continue;
    EXPECT_FALSE(fresh.stream);
    EXPECT_EQ(reference.use_count(), 1);
    EXPECT_EQ(fresh.width, 0);
    EXPECT_EQ(fresh.height, 0);
    EXPECT_EQ(fresh.bandsCount, 0);
    EXPECT_TRUE(fresh.channels.kinds.empty());
    EXPECT_EQ(fresh.GetAllLevels(nullptr), 0u);
    EXPECT_EQ(fresh.readBuffer, nullptr);
    EXPECT_EQ(fresh.rowCache, nullptr);
  }
  EXPECT_TRUE(taken);
  EXPECT_EQ(n, 3);
}

TEST_F(RawBandTest, AnyAllocationThatFailsInARequestGivesTwo) {
  reference = StreamReference(new TKvMemoryStream(std::string(70, 'x')));
  int result = 2;
  long n = 0;
  for (; result == 2 && n < 20; ++n) {
    OpenRawWord fresh;
    ASSERT_TRUE(fresh.Setup(reference, 7, 5, kLittle));
    Output out(5, 14);
    const TKvDibDataOutBuffer buffer = out.Buffer();
    {
      AllocationFailure failure(n);
      result = fresh.GetRect(buffer, Request(0, 0, 7, 5), iqNearest, 0, nullptr);
    }
    EXPECT_EQ(out.Untouched(), result == 2);
  }
  EXPECT_EQ(result, 3);
  EXPECT_EQ(n, 3);
}

TEST_F(RawBandTest, ABandsCountThatDoesNotMatchTheKindsStaysInsideTheBuffers) {
  SetUpBand(4, 4, kBig);
  for (long bands : {0L, 2L, 5L, -1L}) {
    OpenRawWord odd;
    ASSERT_TRUE(odd.Setup(reference, 4, 4, kBig));
    odd.bandsCount = bands;
    std::vector<unsigned char> room(4096, Output::kGuard);
    odd.GetRect({room.data() + 2048, 64}, Request(0, 0, 4, 4), iqNearest, 0, nullptr);
    for (std::size_t i = 0; i < 2048; ++i) ASSERT_EQ(room[i], Output::kGuard);
  }
}

TEST_F(RawBandTest, AMemoryStreamOfTheFrameworkIsReadLikeAnyOther) {
  StreamReference memory(new TKvMemoryStream(FileOf(6, 5, kBig)));
  ASSERT_TRUE(band.Setup(memory, 6, 5, kBig));
  Output out(5, 12);
  EXPECT_EQ(band.GetRect(out.Buffer(), Request(0, 0, 6, 5), iqBilinear, 9, nullptr), 3);
  for (long y = 0; y < 5; ++y) {
    for (long x = 0; x < 6; ++x) EXPECT_EQ(out.Word(y, x), SampleAt(x, 4 - y));
  }
}

/// A raw band read from a real file, with the services up or down.
class RawBandFileTest : public RawBandTest, public ::testing::WithParamInterface<bool> {
 protected:
  RawBandFileTest() {
    if (GetParam()) Init_KvServices();
  }
  ~RawBandFileTest() override { Deinit_KvServices(); }

  StreamReference Open(long width, long height, TRawWordDibData::TBytesOrder order) {
    path = folder.Write("band.raw", FileOf(width, height, order));
    return StreamReference(new TKvFileStream(TKvPath(path), kvOpenRead, kvShareAll));
  }
  TempFolder folder;
  std::string path;
};

INSTANTIATE_TEST_SUITE_P(Files, RawBandFileTest, ::testing::Values(false, true),
                         [](const ::testing::TestParamInfo<bool>& info) {
                           return info.param ? "ReadFromMappings" : "ReadByCalls";
                         });

TEST_P(RawBandFileTest, EveryWindowOfAFileHasItsSamples) {
  for (auto order : {kLittle, kBig}) {
    OpenRawWord fresh;
    ASSERT_TRUE(fresh.Setup(Open(23, 6, order), 23, 6, order));
    for (long w = 1; w <= 23; ++w) {
      for (long y = 0; y < 6; ++y) {
        Output out(6 - y, 2 * w);
        ASSERT_EQ(fresh.GetRect(out.Buffer(),
                                Request(static_cast<double>(23 - w), static_cast<double>(y),
                                        static_cast<double>(w), static_cast<double>(6 - y)),
                                iqNearest, 0, nullptr),
                  3);
        for (long row = 0; row < 6 - y; ++row) {
          for (long x = 0; x < w; ++x) {
            ASSERT_EQ(out.Word(row, x), SampleAt(23 - w + x, 5 - y - row)) << w << ' ' << y;
          }
        }
      }
    }
  }
}

TEST_P(RawBandFileTest, ARequestLeavesItsBlockInTheReadBuffer) {
  ASSERT_TRUE(band.Setup(Open(6, 5, kBig), 6, 5, kBig));
  Output out(2, 6);
  EXPECT_EQ(band.GetRect(out.Buffer(), Request(2, 1, 3, 2), iqNearest, 0, nullptr), 3);
  EXPECT_EQ(band.readBufferSize, 6);
  ASSERT_EQ(band.GetReadBuffer(), band.readBuffer);
  EXPECT_THAT(Buffer(6), ElementsAre(SampleAt(2, 2), SampleAt(3, 2), SampleAt(4, 2), SampleAt(2, 3),
                                     SampleAt(3, 3), SampleAt(4, 3)));
}

TEST_P(RawBandFileTest, AFileThatEndsInsideTheBlockLeavesItsWholeRowsUnswapped) {
  StreamReference file = Open(4, 4, kBig);
  std::filesystem::resize_file(path, 4 * 2 * 2 + 3);
  ASSERT_TRUE(band.Setup(file, 4, 4, kBig));
  EXPECT_FALSE(Alloc(1, 0, 2, 4));
  EXPECT_THAT(Buffer(8), ElementsAre(Swapped(SampleAt(1, 0)), Swapped(SampleAt(2, 0)),
                                     Swapped(SampleAt(1, 1)), Swapped(SampleAt(2, 1)), 0, 0, 0, 0));
  Output out(4, 8);
  EXPECT_EQ(band.GetRect(out.Buffer(), Request(0, 0, 4, 4), iqNearest, 0, nullptr), 2);
  EXPECT_TRUE(out.Untouched());
}

TEST_P(RawBandFileTest, AFileCutShortUnderTheReaderGivesNothingWritten) {
  ASSERT_TRUE(band.Setup(Open(1000, 100, kBig), 1000, 100, kBig));
  Output out(100, 2000);
  ASSERT_EQ(band.GetRect(out.Buffer(), Request(0, 0, 1000, 100), iqNearest, 0, nullptr), 3);
  std::filesystem::resize_file(path, 4096);
  Output none(100, 2000);
  EXPECT_EQ(band.GetRect(none.Buffer(), Request(0, 0, 1000, 100), iqNearest, 0, nullptr), 2);
  EXPECT_TRUE(none.Untouched());
  Output top(1, 2000);
  EXPECT_EQ(band.GetRect(top.Buffer(), Request(0, 99, 1000, 1), iqNearest, 0, nullptr), 3);
}

/// A host's stream on a file whose bytes it changes on their way.
class InvertingFile : public TKvFileStream {
 public:
  using TKvFileStream::TKvFileStream;
  unsigned long Read(void* buffer, unsigned long count) override {
    const unsigned long got = TKvFileStream::Read(buffer, count);
    auto* bytes = static_cast<unsigned char*>(buffer);
    for (unsigned long i = 0; i < got; ++i) bytes[i] = static_cast<unsigned char>(~bytes[i]);
    return got;
  }
};

TEST_P(RawBandFileTest, AStreamThatDerivesFromAFileIsReadThroughItsOwnRead) {
  Open(6, 5, kLittle);
  StreamReference inverting(new InvertingFile(TKvPath(path), kvOpenRead, kvShareAll));
  ASSERT_TRUE(band.Setup(inverting, 6, 5, kLittle));
  Output out(5, 12);
  EXPECT_EQ(band.GetRect(out.Buffer(), Request(0, 0, 6, 5), iqNearest, 0, nullptr), 3);
  EXPECT_EQ(out.Word(4, 3), static_cast<unsigned short>(~SampleAt(3, 0)));
}

/// A host's band that fills its block itself.
class OwnReadData : public OpenRawWord {
 public:
  bool ReadData(long* pos, long* size) override {
    blocks += '.';
    for (long i = 0; i < size[0] * size[1]; ++i) {
      readBuffer[i] = static_cast<unsigned short>(100 * pos[1] + pos[0] + i);
    }
    return true;
  }
  std::string blocks;
};

TEST_P(RawBandFileTest, ABandThatOverridesReadDataIsServedByIt) {
  OwnReadData own;
  ASSERT_TRUE(own.Setup(Open(6, 5, kBig), 6, 5, kBig));
  Output out(1, 6);
  EXPECT_EQ(own.GetRect(out.Buffer(), Request(2, 1, 3, 1), iqNearest, 0, nullptr), 3);
  EXPECT_EQ(own.blocks, ".");
  EXPECT_EQ(out.Word(0, 0), 302);
  EXPECT_EQ(out.Word(0, 2), 304);
}

}  // namespace
