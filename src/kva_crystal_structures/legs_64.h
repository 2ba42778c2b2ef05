// Fractional vectors as a metric tensor measures them, in 64-bit reals, for what 32 bits cannot
// tell: whether an angle changes at all, and how far it is from 180 degrees.
#pragma once

#include <cmath>  // for sqrt

#include "src/kva_crystal_structures/records.h"

namespace KVA_CRYSTAL_STRUCTURES {

using VECTOR3_64 = std::array<double, 3>;
using MATRIX3_64 = std::array<VECTOR3_64, 3>;

inline constexpr double degrees_per_radian = 57.29577951308232;

inline double DOT(const VECTOR3_64& a, const VECTOR3_64& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

inline VECTOR3_64 AS_64(const VECTOR3& v) {
  return {static_cast<double>(v[0]), static_cast<double>(v[1]), static_cast<double>(v[2])};
}

inline MATRIX3_64 AS_64(const MATRIX3& m) {
  return {AS_64(m[0]), AS_64(m[1]), AS_64(m[2])};
}

inline VECTOR3_64 MULTIPLY(const MATRIX3_64& m, const VECTOR3_64& v) {
  return {DOT(m[0], v), DOT(m[1], v), DOT(m[2], v)};
}

// scale_a a + scale_b b.
inline VECTOR3_64 COMBINED(double scale_a, const VECTOR3_64& a, double scale_b,
                           const VECTOR3_64& b) {
  return {scale_a * a[0] + scale_b * b[0], scale_a * a[1] + scale_b * b[1],
          scale_a * a[2] + scale_b * b[2]};
}

inline VECTOR3_64 SCALED(const VECTOR3_64& a, double scale) {
  return {scale * a[0], scale * a[1], scale * a[2]};
}

struct LEG_64 {
  VECTOR3_64 V{};
  VECTOR3_64 G_V{};  // metric tensor times V
  double LENGTH = 0.0;
};

inline LEG_64 LEG_64_OF(const VECTOR3_64& v_frac, const MATRIX3_64& metric) {
  const VECTOR3_64 g_v = MULTIPLY(metric, v_frac);
  return {v_frac, g_v, std::sqrt(DOT(v_frac, g_v))};
}

inline LEG_64 LEG_64_OF(const VECTOR3& v_frac, const MATRIX3& metric) {
  return LEG_64_OF(AS_64(v_frac), AS_64(metric));
}

}  // namespace KVA_CRYSTAL_STRUCTURES
