// The menu of CALC and the bonds of all used blocks.
#include "src/facetor6_calc/calc.h"

#include <array>

#include "console_code/console/output.h"
#include "console_code/console/prompts.h"
#include "console_code/console/work.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/list.h"
#include "src/kva_crystal_structures/bonds.h"
#include "src/kva_crystal_structures/polyhedra.h"

namespace FACETOR_CALC {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;

// ---- bonds, angles and polyhedra ----

bool CALC_FACETOR_ALL_POLY(WORK& work) {
  work.WORDS = "Calculating polyhedra: block";
  for (int block = 1; block <= NPHASES; ++block) {
    if (!GO_ON(work, block)) return false;
    if (IUSE(block) == 0) continue;
    const COORDINATIONS around = COORDINATIONS_OF(PHASE(block));
    CALC_ANGLES_ALLATOMS(around, PHASE(block));
    CALC_POLY_ALLATOMS(around, PHASE(block));
  }
  return GO_ON(work, NPHASES);
}

namespace {

void REPORT_SEARCH_ERRORS() {
  if (!ERR_KVASTRUCTURES && !WARN_KVASTRUCTURES) return;
  WARNING("Bond calculation error(s) for some atoms in reference phase.");
  if (!ERR_KVASTRUCTURES_MESS.empty())
    WRITE_OUT("     The error message included: " + ERR_KVASTRUCTURES_MESS);
  if (!WARN_KVASTRUCTURES_MESS.empty())
    WRITE_OUT("     The warning message included: " + WARN_KVASTRUCTURES_MESS);
}

// The bonds of the reference block in every used block; false when the user stopped the work.
bool MEASURE_USED_BLOCKS(float radius, WORK& work) {
  for (int block = 1; block <= NPHASES; ++block) {
    if (!GO_ON(work, block)) return false;
    if (IUSE(block) != 0) MEASURE_BLOCK(REFERENCE(), PHASE(block), block == IREFERENCE, radius);
  }
  return true;
}

}  // namespace

bool RUN_FACETOR_CALC_BONDS() {
  ANNOUNCE("Bond lengths and angles limited by dmin and dmax in reference structure");
  EQUAL_ATOMS();
  CHEMSYMB_PRESENT();
  WRITE_BOND_EXCLUSION();
  GET_INPUT_DMIN_DMAX();
  CLEAR_FACETOR_BONDS();
  WORK work("Measuring bonds: block", NPHASES);
  CALC_BONDS_ALLATOMS(REFERENCE(), RUN.DMIN, RUN.DMAX, &RUN.BONDEX);
  const float radius = MATCHING_RADIUS(REFERENCE());
  REPORT_SEARCH_ERRORS();
  if (MEASURE_USED_BLOCKS(radius, work) && CALC_FACETOR_ALL_POLY(work)) return true;
  CLEAR_FACETOR_BONDS();
  WARNING("The calculation was stopped: there are no bond lengths");
  return false;
}

// ---- the command ----

namespace {

// Option 1; false when the command is to end.
bool CALC_POLYHEDRA() {
  if (REFERENCE().NATOMS == 0) {
    WARNING("There are no atoms in the reference block: no bond lengths can be calculated");
    return false;
  }
  if (!RUN_FACETOR_CALC_BONDS()) return false;
  if (RUN.LIST_SYMCODES) {
    FACETOR_LIST::LIST_SYMOPS();
    WRITE_OUT("|     And these will be used in the symmetry codes for the ligands in these tables");
  }
  FACETOR_LIST::FACETOR_LIST_ALL_BONDS();
  WRITE_OUT(
      "|******To see angles and other polyhedral parameters, use the list and table commands|");
  EQUAL_ATOMS();
  return true;
}

// Option 2; false when the command is to end.
bool CALC_VALENCES() {
  if (REFERENCE().NATOMS == 0) {
    WARNING("There are no atoms in the reference block: no bond valences can be calculated");
    return false;
  }
  if (SUM_NBONDS(REFERENCE()) == 0)
    WARNING("No bond lengths have been calculated: use option 1 to calculate bond lengths");
  else
    RUN_FACETOR_CALC_VALENCE();
  return true;
}

enum OPTION { POLYHEDRA = 1, VALENCES };
constexpr std::array<std::string_view, 2> menu{"polyhedra and bonds",
                                               "valences of bonds"};  // ORDER OPTION

}  // namespace

std::span<const std::string_view> CALC_MENU() {
  return menu;
}

void RUN_FACETOR_CALC() {
  if (CHECK_NOPHASES()) return;
  bool again = true;
  while (again) {
    switch (GET_LIST_SELECTION("Calculations", menu)) {
      case 0:
        return;
      case POLYHEDRA:
        again = CALC_POLYHEDRA();
        break;
      case VALENCES:
        again = CALC_VALENCES();
        break;
      default:
        WRITE_OUT("*****Option not recognised");
    }
  }
}

}  // namespace FACETOR_CALC
