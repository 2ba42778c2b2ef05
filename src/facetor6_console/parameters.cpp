// The dialogues of SET and SHOW.
#include "src/facetor6_console/parameters.h"

#include <algorithm>  // for any_of, max, none_of
#include <array>
#include <cmath>  // for lround

#include "console_code/console/output.h"
#include "console_code/console/prompts.h"
#include "console_code/console/state.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "foundations/XTAL_Scattering_Chemical_Tables.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_console/valence_table.h"

namespace FACETOR_CONSOLE {

using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

// ---- distance range ----

namespace {

std::string RANGE_TEXT() {
  return REAL_COLUMNS(RUN.DMIN, 5, 2) + " to " + REAL_COLUMNS(RUN.DMAX, 5, 2);
}

void WRITE_RANGE() {
  WRITE_OUT("|        Current range of distances is: " + RANGE_TEXT());
}

}  // namespace

void GET_INPUT_DMIN_DMAX() {
  constexpr float smallest_dmin = 0.01f;  // angstroms
  WRITE_RANGE();
  float dmin = 0.0f;
  float dmax = 0.0f;
  GET_INPUT_RANGE(
      "      Input dmin and dmax for bond length calculation (blank for no change):", dmin, dmax);
  if (CONSOLE.INSTRING_LEN == 0) return WRITE_OUT("|      Distance limits not changed");
  if (dmin < smallest_dmin) {
    WRITE_OUT("|      Minimum distance cannot be negative, set to 0.01");
    dmin = smallest_dmin;
  }
  RUN.DMIN = dmin;
  RUN.DMAX = std::max(dmin, dmax);
  WRITE_OUT("|        Current range of distances is now: " + RANGE_TEXT());
}

// ---- reference block ----

void WRITE_REFERENCE() {
  std::string line = "|     REFERENCE BLOCK IS #" + INTEGER_COLUMNS(IREFERENCE) + ":";
  if (NPHASES > 0) {
    const CRYSTAL_STRUCTURE_TYPE& phase = REFERENCE();
    line += " " + AS_IT_IS(phase.BLOCK_TITLE) +
            "   T =" + REAL_AT_LEAST(phase.PT(TEMPERATURE, PT_VALUE), 6, 1) +
            " K, P =" + REAL_AT_LEAST(phase.PT(PRESSURE, PT_VALUE), 7, 3) + " GPa";
  }
  WRITE_OUT(line);
}

namespace {

bool HAS_BONDS(const CRYSTAL_STRUCTURE_TYPE& phase) {
  return std::any_of(phase.NBONDS.begin(), phase.NBONDS.end(), [](int n) { return n > 0; });
}

// Whether every centre and bond of the old reference is the same atom and bond, under the same
// numbers, in the new one: then the tables are in order under it too. When the reference has lost
// its bonds, it is so where no other block has any.
bool SAME_CENTRES_AND_BONDS(const CRYSTAL_STRUCTURE_TYPE& old_reference,
                            const CRYSTAL_STRUCTURE_TYPE& new_reference) {
  if (!HAS_BONDS(old_reference)) return std::none_of(PHASE.begin(), PHASE.end(), HAS_BONDS);
  for (int a = 1; a <= old_reference.NATOMS; ++a) {
    if (old_reference.NBONDS(a) <= 0) continue;
    if (new_reference.NBONDS(a) != old_reference.NBONDS(a)) return false;
    if (CENTRE_NUMBER(new_reference, a) != a) return false;
    for (int j = 1; j <= old_reference.NBONDS(a); ++j)
      if (new_reference.BONDS.LIGAND(a, j) != old_reference.BONDS.LIGAND(a, j)) return false;
  }
  return true;
}

void CHANGE_REFERENCE(int block) {
  const bool same = SAME_CENTRES_AND_BONDS(REFERENCE(), PHASE(block));
  IREFERENCE = block;
  WRITE_REFERENCE();
  if (!same) {
    CLEAR_FACETOR_BONDS();
    WARNING("The atoms of the new reference block do not match: run calc poly again");
  } else if (RUN.LIST_SYMCODES) {
    WRITE_OUT("|*****Run calc poly again to update the sym codes for all ligands");
  }
}

// One question for the reference block.
void ASK_REFERENCE() {
  float answer = 0.0f;
  GET_INPUT_VALUES("     Input number of new reference (blank for no change):", answer);
  if (CONSOLE.INSTRING_LEN == 0) return WRITE_OUT("|     Reference block unchanged");
  const bool in_list = answer > 0.5f && answer < static_cast<float>(NPHASES) + 0.5f;
  const int block = in_list ? static_cast<int>(std::lround(answer)) : 0;
  if (block < 1 || block > NPHASES)
    return WRITE_OUT("|     Invalid block number: Reference block unchanged");
  if (IUSE(block) == 0)
    return WRITE_OUT("|     Cannot set omitted block as reference: Reference block unchanged");
  CHANGE_REFERENCE(block);
}

}  // namespace

void SET_REFERENCE() {
  if (CHECK_NOPHASES()) return;
  WRITE_REFERENCE();
  while (true) {
    ASK_REFERENCE();
    if (IUSE(IREFERENCE) != 0 || CONSOLE.DROPPED) return;
    WRITE_OUT("     You must set a used block as reference");
  }
}

// ---- classes of atom pairs ----

void WRITE_BOND_EXCLUSION() {
  if (!RUN.BONDEX_ON) return;
  WRITE_OUT("|  For calculation of atom-atom distances:");
  for (int k = 1; k <= BOND_CLASSES; ++k)
    WRITE_OUT("     " + std::string(BONDEXLABEL(k)) +
              (RUN.BONDEX(k) ? " distances are EXCLUDED" : " distances are INCLUDED"));
  WRITE_OUT("|");
}

void SET_BOND_EXCLUSION() {
  if (!RUN.BONDEX_ON) return;
  WRITE_OUT(
      "|   Here you can set the types of atom-atom distances to be included or excluded from "
      "calculations|");
  WRITE_OUT(
      "    Do you want the following types of atom-atom distances to be INCLUDED in calculations?");
  auto excluded = RUN.BONDEX;
  for (int k = 1; k <= BOND_CLASSES; ++k)
    excluded(k) = GET_ANSWER_YN("     " + std::string(BONDEXLABEL(k)) + " distances:", "Y") != 'Y';
  if (CONSOLE.DROPPED) return;
  RUN.BONDEX = excluded;
  WRITE_BOND_EXCLUSION();
}

// ---- elements ----

void CHEMSYMB_PRESENT() {
  for (int block = 1; block <= NPHASES; ++block) {
    if (IUSE(block) == 0) continue;
    const CRYSTAL_STRUCTURE_TYPE& phase = PHASE(block);
    for (int i = 1; i <= phase.NATOMS; ++i) {
      const std::string& symbol = phase.ATOM(i).CHEMSYMB;
      if (phase.ATOM_USE(i) == ATOM_USED && (LENTRIM(symbol) == 0 || symbol == XTAL::NO_ELEMENT))
        return WARNING(BV_FLAG_TEXTS(BV_NOT_ELEMENTS));
    }
  }
}

// ---- the commands ----

namespace {

enum OPTION { HIDE_UNUSED = 1, SHOW_ALL, DISTANCES, REFERENCE_BLOCK, EXCLUDE, SYMCODES };
constexpr std::array<std::string_view, 6> options{// ORDER OPTION
                                                  "hide unused blocks", "show all data blocks",
                                                  "dmin and dmax",      "reference block",
                                                  "exclude bond types", "output symcodes"};

}  // namespace

std::span<const std::string_view> SET_MENU() {
  return options;
}

void RUN_SET_FACETOR_PARAMS() {
  switch (GET_LIST_SELECTION("Setting program parameters", options)) {
    case HIDE_UNUSED:
      RUN.LIST_ALL_BLOCKS = false;
      break;
    case SHOW_ALL:
      RUN.LIST_ALL_BLOCKS = true;
      break;
    case DISTANCES:
      GET_INPUT_DMIN_DMAX();
      break;
    case REFERENCE_BLOCK:
      SET_REFERENCE();
      break;
    case EXCLUDE:
      SET_BOND_EXCLUSION();
      break;
    case SYMCODES: {
      const char answer = GET_ANSWER_YN("Do you want to see symcodes in bond listings?", "N");
      if (!CONSOLE.DROPPED) RUN.LIST_SYMCODES = answer == 'Y';
      break;
    }
    default:
      break;
  }
}

void RUN_SHOW_FACETOR_PARAMS() {
  ANNOUNCE("Current Settings");
  WRITE_OUT(RUN.LIST_ALL_BLOCKS
                ? "     All data blocks will be listed in output"
                : "     Only data blocks with use flag set will be listed in output");
  WRITE_RANGE();
  WRITE_OUT(RUN.LIST_SYMCODES ? "     Symmetry codes of the reference block will be given in lists "
                                "of bond lengths and angles"
                              : "     Symmetry codes of the reference block will not be listed for "
                                "bond lengths and angles");
  WRITE_REFERENCE();
  WRITE_BOND_EXCLUSION();
}

}  // namespace FACETOR_CONSOLE
