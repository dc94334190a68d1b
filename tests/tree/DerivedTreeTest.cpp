// Classes of a host that derive from the string tree: their factories and writers are called
// wherever the general algorithms call for them.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "tree/TreeTest.h"

namespace {

using namespace tree_test;
using SatCommonUtils::InsertFromString;

class DerivedField : public TStringTreeField {
 public:
  using TStringTreeField::TStringTreeField;

  bool StringToValue(const char* text, std::size_t length, std::size_t i) override {
    return TStringTreeField::StringToValue(text, length, i);
  }
};

/// Makes its own nodes and fields, and looks at each subtree once it has been read.
class DerivedTree : public TStringTree {
 public:
  using TStringTree::TStringTree;

  std::size_t fieldsAtTheEnd = 99;  ///< what a subtree held when its factory was done

  bool WriteToXML(TKvXIniWriter* writer) const override {
    writer->WriteS<std::string>("mark", header);
    return TStringTree::WriteToXML(writer);
  }
  Tree* CreateSubtree(int subtreeTag, int subtreeIdx, std::string text) override {
    return new DerivedTree(subtreeTag, subtreeIdx, this, text + "!");
  }
  Tree* CreateSubtree(const char* text, std::size_t* position) override {
    auto* const subtree = new DerivedTree(0, 0, this, "");
    subtree->ReadFromString(text, position, this);
    subtree->fieldsAtTheEnd = subtree->fields.size();
    return subtree;
  }
  Tree* CreateSubtree(TKvXIniReader* reader, std::size_t item) override {
    auto* const subtree = new DerivedTree(0, 0, this, "");
    subtree->ReadFromXML(reader, item, this);
    subtree->fieldsAtTheEnd = subtree->fields.size();
    return subtree;
  }
  Field* CreateField(int fieldTag, int fieldIdx, std::string* values, std::size_t count,
                     std::string text) override {
    return new DerivedField(fieldTag, fieldIdx, values, count, text + "!");
  }
  Field* CreateField(int fieldTag, int fieldIdx, const std::string& value,
                     std::string text) override {
    return new DerivedField(fieldTag, fieldIdx, value, text + "?");
  }
  Field* CreateField(const char* text, std::size_t* position) override {
    auto* const field = new DerivedField(0, 0, nullptr, 0, "");
    field->ReadFromString(text, position);
    return field;
  }
  Field* CreateField(TKvXIniReader* reader, std::size_t item) override {
    auto* const field = new DerivedField(0, 0, nullptr, 0, "");
    field->ReadFromXML(reader, item);
    return field;
  }
};

const char* const kText =
    "(0,0)r\n(1,0)[1]a\tx\n\t(2,0)s\n\t(3,0)[1]b\ty\n\t\t(4,0)t\n\t\t\n\t\n\n";

void ExpectDerivedThroughout(const Tree& tree) {
  EXPECT_EQ(Describe(tree), "D(0,0)1:r{D(1,0)1:a[1:x;]D(2,0)1:s{D(3,0)1:b[1:y;]D(4,0)1:t{}}}");
  const auto& subtree = static_cast<const DerivedTree&>(*tree.subtrees[0]);
  EXPECT_EQ(subtree.fieldsAtTheEnd, 1u) << "the factory sees what it has read";
  EXPECT_EQ(static_cast<const DerivedTree&>(*subtree.subtrees[0]).fieldsAtTheEnd, 0u);
}

TEST(DerivedTreeTest, ReadingTextCallsTheFactories) {
  DerivedTree tree(0, 0, nullptr, "");
  tree.ReadFromString(kText, nullptr, nullptr);
  ExpectDerivedThroughout(tree);
}

TEST(DerivedTreeTest, ReadingXmlCallsTheFactories) {
  TStringTree source(0, 0, nullptr, "");
  source.ReadFromString(kText, nullptr, nullptr);
  DerivedTree tree(0, 0, nullptr, "");
  EXPECT_TRUE(FromXml(ToXml(source), &tree));
  ExpectDerivedThroughout(tree);
}

/// Writes down what its factories are to read, and leaves the reading to the string tree.
class NotingTree : public TStringTree {
 public:
  using TStringTree::CreateField;
  using TStringTree::CreateSubtree;
  using TStringTree::TStringTree;

  std::vector<std::string> calls;
  std::set<const char*> texts;

  Tree* CreateSubtree(const char* text, std::size_t* position) override {
    texts.insert(text);
    calls.push_back("subtree " + std::to_string(*position));
    return TStringTree::CreateSubtree(text, position);
  }
  Tree* CreateSubtree(TKvXIniReader* reader, std::size_t item) override {
    calls.push_back("subtree " + std::to_string(item));
    return TStringTree::CreateSubtree(reader, item);
  }
  Field* CreateField(const char* text, std::size_t* position) override {
    texts.insert(text);
    calls.push_back("field " + std::to_string(*position));
    return TStringTree::CreateField(text, position);
  }
  Field* CreateField(TKvXIniReader* reader, std::size_t item) override {
    calls.push_back("field " + std::to_string(item));
    return TStringTree::CreateField(reader, item);
  }
};

TEST(DerivedTreeTest, TheFactoriesOfTextGetTheWholeTextAndWhereTheyAreToBegin) {
  const char* const text = "#\t(0,0)r\n\t(1,0)[1]a\tx\n\t\t(2,0)s\n\t\t\n(3,0)[1]b\ty\n\n";
  NotingTree tree(0, 0, nullptr, "");
  std::size_t position = 1;
  tree.ReadFromString(text, &position, nullptr);
  EXPECT_EQ(tree.texts, std::set<const char*>{text});
  EXPECT_EQ(tree.calls, (std::vector<std::string>{"field 10", "subtree 22", "field 34"}))
      << "a field behind its tabs, a subtree in front of them";
}

TEST(DerivedTreeTest, TheFactoriesOfXmlGetThePositionOfTheirSection) {
  TStringTree source(0, 0, nullptr, "");
  for (const int tag : {7, 8, 9}) {
    source.InsertInteger("f", tag, 0, 1);
    source.InsertSubtree("t", tag, 0);
  }
  NotingTree tree(0, 0, nullptr, "");
  EXPECT_TRUE(FromXml(ToXml(source), &tree));
  EXPECT_EQ(tree.calls, (std::vector<std::string>{"field 0", "field 1", "field 2", "subtree 0",
                                                  "subtree 1", "subtree 2"}));
}

TEST(DerivedTreeTest, InsertingCallsTheFactoryOfItsForm) {
  DerivedTree tree(0, 0, nullptr, "");
  std::string values[] = {"v", "w"};
  EXPECT_TRUE(tree.InsertInteger("one", 1, 0, 5));
  EXPECT_TRUE(tree.InsertField("two", 2, 0, values, 2));
  EXPECT_TRUE(tree.InsertSubtree("three", 3, 0));
  EXPECT_TRUE(tree.InsertDouble("four", 4, 0, 0.5));
  EXPECT_TRUE(tree.InsertString("five", 5, 0, "x"));
  EXPECT_EQ(Describe(tree),
            "D(0,0)0:{D(1,0)4:one?[1:5;]D(2,0)4:two![1:v;1:w;]D(4,0)5:four?[3:0.5;]"
            "D(5,0)5:five?[1:x;]D(3,0)6:three!{}}");
}

TEST(DerivedTreeTest, AFailingGetterCallsTheFactoryForItsErrorField) {
  DerivedTree tree(0, 0, nullptr, "");
  int number = 0;
  EXPECT_FALSE(tree.GetInteger(7, 0, &number));
  EXPECT_EQ(Describe(tree), "D(0,0)0:{D(7,-1)26:Get integer ERROR (tag=7)?[0:;]}");
}

TEST(DerivedTreeTest, CopyingCallsTheFactoriesOfTheDestination) {
  DerivedTree tree(0, 0, nullptr, "");
  EXPECT_TRUE(InsertFromString(kText, &tree));
  EXPECT_EQ(Describe(tree), "D(0,0)0:{D(1,0)2:a![1:x;]D(2,0)2:s!{D(3,0)2:b![1:y;]D(4,0)2:t!{}}}");
}

TEST(DerivedTreeTest, WritingXmlCallsTheWriterOfEachSubtree) {
  TStringTree tree(0, 0, nullptr, "r");
  tree.subtrees.push_back(new DerivedTree(1, 0, &tree, "s"));
  tree.subtrees[0]->subtrees.push_back(new TStringTree(2, 0, tree.subtrees[0], "t"));
  tree.subtrees[0]->subtrees.push_back(new DerivedTree(3, 0, tree.subtrees[0], "u"));
  const std::string xml = ToXml(tree);
  EXPECT_EQ(xml.find("<mark>r</mark>"), std::string::npos);
  EXPECT_NE(xml.find("<mark>s</mark>"), std::string::npos);
  EXPECT_EQ(xml.find("<mark>t</mark>"), std::string::npos);
  EXPECT_NE(xml.find("<mark>u</mark>"), std::string::npos);
}

/// Has a form of its own in text and in XML.
class WritingField : public TStringTreeField {
 public:
  using TStringTreeField::TStringTreeField;
  std::size_t WriteToString(char* buffer, std::size_t position,
                            std::size_t /*depth*/) const override {
    const std::string line = header + " in text\n";
    if (buffer != nullptr) std::memcpy(buffer + position, line.data(), line.size());
    return line.size();
  }
  bool WriteToXML(TKvXIniWriter* writer) const override {
    return writer->WriteS<std::string>("own", header);
  }
};

TEST(DerivedTreeTest, WritingTextCallsTheWriterOfEachField) {
  TStringTree tree(1, 0, nullptr, "r");
  tree.fields.push_back(new WritingField(2, 0, std::string("v"), "f"));
  tree.InsertString("g", 3, 0, "w");
  EXPECT_EQ(WriteTreeToString(tree), "(1,0)r\nf in text\n(3,0)[1]g\tw\n\n");
}

TEST(DerivedTreeTest, WritingXmlCallsTheWriterOfEachFieldWithoutANegativeKey) {
  TStringTree tree(1, 0, nullptr, "r");
  tree.fields.push_back(new WritingField(2, -1, std::string("v"), "e"));
  tree.fields.push_back(new WritingField(2, 0, std::string("v"), "f"));
  tree.fields.push_back(new WritingField(-2, 0, std::string("v"), "g"));
  const std::string xml = ToXml(tree);
  EXPECT_NE(xml.find("<field>\n\t\t<_><own>f</own></_>\n\t</field>"), std::string::npos) << xml;
}

/// Says no.
class RefusingTree : public TStringTree {
 public:
  using TStringTree::TStringTree;
  bool WriteToXML(TKvXIniWriter* /*writer*/) const override { return false; }
};

TEST(DerivedTreeTest, AWriterThatSaysNoEndsTheWriting) {
  TStringTree tree(0, 0, nullptr, "");
  tree.InsertSubtree("before", 1, 0);
  tree.subtrees.push_back(new RefusingTree(2, 0, &tree, ""));
  tree.InsertSubtree("after", 3, 0);
  EXPECT_EQ(ToXml(tree), "failed");
}

/// Makes fields of its own and leaves subtrees to the string tree.
class FieldsOnly : public TStringTree {
 public:
  using TStringTree::CreateField;
  using TStringTree::TStringTree;
  Field* CreateField(const char* text, std::size_t* position) override {
    auto* const field = new DerivedField(0, 0, nullptr, 0, "");
    field->ReadFromString(text, position);
    return field;
  }
};

TEST(DerivedTreeTest, AFactoryThatIsNotOverriddenMakesStringTrees) {
  FieldsOnly tree(0, 0, nullptr, "");
  tree.ReadFromString(kText, nullptr, nullptr);
  EXPECT_EQ(Describe(tree), "D(0,0)1:r{D(1,0)1:a[1:x;]S(2,0)1:s{S(3,0)1:b[1:y;]S(4,0)1:t{}}}");
}

/// Goes through the string tree's own factory and looks at what it gives.
class Onlooker : public TStringTree {
 public:
  using TStringTree::CreateSubtree;
  using TStringTree::TStringTree;
  Tree* CreateSubtree(const char* text, std::size_t* position) override {
    Tree* const subtree = TStringTree::CreateSubtree(text, position);
    seen = Describe(*subtree);
    return subtree;
  }
  static std::string seen;
};
std::string Onlooker::seen;

TEST(DerivedTreeTest, TheFactoryOfTheBaseGivesACompleteSubtree) {
  Onlooker tree(0, 0, nullptr, "");
  tree.ReadFromString(kText, nullptr, nullptr);
  EXPECT_EQ(Onlooker::seen, "S(2,0)1:s{S(3,0)1:b[1:y;]S(4,0)1:t{}}");
}

/// Puts all subtrees under one key.
class OneKey : public TStringTree {
 public:
  using TStringTree::CreateSubtree;
  using TStringTree::TStringTree;
  Tree* CreateSubtree(int /*tag*/, int /*idx*/, std::string text) override {
    return new OneKey(1, 1, this, text);
  }
};

TEST(DerivedTreeTest, CopyingDoesNotFindASubtreeWhoseFactoryChangedItsKey) {
  TStringTree source(0, 0, nullptr, "");
  source.InsertSubtree("x", 5, 5);
  OneKey destination(0, 0, nullptr, "");
  EXPECT_FALSE(source.CopyTo(&destination));
  EXPECT_EQ(Describe(destination), "D(0,0)0:{D(1,1)1:x{}}");
}

/// Keeps the tag of a subtree and gives it another index.
class OneIndex : public TStringTree {
 public:
  using TStringTree::CreateSubtree;
  using TStringTree::TStringTree;
  Tree* CreateSubtree(int subtreeTag, int /*idx*/, std::string text) override {
    return new OneIndex(subtreeTag, 1, this, text);
  }
};

TEST(DerivedTreeTest, CopyingDoesNotFindASubtreeWhoseFactoryChangedItsIndex) {
  TStringTree source(0, 0, nullptr, "");
  source.InsertSubtree("x", 5, 5);
  OneIndex destination(0, 0, nullptr, "");
  EXPECT_FALSE(source.CopyTo(&destination));
  EXPECT_EQ(Describe(destination), "D(0,0)0:{D(5,1)1:x{}}");
}

class CountingField : public TStringTreeField {
 public:
  using TStringTreeField::TStringTreeField;
  bool StringToValue(const std::string& text, std::size_t i) override {
    return TStringTreeField::StringToValue(text, i);
  }
};

/// Gives every field as many values as it likes, whatever the text says.
class TreeOfLongFields : public TStringTree {
 public:
  using TStringTree::CreateField;
  using TStringTree::TStringTree;
  Field* CreateField(const char* text, std::size_t* position) override {
    TStringTreeField read(0, 0, nullptr, 0, "");
    read.ReadFromString(text, position);
    std::string values[1000];
    return new CountingField(read.tag, read.idx, values, 1000, read.header);
  }
};

TEST(DerivedTreeTest, TheValuesOfAFieldOfAnotherClassAreNotHeldAgainstTheText) {
  TreeOfLongFields tree(0, 0, nullptr, "");
  tree.ReadFromString("(0,0)r\n(1,0)[1]a\tx\n\n", nullptr, nullptr);
  ASSERT_EQ(tree.fields.size(), 1u);
  EXPECT_EQ(tree.fields[0]->count, 1000u);
}

class ThrowingTree : public TStringTree {
 public:
  using TStringTree::CreateSubtree;
  using TStringTree::TStringTree;
  Tree* CreateSubtree(int /*tag*/, int /*idx*/, std::string /*text*/) override { throw 1; }
  Tree* CreateSubtree(const char* /*text*/, std::size_t* /*position*/) override { throw 1; }
  Tree* CreateSubtree(TKvXIniReader* /*reader*/, std::size_t /*item*/) override { throw 1; }
};

TEST(DerivedTreeTest, AFactoryThatThrowsLeavesTextReading) {
  ThrowingTree tree(0, 0, nullptr, "");
  EXPECT_THROW(tree.ReadFromString(kText, nullptr, nullptr), int);
  EXPECT_EQ(Describe(tree), "D(0,0)1:r{S(1,0)1:a[1:x;]}");
}

TEST(DerivedTreeTest, AFactoryThatThrowsIsAFailureOfTheTreeThatCalledIt) {
  TStringTree source(0, 0, nullptr, "");
  source.ReadFromString(kText, nullptr, nullptr);
  ThrowingTree tree(0, 0, nullptr, "");
  EXPECT_FALSE(FromXml(ToXml(source), &tree));
  EXPECT_EQ(Describe(tree), "D(0,0)1:r{S(1,0)1:a[1:x;]}");
}

TEST(DerivedTreeTest, AFactoryThatThrowsMakesInsertFromStringGiveFalse) {
  ThrowingTree tree(0, 0, nullptr, "");
  EXPECT_FALSE(InsertFromString(kText, &tree));
  EXPECT_EQ(Describe(tree), "D(0,0)0:{S(1,0)1:a[1:x;]}");
}

}  // namespace
