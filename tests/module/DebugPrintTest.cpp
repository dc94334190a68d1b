#include "module/DebugPrint.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "Kv/Services.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DebugPrintTest : public ::testing::Test {
 protected:
  void SetUp() override {
    former_ = KvSetDebugSink([this](const std::string& line) { lines.push_back(line); });
  }
  void TearDown() override { KvSetDebugSink(former_); }

  std::vector<std::string> lines;

 private:
  TKvDebugSink former_;
};

TEST_F(DebugPrintTest, ATextIsOneLineOfTheDebugSink) {
  SatCommonUtils::KvPrintDbgMsg("first");
  SatCommonUtils::KvPrintDbgMsg("second");
  EXPECT_THAT(lines, ElementsAre("first", "second"));
}

TEST_F(DebugPrintTest, AnEmptyTextIsAnEmptyLine) {
  SatCommonUtils::KvPrintDbgMsg("");
  EXPECT_THAT(lines, ElementsAre(""));
}

TEST_F(DebugPrintTest, BytesAreTakenAsTheyAreAndNeverAsAFormat) {
  SatCommonUtils::KvPrintDbgMsg("100 %s %n \xFF\t\n");
  EXPECT_THAT(lines, ElementsAre("100 %s %n \xFF\t\n"));
}

TEST_F(DebugPrintTest, ANullTextRaisesALogicErrorAndPrintsNothing) {
  try {
    SatCommonUtils::KvPrintDbgMsg(nullptr);
    FAIL() << "nothing was thrown";
  } catch (const std::logic_error& error) {
    EXPECT_STREQ(error.what(), "basic_string::_M_construct null not valid");
  }
  EXPECT_THAT(lines, IsEmpty());
}

}  // namespace
