#include "host/ValueKind.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using ravelin::ChoiceValue;
using ravelin::FileValue;
using ravelin::FolderValue;
using ravelin::KeyedFileValue;
using ravelin::ParseValueKind;
using ravelin::RefusalOf;
using ravelin::ToText;
using ravelin::ValueKind;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(ValueKind, HasTheKeysAndEndingsOfAFile) {
  const ValueKind kind = KeyedFileValue({"red", "blue"}, {"big"});
  EXPECT_EQ(kind.type, ValueKind::kKeyedFile);
  EXPECT_THAT(kind.words, ElementsAre("red=", "blue=", ":big"));
}

TEST(ValueKind, RefusesWhatIsNotChosenFrom) {
  const ValueKind kind = ChoiceValue({"big", "little"});
  EXPECT_EQ(RefusalOf("little", kind), "");
  EXPECT_EQ(RefusalOf("middle", kind), "'middle' is neither big nor little");
  EXPECT_EQ(RefusalOf("", kind), "'' is neither big nor little");
}

TEST(ValueKind, RefusesNothingElse) {
  for (const ValueKind& kind :
       {ValueKind(), FileValue(), FolderValue(), KeyedFileValue({"red"}, {"big"})}) {
    EXPECT_EQ(RefusalOf("nowhere", kind), "");
  }
}

TEST(ValueKind, IsReadFromItsText) {
  for (const ValueKind& kind : {ValueKind(), FileValue(), FolderValue(), ChoiceValue({"8", "16"}),
                                KeyedFileValue({"red"}, {"big"})}) {
    const ValueKind read = ParseValueKind(ToText(kind));
    EXPECT_EQ(read.type, kind.type);
    EXPECT_EQ(read.words, kind.words);
  }
}

TEST(ValueKind, IsTextWhenItsTextIsNone) {
  for (const char* text : {"", "INT", "files", "a file"}) {
    EXPECT_EQ(ParseValueKind(text).type, ValueKind::kText) << text;
    EXPECT_THAT(ParseValueKind(text).words, IsEmpty()) << text;
  }
}

}  // namespace
