// Bond valences of all blocks: the table of cation-anion pairs, the dialogue in which it can be
// changed, and the calculation.
#include <array>
#include <cmath>  // for round

#include "console_code/console/input.h"
#include "console_code/console/output.h"
#include "console_code/console/prompts.h"
#include "console_code/console/state.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"
#include "foundations/XTAL_Bond_Valence_Tables.h"
#include "foundations/XTAL_Scattering_Chemical_Tables.h"
#include "src/facetor6_calc/calc.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_console/valence_table.h"
#include "src/facetor6_list/list.h"
#include "src/kva_crystal_structures/coordination.h"

namespace FACETOR_CALC {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

constexpr int label_length = 4;  // characters of a label in the pair table

// ---- labels ----

std::string SIGNED_CHARGE(int charge) {
  return (charge < 0 ? "-" : "+") + INTEGER_COLUMNS(std::abs(charge));
}

// Gives the atom's scattering factor symbol the default charge of its element; what is none keeps
// the symbol that it has.
void ADD_DEFAULT_CHARGE(ATOM_TYPE& atom) {
  if (!HAS_DEFAULT_CHARGE(atom)) {
    BV_FLAGS(BV_NOT_ELEMENTS) = true;
    return;
  }
  const int charge = DEFAULT_CHARGES(atom.Z);
  atom.SFACSYMB = CUT_TEXT(TRIM(atom.CHEMSYMB) + SIGNED_CHARGE(charge), label_length);
  atom.CHARGE = static_cast<float>(charge);
  BV_FLAGS(BV_LABELS_CHANGED) = true;
}

// Where a label stands in the published tables: INDEX from 0 among the anions or the cations.
struct BVS_ATOM {
  bool FOUND = false;
  bool IS_CATION = false;
  std::size_t INDEX = 0;
};

BVS_ATOM FIND_BVS_ATOM(std::string_view label) {
  for (std::size_t i = 0; i < XTAL::BVS_ANIONS.size(); ++i)
    if (BEGINS_WITH(XTAL::BVS_ANIONS[i], label)) return {true, false, i};
  for (std::size_t i = 0; i < XTAL::BVS_TABLE.size(); ++i)
    if (BEGINS_WITH(XTAL::BVS_TABLE[i].SYMB, label)) return {true, true, i};
  return {};
}

// ---- the table of pairs ----

void ADD_MISSING(const std::string& first, const std::string& second) {
  for (const LABEL_PAIR& pair : BV_MISSING)
    if (pair.FIRST == first && pair.SECOND == second) return;
  if (BV_MISSING.COUNT() < MAX_BV_MISSING) BV_MISSING.ADD({first, second});
}

std::string TABLE_LABEL(std::string_view label) {
  return CUT_TEXT(U_CASE(label), label_length);
}

// Adds the pair of two scattering factor symbols to the table, or to the missing ones.
void FIND_BVS_PAIR(std::string_view w1, std::string_view w2) {
  if (INDEXALL(w1, XTAL::NO_ELEMENT) > 0 || INDEXALL(w2, XTAL::NO_ELEMENT) > 0) {
    BV_FLAGS(BV_NOT_ELEMENTS) = true;
    return;
  }
  BVS_ATOM first = FIND_BVS_ATOM(w1);
  BVS_ATOM second = FIND_BVS_ATOM(w2);
  const bool same_kind = first.IS_CATION == second.IS_CATION;
  if (!first.IS_CATION || second.IS_CATION) {
    std::swap(w1, w2);
    std::swap(first, second);
  }
  const std::string cation = TABLE_LABEL(w1);
  const std::string anion = TABLE_LABEL(w2);
  if (same_kind || !first.FOUND || !second.FOUND) return ADD_MISSING(cation, anion);
  const XTAL::BVS_TABLE_TYPE& row = XTAL::BVS_TABLE[first.INDEX];
  const float d0 = row.D0[second.INDEX];
  if (!(d0 > 0.0f) && !(d0 < 0.0f)) return ADD_MISSING(cation, anion);
  // Every bond is seen from both ends: a pair that has its row needs no room.
  for (const BV_PAIR& pair : BV_PAIRS)
    if (pair.CATION == cation && pair.ANION == anion) return;
  if (BV_PAIRS.COUNT() == MAX_BV_PAIRS) {
    BV_FLAGS(BV_TOO_MANY_PAIRS) = true;
    return;
  }
  const auto reference = static_cast<std::size_t>(row.REF[second.INDEX]);
  BV_PAIRS.ADD(
      {cation, anion, row.B[second.INDEX], d0, std::string(XTAL::BVS_REFERENCES[reference])});
}

void ADD_PAIRS_OF_BOND(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int j) {
  const int centre = phase.BONDS.CENTRE(i, j);
  const std::string ligand_label = VALENCE_LABEL(phase.ATOM(phase.BONDS.LIGAND(i, j)));
  FIND_BVS_PAIR(VALENCE_LABEL(phase.ATOM(centre)), ligand_label);
  for (int duplicate : phase.ATOM_DUP(centre))
    if (duplicate > 0) FIND_BVS_PAIR(VALENCE_LABEL(phase.ATOM(duplicate)), ligand_label);
}

void BUILD_BVTABLE() {
  BV_PAIRS.CLEAR();
  BV_MISSING.CLEAR();
  for (int block = 1; block <= NPHASES; ++block)
    for (int i = 1; i <= PHASE(block).NATOMS; ++i) {
      ATOM_TYPE& atom = PHASE(block).ATOM(i);
      if (WITHOUT_CHARGE(atom)) ADD_DEFAULT_CHARGE(atom);
    }
  for (int block = 1; block <= NPHASES; ++block) {
    const CRYSTAL_STRUCTURE_TYPE& phase = PHASE(block);
    for (int i = 1; i <= CAPACITY(phase); ++i)
      for (int j : BONDS_PRESENT(phase, i)) ADD_PAIRS_OF_BOND(phase, i, j);
  }
}

// ---- the dialogue ----

// Gives the atoms of all blocks whose symbols begin with the pair's labels the new ones. Each atom
// is changed once, so that labels can be exchanged.
void CHANGE_LABELS_OF_ATOMS(const BV_PAIR& pair, const std::string& cation,
                            const std::string& anion) {
  for (int block = 1; block <= NPHASES; ++block)
    for (int i = 1; i <= PHASE(block).NATOMS; ++i) {
      std::string& symbol = PHASE(block).ATOM(i).SFACSYMB;
      if (BEGINS_WITH(symbol, pair.CATION))
        symbol = cation;
      else if (BEGINS_WITH(symbol, pair.ANION))
        symbol = anion;
    }
}

// Asks for two new labels of a pair until two or none are given.
void CHANGE_LABELS_OF_PAIR(BV_PAIR& pair) {
  while (true) {
    GET_INPUT("Input new element and charge labels for this atom pair (blank for no change):");
    if (CONSOLE.INSTRING_LEN == 0) return;
    std::array<std::string, 2> words;
    int count = 0;
    GETWORDS(CONSOLE.INSTRING, words, count);
    CLEAR_INPUT();
    const std::string cation = TABLE_LABEL(words[0]);
    const std::string anion = TABLE_LABEL(words[1]);
    if (!cation.empty() && !anion.empty()) {  // quotes can hold a blank word
      CHANGE_LABELS_OF_ATOMS(pair, cation, anion);
      pair.CATION = cation;
      pair.ANION = anion;
      BV_FLAGS(BV_LABELS_BY_USER) = true;
      return;
    }
    WRITE_OUT(" *****Only one scattering factor read - try again");
  }
}

// Row of the table that the list number names; 0, with a message, when the three numbers do not
// name and fill one.
int ROW_TO_CHANGE(const std::array<float, 3>& numbers, int found) {
  const float row = std::round(numbers[0]);
  if (found > 0 && !(row >= 1.0f && row <= static_cast<float>(BV_PAIRS.COUNT()))) {
    WRITE_OUT("A list number of " + REAL_AT_LEAST(row, 4, 0) + " is not valid");
    return 0;
  }
  if (found < 3 || !(numbers[2] > 0.0f)) {
    WRITE_OUT(" *****Three numbers are needed: list no, d0 and b above 0");
    return 0;
  }
  return static_cast<int>(row);
}

// Changes pairs until an empty line is given.
void CHANGE_PARAMETERS() {
  WRITE_OUT(
      "|      To change the parameters for an atom pair: type in the list number the d0 and b:");
  while (true) {
    std::array<float, 3> numbers{};
    const int found = GET_INPUT_NVALUES("  Input list no, d0, b:", numbers);
    if (CONSOLE.INSTRING_LEN == 0) return;
    const int row = ROW_TO_CHANGE(numbers, found);
    if (row == 0) continue;
    BV_PAIRS(row).D0 = numbers[1];
    BV_PAIRS(row).B = numbers[2];
    BV_PAIRS(row).SOURCE = "Set by the user";
    BV_FLAGS(BV_PARAMETERS_BY_USER) = true;
    CHANGE_LABELS_OF_PAIR(BV_PAIRS(row));
  }
}

// What the dialogue changes.
struct VALENCE_INPUT {
  decltype(BV_PAIRS) PAIRS = BV_PAIRS;
  decltype(BV_FLAGS) FLAGS = BV_FLAGS;
  std::vector<std::vector<std::string>> SYMBOLS;  // of the atoms of each block
};

VALENCE_INPUT CURRENT_INPUT() {
  VALENCE_INPUT input;
  for (int block = 1; block <= NPHASES; ++block) {
    std::vector<std::string>& symbols = input.SYMBOLS.emplace_back();
    for (int i = 1; i <= PHASE(block).NATOMS; ++i) symbols.push_back(PHASE(block).ATOM(i).SFACSYMB);
  }
  return input;
}

void PUT_BACK(const VALENCE_INPUT& input) {
  BV_PAIRS = input.PAIRS;
  BV_FLAGS = input.FLAGS;
  int block = 0;
  for (const std::vector<std::string>& symbols : input.SYMBOLS) {
    CRYSTAL_STRUCTURE_TYPE& phase = PHASE(++block);
    int i = 0;
    for (const std::string& symbol : symbols) phase.ATOM(++i).SFACSYMB = symbol;
  }
}

// ---- the calculation ----

void FLAG_MULTIPLE_SITES(const CRYSTAL_STRUCTURE_TYPE& phase) {
  for (int i = 1; i <= CAPACITY(phase); ++i)
    for (int j : BONDS_PRESENT(phase, i))
      if (phase.ATOM_DUP(phase.BONDS.CENTRE(i, j), 1) > 0 &&
          phase.ATOM_DUP(phase.BONDS.LIGAND(i, j), 1) > 0)
        BV_FLAGS(BV_MULTIPLE_SITES) = true;
}

void CALC_VALENCES_OF_ALL_BLOCKS() {
  for (int block = 1; block <= NPHASES; ++block) {
    CALC_VALENCE_ALLBONDS(PHASE(block), BV_PAIRS);
    FLAG_MULTIPLE_SITES(PHASE(block));
  }
}

bool REFERENCE_HAS_VALENCES() {
  float sum = 0.0f;
  for (int i = 1; i <= REFERENCE().NATOMS; ++i) sum += REFERENCE().POLYHEDRON(i, POLY_VALENCE_SUM);
  return sum > 0.0f;
}

}  // namespace

void RUN_FACETOR_CALC_VALENCE() {
  ANNOUNCE("Bond valence calculations");
  if (BV_PAIRS.COUNT() == 0) BUILD_BVTABLE();
  const VALENCE_INPUT before = CURRENT_INPUT();
  while (true) {
    REPORT_BVS_PARAMS();
    WRITE_OUT("|");
    if (BV_PAIRS.COUNT() == 0) {
      WARNING(
          "No scattering factors recognised, use Atom Edit to assign scattering factors to atoms");
      BV_FLAGS(BV_NO_PARAMETERS) = true;
      return;
    }
    if (GET_ANSWER_YN("     Do you want to change any of these parameters?", "N") != 'Y') break;
    CHANGE_PARAMETERS();
  }
  if (CONSOLE.DROPPED) return PUT_BACK(before);
  CALC_VALENCES_OF_ALL_BLOCKS();
  FACETOR_LIST::FACETOR_LIST_ALL_BONDVALENCE();
  VALENCES_DONE = REFERENCE_HAS_VALENCES();
}

}  // namespace FACETOR_CALC
