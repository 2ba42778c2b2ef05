// Every block of a CIF as a phase record.
#include <algorithm>  // for max
#include <cmath>      // for abs
#include <string>
#include <vector>

#include "cifcode/cif_code_new/atom_table.h"
#include "cifcode/cif_code_new/scanner.h"
#include "common_code/Raman_module.h"
#include "console_code/console/output.h"
#include "console_code/console/work.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_readfiles/readfiles.h"

namespace FACETOR_READFILES {

using namespace KVA_CIFNEW;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

// The lines of one block and its number.
struct BLOCK {
  int NUMBER = 0;
  int START = 0;
  int END = 0;
};

// "in block # 12 in the cif".
std::string BLOCK_WORDS(const BLOCK& block) {
  return "in block #" + INTEGER_COLUMNS(block.NUMBER, 3) + " in the cif";
}

// ---- title and cell ----

void READ_TITLE(const FILE_LINES& flines, const BLOCK& block, CRYSTAL_STRUCTURE_TYPE& phase) {
  constexpr int title_length = 80;
  const std::string& line = flines(block.START);
  phase.BLOCK_TITLE = CUT_TEXT(line.substr(line.find('_') + 1), title_length);
}

// True when the cell of the file could be taken.
bool READ_CELL(const FILE_LINES& flines, const BLOCK& block, CRYSTAL_STRUCTURE_TYPE& phase) {
  std::array<float, 6> v{};
  std::array<float, 6> s{};
  READ_CIF_CELL(flines, block.START, block.END, v, s);
  XTAL::SET_CELL_RECORD({v[0], v[1], v[2]}, {v[3], v[4], v[5]}, phase.CELL, " ", {s[0], s[1], s[2]},
                        {s[3], s[4], s[5]});
  if (XTAL::IS_SENSIBLE(phase.CELL)) return true;
  WARNING("Bad cell parameters " + BLOCK_WORDS(block));
  XTAL::SET_CELL_RECORD({1.0f, 1.0f, 1.0f}, {90.0f, 90.0f, 90.0f}, phase.CELL, " ");
  return false;
}

// Compares the volume that the file gives with that of its cell.
void CHECK_VOLUME(const FILE_LINES& flines, const BLOCK& block, CRYSTAL_STRUCTURE_TYPE& phase) {
  constexpr float most_esds = 3.0f;
  constexpr float most_relative = 0.005f;
  float volume = 0.0f;
  float std = 0.0f;
  READ_CIF_VALUE("_cell_volume", flines, block.START, block.END, volume, std);
  if (!(volume > TINY_REAL) || !(std::abs(std) > TINY_REAL)) return;
  const float from_cell = phase.CELL.CELLVOL;
  const float difference = std::abs(from_cell - volume);
  phase.CELL.STDVOL = std;
  if (!(difference / std > most_esds) && !(difference / volume > most_relative)) return;
  WRITE_OUT("*****Warning: Volume in CIF looks inconsistent with cell parameters:");
  WRITE_OUT("     Volume from cif  = " + SETNUM_STD(volume, std));
  WRITE_OUT("     Volume from cell = " + SETNUM_STD(from_cell, std));
  WRITE_OUT("     Calculated value will be used");
}

void READ_CONDITIONS(const FILE_LINES& flines, const BLOCK& block, CRYSTAL_STRUCTURE_TYPE& phase) {
  READ_CIF_TEMP(flines, block.START, block.END, phase.PT(TEMPERATURE, PT_VALUE),
                phase.PT(TEMPERATURE, PT_ESD));
  READ_CIF_PRESSURE(flines, block.START, block.END, phase.PT(PRESSURE, PT_VALUE),
                    phase.PT(PRESSURE, PT_ESD));
}

// ---- space group ----

// The group of the symbol; false when there is none or it stands for none. compact: the symbol is
// written without blanks and could not be repaired.
bool GROUP_OF_SYMBOL(const FILE_LINES& flines, const BLOCK& block, XTAL::SPACE_GROUP& group,
                     bool& compact) {
  std::string symbol;
  READ_CIF_HM(flines, block.START, block.END, symbol);
  symbol = LEFT_ADJUST(symbol);
  compact = !symbol.empty() && symbol.find(' ') == std::string::npos;
  if (compact) FIX_SPACEGROUP(symbol, compact);
  if (symbol.empty() || compact) return false;
  XTAL::SET_SPACEGROUP(symbol, group);
  return !XTAL::ERR_SYMM;
}

bool GROUP_OF_OPERATORS(const FILE_LINES& flines, const BLOCK& block, XTAL::SPACE_GROUP& group) {
  std::vector<std::string> operators;
  READ_CIF_SYMM(flines, block.START, block.END, operators);
  if (operators.empty()) return false;
  XTAL::SET_SPACEGROUP("P 1", group);
  XTAL::SET_SPACEGROUP("", group, operators, "GEN");
  return !XTAL::ERR_SYMM;
}

void WARN_OF_NO_SYMMETRY(const BLOCK& block, bool compact) {
  WARNING("No symmetry detected in CIF block #" + INTEGER_COLUMNS(block.NUMBER, 3) +
          (compact ? ", no operators and HM symbol not written with spaces, space group set to P1"
                   : ", neither operators nor HM symbol, space group set to P1"));
}

// Operators without quotes are not read. That does no harm while the symbol says the same.
void WARN_OF_BARE_OPERATORS(const FILE_LINES& flines, const BLOCK& block,
                            const XTAL::SPACE_GROUP& from_symbol) {
  std::vector<std::string> operators;
  READ_BARE_OPERATORS(flines, block.START, block.END, operators);
  if (operators.empty()) return;
  XTAL::SPACE_GROUP group;
  XTAL::SET_SPACEGROUP("", group, operators, "GEN");
  if (XTAL::ERR_SYMM || XTAL::SPGR_EQUAL(from_symbol, group)) return;
  WARNING("The operators in CIF block #" + INTEGER_COLUMNS(block.NUMBER, 3) +
          " are not read, as they are not in quotes, but they do not agree with the HM symbol");
}

// The operators win over the symbol where the two differ; a symbol alone is enough.
void READ_SPACE_GROUP(const FILE_LINES& flines, const BLOCK& block, CRYSTAL_STRUCTURE_TYPE& phase) {
  bool compact = false;
  XTAL::SPACE_GROUP from_operators;
  const bool has_symbol = GROUP_OF_SYMBOL(flines, block, phase.SPG, compact);
  const bool has_operators = GROUP_OF_OPERATORS(flines, block, from_operators);
  if (!has_symbol && !has_operators) {
    WARN_OF_NO_SYMMETRY(block, compact);
    XTAL::SET_SPACEGROUP("P 1", phase.SPG);
    return;
  }
  if (!has_operators) return WARN_OF_BARE_OPERATORS(flines, block, phase.SPG);
  if (has_symbol && XTAL::SPGR_EQUAL(phase.SPG, from_operators)) return;
  if (has_symbol)
    WARNING("HM symbol in CIF block #" + INTEGER_COLUMNS(block.NUMBER, 3) +
            ", does not agree with operators, space group set to " + from_operators.SPG_SYMB +
            " from operators");
  phase.SPG = from_operators;
}

// ---- atoms ----

// Messages that speak of anisotropic displacements are not for the user: the atoms stand.
void REPORT_ATOMS(bool raised, const std::string& message, const BLOCK& block) {
  if (raised && INDEXALL(message, "aniso") == 0) WARNING(TRIM(message) + " " + BLOCK_WORDS(block));
}

// The loop of displacement parameters is taken for that of the sites when it comes first.
void WARN_OF_LOOP_ORDER(const FILE_LINES& flines, const BLOCK& block) {
  const int first = FINDLINE(flines, "_atom_site_", block.START, block.END);
  if (first == 0 || !BEGINS_WITH(flines(first), "_atom_site_aniso_")) return;
  if (FINDLINE(flines, "_atom_site_fract_", first, block.END) == 0) return;
  WARNING("The loop of displacement parameters stands before that of the sites " +
          BLOCK_WORDS(block) + ": the atoms are not read rightly");
}

void READ_ATOMS(const FILE_LINES& flines, const BLOCK& block, CRYSTAL_STRUCTURE_TYPE& phase) {
  LIST<ATOM_TYPE> atoms;
  int natoms = 0;
  READ_CIF_ATOMARRAY(flines, block.START, block.END, atoms, natoms);
  REPORT_ATOMS(WARN_KVACIF, WARN_KVACIF_MESS, block);
  REPORT_ATOMS(ERR_KVACIF, ERR_KVACIF_MESS, block);
  WARN_OF_LOOP_ORDER(flines, block);
  STORE_ATOMS(atoms, natoms, phase);
  for (int i = 1; i <= natoms; ++i)
    if (phase.ATOM(i).OCC < TINY_REAL) phase.ATOM(i).OCC = 1.0f;
}

void READ_BLOCK(const FILE_LINES& flines, const BLOCK& block, CRYSTAL_STRUCTURE_TYPE& phase) {
  READ_TITLE(flines, block, phase);
  if (READ_CELL(flines, block, phase)) CHECK_VOLUME(flines, block, phase);
  READ_CONDITIONS(flines, block, phase);
  READ_SPACE_GROUP(flines, block, phase);
  READ_ATOMS(flines, block, phase);
  RAMAN::READ_MODE_LIST(flines, block.START, block.END, phase.MODE_LIST);
}

}  // namespace

void STORE_ATOMS(const LIST<ATOM_TYPE>& atoms, int natoms, CRYSTAL_STRUCTURE_TYPE& phase) {
  if (natoms > CAPACITY(phase)) EXPAND_NATOMS(phase, natoms);
  phase.NATOMS = natoms;
  for (int i = 1; i <= natoms; ++i) {
    phase.ATOM(i) = atoms(i);
    phase.ATOM_USE(i) = ATOM_USED;
  }
}

void READ_CIF_TO_LIST(FILE_LINES& flines, STRUCTURE_LIST& newx, int& nblocks) {
  constexpr int many_blocks = 10;
  constexpr int many_lines = 25000;
  WORK work("Reading structures: block", 0);
  CLEAN_CIF(flines);
  LIST<int> starts;
  nblocks = 0;
  FIND_ALL_BLOCKS_CIF(flines, starts, nblocks);
  if (nblocks > many_blocks || flines.COUNT() > many_lines)
    WRITE_OUT("|*****This is a large file, please be patient while it is read in*****|");
  ALLOCATE_CRYSTAL_STRUCTURE_LIST(newx, nblocks);
  if (ERR_KVASTRUCTURES) return WARNING(ERR_KVASTRUCTURES_MESS + " called from expand_phase_list");
  work.TOTAL = nblocks;
  for (int number = 1; number <= nblocks; ++number) {
    if (!GO_ON(work, number)) return newx.CLEAR();
    const int end = number < nblocks ? starts(number + 1) - 1 : flines.COUNT();
    READ_BLOCK(flines, {number, starts(number), end}, newx(number));
  }
}

}  // namespace FACETOR_READFILES
