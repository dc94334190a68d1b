// Readers, writers and transforms while allocations fail.
#include <gtest/gtest.h>

#include <string>

#include "SatCommonUtils/Metadata.h"
#include "kv/XIniTest.h"
#include "support/EveryAllocation.h"

namespace {

using namespace SatCommonUtils;
using kv_test::MakeStream;
using kv_test::StreamPointer;
using ravelin_test::GivesEverywhere;
using ravelin_test::ThrowsEverywhere;

const std::string kTag(100, 't');
const std::string kText(100, '1');

TXmlItem Item() {
  return TKvXmlItem::Parse("<r><" + kTag + " " + kTag + "='" + kText + "'>" + kText + "</" + kTag +
                           "></r>");
}

TEST(XmlItemMemoryTest, Readers) {
  const TXmlItem item = Item();
  ThrowsEverywhere("text", [&] { return ReadStringFromXMLItemText(item, kTag, kText); });
  ThrowsEverywhere("missing text", [&] { return ReadStringFromXMLItemText(item, "x", kText); });
  ThrowsEverywhere("attribute",
                   [&] { return ReadStringFromXMLItemAttribute(item, kTag, kTag, kText); });
  ThrowsEverywhere("number", [&] { return ReadDoubleFromXMLItemText(item, kTag, 0.0); });
  ThrowsEverywhere("number of an attribute",
                   [&] { return ReadDoubleFromXMLItemAttribute(item, kTag, kTag, 0.0); });
  double value = 0;
  ThrowsEverywhere("stored number", [&] { return ReadDoubleFromXMLItemText(item, kTag, &value); });
  ThrowsEverywhere("stored number of an attribute",
                   [&] { return ReadDoubleFromXMLItemAttribute(item, kTag, kTag, &value); });
  ThrowsEverywhere("whole number", [&] { return ReadIntFromXMLItemText(item, kTag, 0); });
  ThrowsEverywhere("whole number of an attribute",
                   [&] { return ReadIntFromXMLItemAttribute(item, kTag, kTag, 0); });
  int whole = 0;
  ThrowsEverywhere("stored whole number",
                   [&] { return ReadIntFromXMLItemText(item, kTag, &whole); });
  ThrowsEverywhere("stored whole number of an attribute",
                   [&] { return ReadIntFromXMLItemAttribute(item, kTag, kTag, &whole); });
}

/// Whether `write` succeeds on a new writer; its arguments may throw.
template <class Write>
bool Writes(const Write& write) {
  TKvXIniStreamWriter writer(StreamPointer(new TKvMemoryStream), 0,
                             TKvXIniStreamWriter::htDocument);
  return write(&writer) && writer.Close();
}

/// The writer tells false, its arguments and the making of it throw.
template <class Write>
void ThrowsOrGivesFalse(const char* name, const Write& write) {
  SCOPED_TRACE(name);
  ravelin_test::FailEveryAllocation(
      [&] { return Writes(write); },
      [](const auto& outcome, bool) { EXPECT_FALSE(outcome.value_or(false)); });
}

TEST(XmlItemMemoryTest, Writers) {
  ThrowsOrGivesFalse("WriteNotEmptyString",
                     [](auto* writer) { return WriteNotEmptyString(writer, kTag, kText); });
  ThrowsOrGivesFalse("WriteNonZeroInt",
                     [](auto* writer) { return WriteNonZeroInt(writer, kTag, 1); });
  ThrowsOrGivesFalse("WritePositiveInt",
                     [](auto* writer) { return WritePositiveInt(writer, kTag, 1); });
  ThrowsOrGivesFalse("WriteNonNegativeInt",
                     [](auto* writer) { return WriteNonNegativeInt(writer, kTag, 1); });
  ThrowsOrGivesFalse("WriteNonZeroDouble",
                     [](auto* writer) { return WriteNonZeroDouble(writer, kTag, 0.1); });
}

TEST(XmlItemMemoryTest, TransformsAreSaved) {
  const TKv2DTransform transform(1, 2, 3, 4, 5, 6);
  // Only what the operations themselves allocate fails: a writer says why it failed by TKvError.
  for (unsigned long successes = 0; successes < 40; ++successes) {
    for (const bool strict : {false, true}) {
      auto* const bytes = new TKvMemoryStream;
      TKvXIniStreamWriter writer(StreamPointer(bytes), 0, TKvXIniStreamWriter::htDocument);
      const std::string section = kTag;
      bool saved = false;
      try {
        const ravelin_test::FailingNew failing(successes);
        saved = strict ? SaveToXMLE(transform, &writer, section)
                       : SaveToXML(transform, &writer, section);
      } catch (const TKvError&) {
        EXPECT_TRUE(strict);
      } catch (const std::bad_alloc&) {
        EXPECT_TRUE(strict || successes == 0);
      }
      const bool failed = ravelin_test::AllocationFailed();
      if (strict) {
        EXPECT_NE(saved, failed);
      }
      if (!failed) {
        EXPECT_TRUE(writer.Close());
      }
    }
  }
}

TEST(XmlItemMemoryTest, TransformsAreLoaded) {
  const std::string xml =
      "<xini><" + kTag + "><a>1</a><b>2</b><c>3</c><d>4</d><e>5</e><f>6</f></" + kTag + "></xini>";
  ThrowsEverywhere("CreateFromXMLE", [&] {
    TKvXIniReader reader(MakeStream(xml));
    return CreateFromXMLE(&reader, kTag)->Coefficients()[5];
  });
}

}  // namespace
