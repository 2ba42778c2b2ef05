// Which bonds, angles, edges and axes of the cell the symmetry of a record makes equal. The
// operators decide; values are not looked at.
#pragma once

#include <vector>

#include "src/kva_crystal_structures/records.h"

namespace KVA_CRYSTAL_STRUCTURES {

// An atom's image, or a point of its own, with ATOM 0.
struct FEATURE_POINT {
  int ATOM = 0;
  VECTOR3 X{};  // fractional
};

// The points that a value is of, in order: ends of a bond or an edge, ligand, centre and ligand of
// an angle. None: the record has no such feature.
using FEATURE = std::vector<FEATURE_POINT>;

// What becomes of the points under an operator.
enum class LIKENESS {
  EITHER_WAY,  // the value is the same with the points in the opposite order
  IN_ORDER     // it is not
};

// For each feature the place in the list of the first that is equal to it, its own where there is
// none before it: an operator with a lattice translation takes the points of the one to those of
// the other, within MATCH_RADIUS. Features without points are equal to one another.
std::vector<std::size_t> FIRST_EQUALS(const CRYSTAL_STRUCTURE_TYPE& phase,
                                      const std::vector<FEATURE>& features, LIKENESS likeness);

// The same for a, b, c, alpha, beta and gamma: operators permute the axes.
std::vector<std::size_t> FIRST_EQUAL_AXES(const CRYSTAL_STRUCTURE_TYPE& phase);

}  // namespace KVA_CRYSTAL_STRUCTURES
