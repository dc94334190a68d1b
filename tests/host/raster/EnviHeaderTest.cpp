#include "host/raster/EnviHeader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "host/HostError.h"
#include "host/support/ErrorOf.h"

namespace {

using ravelin::EnviHeader;
using ravelin::EnviHeaderPath;
using ravelin::FormatEnviHeader;
using ravelin::HostError;
using testing::ElementsAre;

EnviHeader Parse(const std::string& text) {
  return ravelin::ParseEnviHeader(text, "a.hdr");
}

std::string ErrorOf(const std::string& text) {
  return ::ErrorOf([&] { Parse(text); });
}

const std::string kSmall = "ENVI\nsamples = 4\nlines = 3\nbands = 2\ndata type = 12\n";

TEST(EnviHeader, IsWrittenInTheFormatsOwnWords) {
  EnviHeader header;
  header.samples = 4;
  header.lines = 3;
  header.bands = 2;
  header.bandNames = {"Red", "Band 7"};
  EXPECT_EQ(FormatEnviHeader(header),
            "ENVI\nsamples = 4\nlines = 3\nbands = 2\nheader offset = 0\n"
            "file type = ENVI Standard\ndata type = 12\ninterleave = bip\nbyte order = 0\n"
            "band names = {Red, Band 7}\n");
}

TEST(EnviHeader, ReadsWhatItWrites) {
  EnviHeader header;
  header.samples = 400;
  header.lines = 300;
  header.bands = 3;
  header.headerOffset = 17;
  header.byteOrder = 1;
  header.bandNames = {"Red", "Green", "Band -5"};
  const EnviHeader read = Parse(FormatEnviHeader(header));
  EXPECT_EQ(read.samples, 400u);
  EXPECT_EQ(read.lines, 300u);
  EXPECT_EQ(read.bands, 3u);
  EXPECT_EQ(read.headerOffset, 17u);
  EXPECT_EQ(read.dataType, 12);
  EXPECT_EQ(read.byteOrder, 1);
  EXPECT_EQ(read.interleave, "bip");
  EXPECT_THAT(read.bandNames, ElementsAre("Red", "Green", "Band -5"));
}

TEST(EnviHeader, TakesNamesInAnyCaseAndOrder) {
  const EnviHeader header =
      Parse("ENVI\nDATA TYPE=2\n  Bands  =  1\r\nLines = 7\nSAMPLES = 5\nInterleave = BSQ\n");
  EXPECT_EQ(header.dataType, 2);
  EXPECT_EQ(header.samples, 5u);
  EXPECT_EQ(header.lines, 7u);
  EXPECT_EQ(header.interleave, "bsq");
}

TEST(EnviHeader, PassesOverWhatItDoesNotKnow) {
  EXPECT_EQ(Parse(kSmall + "; a comment\n\nsensor type = none\nmap info = {UTM, 1,\n2}\n").lines,
            3u);
}

TEST(EnviHeader, ReadsValuesInBracesOverSeveralLines) {
  EXPECT_THAT(Parse(kSmall + "band names = {\n Red edge,\n Blue\n}\n").bandNames,
              ElementsAre("Red edge", "Blue"));
}

TEST(EnviHeader, DoesNotNeedAnEndOfItsLastLine) {
  EXPECT_EQ(Parse("ENVI\nsamples=4\nlines=3\nbands=2\ndata type=12").dataType, 12);
}

TEST(EnviHeader, BeginsWithItsMark) {
  EXPECT_EQ(ErrorOf("samples = 4\n"),
            "a.hdr: line 1: does not begin with ENVI; check that it is an ENVI header");
  EXPECT_THAT(ErrorOf(""), testing::HasSubstr("line 1"));
}

TEST(EnviHeader, NamesTheLineWithoutEqualsSign) {
  EXPECT_THAT(ErrorOf("ENVI\n\nsamples 4\n"), testing::HasSubstr("line 3: has no '='"));
}

TEST(EnviHeader, NamesTheLineOfABadNumber) {
  EXPECT_THAT(ErrorOf("ENVI\nsamples = four\n"),
              testing::HasSubstr("line 2: 'samples' is not a whole number from 0"));
  EXPECT_THAT(ErrorOf("ENVI\nsamples = -4\n"), testing::HasSubstr("line 2"));
  EXPECT_THAT(ErrorOf("ENVI\nlines = 99999999999999999999\n"), testing::HasSubstr("line 2"));
}

TEST(EnviHeader, NamesTheLineOfAnUnclosedBrace) {
  EXPECT_THAT(ErrorOf("ENVI\nsamples = 4\nband names = {a,\nb\n"),
              testing::HasSubstr("line 3: opens a brace that is not closed"));
}

TEST(EnviHeader, NamesWhatIsMissing) {
  EXPECT_THAT(ErrorOf("ENVI\nlines = 3\nbands = 2\ndata type = 12\n"),
              testing::HasSubstr("ends without 'samples'"));
  EXPECT_THAT(ErrorOf("ENVI\nsamples = 3\nlines = 3\nbands = 2\n"),
              testing::HasSubstr("ends without 'data type'"));
}

TEST(EnviHeader, CutAtAnyByteIsReadOrRefusedWithItsLine) {
  const std::string text = kSmall + "band names = {Red,\n Blue}\n";
  for (std::size_t length = 0; length < text.size(); ++length) {
    try {
      const EnviHeader header = Parse(text.substr(0, length));
      EXPECT_EQ(header.samples, 4u) << length;
      EXPECT_EQ(header.lines, 3u) << length;
    } catch (const HostError& error) {
      EXPECT_THAT(error.what(), testing::StartsWith("a.hdr: line ")) << length;
    }
  }
}

TEST(EnviHeader, KnowsTheSizesOfItsDataTypes) {
  EXPECT_EQ(ravelin::EnviSampleBytes(1), 1u);
  EXPECT_EQ(ravelin::EnviSampleBytes(12), 2u);
  EXPECT_EQ(ravelin::EnviSampleBytes(9), 16u);
  EXPECT_EQ(ravelin::EnviSampleBytes(7), 0u);
  EXPECT_EQ(ravelin::EnviTypeName(12), "unsigned 16-bit");
  EXPECT_EQ(ravelin::EnviTypeName(-1), "unknown");
}

TEST(EnviHeader, StandsBesideTheImage) {
  EXPECT_EQ(EnviHeaderPath("out/scene.bip"), "out/scene.hdr");
  EXPECT_EQ(EnviHeaderPath("out.d/scene"), "out.d/scene.hdr");
  EXPECT_EQ(EnviHeaderPath("a.b.BIP"), "a.b.hdr");
}

}  // namespace
