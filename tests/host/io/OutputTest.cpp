#include "host/io/Output.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/UsageError.h"
#include "host/support/ErrorOf.h"
#include "host/support/PixelRaster.h"
#include "host/support/Samples.h"
#include "support/TempFolder.h"

namespace {

using ravelin::OutputArguments;
using ravelin::OutputFormat;
using ravelin::OutputPlan;
using ravelin::PlanOutput;
using ravelin::StretchKind;
using ravelin::UsageError;

OutputPlan PlanOf(const std::string& output, const std::string& stretch = "",
                  const std::string& bits = "") {
  return PlanOutput({output, "", stretch, bits});
}

TEST(Output, TellsTheFormatByTheEndingInAnyCase) {
  EXPECT_EQ(PlanOf("a.png").format, OutputFormat::kPng);
  EXPECT_EQ(PlanOf("a.PNG").format, OutputFormat::kPng);
  EXPECT_EQ(PlanOf("a.Bip").format, OutputFormat::kBip);
}

TEST(Output, RefusesOtherEndings) {
  for (const char* name : {"", "a", "a.tif", "png", "a.png.gz", "-"}) {
    EXPECT_THROW(PlanOf(name), UsageError) << name;
  }
}

TEST(Output, StretchesByPercentilesToEightBitsByDefault) {
  const OutputPlan plan = PlanOf("a.png");
  EXPECT_EQ(plan.picture.stretch.kind, StretchKind::kPercentiles);
  EXPECT_EQ(plan.picture.bits, 8);
  EXPECT_FALSE(plan.area);
}

TEST(Output, TakesLimitsOfTheStretch) {
  const ravelin::Stretch stretch = PlanOf("a.png", "0,65535").picture.stretch;
  EXPECT_EQ(stretch.kind, StretchKind::kFixed);
  EXPECT_EQ(stretch.low, 0);
  EXPECT_EQ(stretch.high, 65535);
}

TEST(Output, TakesNoStretch) {
  EXPECT_EQ(PlanOf("a.png", "none").picture.stretch.kind, StretchKind::kNone);
}

TEST(Output, RefusesOtherStretches) {
  for (const char* text :
       {"1", "1,", ",1", "2,1", "1,1", "-1,5", "0,65536", "1,2,3", "None", "a,b"}) {
    EXPECT_THROW(PlanOf("a.png", text), UsageError) << text;
  }
}

TEST(Output, TakesEightOrSixteenBits) {
  EXPECT_EQ(PlanOf("a.png", "", "8").picture.bits, 8);
  EXPECT_EQ(PlanOf("a.png", "", "16").picture.bits, 16);
}

TEST(Output, RefusesPictureOptionsForInterleavedFiles) {
  EXPECT_THROW(PlanOf("a.bip", "none"), UsageError);
  EXPECT_THROW(PlanOf("a.bip", "", "16"), UsageError);
}

TEST(Output, RefusesAMalformedArea) {
  EXPECT_THROW(PlanOutput({"a.png", "1,2,3", "", ""}), UsageError);
}

TEST(Output, WritesTheAreaAskedFor) {
  TempFolder folder;
  const Samples pixels = RandomSamples(9 * 8 * 2, 3);
  PixelRaster raster(9, 8, 2, pixels);
  const OutputPlan plan = PlanOutput({folder / "a.bip", "2,1,5,4", "", ""});
  ravelin::WriteOutput({raster, 0, {"a", "b"}}, plan);
  EXPECT_EQ(folder.Read("a.bip"), LittleBytes(Cut(pixels, 9, 2, 2, 1, 5, 4)));
}

TEST(Output, RefusesAnAreaOutsideTheImage) {
  TempFolder folder;
  PixelRaster raster(9, 8, 1, Samples(72));
  const OutputPlan plan = PlanOutput({folder / "a.bip", "2,1,8,4", "", ""});
  EXPECT_EQ(
      ErrorOf([&] {
        ravelin::WriteOutput({raster, 0, {"a"}}, plan);
      }),
      "--rect: does not lie inside the image of 9 x 8 pixels; give X,Y,W,H with X + W up to 9 "
      "and Y + H up to 8");
  EXPECT_THAT(folder.Names(), testing::IsEmpty());
}

}  // namespace
