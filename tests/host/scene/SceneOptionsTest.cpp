#include "host/scene/SceneOptions.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using namespace ravelin;

TEST(BandChoice, LeavesTheOrderOpenUnlessItIsGiven) {
  const BandChoice open = ParseBandChoice("red=a:b.raw");
  EXPECT_EQ(open.key, 6);
  EXPECT_EQ(open.file, "a:b.raw");
  EXPECT_EQ(open.order, std::nullopt);
  EXPECT_EQ(ParseBandChoice("7=a.raw:big").order, BytesOrder::boBigEndian);
  EXPECT_EQ(ParseBandChoice("7=a.raw:little").order, BytesOrder::boLittleEndian);
}

TEST(BandChoice, RefusesWhatIsNone) {
  EXPECT_THROW(ParseBandChoice("a.raw"), std::invalid_argument);
  EXPECT_THROW(ParseBandChoice("red="), std::invalid_argument);
}

TEST(OrderName, IsReadBack) {
  EXPECT_EQ(ParseOrderName("big"), BytesOrder::boBigEndian);
  EXPECT_EQ(ParseOrderName("little"), BytesOrder::boLittleEndian);
  EXPECT_EQ(ParseOrderName("Big"), std::nullopt);
  EXPECT_EQ(ParseOrderName(""), std::nullopt);
}

}  // namespace
