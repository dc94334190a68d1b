#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>

#include "tree/TreeTest.h"

namespace {

using namespace tree_test;
template <class T>
using Owned = std::unique_ptr<T, SatCommonUtils::TPtrDelete<T>>;

TEST(DataTreeTest, TheConstructorSetsItsArgumentsAndLeavesTheListsEmpty) {
  Tree parent(1, 2, nullptr, "parent");
  const Tree tree(3, 4, &parent, "x");
  EXPECT_EQ(tree.parent, &parent);
  EXPECT_EQ(Describe(tree), "G(3,4)1:x{}");
  EXPECT_TRUE(parent.subtrees.empty());
}

TEST(DataTreeTest, IsNotCopiedAndHasNoVirtualDestructor) {
  static_assert(!std::is_copy_constructible_v<Tree>);
  static_assert(!std::is_copy_assignable_v<Tree>);
  static_assert(!std::has_virtual_destructor_v<Tree>);
  static_assert(std::is_polymorphic_v<Tree>);
}

TEST(DataTreeTest, InsertsAFieldOfOneValue) {
  Tree tree(0, 0, nullptr, "");
  EXPECT_TRUE(tree.InsertField("x", 3, 4, std::string("a")));
  EXPECT_EQ(Describe(tree), "G(0,0)0:{G(3,4)1:x[1:a;]}");
}

TEST(DataTreeTest, InsertsAFieldOfSeveralValues) {
  Tree tree(0, 0, nullptr, "");
  std::string values[] = {"a", "b"};
  EXPECT_TRUE(tree.InsertField("x", 3, 4, values, 2));
  EXPECT_EQ(Describe(tree), "G(0,0)0:{G(3,4)1:x[1:a;1:b;]}");
}

TEST(DataTreeTest, InsertingAFieldTwiceKeepsTheFirst) {
  Tree tree(0, 0, nullptr, "");
  std::string values[] = {"c", "d"};
  EXPECT_TRUE(tree.InsertField("first", 3, 4, std::string("a")));
  EXPECT_FALSE(tree.InsertField("second", 3, 4, std::string("b")));
  EXPECT_FALSE(tree.InsertField("third", 3, 4, values, 2));
  EXPECT_EQ(Describe(tree), "G(0,0)0:{G(3,4)5:first[1:a;]}");
}

TEST(DataTreeTest, TagAndIdxTogetherAreTheKey) {
  Tree tree(0, 0, nullptr, "");
  EXPECT_TRUE(tree.InsertField("", 3, 4, std::string()));
  EXPECT_TRUE(tree.InsertField("", 3, 5, std::string()));
  EXPECT_TRUE(tree.InsertField("", 4, 4, std::string()));
  EXPECT_EQ(tree.fields.size(), 3u);
}

TEST(DataTreeTest, TheSameKeyServesOneFieldAndOneSubtree) {
  Tree tree(0, 0, nullptr, "");
  EXPECT_TRUE(tree.InsertField("field", 3, 4, std::string("a")));
  EXPECT_TRUE(tree.InsertSubtree("subtree", 3, 4));
  EXPECT_EQ(Describe(tree), "G(0,0)0:{G(3,4)5:field[1:a;]G(3,4)7:subtree{}}");
}

TEST(DataTreeTest, AFieldWithIdxMinusOneIsStoredLikeAnyOther) {
  Tree tree(0, 0, nullptr, "");
  EXPECT_TRUE(tree.InsertField("x", 3, -1, std::string("a")));
  EXPECT_FALSE(tree.InsertField("y", 3, -1, std::string("b")));
  EXPECT_EQ(Describe(tree), "G(0,0)0:{G(3,-1)1:x[1:a;]}");
}

TEST(DataTreeTest, InsertsASubtreeWhoseParentItIs) {
  Tree tree(0, 0, nullptr, "");
  EXPECT_TRUE(tree.InsertSubtree("x", 3, 4));
  ASSERT_EQ(tree.subtrees.size(), 1u);
  EXPECT_EQ(tree.subtrees[0]->parent, &tree);
  EXPECT_EQ(Describe(tree), "G(0,0)0:{G(3,4)1:x{}}");
}

TEST(DataTreeTest, InsertingASubtreeTwiceKeepsTheFirst) {
  Tree tree(0, 0, nullptr, "");
  EXPECT_TRUE(tree.InsertSubtree("first", 3, 4));
  EXPECT_FALSE(tree.InsertSubtree("second", 3, 4));
  EXPECT_TRUE(tree.InsertSubtree("third", 4, 3));
  EXPECT_EQ(Describe(tree), "G(0,0)0:{G(3,4)5:first{}G(4,3)5:third{}}");
}

TEST(DataTreeTest, ElementsStandInTheOrderOfInsertion) {
  Tree tree(0, 0, nullptr, "");
  for (const int tag : {5, 1, 3}) tree.InsertField("", tag, 0, std::string());
  for (const int tag : {6, 2, 4}) tree.InsertSubtree("", tag, 0);
  EXPECT_EQ(Describe(tree),
            "G(0,0)0:{G(5,0)0:[0:;]G(1,0)0:[0:;]G(3,0)0:[0:;]G(6,0)0:{}G(2,0)0:{}G(4,0)0:{}}");
}

TEST(DataTreeTest, TheFactoriesOnlyCreate) {
  Tree tree(0, 0, nullptr, "");
  std::string values[] = {"a", "b"};
  const Owned<Tree> subtree(tree.CreateSubtree(1, 2, "x"));
  const Owned<Field> one(tree.CreateField(1, 2, std::string("a"), "x"));
  const Owned<Field> two(tree.CreateField(1, 2, values, 2, "x"));
  EXPECT_EQ(subtree->parent, &tree);
  EXPECT_EQ(Describe(*subtree), "G(1,2)1:x{}");
  EXPECT_EQ(DescribeField(*one), "G(1,2)1:x[1:a;]");
  EXPECT_EQ(DescribeField(*two), "G(1,2)1:x[1:a;1:b;]");
  EXPECT_EQ(Describe(tree), "G(0,0)0:{}");
}

TEST(DataTreeTest, TheFactoriesOfTextMoveThePositionBehindWhatTheyRead) {
  Tree tree(0, 0, nullptr, "");
  const char* const text = "#\t(1,2)x\n\t(3,4)[2]y\ta\tb\n\n(5,6)[1]z\tc\n#";
  std::size_t position = 1;
  const Owned<Tree> subtree(tree.CreateSubtree(text, &position));
  EXPECT_EQ(subtree->parent, &tree);
  EXPECT_EQ(Describe(*subtree), "G(1,2)1:x{G(3,4)1:y[0:;0:;]}");
  const Owned<Field> field(tree.CreateField(text, &position));
  EXPECT_EQ(DescribeField(*field), "G(5,6)1:z[0:;]");
  EXPECT_STREQ(text + position, "#");
  EXPECT_EQ(Describe(tree), "G(0,0)0:{}");
}

TEST(DataTreeTest, TheFactoriesOfXmlReadTheSectionThatTheReaderStandsIn) {
  Tree tree(0, 0, nullptr, "");
  TKvXIniReader reader(StreamPointer(
      new TKvMemoryStream(Document("<tag>1</tag><idx>2</idx><hdr>x</hdr><data><_>a</_></data>"))));
  const Owned<Tree> subtree(tree.CreateSubtree(&reader, 7));
  EXPECT_EQ(subtree->parent, &tree);
  EXPECT_EQ(Describe(*subtree), "G(1,2)1:x{}");
  const Owned<Field> field(tree.CreateField(&reader, 7));
  EXPECT_EQ(DescribeField(*field), "G(1,2)1:x[0:;]");
  EXPECT_EQ(Describe(tree), "G(0,0)0:{}");
}

TEST(DataTreeTest, TheFactoriesOfXmlGiveWhatFailedToo) {
  Tree tree(0, 0, nullptr, "");
  TKvXIniReader reader(StreamPointer(new TKvMemoryStream(Document("<tag>1</tag>"))));
  const Owned<Tree> subtree(tree.CreateSubtree(&reader, 0));
  EXPECT_EQ(Describe(*subtree), "G(1,0)0:{}");
  const Owned<Field> field(tree.CreateField(&reader, 0));
  EXPECT_EQ(DescribeField(*field), "G(1,0)0:[]");
}

}  // namespace
