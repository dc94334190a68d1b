#include "host/scene/LabelFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/scene/support/Scopes.h"
#include "host/support/ErrorOf.h"
#include "support/TempFolder.h"

namespace {

using namespace ravelin;
using testing::HasSubstr;

LabelFile LabelOf(const std::string& text) {
  TempFolder folder;
  folder.Write("x.lbl", text);
  return ReadLabel(folder / "x.lbl", std::nullopt);
}

class LabelName : public testing::TestWithParam<const char*> {};

TEST_P(LabelName, IsFoundAmongOtherFiles) {
  TempFolder folder;
  for (const char* other : {"a.raw", "b.txt", "c.lbl.bak", "d_mtl.json"}) folder.Write(other, "");
  folder.Write(GetParam(), "");
  EXPECT_EQ(FindLabel(folder.Path()), GetParam());
}

INSTANTIATE_TEST_SUITE_P(All, LabelName,
                         testing::Values("LC08_MTL.txt", "x_mtl.TXT", "a.b.lbl", "A.LBL", "x.pvl",
                                         "scene.Met", "label.txt", "productLABEL.txt"));

TEST(FindLabel, CountsAFileThatTwoMasksMatchOnce) {
  TempFolder folder;
  folder.Write("label.txt", "");
  EXPECT_EQ(FindLabel(folder.Path()), "label.txt");
}

TEST(FindLabel, FailsWithoutALabel) {
  TempFolder folder;
  folder.Write("x.txt", "");
  EXPECT_EQ(ErrorOf([&] { FindLabel(folder.Path()); }),
            folder.Path() +
                ": has no label: no file there is called *_mtl.txt, *.lbl, *.pvl, "
                "*.met or *label.txt; name it with --label FILE");
}

TEST(FindLabel, ListsSeveralLabels) {
  TempFolder folder;
  folder.Write("b.lbl", "");
  folder.Write("a_MTL.txt", "");
  EXPECT_EQ(ErrorOf([&] { FindLabel(folder.Path()); }),
            folder.Path() + ": has several labels: a_MTL.txt, b.lbl; choose one with --label FILE");
}

TEST(FindLabel, ListsTenOfManyLabels) {
  TempFolder folder;
  for (char name = 'a'; name <= 'm'; ++name) folder.Write(std::string(1, name) + ".lbl", "");
  EXPECT_THAT(ErrorOf([&] { FindLabel(folder.Path()); }), HasSubstr(", j.lbl and 3 more;"));
}

TEST(ReadLabel, TakesALineThatBeginsWithGroupForNasa) {
  const LabelFile label = LabelOf("A = 1\n \tGroup=X\n");
  EXPECT_EQ(label.dialect, Dialect::kNasa);
  EXPECT_EQ(label.reason, "line 2 begins with GROUP");
}

TEST(ReadLabel, TakesALineThatBeginsWithBeginGroupForPvl) {
  const LabelFile label = LabelOf("A = 1;\r\nBEGIN_GROUP = X;\r\nGROUP = 1;\r\n");
  EXPECT_EQ(label.dialect, Dialect::kPvl);
  EXPECT_EQ(label.reason, "line 2 begins with BEGIN_GROUP");
}

TEST(ReadLabel, TakesALabelOfObjectsAloneForNasa) {
  EXPECT_EQ(LabelOf("PDS_VERSION_ID = PDS3\nOBJECT = IMAGE\n").dialect, Dialect::kNasa);
  EXPECT_EQ(LabelOf("BEGIN_OBJECT = IMAGE;\n").dialect, Dialect::kPvl);
}

TEST(ReadLabel, WantsAWholeWord) {
  EXPECT_THAT(ErrorOf([] { LabelOf("GROUPS = 1\nMY GROUP = 2\nGROUP_ID = 3\n"); }),
              HasSubstr("no line of it begins with GROUP or BEGIN_GROUP to tell the dialect; give "
                        "--dialect pvl or --dialect nasa"));
}

TEST(ReadLabel, LetsTheDialectBeGiven) {
  TempFolder folder;
  folder.Write("x.lbl", "GROUP = X\n");
  const LabelFile label = ReadLabel(folder / "x.lbl", Dialect::kPvl);
  EXPECT_EQ(label.dialect, Dialect::kPvl);
  EXPECT_EQ(label.reason, "asked for by --dialect");
}

TEST(ReadLabel, DropsAMarkAndReadsUtf16) {
  EXPECT_EQ(LabelOf("\xef\xbb\xbfGROUP = X\n").text, "GROUP = X\n");
  EXPECT_EQ(LabelOf(std::string("\xff\xfeG\0R\0O\0U\0P\0", 12)).text, "GROUP");
}

TEST(ReadLabel, RefusesAFileThatIsNoLabelBySize) {
  TempFolder folder;
  folder.WriteSparse("x.lbl", (16ul << 20) + 1);
  EXPECT_THAT(ErrorOf([&] { ReadLabel(folder / "x.lbl", Dialect::kNasa); }),
              HasSubstr("holds 16777217 bytes, more than the 16777216"));
}

TEST(LabelXml, ConvertsByTheDialect) {
  EXPECT_THAT(LabelXml({"x", "GROUP = A\nB = 1\nEND_GROUP = A\n", Dialect::kNasa, ""}),
              HasSubstr("<A>"));
  EXPECT_THAT(LabelXml({"x", "BEGIN_GROUP = A;\nB = 1;\nEND_GROUP = A;\n", Dialect::kPvl, ""}),
              HasSubstr("<B>1</B>"));
}

TEST(LabelXml, SaysWhereALabelCannotBeConverted) {
  EXPECT_THAT(ErrorOf([] {
                LabelXml({"x.lbl", "GROUP = A\nEND_GROUP = B\n", Dialect::kNasa, ""});
              }),
              HasSubstr("x.lbl: the conversion stopped at line 2"));
}

TEST(Dialects, HaveNames) {
  EXPECT_EQ(ParseDialect("pvl"), Dialect::kPvl);
  EXPECT_EQ(ParseDialect("nasa"), Dialect::kNasa);
  EXPECT_EQ(ParseDialect("NASA"), std::nullopt);
}

}  // namespace
