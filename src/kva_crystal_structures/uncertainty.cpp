// Covariances of coordinates, and distances with their esds.
#include "src/kva_crystal_structures/uncertainty.h"

#include <algorithm>  // for max
#include <cmath>      // for sqrt

#include "src/kva_crystal_structures/cell_shifts.h"

namespace KVA_CRYSTAL_STRUCTURES {

using XTAL::SQUARE;

// ---- lengths ----

LEG LEG_OF(const VECTOR3& v_frac, const MATRIX3& metric) {
  const VECTOR3 g_v = XTAL::MULTIPLY(metric, v_frac);
  return {v_frac, g_v, std::sqrt(std::max(XTAL::DOT(v_frac, g_v), 0.0f))};
}

float CRYST_DIST(const VECTOR3& v_frac, const MATRIX3& metric) {
  return LEG_OF(v_frac, metric).LENGTH;
}

float ESD_OF(float variance) {
  return variance > 0.0f ? std::sqrt(variance) : 0.0f;
}

// ---- covariances ----

namespace {

// R V R^T.
MATRIX3 TRANSFORM(const MATRIX3& r, const MATRIX3& v) {
  return XTAL::MULTIPLY(XTAL::MULTIPLY(r, v), XTAL::TRANSPOSE(r));
}

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

// An operator ties the coordinates of a site such as x, 2x, z one way only, with all of the
// covariance on one side of the diagonal. Half of it belongs on each.
MATRIX3 SYMMETRISED(const MATRIX3& v) {
  MATRIX3 symmetric{};
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) symmetric[i][j] = 0.5f * (v[i][j] + v[j][i]);
  return symmetric;
}

// Covariance of an atom's image under an operator, v being that of the atom itself.
MATRIX3 VCV_OF_IMAGE(const CRYSTAL_STRUCTURE_TYPE& phase, const MATRIX3& v, int op) {
  if (op == 1) return v;
  return TRANSFORM(XTAL::REAL_MATRIX(phase.SPG.SYMOP(op).ROT), v);
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
  return VCV_OF_IMAGE(phase, SYMMETRISED(v), op);
}

VECTOR3 CALC_ESD_XYZ(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int op) {
  const MATRIX3 v = CALC_VCV_XYZ(phase, i, op);
  return {ESD_OF(v[0][0]), ESD_OF(v[1][1]), ESD_OF(v[2][2])};
}

// ---- measuring in one record ----

RULER RULER_FOR(const CRYSTAL_STRUCTURE_TYPE& phase) {
  RULER ruler{IMAGES_OF(phase), {}, {}, {}};
  for (int i = 1; i <= phase.NATOMS; ++i) ruler.ATOM_VCV.push_back(CALC_VCV_XYZ(phase, i, 1));
  for (const CELL_SHIFT& shift : CELL_SHIFTS(phase))
    ruler.SHIFTED_METRICS.push_back(XTAL::METRICTENSOR(shift.CELL, shift.ANG));
  for (const CELL_SHIFT& shift : SYMMETRIC_CELL_SHIFTS(phase))
    ruler.SYMMETRIC_METRICS.push_back(XTAL::METRICTENSOR(shift.CELL, shift.ANG));
  return ruler;
}

PLACED_ATOM PLACE_ATOM(const RULER& ruler, int atom, int op, const VECTOR3& x_frac) {
  PLACED_ATOM placed{x_frac, atom, op};
  if (atom == 0) return placed;
  placed.ROTATION = XTAL::REAL_MATRIX(ruler.IMAGES.PHASE.SPG.SYMOP(op).ROT);
  placed.VCV =
      VCV_OF_IMAGE(ruler.IMAGES.PHASE, ruler.ATOM_VCV[static_cast<std::size_t>(atom - 1)], op);
  return placed;
}

PLACED_ATOM ATOM_AT(const RULER& ruler, const VECTOR3& x_frac) {
  const FOUND_ATOM found = FIND_ATOM(ruler.IMAGES, x_frac, "", MATCH_RADIUS);
  return PLACE_ATOM(ruler, found.ATOM, found.OPERATOR, x_frac);
}

namespace {

// Rotation that takes the first image of an atom to the second.
MATRIX3 ROTATION_BETWEEN(const PLACED_ATOM& first, const PLACED_ATOM& second) {
  return XTAL::MULTIPLY(second.ROTATION, XTAL::INVERSE_ROTATION(first.ROTATION));
}

void PUT_BLOCK(MATRIX6& matrix, std::size_t row, std::size_t column, const MATRIX3& block) {
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) matrix[row + i][column + j] = block[i][j];
}

}  // namespace

MATRIX6 CALC_VCV_TWO_ATOMS(const PLACED_ATOM& atom1, const PLACED_ATOM& atom2) {
  MATRIX6 joint{};
  PUT_BLOCK(joint, 0, 0, atom1.VCV);
  PUT_BLOCK(joint, 3, 3, atom2.VCV);
  if (atom1.ATOM == 0 || atom1.ATOM != atom2.ATOM) return joint;
  const MATRIX3 r = ROTATION_BETWEEN(atom1, atom2);
  const MATRIX3 linked = XTAL::MULTIPLY(atom1.VCV, XTAL::TRANSPOSE(r));
  PUT_BLOCK(joint, 0, 3, linked);
  PUT_BLOCK(joint, 3, 0, XTAL::TRANSPOSE(linked));
  return joint;
}

// ---- distances ----

namespace {

// Covariance of the vector between two atoms. A vector between images of one atom that symmetry
// fixes has none.
MATRIX3 VECTOR_COVARIANCE(const PLACED_ATOM& atom0, const PLACED_ATOM& atom1) {
  const MATRIX3& v0 = atom0.VCV;
  const MATRIX3& v1 = atom1.VCV;
  if (atom0.ATOM == 0 || atom0.ATOM != atom1.ATOM)
    return {{XTAL::ADD(v0[0], v1[0]), XTAL::ADD(v0[1], v1[1]), XTAL::ADD(v0[2], v1[2])}};
  MATRIX3 r = ROTATION_BETWEEN(atom0, atom1);
  for (std::size_t k = 0; k < 3; ++k) r[k][k] -= 1.0f;
  return TRANSFORM(r, v0);
}

float POSITIONAL_VARIANCE(const VECTOR3& delta_frac, const MATRIX3& metric, const MATRIX3& v,
                          float distance) {
  const VECTOR3 g_delta = XTAL::MULTIPLY(metric, delta_frac);
  const float triple = XTAL::DOT(g_delta, XTAL::MULTIPLY(v, g_delta));
  return SQUARE(ESD_OF(triple) / distance);
}

float CELL_VARIANCE_OF_DISTANCE(const RULER& ruler, const VECTOR3& delta_frac, float distance) {
  float variance = 0.0f;
  for (const MATRIX3& metric : ruler.SHIFTED_METRICS)
    variance += SQUARE(CRYST_DIST(delta_frac, metric) - distance);
  return variance;
}

}  // namespace

VALUE_ESD DISTANCE_AND_SIGMA_VCV(const RULER& ruler, const PLACED_ATOM& atom0,
                                 const PLACED_ATOM& atom1) {
  const CRYSTAL_STRUCTURE_TYPE& phase = ruler.IMAGES.PHASE;
  const VECTOR3 delta_frac = XTAL::SUBTRACT(atom1.X, atom0.X);
  const float distance = CRYST_DIST(delta_frac, phase.CELL.GD);
  if (!(distance > 0.0f)) return {};
  const MATRIX3 v = VECTOR_COVARIANCE(atom0, atom1);
  const float variance = POSITIONAL_VARIANCE(delta_frac, phase.CELL.GD, v, distance) +
                         CELL_VARIANCE_OF_DISTANCE(ruler, delta_frac, distance);
  return {distance, ESD_OF(variance)};
}

// ---- single measurements ----

MATRIX6 CALC_VCV_TWO_ATOMS(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x1_frac,
                           const VECTOR3& x2_frac) {
  const RULER ruler = RULER_FOR(phase);
  return CALC_VCV_TWO_ATOMS(ATOM_AT(ruler, x1_frac), ATOM_AT(ruler, x2_frac));
}

VALUE_ESD DISTANCE_AND_SIGMA_VCV(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x0_frac,
                                 const VECTOR3& x1_frac) {
  const RULER ruler = RULER_FOR(phase);
  return DISTANCE_AND_SIGMA_VCV(ruler, ATOM_AT(ruler, x0_frac), ATOM_AT(ruler, x1_frac));
}

}  // namespace KVA_CRYSTAL_STRUCTURES
