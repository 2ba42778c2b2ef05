// Tables of many lines, packed: what layout.h does, with each line looked at once and held in an
// eighth of the room. For the tables of calculated geometry, whose texts and places are short.
// Prints nothing.
#pragma once

#include <string>
#include <vector>

#include "console_code/kva_utilities/layout.h"

namespace KVA_UTILITIES {

// A field whose text stands in that of the table, behind those before it.
struct PACKED_FIELD {
  short COLUMN;
  short AT;  // where it stands when everything fits: its first character
  unsigned short BYTES;
  bool FROM_LEFT;    // stays where its column begins when that widens, else goes to its end
  bool LOSES_BLANK;  // when everything fits
};

// A field of a column and the one before it in the line, and the least room between two such.
struct JOINT {
  int COLUMN_BEFORE;  // -1: nothing
  bool BEFORE_FROM_LEFT;
  bool FROM_LEFT;
  int ROOM;  // places to spare; below 0 when some are lacking
};

// What the lines so far ask of a column.
struct COLUMN_NEEDS {
  int LACKING = 0;  // places that the longest value lacks in its field
  std::vector<JOINT> JOINTS;
};

struct LONG_TABLE {
  std::string TEXT;
  std::vector<PACKED_FIELD> FIELDS;
  std::vector<std::size_t> ENDS;  // of the lines, in FIELDS
  std::vector<COLUMN_NEEDS> COLUMNS;
  bool FITS = true;  // every field with a blank between them
};

// Room for so many lines more of so many fields each.
void MAKE_ROOM(LONG_TABLE& table, std::size_t lines, std::size_t fields);

// The last field of a line that is being added.
struct LAST_FIELD {
  int COLUMN = -1;  // -1: none
  bool FROM_LEFT = false;
  int END = 0;  // place of its last character, when everything fits
  bool DIVIDES = true;
  bool LOSES_BLANK = false;
};

// Adds a field to the line, and ends the line.
void ADD_FIELD(const FIELD& field, LAST_FIELD& last, LONG_TABLE& table);
void END_LINE(LONG_TABLE& table);

void ADD_LINE(const FIELD_LINE& line, LONG_TABLE& table);

// How far the fields of each column move: those that stay where it begins, and the others.
struct COLUMN_SHIFT {
  int FROM_LEFT = 0;
  int OTHERS = 0;
};
std::vector<COLUMN_SHIFT> SHIFTS_OF(const LONG_TABLE& table);

// A place in the table, from its first line on.
struct TABLE_PLACE {
  std::size_t LINE = 0;
  std::size_t FIELD = 0;
  std::size_t BYTE = 0;
};

// Sets text to the next line, which must be there.
void TAKE_LINE(const LONG_TABLE& table, const std::vector<COLUMN_SHIFT>& shifts, TABLE_PLACE& place,
               std::string& text);

}  // namespace KVA_UTILITIES
