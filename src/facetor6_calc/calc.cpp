// The menu of CALC and the bonds of all used blocks.
#include "src/facetor6_calc/calc.h"

#include <array>
#include <new>      // for bad_alloc
#include <utility>  // for move

#include "console_code/console/input.h"
#include "console_code/console/output.h"
#include "console_code/console/prompts.h"
#include "console_code/console/state.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_console/match_warnings.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/list.h"
#include "src/kva_crystal_structures/polyhedra.h"

namespace FACETOR_CALC {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

// ---- bonds, angles and polyhedra ----

namespace {

void REPORT_SEARCH_ERRORS() {
  if (!ERR_KVASTRUCTURES && !WARN_KVASTRUCTURES) return;
  WARNING("Bond calculation error(s) for some atoms in reference phase.");
  if (!ERR_KVASTRUCTURES_MESS.empty())
    WRITE_OUT("     The error message included: " + AS_IT_IS(ERR_KVASTRUCTURES_MESS));
  if (!WARN_KVASTRUCTURES_MESS.empty())
    WRITE_OUT("     The warning message included: " + AS_IT_IS(WARN_KVASTRUCTURES_MESS));
}

void WARN_OF_CENTRES_OUTSIDE() {
  const std::vector<int> outside = CENTRES_OUTSIDE(REFERENCE());
  if (outside.empty()) return;
  WARNING(INTEGER_COLUMNS(static_cast<int>(outside.size())) +
          " centres lie outside their polyhedra, first " + REFERENCE().ATOM(outside.front()).LAB +
          ": quadratic elongation and angle variance mean little there");
}

// All that is measured in one block is measured with one ruler. False when the user has stopped it.
bool CALC_BLOCK(const MATCH_BASIS& basis, int block, WORK& work, MATCH_FAULTS& faults) {
  CRYSTAL_STRUCTURE_TYPE& phase = PHASE(block);
  RULER ruler = RULER_FOR(phase);
  MEASURE_BLOCK(basis.TARGETS, ruler, phase, basis.RADIUS);
  if (block != IREFERENCE) faults = MATCH_FAULTS_OF(basis, ruler.IMAGES);
  const COORDINATIONS around = COORDINATIONS_OF(std::move(ruler));
  for (int i = 1; i <= CAPACITY(phase); ++i) {
    if (!GO_ON(work, block)) return false;
    CALC_ANGLES_OF_CENTRE(around, phase, i);
    CALC_POLY_OF_CENTRE(around, phase, i);
  }
  return true;
}

}  // namespace

bool CALC_FACETOR_ALL_POLY(const MATCH_BASIS& basis, WORK& work) {
  LIST<MATCH_FAULTS> faults;
  faults.ASSIGN(NPHASES, {});
  for (int block = 1; block <= NPHASES; ++block) {
    if (!GO_ON(work, block)) return false;
    if (IUSE(block) != 0 && !CALC_BLOCK(basis, block, work, faults(block))) return false;
  }
  if (!GO_ON(work, NPHASES)) return false;
  for (int block = 1; block <= NPHASES; ++block) WARN_OF_FAULTS(block, faults(block));
  return true;
}

namespace {

// False when the user has stopped the work.
bool CALC_ALL_BLOCKS() {
  WORK work("Measuring bonds: block", NPHASES);
  CALC_BONDS_ALLATOMS(REFERENCE(), RUN.DMIN, RUN.DMAX, &RUN.BONDEX);
  LIMITS_OF_BONDS = {RUN.DMIN, RUN.DMAX};
  REPORT_SEARCH_ERRORS();
  return CALC_FACETOR_ALL_POLY(MATCH_BASIS_OF(REFERENCE()), work);
}

}  // namespace

bool RUN_FACETOR_CALC_BONDS() {
  ANNOUNCE("Bond lengths and angles limited by dmin and dmax in reference structure");
  EQUAL_ATOMS();
  CHEMSYMB_PRESENT();
  WRITE_BOND_EXCLUSION();
  GET_INPUT_DMIN_DMAX();
  if (CONSOLE.DROPPED) return false;
  CLEAR_FACETOR_BONDS();
  bool done = false;
  try {
    done = CALC_ALL_BLOCKS();
  } catch (const std::bad_alloc&) {  // the command is given up by the dispatcher
    CLEAR_FACETOR_BONDS();
    throw;
  }
  if (done) {
    WARN_OF_CENTRES_OUTSIDE();
    return true;
  }
  CLEAR_FACETOR_BONDS();
  WARNING("The calculation was stopped: there are no bond lengths until CALC is run again");
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
  if (SUM_NBONDS(REFERENCE()) == 0)
    WARNING("No site has bonds: widen dmin and dmax, or include other pairs by SET exclude");
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
    KEEP_RECORDED({""});
  }
}

}  // namespace FACETOR_CALC
