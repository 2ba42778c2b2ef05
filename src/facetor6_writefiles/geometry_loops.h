// The loops of a written CIF that hold calculated geometry.
#pragma once

#include <string>
#include <vector>

#include "src/kva_crystal_structures/records.h"

namespace FACETOR_WRITEFILES {

// Bonds of the centres, which are atom numbers of the reference block, and angles around one of
// them behind those in rows. A block that has none of them gets no loop.
void WRITE_CIF_BONDS(const KVA_CRYSTAL_STRUCTURES::CRYSTAL_STRUCTURE_TYPE& phase,
                     const std::vector<int>& centres, int unit);
using CIF_ROWS = std::vector<std::vector<std::string>>;
void ADD_CIF_ANGLES(const KVA_CRYSTAL_STRUCTURES::CRYSTAL_STRUCTURE_TYPE& phase, int centre,
                    CIF_ROWS& rows);
void WRITE_CIF_ANGLES(const CIF_ROWS& rows, int unit);

}  // namespace FACETOR_WRITEFILES
