// Vectors and matrices of 64-bit reals, for what the 32-bit reals of the records cannot tell:
// derivatives by differences, whether an angle changes at all, on which side of a face a point is.
#pragma once

#include <array>
#include <cmath>  // for sqrt
#include <cstddef>

#include "console_code/kva_utilities/table.h"

namespace KVA_CRYSTAL_STRUCTURES {

using WIDE3 = std::array<double, 3>;
using WIDE6 = std::array<double, 6>;
using WIDE33 = std::array<WIDE3, 3>;  // 0-based, row first

inline WIDE3 WIDE(const KVA_UTILITIES::VECTOR3& v) {
  return {static_cast<double>(v[0]), static_cast<double>(v[1]), static_cast<double>(v[2])};
}
inline KVA_UTILITIES::VECTOR3 NARROW(const WIDE3& v) {
  return {static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2])};
}

inline WIDE33 WIDE(const KVA_UTILITIES::MATRIX3& m) {
  return {WIDE(m[0]), WIDE(m[1]), WIDE(m[2])};
}

inline WIDE3 ADD(const WIDE3& a, const WIDE3& b) {
  return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}
inline WIDE3 SUBTRACT(const WIDE3& a, const WIDE3& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
inline WIDE3 SCALED(const WIDE3& a, double factor) {
  return {a[0] * factor, a[1] * factor, a[2] * factor};
}
inline double DOT(const WIDE3& a, const WIDE3& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
inline WIDE3 CROSS(const WIDE3& a, const WIDE3& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
inline double LENGTH(const WIDE3& a) {
  return std::sqrt(DOT(a, a));
}
inline WIDE3 MULTIPLY(const WIDE33& m, const WIDE3& v) {
  return {DOT(m[0], v), DOT(m[1], v), DOT(m[2], v)};
}
inline WIDE3 MULTIPLY(const KVA_UTILITIES::IMATRIX3& m, const WIDE3& v) {
  WIDE3 product{};
  for (std::size_t i = 0; i < 3; ++i) product[i] = m[i][0] * v[0] + m[i][1] * v[1] + m[i][2] * v[2];
  return product;
}

}  // namespace KVA_CRYSTAL_STRUCTURES
