#include <gtest/gtest.h>

#include <string>

#include "BuildKind.h"
#include "Growth.h"
#include "Kv/XmlItem.h"
#include "XIniTest.h"

namespace kv_test {
namespace {

std::string Repeated(unsigned long count, const std::string& text) {
  std::string repeated;
  repeated.reserve(count * text.size());
  for (unsigned long i = 0; i < count; ++i) repeated += text;
  return repeated;
}

void Read(const std::string& text) {
  ErrorOf([&] { const TKvXIniReader reader(MakeStream(text)); });
}

void Parse(const std::string& text) {
  ErrorOf([&] { TKvXmlItem::Parse(text); });
}

/// With a sanitizer, which makes it many times longer, at a quarter of the size.
void ExpectLinear(unsigned long size, const std::function<void(unsigned long)>& action) {
  EXPECT_TRUE(IsLinear(kSanitized ? size / 4 : size, action));
}

TEST(XIniGrowth, OfWritingAttributesIsLinear) {
  ExpectLinear(12000, [](unsigned long count) {
    Written([&](TKvXIniStreamWriter& writer) {
      writer.SetAttributeMode(true);
      for (unsigned long i = 0; i < count; ++i) {
        writer.WriteS<int>(std::string("a").append(std::to_string(i)), 1);
      }
    });
  });
}

TEST(XIniGrowth, OfWritingSectionsAfterManyAttributesIsLinear) {
  ExpectLinear(12000, [](unsigned long count) {
    Written([&](TKvXIniStreamWriter& writer) {
      writer.SetAttributeMode(true);
      for (unsigned long i = 0; i < count; ++i) {
        writer.WriteS<int>(std::string("a").append(std::to_string(i)), 1);
      }
      for (unsigned long i = 0; i < count; ++i) {
        const unsigned long section = writer.BeginSectionS("s");
        writer.WriteS<int>("a", 1);
        writer.EndSection(section);
      }
    });
  });
}

TEST(XIniGrowth, OfWritingNestedSectionsIsLinear) {
  ExpectLinear(12000, [](unsigned long count) {
    Written([&](TKvXIniStreamWriter& writer) {
      for (unsigned long i = 0; i < count; ++i) writer.BeginSectionS("s");
    });
  });
}

TEST(XIniGrowth, OfReadingItemsByPositionAndNameIsLinear) {
  ExpectLinear(12000, [](unsigned long count) {
    std::string text = "<r>";
    for (unsigned long i = 0; i < count; ++i) {
      text += std::string("<a").append(std::to_string(i)).append(" b='1'/>");
    }
    TKvXIniReader reader(MakeStream(text + "</r>"));
    for (unsigned long i = 0; i < count; ++i) {
      const std::string name = std::string("a").append(std::to_string(count - 1 - i));
      reader.LeaveSection(reader.EnterItem(reader.FindFE(name.c_str(), 0)));
      reader.ReadE<std::string>(i);
    }
  });
}

TEST(XIniGrowth, OfFindingItemsOfOneNameIsLinear) {
  ExpectLinear(12000, [](unsigned long count) {
    const TKvXIniReader reader(MakeStream("<r>" + Repeated(count, "<a/>") + "</r>"));
    for (unsigned long i = reader.FindF("a", 0); i != ~0UL;) i = reader.FindF("a", i + 1);
    for (unsigned long i = 0; i < count; ++i) reader.FindF("b", i);
  });
}

TEST(XIniGrowth, OfReadingNestedSectionsIsLinear) {
  ExpectLinear(12000, [](unsigned long count) {
    TKvXIniReader reader(
        MakeStream("<r>" + Repeated(count, "<a>") + Repeated(count, "</a>") + "</r>"));
    while (reader.GetItemCount() != 0) reader.EnterItem(0);
  });
}

TEST(XIniGrowth, OfReadingAmpersandsInCommentsIsLinear) {
  ExpectLinear(48000, [](unsigned long count) { Read("<r>" + Repeated(count, "<!--&-->")); });
  ExpectLinear(48000, [](unsigned long count) { Read("<r><!--" + Repeated(count, "& ")); });
}

TEST(XIniGrowth, OfReadingMarkupThatNeverEndsIsLinear) {
  for (const char* piece : {"<", "<!--", "<![CDATA[", "<a b='", "<a b=\"'>&amp;", "&lt;&#1;", "&",
                            "<?", "]]>", "<a><![CDATA[]]>"}) {
    ExpectLinear(48000, [&](unsigned long count) { Read("<r>" + Repeated(count, piece)); });
  }
}

TEST(XIniGrowth, OfParsingItemsIsLinear) {
  ExpectLinear(12000, [](unsigned long count) {
    Parse("<r>" + Repeated(count, "text<a b='1'>x</a><![CDATA[y]]>") + "</r>");
  });
  ExpectLinear(
      80000, [](unsigned long count) { Parse(Repeated(count, "<a>x") + Repeated(count, "</a>")); });
}

TEST(XIniGrowth, OfCopyingElementsIsLinear) {
  ExpectLinear(12000, [](unsigned long count) {
    const auto root = TKvXmlItem::Parse("<r>" + Repeated(count, "<a/>") + "</r>");
    for (unsigned long i = 0; i < count; ++i) {
      const TKvXmlElement copy = root->Element();
      ASSERT_EQ(copy.items.size(), count);
    }
  });
}

}  // namespace
}  // namespace kv_test
