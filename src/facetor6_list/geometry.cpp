// The driver of the reports on a site: asks for the central site and shows its table.
#include "console_code/console/input.h"
#include "console_code/console/output.h"
#include "console_code/console/state.h"
#include "console_code/console/tables.h"
#include "console_code/console/work.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_console/valence_table.h"
#include "src/facetor6_list/bond_tables.h"
#include "src/facetor6_list/list_parts.h"
#include "src/facetor6_list/reports.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

// ---- the reports on some sites ----

void LIST_OF_SITE(REPORT_CODE code, int i, std::string_view option, const MATCHED_ATOMS& atoms,
                  const std::vector<int>& places) {
  REPORT report = REPORT_OF(code, i, option, atoms, places);
  WRITE_REPORT(report);
  if (code == REPORT_VALENCES) WRITE_VALENCE_NOTES(report);
}

// ---- the same of many blocks ----

constexpr std::size_t places_at_once = 256;
constexpr std::size_t sites_at_once = 4;

bool MAY_BE_LONG(REPORT_CODE code, const std::vector<int>& places) {
  return NEEDS_BONDS(code) && code != REPORT_VALENCES && LINES_STAY_WHOLE() &&
         places.size() > places_at_once;
}

// The reports on some sites, for one part of the blocks after the other: site by site the records
// of all blocks would go through the caches each time. False when the user has stopped the work,
// which is at the step.
bool LONG_REPORTS(REPORT_CODE code, std::string_view option, const std::vector<int>& sites,
                  const std::vector<int>& places, int step, WORK& work,
                  std::vector<LONG_REPORT>& reports) {
  reports.clear();
  for (const int i : sites)
    reports.push_back(START_LONG_REPORT(REPORT_OF(code, i, option, {}, {}), places.size()));
  for (std::size_t first = 0; first < places.size(); first += places_at_once) {
    if (!GO_ON(work, step)) return false;
    const std::vector<int> part = PART_OF(places, first, places_at_once);
    std::vector<FIELD_LINE> starts;
    for (std::size_t k = 0; k < sites.size(); ++k) {
      const REPORT rows = REPORT_OF(code, sites[k], option, {}, part);
      if (starts.empty()) starts = ROW_STARTS(rows);
      ADD_ROWS(rows, starts, reports[k]);
    }
  }
  return true;
}

void LONG_LIST_OF_SITES(REPORT_CODE code, std::string_view option, const std::vector<int>& sites,
                        const std::vector<int>& places, WORK& work) {
  std::vector<LONG_REPORT> reports;
  for (std::size_t first = 0; first < sites.size(); first += sites_at_once) {
    const int step = static_cast<int>(first) + 1;
    if (!LONG_REPORTS(code, option, PART_OF(sites, first, sites_at_once), places, step, work,
                      reports))
      return;
    for (const LONG_REPORT& report : reports) {
      if (!GO_ON(work, step)) return;
      WRITE_REPORT(report);
    }
  }
}

// ---- all of them ----

void LIST_OF_SITES(REPORT_CODE code, std::string_view option, const std::vector<int>& sites) {
  const std::vector<int> places = LISTED_PLACES();
  const std::vector<MATCHED_ATOMS> atoms =
      NEEDS_BONDS(code) ? std::vector<MATCHED_ATOMS>(sites.size()) : MATCH_ATOMS(sites, places);
  WORK work("", static_cast<int>(sites.size()));
  if (MAY_BE_LONG(code, places)) {
    LONG_LIST_OF_SITES(code, option, sites, places, work);
  } else {
    for (std::size_t k = 0; k < sites.size() && GO_ON(work, static_cast<int>(k) + 1); ++k)
      LIST_OF_SITE(code, sites[k], option, atoms[k], places);
  }
  if (work.STOPPED) WRITE_OUT("|*****The list was stopped");
}

// Which bond table an option asks for; esds are of lengths alone.
REPORT_CODE BOND_CODE(std::string_view option) {
  if (WANTS_ESDS(option)) return REPORT_BONDS;
  if (INDEXALL(option, "srb") > 0) return REPORT_SRB;
  return INDEXALL(option, "disp") > 0 ? REPORT_DISPL : REPORT_BONDS;
}

}  // namespace

void FACETOR_LIST_XYZ(int i, std::string_view option) {
  LIST_OF_SITES(REPORT_XYZ, option, {i});
}

void FACETOR_LIST_ALL_XYZ(std::string_view option) {
  LIST_OF_SITES(REPORT_XYZ, option, USED_ATOMS());
}

void FACETOR_LIST_ADPS(int i, std::string_view option) {
  LIST_OF_SITES(REPORT_ADPS, option, {i});
}

void FACETOR_LIST_ALL_ADPS(std::string_view option) {
  LIST_OF_SITES(REPORT_ADPS, option, USED_ATOMS());
}

void FACETOR_LIST_BONDS(int i, std::string_view option) {
  LIST_OF_SITES(BOND_CODE(option), option, {i});
}

void FACETOR_LIST_ALL_BONDS(std::string_view option) {
  LIST_OF_SITES(BOND_CODE(option), option, USED_ATOMS());
}

void FACETOR_LIST_BONDVALENCE(int i, std::string_view option) {
  LIST_OF_SITES(REPORT_VALENCES, option, {i});
}

void FACETOR_LIST_ALL_BONDVALENCE(std::string_view option) {
  LIST_OF_SITES(REPORT_VALENCES, option, USED_ATOMS());
}

void FACETOR_LIST_ANGLES(int i, std::string_view option) {
  LIST_OF_SITES(REPORT_ANGLES, option, {i});
}

void FACETOR_LIST_ALL_ANGLES(std::string_view option) {
  LIST_OF_SITES(REPORT_ANGLES, option, USED_ATOMS());
}

void FACETOR_LIST_EDGES(int i, std::string_view option) {
  LIST_OF_SITES(REPORT_EDGES, option, {i});
}

void FACETOR_LIST_ALL_EDGES(std::string_view option) {
  LIST_OF_SITES(REPORT_EDGES, option, USED_ATOMS());
}

void FACETOR_LIST_ORBIX(int i) {
  LIST_OF_SITES(REPORT_ORBIX, "", {i});
}

void FACETOR_LIST_ALL_ORBIX() {
  LIST_OF_SITES(REPORT_ORBIX, "", USED_ATOMS());
}

// ---- the sites that the user names ----

namespace {

// Why the site of that name has no report; blank when it has.
std::string REASON_AGAINST(int i, const std::string& name) {
  if (i == 0) return "Site with name = " + AS_IT_IS(name) + " not found in reference block";
  const int use = REFERENCE().ATOM_USE(i);
  if (use == ATOM_OMITTED)
    return "     *****Site with name = " + AS_IT_IS(name) +
           " in reference block marked not to be used";
  if (use < ATOM_OMITTED)
    return "|     *****Site with name = " + AS_IT_IS(REFERENCE().ATOM(i).LAB) +
           " in reference block is a duplicate of " + AS_IT_IS(REFERENCE().ATOM(-use).LAB);
  return "";
}

SITE_ANSWER SITES_NAMED(const std::string& answer) {
  constexpr int name_length = 10;
  if (INDEXALL(answer, "ALL") > 0) return {USED_ATOMS(), true, false};
  const std::string name = FIRST_CHARACTERS(answer, name_length);
  const int i = ATOM_NAMED(name);
  const std::string reason = REASON_AGAINST(i, name);
  if (reason.empty()) return {{i}, false, false};
  WRITE_OUT(reason);
  return {};
}

// Coordinates end with a note when the program has changed scattering factor symbols.
void NOTE_CHANGED_SYMBOLS() {
  constexpr int rule_length = 110;
  if (!BV_FLAGS(BV_LABELS_CHANGED)) return;
  WRITE_OUT(MAKESTARS(rule_length));
  WRITE_OUT("     *****" + std::string(BV_FLAG_TEXTS(BV_LABELS_CHANGED)));
  WRITE_OUT(MAKESTARS(rule_length));
}

}  // namespace

SITE_ANSWER ASK_SITES() {
  WRITE_OUT(
      "     The central atom is at the position for the reference block and given by list/table "
      "xyz");
  WRITE_OUT("||");
  LINE_HELP help = HELP_WITH_LABELS();
  help.WORDS.push_back({"ALL"});
  GET_INPUT("    Enter central site name (or ALL):", help);
  if (CONSOLE.INSTRING_LEN == 0) return {{}, false, true};
  const std::string answer = CONSOLE.INSTRING;
  CLEAR_INPUT();
  return SITES_NAMED(answer);
}

std::vector<int> ASK_SITES_ONCE() {
  MARK_ANSWER();
  SITE_ANSWER answer = CONSOLE.INSTRING_LEN > 0 ? SITES_NAMED(TAKE_WORD()) : ASK_SITES();
  while (!answer.NONE_WANTED && answer.SITES.empty()) {
    REFUSE_ANSWER();
    answer = ASK_SITES();
  }
  return answer.SITES;
}

void RUN_FACETOR_LIST_GEOM(REPORT_CODE code, std::string_view option) {
  if (NEEDS_BONDS(code) && SUM_NBONDS(REFERENCE()) <= 0)
    return WRITE_OUT("     No bond lengths have been loaded or calculated");
  EQUAL_ATOMS();
  if (RUN.LIST_SYMCODES && NEEDS_BONDS(code) && code != REPORT_EDGES) {
    LIST_SYMOPS();
    WRITE_OUT("|     And these will be used in the symmetry codes for the ligands in these tables");
  }
  while (true) {
    const SITE_ANSWER answer = ASK_SITES();
    if (answer.NONE_WANTED) return;
    LIST_OF_SITES(code, option, answer.SITES);
    if (answer.ALL && code == REPORT_XYZ) NOTE_CHANGED_SYMBOLS();
  }
}

}  // namespace FACETOR_LIST
