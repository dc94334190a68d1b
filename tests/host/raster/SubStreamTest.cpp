#include "host/raster/SubStream.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

using ravelin::SubStream;
using Stream = var_a_legacy::var_a<TKvStream*>;

Stream Letters() {
  return Stream(new TKvMemoryStream("abcdefghij"));
}

std::string ReadFrom(TKvStream& stream, unsigned long count) {
  std::string bytes(count, '?');
  bytes.resize(stream.Read(bytes.data(), count));
  return bytes;
}

TEST(SubStream, BeginsAtTheGivenByte) {
  SubStream part(Letters(), 3);
  EXPECT_EQ(ReadFrom(part, 4), "defg");
}

TEST(SubStream, CountsPositionsFromItsOwnBeginning) {
  SubStream part(Letters(), 3);
  ASSERT_TRUE(part.SetPos(2));
  EXPECT_EQ(ReadFrom(part, 2), "fg");
  EXPECT_EQ(part.GetPos(), 4u);
}

TEST(SubStream, IsAsLongAsWhatIsLeft) {
  EXPECT_EQ(SubStream(Letters(), 3).getSize(), 7u);
  EXPECT_EQ(SubStream(Letters(), 0).getSize(), 10u);
}

TEST(SubStream, IsEmptyWhenItBeginsBehindTheEnd) {
  SubStream part(Letters(), 11);
  EXPECT_EQ(part.getSize(), 0u);
  EXPECT_EQ(ReadFrom(part, 1), "");
  EXPECT_TRUE(part.Eof());
}

TEST(SubStream, ReadsShortAtTheEndOfTheWhole) {
  SubStream part(Letters(), 7);
  EXPECT_EQ(ReadFrom(part, 9), "hij");
  EXPECT_TRUE(part.Eof());
}

TEST(SubStream, KeepsItsPositionWhenTheWholeIsMoved) {
  const Stream whole = Letters();
  SubStream part(whole, 1);
  EXPECT_EQ(ReadFrom(part, 2), "bc");
  whole->SetPos(8);
  EXPECT_EQ(ReadFrom(part, 2), "de");
}

TEST(SubStream, RefusesAPositionThatOverflows) {
  SubStream part(Letters(), 3);
  ASSERT_TRUE(part.SetPos(1));
  EXPECT_FALSE(part.SetPos(std::numeric_limits<unsigned long>::max() - 2));
  EXPECT_EQ(ReadFrom(part, 1), "e");
}

TEST(SubStream, WritesNothing) {
  const Stream whole = Letters();
  SubStream part(whole, 3);
  EXPECT_EQ(part.Write("XY", 2), 0u);
  EXPECT_EQ(static_cast<TKvMemoryStream*>(whole.get())->Bytes(), "abcdefghij");
}

TEST(SubStream, PassesPurgesOn) {
  class Purged : public TKvMemoryStream {
   public:
    void Purge() override { ++count; }
    int count = 0;
  };
  auto* purged = new Purged;
  SubStream part{Stream(purged), 0};
  part.Purge();
  EXPECT_EQ(purged->count, 1);
}

TEST(SubStream, IsOpenWhileTheWholeIs) {
  EXPECT_TRUE(SubStream(Letters(), 3).IsOpen());
  EXPECT_FALSE(SubStream(Stream(new TKvFileStream), 3).IsOpen());
}

}  // namespace
