// Tables of many lines, packed. What WIDEN_COLUMNS of layout.cpp finds by going down every column
// is gathered line by line: how far a column widens depends on its longest value alone, and whether
// two fields then touch on the least room between fields of their columns.
#include "console_code/kva_utilities/long_table.h"

#include <algorithm>  // for find_if, max, min

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_UTILITIES {

namespace {

// ---- one field ----

// A text in characters.
struct EXTENT {
  int ALL;
  int BLANKS;  // that it begins with
  int TRIMMED;
  bool DIVIDES;
};

EXTENT EXTENT_OF(std::string_view text) {
  const std::string_view trimmed = TRIM_VIEW(text);
  const int all = CHARACTERS(text);
  const int trailing = static_cast<int>(text.size() - trimmed.size());
  int blanks = 0;
  for (std::size_t k = 0; k < trimmed.size() && trimmed[k] == ' '; ++k) ++blanks;
  return {all, blanks, all - trailing, trimmed.ends_with(':')};
}

void ADD_JOINT(const JOINT& joint, std::vector<JOINT>& joints) {
  const auto same = std::find_if(joints.begin(), joints.end(), [&](const JOINT& known) {
    return known.COLUMN_BEFORE == joint.COLUMN_BEFORE &&
           known.BEFORE_FROM_LEFT == joint.BEFORE_FROM_LEFT && known.FROM_LEFT == joint.FROM_LEFT;
  });
  if (same == joints.end())
    joints.push_back(joint);
  else
    same->ROOM = std::min(same->ROOM, joint.ROOM);
}

}  // namespace

void ADD_FIELD(const FIELD& field, LAST_FIELD& last, LONG_TABLE& table) {
  const EXTENT extent = EXTENT_OF(field.TEXT);
  const bool is_blank = extent.TRIMMED == 0;
  const bool is_sentence = field.COLUMN == last.COLUMN;
  const bool is_value = field.WIDTH > 0 && !is_blank;
  const int at = field.RIGHT ? field.AT + field.WIDTH - extent.ALL : field.AT;
  const bool from_left = field.WIDTH > 0 && !field.RIGHT && !is_sentence;
  const int blank = field.TOUCHES || last.DIVIDES ? 0 : 1;
  const int room = is_blank ? 0 : at + extent.BLANKS - last.END - 1 - blank;
  const bool loses_blank =
      is_value && !field.RIGHT && extent.BLANKS > 0 && extent.ALL > field.WIDTH;

  if (room + (last.LOSES_BLANK ? 1 : 0) < (loses_blank ? 1 : 0)) table.FITS = false;
  const auto column = static_cast<std::size_t>(field.COLUMN);
  if (table.COLUMNS.size() <= column) table.COLUMNS.resize(column + 1);
  COLUMN_NEEDS& needs = table.COLUMNS[column];
  if (is_value && !is_sentence)
    needs.LACKING =
        std::max(needs.LACKING, extent.TRIMMED + (extent.BLANKS > 0 ? 0 : blank) - field.WIDTH);
  if (!is_blank && !is_sentence)
    ADD_JOINT({last.COLUMN, last.FROM_LEFT, from_left, room}, needs.JOINTS);

  table.TEXT += field.TEXT;
  table.FIELDS.push_back({static_cast<short>(field.COLUMN), static_cast<short>(at),
                          static_cast<unsigned short>(field.TEXT.size()), from_left, loses_blank});
  last = {field.COLUMN, from_left, at + extent.TRIMMED - 1, extent.DIVIDES, loses_blank};
}

// ---- lines ----

void MAKE_ROOM(LONG_TABLE& table, std::size_t lines, std::size_t fields) {
  constexpr std::size_t bytes = 10;  // of a field, about
  table.TEXT.reserve(table.TEXT.size() + lines * fields * bytes);
  table.FIELDS.reserve(table.FIELDS.size() + lines * fields);
  table.ENDS.reserve(table.ENDS.size() + lines);
}

void END_LINE(LONG_TABLE& table) {
  table.ENDS.push_back(table.FIELDS.size());
}

void ADD_LINE(const FIELD_LINE& line, LONG_TABLE& table) {
  LAST_FIELD last;
  for (const FIELD& field : line) ADD_FIELD(field, last, table);
  END_LINE(table);
}

std::vector<COLUMN_SHIFT> SHIFTS_OF(const LONG_TABLE& table) {
  std::vector<COLUMN_SHIFT> shifts(table.COLUMNS.size());
  if (table.FITS) return shifts;
  int shift = 0;  // of the columns so far
  for (std::size_t column = 0; column < shifts.size(); ++column) {
    const COLUMN_NEEDS& needs = table.COLUMNS[column];
    COLUMN_SHIFT& own = shifts[column];
    own = {shift, shift + needs.LACKING};
    int touching = 0;  // values that begin at the left without a blank may still touch
    for (const JOINT& joint : needs.JOINTS) {
      COLUMN_SHIFT before;
      if (joint.COLUMN_BEFORE >= 0) before = shifts[static_cast<std::size_t>(joint.COLUMN_BEFORE)];
      const int moved_before = joint.BEFORE_FROM_LEFT ? before.FROM_LEFT : before.OTHERS;
      const int moved = joint.FROM_LEFT ? own.FROM_LEFT : own.OTHERS;
      touching = std::max(touching, moved_before - moved - joint.ROOM);
    }
    own.FROM_LEFT += touching;
    own.OTHERS += touching;
    shift = own.OTHERS;
  }
  return shifts;
}

void TAKE_LINE(const LONG_TABLE& table, const std::vector<COLUMN_SHIFT>& shifts, TABLE_PLACE& place,
               std::string& text) {
  text.clear();
  int length = 0;  // in characters
  for (; place.FIELD < table.ENDS[place.LINE]; ++place.FIELD) {
    const PACKED_FIELD& field = table.FIELDS[place.FIELD];
    std::string_view shown = std::string_view(table.TEXT).substr(place.BYTE, field.BYTES);
    place.BYTE += field.BYTES;
    if (table.FITS && field.LOSES_BLANK) shown.remove_prefix(1);
    const COLUMN_SHIFT& shift = shifts[static_cast<std::size_t>(field.COLUMN)];
    const int at = field.AT + (field.FROM_LEFT ? shift.FROM_LEFT : shift.OTHERS);
    if (at > length) {  // as fields do, but for sentences that begin within another
      text.append(static_cast<std::size_t>(at - 1 - length), ' ');
      text += shown;
      length = at - 1 + CHARACTERS(shown);
    } else {
      PUT_AT(text, at, shown);
      length = CHARACTERS(text);
    }
  }
  ++place.LINE;
}

}  // namespace KVA_UTILITIES
