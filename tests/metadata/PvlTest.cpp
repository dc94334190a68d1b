// The general dialect: statements that end with ';'.
#include "metadata/PvlTest.h"
#include "kv/ForeignLocale.h"

namespace metadata_test {
namespace {

Outcome General(const std::string& text) {
  return ConvertText(Dialect::kGeneral, text);
}

/// What is written for the value in `A = value;`.
std::string ValueOf(const std::string& value) {
  const Outcome outcome = General("A = " + value + ";\n");
  const std::string before = kv_test::kDeclaration + std::string("<xini>\n\t<A>");
  const std::string behind = "</A>\n</xini>\n";
  EXPECT_TRUE(outcome.result);
  if (!outcome.xml.starts_with(before) || !outcome.xml.ends_with(behind)) return outcome.xml;
  const auto length = outcome.xml.size() - before.size() - behind.size();
  return outcome.xml.substr(before.size(), length);
}

TEST(Pvl, FailsForAnEmptyStreamAndWritesAnEmptyDocument) {
  EXPECT_EQ(General(""), Bad(""));
}

TEST(Pvl, SucceedsForOneEmptyLineAndWritesNothing) {
  EXPECT_EQ(General("\n"), Good(""));
}

TEST(Pvl, SucceedsForWhiteSpaceAlone) {
  EXPECT_EQ(General(" \t\r\n \n\t"), Good(""));
}

TEST(Pvl, WritesAStatementAsAnItem) {
  EXPECT_EQ(General("A = 1;\n"), Good("\t<A>1</A>\n"));
}

TEST(Pvl, WritesStatementsInTheirOrderAlsoWhenANameComesAgain) {
  EXPECT_EQ(General("B = 1;\nA = 2;\nB = 3;\n"), Good("\t<B>1</B>\n\t<A>2</A>\n\t<B>3</B>\n"));
}

TEST(Pvl, TakesSeveralStatementsOnALine) {
  EXPECT_EQ(General("A=1;B=2;\tC=3;"), Good("\t<A>1</A>\n\t<B>2</B>\n\t<C>3</C>\n"));
}

TEST(Pvl, TakesAStatementWithoutALineEnd) {
  EXPECT_EQ(General("A = 1;"), Good("\t<A>1</A>\n"));
}

TEST(Pvl, TakesLinesThatEndInCarriageReturnAndLineFeed) {
  EXPECT_EQ(General("BEGIN_GROUP = G\r\nA = 1;\r\nEND_GROUP = G\r\nEND;\r\n"),
            Good("\t<G>\n\t\t<A>1</A>\n\t</G>\n"));
}

// Values.

TEST(Pvl, RunsAValueOverLinesToTheNextSemicolon) {
  EXPECT_EQ(General("A = 1\nB = 2;\n"), Good("\t<A>1\nB = 2</A>\n"));
}

TEST(Pvl, TrimsAValueButKeepsTheBlanksInside) {
  EXPECT_EQ(ValueOf("\t\r\n a  b \v\f"), "a  b");
}

TEST(Pvl, WritesAnEmptyValue) {
  EXPECT_EQ(General("A = ;\n"), Good("\t<A/>\n"));
  EXPECT_EQ(General("A =;\n"), Good("\t<A/>\n"));
}

TEST(Pvl, DropsQuotesAndKeepsASemicolonBetweenThem) {
  EXPECT_EQ(ValueOf("\"x;y\""), "x;y");
}

TEST(Pvl, DropsQuotesInTheMiddleOfAValue) {
  EXPECT_EQ(ValueOf("a\"b;c\"d\"\""), "ab;cd");
}

TEST(Pvl, TrimsAlsoBlanksThatStoodBetweenQuotes) {
  EXPECT_EQ(ValueOf("\" a \""), "a");
}

TEST(Pvl, KeepsSingleQuotes) {
  EXPECT_EQ(ValueOf("'a'"), "'a'");
}

TEST(Pvl, TakesAFurtherEqualsSignAsPartOfTheValue) {
  EXPECT_EQ(ValueOf("b = c"), "b = c");
}

TEST(Pvl, KeepsAQuoteBehindABackslashAndDropsTheBackslash) {
  EXPECT_EQ(ValueOf(R"(a\"b)"), "a\"b");
}

TEST(Pvl, KeepsABackslashBeforeAnyOtherCharacter) {
  EXPECT_EQ(ValueOf(R"(a\b\ c)"), R"(a\b\ c)");
}

TEST(Pvl, LeavesOneOfARunOfBackslashes) {
  EXPECT_EQ(ValueOf(R"(a\\\\b)"), R"(a\b)");
}

TEST(Pvl, TakesAQuoteBehindARunOfBackslashesAsPartOfTheValue) {
  EXPECT_EQ(ValueOf(R"(a\\"b)"), "a\"b");
}

TEST(Pvl, DropsABackslashBeforeTheSemicolonThatEndsTheStatement) {
  EXPECT_EQ(ValueOf(R"(a\)"), "a");
  EXPECT_EQ(General("A = a\\;B = 2;\n"), Good("\t<A>a</A>\n\t<B>2</B>\n"));
}

TEST(Pvl, KeepsABackslashBeforeASemicolonBetweenQuotes) {
  EXPECT_EQ(ValueOf(R"("a\;b")"), R"(a\;b)");
}

TEST(Pvl, KeepsABackslashAtALineEnd) {
  EXPECT_EQ(ValueOf("a\\\nb"), "a\\\nb");
}

TEST(Pvl, KeepsAnEscapedQuoteBetweenQuotes) {
  EXPECT_EQ(ValueOf(R"("\"a;b")"), "\"a;b");
}

TEST(Pvl, SkipsALineWhoseQuoteIsNeverClosed) {
  EXPECT_EQ(General("A = \"1;\nB = 2;\n"), Good("\t<B>2</B>\n"));
}

TEST(Pvl, SkipsALineWhoseValueHasNoSemicolonUpToTheEnd) {
  EXPECT_EQ(General("A = 1\nB = 2\n"), Good(""));
}

TEST(Pvl, KeepsBytesBeyondAsciiInValues) {
  EXPECT_EQ(ValueOf("h\xC3\xB6he"), "h\xC3\xB6he");
}

TEST(Pvl, HandsOverValuesThatXmlCannotCarryWhole) {
  EXPECT_EQ(General("A = \xFF;\n"), Good("\t<A _enc=\"value\">/w==</A>\n"));
}

TEST(Pvl, EscapesWhatXmlWantsEscaped) {
  EXPECT_EQ(ValueOf("<m> & co"), "&lt;m&gt; &amp; co");
}

// Names.

TEST(Pvl, KeepsTheCaseOfNames) {
  EXPECT_EQ(General("aB = 1;\n"), Good("\t<aB>1</aB>\n"));
}

TEST(Pvl, TakesNamesOfLettersDigitsAndUnderscores) {
  EXPECT_EQ(General("_a9 = 1;\n9_Z = 2;\n"),
            Good("\t<_ _name=\"_a9\">1</_>\n\t<_ _name=\"9_Z\">2</_>\n"));
}

TEST(Pvl, SkipsALineWhoseNameHasAnotherCharacter) {
  for (const std::string name : {"FOO A", "^IMAGE", "a:b", "a-b", "a.b", "\"a\"", "h\xC3\xB6he",
                                 "\xFF", "a\v b", "a;", "(a)", "{", "@", "[", "`", "/", "\x7F"}) {
    EXPECT_EQ(General(name + " = 1;\nB = 2;\n"), Good("\t<B>2</B>\n")) << name;
  }
}

TEST(Pvl, SkipsACommentLine) {
  EXPECT_EQ(General("/* text */\nA = 1;\n"), Good("\t<A>1</A>\n"));
  EXPECT_EQ(General("# A = 1;\nA = 2;\n"), Good("\t<A>2</A>\n"));
}

TEST(Pvl, SkipsALineThatBeginsWithAnEqualsSign) {
  EXPECT_EQ(General("= 1;\nA = 2;\n"), Good("\t<A>2</A>\n"));
}

TEST(Pvl, SkipsALineWithoutAnEqualsSign) {
  EXPECT_EQ(General("A 1;\nB = 2;\n"), Good("\t<B>2</B>\n"));
}

TEST(Pvl, SkipsTheRestOfALineBehindAStatement) {
  EXPECT_EQ(General("A = 1; /* one */\nB = 2;;\nC = 3; D\n"),
            Good("\t<A>1</A>\n\t<B>2</B>\n\t<C>3</C>\n"));
}

TEST(Pvl, TakesAnEqualsSignOnTheLineBehindTheName) {
  EXPECT_EQ(General("A\n= 1;\n"), Good("\t<A>1</A>\n"));
  EXPECT_EQ(General("A \r\n\t= 1;\n"), Good("\t<A>1</A>\n"));
}

TEST(Pvl, DoesNotTakeANameWithALineEndInside) {
  EXPECT_EQ(General("A\nB = 1;\n"), Good("\t<B>1</B>\n"));
}

TEST(Pvl, TrimsVerticalTabsAndFormFeedsFromNames) {
  EXPECT_EQ(General("\v\fA\v\f= 1;\n"), Good("\t<A>1</A>\n"));
}

TEST(Pvl, TakesAVerticalTabBeforeTheEqualsSignAsAnEmptyName) {
  EXPECT_EQ(General("\v= 1;\n"), Good("\t<_>1</_>\n"));
}

TEST(Pvl, DoesNotTakeAKeywordBehindAVerticalTab) {
  EXPECT_EQ(General("\vBEGIN_GROUP = G;\n"), Good("\t<BEGIN_GROUP>G</BEGIN_GROUP>\n"));
}

// Lists.

TEST(Pvl, JoinsTheItemsOfAListWithCommas) {
  EXPECT_EQ(General("BANDS = (1, 2, 3);\n"), Good("\t<BANDS>1,2,3</BANDS>\n"));
}

TEST(Pvl, KeepsTheBracketsOfListsInAList) {
  EXPECT_EQ(ValueOf("((1,2),(3,4))"), "(1,2),(3,4)");
  EXPECT_EQ(ValueOf("(A, (B, C))"), "A,(B, C)");
}

TEST(Pvl, RunsAListOverLinesAndTrimsItsItems) {
  EXPECT_EQ(ValueOf("(\n\t1,\r\n\t2 )"), "1,2");
}

TEST(Pvl, WritesAnEmptyListAsAnEmptyValue) {
  EXPECT_EQ(General("A = ();\n"), Good("\t<A/>\n"));
}

TEST(Pvl, KeepsEmptyItemsOfAList) {
  EXPECT_EQ(ValueOf("(,a,,)"), ",a,,");
}

TEST(Pvl, IgnoresWhatFollowsAList) {
  EXPECT_EQ(ValueOf("(1, 2) <m>"), "1,2");
}

TEST(Pvl, AddsWhatStandsBeforeAListToItsFirstItem) {
  EXPECT_EQ(ValueOf("x (1, 2)"), "x 1,2");
}

TEST(Pvl, WritesAListThatIsNotClosedAsItStands) {
  EXPECT_EQ(ValueOf("(1, 2"), "(1, 2");
  EXPECT_EQ(ValueOf("((1, 2)"), "((1, 2)");
}

TEST(Pvl, KeepsBracesAndSquareBrackets) {
  EXPECT_EQ(ValueOf("{1, 2}"), "{1, 2}");
  EXPECT_EQ(ValueOf("[1, 2]"), "[1, 2]");
}

TEST(Pvl, TakesCommasAndBracketsBetweenQuotesAsPartsOfAList) {
  EXPECT_EQ(ValueOf("(\"a, b\", \")\", c)"), "a,b,");
}

// Groups.

TEST(Pvl, OpensAndClosesAGroupAsASection) {
  EXPECT_EQ(General("BEGIN_GROUP = IMAGE\nA = 1;\nEND_GROUP = IMAGE\nB = 2;\n"),
            Good("\t<IMAGE>\n\t\t<A>1</A>\n\t</IMAGE>\n\t<B>2</B>\n"));
}

TEST(Pvl, WritesAnEmptyGroupAsAnEmptySection) {
  EXPECT_EQ(General("BEGIN_GROUP = IMAGE\nEND_GROUP = IMAGE\n"), Good("\t<IMAGE/>\n"));
}

TEST(Pvl, NestsGroups) {
  EXPECT_EQ(General("BEGIN_GROUP = A\nBEGIN_GROUP = B\nEND_GROUP = B\nC = 1;\nEND_GROUP = A\n"),
            Good("\t<A>\n\t\t<B/>\n\t\t<C>1</C>\n\t</A>\n"));
}

TEST(Pvl, EndsAGroupNameAtTheSemicolonAndSkipsTheRestOfTheLine) {
  EXPECT_EQ(General("BEGIN_GROUP = IMAGE; A = 1;\nEND_GROUP = IMAGE;\n"), Good("\t<IMAGE/>\n"));
}

TEST(Pvl, TakesAStatementBehindAGroupNameOnItsLine) {
  EXPECT_EQ(General("BEGIN_GROUP = IMAGE A = 1;\n"), Good("\t<IMAGE>\n\t\t<A>1</A>\n\t</IMAGE>\n"));
}

TEST(Pvl, EndsAGroupNameAtTheFirstOtherCharacter) {
  EXPECT_EQ(General("BEGIN_GROUP = A-B\n"), Good("\t<A/>\n"));
  EXPECT_EQ(General("BEGIN_GROUP = h\xC3\xB6he\n"), Good("\t<h/>\n"));
}

TEST(Pvl, TakesDigitsAndUnderscoresInAGroupName) {
  EXPECT_EQ(General("BEGIN_GROUP = a_1Z\nEND_GROUP = a_1Z\n"), Good("\t<a_1Z/>\n"));
}

TEST(Pvl, TakesTheEqualsSignAndTheNameOfAGroupOnLinesOfTheirOwn) {
  EXPECT_EQ(General("BEGIN_GROUP\n=\r\n\tIMAGE\n"), Good("\t<IMAGE/>\n"));
}

TEST(Pvl, TakesTheFirstWordOfTheNextLineAsTheNameOfAGroupWithoutOne) {
  EXPECT_EQ(General("BEGIN_GROUP =\nA = 1;\n"), Good("\t<A/>\n"));
}

TEST(Pvl, OpensAnUnnamedGroupThatAnUnnamedEndCloses) {
  EXPECT_EQ(General("BEGIN_GROUP = ;\nEND_GROUP = ;\nA = 1;\n"), Good("\t<_/>\n\t<A>1</A>\n"));
}

TEST(Pvl, DoesNotCloseAnUnnamedGroupByAName) {
  EXPECT_EQ(General("BEGIN_GROUP = ;\nEND_GROUP = A;\nB = 1;\n"), Bad("\t<_/>\n"));
}

TEST(Pvl, DoesNotCloseANamedGroupWithoutAName) {
  EXPECT_EQ(General("BEGIN_GROUP = A;\nEND_GROUP = ;\nB = 1;\n"), Bad("\t<A/>\n"));
}

TEST(Pvl, OpensAnUnnamedGroupWhenNothingButWhiteSpaceFollows) {
  EXPECT_EQ(General("BEGIN_GROUP = \n \n"), Good("\t<_/>\n"));
}

TEST(Pvl, FailsForABeginOfAGroupWithoutAnEqualsSign) {
  EXPECT_EQ(General("A = 1;\nBEGIN_GROUP IMAGE\nB = 2;\n"), Bad("\t<A>1</A>\n"));
  EXPECT_EQ(General("BEGIN_GROUP\n"), Bad(""));
}

TEST(Pvl, FailsForAnEndOfAGroupWithoutAnEqualsSign) {
  EXPECT_EQ(General("BEGIN_GROUP = A;\nEND_GROUP A;\nB = 2;\n"), Bad("\t<A/>\n"));
  EXPECT_EQ(General("BEGIN_GROUP = A;\nEND_GROUP;\nB = 2;\n"), Bad("\t<A/>\n"));
  EXPECT_EQ(General("BEGIN_GROUP = A;\nEND_GROUP"), Bad("\t<A/>\n"));
}

TEST(Pvl, FailsForAnEndOfAGroupWhenNoneIsOpen) {
  EXPECT_EQ(General("A = 1;\nEND_GROUP = A;\nB = 2;\n"), Bad("\t<A>1</A>\n"));
}

TEST(Pvl, FailsForTheEndOfAGroupThatIsNotTheInnermostOne) {
  EXPECT_EQ(General("BEGIN_GROUP = A;\nBEGIN_GROUP = B;\nEND_GROUP = A;\nC = 1;\n"),
            Bad("\t<A>\n\t\t<B/>\n\t</A>\n"));
}

TEST(Pvl, FailsForTheEndOfAGroupInAnotherCase) {
  EXPECT_EQ(General("BEGIN_GROUP = IMAGE\nEND_GROUP = image\nA = 1;\n"), Bad("\t<IMAGE/>\n"));
}

TEST(Pvl, FailsForTheEndOfAGroupWhoseNameIsLongerOrShorter) {
  EXPECT_EQ(General("BEGIN_GROUP = AB\nEND_GROUP = ABC\n"), Bad("\t<AB/>\n"));
  EXPECT_EQ(General("BEGIN_GROUP = AB\nEND_GROUP = A\n"), Bad("\t<AB/>\n"));
}

TEST(Pvl, ClosesOneGroupOfTwoWithTheSameName) {
  EXPECT_EQ(General("BEGIN_GROUP = A\nBEGIN_GROUP = A\nEND_GROUP = A\nB = 1;\n"),
            Good("\t<A>\n\t\t<A/>\n\t\t<B>1</B>\n\t</A>\n"));
}

TEST(Pvl, SucceedsWithGroupsLeftOpen) {
  EXPECT_EQ(General("BEGIN_GROUP = A\nBEGIN_GROUP = B\nC = 1;\n"),
            Good("\t<A>\n\t\t<B>\n\t\t\t<C>1</C>\n\t\t</B>\n\t</A>\n"));
}

// Keywords.

TEST(Pvl, TakesAKeywordThatGoesOnAsAVariable) {
  EXPECT_EQ(General("BEGIN_GROUPS = 3;\n"), Good("\t<BEGIN_GROUPS>3</BEGIN_GROUPS>\n"));
  EXPECT_EQ(General("END_TIME = 5;\n"), Good("\t<END_TIME>5</END_TIME>\n"));
  EXPECT_EQ(General("END1 = 5;\n"), Good("\t<END1>5</END1>\n"));
  EXPECT_EQ(General("END_GROUP_ = 5;\n"), Good("\t<END_GROUP_>5</END_GROUP_>\n"));
}

TEST(Pvl, TakesKeywordsInOtherCasesAsVariables) {
  EXPECT_EQ(General("Begin_Group = A;\nend = 5;\nEnd_Group = A;\n"),
            Good("\t<Begin_Group>A</Begin_Group>\n\t<end>5</end>\n\t<End_Group>A</End_Group>\n"));
}

TEST(Pvl, TakesTheOtherDialectsKeywordAsAVariable) {
  EXPECT_EQ(General("GROUP = A;\n"), Good("\t<GROUP>A</GROUP>\n"));
}

TEST(Pvl, TakesObjectsAsVariables) {
  EXPECT_EQ(General("OBJECT = A;\nEND_OBJECT = A;\n"),
            Good("\t<OBJECT>A</OBJECT>\n\t<END_OBJECT>A</END_OBJECT>\n"));
}

TEST(Pvl, TakesAKeywordBeforeAnyCharacterThatIsNotOfAName) {
  EXPECT_EQ(General("BEGIN_GROUP=A\nEND_GROUP=A\nEND;"), Good("\t<A/>\n"));
  EXPECT_EQ(General("A = 1;\nBEGIN_GROUP\xC3 = 1;\n"), Bad("\t<A>1</A>\n"));
  EXPECT_EQ(General("A = 1;\nEND\xE9;\nB = 2;\n"), Bad("\t<A>1</A>\n"));
  EXPECT_EQ(General("END\v;\nB = 2;\n"), Bad(""));
}

TEST(Pvl, TakesAKeywordBehindAStatementOnItsLine) {
  EXPECT_EQ(General("A = 1;BEGIN_GROUP = G\n"), Good("\t<A>1</A>\n\t<G/>\n"));
  EXPECT_EQ(General("A = 1; END; B = 2;\n"), Good("\t<A>1</A>\n"));
}

// In the locale the byte E9 is a letter: a word goes on with it, a name of a value does not.

TEST(Pvl, TakesLettersOfTheLocaleIntoGroupNames) {
  const kv_test::ForeignLocale locale;
  if (!locale.IsThere()) GTEST_SKIP() << "this machine has no Turkish locale";
  EXPECT_EQ(General("BEGIN_GROUP = h\xE9 A = 1;\nEND_GROUP = h\xE9\nEND;\n"),
            Good("\t<_ _name=\"aOk=\" _enc=\"name\">\n\t\t<A>1</A>\n\t</_>\n"));
}

TEST(Pvl, DoesNotTakeAKeywordBeforeALetterOfTheLocale) {
  const kv_test::ForeignLocale locale;
  if (!locale.IsThere()) GTEST_SKIP() << "this machine has no Turkish locale";
  EXPECT_EQ(General("END\xE9;\nBEGIN_GROUP\xE9 G;\nEND_GROUP\xE9;\nA = 1;\n"),
            Good("\t<A>1</A>\n"));
}

TEST(Pvl, TakesNoLetterOfTheLocaleIntoTheNameOfAValue) {
  const kv_test::ForeignLocale locale;
  if (!locale.IsThere()) GTEST_SKIP() << "this machine has no Turkish locale";
  EXPECT_EQ(General("h\xE9 = 1;\nI = 2;\n"), Good("\t<I>2</I>\n"));
}

// The end.

TEST(Pvl, SucceedsAtAnEndWithASemicolonAndReadsNoFurther) {
  EXPECT_EQ(General("A = 1;\nEND;\nB = 2;\nEND_GROUP = X;\n"), Good("\t<A>1</A>\n"));
}

TEST(Pvl, TakesTheSemicolonOfTheEndOnALaterLine) {
  EXPECT_EQ(General("A = 1;\nEND \r\n\n\t;\n"), Good("\t<A>1</A>\n"));
}

TEST(Pvl, FailsForAnEndWithoutASemicolonOnTheLastLine) {
  EXPECT_EQ(General("A = 1;\nEND\n"), Bad("\t<A>1</A>\n"));
  EXPECT_EQ(General("A = 1;\nEND"), Bad("\t<A>1</A>\n"));
}

TEST(Pvl, FailsForAnEndThatSomethingElseFollows) {
  EXPECT_EQ(General("A = 1;\nEND B = 2;\n"), Bad("\t<A>1</A>\n"));
  EXPECT_EQ(General("END\nB = 2;\n"), Bad(""));
  EXPECT_EQ(General("END = 2;\n"), Bad(""));
}

TEST(Pvl, LeavesGroupsOpenAtTheEndToTheWriter) {
  EXPECT_EQ(General("BEGIN_GROUP = A\nB = 1;\nEND;\n"), Good("\t<A>\n\t\t<B>1</B>\n\t</A>\n"));
}

TEST(Pvl, SucceedsWithoutAnEnd) {
  EXPECT_EQ(General("BEGIN_GROUP = A\nEND_GROUP = A\n"), Good("\t<A/>\n"));
}

}  // namespace
}  // namespace metadata_test
