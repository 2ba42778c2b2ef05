// Lines, numbers, texts and loops of a CIF: how an item is laid out, whatever it means.
#include "cifcode/cif_code_new/writer.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/files.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CIFNEW {

using namespace KVA_UTILITIES;

namespace {

constexpr int value_column = 40;

// The name, and the value at its column; one blank behind a name that reaches there.
std::string NAME_AND_VALUE(std::string_view name, std::string_view value) {
  std::string line = TRIM(name);
  if (LENTRIM(line) < value_column - 1)
    PUT_AT(line, value_column, value);
  else
    line += " " + std::string(value);
  return line;
}

std::string WITHOUT_CONTROL_CHARACTERS(std::string_view text) {
  std::string clean(text);
  for (char& c : clean)
    if (static_cast<unsigned char>(c) < ' ') c = ' ';
  return clean;
}

std::vector<std::string> PIECES(std::string_view text) {
  std::vector<std::string> pieces;
  std::size_t start = 0;
  while (true) {
    const std::size_t bar = text.find('|', start);
    pieces.emplace_back(TRIM(text.substr(start, bar - start)));
    if (bar == std::string_view::npos) break;
    start = bar + 1;
  }
  return pieces;
}

// A text between lines that hold only ";". A piece that begins with ";" would end it, also with
// blanks before, since our own reader left-adjusts all lines.
void WRITE_TEXT_FIELD(std::string_view name, std::string_view text, int unit) {
  WRITE_CIF_LINE(TRIM(name), unit);
  WRITE_CIF_LINE(";", unit);
  for (const std::string& piece : PIECES(text))
    WRITE_CIF_LINE(LEFT_ADJUST(piece).starts_with(';') ? ">" + piece : piece, unit);
  WRITE_CIF_LINE(";", unit);
}

}  // namespace

namespace {

void NOTE_FAILURE(bool written) {
  if (written) return;
  ERR_KVACIF = true;
  ERR_KVACIF_MESS = "Problem in writing to cif file, check file contents carefully";
}

}  // namespace

void WRITE_CIF_LINE(std::string_view line, int unit) {
  NOTE_FAILURE(WRITE_UNIT(unit, line));
}

void WRITE_CIF_END(int unit) {
  NOTE_FAILURE(FLUSH_UNIT(unit));
}

void WRITE_CIF_LOOP_HEAD(const std::vector<std::string>& names, int unit) {
  WRITE_CIF_LINE(" ", unit);
  WRITE_CIF_LINE("loop_", unit);
  for (const std::string& name : names) WRITE_CIF_LINE("    " + name, unit);
}

void ADD_CIF_ROW(std::vector<std::string> row, ALIGNED_ROWS& rows) {
  for (std::string& cell : row)
    if (LENTRIM(cell) == 0) cell = ".";
  if (!row.empty() && row[0].starts_with('?')) row[0] = IN_QUOTES(row[0]);
  ADD_ROW(row, rows);
}

void WRITE_CIF_ROWS(const std::vector<std::vector<std::string>>& rows, int unit) {
  ALIGNED_ROWS aligned;
  for (const std::vector<std::string>& row : rows) ADD_CIF_ROW(row, aligned);
  for (std::size_t k = 0; k < rows.size(); ++k) WRITE_CIF_LINE(ALIGNED_LINE(aligned, k), unit);
}

void WRITE_CIF_VALUE(std::string_view name, float value, float esd, int unit) {
  WRITE_CIF_LINE(NAME_AND_VALUE(name, CIF_NUMBER(value, esd)), unit);
}

void WRITE_CIF_TEXT(std::string_view name, std::string_view text, int unit) {
  const std::string value = LEFT_ADJUST(WITHOUT_CONTROL_CHARACTERS(text));
  if (value.empty()) return WRITE_CIF_LINE(NAME_AND_VALUE(name, "?"), unit);
  const bool quote_inside = value.find("' ") != std::string::npos;
  if (value.find('|') != std::string::npos || quote_inside || IS_RESERVED(value))
    return WRITE_TEXT_FIELD(name, value, unit);
  if (value.find(' ') != std::string::npos)
    return WRITE_CIF_LINE(NAME_AND_VALUE(name, "'" + value + "'"), unit);
  WRITE_CIF_LINE(NAME_AND_VALUE(name, value), unit);
}

void WRITE_CIF_CELL(const XTAL::CRYSTAL_CELL& cell, int unit) {
  constexpr std::array<std::string_view, 3> lengths{"_cell_length_a", "_cell_length_b",
                                                    "_cell_length_c"};
  constexpr std::array<std::string_view, 3> angles{"_cell_angle_alpha", "_cell_angle_beta",
                                                   "_cell_angle_gamma"};
  for (std::size_t k = 0; k < 3; ++k)
    WRITE_CIF_VALUE(lengths[k], cell.CELL[k], cell.CELL_STD[k], unit);
  for (std::size_t k = 0; k < 3; ++k)
    WRITE_CIF_VALUE(angles[k], cell.ANG[k], cell.ANG_STD[k], unit);
  WRITE_CIF_VALUE("_cell_volume", cell.CELLVOL, cell.STDVOL, unit);
}

void WRITE_CIF_AUDIT(std::string_view method, int unit) {
  WRITE_CIF_LINE(" ", unit);
  WRITE_CIF_LINE("_audit_creation_method   '" + TRIM(method) + "'", unit);
  WRITE_CIF_LINE("_audit_creation_date    " + DATE_ISO(), unit);
}

}  // namespace KVA_CIFNEW
