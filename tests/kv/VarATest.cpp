#include "Kv/VarA.h"

#include <gtest/gtest.h>

#include <new>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/FailingNew.h"

using ravelin_test::FailingNew;
using var_a_legacy::newarray_a;
using var_a_legacy::var_a;

namespace {

struct Base {
  explicit Base(int* deaths = nullptr) : deaths_(deaths) {}
  Base(const Base&) = delete;
  Base& operator=(const Base&) = delete;
  ~Base() {
    if (deaths_ != nullptr) ++*deaths_;
  }
  int value = 7;

 private:
  int* deaths_;
};

// Its destructor counts apart from Base's, whose destructor is not virtual.
struct Derived : Base {
  Derived(int* baseDeaths, int* derivedDeaths) : Base(baseDeaths), derivedDeaths_(derivedDeaths) {}
  Derived(const Derived&) = delete;
  Derived& operator=(const Derived&) = delete;
  ~Derived() { ++*derivedDeaths_; }

 private:
  int* derivedDeaths_;
};

struct Unrelated {};

// Counts the elements alive.
struct Counted {
  Counted() { ++alive; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  ~Counted() { --alive; }
  static inline int alive = 0;
};

struct ThrowsAtThird {
  ThrowsAtThird() {
    if (made == 2) throw 3;
    ++made;
  }
  ThrowsAtThird(const ThrowsAtThird&) = delete;
  ThrowsAtThird& operator=(const ThrowsAtThird&) = delete;
  ~ThrowsAtThird() { --made; }
  static inline int made = 0;
};

struct Plain {
  int number;
  double fraction;
  const char* text;
};

}  // namespace

TEST(VarA, IsEmptyWhenMadeOfNothing) {
  const var_a<Base*> reference;
  EXPECT_EQ(reference.get(), nullptr);
  EXPECT_EQ(reference.use_count(), 0);
  EXPECT_FALSE(static_cast<bool>(reference));
}

TEST(VarA, IsEmptyWhenMadeOfNullptr) {
  const var_a<Base*> reference = nullptr;
  EXPECT_EQ(reference.get(), nullptr);
  EXPECT_EQ(reference.use_count(), 0);
}

TEST(VarA, IsEmptyWhenGivenANullPointer) {
  const var_a<Base*> reference(static_cast<Base*>(nullptr));
  EXPECT_EQ(reference.use_count(), 0);
}

TEST(VarA, GivesTheObjectByEveryAccess) {
  auto* object = new Base();
  const var_a<Base*> reference(object);
  EXPECT_EQ(reference.get(), object);
  EXPECT_EQ(&*reference, object);
  EXPECT_EQ(reference->value, 7);
  EXPECT_TRUE(static_cast<bool>(reference));
}

TEST(VarA, TakesOwnershipOnlyExplicitly) {
  EXPECT_TRUE((std::is_constructible_v<var_a<Base*>, Base*>));
  EXPECT_FALSE((std::is_convertible_v<Base*, var_a<Base*>>));
}

TEST(VarA, IsNotABooleanImplicitly) {
  EXPECT_FALSE((std::is_convertible_v<var_a<Base*>, bool>));
}

TEST(VarA, DeletesTheObjectWithTheLastReference) {
  int deaths = 0;
  {
    var_a<Base*> first(new Base(&deaths));
    {
      const var_a<Base*> second = first;
      EXPECT_EQ(first.use_count(), 2);
    }
    EXPECT_EQ(first.use_count(), 1);
    EXPECT_EQ(deaths, 0);
  }
  EXPECT_EQ(deaths, 1);
}

TEST(VarA, ResetDropsOnlyItsOwnReference) {
  int deaths = 0;
  var_a<Base*> first(new Base(&deaths));
  var_a<Base*> second = first;
  first.reset();
  EXPECT_EQ(first, nullptr);
  EXPECT_EQ(second.use_count(), 1);
  EXPECT_EQ(deaths, 0);
  second.reset();
  EXPECT_EQ(deaths, 1);
}

TEST(VarA, ResetOfAnEmptyReferenceDoesNothing) {
  var_a<Base*> reference;
  reference.reset();
  EXPECT_EQ(reference.use_count(), 0);
}

TEST(VarA, AssignmentDropsTheFormerObject) {
  int firstDeaths = 0;
  int secondDeaths = 0;
  var_a<Base*> reference(new Base(&firstDeaths));
  reference = var_a<Base*>(new Base(&secondDeaths));
  EXPECT_EQ(firstDeaths, 1);
  EXPECT_EQ(secondDeaths, 0);
  reference = nullptr;
  EXPECT_EQ(secondDeaths, 1);
}

TEST(VarA, SelfAssignmentKeepsTheObject) {
  int deaths = 0;
  var_a<Base*> reference(new Base(&deaths));
  const var_a<Base*>& alias = reference;
  reference = alias;
  EXPECT_EQ(reference.use_count(), 1);
  EXPECT_EQ(deaths, 0);
}

TEST(VarA, ConvertsFromDerivedToBaseAndSharesTheCount) {
  int deaths = 0;
  const var_a<Derived*> derived(new Derived(&deaths, &deaths));
  const var_a<Base*> base = derived;
  EXPECT_EQ(base.get(), derived.get());
  EXPECT_EQ(derived.use_count(), 2);
  EXPECT_EQ(base.use_count(), 2);
}

TEST(VarA, DoesNotConvertToDerivedOrUnrelated) {
  EXPECT_FALSE((std::is_constructible_v<var_a<Derived*>, var_a<Base*>>));
  EXPECT_FALSE((std::is_constructible_v<var_a<Unrelated*>, var_a<Base*>>));
}

TEST(VarA, DeletesAsTheTypeFirstGiven) {
  int baseDeaths = 0;
  int derivedDeaths = 0;
  var_a<Base*> base = var_a<Derived*>(new Derived(&baseDeaths, &derivedDeaths));
  base.reset();
  EXPECT_EQ(derivedDeaths, 1);
  EXPECT_EQ(baseDeaths, 1);
}

TEST(VarA, ComparesByTheObject) {
  const var_a<Base*> first(new Base());
  const var_a<Base*> same = first;
  const var_a<Base*> other(new Base());
  EXPECT_TRUE(first == same);
  EXPECT_FALSE(first != same);
  EXPECT_FALSE(first == other);
  EXPECT_TRUE(first != other);
}

TEST(VarA, ComparesAcrossBaseAndDerived) {
  int deaths = 0;
  const var_a<Derived*> derived(new Derived(&deaths, &deaths));
  const var_a<Base*> base = derived;
  EXPECT_TRUE(base == derived);
  EXPECT_FALSE(base != derived);
}

TEST(VarA, ComparesWithNullptrFromEitherSide) {
  const var_a<Base*> empty;
  const var_a<Base*> full(new Base());
  EXPECT_TRUE(empty == nullptr);
  EXPECT_TRUE(nullptr == empty);
  EXPECT_FALSE(empty != nullptr);
  EXPECT_FALSE(nullptr != empty);
  EXPECT_FALSE(full == nullptr);
  EXPECT_FALSE(nullptr == full);
  EXPECT_TRUE(full != nullptr);
  EXPECT_TRUE(nullptr != full);
}

TEST(VarA, CountsExactlyAcrossThreads) {
  int deaths = 0;
  {
    var_a<Base*> shared(new Base(&deaths));
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
      threads.emplace_back([mine = shared] {
        for (int i = 0; i < 10000; ++i) {
          const var_a<Base*> copy = mine;
          EXPECT_EQ(copy->value, 7);
        }
      });
    }
    for (std::thread& thread : threads) thread.join();
    threads.clear();
    EXPECT_EQ(shared.use_count(), 1);
    EXPECT_EQ(deaths, 0);
  }
  EXPECT_EQ(deaths, 1);
}

TEST(VarA, TheLastOfManyThreadsDeletesTheObjectOnce) {
  int deaths = 0;
  std::vector<std::thread> threads;
  {
    const var_a<Base*> shared(new Base(&deaths));
    for (int t = 0; t < 4; ++t) {
      threads.emplace_back([mine = shared]() mutable { mine.reset(); });
    }
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(deaths, 1);
}

TEST(VarA, DeletesTheObjectWhenTheCountCannotBeAllocated) {
  int deaths = 0;
  auto* object = new Base(&deaths);
  bool thrown = false;
  {
    const FailingNew failing(0);
    try {
      const var_a<Base*> reference(object);
    } catch (const std::bad_alloc&) {
      thrown = true;
    }
  }
  EXPECT_TRUE(thrown);
  EXPECT_EQ(deaths, 1);
}

TEST(NewArrayA, IsEmptyWhenMadeOfNothing) {
  const newarray_a<int> array;
  EXPECT_EQ(array.size(), 0U);
  EXPECT_EQ(array.get(), nullptr);
}

TEST(NewArrayA, HasTheSizeAskedFor) {
  EXPECT_EQ(newarray_a<int>(17).size(), 17U);
  EXPECT_EQ(newarray_a<int>(0).size(), 0U);
}

TEST(NewArrayA, ValueInitialisesNumbers) {
  // Memory given back with other contents is likely to be handed out again.
  for (int round = 0; round < 3; ++round) {
    const newarray_a<unsigned char> array(100);
    for (unsigned long i = 0; i < 100; ++i) {
      EXPECT_EQ(array[i], 0);
      array[i] = 0xAB;
    }
  }
}

TEST(NewArrayA, ValueInitialisesStructures) {
  const newarray_a<Plain> array(20);
  for (unsigned long i = 0; i < 20; ++i) {
    EXPECT_EQ(array[i].number, 0);
    EXPECT_EQ(array[i].fraction, 0.0);
    EXPECT_EQ(array[i].text, nullptr);
  }
}

TEST(NewArrayA, ElementsAreContiguousFromGet) {
  const newarray_a<int> array(5);
  for (unsigned long i = 0; i < 5; ++i) {
    EXPECT_EQ(&array[i], array.get() + i);
  }
}

TEST(NewArrayA, CopiesShareTheElements) {
  const newarray_a<int> array(3);
  const newarray_a<int>& original = array;
  const newarray_a<int> copy = original;
  copy[1] = 42;
  EXPECT_EQ(array[1], 42);
  EXPECT_EQ(copy.get(), array.get());
  EXPECT_EQ(copy.size(), 3U);
}

TEST(NewArrayA, DestroysEveryElementWithTheLastCopy) {
  Counted::alive = 0;
  {
    newarray_a<Counted> kept;
    {
      const newarray_a<Counted> array(9);
      EXPECT_EQ(Counted::alive, 9);
      kept = array;
    }
    EXPECT_EQ(Counted::alive, 9);
  }
  EXPECT_EQ(Counted::alive, 0);
}

TEST(NewArrayA, DestroysTheElementsMadeWhenOneThrows) {
  ThrowsAtThird::made = 0;
  EXPECT_THROW(newarray_a<ThrowsAtThird>(5), int);
  EXPECT_EQ(ThrowsAtThird::made, 0);
}

TEST(NewArrayA, ThrowsBadAllocForAnImpossibleSize) {
  volatile unsigned long count = ~0UL;
  EXPECT_THROW(newarray_a<double>{count}, std::bad_alloc);
}

TEST(NewArrayA, DestroysTheElementsWhenTheCountCannotBeAllocated) {
  Counted::alive = 0;
  bool thrown = false;
  {
    const FailingNew failing(1);
    try {
      const newarray_a<Counted> array(4);
    } catch (const std::bad_alloc&) {
      thrown = true;
    }
  }
  EXPECT_TRUE(thrown);
  EXPECT_EQ(Counted::alive, 0);
}
