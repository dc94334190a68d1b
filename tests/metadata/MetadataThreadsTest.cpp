// The functions keep no state: they run on several threads at once, each on its own streams, texts,
// writers and readers, and on one item together.
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "SatCommonUtils/Metadata.h"
#include "kv/XIniTest.h"

namespace {

using namespace SatCommonUtils;
using kv_test::MakeStream;
using kv_test::StreamPointer;

/// Runs `action` many times on each of four threads, which it gets the number of; expects true each
/// time.
void ExpectTrueOnThreads(const std::function<bool(int)>& action) {
  constexpr int kThreads = 4;
  constexpr int kTurns = 50;
  std::atomic<int> right = 0;
  std::vector<std::thread> threads;
  for (int number = 0; number < kThreads; ++number) {
    threads.emplace_back([&, number] {
      for (int turn = 0; turn < kTurns; ++turn) right += action(number) ? 1 : 0;
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, kThreads * kTurns);
}

using Converter = bool (*)(StreamPointer, StreamPointer);

/// What a converter of PVL writes; "false" when it returns that.
std::string Converted(Converter convert, const std::string& text) {
  auto* bytes = new TKvMemoryStream;
  const StreamPointer out(bytes);
  return convert(MakeStream(text), out) ? bytes->Bytes() : "false";
}

std::string Document(const std::string& value) {
  return kv_test::Document("\t<G>\n\t\t<A>" + value + ",b;c</A>\n\t</G>\n");
}

TEST(MetadataThreads, ConvertPvlAtOnce) {
  ExpectTrueOnThreads([](int number) {
    const std::string value = std::to_string(number);
    return Converted(PVLtoXML, "BEGIN_GROUP = G\nA = (" + value + ", \"b;c\");\n" +
                                   "END_GROUP = G\nEND;\n") == Document(value);
  });
}

TEST(MetadataThreads, ConvertNasaPvlAtOnce) {
  ExpectTrueOnThreads([](int number) {
    const std::string value = std::to_string(number);
    return Converted(NASA_PVLtoXML, "GROUP = G\nA = (" + value + ", \"b;c\")\n" +
                                        "END_GROUP = G\nEND\n") == Document(value);
  });
}

TEST(MetadataThreads, ConvertWktAtOnce) {
  ExpectTrueOnThreads([](int number) {
    const std::string value = std::to_string(number);
    std::string xml;
    return WktSectionToXml("A[\"\xFC\", B[" + value + "]]", &xml) &&
           xml ==
               "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n<A>\r\n"
               "\t<VALUE>\"\xC3\xBC\"</VALUE>\r\n\t<B>\r\n\t\t<VALUE>" +
                   value + "</VALUE>\r\n\t</B>\r\n</A>\r\n";
  });
}

TEST(MetadataThreads, SaveAndLoadTransformsAtOnce) {
  ExpectTrueOnThreads([](int number) {
    const TKv2DTransform transform(number, 0.1, 2, 3, 4, 5);
    bool isSaved = false;
    const std::string text = kv_test::Written([&](TKvXIniStreamWriter& writer) {
      isSaved = SaveToXMLE(transform, &writer, "t") && WriteNonZeroInt(&writer, "i", number + 1);
    });
    TKvXIniReader reader(MakeStream(text));
    return isSaved && CreateFromXMLE(&reader, "t")->Coefficients() == transform.Coefficients() &&
           reader.ReadE<int>(reader.FindFE("i", 0)) == number + 1;
  });
}

TEST(MetadataThreads, ReadOneItemTogether) {
  const TXmlItem item = TKvXmlItem::Parse("<r><t a='7.5'>12abc</t></r>");
  ExpectTrueOnThreads([&](int number) {
    return ReadIntFromXMLItemText(item, "t", number) == 12 &&
           ReadDoubleFromXMLItemAttribute(item, "t", "a", number) == 7.5 &&
           ReadStringFromXMLItemText(item, "u", std::to_string(number)) == std::to_string(number);
  });
  EXPECT_EQ(item.use_count(), 1);
}

TEST(MetadataThreads, ParseAndDropItemsAtOnce) {
  ExpectTrueOnThreads([](int number) {
    const std::string value = std::to_string(number);
    return ReadStringFromXMLItemText(TKvXmlItem::Parse("<r><t>" + value + "</t><u><v/></u></r>"),
                                     "t", "") == value;
  });
}

}  // namespace
