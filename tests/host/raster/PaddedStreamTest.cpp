#include "host/raster/PaddedStream.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using ravelin::PaddedStream;
using Stream = var_a_legacy::var_a<TKvStream*>;
using namespace std::string_literals;

Stream Bytes(const std::string& bytes) {
  return Stream(new TKvMemoryStream(bytes));
}

std::string ReadFrom(TKvStream& stream, unsigned long count) {
  std::string bytes(count, '?');
  bytes.resize(stream.Read(bytes.data(), count));
  return bytes;
}

TEST(PaddedStream, GivesTheBytesThatAreThere) {
  PaddedStream padded(Bytes("abcdef"), 10);
  padded.SetPos(2);
  EXPECT_EQ(ReadFrom(padded, 3), "cde");
}

TEST(PaddedStream, GivesZeroBytesBehindThem) {
  PaddedStream padded(Bytes("abcdef"), 10);
  padded.SetPos(4);
  EXPECT_EQ(ReadFrom(padded, 6), "ef\0\0\0\0"s);
}

TEST(PaddedStream, TakesHalfASampleForMissing) {
  PaddedStream padded(Bytes("abc"), 6);
  EXPECT_EQ(ReadFrom(padded, 6), "ab\0\0\0\0"s);
}

TEST(PaddedStream, EndsAtItsSize) {
  PaddedStream padded(Bytes("ab"), 4);
  EXPECT_EQ(padded.getSize(), 4u);
  EXPECT_EQ(ReadFrom(padded, 9), "ab\0\0"s);
  EXPECT_TRUE(padded.Eof());
  EXPECT_EQ(padded.GetPos(), 4u);
}

TEST(PaddedStream, ReadsNothingBehindItsSize) {
  PaddedStream padded(Bytes("ab"), 4);
  padded.SetPos(100);
  EXPECT_EQ(ReadFrom(padded, 1), "");
}

TEST(PaddedStream, LetsAFailedReadFail) {
  class Failing : public TKvMemoryStream {
   public:
    using TKvMemoryStream::TKvMemoryStream;
    unsigned long Read(void*, unsigned long) override { return 0; }
  };
  PaddedStream padded{Stream(new Failing("abcd")), 8};
  EXPECT_EQ(ReadFrom(padded, 6), "");
  EXPECT_TRUE(padded.Eof());
}

TEST(PaddedStream, WritesNothing) {
  PaddedStream padded(Bytes("ab"), 4);
  EXPECT_EQ(padded.Write("XY", 2), 0u);
}

}  // namespace
