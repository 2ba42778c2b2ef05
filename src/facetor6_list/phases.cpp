// Summaries of blocks, and the table of cells.
#include <array>
#include <span>

#include "console_code/console/output.h"
#include "console_code/console/tables.h"
#include "console_code/kva_utilities/columns.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/atom_reports.h"
#include "src/facetor6_list/list_parts.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

// ---- summaries ----

namespace {

void WRITE_SUMMARY(const std::vector<int>& places) {
  REPORT report;
  report.IS_TABLE = true;
  for (int place : places) report.ROWS.push_back({HEAD_OF_PLACE(place), {}, ""});
  WRITE_REPORT(report);
}

}  // namespace

void FACETOR_LIST_PHASE() {
  WRITE_SUMMARY(LISTED_PLACES());
}

void FACETOR_LIST_PHASE_USED() {
  WRITE_SUMMARY(LISTED_PLACES(false));
}

// ---- lists of phases that stand in no display order ----

namespace {

bool NOTHING_TO_LIST(int count) {
  WRITE_OUT_BLANK(1);
  if (count > 0) return false;
  WRITE_OUT("      There are no crystal structures to list");
  return true;
}

// A value behind the name of a block: where it stands, its head, and which item of PT it is.
struct CONDITION_COLUMN {
  std::string_view HEAD;
  int HEAD_AT;
  int AT;
  int WIDTH;
  int DECIMALS;
  PT_ROW ROW;
  PT_COLUMN ITEM;
};
constexpr std::array<CONDITION_COLUMN, 2> plain_conditions{
    {{"T", 31, 26, 7, 1, TEMPERATURE, PT_VALUE}, {"P", 39, 33, 8, 3, PRESSURE, PT_VALUE}}};
constexpr std::array<CONDITION_COLUMN, 4> esd_conditions{
    {{"P", 31, 26, 7, 3, PRESSURE, PT_VALUE},
     {"esdP", 36, 33, 7, 3, PRESSURE, PT_ESD},
     {"T", 45, 40, 7, 1, TEMPERATURE, PT_VALUE},
     {"esdT", 50, 47, 6, 1, TEMPERATURE, PT_ESD}}};

enum SUMMARY_COLUMN { SUMMARY_NUMBER, SUMMARY_TITLE, SUMMARY_CONDITIONS };

FIELD_LINE SUMMARY_HEAD(std::span<const CONDITION_COLUMN> columns) {
  FIELD_LINE line{{SUMMARY_TITLE, 8, "BLOCKNAME"}};
  int number = SUMMARY_CONDITIONS;
  for (const CONDITION_COLUMN& column : columns)
    line.push_back({number++, column.HEAD_AT, std::string(column.HEAD)});
  return line;
}

FIELD_LINE SUMMARY_ROW(const CRYSTAL_STRUCTURE_TYPE& phase, int place,
                       std::span<const CONDITION_COLUMN> columns) {
  constexpr int title_length = 20;
  FIELD_LINE line{{SUMMARY_NUMBER, 1, INTEGER_COLUMNS(place) + ":", 4, true},
                  {SUMMARY_TITLE, 5, " " + FIRST_CHARACTERS(phase.BLOCK_TITLE, title_length),
                   title_length + 1}};
  int number = SUMMARY_CONDITIONS;
  for (const CONDITION_COLUMN& column : columns) {
    REPORT_COLUMN shown;
    shown.DECIMALS = column.DECIMALS;
    shown.AT = column.AT;
    shown.WIDTH = column.WIDTH;
    line.push_back(
        CELL_FIELD(number++, shown, REAL_CELL(phase.PT(column.ROW, column.ITEM)), false));
  }
  return line;
}

void WRITE_SUMMARY(const STRUCTURE_LIST& phases, int first, int last,
                   std::span<const CONDITION_COLUMN> columns) {
  if (NOTHING_TO_LIST(last - first + 1)) return;
  std::vector<FIELD_LINE> table{SUMMARY_HEAD(columns)};
  for (int place = first; place <= last; ++place)
    table.push_back(SUMMARY_ROW(phases(place), place, columns));
  WRITE_TABLE(std::move(table), SUMMARY_CONDITIONS);
}

}  // namespace

void LIST_PHASE(const STRUCTURE_LIST& phases, int count) {
  WRITE_SUMMARY(phases, 1, count, plain_conditions);
}

void LIST_PHASE_ESD(const STRUCTURE_LIST& phases, int first, int last) {
  WRITE_SUMMARY(phases, first, last, esd_conditions);
}

// ---- cells ----

namespace {

struct CELL_COLUMN {
  std::string_view NAME;
  std::string_view UNIT;
  int HEAD_AT;
  int WIDTH;
  int DECIMALS;
  int ESD_HEAD_AT;
};
constexpr std::array<CELL_COLUMN, 7> cell_columns{{{"a", "A", 48, 9, 4, 48},
                                                   {"b", "A", 57, 9, 4, 61},
                                                   {"c", "A", 66, 9, 4, 74},
                                                   {"alpha", "deg", 74, 8, 3, 87},
                                                   {"beta", "deg", 82, 8, 3, 100},
                                                   {"gamma", "deg", 90, 8, 3, 113},
                                                   {"V", "A^3", 100, 9, 3, 126}}};

void ADD_CELL_COLUMNS(REPORT& report) {
  constexpr int esd_step = 13;
  const bool esd = report.WITH_ESDS;
  int at = esd ? 47 : 45;
  for (const CELL_COLUMN& shown : cell_columns) {
    REPORT_COLUMN column;
    column.NAME = shown.NAME;
    column.UNIT = shown.UNIT;
    column.HAS_ESD = true;
    column.DECIMALS = shown.DECIMALS;
    column.AT = at;
    column.WIDTH = esd ? esd_step : shown.WIDTH;
    column.HEAD = shown.NAME;
    column.HEAD_AT = esd ? shown.ESD_HEAD_AT : shown.HEAD_AT;
    at += column.WIDTH;
    report.COLUMNS.push_back(column);
  }
  if (esd) report.COLUMNS.back().WIDTH = any_width;
}

REPORT_ROW CELL_ROW(int place) {
  REPORT_ROW row;
  row.HEAD = HEAD_OF_PLACE(place);
  const XTAL::CRYSTAL_CELL& cell = PHASE(row.HEAD.BLOCK).CELL;
  for (std::size_t k = 0; k < 3; ++k)
    row.CELLS.push_back(REAL_CELL(cell.CELL[k], cell.CELL_STD[k]));
  for (std::size_t k = 0; k < 3; ++k) row.CELLS.push_back(REAL_CELL(cell.ANG[k], cell.ANG_STD[k]));
  row.CELLS.push_back(REAL_CELL(cell.CELLVOL, cell.STDVOL));
  return row;
}

}  // namespace

REPORT CELL_REPORT(bool with_esds, const std::vector<int>& places) {
  REPORT report;
  report.QUANTITY = "cells";
  report.OF = FEATURES::AXES;
  report.WITH_ESDS = with_esds;
  report.IS_TABLE = true;
  ADD_CELL_COLUMNS(report);
  for (int place : places) report.ROWS.push_back(CELL_ROW(place));
  return report;
}

void FACETOR_LIST_CELLS(std::string_view option) {
  REPORT report = CELL_REPORT(WANTS_ESDS(option), LISTED_PLACES());
  WRITE_REPORT(report);
}

}  // namespace FACETOR_LIST
