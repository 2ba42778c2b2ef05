// Fractional vectors as a metric tensor measures them, in 64-bit reals, for what 32 bits cannot
// tell: whether an angle changes at all, and how far it is from 180 degrees.
#pragma once

#include <cmath>  // for sqrt

#include "src/kva_crystal_structures/wide_reals.h"

namespace KVA_CRYSTAL_STRUCTURES {

// scale_a a + scale_b b.
inline WIDE3 COMBINED(double scale_a, const WIDE3& a, double scale_b, const WIDE3& b) {
  return {scale_a * a[0] + scale_b * b[0], scale_a * a[1] + scale_b * b[1],
          scale_a * a[2] + scale_b * b[2]};
}

struct LEG_64 {
  WIDE3 V{};
  WIDE3 G_V{};  // metric tensor times V
  double LENGTH = 0.0;
};

inline LEG_64 LEG_64_OF(const WIDE3& v_frac, const WIDE33& metric) {
  const WIDE3 g_v = MULTIPLY(metric, v_frac);
  return {v_frac, g_v, std::sqrt(DOT(v_frac, g_v))};
}

inline LEG_64 LEG_64_OF(const KVA_UTILITIES::VECTOR3& v_frac,
                        const KVA_UTILITIES::MATRIX3& metric) {
  return LEG_64_OF(WIDE(v_frac), WIDE(metric));
}

}  // namespace KVA_CRYSTAL_STRUCTURES
