// Covariances of coordinates, and distances and angles with their esds.
#include "src/kva_crystal_structures/uncertainty.h"

#include <algorithm>  // for any_of
#include <cmath>      // for sqrt, abs

#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"
#include "src/kva_crystal_structures/atom_search.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::IMATRIX3;
using KVA_UTILITIES::INDEXALL;
using KVA_UTILITIES::TINY_REAL;
using XTAL::SQUARE;

// ---- lengths and angles of vectors ----

float CRYST_DIST(const VECTOR3& v_frac, const MATRIX3& metric) {
  return std::sqrt(std::max(XTAL::DOT(v_frac, XTAL::MULTIPLY(metric, v_frac)), 0.0f));
}

float CRYST_ANGLE(const VECTOR3& v1_frac, const VECTOR3& v2_frac, const MATRIX3& metric) {
  const float lengths = CRYST_DIST(v1_frac, metric) * CRYST_DIST(v2_frac, metric);
  if (!(lengths > 0.0f)) return 0.0f;
  const float cosine = XTAL::DOT(v1_frac, XTAL::MULTIPLY(metric, v2_frac)) / lengths;
  if (cosine <= -1.0f) return 180.0f;
  if (cosine >= 1.0f) return 0.0f;
  return XTAL::ACOSD(cosine);
}

namespace {

// A variance that symmetry makes zero may come out a rounding error below it.
float ESD_OF(float variance) {
  return variance > 0.0f ? std::sqrt(variance) : 0.0f;
}

// R V R^T.
MATRIX3 TRANSFORM(const MATRIX3& r, const MATRIX3& v) {
  return XTAL::MULTIPLY(XTAL::MULTIPLY(r, v), XTAL::TRANSPOSE(r));
}

// ---- crystal systems ----

enum class SYSTEM { CUBIC, UNIAXIAL, ORTHORHOMBIC, MONOCLINIC, TRICLINIC, UNKNOWN };

SYSTEM SYSTEM_OF(const XTAL::SPACE_GROUP& group) {
  const std::string& text = group.CRYSTALSYS;
  if (INDEXALL(text, "cubic") > 0) return SYSTEM::CUBIC;
  if (INDEXALL(text, "tetragonal") > 0 || INDEXALL(text, "hexagonal") > 0 ||
      INDEXALL(text, "trigonal") > 0)
    return SYSTEM::UNIAXIAL;
  if (INDEXALL(text, "orthorhombic") > 0) return SYSTEM::ORTHORHOMBIC;
  // With a unique axis the text reads "Mono b-uni".
  if (INDEXALL(text, "mono") == 1) return SYSTEM::MONOCLINIC;
  return INDEXALL(text, "triclinic") > 0 ? SYSTEM::TRICLINIC : SYSTEM::UNKNOWN;
}

constexpr VECTOR3 right_angles{90.0f, 90.0f, 90.0f};

CELL_SHIFT CUBIC_SHIFT(const XTAL::CRYSTAL_CELL& cell, const VECTOR3& angles) {
  return {XTAL::ADD(cell.CELL, cell.CELL_STD), angles};
}

// One length longer by its esd.
CELL_SHIFT LENGTH_SHIFT(const XTAL::CRYSTAL_CELL& cell, std::size_t k, const VECTOR3& angles) {
  CELL_SHIFT shift{cell.CELL, angles};
  shift.CELL[k] += cell.CELL_STD[k];
  return shift;
}

CELL_SHIFT ANGLE_SHIFT(const XTAL::CRYSTAL_CELL& cell, std::size_t k) {
  CELL_SHIFT shift{cell.CELL, cell.ANG};
  shift.ANG[k] += cell.ANG_STD[k];
  return shift;
}

// a and b longer together, then c. Rhombohedral axes have no angle term.
std::vector<CELL_SHIFT> UNIAXIAL_SHIFTS(const XTAL::CRYSTAL_CELL& cell) {
  CELL_SHIFT base = LENGTH_SHIFT(cell, 0, cell.ANG);
  base.CELL[1] = base.CELL[0];
  return {base, LENGTH_SHIFT(cell, 2, cell.ANG)};
}

}  // namespace

std::vector<CELL_SHIFT> CELL_SHIFTS(const CRYSTAL_STRUCTURE_TYPE& phase, bool keep_angles) {
  const XTAL::CRYSTAL_CELL& cell = phase.CELL;
  const VECTOR3& orthogonal_angles = keep_angles ? cell.ANG : right_angles;
  const SYSTEM system = SYSTEM_OF(phase.SPG);
  if (system == SYSTEM::UNKNOWN) return {};
  if (system == SYSTEM::CUBIC) return {CUBIC_SHIFT(cell, orthogonal_angles)};
  if (system == SYSTEM::UNIAXIAL) return UNIAXIAL_SHIFTS(cell);
  const bool orthogonal = system == SYSTEM::ORTHORHOMBIC;
  std::vector<CELL_SHIFT> shifts;
  for (std::size_t k = 0; k < 3; ++k)
    shifts.push_back(LENGTH_SHIFT(cell, k, orthogonal ? orthogonal_angles : cell.ANG));
  if (orthogonal) return shifts;
  for (std::size_t k = 0; k < 3; ++k) shifts.push_back(ANGLE_SHIFT(cell, k));
  return shifts;
}

// ---- covariances ----

namespace {

// Operators that leave the position where it is, the identity left out.
std::vector<const XTAL::SYM_OP*> SITE_OPERATORS(const CRYSTAL_STRUCTURE_TYPE& phase,
                                                const VECTOR3& x_frac) {
  int order = 0;
  LIST<int> numbers;
  LIST<VECTOR3> translations;
  XTAL::GET_STABILIZER(x_frac, phase.SPG, order, numbers, translations);
  std::vector<const XTAL::SYM_OP*> operators;
  for (int s = 2; s <= order; ++s) operators.push_back(&phase.SPG.SYMOP(numbers(s)));
  return operators;
}

// Coordinates that an operator of the site ties together are one parameter: their covariance
// becomes the variance of it.
void TIE_COORDINATES(const XTAL::SYM_OP& op, const MATRIX3& variances, MATRIX3& v) {
  const MATRIX3 c = XTAL::MULTIPLY(variances, XTAL::TRANSPOSE(XTAL::REAL_MATRIX(op.ROT)));
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j)
      if (i != j && (c[i][j] > 0.0f || c[i][j] < 0.0f)) v[i][j] = c[i][j];
}

}  // namespace

MATRIX3 CALC_VCV_XYZ(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int op) {
  const ATOM_TYPE& atom = phase.ATOM(i);
  MATRIX3 variances{};
  for (std::size_t k = 0; k < 3; ++k) variances[k][k] = SQUARE(atom.X_STD[k]);
  MATRIX3 v = variances;
  if (atom.MULT != phase.SPG.MULTIP)
    for (const XTAL::SYM_OP* site_op : SITE_OPERATORS(phase, atom.X))
      TIE_COORDINATES(*site_op, variances, v);
  if (op == 1) return v;
  return TRANSFORM(XTAL::REAL_MATRIX(phase.SPG.SYMOP(op).ROT), v);
}

VECTOR3 CALC_ESD_XYZ(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int op) {
  const MATRIX3 v = CALC_VCV_XYZ(phase, i, op);
  return {ESD_OF(v[0][0]), ESD_OF(v[1][1]), ESD_OF(v[2][2])};
}

namespace {

FOUND_ATOM ATOM_AT(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x_frac) {
  return FIND_ATOM(phase, x_frac, "", MATCH_RADIUS);
}

MATRIX3 COVARIANCE_OF(const CRYSTAL_STRUCTURE_TYPE& phase, const FOUND_ATOM& found) {
  return found.ATOM > 0 ? CALC_VCV_XYZ(phase, found.ATOM, found.OPERATOR) : MATRIX3{};
}

// Rotation that takes the image under the first operator to that under the second.
MATRIX3 ROTATION_BETWEEN(const CRYSTAL_STRUCTURE_TYPE& phase, int first, int second) {
  bool singular = false;
  const MATRIX3 inverse =
      XTAL::INVERT_MATRIX(XTAL::REAL_MATRIX(phase.SPG.SYMOP(first).ROT), singular);
  return XTAL::MULTIPLY(XTAL::REAL_MATRIX(phase.SPG.SYMOP(second).ROT), inverse);
}

void PUT_BLOCK(MATRIX6& matrix, std::size_t row, std::size_t column, const MATRIX3& block) {
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) matrix[row + i][column + j] = block[i][j];
}

}  // namespace

MATRIX6 CALC_VCV_TWO_ATOMS(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x1_frac,
                           const VECTOR3& x2_frac) {
  MATRIX6 joint{};
  const FOUND_ATOM first = ATOM_AT(phase, x1_frac);
  const FOUND_ATOM second = ATOM_AT(phase, x2_frac);
  const MATRIX3 v1 = COVARIANCE_OF(phase, first);
  PUT_BLOCK(joint, 0, 0, v1);
  PUT_BLOCK(joint, 3, 3, COVARIANCE_OF(phase, second));
  if (first.ATOM == 0 || first.ATOM != second.ATOM) return joint;
  const MATRIX3 r = ROTATION_BETWEEN(phase, first.OPERATOR, second.OPERATOR);
  const MATRIX3 linked = XTAL::MULTIPLY(v1, XTAL::TRANSPOSE(r));
  PUT_BLOCK(joint, 0, 3, linked);
  PUT_BLOCK(joint, 3, 0, XTAL::TRANSPOSE(linked));
  return joint;
}

// ---- distances ----

namespace {

// Covariance of the vector from x0 to x1. A vector between images of one atom that symmetry fixes
// has none.
MATRIX3 VECTOR_COVARIANCE(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x0_frac,
                          const VECTOR3& x1_frac) {
  const FOUND_ATOM found0 = ATOM_AT(phase, x0_frac);
  const FOUND_ATOM found1 = ATOM_AT(phase, x1_frac);
  const MATRIX3 v0 = COVARIANCE_OF(phase, found0);
  if (found0.ATOM == 0 || found0.ATOM != found1.ATOM) {
    const MATRIX3 v1 = COVARIANCE_OF(phase, found1);
    return {{XTAL::ADD(v0[0], v1[0]), XTAL::ADD(v0[1], v1[1]), XTAL::ADD(v0[2], v1[2])}};
  }
  MATRIX3 r = ROTATION_BETWEEN(phase, found0.OPERATOR, found1.OPERATOR);
  for (std::size_t k = 0; k < 3; ++k) r[k][k] -= 1.0f;
  return TRANSFORM(r, v0);
}

float POSITIONAL_VARIANCE(const VECTOR3& delta_frac, const MATRIX3& metric, const MATRIX3& v,
                          float distance) {
  const VECTOR3 g_delta = XTAL::MULTIPLY(metric, delta_frac);
  const float triple = XTAL::DOT(g_delta, XTAL::MULTIPLY(v, g_delta));
  return SQUARE(ESD_OF(triple) / distance);
}

float CELL_VARIANCE_OF_DISTANCE(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& delta_frac,
                                float distance) {
  float variance = 0.0f;
  for (const CELL_SHIFT& shift : CELL_SHIFTS(phase)) {
    const MATRIX3 metric = XTAL::METRICTENSOR(shift.CELL, shift.ANG);
    variance += SQUARE(CRYST_DIST(delta_frac, metric) - distance);
  }
  return variance;
}

}  // namespace

VALUE_ESD DISTANCE_AND_SIGMA_VCV(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x0_frac,
                                 const VECTOR3& x1_frac) {
  const VECTOR3 delta_frac = XTAL::SUBTRACT(x1_frac, x0_frac);
  const MATRIX3 v = VECTOR_COVARIANCE(phase, x0_frac, x1_frac);
  const float distance = CRYST_DIST(delta_frac, phase.CELL.GD);
  if (!(distance > 0.0f)) return {};
  const float variance = POSITIONAL_VARIANCE(delta_frac, phase.CELL.GD, v, distance) +
                         CELL_VARIANCE_OF_DISTANCE(phase, delta_frac, distance);
  return {distance, ESD_OF(variance)};
}

// ---- angles ----

namespace {

// The three atoms of an angle: apex first.
using TRIPLET = std::array<VECTOR3, 3>;
using MATRIX9 = std::array<std::array<float, 9>, 9>;

float ANGLE_OF(const TRIPLET& x_frac, const MATRIX3& metric) {
  return CRYST_ANGLE(XTAL::SUBTRACT(x_frac[1], x_frac[0]), XTAL::SUBTRACT(x_frac[2], x_frac[0]),
                     metric);
}

// Covariance of the coordinates of all three. The block that links the apex with the second ligand
// is that of the apex with the first.
MATRIX9 TRIPLET_COVARIANCE(const CRYSTAL_STRUCTURE_TYPE& phase, const TRIPLET& x_frac) {
  const MATRIX6 apex_first = CALC_VCV_TWO_ATOMS(phase, x_frac[0], x_frac[1]);
  const MATRIX6 first_second = CALC_VCV_TWO_ATOMS(phase, x_frac[1], x_frac[2]);
  MATRIX9 v{};
  for (std::size_t i = 0; i < 6; ++i)
    for (std::size_t j = 0; j < 6; ++j) v[i][j] = apex_first[i][j];
  for (std::size_t i = 0; i < 6; ++i)
    for (std::size_t j = 0; j < 6; ++j) v[i + 3][j + 3] = first_second[i][j];
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) {
      v[i][j + 6] = apex_first[i][j + 3];
      v[j + 6][i] = apex_first[j + 3][i];
    }
  return v;
}

// Sets the angle to the value if it lies within tolerance of it.
bool SNAP(float& angle, float value, float tolerance) {
  if (std::abs(angle - value) > tolerance) return false;
  angle = value;
  return true;
}

// Angles that a mirror between the ligands fixes, by crystal system.
bool FIXED_BY_MIRROR(const XTAL::SPACE_GROUP& group, float& angle) {
  constexpr float tolerance = 0.001f;
  std::vector<float> values;
  const SYSTEM system = SYSTEM_OF(group);
  if (INDEXALL(group.CRYSTALSYS, "hexagonal") > 0 || INDEXALL(group.CRYSTALSYS, "trigonal") > 0)
    values = {60.0f, 180.0f};
  else if (system == SYSTEM::UNIAXIAL || system == SYSTEM::CUBIC)
    values = {45.0f, 90.0f, 135.0f, 180.0f};
  else if (system == SYSTEM::ORTHORHOMBIC || system == SYSTEM::MONOCLINIC)
    values = {180.0f};
  return std::any_of(values.begin(), values.end(),
                     [&](float value) { return SNAP(angle, value, tolerance); });
}

constexpr float axis_tolerance = 0.1f;  // degrees from the angle that an axis demands

// A two-fold axis along a cell edge with apex and ligands at one height: the ligands are opposite.
// On axes that are not at right angles equal coordinates are not yet one height.
bool FIXED_BY_TWOFOLD(const IMATRIX3& rot, const TRIPLET& x_frac, float& angle) {
  constexpr float same_coordinate = 1e-5f;
  for (std::size_t k = 0; k < 3; ++k)
    if (rot[k][k] == 1 && std::abs(x_frac[0][k] - x_frac[1][k]) < same_coordinate &&
        SNAP(angle, 180.0f, axis_tolerance))
      return true;
  return false;
}

// Multiples of 360 degrees over the order of the axis.
bool FIXED_BY_AXIS(int order, float& angle) {
  for (int k = 1; k <= order; ++k)
    if (SNAP(angle, static_cast<float>(k) * 360.0f / static_cast<float>(order), axis_tolerance))
      return true;
  return false;
}

// Whether an operator of the given kind that swaps the ligands fixes the angle.
bool FIXED_BY_OPERATOR(const XTAL::SPACE_GROUP& group, const IMATRIX3& rot, const TRIPLET& x_frac,
                       float& angle) {
  const int type = XTAL::ROTATION_TYPE(rot);
  switch (type) {
    case -1:
      angle = 180.0f;
      return true;
    case -2:
      return FIXED_BY_MIRROR(group, angle);
    case 2:
      return FIXED_BY_TWOFOLD(rot, x_frac, angle);
    case 3:
    case 4:
    case 6:
      return FIXED_BY_AXIS(type, angle);
    default:
      return false;
  }
}

// Whether the symmetry of the apex fixes the angle between two images of one atom.
bool FIXED_BY_SYMMETRY(const CRYSTAL_STRUCTURE_TYPE& phase, const TRIPLET& x_frac, float& angle) {
  constexpr float same_position = 0.001f;  // angstroms
  const FOUND_ATOM first = ATOM_AT(phase, x_frac[1]);
  const FOUND_ATOM second = ATOM_AT(phase, x_frac[2]);
  if (first.ATOM == 0 || first.ATOM != second.ATOM) return false;
  int order = 0;
  LIST<int> numbers;
  LIST<VECTOR3> translations;
  XTAL::GET_STABILIZER(x_frac[0], phase.SPG, order, numbers, translations);
  for (int s = 2; s <= order; ++s) {
    const XTAL::SYM_OP& op = phase.SPG.SYMOP(numbers(s));
    // The translation brings the image of the apex back to the apex itself.
    const VECTOR3 image = XTAL::ADD(XTAL::APPLY_OP(op, x_frac[1]), translations(s));
    const VECTOR3 apart = XTAL::SUBTRACT(image, x_frac[2]);
    if (CRYST_DIST(apart, phase.CELL.GD) > same_position) continue;
    if (FIXED_BY_OPERATOR(phase.SPG, op.ROT, x_frac, angle)) return true;
  }
  return false;
}

// Change of the angle with each coordinate, by a shift of one esd.
std::array<float, 9> ANGLE_DERIVATIVES(const CRYSTAL_STRUCTURE_TYPE& phase, const TRIPLET& x_frac,
                                       const MATRIX9& v, float angle) {
  std::array<float, 9> d{};
  for (std::size_t k = 0; k < 9; ++k) {
    if (!(v[k][k] > TINY_REAL)) continue;
    const float esd = std::sqrt(v[k][k]);
    TRIPLET shifted = x_frac;
    shifted[k / 3][k % 3] += esd;
    d[k] = (angle - ANGLE_OF(shifted, phase.CELL.GD)) / esd;
  }
  return d;
}

float CELL_VARIANCE_OF_ANGLE(const CRYSTAL_STRUCTURE_TYPE& phase, const TRIPLET& x_frac,
                             float angle) {
  float variance = 0.0f;
  for (const CELL_SHIFT& shift : CELL_SHIFTS(phase))
    variance += SQUARE(ANGLE_OF(x_frac, XTAL::METRICTENSOR(shift.CELL, shift.ANG)) - angle);
  return variance;
}

}  // namespace

VALUE_ESD ANGLE_AND_SIGMA_VCV(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x0_frac,
                              const VECTOR3& x1_frac, const VECTOR3& x2_frac) {
  const TRIPLET x_frac{x0_frac, x1_frac, x2_frac};
  VALUE_ESD result;
  result.VALUE = ANGLE_OF(x_frac, phase.CELL.GD);
  const bool no_length = !(CRYST_DIST(XTAL::SUBTRACT(x1_frac, x0_frac), phase.CELL.GD) > 0.0f) ||
                         !(CRYST_DIST(XTAL::SUBTRACT(x2_frac, x0_frac), phase.CELL.GD) > 0.0f);
  if (no_length || FIXED_BY_SYMMETRY(phase, x_frac, result.VALUE)) return result;

  const MATRIX9 v = TRIPLET_COVARIANCE(phase, x_frac);
  const std::array<float, 9> d = ANGLE_DERIVATIVES(phase, x_frac, v, result.VALUE);
  float variance = 0.0f;
  for (std::size_t i = 0; i < 9; ++i)
    for (std::size_t j = 0; j < 9; ++j) variance += d[i] * v[i][j] * d[j];
  variance += CELL_VARIANCE_OF_ANGLE(phase, x_frac, result.VALUE);
  result.ESD = ESD_OF(variance);
  return result;
}

}  // namespace KVA_CRYSTAL_STRUCTURES
