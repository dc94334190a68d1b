#include "host/scene/Projection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/sample/SampleLabel.h"
#include "host/scene/support/Scopes.h"
#include "host/support/ErrorOf.h"
#include "support/TempFolder.h"

namespace {

using namespace ravelin;
using SatCommonUtils::TSatLog;
using testing::HasSubstr;

struct Found {
  std::optional<Projection> projection;
  std::string log;
};

Found Find(const TempFolder& folder, const std::string& name = "") {
  TSatLog log;
  Found found = {FindProjection(ProductFolder(folder.Path()), name, &log), ""};
  for (const auto& item : log.items) found.log += item.GetMsgLine();
  return found;
}

TEST(Projection, IsTheOnlyWktInTheFolder) {
  TempFolder folder;
  folder.Write("a.PRJ", SampleProjection());
  const Found found = Find(folder);
  ASSERT_TRUE(found.projection);
  EXPECT_EQ(found.projection->wkt, SampleProjection());
  EXPECT_THAT(found.projection->xml, HasSubstr("<PROJCS>"));
  EXPECT_TRUE(found.projection->IsProjected());
}

TEST(Projection, IsTheOneThatTheLabelNames) {
  TempFolder folder;
  folder.Write("a.wkt", "GEOGCS[\"a\"]");
  folder.Write("b.wkt", SampleProjection());
  const Found found = Find(folder, "A.WKT");
  ASSERT_TRUE(found.projection);
  EXPECT_EQ(found.projection->wkt, "GEOGCS[\"a\"]");
  EXPECT_FALSE(found.projection->IsProjected());
}

TEST(Projection, IsNotChosenFromSeveral) {
  TempFolder folder;
  folder.Write("a.wkt", "");
  folder.Write("b.prj", "");
  const Found found = Find(folder);
  EXPECT_FALSE(found.projection);
  EXPECT_EQ(found.log, "* projection: left out, there are 2 files .wkt or .prj, a.wkt the first\n");
}

TEST(Projection, IsLeftOutWhenItIsNotThere) {
  TempFolder folder;
  EXPECT_FALSE(Find(folder).projection);
  EXPECT_EQ(Find(folder).log, "i projection: none, there is no file .wkt or .prj\n");
  EXPECT_FALSE(Find(folder, "a.wkt").projection);
  EXPECT_EQ(Find(folder, "a.wkt").log, "* projection: there is no a.wkt, which the label names\n");
}

TEST(Projection, IsLeftOutWhenItIsNoWkt) {
  TempFolder folder;
  folder.Write("a.wkt", "");
  EXPECT_THAT(Find(folder).log, HasSubstr("* projection: left out, " + folder.Path()));
  folder.Write("a.wkt", "A[1");
  EXPECT_FALSE(Find(folder).projection);
  EXPECT_THAT(Find(folder).log, HasSubstr("makes no XML"));
  folder.Write("a.wkt", "A[\"x & y\"]");
  EXPECT_THAT(Find(folder).log, HasSubstr("makes no XML"));
}

TEST(Projection, IsNotReadOutsideTheFolder) {
  TempFolder folder;
  folder.MakeFolder("in");
  folder.Write("a.wkt", SampleProjection());
  TSatLog log;
  EXPECT_THAT(ErrorOf([&] { FindProjection(ProductFolder(folder / "in"), "../a.wkt", &log); }),
              HasSubstr("leads outside the folder"));
}

}  // namespace
