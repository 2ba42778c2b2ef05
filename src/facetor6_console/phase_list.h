// The phase list, the program's central store, and the commands that manage it.
#pragma once

#include <array>
#include <cstddef>  // for byte
#include <new>
#include <string_view>
#include <vector>

#include "console_code/console/completion.h"
#include "src/kva_crystal_structures/records.h"

namespace FACETOR_CONSOLE {

using KVA_CRYSTAL_STRUCTURES::CRYSTAL_STRUCTURE_TYPE;
using KVA_CRYSTAL_STRUCTURES::STRUCTURE_LIST;
using KVA_UTILITIES::LIST;

inline constexpr int START_PHASES = 8;  // room of the list at start

// The blocks, in order of reading. They stay when the program ends: its system takes the memory of
// many blocks back sooner than they can be freed one by one.
alignas(STRUCTURE_LIST) inline std::array<std::byte, sizeof(STRUCTURE_LIST)> ROOM_FOR_PHASE;
inline STRUCTURE_LIST& PHASE = *new (ROOM_FOR_PHASE.data()) STRUCTURE_LIST;
inline int NPHASES = 0;            // blocks loaded
inline int NPHASES_ALLOCATED = 0;  // length of PHASE, ISORT and IUSE
inline LIST<int> ISORT;            // ISORT(k) is the block shown at place k
inline LIST<int> IUSE;             // 1: the block is used
inline int IREFERENCE = 1;         // number of the reference block

CRYSTAL_STRUCTURE_TYPE& REFERENCE();  // the reference block

void INIT_PHASE_LIST();
void ALLOCATE_PHASE_LIST(int n);
// Room for extra blocks, whose records are left to be filled by the caller.
void EXPAND_PHASE_LIST(int extra, bool& error);

// Takes in count blocks that were read, leaving newx empty ones: the only way in, which keeps all
// records at one capacity.
void ADD_PHASE_LIST(STRUCTURE_LIST& newx, int count, bool& error);

// The commands USE, OMIT, SORT, UNSORT and CLEAR.
void USE_FACETOR_LIST();
void OMIT_FACETOR_LIST();
void SORT_FACETOR_LIST();
void UNSORT_FACETOR_LIST();
void CLEAR_FACETOR_LIST();

// The first atom of the reference block whose label begins so; 0 when there is none.
int ATOM_NAMED(std::string_view beginning);

// Labels of the reference block, for a prompt that takes one.
KVA_CONSOLE::LINE_HELP HELP_WITH_LABELS();

// Numbers of the blocks that the user chooses, each once, in increasing order.
std::vector<int> ASK_BLOCKS(std::string_view prompt);

std::vector<int> USED_BLOCKS();  // their numbers, in display order
int NUMPHASES_USED();
bool CHECK_NOPHASES();  // true, with a warning, when no block is used
bool NPHASE_MAX();      // true, with a warning, when the list is full
int NATOM_MAX();        // largest NATOMS, 0 when none
void EQUAL_ATOMS();     // warns when blocks differ in their number of atoms

// Range of the search that the geometry results of the blocks come from, angstroms.
struct BOND_LIMITS {
  float DMIN = 0.01f;
  float DMAX = 2.2f;
};
inline BOND_LIMITS LIMITS_OF_BONDS;

// Forgets all geometry results, and those of the valences.
void CLEAR_FACETOR_BONDS();

}  // namespace FACETOR_CONSOLE
