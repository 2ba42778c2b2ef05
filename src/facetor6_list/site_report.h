// The report on a site that a code names.
#pragma once

#include <string_view>
#include <vector>

#include "src/facetor6_list/atom_reports.h"
#include "src/facetor6_list/list.h"
#include "src/facetor6_list/report.h"

namespace FACETOR_LIST {

// True for the codes whose reports are made of calculated bonds.
bool NEEDS_BONDS(REPORT_CODE code);

// The report on atom i of the reference block. option: "ESD", "BETA". atoms: those matched with
// atom i, for the reports that need no bonds; places: for the others.
REPORT SITE_REPORT(REPORT_CODE code, int i, std::string_view option, const MATCHED_ATOMS& atoms,
                   const std::vector<int>& places);

}  // namespace FACETOR_LIST
