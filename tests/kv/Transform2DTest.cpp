#include "Kv/Transform2D.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "CommaLocale.h"
#include "XIniTest.h"

namespace kv_test {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

bool IsSame(const TKv2DTransform& a, const TKv2DTransform& b) {
  const auto x = a.Coefficients();
  const auto y = b.Coefficients();
  return std::memcmp(&x, &y, sizeof x) == 0;
}

var_a_legacy::var_a<TKv2DTransform*> SavedAndLoaded(const TKv2DTransform& transform) {
  TKvXIniReader reader(
      MakeStream(Written([&](TKvXIniStreamWriter& writer) { transform.SaveE(&writer); })));
  return TKv2DTransform::LoadE(&reader);
}

TEST(Transform2D, IsTheIdentityAtFirst) {
  EXPECT_EQ(TKv2DTransform().Coefficients(), (vec_t_<double, 6>{{1, 0, 0, 0, 1, 0}}));
}

TEST(Transform2D, KeepsItsCoefficientsInOrder) {
  EXPECT_EQ(TKv2DTransform(1, 2, 3, 4, 5, 6).Coefficients(),
            (vec_t_<double, 6>{{1, 2, 3, 4, 5, 6}}));
}

TEST(Transform2D, MapsAPoint) {
  EXPECT_EQ(TKv2DTransform(1, 2, 3, 4, 5, 6).Apply(10, 100), (vec_t_<double, 2>{{213, 546}}));
}

TEST(Transform2D, InvertsExactlyWhereTheInverseIsExact) {
  TKv2DTransform inverse;
  ASSERT_TRUE(TKv2DTransform(2, 0, 6, 0, -4, 8).Invert(&inverse));
  EXPECT_EQ(inverse.Coefficients(), (vec_t_<double, 6>{{0.5, 0, -3, 0, -0.25, 2}}));
  ASSERT_TRUE(TKv2DTransform(1, 2, 3, 3, 4, 5).Invert(&inverse));
  EXPECT_EQ(inverse.Coefficients(), (vec_t_<double, 6>{{-2, 1, 1, 1.5, -0.5, -2}}));
}

TEST(Transform2D, InvertsTheIdentityWithoutNegativeZeros) {
  TKv2DTransform inverse(9, 9, 9, 9, 9, 9);
  ASSERT_TRUE(TKv2DTransform().Invert(&inverse));
  EXPECT_TRUE(IsSame(inverse, TKv2DTransform()));
}

TEST(Transform2D, InvertsIntoItself) {
  TKv2DTransform transform(2, 0, 6, 0, -4, 8);
  ASSERT_TRUE(transform.Invert(&transform));
  EXPECT_EQ(transform.Coefficients(), (vec_t_<double, 6>{{0.5, 0, -3, 0, -0.25, 2}}));
}

TEST(Transform2D, TellsThatItCanBeInvertedWithoutAPlaceForTheInverse) {
  EXPECT_TRUE(TKv2DTransform().Invert(nullptr));
  EXPECT_FALSE(TKv2DTransform(0, 0, 0, 0, 0, 0).Invert(nullptr));
}

TEST(Transform2D, BringsPointsBack) {
  std::mt19937_64 random(23);
  std::uniform_real_distribution<double> values(-1000, 1000);
  for (int i = 0; i < 10000; ++i) {
    const TKv2DTransform transform(values(random), values(random), values(random), values(random),
                                   values(random), values(random));
    TKv2DTransform inverse;
    ASSERT_TRUE(transform.Invert(&inverse));
    const auto k = transform.Coefficients();
    const double determinant = k[0] * k[4] - k[1] * k[3];
    if (std::fabs(determinant) < 1000) continue;
    const auto there = transform.Apply(3, -7);
    const auto back = inverse.Apply(there[0], there[1]);
    EXPECT_NEAR(back[0], 3, 1e-6);
    EXPECT_NEAR(back[1], -7, 1e-6);
  }
}

TEST(Transform2D, DoesNotInvertASingularOneAndStoresNothing) {
  for (const TKv2DTransform& singular :
       {TKv2DTransform(0, 0, 0, 0, 0, 0), TKv2DTransform(1, 2, 0, 2, 4, 0),
        TKv2DTransform(0, 1, 0, 0, 1, 0), TKv2DTransform(0.1, 0.3, 0, 0.2, 0.6, 0)}) {
    TKv2DTransform inverse(1, 2, 3, 4, 5, 6);
    EXPECT_FALSE(singular.Invert(&inverse));
    EXPECT_TRUE(IsSame(inverse, TKv2DTransform(1, 2, 3, 4, 5, 6)));
  }
}

TEST(Transform2D, DoesNotInvertWhatIsNotFinite) {
  for (int i = 0; i < 6; ++i) {
    for (const double odd : {kInfinity, -kInfinity, kNaN}) {
      vec_t_<double, 6> k{{1, 0, 0, 0, 1, 0}};
      k[i] = odd;
      EXPECT_FALSE(TKv2DTransform(k[0], k[1], k[2], k[3], k[4], k[5]).Invert(nullptr));
    }
  }
}

TEST(Transform2D, DoesNotInvertWhenTheInverseWouldNotBeFinite) {
  EXPECT_FALSE(TKv2DTransform(1e-310, 0, 0, 0, 1, 0).Invert(nullptr));
  EXPECT_FALSE(TKv2DTransform(1e-200, 0, 1e200, 0, 1, 0).Invert(nullptr));
}

TEST(Transform2D, InvertsLargeAndSmallCoefficients) {
  TKv2DTransform inverse;
  for (const int exponent : {-1000, -600, 600, 1000}) {
    const double scale = std::ldexp(1, exponent);
    ASSERT_TRUE(TKv2DTransform(scale, 0, 0, 0, scale, 0).Invert(&inverse)) << exponent;
    EXPECT_EQ(inverse.Coefficients()[0], std::ldexp(1, -exponent));
    EXPECT_EQ(inverse.Coefficients()[4], std::ldexp(1, -exponent));
  }
  ASSERT_TRUE(TKv2DTransform(1e300, 0, 0, 0, 1e-300, 0).Invert(&inverse));
}

TEST(Transform2D, TellsNearlySingularFromSingular) {
  const double next = std::nextafter(1.0, 2.0);
  TKv2DTransform inverse;
  ASSERT_TRUE(TKv2DTransform(next, 1, 0, 1, 1, 0).Invert(&inverse));
  EXPECT_EQ(inverse.Coefficients()[0], 1 / (next - 1));
  // The products differ by 2^-104 alone.
  ASSERT_TRUE(TKv2DTransform(next, 1, 0, 1, 2 - next, 0).Invert(&inverse));
  EXPECT_EQ(inverse.Coefficients()[1], std::ldexp(1, 104));
}

TEST(Transform2D, SavesItsCoefficientsAsTheItemsAToF) {
  const std::string text = Written([](TKvXIniStreamWriter& writer) {
    TKv2DTransform(1, 0.1, -2, kInfinity, -kInfinity, kNaN).SaveE(&writer);
  });
  EXPECT_EQ(text, Document("\t<a>1</a>\n"
                           "\t<b>0.10000000000000001</b>\n"
                           "\t<c>-2</c>\n"
                           "\t<d>inf</d>\n"
                           "\t<e>-inf</e>\n"
                           "\t<f>nan</f>\n"));
}

void ExpectEveryBitKept() {
  std::mt19937_64 random(29);
  for (int i = 0; i < 2000; ++i) {
    vec_t_<double, 6> k{};
    for (double& value : k.v) {
      do {
        const auto bits = random();
        std::memcpy(&value, &bits, sizeof value);
      } while (std::isnan(value));
    }
    const TKv2DTransform transform(k[0], k[1], k[2], k[3], k[4], k[5]);
    ASSERT_TRUE(IsSame(*SavedAndLoaded(transform), transform));
  }
}

TEST(Transform2D, LoadsTheSameDoublesThatItSaved) {
  ExpectEveryBitKept();
  const TKv2DTransform limits(-0.0, std::numeric_limits<double>::denorm_min(),
                              std::numeric_limits<double>::max(), kInfinity, -kInfinity,
                              std::numeric_limits<double>::min());
  EXPECT_TRUE(IsSame(*SavedAndLoaded(limits), limits));
}

TEST(Transform2D, LoadsTheSameDoublesInALocaleWithADecimalComma) {
  const CommaLocale locale;
  if (!locale.IsThere()) GTEST_SKIP() << "the machine has no locale with a decimal comma";
  ExpectEveryBitKept();
}

TEST(Transform2D, LoadsNaNAsNaN) {
  const auto loaded = SavedAndLoaded(TKv2DTransform(kNaN, 1, 2, -kNaN, 3, 4));
  EXPECT_TRUE(std::isnan(loaded->Coefficients()[0]));
  EXPECT_TRUE(std::isnan(loaded->Coefficients()[3]));
  EXPECT_EQ(loaded->Coefficients()[5], 4);
}

TEST(Transform2D, LoadsItemsInAnyOrderAmongOthers) {
  TKvXIniReader reader(MakeStream("<r f='6' a='1'><e>5</e><x/><d>4</d><c>3</c><b>2</b></r>"));
  EXPECT_EQ(TKv2DTransform::LoadE(&reader)->Coefficients(),
            (vec_t_<double, 6>{{1, 2, 3, 4, 5, 6}}));
}

TEST(Transform2D, ThrowsWhenACoefficientIsMissingOrNoNumber) {
  TKvXIniReader missing(MakeStream("<r a='1' b='2' c='3' d='4' e='5'/>"));
  EXPECT_THROW(TKv2DTransform::LoadE(&missing), TKvError);
  TKvXIniReader broken(MakeStream("<r a='1' b='2' c='3' d='4' e='5' f='x'/>"));
  EXPECT_THROW(TKv2DTransform::LoadE(&broken), TKvError);
}

TEST(Transform2D, ThrowsWithoutAReaderOrWriter) {
  EXPECT_THROW(TKv2DTransform::LoadE(nullptr), TKvError);
  EXPECT_THROW(TKv2DTransform().SaveE(nullptr), TKvError);
}

TEST(Transform2D, ThrowsWhenAWriteFails) {
  TKvXIniStreamWriter writer(MakeStream(""), 0, TKvXIniStreamWriter::htDocument);
  writer.Close();
  EXPECT_EQ(ErrorOf([&] { TKv2DTransform().SaveE(&writer); }), "XML-ini: the writer is closed");
}

TEST(Transform2D, ThrowsWhenAWriteFailsAndTheReportReturns) {
  class QuietWriter : public TKvXIniWriter {
   public:
    void ReportWriteError() override { ++reports; }
    int reports = 0;
  };
  QuietWriter writer;
  EXPECT_THROW(TKv2DTransform().SaveE(&writer), TKvError);
  EXPECT_EQ(writer.reports, 1);
}

}  // namespace
}  // namespace kv_test
