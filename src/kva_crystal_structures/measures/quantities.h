// One quantity in one block: value, and derivatives by the block's parameters.
#pragma once

#include "src/kva_crystal_structures/measures/measure.h"

namespace KVA_CRYSTAL_STRUCTURES {

// What a call is in a block; bound: the atoms of the call's expression.
MEASURED MEASURE_CALL(const CALL& call, const std::vector<BOUND_ATOM>& bound,
                      const MEASURE_SETTINGS& settings, MEASURED_BLOCK& block);

// A parameter of its own that all blocks share.
ESD_TERM TERM_OF_NUMBER(int measure, int node, double esd);

}  // namespace KVA_CRYSTAL_STRUCTURES
