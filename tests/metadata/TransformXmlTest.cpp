#include <gmock/gmock.h>
#include <sys/resource.h>

#include <array>
#include <bit>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "SatCommonUtils/Metadata.h"
#include "kv/BuildKind.h"
#include "kv/XIniTest.h"
#include "metadata/RecordingWriter.h"

namespace {

using kv_test::Document;
using kv_test::MakeStream;
using kv_test::Written;
using metadata_test::RecordingWriter;
using namespace SatCommonUtils;
using ::testing::ElementsAre;
using TransformReference = var_a_legacy::var_a<TKv2DTransform*>;

const TKv2DTransform kTransform(1.5, -2, 0.25, 4, 5, -6);
constexpr const char* kItems = "<a>1.5</a><b>-2</b><c>0.25</c><d>4</d><e>5</e><f>-6</f>";

std::array<std::uint64_t, 6> Bits(const TKv2DTransform& transform) {
  const vec_t_<double, 6> coefficients = transform.Coefficients();
  std::array<std::uint64_t, 6> bits{};
  for (int i = 0; i < 6; ++i)
    bits.at(static_cast<std::size_t>(i)) = std::bit_cast<std::uint64_t>(coefficients[i]);
  return bits;
}

/// A reader that keeps the identifiers with which sections are left.
class RecordingReader : public TKvXIniReader {
 public:
  explicit RecordingReader(const std::string& content)
      : TKvXIniReader(MakeStream(Document(content))) {}

  std::vector<unsigned long> left;

  void LeaveSection(unsigned long section) override {
    left.push_back(section);
    TKvXIniReader::LeaveSection(section);
  }
};

/// A double of any bits that is not a NaN.
double RandomDouble(std::mt19937_64* random) {
  for (;;) {
    const double value = std::bit_cast<double>((*random)());
    if (!std::isnan(value)) return value;
  }
}

TransformReference SavedAndLoaded(const TKv2DTransform& transform) {
  const std::string bytes = Written([&](TKvXIniStreamWriter& writer) {
    EXPECT_TRUE(SaveToXMLE(transform, &writer, "georeference"));
  });
  TKvXIniReader reader(MakeStream(bytes));
  return CreateFromXMLE(&reader, "georeference");
}

TEST(TransformXmlTest, SavedAndLoadedRandomTransformsHaveTheSameBits) {
  std::mt19937_64 random(12);
  for (int i = 0; i < 500; ++i) {
    double v[6];
    for (double& value : v) value = RandomDouble(&random);
    const TKv2DTransform transform(v[0], v[1], v[2], v[3], v[4], v[5]);
    const TransformReference loaded = SavedAndLoaded(transform);
    ASSERT_TRUE(loaded);
    ASSERT_EQ(Bits(*loaded), Bits(transform));
  }
}

TEST(TransformXmlTest, SavedAndLoadedTransformsOfOddNumbersHaveTheSameBits) {
  using Limits = std::numeric_limits<double>;
  const TKv2DTransform transform(-0.0, Limits::denorm_min(), Limits::max(), HUGE_VAL, -HUGE_VAL,
                                 0.1);
  EXPECT_EQ(Bits(*SavedAndLoaded(transform)), Bits(transform));
}

TEST(TransformXmlTest, ANaNIsLoadedAsANaN) {
  const TKv2DTransform transform(std::nan(""), 1, 2, 3, 4, 5);
  EXPECT_TRUE(std::isnan(SavedAndLoaded(transform)->Coefficients()[0]));
}

TEST(TransformXmlTest, BothWaysOfSavingWriteTheSame) {
  const auto saved = [](auto save) {
    return Written([&](TKvXIniStreamWriter& writer) { save(kTransform, &writer, "any name <"); });
  };
  EXPECT_EQ(saved(SaveToXML), saved(SaveToXMLE));
}

TEST(TransformXmlTest, SavingBeginsASectionWritesTheItemsAndEndsIt) {
  RecordingWriter writer;
  EXPECT_TRUE(SaveToXMLE(kTransform, &writer, "s"));
  EXPECT_THAT(writer.calls,
              ElementsAre("begin s", "a=1.5", "b=-2", "c=0.25", "d=4", "e=5", "f=-6", "end 4711"));
}

TEST(TransformXmlTest, SavingWithoutExceptionsMakesTheSameCalls) {
  RecordingWriter writer;
  EXPECT_TRUE(SaveToXML(kTransform, &writer, "s"));
  EXPECT_THAT(writer.calls,
              ElementsAre("begin s", "a=1.5", "b=-2", "c=0.25", "d=4", "e=5", "f=-6", "end 4711"));
}

TEST(TransformXmlTest, ASectionThatDoesNotEndMakesSavingFalse) {
  RecordingWriter writer;
  writer.endResult = false;
  EXPECT_FALSE(SaveToXMLE(kTransform, &writer, "s"));
}

TEST(TransformXmlTest, ASectionThatDoesNotEndIsNotLookedAtWithoutExceptions) {
  RecordingWriter writer;
  writer.endResult = false;
  EXPECT_TRUE(SaveToXML(kTransform, &writer, "s"));
}

TEST(TransformXmlTest, ASectionThatDoesNotBeginThrows) {
  RecordingWriter writer;
  writer.sectionId = 0;
  EXPECT_THROW(SaveToXMLE(kTransform, &writer, "s"), TKvError);
  EXPECT_THAT(writer.calls, ElementsAre("begin s"));
}

TEST(TransformXmlTest, ASectionThatDoesNotBeginGivesFalseWithoutExceptions) {
  RecordingWriter writer;
  writer.sectionId = 0;
  EXPECT_FALSE(SaveToXML(kTransform, &writer, "s"));
  EXPECT_THAT(writer.calls, ElementsAre("begin s"));
}

TEST(TransformXmlTest, AnItemThatIsNotWrittenThrowsAndLeavesTheSectionOpen) {
  RecordingWriter writer;
  writer.itemResult = false;
  EXPECT_THROW(SaveToXMLE(kTransform, &writer, "s"), TKvError);
  EXPECT_THAT(writer.calls, ElementsAre("begin s", "a=1.5"));
}

TEST(TransformXmlTest, AnItemThatIsNotWrittenGivesFalseWithoutExceptions) {
  RecordingWriter writer;
  writer.itemResult = false;
  EXPECT_FALSE(SaveToXML(kTransform, &writer, "s"));
  EXPECT_THAT(writer.calls, ElementsAre("begin s", "a=1.5"));
}

TEST(TransformXmlTest, WhatEndingTheSectionThrowsPasses) {
  RecordingWriter writer;
  writer.endThrows = true;
  EXPECT_THROW(SaveToXMLE(kTransform, &writer, "s"), int);
}

TEST(TransformXmlTest, WhateverEndingTheSectionThrowsGivesFalseWithoutExceptions) {
  RecordingWriter writer;
  writer.endThrows = true;
  EXPECT_FALSE(SaveToXML(kTransform, &writer, "s"));
}

TEST(TransformXmlTest, SavingToAStreamWithoutRoomFails) {
  TKvXIniStreamWriter writer(var_a_legacy::var_a<TKvStream*>(new kv_test::LimitedStream(0)), 0,
                             TKvXIniStreamWriter::htDocument);
  EXPECT_FALSE(writer.Flush());
  EXPECT_THROW(SaveToXMLE(kTransform, &writer, "s"), TKvError);
  EXPECT_FALSE(SaveToXML(kTransform, &writer, "s"));
}

TEST(TransformXmlTest, LoadingReadsTheItemsOfTheSection) {
  RecordingReader reader("<a>9</a><s>" + std::string(kItems) + "</s>");
  EXPECT_EQ(Bits(*CreateFromXMLE(&reader, "s")), Bits(kTransform));
}

TEST(TransformXmlTest, TheFirstSectionOfTheNameIsLoaded) {
  RecordingReader reader("<s>" + std::string(kItems) + "</s><s/>");
  EXPECT_EQ(Bits(*CreateFromXMLE(&reader, "s")), Bits(kTransform));
}

TEST(TransformXmlTest, LoadingLeavesTheSectionByItsIdentifier) {
  const std::string content = "<s>" + std::string(kItems) + "</s><other>1</other>";
  RecordingReader other(content);
  const unsigned long identifier = other.EnterSectionSE("s");
  RecordingReader reader(content);
  CreateFromXMLE(&reader, "s");
  EXPECT_THAT(reader.left, ElementsAre(identifier));
  EXPECT_EQ(reader.FindF("other", 0), 1u) << "it stands where it stood";
}

TEST(TransformXmlTest, LoadingReturnsTheOnlyReference) {
  RecordingReader reader("<s>" + std::string(kItems) + "</s>");
  EXPECT_EQ(CreateFromXMLE(&reader, "s").use_count(), 1);
}

TEST(TransformXmlTest, LoadingWorksInsideASection) {
  RecordingReader reader("<outer><s>" + std::string(kItems) + "</s><x/></outer><s/>");
  reader.EnterSectionSE("outer");
  EXPECT_EQ(Bits(*CreateFromXMLE(&reader, "s")), Bits(kTransform));
  EXPECT_EQ(reader.FindF("x", 0), 1u) << "it stands in the outer section";
}

TEST(TransformXmlTest, LoadingASectionThatIsMissingThrowsAndMovesNothing) {
  RecordingReader reader("<other>1</other>");
  EXPECT_THROW(CreateFromXMLE(&reader, "s"), TKvError);
  EXPECT_TRUE(reader.left.empty());
  EXPECT_EQ(reader.FindF("other", 0), 0u);
}

TEST(TransformXmlTest, LoadingThatFailsThrowsAndLeavesTheSectionEntered) {
  RecordingReader reader("<other>1</other><s><a>1</a><inner>2</inner></s>");
  EXPECT_THROW(CreateFromXMLE(&reader, "s"), TKvError);
  EXPECT_TRUE(reader.left.empty());
  EXPECT_EQ(reader.FindF("inner", 0), 1u);
}

TEST(TransformXmlTest, LoadingWhatIsNoNumberThrowsAndLeavesTheSectionEntered) {
  RecordingReader reader("<s><a>x</a><b>1</b><c>1</c><d>1</d><e>1</e><f>1</f></s>");
  EXPECT_THROW(CreateFromXMLE(&reader, "s"), TKvError);
  EXPECT_TRUE(reader.left.empty());
  EXPECT_EQ(reader.GetItemCount(), 6u);
}

/// On a stack of 256 KiB, so that it is soon used up.
void CreateOnASmallStack(TKvXIniReader* reader, const char* section) {
  const rlimit stack{256 * 1024, 256 * 1024};
  const rlimit noCore{0, 0};
  if (setrlimit(RLIMIT_STACK, &stack) != 0 || setrlimit(RLIMIT_CORE, &noCore) != 0) std::_Exit(2);
  CreateFromXML(reader, section);
  std::_Exit(0);
}

class CreateFromXmlAloneTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (kv_test::kSanitized) GTEST_SKIP() << "a sanitizer reports the end of the stack its own way";
    GTEST_FLAG_SET(death_test_style, "threadsafe");
  }
};

TEST_F(CreateFromXmlAloneTest, WithoutAnotherModulesSymbolItCallsItselfUntilTheStackIsUsedUp) {
  RecordingReader reader("<s>" + std::string(kItems) + "</s>");
  EXPECT_EXIT(CreateOnASmallStack(&reader, "s"), ::testing::KilledBySignal(SIGSEGV), "");
}

TEST_F(CreateFromXmlAloneTest, ItDoesSoWhetherTheSectionIsThereOrNot) {
  RecordingReader reader("<other/>");
  EXPECT_EXIT(CreateOnASmallStack(&reader, "s"), ::testing::KilledBySignal(SIGSEGV), "");
}

}  // namespace
