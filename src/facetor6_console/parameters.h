// The run parameters, and the commands SET and SHOW.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "src/kva_crystal_structures/bonds.h"

namespace FACETOR_CONSOLE {

// Not kept between runs.
struct RUN_PARAMETERS {
  bool LIST_ALL_BLOCKS = true;  // listings show every block, not only the used ones
  bool LIST_SYMCODES = false;   // symmetry codes of the reference block in bond and angle lists
  float DMIN = 0.01f;           // angstroms, range of the bond search
  float DMAX = 2.2f;
  KVA_CRYSTAL_STRUCTURES::BOND_EXCLUSION BONDEX{{true, true, true, true}};  // class is excluded
  bool BONDEX_ON = true;  // the exclusion dialogue and its report are active
};
inline RUN_PARAMETERS RUN;

void RUN_SET_FACETOR_PARAMS();
void RUN_SHOW_FACETOR_PARAMS();
std::span<const std::string_view> SET_MENU();

void GET_INPUT_DMIN_DMAX();
void SET_REFERENCE();
void WRITE_REFERENCE();
void SET_BOND_EXCLUSION();
void WRITE_BOND_EXCLUSION();

// Warns when an atom of a used block has no element.
void CHEMSYMB_PRESENT();

}  // namespace FACETOR_CONSOLE
