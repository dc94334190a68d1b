#include "host/tree/TreeCommand.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "host/support/Subcommand.h"

namespace {

using testing::HasSubstr;
using Words = std::vector<std::string>;

const char* const kText =
    "(1,0)Product\n(10,0)[1]Rows\t512\n(11,0)[2]Bands\ta\\tb\t\n\t(2,-3)Sensor\n\t\t(3,0)\n"
    "\t\t(12,0)[1]x\ty\n\t\t\n\t\n\n";
const char* const kXml =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<xini>\n"
    "\t<tree tag=\"1\" idx=\"0\" hdr=\"Product\">\n"
    "\t\t<field>\n"
    "\t\t\t<_><tag>10</tag><idx>0</idx><hdr>Rows</hdr><data><_>512</_></data></_>\n"
    "\t\t\t<_><tag>11</tag><idx>0</idx><hdr>Bands</hdr><data><_>a\tb</_><_/></data></_>\n"
    "\t\t</field>\n"
    "\t\t<subtree>\n"
    "\t\t\t<_ tag=\"2\" idx=\"-3\" hdr=\"Sensor\">\n"
    "\t\t\t\t<subtree>\n"
    "\t\t\t\t\t<_ tag=\"3\" idx=\"0\" hdr=\"\">\n"
    "\t\t\t\t\t\t<field>\n"
    "\t\t\t\t\t\t\t<_><tag>12</tag><idx>0</idx><hdr>x</hdr><data><_>y</_></data></_>\n"
    "\t\t\t\t\t\t</field>\n"
    "\t\t\t\t\t</_>\n"
    "\t\t\t\t</subtree>\n"
    "\t\t\t</_>\n"
    "\t\t</subtree>\n"
    "\t</tree>\n"
    "</xini>\n";
const char* const kListing =
    "(1,0) Product\n  (10,0) Rows = \"512\"\n  (11,0) Bands = \"a\\x09b\" \"\"\n"
    "  (2,-3) Sensor\n    (3,0)\n      (12,0) x = \"y\"\n";

CommandResult RunTree(const TempFolder& folder, Words arguments) {
  return RunSubcommand("tree", std::move(arguments), folder);
}

/// The same with a file of the folder as standard input.
CommandResult RunTreeFrom(const TempFolder& folder, const std::string& input, Words arguments) {
  return RunSubcommand("tree", std::move(arguments), folder, FromFile(folder / input));
}

/// What `tree show` says of a text.
void ExpectRefused(const std::string& text, const std::string& err) {
  TempFolder folder;
  folder.Write("a.txt", text);
  folder.Write("old.xml", "as it was");
  ExpectFailure(RunTree(folder, {"text2xml", "a.txt", "-o", "old.xml"}),
                "a.txt: " + err + "; correct the text there");
  EXPECT_EQ(folder.Read("old.xml"), "as it was");
}

TEST(TreeCommand, ConvertsTextToXml) {
  TempFolder folder;
  folder.Write("a.txt", kText);
  ExpectDone(RunTree(folder, {"text2xml", "a.txt"}), kXml);
}

TEST(TreeCommand, ConvertsXmlToText) {
  TempFolder folder;
  folder.Write("a.xml", kXml);
  ExpectDone(RunTree(folder, {"xml2text", "a.xml"}), kText);
}

TEST(TreeCommand, ListsEitherForm) {
  TempFolder folder;
  folder.Write("a.txt", kText);
  folder.Write("a.xml", kXml);
  ExpectDone(RunTree(folder, {"show", "a.txt"}), kListing);
  ExpectDone(RunTree(folder, {"show", "a.xml"}), kListing);
}

TEST(TreeCommand, ListsEitherFormBehindTabs) {
  TempFolder folder;
  folder.Write("a.txt", "\t(1,0)x\n\t\n");
  folder.Write("a.xml", "\t<r><tree tag=\"1\" idx=\"0\" hdr=\"x\"/></r>");
  ExpectDone(RunTree(folder, {"show", "a.txt"}), "(1,0) x\n");
  ExpectDone(RunTree(folder, {"show", "a.xml"}), "(1,0) x\n");
}

TEST(TreeCommand, ListsAsJson) {
  TempFolder folder;
  folder.Write("a.txt", kText);
  const CommandResult result = RunTree(folder, {"show", "a.txt", "--json"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(nlohmann::json::parse(result.out), nlohmann::json::parse(R"({
    "tag": 1, "idx": 0, "header": "Product",
    "fields": [
      {"tag": 10, "idx": 0, "header": "Rows", "values": ["512"]},
      {"tag": 11, "idx": 0, "header": "Bands", "values": ["a\tb", ""]}],
    "subtrees": [
      {"tag": 2, "idx": -3, "header": "Sensor", "fields": [], "subtrees": [
        {"tag": 3, "idx": 0, "header": "", "subtrees": [],
         "fields": [{"tag": 12, "idx": 0, "header": "x", "values": ["y"]}]}]}]})"));
}

TEST(TreeCommand, WritesAFileWhenOneIsNamed) {
  TempFolder folder;
  folder.Write("a.txt", kText);
  ExpectDone(RunTree(folder, {"text2xml", "a.txt", "-o", "a.xml"}), "");
  EXPECT_EQ(folder.Read("a.xml"), kXml);
  ExpectDone(RunTree(folder, {"show", "a.xml", "-o", "a.lst"}), "");
  EXPECT_EQ(folder.Read("a.lst"), kListing);
}

TEST(TreeCommand, MayReplaceItsInput) {
  TempFolder folder;
  folder.Write("a", kText);
  ExpectDone(RunTree(folder, {"text2xml", "a", "-o", "a"}), "");
  EXPECT_EQ(folder.Read("a"), kXml);
}

TEST(TreeCommand, ReadsStandardInput) {
  TempFolder folder;
  folder.Write("a.txt", kText);
  folder.Write("a.xml", kXml);
  ExpectDone(RunTreeFrom(folder, "a.txt", {"text2xml", "-"}), kXml);
  ExpectDone(RunTreeFrom(folder, "a.xml", {"xml2text", "-"}), kText);
  ExpectDone(RunTreeFrom(folder, "a.xml", {"show", "-"}), kListing);
}

TEST(TreeCommand, ReadsTextWithAByteOrderMark) {
  TempFolder folder;
  folder.Write("a.txt", std::string("\xEF\xBB\xBF") + kText);
  ExpectDone(RunTree(folder, {"show", "a.txt"}), kListing);
  ExpectDone(RunTree(folder, {"text2xml", "a.txt"}), kXml);
}

TEST(TreeCommand, TheSectionOfTheTreeCanBeNamed) {
  TempFolder folder;
  folder.Write("a.txt", "(1,0)x\n\n");
  const Words other = {"text2xml", "a.txt", "--section", "other", "-o", "other.xml"};
  const Words root = {"text2xml", "a.txt", "--section", "", "-o", "root.xml"};
  ExpectDone(RunTree(folder, other), "");
  ExpectDone(RunTree(folder, root), "");
  EXPECT_THAT(folder.Read("other.xml"), HasSubstr("<other tag=\"1\" idx=\"0\" hdr=\"x\"/>"));
  EXPECT_THAT(folder.Read("root.xml"), HasSubstr("<xini tag=\"1\" idx=\"0\" hdr=\"x\"/>"));
  ExpectDone(RunTree(folder, {"xml2text", "other.xml", "--section", "other"}), "(1,0)x\n\n");
  ExpectDone(RunTree(folder, {"show", "root.xml", "--section", ""}), "(1,0) x\n");
  ExpectFailure(RunTree(folder, {"xml2text", "other.xml"}),
                "other.xml: there is no section 'tree'; name the section that holds the tree with "
                "--section");
}

TEST(TreeCommand, ControlBytesAndQuotesAreMadeVisibleInTheListing) {
  TempFolder folder;
  folder.Write("a.txt", "(1,0)a\x1b[1mb\n(2,0)[1]\"\t\"\x7f\n\n");
  ExpectDone(RunTree(folder, {"show", "a.txt"}), "(1,0) a\\x1b[1mb\n  (2,0) \" = \"\\\"\\x7f\"\n");
}

TEST(TreeCommand, TextThatIsNoUtf8IsReadAsWindows1252InJson) {
  TempFolder folder;
  folder.Write("a.txt", "(1,0)\xE9\n\n");
  const CommandResult result = RunTree(folder, {"show", "a.txt", "--json"});
  EXPECT_THAT(result.out, HasSubstr("\"header\": \"\xC3\xA9\""));
}

TEST(TreeCommand, EmptyTextIsNoTree) {
  TempFolder folder;
  folder.Write("a.txt", "");
  ExpectFailure(RunTree(folder, {"text2xml", "a.txt"}),
                "a.txt: is no text of a tree: it is empty; check that it is the right file");
  folder.Write("b.txt", std::string("(1,0)\n\0\n", 8));
  ExpectFailure(
      RunTree(folder, {"text2xml", "b.txt"}),
      "b.txt: is no text of a tree: it holds a NUL byte; check that it is the right file");
}

TEST(TreeCommand, ALineThatBeginsNoTreeIsRefused) {
  const std::string reason = "a tree that does not begin with (TAG,IDX)";
  ExpectRefused("GROUP = x\n", "line 1: " + reason);
  ExpectRefused("(1,0)\n\t(1;0)\n\n\n", "line 2: " + reason);
  ExpectRefused("(1,0)\n\tx\n\n\n", "line 2: " + reason);
  ExpectRefused("(1,2147483648)\n\n", "line 1: " + reason);
}

TEST(TreeCommand, ALineThatBeginsNoFieldIsRefused) {
  const std::string reason = "line 2: a field that does not begin with (TAG,IDX)[COUNT]";
  ExpectRefused("(1,0)\nx\n\n", reason);
  ExpectRefused("(1,0)\n(2,0)x\t1\n\n", reason);
  ExpectRefused("(1,0)\n(2,0)[1x\t1\n\n", reason);
  ExpectRefused("(1,0)\n(2,0)[-1]x\t1\n\n", reason);
  ExpectRefused("(1,0)\n(2,0)[99999999999999999999]x\t1\n\n", reason);
}

TEST(TreeCommand, ACountThatDiffersFromTheValuesIsRefused) {
  ExpectRefused("(1,0)\n(2,0)[2]x\t1\n\n", "line 2: a field with 1 values and a count of 2");
  ExpectRefused("(1,0)\n(2,0)[1]x\t1\t2\n\n", "line 2: a field with 2 values and a count of 1");
  ExpectRefused("(1,0)\n(2,0)[0]x\n\n", "line 2: a field without values, which text cannot carry");
}

TEST(TreeCommand, AFieldWithNegativeKeysIsRefused) {
  ExpectRefused("(1,0)\n(2,-1)[1]x\t1\n\n", "line 2: a field with a negative tag or index");
}

TEST(TreeCommand, CutTextIsRefused) {
  ExpectRefused("(1,0)\n(2,0)[1]x\t1", "line 2: the text ends inside the line");
  ExpectRefused("(1,0)\n\t(2,0)\n",
                "line 2: the text ends with an open tree; 2 empty lines close it and those around "
                "it");
  ExpectRefused("(1,0)\n\n(2,0)\n\n", "line 3: there is more text behind the tree");
}

TEST(TreeCommand, XmlThatLacksAPartIsRefusedWithThePlace) {
  TempFolder folder;
  const std::string keys = "<tag>1</tag><idx>2</idx><hdr/>";
  folder.Write("a.xml", "<r><tree>" + keys + "<subtree><_>" + keys + "</_><_>" + keys +
                            "<field><_>" + keys + "<data/></_><_>" + keys +
                            "</_></field></_></subtree></tree></r>");
  folder.Write("b.xml", "<r><tree>" + keys + "<field><_><tag>x</tag></_></field></tree></r>");
  folder.Write("c.xml", "<r><tree><tag>1</tag></tree></r>");
  ExpectFailure(RunTree(folder, {"show", "a.xml"}),
                "a.xml: XML-ini: there is no section \"data\" in subtree 2, field 2; correct the "
                "tree there");
  ExpectFailure(
      RunTree(folder, {"show", "b.xml"}),
      "b.xml: XML-ini: \"tag\" is not an integer: \"x\" in field 1; correct the tree there");
  ExpectFailure(RunTree(folder, {"xml2text", "c.xml"}),
                "c.xml: XML-ini: there is no item \"idx\"; correct the tree there");
}

TEST(TreeCommand, WhatIsNoXmlIsRefused) {
  TempFolder folder;
  folder.Write("a.xml", "<r><tree>");
  const CommandResult result = RunTree(folder, {"xml2text", "a.xml"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("a.xml: XML, line 1"));
}

/// Expects that a tree of XML is refused as text.
void ExpectNotCarried(const std::string& tree, const std::string& err) {
  TempFolder folder;
  folder.Write("a.xml", "<r>" + tree + "</r>");
  ExpectFailure(RunTree(folder, {"xml2text", "a.xml"}), "a.xml: text cannot carry the " + err);
}

std::string FieldXml(const std::string& header, const std::string& data) {
  return "<tree tag=\"1\" idx=\"0\" hdr=\"\"><field><_><tag>2</tag><idx>3</idx><hdr>" + header +
         "</hdr><data>" + data + "</data></_></field></tree>";
}

TEST(TreeCommand, WhatTextCannotCarryIsRefused) {
  const std::string remedy = "; keep the XML or change that field";
  const std::string field = "field (2,3) of the tree (1,0): ";
  ExpectNotCarried(FieldXml("x", ""), field + "it has no values" + remedy);
  ExpectNotCarried(FieldXml("x", "<_>C:\\temp</_>"),
                   field + "a value has a NUL or a backslash of an escape" + remedy);
  ExpectNotCarried(FieldXml("x", "<_ _enc=\"value\">AA==</_>"),
                   field + "a value has a NUL or a backslash of an escape" + remedy);
  ExpectNotCarried(FieldXml("x\\", "<_>y</_>"),
                   field + "its header has a NUL or a backslash of an escape" + remedy);
  ExpectNotCarried("<tree tag=\"1\" idx=\"0\" hdr=\"a&#10;b\"/>",
                   "tree (1,0): its header has a NUL or a line feed; keep the XML or change that "
                   "header");
}

TEST(TreeCommand, AFieldOfXmlWithNegativeKeysIsNotLostInText) {
  const std::string rest = ": its tag or index is negative; keep the XML or change that field";
  const std::string head = "<tree tag=\"1\" idx=\"0\" hdr=\"\"><field><_>";
  const std::string tail = "<hdr>x</hdr><data><_>y</_></data></_></field></tree>";
  ExpectNotCarried(head + "<tag>-2</tag><idx>3</idx>" + tail,
                   "field (-2,3) of the tree (1,0)" + rest);
  ExpectNotCarried(head + "<tag>2</tag><idx>-3</idx>" + tail,
                   "field (2,-3) of the tree (1,0)" + rest);
}

TEST(TreeCommand, DeepTreesAreConvertedAndListed) {
  TempFolder folder;
  std::string text;
  for (std::size_t depth = 0; depth < 1500; ++depth) text += std::string(depth, '\t') + "(1,0)\n";
  for (std::size_t depth = 1500; depth > 0; --depth) text += std::string(depth - 1, '\t') + "\n";
  folder.Write("a.txt", text);
  ExpectDone(RunTree(folder, {"text2xml", "a.txt", "-o", "a.xml"}), "");
  ExpectDone(RunTree(folder, {"xml2text", "a.xml"}), text);
  EXPECT_EQ(RunTree(folder, {"show", "a.xml"}).exitCode, 0);
  ExpectFailure(RunTree(folder, {"show", "a.xml", "--json"}),
                "a.xml: trees lie more than 1000 deep; list it without --json");
}

TEST(TreeCommand, AMissingFileIsToldByName) {
  TempFolder folder;
  const CommandResult result = RunTree(folder, {"show", "none.txt"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("ravelin: none.txt: "));
}

TEST(TreeCommand, WrongUseEndsWithTwo) {
  TempFolder folder;
  EXPECT_EQ(RunTree(folder, {}).exitCode, 2);
  EXPECT_EQ(RunTree(folder, {"show"}).exitCode, 2);
  EXPECT_EQ(RunTree(folder, {"prune", "a"}).exitCode, 2);
  EXPECT_EQ(RunTree(folder, {"text2xml", "a", "--json"}).exitCode, 2);
}

TEST(TreeCommand, ALostOutputIsAFailure) {
  TempFolder folder;
  folder.Write("a.txt", kText);
  const CommandResult result = RunSubcommand("tree", {"show", "a.txt"}, folder, ToFullDisk);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("standard output: cannot be written"));
}

}  // namespace
