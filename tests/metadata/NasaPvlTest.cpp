// The NASA dialect: statements that end with their line.
#include "metadata/PvlTest.h"

namespace metadata_test {
namespace {

Outcome Nasa(const std::string& text) {
  return ConvertText(Dialect::kNasa, text);
}

TEST(NasaPvl, SucceedsForAnEmptyStreamAndWritesAnEmptyDocument) {
  EXPECT_EQ(Nasa(""), Good(""));
}

TEST(NasaPvl, SucceedsForOneEmptyLineAndWritesNothing) {
  EXPECT_EQ(Nasa("\n"), Good(""));
}

TEST(NasaPvl, WritesAGroupOfAWholeLabel) {
  EXPECT_EQ(Nasa("GROUP = IMAGE\n  LINES = 100\nEND_GROUP = IMAGE\nEND\n"),
            Good("\t<IMAGE>\n\t\t<LINES>100</LINES>\n\t</IMAGE>\n"));
}

TEST(NasaPvl, TakesLinesThatEndInCarriageReturnAndLineFeed) {
  EXPECT_EQ(Nasa("GROUP = IMAGE\r\n  LINES = 100\r\nEND_GROUP = IMAGE\r\nEND\r\n"),
            Good("\t<IMAGE>\n\t\t<LINES>100</LINES>\n\t</IMAGE>\n"));
}

TEST(NasaPvl, EndsAStatementWithItsLine) {
  EXPECT_EQ(Nasa("A = 1\nB = 2\n"), Good("\t<A>1</A>\n\t<B>2</B>\n"));
}

TEST(NasaPvl, EndsTheLastStatementWithoutALineEnd) {
  EXPECT_EQ(Nasa("A = 1"), Good("\t<A>1</A>\n"));
}

TEST(NasaPvl, TakesASemicolonAtTheEndOfALine) {
  EXPECT_EQ(Nasa("A = 1;\nB = 2;\nEND;\n"), Good("\t<A>1</A>\n\t<B>2</B>\n"));
}

TEST(NasaPvl, TakesSeveralStatementsOnALine) {
  EXPECT_EQ(Nasa("A = 1; B = 2\n"), Good("\t<A>1</A>\n\t<B>2</B>\n"));
}

TEST(NasaPvl, WritesAnEmptyValueForALineThatEndsBehindTheEqualsSign) {
  EXPECT_EQ(Nasa("A =\n1\n"), Good("\t<A/>\n"));
}

TEST(NasaPvl, PutsASemicolonAndALineFeedIntoAQuotedValueOverTwoLines) {
  EXPECT_EQ(Nasa("A = \"one\ntwo\"\nB = 2\n"), Good("\t<A>one;\ntwo</A>\n\t<B>2</B>\n"));
}

TEST(NasaPvl, KeepsTheCarriageReturnInAQuotedValueOverTwoLines) {
  EXPECT_EQ(Nasa("A = \"one\r\ntwo\"\r\n"), Good("\t<A>one&#13;;\ntwo</A>\n"));
}

TEST(NasaPvl, CutsAListThatRunsOverTwoLinesAndSkipsTheSecond) {
  EXPECT_EQ(Nasa("BANDS = (1, 2,\n3)\nA = 1\n"), Good("\t<BANDS>(1, 2,</BANDS>\n\t<A>1</A>\n"));
}

TEST(NasaPvl, JoinsAListOnOneLine) {
  EXPECT_EQ(Nasa("BANDS = (1, 2, \"b c\")\n"), Good("\t<BANDS>1,2,b c</BANDS>\n"));
}

TEST(NasaPvl, SkipsALineWhoseQuoteIsNeverClosed) {
  EXPECT_EQ(Nasa("A = \"1\nB = 2\n"), Good("\t<B>2</B>\n"));
}

TEST(NasaPvl, DoesNotTakeTheEqualsSignOnTheLineBehindTheName) {
  EXPECT_EQ(Nasa("A\n= 1\nB = 2\n"), Good("\t<B>2</B>\n"));
}

TEST(NasaPvl, DropsABackslashAtTheEndOfALine) {
  EXPECT_EQ(Nasa("A = a\\\nB = 2\n"), Good("\t<A>a</A>\n\t<B>2</B>\n"));
}

TEST(NasaPvl, KeepsABackslashAtTheEndOfALineBetweenQuotes) {
  EXPECT_EQ(Nasa("A = \"a\\\nb\"\n"), Good("\t<A>a\\;\nb</A>\n"));
}

TEST(NasaPvl, SkipsCommentsBlankLinesAndPointers) {
  EXPECT_EQ(Nasa("/* A = 1 */\n\n \n^IMAGE = 2\nROVER:X = 3\nA = 1\n"), Good("\t<A>1</A>\n"));
}

TEST(NasaPvl, KeepsACommentBehindAValue) {
  EXPECT_EQ(Nasa("A = 1 /* one */\n"), Good("\t<A>1 /* one */</A>\n"));
}

// Groups.

TEST(NasaPvl, NestsGroups) {
  EXPECT_EQ(Nasa("GROUP = A\nGROUP = B\nEND_GROUP = B\nC = 1\nEND_GROUP = A\n"),
            Good("\t<A>\n\t\t<B/>\n\t\t<C>1</C>\n\t</A>\n"));
}

TEST(NasaPvl, TakesTheOtherDialectsKeywordAsAVariable) {
  EXPECT_EQ(Nasa("BEGIN_GROUP = X\n"), Good("\t<BEGIN_GROUP>X</BEGIN_GROUP>\n"));
}

TEST(NasaPvl, TakesAKeywordThatGoesOnAsAVariable) {
  EXPECT_EQ(Nasa("GROUPS = 2\nGROUP_ = 3\nGROUP4 = 5\n"),
            Good("\t<GROUPS>2</GROUPS>\n\t<GROUP_>3</GROUP_>\n\t<GROUP4>5</GROUP4>\n"));
}

TEST(NasaPvl, TakesKeywordsInOtherCasesAsVariables) {
  EXPECT_EQ(Nasa("Group = A\nEnd_Group = A\n"),
            Good("\t<Group>A</Group>\n\t<End_Group>A</End_Group>\n"));
}

TEST(NasaPvl, TakesObjectsAsVariables) {
  EXPECT_EQ(Nasa("OBJECT = IMAGE\nEND_OBJECT = IMAGE\n"),
            Good("\t<OBJECT>IMAGE</OBJECT>\n\t<END_OBJECT>IMAGE</END_OBJECT>\n"));
}

TEST(NasaPvl, FailsForAGroupWithoutAnEqualsSign) {
  EXPECT_EQ(Nasa("A = 1\nGROUP IMAGE\nB = 2\n"), Bad("\t<A>1</A>\n"));
  EXPECT_EQ(Nasa("GROUP\n= IMAGE\n"), Bad(""));
}

TEST(NasaPvl, TakesALineOfTheKeywordAndTheEqualsSignAsAnUnnamedGroup) {
  EXPECT_EQ(Nasa("GROUP =\nA = 1\n"), Good("\t<_>\n\t\t<A>1</A>\n\t</_>\n"));
}

TEST(NasaPvl, FailsForAnEndOfAGroupWithoutAnEqualsSign) {
  EXPECT_EQ(Nasa("GROUP = A\nEND_GROUP\nB = 2\n"), Bad("\t<A/>\n"));
}

TEST(NasaPvl, FailsForAnEndOfAGroupWhenNoneIsOpen) {
  EXPECT_EQ(Nasa("A = 1\nEND_GROUP = A\nB = 2\n"), Bad("\t<A>1</A>\n"));
}

TEST(NasaPvl, FailsForTheEndOfAGroupThatIsNotTheInnermostOne) {
  EXPECT_EQ(Nasa("GROUP = A\nGROUP = B\nEND_GROUP = A\n"), Bad("\t<A>\n\t\t<B/>\n\t</A>\n"));
}

TEST(NasaPvl, FailsForTheEndOfAGroupInAnotherCase) {
  EXPECT_EQ(Nasa("GROUP = IMAGE\nEND_GROUP = image\n"), Bad("\t<IMAGE/>\n"));
}

TEST(NasaPvl, SucceedsWithGroupsLeftOpen) {
  EXPECT_EQ(Nasa("GROUP = A\nB = 1\nEND\n"), Good("\t<A>\n\t\t<B>1</B>\n\t</A>\n"));
}

TEST(NasaPvl, SkipsTheRestOfALineBehindAGroupName) {
  EXPECT_EQ(Nasa("GROUP = A /* one */\nEND_GROUP = A\n"), Good("\t<A/>\n"));
}

// The end.

TEST(NasaPvl, SucceedsAtAnEndAloneOnItsLineAndReadsNoFurther) {
  EXPECT_EQ(Nasa("A = 1\nEND\nB = 2\n"), Good("\t<A>1</A>\n"));
  EXPECT_EQ(Nasa("A = 1\n \tEND \t\r\nB = 2\n"), Good("\t<A>1</A>\n"));
}

TEST(NasaPvl, SucceedsAtAnEndOnTheLastLineWithoutALineEnd) {
  EXPECT_EQ(Nasa("A = 1\nEND"), Good("\t<A>1</A>\n"));
}

TEST(NasaPvl, FailsForAnEndThatACommentFollowsOnItsLine) {
  EXPECT_EQ(Nasa("A = 1\nEND /* of the label */\n"), Bad("\t<A>1</A>\n"));
}

TEST(NasaPvl, FailsForAnEndThatIsAssigned) {
  EXPECT_EQ(Nasa("END = 1\n"), Bad(""));
}

TEST(NasaPvl, TakesNamesThatBeginLikeTheEndAsVariables) {
  EXPECT_EQ(Nasa("END_TIME = 5\nENDS = 6\nEnd\n"),
            Good("\t<END_TIME>5</END_TIME>\n\t<ENDS>6</ENDS>\n"));
}

TEST(NasaPvl, SucceedsAtAnEndThatNulBytesFollow) {
  EXPECT_EQ(Nasa(std::string("A = 1\nEND") + std::string(5000, '\0') + "x"), Good("\t<A>1</A>\n"));
}

}  // namespace
}  // namespace metadata_test
