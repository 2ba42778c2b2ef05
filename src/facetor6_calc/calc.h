// The CALC command: bonds of the reference block measured in every used block, and bond valences.
#pragma once

namespace FACETOR_CALC {

void RUN_FACETOR_CALC();        // the command
void RUN_FACETOR_CALC_BONDS();  // bonds, angles and polyhedra of all used blocks
void CALC_FACETOR_ALL_POLY();   // angles and polyhedra of all used blocks
void RUN_FACETOR_CALC_VALENCE();

}  // namespace FACETOR_CALC
