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

namespace {

// ---- the menus ----

// An entry and its report, or what it shows instead of one.
struct MENU_ENTRY {
  std::string_view TEXT;
  REPORT_CODE CODE = NO_REPORT;
  void (*SHOW)() = nullptr;
};
using MENU = std::span<const MENU_ENTRY>;

constexpr MENU_ENTRY OF(REPORT_CODE code) {
  for (const REPORT_ENTRY& entry : REPORT_ENTRIES)
    if (entry.CODE == code) return {entry.TEXT, code};
  return {};
}

constexpr std::array<MENU_ENTRY, 15> list_menu{
    {{"block names", NO_REPORT, FACETOR_LIST_PHASE},
     OF(REPORT_CELLS),
     {"symmetry", NO_REPORT, FACETOR_LIST_SYMM},
     {"site names", NO_REPORT, [] { FACETOR_LIST_ATOMS(); }},
     {"scattering factors", NO_REPORT, [] { FACETOR_LIST_ATOMS("SCAT"); }},
     OF(REPORT_XYZ),
     OF(REPORT_ADPS),
     OF(REPORT_BONDS),
     OF(REPORT_ANGLES),
     {"edges of polyhedra", REPORT_EDGES},
     OF(REPORT_ORBIX),
     OF(REPORT_SRB),
     OF(REPORT_DISPL),
     OF(REPORT_VALENCES),
     OF(REPORT_MEASURES)}};

// The reports that have esds.
constexpr std::array<MENU_ENTRY, 8> table_menu{
    {OF(REPORT_CELLS), OF(REPORT_XYZ), OF(REPORT_ADPS), OF(REPORT_BONDS), OF(REPORT_ANGLES),
     OF(REPORT_EDGES), OF(REPORT_VALENCES), OF(REPORT_MEASURES)}};

std::vector<MENU_ENTRY> OFFERED(MENU menu) {
  std::vector<MENU_ENTRY> offered;
  for (const MENU_ENTRY& entry : menu)
    if (IS_OFFERED(entry.CODE)) offered.push_back(entry);
  return offered;
}

std::vector<std::string_view> TEXTS_OF(MENU menu) {
  std::vector<std::string_view> texts;
  for (const MENU_ENTRY& entry : menu) texts.push_back(entry.TEXT);
  return texts;
}

// As they were last offered; whoever shows them keeps a view of them.
std::vector<std::string_view> list_offered;
std::vector<std::string_view> table_offered;

// ---- from an entry to its report ----

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

void SHOW_REPORT(REPORT_CODE code, std::string_view option) {
  switch (code) {
    case REPORT_CELLS:
      return FACETOR_LIST_CELLS(option);
    case REPORT_ADPS:
      return RUN_FACETOR_LIST_GEOM(code, std::string(option) + " " + ASK_TENSOR());
    case REPORT_VALENCES:
      return LIST_VALENCES(option);
    case REPORT_MEASURES:
      return FACETOR_LIST_MEASURES(option);
    default:
      return RUN_FACETOR_LIST_GEOM(code, option);
  }
}

// Asks for an entry of a menu and shows what it stands for; one that is typed too early is told.
void RUN_MENU(std::string_view title, MENU menu, std::string_view option) {
  if (CHECK_NOPHASES()) return;
  const std::vector<MENU_ENTRY> offered = OFFERED(menu);
  const std::vector<std::string_view> texts = TEXTS_OF(offered);
  TELL_NOT_OFFERED(TEXTS_OF(menu), texts);
  const int selection = GET_LIST_SELECTION(title, texts);
  if (selection <= 0) return;
  const MENU_ENTRY& entry = offered[static_cast<std::size_t>(selection - 1)];
  if (entry.SHOW != nullptr) return entry.SHOW();
  SHOW_REPORT(entry.CODE, option);
}

}  // namespace

std::span<const std::string_view> LIST_MENU() {
  return list_offered = TEXTS_OF(OFFERED(list_menu));
}

std::span<const std::string_view> TABLE_MENU() {
  return table_offered = TEXTS_OF(OFFERED(table_menu));
}

void RUN_FACETOR_LIST() {
  RUN_MENU("List", list_menu, "");
}

void RUN_FACETOR_TABLE() {
  RUN_MENU("Table", table_menu, "ESD");
}

}  // namespace FACETOR_LIST
