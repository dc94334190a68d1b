// The entry points while allocations fail.
#include <gtest/gtest.h>

#include <new>

#include "Kv/Services.h"
#include "SatCommonUtils/Module.h"
#include "support/FailingNew.h"

namespace {

using SatCommonUtils::KvModule_Initializer;

TEST(ModuleMemoryTest, AnInitialisationThatFailsDoesNotCountAndCanBeRepeated) {
  KvModule_Initializer& module = KvModule_Initializer::getInst();
  for (const unsigned long failures : {1ul, ~0ul}) {
    for (unsigned long successes = 0;; ++successes) {
      // What the texts hold from before is given back, so that they need memory.
      for (std::string* text : {&module.modulePath, &module.folder, &module.fileName}) {
        std::string().swap(*text);
      }
      bool threw = false;
      try {
        const ravelin_test::FailingNew failing(successes, failures);
        Init_Ravelin();
      } catch (const std::bad_alloc&) {
        threw = true;
      }
      EXPECT_EQ(threw, ravelin_test::AllocationFailed());
      EXPECT_EQ(module.counter, threw ? 0u : 1u);
      if (threw) Init_Ravelin();
      EXPECT_EQ(module.modulePath, module.folder + module.fileName);
      EXPECT_EQ(module.extension, "so");
      Deinit_Ravelin();
      EXPECT_FALSE(KvServicesReady());
      if (threw) continue;
      EXPECT_GT(successes, 1u);
      break;
    }
  }
}

}  // namespace
