#include "host/scene/BandTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/scene/support/Scopes.h"
#include "host/support/ErrorOf.h"

namespace {

using namespace ravelin;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;

std::string Group(int number, const std::string& values) {
  const std::string name = "BAND_" + std::to_string(number);
  return "GROUP = " + name + "\n" + values + "END_GROUP = " + name + "\n";
}

std::map<int, int> KeysOf(const std::string& text) {
  return KeysOfNumbers(*SortedLabel(text), "x.lbl");
}

TEST(BandKeys, AreTheKindsOfTheLabel) {
  EXPECT_THAT(KeysOf(Group(1, "CHANNEL_KIND = 3\n") + Group(2, "CHANNEL_KIND = 32\n")),
              ElementsAre(Pair(1, 3), Pair(2, 32)));
}

TEST(BandKeys, CountFromAHundredWhenBandsShareAKind) {
  EXPECT_THAT(KeysOf(Group(1, "CHANNEL_KIND = 32\n") + Group(2, "CHANNEL_KIND = 32\n")),
              ElementsAre(Pair(1, 101), Pair(2, 102)));
}

TEST(BandKeys, FollowTheRoles) {
  EXPECT_THAT(KeysOf(Group(1, "CHANNEL_ROLE = Blue\n") + Group(2, "CHANNEL_ROLE = GREEN\n") +
                     Group(3, "CHANNEL_ROLE = RED\n") + Group(4, "CHANNEL_ROLE = NIR\n")),
              ElementsAre(Pair(1, 3), Pair(2, 4), Pair(3, 6), Pair(4, 104)));
}

TEST(BandKeys, FollowTheSpacecraft) {
  const std::string files =
      "FILE_NAME_BAND_1 = a\nFILE_NAME_BAND_2 = b\nFILE_NAME_BAND_3 = c\nFILE_NAME_BAND_4 = d\n";
  EXPECT_THAT(KeysOf("SPACECRAFT_ID = LANDSAT_8\n" + files),
              ElementsAre(Pair(1, 101), Pair(2, 3), Pair(3, 4), Pair(4, 6)));
  EXPECT_THAT(KeysOf("SPACECRAFT_ID = LANDSAT_5\n" + files),
              ElementsAre(Pair(1, 3), Pair(2, 4), Pair(3, 6), Pair(4, 104)));
  EXPECT_THAT(KeysOf(files), ElementsAre(Pair(1, 101), Pair(2, 102), Pair(3, 103), Pair(4, 104)));
}

TEST(BandKeys, AreRefusedWhenTwoBandsAreOneChannel) {
  EXPECT_EQ(
      ErrorOf([] { KeysOf(Group(1, "CHANNEL_KIND = 6\n") + Group(5, "CHANNEL_ROLE = RED\n")); }),
      "x.lbl: gives the bands 1 and 5 one channel, Red; give --band KEY=FILE for every band");
}

TEST(BandKeys, AreRefusedWhenTwoGroupsAreOneBand) {
  EXPECT_THAT(
      ErrorOf([] { KeysOf(Group(1, "CHANNEL_KIND = 6\n") + Group(1, "CHANNEL_KIND = 4\n")); }),
      HasSubstr("has two groups for one band, the second BAND_1"));
}

TEST(BandKeys, AreRefusedWhenAKindIsNoNumber) {
  EXPECT_THAT(ErrorOf([] { KeysOf(Group(1, "CHANNEL_KIND = six\n")); }),
              HasSubstr("BAND_1/CHANNEL_KIND is 'six', not a whole number"));
}

TEST(BandKeys, AreNotMadeWithoutEnd) {
  std::string text;
  for (int i = 1; i <= 1000; ++i) text += "FILE_NAME_BAND_" + std::to_string(i) + " = a\n";
  EXPECT_EQ(KeysOf(text).size(), 1000u);
  EXPECT_THAT(ErrorOf([&] { KeysOf(text + "FILE_NAME_BAND_1001 = a\n"); }),
              HasSubstr("more than 1000 bands"));
}

TEST(BandKeys, AreRefusedBeyondTheLargestThatThereIs) {
  EXPECT_THAT(KeysOf("FILE_NAME_BAND_2147483547 = a\n"), ElementsAre(Pair(2147483547, 2147483647)));
  EXPECT_EQ(ErrorOf([] { KeysOf("FILE_NAME_BAND_2147483548 = a\n"); }),
            "x.lbl: tells of a band 2147483548; the largest number is 2147483547; give --band "
            "KEY=FILE for every band");
}

TEST(LabelBands, ComeFromGroups) {
  const SortedLabel label(Group(1, "FILE_NAME = a.raw\nBAND_NAME = nir\nCHANNEL_KIND = 32\n") +
                          Group(2, "X = 1\n"));
  const std::vector<LabelBand> bands = FindLabelBands(*label, "x.lbl");
  ASSERT_EQ(bands.size(), 2u);
  EXPECT_EQ(bands[0].number, 1);
  EXPECT_EQ(bands[0].key, 32);
  EXPECT_EQ(bands[0].name, "nir");
  EXPECT_EQ(bands[0].file, "a.raw");
  EXPECT_EQ(bands[0].place, "BAND_1/FILE_NAME");
  EXPECT_EQ(bands[0].scope, &label->bands[0]);
  EXPECT_EQ(bands[1].file, "");
}

TEST(LabelBands, ComeFromNumberedNames) {
  const SortedLabel label(
      "SPACECRAFT_ID = LANDSAT_8\nFILE_NAME_BAND_10 = t.raw\nFILE_NAME_BAND_8 = p.raw\n"
      "FILE_NAME_BAND_4 = r.raw\nDATA_TYPE_BAND_4 = uint16\n");
  const std::vector<LabelBand> bands = FindLabelBands(*label, "x.lbl");
  ASSERT_EQ(bands.size(), 3u);
  EXPECT_EQ(bands[0].key, 6);
  EXPECT_EQ(bands[0].file, "r.raw");
  EXPECT_EQ(bands[0].place, "FILE_NAME_BAND_4");
  EXPECT_EQ(bands[0].sampleType, "UINT16");
  EXPECT_EQ(bands[0].resolution, LabelBand::kUsual);
  EXPECT_EQ(bands[1].resolution, LabelBand::kPanchromatic);
  EXPECT_EQ(bands[2].key, 110);
  EXPECT_EQ(bands[2].resolution, LabelBand::kThermal);
}

TEST(LabelBands, ComeFromAGroupBeforeANumberedName) {
  const SortedLabel label("FILE_NAME_BAND_1 = b.raw\n" + Group(1, "FILE_NAME = a.raw\n"));
  const std::vector<LabelBand> bands = FindLabelBands(*label, "x.lbl");
  ASSERT_EQ(bands.size(), 1u);
  EXPECT_EQ(bands[0].file, "a.raw");
}

TEST(LabelBands, AreNotChosenFromDifferentNames) {
  const SortedLabel label(
      "GROUP = A\nFILE_NAME_BAND_1 = a.raw\nEND_GROUP = A\nGROUP = B\n"
      "FILE_NAME_BAND_1 = b.raw\nEND_GROUP = B\n");
  EXPECT_EQ(ErrorOf([&] { FindLabelBands(*label, "x.lbl"); }),
            "x.lbl: gives FILE_NAME_BAND_1 several times: A/FILE_NAME_BAND_1 = a.raw, "
            "B/FILE_NAME_BAND_1 = b.raw; choose by --band KEY=FILE for every band");
}

}  // namespace
