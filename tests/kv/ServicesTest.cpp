#include "Kv/Services.h"

#include "gtest/gtest.h"

namespace {

TEST(ServicesTest, AreDownAtFirst) {
  EXPECT_FALSE(KvServicesReady());
}

TEST(ServicesTest, AreReadyBetweenInitAndDeinit) {
  Init_KvServices();
  EXPECT_TRUE(KvServicesReady());
  Deinit_KvServices();
  EXPECT_FALSE(KvServicesReady());
}

TEST(ServicesTest, AreNotCounted) {
  Init_KvServices();
  Init_KvServices();
  Deinit_KvServices();
  EXPECT_FALSE(KvServicesReady());
  Deinit_KvServices();
  EXPECT_FALSE(KvServicesReady());
}

TEST(ServicesTest, ComeUpAgain) {
  for (int i = 0; i < 100; ++i) {
    Init_KvServices();
    ASSERT_TRUE(KvServicesReady());
    Deinit_KvServices();
  }
}

}  // namespace
