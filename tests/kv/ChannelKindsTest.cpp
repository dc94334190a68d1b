#include <gtest/gtest.h>

#include <climits>

#include "Kv/Raster.h"

TEST(ChannelKinds, NamesTheKindsThatHaveNames) {
  EXPECT_EQ(ChannelKindToText(1), "Gray");
  EXPECT_EQ(ChannelKindToText(3), "Blue");
  EXPECT_EQ(ChannelKindToText(4), "Green");
  EXPECT_EQ(ChannelKindToText(6), "Red");
  EXPECT_EQ(ChannelKindToText(32), "Other");
}

TEST(ChannelKinds, NumbersEveryOtherKind) {
  EXPECT_EQ(ChannelKindToText(0), "Kind 0");
  EXPECT_EQ(ChannelKindToText(2), "Kind 2");
  EXPECT_EQ(ChannelKindToText(5), "Kind 5");
  EXPECT_EQ(ChannelKindToText(33), "Kind 33");
  EXPECT_EQ(ChannelKindToText(-1), "Kind -1");
  EXPECT_EQ(ChannelKindToText(INT_MAX), "Kind 2147483647");
  EXPECT_EQ(ChannelKindToText(INT_MIN), "Kind -2147483648");
}
