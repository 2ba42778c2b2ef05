// Bonds of a record, and a reference block's bonds measured in another block.
#include "src/kva_crystal_structures/bonds.h"

#include <algorithm>  // for min, find, remove_if
#include <cmath>      // for sqrt

#include "console_code/kva_utilities/text.h"
#include "src/kva_crystal_structures/atom_search.h"
#include "src/kva_crystal_structures/displacement.h"
#include "src/kva_crystal_structures/shared_sites.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::EQUAL_TEXT;
using KVA_UTILITIES::PUT_VECTOR;
using KVA_UTILITIES::VECTOR_AT;

// ---- classes of atom pairs ----

bool ISCATION(int z) {
  constexpr std::array<int, 12> anions{2, 8, 9, 10, 17, 18, 35, 36, 53, 54, 85, 86};
  return std::find(anions.begin(), anions.end(), z) == anions.end();
}

bool EXCLUDEBOND(const CRYSTAL_STRUCTURE_TYPE& phase, int centre, int ligand,
                 const BOND_EXCLUSION& bondex) {
  const ATOM_TYPE& first = phase.ATOM(centre);
  const ATOM_TYPE& second = phase.ATOM(ligand);
  const bool cation_1 = ISCATION(first.Z);
  const bool cation_2 = ISCATION(second.Z);
  return (bondex(EQUIV_SAME_ATOM) && centre == ligand) ||
         (bondex(SAME_ELEMENT) && EQUAL_TEXT(first.CHEMSYMB, second.CHEMSYMB)) ||
         (bondex(CATION_CATION) && cation_1 && cation_2) ||
         (bondex(ANION_ANION) && !cation_1 && !cation_2);
}

void EXCLUDE_BOND_TYPES(CRYSTAL_STRUCTURE_TYPE& phase, const BOND_EXCLUSION* bondex) {
  if (bondex == nullptr) return;
  for (int i = 1; i <= phase.NATOMS; ++i) {
    const auto excluded = [&](const ROW<float, BOND_COLUMNS>& row) {
      return EXCLUDEBOND(phase, i, static_cast<int>(row(BOND_LIGAND)), *bondex);
    };
    auto& rows = phase.BONDS.CENTRES(i);
    rows.erase(std::remove_if(rows.begin(), rows.end(), excluded), rows.end());
    if (phase.NBONDS(i) > 0) phase.NBONDS(i) = static_cast<int>(rows.size());
  }
}

// ---- the search over all atoms ----

namespace {

void CALC_BONDS_OF_CENTRE(const ATOM_IMAGES& images, CRYSTAL_STRUCTURE_TYPE& phase, int i,
                          float dmin, float dmax) {
  int count = 0;
  NEIGHBOUR_TABLE table;
  DISTANCE_ARRAY(images, phase.ATOM(i).X, dmin, dmax, count, table);
  phase.NBONDS(i) = count;
  phase.BONDS.CENTRES(i).clear();
  phase.BONDS.MAKE_ROOM(i, count);
  for (int r = 1; r <= count; ++r) {
    phase.BONDS(i, r, BOND_CENTRE) = static_cast<float>(i);
    phase.BONDS(i, r, BOND_LENGTH) = table(r, NEIGHBOUR_DISTANCE);
    phase.BONDS.PUT_VECTOR(i, r, VECTOR_AT<3>(table(r), NEIGHBOUR_VECTOR_X));
    phase.BONDS(i, r, BOND_LIGAND) = table(r, NEIGHBOUR_ATOM);
    phase.BONDS(i, r, BOND_OPERATOR) = table(r, NEIGHBOUR_OPERATOR);
  }
  SET_CENTRE(phase, i, i, phase.ATOM(i).X);
}

// The shortest bond of a sensible length, at most LONGEST_SHORT_BOND.
float SHORTEST_BOND(const CRYSTAL_STRUCTURE_TYPE& phase) {
  constexpr float shortest_sensible = 0.1f;  // angstroms
  float shortest = LONGEST_SHORT_BOND;
  for (int i = 1; i <= phase.NATOMS; ++i)
    for (int j = 1; j <= phase.NBONDS(i); ++j) {
      const float length = phase.BONDS(i, j, BOND_LENGTH);
      if (length >= shortest_sensible) shortest = std::min(shortest, length);
    }
  return shortest;
}

}  // namespace

void CALC_BONDS_NATOM(CRYSTAL_STRUCTURE_TYPE& phase, int i, float dmin, float dmax) {
  CALC_BONDS_OF_CENTRE(IMAGES_OF(phase), phase, i, dmin, dmax);
}

void CALC_BONDS_ALLATOMS(CRYSTAL_STRUCTURE_TYPE& phase, float dmin, float dmax,
                         const BOND_EXCLUSION* bondex) {
  INIT_ERR_KVASTRUCTURES();
  const ATOM_IMAGES images = IMAGES_OF(phase);
  for (int i = 1; i <= phase.NATOMS; ++i)
    if (phase.ATOM_USE(i) == ATOM_USED) CALC_BONDS_OF_CENTRE(images, phase, i, dmin, dmax);
  EXCLUDE_BOND_TYPES(phase, bondex);
  phase.SHORT_BOND = SHORTEST_BOND(phase);
}

// ---- the same bonds in another block ----

float MATCHING_RADIUS(float shortest_bond) {
  constexpr float share_of_bond = 0.9f;
  constexpr float smallest_radius = 0.1f;  // angstroms
  constexpr float default_radius = 0.5f;
  const float radius = share_of_bond * shortest_bond;
  return radius < smallest_radius ? default_radius : radius;
}

float MATCHING_RADIUS(const CRYSTAL_STRUCTURE_TYPE& reference) {
  return MATCHING_RADIUS(reference.SHORT_BOND);
}

namespace {

// Root-mean-square displacement of an atom's image along a fractional vector.
float DISPLACEMENT_ALONG(const CRYSTAL_STRUCTURE_TYPE& block, const FOUND_ATOM& found,
                         const VECTOR3& v_frac) {
  const VECTOR6 beta = APPLYSO_BETA(block.SPG.SYMOP(found.OPERATOR).ROT, block.ATOM(found.ATOM).U);
  return ATOM_DISPL(beta, v_frac, block.CELL.GD);
}

// Length with the simple rigid-bond correction (R. T. Downs, G. V. Gibbs, K. L. Bartelmehs and M.
// B. Boisen, American Mineralogist 77 (1992) 751-757); 0 when a B is missing or the root has no
// value.
float RIGID_BOND_LENGTH(const ATOM_TYPE& centre, const ATOM_TYPE& ligand, float length) {
  if (!(centre.BISO > 0.0f) || !(ligand.BISO > 0.0f)) return 0.0f;
  const float square = length * length + SRB_FACTOR * (ligand.BISO - centre.BISO);
  return square > 0.0f ? std::sqrt(square) : 0.0f;
}

// Fills the row of bond j of reference centre a with the bond from centre to ligand.
void MEASURE_BOND(CRYSTAL_STRUCTURE_TYPE& block, int a, int j, const FOUND_ATOM& centre,
                  const FOUND_ATOM& ligand, const VALUE_ESD& distance) {
  const VECTOR3 v_frac = XTAL::SUBTRACT(ligand.X, centre.X);
  ROW<float, BOND_COLUMNS>& row = block.BONDS.ROW_OF(a, j);
  row(BOND_CENTRE) = static_cast<float>(centre.ATOM);
  row(BOND_LENGTH) = distance.VALUE;
  row(BOND_LENGTH_STD) = distance.ESD;
  PUT_VECTOR(row, BOND_VECTOR_X, v_frac);
  row(BOND_LIGAND) = static_cast<float>(ligand.ATOM);
  row(BOND_OPERATOR) = static_cast<float>(ligand.OPERATOR);
  row(BOND_SYMCODE) = SYMMETRY_CODE(block, ligand.ATOM, ligand.OPERATOR, ligand.X);
  if (EQUAL_TEXT(block.ATOM(centre.ATOM).THTYPE, "aniso")) {
    row(BOND_DISPL_CENTRE) = DISPLACEMENT_ALONG(block, centre, v_frac);
    row(BOND_DISPL_LIGAND) = DISPLACEMENT_ALONG(block, ligand, v_frac);
  }
  row(BOND_LENGTH_SRB) =
      RIGID_BOND_LENGTH(block.ATOM(centre.ATOM), block.ATOM(ligand.ATOM), distance.VALUE);
}

// The bonds of one reference centre.
void MEASURE_CENTRE(const BOND_TARGETS& targets, const RULER& ruler, CRYSTAL_STRUCTURE_TYPE& block,
                    float radius) {
  const int a = targets.CENTRE.ATOM;
  const FOUND_ATOM centre = FIND_ATOM(ruler.IMAGES, targets.CENTRE.X, "OMIT", radius);
  if (centre.ATOM == 0) {
    block.NBONDS(a) = NO_CENTRE;
    return;
  }
  if (block.ATOM_USE(centre.ATOM) != ATOM_USED) return;
  SET_CENTRE(block, a, centre.ATOM, centre.X);
  block.BOND_CEN(a, CENTRE_SYMCODE) = SYMMETRY_CODE(block, centre.ATOM, centre.OPERATOR, centre.X);
  block.NBONDS(a) = 0;
  const PLACED_ATOM placed_centre = PLACE_ATOM(ruler, centre.ATOM, centre.OPERATOR, centre.X);
  block.BONDS.MAKE_ROOM(a, static_cast<int>(targets.LIGANDS.size()));
  int j = 0;
  for (const TARGET& target : targets.LIGANDS) {
    block.BONDS.CLEAR_ROW(a, ++j);  // a bond that is missing keeps its row
    const FOUND_ATOM ligand = FIND_ATOM(ruler.IMAGES, target.X, "", radius);
    if (ligand.ATOM == 0) continue;
    const VALUE_ESD distance = DISTANCE_AND_SIGMA_VCV(
        ruler, placed_centre, PLACE_ATOM(ruler, ligand.ATOM, ligand.OPERATOR, ligand.X));
    if (distance.VALUE < SAME_SITE) continue;
    ++block.NBONDS(a);
    MEASURE_BOND(block, a, j, centre, ligand, distance);
  }
}

}  // namespace

std::vector<BOND_TARGETS> TARGETS_OF(const CRYSTAL_STRUCTURE_TYPE& reference) {
  std::vector<BOND_TARGETS> targets;
  for (int a = 1; a <= reference.NATOMS; ++a) {
    if (reference.NBONDS(a) <= 0) continue;
    const VECTOR3& centre = reference.ATOM(a).X;
    targets.push_back({{a, centre}, {}});
    for (int j = 1; j <= reference.NBONDS(a); ++j)
      targets.back().LIGANDS.push_back(
          {reference.BONDS.LIGAND(a, j), XTAL::ADD(centre, reference.BONDS.VECTOR(a, j))});
  }
  return targets;
}

void MEASURE_BLOCK(const std::vector<BOND_TARGETS>& targets, const RULER& ruler,
                   CRYSTAL_STRUCTURE_TYPE& block, float radius) {
  for (const BOND_TARGETS& centre : targets)
    if (centre.CENTRE.ATOM <= CAPACITY(block)) MEASURE_CENTRE(centre, ruler, block, radius);
}

}  // namespace KVA_CRYSTAL_STRUCTURES
