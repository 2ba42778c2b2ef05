// Atoms of one record that share a site.
#include "src/kva_crystal_structures/shared_sites.h"

#include <algorithm>  // for lower_bound, sort
#include <cmath>      // for abs, isfinite
#include <utility>    // for pair

namespace KVA_CRYSTAL_STRUCTURES {

namespace {

// Puts atom j on the list of the duplicates of atom i, if there is room.
void NOTE_DUPLICATE(CRYSTAL_STRUCTURE_TYPE& phase, int i, int j) {
  phase.ATOM_USE(j) = -i;
  for (int slot = 1; slot <= MAX_DUPLICATES; ++slot) {
    if (phase.ATOM_DUP(i, slot) != 0) continue;
    phase.ATOM_DUP(i, slot) = j;
    return;
  }
}

// Atoms by their place along x, without those that have none.
using ATOMS_ALONG_X = std::vector<std::pair<float, int>>;

ATOMS_ALONG_X SORTED_ALONG_X(const CRYSTAL_STRUCTURE_TYPE& phase) {
  ATOMS_ALONG_X along_x;
  for (int i = 1; i <= phase.NATOMS; ++i)
    if (std::isfinite(phase.ATOM(i).X[0])) along_x.emplace_back(phase.ATOM(i).X[0], i);
  std::sort(along_x.begin(), along_x.end());
  return along_x;
}

// Atoms behind atom i on its site, in order.
std::vector<int> ON_SITE_OF(const CRYSTAL_STRUCTURE_TYPE& phase, const ATOMS_ALONG_X& along_x,
                            const VECTOR3& reach, int i) {
  const VECTOR3& x = phase.ATOM(i).X;
  std::vector<int> behind;
  auto near = std::lower_bound(along_x.begin(), along_x.end(), std::pair(x[0] - reach[0], 0));
  for (; near != along_x.end() && near->first <= x[0] + reach[0]; ++near) {
    const int j = near->second;
    if (j <= i) continue;
    const VECTOR3& other = phase.ATOM(j).X;
    if (std::abs(other[1] - x[1]) > reach[1]) continue;
    if (XTAL::DISTANCE_FRAC(x, other, phase.CELL) < SAME_SITE) behind.push_back(j);
  }
  std::sort(behind.begin(), behind.end());
  return behind;
}

}  // namespace

// Only atoms that follow each other along x, at nearly the same y, can share a site, so that not
// every pair is measured.
void MARK_DUPLICATES(CRYSTAL_STRUCTURE_TYPE& phase) {
  const VECTOR3 reach = XTAL::REACH_OF(phase.CELL, SAME_SITE);
  const ATOMS_ALONG_X along_x = SORTED_ALONG_X(phase);
  for (int i = 1; i < phase.NATOMS; ++i) {
    if (phase.ATOM_USE(i) <= ATOM_OMITTED) continue;
    for (int j : ON_SITE_OF(phase, along_x, reach, i)) NOTE_DUPLICATE(phase, i, j);
  }
}

}  // namespace KVA_CRYSTAL_STRUCTURES
