// Angles in degrees, 3 by 3 matrices, and vectors: the arithmetic under the cell, the symmetry
// and the geometry. All reals 32-bit; the circular functions are correctly rounded to them, so
// that every machine gives the same digits.
#pragma once

#include <cmath>  // for isfinite, sqrt

#include "console_code/kva_utilities/table.h"

namespace XTAL {

using KVA_UTILITIES::IMATRIX3;
using KVA_UTILITIES::MATRIX3;
using KVA_UTILITIES::VECTOR3;
using KVA_UTILITIES::VECTOR6;

inline constexpr float DEGREES_PER_RADIAN = 57.2957795f;

constexpr float SQUARE(float x) {
  return x * x;
}

float COSD(float degrees);
float SIND(float degrees);
float ACOSD(float cosine);  // degrees; the argument is limited to -1 .. 1

// The innermost loops of search and geometry are made of these, so the compiler must see them.
inline VECTOR3 ADD(const VECTOR3& a, const VECTOR3& b) {
  return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}
inline VECTOR3 SUBTRACT(const VECTOR3& a, const VECTOR3& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
inline float DOT(const VECTOR3& a, const VECTOR3& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
inline VECTOR3 CROSS(const VECTOR3& a, const VECTOR3& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
inline float LENGTH(const VECTOR3& v) {
  return std::sqrt(DOT(v, v));
}
inline bool IS_FINITE(const VECTOR3& v) {
  return std::isfinite(v[0]) && std::isfinite(v[1]) && std::isfinite(v[2]);
}
inline VECTOR3 MULTIPLY(const MATRIX3& m, const VECTOR3& v) {
  return {DOT(m[0], v), DOT(m[1], v), DOT(m[2], v)};
}
inline MATRIX3 TRANSPOSE(const MATRIX3& m) {
  return {{{m[0][0], m[1][0], m[2][0]}, {m[0][1], m[1][1], m[2][1]}, {m[0][2], m[1][2], m[2][2]}}};
}
inline MATRIX3 MULTIPLY(const MATRIX3& a, const MATRIX3& b) {
  const MATRIX3 columns = TRANSPOSE(b);
  return {MULTIPLY(columns, a[0]), MULTIPLY(columns, a[1]), MULTIPLY(columns, a[2])};
}

IMATRIX3 MULTIPLY(const IMATRIX3& a, const IMATRIX3& b);
MATRIX3 REAL_MATRIX(const IMATRIX3& m);
int DETERMINANT(const IMATRIX3& m);
float DETERMINANT(const MATRIX3& m);

// Inverse of m. singular is set when |det| is not above 1e-5 times the product of the lengths of
// the rows, or is not a number; the result is then zero.
MATRIX3 INVERT_MATRIX(const MATRIX3& m, bool& singular);

// Each coordinate reduced to 0 up to 1; what rounds to 1 becomes 0.
VECTOR3 MODULO_LAT(const VECTOR3& x_frac);

}  // namespace XTAL
