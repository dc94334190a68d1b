#include <gmock/gmock.h>

#include <limits>
#include <stdexcept>

#include "raster/RasterTest.h"

namespace {

using raster_test::Output;
using raster_test::RasterTest;
using raster_test::Request;
using SatCommonUtils::TPushbroomDibDataEnvelope;
using SatCommonUtils::TVisibleBandsOrder;
using ::testing::ElementsAre;
using RasterReference = var_a_legacy::var_a<TKvDibData*>;

/// A framework raster that is no multi-scale raster; records requests and throws on demand.
class ForeignRaster : public TKvDibData {
 public:
  TKvDibRect bounds = Request(0, 0, 100, 70);
  TKvDibChannels channels = {5, 2, {6, 4, 3}};
  std::vector<TKvDibRect> levels = {Request(0, 0, 100, 70, 1), Request(0, 0, 100, 70, 2),
                                    Request(0, 0, 100, 70, 4)};
  std::string throwsIn;
  int result = kvDibWritten;

  struct Call {
    TKvDibDataOutBuffer out;
    TKvDibRect rect;
    TInterpolationQuality quality;
    int param;
    TKvProgressHandler* progress;
  };
  std::vector<Call> calls;
  mutable std::vector<std::string> asked;  ///< the operations asked, in order
  int purges = 0;
  bool* destroyed = nullptr;

  ~ForeignRaster() override {
    if (destroyed != nullptr) *destroyed = true;
  }

  TKvDibRect Bounds() const override {
    MayThrow("Bounds");
    return bounds;
  }
  const TKvDibChannels& Channels() const override {
    MayThrow("Channels");
    return channels;
  }
  unsigned long GetInterpolationLevel(const TKvDibRect&, const TInterpolationQuality&,
                                      bool*) const override {
    return 0;
  }
  int GetRect(const TKvDibDataOutBuffer& out, const TKvDibRect& rect,
              const TInterpolationQuality& quality, int param,
              TKvProgressHandler* progress) override {
    calls.push_back({out, rect, quality, param, progress});
    MayThrow("GetRect");
    return result;
  }
  void PurgeCache() override { ++purges; }
  unsigned long GetAllLevels(std::vector<TKvDibRect>* list) const override {
    MayThrow("GetAllLevels");
    if (list != nullptr) *list = levels;
    return levels.size();
  }
  vec_t_<unsigned long, 2> GetScaleDimensions(unsigned long) const override { return {{0, 0}}; }

 private:
  void MayThrow(const char* place) const {
    asked.emplace_back(place);
    if (throwsIn == place) throw std::out_of_range(place);
  }
};

class EnvelopeTest : public RasterTest {
 protected:
  EnvelopeTest() : raster(new ForeignRaster), reference(raster) {}
  ForeignRaster* raster;
  RasterReference reference;
};

TEST_F(EnvelopeTest, AnEnvelopeHasTheSizeOfTheRaster) {
  TPushbroomDibDataEnvelope envelope(reference, "b", false);
  EXPECT_EQ(envelope.width, 100);
  EXPECT_EQ(envelope.height, 70);
}

TEST_F(EnvelopeTest, TheSizeIsTheSizePartOfTheBoundsWhereverTheyStart) {
  raster->bounds = Request(40, 50, 100, 70);
  TPushbroomDibDataEnvelope envelope(reference, "b", false);
  EXPECT_EQ(envelope.width, 100);
  EXPECT_EQ(envelope.height, 70);
}

TEST_F(EnvelopeTest, SizeChannelsAndLevelsAreAskedForOnceInThisOrder) {
  TPushbroomDibDataEnvelope envelope(reference, "b", false);
  envelope.Channels();
  envelope.Bounds();
  EXPECT_THAT(raster->asked, ElementsAre("Bounds", "Channels", "GetAllLevels"));
}

TEST_F(EnvelopeTest, ASizeThatIsNotWholeLosesItsFraction) {
  raster->bounds = Request(0, 0, 100.75, 70.5);
  TPushbroomDibDataEnvelope envelope(reference, "b", false);
  EXPECT_EQ(envelope.width, 100);
  EXPECT_EQ(envelope.height, 70);
}

TEST_F(EnvelopeTest, ASizeThatNoIntegerHoldsIsNoneOrTheGreatest) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  raster->bounds = Request(0, 0, std::numeric_limits<double>::quiet_NaN(), infinity);
  TPushbroomDibDataEnvelope envelope(reference, "b", false);
  EXPECT_EQ(envelope.width, 0);
  EXPECT_EQ(envelope.height, 1L << 62);
}

TEST_F(EnvelopeTest, AnEnvelopeCopiesTheWholeChannelDescription) {
  TPushbroomDibDataEnvelope envelope(reference, "b", false);
  EXPECT_EQ(envelope.channels.sampleType, 5);
  EXPECT_EQ(envelope.channels.sampleSize, 2u);
  EXPECT_THAT(envelope.channels.kinds, ElementsAre(6, 4, 3));
  EXPECT_EQ(&envelope.Channels(), &envelope.channels);
}

TEST_F(EnvelopeTest, AnEnvelopeHasABandForEveryKindCopied) {
  EXPECT_EQ(TPushbroomDibDataEnvelope(reference, "b", false).bandsCount, 3);
  raster->channels.kinds = {1, 2, 3, 4, 5};
  EXPECT_EQ(TPushbroomDibDataEnvelope(reference, "b", false).bandsCount, 5);
  raster->channels.kinds.clear();
  EXPECT_EQ(TPushbroomDibDataEnvelope(reference, "b", false).bandsCount, 0);
}

TEST_F(EnvelopeTest, AnEnvelopeCarriesNameAndFlagOfTheHost) {
  TPushbroomDibDataEnvelope first(reference, "near infrared", true);
  EXPECT_EQ(first.bandName, "near infrared");
  EXPECT_TRUE(first.bandFlag);
  TPushbroomDibDataEnvelope second(reference, "", false);
  EXPECT_EQ(second.bandName, "");
  EXPECT_FALSE(second.bandFlag);
}

TEST_F(EnvelopeTest, AnEnvelopeHasTheLevelBoundsOfTheRaster) {
  raster->levels = {Request(0, 0, 100, 70, 1), Request(1, 2, 98, 66, 3)};
  TPushbroomDibDataEnvelope envelope(reference, "b", false);
  std::vector<TKvDibRect> levels;
  EXPECT_EQ(envelope.GetAllLevels(nullptr), 2u);
  ASSERT_EQ(envelope.GetAllLevels(&levels), 2u);
  EXPECT_TRUE(raster_test::operator==(levels[0], Request(0, 0, 100, 70, 1)));
  EXPECT_TRUE(raster_test::operator==(levels[1], Request(1, 2, 98, 66, 3)));
}

TEST_F(EnvelopeTest, LevelArithmeticAnswersAsForTheRaster) {
  const TKvDibChannels grey = {1, 2, {1}};
  auto* memory = new TKvMemoryDibData(101, 77, grey, 4);
  TPushbroomDibDataEnvelope envelope(RasterReference(memory), "b", false);
  for (double scale : {1.0, 2.0, 3.0, 4.0, 8.0}) {
    for (double x : {-13.0, 0.0, 5.5, 90.0}) {
      TKvDibRectI fromEnvelope, fromRaster;
      const TKvDibRect rect = Request(x, 3, 31, 17.25, scale);
      EXPECT_EQ(envelope.Rect2RectI(rect, iqNearest, 0, &fromEnvelope, true),
                memory->Rect2RectI(rect, iqNearest, 0, &fromRaster, true));
      EXPECT_EQ(fromEnvelope.x, fromRaster.x);
      EXPECT_EQ(fromEnvelope.y, fromRaster.y);
      EXPECT_EQ(fromEnvelope.w, fromRaster.w);
      EXPECT_EQ(fromEnvelope.h, fromRaster.h);
    }
  }
  for (unsigned long level = 0; level < 5; ++level) {
    EXPECT_EQ(envelope.GetScaleDimensions(level), memory->GetScaleDimensions(level));
  }
}

TEST_F(EnvelopeTest, TheCopiesAreTakenOnce) {
  TPushbroomDibDataEnvelope envelope(reference, "b", false);
  raster->bounds = Request(0, 0, 1, 1);
  raster->channels = {9, 8, {1}};
  raster->levels.clear();
  EXPECT_EQ(envelope.width, 100);
  EXPECT_EQ(envelope.height, 70);
  EXPECT_EQ(envelope.bandsCount, 3);
  EXPECT_EQ(envelope.channels.sampleType, 5);
  EXPECT_EQ(envelope.channels.sampleSize, 2u);
  EXPECT_THAT(envelope.channels.kinds, ElementsAre(6, 4, 3));
  EXPECT_EQ(envelope.GetAllLevels(nullptr), 3u);
}

TEST_F(EnvelopeTest, ChangingTheEnvelopesKindsLeavesTheRastersAlone) {
  TPushbroomDibDataEnvelope envelope(reference, "b", false);
  const TVisibleBandsOrder order = {2, 1, 0};
  EXPECT_TRUE(envelope.SetVisibleBandsOrder(&order));
  EXPECT_THAT(envelope.channels.kinds, ElementsAre(3, 4, 6));
  EXPECT_THAT(raster->channels.kinds, ElementsAre(6, 4, 3));
}

TEST_F(EnvelopeTest, ARequestReachesTheRasterWithTheSameFiveArguments) {
  TPushbroomDibDataEnvelope envelope(reference, "b", false);
  raster_test::NoProgressWanted progress;
  unsigned char byte = 0;
  const TKvDibRect rect = Request(-3.5, 200.25, 7, 1e6, 16);
  envelope.GetRect({&byte, -12345}, rect, iqBilinear, -77, &progress);
  ASSERT_EQ(raster->calls.size(), 1u);
  const ForeignRaster::Call& call = raster->calls[0];
  EXPECT_EQ(call.out.data, &byte);
  EXPECT_EQ(call.out.stride, -12345);
  EXPECT_TRUE(raster_test::operator==(call.rect, rect));
  EXPECT_EQ(call.quality, iqBilinear);
  EXPECT_EQ(call.param, -77);
  EXPECT_EQ(call.progress, &progress);
}

TEST_F(EnvelopeTest, RequestsOfEveryScaleAreForwarded) {
  TPushbroomDibDataEnvelope envelope(reference, "b", false);
  for (double scale : {0.0, 0.5, 1.0, 2.0, 1024.0, -1.0}) {
    EXPECT_EQ(envelope.GetRect({nullptr, 0}, Request(0, 0, 0, 0, scale), iqNearest, 0, nullptr), 3);
  }
  EXPECT_EQ(raster->calls.size(), 6u);
}

TEST_F(EnvelopeTest, TheResultOfTheRasterIsReturnedUnchanged) {
  TPushbroomDibDataEnvelope envelope(reference, "b", false);
  for (int result : {0, 1, 2, 3, 4, 7, -1, 123456}) {
    raster->result = result;
    EXPECT_EQ(envelope.GetRect({nullptr, 0}, Request(0, 0, 1, 1), iqNearest, 0, nullptr), result);
  }
}

TEST_F(EnvelopeTest, AnExceptionOfTheRasterPassesUnchanged) {
  TPushbroomDibDataEnvelope envelope(reference, "b", false);
  raster->throwsIn = "GetRect";
  try {
    envelope.GetRect({nullptr, 0}, Request(0, 0, 1, 1), iqNearest, 0, nullptr);
    FAIL() << "no exception";
  } catch (const std::out_of_range& error) {
    EXPECT_STREQ(error.what(), "GetRect");
  }
}

TEST_F(EnvelopeTest, PixelsOfTheRasterComeThrough) {
  const TKvDibChannels grey = {1, 2, {1}};
  auto* memory = new TKvMemoryDibData(3, 2, grey, 1);
  for (int i = 0; i < 12; ++i) memory->Pixels()[i] = static_cast<unsigned char>(i + 1);
  TPushbroomDibDataEnvelope envelope(RasterReference(memory), "b", false);
  Output out(2, 6);
  EXPECT_EQ(envelope.GetRect(out.Buffer(), Request(0, 0, 3, 2), iqNearest, 0, nullptr), 3);
  for (long i = 0; i < 12; ++i) EXPECT_EQ(out.At(i / 6, i % 6), i + 1);
}

TEST_F(EnvelopeTest, PurgingPurgesTheRaster) {
  TPushbroomDibDataEnvelope envelope(reference, "b", false);
  envelope.PurgeCache();
  envelope.PurgeCache();
  EXPECT_EQ(raster->purges, 2);
}

TEST_F(EnvelopeTest, PurgingAnEnvelopeWhoseRasterWasTakenAwayDoesNothing) {
  TPushbroomDibDataEnvelope envelope(reference, "b", false);
  envelope.data.reset();
  envelope.PurgeCache();
  EXPECT_EQ(raster->purges, 0);
}

TEST_F(EnvelopeTest, AnEnvelopeWithoutARasterHasNoPixels) {
  TPushbroomDibDataEnvelope envelope(reference, "b", false);
  envelope.data.reset();
  TPushbroomDibDataEnvelope empty(RasterReference(), "b", false);
  EXPECT_EQ(empty.width, 0);
  EXPECT_EQ(empty.GetAllLevels(nullptr), 0u);
  for (TPushbroomDibDataEnvelope* asked : {&envelope, &empty}) {
    Output out(2, 6);
    EXPECT_EQ(asked->GetRect(out.Buffer(), Request(0, 0, 3, 2), iqNearest, 0, nullptr), 2);
    EXPECT_TRUE(out.Untouched());
  }
}

TEST_F(EnvelopeTest, AnEnvelopeHasNoReadBufferOfItsOwn) {
  TPushbroomDibDataEnvelope envelope(reference, "b", false);
  long pos[] = {0, 0};
  long size[] = {1, 1};
  EXPECT_FALSE(envelope.AllocReadData(pos, size));
  EXPECT_EQ(envelope.GetReadBuffer(), nullptr);
}

TEST_F(EnvelopeTest, AnEnvelopeHoldsAReferenceAsLongAsItLives) {
  {
    TPushbroomDibDataEnvelope envelope(reference, "b", false);
    EXPECT_EQ(envelope.data.get(), raster);
    EXPECT_EQ(reference.use_count(), 2);
  }
  EXPECT_EQ(reference.use_count(), 1);
}

TEST_F(EnvelopeTest, TheRasterGoesWithTheLastReference) {
  bool destroyed = false;
  raster->destroyed = &destroyed;
  {
    TPushbroomDibDataEnvelope envelope(reference, "b", false);
    reference.reset();
    EXPECT_FALSE(destroyed);
  }
  EXPECT_TRUE(destroyed);
}

TEST_F(EnvelopeTest, ARasterThatThrowsDuringConstructionIsReleased) {
  for (const char* place : {"Bounds", "Channels", "GetAllLevels"}) {
    raster->throwsIn = place;
    try {
      TPushbroomDibDataEnvelope envelope(reference, "b", false);
      ADD_FAILURE() << "no exception from " << place;
    } catch (const std::out_of_range& error) {
      EXPECT_STREQ(error.what(), place);
    }
    EXPECT_EQ(reference.use_count(), 1) << place;
  }
}

TEST_F(EnvelopeTest, AnEnvelopeMayWrapAnEnvelope) {
  RasterReference inner(new TPushbroomDibDataEnvelope(reference, "inner", true));
  TPushbroomDibDataEnvelope outer(inner, "outer", false);
  EXPECT_EQ(outer.bandsCount, 3);
  EXPECT_EQ(outer.GetAllLevels(nullptr), 3u);
  outer.GetRect({nullptr, 0}, Request(1, 2, 3, 4), iqNearest, 5, nullptr);
  ASSERT_EQ(raster->calls.size(), 1u);
  EXPECT_EQ(raster->calls[0].param, 5);
}

}  // namespace
