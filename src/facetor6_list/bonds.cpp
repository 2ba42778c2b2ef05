// The bond table in its forms: plain, with esds, rigid-bond corrected, displacements along bonds.
#include <array>
#include <span>

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/bond_reports.h"
#include "src/facetor6_list/bond_tables.h"
#include "src/facetor6_list/list_parts.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

// ---- pieces shared with the valence table ----

std::string LIMITS_LINE() {
  return "     BETWEEN " + REAL_AT_LEAST(LIMITS_OF_BONDS.DMIN, 5, 2) + " AND " +
         REAL_AT_LEAST(LIMITS_OF_BONDS.DMAX, 5, 2) + " ANGSTROM";
}

REPORT LIGAND_REPORT(int i, std::string_view quantity, std::string_view title, bool with_esds) {
  REPORT report;
  report.QUANTITY = quantity;
  report.OF = FEATURES::BONDS;
  report.CENTRE = i;
  report.WITH_ESDS = with_esds;
  report.SHOW_CODES = RUN.LIST_SYMCODES;
  report.IS_TABLE = REFERENCE().NBONDS(i) > 0;
  if (report.IS_TABLE)
    report.TITLE = {"", "", TABLE_TITLE(title, i), LIMITS_LINE()};
  else
    report.TITLE = {
        "", "", "     NO BONDS FOUND FROM CENTRAL ATOM " + REFERENCE().ATOM(i).LAB + LIMITS_LINE()};
  return report;
}

void ADD_LIGAND_COLUMNS(REPORT& report, std::string_view name_end, std::string_view unit,
                        bool has_esd) {
  constexpr int label_length = 6;
  const int i = report.CENTRE;
  for (int m = 1; m <= REFERENCE().NBONDS(i); ++m) {
    const std::string label = LIGAND_LABEL(i, m);
    REPORT_COLUMN column = VALUE_COLUMN(m, report.WITH_ESDS);
    column.NAME = REFERENCE().ATOM(i).LAB + "-" + label + "[" + INTEGER_COLUMNS(m) + "]" +
                  std::string(name_end);
    column.UNIT = unit;
    column.CODES = {LIGAND_CODE(i, m)};
    column.LIGAND = m;
    column.HAS_ESD = has_esd;
    column.DECIMALS = value_decimals;
    column.HEAD = FIRST_CHARACTERS(label, label_length);
    report.COLUMNS.push_back(column);
  }
}

// ---- forms of the table ----

namespace {

std::string_view TITLE_WORDS(BOND_FORM form) {
  switch (form) {
    case BOND_FORM::SRB:
      return "     SRB-CORRECTED BOND LENGTHS FROM CENTRAL ATOM ";
    case BOND_FORM::DISPLACEMENTS:
      return "     THERMAL DISPLACEMENTS ALONG BONDS OF CENTRAL ATOM ";
    default:
      return "     BONDS FROM CENTRAL ATOM ";
  }
}

std::string_view QUANTITY_OF(BOND_FORM form) {
  switch (form) {
    case BOND_FORM::SRB:
      return "rigid";
    case BOND_FORM::DISPLACEMENTS:
      return "displace";
    default:
      return "bond";
  }
}

std::string_view NAME_END(BOND_FORM form) {
  switch (form) {
    case BOND_FORM::SRB:
      return "_srb";
    case BOND_FORM::DISPLACEMENTS:
      return "_displ";
    default:
      return "";
  }
}

// Coordinations with elongation and angle variance.
bool HAS_DISTORTION(int n) {
  return n == 3 || n == 4 || n == 6;
}

// The columns behind those of the ligands. HEAD_OFFSET counts from the first of their heads.
struct END_COLUMN_TYPE {
  std::string_view NAME;
  std::string_view UNIT;
  std::string_view HEAD;
  int HEAD_OFFSET;
  int WIDTH;
  int DECIMALS;
  bool HAS_ESD;
};

constexpr std::array<END_COLUMN_TYPE, 5> distorted_end{{{"N", "", "N", 0, 3, 0, false},
                                                        {"mean", "A", "AVERAGE", 2, 8, 4, false},
                                                        {"QE", "", "QE", 11, 8, 4, false},
                                                        {"AV", "deg^2", "AV", 20, 8, 3, false},
                                                        {"V", "A^3", "VOLUME", 27, 8, 3, true}}};
constexpr std::array<END_COLUMN_TYPE, 3> other_end{{{"N", "", "N", 0, 3, 0, false},
                                                    {"mean", "A", "AVERAGE", 2, 8, 4, false},
                                                    {"V", "A^3", "VOLUME", 11, 8, 3, true}}};
constexpr std::array<END_COLUMN_TYPE, 5> srb_end{{{"N", "", "N", 0, 3, 0, false},
                                                  {"mean_srb", "A", "SRB AVE", 2, 8, 4, false},
                                                  {"mean", "A", "RAW AVE", 10, 8, 4, false},
                                                  {"V_srb", "A^3", "SRBVOL", 19, 8, 4, false},
                                                  {"V", "A^3", "RAWVOL", 27, 8, 4, false}}};
constexpr std::array<END_COLUMN_TYPE, 3> displacement_end{
    {{"N", "", "N", 0, 3, 0, false},
     {"mean_displ", "A", "AVERAGE", 2, 8, 4, false},
     {"mean", "A", "", 0, 8, 4, false}}};

std::span<const END_COLUMN_TYPE> END_OF(BOND_FORM form, int n) {
  switch (form) {
    case BOND_FORM::SRB:
      return srb_end;
    case BOND_FORM::DISPLACEMENTS:
      return displacement_end;
    default:
      return HAS_DISTORTION(n) ? std::span<const END_COLUMN_TYPE>(distorted_end) : other_end;
  }
}

void ADD_END_COLUMNS(REPORT& report, BOND_FORM form) {
  const int n = REFERENCE().NBONDS(report.CENTRE);
  // The heads begin so many columns behind where the next label would stand.
  const int head_offset = form == BOND_FORM::LENGTHS ? 1 : 2;
  const int first_head = LABEL_COLUMN(n + 1, report.WITH_ESDS) + head_offset;
  int at = END_COLUMN(n, report.WITH_ESDS);
  for (const END_COLUMN_TYPE& end : END_OF(form, n)) {
    REPORT_COLUMN column;
    column.NAME = REFERENCE().ATOM(report.CENTRE).LAB + "_" + std::string(end.NAME);
    column.UNIT = end.UNIT;
    column.HAS_ESD = end.HAS_ESD;
    column.IN_SHEET = form == BOND_FORM::LENGTHS;
    column.DECIMALS = end.DECIMALS;
    column.AT = at;
    column.WIDTH = report.WITH_ESDS && end.HAS_ESD ? any_width : end.WIDTH;
    column.HEAD = end.HEAD;
    column.HEAD_AT = first_head + end.HEAD_OFFSET;
    report.COLUMNS.push_back(column);
    at += end.WIDTH;
  }
}

// ---- values of a row ----

// Values that were shown, for their mean.
struct SHOWN {
  int COUNT = 0;
  float SUM = 0.0f;

  void ADD(float value) {
    ++COUNT;
    SUM += value;
  }
  float MEAN() const { return COUNT > 0 ? SUM / static_cast<float>(COUNT) : 0.0f; }
};

// Value of bond m; a displacement is one of the centre and needs no partner.
REPORT_CELL BOND_CELL(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int m, BOND_FORM form) {
  switch (form) {
    case BOND_FORM::SRB: {
      const float corrected = phase.BONDS(i, m, BOND_LENGTH_SRB);
      return corrected > 0.0f ? REAL_CELL(corrected) : NO_VALUE_CELL();
    }
    case BOND_FORM::DISPLACEMENTS:
      return REAL_CELL(phase.BONDS(i, m, BOND_DISPL_CENTRE));
    default: {
      const float length = phase.BONDS(i, m, BOND_LENGTH);
      return length > shortest_shown ? REAL_CELL(length, phase.BONDS(i, m, BOND_LENGTH_STD))
                                     : NO_VALUE_CELL();
    }
  }
}

// ---- end of a row ----

REPORT_CELL POLYHEDRON_CELL(const CRYSTAL_STRUCTURE_TYPE& phase, int i, POLYHEDRON_COLUMN column) {
  return REAL_CELL(phase.POLYHEDRON(i, column));
}

// Coordination, mean, distortion and volume; the last two only where the coordination is the
// reference's.
void ADD_POLYHEDRON_END(const CRYSTAL_STRUCTURE_TYPE& phase, int i,
                        std::vector<REPORT_CELL>& cells) {
  const int n = phase.NBONDS(i);
  cells.push_back(WHOLE_CELL(n));
  cells.push_back(POLYHEDRON_CELL(phase, i, POLY_MEAN_LENGTH));
  if (n != REFERENCE().NBONDS(i)) return;
  if (HAS_DISTORTION(n)) {
    cells.push_back(POLYHEDRON_CELL(phase, i, POLY_ELONGATION));
    cells.push_back(POLYHEDRON_CELL(phase, i, POLY_VARIANCE));
  }
  cells.push_back(
      REAL_CELL(phase.POLYHEDRON(i, POLY_VOLUME), phase.POLYHEDRON(i, POLY_VOLUME_STD)));
}

// Number and mean of the values that are shown, and what they compare with.
void ADD_MEAN_END(const CRYSTAL_STRUCTURE_TYPE& phase, int i, BOND_FORM form, const SHOWN& shown,
                  std::vector<REPORT_CELL>& cells) {
  const bool srb = form == BOND_FORM::SRB;
  if (srb && shown.COUNT == 0) return;
  cells.push_back(WHOLE_CELL(shown.COUNT));
  cells.push_back(REAL_CELL(shown.MEAN()));
  cells.push_back(POLYHEDRON_CELL(phase, i, POLY_MEAN_LENGTH));
  if (!srb) return;
  cells.push_back(POLYHEDRON_CELL(phase, i, POLY_VOLUME_SRB));
  cells.push_back(POLYHEDRON_CELL(phase, i, POLY_VOLUME));
}

void ADD_BOND_CELLS(int i, BOND_FORM form, REPORT_ROW& row) {
  const CRYSTAL_STRUCTURE_TYPE& phase = PHASE(row.HEAD.BLOCK);
  SHOWN shown;
  for (int m = 1; m <= REFERENCE().NBONDS(i); ++m) {
    row.CELLS.push_back(BOND_CELL(phase, i, m, form));
    if (row.CELLS.back().KIND == CELL_KIND::REAL) shown.ADD(row.CELLS.back().VALUE);
  }
  if (form == BOND_FORM::LENGTHS)
    ADD_POLYHEDRON_END(phase, i, row.CELLS);
  else
    ADD_MEAN_END(phase, i, form, shown, row.CELLS);
}

}  // namespace

REPORT BOND_REPORT(int i, BOND_FORM form, bool with_esds, const std::vector<int>& places) {
  const bool lengths = form == BOND_FORM::LENGTHS;
  REPORT report = LIGAND_REPORT(i, QUANTITY_OF(form), TITLE_WORDS(form), with_esds && lengths);
  if (!report.IS_TABLE) return report;
  if (form == BOND_FORM::DISPLACEMENTS) report.OF = FEATURES::DIRECTED_BONDS;
  ADD_LIGAND_COLUMNS(report, NAME_END(form), "A", lengths);
  ADD_END_COLUMNS(report, form);
  for (int place : places) {
    REPORT_ROW row = START_CENTRE_ROW(place, i, report.COLUMNS.size());
    if (row.SENTENCE.empty()) ADD_BOND_CELLS(i, form, row);
    report.ROWS.push_back(std::move(row));
  }
  return report;
}

}  // namespace FACETOR_LIST
