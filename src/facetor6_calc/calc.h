// The CALC command: bonds of the reference block measured in every used block, and bond valences.
#pragma once

#include <span>
#include <string_view>

#include "console_code/console/work.h"
#include "src/kva_crystal_structures/matching.h"

namespace FACETOR_CALC {

void RUN_FACETOR_CALC();  // the command
std::span<const std::string_view> CALC_MENU();

// Bonds, angles and polyhedra of all used blocks; false, with nothing calculated, when the user has
// stopped the work.
bool RUN_FACETOR_CALC_BONDS();

// Measures the reference's bonds, and the angles and polyhedra that they make, in all used blocks,
// and warns of what is matched doubtfully; false when the user has stopped the work.
bool CALC_FACETOR_ALL_POLY(const KVA_CRYSTAL_STRUCTURES::MATCH_BASIS& matching,
                           KVA_CONSOLE::WORK& work);

void RUN_FACETOR_CALC_VALENCE();

}  // namespace FACETOR_CALC
