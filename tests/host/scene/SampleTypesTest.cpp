#include "host/scene/SampleTypes.h"

#include <gtest/gtest.h>

namespace {

using namespace ravelin;

TEST(SampleTypes, TellTheByteOrderOfUnsignedNumbers) {
  for (const char* type : {"MSB_UNSIGNED_INTEGER", "UNSIGNED_INTEGER", "sun_unsigned_integer",
                           "MAC_UNSIGNED_INTEGER"}) {
    EXPECT_EQ(OrderOfSampleType(type), BytesOrder::boBigEndian) << type;
  }
  for (const char* type : {"LSB_UNSIGNED_INTEGER", "PC_UNSIGNED_INTEGER", "Vax_Unsigned_Integer"}) {
    EXPECT_EQ(OrderOfSampleType(type), BytesOrder::boLittleEndian) << type;
  }
}

TEST(SampleTypes, TellNothingOfOthers) {
  for (const char* type : {"LSB_INTEGER", "INTEGER", "IEEE_REAL", "", "MSB_UNSIGNED_INTEGER2"}) {
    EXPECT_EQ(OrderOfSampleType(type), std::nullopt) << type;
  }
}

}  // namespace
