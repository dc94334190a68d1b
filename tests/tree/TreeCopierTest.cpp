#include <gtest/gtest.h>

#include <string>

#include "tree/TreeTest.h"

namespace {

using namespace tree_test;

/// Fields 1 and 2, subtree 3 with field 4 and subtree 5, subtree 6.
void Fill(Tree* tree) {
  std::string values[] = {"a", "b"};
  tree->InsertField("one", 1, 0, values, 2);
  tree->InsertField("two", 2, -1, std::string("c"));
  tree->InsertSubtree("three", 3, 0);
  tree->subtrees[0]->InsertField("four", 4, 0, std::string("d"));
  tree->subtrees[0]->InsertSubtree("five", 5, 0);
  tree->InsertSubtree("six", 6, 0);
}

TEST(TreeCopierTest, AnEmptyDestinationGetsEverythingInOrder) {
  TStringTree source(8, 8, nullptr, "source");
  Fill(&source);
  TStringTree destination(9, 9, nullptr, "destination");
  EXPECT_TRUE(source.CopyTo(&destination));
  EXPECT_EQ(Describe(destination),
            "S(9,9)11:destination{S(1,0)3:one[1:a;1:b;]S(2,-1)3:two[1:c;]"
            "S(3,0)5:three{S(4,0)4:four[1:d;]S(5,0)4:five{}}S(6,0)3:six{}}");
}

TEST(TreeCopierTest, TheSourceStaysAsItIs) {
  TStringTree source(8, 8, nullptr, "source");
  Fill(&source);
  const std::string before = Describe(source);
  TStringTree destination(9, 9, nullptr, "");
  source.CopyTo(&destination);
  EXPECT_EQ(Describe(source), before);
}

TEST(TreeCopierTest, TheCopyHasTheClassesOfTheDestination) {
  Tree source(0, 0, nullptr, "");
  Fill(&source);
  TStringTree destination(0, 0, nullptr, "");
  EXPECT_TRUE(source.CopyTo(&destination));
  EXPECT_EQ(Describe(destination).find('G'), std::string::npos);
  Tree general(0, 0, nullptr, "");
  EXPECT_TRUE(destination.CopyTo(&general));
  EXPECT_EQ(Describe(general), Describe(source));
}

TEST(TreeCopierTest, AFieldWhoseKeyIsTakenEndsItWithWhatWasCopiedBefore) {
  TStringTree source(0, 0, nullptr, "");
  Fill(&source);
  TStringTree destination(0, 0, nullptr, "");
  destination.InsertString("taken", 2, -1, "old");
  EXPECT_FALSE(source.CopyTo(&destination));
  EXPECT_EQ(Describe(destination), "S(0,0)0:{S(2,-1)5:taken[3:old;]S(1,0)3:one[1:a;1:b;]}");
}

TEST(TreeCopierTest, ASubtreeWhoseKeyIsTakenEndsItWithWhatWasCopiedBefore) {
  TStringTree source(0, 0, nullptr, "");
  Fill(&source);
  TStringTree destination(0, 0, nullptr, "");
  destination.InsertSubtree("taken", 6, 0);
  EXPECT_FALSE(source.CopyTo(&destination));
  EXPECT_EQ(Describe(destination),
            "S(0,0)0:{S(1,0)3:one[1:a;1:b;]S(2,-1)3:two[1:c;]S(6,0)5:taken{}"
            "S(3,0)5:three{S(4,0)4:four[1:d;]S(5,0)4:five{}}}");
}

TEST(TreeCopierTest, AKeyThatTheSourceHasTwiceEndsItToo) {
  TStringTree source(0, 0, nullptr, "");
  source.ReadFromString("(0,0)\n\t(3,0)x\n(1,0)[1]a\tb\n(1,0)[1]c\td\n\n\n", nullptr, nullptr);
  ASSERT_EQ(Describe(source), "S(0,0)0:{S(3,0)1:x{S(1,0)1:a[1:b;]S(1,0)1:c[1:d;]}}");
  TStringTree destination(0, 0, nullptr, "");
  EXPECT_FALSE(source.CopyTo(&destination));
  EXPECT_EQ(Describe(destination), "S(0,0)0:{S(3,0)1:x{S(1,0)1:a[1:b;]}}");
}

TEST(TreeCopierTest, ATreeIsNotCopiedIntoItself) {
  TStringTree tree(0, 0, nullptr, "");
  Fill(&tree);
  const std::string before = Describe(tree);
  EXPECT_FALSE(tree.CopyTo(&tree));
  EXPECT_EQ(Describe(tree), before);
  TStringTree onlySubtree(0, 0, nullptr, "");
  onlySubtree.InsertSubtree("x", 1, 0);
  EXPECT_FALSE(onlySubtree.CopyTo(&onlySubtree));
  EXPECT_EQ(Describe(onlySubtree), "S(0,0)0:{S(1,0)1:x{}}");
}

TEST(TreeCopierTest, AnEmptyTreeIsCopiedIntoItself) {
  TStringTree tree(0, 0, nullptr, "");
  EXPECT_TRUE(tree.CopyTo(&tree));
}

TEST(TreeCopierTest, CopyingIntoATreeInsideTheSourceEnds) {
  TStringTree tree(0, 0, nullptr, "");
  tree.InsertSubtree("x", 1, 0);
  tree.InsertSubtree("y", 2, 0);
  EXPECT_FALSE(tree.CopyTo(tree.subtrees[1]));
  EXPECT_EQ(Describe(tree), "S(0,0)0:{S(1,0)1:x{}S(2,0)1:y{S(1,0)1:x{}}}");
}

TEST(TreeCopierTest, ASubtreeIsCopiedIntoTheTreeAboveIt) {
  TStringTree tree(0, 0, nullptr, "");
  tree.InsertSubtree("x", 1, 0);
  tree.subtrees[0]->InsertSubtree("y", 2, 0);
  tree.subtrees[0]->InsertField("f", 3, 0, std::string("v"));
  EXPECT_TRUE(tree.subtrees[0]->CopyTo(&tree));
  EXPECT_EQ(Describe(tree),
            "S(0,0)0:{S(3,0)1:f[1:v;]S(1,0)1:x{S(3,0)1:f[1:v;]S(2,0)1:y{}}S(2,0)1:y{}}");
}

TEST(TreeCopierTest, ManyElementsAreHeldAgainstEachOtherToo) {
  TStringTree source(0, 0, nullptr, "");
  for (int i = 0; i < 300; ++i) {
    source.InsertInteger("f", i % 20, i / 20, i);
    source.InsertSubtree("t", i % 20, i / 20);
  }
  TStringTree destination(0, 0, nullptr, "");
  EXPECT_TRUE(source.CopyTo(&destination));
  EXPECT_EQ(Describe(destination), Describe(source));
  TStringTree partly(0, 0, nullptr, "");
  partly.InsertInteger("f", 7, 9, 0);
  EXPECT_FALSE(source.CopyTo(&partly));
  EXPECT_EQ(partly.fields.size(), 188u);
  EXPECT_EQ(partly.subtrees.size(), 0u);
}

}  // namespace
