// Cells, packed, and the lines that they make.
#include "console_code/kva_utilities/aligned_rows.h"

#include <algorithm>  // for max, min

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_UTILITIES {

namespace {

std::size_t LENGTH_OF(std::string_view cell) {
  return static_cast<std::size_t>(CHARACTERS(cell));
}

// Characters of a cell up to its decimal point, or to where the point would stand.
std::size_t LEFT_PART(std::string_view cell) {
  if (cell == "." || cell == "?") return 1;
  return std::min(cell.find_first_of(".("), cell.size());
}

// What stands for a number that did not fit its columns, or that is none.
bool IS_WORD_FOR_NUMBER(std::string_view cell) {
  if (cell == "NaN" || cell == "Inf" || cell == "-Inf") return true;
  return !cell.empty() && cell.find_first_not_of('*') == std::string_view::npos;
}

bool IS_NUMERIC_CELL(std::string_view cell) {
  if (cell == "." || cell == "?" || IS_WORD_FOR_NUMBER(cell)) return true;
  const std::size_t open = cell.find('(');
  NUMBER number;
  if (!GETNUM(cell.substr(0, open), number)) return false;
  if (open == std::string_view::npos) return true;
  return cell.back() == ')' && GETNUM(cell.substr(open + 1, cell.size() - open - 2), number);
}

// ---- the columns ----

void WIDEN(std::string_view cell, ALIGNED_COLUMN& column) {
  column.TEXT = std::max(column.TEXT, LENGTH_OF(cell));
  column.NUMERIC = column.NUMERIC && IS_NUMERIC_CELL(cell);
  if (!column.NUMERIC) return;
  if (IS_WORD_FOR_NUMBER(cell)) {
    column.WORD = std::max(column.WORD, cell.size());
    return;
  }
  const std::size_t left = LEFT_PART(cell);
  column.LEFT = std::max(column.LEFT, left);
  column.RIGHT = std::max(column.RIGHT, cell.size() - left);
}

std::size_t WIDTH_OF(const ALIGNED_COLUMN& column) {
  return column.NUMERIC ? std::max(column.LEFT + column.RIGHT, column.WORD) : column.TEXT;
}

// Blanks before a cell: a number stands at its point, a word in place of one at the right end.
std::size_t INDENT(std::string_view cell, const ALIGNED_COLUMN& column) {
  if (!column.NUMERIC) return 0;
  if (IS_WORD_FOR_NUMBER(cell)) return WIDTH_OF(column) - cell.size();
  return WIDTH_OF(column) - column.RIGHT - LEFT_PART(cell);
}

void ADD_CELL(std::string_view cell, const ALIGNED_COLUMN& column, std::string& line) {
  const std::size_t indent = INDENT(cell, column);
  line.append(indent, ' ').append(cell);
  line.append(WIDTH_OF(column) - indent - LENGTH_OF(cell), ' ');
}

}  // namespace

// ---- the rows ----

void ADD_ROW(const std::vector<std::string>& row, ALIGNED_ROWS& rows) {
  if (rows.COLUMNS.size() < row.size()) rows.COLUMNS.resize(row.size());
  for (std::size_t column = 0; column < row.size(); ++column) {
    const std::string_view cell = LEFT_ADJUST_VIEW(row[column]);
    ADD_TEXT(cell, rows.CELLS);
    WIDEN(cell, rows.COLUMNS[column]);
  }
  rows.ENDS.push_back(rows.CELLS.ENDS.size());
}

std::string ALIGNED_LINE(const ALIGNED_ROWS& rows, std::size_t k) {
  const std::size_t start = k == 0 ? 0 : rows.ENDS[k - 1];
  std::string line = " ";
  for (std::size_t cell = start; cell < rows.ENDS[k]; ++cell) {
    if (cell > start) line += "  ";
    ADD_CELL(TEXT_AT(rows.CELLS, cell), rows.COLUMNS[cell - start], line);
  }
  line.resize(static_cast<std::size_t>(LENTRIM(line)));
  return line;
}

std::vector<std::string> WRITE_COLS(const std::vector<std::vector<std::string>>& rows) {
  ALIGNED_ROWS aligned;
  for (const std::vector<std::string>& row : rows) ADD_ROW(row, aligned);
  std::vector<std::string> lines;
  for (std::size_t k = 0; k < rows.size(); ++k) lines.push_back(ALIGNED_LINE(aligned, k));
  return lines;
}

}  // namespace KVA_UTILITIES
