// What is doubtful about matched atoms: other elements, shared places, other groups.
#include "src/kva_crystal_structures/matching.h"

#include <algorithm>  // for any_of, all_of, equal, find, sort
#include <cmath>      // for lround

#include "src/kva_crystal_structures/coordination.h"
#include "src/kva_crystal_structures/shared_sites.h"

namespace KVA_CRYSTAL_STRUCTURES {

namespace {

// ---- elements ----

// Atomic numbers of all atoms on the site of an atom, also of those that are listed at the place of
// another of its images.
std::vector<int> ELEMENTS_ON_SITE(const ATOM_IMAGES& images, int atom) {
  const CRYSTAL_STRUCTURE_TYPE& phase = images.PHASE;
  const VECTOR3 reach = XTAL::REACH_OF(phase.CELL, SAME_SITE);
  std::vector<int> elements{phase.ATOM(atom).Z};
  for (const ATOM_IMAGE* image : IMAGES_NEAR(images, phase.ATOM(atom).X, reach))
    elements.push_back(phase.ATOM(image->ATOM).Z);
  return elements;
}

bool HOLDS(const std::vector<int>& elements, int z) {
  return std::find(elements.begin(), elements.end(), z) != elements.end();
}

bool ALL_KNOWN(const std::vector<int>& elements) {
  constexpr int unknown = 0;
  return !HOLDS(elements, unknown);
}

bool HAVE_ONE_IN_COMMON(const std::vector<int>& elements1, const std::vector<int>& elements2) {
  return std::any_of(elements1.begin(), elements1.end(),
                     [&](int z) { return HOLDS(elements2, z); });
}

bool HOLDS_CATION(const std::vector<int>& elements) {
  return std::any_of(elements.begin(), elements.end(), ISCATION);
}

bool HOLDS_ANION(const std::vector<int>& elements) {
  return !std::all_of(elements.begin(), elements.end(), ISCATION);
}

// Whether an atom of the block that is not on the site of the given one is of one of the elements.
bool STAND_ELSEWHERE(const CRYSTAL_STRUCTURE_TYPE& block, int atom,
                     const std::vector<int>& elements) {
  for (int i = 1; i <= block.NATOMS; ++i)
    if (i != atom && block.ATOM_USE(i) != -atom && HOLDS(elements, block.ATOM(i).Z)) return true;
  return false;
}

bool IS_OTHER_ELEMENT(const ATOM_IMAGES& reference_images, int reference_atom,
                      const ATOM_IMAGES& block_images, int atom) {
  const CRYSTAL_STRUCTURE_TYPE& reference = reference_images.PHASE;
  const CRYSTAL_STRUCTURE_TYPE& block = block_images.PHASE;
  if (reference.ATOM(reference_atom).Z == block.ATOM(atom).Z) return false;  // as nearly always
  const std::vector<int> wanted = ELEMENTS_ON_SITE(reference_images, reference_atom);
  const std::vector<int> met = ELEMENTS_ON_SITE(block_images, atom);
  if (!ALL_KNOWN(wanted) || !ALL_KNOWN(met) || HAVE_ONE_IN_COMMON(wanted, met)) return false;
  const bool cation_met_anion =
      (HOLDS_CATION(wanted) && HOLDS_ANION(met)) || (HOLDS_ANION(wanted) && HOLDS_CATION(met));
  return cation_met_anion || STAND_ELSEWHERE(block, atom, wanted);
}

// ---- places ----

bool AT_ONE_PLACE(const CRYSTAL_STRUCTURE_TYPE& block, const VECTOR3& x1_frac,
                  const VECTOR3& x2_frac) {
  return XTAL::DISTANCE_FRAC(x1_frac, x2_frac, block.CELL) < SAME_SITE;
}

// Another atom of the reference block with an image whose own match lies at the place where that
// of the target was found; 0 when there is none. One that shares the target's site is no other.
int ANOTHER_MATCHED_AT(const MATCH_BASIS& basis, const ATOM_IMAGES& block_images,
                       const TARGET& target, const VECTOR3& place) {
  constexpr float at_the_point = -0.1f;  // a minimum that lets an atom at distance 0 in
  int count = 0;
  NEIGHBOUR_TABLE table;
  DISTANCE_ARRAY(basis.REFERENCE_IMAGES, place, at_the_point, basis.RADIUS, count, table);
  for (int r = 1; r <= count; ++r) {
    const int atom = static_cast<int>(table(r, NEIGHBOUR_ATOM));
    if (atom == target.ATOM) continue;
    const VECTOR3 x = XTAL::ADD(place, KVA_UTILITIES::VECTOR_AT<3>(table(r), NEIGHBOUR_VECTOR_X));
    if (AT_ONE_PLACE(basis.REFERENCE_IMAGES.PHASE, x, target.X)) continue;
    const FOUND_ATOM found = FIND_ATOM(block_images, x, "", basis.RADIUS);
    if (found.ATOM != 0 && AT_ONE_PLACE(block_images.PHASE, found.X, place)) return atom;
  }
  return 0;
}

// ---- one centre ----

// For each atom of the reference block, what its site met.
struct SITE_FAULT {
  int OTHER_ELEMENT = 0;  // atom of the block
  bool SHARES = false;
};
using SITE_FAULTS = LIST<SITE_FAULT>;

void NOTE_ELEMENTS(const MATCH_BASIS& basis, const BOND_TARGETS& centre,
                   const ATOM_IMAGES& block_images, SITE_FAULTS& faults) {
  const CRYSTAL_STRUCTURE_TYPE& block = block_images.PHASE;
  const auto note = [&](int reference_atom, int atom) {
    int& met = faults(reference_atom).OTHER_ELEMENT;
    if (met == 0 && IS_OTHER_ELEMENT(basis.REFERENCE_IMAGES, reference_atom, block_images, atom))
      met = atom;
  };
  const int a = centre.CENTRE.ATOM;
  note(a, CENTRE_NUMBER(block, a));
  for (int j : BONDS_PRESENT(block, a))
    note(centre.LIGANDS[static_cast<std::size_t>(j - 1)].ATOM, block.BONDS.LIGAND(a, j));
}

void NOTE_SHARED_PLACES(const MATCH_BASIS& basis, const BOND_TARGETS& centre,
                        const ATOM_IMAGES& block_images, SITE_FAULTS& faults) {
  const CRYSTAL_STRUCTURE_TYPE& block = block_images.PHASE;
  const int a = centre.CENTRE.ATOM;
  const int another =
      ANOTHER_MATCHED_AT(basis, block_images, centre.CENTRE, CENTRE_POSITION(block, a));
  if (another != 0) faults(a).SHARES = faults(another).SHARES = true;
  const std::vector<int> present = BONDS_PRESENT(block, a);
  for (std::size_t first = 0; first < present.size(); ++first)
    for (std::size_t second = first + 1; second < present.size(); ++second) {
      const int j = present[first];
      const int k = present[second];
      if (block.BONDS.LIGAND(a, j) != block.BONDS.LIGAND(a, k) ||
          !AT_ONE_PLACE(block, block.BONDS.VECTOR(a, j), block.BONDS.VECTOR(a, k)))
        continue;
      faults(centre.LIGANDS[static_cast<std::size_t>(j - 1)].ATOM).SHARES = true;
      faults(centre.LIGANDS[static_cast<std::size_t>(k - 1)].ATOM).SHARES = true;
    }
}

void NOTE_ATOM(const MATCH_BASIS& basis, const TARGET& target, const ATOM_IMAGES& block_images,
               SITE_FAULTS& faults) {
  const CRYSTAL_STRUCTURE_TYPE& block = block_images.PHASE;
  const FOUND_ATOM found = FIND_ATOM(block_images, target.X, "OMIT", basis.RADIUS);
  if (found.ATOM == 0 || block.ATOM_USE(found.ATOM) != ATOM_USED) return;
  int& met = faults(target.ATOM).OTHER_ELEMENT;
  if (met == 0 && IS_OTHER_ELEMENT(basis.REFERENCE_IMAGES, target.ATOM, block_images, found.ATOM))
    met = found.ATOM;
  const int another = ANOTHER_MATCHED_AT(basis, block_images, target, found.X);
  if (another != 0) faults(target.ATOM).SHARES = faults(another).SHARES = true;
}

}  // namespace

MATCH_BASIS MATCH_BASIS_OF(const CRYSTAL_STRUCTURE_TYPE& reference) {
  return {IMAGES_OF(reference), TARGETS_OF(reference), {}, MATCHING_RADIUS(reference)};
}

MATCH_FAULTS MATCH_FAULTS_OF(const MATCH_BASIS& basis, const ATOM_IMAGES& block_images) {
  const CRYSTAL_STRUCTURE_TYPE& reference = basis.REFERENCE_IMAGES.PHASE;
  const CRYSTAL_STRUCTURE_TYPE& block = block_images.PHASE;
  SITE_FAULTS faults;
  faults.ASSIGN(CAPACITY(reference), {});
  for (const BOND_TARGETS& centre : basis.TARGETS) {
    const int a = centre.CENTRE.ATOM;
    if (a > CAPACITY(block) || block.BONDS.ROWS_OF(a) == 0) continue;  // has no match
    NOTE_ELEMENTS(basis, centre, block_images, faults);
    NOTE_SHARED_PLACES(basis, centre, block_images, faults);
  }
  for (const TARGET& target : basis.ATOMS) NOTE_ATOM(basis, target, block_images, faults);
  MATCH_FAULTS all;
  all.OTHER_GROUP = !SAME_OPERATORS(reference.SPG, block.SPG);
  for (int i = 1; i <= faults.COUNT(); ++i) {
    if (faults(i).OTHER_ELEMENT != 0 && ++all.OTHER_ELEMENT == 1) {
      all.FIRST_OTHER_ELEMENT = i;
      all.MET_THERE = faults(i).OTHER_ELEMENT;
    }
    if (faults(i).SHARES && ++all.SHARING == 1) all.FIRST_SHARING = i;
  }
  return all;
}

// ---- groups ----

namespace {

// Rotation and translation, the latter in ten-thousandths of the cell edges and below 1.
using WHOLE_OPERATOR = std::array<long, 12>;

WHOLE_OPERATOR IN_WHOLE_NUMBERS(const XTAL::SYM_OP& op) {
  constexpr long parts = 10000;
  WHOLE_OPERATOR whole{};
  std::size_t n = 0;
  for (std::size_t i = 0; i < 3; ++i) {
    for (int element : op.ROT[i]) whole[n++] = element;
    whole[n++] = ((std::lround(op.TR[i] * parts) % parts) + parts) % parts;
  }
  return whole;
}

std::vector<WHOLE_OPERATOR> SORTED_OPERATORS(const XTAL::SPACE_GROUP& group) {
  std::vector<WHOLE_OPERATOR> operators;
  for (const XTAL::SYM_OP& op : group.SYMOP) operators.push_back(IN_WHOLE_NUMBERS(op));
  std::sort(operators.begin(), operators.end());
  return operators;
}

}  // namespace

bool SAME_OPERATORS(const XTAL::SPACE_GROUP& group1, const XTAL::SPACE_GROUP& group2) {
  const bool same_list = std::equal(
      group1.SYMOP.begin(), group1.SYMOP.end(), group2.SYMOP.begin(), group2.SYMOP.end(),
      [](const XTAL::SYM_OP& a, const XTAL::SYM_OP& b) { return a.ROT == b.ROT && a.TR == b.TR; });
  return same_list || SORTED_OPERATORS(group1) == SORTED_OPERATORS(group2);
}

}  // namespace KVA_CRYSTAL_STRUCTURES
