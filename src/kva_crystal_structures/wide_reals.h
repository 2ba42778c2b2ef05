// Vectors and matrices of 64-bit reals, for what the 32-bit reals of the records cannot tell:
// derivatives by differences, whether an angle changes at all, on which side of a face a point is.
#pragma once

#include <numbers>  // for pi

#include "console_code/kva_utilities/vectors.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::ADD;
using KVA_UTILITIES::CROSS;
using KVA_UTILITIES::DOT;
using KVA_UTILITIES::LENGTH;
using KVA_UTILITIES::MULTIPLY;
using KVA_UTILITIES::NARROW;
using KVA_UTILITIES::SCALED;
using KVA_UTILITIES::SUBTRACT;
using KVA_UTILITIES::WIDE;
using KVA_UTILITIES::WIDE3;
using KVA_UTILITIES::WIDE33;
using KVA_UTILITIES::WIDE6;

inline constexpr double degrees_per_radian = 180.0 / std::numbers::pi;
inline constexpr double radians_per_degree = std::numbers::pi / 180.0;

inline WIDE3 MULTIPLY(const KVA_UTILITIES::IMATRIX3& m, const WIDE3& v) {
  WIDE3 product{};
  for (std::size_t i = 0; i < 3; ++i) product[i] = m[i][0] * v[0] + m[i][1] * v[1] + m[i][2] * v[2];
  return product;
}

}  // namespace KVA_CRYSTAL_STRUCTURES
