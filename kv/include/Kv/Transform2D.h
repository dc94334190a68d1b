/// @file
/// Affine transforms of the plane.
#pragma once

#include "Kv/Export.h"
#include "Kv/VarA.h"
#include "Kv/Vec.h"

class TKvXIniReader;
class TKvXIniWriter;

/// x' = a x + b y + c, y' = d x + e y + f. A value: copies are independent.
class KV_EXPORT TKv2DTransform {
 public:
  /// The identity.
  TKv2DTransform();
  /// The transform of these coefficients, whatever they are.
  TKv2DTransform(double a, double b, double c, double d, double e, double f);

  /// {a, b, c, d, e, f}.
  vec_t_<double, 6> Coefficients() const;
  /// {x', y'}.
  vec_t_<double, 2> Apply(double x, double y) const;
  /// Stores the inverse (not when `inverse` is null). False, and nothing stored, when the transform
  /// is singular: a coefficient is not finite, the determinant is 0, or a coefficient of the
  /// inverse would not be finite. Neither large nor small coefficients make the determinant itself
  /// overflow or vanish.
  bool Invert(TKv2DTransform* inverse) const;

  /// Reads the items "a" to "f" of the reader's current section. Throws TKvError when one is
  /// missing or is not a number.
  static var_a_legacy::var_a<TKv2DTransform*> LoadE(TKvXIniReader* reader);
  /// Writes the items "a" to "f" into the writer's current section; every double is read back bit
  /// for bit, NaN as a NaN. A write that fails calls the writer's ReportWriteError, and throws
  /// TKvError should that return.
  void SaveE(TKvXIniWriter* writer) const;

 private:
  vec_t_<double, 6> coefficients_;
};
