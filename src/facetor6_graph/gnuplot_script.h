// The gnuplot script of a graph: text from a record. Asks, prints and runs nothing.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "console_code/console/work.h"

namespace FACETOR_GRAPH {

enum class PICTURE { SVG, PDF, PNG, TERMINAL };

// Columns are those of the sheet, from 1; an esd stands in the column behind its value.
struct SERIES {
  std::string NAME;  // in the legend
  int COLUMN = 0;
  bool ON_RIGHT = false;  // its axis is the right one
};

struct GRAPH {
  PICTURE KIND = PICTURE::SVG;
  std::string PICTURE_NAME;  // files without folders
  std::string SHEET_NAME;
  std::string X_TITLE;  // with units
  std::string Y_TITLE;
  std::string RIGHT_TITLE;  // blank: no right axis
  int X_COLUMN = 0;
  int REFERENCE_BLOCK = 0;    // its points are marked; 0: it is not drawn
  std::vector<SERIES> ITEMS;  // those of the left axis first
};

// The lines of the script, which draws the sheet into the picture. In a terminal the sheet's text
// stands in the script, and there is no file. Unfinished where the user has stopped the work. Needs
// gnuplot 5.
std::string SCRIPT_OF(const GRAPH& graph, KVA_CONSOLE::WORK& work,
                      std::string_view sheet_text = "");

// The same without the line that names the picture, which then goes to standard output.
std::string SCRIPT_TO_OUTPUT(const GRAPH& graph, KVA_CONSOLE::WORK& work,
                             std::string_view sheet_text = "");

// Text as gnuplot takes it between single quotes, in which it looks for nothing but the closing
// one. Control characters become blanks, and an apostrophe at its begin the typographic one, since
// gnuplot takes a text for closed there.
std::string GNUPLOT_TEXT(std::string_view text);

// A file's name as gnuplot takes it: one that could be taken for a command or an option begins with
// "./".
std::string GNUPLOT_FILE(std::string_view name);

}  // namespace FACETOR_GRAPH
