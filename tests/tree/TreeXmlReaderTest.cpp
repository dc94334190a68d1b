#include <gtest/gtest.h>

#include <string>

#include "tree/TreeTest.h"

namespace {

using namespace tree_test;

/// What the content of a document's root gives; "failed " in front when reading gives false.
std::string Read(const std::string& content) {
  TStringTree tree(8, 9, nullptr, "old");
  const bool isRead = FromXml(Document(content), &tree);
  return (isRead ? "" : "failed ") + Describe(tree);
}

const std::string kKeys = "<tag>3</tag><idx>4</idx><hdr>x</hdr>";

std::string FieldXml(const std::string& value) {
  return "<_><tag>1</tag><idx>0</idx><hdr>a</hdr><data><_>" + value + "</_></data></_>";
}

TEST(TreeXmlReaderTest, ATreeWithoutListsHasNoChildren) {
  EXPECT_EQ(Read(kKeys), "S(3,4)1:x{}");
}

TEST(TreeXmlReaderTest, ReadsFieldsAndSubtreesInOrder) {
  EXPECT_EQ(
      Read(kKeys + "<field>" + FieldXml("v") + FieldXml("w") + "</field><subtree><_>" + kKeys +
           "<subtree><_>" + kKeys + "</_></subtree></_><_>" + kKeys + "<field/></_></subtree>"),
      "S(3,4)1:x{S(1,0)1:a[1:v;]S(1,0)1:a[1:w;]S(3,4)1:x{S(3,4)1:x{}}S(3,4)1:x{}}");
}

TEST(TreeXmlReaderTest, ReadsAttributes) {
  TStringTree tree(0, 0, nullptr, "");
  EXPECT_TRUE(FromXml("<xini tag=\"3\" idx=\"4\" hdr=\"x\"/>", &tree));
  EXPECT_EQ(Describe(tree), "S(3,4)1:x{}");
}

TEST(TreeXmlReaderTest, ChildrenAreFoundByPositionWhateverTheirNames) {
  EXPECT_EQ(Read(kKeys + "<subtree><one>" + kKeys + "</one><two>" + kKeys + "</two></subtree>"),
            "S(3,4)1:x{S(3,4)1:x{}S(3,4)1:x{}}");
}

TEST(TreeXmlReaderTest, MissingItemsGiveFalseAndKeepWhatWasRead) {
  EXPECT_EQ(Read(""), "failed S(8,9)3:old{}");
  EXPECT_EQ(Read("<tag>3</tag>"), "failed S(3,9)3:old{}");
  EXPECT_EQ(Read("<tag>3</tag><idx>4</idx>"), "failed S(3,4)3:old{}");
  EXPECT_EQ(Read("<tag>3</tag><idx>x</idx><hdr>x</hdr>"), "failed S(3,9)3:old{}");
}

TEST(TreeXmlReaderTest, AFieldThatFailsIsKeptAndTheNextFollows) {
  EXPECT_EQ(Read(kKeys + "<field><_><tag>1</tag></_>" + FieldXml("v") + "<_/></field>"),
            "S(3,4)1:x{S(1,0)0:[]S(1,0)1:a[1:v;]S(0,0)0:[]}");
}

TEST(TreeXmlReaderTest, AFieldThatFailsDeepInsideIsLeftAgain) {
  EXPECT_EQ(Read(kKeys + "<field>" + FieldXml("<deep/>") + FieldXml("v") + "</field><subtree><_>" +
                 kKeys + "</_></subtree>"),
            "S(3,4)1:x{S(1,0)1:a[0:;]S(1,0)1:a[1:v;]S(3,4)1:x{}}");
}

TEST(TreeXmlReaderTest, ASubtreeThatFailsIsKeptAndTheNextFollows) {
  EXPECT_EQ(Read(kKeys + "<subtree><_><tag>5</tag></_><_>" + kKeys + "</_><_/></subtree>"),
            "S(3,4)1:x{S(5,0)0:{}S(3,4)1:x{}S(0,0)0:{}}");
}

TEST(TreeXmlReaderTest, ASubtreeThatFailsDeepInsideIsLeftAgain) {
  EXPECT_EQ(Read(kKeys + "<subtree><_>" + kKeys + "<field>text</field><subtree><_><tag>6</tag>" +
                 "</_></subtree></_><_>" + kKeys + "</_></subtree>"),
            "S(3,4)1:x{S(3,4)1:x{S(6,0)0:{}}S(3,4)1:x{}}");
}

TEST(TreeXmlReaderTest, AListThatIsNoSectionGivesFalse) {
  TStringTree tree(0, 0, nullptr, "");
  EXPECT_FALSE(FromXml("<xini tag=\"3\" idx=\"4\" hdr=\"x\" field=\"y\"/>", &tree));
  EXPECT_EQ(Describe(tree), "S(3,4)1:x{}");
  TStringTree other(0, 0, nullptr, "");
  EXPECT_FALSE(FromXml("<xini tag=\"3\" idx=\"4\" hdr=\"x\" subtree=\"y\"><field>" + FieldXml("v") +
                           "</field></xini>",
                       &other));
  EXPECT_EQ(Describe(other), "S(3,4)1:x{S(1,0)1:a[1:v;]}");
}

TEST(TreeXmlReaderTest, AnElementOfAListThatIsNoSectionEndsTheTree) {
  TStringTree tree(0, 0, nullptr, "");
  EXPECT_FALSE(FromXml("<xini tag=\"3\" idx=\"4\" hdr=\"x\"><field y=\"z\">" + FieldXml("v") +
                           "</field><subtree/></xini>",
                       &tree));
  EXPECT_EQ(Describe(tree), "S(3,4)1:x{}");
}

/// Throws what is no exception of the library when it enters an item for the nth time.
class ThrowingReader : public TKvXIniReader {
 public:
  ThrowingReader(const std::string& content, int nth)
      : TKvXIniReader(StreamPointer(new TKvMemoryStream(Document(content)))), left_(nth) {}

  unsigned long EnterItem(unsigned long item) override {
    if (--left_ == 0) throw 1;
    return TKvXIniReader::EnterItem(item);
  }

 private:
  int left_;
};

TEST(TreeXmlReaderTest, WhateverTheReaderThrowsIsAFailureOfTheTreeThatMetIt) {
  const auto read = [](int nth) {
    ThrowingReader reader(
        kKeys + "<subtree><_>" + kKeys + "<subtree/></_><_>" + kKeys + "</_></subtree>", nth);
    TStringTree tree(8, 9, nullptr, "old");
    const bool isRead = tree.ReadFromXML(&reader, 0, nullptr);
    return (isRead ? "" : "failed ") + Describe(tree);
  };
  EXPECT_EQ(read(1), "failed S(3,4)1:x{}") << "at its list";
  EXPECT_EQ(read(2), "failed S(3,4)1:x{}") << "at the first of it";
  EXPECT_EQ(read(3), "S(3,4)1:x{S(3,4)1:x{}S(3,4)1:x{}}") << "at the list of the first";
  EXPECT_EQ(read(4), "failed S(3,4)1:x{S(3,4)1:x{}}") << "at the second";
}

TEST(TreeXmlReaderTest, TheReaderStandsWhereItStoodAfterASuccess) {
  TKvXIniReader reader(StreamPointer(new TKvMemoryStream(Document(
      "<first>" + kKeys + "<subtree><_><tag>5</tag></_></subtree></first><last>7</last>"))));
  const unsigned long section = reader.EnterSectionSE("first");
  TStringTree tree(0, 0, nullptr, "");
  EXPECT_TRUE(tree.ReadFromXML(&reader, 0, nullptr));
  EXPECT_EQ(reader.GetItemCount(), 4u);
  reader.LeaveSection(section);
  EXPECT_EQ(reader.ReadE<int>(reader.FindFE("last", 0)), 7);
}

TEST(TreeXmlReaderTest, TheParentIsStored) {
  TKvXIniReader reader(StreamPointer(new TKvMemoryStream(Document(""))));
  TStringTree parent(0, 0, nullptr, "");
  TStringTree tree(0, 0, nullptr, "");
  EXPECT_FALSE(tree.ReadFromXML(&reader, 0, &parent));
  EXPECT_EQ(tree.parent, &parent);
}

TEST(TreeXmlReaderTest, ChildrenAreAppended) {
  TStringTree tree(0, 0, nullptr, "");
  tree.InsertString("a", 1, 0, "old");
  EXPECT_TRUE(FromXml(Document(kKeys + "<field>" + FieldXml("v") + "</field>"), &tree));
  EXPECT_EQ(Describe(tree), "S(3,4)1:x{S(1,0)1:a[3:old;]S(1,0)1:a[1:v;]}");
}

TEST(TreeXmlReaderTest, AGeneralTreeReadsGeneralNodesAndNoValues) {
  Tree tree(0, 0, nullptr, "");
  EXPECT_TRUE(FromXml(Document(kKeys + "<field>" + FieldXml("v") + "</field><subtree><_>" + kKeys +
                               "</_></subtree>"),
                      &tree));
  EXPECT_EQ(Describe(tree), "G(3,4)1:x{G(1,0)1:a[0:;]G(3,4)1:x{}}");
}

/// The tree that a tree's XML gives.
std::string RoundTrip(const Tree& tree) {
  TStringTree read(0, 0, nullptr, "");
  EXPECT_TRUE(FromXml(ToXml(tree), &read));
  return Describe(read);
}

TEST(TreeXmlReaderTest, AFieldWithIdxMinusOneIsNotThereAfterwards) {
  TStringTree tree(1, 2, nullptr, "x");
  tree.InsertString("a", 1, -1, "v");
  EXPECT_NE(ToXml(tree).find("<field/>"), std::string::npos);
  EXPECT_EQ(RoundTrip(tree), "S(1,2)1:x{}");
}

TEST(TreeXmlReaderTest, AFieldWithoutValuesReadsBackWithoutValues) {
  TStringTree tree(1, 2, nullptr, "x");
  tree.InsertField("a", 1, 0, nullptr, 0);
  EXPECT_NE(ToXml(tree).find("<data/>"), std::string::npos);
  EXPECT_EQ(RoundTrip(tree), Describe(tree));
}

TEST(TreeXmlReaderTest, TabsAndLineBreaksReadBackUnescaped) {
  TStringTree tree(1, 2, nullptr, "h\te\nad\r");
  std::string values[] = {"a\tb", "c\nd", "e\r\nf", "\\t", " ", ""};
  tree.InsertField("x\ty\nz", 1, 0, values, 6);
  EXPECT_EQ(RoundTrip(tree), Describe(tree));
}

TEST(TreeXmlReaderTest, EveryByteReadsBack) {
  TStringTree tree(1, 2, nullptr, "");
  for (int c = 0; c < 256; ++c) {
    const std::string text(1, static_cast<char>(c));
    tree.InsertString(text, c, 0, "<" + text + ">");
    tree.InsertSubtree(text, c, 0);
  }
  EXPECT_EQ(RoundTrip(tree), Describe(tree));
}

}  // namespace
