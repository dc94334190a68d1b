#include "host/ValueKind.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using ravelin::ChoiceValue;
using ravelin::FileValue;
using ravelin::FolderValue;
using ravelin::KeyedFileValue;
using ravelin::KindOf;
using ravelin::ValueKind;
using testing::ElementsAre;
using testing::IsEmpty;

class ValueKindOfAnOption : public testing::Test {
 protected:
  CLI::App app_;
  std::string value_;
  CLI::Option* option_ = app_.add_option("--in", value_, "What to read");
};

TEST_F(ValueKindOfAnOption, IsTextWhenNothingIsSaid) {
  EXPECT_EQ(KindOf(*option_).type, ValueKind::kText);
  EXPECT_THAT(KindOf(*option_).words, IsEmpty());
}

TEST_F(ValueKindOfAnOption, IsWhatWasSaid) {
  option_->check(FileValue());
  EXPECT_EQ(KindOf(*option_).type, ValueKind::kFile);
  CLI::Option* folder = app_.add_option("--folder", value_)->check(FolderValue());
  EXPECT_EQ(KindOf(*folder).type, ValueKind::kFolder);
}

TEST_F(ValueKindOfAnOption, HasTheWordsOfAChoice) {
  option_->check(ChoiceValue({"big", "little"}));
  EXPECT_EQ(KindOf(*option_).type, ValueKind::kChoice);
  EXPECT_THAT(KindOf(*option_).words, ElementsAre("big", "little"));
}

TEST_F(ValueKindOfAnOption, HasTheKeysAndEndingsOfAFile) {
  option_->check(KeyedFileValue({"red", "blue"}, {"big"}));
  EXPECT_EQ(KindOf(*option_).type, ValueKind::kKeyedFile);
  EXPECT_THAT(KindOf(*option_).words, ElementsAre("red=", "blue=", ":big"));
}

TEST_F(ValueKindOfAnOption, DoesNotShowInTheHelp) {
  const std::string before = app_.help();
  option_->check(FileValue());
  EXPECT_EQ(app_.help(), before);
}

TEST_F(ValueKindOfAnOption, ChecksNothingButChoices) {
  option_->check(FileValue());
  app_.parse("--in nowhere");
  EXPECT_EQ(value_, "nowhere");
}

TEST_F(ValueKindOfAnOption, RefusesWhatIsNotChosenFrom) {
  option_->check(ChoiceValue({"big", "little"}));
  app_.parse("--in little");
  EXPECT_EQ(value_, "little");
  try {
    app_.parse("--in middle");
    FAIL();
  } catch (const CLI::ValidationError& error) {
    EXPECT_STREQ(error.what(), "--in: 'middle' is neither big nor little");
  }
}

}  // namespace
