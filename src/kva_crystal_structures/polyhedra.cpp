// Angles, edges and distortion parameters of the coordination polyhedra of one block.
// Prints nothing.
#include "src/kva_crystal_structures/polyhedra.h"

#include <cmath>  // for sqrt, cbrt, abs

#include "src/kva_crystal_structures/angles.h"
#include "src/kva_crystal_structures/convex_hull.h"
#include "src/kva_crystal_structures/polyhedron_volume.h"
#include "src/kva_crystal_structures/sphere_fit.h"

namespace KVA_CRYSTAL_STRUCTURES {

using XTAL::SQUARE;

namespace {

constexpr float no_volume = 0.1f;  // cubic angstroms; below: no distortion parameters
float CUBE_ROOT(float x) {
  return static_cast<float>(std::cbrt(static_cast<double>(x)));
}

}  // namespace

// ---- angles and edges ----

void CALC_ANGLES_OF_CENTRE(const COORDINATIONS& around, CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  phase.NANGLES(i) = 0;
  if (phase.NBONDS(i) <= 0) return;
  const std::vector<int> present = BONDS_PRESENT(phase, i);
  const std::vector<PLACED_ATOM>& ligands = around.LIGANDS(i);
  const APEX_ATOM centre = APEX_AT(around.OWN_RULER, CENTRE_POSITION(phase, i));
  std::vector<SPOKE> spokes;
  spokes.reserve(ligands.size());
  for (const PLACED_ATOM& ligand : ligands)
    spokes.push_back(SPOKE_TO(around.OWN_RULER, centre, ligand));
  for (std::size_t first = 0; first < present.size(); ++first) {
    const int j = present[first];
    for (std::size_t second = first + 1; second < present.size(); ++second) {
      const int k = present[second];
      const VALUE_ESD angle =
          ANGLE_AND_SIGMA_VCV(around.OWN_RULER, centre, spokes[first], spokes[second]);
      const VALUE_ESD edge =
          DISTANCE_AND_SIGMA_VCV(around.OWN_RULER, ligands[first], ligands[second]);
      ROW<float, ANGLE_COLUMNS>& row = phase.BANGLES.ROW_OF(i, j, k);
      row(ANGLE) = angle.VALUE;
      row(ANGLE_STD) = angle.ESD;
      row(EDGE) = edge.VALUE;
      row(EDGE_STD) = edge.ESD;
      ++phase.NANGLES(i);
    }
  }
}

void CALC_ANGLES_ALLATOMS(CRYSTAL_STRUCTURE_TYPE& phase) {
  const COORDINATIONS around = COORDINATIONS_OF(RULER_FOR(phase));
  for (int i = 1; i <= CAPACITY(phase); ++i) CALC_ANGLES_OF_CENTRE(around, phase, i);
}

// ---- distortion ----

namespace {

float MEAN_LENGTH(const CRYSTAL_STRUCTURE_TYPE& phase, int i, const std::vector<int>& present) {
  float sum = 0.0f;
  for (int j : present) sum += phase.BONDS(i, j, BOND_LENGTH);
  return sum / static_cast<float>(present.size());
}

// Mean of (d / r)^2: the quadratic elongation of K. Robinson, G. V. Gibbs and P. H. Ribbe, Science
// 172 (1971) 567-570, with r the bond length of the regular polyhedron of the same volume.
float ELONGATION(const CRYSTAL_STRUCTURE_TYPE& phase, int i, const std::vector<int>& present,
                 float r) {
  float sum = 0.0f;
  for (int j : present) sum += SQUARE(phase.BONDS(i, j, BOND_LENGTH) / r);
  return sum / static_cast<float>(present.size());
}

struct PAIR_SUMS {
  float DEVIATION_SQ = 0.0f;  // square degrees, from the regular angle
  float EDGE = 0.0f;          // angstroms
  int COUNT = 0;
};

// Sums over the ligand pairs, without those whose angle lies within skip degrees of 180.
PAIR_SUMS SUM_PAIRS(const CRYSTAL_STRUCTURE_TYPE& phase, int i, const std::vector<int>& present,
                    float regular_angle, float skip) {
  PAIR_SUMS sums;
  for (std::size_t first = 0; first < present.size(); ++first)
    for (std::size_t second = first + 1; second < present.size(); ++second) {
      const float angle = phase.BANGLES(i, present[first], present[second], ANGLE);
      if (std::abs(std::abs(angle) - 180.0f) <= skip) continue;
      sums.DEVIATION_SQ += SQUARE(angle - regular_angle);
      sums.EDGE += phase.BANGLES(i, present[first], present[second], EDGE);
      ++sums.COUNT;
    }
  return sums;
}

constexpr float skip_none = -1.0f;

void CALC_VOLUMES(const COORDINATIONS& around, CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  CALC_POLYVOL_VCV(around, phase, i);
  phase.POLYHEDRON(i, POLY_VOLUME_SRB) = CALC_POLYVOL_SRB(phase, i);
}

void CALC_TRIANGLE(CRYSTAL_STRUCTURE_TYPE& phase, int i, const std::vector<int>& present) {
  constexpr float any_angle = 0.0f;  // its deviations are not used
  phase.POLYHEDRON(i, POLY_MEAN_EDGE) =
      SUM_PAIRS(phase, i, present, any_angle, skip_none).EDGE / 3.0f;
}

void CALC_TETRAHEDRON(CRYSTAL_STRUCTURE_TYPE& phase, int i, const std::vector<int>& present) {
  const PAIR_SUMS sums = SUM_PAIRS(phase, i, present, TETRAHEDRON_ANGLE, skip_none);
  phase.POLYHEDRON(i, POLY_VARIANCE) = sums.DEVIATION_SQ / 5.0f;
  phase.POLYHEDRON(i, POLY_MEAN_EDGE) = sums.EDGE / 6.0f;
  const float r =
      TETRAHEDRON_RADIUS * CUBE_ROOT(12.0f * phase.POLYHEDRON(i, POLY_VOLUME) / ROOT_TWO);
  phase.POLYHEDRON(i, POLY_ELONGATION) = ELONGATION(phase, i, present, r);
}

// Angle variance and mean edge stay 0 unless twelve pairs are no trans pairs.
void CALC_OCTAHEDRON(CRYSTAL_STRUCTURE_TYPE& phase, int i, const std::vector<int>& present) {
  const PAIR_SUMS sums = SUM_PAIRS(phase, i, present, OCTAHEDRON_ANGLE, TRANS_LIMIT);
  if (sums.COUNT == 12) {
    phase.POLYHEDRON(i, POLY_VARIANCE) = sums.DEVIATION_SQ / 11.0f;
    phase.POLYHEDRON(i, POLY_MEAN_EDGE) = sums.EDGE / 12.0f;
  }
  const float r = CUBE_ROOT(3.0f * phase.POLYHEDRON(i, POLY_VOLUME) * 0.25f);
  phase.POLYHEDRON(i, POLY_ELONGATION) = ELONGATION(phase, i, present, r);
}

}  // namespace

// Without a volume, as with two or three ligands, there are no distortion parameters.
void CALC_POLY_OF_CENTRE(const COORDINATIONS& around, CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  phase.POLYHEDRON(i) = {};
  if (phase.NBONDS(i) <= 0) return;
  const std::vector<int> present = BONDS_PRESENT(phase, i);
  const std::size_t n = present.size();
  if (n == 0) return;
  phase.POLYHEDRON(i, POLY_MEAN_LENGTH) = MEAN_LENGTH(phase, i, present);
  if (n == 1) return;
  CALC_POLY_ORBIX(phase, i);
  if (n > 3) CALC_VOLUMES(around, phase, i);
  if (n == 3) CALC_TRIANGLE(phase, i, present);
  if (n == 4) CALC_TETRAHEDRON(phase, i, present);
  if (n == 6) CALC_OCTAHEDRON(phase, i, present);
  if (phase.POLYHEDRON(i, POLY_VOLUME) < no_volume) {
    phase.POLYHEDRON(i, POLY_ELONGATION) = 0.0f;
    phase.POLYHEDRON(i, POLY_VARIANCE) = 0.0f;
  }
}

void CALC_POLY_ALLATOMS(CRYSTAL_STRUCTURE_TYPE& phase) {
  const COORDINATIONS around = COORDINATIONS_OF(RULER_FOR(phase));
  for (int i = 1; i <= CAPACITY(phase); ++i) CALC_POLY_OF_CENTRE(around, phase, i);
}

// ---- centres outside ----

namespace {

bool IS_OUTSIDE(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  constexpr float tolerance = 0.01f;  // angstroms
  if (!(phase.POLYHEDRON(i, POLY_VOLUME) >= no_volume)) return false;
  std::vector<VECTOR3> ligands = LIGAND_VECTORS(phase, i);
  if (ligands.size() != 4 && ligands.size() != 6) return false;
  for (VECTOR3& ligand : ligands) ligand = XTAL::MULTIPLY(phase.CELL.CR_ORTH_CEL, ligand);
  return DISTANCE_OUTSIDE_HULL(ligands, {}) > tolerance;
}

}  // namespace

std::vector<int> CENTRES_OUTSIDE(const CRYSTAL_STRUCTURE_TYPE& phase) {
  std::vector<int> outside;
  for (int i = 1; i <= CAPACITY(phase); ++i)
    if (phase.NBONDS(i) > 0 && IS_OUTSIDE(phase, i)) outside.push_back(i);
  return outside;
}

}  // namespace KVA_CRYSTAL_STRUCTURES
