// The loops of a written CIF that hold calculated geometry.
#pragma once

#include <vector>

#include "src/kva_crystal_structures/records.h"

namespace FACETOR_WRITEFILES {

// Bonds and angles of the centres, which are atom numbers of the reference block. A block that has
// none of them gets no loop.
void WRITE_CIF_BONDS(const KVA_CRYSTAL_STRUCTURES::CRYSTAL_STRUCTURE_TYPE& phase,
                     const std::vector<int>& centres, int unit);
void WRITE_CIF_ANGLES(const KVA_CRYSTAL_STRUCTURES::CRYSTAL_STRUCTURE_TYPE& phase,
                      const std::vector<int>& centres, int unit);

}  // namespace FACETOR_WRITEFILES
