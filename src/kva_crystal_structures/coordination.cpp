// Ligands of the centres of one record.
#include "src/kva_crystal_structures/coordination.h"

#include <utility>  // for move

#include "src/kva_crystal_structures/cell_shifts.h"

namespace KVA_CRYSTAL_STRUCTURES {

std::vector<int> BONDS_PRESENT(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  std::vector<int> present;
  present.reserve(MAX_BONDS);
  for (int j = 1; j <= phase.BONDS.ROWS_OF(i); ++j)
    if (phase.BONDS.HAS_BOND(i, j)) present.push_back(j);
  return present;
}

std::vector<VECTOR3> LIGAND_VECTORS(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  std::vector<VECTOR3> vectors;
  vectors.reserve(MAX_BONDS);
  for (int j : BONDS_PRESENT(phase, i)) vectors.push_back(phase.BONDS.VECTOR(i, j));
  return vectors;
}

namespace {

// The atoms at the ends of the bonds of centre i.
std::vector<PLACED_ATOM> LIGANDS_OF_CENTRE(const RULER& ruler, int i) {
  const CRYSTAL_STRUCTURE_TYPE& phase = ruler.IMAGES.PHASE;
  const VECTOR3 centre = CENTRE_POSITION(phase, i);
  std::vector<PLACED_ATOM> ligands;
  ligands.reserve(MAX_BONDS);
  for (int j : BONDS_PRESENT(phase, i))
    ligands.push_back(PLACE_ATOM(ruler, phase.BONDS.LIGAND(i, j), phase.BONDS.OPERATOR(i, j),
                                 XTAL::ADD(centre, phase.BONDS.VECTOR(i, j))));
  return ligands;
}

}  // namespace

COORDINATIONS COORDINATIONS_OF(RULER ruler) {
  COORDINATIONS around{std::move(ruler), {}, {}};
  const CRYSTAL_STRUCTURE_TYPE& phase = around.OWN_RULER.IMAGES.PHASE;
  around.LIGANDS.ASSIGN(CAPACITY(phase), {});
  for (int i = 1; i <= CAPACITY(phase); ++i)
    around.LIGANDS(i) = LIGANDS_OF_CENTRE(around.OWN_RULER, i);
  for (const CELL_SHIFT& shift : CELL_SHIFTS(phase, true))
    XTAL::GET_CRYST_ORTHOG_MATRIX(shift.CELL, shift.ANG, around.SHIFTED_FRAMES.emplace_back(),
                                  phase.CELL.CARTTYPE);
  return around;
}

}  // namespace KVA_CRYSTAL_STRUCTURES
