// Atoms of one record that share a site: compared as they are listed, without the symmetry, which
// the search of atom_search.h has.
#pragma once

#include "src/kva_crystal_structures/records.h"

namespace KVA_CRYSTAL_STRUCTURES {

inline constexpr float SAME_SITE = 0.01f;  // angstroms; two labels closer than this share a site

// Each atom in use takes those behind it on its site as its duplicates: their ATOM_USE becomes
// minus its number, and ATOM_DUP remembers the first MAX_DUPLICATES.
void MARK_DUPLICATES(CRYSTAL_STRUCTURE_TYPE& phase);

}  // namespace KVA_CRYSTAL_STRUCTURES
