// Values of trees while allocations fail; TreeFailureTest.cpp has the trees themselves.
#include <gtest/gtest.h>

#include <string>

#include "support/EveryAllocation.h"
#include "tree/TreeTest.h"

namespace {

using namespace tree_test;
using ravelin_test::ThrowsEverywhere;

const std::string kLongHeader(100, 'h');
const std::string kLongValue = "7" + std::string(100, ' ');

template <class Use>
std::string Used(const Use& use) {
  TStringTree tree(0, 0, nullptr, "");
  use(tree);
  return Describe(tree);
}

TEST(TreeMemoryTest, TreesAndFieldsAreMade) {
  ThrowsEverywhere("a tree", [] {
    const TStringTree tree(1, 2, nullptr, kLongHeader);
    return tree.header;
  });
  ThrowsEverywhere("a field of one value", [] {
    const TStringTreeField field(1, 2, kLongValue, kLongHeader);
    return field.values[0];
  });
  std::string values[] = {kLongValue, kLongValue};
  ThrowsEverywhere("a field of two values", [&] {
    const TStringTreeField field(1, 2, values, 2, kLongHeader);
    return field.values[1];
  });
}

TEST(TreeMemoryTest, ValuesAreInserted) {
  ThrowsEverywhere("InsertInteger", [] {
    return Used([](TStringTree& tree) { tree.InsertInteger(kLongHeader, 1, 0, 7); });
  });
  ThrowsEverywhere("InsertDouble", [] {
    return Used([](TStringTree& tree) { tree.InsertDouble(kLongHeader, 1, 0, 0.1); });
  });
  ThrowsEverywhere("InsertString", [] {
    return Used([](TStringTree& tree) { tree.InsertString(kLongHeader, 1, 0, kLongValue); });
  });
}

TEST(TreeMemoryTest, AValueThatCannotBeReadIsToldOrThrows) {
  ThrowsEverywhere("GetInteger", [] {
    return Used([](TStringTree& tree) {
      int value = 0;
      tree.GetInteger(10, 0, &value);
    });
  });
  ThrowsEverywhere("GetDouble", [] {
    return Used([](TStringTree& tree) {
      double value = 0;
      tree.GetDouble(10, 0, &value);
    });
  });
  ThrowsEverywhere("GetString", [] {
    return Used([](TStringTree& tree) {
      std::string value = kLongValue;
      tree.GetString(10, 0, &value);
    });
  });
}

TEST(TreeMemoryTest, AValueThatIsThereIsRead) {
  TStringTree tree(0, 0, nullptr, "");
  tree.InsertString("", 1, 0, kLongValue);
  ThrowsEverywhere("GetString", [&] {
    std::string value;
    tree.GetString(1, 0, &value);
    return value;
  });
  int number = 0;
  const ravelin_test::FailingNew failing(0);
  EXPECT_TRUE(tree.GetInteger(1, 0, &number));
}

TEST(TreeMemoryTest, FieldsAreConverted) {
  const TStringTreeField field(1, 2, kLongValue, kLongHeader);
  ThrowsEverywhere("ValueToString", [&] { return field.ValueToString(0); });
  ThrowsEverywhere("StringToValue", [&] {
    TStringTreeField other(1, 2, std::string(), "");
    other.StringToValue(kLongValue, 0);
    return other.values[0];
  });
  const std::string line = "(1,2)[2]" + kLongHeader + "\t" + kLongValue + "\t" + kLongValue + "\n";
  ThrowsEverywhere("ReadFromString", [&] {
    TStringTreeField other(1, 2, std::string(), "");
    std::size_t position = 0;
    other.ReadFromString(line.c_str(), &position);
    return other.values[1] + other.header;
  });
  // Making the writer throws; what it loses, closing it tells.
  const auto write = [&] {
    TKvXIniStreamWriter writer(StreamPointer(new TKvMemoryStream), 0,
                               TKvXIniStreamWriter::htFragment);
    return field.WriteToXML(&writer) && writer.Close();
  };
  EXPECT_GT(ravelin_test::FailEveryAllocation(
                write, [](const auto& outcome, bool) { EXPECT_FALSE(outcome.value_or(false)); }),
            0u);
}

}  // namespace
