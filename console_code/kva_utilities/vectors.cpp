// Tensors between their six components and matrices.
#include "console_code/kva_utilities/vectors.h"

namespace KVA_UTILITIES {

MATRIX3 VECTOR_TO_MATRIX(const VECTOR6& v) {
  return {{{v[0], v[3], v[4]}, {v[3], v[1], v[5]}, {v[4], v[5], v[2]}}};
}

VECTOR6 MATRIX_TO_VECTOR(const MATRIX3& m) {
  return {m[0][0],
          m[1][1],
          m[2][2],
          0.5f * (m[0][1] + m[1][0]),
          0.5f * (m[0][2] + m[2][0]),
          0.5f * (m[1][2] + m[2][1])};
}

float TRACE(const MATRIX3& m) {
  return m[0][0] + m[1][1] + m[2][2];
}

}  // namespace KVA_UTILITIES
