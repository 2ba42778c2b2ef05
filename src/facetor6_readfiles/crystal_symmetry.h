// Symmetry as an output of the CRYSTAL program prints it. For its reader only; prints nothing.
#pragma once

#include <string>
#include <vector>

#include "src/facetor6_readfiles/readfiles.h"

namespace FACETOR_READFILES {

// Operators of the first table of symmetry operators from line start on, as texts such as
// "-y,+x-y,+z+8/12"; none when there is no table.
std::vector<std::string> PRINTED_OPERATORS(const FILE_LINES& flines, int start);

// Whether the group of the record makes of its atoms just the atoms listed, which are those of the
// primitive cell, and has as many lattice points in its cell as are told, to one half; 0 when that
// is not known. Sets MULT.
bool GENERATES(KVA_CRYSTAL_STRUCTURES::CRYSTAL_STRUCTURE_TYPE& phase,
               const std::vector<VECTOR3>& listed, float lattice_points);

}  // namespace FACETOR_READFILES
