#include "Kv/Stream.h"

#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "StreamModel.h"
#include "gtest/gtest.h"

namespace {

using kv_test::LineLikeBytes;
using kv_test::ReadExact;
using kv_test::ReadLineExact;
using kv_test::StreamModel;

// The least that a stream has to supply: the lines are those of the base class.
class PlainStream : public TKvStream {
 public:
  explicit PlainStream(std::string bytes) : bytes_(std::move(bytes)) {}

  bool IsOpen() const override { return true; }
  unsigned long Read(void* buffer, unsigned long count) override {
    ++reads;
    asked += count;
    if (pos_ >= failsAt) return 0;
    const std::string part = pos_ < bytes_.size() ? bytes_.substr(pos_, count) : std::string();
    part.copy(static_cast<char*>(buffer), part.size());
    pos_ += part.size();
    return part.size();
  }
  unsigned long Write(const void*, unsigned long) override { return 0; }
  bool SetPos(unsigned long offset) override {
    if (!moves) return false;
    pos_ = offset;
    return true;
  }
  unsigned long GetPos() const override { return pos_; }
  unsigned long getSize() const override { return bytes_.size(); }
  bool Eof() const override { return pos_ >= bytes_.size() || pos_ >= failsAt; }

  bool moves = true;
  unsigned long failsAt = std::numeric_limits<unsigned long>::max();
  unsigned long reads = 0;
  unsigned long asked = 0;

 private:
  std::string bytes_;
  unsigned long pos_ = 0;
};

TEST(StreamTest, ALineIsStoredWithoutItsLf) {
  PlainStream stream("one\ntwo\n");
  const auto line = ReadLineExact(stream, 20);
  EXPECT_EQ(line.text, "one");
  EXPECT_EQ(line.consumed, 4u);
}

TEST(StreamTest, ACrIsKept) {
  PlainStream stream("one\r\ntwo");
  EXPECT_EQ(ReadLineExact(stream, 20).text, "one\r");
}

TEST(StreamTest, AnEmptyLineGivesOne) {
  PlainStream stream("\n\nx");
  const auto line = ReadLineExact(stream, 20);
  EXPECT_EQ(line.text, "");
  EXPECT_EQ(line.consumed, 1u);
}

TEST(StreamTest, ALastLineNeedsNoLf) {
  PlainStream stream("one");
  const auto line = ReadLineExact(stream, 20);
  EXPECT_EQ(line.text, "one");
  EXPECT_EQ(line.consumed, 3u);
}

TEST(StreamTest, ALineAtTheEndGivesNothing) {
  PlainStream stream("");
  const auto line = ReadLineExact(stream, 20);
  EXPECT_EQ(line.text, "");
  EXPECT_EQ(line.consumed, 0u);
}

TEST(StreamTest, ALongerLineComesInPieces) {
  PlainStream stream("abcdefgh\nx");
  EXPECT_EQ(ReadLineExact(stream, 4).text, "abc");
  EXPECT_EQ(ReadLineExact(stream, 4).text, "def");
  const auto rest = ReadLineExact(stream, 4);
  EXPECT_EQ(rest.text, "gh");
  EXPECT_EQ(rest.consumed, 3u);
}

TEST(StreamTest, ALineThatJustFitsTakesItsLfAlong) {
  PlainStream stream("abc\nx");
  const auto line = ReadLineExact(stream, 4);
  EXPECT_EQ(line.text, "abc");
  EXPECT_EQ(line.consumed, 4u);
  EXPECT_EQ(ReadLineExact(stream, 4).text, "x");
}

TEST(StreamTest, ANulInALineIsAByteLikeOthers) {
  PlainStream stream(std::string("a\0b\nx", 5));
  const auto line = ReadLineExact(stream, 20);
  EXPECT_EQ(line.text, std::string("a\0b", 3));
  EXPECT_EQ(line.consumed, 4u);
}

TEST(StreamTest, ABufferOfOneByteTakesEmptyLinesOnly) {
  PlainStream stream("\nab\n");
  EXPECT_EQ(ReadLineExact(stream, 1).consumed, 1u);
  EXPECT_EQ(ReadLineExact(stream, 1).consumed, 0u);
  EXPECT_EQ(ReadExact(stream, 9), "ab\n");
}

TEST(StreamTest, ABufferOfNoBytesIsLeftAlone) {
  PlainStream stream("ab\n");
  EXPECT_EQ(stream.ReadLine(nullptr, 0), 0u);
  EXPECT_EQ(stream.GetPos(), 0u);
}

TEST(StreamTest, AReadAfterALineContinuesBehindIt) {
  PlainStream stream("one\n" + std::string(500, 'x'));
  ReadLineExact(stream, 400);
  EXPECT_EQ(stream.GetPos(), 4u);
  EXPECT_EQ(ReadExact(stream, 600), std::string(500, 'x'));
}

TEST(StreamTest, AReadThatFailsEndsTheLine) {
  PlainStream stream(std::string(300, 'x') + "\n");
  stream.failsAt = 64;
  const auto line = ReadLineExact(stream, 400);
  EXPECT_EQ(line.text, std::string(64, 'x'));
  EXPECT_EQ(line.consumed, 64u);
  EXPECT_EQ(ReadLineExact(stream, 400).consumed, 0u);
}

TEST(StreamTest, AStreamThatCannotMoveLosesNothing) {
  PlainStream stream("one\n\nthree\nrest");
  stream.moves = false;
  EXPECT_EQ(ReadLineExact(stream, 20).text, "one");
  EXPECT_EQ(ReadLineExact(stream, 20).consumed, 1u);
  EXPECT_EQ(ReadLineExact(stream, 4).text, "thr");
  EXPECT_EQ(ReadLineExact(stream, 4).text, "ee");
  EXPECT_EQ(ReadLineExact(stream, 1).consumed, 0u);
  EXPECT_EQ(ReadExact(stream, 20), "rest");
}

TEST(StreamTest, AStreamThatCannotMoveMakesAnEmptyLineOfALateLf) {
  PlainStream stream("abc\nx");
  stream.moves = false;
  EXPECT_EQ(ReadLineExact(stream, 4).consumed, 3u);
  EXPECT_EQ(ReadLineExact(stream, 4).consumed, 1u);
  EXPECT_EQ(ReadLineExact(stream, 4).text, "x");
}

TEST(StreamTest, AShortLineCostsLittleWhateverTheBuffer) {
  std::string bytes;
  for (int i = 0; i < 1000; ++i) bytes += "x\n";
  PlainStream stream(bytes);
  while (!stream.Eof()) ASSERT_EQ(ReadLineExact(stream, 10000).consumed, 2u);
  EXPECT_LE(stream.asked, 1000u * 64u);
}

TEST(StreamTest, ALongLineTakesFewReads) {
  PlainStream stream(std::string(1000000, 'x') + "\n");
  EXPECT_EQ(ReadLineExact(stream, 2000000).consumed, 1000001u);
  EXPECT_LE(stream.reads, 300u);
}

TEST(StreamTest, ALongLineInSmallPiecesAsksForEachByteFewTimes) {
  PlainStream stream(std::string(100000, 'x') + "\n");
  while (!stream.Eof()) ASSERT_GT(ReadLineExact(stream, 11).consumed, 0u);
  EXPECT_LE(stream.asked, 2u * 100001u);
}

TEST(StreamTest, PurgeDoesNothingUnlessOverridden) {
  PlainStream stream("one\ntwo");
  ReadLineExact(stream, 20);
  stream.Purge();
  EXPECT_EQ(ReadExact(stream, 20), "two");
}

TEST(StreamTest, LinesOfRandomBytesAreThoseOfTheModel) {
  for (unsigned seed = 0; seed < 20; ++seed) {
    std::mt19937 random(seed);
    const std::string bytes = LineLikeBytes(random, random() % 20000);
    PlainStream stream(bytes);
    StreamModel model(bytes);
    for (int step = 0; step < 1000; ++step) {
      const unsigned long size = random() % (random() % 8 == 0 ? 5000 : 30);
      unsigned long consumed = 0;
      const std::string text = model.ReadLine(size, consumed);
      const auto line = ReadLineExact(stream, size);
      ASSERT_EQ(line.text, text) << "seed " << seed << " step " << step;
      ASSERT_EQ(line.consumed, consumed);
      ASSERT_EQ(stream.GetPos(), model.GetPos());
    }
  }
}

TEST(StreamErrorTest, IsARuntimeErrorWithItsText) {
  static_assert(std::is_base_of_v<std::runtime_error, TKvError>);
  EXPECT_STREQ(TKvError("b1.raw: gone").what(), "b1.raw: gone");
}

TEST(StreamErrorTest, TheModesHaveTheValuesThatHostsPass) {
  EXPECT_EQ(static_cast<int>(kvOpenWrite), 9);
  EXPECT_EQ(static_cast<int>(kvOpenRead), 10);
  EXPECT_EQ(static_cast<unsigned int>(kvShareAll), 0xFFFFFFFFu);
}

}  // namespace
