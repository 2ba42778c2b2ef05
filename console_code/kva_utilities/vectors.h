// The types of vectors, matrices and tensors, all 0-based, and their algebra. The records have
// reals of 32 bits; what these cannot tell is worked out in the wide ones, of 64 bits.
#pragma once

#include <array>
#include <cmath>  // for isfinite, sqrt

namespace KVA_UTILITIES {

template <class NUMBER>
using VECTOR_OF = std::array<NUMBER, 3>;
template <class NUMBER>
using MATRIX_OF = std::array<VECTOR_OF<NUMBER>, 3>;  // row first

using VECTOR3 = VECTOR_OF<float>;
using MATRIX3 = MATRIX_OF<float>;
using IMATRIX3 = MATRIX_OF<int>;
using VECTOR6 = std::array<float, 6>;    // tensor, order 11, 22, 33, 12, 13, 23
using MATRIX6 = std::array<VECTOR6, 6>;  // row first
using WIDE3 = VECTOR_OF<double>;
using WIDE33 = MATRIX_OF<double>;
using WIDE6 = std::array<double, 6>;

constexpr WIDE3 WIDE(const VECTOR3& v) {
  return {static_cast<double>(v[0]), static_cast<double>(v[1]), static_cast<double>(v[2])};
}
constexpr WIDE33 WIDE(const MATRIX3& m) {
  return {WIDE(m[0]), WIDE(m[1]), WIDE(m[2])};
}
constexpr VECTOR3 NARROW(const WIDE3& v) {
  return {static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2])};
}

// The algebra of vectors of one kind of number. The innermost loops of search and geometry are made
// of these, so the compiler must see them.
template <class NUMBER>
constexpr VECTOR_OF<NUMBER> ADD(const VECTOR_OF<NUMBER>& a, const VECTOR_OF<NUMBER>& b) {
  return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}
template <class NUMBER>
constexpr VECTOR_OF<NUMBER> SUBTRACT(const VECTOR_OF<NUMBER>& a, const VECTOR_OF<NUMBER>& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
template <class NUMBER>
constexpr VECTOR_OF<NUMBER> SCALED(const VECTOR_OF<NUMBER>& a, NUMBER factor) {
  return {a[0] * factor, a[1] * factor, a[2] * factor};
}
template <class NUMBER>
constexpr NUMBER DOT(const VECTOR_OF<NUMBER>& a, const VECTOR_OF<NUMBER>& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
template <class NUMBER>
constexpr VECTOR_OF<NUMBER> CROSS(const VECTOR_OF<NUMBER>& a, const VECTOR_OF<NUMBER>& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
template <class NUMBER>
NUMBER LENGTH(const VECTOR_OF<NUMBER>& v) {
  return std::sqrt(DOT(v, v));
}
template <class NUMBER>
bool IS_FINITE(const VECTOR_OF<NUMBER>& v) {
  return std::isfinite(v[0]) && std::isfinite(v[1]) && std::isfinite(v[2]);
}
template <class NUMBER>
constexpr VECTOR_OF<NUMBER> MULTIPLY(const MATRIX_OF<NUMBER>& m, const VECTOR_OF<NUMBER>& v) {
  return {DOT(m[0], v), DOT(m[1], v), DOT(m[2], v)};
}
template <class NUMBER>
constexpr MATRIX_OF<NUMBER> TRANSPOSE(const MATRIX_OF<NUMBER>& m) {
  return {{{m[0][0], m[1][0], m[2][0]}, {m[0][1], m[1][1], m[2][1]}, {m[0][2], m[1][2], m[2][2]}}};
}
template <class NUMBER>
constexpr MATRIX_OF<NUMBER> MULTIPLY(const MATRIX_OF<NUMBER>& a, const MATRIX_OF<NUMBER>& b) {
  const MATRIX_OF<NUMBER> columns = TRANSPOSE(b);
  return {MULTIPLY(columns, a[0]), MULTIPLY(columns, a[1]), MULTIPLY(columns, a[2])};
}

float TRACE(const MATRIX3& m);

// A tensor's six components as a symmetric matrix, and back (means of the pairs).
MATRIX3 VECTOR_TO_MATRIX(const VECTOR6& v);
VECTOR6 MATRIX_TO_VECTOR(const MATRIX3& m);

}  // namespace KVA_UTILITIES
