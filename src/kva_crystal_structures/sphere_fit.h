// The sphere that fits the ligands of a centre best.
#pragma once

#include "src/kva_crystal_structures/records.h"

namespace KVA_CRYSTAL_STRUCTURES {

// Fills POLYHEDRON columns 7 to 19 of centre i. Coplanar ligands leave 13 to 19 at 0 and set the
// error "Error inverting matrix to determine centroid coords for polyhedron ...".
void CALC_POLY_ORBIX(CRYSTAL_STRUCTURE_TYPE& phase, int i);

}  // namespace KVA_CRYSTAL_STRUCTURES
