// The cells that differ from a record's own by the esd of one parameter.
#pragma once

#include <vector>

#include "src/kva_crystal_structures/records.h"

namespace KVA_CRYSTAL_STRUCTURES {

// Cells that differ from the record's own by one esd of one independent parameter each, as the
// crystal system has them: the terms of every esd that comes from the cell. A shift that
// leaves the cell as it is, for want of an esd, is left out. Cubic and orthorhombic cells have
// their angles set to 90 degrees, or to the cell's own with keep_angles.
struct CELL_SHIFT {
  VECTOR3 CELL{};
  VECTOR3 ANG{};
};
std::vector<CELL_SHIFT> CELL_SHIFTS(const CRYSTAL_STRUCTURE_TYPE& phase, bool keep_angles = false);

// The same for telling what symmetry fixes: on rhombohedral axes, of which the esds make two, all
// lengths and all angles go together.
std::vector<CELL_SHIFT> SYMMETRIC_CELL_SHIFTS(const CRYSTAL_STRUCTURE_TYPE& phase);

}  // namespace KVA_CRYSTAL_STRUCTURES
