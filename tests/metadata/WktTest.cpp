// The conversion of WKT: the public function, and the worker behind it, which is hidden in the
// module and compiled in.
#include "metadata/Wkt.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "SatCommonUtils/Metadata.h"
#include "kv/BuildKind.h"
#include "kv/Growth.h"
#include "metadata/WktModel.h"
#include "support/FailingNew.h"

namespace {

using SatCommonUtils::WktSectionToXml;

constexpr const char* kDeclaration = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n";

/// The XML of a text that converts, without its first line.
std::string Converted(const std::string& wkt) {
  std::string xml;
  if (!WktSectionToXml(wkt, &xml)) return "it gave false";
  if (xml.rfind(kDeclaration, 0) != 0) return "no declaration: " + xml;
  return xml.substr(std::strlen(kDeclaration));
}

/// The lines with the line ends that the XML has.
std::string Lines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  return text;
}

/// One call of the worker: what went in, and what it made of it.
struct WorkerCall {
  std::string text;
  unsigned long pos = 0;
  unsigned long depth = 0;
  std::string encoding;
  std::string name;
  std::string out;
  bool result = false;

  void Convert() {
    result = WktSectionToXml(text.data(), text.size(), &pos, depth, encoding, name, &out);
  }
  void ConvertByModel() { result = wkt_model::Section(text, &pos, depth, encoding, name, &out); }
};

WorkerCall Call(WorkerCall call) {
  call.Convert();
  return call;
}

TEST(WktTest, ACoordinateSystemGivesAnElementASectionAndALineAnItem) {
  std::string xml;
  ASSERT_TRUE(WktSectionToXml(
      "GEOGCS[\"WGS 84\",DATUM[\"WGS_1984\",SPHEROID[\"WGS 84\",6378137,298.257223563]],"
      "PRIMEM[\"Greenwich\",0]]",
      &xml));
  EXPECT_EQ(
      xml, Lines({"<?xml version=\"1.0\" encoding=\"utf-8\"?>", "<GEOGCS>",
                  "\t<VALUE>\"WGS 84\"</VALUE>", "\t<DATUM>", "\t\t<VALUE>\"WGS_1984\"</VALUE>",
                  "\t\t<SPHEROID>", "\t\t\t<VALUE>\"WGS 84\"</VALUE>",
                  "\t\t\t<VALUE>6378137</VALUE>", "\t\t\t<VALUE>298.257223563</VALUE>",
                  "\t\t</SPHEROID>", "\t</DATUM>", "\t<PRIMEM>", "\t\t<VALUE>\"Greenwich\"</VALUE>",
                  "\t\t<VALUE>0</VALUE>", "\t</PRIMEM>", "</GEOGCS>"}));
}

TEST(WktTest, TheXmlReplacesWhatTheStringHeld) {
  std::string xml = "held before";
  ASSERT_TRUE(WktSectionToXml("A[1]", &xml));
  EXPECT_EQ(xml, kDeclaration + Lines({"<A>", "\t<VALUE>1</VALUE>", "</A>"}));
}

TEST(WktTest, AnEmptyTextGivesFalseAndLeavesTheString) {
  std::string xml = "held before";
  EXPECT_FALSE(WktSectionToXml("", &xml));
  EXPECT_EQ(xml, "held before");
}

TEST(WktTest, TheStringMayBeTheTextItself) {
  std::string text = "A[1]";
  ASSERT_TRUE(WktSectionToXml(text, &text));
  EXPECT_EQ(text, kDeclaration + Lines({"<A>", "\t<VALUE>1</VALUE>", "</A>"}));
}

TEST(WktTest, ATextOfBlanksGivesTheDeclarationAlone) {
  EXPECT_EQ(Converted(" \t\r\n"), "");
}

TEST(WktTest, ATextWithoutABracketGivesTheDeclarationAlone) {
  EXPECT_EQ(Converted("WGS 84"), "");
}

TEST(WktTest, AnItemBeforeTheFirstBracketIsWrittenBeforeTheSection) {
  EXPECT_EQ(Converted("1,A[2]"),
            Lines({"\t<VALUE>1</VALUE>", "<A>", "\t<VALUE>2</VALUE>", "</A>"}));
}

TEST(WktTest, AClosingBracketBeforeTheFirstOpeningOneClosesAnElementWithoutAName) {
  EXPECT_EQ(Converted("1]A[2]"), Lines({"\t<VALUE>1</VALUE>", "</>"}));
}

TEST(WktTest, TheNameOfTheOutermostSectionLosesItsBlanks) {
  EXPECT_EQ(Converted(" GEOG\tCS\r\n [1]"), Lines({"<GEOGCS>", "\t<VALUE>1</VALUE>", "</GEOGCS>"}));
}

TEST(WktTest, TheNameOfAnInnerSectionLosesItsBlanks) {
  EXPECT_EQ(Converted("A[ B C [1]]"),
            Lines({"<A>", "\t<BC>", "\t\t<VALUE>1</VALUE>", "\t</BC>", "</A>"}));
}

TEST(WktTest, BlanksOutsideQuotesDisappear) {
  EXPECT_EQ(Converted("AXIS[\"Easting\", EAST]"),
            Lines({"<AXIS>", "\t<VALUE>\"Easting\"</VALUE>", "\t<VALUE>EAST</VALUE>", "</AXIS>"}));
}

TEST(WktTest, EveryKindOfBlankDisappearsInsideATokenToo) {
  EXPECT_EQ(Converted("A[1 2\t3\n4\v5\f6\r7]"), Lines({"<A>", "\t<VALUE>1234567</VALUE>", "</A>"}));
}

TEST(WktTest, BlanksInsideQuotesStay) {
  EXPECT_EQ(Converted("A[\" a\tb\r\nc \"]"),
            Lines({"<A>", "\t<VALUE>\" a\tb\r\nc \"</VALUE>", "</A>"}));
}

TEST(WktTest, SeparatorsAndBracketsInsideQuotesBelongToTheValue) {
  EXPECT_EQ(Converted("A[\"x,[y],]\",1]"),
            Lines({"<A>", "\t<VALUE>\"x,[y],]\"</VALUE>", "\t<VALUE>1</VALUE>", "</A>"}));
}

TEST(WktTest, ADoubledQuoteStaysDoubled) {
  EXPECT_EQ(Converted("A[\"a \"\" b\"]"), Lines({"<A>", "\t<VALUE>\"a \"\" b\"</VALUE>", "</A>"}));
}

TEST(WktTest, ATokenMayBeQuotedInPart) {
  EXPECT_EQ(Converted("A[x \" y \" z]"), Lines({"<A>", "\t<VALUE>x\" y \"z</VALUE>", "</A>"}));
}

TEST(WktTest, AQuotedNameKeepsItsQuotesAndBlanks) {
  EXPECT_EQ(Converted("\"A B\"[1]"), Lines({"<\"A B\">", "\t<VALUE>1</VALUE>", "</\"A B\">"}));
}

TEST(WktTest, AnEmptyItemWritesNothing) {
  EXPECT_EQ(Converted("A[,,1, ,2,]"),
            Lines({"<A>", "\t<VALUE>1</VALUE>", "\t<VALUE>2</VALUE>", "</A>"}));
}

TEST(WktTest, AnEmptyQuotedItemIsWritten) {
  EXPECT_EQ(Converted("A[\"\"]"), Lines({"<A>", "\t<VALUE>\"\"</VALUE>", "</A>"}));
}

TEST(WktTest, AnEmptySectionGivesItsTwoLines) {
  EXPECT_EQ(Converted("A[]"), Lines({"<A>", "</A>"}));
}

TEST(WktTest, ACommaBehindASectionWritesNothing) {
  EXPECT_EQ(Converted("A[B[],C[]]"), Lines({"<A>", "\t<B>", "\t</B>", "\t<C>", "\t</C>", "</A>"}));
}

TEST(WktTest, SectionsNeedNoCommaBetweenThem) {
  EXPECT_EQ(Converted("A[B[]C[]]"), Converted("A[B[],C[]]"));
}

TEST(WktTest, TextBehindASectionIsAnItemOfItsOwn) {
  EXPECT_EQ(Converted("A[B[]x,1]"),
            Lines({"<A>", "\t<B>", "\t</B>", "\t<VALUE>x</VALUE>", "\t<VALUE>1</VALUE>", "</A>"}));
}

TEST(WktTest, TextBehindTheOutermostSectionIsIgnored) {
  EXPECT_EQ(Converted("A[1],B[2]"), Lines({"<A>", "\t<VALUE>1</VALUE>", "</A>"}));
}

TEST(WktTest, ParenthesesAndBracesAreOrdinaryCharacters) {
  EXPECT_EQ(Converted("A[B(1),{2}]"),
            Lines({"<A>", "\t<VALUE>B(1)</VALUE>", "\t<VALUE>{2}</VALUE>", "</A>"}));
}

TEST(WktTest, ATextWithParenthesesForBracketsGivesNoElements) {
  EXPECT_EQ(Converted("GEOGCS(\"WGS 84\",PRIMEM(\"Greenwich\",0))"),
            Lines({"\t<VALUE>GEOGCS(\"WGS 84\"</VALUE>", "\t<VALUE>PRIMEM(\"Greenwich\"</VALUE>"}));
}

TEST(WktTest, NothingIsEscaped) {
  EXPECT_EQ(Converted("A<&>[\"b & <c>\",<,&amp;]"),
            Lines({"<A<&>>", "\t<VALUE>\"b & <c>\"</VALUE>", "\t<VALUE><</VALUE>",
                   "\t<VALUE>&amp;</VALUE>", "</A<&>>"}));
}

TEST(WktTest, CaseAndCharactersOfNamesStay) {
  EXPECT_EQ(Converted("aB-1.x:y[cD]"), Lines({"<aB-1.x:y>", "\t<VALUE>cD</VALUE>", "</aB-1.x:y>"}));
}

TEST(WktTest, ANulByteIsAnOrdinaryCharacter) {
  const std::string nul(1, '\0');
  EXPECT_EQ(Converted("A[1" + nul + "2]"),
            Lines({"<A>", "\t<VALUE>1" + nul + "2</VALUE>", "</A>"}));
}

TEST(WktTest, ATextThatEndsInASectionHasNoClosingLinesAndLosesItsLastItem) {
  EXPECT_EQ(Converted("A[1,B[2,3"),
            Lines({"<A>", "\t<VALUE>1</VALUE>", "\t<B>", "\t\t<VALUE>2</VALUE>"}));
}

TEST(WktTest, ATextThatEndsBehindAnInnerSectionLacksTheOuterClosingLine) {
  EXPECT_EQ(Converted("A[B[2]"), Lines({"<A>", "\t<B>", "\t\t<VALUE>2</VALUE>", "\t</B>"}));
}

TEST(WktTest, ATextThatEndsBehindAnOpeningBracketHasThatSectionsFirstLine) {
  EXPECT_EQ(Converted("A[B["), Lines({"<A>", "\t<B>"}));
}

TEST(WktTest, ATextThatEndsInQuotesLosesTheQuotedItem) {
  EXPECT_EQ(Converted("A[1,\"b]"), Lines({"<A>", "\t<VALUE>1</VALUE>"}));
}

TEST(WktTest, ABracketWithoutANameInASectionBeginsADocumentOfItsOwn) {
  EXPECT_EQ(Converted("A[[1]]"), Lines({"<A>", "\t<?xml version=\"1.0\" encoding=\"\"?>", "\t<>",
                                        "\t\t<VALUE>1</VALUE>", "\t</>", "</A>"}));
}

TEST(WktTest, ATextThatBeginsWithABracketHasAnElementWithoutAName) {
  EXPECT_EQ(Converted("[1]"), Lines({"<>", "\t<VALUE>1</VALUE>", "</>"}));
}

TEST(WktTest, ASectionWithoutANameIsStillNamedByItsNextBracket) {
  EXPECT_EQ(Converted("[B[1]]"), Lines({"<>", "<B>", "\t<VALUE>1</VALUE>", "</B>"}));
}

TEST(WktTest, TextThatIsUtf8IsPassedOn) {
  EXPECT_EQ(Converted("A[\"Z\xC3\xBCrich \xE2\x82\xAC\"]"),
            Lines({"<A>", "\t<VALUE>\"Z\xC3\xBCrich \xE2\x82\xAC\"</VALUE>", "</A>"}));
}

TEST(WktTest, TextThatIsNotUtf8IsReadAsWindows1252) {
  EXPECT_EQ(
      Converted("A\xC4[\"Z\xFCrich \x80\"]"),
      Lines({"<A\xC3\x84>", "\t<VALUE>\"Z\xC3\xBCrich \xE2\x82\xAC\"</VALUE>", "</A\xC3\x84>"}));
}

TEST(WktTest, OneByteThatIsNotUtf8MakesAllOfTheTextWindows1252) {
  EXPECT_EQ(Converted("A[\"\xC3\xBC\",\"\xFC\"]"),
            Lines({"<A>", "\t<VALUE>\"\xC3\x83\xC2\xBC\"</VALUE>", "\t<VALUE>\"\xC3\xBC\"</VALUE>",
                   "</A>"}));
}

TEST(WktTest, BytesThatAreDroppedHaveNoSayInTheEncoding) {
  EXPECT_EQ(Converted("A[\"\xC3\xBC\"]\xFC"),
            Lines({"<A>", "\t<VALUE>\"\xC3\xBC\"</VALUE>", "</A>"}));
}

TEST(WktTest, BlanksDroppedBetweenTheBytesOfACharacterJoinThem) {
  EXPECT_EQ(Converted("A[\xC3 \xBC]"), Lines({"<A>", "\t<VALUE>\xC3\xBC</VALUE>", "</A>"}));
}

TEST(WktWorkerTest, APositionAtTheEndGivesFalseAndChangesNothing) {
  const WorkerCall call = Call({"A[1]", 4, 1, "e", "N", "held"});
  EXPECT_FALSE(call.result);
  EXPECT_EQ(call.pos, 4u);
  EXPECT_EQ(call.out, "held");
}

TEST(WktWorkerTest, APositionBehindTheEndGivesFalseAndChangesNothing) {
  const WorkerCall call = Call({"A[1]", ~0ul, 0, "", "", "held"});
  EXPECT_FALSE(call.result);
  EXPECT_EQ(call.pos, ~0ul);
  EXPECT_EQ(call.out, "held");
}

TEST(WktWorkerTest, TheXmlIsAppended) {
  const WorkerCall call = Call({"[1]", 0, 0, "", "N", "held"});
  EXPECT_TRUE(call.result);
  EXPECT_EQ(call.out, "held" + Lines({"<N>", "\t<VALUE>1</VALUE>", "</N>"}));
}

TEST(WktWorkerTest, ThePositionStandsBehindTheClosingBracket) {
  EXPECT_EQ(Call({"A[B[1],2],3", 3, 0, "", "B", ""}).pos, 6u);
}

TEST(WktWorkerTest, ThePositionStandsAtTheEndOfATextThatEndsFirst) {
  EXPECT_EQ(Call({"A[B[1", 3, 0, "", "B", ""}).pos, 5u);
}

TEST(WktWorkerTest, TheDepthIndentsLinesAndOneMoreValues) {
  EXPECT_EQ(Call({"[1,C[2]]", 0, 2, "", "B", ""}).out,
            Lines({"\t\t<B>", "\t\t\t<VALUE>1</VALUE>", "\t\t\t<C>", "\t\t\t\t<VALUE>2</VALUE>",
                   "\t\t\t</C>", "\t\t</B>"}));
}

TEST(WktWorkerTest, ADocumentIsIndentedByItsDepthToo) {
  EXPECT_EQ(Call({"A[1]", 0, 1, "x", "", ""}).out,
            Lines({"\t<?xml version=\"1.0\" encoding=\"x\"?>", "\t<A>", "\t\t<VALUE>1</VALUE>",
                   "\t</A>"}));
}

TEST(WktWorkerTest, TheEncodingIsOnlyForADocument) {
  EXPECT_EQ(Call({"[1]", 0, 0, "x", "N", ""}).out, Lines({"<N>", "\t<VALUE>1</VALUE>", "</N>"}));
}

TEST(WktWorkerTest, TheCharacterWhereANamedSectionBeginsIsSkippedWhateverItIs) {
  EXPECT_EQ(Call({"]1]", 0, 0, "", "N", ""}).out, Lines({"<N>", "\t<VALUE>1</VALUE>", "</N>"}));
}

TEST(WktWorkerTest, ANamedSectionAtTheLastCharacterGivesItsFirstLine) {
  const WorkerCall call = Call({"A[", 1, 0, "", "A", ""});
  EXPECT_TRUE(call.result);
  EXPECT_EQ(call.pos, 2u);
  EXPECT_EQ(call.out, "<A>\r\n");
}

TEST(WktWorkerTest, ADocumentBeginsAtThePosition) {
  EXPECT_EQ(Call({"A[1],B[2]", 5, 0, "e", "", ""}).out,
            Lines({"<?xml version=\"1.0\" encoding=\"e\"?>", "<B>", "\t<VALUE>2</VALUE>", "</B>"}));
}

TEST(WktWorkerTest, NothingIsConvertedToAnotherEncoding) {
  EXPECT_EQ(Call({"[\xFC]", 0, 0, "", "N\xC4", ""}).out,
            Lines({"<N\xC4>", "\t<VALUE>\xFC</VALUE>", "</N\xC4>"}));
}

TEST(WktWorkerTest, WhiteSpaceBehindTheLengthIsNotPassedOver) {
  const std::string text = "A[1    ";
  unsigned long pos = 0;
  std::string out;
  EXPECT_TRUE(WktSectionToXml(text.data(), 3, &pos, 0, "", "", &out));
  EXPECT_EQ(pos, 3u);
}

TEST(WktWorkerTest, NoByteBehindTheLengthIsRead) {
  const std::string whole = "A[\"b\",C[1,2]] ";
  for (unsigned long length = 0; length <= whole.size(); ++length) {
    const std::unique_ptr<char[]> cut(new char[length]);
    std::copy_n(whole.data(), length, cut.get());
    unsigned long pos = 0;
    std::string out;
    const bool result = WktSectionToXml(cut.get(), length, &pos, 0, "utf-8", "", &out);
    unsigned long modelPos = 0;
    std::string modelOut;
    EXPECT_EQ(result,
              wkt_model::Section(whole.substr(0, length), &modelPos, 0, "utf-8", "", &modelOut));
    EXPECT_EQ(pos, modelPos) << length;
    EXPECT_EQ(out, modelOut) << length;
  }
}

/// A text of the syntax's own characters.
std::string RandomWkt(std::mt19937* random, unsigned long length) {
  static const std::string kOften = "[[[]]],,,\"\" \t\r\nABx019.()<&>{}\xC3\xBC\xFC\x80\xA0\x85";
  static const std::vector<std::string> kPieces = {"A[", "B[\"", "\",", "]", "],", ",,", "[[", "1"};
  std::string text;
  const bool hasPieces = (*random)() % 2 == 0;
  while (text.size() < length) {
    if (hasPieces && (*random)() % 2 == 0) {
      text += kPieces[(*random)() % kPieces.size()];
    } else if ((*random)() % 50 == 0) {
      text += '\0';
    } else {
      text += kOften[(*random)() % kOften.size()];
    }
  }
  return text.substr(0, length);
}

/// Mostly short, one in fifty up to 600.
unsigned long RandomLength(std::mt19937* random) {
  return (*random)() % ((*random)() % 50 == 0 ? 601 : 61);
}

TEST(WktModelTest, RandomTextsGiveWhatTheModelGives) {
  std::mt19937 random(20240521);
  for (int i = 0; i < 100000; ++i) {
    const std::string text = RandomWkt(&random, RandomLength(&random));
    std::string xml = "held";
    std::string expected = "held";
    ASSERT_EQ(WktSectionToXml(text, &xml), wkt_model::Document(text, &expected)) << text;
    ASSERT_EQ(xml, expected) << text;
  }
}

TEST(WktModelTest, RandomCallsOfTheWorkerGiveWhatTheModelGives) {
  const std::vector<std::string> names = {"", "", "N", "A B", "<\"", "[", "\xFC"};
  const std::vector<std::string> encodings = {"", "utf-8", "\"x"};
  std::mt19937 random(7);
  for (int i = 0; i < 100000; ++i) {
    WorkerCall call;
    call.text = RandomWkt(&random, RandomLength(&random));
    call.pos = random() % (random() % 4 == 0 ? call.text.size() + 3 : 3);
    call.depth = random() % 5;
    call.encoding = encodings[random() % encodings.size()];
    call.name = names[random() % names.size()];
    call.out = random() % 2 == 0 ? "" : "held";
    WorkerCall model = call;
    call.Convert();
    model.ConvertByModel();
    ASSERT_EQ(call.result, model.result) << call.text;
    ASSERT_EQ(call.pos, model.pos) << call.text;
    ASSERT_EQ(call.out, model.out) << call.text;
  }
}

TEST(WktModelTest, ATextCutAtEveryByteGivesWhatTheModelGives) {
  const std::string whole =
      "GEOGCS[\"WGS 84\",DATUM[\"WGS, [1984]\",SPHEROID[\"WGS 84\",6378137]],[\"\"],"
      "AXIS [\"Long\", EAST]] tail";
  for (unsigned long length = 0; length <= whole.size(); ++length) {
    std::string xml;
    std::string expected;
    const std::string text = whole.substr(0, length);
    EXPECT_EQ(WktSectionToXml(text, &xml), wkt_model::Document(text, &expected)) << text;
    EXPECT_EQ(xml, expected) << text;
  }
}

/// `count` times `piece`.
std::string Repeated(unsigned long count, const std::string& piece) {
  std::string text;
  text.reserve(count * piece.size());
  for (unsigned long i = 0; i < count; ++i) text += piece;
  return text;
}

/// Runs on a thread with a stack of 128 KiB.
void RunOnASmallStack(const std::function<void()>& action) {
  constexpr std::size_t kStack = 128 * 1024;
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, kStack), 0);
  pthread_t thread;
  const auto run = [](void* argument) -> void* {
    (*static_cast<const std::function<void()>*>(argument))();
    return nullptr;
  };
  void* argument = const_cast<std::function<void()>*>(&action);
  ASSERT_EQ(pthread_create(&thread, &attributes, run, argument), 0);
  pthread_attr_destroy(&attributes);
  pthread_join(thread, nullptr);
}

// The stack holds 43 bytes a level.
TEST(WktNestingTest, SectionsNested3000DeepAreWrittenWholeOnASmallStack) {
  constexpr unsigned long kDepth = 3000;
  const std::string text = Repeated(kDepth, "A[") + "1" + Repeated(kDepth, "]");
  std::string expected = kDeclaration;
  for (unsigned long i = 0; i < kDepth; ++i) expected += std::string(i, '\t') + "<A>\r\n";
  expected += std::string(kDepth, '\t') + "<VALUE>1</VALUE>\r\n";
  for (unsigned long i = kDepth; i-- > 0;) expected += std::string(i, '\t') + "</A>\r\n";
  bool result = false;
  std::string xml;
  RunOnASmallStack([&] { result = WktSectionToXml(text, &xml); });
  EXPECT_TRUE(result);
  EXPECT_TRUE(xml == expected);
}

// A section without a name takes the next bracket for its own, so a name stands between two.
TEST(WktNestingTest, BracketsWithoutNamesNested3000DeepAreWrittenWholeOnASmallStack) {
  constexpr unsigned long kDepth = 3000;
  const std::string text = Repeated(kDepth, "A[,[");
  std::string expected = std::string(kDeclaration) + "<A>\r\n";
  for (unsigned long i = 1; i <= kDepth; ++i) {
    const std::string indent(i, '\t');
    expected += Lines({indent + "<?xml version=\"1.0\" encoding=\"\"?>", indent + "<>"});
    if (i < kDepth) expected += Lines({indent + "<A>"});
  }
  bool result = false;
  std::string xml;
  RunOnASmallStack([&] { result = WktSectionToXml(text, &xml); });
  EXPECT_TRUE(result);
  EXPECT_TRUE(xml == expected);
}

TEST(WktNestingTest, A100000BracketsOfOneSectionNeedNoStack) {
  constexpr unsigned long kCount = 100000;
  std::string xml;
  const std::string text = Repeated(kCount, "[");
  bool result = false;
  RunOnASmallStack([&] { result = WktSectionToXml(text, &xml); });
  EXPECT_TRUE(result);
  EXPECT_TRUE(xml == kDeclaration + Repeated(kCount, "<>\r\n"));
}

/// Ends the process: 0 when the conversion ran out of memory and left the string alone.
[[noreturn]] void ConvertInLittleMemory(const std::string& text) {
  const rlimit memory{256ul << 20, 256ul << 20};
  int code = 1;
  if (setrlimit(RLIMIT_AS, &memory) != 0) std::_Exit(2);
  RunOnASmallStack([&] {
    std::string xml = "held";
    try {
      WktSectionToXml(text, &xml);
    } catch (const std::bad_alloc&) {
      code = xml == "held" ? 0 : 3;
    }
  });
  std::_Exit(code);
}

// Its indentation alone is 5 GB.
TEST(WktNestingTest, SectionsNested100000DeepRunOutOfMemoryAndNotOfStack) {
  if (kv_test::kSanitized) GTEST_SKIP() << "a sanitizer needs more memory than is left to it";
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const std::string text = Repeated(100000, "A[");
  EXPECT_EXIT(ConvertInLittleMemory(text), ::testing::ExitedWithCode(0), "");
}

/// Sections side by side, each two levels down.
std::string Siblings(unsigned long count) {
  return "A[B[" + Repeated(count, "C[\"x\",1],") + "]]";
}

TEST(WktNestingTest, A100000SiblingsAtDepthThreeAreWritten) {
  constexpr unsigned long kCount = 100000;
  const std::string sibling =
      Lines({"\t\t<C>", "\t\t\t<VALUE>\"x\"</VALUE>", "\t\t\t<VALUE>1</VALUE>", "\t\t</C>"});
  EXPECT_TRUE(Converted(Siblings(kCount)) ==
              Lines({"<A>", "\t<B>"}) + Repeated(kCount, sibling) + Lines({"\t</B>", "</A>"}));
}

/// Whether texts that `make` gives for a size are converted in linear time.
bool ConvertsLinearly(const std::function<std::string(unsigned long)>& make) {
  return kv_test::IsLinear(25000, [&](unsigned long size) {
    std::string xml;
    EXPECT_TRUE(WktSectionToXml(make(size), &xml));
  });
}

TEST(WktGrowthTest, SiblingsAtDepthThreeCostLinearTime) {
  EXPECT_TRUE(ConvertsLinearly(Siblings));
}

TEST(WktGrowthTest, SiblingsInChainsOfSectionsCostLinearTime) {
  EXPECT_TRUE(ConvertsLinearly([](unsigned long size) {
    return Repeated(30, "A[") + Repeated(size, "B[1]") + Repeated(30, "]");
  }));
}

TEST(WktGrowthTest, OneLongTokenCostsLinearTime) {
  EXPECT_TRUE(
      ConvertsLinearly([](unsigned long size) { return "A[" + Repeated(4 * size, "x y ") + "]"; }));
}

TEST(WktGrowthTest, OneLongQuotedItemCostsLinearTime) {
  EXPECT_TRUE(
      ConvertsLinearly([](unsigned long size) { return "A[\"" + Repeated(8 * size, "[], "); }));
}

TEST(WktGrowthTest, OnlyQuotesCostLinearTime) {
  EXPECT_TRUE(ConvertsLinearly([](unsigned long size) { return Repeated(8 * size, "\""); }));
}

TEST(WktGrowthTest, OnlyCommasCostLinearTime) {
  EXPECT_TRUE(ConvertsLinearly([](unsigned long size) { return Repeated(8 * size, ","); }));
}

TEST(WktGrowthTest, OnlyOpeningBracketsCostLinearTime) {
  EXPECT_TRUE(ConvertsLinearly([](unsigned long size) { return Repeated(8 * size, "["); }));
}

TEST(WktMemoryTest, AnAllocationThatFailsPassesAndLeavesTheString) {
  const std::string text = "A[\"\xFC long enough to need memory of its own\",B[C[1,2],[3]]]";
  std::string expected;
  ASSERT_TRUE(WktSectionToXml(text, &expected));
  unsigned long failures = 0;
  for (bool isDone = false; !isDone; ++failures) {
    ASSERT_LT(failures, 1000u);
    std::string xml = "held";
    isDone = true;
    try {
      const ravelin_test::FailingNew failing(failures);
      WktSectionToXml(text, &xml);
    } catch (const std::bad_alloc&) {
      isDone = false;
    }
    EXPECT_EQ(xml, isDone ? expected : "held");
  }
  EXPECT_GT(failures, 1u);
}

}  // namespace
