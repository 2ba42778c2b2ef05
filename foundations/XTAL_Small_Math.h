// Angles in degrees, inverses and determinants of 3 by 3 matrices: the arithmetic under the cell,
// the symmetry and the geometry, over that of vectors.h. All reals 32-bit; the circular functions
// are correctly rounded to them, so that every machine gives the same digits.
#pragma once

#include "console_code/kva_utilities/vectors.h"

namespace XTAL {

using KVA_UTILITIES::ADD;
using KVA_UTILITIES::CROSS;
using KVA_UTILITIES::DOT;
using KVA_UTILITIES::IMATRIX3;
using KVA_UTILITIES::IS_FINITE;
using KVA_UTILITIES::LENGTH;
using KVA_UTILITIES::MATRIX3;
using KVA_UTILITIES::MULTIPLY;
using KVA_UTILITIES::SCALED;
using KVA_UTILITIES::SUBTRACT;
using KVA_UTILITIES::TRANSPOSE;
using KVA_UTILITIES::VECTOR3;
using KVA_UTILITIES::VECTOR6;

inline constexpr float DEGREES_PER_RADIAN = 57.2957795f;

constexpr float SQUARE(float x) {
  return x * x;
}

float COSD(float degrees);
float SIND(float degrees);
float ACOSD(float cosine);  // degrees; the argument is limited to -1 .. 1

MATRIX3 REAL_MATRIX(const IMATRIX3& m);
int DETERMINANT(const IMATRIX3& m);
float DETERMINANT(const MATRIX3& m);

// Inverse of m. singular is set when |det| is not above 1e-5 times the product of the lengths of
// the rows, or is not a number; the result is then zero.
MATRIX3 INVERT_MATRIX(const MATRIX3& m, bool& singular);

// Inverse of the rotation of a symmetry operator, whose determinant is 1 or -1.
MATRIX3 INVERSE_ROTATION(const MATRIX3& r);

// Each coordinate reduced to 0 up to 1; what rounds to 1 becomes 0.
VECTOR3 MODULO_LAT(const VECTOR3& x_frac);

}  // namespace XTAL
