// Upkeep of the phase list and the commands USE, OMIT, SORT, UNSORT and CLEAR.
#include "src/facetor6_console/phase_list.h"

#include <algorithm>  // for count, max, min, reverse, sort, unique
#include <exception>
#include <utility>  // for move

#include "console_code/console/input.h"
#include "console_code/console/output.h"
#include "console_code/console/prompts.h"
#include "console_code/console/state.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/valence_table.h"

namespace FACETOR_CONSOLE {

using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using KVA_UTILITIES::INTEGER_AT_LEAST;

CRYSTAL_STRUCTURE_TYPE& REFERENCE() {
  return PHASE(IREFERENCE);
}

// ---- room ----

void INIT_PHASE_LIST() {
  ALLOCATE_PHASE_LIST(START_PHASES);
}

void ALLOCATE_PHASE_LIST(int n) {
  if (n <= 0) return;
  NPHASES = 0;
  IREFERENCE = 1;
  ALLOCATE_CRYSTAL_STRUCTURE_LIST(PHASE, n);
  if (ERR_KVASTRUCTURES) {
    WARNING(ERR_KVASTRUCTURES_MESS);
    ISORT.ASSIGN(ISORT.COUNT(), 0);
    IUSE.ASSIGN(IUSE.COUNT(), 0);
    return;
  }
  ISORT.ASSIGN(n, 0);
  IUSE.ASSIGN(n, 0);
  for (int i = 1; i <= n; ++i) ISORT(i) = i;
  NPHASES_ALLOCATED = n;
}

void EXPAND_PHASE_LIST(int extra, bool& error) {
  const int n = PHASE.COUNT() + extra;
  try {
    IUSE.RESIZE(n);
    ISORT.RESIZE(n);
    PHASE.RESIZE(n);
  } catch (const std::exception&) {  // no memory, or more than a vector can hold
    WARNING(
        "error allocating arrays in Allocate_crystal_structurelist called from "
        "expand_phase_list");
    error = true;
    return;
  }
  for (int k = NPHASES_ALLOCATED + 1; k <= n; ++k) ISORT(k) = k;
  NPHASES_ALLOCATED = n;
}

namespace {

// Room for more atoms costs the loaded blocks their bonds and the use of their atoms.
void TELL_WHAT_ROOM_COSTS() {
  bool bonds = false;
  bool omitted = false;
  for (int block = 1; block <= NPHASES; ++block) {
    const CRYSTAL_STRUCTURE_TYPE& phase = PHASE(block);
    bonds = bonds || SUM_NBONDS(phase) > 0;
    for (int i = 1; i <= phase.NATOMS; ++i) omitted = omitted || phase.ATOM_USE(i) == ATOM_OMITTED;
  }
  if (bonds) WARNING("A new block has more atoms: the bonds are dropped, run calc poly again");
  if (omitted) WARNING("A new block has more atoms: omitted atoms are used again, omit them anew");
}

}  // namespace

void ADD_PHASE_LIST(STRUCTURE_LIST& newx, int count, bool& error) {
  error = false;
  int largest_new = 0;
  for (const CRYSTAL_STRUCTURE_TYPE& phase : newx)
    largest_new = std::max(largest_new, phase.NATOMS);
  const int largest_held = NATOM_MAX();
  if (largest_new > largest_held) {
    TELL_WHAT_ROOM_COSTS();
    for (CRYSTAL_STRUCTURE_TYPE& phase : PHASE) EXPAND_NATOMS(phase, largest_new);
  }
  for (CRYSTAL_STRUCTURE_TYPE& phase : newx)
    EXPAND_NATOMS(phase, std::max(largest_new, largest_held));

  const int added = std::min(count, newx.COUNT());
  if (NPHASES + added > NPHASES_ALLOCATED)
    EXPAND_PHASE_LIST(NPHASES + added - NPHASES_ALLOCATED, error);
  if (error) return;
  for (int i = 1; i <= added; ++i) {
    const int k = NPHASES + i;
    PHASE(k) = std::move(newx(i));
    ISORT(k) = k;
    IUSE(k) = 1;
  }
  NPHASES += added;
  newx = {};
}

// ---- questions ----

std::vector<int> ASK_BLOCKS(std::string_view prompt) {
  std::vector<int> blocks = GET_LIST(prompt, NPHASES);
  std::sort(blocks.begin(), blocks.end());
  blocks.erase(std::unique(blocks.begin(), blocks.end()), blocks.end());
  return blocks;
}

int ATOM_NAMED(std::string_view beginning) {
  for (int i = 1; i <= REFERENCE().NATOMS; ++i)
    if (KVA_UTILITIES::BEGINS_WITH(REFERENCE().ATOM(i).LAB, beginning)) return i;
  return 0;
}

KVA_CONSOLE::LINE_HELP HELP_WITH_LABELS() {
  KVA_CONSOLE::LINE_HELP help;
  if (NPHASES == 0) return help;
  for (int i = 1; i <= REFERENCE().NATOMS; ++i) help.WORDS.push_back({REFERENCE().ATOM(i).LAB});
  return help;
}

std::vector<int> USED_BLOCKS() {
  std::vector<int> blocks;
  for (int place = 1; place <= NPHASES; ++place)
    if (IUSE(ISORT(place)) != 0) blocks.push_back(ISORT(place));
  return blocks;
}

int NUMPHASES_USED() {
  return static_cast<int>(std::count(IUSE.begin(), IUSE.begin() + NPHASES, 1));
}

bool CHECK_NOPHASES() {
  if (NUMPHASES_USED() > 0) return false;
  WARNING("No datablocks with use flags set!");
  CLEAR_INPUT();  // the command does nothing with what stands behind it
  return true;
}

bool NPHASE_MAX() {
  if (NPHASES != NPHASES_ALLOCATED) return false;
  WARNING("Capacity of arrays exceeded: no more space for adding new structures!");
  return true;
}

int NATOM_MAX() {
  int largest = 0;
  for (int i = 1; i <= NPHASES; ++i) largest = std::max(largest, PHASE(i).NATOMS);
  return largest;
}

void EQUAL_ATOMS() {
  for (int i = 2; i <= NPHASES; ++i)
    if (PHASE(i).NATOMS != PHASE(1).NATOMS)
      return WARNING("Different numbers of atoms in different data blocks: read output with care!");
}

// ---- forgetting ----

void CLEAR_FACETOR_BONDS() {
  for (CRYSTAL_STRUCTURE_TYPE& phase : PHASE) CLEAR_GEOMETRY(phase);
  CLEAR_FACETOR_VALENCE();
}

void CLEAR_FACETOR_LIST() {
  ALLOCATE_PHASE_LIST(1);
  CLEAR_FACETOR_VALENCE();
  WRITE_OUT_BLANK(1);
  WRITE_OUT("     All data blocks deleted from list");
}

// ---- use and order ----

namespace {

void SET_USE(std::string_view prompt, bool use) {
  for (int block : GET_LIST(prompt, NPHASES)) IUSE(block) = use ? 1 : 0;
}

}  // namespace

void USE_FACETOR_LIST() {
  if (CHECK_NOPHASES()) return;
  SET_USE("Input the datablock numbers to use, <CR> to exit: ", true);
}

void OMIT_FACETOR_LIST() {
  if (CHECK_NOPHASES()) return;
  const KVA_UTILITIES::FLAGS before = IUSE;
  SET_USE("Input the datablock numbers to omit, <CR> to exit: ", false);
  if (NUMPHASES_USED() == 0) {
    IUSE(IREFERENCE) = 1;
    WARNING("Previous reference block, #" + INTEGER_AT_LEAST(IREFERENCE, 3) +
            " has been set used and retained as reference");
  } else if (IUSE(IREFERENCE) == 0) {
    WARNING("The previous reference block is now omitted. You must set a new reference block!");
    SET_REFERENCE();
  }
  if (CONSOLE.DROPPED) IUSE = before;
}

void SORT_FACETOR_LIST() {
  if (CHECK_NOPHASES()) return;
  const PT_ROW row = GET_ANSWER("Sort by P or T?", 'P', 'T', "P") == 'P' ? PRESSURE : TEMPERATURE;
  const bool decreasing = GET_ANSWER("Sort increasing or decreasing?", 'I', 'D', "I") == 'D';
  if (CONSOLE.DROPPED) return;
  std::vector<float> values;
  for (int i = 1; i <= NPHASES; ++i) values.push_back(PHASE(i).PT(row, PT_VALUE));
  std::vector<int> order = KVA_UTILITIES::SET_SORT(values, true);
  if (decreasing) std::reverse(order.begin(), order.end());
  std::copy(order.begin(), order.end(), ISORT.begin());
}

void UNSORT_FACETOR_LIST() {
  if (CHECK_NOPHASES()) return;
  for (int i = 1; i <= ISORT.COUNT(); ++i) ISORT(i) = i;
}

}  // namespace FACETOR_CONSOLE
