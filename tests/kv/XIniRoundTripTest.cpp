#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "BuildKind.h"
#include "CommaLocale.h"
#include "XIniTest.h"

namespace kv_test {
namespace {

/// A value or a section of the naive model.
struct Node {
  std::string name;
  std::string value;
  bool isSection = false;
  bool isCompact = false;
  bool isAttributeMode = false;
  std::vector<Node> children;
};

void Write(TKvXIniStreamWriter* writer, const std::vector<Node>& nodes) {
  for (const Node& node : nodes) {
    writer->SetAttributeMode(node.isAttributeMode);
    if (!node.isSection) {
      ASSERT_TRUE(writer->WriteS<std::string>(node.name, node.value));
      continue;
    }
    const unsigned long section = node.isCompact ? writer->BeginSectionCompactSE(node.name)
                                                 : writer->BeginSectionSE(node.name);
    Write(writer, node.children);
    ASSERT_TRUE(writer->EndSection(section));
  }
}

void ExpectRead(TKvXIniReader* reader, const std::vector<Node>& nodes) {
  ASSERT_EQ(reader->GetItemCount(), nodes.size());
  for (unsigned long i = 0; i < nodes.size(); ++i) {
    if (nodes[i].name.find('\0') == std::string::npos) {
      ASSERT_EQ(reader->FindF(nodes[i].name.c_str(), i), i);
    }
    if (!nodes[i].isSection) {
      ASSERT_EQ(reader->ReadE<std::string>(i), nodes[i].value);
      continue;
    }
    const unsigned long section = reader->EnterItem(i);
    ExpectRead(reader, nodes[i].children);
    reader->LeaveSection(section);
  }
}

void ExpectRoundTrip(const std::vector<Node>& nodes) {
  const std::string text = Written([&](TKvXIniStreamWriter& writer) { Write(&writer, nodes); });
  TKvXIniReader reader(MakeStream(text));
  ExpectRead(&reader, nodes);
  if (testing::Test::HasFatalFailure()) ADD_FAILURE() << text;
}

Node Item(std::string name, std::string value) {
  Node node;
  node.name = std::move(name);
  node.value = std::move(value);
  return node;
}

void ExpectRoundTripOf(const std::string& text) {
  Node attribute = Item("a", text);
  attribute.isAttributeMode = true;
  Node section = Item(text, "");
  section.isSection = true;
  section.children = {attribute, Item("b", text), Item(text, text)};
  Node compact = section;
  compact.isCompact = true;
  ExpectRoundTrip({attribute, Item("v", text), Item(text, text), section, compact});
}

TEST(XIniRoundTrip, KeepsTheEmptyText) {
  ExpectRoundTripOf("");
}

TEST(XIniRoundTrip, KeepsBlanks) {
  for (const char* text : {" ", "  ", "\t", "\n", "\r", "\r\n", "\n\r\n", " a", "a ", "\n a \n"}) {
    ExpectRoundTripOf(text);
  }
}

TEST(XIniRoundTrip, KeepsMarkup) {
  for (const char* text : {"]]>", "<![CDATA[x]]>", "<!-- -->", "--", "&amp;", "&#13;", "<a/>", "'",
                           "\"", "_", "_name", "_enc", "xmlns", "xml:space", "a:b", ":", "xml"}) {
    ExpectRoundTripOf(text);
  }
}

TEST(XIniRoundTrip, KeepsEverySingleByte) {
  for (int byte = 0; byte < 256; ++byte) ExpectRoundTripOf(std::string(1, static_cast<char>(byte)));
}

TEST(XIniRoundTrip, KeepsEverySingleByteBetweenLetters) {
  for (int byte = 0; byte < 256; ++byte) {
    ExpectRoundTripOf(std::string("a") + static_cast<char>(byte) + "z");
  }
}

std::string Encoded(unsigned code) {
  std::string text;
  const auto add = [&](unsigned bits) { text += static_cast<char>(bits); };
  if (code < 0x80) {
    add(code);
  } else if (code < 0x800) {
    add(0xC0U | (code >> 6U));
    add(0x80U | (code & 0x3FU));
  } else if (code < 0x10000) {
    add(0xE0U | (code >> 12U));
    add(0x80U | ((code >> 6U) & 0x3FU));
    add(0x80U | (code & 0x3FU));
  } else {
    add(0xF0U | (code >> 18U));
    add(0x80U | ((code >> 12U) & 0x3FU));
    add(0x80U | ((code >> 6U) & 0x3FU));
    add(0x80U | (code & 0x3FU));
  }
  return text;
}

TEST(XIniRoundTrip, KeepsOneOddByteAtEveryPlaceOfTextsOfEveryLength) {
  for (const char odd : {'<', '&', '\r', '\1', '\xFF', ' ', '/'}) {
    std::vector<Node> nodes;
    for (std::size_t length = 1; length <= 50; ++length) {
      for (std::size_t i = 0; i < length; ++i) {
        std::string text(length, 'a');
        text[i] = odd;
        nodes.push_back(Item(text, text));
      }
    }
    ExpectRoundTrip(nodes);
  }
}

TEST(XIniRoundTrip, KeepsEveryClassOfCodePoints) {
  // The limits of name characters, of planes, of what XML allows and of what UTF-8 can write,
  // surrogates and codes beyond the last one included.
  const std::vector<unsigned> limits = {
      0x20,    0x7F,    0x80,    0x85,    0xA0,     0xB7,     0xC0,    0xD7,   0xF7,
      0x2FF,   0x300,   0x36F,   0x370,   0x37E,    0x7FF,    0x800,   0x1FFF, 0x2000,
      0x200C,  0x200D,  0x2028,  0x203F,  0x2040,   0x2070,   0x218F,  0x2C00, 0x2FEF,
      0x3001,  0xD7FF,  0xD800,  0xDBFF,  0xDC00,   0xDFFF,   0xE000,  0xF8FF, 0xF900,
      0xFDCF,  0xFDD0,  0xFDEF,  0xFDF0,  0xFEFF,   0xFFFD,   0xFFFE,  0xFFFF, 0x10000,
      0x1F600, 0x1FFFE, 0xEFFFF, 0xF0000, 0x10FFFF, 0x110000, 0x1FFFFF};
  for (const unsigned limit : limits) {
    for (const unsigned code : {limit - 1, limit, limit + 1}) {
      ExpectRoundTripOf(Encoded(code));
      ExpectRoundTripOf(std::string("a").append(Encoded(code)));
    }
  }
}

TEST(XIniRoundTrip, KeepsUtf8CutShortAndOverlong) {
  for (const char* text : {"\xC3", "\xE2\x82", "\xF0\x9F\x98", "\xC0\x80", "\xE0\x80\x80",
                           "\xF8\x88\x80\x80\x80", "a\xC3", "\x80"}) {
    ExpectRoundTripOf(text);
  }
}

TEST(XIniRoundTrip, KeepsAByteOrderMarkInAValue) {
  ExpectRoundTripOf("\xEF\xBB\xBF");
}

TEST(XIniRoundTrip, KeepsRandomBytes) {
  std::mt19937 random(7);
  for (int i = 0; i < 3000; ++i) ExpectRoundTripOf(RandomText(&random, 40));
}

std::vector<Node> RandomNodes(std::mt19937* random, int depth) {
  std::vector<Node> nodes;
  const unsigned long count = (*random)() % 6;
  for (unsigned long i = 0; i < count; ++i) {
    Node node = Item(RandomText(random, 6), RandomText(random, 30));
    node.isSection = depth > 0 && (*random)() % 3 == 0;
    node.isCompact = (*random)() % 3 == 0;
    // Only at the front, because the reader lists attributes first.
    node.isAttributeMode = (*random)() % 2 == 0 && (i == 0 || nodes.back().isAttributeMode);
    if (node.isSection) node.children = RandomNodes(random, depth - 1);
    nodes.push_back(std::move(node));
  }
  return nodes;
}

// In attribute mode some items become elements; those that follow as attributes would overtake
// none, as the element then has a child.
TEST(XIniRoundTrip, KeepsRandomTrees) {
  std::mt19937 random(11);
  for (int i = 0; i < 3000; ++i) ExpectRoundTrip(RandomNodes(&random, 5));
}

TEST(XIniRoundTrip, KeepsLongTexts) {
  constexpr unsigned long kSize = kv_test::kSanitized ? 1000000 : 10000000;
  std::string binary(kSize, '\0');
  std::mt19937 random(13);
  for (char& c : binary) c = static_cast<char>(random());
  const std::vector<Node> nodes = {Item("plain", std::string(kSize, 'x')),
                                   Item("markup", std::string(kSize, '<')),
                                   Item("returns", std::string(kSize, '\r')), Item("bin", binary),
                                   Item(binary.substr(0, kSize / 4), "name")};
  ExpectRoundTrip(nodes);
}

void ExpectSameDoubles() {
  std::mt19937_64 random(17);
  std::vector<double> values = {0.0,
                                -0.0,
                                0.1,
                                std::numeric_limits<double>::max(),
                                std::numeric_limits<double>::lowest(),
                                std::numeric_limits<double>::min(),
                                std::numeric_limits<double>::denorm_min(),
                                -std::numeric_limits<double>::denorm_min(),
                                std::numeric_limits<double>::infinity(),
                                -std::numeric_limits<double>::infinity()};
  while (values.size() < 20000) {
    const auto bits = random();
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    if (!std::isnan(value)) values.push_back(value);
  }
  const std::string text = Written([&](TKvXIniStreamWriter& writer) {
    for (const double value : values) writer.WriteS<double>("", value);
  });
  const TKvXIniReader reader(MakeStream(text));
  for (unsigned long i = 0; i < values.size(); ++i) {
    const double read = reader.ReadE<double>(i);
    ASSERT_EQ(std::memcmp(&read, &values[i], sizeof read), 0) << values[i];
  }
}

TEST(XIniRoundTrip, KeepsEveryBitOfDoubles) {
  ExpectSameDoubles();
}

TEST(XIniRoundTrip, KeepsEveryBitOfDoublesInALocaleWithADecimalComma) {
  const CommaLocale locale;
  if (!locale.IsThere()) GTEST_SKIP() << "the machine has no locale with a decimal comma";
  ExpectSameDoubles();
}

TEST(XIniRoundTrip, KeepsIntegers) {
  for (const int value :
       {0, 1, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    const std::string text =
        Written([&](TKvXIniStreamWriter& writer) { writer.WriteS<int>("a", value); });
    EXPECT_EQ(TKvXIniReader(MakeStream(text)).ReadE<int>(0), value);
  }
}

TEST(XIniRoundTrip, ReadsAFragmentOfOneSectionAsADocument) {
  const std::string text = Written(
      [](TKvXIniStreamWriter& writer) {
        writer.BeginSectionS("s");
        writer.WriteS<int>("a", 1);
      },
      3, TKvXIniStreamWriter::htFragment);
  EXPECT_EQ(TKvXIniReader(MakeStream(text)).ReadE<int>(0), 1);
}

}  // namespace
}  // namespace kv_test
