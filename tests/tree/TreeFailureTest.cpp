// Every allocation of an operation fails once: nothing leaks, what was there stays whole.
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <string>

#include "support/FailingNew.h"
#include "tree/TreeTest.h"

namespace {

using namespace tree_test;
using ravelin_test::FailingNew;

const std::string kLong = " that is too long for a string's own memory";
const std::string kText = "(1,0)Product" + kLong + "\n(10,0)[2]Rows" + kLong + "\t5" + kLong +
                          "\t6\n\t(2,0)Sensor" + kLong + "\n\t(11,0)[1]Band" + kLong + "\t7" +
                          kLong + "\n\t\n\n";

/// Runs `action` with ever more allocations until it ends without std::bad_alloc; `check` looks at
/// what is there after each failure. Returns the number of failures.
unsigned long FailEverywhere(
    const std::function<void()>& action, const std::function<void()>& check = [] {}) {
  for (unsigned long successes = 0; successes < 10000; ++successes) {
    try {
      const FailingNew failing(successes);
      action();
      return successes;
    } catch (const std::bad_alloc&) {
      check();
    }
  }
  ADD_FAILURE() << "it never ends";
  return 0;
}

TEST(TreeFailureTest, AnInsertThatFailsChangesNothing) {
  TStringTree tree(0, 0, nullptr, "");
  tree.InsertString("x", 1, 0, "y");
  tree.InsertSubtree("z", 1, 0);
  const std::string before = Describe(tree);
  std::string values[] = {kLong, kLong, kLong};
  const auto check = [&] { EXPECT_EQ(Describe(tree), before); };
  EXPECT_GT(FailEverywhere([&] { tree.InsertField(kLong, 2, 0, values, 3); }, check), 3u);
  EXPECT_EQ(tree.fields.size(), 2u);
  TStringTree other(0, 0, nullptr, "");
  EXPECT_GT(FailEverywhere([&] { other.InsertString(kLong, 2, 0, kLong); },
                           [&] { EXPECT_EQ(other.fields.size(), 0u); }),
            2u);
  EXPECT_GT(FailEverywhere([&] { other.InsertSubtree(kLong, 2, 0); },
                           [&] { EXPECT_EQ(other.subtrees.size(), 0u); }),
            1u);
}

TEST(TreeFailureTest, AnInsertOfATakenKeyAllocatesNothing) {
  TStringTree tree(0, 0, nullptr, "");
  tree.InsertString("x", 1, 0, "y");
  tree.InsertSubtree("x", 1, 0);
  const std::string value = kLong;
  const FailingNew failing(0);
  EXPECT_FALSE(tree.InsertField("x", 1, 0, value));
  EXPECT_FALSE(tree.InsertSubtree("x", 1, 0));
}

TEST(TreeFailureTest, ReadingTextThrowsAndKeepsWhatWasComplete) {
  const std::string whole = DescribeText(kText);
  EXPECT_GT(FailEverywhere([] {
              TStringTree tree(0, 0, nullptr, "");
              tree.ReadFromString(kText.c_str(), nullptr, nullptr);
            }),
            10u);
  for (unsigned long successes = 0;; ++successes) {
    TStringTree tree(0, 0, nullptr, "");
    try {
      const FailingNew failing(successes);
      tree.ReadFromString(kText.c_str(), nullptr, nullptr);
    } catch (const std::bad_alloc&) {
      for (const Field* field : tree.fields) {
        EXPECT_NE(whole.find(DescribeField(*field)), std::string::npos);
      }
      for (const Tree* subtree : tree.subtrees) {
        EXPECT_NE(whole.find(Describe(*subtree)), std::string::npos);
      }
      continue;
    }
    EXPECT_EQ(Describe(tree), whole);
    break;
  }
}

TEST(TreeFailureTest, InsertFromStringGivesFalseWithoutMemory) {
  for (unsigned long successes = 0; successes < 10000; ++successes) {
    TStringTree tree(0, 0, nullptr, "");
    bool isInserted = false;
    {
      const FailingNew failing(successes);
      isInserted = SatCommonUtils::InsertFromString(kText, &tree);
    }
    if (!isInserted) continue;
    EXPECT_GT(successes, 20u);
    EXPECT_EQ(tree.subtrees.size(), 1u);
    return;
  }
  FAIL() << "it never succeeds";
}

TEST(TreeFailureTest, CopyingThrowsAndKeepsWhatWasCopied) {
  TStringTree source(0, 0, nullptr, "");
  source.ReadFromString(kText.c_str(), nullptr, nullptr);
  for (int i = 100; i < 200; ++i) source.InsertString("x", i, 0, "y");
  EXPECT_GT(FailEverywhere([&] {
              TStringTree destination(0, 0, nullptr, "");
              source.CopyTo(&destination);
            }),
            200u);
}

TEST(TreeFailureTest, WritingTextThrows) {
  TStringTree tree(0, 0, nullptr, "");
  tree.ReadFromString(kText.c_str(), nullptr, nullptr);
  EXPECT_GT(FailEverywhere([&] { EXPECT_EQ(WriteTreeToString(tree), kText); }), 2u);
}

TEST(TreeFailureTest, WritingXmlGivesFalseOrLosesNothing) {
  TStringTree tree(0, 0, nullptr, "");
  tree.ReadFromString(kText.c_str(), nullptr, nullptr);
  const std::string whole = ToXml(tree);
  unsigned long failures = 0;
  for (unsigned long successes = 0; successes < 200; ++successes) {
    auto* const bytes = new TKvMemoryStream;
    TKvXIniStreamWriter writer(StreamPointer(bytes), 0, TKvXIniStreamWriter::htDocument);
    bool isWritten = false;
    {
      const FailingNew failing(successes, successes % 2 == 0 ? 1 : ~0ul);
      isWritten = tree.WriteToXML(&writer);
    }
    if (!isWritten) {
      ++failures;
      continue;
    }
    if (writer.Close()) {
      EXPECT_EQ(bytes->Bytes(), whole);
    }
  }
  EXPECT_GT(failures, 5u);
}

TEST(TreeFailureTest, ReadingXmlRaisesNothing) {
  TStringTree source(0, 0, nullptr, "");
  source.ReadFromString(kText.c_str(), nullptr, nullptr);
  const std::string xml = ToXml(source);
  unsigned long failures = 0;
  for (unsigned long successes = 0; successes < 300; ++successes) {
    TKvXIniReader reader(StreamPointer(new TKvMemoryStream(xml)));
    TStringTree tree(0, 0, nullptr, "");
    bool isRead = false;
    {
      const FailingNew failing(successes);
      isRead = tree.ReadFromXML(&reader, 0, nullptr);
    }
    if (!isRead) ++failures;
    if (successes == 299) {
      EXPECT_TRUE(isRead);
      EXPECT_EQ(Describe(tree), Describe(source));
    }
  }
  EXPECT_GT(failures, 5u);
}

TEST(TreeFailureTest, DestroyingNeedsNoMemory) {
  auto* const tree = new TStringTree(0, 0, nullptr, "");
  tree->ReadFromString(kText.c_str(), nullptr, nullptr);
  const FailingNew failing(0);
  SatCommonUtils::TPtrDelete<TStringTree>()(tree);
}

}  // namespace
