#include "host/raster/BandArgument.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace {

using ravelin::BandArgument;
using ravelin::BandName;
using ravelin::ParseBandArgument;
using ravelin::ParseBandKey;
constexpr auto kLittle = SatCommonUtils::TRawWordDibData::boLittleEndian;
constexpr auto kBig = SatCommonUtils::TRawWordDibData::boBigEndian;

TEST(BandArgument, NamesTheVisibleChannelsByWord) {
  EXPECT_EQ(ParseBandKey("red"), 6);
  EXPECT_EQ(ParseBandKey("green"), 4);
  EXPECT_EQ(ParseBandKey("Blue"), 3);
}

TEST(BandArgument, TakesEveryThirtyTwoBitNumberAsKey) {
  EXPECT_EQ(ParseBandKey("0"), 0);
  EXPECT_EQ(ParseBandKey("-2147483648"), -2147483647 - 1);
  EXPECT_EQ(ParseBandKey("2147483647"), 2147483647);
}

TEST(BandArgument, RefusesOtherKeys) {
  for (const char* key : {"", "2147483648", "-2147483649", "1.5", "1 ", "rouge", "+1", "0x1"}) {
    EXPECT_THROW(ParseBandKey(key), std::invalid_argument) << key;
  }
}

TEST(BandArgument, IsLittleEndianUnlessToldOtherwise) {
  EXPECT_EQ(ParseBandArgument("1=a.raw").order, kLittle);
  EXPECT_EQ(ParseBandArgument("1=a.raw:little").order, kLittle);
  EXPECT_EQ(ParseBandArgument("1=a.raw:big").order, kBig);
}

TEST(BandArgument, KeepsColonsInTheName) {
  EXPECT_EQ(ParseBandArgument("1=c:x:y.raw").file, "c:x:y.raw");
  EXPECT_EQ(ParseBandArgument("1=a:huge").file, "a:huge");
}

TEST(BandArgument, TakesOnlyOneByteOrderOffTheEnd) {
  const BandArgument band = ParseBandArgument("1=a:big:little");
  EXPECT_EQ(band.file, "a:big");
  EXPECT_EQ(band.order, kLittle);
}

TEST(BandArgument, KeepsEqualsSignsInTheName) {
  EXPECT_EQ(ParseBandArgument("-7=a=b").file, "a=b");
  EXPECT_EQ(ParseBandArgument("-7=a=b").key, -7);
}

TEST(BandArgument, RefusesTextWithoutKeyOrFile) {
  for (const char* text : {"", "a.raw", "=a.raw", "1=", "1=:big", "red", "x=a.raw"}) {
    EXPECT_THROW(ParseBandArgument(text), std::invalid_argument) << text;
  }
}

TEST(BandArgument, NamesBandsForHeaders) {
  EXPECT_EQ(BandName(6), "Red");
  EXPECT_EQ(BandName(4), "Green");
  EXPECT_EQ(BandName(3), "Blue");
  EXPECT_EQ(BandName(-12), "Band -12");
}

}  // namespace
