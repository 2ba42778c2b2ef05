// Every block of a CIF as a phase record.
#include <algorithm>  // for max
#include <cmath>      // for abs
#include <optional>
#include <string>
#include <vector>

#include "cifcode/cif_code_new/atom_table.h"
#include "cifcode/cif_code_new/scanner.h"
#include "common_code/Raman_module.h"
#include "console_code/console/output.h"
#include "console_code/console/work.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/files.h"
#include "console_code/kva_utilities/names.h"
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
struct CIF_BLOCK {
  int NUMBER = 0;
  int START = 0;
  int END = 0;
};

// "in block # 12 in the cif".
std::string BLOCK_WORDS(const CIF_BLOCK& block) {
  return "in block #" + INTEGER_AT_LEAST(block.NUMBER, 3) + " in the cif";
}

// ---- title and cell ----

void READ_TITLE(const FILE_LINES& flines, const CIF_BLOCK& block, CRYSTAL_STRUCTURE_TYPE& phase) {
  const std::string& line = flines(block.START);
  phase.BLOCK_TITLE = CUT_TEXT(line.substr(line.find('_') + 1), TITLE_LENGTH);
}

// True when the cell of the file could be taken.
bool READ_CELL(const FILE_LINES& flines, const CIF_BLOCK& block, CRYSTAL_STRUCTURE_TYPE& phase) {
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

void READ_VOLUME(const FILE_LINES& flines, const CIF_BLOCK& block, CRYSTAL_STRUCTURE_TYPE& phase) {
  float volume = 0.0f;
  float std = 0.0f;
  READ_CIF_VALUE("_cell_volume", flines, block.START, block.END, volume, std);
  CHECK_VOLUME(volume, std, phase);
}

void READ_CONDITIONS(const FILE_LINES& flines, const CIF_BLOCK& block,
                     CRYSTAL_STRUCTURE_TYPE& phase) {
  READ_CIF_TEMP(flines, block.START, block.END, phase.PT(TEMPERATURE, PT_VALUE),
                phase.PT(TEMPERATURE, PT_ESD));
  READ_CIF_PRESSURE(flines, block.START, block.END, phase.PT(PRESSURE, PT_VALUE),
                    phase.PT(PRESSURE, PT_ESD));
}

// ---- space group ----

// All that a block says of its symmetry.
struct SYMMETRY_TEXTS {
  std::string SYMBOL;
  bool COMPACT = false;                // the symbol has no blanks and could not be repaired
  std::vector<std::string> OPERATORS;  // those in quotes
  std::vector<std::string> BARE;       // those without, when none is in quotes

  bool operator==(const SYMMETRY_TEXTS&) const = default;
};

SYMMETRY_TEXTS READ_SYMMETRY_TEXTS(const FILE_LINES& flines, const CIF_BLOCK& block) {
  SYMMETRY_TEXTS texts;
  READ_CIF_HM(flines, block.START, block.END, texts.SYMBOL);
  texts.SYMBOL = LEFT_ADJUST(texts.SYMBOL);
  texts.COMPACT = !texts.SYMBOL.empty() && texts.SYMBOL.find(' ') == std::string::npos;
  if (texts.COMPACT) FIX_SPACEGROUP(texts.SYMBOL, texts.COMPACT);
  READ_CIF_SYMM(flines, block.START, block.END, texts.OPERATORS);
  if (texts.OPERATORS.empty()) READ_BARE_OPERATORS(flines, block.START, block.END, texts.BARE);
  return texts;
}

// The group that the texts stand for, and what is wrong with them.
enum class SYMMETRY_FAULT { NONE, ABSENT, OPERATORS_DISAGREE, BARE_OPERATORS_DISAGREE };
struct SYMMETRY {
  SYMMETRY_TEXTS TEXTS;
  XTAL::SPACE_GROUP GROUP;
  SYMMETRY_FAULT FAULT = SYMMETRY_FAULT::NONE;
};

// The group of the symbol; false when there is none or it stands for none.
bool GROUP_OF_SYMBOL(const SYMMETRY_TEXTS& texts, XTAL::SPACE_GROUP& group) {
  if (texts.SYMBOL.empty() || texts.COMPACT) return false;
  XTAL::SET_SPACEGROUP(texts.SYMBOL, group);
  return !XTAL::ERR_SYMM;
}

bool GROUP_OF_OPERATORS(const std::vector<std::string>& operators, XTAL::SPACE_GROUP& group) {
  if (operators.empty()) return false;
  XTAL::SET_SPACEGROUP("", group, operators, "GEN");
  return !XTAL::ERR_SYMM;
}

// The operators win over the symbol where the two differ; a symbol alone is enough. Operators
// without quotes do not count, which does no harm while the symbol says the same.
SYMMETRY SYMMETRY_OF(const SYMMETRY_TEXTS& texts) {
  SYMMETRY symmetry{texts, {}, SYMMETRY_FAULT::NONE};
  XTAL::SPACE_GROUP from_operators;
  const bool has_symbol = GROUP_OF_SYMBOL(texts, symmetry.GROUP);
  const bool has_operators = GROUP_OF_OPERATORS(texts.OPERATORS, from_operators);
  if (!has_symbol && !has_operators) {
    XTAL::SET_SPACEGROUP("P 1", symmetry.GROUP);
    symmetry.FAULT = SYMMETRY_FAULT::ABSENT;
  } else if (!has_operators) {
    if (GROUP_OF_OPERATORS(texts.BARE, from_operators) &&
        !XTAL::SPGR_EQUAL(symmetry.GROUP, from_operators))
      symmetry.FAULT = SYMMETRY_FAULT::BARE_OPERATORS_DISAGREE;
  } else if (!has_symbol) {
    symmetry.GROUP = from_operators;
  } else if (!XTAL::SPGR_EQUAL(symmetry.GROUP, from_operators)) {
    symmetry.GROUP = from_operators;
    symmetry.FAULT = SYMMETRY_FAULT::OPERATORS_DISAGREE;
  }
  return symmetry;
}

void REPORT_SYMMETRY_FAULT(const SYMMETRY& symmetry, const CIF_BLOCK& block) {
  const std::string number = INTEGER_AT_LEAST(block.NUMBER, 3);
  switch (symmetry.FAULT) {
    case SYMMETRY_FAULT::NONE:
      return;
    case SYMMETRY_FAULT::ABSENT:
      return WARNING("No symmetry detected in CIF block #" + number +
                     (symmetry.TEXTS.COMPACT
                          ? ", no operators and HM symbol not written with spaces, space group set "
                            "to P1"
                          : ", neither operators nor HM symbol, space group set to P1"));
    case SYMMETRY_FAULT::OPERATORS_DISAGREE:
      return WARNING("HM symbol in CIF block #" + number +
                     ", does not agree with operators, space group set to " +
                     symmetry.GROUP.SPG_SYMB + " from operators");
    case SYMMETRY_FAULT::BARE_OPERATORS_DISAGREE:
      return WARNING("The operators in CIF block #" + number +
                     " are not read, as they are not in quotes, but they do not agree with the HM "
                     "symbol: READ full reads them");
  }
}

// The blocks of a series mostly say the same, so that the group of the last block is kept for the
// next.
using LAST_SYMMETRY = std::optional<SYMMETRY>;

void READ_SPACE_GROUP(const FILE_LINES& flines, const CIF_BLOCK& block, LAST_SYMMETRY& last,
                      CRYSTAL_STRUCTURE_TYPE& phase) {
  const SYMMETRY_TEXTS texts = READ_SYMMETRY_TEXTS(flines, block);
  if (!last || last->TEXTS != texts) last = SYMMETRY_OF(texts);
  REPORT_SYMMETRY_FAULT(*last, block);
  phase.SPG = last->GROUP;
}

// ---- atoms ----

// Messages that speak of anisotropic displacements are not for the user: the atoms stand.
void REPORT_ATOM_FAULT(const CIF_BLOCK& block) {
  if (ERR_KVACIF && INDEXALL(ERR_KVACIF_MESS, "aniso") == 0)
    WARNING(TRIM(ERR_KVACIF_MESS) + " " + BLOCK_WORDS(block));
}

// The loop of displacement parameters is taken for that of the sites when it comes first.
void WARN_OF_LOOP_ORDER(const FILE_LINES& flines, const CIF_BLOCK& block) {
  const int first = FINDLINE(flines, "_atom_site_", block.START, block.END);
  if (first == 0 || !BEGINS_WITH(flines(first), "_atom_site_aniso_")) return;
  if (FINDLINE(flines, "_atom_site_fract_", first, block.END) == 0) return;
  WARNING("The loop of displacement parameters stands before that of the sites " +
          BLOCK_WORDS(block) + ": the atoms are not read rightly, READ full reads them");
}

void READ_ATOMS(const FILE_LINES& flines, const CIF_BLOCK& block, CRYSTAL_STRUCTURE_TYPE& phase) {
  LIST<ATOM_TYPE> atoms;
  int natoms = 0;
  READ_CIF_ATOMARRAY(flines, block.START, block.END, atoms, natoms);
  REPORT_ATOM_FAULT(block);
  WARN_OF_LOOP_ORDER(flines, block);
  STORE_ATOMS(atoms, natoms, phase);
  for (int i = 1; i <= natoms; ++i)
    if (phase.ATOM(i).OCC < TINY_REAL) phase.ATOM(i).OCC = 1.0f;
}

void READ_BLOCK(const FILE_LINES& flines, const CIF_BLOCK& block, LAST_SYMMETRY& last,
                CRYSTAL_STRUCTURE_TYPE& phase) {
  READ_TITLE(flines, block, phase);
  if (READ_CELL(flines, block, phase)) READ_VOLUME(flines, block, phase);
  READ_CONDITIONS(flines, block, phase);
  READ_SPACE_GROUP(flines, block, last, phase);
  READ_ATOMS(flines, block, phase);
  RAMAN::READ_MODE_LIST(flines, block.START, block.END, phase.MODE_LIST);
}

}  // namespace

void NAME_UNTITLED(std::string_view file_name, STRUCTURE_LIST& newx) {
  NAMES_TAKEN taken;
  for (const CRYSTAL_STRUCTURE_TYPE& phase : newx)
    if (LENTRIM(phase.BLOCK_TITLE) > 0) UNIQUE_NAME(phase.BLOCK_TITLE, taken, TITLE_LENGTH);
  const std::string without_extension = FILENAME(file_name, "NOEXT");
  const std::string name = without_extension.empty() ? FILENAME(file_name) : without_extension;
  for (CRYSTAL_STRUCTURE_TYPE& phase : newx)
    if (LENTRIM(phase.BLOCK_TITLE) == 0)
      phase.BLOCK_TITLE = UNIQUE_NAME(CUT_TEXT(name, TITLE_LENGTH), taken, TITLE_LENGTH);
}

void CHECK_VOLUME(float volume, float std, CRYSTAL_STRUCTURE_TYPE& phase) {
  constexpr float most_esds = 3.0f;
  constexpr float most_relative = 0.005f;
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

void STORE_ATOMS(const LIST<ATOM_TYPE>& atoms, int natoms, CRYSTAL_STRUCTURE_TYPE& phase) {
  if (natoms > CAPACITY(phase)) EXPAND_NATOMS(phase, natoms);
  phase.NATOMS = natoms;
  for (int i = 1; i <= natoms; ++i) {
    phase.ATOM(i) = atoms(i);
    phase.ATOM_USE(i) = ATOM_USED;
  }
}

std::vector<bool> TEMPERATURES_GIVEN(std::string_view bytes) {
  std::vector<bool> given;
  FILE_LINES flines;
  for (std::string_view block : BLOCKS_OF_CIF(bytes)) {
    float t = 0.0f;
    float sigt = 0.0f;
    CLEAN_LINES_OF(block, flines);
    given.push_back(READ_CIF_TEMP(flines, 1, flines.COUNT(), t, sigt));
  }
  return given;
}

void READ_CIF_TO_LIST(std::string_view bytes, STRUCTURE_LIST& newx, int& nblocks) {
  constexpr int many_blocks = 10;
  constexpr int many_lines = 25000;
  WORK work("Reading structures: block", 0);
  const std::vector<std::string_view> blocks = BLOCKS_OF_CIF(bytes);
  nblocks = static_cast<int>(blocks.size());
  if (nblocks > many_blocks || COUNT_LINES(bytes) > many_lines)
    WRITE_OUT("|*****This is a large file, please be patient while it is read in*****|");
  ALLOCATE_CRYSTAL_STRUCTURE_LIST(newx, nblocks);
  if (ERR_KVASTRUCTURES) return WARNING(ERR_KVASTRUCTURES_MESS + " called from expand_phase_list");
  work.TOTAL = nblocks;
  LAST_SYMMETRY last;
  FILE_LINES flines;  // of one block: those of a long file would fill the memory
  for (int number = 1; number <= nblocks; ++number) {
    if (!GO_ON(work, number)) return newx.CLEAR();
    CLEAN_LINES_OF(blocks[static_cast<std::size_t>(number - 1)], flines);
    READ_BLOCK(flines, {number, 1, flines.COUNT()}, last, newx(number));
  }
}

}  // namespace FACETOR_READFILES
