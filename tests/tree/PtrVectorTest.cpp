#include <gtest/gtest.h>

#include <new>
#include <string>
#include <type_traits>
#include <vector>

#include "SatCommonUtils/Tree.h"
#include "support/FailingNew.h"

namespace {

using SatCommonUtils::TPtrVector;

/// Counts those that live.
struct Counted {
  static int living;
  int number;

  explicit Counted(int n) : number(n) { ++living; }
  ~Counted() { --living; }
};
int Counted::living = 0;

/// Has more bytes than what it is deleted as, and nothing that needs destruction.
struct LargerCounted : Counted {
  LargerCounted() : Counted(0), more{} {}
  long more[8];
};

TEST(PtrVectorTest, DeletesItsElementsAtItsEnd) {
  {
    TPtrVector<Counted> vector;
    vector.push_back(new Counted(1));
    vector.push_back(new Counted(2));
    EXPECT_EQ(Counted::living, 2);
  }
  EXPECT_EQ(Counted::living, 0);
}

TEST(PtrVectorTest, IsUsedLikeAVector) {
  TPtrVector<Counted> vector;
  EXPECT_TRUE(vector.empty());
  for (int i = 0; i < 3; ++i) vector.push_back(new Counted(i));
  EXPECT_EQ(vector.size(), 3u);
  EXPECT_FALSE(vector.empty());
  EXPECT_EQ(vector[1]->number, 1);
  EXPECT_EQ(vector.back()->number, 2);
  std::vector<int> numbers;
  for (const Counted* element : vector) numbers.push_back(element->number);
  EXPECT_EQ(numbers, (std::vector<int>{0, 1, 2}));
}

TEST(PtrVectorTest, IsNotCopied) {
  static_assert(!std::is_copy_constructible_v<TPtrVector<Counted>>);
  static_assert(!std::is_copy_assignable_v<TPtrVector<Counted>>);
  EXPECT_EQ(sizeof(TPtrVector<Counted>), sizeof(std::vector<Counted*>));
}

TEST(PtrVectorTest, DeletesElementsAsTheirDeclaredType) {
  {
    TPtrVector<Counted> vector;
    vector.push_back(new LargerCounted);
  }
  EXPECT_EQ(Counted::living, 0);
}

TEST(PtrVectorTest, ReleasedElementsBelongToTheCaller) {
  std::vector<Counted*> released;
  {
    TPtrVector<Counted> vector;
    vector.push_back(new Counted(5));
    released = vector.Release();
    EXPECT_TRUE(vector.empty());
  }
  ASSERT_EQ(released.size(), 1u);
  EXPECT_EQ(released[0]->number, 5);
  delete released[0];
}

TEST(PtrVectorTest, ClearDeletesAll) {
  TPtrVector<Counted> vector;
  vector.push_back(new Counted(1));
  vector.Clear();
  EXPECT_EQ(Counted::living, 0);
  EXPECT_EQ(vector.size(), 0u);
}

TEST(PtrVectorTest, AnElementThatCannotBeStoredIsDeleted) {
  TPtrVector<Counted> vector;
  auto* const element = new Counted(1);
  const auto store = [&] {
    const ravelin_test::FailingNew failing(0);
    vector.push_back(element);
  };
  EXPECT_THROW(store(), std::bad_alloc);
  EXPECT_EQ(Counted::living, 0);
  EXPECT_TRUE(vector.empty());
}

}  // namespace
