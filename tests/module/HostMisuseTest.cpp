// Hosts that do not initialise, that work on several threads, or that set a locale of their own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "Kv/Services.h"
#include "SatCommonUtils/Module.h"
#include "SatCommonUtils/Text.h"
#include "kv/CommaLocale.h"
#include "module/HostWork.h"

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

std::string WorkWhileInitialised(int number) {
  Init_Ravelin();
  std::string work = HostWork(number);
  Deinit_Ravelin();
  return work;
}

TEST(HostMisuseTest, TheWorkIsWhatItIsMeantToBe) {
  const std::string work = WorkWhileInitialised(7);
  EXPECT_THAT(work, HasSubstr("<A>7,1.5</A>"));
  EXPECT_THAT(work, HasSubstr("<VALUE>0.5</VALUE>"));
  EXPECT_THAT(work, Not(HasSubstr("failed")));
  EXPECT_THAT(work, HasSubstr("(10,0)[1]Number\t7\n(11,0)[1]Half\t7.5\n"));
  EXPECT_THAT(work, Not(HasSubstr("other")));
  EXPECT_THAT(work, HasSubstr("valid"));
  EXPECT_THAT(work, Not(HasSubstr("invalid")));
  EXPECT_THAT(work, HasSubstr("32b2r7b7r0b0r1b1r")) << "bytes exchanged, the lower row first";
  EXPECT_THAT(work, HasSubstr("* scene7_MTL.TXT\n"));
}

TEST(HostMisuseTest, WhatIsUsedBeforeTheInitialisationWorks) {
  ASSERT_FALSE(KvServicesReady());
  const std::string work = HostWork(1);
  EXPECT_FALSE(KvServicesReady());
  EXPECT_EQ(work, WorkWhileInitialised(1));
}

TEST(HostMisuseTest, WhatIsUsedAfterTheDeinitialisationWorks) {
  const std::string work = WorkWhileInitialised(2);
  ASSERT_FALSE(KvServicesReady());
  EXPECT_EQ(HostWork(2), work);
}

TEST(HostMisuseTest, WhatIsUsedAfterADeinitialisationAloneWorks) {
  Deinit_Ravelin();
  EXPECT_EQ(HostWork(3), WorkWhileInitialised(3));
}

TEST(HostMisuseTest, ThreadsWithObjectsOfTheirOwnDoNotMeet) {
  constexpr int kThreads = 2;
  constexpr int kTurns = 50;
  Init_Ravelin();
  std::vector<std::string> alone;
  for (int number = 0; number < kThreads; ++number) alone.push_back(HostWork(number));
  std::vector<int> right(kThreads);
  std::vector<std::thread> threads;
  for (int number = 0; number < kThreads; ++number) {
    threads.emplace_back([number, &alone, &right] {
      const auto place = static_cast<std::size_t>(number);
      for (int turn = 0; turn < kTurns; ++turn) right[place] += HostWork(number) == alone[place];
    });
  }
  for (std::thread& thread : threads) thread.join();
  Deinit_Ravelin();
  EXPECT_THAT(right, ::testing::Each(kTurns));
}

TEST(HostMisuseTest, AHostsDecimalCommaDoesNotReachXmlTreesAndLabels) {
  const std::string work = WorkWhileInitialised(4);
  const kv_test::CommaLocale locale;
  if (!locale.IsThere()) GTEST_SKIP() << "no locale with a decimal comma";
  ASSERT_EQ(SatCommonUtils::ValueToString(0.5), "0,5") << "what follows the locale does";
  EXPECT_EQ(WorkWhileInitialised(4), work);
}

}  // namespace
