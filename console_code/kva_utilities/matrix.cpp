// Small tensors, index sorting and number tests.
#include "console_code/kva_utilities/matrix.h"

#include <cmath>  // for abs

#include "console_code/kva_utilities/numbers.h"

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

std::vector<int> SET_SORT(std::span<const float> values, bool keep_zero) {
  constexpr float counts_as_zero = 1e-08f;
  std::vector<int> order;
  std::vector<bool> taken(values.size(), false);
  std::size_t choice = 0;
  for (std::size_t place = 0; place < values.size(); ++place) {
    float bound = LARGEST_REAL;
    for (std::size_t i = 0; i < values.size(); ++i) {
      const bool kept = keep_zero || std::abs(values[i]) > counts_as_zero;
      if (taken[i] || !kept || !(values[i] < bound)) continue;
      bound = values[i];
      choice = i;
    }
    taken[choice] = true;
    order.push_back(static_cast<int>(choice) + 1);
  }
  return order;
}

bool NOTNUM(float x) {
  return x != x;
}

bool INFINITE_NUMBER(float x) {
  return x + 1.0f == x;
}

bool INVALID_NUMBER(float x) {
  return NOTNUM(x) || INFINITE_NUMBER(x);
}

}  // namespace KVA_UTILITIES
