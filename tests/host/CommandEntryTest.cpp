#include "host/CommandEntry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "host/UsageError.h"

namespace {

using ravelin::ChoiceValue;
using ravelin::CommandEntry;
using ravelin::FileValue;
using ravelin::MakeTable;
using ravelin::OptionEntry;
using testing::ElementsAre;
using testing::HasSubstr;

class CommandEntryTest : public testing::Test {
 protected:
  std::shared_ptr<CLI::App> table_ = MakeTable("tool", "Does things.", "1.2");
  CommandEntry program_{*table_};
  std::string value_ = "before";
};

TEST_F(CommandEntryTest, ATableHasHelpAndVersion) {
  EXPECT_THAT(table_->help(), HasSubstr("Does things."));
  EXPECT_THAT(table_->help(), HasSubstr("-h,--help"));
  EXPECT_EQ(table_->version(), "tool 1.2");
}

TEST_F(CommandEntryTest, AnOptionTakesAValue) {
  const OptionEntry option = program_.AddOption("-i,--in", value_, "What to read");
  table_->parse("--in here");
  EXPECT_EQ(value_, "here");
  EXPECT_TRUE(option.IsGiven());
}

TEST_F(CommandEntryTest, AnOptionThatIsNotGivenLeavesTheVariable) {
  const OptionEntry option = program_.AddOption("--in", value_, "What to read");
  table_->parse("");
  EXPECT_EQ(value_, "before");
  EXPECT_FALSE(option.IsGiven());
}

TEST_F(CommandEntryTest, AnOptionOfAListTakesValuesInARow) {
  std::vector<std::string> values;
  program_.AddOption("--in", values, "What to read");
  table_->parse("--in a b --in c");
  EXPECT_THAT(values, ElementsAre("a", "b", "c"));
}

TEST_F(CommandEntryTest, AnOptionIsShownWithItsTypeAndDefault) {
  program_.AddOption("--in", value_, "What to read").TypeName("FILE").ShowDefault();
  EXPECT_THAT(table_->help(), HasSubstr("--in FILE=before"));
}

TEST_F(CommandEntryTest, ARequiredOptionMustBeGiven) {
  program_.AddOption("--in", value_, "What to read").Required();
  EXPECT_THROW(table_->parse(""), CLI::RequiredError);
}

TEST_F(CommandEntryTest, AKindDoesNotShowInTheHelp) {
  OptionEntry option = program_.AddOption("--in", value_, "What to read");
  const std::string before = table_->help();
  option.Kind(FileValue());
  EXPECT_EQ(table_->help(), before);
}

TEST_F(CommandEntryTest, AChoiceRefusesOtherWords) {
  program_.AddOption("--in", value_, "What to read").Kind(ChoiceValue({"big", "little"}));
  table_->parse("--in little");
  EXPECT_EQ(value_, "little");
  try {
    table_->parse("--in middle");
    FAIL();
  } catch (const CLI::ValidationError& error) {
    EXPECT_STREQ(error.what(), "--in: 'middle' is neither big nor little");
  }
}

TEST_F(CommandEntryTest, AFlagTakesNoValue) {
  bool flag = false;
  program_.AddFlag("--all", flag, "Take all");
  table_->parse("--all");
  EXPECT_TRUE(flag);
}

TEST_F(CommandEntryTest, ACommandRunsWhenItIsGiven) {
  std::string ran;
  CommandEntry first = program_.AddCommand("first", "Comes first");
  CommandEntry second = program_.AddCommand("second", "Comes second");
  first.OnRun([&] { ran += "first"; });
  second.OnRun([&] { ran += "second"; });
  table_->parse("second");
  EXPECT_EQ(ran, "second");
  EXPECT_TRUE(second.IsGiven());
  EXPECT_FALSE(first.IsGiven());
}

TEST_F(CommandEntryTest, WhatACommandThrowsComesOut) {
  program_.AddCommand("first", "Comes first").OnRun([] { throw ravelin::UsageError("no"); });
  EXPECT_THROW(table_->parse("first"), ravelin::UsageError);
}

TEST_F(CommandEntryTest, ACommandCanBeRequired) {
  program_.AddCommand("first", "Comes first");
  program_.RequireCommand();
  EXPECT_THROW(table_->parse(""), CLI::RequiredError);
}

TEST_F(CommandEntryTest, ACommandCanExcludeAnOptionAboveIt) {
  CommandEntry first = program_.AddCommand("first", "Comes first");
  first.Exclude(program_.AddOption("--in", value_, "What to read"));
  EXPECT_THROW(table_->parse("--in here first"), CLI::ExcludesError);
}

TEST_F(CommandEntryTest, AFooterEndsTheHelp) {
  program_.Footer("Example:\n  tool first");
  EXPECT_TRUE(table_->help().ends_with("Example:\n  tool first\n"));
}

}  // namespace
