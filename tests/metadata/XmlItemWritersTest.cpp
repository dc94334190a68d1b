#include <gmock/gmock.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <limits>
#include <string>

#include "SatCommonUtils/Metadata.h"
#include "metadata/RecordingWriter.h"

namespace {

using metadata_test::RecordingWriter;
using namespace SatCommonUtils;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class XmlItemWritersTest : public ::testing::Test {
 protected:
  RecordingWriter writer_;
};

TEST_F(XmlItemWritersTest, AStringIsWritten) {
  EXPECT_TRUE(WriteNotEmptyString(&writer_, "name", "value"));
  EXPECT_THAT(writer_.calls, ElementsAre("name=value"));
}

TEST_F(XmlItemWritersTest, AStringIsWrittenWithoutTheBlanksAroundIt) {
  EXPECT_TRUE(WriteNotEmptyString(&writer_, "name", " \t\r\n\v\fa  b\f\v\n\r\t "));
  EXPECT_THAT(writer_.calls, ElementsAre("name=a  b"));
}

TEST_F(XmlItemWritersTest, AnEmptyStringIsNotWritten) {
  EXPECT_TRUE(WriteNotEmptyString(&writer_, "name", ""));
  EXPECT_THAT(writer_.calls, IsEmpty());
}

TEST_F(XmlItemWritersTest, AStringOfBlanksIsNotWritten) {
  EXPECT_TRUE(WriteNotEmptyString(&writer_, "name", " \t \t"));
  EXPECT_TRUE(WriteNotEmptyString(&writer_, "name", "\r\n\v\f"));
  EXPECT_THAT(writer_.calls, IsEmpty());
}

TEST_F(XmlItemWritersTest, TheNameOfAStringKeepsItsBlanks) {
  EXPECT_TRUE(WriteNotEmptyString(&writer_, " name ", "v"));
  EXPECT_THAT(writer_.calls, ElementsAre(" name =v"));
}

TEST_F(XmlItemWritersTest, AStringOfANulByteIsWritten) {
  EXPECT_TRUE(WriteNotEmptyString(&writer_, "name", std::string(1, '\0')));
  EXPECT_THAT(writer_.calls, ElementsAre(std::string("name=\0", 6)));
}

TEST_F(XmlItemWritersTest, AnIntThatIsNotZeroIsWritten) {
  EXPECT_TRUE(WriteNonZeroInt(&writer_, "a", 1));
  EXPECT_TRUE(WriteNonZeroInt(&writer_, "b", -1));
  EXPECT_TRUE(WriteNonZeroInt(&writer_, "c", INT_MIN));
  EXPECT_TRUE(WriteNonZeroInt(&writer_, "d", INT_MAX));
  EXPECT_THAT(writer_.calls, ElementsAre("a=1", "b=-1", "c=-2147483648", "d=2147483647"));
}

TEST_F(XmlItemWritersTest, AZeroIntIsNotWritten) {
  EXPECT_TRUE(WriteNonZeroInt(&writer_, "a", 0));
  EXPECT_THAT(writer_.calls, IsEmpty());
}

TEST_F(XmlItemWritersTest, APositiveIntIsWritten) {
  EXPECT_TRUE(WritePositiveInt(&writer_, "a", 1));
  EXPECT_TRUE(WritePositiveInt(&writer_, "b", INT_MAX));
  EXPECT_THAT(writer_.calls, ElementsAre("a=1", "b=2147483647"));
}

TEST_F(XmlItemWritersTest, ZeroIsNotPositive) {
  EXPECT_TRUE(WritePositiveInt(&writer_, "a", 0));
  EXPECT_THAT(writer_.calls, IsEmpty());
}

TEST_F(XmlItemWritersTest, ANegativeIntIsNotPositive) {
  EXPECT_TRUE(WritePositiveInt(&writer_, "a", -1));
  EXPECT_TRUE(WritePositiveInt(&writer_, "a", INT_MIN));
  EXPECT_THAT(writer_.calls, IsEmpty());
}

TEST_F(XmlItemWritersTest, ZeroAndPositiveIntsAreNotNegative) {
  EXPECT_TRUE(WriteNonNegativeInt(&writer_, "a", 0));
  EXPECT_TRUE(WriteNonNegativeInt(&writer_, "b", INT_MAX));
  EXPECT_THAT(writer_.calls, ElementsAre("a=0", "b=2147483647"));
}

TEST_F(XmlItemWritersTest, ANegativeIntIsNotWrittenAmongThoseThatAreNotNegative) {
  EXPECT_TRUE(WriteNonNegativeInt(&writer_, "a", -1));
  EXPECT_TRUE(WriteNonNegativeInt(&writer_, "a", INT_MIN));
  EXPECT_THAT(writer_.calls, IsEmpty());
}

TEST_F(XmlItemWritersTest, ADoubleThatIsNotZeroIsWritten) {
  EXPECT_TRUE(WriteNonZeroDouble(&writer_, "a", 0.5));
  EXPECT_TRUE(WriteNonZeroDouble(&writer_, "b", -2.0));
  EXPECT_TRUE(WriteNonZeroDouble(&writer_, "c", 0.1));
  EXPECT_THAT(writer_.calls, ElementsAre("a=0.5", "b=-2", "c=0.10000000000000001"));
}

TEST_F(XmlItemWritersTest, TheLeastDoubleAboveZeroIsWritten) {
  EXPECT_TRUE(WriteNonZeroDouble(&writer_, "a", std::numeric_limits<double>::denorm_min()));
  EXPECT_THAT(writer_.calls, ElementsAre("a=4.9406564584124654e-324"));
}

TEST_F(XmlItemWritersTest, ZeroOfEitherSignIsNotWritten) {
  EXPECT_TRUE(WriteNonZeroDouble(&writer_, "a", 0.0));
  EXPECT_TRUE(WriteNonZeroDouble(&writer_, "a", -0.0));
  EXPECT_THAT(writer_.calls, IsEmpty());
}

TEST_F(XmlItemWritersTest, WhatIsNotANumberIsWritten) {
  EXPECT_TRUE(WriteNonZeroDouble(&writer_, "a", std::nan("")));
  EXPECT_THAT(writer_.calls, ElementsAre("a=nan"));
}

TEST_F(XmlItemWritersTest, InfinitiesAreWritten) {
  EXPECT_TRUE(WriteNonZeroDouble(&writer_, "a", HUGE_VAL));
  EXPECT_TRUE(WriteNonZeroDouble(&writer_, "b", -HUGE_VAL));
  EXPECT_THAT(writer_.calls, ElementsAre("a=inf", "b=-inf"));
}

TEST_F(XmlItemWritersTest, AWriteThatFailsGivesFalse) {
  writer_.itemResult = false;
  EXPECT_FALSE(WriteNotEmptyString(&writer_, "a", "x"));
  EXPECT_FALSE(WriteNonZeroInt(&writer_, "b", 1));
  EXPECT_FALSE(WritePositiveInt(&writer_, "c", 1));
  EXPECT_FALSE(WriteNonNegativeInt(&writer_, "d", 0));
  EXPECT_FALSE(WriteNonZeroDouble(&writer_, "e", 1));
  EXPECT_THAT(writer_.calls, ElementsAre("a=x", "b=1", "c=1", "d=0", "e=1"));
}

TEST_F(XmlItemWritersTest, WhatIsNotWrittenCannotFail) {
  writer_.itemResult = false;
  EXPECT_TRUE(WriteNotEmptyString(&writer_, "a", " "));
  EXPECT_TRUE(WriteNonZeroInt(&writer_, "b", 0));
  EXPECT_TRUE(WritePositiveInt(&writer_, "c", 0));
  EXPECT_TRUE(WriteNonNegativeInt(&writer_, "d", -1));
  EXPECT_TRUE(WriteNonZeroDouble(&writer_, "e", 0));
  EXPECT_THAT(writer_.calls, IsEmpty());
}

TEST_F(XmlItemWritersTest, WhatIsWrittenIsReadBack) {
  auto* bytes = new TKvMemoryStream;
  const var_a_legacy::var_a<TKvStream*> stream(bytes);
  TKvXIniStreamWriter writer(stream, 0, TKvXIniStreamWriter::htDocument);
  EXPECT_TRUE(WriteNotEmptyString(&writer, "string", " a <b> "));
  EXPECT_TRUE(WriteNonZeroInt(&writer, "int", -7));
  EXPECT_TRUE(WritePositiveInt(&writer, "positive", 0));
  EXPECT_TRUE(WriteNonNegativeInt(&writer, "zero", 0));
  EXPECT_TRUE(WriteNonZeroDouble(&writer, "double", DBL_MIN));
  ASSERT_TRUE(writer.Close());
  const TKvXIniReader reader(stream);
  EXPECT_EQ(reader.GetItemCount(), 4u);
  EXPECT_EQ(reader.ReadE<std::string>(reader.FindFE("string", 0)), "a <b>");
  EXPECT_EQ(reader.ReadE<int>(reader.FindFE("int", 0)), -7);
  EXPECT_EQ(reader.ReadE<int>(reader.FindFE("zero", 0)), 0);
  EXPECT_EQ(reader.ReadE<double>(reader.FindFE("double", 0)), DBL_MIN);
}

}  // namespace
