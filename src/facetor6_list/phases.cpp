// Line start and head of all tables, summaries of blocks, and the table of cells.
#include "console_code/console/output.h"
#include "console_code/kva_utilities/columns.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/list_parts.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

// ---- summaries ----

void FACETOR_LIST_PHASE() {
  WRITE_OUT(FACETOR_HEADSTART());
  for (int place : LISTED_PLACES()) WRITE_OUT(FACETOR_LINESTART(place));
}

void FACETOR_LIST_PHASE_USED() {
  const bool saved = RUN.LIST_ALL_BLOCKS;
  RUN.LIST_ALL_BLOCKS = false;
  FACETOR_LIST_PHASE();
  RUN.LIST_ALL_BLOCKS = saved;
}

namespace {

// Place in the list and name, the start of both summaries.
std::string SUMMARY_START(const STRUCTURE_LIST& phases, int place) {
  return INTEGER_COLUMNS(place, 3) + ": " + TEXT_COLUMNS(phases(place).BLOCK_TITLE, 20);
}

bool NOTHING_TO_LIST(int count) {
  WRITE_OUT_BLANK(1);
  if (count > 0) return false;
  WRITE_OUT("      There are no crystal structures to list");
  return true;
}

}  // namespace

void LIST_PHASE(const STRUCTURE_LIST& phases, int count) {
  if (NOTHING_TO_LIST(count)) return;
  WRITE_OUT("       BLOCKNAME              T       P");
  for (int place = 1; place <= count; ++place)
    WRITE_OUT(SUMMARY_START(phases, place) + " " +
              REAL_COLUMNS(phases(place).PT(TEMPERATURE, PT_VALUE), 6, 1) + " " +
              REAL_COLUMNS(phases(place).PT(PRESSURE, PT_VALUE), 7, 3));
}

void LIST_PHASE_ESD(const STRUCTURE_LIST& phases, int first, int last) {
  if (NOTHING_TO_LIST(last - first + 1)) return;
  WRITE_OUT("       BLOCKNAME              P    esdP     T    esdT");
  for (int place = first; place <= last; ++place)
    WRITE_OUT(SUMMARY_START(phases, place) +
              REAL_COLUMNS(phases(place).PT(PRESSURE, PT_VALUE), 7, 3) +
              REAL_COLUMNS(phases(place).PT(PRESSURE, PT_ESD), 7, 3) + " " +
              REAL_COLUMNS(phases(place).PT(TEMPERATURE, PT_VALUE), 6, 1) +
              REAL_COLUMNS(phases(place).PT(TEMPERATURE, PT_ESD), 6, 1));
}

// ---- cells ----

namespace {

constexpr int cell_start = 44;  // columns before the cell text

std::string PLAIN_CELL(const XTAL::CRYSTAL_CELL& cell) {
  std::string text;
  for (float length : cell.CELL) text += REAL_COLUMNS(length, 9, 4);
  for (float angle : cell.ANG) text += REAL_COLUMNS(angle, 8, 3);
  return text + REAL_COLUMNS(cell.CELLVOL, 9, 3);
}

void PUT_CELL_WITH_ESDS(const XTAL::CRYSTAL_CELL& cell, std::string& line) {
  constexpr int first = cell_start + 3;
  constexpr int step = 13;
  for (int k = 0; k < 3; ++k) {
    const auto axis = static_cast<std::size_t>(k);
    PUT_FIELD(line, first + step * k, step, SETNUM_STD(cell.CELL[axis], cell.CELL_STD[axis]));
    PUT_FIELD(line, first + step * (k + 3), step, SETNUM_STD(cell.ANG[axis], cell.ANG_STD[axis]));
  }
  PUT_AT(line, first + step * 6, SETNUM_STD(cell.CELLVOL, cell.STDVOL));
}

}  // namespace

void FACETOR_LIST_CELLS(std::string_view option) {
  const bool esd = WANTS_ESDS(option);
  WRITE_OUT(FACETOR_HEADSTART() +
            (esd ? "  a            b            c            alpha        beta         gamma       "
                   " V"
                 : "  a        b        c       alpha   beta    gamma     V"));
  for (int place : LISTED_PLACES()) {
    const XTAL::CRYSTAL_CELL& cell = PHASE(ISORT(place)).CELL;
    std::string line = FACETOR_LINESTART(place, esd);
    if (esd)
      PUT_CELL_WITH_ESDS(cell, line);
    else
      line += PLAIN_CELL(cell);
    WRITE_OUT(line);
  }
}

}  // namespace FACETOR_LIST
