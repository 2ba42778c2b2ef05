// The menus of LIST and TABLE.
#include <array>
#include <span>
#include <vector>

#include "console_code/console/output.h"
#include "console_code/console/prompts.h"
#include "src/facetor6_console/measure_list.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_console/valence_table.h"
#include "src/facetor6_list/list_parts.h"
#include "src/facetor6_list/reports.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;

namespace {

enum LIST_ROW {
  LIST_NAMES = 1,
  LIST_CELLS,
  LIST_SYMMETRY,
  LIST_SITES,
  LIST_FACTORS,
  LIST_XYZ,
  LIST_ADPS,
  LIST_BONDS,
  LIST_ANGLES,
  LIST_EDGES,
  LIST_ORBIX,
  LIST_SRB,
  LIST_DISPL,
  LIST_BONDVALENCES
};
constexpr std::array<std::string_view, 14> list_menu{// ORDER LIST_ROW
                                                     "block names",
                                                     "cells",
                                                     "symmetry",
                                                     "site names",
                                                     "scattering factors",
                                                     "xyz",
                                                     "adps",
                                                     "bond lengths",
                                                     "angles between bonds",
                                                     "edges of polyhedra",
                                                     "orbix poly params",
                                                     "rigid bond lengths",
                                                     "displace along bonds",
                                                     "valences of bonds"};

enum TABLE_ROW {
  TABLE_CELLS = 1,
  TABLE_XYZ,
  TABLE_ADPS,
  TABLE_BONDS,
  TABLE_ANGLES,
  TABLE_EDGES,
  TABLE_VALENCES
};
constexpr std::array<std::string_view, 7> table_menu{
    // ORDER TABLE_ROW
    "cells", "xyz", "adps", "bond lengths", "angles between bonds", "edges", "valences of bonds"};

// A menu is longer when the reference block has bonds, and when there are measures, which are the
// last entry then.
using MENU = std::vector<std::string_view>;

MENU NOW_OFFERED(std::span<const std::string_view> menu, std::size_t without_bonds) {
  const bool bonds = NPHASES > 0 && SUM_NBONDS(REFERENCE()) > 0;
  const std::span<const std::string_view> shown = bonds ? menu : menu.first(without_bonds);
  MENU offered(shown.begin(), shown.end());
  if (!MEASURES.empty()) offered.push_back(MEASURES_ENTRY);
  return offered;
}

// A choice out of what is offered of a menu; an entry that is typed too early is told.
int CHOOSE(std::string_view title, std::span<const std::string_view> menu,
           std::span<const std::string_view> offered) {
  MENU whole(menu.begin(), menu.end());
  whole.push_back(MEASURES_ENTRY);
  TELL_NOT_OFFERED(whole, offered);
  return GET_LIST_SELECTION(title, offered);
}

bool IS_MEASURES(std::span<const std::string_view> menu, int selection) {
  return selection > 0 && menu[static_cast<std::size_t>(selection - 1)] == MEASURES_ENTRY;
}

// As they were last offered; whoever shows them keeps a view of them.
MENU list_offered;
MENU table_offered;

// "U" or "BETA", as the user wants.
std::string ASK_TENSOR() {
  return GET_ANSWER("Do you want to see Uij or betaij ?", 'U', 'b', "U") == 'b' ? "BETA" : "U";
}

void LIST_VALENCES(std::string_view option) {
  if (!VALENCES_DONE)
    return WRITE_OUT("| ***** No bond valences have been calculated - use calc*****");
  REPORT_BVS_PARAMS();
  RUN_FACETOR_LIST_GEOM(REPORT_VALENCES, option);
}

}  // namespace

std::span<const std::string_view> LIST_MENU() {
  return list_offered = NOW_OFFERED(list_menu, LIST_ADPS);
}

std::span<const std::string_view> TABLE_MENU() {
  return table_offered = NOW_OFFERED(table_menu, TABLE_ADPS);
}

void RUN_FACETOR_LIST() {
  if (CHECK_NOPHASES()) return;
  const std::span<const std::string_view> menu = LIST_MENU();
  const int selection = CHOOSE("List", list_menu, menu);
  if (IS_MEASURES(menu, selection)) return FACETOR_LIST_MEASURES();
  switch (selection) {
    case LIST_NAMES:
      return FACETOR_LIST_PHASE();
    case LIST_CELLS:
      return FACETOR_LIST_CELLS();
    case LIST_SYMMETRY:
      return FACETOR_LIST_SYMM();
    case LIST_SITES:
      return FACETOR_LIST_ATOMS();
    case LIST_FACTORS:
      return FACETOR_LIST_ATOMS("SCAT");
    case LIST_XYZ:
      return RUN_FACETOR_LIST_GEOM(REPORT_XYZ);
    case LIST_ADPS:
      return RUN_FACETOR_LIST_GEOM(REPORT_ADPS, ASK_TENSOR());
    case LIST_BONDS:
      return RUN_FACETOR_LIST_GEOM(REPORT_BONDS);
    case LIST_ANGLES:
      return RUN_FACETOR_LIST_GEOM(REPORT_ANGLES);
    case LIST_EDGES:
      return RUN_FACETOR_LIST_GEOM(REPORT_EDGES);
    case LIST_ORBIX:
      return RUN_FACETOR_LIST_GEOM(REPORT_ORBIX);
    case LIST_SRB:
      return RUN_FACETOR_LIST_GEOM(REPORT_SRB);
    case LIST_DISPL:
      return RUN_FACETOR_LIST_GEOM(REPORT_DISPL);
    case LIST_BONDVALENCES:
      return LIST_VALENCES("");
    default:
      return;
  }
}

void RUN_FACETOR_TABLE() {
  if (CHECK_NOPHASES()) return;
  const std::span<const std::string_view> menu = TABLE_MENU();
  const int selection = CHOOSE("Table", table_menu, menu);
  if (IS_MEASURES(menu, selection)) return FACETOR_LIST_MEASURES("ESD");
  switch (selection) {
    case TABLE_CELLS:
      return FACETOR_LIST_CELLS("ESD");
    case TABLE_XYZ:
      return RUN_FACETOR_LIST_GEOM(REPORT_XYZ, "ESD");
    case TABLE_ADPS:
      return RUN_FACETOR_LIST_GEOM(REPORT_ADPS, "ESD, " + ASK_TENSOR());
    case TABLE_BONDS:
      return RUN_FACETOR_LIST_GEOM(REPORT_BONDS, "ESD");
    case TABLE_ANGLES:
      return RUN_FACETOR_LIST_GEOM(REPORT_ANGLES, "ESD");
    case TABLE_EDGES:
      return RUN_FACETOR_LIST_GEOM(REPORT_EDGES, "ESD");
    case TABLE_VALENCES:
      return LIST_VALENCES("ESD");
    default:
      return;
  }
}

}  // namespace FACETOR_LIST
