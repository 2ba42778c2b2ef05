// A block to a structure: numbers, cell, conditions, and the order of the reading.
#include "cifcode/cif_full/structure.h"

#include <algorithm>  // for find_if

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CIFFULL {

using namespace KVA_UTILITIES;

// ---- numbers ----

namespace {

// "1/3", "-2/3": some write special positions so.
bool READ_FRACTION(std::string_view text, VALUE_STD& number) {
  const std::size_t slash = text.find('/');
  if (slash == std::string_view::npos) return false;
  NUMBER above;
  NUMBER below;
  if (!GETNUM(text.substr(0, slash), above) || !GETNUM(text.substr(slash + 1), below)) return false;
  if (!above.WHOLE || !below.WHOLE || below.IVAL <= 0) return false;
  number = {above.VAL / below.VAL, 0.0f};
  return true;
}

}  // namespace

NUMBER_FOUND READ_NUMBER(std::string_view text, VALUE_STD& number) {
  NUMBER_STD read;
  const bool whole = GETNUM_STD(text, read);
  number = whole ? VALUE_STD{read.VALUE.VAL, read.STD} : VALUE_STD{};
  if (whole || READ_FRACTION(text, number)) return NUMBER_FOUND::YES;
  const std::size_t bracket = text.find('(');
  if (bracket == std::string_view::npos || !GETNUM_STD(text.substr(0, bracket), read))
    return NUMBER_FOUND::NONE;
  const std::string_view rest = text.substr(bracket);
  if (rest.find_first_of("eEdD") != std::string_view::npos) return NUMBER_FOUND::NONE;  // 2.5(1)e6
  number.VALUE = read.VALUE.VAL;
  const bool harmless = rest == "()" || rest == "(?)" || rest == "(.)";
  return harmless ? NUMBER_FOUND::YES : NUMBER_FOUND::WITH_BROKEN_ESD;
}

namespace {

// Line ends and tabs in a text between ; lines count as blanks.
std::string_view WITHOUT_BLANKS_AROUND(std::string_view text) {
  const auto is_blank = [](char c) { return static_cast<unsigned char>(c) <= ' '; };
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  return text;
}

// The text of a value that says something, or blank.
std::string_view SAID(const VALUE& value) {
  if (IS_NULL(value)) return {};
  const std::string_view text = WITHOUT_BLANKS_AROUND(value.TEXT());
  return text == "?" || text == "." ? std::string_view() : text;
}

}  // namespace

namespace {

// Row of NAMES that says something first, for a field; NO_NAME without one.
int FIRST_NAME(const BLOCK& block, FIELD field) {
  const NAME_RANGE names = NAMES_OF(field);
  for (int name = names.FIRST; name < names.END; ++name) {
    const COLUMN column = COLUMN_OF(block, name);
    if (column.ROWS > 0 && !SAID(column(1)).empty()) return name;
  }
  return NO_NAME;
}

// Words behind the value of a name, which stand there for items alone.
std::string_view WORDS_BEHIND_NAME(const BLOCK& block, int name) {
  const PLACE& place = block.PLACES[static_cast<std::size_t>(name)];
  if (place.LOOP >= 0 || place.SLOT < 0) return {};
  return block.ITEMS[static_cast<std::size_t>(place.SLOT)].BEHIND;
}

}  // namespace

std::string_view FIRST_TEXT(const BLOCK& block, FIELD field) {
  const int name = FIRST_NAME(block, field);
  return name == NO_NAME ? std::string_view() : SAID(COLUMN_OF(block, name)(1));
}

std::string_view WORDS_BEHIND(const BLOCK& block, FIELD field) {
  const int name = FIRST_NAME(block, field);
  return name == NO_NAME ? std::string_view() : WORDS_BEHIND_NAME(block, name);
}

namespace {

// ---- cell ----

// The six parameters. False when one is absent or cannot be read, or when they make no cell.
bool READ_CELL(const BLOCK& block, STRUCTURE& structure) {
  constexpr std::size_t lengths = 3;
  VECTOR6 values{};
  VECTOR6 stds{};
  bool all_found = true;
  for (std::size_t k = 0; k < values.size(); ++k) {
    VALUE_STD number;
    const std::string_view text = FIRST_TEXT(block, static_cast<FIELD>(CELL_LENGTH_A + k));
    const NUMBER_FOUND found = READ_NUMBER(text, number);
    values[k] = number.VALUE;
    stds[k] = number.STD;
    const bool right_sign = k < lengths || number.VALUE > 0.0f;  // 0 would be taken for 90 degrees
    if (found != NUMBER_FOUND::NONE && right_sign) continue;
    all_found = false;
    if (structure.MISSING.empty()) structure.MISSING = k < lengths ? "length" : "angle";
  }
  if (!all_found) return false;
  XTAL::SET_CELL_RECORD({values[0], values[1], values[2]}, {values[3], values[4], values[5]},
                        structure.CELL, " ", {stds[0], stds[1], stds[2]},
                        {stds[3], stds[4], stds[5]});
  return XTAL::IS_SENSIBLE(structure.CELL);
}

// ---- temperature and pressure ----

struct CONDITION {
  FIELD ITEM;
  std::string_view WORD;
  std::array<std::string_view, 3> UNITS;  // its own, in lower case
};
constexpr CONDITION temperature{TEMPERATURE_K, "temperature", {"k", "kelvin", "kelvins"}};
constexpr CONDITION pressure{PRESSURE_KPA, "pressure", {"kpa", "kilopascal", "kilopascals"}};

// The number of a text such as 150, 150K or 150 K, and what stands behind it.
bool READ_WITH_UNIT(std::string_view text, VALUE_STD& number, std::string_view& unit) {
  const std::size_t end = std::min(text.find_first_not_of("0123456789.+-()eE"), text.size());
  unit = WITHOUT_BLANKS_AROUND(text.substr(end));
  return READ_NUMBER(WITHOUT_BLANKS_AROUND(text.substr(0, end)), number) != NUMBER_FOUND::NONE;
}

bool IS_OWN_UNIT(const CONDITION& condition, std::string_view unit) {
  const std::string lower = L_CASE(unit);
  return std::find(condition.UNITS.begin(), condition.UNITS.end(), lower) != condition.UNITS.end();
}

// The first value of the condition that is a number in its own unit. One before it that is none is
// told.
VALUE_STD READ_CONDITION(const BLOCK& block, const CONDITION& condition, STRUCTURE& structure) {
  const NAME_RANGE names = NAMES_OF(condition.ITEM);
  VALUE_STD read;
  bool found = false;
  std::string unread;
  for (int name = names.FIRST; name < names.END && !found; ++name) {
    const COLUMN column = COLUMN_OF(block, name);
    if (column.ROWS == 0) continue;
    const std::string_view text = SAID(column(1));
    if (text.empty()) continue;
    const std::string_view behind = WORDS_BEHIND_NAME(block, name);
    VALUE_STD number;
    std::string_view unit;
    const bool is_number = READ_WITH_UNIT(text, number, unit);
    if (unit.empty()) unit = behind;
    found = is_number && (unit.empty() || IS_OWN_UNIT(condition, unit));
    if (found)
      read = number;
    else if (unread.empty())
      unread = std::string(text) + (behind.empty() ? "" : " ") + std::string(behind);
  }
  if (!unread.empty())
    structure.TELLINGS.push_back("The " + std::string(condition.WORD) + " " + unread +
                                 " is not read: it is no number in " +
                                 (condition.ITEM == TEMPERATURE_K ? "K" : "kPa"));
  return read;
}

void READ_CONDITIONS(const BLOCK& block, STRUCTURE& structure) {
  constexpr float gpa_per_kpa = 0.000001f;
  structure.T = READ_CONDITION(block, temperature, structure);
  const VALUE_STD kpa = READ_CONDITION(block, pressure, structure);
  structure.P = {kpa.VALUE * gpa_per_kpa, kpa.STD * gpa_per_kpa};
}

// ---- faults of syntax ----

std::string EXPECTED(FAULT_KIND kind, const std::string& text) {
  switch (kind) {
    case NO_BLOCK:
      return "data_ was expected before " + text;
    case STRAY_WORD:
      return "a data name was expected, not " + text;
    case NO_VALUE:
      return "a value was expected behind " + text;
    case LOOP_WITHOUT_NAMES:
      return "a data name was expected behind loop_";
    case LOOP_WITHOUT_VALUES:
      return "values were expected behind the names of the loop of " + text;
    case UNEVEN_LOOP:
      return "a value for each name was expected in this row of the loop of " + text;
    case OPEN_QUOTE:
      return "a closing " + text + " was expected";
    case OPEN_FIELD:
      return "a line that begins with ; was expected behind the text that begins here";
    case OPEN_LIST:
      return text + " was expected behind the list that begins here";
    case OPEN_FRAME:
      return "save_ was expected behind the frame " + text;
    case NAME_TWICE:
      return text + " was expected once: its first values are read";
    case RESERVED_WORD:
    case FAULT_KINDS:
      return "a data name was expected, not a reserved word";
  }
  return "";
}

void TELL_FAULTS(const STRUCTURE_READER& reader, STRUCTURE& structure) {
  constexpr int shown = 40;  // characters of a word of the file
  for (int kind = 0; kind < FAULT_KINDS; ++kind) {
    const FAULT& fault = reader.TREE.FOUND.KINDS[static_cast<std::size_t>(kind)];
    if (fault.COUNT == 0) continue;
    const std::string text =
        CUT_TEXT(fault.TEXT.substr(0, fault.TEXT.find_first_of("\r\n")), shown);
    std::string telling = "Line " +
                          INTEGER_COLUMNS(LINE_NUMBER(reader.SOURCE.SOURCE.BYTES, fault.AT)) +
                          ": " + EXPECTED(static_cast<FAULT_KIND>(kind), text);
    if (fault.COUNT > 1) telling += " (the first of " + INTEGER_COLUMNS(fault.COUNT) + ")";
    structure.TELLINGS.push_back(telling);
  }
}

// ---- a block ----

bool HAS_SITES(const BLOCK& block) {
  return PLACE_OF(block, SITE_X).SLOT >= 0;
}

void CLEAR_STRUCTURE(STRUCTURE& structure) {
  structure.STATUS = BLOCK_STATUS::PASSED_OVER;
  structure.MISSING = {};
  structure.VOLUME = structure.T = structure.P = VALUE_STD{};
  structure.SPG = nullptr;
  structure.ATOMS.CLEAR();
  structure.TELLINGS.clear();
}

// A group of a setting that no table has is called unknown.
std::string OPERATOR_WORDS(const XTAL::SPACE_GROUP& group) {
  return group.NUMSPG > 0 ? "The operators of " + group.SPG_SYMB : "The operators";
}

void READ_STRUCTURE(STRUCTURE_READER& reader, STRUCTURE& structure) {
  const BLOCK& block = reader.TREE;
  const bool has_cell = READ_CELL(block, structure);
  READ_SITES(block, reader.ELEMENTS, structure);
  if (structure.ATOMS.COUNT() == 0) return;  // nothing was told
  structure.STATUS = has_cell ? BLOCK_STATUS::READ : BLOCK_STATUS::NO_CELL;
  if (!has_cell) return;
  READ_NUMBER(FIRST_TEXT(block, CELL_VOLUME), structure.VOLUME);
  READ_CONDITIONS(block, structure);
  structure.SPG = &READ_SYMMETRY(block, structure.CELL, reader.LAST_SYMMETRY);
  if (!structure.SPG->TELLING.empty()) structure.TELLINGS.push_back(structure.SPG->TELLING);
  if (!METRIC_FITS(structure.SPG->GROUP, structure.CELL))
    structure.TELLINGS.push_back(OPERATOR_WORDS(structure.SPG->GROUP) +
                                 " do not fit the cell: one of the two is wrong");
}

}  // namespace

STRUCTURE_READER STRUCTURES_OF(std::string_view bytes) {
  STRUCTURE_READER reader;
  reader.SOURCE = READER_OF(bytes);
  return reader;
}

bool NEXT_STRUCTURE(STRUCTURE_READER& reader, STRUCTURE& structure) {
  CLEAR_STRUCTURE(structure);
  if (!NEXT_BLOCK(reader.SOURCE, reader.TREE)) return false;
  const BLOCK& block = reader.TREE;
  structure.TITLE = block.NAME;
  structure.BYTES = {block.AT, static_cast<std::size_t>(block.END - block.AT)};
  structure.HAS_MODES = PLACE_OF(block, MODE_ITEM).SLOT >= 0;
  TELL_FAULTS(reader, structure);
  if (HAS_SITES(block)) READ_STRUCTURE(reader, structure);
  return true;
}

}  // namespace KVA_CIFFULL
