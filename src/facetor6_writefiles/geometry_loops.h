// The loops of a written CIF that hold calculated geometry.
#pragma once

#include <vector>

#include "console_code/console/work.h"
#include "src/kva_crystal_structures/records.h"

namespace FACETOR_WRITEFILES {

// Bonds and angles of the centres, which are atom numbers of the reference block. A block that has
// none of them gets no loop. False when the user has stopped the work, which is at the step.
bool WRITE_CIF_GEOMETRY(const KVA_CRYSTAL_STRUCTURES::CRYSTAL_STRUCTURE_TYPE& phase,
                        const std::vector<int>& centres, int unit, int step,
                        KVA_CONSOLE::WORK& work);

}  // namespace FACETOR_WRITEFILES
