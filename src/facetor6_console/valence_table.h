// The table of cation-anion pairs of a valence run, its flags, and their report.
#pragma once

#include <string>
#include <string_view>

#include "src/kva_crystal_structures/valence.h"

namespace FACETOR_CONSOLE {

using KVA_CRYSTAL_STRUCTURES::BV_PAIR;
using KVA_CRYSTAL_STRUCTURES::NUMBER_OF_ELEMENTS;

inline constexpr int MAX_BV_PAIRS = 40;
inline constexpr int MAX_BV_MISSING = 20;

enum BV_FLAG {
  BV_LABELS_CHANGED = 1,  // scattering factor symbols changed by the program
  BV_NOT_ELEMENTS,        // atoms that are no element
  BV_NO_PARAMETERS,       // no parameters for some atoms
  BV_LABELS_BY_USER,      // scattering factor symbols changed by the user
  BV_PARAMETERS_BY_USER,  // parameters set by the user
  BV_TOO_MANY_PAIRS,
  BV_MULTIPLE_SITES,  // centre and ligand are both mixed sites
  BV_FLAG_COUNT = BV_MULTIPLE_SITES
};
extern const KVA_UTILITIES::ROW<std::string_view, BV_FLAG_COUNT> BV_FLAG_TEXTS;

struct LABEL_PAIR {
  std::string FIRST;  // 4 characters
  std::string SECOND;
};

inline KVA_UTILITIES::LIST<BV_PAIR> BV_PAIRS;       // at most MAX_BV_PAIRS
inline KVA_UTILITIES::LIST<LABEL_PAIR> BV_MISSING;  // pairs without parameters
inline KVA_UTILITIES::ROW<bool, BV_FLAG_COUNT> BV_FLAGS;
inline bool VALENCES_DONE = false;  // the blocks hold bond valences
inline KVA_UTILITIES::ROW<int, NUMBER_OF_ELEMENTS> DEFAULT_CHARGES;  // by atomic number

// Forgets the pairs, the missing ones, the flags and that valences were done.
void CLEAR_FACETOR_VALENCE();

// Default charge of every element, from the table of atomic properties.
void SET_DEFAULT_CHARGES();

// Lists the pairs with their parameters, the missing ones and the flags that stand.
void REPORT_BVS_PARAMS();

}  // namespace FACETOR_CONSOLE
