// From the words of a CIF to its blocks.
#include "cifcode/cif_full/tree.h"

#include <algorithm>  // for min
#include <limits>

namespace KVA_CIFFULL {

bool IS_NULL(const VALUE& value) {
  if (value.KIND == TOKEN::LIST) return true;
  return value.KIND == TOKEN::BARE && value.SIZE == 1 &&
         (*value.FIRST == '?' || *value.FIRST == '.');
}

namespace {

VALUE VALUE_OF(TOKEN kind, std::string_view text) {
  constexpr std::size_t longest = std::numeric_limits<std::uint32_t>::max();
  return {text.data(), static_cast<std::uint32_t>(std::min(text.size(), longest)), kind};
}

// The next word becomes the one ahead.
void STEP(READER& reader) {
  reader.AHEAD = NEXT_TOKEN(reader.SOURCE, reader.AHEAD_TEXT);
}

// A name of the block for the first time; otherwise it is told, and not kept.
bool IS_NEW(BLOCK& block, FAULTS& found, int name, std::string_view text) {
  if (block.PLACES[static_cast<std::size_t>(name)].SLOT < 0) return true;
  found.NOTE(NAME_TWICE, text.data(), text);
  return false;
}

// ---- an item ----

void PASS_WORD(READER& reader, FAULT_KIND kind) {
  reader.SOURCE.FOUND.NOTE(kind, reader.SOURCE.BYTES.data() + reader.SOURCE.START,
                           reader.AHEAD_TEXT);
  STEP(reader);
}

// Whether the word ahead is a bare one on the line on which the text ends.
bool IS_BEHIND(const READER& reader, std::string_view text) {
  const std::string_view bytes = reader.SOURCE.BYTES;
  const auto behind = static_cast<std::size_t>(text.data() + text.size() - bytes.data());
  return reader.AHEAD == TOKEN::BARE && !LINE_ENDS_BETWEEN(bytes, behind, reader.SOURCE.START);
}

// A word behind the value on the same line, where a unit is allowed there.
std::string_view TAKE_UNIT(READER& reader, std::string_view value) {
  const std::string_view unit = reader.AHEAD_TEXT;
  if (!IS_BEHIND(reader, value)) return {};
  const bool is_word = (unit[0] < '0' || unit[0] > '9') && unit[0] != '(';
  if (!is_word) return {};
  STEP(reader);
  return unit;
}

// The words behind the first of a symbol without quotes. They are a fault all the same.
std::string_view TAKE_SYMBOL_WORDS(READER& reader, std::string_view first) {
  const std::string_view start = reader.AHEAD_TEXT;
  std::string_view last = first;
  while (IS_BEHIND(reader, last)) {
    last = reader.AHEAD_TEXT;
    PASS_WORD(reader, STRAY_WORD);
  }
  if (last.data() == first.data()) return {};
  return {start.data(), static_cast<std::size_t>(last.data() + last.size() - start.data())};
}

void READ_ITEM(READER& reader, BLOCK& block) {
  FAULTS& found = reader.SOURCE.FOUND;
  const std::string_view name_text = reader.AHEAD_TEXT;
  const int name = NAME_NUMBER(name_text);
  STEP(reader);
  if (!IS_VALUE(reader.AHEAD)) return found.NOTE(NO_VALUE, name_text.data(), name_text);
  ITEM item{VALUE_OF(reader.AHEAD, reader.AHEAD_TEXT), {}};
  STEP(reader);
  if (name == NO_NAME) return;
  const FIELD field = NAMES[static_cast<std::size_t>(name)].FILLS;
  const std::string_view text = item.VALUE_.TEXT();
  if (TAKES_UNIT(field)) item.BEHIND = TAKE_UNIT(reader, text);
  if (IS_SYMBOL(field) && item.VALUE_.KIND == TOKEN::BARE)
    item.BEHIND = TAKE_SYMBOL_WORDS(reader, text);
  if (!IS_NEW(block, found, name, name_text)) return;
  block.PLACES[static_cast<std::size_t>(name)] = {-1, static_cast<int>(block.ITEMS.size())};
  block.ITEMS.push_back(item);
}

// ---- a loop ----

// The columns of a loop as its head tells them.
struct LOOP_HEAD {
  std::string_view FIRST_NAME;
  std::vector<int> SLOTS;  // for each column its place among those kept, or -1
  int KEPT = 0;
};

// The head of the loop that is being read; its memory serves all.
LOOP_HEAD& HEAD_IN_WORK() {
  static LOOP_HEAD head;
  head.SLOTS.clear();
  head.KEPT = 0;
  head.FIRST_NAME = {};
  return head;
}

void READ_HEAD(READER& reader, BLOCK& block, LOOP& loop, LOOP_HEAD& head) {
  loop.SLOTS.fill(-1);
  head.FIRST_NAME = reader.AHEAD_TEXT;
  for (; reader.AHEAD == TOKEN::NAME; STEP(reader)) {
    const int name = NAME_NUMBER(reader.AHEAD_TEXT);
    int slot = -1;
    if (name != NO_NAME && IS_NEW(block, reader.SOURCE.FOUND, name, reader.AHEAD_TEXT)) {
      slot = head.KEPT++;
      loop.SLOTS[static_cast<std::size_t>(name)] = static_cast<std::int8_t>(slot);
      block.PLACES[static_cast<std::size_t>(name)] = {static_cast<int>(block.LOOPS.size()), slot};
    }
    head.SLOTS.push_back(slot);
  }
}

// The values behind the head, those of the columns that are kept into the block. Returns how many
// there are in all.
std::size_t READ_VALUES(READER& reader, BLOCK& block, const LOOP_HEAD& head) {
  std::size_t count = 0;
  std::size_t column = 0;
  for (; IS_VALUE(reader.AHEAD); STEP(reader), ++count) {
    if (head.SLOTS[column] >= 0) block.VALUES.push_back(VALUE_OF(reader.AHEAD, reader.AHEAD_TEXT));
    if (++column == head.SLOTS.size()) column = 0;
  }
  return count;
}

// ---- a loop whose values do not make whole rows ----

// Values by the lines on which they begin.
struct VALUE_LINES {
  std::vector<VALUE> VALUES;
  std::vector<std::size_t> STARTS;  // first value of each line, and one behind the last
};

VALUE_LINES LINES_OF(std::string_view bytes, const TOKENS& source, std::size_t first) {
  TOKENS again = source;
  again.AT = first;
  VALUE_LINES lines;
  std::size_t behind = first;
  std::string_view text;
  for (TOKEN token = NEXT_TOKEN(again, text); IS_VALUE(token); token = NEXT_TOKEN(again, text)) {
    if (lines.VALUES.empty() || LINE_ENDS_BETWEEN(bytes, behind, again.START))
      lines.STARTS.push_back(lines.VALUES.size());
    lines.VALUES.push_back(VALUE_OF(token, text));
    behind = again.AT;
  }
  lines.STARTS.push_back(lines.VALUES.size());
  return lines;
}

// How many lines make the first row that ends with a line; 0 when none does.
std::size_t LINES_OF_ROW(const VALUE_LINES& lines, std::size_t columns) {
  constexpr std::size_t most_tried = 100;  // lines at which the first row may begin
  for (std::size_t first = 0; first < std::min(lines.STARTS.size() - 1, most_tried); ++first)
    for (std::size_t last = first + 1; last < lines.STARTS.size(); ++last) {
      const std::size_t count = lines.STARTS[last] - lines.STARTS[first];
      if (count == columns) return last - first;
      if (count > columns) break;
    }
  return 0;
}

// A line with too many or too few values belongs to no row: rows are told by the lines that they
// begin and end with, all alike. bad becomes the first line that is left out.
std::vector<std::size_t> ROWS_BY_LINES(const VALUE_LINES& lines, std::size_t columns,
                                       std::size_t& bad) {
  std::vector<std::size_t> rows;
  const std::size_t height = LINES_OF_ROW(lines, columns);
  const std::size_t count = lines.STARTS.size() - 1;
  bad = count;
  std::size_t line = 0;
  while (line < count) {
    const bool whole = height > 0 && line + height <= count &&
                       lines.STARTS[line + height] - lines.STARTS[line] == columns;
    if (whole) rows.push_back(lines.STARTS[line]);
    if (!whole && bad == count) bad = line;
    line += whole ? height : 1;
  }
  return rows;
}

// Reads the values from first on once more, by their lines. Where the rows are not told by lines
// the whole rows before the end are kept.
void READ_UNEVEN(READER& reader, BLOCK& block, const LOOP_HEAD& head, LOOP& loop,
                 std::size_t first) {
  const std::string_view bytes = reader.SOURCE.BYTES;
  const std::size_t columns = head.SLOTS.size();
  const VALUE_LINES lines = LINES_OF(bytes, reader.SOURCE, first);
  std::size_t bad = 0;
  std::vector<std::size_t> rows = ROWS_BY_LINES(lines, columns, bad);
  const std::size_t whole = lines.VALUES.size() / columns;
  const char* at = lines.VALUES[lines.STARTS[std::min(bad, lines.STARTS.size() - 2)]].FIRST;
  if (2 * rows.size() < whole) {
    rows.clear();
    for (std::size_t row = 0; row < whole; ++row) rows.push_back(row * columns);
    at = lines.VALUES.back().FIRST;
  }
  reader.SOURCE.FOUND.NOTE(UNEVEN_LOOP, at, head.FIRST_NAME);
  block.VALUES.resize(loop.FIRST);
  for (std::size_t row : rows)
    for (std::size_t column = 0; column < columns; ++column)
      if (head.SLOTS[column] >= 0) block.VALUES.push_back(lines.VALUES[row + column]);
  loop.ROWS = static_cast<int>(rows.size());
}

void READ_LOOP(READER& reader, BLOCK& block) {
  FAULTS& found = reader.SOURCE.FOUND;
  const std::string_view word = reader.AHEAD_TEXT;
  STEP(reader);
  if (reader.AHEAD != TOKEN::NAME) return found.NOTE(LOOP_WITHOUT_NAMES, word.data(), {});
  LOOP loop;
  LOOP_HEAD& head = HEAD_IN_WORK();
  READ_HEAD(reader, block, loop, head);
  loop.FIRST = block.VALUES.size();
  loop.STRIDE = static_cast<std::size_t>(head.KEPT);
  if (!IS_VALUE(reader.AHEAD)) {
    found.NOTE(LOOP_WITHOUT_VALUES, head.FIRST_NAME.data(), head.FIRST_NAME);
  } else {
    const std::size_t first = reader.SOURCE.START;
    const std::size_t columns = head.SLOTS.size();
    const std::size_t count = READ_VALUES(reader, block, head);
    loop.ROWS = static_cast<int>(count / columns);
    if (count % columns != 0) READ_UNEVEN(reader, block, head, loop, first);
  }
  if (head.KEPT > 0) block.LOOPS.push_back(loop);
}

// ---- a block ----

void CLEAR_BLOCK(BLOCK& block) {
  block.NAME = {};
  block.ITEMS.clear();
  block.LOOPS.clear();
  block.VALUES.clear();
  block.PLACES.fill(PLACE{});
  block.FOUND = FAULTS{};
}

// A frame, which is no part of the structure, up to its end.
void PASS_FRAME(READER& reader) {
  const std::string_view name = reader.AHEAD_TEXT;
  STEP(reader);
  while (reader.AHEAD != TOKEN::SAVE || !reader.AHEAD_TEXT.empty()) {
    if (reader.AHEAD == TOKEN::DATA || reader.AHEAD == TOKEN::GLOBAL || reader.AHEAD == TOKEN::END)
      return reader.SOURCE.FOUND.NOTE(OPEN_FRAME, name.data(), name);
    STEP(reader);
  }
  STEP(reader);
}

void READ_CONTENTS(READER& reader, BLOCK& block) {
  while (true) switch (reader.AHEAD) {
      case TOKEN::DATA:
      case TOKEN::GLOBAL:
      case TOKEN::END:
        return;
      case TOKEN::NAME:
        READ_ITEM(reader, block);
        break;
      case TOKEN::LOOP:
        READ_LOOP(reader, block);
        break;
      case TOKEN::SAVE:
        if (reader.AHEAD_TEXT.empty())
          PASS_WORD(reader, RESERVED_WORD);
        else
          PASS_FRAME(reader);
        break;
      case TOKEN::STOP:
        PASS_WORD(reader, RESERVED_WORD);
        break;
      default:
        PASS_WORD(reader, block.NAMELESS ? NO_BLOCK : STRAY_WORD);
    }
}

}  // namespace

READER READER_OF(std::string_view bytes) {
  READER reader{TOKENS_OF(bytes), TOKEN::END, {}};
  STEP(reader);
  return reader;
}

bool NEXT_BLOCK(READER& reader, BLOCK& block) {
  CLEAR_BLOCK(block);
  if (reader.AHEAD == TOKEN::END) return false;
  const char* const bytes = reader.SOURCE.BYTES.data();
  block.AT = bytes + reader.SOURCE.START;
  block.NAMELESS = reader.AHEAD != TOKEN::DATA && reader.AHEAD != TOKEN::GLOBAL;
  if (block.NAMELESS) {
    if (!IS_VALUE(reader.AHEAD))  // values are told one by one
      reader.SOURCE.FOUND.NOTE(NO_BLOCK, block.AT, reader.AHEAD_TEXT);
  } else {
    block.NAME = reader.AHEAD == TOKEN::DATA ? reader.AHEAD_TEXT : "global";
    STEP(reader);
  }
  READ_CONTENTS(reader, block);
  block.END = bytes + reader.SOURCE.START;
  block.FOUND = reader.SOURCE.FOUND;
  reader.SOURCE.FOUND = FAULTS{};
  return true;
}

COLUMN COLUMN_OF(const BLOCK& block, int name) {
  const PLACE& place = block.PLACES[static_cast<std::size_t>(name)];
  if (place.SLOT < 0) return {};
  const auto slot = static_cast<std::size_t>(place.SLOT);
  if (place.LOOP < 0) return {&block.ITEMS[slot].VALUE_, 0, 1, -1};
  const LOOP& loop = block.LOOPS[static_cast<std::size_t>(place.LOOP)];
  if (loop.ROWS == 0) return {nullptr, loop.STRIDE, 0, place.LOOP};
  return {block.VALUES.data() + loop.FIRST + slot, loop.STRIDE, loop.ROWS, place.LOOP};
}

COLUMN COLUMN_OF(const BLOCK& block, FIELD field, int loop) {
  const NAME_RANGE names = NAMES_OF(field);
  for (int name = names.FIRST; name < names.END; ++name) {
    const PLACE& place = block.PLACES[static_cast<std::size_t>(name)];
    if (place.SLOT >= 0 && place.LOOP == loop) return COLUMN_OF(block, name);
  }
  return {};
}

PLACE PLACE_OF(const BLOCK& block, FIELD field) {
  const NAME_RANGE names = NAMES_OF(field);
  for (int name = names.FIRST; name < names.END; ++name)
    if (block.PLACES[static_cast<std::size_t>(name)].SLOT >= 0)
      return block.PLACES[static_cast<std::size_t>(name)];
  return {};
}

}  // namespace KVA_CIFFULL
