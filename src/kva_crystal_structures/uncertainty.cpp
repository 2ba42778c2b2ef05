// Covariances of coordinates, and distances and angles with their esds.
#include "src/kva_crystal_structures/uncertainty.h"

#include <algorithm>  // for any_of
#include <cmath>      // for sqrt, abs

#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::IMATRIX3;
using KVA_UTILITIES::INDEXALL;
using KVA_UTILITIES::TINY_REAL;
using XTAL::SQUARE;

// ---- lengths and angles of vectors ----

namespace {

float LENGTH_OF_SQUARE(float square) {
  return std::sqrt(std::max(square, 0.0f));
}

}  // namespace

float CRYST_DIST(const VECTOR3& v_frac, const MATRIX3& metric) {
  return LENGTH_OF_SQUARE(XTAL::DOT(v_frac, XTAL::MULTIPLY(metric, v_frac)));
}

float CRYST_ANGLE(const VECTOR3& v1_frac, const VECTOR3& v2_frac, const MATRIX3& metric) {
  const VECTOR3 g_v2 = XTAL::MULTIPLY(metric, v2_frac);
  const float lengths = CRYST_DIST(v1_frac, metric) * LENGTH_OF_SQUARE(XTAL::DOT(v2_frac, g_v2));
  if (!(lengths > 0.0f)) return 0.0f;
  const float cosine = XTAL::DOT(v1_frac, g_v2) / lengths;
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
  for (const CELL_SHIFT& shift : CELL_SHIFTS(phase, true)) {
    XTAL::CRYSTAL_CELL cell;
    XTAL::SET_CELL_RECORD(shift.CELL, shift.ANG, cell, phase.CELL.CARTTYPE);
    ruler.SHIFTED_FRAMES.push_back(cell.CR_ORTH_CEL);
  }
  return ruler;
}

PLACED_ATOM ATOM_AT(const RULER& ruler, const VECTOR3& x_frac) {
  const FOUND_ATOM found = FIND_ATOM(ruler.IMAGES, x_frac, "", MATCH_RADIUS);
  PLACED_ATOM placed{x_frac, found.ATOM, found.OPERATOR, {}};
  if (found.ATOM > 0)
    placed.VCV =
        VCV_OF_IMAGE(ruler.IMAGES.PHASE, ruler.ATOM_VCV[static_cast<std::size_t>(found.ATOM - 1)],
                     found.OPERATOR);
  return placed;
}

APEX_ATOM APEX_AT(const RULER& ruler, const VECTOR3& x_frac) {
  APEX_ATOM apex;
  apex.PLACED = ATOM_AT(ruler, x_frac);
  XTAL::GET_STABILIZER(x_frac, ruler.IMAGES.PHASE.SPG, apex.ORDER, apex.OPERATORS,
                       apex.TRANSLATIONS);
  return apex;
}

namespace {

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

MATRIX6 CALC_VCV_TWO_ATOMS(const RULER& ruler, const PLACED_ATOM& atom1, const PLACED_ATOM& atom2) {
  MATRIX6 joint{};
  PUT_BLOCK(joint, 0, 0, atom1.VCV);
  PUT_BLOCK(joint, 3, 3, atom2.VCV);
  if (atom1.ATOM == 0 || atom1.ATOM != atom2.ATOM) return joint;
  const MATRIX3 r = ROTATION_BETWEEN(ruler.IMAGES.PHASE, atom1.OPERATOR, atom2.OPERATOR);
  const MATRIX3 linked = XTAL::MULTIPLY(atom1.VCV, XTAL::TRANSPOSE(r));
  PUT_BLOCK(joint, 0, 3, linked);
  PUT_BLOCK(joint, 3, 0, XTAL::TRANSPOSE(linked));
  return joint;
}

// ---- distances ----

namespace {

// Covariance of the vector between two atoms. A vector between images of one atom that symmetry
// fixes has none.
MATRIX3 VECTOR_COVARIANCE(const CRYSTAL_STRUCTURE_TYPE& phase, const PLACED_ATOM& atom0,
                          const PLACED_ATOM& atom1) {
  const MATRIX3& v0 = atom0.VCV;
  const MATRIX3& v1 = atom1.VCV;
  if (atom0.ATOM == 0 || atom0.ATOM != atom1.ATOM)
    return {{XTAL::ADD(v0[0], v1[0]), XTAL::ADD(v0[1], v1[1]), XTAL::ADD(v0[2], v1[2])}};
  MATRIX3 r = ROTATION_BETWEEN(phase, atom0.OPERATOR, atom1.OPERATOR);
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
  const MATRIX3 v = VECTOR_COVARIANCE(phase, atom0, atom1);
  const float variance = POSITIONAL_VARIANCE(delta_frac, phase.CELL.GD, v, distance) +
                         CELL_VARIANCE_OF_DISTANCE(ruler, delta_frac, distance);
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
MATRIX9 TRIPLET_COVARIANCE(const RULER& ruler, const PLACED_ATOM& apex, const PLACED_ATOM& atom1,
                           const PLACED_ATOM& atom2) {
  const MATRIX6 apex_first = CALC_VCV_TWO_ATOMS(ruler, apex, atom1);
  const MATRIX6 first_second = CALC_VCV_TWO_ATOMS(ruler, atom1, atom2);
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
bool FIXED_BY_SYMMETRY(const CRYSTAL_STRUCTURE_TYPE& phase, const APEX_ATOM& apex,
                       const PLACED_ATOM& atom1, const PLACED_ATOM& atom2, float& angle) {
  constexpr float same_position = 0.001f;  // angstroms
  if (atom1.ATOM == 0 || atom1.ATOM != atom2.ATOM) return false;
  for (int s = 2; s <= apex.ORDER; ++s) {
    const XTAL::SYM_OP& op = phase.SPG.SYMOP(apex.OPERATORS(s));
    // The translation brings the image of the apex back to the apex itself.
    const VECTOR3 image = XTAL::ADD(XTAL::APPLY_OP(op, atom1.X), apex.TRANSLATIONS(s));
    const VECTOR3 apart = XTAL::SUBTRACT(image, atom2.X);
    if (CRYST_DIST(apart, phase.CELL.GD) > same_position) continue;
    if (FIXED_BY_OPERATOR(phase.SPG, op.ROT, {apex.PLACED.X, atom1.X, atom2.X}, angle)) return true;
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

float CELL_VARIANCE_OF_ANGLE(const RULER& ruler, const TRIPLET& x_frac, float angle) {
  float variance = 0.0f;
  for (const MATRIX3& metric : ruler.SHIFTED_METRICS)
    variance += SQUARE(ANGLE_OF(x_frac, metric) - angle);
  return variance;
}

}  // namespace

VALUE_ESD ANGLE_AND_SIGMA_VCV(const RULER& ruler, const APEX_ATOM& apex, const PLACED_ATOM& atom1,
                              const PLACED_ATOM& atom2) {
  const CRYSTAL_STRUCTURE_TYPE& phase = ruler.IMAGES.PHASE;
  const TRIPLET x_frac{apex.PLACED.X, atom1.X, atom2.X};
  VALUE_ESD result;
  result.VALUE = ANGLE_OF(x_frac, phase.CELL.GD);
  const bool no_length =
      !(CRYST_DIST(XTAL::SUBTRACT(x_frac[1], x_frac[0]), phase.CELL.GD) > 0.0f) ||
      !(CRYST_DIST(XTAL::SUBTRACT(x_frac[2], x_frac[0]), phase.CELL.GD) > 0.0f);
  if (no_length || FIXED_BY_SYMMETRY(phase, apex, atom1, atom2, result.VALUE)) return result;

  const MATRIX9 v = TRIPLET_COVARIANCE(ruler, apex.PLACED, atom1, atom2);
  const std::array<float, 9> d = ANGLE_DERIVATIVES(phase, x_frac, v, result.VALUE);
  float variance = 0.0f;
  for (std::size_t i = 0; i < 9; ++i)
    for (std::size_t j = 0; j < 9; ++j) variance += d[i] * v[i][j] * d[j];
  variance += CELL_VARIANCE_OF_ANGLE(ruler, x_frac, result.VALUE);
  result.ESD = ESD_OF(variance);
  return result;
}

// ---- single measurements ----

MATRIX6 CALC_VCV_TWO_ATOMS(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x1_frac,
                           const VECTOR3& x2_frac) {
  const RULER ruler = RULER_FOR(phase);
  return CALC_VCV_TWO_ATOMS(ruler, ATOM_AT(ruler, x1_frac), ATOM_AT(ruler, x2_frac));
}

VALUE_ESD DISTANCE_AND_SIGMA_VCV(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x0_frac,
                                 const VECTOR3& x1_frac) {
  const RULER ruler = RULER_FOR(phase);
  return DISTANCE_AND_SIGMA_VCV(ruler, ATOM_AT(ruler, x0_frac), ATOM_AT(ruler, x1_frac));
}

VALUE_ESD ANGLE_AND_SIGMA_VCV(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x0_frac,
                              const VECTOR3& x1_frac, const VECTOR3& x2_frac) {
  const RULER ruler = RULER_FOR(phase);
  return ANGLE_AND_SIGMA_VCV(ruler, APEX_AT(ruler, x0_frac), ATOM_AT(ruler, x1_frac),
                             ATOM_AT(ruler, x2_frac));
}

}  // namespace KVA_CRYSTAL_STRUCTURES
