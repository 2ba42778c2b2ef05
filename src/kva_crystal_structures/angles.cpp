// Angles with their esds: those that symmetry fixes have none.
#include "src/kva_crystal_structures/angles.h"

#include <algorithm>  // for clamp
#include <cmath>      // for sqrt, abs, acos
#include <optional>

#include "console_code/kva_utilities/numbers.h"
#include "src/kva_crystal_structures/fixed_angles.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::TINY_REAL;
using XTAL::SQUARE;

// ---- angles of vectors ----

namespace {

// The angle in 64-bit reals. Near 0 and 180 degrees the cosine hardly changes: what a 32-bit one
// rounds away is up to 0.03 degrees.
float FLAT_ANGLE(const VECTOR3& v1_frac, const VECTOR3& v2_frac, const MATRIX3& metric) {
  const LEG_64 leg1 = LEG_64_OF(v1_frac, metric);
  const LEG_64 leg2 = LEG_64_OF(v2_frac, metric);
  const double cosine = DOT(leg1.V, leg2.G_V) / (leg1.LENGTH * leg2.LENGTH);
  return static_cast<float>(std::acos(std::clamp(cosine, -1.0, 1.0)) * degrees_per_radian);
}

}  // namespace

float ANGLE_BETWEEN(const LEG& leg1, const LEG& leg2, const MATRIX3& metric) {
  constexpr float flat = 0.99f;  // cosine
  const float lengths = leg1.LENGTH * leg2.LENGTH;
  if (!(lengths > 0.0f)) return 0.0f;
  const float cosine = XTAL::DOT(leg1.V, leg2.G_V) / lengths;
  if (std::abs(cosine) > flat) return FLAT_ANGLE(leg1.V, leg2.V, metric);
  return XTAL::ACOSD(cosine);
}

float CRYST_ANGLE(const VECTOR3& v1_frac, const VECTOR3& v2_frac, const MATRIX3& metric) {
  return ANGLE_BETWEEN(LEG_OF(v1_frac, metric), LEG_OF(v2_frac, metric), metric);
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
  spoke.AS_IS_64 = LEG_64_OF(spoke.AS_IS.V, metric);
  for (std::size_t k = 0; k < 3; ++k) {
    if (spoke.ESDS[k] > 0.0f) {
      VECTOR3 shifted = ligand.X;
      shifted[k] += spoke.ESDS[k];
      spoke.LIGAND_SHIFTED[k] = LEG_OF(XTAL::SUBTRACT(shifted, x0), metric);
    }
    if (apex.ESDS[k] > 0.0f) {
      VECTOR3 shifted_apex = x0;
      shifted_apex[k] += apex.ESDS[k];
      spoke.APEX_SHIFTED[k] = LEG_OF(XTAL::SUBTRACT(ligand.X, shifted_apex), metric);
    }
  }
  spoke.IN_SHIFTED_CELLS.reserve(ruler.SHIFTED_METRICS.size());
  for (const MATRIX3& shifted_metric : ruler.SHIFTED_METRICS)
    spoke.IN_SHIFTED_CELLS.push_back(LEG_OF(spoke.AS_IS.V, shifted_metric));
  return spoke;
}

// ---- angle with its esd ----

namespace {

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
float ANGLE_DERIVATIVE(float angle, const LEG& leg1, const LEG& leg2, const MATRIX3& metric,
                       float shift) {
  return shift > 0.0f ? (angle - ANGLE_BETWEEN(leg1, leg2, metric)) / shift : 0.0f;
}

// Change of the angle with each coordinate of apex and ligands, by a shift of one esd.
std::array<float, 9> ANGLE_DERIVATIVES(const VECTOR3& apex_esds, const SPOKE& spoke1,
                                       const SPOKE& spoke2, const MATRIX3& metric, float angle) {
  std::array<float, 9> d{};
  for (std::size_t k = 0; k < 3; ++k) {
    d[k] = ANGLE_DERIVATIVE(angle, spoke1.APEX_SHIFTED[k], spoke2.APEX_SHIFTED[k], metric,
                            apex_esds[k]);
    d[k + 3] =
        ANGLE_DERIVATIVE(angle, spoke1.LIGAND_SHIFTED[k], spoke2.AS_IS, metric, spoke1.ESDS[k]);
    d[k + 6] =
        ANGLE_DERIVATIVE(angle, spoke1.AS_IS, spoke2.LIGAND_SHIFTED[k], metric, spoke2.ESDS[k]);
  }
  return d;
}

// The sum over the covariances that there are: those between different atoms are 0.
float VARIANCE_OF_COORDINATES(const std::array<float, 9>& d, const MATRIX9& v) {
  float variance = 0.0f;
  for (std::size_t i = 0; i < 9; ++i) {
    if (d[i] == 0.0f) continue;
    for (std::size_t j = 0; j < 9; ++j)
      if (v[i][j] != 0.0f) variance += d[i] * v[i][j] * d[j];
  }
  return variance;
}

float CELL_VARIANCE_OF_ANGLE(const RULER& ruler, const SPOKE& spoke1, const SPOKE& spoke2,
                             float angle) {
  float variance = 0.0f;
  for (std::size_t cell = 0; cell < ruler.SHIFTED_METRICS.size(); ++cell)
    variance += SQUARE(ANGLE_BETWEEN(spoke1.IN_SHIFTED_CELLS[cell], spoke2.IN_SHIFTED_CELLS[cell],
                                     ruler.SHIFTED_METRICS[cell]) -
                       angle);
  return variance;
}

}  // namespace

VALUE_ESD ANGLE_AND_SIGMA_VCV(const RULER& ruler, const APEX_ATOM& apex, const SPOKE& spoke1,
                              const SPOKE& spoke2) {
  const MATRIX3& metric = ruler.IMAGES.PHASE.CELL.GD;
  VALUE_ESD result;
  result.VALUE = ANGLE_BETWEEN(spoke1.AS_IS, spoke2.AS_IS, metric);
  if (!(spoke1.AS_IS.LENGTH > 0.0f) || !(spoke2.AS_IS.LENGTH > 0.0f)) return result;
  const std::optional<float> exact = FIXED_ANGLE(ruler, apex, spoke1, spoke2, result.VALUE);
  if (exact) return {*exact, 0.0f};

  const MATRIX9 v =
      TRIPLET_COVARIANCE(spoke1.WITH_APEX, CALC_VCV_TWO_ATOMS(spoke1.LIGAND, spoke2.LIGAND));
  const std::array<float, 9> d = ANGLE_DERIVATIVES(apex.ESDS, spoke1, spoke2, metric, result.VALUE);
  float variance = VARIANCE_OF_COORDINATES(d, v);
  variance += CELL_VARIANCE_OF_ANGLE(ruler, spoke1, spoke2, result.VALUE);
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
