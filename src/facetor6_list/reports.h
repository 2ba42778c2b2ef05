// All reports by their codes: what tables, sheets, graphs and fits take their columns from.
#pragma once

#include <array>
#include <span>
#include <string_view>
#include <vector>

#include "src/facetor6_list/atom_reports.h"
#include "src/facetor6_list/list.h"
#include "src/facetor6_list/report.h"

namespace FACETOR_LIST {

struct REPORT_ENTRY {
  REPORT_CODE CODE;
  std::string_view TEXT;  // in menus; sheets call the quantity by its first word
  bool OF_SITES;          // a report a site, else one of all
};

// The last entries of menus.
inline constexpr std::string_view MEASURES_ENTRY = "measures";
inline constexpr std::string_view FIT_ENTRY = "fit";  // of sheets

// In the order of menus.
inline constexpr std::array<REPORT_ENTRY, 11> REPORT_ENTRIES{
    {{REPORT_CELLS, "cells", false},
     {REPORT_XYZ, "xyz", true},
     {REPORT_ADPS, "adps", true},
     {REPORT_BONDS, "bond lengths", true},
     {REPORT_ANGLES, "angles between bonds", true},
     {REPORT_EDGES, "edges", true},
     {REPORT_ORBIX, "orbix poly params", true},
     {REPORT_SRB, "rigid bond lengths", true},
     {REPORT_DISPL, "displace along bonds", true},
     {REPORT_VALENCES, "valences of bonds", true},
     {REPORT_MEASURES, MEASURES_ENTRY, false}}};

// True for the codes whose reports are made of calculated bonds; for those with a report a site.
bool NEEDS_BONDS(REPORT_CODE code);
bool IS_OF_SITES(REPORT_CODE code);

// Whether there is anything to report on: bonds, measures.
bool IS_OFFERED(REPORT_CODE code);

// Tells what is missing for the entry of all that the user typed behind the command, when it is not
// among those offered. It is not pending any more then.
void TELL_NOT_OFFERED(std::span<const std::string_view> all,
                      std::span<const std::string_view> offered);

// The report on atom i of the reference block (0 where it is of no site). option: "ESD", "BETA".
// atoms: those matched with atom i, for reports on sites that need no bonds; places: for the
// others.
REPORT REPORT_OF(REPORT_CODE code, int i, std::string_view option, const MATCHED_ATOMS& atoms,
                 const std::vector<int>& places);

// The reports with esds on some sites, with a row each for some places of the display order: one a
// site, or the only one. Their columns are the same whatever the places, so that long lists may be
// reported on part by part.
std::vector<REPORT> REPORTS_OF(REPORT_CODE code, const std::vector<int>& sites,
                               const std::vector<int>& places);

}  // namespace FACETOR_LIST
