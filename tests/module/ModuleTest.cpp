#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "Kv/Services.h"
#include "SatCommonUtils/Module.h"

namespace {

using SatCommonUtils::KvModule_Initializer;

KvModule_Initializer& Module() {
  return KvModule_Initializer::getInst();
}

class ModuleTest : public ::testing::Test {
 protected:
  void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
  void TearDown() override {
    for (int i = 0; i < 100 && Module().counter > 0; ++i) Deinit_Ravelin();
  }
};

TEST_F(ModuleTest, TheFirstInitialisationBringsTheServicesUp) {
  EXPECT_FALSE(KvServicesReady());
  Init_Ravelin();
  EXPECT_TRUE(KvServicesReady());
  EXPECT_EQ(Module().counter, 1u);
}

TEST_F(ModuleTest, TheLastOfTwoDeinitialisationsTakesTheServicesDown) {
  Init_Ravelin();
  Init_Ravelin();
  EXPECT_EQ(Module().counter, 2u);
  Deinit_Ravelin();
  EXPECT_EQ(Module().counter, 1u);
  EXPECT_TRUE(KvServicesReady());
  Deinit_Ravelin();
  EXPECT_EQ(Module().counter, 0u);
  EXPECT_FALSE(KvServicesReady());
}

TEST_F(ModuleTest, AnUnpairedDeinitialisationIsIgnored) {
  Deinit_Ravelin();
  EXPECT_EQ(Module().counter, 0u);
  Init_Ravelin();
  Deinit_Ravelin();
  Deinit_Ravelin();
  EXPECT_EQ(Module().counter, 0u);
  EXPECT_FALSE(KvServicesReady());
  Init_Ravelin();
  EXPECT_EQ(Module().counter, 1u);
  EXPECT_TRUE(KvServicesReady());
}

TEST_F(ModuleTest, AnUnpairedDeinitialisationLeavesServicesThatTheHostBroughtUp) {
  Init_KvServices();
  Deinit_Ravelin();
  EXPECT_TRUE(KvServicesReady());
  Deinit_KvServices();
}

TEST_F(ModuleTest, LaterInitialisationsOnlyCount) {
  Init_Ravelin();
  Deinit_KvServices();
  Init_Ravelin();
  EXPECT_EQ(Module().counter, 2u);
  EXPECT_FALSE(KvServicesReady()) << "only the first call reaches the framework";
}

TEST_F(ModuleTest, DeinitialisationsBeforeTheLastOnlyCount) {
  for (int i = 0; i < 5; ++i) Init_Ravelin();
  for (unsigned long left = 4; left > 0; --left) {
    Deinit_Ravelin();
    EXPECT_EQ(Module().counter, left);
    EXPECT_TRUE(KvServicesReady());
  }
}

TEST_F(ModuleTest, TheServicesComeUpAgainAfterAFullDeinitialisation) {
  for (int i = 0; i < 3; ++i) {
    Init_Ravelin();
    EXPECT_TRUE(KvServicesReady());
    Deinit_Ravelin();
    EXPECT_FALSE(KvServicesReady());
  }
}

TEST_F(ModuleTest, TheTwoTextsOfInitAreIgnored) {
  Module().init("a name", "/some/path.ext");
  EXPECT_EQ(Module().counter, 1u);
  EXPECT_EQ(Module().name, "Ravelin");
  EXPECT_EQ(Module().fileName, "Ravelin.so");
  Module().init("", "");
  EXPECT_EQ(Module().counter, 2u);
}

TEST_F(ModuleTest, DeinitOfTheSingletonCountsWithTheEntryPoint) {
  Init_Ravelin();
  Module().init("", "");
  Module().deinit();
  EXPECT_TRUE(KvServicesReady());
  Module().deinit();
  EXPECT_EQ(Module().counter, 0u);
  EXPECT_FALSE(KvServicesReady());
  Module().deinit();
  EXPECT_EQ(Module().counter, 0u);
}

TEST_F(ModuleTest, TheModuleKnowsItsFile) {
  Init_Ravelin();
  const KvModule_Initializer& module = Module();
  EXPECT_EQ(module.name, "Ravelin");
  EXPECT_EQ(module.fileName, "Ravelin.so");
  EXPECT_EQ(module.extension, "so");
  EXPECT_EQ(module.folder + module.fileName, module.modulePath);
  ASSERT_FALSE(module.folder.empty());
  EXPECT_EQ(module.folder.back(), '/');
  EXPECT_EQ(access(module.modulePath.c_str(), R_OK), 0);
}

TEST_F(ModuleTest, ThePathsOutliveTheDeinitialisation) {
  Init_Ravelin();
  const std::string path = Module().modulePath;
  Deinit_Ravelin();
  EXPECT_EQ(Module().modulePath, path);
  EXPECT_EQ(Module().fileName, "Ravelin.so");
  EXPECT_EQ(Module().extension, "so");
  Init_Ravelin();
  EXPECT_EQ(Module().modulePath, path);
}

TEST_F(ModuleTest, ThereIsOneInitializer) {
  EXPECT_EQ(&KvModule_Initializer::getInst(), &KvModule_Initializer::getInst());
}

TEST_F(ModuleTest, ThreadsThatAskFirstAtOnceGetTheSameInitializer) {
  std::vector<KvModule_Initializer*> seen(8);
  std::vector<std::thread> threads;
  for (KvModule_Initializer*& place : seen) {
    threads.emplace_back([&place] { place = &KvModule_Initializer::getInst(); });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(std::set<KvModule_Initializer*>(seen.begin(), seen.end()).size(), 1u);
}

void CheckFreshInitializer() {
  const KvModule_Initializer& module = Module();
  const bool fresh = module.counter == 0 && module.name == "Ravelin" && module.modulePath.empty() &&
                     module.folder.empty() && module.fileName.empty() && module.extension == "so";
  std::exit(fresh && !KvServicesReady() ? 0 : 1);
}

TEST_F(ModuleTest, BeforeTheFirstInitialisationThereIsANameAndAnExtensionAlone) {
  EXPECT_EXIT(CheckFreshInitializer(), ::testing::ExitedWithCode(0), "");
}

void ExitWithServicesUp() {
  std::atexit([] { _exit(KvServicesReady() ? 0 : 1); });
  Init_Ravelin();
  std::exit(2);
}

TEST_F(ModuleTest, AtProcessExitTheServicesAreNotTakenDown) {
  EXPECT_EXIT(ExitWithServicesUp(), ::testing::ExitedWithCode(0), "");
}

}  // namespace
