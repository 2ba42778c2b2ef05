// Coordination polyhedra: angles, edges, distortion.
#pragma once

#include "src/kva_crystal_structures/coordination.h"

namespace KVA_CRYSTAL_STRUCTURES {

inline constexpr float TRANS_LIMIT = 45.0f;  // degrees; how far a trans angle lies from 180

// Angles of the regular polyhedra in degrees, and constants of their volumes.
inline constexpr float TETRAHEDRON_ANGLE = 109.47f;
inline constexpr float OCTAHEDRON_ANGLE = 90.0f;
inline constexpr float TETRAHEDRON_RADIUS = 0.612372f;  // centre to vertex, edge 1
inline constexpr float ROOT_TWO = 1.41421f;

// Fills BANGLES and NANGLES of centre i, and of all. The coordinations are the record's own.
void CALC_ANGLES_OF_CENTRE(const COORDINATIONS& around, CRYSTAL_STRUCTURE_TYPE& phase, int i);
void CALC_ANGLES_ALLATOMS(CRYSTAL_STRUCTURE_TYPE& phase);

// Clears POLYHEDRON of centre i and fills it, the sphere fit included; and of all.
void CALC_POLY_OF_CENTRE(const COORDINATIONS& around, CRYSTAL_STRUCTURE_TYPE& phase, int i);
void CALC_POLY_ALLATOMS(CRYSTAL_STRUCTURE_TYPE& phase);

// Centres with 4 or 6 ligands that lie more than 0.01 angstroms outside their polyhedra, in order:
// quadratic elongation and angle variance compare with a polyhedron about its centre.
std::vector<int> CENTRES_OUTSIDE(const CRYSTAL_STRUCTURE_TYPE& phase);

}  // namespace KVA_CRYSTAL_STRUCTURES
