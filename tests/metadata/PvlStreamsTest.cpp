// How the PVL converters read their input line by line, and what they do about streams that fail.
#include <atomic>
#include <cstring>
#include <limits>
#include <new>
#include <random>
#include <stdexcept>
#include <thread>
#include <vector>

#include "metadata/PvlTest.h"
#include "metadata/PvlTexts.h"
#include "support/FailingNew.h"

namespace metadata_test {
namespace {

using kv_test::LimitedStream;
using kv_test::MakeStream;

class PvlStreams : public ::testing::TestWithParam<Dialect> {
 protected:
  bool IsNasa() const { return GetParam() == Dialect::kNasa; }
  Outcome Run(const std::string& text) const { return ConvertText(GetParam(), text); }
  Outcome Expected(const std::string& text) const { return ExpectedOutcome(GetParam(), text); }
  /// A statement that opens the group `a`.
  std::string Begin() const { return IsNasa() ? "GROUP = a;\n" : "BEGIN_GROUP = a;\n"; }
};

INSTANTIATE_TEST_SUITE_P(, PvlStreams, testing::Values(Dialect::kGeneral, Dialect::kNasa),
                         DialectName);

// Lines.

TEST_P(PvlStreams, BreaksALineThatIsLongerThanTheLineBuffer) {
  const std::string head = "A = ";
  const std::string value(1023 - head.size(), 'x');
  const std::string end = IsNasa() ? "" : "\ny";
  EXPECT_EQ(Run(head + value + "y;\n"), Good("\t<A>" + value + end + "</A>\n"));
}

TEST_P(PvlStreams, KeepsALineThatJustFitsTheLineBuffer) {
  const std::string value(1023 - 5, 'x');
  EXPECT_EQ(Run("A = " + value + ";\nB = 1;\n"), Good("\t<A>" + value + "</A>\n\t<B>1</B>\n"));
}

TEST_P(PvlStreams, ReadsLinesAroundMultiplesOfTheLineBufferAsTheModelDoes) {
  for (const unsigned long multiple : {1ul, 2ul, 3ul, 4ul}) {
    for (unsigned long length = multiple * 1023 - 4; length <= multiple * 1023 + 4; ++length) {
      for (const std::string end : {"", "\n", "\r\n", ";\n", ";\r\n", "\n\n"}) {
        const std::string line = "A = \"" + std::string(length - 5 - end.size() / 2, 'x');
        for (const std::string next : {"", "B\" = 1;\n", "B = 1;\nC = \"2\";\n"}) {
          EXPECT_EQ(Run(line + end + next), Expected(line + end + next)) << length;
        }
        const std::string blanks = std::string(length, ' ') + end + "A = 1;\n";
        EXPECT_EQ(Run(blanks), Expected(blanks)) << length;
      }
    }
  }
}

/// A stream of a host's own, of which every line is read.
class OwnMemoryStream : public TKvMemoryStream {
 public:
  using TKvMemoryStream::TKvMemoryStream;
};

/// Random pieces of the syntax with lines about as long as the line buffer among them.
std::string RandomLongLines(std::mt19937* random) {
  std::string text = RandomPvl(random, (*random)() % 200);
  for (unsigned long lines = (*random)() % 4; lines > 0; --lines) {
    const std::size_t length = ((*random)() % 3 + 1) * 1023 - 3 + (*random)() % 7;
    text.append(length, (*random)() % 2 == 0 ? 'x' : ' ');
    if ((*random)() % 4 == 0) text[(*random)() % text.size()] = '\0';
    text += RandomPvl(random, (*random)() % 60);
  }
  return text;
}

TEST_P(PvlStreams, ReadAMemoryStreamWhereItLiesAsAnyStreamLineByLine) {
  std::mt19937 random(20);
  for (int i = 0; i < 20000; ++i) {
    const std::string text = RandomLongLines(&random);
    const StreamPointer whole(new TKvMemoryStream(text));
    const StreamPointer lines(new OwnMemoryStream(text));
    ASSERT_EQ(ConvertStream(GetParam(), whole), ConvertStream(GetParam(), lines))
        << testing::PrintToString(text);
    ASSERT_EQ(whole->GetPos(), lines->GetPos());
    ASSERT_EQ(whole->Eof(), lines->Eof());
  }
}

/// A memory stream that reads every line as another.
class AnsweringMemoryStream : public TKvMemoryStream {
 public:
  using TKvMemoryStream::TKvMemoryStream;
  unsigned long ReadLine(char* buffer, unsigned long size) override {
    const unsigned long consumed = TKvMemoryStream::ReadLine(buffer, size);
    std::strcpy(buffer, "B = 2;");
    return consumed;
  }
};

TEST_P(PvlStreams, ReadAMemoryStreamThroughAReadLineOfItsOwn) {
  const StreamPointer in(new AnsweringMemoryStream("A = 1;\n"));
  EXPECT_EQ(ConvertStream(GetParam(), in), Good("\t<B>2</B>\n"));
}

TEST_P(PvlStreams, BreaksAKeywordThatLiesAcrossTheEndOfTheLineBuffer) {
  for (unsigned long blanks = 1005; blanks <= 1030; ++blanks) {
    const std::string text = "A = 1;\n" + std::string(blanks, ' ') + Begin() + "B = 1;\n";
    EXPECT_EQ(Run(text), Expected(text)) << blanks;
  }
}

TEST_P(PvlStreams, DropsTheRestOfALineBehindANulByte) {
  EXPECT_EQ(Run(std::string("A = 1;\0B = 2;\nC = 3;\n", 21)), Good("\t<A>1</A>\n\t<C>3</C>\n"));
}

TEST_P(PvlStreams, TakesALineOfNulBytesAsAnEmptyLine) {
  EXPECT_EQ(Run(std::string(3000, '\0') + "\nA = 1;\n"), Good("\t<A>1</A>\n"));
}

TEST_P(PvlStreams, GoesOnBehindANulByteInTheNextPieceOfALongLine) {
  const std::string text =
      "A = 1;" + std::string(1, '\0') + std::string(1023 - 7, 'x') + "B = 2;\n";
  EXPECT_EQ(Run(text), Good("\t<A>1</A>\n\t<B>2</B>\n"));
}

TEST_P(PvlStreams, ReadsFromTheBeginningWhereverTheStreamStands) {
  const StreamPointer in = MakeStream("A = 1;\nB = 2;\n");
  in->SetPos(7);
  EXPECT_EQ(ConvertStream(GetParam(), in), Good("\t<A>1</A>\n\t<B>2</B>\n"));
}

TEST_P(PvlStreams, WritesFromThePlaceWhereTheOutputStands) {
  auto* written = new TKvMemoryStream("before");
  const StreamPointer out(written);
  out->SetPos(6);
  EXPECT_TRUE(RunConverter(GetParam(), MakeStream("A = 1;\n"), out));
  EXPECT_EQ(written->Bytes(), "before" + WholeDocument("\t<A>1</A>\n"));
}

TEST_P(PvlStreams, ConvertsTheSameStreamAgain) {
  const StreamPointer in = MakeStream("A = 1;\n");
  EXPECT_EQ(ConvertStream(GetParam(), in), Good("\t<A>1</A>\n"));
  EXPECT_EQ(ConvertStream(GetParam(), in), Good("\t<A>1</A>\n"));
}

TEST_P(PvlStreams, ShareTheStreamsForTheTimeOfTheCallOnly) {
  const StreamPointer in = MakeStream("A = 1;\n");
  const StreamPointer out = MakeStream("");
  EXPECT_TRUE(RunConverter(GetParam(), in, out));
  EXPECT_EQ(in.use_count(), 1);
  EXPECT_EQ(out.use_count(), 1);
}

// Input streams of a host's own.

/// Serves given lines through a ReadLine of its own.
class LineStream : public TKvStream {
 public:
  std::vector<std::string> lines;
  bool open = true;
  bool seeks = true;
  unsigned long size = 1;
  unsigned long emptyReads = 0;  ///< reads that return 0 before each line
  std::string throwing;          ///< the letter of the operation that throws
  bool throwsAnInt = false;

  mutable std::string calls;  ///< I IsOpen, Z getSize, S SetPos, L ReadLine; Eof is not recorded
  std::vector<unsigned long> soughtTo, sizes;

  bool IsOpen() const override {
    Enter("I");
    return open;
  }
  unsigned long getSize() const override {
    Enter("Z");
    return size;
  }
  bool SetPos(unsigned long offset) override {
    Enter("S");
    soughtTo.push_back(offset);
    return seeks;
  }
  bool Eof() const override {
    if (throwing == "E") Throw();
    return next_ >= lines.size();
  }
  unsigned long ReadLine(char* buffer, unsigned long count) override {
    Enter("L");
    sizes.push_back(count);
    if (emptied_ < emptyReads) {
      ++emptied_;
      std::strcpy(buffer, "Z = 9;");
      return 0;
    }
    emptied_ = 0;
    const std::string& line = lines.at(next_++);
    std::memcpy(buffer, line.c_str(), line.size() + 1);
    return line.size() + 1;
  }
  unsigned long Read(void*, unsigned long) override { return 0; }
  unsigned long Write(const void*, unsigned long) override { return 0; }
  unsigned long GetPos() const override { return 0; }

 private:
  void Enter(const char* name) const {
    calls += name;
    if (throwing == name) Throw();
  }
  [[noreturn]] void Throw() const {
    if (throwsAnInt) throw 7;
    throw std::runtime_error("the stream throws");
  }

  unsigned long next_ = 0;
  unsigned long emptied_ = 0;
};

TEST_P(PvlStreams, ReadLinesThroughTheStreamsOwnReadLineAndABufferOf1024Bytes) {
  auto* in = new LineStream;
  in->lines = {"A = 1;", "B = 2;"};
  const StreamPointer held(in);
  EXPECT_EQ(ConvertStream(GetParam(), held), Good("\t<A>1</A>\n\t<B>2</B>\n"));
  EXPECT_EQ(in->sizes, (std::vector<unsigned long>{1024, 1024}));
  EXPECT_EQ(in->soughtTo, std::vector<unsigned long>{0});
}

TEST_P(PvlStreams, AppendNothingForAReadThatReturnsNothingAndReadOn) {
  auto* in = new LineStream;
  in->lines = {"A = \"1", "2\";"};
  in->emptyReads = 3;
  const Outcome expected = IsNasa() ? Good("\t<A>1;\n2</A>\n") : Good("\t<A>1\n2</A>\n");
  EXPECT_EQ(ConvertStream(GetParam(), StreamPointer(in)), expected);
}

TEST_P(PvlStreams, ReadAStreamThatCannotBePositioned) {
  auto* in = new LineStream;
  in->lines = {"A = 1;"};
  in->seeks = false;
  EXPECT_EQ(ConvertStream(GetParam(), StreamPointer(in)), Good("\t<A>1</A>\n"));
}

TEST_P(PvlStreams, SucceedForAStreamWithASizeThatHasNoLines) {
  EXPECT_EQ(ConvertStream(GetParam(), StreamPointer(new LineStream)), Good(""));
}

TEST_P(PvlStreams, TakeAStreamThatIsNotOpenOrEmptyAsTheDialectDoes) {
  for (const bool open : {false, true}) {
    auto* in = new LineStream;
    in->lines = {"A = 1;"};
    in->open = open;
    in->size = open ? 0 : 1;
    const StreamPointer held(in);
    EXPECT_EQ(ConvertStream(GetParam(), held), IsNasa() ? Good("\t<A>1</A>\n") : Bad(""));
  }
}

TEST_P(PvlStreams, AskWhetherTheInputIsThereAsTheDialectDoes) {
  auto* in = new LineStream;
  in->lines = {"A = 1;"};
  const StreamPointer held(in);
  ConvertStream(GetParam(), held);
  EXPECT_EQ(in->calls, IsNasa() ? "SL" : "IZSL");
}

TEST(Pvl, DoesNotReadAStreamThatIsNotOpen) {
  auto* in = new LineStream;
  in->open = false;
  const StreamPointer held(in);
  ConvertStream(Dialect::kGeneral, held);
  EXPECT_EQ(in->calls.find_first_of("SL"), std::string::npos);
}

TEST_P(PvlStreams, TakeAFileThatIsNotOpenAsTheDialectDoes) {
  EXPECT_EQ(ConvertStream(GetParam(), StreamPointer(new TKvFileStream)),
            IsNasa() ? Good("") : Bad(""));
}

TEST_P(PvlStreams, TakeAnEmptyReferenceForTheInputAsAStreamThatIsNotOpen) {
  EXPECT_EQ(ConvertStream(GetParam(), StreamPointer()), IsNasa() ? Good("") : Bad(""));
}

TEST_P(PvlStreams, FailWithoutAnOutput) {
  for (const std::string text : {"", "\n", "A = 1;\n", "END;\n"}) {
    EXPECT_FALSE(RunConverter(GetParam(), MakeStream(text), StreamPointer())) << text;
  }
  EXPECT_FALSE(RunConverter(GetParam(), StreamPointer(), StreamPointer()));
}

TEST_P(PvlStreams, FailForAnOutputFileThatIsNotOpen) {
  EXPECT_FALSE(RunConverter(GetParam(), MakeStream("A = 1;\n"), StreamPointer(new TKvFileStream)));
}

TEST_P(PvlStreams, SurviveAnInputThatThrows) {
  for (const bool anInt : {false, true}) {
    for (const char* operation : {"I", "Z", "S", "E", "L"}) {
      auto* in = new LineStream;
      in->lines = {"A = 1;"};
      in->throwing = operation;
      in->throwsAnInt = anInt;
      const StreamPointer held(in);
      const StreamPointer out = MakeStream("");
      try {
        RunConverter(GetParam(), held, out);
      } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "the stream throws");
      } catch (int thrown) {
        EXPECT_EQ(thrown, 7);
      }
      EXPECT_EQ(held.use_count(), 1) << operation;
      EXPECT_EQ(out.use_count(), 1) << operation;
    }
  }
}

// The writer, which leaves a document behind whatever happens, is made when all is read.
TEST_P(PvlStreams, WriteNothingForAnInputThatThrows) {
  for (const char* operation : {"S", "E", "L"}) {
    auto* in = new LineStream;
    in->lines = {"A = 1;"};
    in->throwing = operation;
    auto* written = new TKvMemoryStream;
    const StreamPointer out(written);
    EXPECT_THROW(RunConverter(GetParam(), StreamPointer(in), out), std::runtime_error) << operation;
    EXPECT_EQ(written->Bytes(), "") << operation;
  }
}

// Lost writes.

TEST_P(PvlStreams, FailForEveryOutputThatTakesLessThanItIsGiven) {
  const std::string text = "A = 1;\n" + Begin() + "B = \"x;\";\n" + "END_GROUP = a;\nEND;\n";
  const std::string whole = Run(text).xml;
  for (unsigned long room = 0; room <= whole.size() + 1; ++room) {
    auto* taken = new LimitedStream(room);
    const StreamPointer out(taken);
    EXPECT_EQ(RunConverter(GetParam(), MakeStream(text), out), room >= whole.size()) << room;
    EXPECT_EQ(taken->Bytes(), whole.substr(0, room));
  }
}

TEST_P(PvlStreams, FailForAnOutputThatTakesNothingOfAnEmptyDocument) {
  EXPECT_FALSE(RunConverter(GetParam(), MakeStream("\n"), StreamPointer(new LimitedStream(0))));
}

TEST_P(PvlStreams, FailWhenAWriteFailsInTheMiddleOfAnyKindOfStatement) {
  const std::string value(900, 'x');
  const std::string texts[] = {Repeated(2000, "A = " + value + ";\n"), Repeated(100000, Begin()),
                               Repeated(50000, Begin()) + Repeated(50000, "END_GROUP = a;\n"),
                               Repeated(100000, Begin() + "END_GROUP = a;\n")};
  for (const std::string& text : texts) {
    const std::string whole = Run(text).xml;
    for (const unsigned long room : {0ul, 1ul, whole.size() / 2, whole.size() - 1}) {
      auto* taken = new LimitedStream(room);
      const StreamPointer out(taken);
      EXPECT_FALSE(RunConverter(GetParam(), MakeStream(text), out));
      EXPECT_EQ(taken->Bytes(), whole.substr(0, room));
    }
    auto* taken = new LimitedStream(whole.size());
    const StreamPointer out(taken);
    EXPECT_TRUE(RunConverter(GetParam(), MakeStream(text), out));
  }
}

TEST_P(PvlStreams, GiveNothingMoreToAnOutputThatFailed) {
  auto* taken = new LimitedStream(0);
  const StreamPointer out(taken);
  EXPECT_FALSE(RunConverter(GetParam(), MakeStream(Repeated(100000, "A = 1;\n")), out));
  EXPECT_EQ(taken->Writes(), 1u);
}

/// Throws when it is written to.
class ThrowingOutput : public LimitedStream {
 public:
  ThrowingOutput() : LimitedStream(0) {}
  unsigned long Write(const void*, unsigned long) override {
    throw std::runtime_error("the stream throws");
  }
};

TEST_P(PvlStreams, DoNotSucceedForAnOutputThatThrows) {
  for (const std::string& text : {std::string("A = 1;\n"), Repeated(100000, "A = 1;\n")}) {
    const StreamPointer out(new ThrowingOutput);
    bool result = false;
    try {
      result = RunConverter(GetParam(), MakeStream(text), out);
    } catch (const std::runtime_error& error) {
      EXPECT_STREQ(error.what(), "the stream throws");
    }
    EXPECT_FALSE(result);
    EXPECT_EQ(out.use_count(), 1);
  }
}

TEST_P(PvlStreams, SurviveEveryAllocationThatFailsAndNeverTakeALossForASuccess) {
  const std::string text = Begin() + "B = (1, \"" + std::string(100, 'x') + "\");\n" +
                           std::string(3000, ' ') +
                           "\nEND_GROUP = a;\nC = " + std::string(500, 'y') + ";\n";
  const Outcome whole = Expected(text);
  for (const unsigned long failures : {1ul, ~0ul}) {
    bool completed = false;
    for (unsigned long successes = 0; !completed; ++successes) {
      ASSERT_LT(successes, 10000u);
      const StreamPointer in = MakeStream(text);
      auto* written = new TKvMemoryStream;
      const StreamPointer out(written);
      bool result = false;
      try {
        const ravelin_test::FailingNew failing(successes, failures);
        result = RunConverter(GetParam(), in, out);
      } catch (const std::bad_alloc&) {
        EXPECT_TRUE(ravelin_test::AllocationFailed());
      }
      EXPECT_EQ(in.use_count(), 1);
      EXPECT_EQ(out.use_count(), 1);
      EXPECT_TRUE(!result || written->Bytes() == whole.xml) << successes;
      completed = !ravelin_test::AllocationFailed();
      EXPECT_TRUE(result || !completed);
    }
  }
}

TEST_P(PvlStreams, ConvertOnSeveralThreadsAtOnce) {
  std::vector<std::string> texts;
  std::vector<Outcome> expected;
  for (int i = 0; i < 4; ++i) {
    const std::string number = std::to_string(i);
    texts.push_back(
        Repeated(300, Begin() + "V" + number + " = (" + number + ", 2);\n" + "END_GROUP = a;\n"));
    expected.push_back(Expected(texts.back()));
  }
  std::vector<std::thread> threads;
  std::atomic<int> right = 0;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    threads.emplace_back([&, i] {
      for (int turn = 0; turn < 20; ++turn) right += Run(texts[i]) == expected[i];
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, 80);
}

}  // namespace
}  // namespace metadata_test
