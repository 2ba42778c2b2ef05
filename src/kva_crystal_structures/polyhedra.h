// Coordination polyhedra: angles, edges, distortion.
#pragma once

#include "src/kva_crystal_structures/coordination.h"

namespace KVA_CRYSTAL_STRUCTURES {

// Fills BANGLES and NANGLES of all centres. The coordinations are the record's own.
void CALC_ANGLES_ALLATOMS(const COORDINATIONS& around, CRYSTAL_STRUCTURE_TYPE& phase);
void CALC_ANGLES_ALLATOMS(CRYSTAL_STRUCTURE_TYPE& phase);

// Clears POLYHEDRON and fills it for all centres, the sphere fit included.
void CALC_POLY_ALLATOMS(const COORDINATIONS& around, CRYSTAL_STRUCTURE_TYPE& phase);
void CALC_POLY_ALLATOMS(CRYSTAL_STRUCTURE_TYPE& phase);

// Centres with 4 or 6 ligands that lie more than 0.01 angstroms outside their polyhedra, in order:
// quadratic elongation and angle variance compare with a polyhedron about its centre.
std::vector<int> CENTRES_OUTSIDE(const CRYSTAL_STRUCTURE_TYPE& phase);

}  // namespace KVA_CRYSTAL_STRUCTURES
