// The WRITE command: the used blocks as one CIF, with the calculated geometry.
#pragma once

#include <span>
#include <string_view>

#include "common_code/Raman_module.h"
#include "console_code/kva_utilities/names.h"

namespace FACETOR_WRITEFILES {

void WRITE_PHASE_TO_FILE();
std::span<const std::string_view> WRITE_MENU();

// Asks what to write, and writes the used blocks in display order to the unit. nwrite receives
// their count, -1 when the user wants none or has stopped it. No block gets a name that is taken.
// Failures are told by the CIF error state.
void WRITE_CIF_FACETOR(int unit, int& nwrite, KVA_UTILITIES::NAMES_TAKEN taken = {});

void WRITE_CIF_MODES(const RAMAN::MODE_LIST_TYPE& modes, int unit);

}  // namespace FACETOR_WRITEFILES
