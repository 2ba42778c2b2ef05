// Angles with their esds: those that symmetry fixes have none.
#include "src/kva_crystal_structures/angles.h"

#include <cmath>  // for sqrt, abs
#include <optional>
#include <span>

#include "console_code/kva_utilities/numbers.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::IMATRIX3;
using KVA_UTILITIES::TINY_REAL;
using XTAL::SQUARE;
using XTAL::SYSTEM;

// ---- angles of vectors ----

float ANGLE_BETWEEN(const LEG& leg1, const LEG& leg2) {
  const float lengths = leg1.LENGTH * leg2.LENGTH;
  if (!(lengths > 0.0f)) return 0.0f;
  const float cosine = XTAL::DOT(leg1.V, leg2.G_V) / lengths;
  if (cosine <= -1.0f) return 180.0f;
  if (cosine >= 1.0f) return 0.0f;
  return XTAL::ACOSD(cosine);
}

float CRYST_ANGLE(const VECTOR3& v1_frac, const VECTOR3& v2_frac, const MATRIX3& metric) {
  return ANGLE_BETWEEN(LEG_OF(v1_frac, metric), LEG_OF(v2_frac, metric));
}

// ---- apex and spokes ----

namespace {

// Shifts of one esd for numerical derivatives; 0 where there is none.
VECTOR3 SHIFTS_OF(const MATRIX3& vcv) {
  VECTOR3 shifts{};
  for (std::size_t k = 0; k < 3; ++k)
    if (vcv[k][k] > TINY_REAL) shifts[k] = std::sqrt(vcv[k][k]);
  return shifts;
}

}  // namespace

APEX_ATOM APEX_AT(const RULER& ruler, const VECTOR3& x_frac) {
  APEX_ATOM apex;
  apex.PLACED = ATOM_AT(ruler, x_frac);
  apex.ESDS = SHIFTS_OF(apex.PLACED.VCV);
  XTAL::GET_STABILIZER(x_frac, ruler.IMAGES.PHASE.SPG, apex.ORDER, apex.OPERATORS,
                       apex.TRANSLATIONS);
  return apex;
}

SPOKE SPOKE_TO(const RULER& ruler, const APEX_ATOM& apex, const PLACED_ATOM& ligand) {
  const MATRIX3& metric = ruler.IMAGES.PHASE.CELL.GD;
  const VECTOR3& x0 = apex.PLACED.X;
  SPOKE spoke;
  spoke.LIGAND = ligand;
  spoke.WITH_APEX = CALC_VCV_TWO_ATOMS(apex.PLACED, ligand);
  spoke.ESDS = SHIFTS_OF(ligand.VCV);
  spoke.AS_IS = LEG_OF(XTAL::SUBTRACT(ligand.X, x0), metric);
  for (std::size_t k = 0; k < 3; ++k) {
    VECTOR3 shifted = ligand.X;
    shifted[k] += spoke.ESDS[k];
    spoke.LIGAND_SHIFTED[k] = LEG_OF(XTAL::SUBTRACT(shifted, x0), metric);
    VECTOR3 shifted_apex = x0;
    shifted_apex[k] += apex.ESDS[k];
    spoke.APEX_SHIFTED[k] = LEG_OF(XTAL::SUBTRACT(ligand.X, shifted_apex), metric);
  }
  spoke.IN_SHIFTED_CELLS.reserve(ruler.SHIFTED_METRICS.size());
  for (const MATRIX3& shifted_metric : ruler.SHIFTED_METRICS)
    spoke.IN_SHIFTED_CELLS.push_back(LEG_OF(spoke.AS_IS.V, shifted_metric));
  return spoke;
}

// ---- angles that symmetry fixes ----

namespace {

// The three atoms of an angle: apex first.
using TRIPLET = std::array<VECTOR3, 3>;

// The first of the values that lies within tolerance of the angle.
std::optional<float> VALUE_NEAR(float angle, std::span<const float> values, float tolerance) {
  for (float value : values)
    if (std::abs(angle - value) <= tolerance) return value;
  return std::nullopt;
}

constexpr float straight_angle = 180.0f;
constexpr std::array<float, 1> straight{straight_angle};

// Angles that a mirror between the ligands fixes.
std::span<const float> MIRROR_ANGLES(SYSTEM system) {
  static constexpr std::array<float, 2> hexagonal{60.0f, straight_angle};
  static constexpr std::array<float, 4> square{45.0f, 90.0f, 135.0f, straight_angle};
  switch (system) {
    case SYSTEM::TRIGONAL:
    case SYSTEM::HEXAGONAL:
      return hexagonal;
    case SYSTEM::TETRAGONAL:
    case SYSTEM::CUBIC:
      return square;
    case SYSTEM::ORTHORHOMBIC:
    case SYSTEM::MONOCLINIC:
      return straight;
    default:
      return {};
  }
}

constexpr float mirror_tolerance = 0.001f;  // degrees
constexpr float axis_tolerance = 0.1f;      // degrees from the angle that an axis demands

// Across a two-fold axis along a cell edge ligands at the height of the apex are opposite. On axes
// that are not at right angles equal coordinates are not yet one height.
std::optional<float> FIXED_BY_TWOFOLD(const IMATRIX3& rot, const TRIPLET& x_frac, float angle) {
  constexpr float same_coordinate = 1e-5f;
  for (std::size_t k = 0; k < 3; ++k)
    if (rot[k][k] == 1 && std::abs(x_frac[0][k] - x_frac[1][k]) < same_coordinate)
      return VALUE_NEAR(angle, straight, axis_tolerance);
  return std::nullopt;
}

// Multiples of 360 degrees over the order of the axis.
std::optional<float> FIXED_BY_AXIS(int order, float angle) {
  for (int k = 1; k <= order; ++k) {
    const float value = static_cast<float>(k) * 360.0f / static_cast<float>(order);
    if (std::abs(angle - value) <= axis_tolerance) return value;
  }
  return std::nullopt;
}

// The exact angle when an operator of the given kind, which swaps the ligands, fixes it.
std::optional<float> FIXED_BY_OPERATOR(SYSTEM system, const IMATRIX3& rot, const TRIPLET& x_frac,
                                       float angle) {
  const int type = XTAL::ROTATION_TYPE(rot);
  switch (type) {
    case -1:
      return straight_angle;
    case -2:
      return VALUE_NEAR(angle, MIRROR_ANGLES(system), mirror_tolerance);
    case 2:
      return FIXED_BY_TWOFOLD(rot, x_frac, angle);
    case 3:
    case 4:
    case 6:
      return FIXED_BY_AXIS(type, angle);
    default:
      return std::nullopt;
  }
}

// The exact angle when the symmetry of the apex fixes the one between two images of one atom.
std::optional<float> FIXED_BY_SYMMETRY(const CRYSTAL_STRUCTURE_TYPE& phase, const APEX_ATOM& apex,
                                       const PLACED_ATOM& atom1, const PLACED_ATOM& atom2,
                                       float angle) {
  constexpr float same_position = 0.001f;  // angstroms
  if (atom1.ATOM == 0 || atom1.ATOM != atom2.ATOM) return std::nullopt;
  for (int s = 2; s <= apex.ORDER; ++s) {
    const XTAL::SYM_OP& op = phase.SPG.SYMOP(apex.OPERATORS(s));
    // The translation brings the image of the apex back to the apex itself.
    const VECTOR3 image = XTAL::ADD(XTAL::APPLY_OP(op, atom1.X), apex.TRANSLATIONS(s));
    const VECTOR3 apart = XTAL::SUBTRACT(image, atom2.X);
    if (CRYST_DIST(apart, phase.CELL.GD) > same_position) continue;
    const std::optional<float> exact = FIXED_BY_OPERATOR(phase.SPG.CRYSTALSYS.NAME, op.ROT,
                                                         {apex.PLACED.X, atom1.X, atom2.X}, angle);
    if (exact) return exact;
  }
  return std::nullopt;
}

// ---- angle with its esd ----

using MATRIX9 = std::array<std::array<float, 9>, 9>;

// Covariance of the coordinates of all three. The block that links the apex with the second ligand
// is that of the apex with the first.
MATRIX9 TRIPLET_COVARIANCE(const MATRIX6& apex_first, const MATRIX6& first_second) {
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

// Change of the angle when it is the one between the shifted legs.
float ANGLE_DERIVATIVE(float angle, const LEG& leg1, const LEG& leg2, float shift) {
  return shift > 0.0f ? (angle - ANGLE_BETWEEN(leg1, leg2)) / shift : 0.0f;
}

// Change of the angle with each coordinate of apex and ligands, by a shift of one esd.
std::array<float, 9> ANGLE_DERIVATIVES(const VECTOR3& apex_esds, const SPOKE& spoke1,
                                       const SPOKE& spoke2, float angle) {
  std::array<float, 9> d{};
  for (std::size_t k = 0; k < 3; ++k) {
    d[k] = ANGLE_DERIVATIVE(angle, spoke1.APEX_SHIFTED[k], spoke2.APEX_SHIFTED[k], apex_esds[k]);
    d[k + 3] = ANGLE_DERIVATIVE(angle, spoke1.LIGAND_SHIFTED[k], spoke2.AS_IS, spoke1.ESDS[k]);
    d[k + 6] = ANGLE_DERIVATIVE(angle, spoke1.AS_IS, spoke2.LIGAND_SHIFTED[k], spoke2.ESDS[k]);
  }
  return d;
}

float CELL_VARIANCE_OF_ANGLE(const SPOKE& spoke1, const SPOKE& spoke2, float angle) {
  float variance = 0.0f;
  for (std::size_t cell = 0; cell < spoke1.IN_SHIFTED_CELLS.size(); ++cell)
    variance +=
        SQUARE(ANGLE_BETWEEN(spoke1.IN_SHIFTED_CELLS[cell], spoke2.IN_SHIFTED_CELLS[cell]) - angle);
  return variance;
}

}  // namespace

VALUE_ESD ANGLE_AND_SIGMA_VCV(const RULER& ruler, const APEX_ATOM& apex, const SPOKE& spoke1,
                              const SPOKE& spoke2) {
  VALUE_ESD result;
  result.VALUE = ANGLE_BETWEEN(spoke1.AS_IS, spoke2.AS_IS);
  if (!(spoke1.AS_IS.LENGTH > 0.0f) || !(spoke2.AS_IS.LENGTH > 0.0f)) return result;
  const std::optional<float> exact =
      FIXED_BY_SYMMETRY(ruler.IMAGES.PHASE, apex, spoke1.LIGAND, spoke2.LIGAND, result.VALUE);
  if (exact) return {*exact, 0.0f};

  const MATRIX9 v =
      TRIPLET_COVARIANCE(spoke1.WITH_APEX, CALC_VCV_TWO_ATOMS(spoke1.LIGAND, spoke2.LIGAND));
  const std::array<float, 9> d = ANGLE_DERIVATIVES(apex.ESDS, spoke1, spoke2, result.VALUE);
  float variance = 0.0f;
  for (std::size_t i = 0; i < 9; ++i)
    for (std::size_t j = 0; j < 9; ++j) variance += d[i] * v[i][j] * d[j];
  variance += CELL_VARIANCE_OF_ANGLE(spoke1, spoke2, result.VALUE);
  result.ESD = ESD_OF(variance);
  return result;
}

VALUE_ESD ANGLE_AND_SIGMA_VCV(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x0_frac,
                              const VECTOR3& x1_frac, const VECTOR3& x2_frac) {
  const RULER ruler = RULER_FOR(phase);
  const APEX_ATOM apex = APEX_AT(ruler, x0_frac);
  return ANGLE_AND_SIGMA_VCV(ruler, apex, SPOKE_TO(ruler, apex, ATOM_AT(ruler, x1_frac)),
                             SPOKE_TO(ruler, apex, ATOM_AT(ruler, x2_frac)));
}

}  // namespace KVA_CRYSTAL_STRUCTURES
