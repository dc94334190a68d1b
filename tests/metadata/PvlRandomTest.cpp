// Random texts: the converters do what the plain model does.
#include <algorithm>

#include "metadata/PvlTest.h"
#include "metadata/PvlTexts.h"

namespace metadata_test {
namespace {

/// What came up in a series of texts, so that a series cannot pass for being dull.
struct Variety {
  unsigned long good = 0, bad = 0, sections = 0, ends = 0, writes = 0;

  void Add(const Conversion& conversion) {
    ++(conversion.result ? good : bad);
    for (const WriterCall& call : conversion.calls) {
      ++(call.kind == WriterCall::kBeginSection ? sections
         : call.kind == WriterCall::kEndSection ? ends
                                                : writes);
    }
  }
  unsigned long Least() const { return std::min({good, bad, sections, ends, writes}); }
};

class PvlRandom : public ::testing::TestWithParam<Dialect> {
 protected:
  void Compare(const std::string& text) {
    const Conversion expected = Convert(text, GetParam());
    variety_.Add(expected);
    ASSERT_EQ(ConvertText(GetParam(), text), (Outcome{expected.result, Replay(expected.calls)}))
        << testing::PrintToString(text);
  }

  Variety variety_;
};

TEST_P(PvlRandom, ShortTextsGiveTheModelsDocument) {
  std::mt19937 random(20240501);
  for (int i = 0; i < 100000; ++i) {
    const std::string text = RandomPvl(&random, random() % 61);
    ASSERT_NO_FATAL_FAILURE(Compare(text)) << i;
  }
  EXPECT_GT(variety_.Least(), 2000u);
}

TEST_P(PvlRandom, LongTextsGiveTheModelsDocument) {
  std::mt19937 random(20240502);
  for (int i = 0; i < 1000; ++i) {
    const std::string text = RandomPvl(&random, 1000 + random() % 2001);
    ASSERT_NO_FATAL_FAILURE(Compare(text)) << i;
  }
  EXPECT_GT(variety_.Least(), 50u);
}

TEST_P(PvlRandom, TextsWithLinesBeyondTheLineBufferGiveTheModelsDocument) {
  std::mt19937 random(20240503);
  for (int i = 0; i < 1000; ++i) {
    const std::string text = RandomPvlWithLongLines(&random, 1000 + random() % 2001);
    ASSERT_NO_FATAL_FAILURE(Compare(text)) << i;
  }
  EXPECT_GT(variety_.Least(), 50u);
}

TEST_P(PvlRandom, TextsWithValuesOfManyLinesGiveTheModelsDocument) {
  std::mt19937 random(20240505);
  for (int i = 0; i < 300; ++i) {
    const std::string text = RandomPvlWithLongValues(&random, random() % 30000);
    ASSERT_NO_FATAL_FAILURE(Compare(text)) << i;
  }
  EXPECT_GT(variety_.writes, 300u);
}

TEST_P(PvlRandom, TextsOfAnyBytesGiveTheModelsDocument) {
  std::mt19937 random(20240504);
  for (int i = 0; i < 20000; ++i) {
    std::string text(random() % 61, '\0');
    for (char& c : text) c = static_cast<char>(random());
    text.insert(random() % (text.size() + 1), "\nA =");
    ASSERT_NO_FATAL_FAILURE(Compare(text)) << i;
  }
  EXPECT_GT(variety_.writes, 100u);
}

TEST_P(PvlRandom, ATextCutAtEveryByteGivesTheModelsDocument) {
  const std::string group = GetParam() == Dialect::kNasa ? "GROUP" : "BEGIN_GROUP";
  const std::string text = "A = \"x;\\\"y\\z\";\r\n" + group + " = IMAGE;\n  L = (1, (2, 3));\n" +
                           group + " = B\n/* no */ C 3\nEND_GROUP = B;\nEND_GROUP = IMAGE;\nEND;\n";
  for (unsigned long size = 0; size <= text.size(); ++size) {
    ASSERT_NO_FATAL_FAILURE(Compare(text.substr(0, size)));
  }
}

INSTANTIATE_TEST_SUITE_P(, PvlRandom, testing::Values(Dialect::kGeneral, Dialect::kNasa),
                         DialectName);

}  // namespace
}  // namespace metadata_test
