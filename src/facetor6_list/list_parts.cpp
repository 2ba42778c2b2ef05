// The columns that the tables share.
#include "src/facetor6_list/list_parts.h"

#include <algorithm>  // for min

#include "cifcode/cif_code_new/writer.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

constexpr int head_length = 45;  // of the head's start
constexpr int plain_step = 8;    // columns from value to value
constexpr int esd_step = 11;

int STEP(bool esd) {
  return esd ? esd_step : plain_step;
}

}  // namespace

// ---- which blocks and atoms ----

bool BLOCK_IS_LISTED(int block) {
  return RUN.LIST_ALL_BLOCKS || IUSE(block) != 0;
}

std::vector<int> LISTED_PLACES(bool all) {
  std::vector<int> places;
  for (int place = 1; place <= NPHASES; ++place)
    if (all || IUSE(ISORT(place)) != 0) places.push_back(place);
  return places;
}

std::vector<int> PART_OF(const std::vector<int>& list, std::size_t first, std::size_t length) {
  const std::size_t last = std::min(first + length, list.size());
  return {list.begin() + static_cast<std::ptrdiff_t>(first),
          list.begin() + static_cast<std::ptrdiff_t>(last)};
}

bool WANTS_ESDS(std::string_view option) {
  return INDEXALL(option, "esd") > 0;
}

std::vector<int> USED_ATOMS() {
  std::vector<int> atoms;
  for (int i = 1; i <= REFERENCE().NATOMS; ++i)
    if (REFERENCE().ATOM_USE(i) == ATOM_USED) atoms.push_back(i);
  return atoms;
}

std::string FIRST_CHARACTERS(std::string_view text, int n) {
  return TRIM(TEXT_COLUMNS(text, n));
}

// ---- columns ----

REPORT_COLUMN VALUE_COLUMN(int m, bool esd) {
  REPORT_COLUMN column;
  column.AT = (esd ? head_length + 1 : head_length) + STEP(esd) * (m - 1);
  column.WIDTH = STEP(esd);
  column.HEAD_AT = LABEL_COLUMN(m, esd);
  return column;
}

int LABEL_COLUMN(int m, bool esd) {
  return head_length + 2 + STEP(esd) * (m - 1);
}

int END_COLUMN(int q, bool esd) {
  const int first = esd ? head_length + 1 : head_length + 2;
  return first + STEP(esd) * q;
}

std::string TABLE_TITLE(std::string_view words, int i) {
  return std::string(words) + REFERENCE().ATOM(i).LAB + "    (NAME IN REFERENCE BLOCK " +
         REFERENCE().BLOCK_TITLE + ")";
}

REPORT_ROW START_CENTRE_ROW(int place, int i, std::size_t cells) {
  REPORT_ROW row;
  row.HEAD = HEAD_OF_PLACE(place);
  row.CELLS.reserve(cells);
  if (PHASE(row.HEAD.BLOCK).NBONDS(i) < 0)
    row.SENTENCE = "  No equivalent central atom in this structure";
  return row;
}

// ---- ligands ----

std::string LIGAND_LABEL(int i, int m) {
  const CRYSTAL_STRUCTURE_TYPE& reference = REFERENCE();
  const int ligand = reference.BONDS.LIGAND(i, m);
  return ligand > 0 ? reference.ATOM(ligand).LAB : "";
}

std::string LIGAND_CODE(int i, int m) {
  const CRYSTAL_STRUCTURE_TYPE& reference = REFERENCE();
  return KVA_CIFNEW::WRITE_SYMCODE(reference.BONDS(i, m, BOND_SYMCODE));
}

}  // namespace FACETOR_LIST
