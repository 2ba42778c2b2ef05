// Tables whose columns move apart where their fields need it. Prints nothing.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace KVA_UTILITIES {

// A text of a line and the column of the table, from 0, that it belongs to. A second text of one
// column is a sentence that stands in place of the columns behind it.
struct FIELD {
  int COLUMN = 0;
  int AT = 1;  // where it stands when everything fits: its first character
  std::string TEXT{};
  int WIDTH = 0;         // of a value, its field from AT on; 0: of any width, as the last value,
                         // a head word, a code or a sentence
  bool RIGHT = false;    // the value ends in the last place of its field
  bool TOUCHES = false;  // needs no blank before it
};

// Fields from left to right, their columns increasing; no field is a blank line.
using FIELD_LINE = std::vector<FIELD>;

// Gives every field its place. Where the fields of the table fit with a blank between them they
// stand where they say; a blank that a value begins with may be left out for that. Otherwise each
// column is as wide as stated or as its longest value and a blank before it, whichever is more;
// what follows moves along, and heads and codes with the last place of their values. A ":" at the
// end of a field divides as a blank does.
void SET_COLUMNS(std::vector<FIELD_LINE>& table);

// The line as text.
std::string LINE_TEXT(const FIELD_LINE& line);

// A table that is set, in parts of at most width columns: in each the first columns of the table,
// starts of them, then as many of the others as fit, at least one. Columns that a field stands
// across are not divided. A table that fits is one panel.
std::vector<std::vector<std::string>> PANELS(const std::vector<FIELD_LINE>& table, int starts,
                                             int width);

}  // namespace KVA_UTILITIES
