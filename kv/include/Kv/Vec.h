/// @file
/// Small vectors of fixed length.
#pragma once

/// N values of type T; an aggregate. `vec_t_<unsigned long, 2>` is a size {width, height}.
/// Indices are not checked.
template <class T, int N>
struct vec_t_ {
  T v[N];  ///< the values

  /// The value at `i`, from 0.
  constexpr T& operator[](int i) { return v[i]; }
  /// The value at `i`, from 0.
  constexpr const T& operator[](int i) const { return v[i]; }
};

/// Whether all values are equal.
template <class T, int N>
constexpr bool operator==(const vec_t_<T, N>& a, const vec_t_<T, N>& b) {
  for (int i = 0; i < N; ++i) {
    if (!(a.v[i] == b.v[i])) return false;
  }
  return true;
}
/// Whether any values differ.
template <class T, int N>
constexpr bool operator!=(const vec_t_<T, N>& a, const vec_t_<T, N>& b) {
  return !(a == b);
}
