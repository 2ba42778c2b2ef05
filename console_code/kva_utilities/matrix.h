// Small tensors, index sorting and number tests.
#pragma once

#include <span>
#include <vector>

#include "console_code/kva_utilities/table.h"

namespace KVA_UTILITIES {

// Tensor components 11, 22, 33, 12, 13, 23 as a symmetric matrix, and back (means of the pairs).
MATRIX3 VECTOR_TO_MATRIX(const VECTOR6& v);
VECTOR6 MATRIX_TO_VECTOR(const MATRIX3& m);
float TRACE(const MATRIX3& m);

// Indices, from 1, of the values in ascending order; equal values keep their order. Without
// keep_zero, values of magnitude 1e-08 or less are not chosen, and the tail repeats the last
// choice.
std::vector<int> SET_SORT(std::span<const float> values, bool keep_zero);

bool NOTNUM(float x);
// True when x + 1 equals x: infinities, and every finite value of 2 to the power 24 or more.
// (The C library owns the shorter name.)
bool INFINITE_NUMBER(float x);
bool INVALID_NUMBER(float x);

}  // namespace KVA_UTILITIES
