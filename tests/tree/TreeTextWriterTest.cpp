#include <gtest/gtest.h>

#include <string>

#include "tree/TreeTest.h"

namespace {

using namespace tree_test;

TEST(TreeTextWriterTest, ATreeWithoutChildrenIsTwoLines) {
  EXPECT_EQ(WriteTreeToString(TStringTree(5, 7, nullptr, "Orbit")), "(5,7)Orbit\n\n");
}

TEST(TreeTextWriterTest, FieldsStandAsDeepAsTheirTreeAndSubtreesOneTabDeeper) {
  TStringTree tree(1, 0, nullptr, "Product");
  tree.InsertInteger("Rows", 10, 0, 512);
  tree.InsertSubtree("Sensor", 2, 0);
  std::string values[] = {"1", "2"};
  tree.subtrees[0]->InsertField("Bands", 11, 0, values, 2);
  tree.subtrees[0]->InsertSubtree("Inner", 3, 0);
  tree.InsertInteger("Columns", 12, 0, 640);
  EXPECT_EQ(WriteTreeToString(tree),
            "(1,0)Product\n(10,0)[1]Rows\t512\n(12,0)[1]Columns\t640\n\t(2,0)Sensor\n"
            "\t(11,0)[2]Bands\t1\t2\n\t\t(3,0)Inner\n\t\t\n\t\n\n");
}

TEST(TreeTextWriterTest, FieldsWithNegativeKeysAreLeftOut) {
  TStringTree tree(1, 0, nullptr, "");
  tree.InsertString("x", 1, -1, "a");
  tree.InsertString("y", -1, 1, "b");
  EXPECT_EQ(WriteTreeToString(tree), "(1,0)\n\n");
}

TEST(TreeTextWriterTest, TreesWithNegativeKeysAreWritten) {
  TStringTree tree(-1, -2147483647 - 1, nullptr, "");
  tree.InsertSubtree("", -3, 4);
  EXPECT_EQ(WriteTreeToString(tree), "(-1,-2147483648)\n\t(-3,4)\n\t\n\n");
}

TEST(TreeTextWriterTest, HeadersOfTreesAreNotEscapedThoseOfFieldsAre) {
  TStringTree tree(1, 0, nullptr, "a\tb\\");
  tree.InsertString("a\tb", 2, 0, "c\nd");
  EXPECT_EQ(WriteTreeToString(tree), "(1,0)a\tb\\\n(2,0)[1]a\\tb\tc\\nd\n\n");
}

TEST(TreeTextWriterTest, TheParentDoesNotMatter) {
  TStringTree parent(1, 0, nullptr, "");
  EXPECT_EQ(WriteTreeToString(TStringTree(2, 0, &parent, "")), "(2,0)\n\n");
}

TEST(TreeTextWriterTest, WhatIsWrittenReadsBack) {
  const std::string text =
      "(1,0)Product\n(10,0)[1]Rows\t512\n\t(2,0)Sensor\n\t(11,0)[2]Bands\t1\\t\t2\n\t\n\n";
  TStringTree tree(0, 0, nullptr, "");
  tree.ReadFromString(text.c_str(), nullptr, nullptr);
  EXPECT_EQ(WriteTreeToString(tree), text);
}

}  // namespace
