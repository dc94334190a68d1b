#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "CommaLocale.h"
#include "XIniTest.h"

namespace kv_test {
namespace {

using Writer = TKvXIniStreamWriter;
using testing::HasSubstr;
using testing::StartsWith;

TEST(XIniStreamWriter, BeginsADocumentWithADeclarationAndTheRootXini) {
  EXPECT_EQ(Written([](Writer&) {}), std::string(kDeclaration) + "<xini/>\n");
}

TEST(XIniStreamWriter, WritesNeitherDeclarationNorRootInAFragment) {
  EXPECT_EQ(Written([](Writer& writer) { writer.WriteS<int>("a", 1); }, 0, Writer::htFragment),
            "<a>1</a>\n");
}

TEST(XIniStreamWriter, WritesNothingForAnEmptyFragment) {
  EXPECT_EQ(Written([](Writer&) {}, 0, Writer::htFragment), "");
}

TEST(XIniStreamWriter, WritesAnItemAsAnElementThatHoldsItsText) {
  EXPECT_EQ(Written([](Writer& writer) { writer.WriteS<std::string>("sun", "high"); }),
            Document("\t<sun>high</sun>\n"));
}

TEST(XIniStreamWriter, WritesAnEmptyValueAsAnEmptyElement) {
  EXPECT_EQ(Written([](Writer& writer) { writer.WriteS<std::string>("sun", ""); }),
            Document("\t<sun/>\n"));
}

TEST(XIniStreamWriter, WritesASectionAsAnElementNamedAfterIt) {
  const std::string text = Written([](Writer& writer) {
    const unsigned long outer = writer.BeginSectionS("outer");
    const unsigned long inner = writer.BeginSectionS("inner");
    EXPECT_TRUE(writer.WriteS<int>("a", 1));
    EXPECT_TRUE(writer.EndSection(inner));
    EXPECT_TRUE(writer.WriteS<int>("b", 2));
    EXPECT_TRUE(writer.EndSection(outer));
  });
  EXPECT_EQ(text, Document("\t<outer>\n"
                           "\t\t<inner>\n"
                           "\t\t\t<a>1</a>\n"
                           "\t\t</inner>\n"
                           "\t\t<b>2</b>\n"
                           "\t</outer>\n"));
}

TEST(XIniStreamWriter, WritesAnEmptySectionAsAnEmptyElement) {
  const std::string text = Written(
      [](Writer& writer) { EXPECT_TRUE(writer.EndSection(writer.BeginSectionS("empty"))); });
  EXPECT_EQ(text, Document("\t<empty/>\n"));
}

TEST(XIniStreamWriter, WritesACompactSectionOnOneLine) {
  const std::string text = Written([](Writer& writer) {
    const unsigned long section = writer.BeginSectionCompactSE("line");
    writer.WriteS<int>("a", 1);
    const unsigned long inner = writer.BeginSectionSE("inner");
    writer.WriteS<int>("b", 2);
    writer.EndSection(inner);
    writer.EndSection(section);
    writer.WriteS<int>("c", 3);
  });
  EXPECT_EQ(text, Document("\t<line><a>1</a><inner><b>2</b></inner></line>\n\t<c>3</c>\n"));
}

TEST(XIniStreamWriter, KeepsACompactSectionOnOneLineWhenAValueHoldsALineFeed) {
  const std::string text = Written([](Writer& writer) {
    const unsigned long section = writer.BeginSectionCompactSE("line");
    writer.WriteS<std::string>("a", "1\n2");
    writer.EndSection(section);
  });
  EXPECT_EQ(text, Document("\t<line><a>1&#10;2</a></line>\n"));
}

TEST(XIniStreamWriter, AddsTheIndentToTheDepthOfEveryElement) {
  const std::string text = Written(
      [](Writer& writer) {
        writer.BeginSectionS("s");
        writer.WriteS<int>("a", 1);
      },
      2, Writer::htFragment);
  EXPECT_EQ(text, "\t\t<s>\n\t\t\t<a>1</a>\n\t\t</s>\n");
}

TEST(XIniStreamWriter, IndentsTheRootByTheIndent) {
  EXPECT_EQ(Written([](Writer& writer) { writer.WriteS<int>("a", 1); }, 1),
            std::string(kDeclaration) + "\t<xini>\n\t\t<a>1</a>\n\t</xini>\n");
}

TEST(XIniStreamWriter, IndentsByNoMoreThan32Tabs) {
  const std::string tabs(32, '\t');
  EXPECT_EQ(Written([](Writer& writer) { writer.WriteS<int>("a", 1); }, 31),
            std::string(kDeclaration) + tabs.substr(1) + "<xini>\n" + tabs + "<a>1</a>\n" +
                tabs.substr(1) + "</xini>\n");
  EXPECT_EQ(Written([](Writer& writer) { writer.WriteS<int>("a", 1); },
                    std::numeric_limits<int>::max(), Writer::htFragment),
            tabs + "<a>1</a>\n");
}

TEST(XIniStreamWriter, IndentsByNoLessThanNothing) {
  EXPECT_EQ(Written([](Writer& writer) { writer.WriteS<int>("a", 1); },
                    std::numeric_limits<int>::min(), Writer::htFragment),
            "<a>1</a>\n");
}

std::string NamedItem(const std::string& name) {
  return Written([&](Writer& writer) { writer.WriteS<int>(name, 1); }, 0, Writer::htFragment);
}

TEST(XIniStreamWriter, WritesANameThatIsNotAnXmlNameInAnAttribute) {
  EXPECT_EQ(NamedItem("row time"), "<_ _name=\"row time\">1</_>\n");
  EXPECT_EQ(NamedItem("1st"), "<_ _name=\"1st\">1</_>\n");
  EXPECT_EQ(NamedItem("-a"), "<_ _name=\"-a\">1</_>\n");
  EXPECT_EQ(NamedItem("a/b"), "<_ _name=\"a/b\">1</_>\n");
}

TEST(XIniStreamWriter, WritesANameThatBeginsWithAnUnderscoreInAnAttribute) {
  EXPECT_EQ(NamedItem("_"), "<_ _name=\"_\">1</_>\n");
  EXPECT_EQ(NamedItem("_name"), "<_ _name=\"_name\">1</_>\n");
  EXPECT_EQ(NamedItem("a_b"), "<a_b>1</a_b>\n");
}

TEST(XIniStreamWriter, WritesANameWithAColonInAnAttribute) {
  EXPECT_EQ(NamedItem("a:b"), "<_ _name=\"a:b\">1</_>\n");
}

TEST(XIniStreamWriter, WritesNamesOfLettersBeyondAsciiAsTags) {
  EXPECT_EQ(NamedItem("h\xC3\xB6he"), "<h\xC3\xB6he>1</h\xC3\xB6he>\n");
  EXPECT_EQ(NamedItem("\xC3\x97"), "<_ _name=\"\xC3\x97\">1</_>\n");
}

TEST(XIniStreamWriter, WritesAnUnnamedItemOrSectionAsAnUnderscore) {
  const std::string text = Written(
      [](Writer& writer) {
        writer.BeginSectionS("");
        writer.WriteS<int>("", 1);
      },
      0, Writer::htFragment);
  EXPECT_EQ(text, "<_>\n\t<_>1</_>\n</_>\n");
}

TEST(XIniStreamWriter, WritesAnOddSectionNameInAnAttribute) {
  const std::string text = Written(
      [](Writer& writer) {
        writer.BeginSectionS("a b");
        writer.SetAttributeMode(true);
        writer.WriteS<int>("c", 1);
      },
      0, Writer::htFragment);
  EXPECT_EQ(text, "<_ _name=\"a b\" c=\"1\"/>\n");
}

TEST(XIniStreamWriter, WritesAValueThatXmlCannotCarryAsBase64) {
  const std::string text =
      Written([](Writer& writer) { writer.WriteS<std::string>("key", std::string("\0\1", 2)); });
  EXPECT_EQ(text, Document("\t<key _enc=\"value\">AAE=</key>\n"));
}

TEST(XIniStreamWriter, WritesANameThatXmlCannotCarryAsBase64) {
  EXPECT_EQ(NamedItem("\xFF"), "<_ _name=\"/w==\" _enc=\"name\">1</_>\n");
}

TEST(XIniStreamWriter, SaysWhenNameAndValueAreBase64) {
  const std::string text = Written(
      [](Writer& writer) { writer.WriteS<std::string>("\xFF", "\x01"); }, 0, Writer::htFragment);
  EXPECT_EQ(text, "<_ _name=\"/w==\" _enc=\"name value\">AQ==</_>\n");
}

TEST(XIniStreamWriter, WritesTheTwoNoncharactersThatXmlForbidsAsBase64) {
  const std::string text = Written(
      [](Writer& writer) {
        writer.WriteS<std::string>("a", "\xEF\xBF\xBE");
        writer.WriteS<std::string>("a", "\xEF\xBF\xBF");
        writer.WriteS<std::string>("a", "\xEF\xBF\xBD");
      },
      0, Writer::htFragment);
  EXPECT_EQ(text, "<a _enc=\"value\">77++</a>\n<a _enc=\"value\">77+/</a>\n<a>\xEF\xBF\xBD</a>\n");
}

TEST(XIniStreamWriter, EscapesMarkupInText) {
  const std::string text =
      Written([](Writer& writer) { writer.WriteS<std::string>("a", "<b>&\"']]>"); });
  EXPECT_EQ(text, Document("\t<a>&lt;b&gt;&amp;\"']]&gt;</a>\n"));
}

TEST(XIniStreamWriter, WritesCarriageReturnsInTextAsReferencesAndKeepsTabAndLineFeed) {
  const std::string text =
      Written([](Writer& writer) { writer.WriteS<std::string>("a", "\t\r\n"); });
  EXPECT_EQ(text, Document("\t<a>\t&#13;\n</a>\n"));
}

TEST(XIniStreamWriter, WritesTabAndLineEndsInAttributesAsReferences) {
  const std::string text = Written([](Writer& writer) {
    writer.SetAttributeMode(true);
    writer.WriteS<std::string>("a", "\t\r\n<&>\"'");
  });
  EXPECT_EQ(text, std::string(kDeclaration) + "<xini a=\"&#9;&#13;&#10;&lt;&amp;&gt;&quot;'\"/>\n");
}

TEST(XIniStreamWriter, WritesTabAndLineEndsInNamesAsReferences) {
  EXPECT_EQ(NamedItem("\t\r\n"), "<_ _name=\"&#9;&#13;&#10;\">1</_>\n");
}

// Attribute mode.

std::string InSection(const std::function<void(Writer&)>& write) {
  return Written(
      [&](Writer& writer) {
        writer.BeginSectionS("s");
        write(writer);
      },
      0, Writer::htFragment);
}

TEST(XIniStreamWriter, IsNotInAttributeModeAtFirst) {
  EXPECT_EQ(InSection([](Writer& writer) { writer.WriteS<int>("a", 1); }),
            "<s>\n\t<a>1</a>\n</s>\n");
}

TEST(XIniStreamWriter, WritesItemsAsAttributesInAttributeMode) {
  EXPECT_EQ(InSection([](Writer& writer) {
              writer.SetAttributeMode(true);
              writer.WriteS<int>("a", 1);
              writer.WriteS<std::string>("b", "");
            }),
            "<s a=\"1\" b=\"\"/>\n");
}

TEST(XIniStreamWriter, WritesElementsAgainWhenAttributeModeIsSwitchedOff) {
  EXPECT_EQ(InSection([](Writer& writer) {
              writer.SetAttributeMode(true);
              writer.WriteS<int>("a", 1);
              writer.SetAttributeMode(false);
              writer.WriteS<int>("b", 2);
            }),
            "<s a=\"1\">\n\t<b>2</b>\n</s>\n");
}

TEST(XIniStreamWriter, WritesAnAttributeThatIsThereAlreadyAsAnElement) {
  EXPECT_EQ(InSection([](Writer& writer) {
              writer.SetAttributeMode(true);
              writer.WriteS<int>("a", 1);
              writer.WriteS<int>("a", 2);
            }),
            "<s a=\"1\">\n\t<a>2</a>\n</s>\n");
}

TEST(XIniStreamWriter, WritesElementsInAttributeModeOnceTheElementHasAChild) {
  EXPECT_EQ(InSection([](Writer& writer) {
              writer.EndSection(writer.BeginSectionS("child"));
              writer.SetAttributeMode(true);
              writer.WriteS<int>("a", 1);
            }),
            "<s>\n\t<child/>\n\t<a>1</a>\n</s>\n");
}

TEST(XIniStreamWriter, WritesOddNamesAsElementsInAttributeMode) {
  EXPECT_EQ(InSection([](Writer& writer) {
              writer.SetAttributeMode(true);
              writer.WriteS<int>("_a", 1);
            }),
            "<s>\n\t<_ _name=\"_a\">1</_>\n</s>\n");
  EXPECT_EQ(InSection([](Writer& writer) {
              writer.SetAttributeMode(true);
              writer.WriteS<int>("", 1);
            }),
            "<s>\n\t<_>1</_>\n</s>\n");
}

TEST(XIniStreamWriter, WritesBase64ValuesAsElementsInAttributeMode) {
  EXPECT_EQ(InSection([](Writer& writer) {
              writer.SetAttributeMode(true);
              writer.WriteS<std::string>("a", "\x01");
            }),
            "<s>\n\t<a _enc=\"value\">AQ==</a>\n</s>\n");
}

TEST(XIniStreamWriter, NeverWritesAnAttributeThatDeclaresANamespace) {
  EXPECT_EQ(InSection([](Writer& writer) {
              writer.SetAttributeMode(true);
              writer.WriteS<std::string>("xmlns", "a");
            }),
            "<s>\n\t<xmlns>a</xmlns>\n</s>\n");
}

TEST(XIniStreamWriter, WritesElementsInAttributeModeWhereNoElementIsOpen) {
  EXPECT_EQ(Written(
                [](Writer& writer) {
                  writer.SetAttributeMode(true);
                  writer.WriteS<int>("a", 1);
                },
                0, Writer::htFragment),
            "<a>1</a>\n");
}

TEST(XIniStreamWriter, GivesTheSameAttributeToOneSectionAfterTheOther) {
  EXPECT_EQ(Written(
                [](Writer& writer) {
                  writer.SetAttributeMode(true);
                  for (int i = 0; i < 2; ++i) {
                    const unsigned long section = writer.BeginSectionS("s");
                    writer.WriteS<int>("a", i);
                    writer.EndSection(section);
                  }
                },
                0, Writer::htFragment),
            "<s a=\"0\"/>\n<s a=\"1\"/>\n");
}

TEST(XIniStreamWriter, GivesTheSameAttributeToASectionAndToOneInsideIt) {
  EXPECT_EQ(InSection([](Writer& writer) {
              writer.SetAttributeMode(true);
              writer.WriteS<int>("a", 1);
              writer.BeginSectionS("t");
              writer.WriteS<int>("a", 2);
            }),
            "<s a=\"1\">\n\t<t a=\"2\"/>\n</s>\n");
}

// Numbers.

std::string DoubleText(double value) {
  const std::string text =
      Written([&](Writer& writer) { writer.WriteS<double>("a", value); }, 0, Writer::htFragment);
  return text.substr(3, text.size() - 8);
}

TEST(XIniStreamWriter, WritesIntegersInDecimals) {
  const std::string text = Written(
      [](Writer& writer) {
        writer.WriteS<int>("a", std::numeric_limits<int>::min());
        writer.WriteS<int>("a", std::numeric_limits<int>::max());
        writer.WriteS<int>("a", 0);
      },
      0, Writer::htFragment);
  EXPECT_EQ(text, "<a>-2147483648</a>\n<a>2147483647</a>\n<a>0</a>\n");
}

TEST(XIniStreamWriter, WritesDoublesAsPrintfWritesThemWith17Digits) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 20000; ++i) {
    const auto bits = random();
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    if (!std::isfinite(value)) continue;
    char expected[64];
    std::snprintf(expected, sizeof expected, "%.17g", value);
    ASSERT_EQ(DoubleText(value), expected);
  }
}

TEST(XIniStreamWriter, WritesInfinitiesAndNaNAsWords) {
  EXPECT_EQ(DoubleText(std::numeric_limits<double>::infinity()), "inf");
  EXPECT_EQ(DoubleText(-std::numeric_limits<double>::infinity()), "-inf");
  EXPECT_EQ(DoubleText(std::numeric_limits<double>::quiet_NaN()), "nan");
  EXPECT_EQ(DoubleText(-std::numeric_limits<double>::quiet_NaN()), "nan");
}

TEST(XIniStreamWriter, WritesADotWhateverTheLocale) {
  const CommaLocale locale;
  if (!locale.IsThere()) GTEST_SKIP() << "the machine has no locale with a decimal comma";
  EXPECT_EQ(DoubleText(0.5), "0.5");
}

// Sections and their identifiers.

TEST(XIniStreamWriter, GivesEverySectionAnIdentifierOfItsOwnThatIsNot0) {
  Written([](Writer& writer) {
    const unsigned long first = writer.BeginSectionS("a");
    const unsigned long second = writer.BeginSectionS("a");
    EXPECT_NE(first, 0U);
    EXPECT_NE(second, 0U);
    EXPECT_NE(first, second);
    writer.EndSection(second);
    const unsigned long third = writer.BeginSectionSE("a");
    EXPECT_NE(third, 0U);
    EXPECT_NE(third, first);
    EXPECT_NE(third, second);
  });
}

TEST(XIniStreamWriter, EndsOnlyTheInnermostOpenSection) {
  Written([](Writer& writer) {
    const unsigned long outer = writer.BeginSectionS("a");
    const unsigned long inner = writer.BeginSectionS("b");
    EXPECT_FALSE(writer.EndSection(outer));
    EXPECT_TRUE(writer.EndSection(inner));
    EXPECT_FALSE(writer.EndSection(inner));
    EXPECT_TRUE(writer.EndSection(outer));
  });
}

TEST(XIniStreamWriter, EndsNoSectionThatWasNeverOpened) {
  Written([](Writer& writer) {
    EXPECT_FALSE(writer.EndSection(0));
    EXPECT_FALSE(writer.EndSection(1));
    writer.BeginSectionS("a");
    EXPECT_FALSE(writer.EndSection(0));
    EXPECT_FALSE(writer.EndSection(~0UL));
  });
}

TEST(XIniStreamWriter, GoesOnAfterASectionThatCouldNotBeEnded) {
  EXPECT_EQ(Written(
                [](Writer& writer) {
                  EXPECT_FALSE(writer.EndSection(7));
                  EXPECT_TRUE(writer.WriteS<int>("a", 1));
                },
                0, Writer::htFragment),
            "<a>1</a>\n");
}

// Closing.

TEST(XIniStreamWriter, ClosesWhatIsOpenWithTheRootInclusive) {
  EXPECT_EQ(Written([](Writer& writer) {
              writer.BeginSectionS("a");
              writer.BeginSectionS("b");
            }),
            Document("\t<a>\n\t\t<b/>\n\t</a>\n"));
}

TEST(XIniStreamWriter, ClosesWhenDestroyed) {
  auto* bytes = new TKvMemoryStream;
  const StreamPointer stream(bytes);
  { Writer(stream, 0, Writer::htDocument).WriteS<int>("a", 1); }
  EXPECT_EQ(bytes->Bytes(), Document("\t<a>1</a>\n"));
}

TEST(XIniStreamWriter, FailsEveryCallAfterClose) {
  auto* bytes = new TKvMemoryStream;
  const StreamPointer stream(bytes);
  Writer writer(stream, 0, Writer::htDocument);
  const unsigned long section = writer.BeginSectionS("a");
  ASSERT_TRUE(writer.Close());
  const std::string closed = bytes->Bytes();
  EXPECT_FALSE(writer.WriteS<int>("a", 1));
  EXPECT_EQ(writer.BeginSectionS("a"), 0U);
  EXPECT_THROW(writer.BeginSectionSE("a"), TKvError);
  EXPECT_THROW(writer.BeginSectionCompactSE("a"), TKvError);
  EXPECT_FALSE(writer.EndSection(section));
  EXPECT_FALSE(writer.Flush());
  EXPECT_FALSE(writer.Close());
  EXPECT_EQ(bytes->Bytes(), closed);
}

TEST(XIniStreamWriter, LeavesTheStreamOpenAndShared) {
  const StreamPointer stream = MakeStream("");
  { const Writer writer(stream, 0, Writer::htDocument); }
  EXPECT_EQ(stream.use_count(), 1);
  EXPECT_TRUE(stream->IsOpen());
}

TEST(XIniStreamWriter, GivesEverythingSoFarToTheStreamWhenFlushed) {
  auto* bytes = new TKvMemoryStream;
  const StreamPointer stream(bytes);
  Writer writer(stream, 0, Writer::htDocument);
  writer.WriteS<int>("a", 1);
  EXPECT_EQ(bytes->Bytes(), "");
  EXPECT_TRUE(writer.Flush());
  EXPECT_THAT(bytes->Bytes(), HasSubstr("<a>1</a>"));
}

TEST(XIniStreamWriter, WritesFromTheStreamsPositionOn) {
  auto* bytes = new TKvMemoryStream("head:");
  const StreamPointer stream(bytes);
  stream->SetPos(5);
  { const Writer writer(stream, 0, Writer::htDocument); }
  EXPECT_THAT(bytes->Bytes(), StartsWith("head:<?xml"));
}

// Streams that fail.

bool WriteEverything(Writer* writer, const std::string& value) {
  bool isWritten = writer->WriteS<int>("a", 1);
  const unsigned long section = writer->BeginSectionS("s");
  isWritten &= section != 0;
  writer->SetAttributeMode(true);
  isWritten &= writer->WriteS<std::string>("b", "x<y");
  writer->SetAttributeMode(false);
  isWritten &= writer->WriteS<std::string>("c", value);
  isWritten &= writer->EndSection(section);
  return isWritten;
}

void ExpectEveryCallToFail(Writer* writer) {
  EXPECT_FALSE(writer->WriteS<std::string>("a", "b"));
  EXPECT_FALSE(writer->WriteS<int>("a", 1));
  EXPECT_FALSE(writer->WriteS<double>("a", 1));
  EXPECT_EQ(writer->BeginSectionS("a"), 0U);
  EXPECT_THROW(writer->BeginSectionSE("a"), TKvError);
  EXPECT_THROW(writer->BeginSectionCompactSE("a"), TKvError);
  EXPECT_FALSE(writer->EndSection(1));
  EXPECT_FALSE(writer->Flush());
  EXPECT_FALSE(writer->Close());
}

TEST(XIniStreamWriter, TellsForEveryNumberOfBytesThatAStreamTakesThatTheRestIsLost) {
  const std::string whole = Written([](Writer& writer) { WriteEverything(&writer, "value"); });
  for (unsigned long k = 0; k < whole.size(); ++k) {
    auto* limited = new LimitedStream(k);
    const StreamPointer stream(limited);
    Writer writer(stream, 0, Writer::htDocument);
    const bool isWritten = WriteEverything(&writer, "value");
    EXPECT_FALSE(writer.Close() && isWritten) << k;
    ExpectEveryCallToFail(&writer);
    EXPECT_EQ(limited->Bytes(), whole.substr(0, k));
  }
  auto* sufficient = new LimitedStream(whole.size());
  Writer writer(StreamPointer(sufficient), 0, Writer::htDocument);
  EXPECT_TRUE(WriteEverything(&writer, "value"));
  EXPECT_TRUE(writer.Close());
  EXPECT_EQ(sufficient->Bytes(), whole);
}

TEST(XIniStreamWriter, TellsOfLossesInAndBetweenTheFillingsOfItsBuffer) {
  const std::string value(150000, 'v');
  const std::string whole = Written([&](Writer& writer) { WriteEverything(&writer, value); });
  for (const unsigned long k : {0UL, 1UL, 100UL, 65535UL, 65536UL, 65537UL, 131072UL, 150000UL,
                                whole.size() - 40, whole.size() - 1}) {
    auto* limited = new LimitedStream(k);
    const StreamPointer stream(limited);
    Writer writer(stream, 0, Writer::htDocument);
    const bool isWritten = WriteEverything(&writer, value);
    EXPECT_FALSE(writer.Close() && isWritten) << k;
    ExpectEveryCallToFail(&writer);
    EXPECT_EQ(limited->Bytes(), whole.substr(0, k));
  }
}

TEST(XIniStreamWriter, GivesNothingMoreToAStreamThatTookFewerBytesThanGiven) {
  auto* limited = new LimitedStream(10);
  const StreamPointer stream(limited);
  Writer writer(stream, 0, Writer::htDocument);
  EXPECT_FALSE(writer.Flush());
  const unsigned long writes = limited->Writes();
  EXPECT_FALSE(writer.WriteS<std::string>("a", std::string(200000, 'a')));
  EXPECT_FALSE(writer.Close());
  EXPECT_EQ(limited->Writes(), writes);
}

TEST(XIniStreamWriter, GivesNothingMoreToAStreamThatTookFewerBytesInTheMiddleOfAnItem) {
  auto* limited = new LimitedStream(100000);
  const StreamPointer stream(limited);
  Writer writer(stream, 0, Writer::htDocument);
  EXPECT_FALSE(writer.WriteS<std::string>("a", std::string(200000, '&')));
  EXPECT_FALSE(writer.Close());
  EXPECT_EQ(limited->Writes(), 2U) << "the first is taken whole";
}

TEST(XIniStreamWriter, FailsEveryCallWithoutAStream) {
  Writer writer(StreamPointer(), 0, Writer::htDocument);
  ExpectEveryCallToFail(&writer);
}

TEST(XIniStreamWriter, TakesAStreamThatThrowsForOneThatTakesNothing) {
  class ThrowingStream : public LimitedStream {
   public:
    ThrowingStream() : LimitedStream(0) {}
    unsigned long Write(const void*, unsigned long) override { throw 1; }
  };
  Writer writer(StreamPointer(new ThrowingStream), 0, Writer::htDocument);
  EXPECT_TRUE(writer.WriteS<int>("a", 1));
  EXPECT_FALSE(writer.Flush());
  ExpectEveryCallToFail(&writer);
}

TEST(XIniStreamWriter, ReportsWhatFailed) {
  Writer writer(StreamPointer(new LimitedStream(10)), 0, Writer::htDocument);
  writer.Flush();
  EXPECT_EQ(ErrorOf([&] { writer.ReportWriteError(); }), "XML-ini: the stream took 10 of 44 bytes");
  EXPECT_EQ(ErrorOf([&] { writer.BeginSectionSE("a"); }),
            "XML-ini: the stream took 10 of 44 bytes");
}

TEST(XIniStreamWriter, ReportsThatItIsClosed) {
  Writer writer(MakeStream(""), 0, Writer::htDocument);
  writer.Close();
  EXPECT_EQ(ErrorOf([&] { writer.BeginSectionSE("a"); }), "XML-ini: the writer is closed");
}

TEST(XIniStreamWriter, ReportsASectionThatIsNotTheInnermostOne) {
  Writer writer(MakeStream(""), 0, Writer::htDocument);
  EXPECT_FALSE(writer.EndSection(5));
  EXPECT_EQ(ErrorOf([&] { writer.ReportWriteError(); }),
            "XML-ini: the section to end is not the innermost open one");
}

TEST(XIniStreamWriter, ThrowsFromReportWriteErrorEvenWhenNothingFailed) {
  Writer writer(MakeStream(""), 0, Writer::htDocument);
  EXPECT_THROW(writer.ReportWriteError(), TKvError);
}

// Size.

TEST(XIniStreamWriter, GivesTheStreamItsOutputInPiecesOfBoundedSize) {
  class CountingStream : public LimitedStream {
   public:
    CountingStream() : LimitedStream(~0UL) {}
    unsigned long Write(const void*, unsigned long count) override {
      largest = std::max(largest, count);
      total += count;
      return count;
    }
    unsigned long largest = 0;
    unsigned long total = 0;
  };
  auto* counting = new CountingStream;
  Writer writer(StreamPointer(counting), 0, Writer::htDocument);
  for (int i = 0; i < 100000; ++i) ASSERT_TRUE(writer.WriteS<int>("item", i));
  EXPECT_GT(counting->total, 1000000U);
  EXPECT_LE(counting->largest, 65536U);
}

TEST(XIniStreamWriter, WritesManyAttributes) {
  constexpr int kCount = 100000;
  const std::string text = InSection([](Writer& writer) {
    writer.SetAttributeMode(true);
    for (int i = 0; i < kCount; ++i)
      writer.WriteS<int>(std::string("a").append(std::to_string(i)), i);
    writer.WriteS<int>("a0", 7);
  });
  EXPECT_THAT(text, HasSubstr(" a99999=\"99999\">\n\t<a0>7</a0>\n</s>\n"));
}

TEST(XIniStreamWriter, NestsSectionsToAnyDepthWithOutputInProportion) {
  constexpr int kDepth = 100000;
  const std::string text = Written([](Writer& writer) {
    for (int i = 0; i < kDepth; ++i) ASSERT_NE(writer.BeginSectionS("s"), 0U);
  });
  EXPECT_LT(text.size(), kDepth * 2 * (32UL + 5));
}

}  // namespace
}  // namespace kv_test
