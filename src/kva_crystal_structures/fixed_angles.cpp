// Which angles symmetry fixes. The operators of the apex tell those between images of one atom that
// have round values. For all others what fixes them shows in the derivatives: nothing that symmetry
// lets move changes the angle.
#include "src/kva_crystal_structures/fixed_angles.h"

#include <cmath>  // for sqrt, abs

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::IMATRIX3;

namespace {

constexpr float straight_angle = 180.0f;

// ---- by an operator that takes one ligand to the other ----

// The three atoms of an angle: apex first.
using TRIPLET = std::array<VECTOR3, 3>;

// Ligands that a mirror or an axis swaps, in line with the apex.
std::optional<float> FIXED_AS_STRAIGHT(float angle, float tolerance) {
  if (straight_angle - angle > tolerance) return std::nullopt;
  return straight_angle;
}

// Across a two-fold axis along a cell edge ligands at the height of the apex are opposite. On axes
// that are not at right angles equal coordinates are not yet one height.
std::optional<float> FIXED_BY_TWOFOLD(const IMATRIX3& rot, const TRIPLET& x_frac, float angle) {
  constexpr float same_coordinate = 1e-5f;
  constexpr float tolerance = 0.1f;  // degrees
  for (std::size_t k = 0; k < 3; ++k)
    if (rot[k][k] == 1 && std::abs(x_frac[0][k] - x_frac[1][k]) < same_coordinate)
      return FIXED_AS_STRAIGHT(angle, tolerance);
  return std::nullopt;
}

// Whether the vector is at right angles to the axis: its images about the axis add up to nothing.
bool IS_ACROSS_AXIS(const IMATRIX3& rot, int order, const VECTOR3& v_frac, const MATRIX3& metric) {
  constexpr float in_plane = 0.001f;  // of the length
  const MATRIX3 r = XTAL::REAL_MATRIX(rot);
  VECTOR3 image = v_frac;
  VECTOR3 sum = v_frac;
  for (int k = 1; k < order; ++k) {
    image = XTAL::MULTIPLY(r, image);
    sum = XTAL::ADD(sum, image);
  }
  return CRYST_DIST(sum, metric) <=
         in_plane * static_cast<float>(order) * CRYST_DIST(v_frac, metric);
}

// Multiples of 360 degrees over the order of the axis.
std::optional<float> FIXED_BY_AXIS(int order, float angle) {
  constexpr float tolerance = 0.1f;  // degrees
  for (int k = 1; k <= order; ++k) {
    const float value = static_cast<float>(k) * 360.0f / static_cast<float>(order);
    if (std::abs(angle - value) <= tolerance) return value;
  }
  return std::nullopt;
}

// The exact angle when an operator that swaps the ligands fixes it.
std::optional<float> FIXED_BY_OPERATOR(const IMATRIX3& rot, const TRIPLET& x_frac,
                                       const MATRIX3& metric, float angle) {
  constexpr float mirror_tolerance = 0.001f;  // degrees
  const int type = XTAL::ROTATION_TYPE(rot);
  switch (type) {
    case -1:
      return straight_angle;
    case -2:
      return FIXED_AS_STRAIGHT(angle, mirror_tolerance);
    case 2:
      return FIXED_BY_TWOFOLD(rot, x_frac, angle);
    case 3:
    case 4:
    case 6:
      if (!IS_ACROSS_AXIS(rot, type, XTAL::SUBTRACT(x_frac[1], x_frac[0]), metric))
        return std::nullopt;
      return FIXED_BY_AXIS(type, angle);
    default:
      return std::nullopt;
  }
}

std::optional<float> FIXED_BY_SWAP(const CRYSTAL_STRUCTURE_TYPE& phase, const APEX_ATOM& apex,
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
    const std::optional<float> exact =
        FIXED_BY_OPERATOR(op.ROT, {apex.PLACED.X, atom1.X, atom2.X}, phase.CELL.GD, angle);
    if (exact) return exact;
  }
  return std::nullopt;
}

// ---- by derivatives ----

constexpr double fixed_esd = 1e-4 / degrees_per_radian;  // radians; a smaller one is none
constexpr double fixed_variance = fixed_esd * fixed_esd;

// How something changes with the coordinates of the atoms as they are listed. Images of one atom
// move together.
struct ATOM_SLOPES {
  int COUNT = 0;
  std::array<int, 3> ATOM{};
  std::array<WIDE3, 3> SLOPE{};
};

// Adds the slope with the coordinates of an image; an atom that is not there has no esds.
void ADD_SLOPE(const PLACED_ATOM& image, const WIDE3& slope, ATOM_SLOPES& slopes) {
  if (image.ATOM == 0) return;
  const WIDE3 of_atom = MULTIPLY(WIDE(XTAL::TRANSPOSE(image.ROTATION)), slope);
  for (std::size_t k = 0; k < static_cast<std::size_t>(slopes.COUNT); ++k)
    if (slopes.ATOM[k] == image.ATOM) {
      slopes.SLOPE[k] = COMBINED(1.0, slopes.SLOPE[k], 1.0, of_atom);
      return;
    }
  slopes.ATOM[static_cast<std::size_t>(slopes.COUNT)] = image.ATOM;
  slopes.SLOPE[static_cast<std::size_t>(slopes.COUNT)] = of_atom;
  ++slopes.COUNT;
}

double VARIANCE(const RULER& ruler, const ATOM_SLOPES& slopes) {
  double variance = 0.0;
  for (std::size_t k = 0; k < static_cast<std::size_t>(slopes.COUNT); ++k) {
    const MATRIX3& vcv = ruler.ATOM_VCV[static_cast<std::size_t>(slopes.ATOM[k] - 1)];
    variance += DOT(slopes.SLOPE[k], MULTIPLY(WIDE(vcv), slopes.SLOPE[k]));
  }
  return variance;
}

// Variance by the coordinates of what changes with the ends of two legs as given.
double VARIANCE_OF_LEGS(const RULER& ruler, const APEX_ATOM& apex, const SPOKE& spoke1,
                        const SPOKE& spoke2, const WIDE3& slope1, const WIDE3& slope2) {
  ATOM_SLOPES slopes;
  ADD_SLOPE(spoke1.LIGAND, slope1, slopes);
  ADD_SLOPE(spoke2.LIGAND, slope2, slopes);
  ADD_SLOPE(apex.PLACED, COMBINED(-1.0, slope1, -1.0, slope2), slopes);
  return VARIANCE(ruler, slopes);
}

// The cosine and what it takes to make slopes of the angle from those of the cosine.
struct COSINE {
  double VALUE = 0.0;
  double SINE = 0.0;
};

COSINE COSINE_OF(const LEG_64& leg1, const LEG_64& leg2) {
  const double cosine = DOT(leg1.V, leg2.G_V) / (leg1.LENGTH * leg2.LENGTH);
  return {cosine, std::sqrt(1.0 - cosine * cosine)};
}

// Slope of the angle with the end of leg1: of the arc cosine of v1 G v2 / (d1 d2).
WIDE3 SLOPE_WITH_END(const LEG_64& leg1, const LEG_64& leg2, const COSINE& cosine) {
  return COMBINED(-1.0 / (leg1.LENGTH * leg2.LENGTH * cosine.SINE), leg2.G_V,
                  cosine.VALUE / (leg1.LENGTH * leg1.LENGTH * cosine.SINE), leg1.G_V);
}

// Change of the angle, in radians, when the metric tensor becomes another that is hardly different.
double CHANGE_WITH_METRIC(const LEG_64& leg1, const LEG_64& leg2, const COSINE& cosine,
                          const MATRIX3& metric, const MATRIX3& shifted_metric) {
  WIDE33 change{};
  for (std::size_t k = 0; k < 3; ++k)
    change[k] = COMBINED(1.0, WIDE(shifted_metric[k]), -1.0, WIDE(metric[k]));
  const double of_product = DOT(leg1.V, MULTIPLY(change, leg2.V)) / (leg1.LENGTH * leg2.LENGTH);
  const double of_length1 = DOT(leg1.V, MULTIPLY(change, leg1.V)) / (leg1.LENGTH * leg1.LENGTH);
  const double of_length2 = DOT(leg2.V, MULTIPLY(change, leg2.V)) / (leg2.LENGTH * leg2.LENGTH);
  return (0.5 * cosine.VALUE * (of_length1 + of_length2) - of_product) / cosine.SINE;
}

// Whether the first ligand is another atom than the rest. What it moves by, the others cannot take
// back: most angles that are not fixed show here.
bool MOVES_ALONE(const PLACED_ATOM& apex, const PLACED_ATOM& atom1, const PLACED_ATOM& atom2) {
  return atom1.ATOM != atom2.ATOM && atom1.ATOM != apex.ATOM;
}

// Whether positions and cell leave an angle as it is that is not nearly 0 or 180 degrees.
bool IS_FIXED(const RULER& ruler, const APEX_ATOM& apex, const SPOKE& spoke1, const SPOKE& spoke2) {
  const LEG_64& leg1 = spoke1.AS_IS_64;
  const LEG_64& leg2 = spoke2.AS_IS_64;
  const COSINE cosine = COSINE_OF(leg1, leg2);
  const WIDE3 slope1 = SLOPE_WITH_END(leg1, leg2, cosine);
  if (MOVES_ALONE(apex.PLACED, spoke1.LIGAND, spoke2.LIGAND)) {
    ATOM_SLOPES alone;
    ADD_SLOPE(spoke1.LIGAND, slope1, alone);
    if (!(VARIANCE(ruler, alone) < fixed_variance)) return false;
  }
  const WIDE3 slope2 = SLOPE_WITH_END(leg2, leg1, cosine);
  double variance = VARIANCE_OF_LEGS(ruler, apex, spoke1, spoke2, slope1, slope2);
  if (!(variance < fixed_variance)) return false;
  for (const MATRIX3& shifted : ruler.SYMMETRIC_METRICS) {
    const double change =
        CHANGE_WITH_METRIC(leg1, leg2, cosine, ruler.IMAGES.PHASE.CELL.GD, shifted);
    variance += change * change;
  }
  return variance < fixed_variance;
}

// Whether positions leave two legs in line that are so. There the angle itself has no slope, as it
// can go one way only; what has is how far the ends leave the line, in directions across it.
bool STAYS_IN_LINE(const RULER& ruler, const APEX_ATOM& apex, const SPOKE& spoke1,
                   const SPOKE& spoke2, bool opposite) {
  constexpr double along_leg = 1e-3;  // of the edge
  const WIDE33 metric = WIDE(ruler.IMAGES.PHASE.CELL.GD);
  const LEG_64& leg = spoke1.AS_IS_64;
  const double length2 = opposite ? spoke2.AS_IS_64.LENGTH : -spoke2.AS_IS_64.LENGTH;
  double variance = 0.0;
  for (std::size_t k = 0; k < 3; ++k) {
    WIDE3 edge{};
    edge[k] = 1.0;
    const double part = leg.G_V[k] / (leg.LENGTH * leg.LENGTH);
    const LEG_64 across = LEG_64_OF(COMBINED(1.0, edge, -part, leg.V), metric);
    if (across.LENGTH < along_leg * std::sqrt(metric[k][k])) continue;
    variance += VARIANCE_OF_LEGS(ruler, apex, spoke1, spoke2,
                                 SCALED(across.G_V, 1.0 / (across.LENGTH * leg.LENGTH)),
                                 SCALED(across.G_V, 1.0 / (across.LENGTH * length2)));
  }
  return variance < fixed_variance;
}

std::optional<float> FIXED_BY_DERIVATIVES(const RULER& ruler, const APEX_ATOM& apex,
                                          const SPOKE& spoke1, const SPOKE& spoke2, float angle) {
  constexpr float near_line = 1.0f;  // degrees; there the angle is 0 or 180 or not fixed
  constexpr float in_line = 0.001f;
  const bool opposite = angle > 90.0f;
  const float from_line = opposite ? straight_angle - angle : angle;
  if (from_line >= near_line)
    return IS_FIXED(ruler, apex, spoke1, spoke2) ? std::optional(angle) : std::nullopt;
  if (from_line > in_line || !STAYS_IN_LINE(ruler, apex, spoke1, spoke2, opposite))
    return std::nullopt;
  return opposite ? straight_angle : 0.0f;
}

}  // namespace

std::optional<float> FIXED_ANGLE(const RULER& ruler, const APEX_ATOM& apex, const SPOKE& spoke1,
                                 const SPOKE& spoke2, float angle) {
  const std::optional<float> exact =
      FIXED_BY_SWAP(ruler.IMAGES.PHASE, apex, spoke1.LIGAND, spoke2.LIGAND, angle);
  return exact ? exact : FIXED_BY_DERIVATIVES(ruler, apex, spoke1, spoke2, angle);
}

}  // namespace KVA_CRYSTAL_STRUCTURES
