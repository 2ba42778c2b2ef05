// What the bond table and the valence table share. For these two only.
#pragma once

#include <string>
#include <string_view>

#include "src/facetor6_list/report.h"

namespace FACETOR_LIST {

// Angstroms; a row whose length does not exceed it holds no bond.
inline constexpr float shortest_shown = 0.0001f;

inline constexpr int value_decimals = 4;  // of a length, a displacement or a valence

// The range of the search that the bonds come from.
std::string LIMITS_LINE();

// A report on centre i without columns, of bonds: its title and limits, or that the centre has
// none.
REPORT LIGAND_REPORT(int i, std::string_view quantity, std::string_view title, bool with_esds);

// A column for each ligand of the report's centre; their names end in name_end.
void ADD_LIGAND_COLUMNS(REPORT& report, std::string_view name_end, std::string_view unit,
                        bool has_esd);

// What follows a valence table: a warning of low sums, and of mixed sites.
void WRITE_VALENCE_NOTES(const REPORT& report);

}  // namespace FACETOR_LIST
