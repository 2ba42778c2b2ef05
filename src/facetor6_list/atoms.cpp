// Site names and scattering factors, coordinates, and displacement parameters.
#include <algorithm>  // for max
#include <array>
#include <cmath>  // for abs
#include <span>
#include <utility>  // for move

#include "console_code/console/output.h"
#include "console_code/console/tables.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/atom_reports.h"
#include "src/facetor6_list/list_parts.h"
#include "src/kva_crystal_structures/atom_search.h"
#include "src/kva_crystal_structures/displacement.h"
#include "src/kva_crystal_structures/uncertainty.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

// ---- site names ----

namespace {

constexpr int names_per_line = 10;
constexpr int least_name_width = 8;

// Behind the name of an atom that is omitted or a duplicate.
std::string USE_MARK(int atom_use) {
  if (atom_use == ATOM_OMITTED) return "*";
  return atom_use < ATOM_OMITTED ? "!" : "";
}

std::string MARKED_NAME(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  return phase.ATOM(i).LAB + USE_MARK(phase.ATOM_USE(i));
}

// Columns that leave a blank behind every name.
int NAME_WIDTH(const CRYSTAL_STRUCTURE_TYPE& phase) {
  int width = least_name_width;
  for (int i = 1; i <= phase.NATOMS; ++i) {
    const std::string name = TRIM(MARKED_NAME(phase, i));
    while (FIRST_CHARACTERS(name, width - 1) != name) ++width;
  }
  return width;
}

bool HAS_MARKS(const CRYSTAL_STRUCTURE_TYPE& phase) {
  for (int i = 1; i <= phase.NATOMS; ++i)
    if (phase.ATOM_USE(i) != ATOM_USED) return true;
  return false;
}

// Names of the atoms of a block, ten a line, with their scattering factors below if wanted.
void WRITE_NAMES(const CRYSTAL_STRUCTURE_TYPE& phase, bool with_factors) {
  constexpr int names_at = 46;
  const int width = NAME_WIDTH(phase);
  for (int first = 1; first <= phase.NATOMS; first += names_per_line) {
    FIELD_LINE names{{1, 35, "Site name:"}};
    FIELD_LINE factors{{1, 27, "Scattering factor:"}};
    for (int i = first; i < std::min(first + names_per_line, phase.NATOMS + 1); ++i) {
      const int column = i - first + 2;
      const int at = names_at + (i - first) * width;
      names.push_back({column, at, TRIM(MARKED_NAME(phase, i))});
      factors.push_back({column, at, TRIM(phase.ATOM(i).SFACSYMB)});
    }
    std::vector<FIELD_LINE> table{std::move(names)};
    if (with_factors) table.push_back(std::move(factors));
    WRITE_TABLE(std::move(table), 2);
  }
}

// The listed place of one block, or all of them for block 0.
std::vector<int> PLACES_OF(int block) {
  std::vector<int> places;
  for (int place : LISTED_PLACES())
    if (block == 0 || ISORT(place) == block) places.push_back(place);
  return places;
}

// The starts of rows that belong to one table, each as a line.
std::vector<std::string> ROW_STARTS(const std::vector<int>& places) {
  std::vector<FIELD_LINE> table;
  for (int place : places) table.push_back(START_FIELDS(HEAD_OF_PLACE(place), false));
  SET_COLUMNS(table);
  std::vector<std::string> lines;
  for (const FIELD_LINE& line : table) lines.push_back(LINE_TEXT(line));
  return lines;
}

}  // namespace

void FACETOR_LIST_ATOMS(std::string_view option, int block) {
  const bool with_factors = INDEXALL(option, "SCAT") > 0;
  WRITE_OUT(with_factors ? "  Site names and scattering factors in each block, in input order"
                         : "  Site names in each block, in input order");
  const std::vector<int> places = PLACES_OF(block);
  const std::vector<std::string> starts = ROW_STARTS(places);
  bool marks = false;
  for (std::size_t k = 0; k < places.size(); ++k) {
    const CRYSTAL_STRUCTURE_TYPE& phase = PHASE(ISORT(places[k]));
    WRITE_OUT(AS_IT_IS(starts[k]));
    WRITE_NAMES(phase, with_factors);
    marks = marks || HAS_MARKS(phase);
  }
  if (!marks) return;
  WRITE_OUT("     *****Atoms marked with * are currently marked as omitted from calculations");
  WRITE_OUT("     *****Atoms marked with ! are duplicates of other atoms");
}

// ---- the atoms of a row ----

std::vector<MATCHED_ATOMS> MATCH_ATOMS(const std::vector<int>& of, const std::vector<int>& places) {
  std::vector<MATCHED_ATOMS> atoms(of.size());
  for (int place : places) {
    const ATOM_IMAGES images = IMAGES_OF(PHASE(ISORT(place)));
    for (std::size_t k = 0; k < of.size(); ++k)
      atoms[k].push_back({place, FIND_ATOM(images, REFERENCE().ATOM(of[k]).X, "OMIT")});
  }
  return atoms;
}

namespace {

// A column by its name, head and place in a table without esds and in one with them.
struct ATOM_COLUMN {
  std::string_view NAME;
  std::string_view HEAD;
  int DECIMALS;
  bool HAS_ESD;
  int AT;
  int WIDTH;
  int HEAD_AT;
  int ESD_AT;
  int ESD_WIDTH;
  int ESD_HEAD_AT;
};

REPORT_COLUMN& ADD_ATOM_COLUMN(REPORT& report, const ATOM_COLUMN& shown) {
  const bool esd = report.WITH_ESDS;
  REPORT_COLUMN column;
  column.NAME = REFERENCE().ATOM(report.CENTRE).LAB + "_" + std::string(shown.NAME);
  column.HAS_ESD = shown.HAS_ESD;
  column.DECIMALS = shown.DECIMALS;
  column.AT = esd ? shown.ESD_AT : shown.AT;
  column.WIDTH = esd ? shown.ESD_WIDTH : shown.WIDTH;
  column.HEAD = shown.HEAD;
  column.HEAD_AT = esd ? shown.ESD_HEAD_AT : shown.HEAD_AT;
  report.COLUMNS.push_back(column);
  return report.COLUMNS.back();
}

// Operator, label and scattering factor symbol; a field begins with its blank.
constexpr std::array<ATOM_COLUMN, 3> name_columns{
    {{"operator", "", 0, false, 45, 1, 0, 45, 1, 0},
     {"label", "SITE", 0, false, 46, 10, 47, 46, 10, 47},
     {"symbol", "ATOM", 0, false, 56, 7, 57, 56, 7, 57}}};

// The operator number stands beside the use digit while it has one digit in every row.
void ADD_NAME_COLUMNS(REPORT& report, const MATCHED_ATOMS& atoms) {
  constexpr int largest_digit = 9;
  for (const ATOM_COLUMN& shown : name_columns) ADD_ATOM_COLUMN(report, shown).IN_SHEET = false;
  bool one_digit = true;
  for (const MATCHED_ATOM& atom : atoms)
    one_digit = one_digit && atom.FOUND.OPERATOR <= largest_digit;
  report.COLUMNS.front().TOUCHES = one_digit;
}

void ADD_NAME_CELLS(const CRYSTAL_STRUCTURE_TYPE& phase, const FOUND_ATOM& found, REPORT_ROW& row) {
  constexpr int symbol_length = 4;
  const ATOM_TYPE& atom = phase.ATOM(found.ATOM);
  row.CELLS.push_back(WHOLE_CELL(found.OPERATOR));
  row.CELLS.push_back(TEXT_CELL(" " + atom.LAB));
  row.CELLS.push_back(TEXT_CELL(" (" + TEXT_COLUMNS(atom.SFACSYMB, symbol_length) + ")"));
}

// An empty report on atom i.
REPORT ATOM_REPORT(int i, std::string_view quantity, bool with_esds) {
  REPORT report;
  report.QUANTITY = quantity;
  report.CENTRE = i;
  report.WITH_ESDS = with_esds;
  report.IS_TABLE = true;
  return report;
}

}  // namespace

// ---- coordinates ----

namespace {

constexpr std::array<ATOM_COLUMN, 4> xyz_columns{
    {{"x", "X", 5, true, 63, 10, 66, 63, 13, 67},
     {"y", "Y", 5, true, 73, 10, 76, 76, 13, 80},
     {"z", "Z", 5, true, 83, 10, 86, 89, 13, 93},
     {"occ", "OCC", 3, true, 93, 6, 94, 102, 13, 106}}};

// Symbol and occupancy of the first and second atom that share the site.
constexpr std::array<ATOM_COLUMN, 4> duplicate_columns{
    {{"symbol_2", "", 0, false, 101, 5, 0, 117, 5, 0},
     {"occ_2", "ATOM OCC", 3, false, 106, 6, 102, 122, 6, 118},
     {"symbol_3", "", 0, false, 114, 5, 0, 130, 5, 0},
     {"occ_3", "ATOM OCC", 3, false, 119, 6, 115, 135, 6, 131}}};

// Most duplicates on the site in any block.
int MOST_DUPLICATES(const MATCHED_ATOMS& atoms) {
  int most = 0;
  for (const MATCHED_ATOM& atom : atoms) {
    const CRYSTAL_STRUCTURE_TYPE& phase = PHASE(ISORT(atom.PLACE));
    for (int slot = 1; atom.FOUND.ATOM > 0 && slot <= MAX_DUPLICATES; ++slot)
      if (phase.ATOM_DUP(atom.FOUND.ATOM, slot) > 0) most = std::max(most, slot);
  }
  return most;
}

// A row a place: what add makes of the atom that was found there, or, behind so many blanks, that
// there is none.
template <class ADD>
void ADD_ATOM_ROWS(REPORT& report, const MATCHED_ATOMS& atoms, std::size_t blanks, ADD add) {
  for (const auto& [place, found] : atoms) {
    REPORT_ROW row;
    row.HEAD = HEAD_OF_PLACE(place);
    if (found.ATOM > 0)
      add(found, row);
    else
      row.SENTENCE = std::string(blanks, ' ') + "*****No equivalent atom found";
    report.ROWS.push_back(std::move(row));
  }
}

void ADD_DUPLICATE_CELLS(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int slots, REPORT_ROW& row) {
  for (int slot = 1; slot <= slots; ++slot) {
    const int duplicate = phase.ATOM_DUP(i, slot);
    if (duplicate > 0) {
      row.CELLS.push_back(TEXT_CELL(" " + phase.ATOM(duplicate).SFACSYMB));
      row.CELLS.push_back(REAL_CELL(phase.ATOM(duplicate).OCC));
    } else {
      row.CELLS.insert(row.CELLS.end(), 2, REPORT_CELL{});
    }
  }
}

// A coordinate without an esd that is zero but for the rounding of the operators is zero.
REPORT_CELL COORDINATE_CELL(float x, float std) {
  constexpr float rounding = 0.000005f;  // half of the last decimal of the plain form
  const bool is_zero = !(std > 0.0f) && std::abs(x) < rounding;
  return REAL_CELL(is_zero ? 0.0f : x, std);
}

void ADD_XYZ_CELLS(const FOUND_ATOM& found, int duplicates, REPORT_ROW& row) {
  const CRYSTAL_STRUCTURE_TYPE& phase = PHASE(row.HEAD.BLOCK);
  ADD_NAME_CELLS(phase, found, row);
  const VECTOR3 stds = CALC_ESD_XYZ(phase, found.ATOM, found.OPERATOR);
  for (std::size_t k = 0; k < 3; ++k) row.CELLS.push_back(COORDINATE_CELL(found.X[k], stds[k]));
  row.CELLS.push_back(REAL_CELL(phase.ATOM(found.ATOM).OCC, phase.ATOM(found.ATOM).OCC_STD));
  ADD_DUPLICATE_CELLS(phase, found.ATOM, duplicates, row);
}

}  // namespace

REPORT XYZ_REPORT(int i, bool with_esds, const MATCHED_ATOMS& atoms) {
  REPORT report = ATOM_REPORT(i, "xyz", with_esds);
  report.TITLE = {"", "",
                  " ATOMS EQUIVALENT TO ATOM " + REFERENCE().ATOM(i).LAB + " IN REFERENCE BLOCK (" +
                      REFERENCE().BLOCK_TITLE + ")"};
  ADD_NAME_COLUMNS(report, atoms);
  for (const ATOM_COLUMN& shown : xyz_columns) ADD_ATOM_COLUMN(report, shown);
  const int duplicates = MOST_DUPLICATES(atoms);
  for (const ATOM_COLUMN& shown :
       std::span(duplicate_columns).first(2 * static_cast<std::size_t>(duplicates)))
    ADD_ATOM_COLUMN(report, shown).IN_SHEET = false;
  ADD_ATOM_ROWS(report, atoms, 9, [&](const FOUND_ATOM& found, REPORT_ROW& row) {
    ADD_XYZ_CELLS(found, duplicates, row);
  });
  return report;
}

// ---- displacement parameters ----

namespace {

constexpr std::array<ATOM_COLUMN, 8> u_columns{
    {{"U11", "U11", 5, true, 63, 10, 66, 63, 13, 67},
     {"U22", "U22", 5, true, 73, 10, 76, 76, 13, 80},
     {"U33", "U33", 5, true, 83, 10, 86, 89, 13, 93},
     {"U12", "U12", 5, true, 93, 10, 96, 102, 13, 106},
     {"U13", "U13", 5, true, 103, 10, 106, 115, 13, 119},
     {"U23", "U23", 5, true, 113, 10, 116, 128, 13, 132},
     {"Ueq", "Ueq", 4, false, 123, 7, 127, 141, 6, 143},
     {"Beq", "Beq", 3, false, 130, 7, 132, 147, 9, 153}}};
constexpr std::array<ATOM_COLUMN, 7> beta_columns{
    {{"b11", "b11", 5, true, 63, 10, 66, 63, 13, 67},
     {"b22", "b22", 5, true, 73, 10, 76, 76, 13, 80},
     {"b33", "b33", 5, true, 83, 10, 86, 89, 13, 93},
     {"b12", "b12", 5, true, 93, 10, 96, 102, 13, 106},
     {"b13", "b13", 5, true, 103, 10, 106, 115, 13, 119},
     {"b23", "b23", 5, true, 113, 10, 116, 128, 13, 132},
     {"Beq", "Beq", 3, false, 123, 7, 127, 141, 6, 143}}};
constexpr int ueq_esd_decimals = 3;  // beside a tensor with esds

void ADD_TENSOR_COLUMNS(REPORT& report, TENSOR_FORM form) {
  const bool beta = form == TENSOR_FORM::BETA;
  for (const ATOM_COLUMN& shown : beta ? std::span<const ATOM_COLUMN>(beta_columns)
                                       : std::span<const ATOM_COLUMN>(u_columns)) {
    REPORT_COLUMN& column = ADD_ATOM_COLUMN(report, shown);
    if (shown.NAME == "Ueq" && report.WITH_ESDS) column.DECIMALS = ueq_esd_decimals;
    if (shown.NAME == "Beq")
      column.IN_SHEET = false;
    else if (!beta)
      column.UNIT = "A^2";
  }
}

// The tensor of the atom's image.
TENSOR TENSOR_OF_IMAGE(const CRYSTAL_STRUCTURE_TYPE& phase, const FOUND_ATOM& found,
                       TENSOR_FORM form) {
  const TENSOR image{APPLYSO_BETA(phase.SPG.SYMOP(found.OPERATOR).ROT, phase.ATOM(found.ATOM).U),
                     CALC_ESD_BETA(phase, found.ATOM, found.OPERATOR)};
  return form == TENSOR_FORM::BETA ? image : TENSOR_AS_U(image, phase.CELL);
}

// Without a tensor an atom has at most the isotropic displacement, and without one it has none.
void ADD_TENSOR_CELLS(const FOUND_ATOM& found, TENSOR_FORM form, REPORT_ROW& row) {
  const CRYSTAL_STRUCTURE_TYPE& phase = PHASE(row.HEAD.BLOCK);
  const ATOM_TYPE& atom = phase.ATOM(found.ATOM);
  const bool has_tensor = EQUAL_TEXT(atom.THTYPE, "aniso");
  ADD_NAME_CELLS(phase, found, row);
  const auto add = [&](float value, float std = 0.0f) {
    const bool given = has_tensor || value != 0.0f;
    row.CELLS.push_back(given ? REAL_CELL(value, std) : NOT_GIVEN_CELL());
  };
  const TENSOR tensor = TENSOR_OF_IMAGE(phase, found, form);
  for (std::size_t c = 0; c < 6; ++c) add(tensor.VALUE[c], tensor.STD[c]);
  if (form == TENSOR_FORM::U) add(atom.UEQ);
  add(atom.BISO);
}

}  // namespace

REPORT ADP_REPORT(int i, TENSOR_FORM form, bool with_esds, const MATCHED_ATOMS& atoms) {
  REPORT report = ATOM_REPORT(i, "adps", with_esds);
  std::string title = " ADPs TRANSFORMED TO POSITION EQUIVALENT TO ATOM IN REFERENCE BLOCK (" +
                      REFERENCE().BLOCK_TITLE + ") AT";
  for (float x : REFERENCE().ATOM(i).X) title += " " + REAL_AT_LEAST(x, 6, 3);
  report.TITLE = {"", "", title};
  ADD_NAME_COLUMNS(report, atoms);
  ADD_TENSOR_COLUMNS(report, form);
  ADD_ATOM_ROWS(report, atoms, 8, [&](const FOUND_ATOM& found, REPORT_ROW& row) {
    ADD_TENSOR_CELLS(found, form, row);
  });
  return report;
}

}  // namespace FACETOR_LIST
