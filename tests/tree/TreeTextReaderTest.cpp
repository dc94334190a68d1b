#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "text/GuardedBytes.h"
#include "tree/TreeTest.h"

namespace {

using namespace tree_test;
using text_test::GuardedBytes;

TEST(TreeTextReaderTest, ATreeLineAndATerminatorAreATreeWithoutChildren) {
  EXPECT_EQ(DescribeText("(5,7)Orbit\n\n"), "S(5,7)5:Orbit{}");
}

TEST(TreeTextReaderTest, TheHeaderOfATreeIsNotUnescaped) {
  EXPECT_EQ(DescribeText("(5,7)a\\t(\tb) \\\n\n"), "S(5,7)9:a\\t(\tb) \\{}");
}

TEST(TreeTextReaderTest, FieldsAndSubtreesMayMix) {
  EXPECT_EQ(DescribeText("(0,0)r\n(1,0)[1]a\tx\n\t(2,0)s\n(3,0)[1]b\ty\n\t\n(4,0)[1]c\tz\n"
                         "\t(5,0)t\n\t\n\n"),
            "S(0,0)1:r{S(1,0)1:a[1:x;]S(4,0)1:c[1:z;]S(2,0)1:s{S(3,0)1:b[1:y;]}S(5,0)1:t{}}");
}

TEST(TreeTextReaderTest, EachLevelTakesOneTerminator) {
  TStringTree tree(0, 0, nullptr, "");
  std::size_t position = 0;
  const std::string text = "(0,0)\n\t(1,0)\n\n\n(9,9)";
  tree.ReadFromString(text.c_str(), &position, nullptr);
  EXPECT_EQ(Describe(tree), "S(0,0)0:{S(1,0)0:{}}");
  EXPECT_EQ(text.substr(position), "(9,9)");
}

TEST(TreeTextReaderTest, ATerminatorOfLessTabsClosesTheInnermostTree) {
  EXPECT_EQ(DescribeText("(0,0)\n\t(1,0)\n\t\t(2,0)\n\n(3,0)[1]a\tb\n\n\n"),
            "S(0,0)0:{S(1,0)0:{S(3,0)1:a[1:b;]S(2,0)0:{}}}");
}

TEST(TreeTextReaderTest, AFieldOfLessTabsBelongsToTheInnermostTree) {
  EXPECT_EQ(DescribeText("(0,0)\n\t\t(1,0)\n(2,0)[1]a\tb\n\t(3,0)[1]c\td\n\t\t(4,0)[1]e\tf\n\n\n"),
            "S(0,0)0:{S(1,0)0:{S(2,0)1:a[1:b;]S(3,0)1:c[1:d;]S(4,0)1:e[1:f;]}}");
}

TEST(TreeTextReaderTest, AnyNumberOfTabsAboveTheTreesBeginsASubtree) {
  EXPECT_EQ(DescribeText("(0,0)\n\t\t\t(1,0)\n\t\t\t\t(2,0)\n\n\n\n"),
            "S(0,0)0:{S(1,0)0:{S(2,0)0:{}}}");
}

TEST(TreeTextReaderTest, ARootMayBeIndented) {
  EXPECT_EQ(DescribeText("\t\t(0,0)r\n\t(1,0)[1]a\tb\n\t\t\t(2,0)s\n\n\n"),
            "S(0,0)1:r{S(1,0)1:a[1:b;]S(2,0)1:s{}}");
}

TEST(TreeTextReaderTest, ReadingBeginsAtThePositionAndSetsIt) {
  TStringTree tree(0, 0, nullptr, "");
  std::size_t position = 3;
  tree.ReadFromString("###(5,7)Orbit\n\n###", &position, nullptr);
  EXPECT_EQ(Describe(tree), "S(5,7)5:Orbit{}");
  EXPECT_EQ(position, 15u);
}

TEST(TreeTextReaderTest, WithoutAPositionReadingBeginsAtTheStart) {
  EXPECT_EQ(DescribeText("(5,7)Orbit\n\n###"), "S(5,7)5:Orbit{}");
}

TEST(TreeTextReaderTest, TheParentIsStored) {
  TStringTree parent(0, 0, nullptr, "");
  TStringTree tree(0, 0, nullptr, "");
  tree.ReadFromString("(5,7)Orbit\n\n", nullptr, &parent);
  EXPECT_EQ(tree.parent, &parent);
  tree.ReadFromString("(5,7)Orbit\n\n", nullptr, nullptr);
  EXPECT_EQ(tree.parent, nullptr);
}

TEST(TreeTextReaderTest, TheHeaderIsReplacedAndChildrenAreAppended) {
  TStringTree tree(1, 1, nullptr, "old");
  tree.InsertString("a", 1, 0, "b");
  tree.ReadFromString("(5,7)new\n(1,0)[1]c\td\n\n", nullptr, nullptr);
  EXPECT_EQ(Describe(tree), "S(5,7)3:new{S(1,0)1:a[1:b;]S(1,0)1:c[1:d;]}");
}

TEST(TreeTextReaderTest, ANumberThatIsNotThereLeavesWhatWasThere) {
  TStringTree tree(8, 9, nullptr, "");
  tree.ReadFromString("(x,7)a\n\n", nullptr, nullptr);
  EXPECT_EQ(Describe(tree), "S(8,9)1:a{}");
  tree.ReadFromString("(5;7)a\n\n", nullptr, nullptr);
  EXPECT_EQ(Describe(tree), "S(5,9)1:a{}");
  EXPECT_EQ(DescribeText("(0,0)\n\t(x,7)a\n\n\n"), "S(0,0)0:{S(0,0)1:a{}}");
}

TEST(TreeTextReaderTest, NegativeKeysAreRead) {
  EXPECT_EQ(DescribeText("(-5,-7)a\n(-1,-2)[1]b\tc\n\n"), "S(-5,-7)1:a{S(-1,-2)1:b[1:c;]}");
}

TEST(TreeTextReaderTest, KeysAreNotComparedInReading) {
  EXPECT_EQ(DescribeText("(0,0)\n(1,0)[1]a\tb\n(1,0)[1]c\td\n\t(2,0)\n\n\t(2,0)\n\n\n"),
            "S(0,0)0:{S(1,0)1:a[1:b;]S(1,0)1:c[1:d;]S(2,0)0:{}S(2,0)0:{}}");
}

TEST(TreeTextReaderTest, AGeneralTreeReadsGeneralNodesAndNoValues) {
  Tree tree(0, 0, nullptr, "");
  tree.ReadFromString("(0,0)r\n(1,0)[1]a\tx\n\t(2,0)s\n\n\n", nullptr, nullptr);
  EXPECT_EQ(Describe(tree), "G(0,0)1:r{G(1,0)1:a[0:;]G(2,0)1:s{}}");
}

TEST(TreeTextReaderTest, AFieldWithoutValuesTakesTheNextTabForItsOwn) {
  EXPECT_EQ(DescribeText("(0,0)r\n(1,0)[0]a\n(2,0)[1]b\tx\n\n"),
            "S(0,0)1:r{S(1,0)11:a\n(2,0)[1]b[]}");
}

TEST(TreeTextReaderTest, TheNulClosesAllThatIsOpen) {
  EXPECT_EQ(DescribeText(""), "S(0,0)0:{}");
  EXPECT_EQ(DescribeText("(5,7"), "S(5,7)0:{}");
  EXPECT_EQ(DescribeText("(5,7)Or"), "S(5,7)2:Or{}");
  EXPECT_EQ(DescribeText("(0,0)\n\t(1,0)\n\t\t(2,0)x"), "S(0,0)0:{S(1,0)0:{S(2,0)1:x{}}}");
}

TEST(TreeTextReaderTest, TextCutInItsIndentationHasNoTreeThere) {
  EXPECT_EQ(DescribeText("(0,0)\n\t\t"), "S(0,0)0:{}");
}

TEST(TreeTextReaderTest, ThePositionEndsAtTheNul) {
  TStringTree tree(0, 0, nullptr, "");
  std::size_t position = 0;
  tree.ReadFromString("(0,0)\n\t(1,0)\n\t", &position, nullptr);
  EXPECT_EQ(position, 14u);
}

const std::string kText =
    "(1,0)Product\n(10,0)[2]Rows\t5\\n12\t\n\t(2,0)Sensor\n\t(11,0)[1]x\\ty\tv\n\t\t(3,0)"
    "\n\t\t\n\t\n"
    "(4,-1)[1]z\tlast\n\n";

TEST(TreeTextReaderTest, TextCutAnywhereIsReadWithoutTouchingWhatLiesBehind) {
  unsigned long refused = 0;
  for (std::size_t length = 0; length <= kText.size(); ++length) {
    const std::string text = kText.substr(0, length);
    const GuardedBytes guarded(text + '\0', GuardedBytes::Edge::kBehind);
    TStringTree tree(0, 0, nullptr, "");
    std::size_t position = 0;
    try {
      tree.ReadFromString(guarded.Data(), &position, nullptr);
      EXPECT_EQ(position, length);
    } catch (const std::length_error&) {
      ++refused;
    }
  }
  EXPECT_EQ(refused, 7u) << "where two values cannot follow";
}

TEST(TreeTextReaderTest, TextWithANulAnywhereIsReadAsIfItEndedThere) {
  for (std::size_t length = 0; length < kText.size(); ++length) {
    std::string text = kText;
    text[length] = '\0';
    TStringTree cut(0, 0, nullptr, "");
    TStringTree whole(0, 0, nullptr, "");
    const auto read = [](TStringTree* tree, const std::string& from) {
      try {
        tree->ReadFromString(from.c_str(), nullptr, nullptr);
        return Describe(*tree);
      } catch (const std::length_error&) {
        return std::string("refused");
      }
    };
    EXPECT_EQ(read(&whole, text), read(&cut, kText.substr(0, length)));
  }
}

TEST(TreeTextReaderTest, ALyingCountThrowsAndKeepsWhatWasComplete) {
  TStringTree tree(0, 0, nullptr, "");
  const char* const text =
      "(1,2)r\n(1,0)[1]a\tb\n\t(2,0)whole\n\t\n\t(3,0)open\n(4,0)[999999]c\td\n\t\n\n";
  std::size_t position = 0;
  EXPECT_THROW(tree.ReadFromString(text, &position, nullptr), std::length_error);
  EXPECT_EQ(Describe(tree), "S(1,2)1:r{S(1,0)1:a[1:b;]S(2,0)5:whole{}}");
  EXPECT_EQ(position, 0u);
}

TEST(TreeTextReaderTest, CountsThatTheTextCannotHoldTogetherThrow) {
  std::string text = "(0,0)\n";
  for (int i = 0; i < 1000; ++i) text += "(1,0)[9000]a\tb\n";
  text += std::string(9000, '\n');
  TStringTree tree(0, 0, nullptr, "");
  EXPECT_THROW(tree.ReadFromString(text.c_str(), nullptr, nullptr), std::length_error);
  EXPECT_LT(tree.fields.size(), 5u);
  Tree general(0, 0, nullptr, "");
  EXPECT_THROW(general.ReadFromString(text.c_str(), nullptr, nullptr), std::length_error);
  EXPECT_LT(general.fields.size(), 5u);
}

TEST(TreeTextReaderTest, CountsAreHeldAgainstTheirOwnLinesHoweverFarBehindTheseAre) {
  const std::string long1000(1000, 'h');
  std::string text = "(0,0)" + long1000 + "\n";
  for (int i = 0; i < 5; ++i) text += "(1,0)[900]a\tb\n";
  text += "\t(2,0)" + long1000 + "\n\t\n\n";
  TStringTree tree(0, 0, nullptr, "");
  EXPECT_THROW(tree.ReadFromString(text.c_str(), nullptr, nullptr), std::length_error);
}

TEST(TreeTextReaderTest, AFewMissingValuesAreNoLie) {
  std::string text = "(0,0)\n";
  for (int i = 0; i < 1000; ++i) text += "(1,0)[5]a\tb\n";
  TStringTree tree(0, 0, nullptr, "");
  tree.ReadFromString((text + "\n\n\n\n").c_str(), nullptr, nullptr);
  EXPECT_EQ(tree.fields.size(), 1000u);
}

}  // namespace
