// Random trees there and back, and random texts and documents against plain models.
#include <gtest/gtest.h>

#include <random>
#include <stdexcept>
#include <string>

#include "text/GuardedBytes.h"
#include "tree/TreeModel.h"
#include "tree/TreeTest.h"

namespace {

using namespace tree_test;
using tree_model::ModelField;
using tree_model::ModelTree;
using Random = std::mt19937;

constexpr int kTrees = 10000;

enum class Form { kText, kXml };

/// A text that the form can carry exactly.
std::string RandomText(Random& random, Form form) {
  static const std::string kOften = "\t\n\rab()[],0<>&\"' \xC3\xA9";
  std::string text(random() % 4 == 0 ? random() % 40 : random() % 6, '\0');
  for (char& c : text) {
    c = random() % 3 == 0 ? kOften[random() % kOften.size()] : static_cast<char>(random());
    if (form == Form::kText && (c == '\0' || c == '\\')) c = 'x';
  }
  return text;
}

std::string RandomTreeHeader(Random& random, Form form) {
  std::string text = RandomText(random, form);
  if (form == Form::kText) {
    for (char& c : text) c = c == '\n' ? ' ' : c;
  }
  return text;
}

int RandomKey(Random& random) {
  const int key = static_cast<int>(random() >> 1U);
  return random() % 4 == 0 ? key : key % 30;
}

ModelField RandomField(Random& random, Form form) {
  ModelField field{RandomKey(random), RandomKey(random), RandomText(random, form), {}};
  const std::size_t least = form == Form::kText ? 1 : 0;
  for (std::size_t count = least + random() % 4; count > 0; --count) {
    field.values.push_back(RandomText(random, form));
  }
  return field;
}

ModelTree RandomTree(Random& random, Form form, int depth) {
  const int sign = random() % 5 == 0 ? -1 : 1;
  ModelTree tree{
      sign * RandomKey(random), RandomKey(random), RandomTreeHeader(random, form), {}, {}};
  for (std::size_t i = random() % 4; i > 0; --i) tree.fields.push_back(RandomField(random, form));
  if (depth == 0) return tree;
  for (std::size_t i = random() % 3; i > 0; --i) {
    tree.subtrees.push_back(RandomTree(random, form, depth - 1));
  }
  return tree;
}

/// The model as a tree.
class Built {
 public:
  explicit Built(const ModelTree& model) : tree(model.tag, model.idx, nullptr, model.header) {
    tree_model::Build(model, &tree);
  }
  TStringTree tree;
};

TEST(TreeRandomTest, RandomTreesReadBackFromText) {
  Random random(41);
  for (int i = 0; i < kTrees; ++i) {
    const Built built(RandomTree(random, Form::kText, 5));
    ASSERT_EQ(DescribeText(WriteTreeToString(built.tree)), Describe(built.tree)) << i;
  }
}

TEST(TreeRandomTest, RandomTreesReadBackFromXml) {
  Random random(42);
  for (int i = 0; i < kTrees; ++i) {
    const Built built(RandomTree(random, Form::kXml, 5));
    TStringTree read(0, 0, nullptr, "");
    ASSERT_TRUE(FromXml(ToXml(built.tree), &read)) << i;
    ASSERT_EQ(Describe(read), Describe(built.tree)) << i;
  }
}

/// What reading gives, and where it ended.
std::string ModelReads(const std::string& text) {
  tree_model::ModelTextReader reader(text);
  try {
    const ModelTree tree = reader.Read();
    return tree_model::Describe(tree) + std::to_string(reader.Position());
  } catch (const std::length_error&) {
    return "too short";
  }
}

std::string TreeReads(const std::string& text) {
  const text_test::GuardedBytes bytes(text + '\0', text_test::GuardedBytes::Edge::kBehind);
  TStringTree tree(0, 0, nullptr, "");
  std::size_t position = 0;
  try {
    tree.ReadFromString(bytes.Data(), &position, nullptr);
    return Describe(tree) + std::to_string(position);
  } catch (const std::length_error&) {
    return "too short";
  }
}

/// A few bytes changed, dropped or doubled.
void Twist(Random& random, std::string* text) {
  static const std::string kMarks = "\t\n()[],\\0123456789-+ nrtq";
  for (std::size_t i = 1 + random() % 5; i > 0 && !text->empty(); --i) {
    const std::size_t at = random() % text->size();
    switch (random() % 4) {
      case 0:
        text->erase(at, 1 + random() % 3);
        break;
      case 1:
        text->insert(at, text->substr(random() % text->size(), random() % 20));
        break;
      case 2:
        text->resize(at);
        break;
      default:
        (*text)[at] = kMarks[random() % kMarks.size()];
    }
  }
}

TEST(TreeRandomTest, TwistedTextsAreReadAsThePlainModelReadsThem) {
  Random random(43);
  for (int i = 0; i < 20000; ++i) {
    std::string text = WriteTreeToString(Built(RandomTree(random, Form::kText, 3)).tree);
    Twist(random, &text);
    ASSERT_EQ(TreeReads(text), ModelReads(text)) << i << "\n" << text;
  }
}

TEST(TreeRandomTest, TextsOfMarksAreReadAsThePlainModelReadsThem) {
  static const std::string kMarks = "\t\t\t\n\n\n()[],\\012-x";
  Random random(44);
  for (int i = 0; i < 40000; ++i) {
    std::string text(random() % 60, '\0');
    for (char& c : text) c = kMarks[random() % kMarks.size()];
    ASSERT_EQ(TreeReads(text), ModelReads(text)) << i << "\n" << text;
  }
}

/// Element of a document: mostly a tree's, with parts left out, doubled or broken.
std::string TwistedXml(Random& random, int depth) {
  static const char* const kParts[] = {"<tag>1</tag>",
                                       "<idx>2</idx>",
                                       "<hdr>x</hdr>",
                                       "<tag>y</tag>",
                                       "<idx><z/></idx>",
                                       "text",
                                       "<data/>",
                                       "<data><_>v</_><w>w</w></data>",
                                       "<data><_><deep/></_><_>v</_></data>",
                                       "<field>text</field>"};
  std::string xml;
  for (const char* part : {"<tag>3</tag>", "<idx>4</idx>", "<hdr>h</hdr>"}) {
    if (random() % 12 != 0) xml += part;
  }
  while (random() % 2 == 0) xml += kParts[random() % std::size(kParts)];
  if (depth == 0) return xml;
  for (const char* list : {"field", "subtree"}) {
    if (random() % 3 == 0) continue;
    const std::string name = list;
    xml += "<" + name + (random() % 20 == 0 ? " a=\"b\">" : ">");
    for (std::size_t i = random() % 4; i > 0; --i) {
      xml += "<_>" + TwistedXml(random, depth - 1) + "</_>";
    }
    xml += "</" + name + ">";
  }
  return xml;
}

TEST(TreeRandomTest, TwistedDocumentsAreReadAsThePlainModelReadsThem) {
  Random random(45);
  unsigned long failures = 0;
  for (int i = 0; i < 5000; ++i) {
    const std::string xml = Document(TwistedXml(random, 4));
    TStringTree tree(0, 0, nullptr, "");
    const bool isRead = FromXml(xml, &tree);
    TKvXIniReader reader(StreamPointer(new TKvMemoryStream(xml)));
    bool isModelRead = false;
    const ModelTree model = tree_model::ReadXml(&reader, &isModelRead);
    ASSERT_EQ(isRead, isModelRead) << xml;
    ASSERT_EQ(Describe(tree), tree_model::Describe(model)) << xml;
    if (!isRead) ++failures;
  }
  EXPECT_GT(failures, 500u);
  EXPECT_LT(failures, 4500u);
}

/// A tree of few keys, so that some are there twice.
ModelTree FewKeys(Random& random, int keys, int depth) {
  const auto key = [&] { return static_cast<int>(random()) % keys; };
  ModelTree tree{key(), key(), "t", {}, {}};
  for (std::size_t i = random() % 5; i > 0; --i) tree.fields.push_back({key(), key(), "f", {"v"}});
  for (std::size_t i = depth == 0 ? 0 : random() % 4; i > 0; --i) {
    tree.subtrees.push_back(FewKeys(random, keys, depth - 1));
  }
  return tree;
}

TEST(TreeRandomTest, CopiesAreThoseOfThePlainModel) {
  Random random(46);
  unsigned long successes = 0;
  for (int i = 0; i < kTrees; ++i) {
    const int keys = 2 + static_cast<int>(random() % 12);
    const ModelTree source = FewKeys(random, keys, 3);
    ModelTree destination = FewKeys(random, keys, 1);
    const Built from(source);
    Built to(destination);
    const bool isCopied = from.tree.CopyTo(&to.tree);
    ASSERT_EQ(isCopied, tree_model::Copy(source, &destination)) << i;
    ASSERT_EQ(Describe(to.tree), tree_model::Describe(destination)) << i;
    if (isCopied) ++successes;
  }
  EXPECT_GT(successes, 1000u);
  EXPECT_LT(successes, 9000u);
}

}  // namespace
