// What the converters of PVL say about why and where they stopped.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <string>
#include <utility>

#include "SatCommonUtils/Metadata.h"
#include "support/EveryAllocation.h"

namespace {

using SatCommonUtils::NASA_PVLtoXML;
using SatCommonUtils::PVLtoXML;
using SatCommonUtils::TPvlFailure;
using StreamPointer = var_a_legacy::var_a<TKvStream*>;

/// A line and a reason in one, to compare and to print.
using Failure = std::pair<unsigned long, std::string>;
const Failure kNone = {777, "not touched"};

/// Takes `room` bytes and no more.
class NarrowStream : public TKvMemoryStream {
 public:
  explicit NarrowStream(unsigned long room) : room_(room) {}
  unsigned long Write(const void*, unsigned long count) override {
    const unsigned long taken = std::min(count, room_);
    room_ -= taken;
    return taken;
  }

 private:
  unsigned long room_;
};

/// Bytes that are read through the line reading of the base class.
class PlainStream : public TKvStream {
 public:
  explicit PlainStream(std::string bytes) : bytes_(std::move(bytes)) {}
  bool IsOpen() const override { return isOpen; }
  unsigned long Read(void* buffer, unsigned long count) override {
    const unsigned long got = std::min<unsigned long>(count, bytes_.size() - pos_);
    std::memcpy(buffer, bytes_.data() + pos_, got);
    pos_ += got;
    return got;
  }
  unsigned long Write(const void*, unsigned long) override { return 0; }
  bool SetPos(unsigned long offset) override {
    if (!isMovable && offset != pos_) return false;
    pos_ = offset;
    return isMovable;
  }
  unsigned long GetPos() const override { return pos_; }
  unsigned long getSize() const override { return bytes_.size(); }
  bool Eof() const override { return pos_ >= bytes_.size(); }

  bool isOpen = true;
  bool isMovable = true;

 private:
  std::string bytes_;
  unsigned long pos_ = 0;
};

using Converter = bool (*)(StreamPointer, StreamPointer, TPvlFailure*);

Failure FailureOf(Converter convert, const StreamPointer& in, const StreamPointer& out) {
  TPvlFailure failure = {kNone.first, kNone.second};
  const bool converted = convert(in, out, &failure);
  EXPECT_EQ(converted, Failure(failure.line, failure.reason) == kNone);
  return {failure.line, failure.reason};
}

Failure Pvl(const std::string& text) {
  return FailureOf(PVLtoXML, StreamPointer(new TKvMemoryStream(text)),
                   StreamPointer(new TKvMemoryStream));
}

Failure NasaPvl(const std::string& text) {
  return FailureOf(NASA_PVLtoXML, StreamPointer(new TKvMemoryStream(text)),
                   StreamPointer(new TKvMemoryStream));
}

TEST(PvlFailure, IsLeftAloneByAConversionThatSucceeds) {
  EXPECT_EQ(Pvl("A = 1;\nEND;\n"), kNone);
  EXPECT_EQ(NasaPvl("A = 1\nEND\n"), kNone);
  EXPECT_EQ(NasaPvl(""), kNone);
}

TEST(PvlFailure, NeedNotBeAskedFor) {
  const StreamPointer in(new TKvMemoryStream("END_GROUP = A;\n"));
  EXPECT_FALSE(PVLtoXML(in, StreamPointer(new TKvMemoryStream), nullptr));
  EXPECT_FALSE(NASA_PVLtoXML(in, StreamPointer(new TKvMemoryStream), nullptr));
  EXPECT_FALSE(PVLtoXML(StreamPointer(), StreamPointer(), nullptr));
}

TEST(PvlFailure, TellsOfAGroupWithoutEqualsSign) {
  EXPECT_EQ(Pvl("A = 1;\n\n  BEGIN_GROUP B;\n"), Failure(3, "BEGIN_GROUP without '='"));
  EXPECT_EQ(NasaPvl("A = 1\n\n  GROUP B\n"), Failure(3, "GROUP without '='"));
  EXPECT_EQ(Pvl("BEGIN_GROUP = B;\nEND_GROUP;\n"), Failure(2, "END_GROUP without '='"));
}

TEST(PvlFailure, TellsOfAGroupThatIsNotTheInnermost) {
  EXPECT_EQ(Pvl("BEGIN_GROUP = A;\nBEGIN_GROUP = B;\nEND_GROUP = A;\n"),
            Failure(3, "END_GROUP = 'A' does not name the innermost open group 'B'"));
  EXPECT_EQ(NasaPvl("GROUP = A\nEND_GROUP =\n"),
            Failure(2, "END_GROUP = '' does not name the innermost open group 'A'"));
}

TEST(PvlFailure, TellsOfAnEndWithoutAnOpenGroup) {
  EXPECT_EQ(Pvl("END_GROUP = A;\n"), Failure(1, "END_GROUP without an open group"));
  EXPECT_EQ(NasaPvl("GROUP = A\nEND_GROUP = A\nEND_GROUP = A\n"),
            Failure(3, "END_GROUP without an open group"));
}

TEST(PvlFailure, TellsOfAnEndThatIsNotAlone) {
  EXPECT_EQ(Pvl("A = 1;\nEND\n"), Failure(2, "END is not followed by ';'"));
  EXPECT_EQ(NasaPvl("A = 1\nEND /* of it */\n"), Failure(2, "END is followed by other text"));
}

TEST(PvlFailure, TellsOfAnInputThatIsMissing) {
  const auto closed = [] {
    auto* const stream = new PlainStream("A = 1;\n");
    stream->isOpen = false;
    return StreamPointer(stream);
  };
  const StreamPointer out(new TKvMemoryStream);
  EXPECT_EQ(Pvl(""), Failure(0, "the input is empty"));
  EXPECT_EQ(FailureOf(PVLtoXML, StreamPointer(), out), Failure(0, "the input is not open"));
  EXPECT_EQ(FailureOf(PVLtoXML, closed(), out), Failure(0, "the input is not open"));
}

TEST(PvlFailure, TellsOfAMissingOutput) {
  EXPECT_EQ(FailureOf(PVLtoXML, StreamPointer(new TKvMemoryStream("A = 1;\n")), StreamPointer()),
            Failure(0, "there is no output"));
}

TEST(PvlFailure, TellsOfAnOutputThatFailsAtItsEndWithoutALine) {
  EXPECT_EQ(FailureOf(PVLtoXML, StreamPointer(new TKvMemoryStream("A = 1;\n")),
                      StreamPointer(new NarrowStream(20))),
            Failure(0, "the output could not be written"));
}

TEST(PvlFailure, TellsOfAnOutputThatFailsInTheMiddleAtItsStatement) {
  std::string text;
  for (int i = 0; i < 20000; ++i) text += "A = 1234567890;\n";
  const Failure failure = FailureOf(PVLtoXML, StreamPointer(new TKvMemoryStream(text)),
                                    StreamPointer(new NarrowStream(100)));
  EXPECT_EQ(failure.second, "the output could not be written");
  // 64 KiB are collected before the first write; a statement makes 18 bytes and more of XML.
  EXPECT_GT(failure.first, 1000u);
  EXPECT_LT(failure.first, 4000u);
}

TEST(PvlFailure, TellsOfAnOutputThatFailsInTheMiddleAtItsGroup) {
  std::string text;
  for (int i = 0; i < 20000; ++i) text += "BEGIN_GROUP = GROUP_OF_A_LONG_NAME\n";
  text += "END\n";
  const Failure failure = FailureOf(PVLtoXML, StreamPointer(new TKvMemoryStream(text)),
                                    StreamPointer(new NarrowStream(100)));
  EXPECT_EQ(failure.second, "the output could not be written");
  // 64 KiB are collected before the first write; a group makes 23 to 55 bytes of XML.
  EXPECT_GT(failure.first, 1000u);
  EXPECT_LT(failure.first, 3000u);
}

TEST(PvlFailure, TellsOfAnOutputThatFailsInTheMiddleAtTheEndOfAGroup) {
  std::string text;
  for (int i = 0; i < 1500; ++i) text += "BEGIN_GROUP = G\n";
  for (int i = 0; i < 1500; ++i) text += "END_GROUP = G\n";
  const Failure failure = FailureOf(PVLtoXML, StreamPointer(new TKvMemoryStream(text)),
                                    StreamPointer(new NarrowStream(100)));
  EXPECT_EQ(failure.second, "the output could not be written");
  // 64 KiB are collected before the first write; either end of a group makes 36 bytes of XML or so.
  EXPECT_GT(failure.first, 1500u);
  EXPECT_LT(failure.first, 2500u);
}

TEST(PvlFailure, GivesTheLineOnWhichTheStatementBegins) {
  EXPECT_EQ(Pvl("A = 1;\n/* comment */\nB = \"x\ny\";\n\n\nEND_GROUP\n=\nA;\n").first, 7u);
  EXPECT_EQ(NasaPvl("\r\nA = (1,\r\n2)\r\nGROUP\r\n").first, 4u);
}

TEST(PvlFailure, GivesTheLineOfAStatementBehindAnotherOnItsLine) {
  EXPECT_EQ(Pvl("A = 1;\nB = 2; END_GROUP = A;\nC = 3;").first, 2u);
}

/// Lines of all lengths around that of a piece, long ones too, before a statement that fails.
void ExpectLinesCounted(const std::function<StreamPointer(std::string)>& make, char filling) {
  for (const std::size_t length :
       {0U, 1U, 1021U, 1022U, 1023U, 1024U, 1025U, 2045U, 2046U, 2047U, 2048U, 5000U}) {
    const std::string line(length, filling);
    const std::string text = line + "\n" + line + "\nA = 1\n" + line + "\nGROUP\n";
    EXPECT_EQ(FailureOf(NASA_PVLtoXML, make(text), StreamPointer(new TKvMemoryStream)),
              Failure(5, "GROUP without '='"))
        << length;
  }
}

TEST(PvlFailure, CountsALineThatComesInPiecesOnce) {
  ExpectLinesCounted([](std::string text) { return StreamPointer(new TKvMemoryStream(text)); },
                     'x');
}

TEST(PvlFailure, CountsLinesOfStreamsThatReadLinesTheirOwnWay) {
  ExpectLinesCounted([](std::string text) { return StreamPointer(new PlainStream(text)); }, 'x');
}

TEST(PvlFailure, CountsLinesOfStreamsThatCannotMove) {
  ExpectLinesCounted(
      [](std::string text) {
        auto* const stream = new PlainStream(text);
        stream->isMovable = false;
        return StreamPointer(stream);
      },
      'x');
}

TEST(PvlFailure, CountsLinesOfZeroBytes) {
  ExpectLinesCounted([](std::string text) { return StreamPointer(new TKvMemoryStream(text)); },
                     '\0');
}

TEST(PvlFailure, IsLeftAloneWhereThereIsNoMemoryToTellIt) {
  const std::string group(100, 'g');
  for (const Converter convert : {Converter{PVLtoXML}, Converter{NASA_PVLtoXML}}) {
    const StreamPointer in(new TKvMemoryStream("A = 1;\nEND_GROUP = " + group + ";\n"));
    const StreamPointer out(new TKvMemoryStream);
    TPvlFailure failure = {kNone.first, kNone.second};
    EXPECT_GT(ravelin_test::FailuresOf([&] { EXPECT_FALSE(convert(in, out, &failure)); },
                                       [&] {
                                         EXPECT_EQ(failure.line, kNone.first);
                                         EXPECT_EQ(failure.reason, kNone.second);
                                       }),
              1u);
    EXPECT_EQ(failure.line, 2u);
    EXPECT_EQ(failure.reason, "END_GROUP without an open group");
  }
}

}  // namespace
