// Circular functions in degrees, 3 by 3 matrices and vectors.
#include "foundations/XTAL_Small_Math.h"

#include <algorithm>  // for clamp
#include <cmath>      // for sin, cos, acos, abs, floor

namespace XTAL {

namespace {

constexpr double radians_per_degree = 0.017453292519943295;

// The function value rounded once to 32 bits. What is 0, 1/2 or 1 at a multiple of 30 degrees is so
// exactly: rounding of the wider result leaves only the zeros to be set.
float ROUNDED(double value) {
  constexpr double smaller_is_zero = 1e-15;
  return std::abs(value) < smaller_is_zero ? 0.0f : static_cast<float>(value);
}

}  // namespace

float COSD(float degrees) {
  return ROUNDED(std::cos(static_cast<double>(degrees) * radians_per_degree));
}

float SIND(float degrees) {
  return ROUNDED(std::sin(static_cast<double>(degrees) * radians_per_degree));
}

float ACOSD(float cosine) {
  const double limited = std::clamp(static_cast<double>(cosine), -1.0, 1.0);
  return static_cast<float>(std::acos(limited) / radians_per_degree);
}

// ---- matrices ----

MATRIX3 REAL_MATRIX(const IMATRIX3& m) {
  MATRIX3 real{};
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) real[i][j] = static_cast<float>(m[i][j]);
  return real;
}

int DETERMINANT(const IMATRIX3& m) {
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
         m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

float DETERMINANT(const MATRIX3& m) {
  return DOT(m[0], CROSS(m[1], m[2]));
}

namespace {

MATRIX3 ADJUGATE(const MATRIX3& m) {
  return TRANSPOSE(MATRIX3{CROSS(m[1], m[2]), CROSS(m[2], m[0]), CROSS(m[0], m[1])});
}

}  // namespace

MATRIX3 INVERT_MATRIX(const MATRIX3& m, bool& singular) {
  constexpr float smallest_ratio = 1e-5f;  // of det to the volume of a box with the same edges
  const float det = DETERMINANT(m);
  const float box = LENGTH(m[0]) * LENGTH(m[1]) * LENGTH(m[2]);
  singular = !(std::abs(det) > smallest_ratio * box);
  if (singular) return {};
  MATRIX3 inverse = ADJUGATE(m);
  for (VECTOR3& row : inverse)
    for (float& element : row) element /= det;
  return inverse;
}

MATRIX3 INVERSE_ROTATION(const MATRIX3& r) {
  MATRIX3 inverse = ADJUGATE(r);
  const float det = DETERMINANT(r);
  for (VECTOR3& row : inverse) row = SCALED(row, det);
  return inverse;
}

VECTOR3 MODULO_LAT(const VECTOR3& x_frac) {
  VECTOR3 reduced{};
  for (std::size_t k = 0; k < 3; ++k) {
    reduced[k] = x_frac[k] - std::floor(x_frac[k]);
    if (reduced[k] >= 1.0f) reduced[k] = 0.0f;
  }
  return reduced;
}

}  // namespace XTAL
