// Ligands of the centres of one record.
#include "src/kva_crystal_structures/coordination.h"

#include "src/kva_crystal_structures/cell_shifts.h"

namespace KVA_CRYSTAL_STRUCTURES {

std::vector<int> BONDS_PRESENT(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  std::vector<int> present;
  const int rows = static_cast<int>(phase.BONDS.CENTRES(i).size());
  present.reserve(static_cast<std::size_t>(rows));
  for (int j = 1; j <= rows; ++j)
    if (phase.BONDS(i, j, BOND_CENTRE) > 0.0f) present.push_back(j);
  return present;
}

std::vector<VECTOR3> LIGAND_VECTORS(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  std::vector<VECTOR3> vectors;
  for (int j : BONDS_PRESENT(phase, i)) vectors.push_back(phase.BONDS.VECTOR(i, j));
  return vectors;
}

namespace {

// The atoms at the ends of the bonds of centre i.
std::vector<PLACED_ATOM> LIGANDS_OF_CENTRE(const RULER& ruler, int i) {
  const CRYSTAL_STRUCTURE_TYPE& phase = ruler.IMAGES.PHASE;
  const VECTOR3 centre = CENTRE_POSITION(phase, i);
  std::vector<PLACED_ATOM> ligands;
  for (int j : BONDS_PRESENT(phase, i))
    ligands.push_back(PLACE_ATOM(ruler, static_cast<int>(phase.BONDS(i, j, BOND_LIGAND)),
                                 static_cast<int>(phase.BONDS(i, j, BOND_OPERATOR)),
                                 XTAL::ADD(centre, phase.BONDS.VECTOR(i, j))));
  return ligands;
}

}  // namespace

COORDINATIONS COORDINATIONS_OF(const CRYSTAL_STRUCTURE_TYPE& phase) {
  COORDINATIONS around{RULER_FOR(phase), {}, {}};
  around.LIGANDS.ASSIGN(CAPACITY(phase), {});
  for (int i = 1; i <= CAPACITY(phase); ++i)
    around.LIGANDS(i) = LIGANDS_OF_CENTRE(around.OWN_RULER, i);
  for (const CELL_SHIFT& shift : CELL_SHIFTS(phase, true)) {
    XTAL::CRYSTAL_CELL cell;
    XTAL::SET_CELL_RECORD(shift.CELL, shift.ANG, cell, phase.CELL.CARTTYPE);
    around.SHIFTED_FRAMES.push_back(cell.CR_ORTH_CEL);
  }
  return around;
}

}  // namespace KVA_CRYSTAL_STRUCTURES
