// The CALC command: bonds of the reference block measured in every used block, and bond valences.
#pragma once

#include <span>
#include <string_view>

#include "console_code/console/work.h"

namespace FACETOR_CALC {

void RUN_FACETOR_CALC();  // the command
std::span<const std::string_view> CALC_MENU();

// Bonds, angles and polyhedra of all used blocks; false, with nothing calculated, when the user has
// stopped the work.
bool RUN_FACETOR_CALC_BONDS();

// Angles and polyhedra of all used blocks; false when the user has stopped the work.
bool CALC_FACETOR_ALL_POLY(KVA_CONSOLE::WORK& work);

void RUN_FACETOR_CALC_VALENCE();

}  // namespace FACETOR_CALC
