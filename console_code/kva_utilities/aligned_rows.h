// Rows of texts that become lines: each column is as wide as its widest cell, and stands at the
// decimal point when it holds only numbers. Stars in place of a number that did not fit stand at
// the column's right end. Prints nothing.
#pragma once

#include <string>
#include <vector>

#include "console_code/kva_utilities/text_list.h"

namespace KVA_UTILITIES {

// What the cells so far ask of a column, in characters.
struct ALIGNED_COLUMN {
  bool NUMERIC = true;
  std::size_t LEFT = 0;   // of numbers, before the point
  std::size_t RIGHT = 0;  // of numbers, from the point on
  std::size_t WORD = 0;   // of what stands in place of a number
  std::size_t TEXT = 0;   // of any cell
};

struct ALIGNED_ROWS {
  TEXT_LIST CELLS;                // row by row, left-adjusted
  std::vector<std::size_t> ENDS;  // of the rows in CELLS
  std::vector<ALIGNED_COLUMN> COLUMNS;
};

void ADD_ROW(const std::vector<std::string>& row, ALIGNED_ROWS& rows);

// Row k, from 0, as a line, once all rows are there.
std::string ALIGNED_LINE(const ALIGNED_ROWS& rows, std::size_t k);

// The lines of all rows.
std::vector<std::string> WRITE_COLS(const std::vector<std::vector<std::string>>& rows);

}  // namespace KVA_UTILITIES
