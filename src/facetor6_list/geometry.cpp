// The driver of the reports on a site: asks for the central site and shows its table.
#include "console_code/console/input.h"
#include "console_code/console/output.h"
#include "console_code/console/state.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_console/valence_table.h"
#include "src/facetor6_list/list_parts.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

// ---- dispatch ----

void LIST_SITE(REPORT_CODE code, int i, std::string_view option) {
  switch (code) {
    case REPORT_XYZ:
      return FACETOR_LIST_XYZ(i, option);
    case REPORT_ADPS:
      return FACETOR_LIST_ADPS(i, option);
    case REPORT_BONDS:
      return FACETOR_LIST_BONDS(i, option);
    case REPORT_ANGLES:
      return FACETOR_LIST_ANGLES(i, option);
    case REPORT_EDGES:
      return FACETOR_LIST_EDGES(i, option);
    case REPORT_ORBIX:
      return FACETOR_LIST_ORBIX(i);
    case REPORT_SRB:
      return FACETOR_LIST_BONDS(i, "srb");
    case REPORT_DISPL:
      return FACETOR_LIST_BONDS(i, "displ");
    case REPORT_VALENCES:
      return FACETOR_LIST_BONDVALENCE(i, option);
  }
}

// Coordinates end with a note when the program has changed scattering factor symbols.
void NOTE_CHANGED_SYMBOLS() {
  constexpr int rule_length = 110;
  if (!BV_FLAGS(BV_LABELS_CHANGED)) return;
  WRITE_OUT(MAKESTARS(rule_length));
  WRITE_OUT("     *****" + std::string(BV_FLAG_TEXTS(BV_LABELS_CHANGED)));
  WRITE_OUT(MAKESTARS(rule_length));
}

void LIST_ALL_SITES(REPORT_CODE code, std::string_view option) {
  switch (code) {
    case REPORT_XYZ:
      FACETOR_LIST_ALL_XYZ(option);
      return NOTE_CHANGED_SYMBOLS();
    case REPORT_ADPS:
      return FACETOR_LIST_ALL_ADPS(option);
    case REPORT_BONDS:
      return FACETOR_LIST_ALL_BONDS(option);
    case REPORT_ANGLES:
      return FACETOR_LIST_ALL_ANGLES(option);
    case REPORT_EDGES:
      return FACETOR_LIST_ALL_EDGES(option);
    case REPORT_ORBIX:
      return FACETOR_LIST_ALL_ORBIX();
    case REPORT_SRB:
      return FACETOR_LIST_ALL_BONDS("srb");
    case REPORT_DISPL:
      return FACETOR_LIST_ALL_BONDS("displ");
    case REPORT_VALENCES:
      return FACETOR_LIST_ALL_BONDVALENCE(option);
  }
}

// ---- the site that the user names ----

int FIND_SITE(const std::string& name) {
  for (int i = 1; i <= REFERENCE().NATOMS; ++i)
    if (BEGINS_WITH(REFERENCE().ATOM(i).LAB, name)) return i;
  return 0;
}

void LIST_NAMED_SITE(REPORT_CODE code, const std::string& name, std::string_view option) {
  const int i = FIND_SITE(name);
  if (i == 0) return WRITE_OUT("Site with name = " + name + " not found in reference block");
  const int use = REFERENCE().ATOM_USE(i);
  if (use == ATOM_OMITTED)
    return WRITE_OUT("     *****Site with name = " + name +
                     " in reference block marked not to be used");
  if (use < ATOM_OMITTED)
    return WRITE_OUT("|     *****Site with name = " + REFERENCE().ATOM(i).LAB +
                     " in reference block is a duplicate of " + REFERENCE().ATOM(-use).LAB);
  LIST_SITE(code, i, option);
}

bool NEEDS_BONDS(REPORT_CODE code) {
  return code >= REPORT_BONDS;
}

}  // namespace

void RUN_FACETOR_LIST_GEOM(REPORT_CODE code, std::string_view option) {
  constexpr int name_length = 10;
  if (NEEDS_BONDS(code) && SUM_NBONDS(REFERENCE()) <= 0)
    return WRITE_OUT("     No bond lengths have been loaded or calculated");
  EQUAL_ATOMS();
  if (RUN.LIST_SYMCODES && NEEDS_BONDS(code) && code != REPORT_EDGES) {
    LIST_SYMOPS();
    WRITE_OUT("|     And these will be used in the symmetry codes for the ligands in these tables");
  }
  while (true) {
    WRITE_OUT(
        "     The central atom is at the position for the reference block and given by list/table "
        "xyz");
    WRITE_OUT("||");
    LINE_HELP help = HELP_WITH_LABELS();
    help.WORDS.push_back({"ALL"});
    GET_INPUT("    Enter central site name (or ALL):", help);
    if (CONSOLE.INSTRING_LEN == 0) return;
    if (INDEXALL(CONSOLE.INSTRING, "ALL") > 0)
      LIST_ALL_SITES(code, option);
    else
      LIST_NAMED_SITE(code, FIRST_CHARACTERS(CONSOLE.INSTRING, name_length), option);
  }
}

}  // namespace FACETOR_LIST
