#include "xini/Base64.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace kv {
namespace {

TEST(Base64, EncodesTheVectorsOfRfc4648) {
  EXPECT_EQ(EncodeBase64(""), "");
  EXPECT_EQ(EncodeBase64("f"), "Zg==");
  EXPECT_EQ(EncodeBase64("fo"), "Zm8=");
  EXPECT_EQ(EncodeBase64("foo"), "Zm9v");
  EXPECT_EQ(EncodeBase64("foob"), "Zm9vYg==");
  EXPECT_EQ(EncodeBase64("fooba"), "Zm9vYmE=");
  EXPECT_EQ(EncodeBase64("foobar"), "Zm9vYmFy");
}

TEST(Base64, UsesEveryDigitOfTheAlphabet) {
  std::string bytes;
  for (unsigned i = 0; i < 64; i += 4) {
    const unsigned bits = (i << 18U) | ((i + 1) << 12U) | ((i + 2) << 6U) | (i + 3);
    for (const unsigned shift : {16U, 8U, 0U}) bytes += static_cast<char>((bits >> shift) & 0xFFU);
  }
  EXPECT_EQ(EncodeBase64(bytes),
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
}

TEST(Base64, DecodesWhatItEncodes) {
  std::mt19937 random(31);
  for (unsigned long size = 0; size < 300; ++size) {
    std::string bytes(size, '\0');
    for (char& c : bytes) c = static_cast<char>(random());
    std::string decoded = "former";
    ASSERT_TRUE(DecodeBase64(EncodeBase64(bytes), &decoded));
    ASSERT_EQ(decoded, bytes);
  }
}

TEST(Base64, PassesOverWhiteSpace) {
  std::string decoded;
  EXPECT_TRUE(DecodeBase64(" Zm9\tv\r\nYg = = ", &decoded));
  EXPECT_EQ(decoded, "foob");
}

TEST(Base64, RefusesWhatIsNotBase64) {
  std::string decoded;
  for (const char* text : {"Z", "Zg", "Zg=", "Zg===", "=", "====", "Z===", "Zm9v=", "Zg==Zg==",
                           "Zm9-", "Zm9_", "Zm9\x80", "Z=g=", "Zh==", "Zm9="}) {
    EXPECT_FALSE(DecodeBase64(text, &decoded)) << text;
  }
}

}  // namespace
}  // namespace kv
