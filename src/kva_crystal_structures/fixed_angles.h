// Angles that symmetry fixes.
#pragma once

#include <optional>

#include "src/kva_crystal_structures/angles.h"

namespace KVA_CRYSTAL_STRUCTURES {

// The exact angle at the apex of two spokes, in degrees, when symmetry fixes it; angle is what was
// calculated.
std::optional<float> FIXED_ANGLE(const RULER& ruler, const APEX_ATOM& apex, const SPOKE& spoke1,
                                 const SPOKE& spoke2, float angle);

}  // namespace KVA_CRYSTAL_STRUCTURES
