// The functions report by their results and print nothing, whatever they meet.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "Kv/Services.h"
#include "SatCommonUtils/Metadata.h"
#include "kv/XIniTest.h"
#include "metadata/RecordingWriter.h"

namespace {

using namespace SatCommonUtils;
using kv_test::MakeStream;

/// What reaches the standard output and the standard error.
std::string Printed(const std::function<void()>& action) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  action();
  return testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr();
}

TEST(MetadataQuiet, TheCheckSeesWhatIsPrinted) {
  EXPECT_EQ(Printed([] { KvPrintDbgMsg("printed"); }), "printed\n");
}

TEST(MetadataQuiet, ConvertersOfPvlPrintNothing) {
  const auto convert = [](auto converter, const std::string& text) {
    return converter(MakeStream(text), MakeStream(""), nullptr);
  };
  using Converter = bool (*)(kv_test::StreamPointer, kv_test::StreamPointer, TPvlFailure*);
  for (const Converter converter : {Converter(PVLtoXML), Converter(NASA_PVLtoXML)}) {
    EXPECT_EQ(Printed([&] {
                EXPECT_TRUE(convert(converter, "A = 1;\nno statement\nB = \"\nEND;\n"));
                EXPECT_FALSE(convert(converter, "END_GROUP = A\n"));
                EXPECT_FALSE(convert(converter, "END_GROUP\n"));
                EXPECT_FALSE(convert(converter, "END other\n"));
                EXPECT_FALSE(converter(MakeStream("A = 1;\n"), {}, nullptr));
              }),
              "");
  }
  EXPECT_EQ(Printed([&] { EXPECT_FALSE(convert(Converter(PVLtoXML), "")); }), "");
}

TEST(MetadataQuiet, TheConverterOfWktPrintsNothing) {
  EXPECT_EQ(Printed([] {
              std::string xml;
              EXPECT_FALSE(WktSectionToXml("", &xml));
              EXPECT_TRUE(WktSectionToXml("A[[1],\"b", &xml));
              EXPECT_TRUE(WktSectionToXml("]", &xml));
            }),
            "");
}

TEST(MetadataQuiet, WritersAndTransformsPrintNothing) {
  EXPECT_EQ(Printed([] {
              metadata_test::RecordingWriter writer;
              EXPECT_TRUE(WriteNotEmptyString(&writer, "a", " "));
              writer.itemResult = false;
              EXPECT_FALSE(WriteNotEmptyString(&writer, "a", "b"));
              EXPECT_FALSE(WriteNonZeroInt(&writer, "a", 1));
              EXPECT_FALSE(WritePositiveInt(&writer, "a", 1));
              EXPECT_FALSE(WriteNonNegativeInt(&writer, "a", 1));
              EXPECT_FALSE(WriteNonZeroDouble(&writer, "a", 1));
              EXPECT_FALSE(SaveToXML(TKv2DTransform(), &writer, "s"));
              EXPECT_THROW(SaveToXMLE(TKv2DTransform(), &writer, "s"), TKvError);
              TKvXIniReader reader(MakeStream("<xini/>"));
              EXPECT_THROW(CreateFromXMLE(&reader, "s"), TKvError);
            }),
            "");
}

TEST(MetadataQuiet, ReadersPrintNothing) {
  EXPECT_EQ(Printed([] {
              for (const TXmlItem& item : {TXmlItem(), TKvXmlItem::Parse("<r/>"),
                                           TKvXmlItem::Parse("<r><t a='x'>x</t></r>")}) {
                double number = 0;
                int whole = 0;
                EXPECT_EQ(ReadStringFromXMLItemAttribute(item, "t", "b", "def"), "def");
                EXPECT_EQ(ReadStringFromXMLItemText(item, "u", "def"), "def");
                EXPECT_FALSE(ReadDoubleFromXMLItemText(item, "t", &number));
                EXPECT_FALSE(ReadDoubleFromXMLItemAttribute(item, "t", "a", &number));
                EXPECT_FALSE(ReadIntFromXMLItemText(item, "t", &whole));
                EXPECT_FALSE(ReadIntFromXMLItemAttribute(item, "t", "a", &whole));
              }
            }),
            "");
}

}  // namespace
