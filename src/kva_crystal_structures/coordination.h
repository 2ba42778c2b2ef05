// Which ligands the centres of a record have, and what all that is measured around them shares.
#pragma once

#include "src/kva_crystal_structures/uncertainty.h"

namespace KVA_CRYSTAL_STRUCTURES {

// Numbers of the reference's bond rows that hold a bond in this block, in order.
std::vector<int> BONDS_PRESENT(const CRYSTAL_STRUCTURE_TYPE& phase, int i);

// Fractional vectors from centre i to its ligands, in that order.
std::vector<VECTOR3> LIGAND_VECTORS(const CRYSTAL_STRUCTURE_TYPE& phase, int i);

// What the angles and the polyhedra of one record share. It holds as its ruler does, until a bond
// changes. Give it the ruler that has measured the bonds.
struct COORDINATIONS {
  RULER OWN_RULER;
  LIST<std::vector<PLACED_ATOM>> LIGANDS;  // of each centre, in the order of BONDS_PRESENT
  std::vector<MATRIX3> SHIFTED_FRAMES;  // fractional to Cartesian, shifted cells with their angles
};
COORDINATIONS COORDINATIONS_OF(RULER ruler);

}  // namespace KVA_CRYSTAL_STRUCTURES
