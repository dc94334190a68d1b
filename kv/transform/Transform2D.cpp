#include "Kv/Transform2D.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "Kv/XIni.h"

namespace {

constexpr std::array<const char*, 6> kNames = {"a", "b", "c", "d", "e", "f"};

// p q - r s, rounded as if computed once: the error of the second product is added back (W. Kahan's
// scheme). It is 0 only where the products are equal.
double DifferenceOfProducts(double p, double q, double r, double s) {
  const double product = r * s;
  const double error = std::fma(-r, s, product);
  return std::fma(p, q, -product) + error;
}

// One row of a transform, divided by a power of two so that the larger factor is in [1, 2).
struct ScaledRow {
  ScaledRow(double x, double y, double constant) {
    const double largest = std::max(std::fabs(x), std::fabs(y));
    exponent = largest > 0 ? std::ilogb(largest) : 0;
    xFactor = std::scalbn(x, -exponent);
    yFactor = std::scalbn(y, -exponent);
    offset = std::scalbn(constant, -exponent);
  }

  int exponent;
  double xFactor;
  double yFactor;
  double offset;
};

bool IsFinite(const vec_t_<double, 6>& values) {
  return std::all_of(std::begin(values.v), std::end(values.v),
                     [](double value) { return std::isfinite(value); });
}

// Adding 0 makes a negative zero positive.
double Quotient(double dividend, double divisor, int exponent) {
  return std::scalbn(dividend / divisor, -exponent) + 0.0;
}

}  // namespace

TKv2DTransform::TKv2DTransform() : coefficients_{{1, 0, 0, 0, 1, 0}} {}

TKv2DTransform::TKv2DTransform(double a, double b, double c, double d, double e, double f)
    : coefficients_{{a, b, c, d, e, f}} {}

vec_t_<double, 6> TKv2DTransform::Coefficients() const {
  return coefficients_;
}

vec_t_<double, 2> TKv2DTransform::Apply(double x, double y) const {
  const auto& k = coefficients_.v;
  return {{k[0] * x + k[1] * y + k[2], k[3] * x + k[4] * y + k[5]}};
}

bool TKv2DTransform::Invert(TKv2DTransform* inverse) const {
  const auto& k = coefficients_.v;
  if (!IsFinite(coefficients_)) return false;
  const ScaledRow top(k[0], k[1], k[2]);
  const ScaledRow bottom(k[3], k[4], k[5]);
  const double determinant =
      DifferenceOfProducts(top.xFactor, bottom.yFactor, top.yFactor, bottom.xFactor);
  if (determinant == 0) return false;
  const double c = DifferenceOfProducts(top.yFactor, bottom.offset, bottom.yFactor, top.offset);
  const double f = DifferenceOfProducts(bottom.xFactor, top.offset, top.xFactor, bottom.offset);
  const TKv2DTransform inverted(
      Quotient(bottom.yFactor, determinant, top.exponent),
      Quotient(-top.yFactor, determinant, bottom.exponent), Quotient(c, determinant, 0),
      Quotient(-bottom.xFactor, determinant, top.exponent),
      Quotient(top.xFactor, determinant, bottom.exponent), Quotient(f, determinant, 0));
  if (!IsFinite(inverted.coefficients_)) return false;
  if (inverse != nullptr) *inverse = inverted;
  return true;
}

var_a_legacy::var_a<TKv2DTransform*> TKv2DTransform::LoadE(TKvXIniReader* reader) {
  if (reader == nullptr) throw TKvError("Transform: there is no reader");
  vec_t_<double, 6> k{};
  for (int i = 0; i < 6; ++i) {
    k[i] = reader->ReadE<double>(reader->FindFE(kNames[static_cast<std::size_t>(i)], 0));
  }
  return var_a_legacy::var_a<TKv2DTransform*>(
      new TKv2DTransform(k[0], k[1], k[2], k[3], k[4], k[5]));
}

void TKv2DTransform::SaveE(TKvXIniWriter* writer) const {
  if (writer == nullptr) throw TKvError("Transform: there is no writer");
  for (int i = 0; i < 6; ++i) {
    const std::string name = kNames[static_cast<std::size_t>(i)];
    if (writer->WriteS<double>(name, coefficients_[i])) continue;
    writer->ReportWriteError();
    throw TKvError("Transform: the coefficient " + name + " could not be written");
  }
}
