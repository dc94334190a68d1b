// The cost of reading, writing and copying grows with the size and not faster.
#include <gtest/gtest.h>

#include <string>

#include "kv/Growth.h"
#include "tree/TreeTest.h"

namespace {

using namespace tree_test;
using kv_test::IsLinear;

std::string FieldsText(unsigned long count) {
  std::string text = "(0,0)root\n";
  for (unsigned long i = 0; i < count; ++i) {
    text.append("(").append(std::to_string(i)).append(",0)[1]header\tvalue\n");
  }
  return text + "\n";
}

std::string SubtreesText(unsigned long count) {
  std::string text = "(0,0)root\n";
  for (unsigned long i = 0; i < count; ++i) {
    text.append("\t(").append(std::to_string(i)).append(",0)header\n\t\n");
  }
  return text + "\n";
}

void Read(const std::string& text, TStringTree* tree) {
  tree->ReadFromString(text.c_str(), nullptr, nullptr);
}

void ReadNew(const std::string& text) {
  TStringTree tree(0, 0, nullptr, "");
  Read(text, &tree);
}

TEST(TreeGrowthTest, ReadingTextOfManyFieldsIsLinear) {
  EXPECT_TRUE(IsLinear(4000, [](unsigned long size) { ReadNew(FieldsText(size)); }));
}

TEST(TreeGrowthTest, ReadingTextOfManySubtreesIsLinear) {
  EXPECT_TRUE(IsLinear(4000, [](unsigned long size) { ReadNew(SubtreesText(size)); }));
}

TEST(TreeGrowthTest, ReadingTextOfManyMissingValuesIsLinear) {
  EXPECT_TRUE(IsLinear(4000, [](unsigned long size) {
    std::string text = "(0,0)root\n";
    for (unsigned long i = 0; i < size; ++i) text += "(1,0)[9]h\tv\n";
    ReadNew(text + std::string(9, '\n'));
  }));
}

TEST(TreeGrowthTest, RefusingManyLyingCountsIsLinear) {
  EXPECT_TRUE(IsLinear(20000, [](unsigned long size) {
    std::string text = "(0,0)root\n";
    const std::string count = std::to_string(4 * size);
    for (unsigned long i = 0; i < size; ++i) {
      text.append("(1,0)[").append(count).append("]h\tv\n");
    }
    EXPECT_THROW(ReadNew(text), std::length_error);
  }));
}

TEST(TreeGrowthTest, ReadingTextWithoutAnyMarkIsLinear) {
  for (const char* piece : {"x", "(", "(1,0)\t", "(1,0)[0]", "\\", "\t(", "\n\t"}) {
    EXPECT_TRUE(IsLinear(20000, [piece](unsigned long size) {
      std::string text;
      for (unsigned long i = 0; i < size; ++i) text += piece;
      ReadNew(text);
    })) << piece;
  }
}

TEST(TreeGrowthTest, WritingTextIsLinear) {
  EXPECT_TRUE(IsLinear(4000, [](unsigned long size) {
    TStringTree tree(0, 0, nullptr, "");
    Read(FieldsText(size), &tree);
    WriteTreeToString(tree);
  }));
}

TEST(TreeGrowthTest, CopyingFieldsAndSubtreesIsLinear) {
  EXPECT_TRUE(IsLinear(4000, [](unsigned long size) {
    TStringTree tree(0, 0, nullptr, "");
    EXPECT_TRUE(InsertFromString(FieldsText(size), &tree));
    EXPECT_TRUE(InsertFromString(SubtreesText(size), &tree));
  }));
}

TEST(TreeGrowthTest, WritingAndReadingXmlIsLinear) {
  EXPECT_TRUE(IsLinear(2000, [](unsigned long size) {
    TStringTree tree(0, 0, nullptr, "");
    Read(FieldsText(size), &tree);
    TStringTree read(0, 0, nullptr, "");
    EXPECT_TRUE(FromXml(ToXml(tree), &read));
    EXPECT_EQ(read.fields.size(), size);
  }));
}

TEST(TreeGrowthTest, XmlOfADeepTreeIsLinear) {
  EXPECT_TRUE(IsLinear(1000, [](unsigned long size) {
    TStringTree tree(0, 0, nullptr, "");
    Tree* last = &tree;
    for (unsigned long i = 0; i < size; ++i) {
      last->InsertSubtree("x", 0, 0);
      last = last->subtrees[0];
    }
    TStringTree read(0, 0, nullptr, "");
    EXPECT_TRUE(FromXml(ToXml(tree), &read));
  }));
}

}  // namespace
