#include "Kv/XmlItem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "XIniTest.h"

namespace kv_test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

using Item = var_a_legacy::var_a<TKvXmlItem*>;

constexpr unsigned long kNone = ~0UL;

std::string ParseError(const std::string& text) {
  return ErrorOf([&] { TKvXmlItem::Parse(text); });
}

std::string TextOf(const std::string& text) {
  return TKvXmlItem::Parse(text)->Element().items.get_text();
}

TEST(XmlItem, GivesTheRootsTag) {
  EXPECT_EQ(TKvXmlItem::Parse("<?xml version='1.0'?>\n<!-- c --><scene/>\n")->Element().tag,
            "scene");
}

TEST(XmlItem, ParsesAStreamFromItsBeginning) {
  TKvMemoryStream stream("<scene/>");
  stream.SetPos(3);
  EXPECT_EQ(TKvXmlItem::Parse(&stream)->Element().tag, "scene");
}

TEST(XmlItem, KeepsTheChildrenInOrder) {
  const Item root = TKvXmlItem::Parse("<r> <a/>text<b/><!-- c --><a x='1'/></r>");
  const TKvXmlTagItems& items = root->Element().items;
  ASSERT_EQ(items.size(), 3U);
  EXPECT_EQ(items[0]->Element().tag, "a");
  EXPECT_EQ(items[1]->Element().tag, "b");
  EXPECT_EQ(items[2]->Element().attributes.size(), 1U);
}

TEST(XmlItem, FindsTheFirstChildOfATagAtAPositionOrBehindIt) {
  const Item root = TKvXmlItem::Parse("<r><a/><b/><a/></r>");
  const TKvXmlTagItems& items = root->Element().items;
  EXPECT_EQ(items.find_tag_f("a", 0), 0U);
  EXPECT_EQ(items.find_tag_f("a", 1), 2U);
  EXPECT_EQ(items.find_tag_f("a", 2), 2U);
  EXPECT_EQ(items.find_tag_f("a", 3), kNone);
  EXPECT_EQ(items.find_tag_f("c", 0), kNone);
  EXPECT_EQ(items.find_tag_f("a", kNone), kNone);
}

TEST(XmlItem, ChildrenThatAreCopiedShareTheElements) {
  const Item root = TKvXmlItem::Parse("<r><a/><b/></r>");
  TKvXmlTagItems copy;
  copy = root->Element().items;
  const TKvXmlTagItems second(copy);
  ASSERT_EQ(second.size(), 2U);
  EXPECT_EQ(&second[1]->Element(), &root->Element().items[1]->Element());
}

TEST(XmlItem, FindsNothingInAnElementWithoutChildren) {
  const Item root = TKvXmlItem::Parse("<r/>");
  EXPECT_EQ(root->Element().items.size(), 0U);
  EXPECT_EQ(root->Element().items.find_tag_f("a", 0), kNone);
  EXPECT_EQ(root->Element().items.get_text(), "");
  EXPECT_EQ(root->Element().attributes.size(), 0U);
}

TEST(XmlItem, ThrowsForAPositionThatIsNotThere) {
  const Item root = TKvXmlItem::Parse("<r a='1'><b/></r>");
  EXPECT_THROW(root->Element().items[1], std::out_of_range);
  EXPECT_THROW(root->Element().attributes[1], std::out_of_range);
  EXPECT_THROW(TKvXmlTagItems()[0], std::out_of_range);
  EXPECT_THROW(TKvXmlTagAttributes()[0], std::out_of_range);
}

TEST(XmlItem, GivesAttributesByNameAndByPosition) {
  const Item root = TKvXmlItem::Parse("<r b='1' a=\"&lt;&#10;\" _c=''/>");
  const TKvXmlTagAttributes& attributes = root->Element().attributes;
  ASSERT_EQ(attributes.size(), 3U);
  EXPECT_EQ(attributes[0].name, "b");
  EXPECT_EQ(attributes[1].value, "<\n");
  EXPECT_EQ(attributes.get_value("a", "x"), "<\n");
  EXPECT_EQ(attributes.get_value("_c", "x"), "");
  EXPECT_EQ(attributes.get_value("d", "x"), "x");
  EXPECT_EQ(TKvXmlTagAttributes().get_value("d", "x"), "x");
}

TEST(XmlItem, JoinsThePiecesOfAnElementsOwnText) {
  EXPECT_EQ(TextOf("<r>1<a>x</a>2<!-- c -->3<![CDATA[<4>]]>&amp;</r>"), "123<4>&");
}

TEST(XmlItem, KeepsWhiteSpaceInText) {
  EXPECT_EQ(TextOf("<r> </r>"), " ");
  EXPECT_EQ(TextOf("<r>\n\t1 </r>"), "\n\t1 ");
  EXPECT_EQ(TextOf("<r>\n<a/>\n</r>"), "\n\n");
  EXPECT_EQ(TextOf("<r>\r\n</r>"), "\n");
}

TEST(XmlItem, SharesChildrenThatOutliveTheirParent) {
  Item child;
  {
    const Item root = TKvXmlItem::Parse("<r><a><b>text</b></a></r>");
    child = root->Element().items[0];
  }
  EXPECT_EQ(child->Element().items[0]->Element().items.get_text(), "text");
}

TEST(XmlItem, SharesWhatACopiedElementHolds) {
  const Item root = TKvXmlItem::Parse("<r a='1'><b/></r>");
  const TKvXmlElement copy = root->Element();
  EXPECT_EQ(copy.tag, "r");
  EXPECT_EQ(copy.items[0].get(), root->Element().items[0].get());
  EXPECT_EQ(&copy.attributes[0], &root->Element().attributes[0]);
}

TEST(XmlItem, RefusesAMissingOrClosedStream) {
  TKvFileStream closed;
  EXPECT_EQ(ErrorOf([&] { TKvXmlItem::Parse(&closed); }), "XML: the stream is not open");
  EXPECT_EQ(ErrorOf([] { TKvXmlItem::Parse(static_cast<TKvStream*>(nullptr)); }),
            "XML: the stream is not open");
}

TEST(XmlItem, SaysLineAndColumnOfWhatIsNotXml) {
  EXPECT_THAT(ParseError("<r>\n<a></b></r>"), StartsWith("XML, line 2, column "));
  EXPECT_EQ(ParseError(""), "XML, line 1, column 1: no root element");
  EXPECT_EQ(ParseError("<r>\n &x;</r>"),
            "XML, line 2, column 2: unknown entity or character reference");
  TKvMemoryStream stream("<r>\n<a></b></r>");
  EXPECT_THAT(ErrorOf([&] { TKvXmlItem::Parse(&stream); }), StartsWith("XML, line 2, column "));
}

TEST(XmlItem, RefusesDocumentTypes) {
  EXPECT_THAT(ParseError("<!DOCTYPE r><r/>"), HasSubstr("document types are not read"));
  EXPECT_NE(ParseError("<!DOCTYPE r [<!ENTITY a 'aaaa'><!ENTITY b '&a;&a;&a;'>]><r>&b;</r>"),
            "nothing");
}

TEST(XmlItem, RefusesEveryTextCutShort) {
  const std::string whole = "<?xml version='1.0'?><r a='&lt;'><b>x<![CDATA[y]]></b><!-- c --></r>";
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_NE(ParseError(whole.substr(0, size)), "nothing") << size;
  }
  EXPECT_EQ(ParseError(whole), "nothing");
}

std::string Nested(int depth) {
  std::string text;
  for (int i = 0; i < depth; ++i) text += "<a>";
  for (int i = 0; i < depth; ++i) text += "</a>";
  return text;
}

TEST(XmlItem, ParsesAndDestroysNestingOfAnyDepth) {
  constexpr int kDepth = 200000;
  Item item = TKvXmlItem::Parse(Nested(kDepth));
  int depth = 1;
  Item inner = item;
  while (inner->Element().items.size() != 0) {
    inner = inner->Element().items[0];
    ++depth;
  }
  EXPECT_EQ(depth, kDepth);
  item.reset();
  EXPECT_EQ(inner.use_count(), 1);
  EXPECT_EQ(inner->Element().tag, "a");
}

TEST(XmlItem, DestroysDeepNestingThatWasWalkedDownByItsLastReference) {
  Item item = TKvXmlItem::Parse(Nested(100000));
  while (item->Element().items.size() != 0) item = item->Element().items[0];
  EXPECT_EQ(item.use_count(), 1);
}

TEST(XmlItem, DestroysDeepNestingThatSeveralThreadsHold) {
  for (int round = 0; round < 5; ++round) {
    Item item = TKvXmlItem::Parse(Nested(20000));
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
      std::vector<TKvXmlElement> held;
      for (Item inner = item; inner->Element().items.size() != 0;
           inner = inner->Element().items[0]) {
        held.push_back(inner->Element());
      }
      threads.emplace_back([held = std::move(held)]() mutable { held.clear(); });
    }
    item.reset();
    for (std::thread& thread : threads) thread.join();
    EXPECT_FALSE(item);
  }
}

TEST(XmlItem, ParsesManySiblings) {
  constexpr unsigned long kCount = 100000;
  std::string text = "<r>";
  for (unsigned long i = 0; i < kCount; ++i) text += "<a b='1'>x</a>\n";
  const Item root = TKvXmlItem::Parse(text + "</r>");
  unsigned long count = 0;
  for (unsigned long i = root->Element().items.find_tag_f("a", 0); i != kNone;
       i = root->Element().items.find_tag_f("a", i + 1)) {
    ++count;
  }
  EXPECT_EQ(count, kCount);
  EXPECT_EQ(root->Element().items.get_text().size(), kCount);
}

TEST(XmlItem, CanBeMadeAndDerivedFromByAHost) {
  class Special : public TKvXmlItem {
   public:
    Special() : TKvXmlItem({"special", {}, {}}) {}
  };
  const Item item(new Special);
  EXPECT_EQ(item->Element().tag, "special");
}

}  // namespace
}  // namespace kv_test
