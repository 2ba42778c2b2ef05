// Warnings of what is doubtful about matched atoms.
#pragma once

#include "src/kva_crystal_structures/matching.h"

namespace FACETOR_CONSOLE {

// One warning a kind of fault.
void WARN_OF_FAULTS(int block, const KVA_CRYSTAL_STRUCTURES::MATCH_FAULTS& faults);

}  // namespace FACETOR_CONSOLE
