// Operations while each of their allocations fails in turn.
#pragma once

#include <gtest/gtest.h>

#include <new>
#include <optional>
#include <utility>

#include "support/FailingNew.h"

namespace ravelin_test {

/// What an operation came to: its value, or none when it threw std::bad_alloc.
template <class Operation>
using Outcome = std::optional<std::decay_t<decltype(std::declval<Operation>()())>>;

/// Runs `operation` with its allocation number `successes` + 1 failing, and `failures` in all.
template <class Operation>
Outcome<Operation> RunFailing(const Operation& operation, unsigned long successes,
                              unsigned long failures) {
  try {
    const FailingNew failing(successes, failures);
    return operation();
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  }
}

/// Runs `operation`, which returns a value and leaves nothing behind, with its first allocation
/// failing, with its second and so on until none fails any more, each alone and with all behind it;
/// `check` is given what it came to. In between it must do as ever, at the end nothing must be left
/// allocated. Returns how many allocations there were.
template <class Operation, class Check>
unsigned long FailEveryAllocation(const Operation& operation, const Check& check) {
  const auto expected = operation();
  unsigned long successes = 0;
  for (const unsigned long failures : {1ul, ~0ul}) {
    for (successes = 0;; ++successes) {
      SCOPED_TRACE(successes);
      const long live = LiveAllocations();
      {
        const Outcome<Operation> outcome = RunFailing(operation, successes, failures);
        if (!AllocationFailed()) {
          EXPECT_EQ(outcome, expected);
          break;
        }
        check(outcome, expected);
      }
      EXPECT_EQ(LiveAllocations(), live);
      EXPECT_EQ(operation(), expected);
      if (testing::Test::HasFailure()) return successes;
    }
  }
  return successes;
}

/// Runs `action` with no allocation, with one, with two ... until it succeeds; `failed` looks at
/// the rest after each failure. Returns how often it failed.
template <class Action, class Failed>
unsigned long FailuresOf(const Action& action, const Failed& failed) {
  constexpr unsigned long kMost = 1000;
  for (unsigned long successes = 0; successes < kMost; ++successes) {
    try {
      const FailingNew failing(successes);
      action();
      return successes;
    } catch (const std::bad_alloc&) {
      failed();
    }
  }
  ADD_FAILURE() << "it never succeeded";
  return 0;
}

/// The same where there is nothing to look at.
template <class Action>
unsigned long FailuresOf(const Action& action) {
  return FailuresOf(action, [] {});
}

/// The operation throws std::bad_alloc, or does as ever where it can do without.
template <class Operation>
unsigned long ThrowsEverywhere(const char* name, const Operation& operation) {
  SCOPED_TRACE(name);
  bool threw = false;
  const unsigned long allocations =
      FailEveryAllocation(operation, [&](const auto& outcome, const auto& expected) {
        if (!outcome) threw = true;
        EXPECT_EQ(outcome.value_or(expected), expected);
      });
  EXPECT_TRUE(threw);
  return allocations;
}

/// The operation gives `value` instead, or does as ever where it can do without.
template <class Operation, class Value>
unsigned long GivesEverywhere(const char* name, const Operation& operation, const Value& value) {
  SCOPED_TRACE(name);
  const unsigned long allocations =
      FailEveryAllocation(operation, [&](const auto& outcome, const auto& expected) {
        ASSERT_TRUE(outcome.has_value());
        if (*outcome != expected) {
          EXPECT_EQ(*outcome, value);
        }
      });
  EXPECT_GT(allocations, 0u);
  return allocations;
}

}  // namespace ravelin_test
