#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "metadata/RecordingWriter.h"
#include "tree/TreeTest.h"

namespace {

using namespace tree_test;
using Calls = std::vector<std::string>;

/// Also records the switches of attribute mode and takes sections by name to fail at.
class TreeWriter : public metadata_test::RecordingWriter {
 public:
  bool reportThrows = true;
  std::string refusedItem;  ///< "name=value" that is refused

  void SetAttributeMode(bool on) override { calls.push_back(on ? "attributes" : "elements"); }
  void ReportWriteError() override {
    calls.push_back("report");
    if (reportThrows) throw TKvError("refused");
  }

 protected:
  bool WriteItemText(const std::string& name, std::string_view value) override {
    RecordingWriter::WriteItemText(name, value);
    return calls.back() != refusedItem;
  }
  unsigned long OpenSection(const std::string& name, bool compact) override {
    RecordingWriter::OpenSection(name, compact);
    return ++opened_;
  }

 private:
  unsigned long opened_ = 0;
};

Calls CallsOf(const Tree& tree) {
  TreeWriter writer;
  EXPECT_TRUE(tree.WriteToXML(&writer));
  return writer.calls;
}

TEST(TreeXmlWriterTest, ATreeWithoutChildrenIsItsThreeItemsInAttributeMode) {
  EXPECT_EQ(CallsOf(TStringTree(3, 4, nullptr, "x")),
            (Calls{"attributes", "tag=3", "idx=4", "hdr=x", "elements"}));
}

TEST(TreeXmlWriterTest, EachFieldHasAnUnnamedCompactSectionInOneSection) {
  TStringTree tree(3, 4, nullptr, "x");
  tree.InsertString("a", 1, 0, "v");
  tree.InsertString("b", 2, 0, "w");
  EXPECT_EQ(CallsOf(tree), (Calls{"attributes",
                                  "tag=3",
                                  "idx=4",
                                  "hdr=x",
                                  "elements",
                                  "begin field",
                                  "begin compact ",
                                  "tag=1",
                                  "idx=0",
                                  "hdr=a",
                                  "begin compact data",
                                  "=v",
                                  "end 3",
                                  "end 2",
                                  "begin compact ",
                                  "tag=2",
                                  "idx=0",
                                  "hdr=b",
                                  "begin compact data",
                                  "=w",
                                  "end 5",
                                  "end 4",
                                  "end 1"}));
}

TEST(TreeXmlWriterTest, EachSubtreeHasAnUnnamedSectionInOneSection) {
  TStringTree tree(3, 4, nullptr, "x");
  tree.InsertSubtree("s", 5, 0);
  tree.subtrees[0]->InsertSubtree("u", 6, 0);
  tree.InsertSubtree("t", 7, 0);
  EXPECT_EQ(
      CallsOf(tree),
      (Calls{"attributes",    "tag=3",      "idx=4",      "hdr=x",    "elements", "begin subtree",
             "begin ",        "attributes", "tag=5",      "idx=0",    "hdr=s",    "elements",
             "begin subtree", "begin ",     "attributes", "tag=6",    "idx=0",    "hdr=u",
             "elements",      "end 4",      "end 3",      "end 2",    "begin ",   "attributes",
             "tag=7",         "idx=0",      "hdr=t",      "elements", "end 5",    "end 1"}));
}

class DerivedTree : public TStringTree {
 public:
  using TStringTree::TStringTree;
};

TEST(TreeXmlWriterTest, ASubtreeOfAnotherClassHasItsSectionToo) {
  TStringTree tree(3, 4, nullptr, "x");
  tree.subtrees.push_back(new DerivedTree(5, 0, &tree, "s"));
  EXPECT_EQ(CallsOf(tree),
            (Calls{"attributes", "tag=3", "idx=4", "hdr=x", "elements", "begin subtree", "begin ",
                   "attributes", "tag=5", "idx=0", "hdr=s", "elements", "end 2", "end 1"}));
}

TEST(TreeXmlWriterTest, FieldsWithNegativeKeysHaveNoSectionButTheirListHas) {
  TStringTree tree(3, 4, nullptr, "x");
  tree.InsertString("a", 1, -1, "v");
  tree.InsertString("b", -1, 1, "w");
  EXPECT_EQ(CallsOf(tree),
            (Calls{"attributes", "tag=3", "idx=4", "hdr=x", "elements", "begin field", "end 1"}));
}

TEST(TreeXmlWriterTest, ARefusedItemIsReportedAndWritingGoesOn) {
  TreeWriter writer;
  writer.reportThrows = false;
  writer.refusedItem = "idx=4";
  EXPECT_TRUE(TStringTree(3, 4, nullptr, "x").WriteToXML(&writer));
  EXPECT_EQ(writer.calls, (Calls{"attributes", "tag=3", "idx=4", "report", "hdr=x", "elements"}));
}

TEST(TreeXmlWriterTest, AReportThatThrowsGivesFalse) {
  TreeWriter writer;
  writer.refusedItem = "hdr=x";
  EXPECT_FALSE(TStringTree(3, 4, nullptr, "x").WriteToXML(&writer));
  EXPECT_EQ(writer.calls, (Calls{"attributes", "tag=3", "idx=4", "hdr=x", "report"}));
}

TEST(TreeXmlWriterTest, WritingEndsAtAFieldThatFailsAndLeavesItsSectionsOpen) {
  TStringTree tree(3, 4, nullptr, "x");
  tree.InsertString("a", 1, 0, "bad");
  tree.InsertString("b", 2, 0, "w");
  tree.InsertSubtree("s", 5, 0);
  TreeWriter writer;
  writer.refusedItem = "=bad";
  EXPECT_FALSE(tree.WriteToXML(&writer));
  EXPECT_EQ(writer.calls, (Calls{"attributes", "tag=3", "idx=4", "hdr=x", "elements", "begin field",
                                 "begin compact ", "tag=1", "idx=0", "hdr=a", "begin compact data",
                                 "=bad", "report"}));
}

TEST(TreeXmlWriterTest, WritingEndsAtASubtreeThatFailsAndLeavesItsSectionsOpen) {
  TStringTree tree(3, 4, nullptr, "x");
  tree.InsertSubtree("bad", 5, 0);
  tree.InsertSubtree("t", 7, 0);
  TreeWriter writer;
  writer.refusedItem = "hdr=bad";
  EXPECT_FALSE(tree.WriteToXML(&writer));
  EXPECT_EQ(writer.calls,
            (Calls{"attributes", "tag=3", "idx=4", "hdr=x", "elements", "begin subtree", "begin ",
                   "attributes", "tag=5", "idx=0", "hdr=bad", "report"}));
}

TEST(TreeXmlWriterTest, ASectionThatCannotBeOpenedGivesFalse) {
  metadata_test::RecordingWriter writer;
  writer.sectionId = 0;
  TStringTree tree(3, 4, nullptr, "x");
  EXPECT_TRUE(tree.WriteToXML(&writer));
  tree.InsertSubtree("s", 5, 0);
  EXPECT_FALSE(tree.WriteToXML(&writer));
}

TEST(TreeXmlWriterTest, WhatEndingASectionGivesDoesNotMatter) {
  metadata_test::RecordingWriter writer;
  writer.endResult = false;
  TStringTree tree(3, 4, nullptr, "x");
  tree.InsertString("a", 1, 0, "v");
  tree.InsertSubtree("s", 5, 0);
  EXPECT_TRUE(tree.WriteToXML(&writer));
}

TEST(TreeXmlWriterTest, AnExceptionOfAnyKindGivesFalse) {
  metadata_test::RecordingWriter writer;
  writer.endThrows = true;
  TStringTree tree(3, 4, nullptr, "x");
  tree.InsertString("a", 1, 0, "v");
  EXPECT_FALSE(tree.WriteToXML(&writer));
}

TEST(TreeXmlWriterTest, TheStreamWriterGivesAttributesAndCompactFields) {
  TStringTree tree(3, 4, nullptr, "x");
  tree.InsertString("a", 1, 0, "v");
  tree.InsertSubtree("s", 5, 0);
  EXPECT_EQ(ToXml(tree),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<xini tag=\"3\" idx=\"4\" hdr=\"x\">\n"
            "\t<field>\n"
            "\t\t<_><tag>1</tag><idx>0</idx><hdr>a</hdr><data><_>v</_></data></_>\n"
            "\t</field>\n"
            "\t<subtree>\n"
            "\t\t<_ tag=\"5\" idx=\"0\" hdr=\"s\"/>\n"
            "\t</subtree>\n"
            "</xini>\n");
}

/// Takes `limit` bytes in all.
class FullStream : public TKvMemoryStream {
 public:
  explicit FullStream(unsigned long limit) : limit_(limit) {}
  unsigned long Write(const void* buffer, unsigned long count) override {
    const unsigned long taken = count < limit_ - taken_ ? count : limit_ - taken_;
    taken_ += taken;
    return TKvMemoryStream::Write(buffer, taken);
  }

 private:
  unsigned long limit_;
  unsigned long taken_ = 0;
};

TEST(TreeXmlWriterTest, AFullStreamIsNeverAQuietSuccess) {
  TStringTree tree(3, 4, nullptr, std::string(100000, 'h'));
  for (int i = 0; i < 40; ++i) tree.InsertString("a", i, 0, std::string(10000, 'v'));
  tree.InsertSubtree(std::string(100000, 's'), 5, 0);
  const unsigned long whole = ToXml(tree).size();
  for (unsigned long limit = 0; limit < whole; limit += 9973) {
    TKvXIniStreamWriter writer(StreamPointer(new FullStream(limit)), 0,
                               TKvXIniStreamWriter::htDocument);
    const bool isWritten = tree.WriteToXML(&writer);
    EXPECT_FALSE(isWritten && writer.Close()) << limit;
  }
}

}  // namespace
