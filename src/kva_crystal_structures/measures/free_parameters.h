// The independent parameters of one block: what symmetry leaves free of the cell and of the
// coordinates of each site, with their esds. Measures are differentiated by them.
#pragma once

#include <optional>
#include <vector>

#include "src/kva_crystal_structures/records.h"
#include "src/kva_crystal_structures/wide_reals.h"

namespace KVA_CRYSTAL_STRUCTURES {

// One parameter: how the quantities that it rules change when it grows by one. These are x, y, z
// of a site (the last three are 0), or a, b, c, alpha, beta, gamma.
struct FREE_PARAMETER {
  WIDE6 DIRECTION{};
  double ESD = 0.0;
};

// Vectors that span the same space, each with 1 in the first component that no other of them has.
std::vector<WIDE6> INDEPENDENT_DIRECTIONS(std::vector<WIDE6> spanning);

// Of a site: the directions that the operators of its site leave where they are. The esd is that of
// the first coordinate that has one among those that the parameter moves.
std::vector<FREE_PARAMETER> SITE_PARAMETERS(const CRYSTAL_STRUCTURE_TYPE& phase, int atom);

// Of the cell: the changes of the metric that the operators of the group leave as they are. So the
// cubic cell has a; rhombohedral axes have a and alpha.
std::vector<FREE_PARAMETER> CELL_PARAMETERS(const CRYSTAL_STRUCTURE_TYPE& phase);

// Six cell parameters, angstroms and degrees.
WIDE6 WIDE_CELL(const XTAL::CRYSTAL_CELL& cell);

// Fractional to Cartesian, right-handed: x along a, y in the a-b plane.
WIDE33 WIDE_FRAME(const WIDE6& cell);

}  // namespace KVA_CRYSTAL_STRUCTURES
