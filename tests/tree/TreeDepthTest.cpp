// Very deep trees on a small stack.
#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

#include "kv/BuildKind.h"
#include "tree/ForeignCall.h"
#include "tree/TreeTest.h"

namespace {

using namespace tree_test;

constexpr int kDepth = 100000;
/// The text of a tree has a tab for each level in each line.
constexpr int kTextDepth = 5000;

constexpr std::size_t kStack = kv_test::kSanitized ? 512 << 10 : 96 << 10;

/// Runs an action on a thread with a stack of `bytes`.
void OnStack(std::size_t bytes, std::function<void()> action) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, bytes), 0);
  pthread_t thread;
  const auto run = [](void* function) -> void* {
    (*static_cast<std::function<void()>*>(function))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &action), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

template <class T>
using Owned = std::unique_ptr<T, SatCommonUtils::TPtrDelete<T>>;

/// A chain of trees, each with a field.
Owned<TStringTree> Chain(int depth) {
  Owned<TStringTree> root(new TStringTree(0, 0, nullptr, "root"));
  Tree* tree = root.get();
  for (int i = 0; i < depth; ++i) {
    tree->InsertField("f", i, 0, std::string("v"));
    tree->InsertSubtree("t", i, 0);
    tree = tree->subtrees[0];
  }
  return root;
}

/// The number of trees in a chain below the root, each with its field.
int DepthOf(const Tree& root) {
  int depth = 0;
  for (const Tree* tree = &root; tree->subtrees.size() == 1; tree = tree->subtrees[0]) {
    EXPECT_EQ(tree->fields.size(), 1u);
    EXPECT_EQ(tree->fields[0]->tag, depth);
    ++depth;
  }
  return depth;
}

TEST(TreeDepthTest, IsDestroyedWithoutTheStack) {
  OnStack(kStack, [] { Chain(kDepth).reset(); });
}

TEST(TreeDepthTest, IsCopiedWithoutTheStack) {
  OnStack(kStack, [] {
    const auto chain = Chain(kDepth);
    TStringTree copy(0, 0, nullptr, "");
    EXPECT_TRUE(chain->CopyTo(&copy));
    EXPECT_EQ(DepthOf(copy), kDepth);
  });
}

TEST(TreeDepthTest, IsWrittenAsXmlAndReadBackWithoutTheStack) {
  OnStack(kStack, [] {
    const std::string xml = ToXml(*Chain(kDepth));
    TStringTree read(0, 0, nullptr, "");
    EXPECT_TRUE(FromXml(xml, &read));
    EXPECT_EQ(DepthOf(read), kDepth);
  });
}

TEST(TreeDepthTest, IsWrittenAsTextAndReadBackWithoutTheStack) {
  OnStack(kStack, [] {
    const std::string text = WriteTreeToString(*Chain(kTextDepth));
    TStringTree read(0, 0, nullptr, "");
    read.ReadFromString(text.c_str(), nullptr, nullptr);
    EXPECT_EQ(DepthOf(read), kTextDepth);
    TStringTree inserted(0, 0, nullptr, "");
    EXPECT_TRUE(InsertFromString(text, &inserted));
    EXPECT_EQ(DepthOf(inserted), kTextDepth);
  });
}

TEST(TreeDepthTest, AGeneralTreeIsReadAndWrittenWithoutTheStack) {
  OnStack(kStack, [] {
    Tree fromXml(0, 0, nullptr, "");
    EXPECT_TRUE(FromXml(ToXml(*Chain(kDepth)), &fromXml));
    EXPECT_EQ(DepthOf(fromXml), kDepth);
    EXPECT_NE(ToXml(fromXml), "failed");
    Tree fromText(0, 0, nullptr, "");
    fromText.ReadFromString(WriteTreeToString(*Chain(kTextDepth)).c_str(), nullptr, nullptr);
    EXPECT_EQ(DepthOf(fromText), kTextDepth);
  });
}

/// Reads and writes its subtrees by calls inside each other.
class DerivedTree : public TStringTree {
 public:
  using TStringTree::CreateSubtree;
  using TStringTree::TStringTree;
  Tree* CreateSubtree(int subtreeTag, int subtreeIdx, std::string text) override {
    return new DerivedTree(subtreeTag, subtreeIdx, this, text);
  }
  Tree* CreateSubtree(const char* text, std::size_t* position) override {
    Owned<Tree> subtree(new DerivedTree(0, 0, this, ""));
    subtree->ReadFromString(text, position, this);
    return subtree.release();
  }
  Tree* CreateSubtree(TKvXIniReader* reader, std::size_t item) override {
    auto* const subtree = new DerivedTree(0, 0, this, "");
    subtree->ReadFromXML(reader, item, this);
    return subtree;
  }
};

constexpr int kDeepest = SatCommonUtils::TForeignCall::kDeepest;
constexpr std::size_t kOrdinaryStack = 8 << 20;

TEST(TreeDepthTest, ADerivingClassReadsTextToTheBoundAndNoDeeper) {
  OnStack(kOrdinaryStack, [] {
    DerivedTree tree(0, 0, nullptr, "");
    tree.ReadFromString(WriteTreeToString(*Chain(kDeepest)).c_str(), nullptr, nullptr);
    EXPECT_EQ(DepthOf(tree), kDeepest);
    DerivedTree deeper(0, 0, nullptr, "");
    const std::string text = WriteTreeToString(*Chain(kDeepest + 1));
    EXPECT_THROW(deeper.ReadFromString(text.c_str(), nullptr, nullptr), std::length_error);
    EXPECT_EQ(deeper.subtrees.size(), 0u);
    EXPECT_EQ(deeper.fields.size(), 1u);
  });
}

TEST(TreeDepthTest, ADerivingClassReadsXmlToTheBoundAndNoDeeper) {
  OnStack(kOrdinaryStack, [] {
    DerivedTree tree(0, 0, nullptr, "");
    EXPECT_TRUE(FromXml(ToXml(*Chain(kDeepest + 10)), &tree));
    const Tree* last = &tree;
    int depth = 0;
    for (; last->subtrees.size() == 1; last = last->subtrees[0]) ++depth;
    EXPECT_EQ(depth, kDeepest);
  });
}

TEST(TreeDepthTest, ADerivingClassIsWrittenAsXmlToTheBoundAndNoDeeper) {
  OnStack(kOrdinaryStack, [] {
    DerivedTree tree(0, 0, nullptr, "");
    EXPECT_TRUE(Chain(kDeepest)->CopyTo(&tree));
    EXPECT_NE(ToXml(tree), "failed");
    DerivedTree deeper(0, 0, nullptr, "");
    EXPECT_TRUE(Chain(kDeepest + 1)->CopyTo(&deeper));
    EXPECT_EQ(ToXml(deeper), "failed");
  });
}

TEST(TreeDepthTest, ADerivingClassIsCopiedAndDestroyedWithoutTheStack) {
  OnStack(kStack, [] {
    DerivedTree tree(0, 0, nullptr, "");
    EXPECT_TRUE(Chain(kDepth)->CopyTo(&tree));
    EXPECT_EQ(DepthOf(tree), kDepth);
  });
}

TEST(TreeDepthTest, ReadingBeginsAnewAfterTheBoundWasMet) {
  OnStack(kOrdinaryStack, [] {
    const std::string deeper = WriteTreeToString(*Chain(kDeepest + 1));
    const std::string text = WriteTreeToString(*Chain(kDeepest));
    for (int i = 0; i < 3; ++i) {
      DerivedTree refused(0, 0, nullptr, "");
      EXPECT_THROW(refused.ReadFromString(deeper.c_str(), nullptr, nullptr), std::length_error);
      DerivedTree tree(0, 0, nullptr, "");
      tree.ReadFromString(text.c_str(), nullptr, nullptr);
      EXPECT_EQ(DepthOf(tree), kDeepest);
    }
  });
}

}  // namespace
