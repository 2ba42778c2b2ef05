// A report as data: what its columns are and what stands in them, with the values as they were
// calculated. Tables are printed from it, and so may sheets and graphs be.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "console_code/kva_utilities/long_table.h"
#include "src/kva_crystal_structures/records.h"

namespace FACETOR_LIST {

enum class CELL_KIND {
  NOTHING,    // nothing stands there
  NO_VALUE,   // there is none: an atom has no partner, a calculation gave no finite number
  NOT_GIVEN,  // there is none in the file, and tables show the real 0
  REAL,
  WHOLE,
  TEXT
};

struct REPORT_CELL {
  CELL_KIND KIND = CELL_KIND::NOTHING;
  float VALUE = 0.0f;  // of a real, always finite; of a whole number the same as COUNT
  float STD = 0.0f;    // its esd; 0: none
  int COUNT = 0;
  std::string TEXT;
};

// NO_VALUE where the value is not finite; an esd that is not finite or is negative is none.
REPORT_CELL REAL_CELL(float value, float std = 0.0f);
REPORT_CELL WHOLE_CELL(int count);
REPORT_CELL TEXT_CELL(std::string_view text);
REPORT_CELL NO_VALUE_CELL();
REPORT_CELL NOT_GIVEN_CELL();

// Of the last column of a table, if its texts begin at the left.
inline constexpr int any_width = 0;

struct REPORT_COLUMN {
  // ---- what it holds ----
  std::string NAME{};                // of the quantity, "Fe1-O1[1]"; the same in every form
  std::string UNIT{};                // "A", "deg", "A^3", "deg^2", "v.u.", "K", "GPa"; blank: none
  std::vector<std::string> CODES{};  // symmetry codes of the ligands, in the order of the name
  int LIGAND = 0;                    // bond numbers of the ligands, from 1; 0: none
  int SECOND_LIGAND = 0;
  bool IN_SHEET = true;  // a value of its own; false: tells what the row or another value is
  bool HAS_ESD = false;  // shown as value(esd) in a table with esds
  // ---- how it is printed ----
  int DECIMALS = 0;      // of a real without an esd
  int AT = 1;            // first column of its field, of WIDTH columns, where all fields fit
  int WIDTH = 0;         // value(esd) and texts begin in its first column, numbers end in its last
  std::string HEAD{};    // word over it; blank: none
  int HEAD_AT = 1;       // also the place of its codes
  bool TOUCHES = false;  // stands beside the column before, without a blank
};

// The start of a row: the block that it is for.
struct ROW_HEAD {
  int PLACE = 0;  // of the block in the display order; 0: not in the list
  int BLOCK = 0;  // number that is shown
  std::string TITLE;
  float T = 0.0f;  // K
  float T_STD = 0.0f;
  float P = 0.0f;  // GPa
  float P_STD = 0.0f;
  bool USED = false;
};

struct REPORT_ROW {
  ROW_HEAD HEAD;
  std::vector<REPORT_CELL> CELLS;  // as many as columns, or fewer when nothing stands behind them
  std::string SENTENCE;            // in place of the cells that are not there
};

// What the columns of a report are values of, where symmetry may make several of them equal.
enum class FEATURES {
  NONE,
  AXES,            // lengths of the cell's edges and angles between them
  BONDS,           // from the centre to a ligand, the same from the ligand
  DIRECTED_BONDS,  // another thing from the ligand
  ANGLES,          // at the centre
  EDGES            // from ligand to ligand
};

struct REPORT {
  std::string QUANTITY;  // "bond", "angles", "edges"; in sheets
  FEATURES OF = FEATURES::NONE;
  int CENTRE = 0;  // atom of the reference block; 0: none
  bool WITH_ESDS = false;
  bool SHOW_CODES = false;         // symmetry codes stand below the heads
  std::vector<std::string> TITLE;  // lines above the table
  bool IS_TABLE = false;           // false: the title tells why there is none
  std::vector<REPORT_COLUMN> COLUMNS;
  std::vector<REPORT_ROW> ROWS;
};

// Head of the row at a place of the display order; and that of any phase, under a number.
ROW_HEAD HEAD_OF_PLACE(int place);
ROW_HEAD HEAD_OF_PHASE(const KVA_CRYSTAL_STRUCTURES::CRYSTAL_STRUCTURE_TYPE& phase, int number);

// The cell as it stands in its column.
std::string CELL_TEXT(const REPORT_CELL& cell, const REPORT_COLUMN& column, bool with_esds);

// A column of width columns behind the last one of the report, its name for a head.
REPORT_COLUMN& ADD_COLUMN(REPORT& report, std::string_view name, int width, int decimals);

// ---- tables ----

// The first columns of every table.
enum START_COLUMN { START_NUMBER, START_TITLE, START_T, START_P, START_USE, START_COLUMNS };

// Words over them, and they themselves in a row, with esds of T and P or without; there is room for
// more fields behind them.
KVA_UTILITIES::FIELD_LINE HEAD_FIELDS();
KVA_UTILITIES::FIELD_LINE START_FIELDS(const ROW_HEAD& head, bool esd, std::size_t more = 0);

// The cell as the field of a column that has a number in the table.
KVA_UTILITIES::FIELD CELL_FIELD(int number, const REPORT_COLUMN& column, const REPORT_CELL& cell,
                                bool with_esds);

// Title and table, the columns as wide as they need to be; in panels where the window is narrower.
// The rows give up their cells for it: a long table is not held twice.
void WRITE_REPORT(REPORT& report);

// The same of many rows, added in parts of the report, where LINES_STAY_WHOLE.
struct LONG_REPORT {
  REPORT START;  // title and columns
  KVA_UTILITIES::LONG_TABLE TABLE;
};
LONG_REPORT START_LONG_REPORT(const REPORT& report, std::size_t rows);
// starts: the fields that its rows begin with, which are those of all reports on the same blocks.
std::vector<KVA_UTILITIES::FIELD_LINE> ROW_STARTS(const REPORT& part);
void ADD_ROWS(const REPORT& part, const std::vector<KVA_UTILITIES::FIELD_LINE>& starts,
              LONG_REPORT& report);
void WRITE_REPORT(const LONG_REPORT& report);

}  // namespace FACETOR_LIST
