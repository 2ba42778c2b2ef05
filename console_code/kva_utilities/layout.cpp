// Tables whose columns move apart where their fields need it.
#include "console_code/kva_utilities/layout.h"

#include <algorithm>  // for max, min

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_UTILITIES {

namespace {

// ---- one field ----

bool IS_BLANK(const FIELD& field) {
  return LENTRIM(field.TEXT) == 0;
}

// Places of its first and last characters that are not blank.
int FIRST_PLACE(const FIELD& field) {
  const std::size_t blanks = std::min(field.TEXT.find_first_not_of(' '), field.TEXT.size());
  return field.AT + static_cast<int>(blanks);
}

int LAST_PLACE(const FIELD& field) {
  return field.AT + CHARACTERS(TRIM_VIEW(field.TEXT)) - 1;
}

bool DIVIDES(const FIELD& field) {
  return TRIM_VIEW(field.TEXT).ends_with(':');
}

bool NEEDS_BLANK(const FIELD_LINE& line, std::size_t k) {
  return k > 0 && !line[k].TOUCHES && !DIVIDES(line[k - 1]);
}

// Places that field k has to spare before it, and a blank; below 0 when it lacks some.
int ROOM_BEFORE(const FIELD_LINE& line, std::size_t k) {
  if (IS_BLANK(line[k])) return 0;
  int least = 1;
  if (k > 0) least = LAST_PLACE(line[k - 1]) + (NEEDS_BLANK(line, k) ? 2 : 1);
  return FIRST_PLACE(line[k]) - least;
}

// ---- a table that fits ----

// Whether the value is too long for its field by the blank that it begins with.
bool MAY_LOSE_BLANK(const FIELD& field) {
  if (field.RIGHT || IS_BLANK(field) || !field.TEXT.starts_with(' ')) return false;
  return field.WIDTH > 0 && CHARACTERS(field.TEXT) > field.WIDTH;
}

// Where every value that may lose its blank does.
bool FITS(const std::vector<FIELD_LINE>& table) {
  for (const FIELD_LINE& line : table) {
    int lost_before = 0;
    for (std::size_t k = 0; k < line.size(); ++k) {
      const int lost = MAY_LOSE_BLANK(line[k]) ? 1 : 0;
      if (ROOM_BEFORE(line, k) + lost_before < lost) return false;
      lost_before = lost;
    }
  }
  return true;
}

// ---- a table that does not ----

// Places that the value lacks in its field.
int LACKING(const FIELD_LINE& line, std::size_t k) {
  const FIELD& field = line[k];
  if (field.WIDTH == 0 || IS_BLANK(field)) return 0;
  const bool brings_blank = field.TEXT.starts_with(' ');
  const int blank = NEEDS_BLANK(line, k) && !brings_blank ? 1 : 0;
  return CHARACTERS(TRIM_VIEW(field.TEXT)) + blank - field.WIDTH;
}

int LAST_COLUMN(const std::vector<FIELD_LINE>& table) {
  int last = -1;
  for (const FIELD_LINE& line : table)
    if (!line.empty()) last = std::max(last, line.back().COLUMN);
  return last;
}

void WIDEN_COLUMNS(std::vector<FIELD_LINE>& table) {
  std::vector<std::size_t> next(table.size(), 0);  // of each line the first field not yet placed
  int shift = 0;                                   // of the columns placed so far
  const int last = LAST_COLUMN(table);
  for (int column = 0; column <= last; ++column) {
    const auto stands_here = [&](std::size_t k) {
      return next[k] < table[k].size() && table[k][next[k]].COLUMN == column;
    };
    int wider = 0;
    for (std::size_t k = 0; k < table.size(); ++k)
      if (stands_here(k)) wider = std::max(wider, LACKING(table[k], next[k]));
    int touching = 0;  // values that begin at the left without a blank may still touch
    for (std::size_t k = 0; k < table.size(); ++k) {
      if (!stands_here(k)) continue;
      FIELD& field = table[k][next[k]];
      const bool from_left = field.WIDTH > 0 && !field.RIGHT;
      field.AT += from_left ? shift : shift + wider;
      touching = std::max(touching, -ROOM_BEFORE(table[k], next[k]));
    }
    for (std::size_t k = 0; k < table.size(); ++k) {
      if (!stands_here(k)) continue;
      table[k][next[k]++].AT += touching;
      while (stands_here(k)) table[k][next[k]++].AT += shift + wider + touching;
    }
    shift += wider + touching;
  }
}

}  // namespace

void SET_COLUMNS(std::vector<FIELD_LINE>& table) {
  for (FIELD_LINE& line : table)
    for (FIELD& field : line)
      if (field.RIGHT) field.AT += field.WIDTH - CHARACTERS(field.TEXT);
  if (!FITS(table)) {
    WIDEN_COLUMNS(table);
    return;
  }
  for (FIELD_LINE& line : table)
    for (FIELD& field : line)
      if (MAY_LOSE_BLANK(field)) field.TEXT.erase(0, 1);
}

std::string LINE_TEXT(const FIELD_LINE& line) {
  std::string text;
  if (!line.empty())
    text.reserve(static_cast<std::size_t>(std::max(line.back().AT, 0)) + line.back().TEXT.size());
  int length = 0;  // of the text, in characters
  for (const FIELD& field : line) {
    if (field.AT > length) {  // as fields do, but for sentences that begin within another
      text.append(static_cast<std::size_t>(field.AT - 1 - length), ' ');
      text += field.TEXT;
      length = field.AT - 1 + CHARACTERS(field.TEXT);
    } else {
      PUT_AT(text, field.AT, field.TEXT);
      length = CHARACTERS(text);
    }
  }
  return text;
}

// ---- panels ----

namespace {

// Columns that stay together, from FIRST to below END, in the places from LEFT to RIGHT.
struct COLUMN_GROUP {
  int FIRST;
  int END;
  int LEFT;
  int RIGHT;
};

// A second text of a column stands behind its field in place of all that would follow.
bool IS_SENTENCE(const FIELD_LINE& line, std::size_t k) {
  return k > 0 && line[k].COLUMN == line[k - 1].COLUMN;
}

// The columns of a table from the first one on, divided wherever no field stands across.
std::vector<COLUMN_GROUP> GROUPS(const std::vector<FIELD_LINE>& table, int first, int end) {
  const auto columns = static_cast<std::size_t>(end);
  constexpr int nowhere = 1 << 30;
  std::vector<int> left(columns + 1, nowhere);  // of this column and all behind it
  std::vector<int> right(columns + 1, 0);       // of all columns before this one
  for (const FIELD_LINE& line : table)
    for (std::size_t k = 0; k < line.size(); ++k) {
      const FIELD& field = line[k];
      if (IS_BLANK(field) || IS_SENTENCE(line, k)) continue;
      const auto c = static_cast<std::size_t>(field.COLUMN);
      left[c] = std::min(left[c], FIRST_PLACE(field));
      right[c + 1] = std::max(right[c + 1], LAST_PLACE(field));
    }
  for (std::size_t c = columns; c > 0; --c) left[c - 1] = std::min(left[c - 1], left[c]);
  for (std::size_t c = 1; c <= columns; ++c) right[c] = std::max(right[c], right[c - 1]);

  std::vector<COLUMN_GROUP> groups;
  for (int c = first; c < end; ++c) {
    const auto k = static_cast<std::size_t>(c);
    if (groups.empty() || left[k] > right[k]) groups.push_back({c, c, left[k], 0});
    groups.back().END = c + 1;
    groups.back().RIGHT = right[k + 1];
  }
  return groups;
}

// The first place behind the first columns of all lines, starts of them, and a blank.
int PLACE_BEHIND(const std::vector<FIELD_LINE>& table, int starts) {
  int place = 1;
  for (const FIELD_LINE& line : table)
    for (std::size_t k = 0; k < line.size(); ++k)
      if (line[k].COLUMN < starts && !IS_BLANK(line[k]) && !IS_SENTENCE(line, k))
        place = std::max(place, LAST_PLACE(line[k]) + 2);
  return place;
}

// The start of the line, and what stands in the columns of a panel, moved by shift.
std::string PANEL_LINE(const FIELD_LINE& line, int starts, int first, int end, int shift) {
  std::string text;
  for (const FIELD& field : line) {
    if (field.COLUMN < starts)
      PUT_AT(text, field.AT, field.TEXT);
    else if (field.COLUMN >= first && field.COLUMN < end)
      PUT_AT(text, field.AT + shift, field.TEXT);
  }
  return text;
}

}  // namespace

std::vector<std::vector<std::string>> PANELS(const std::vector<FIELD_LINE>& table, int starts,
                                             int width) {
  const std::vector<COLUMN_GROUP> groups = GROUPS(table, starts, LAST_COLUMN(table) + 1);
  // Every panel begins where the first one does, unless that one touches the start.
  const int begin = groups.empty() ? 1 : std::max(groups.front().LEFT, PLACE_BEHIND(table, starts));
  std::vector<std::vector<std::string>> panels;
  std::size_t k = 0;
  do {
    const std::size_t first = k;
    const int shift = first == 0 ? 0 : begin - groups[first].LEFT;
    while (k < groups.size() && (k == first || groups[k].RIGHT + shift <= width)) ++k;
    std::vector<std::string> lines;
    for (const FIELD_LINE& line : table)
      lines.push_back(
          k == 0 ? LINE_TEXT(line)
                 : PANEL_LINE(line, starts, groups[first].FIRST, groups[k - 1].END, shift));
    panels.push_back(std::move(lines));
  } while (k < groups.size());
  return panels;
}

}  // namespace KVA_UTILITIES
