// Cells, row starts and the printing of reports.
#include "src/facetor6_list/report.h"

#include <algorithm>  // for max
#include <cmath>      // for isfinite

#include "console_code/console/output.h"
#include "console_code/console/tables.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/layout.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/list.h"
#include "src/facetor6_list/list_parts.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

// ---- cells ----

REPORT_CELL REAL_CELL(float value, float std) {
  if (!std::isfinite(value)) return NO_VALUE_CELL();
  const bool has_esd = std::isfinite(std) && std > 0.0f;
  return {CELL_KIND::REAL, value, has_esd ? std : 0.0f, 0, ""};
}

REPORT_CELL WHOLE_CELL(int count) {
  return {CELL_KIND::WHOLE, static_cast<float>(count), 0.0f, count, ""};
}

REPORT_CELL TEXT_CELL(std::string_view text) {
  return {CELL_KIND::TEXT, 0.0f, 0.0f, 0, std::string(text)};
}

REPORT_CELL NO_VALUE_CELL() {
  return {CELL_KIND::NO_VALUE, 0.0f, 0.0f, 0, ""};
}

REPORT_CELL NOT_GIVEN_CELL() {
  return {CELL_KIND::NOT_GIVEN, 0.0f, 0.0f, 0, ""};
}

std::string CELL_TEXT(const REPORT_CELL& cell, const REPORT_COLUMN& column, bool with_esds) {
  switch (cell.KIND) {
    case CELL_KIND::NOTHING:
      return "";
    case CELL_KIND::NO_VALUE:
      return "No value";
    case CELL_KIND::NOT_GIVEN:
    case CELL_KIND::REAL:
      return with_esds && column.HAS_ESD ? SETNUM_STD(cell.VALUE, cell.STD)
                                         : REAL_AT_LEAST(cell.VALUE, 0, column.DECIMALS);
    case CELL_KIND::WHOLE:
      return INTEGER_COLUMNS(cell.COUNT);
    case CELL_KIND::TEXT:
      return cell.TEXT;
  }
  return "";
}

// ---- row starts ----

ROW_HEAD HEAD_OF_PLACE(int place) {
  const int block = ISORT(place);
  ROW_HEAD head = HEAD_OF_PHASE(PHASE(block), block);
  head.PLACE = place;
  head.USED = IUSE(block) != 0;
  return head;
}

ROW_HEAD HEAD_OF_PHASE(const CRYSTAL_STRUCTURE_TYPE& phase, int number) {
  ROW_HEAD head;
  head.BLOCK = number;
  head.TITLE = phase.BLOCK_TITLE;
  head.T = phase.PT(TEMPERATURE, PT_VALUE);
  head.T_STD = phase.PT(TEMPERATURE, PT_ESD);
  head.P = phase.PT(PRESSURE, PT_VALUE);
  head.P_STD = phase.PT(PRESSURE, PT_ESD);
  return head;
}

namespace {

const REPORT_COLUMN plain_t{.HAS_ESD = true, .DECIMALS = 1, .AT = 21, .WIDTH = 6};
const REPORT_COLUMN plain_p{.HAS_ESD = true, .DECIMALS = 3, .AT = 27, .WIDTH = 8};
const REPORT_COLUMN esd_t{.HAS_ESD = true, .AT = 21, .WIDTH = 10};
const REPORT_COLUMN esd_p{.HAS_ESD = true, .AT = 31, .WIDTH = 12};
constexpr int use_column = 44;

// Pressures up to it are shown as that of the atmosphere.
bool IS_AMBIENT(float pressure) {
  constexpr float highest = 0.00011f;  // GPa
  return pressure >= 0.0f && pressure <= highest;
}

}  // namespace

FIELD CELL_FIELD(int number, const REPORT_COLUMN& column, const REPORT_CELL& cell, bool with_esds) {
  const bool from_left = cell.KIND == CELL_KIND::TEXT || (with_esds && column.HAS_ESD);
  return {number,       column.AT,  CELL_TEXT(cell, column, with_esds),
          column.WIDTH, !from_left, column.TOUCHES};
}

FIELD_LINE START_FIELDS(const ROW_HEAD& head, bool esd, std::size_t more) {
  constexpr int title_length = 14;
  FIELD_LINE line;
  line.reserve(START_COLUMNS + more);
  line.push_back({START_NUMBER, 1, INTEGER_COLUMNS(head.BLOCK) + ":", 4, true});
  line.push_back(
      {START_TITLE, 5, " " + TEXT_COLUMNS(head.TITLE, title_length) + ":", title_length + 2});
  line.push_back(CELL_FIELD(START_T, esd ? esd_t : plain_t, REAL_CELL(head.T, head.T_STD), esd));
  if (esd && IS_AMBIENT(head.P))
    line.push_back({START_P, esd_p.AT, " 0.0001", esd_p.WIDTH});
  else
    line.push_back(CELL_FIELD(START_P, esd ? esd_p : plain_p, REAL_CELL(head.P, head.P_STD), esd));
  line.push_back({START_USE, use_column - 1, head.USED ? "1" : "0", 2, true});
  return line;
}

FIELD_LINE HEAD_FIELDS() {
  return {{START_TITLE, 8, "BLOCKNAME"},
          {START_T, 23, "T"},
          {START_P, 32, "P"},
          {START_USE, 42, "IUSE"}};
}

std::string FACETOR_HEADSTART() {
  return LINE_TEXT(HEAD_FIELDS());
}

std::string FACETOR_LINESTART(int place, bool esd) {
  if (!BLOCK_IS_LISTED(ISORT(place))) return "";
  std::vector<FIELD_LINE> table{START_FIELDS(HEAD_OF_PLACE(place), esd)};
  SET_COLUMNS(table);
  return LINE_TEXT(table.front());
}

// ---- tables ----

REPORT_COLUMN& ADD_COLUMN(REPORT& report, std::string_view name, int width, int decimals) {
  REPORT_COLUMN column;
  column.NAME = name;
  column.HEAD = name;
  column.DECIMALS = decimals;
  column.WIDTH = width;
  column.AT = use_column + 1;
  if (!report.COLUMNS.empty()) column.AT = report.COLUMNS.back().AT + report.COLUMNS.back().WIDTH;
  column.HEAD_AT = column.AT + std::max(width - CHARACTERS(name), 1);
  report.COLUMNS.push_back(column);
  return report.COLUMNS.back();
}

namespace {

int NUMBER_OF(std::size_t k) {
  return START_COLUMNS + static_cast<int>(k);
}

FIELD_LINE HEAD_LINE(const REPORT& report) {
  FIELD_LINE line = HEAD_FIELDS();
  for (std::size_t k = 0; k < report.COLUMNS.size(); ++k) {
    const REPORT_COLUMN& column = report.COLUMNS[k];
    if (!column.HEAD.empty()) line.push_back({NUMBER_OF(k), column.HEAD_AT, column.HEAD});
  }
  return line;
}

// The codes of first, second ... ligands, below the labels.
FIELD_LINE CODE_LINE(const REPORT& report, std::size_t ligand) {
  constexpr int word_at = 37;
  FIELD_LINE line;
  if (ligand == 0) line.push_back({START_USE, word_at, "symcodes:"});
  for (std::size_t k = 0; k < report.COLUMNS.size(); ++k) {
    const REPORT_COLUMN& column = report.COLUMNS[k];
    if (ligand < column.CODES.size())
      line.push_back({NUMBER_OF(k), column.HEAD_AT, column.CODES[ligand]});
  }
  return line;
}

FIELD FIELD_OF_CELL(const REPORT& report, const REPORT_ROW& row, std::size_t k) {
  return CELL_FIELD(NUMBER_OF(k), report.COLUMNS[k], row.CELLS[k], report.WITH_ESDS);
}

// Behind the last field of the row.
FIELD SENTENCE_FIELD(const REPORT& report, const REPORT_ROW& row) {
  if (row.CELLS.empty()) return {START_USE, use_column + 1, row.SENTENCE};
  const std::size_t last = row.CELLS.size() - 1;
  const REPORT_COLUMN& column = report.COLUMNS[last];
  return {NUMBER_OF(last), column.AT + column.WIDTH, row.SENTENCE};
}

FIELD_LINE ROW_LINE(const REPORT& report, const REPORT_ROW& row) {
  FIELD_LINE line = START_FIELDS(row.HEAD, report.WITH_ESDS, row.CELLS.size() + 1);
  for (std::size_t k = 0; k < row.CELLS.size(); ++k) line.push_back(FIELD_OF_CELL(report, row, k));
  if (!row.SENTENCE.empty()) line.push_back(SENTENCE_FIELD(report, row));
  return line;
}

std::size_t MOST_CODES(const REPORT& report) {
  std::size_t most = 0;
  for (const REPORT_COLUMN& column : report.COLUMNS) most = std::max(most, column.CODES.size());
  return most;
}

void WRITE_TITLE(const REPORT& report) {
  for (const std::string& line : report.TITLE) WRITE_OUT(AS_IT_IS(line));
}

std::vector<FIELD_LINE> LINES_ABOVE(const REPORT& report) {
  std::vector<FIELD_LINE> lines{HEAD_LINE(report)};
  if (!report.SHOW_CODES) return lines;
  lines.emplace_back();
  for (std::size_t ligand = 0; ligand < MOST_CODES(report); ++ligand)
    lines.push_back(CODE_LINE(report, ligand));
  return lines;
}

}  // namespace

void WRITE_REPORT(REPORT& report) {
  WRITE_TITLE(report);
  if (!report.IS_TABLE) return;
  std::vector<FIELD_LINE> table = LINES_ABOVE(report);
  table.reserve(table.size() + report.ROWS.size());
  for (REPORT_ROW& row : report.ROWS) {
    table.push_back(ROW_LINE(report, row));
    row.CELLS = std::vector<REPORT_CELL>{};
  }
  WRITE_TABLE(std::move(table), START_COLUMNS);
}

// ---- long tables ----

LONG_REPORT START_LONG_REPORT(const REPORT& report, std::size_t rows) {
  LONG_REPORT started;
  started.START = report;
  if (!report.IS_TABLE) return started;
  MAKE_ROOM(started.TABLE, rows, START_COLUMNS + report.COLUMNS.size());
  for (const FIELD_LINE& line : LINES_ABOVE(report)) ADD_LINE(line, started.TABLE);
  return started;
}

namespace {

// The fields of ROW_LINE, without the line.
void ADD_ROW(const REPORT& part, const REPORT_ROW& row, const FIELD_LINE& start,
             LONG_TABLE& table) {
  LAST_FIELD last;
  for (const FIELD& field : start) ADD_FIELD(field, last, table);
  for (std::size_t k = 0; k < row.CELLS.size(); ++k)
    ADD_FIELD(FIELD_OF_CELL(part, row, k), last, table);
  if (!row.SENTENCE.empty()) ADD_FIELD(SENTENCE_FIELD(part, row), last, table);
  END_LINE(table);
}

}  // namespace

std::vector<FIELD_LINE> ROW_STARTS(const REPORT& part) {
  std::vector<FIELD_LINE> starts;
  for (const REPORT_ROW& row : part.ROWS) starts.push_back(START_FIELDS(row.HEAD, part.WITH_ESDS));
  return starts;
}

void ADD_ROWS(const REPORT& part, const std::vector<FIELD_LINE>& starts, LONG_REPORT& report) {
  for (std::size_t k = 0; k < part.ROWS.size(); ++k)
    ADD_ROW(part, part.ROWS[k], starts[k], report.TABLE);
}

void WRITE_REPORT(const LONG_REPORT& report) {
  WRITE_TITLE(report.START);
  WRITE_TABLE(report.TABLE);
}

}  // namespace FACETOR_LIST
