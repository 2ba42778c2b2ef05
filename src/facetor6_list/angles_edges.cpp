// Angles around a centre and edges of its polyhedron: a column for each pair of ligands.
#include "console_code/kva_utilities/columns.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/bond_reports.h"
#include "src/facetor6_list/list_parts.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

struct LIGAND_PAIR {
  int J;
  int K;
};

// What differs between the two tables.
struct PAIR_TABLE {
  std::string_view QUANTITY;
  FEATURES OF;
  std::string_view TITLE;
  std::string_view NONE;
  std::string_view UNIT;
  ANGLE_COLUMN VALUE;
  ANGLE_COLUMN STD;
  std::string_view END_NAME;
  std::string_view END_UNIT;
  std::string_view END_HEAD;  // over the last columns of the end value
  POLYHEDRON_COLUMN END_VALUE;
  int END_WIDTH;
  int END_DECIMALS;
};

constexpr PAIR_TABLE angle_table{"angles",
                                 FEATURES::ANGLES,
                                 "     ANGLES AROUND CENTRAL ATOM ",
                                 "     NO ANGLES FOUND FROM CENTRAL ATOM ",
                                 "deg",
                                 ANGLE,
                                 ANGLE_STD,
                                 "_AV",
                                 "deg^2",
                                 "AngleVar",
                                 POLY_VARIANCE,
                                 9,
                                 4};
constexpr PAIR_TABLE edge_table{"edges",
                                FEATURES::EDGES,
                                "     EDGES AROUND CENTRAL ATOM ",
                                "     NO EDGES FOUND AROUND CENTRAL ATOM ",
                                "A",
                                EDGE,
                                EDGE_STD,
                                "_meanedge",
                                "A",
                                "AVERAGE",
                                POLY_MEAN_EDGE,
                                8,
                                3};

std::vector<LIGAND_PAIR> ALL_PAIRS(int i) {
  std::vector<LIGAND_PAIR> pairs;
  for (int j = 1; j <= REFERENCE().NBONDS(i); ++j)
    for (int k = j + 1; k <= REFERENCE().NBONDS(i); ++k) pairs.push_back({j, k});
  return pairs;
}

// Pairs that are edges: in polyhedra of more than three ligands those across the body are none.
std::vector<LIGAND_PAIR> EDGE_PAIRS(int i) {
  constexpr float diagonal_angle = 146.0f;  // degrees
  const CRYSTAL_STRUCTURE_TYPE& reference = REFERENCE();
  if (reference.NBONDS(i) <= 3) return ALL_PAIRS(i);
  std::vector<LIGAND_PAIR> pairs;
  for (const LIGAND_PAIR& pair : ALL_PAIRS(i))
    if (reference.BANGLES(i, pair.J, pair.K, ANGLE) < diagonal_angle) pairs.push_back(pair);
  return pairs;
}

// Characters of a label beside another: together 7 columns with the "-" between, or 9 with esds,
// of which a label may use what a short one leaves.
int ROOM_BESIDE(const std::string& other, bool esd) {
  constexpr int plain_room = 3;
  constexpr int esd_room = 4;
  if (!esd) return plain_room;
  const bool other_is_short = FIRST_CHARACTERS(other, esd_room - 1) == other;
  return other_is_short ? esd_room + 1 : esd_room;
}

std::string PAIR_LABEL(const std::string& first, const std::string& second, bool esd) {
  return FIRST_CHARACTERS(first, ROOM_BESIDE(second, esd)) + "-" +
         FIRST_CHARACTERS(second, ROOM_BESIDE(first, esd));
}

// "O1-Fe1-O1[1,2]" of an angle, "Fe1:O1-O1[1,2]" of an edge.
std::string PAIR_NAME(int i, const LIGAND_PAIR& pair, const PAIR_TABLE& table) {
  const std::string& centre = REFERENCE().ATOM(i).LAB;
  const std::string first = LIGAND_LABEL(i, pair.J);
  const std::string second = LIGAND_LABEL(i, pair.K);
  const std::string numbers = "[" + INTEGER_COLUMNS(pair.J) + "," + INTEGER_COLUMNS(pair.K) + "]";
  return table.VALUE == ANGLE ? first + "-" + centre + "-" + second + numbers
                              : centre + ":" + first + "-" + second + numbers;
}

void ADD_PAIR_COLUMN(REPORT& report, const LIGAND_PAIR& pair, const PAIR_TABLE& table) {
  constexpr int decimals = 3;
  const int i = report.CENTRE;
  const int number = static_cast<int>(report.COLUMNS.size()) + 1;
  REPORT_COLUMN column = VALUE_COLUMN(number, report.WITH_ESDS);
  column.NAME = PAIR_NAME(i, pair, table);
  column.UNIT = table.UNIT;
  column.CODES = {LIGAND_CODE(i, pair.J), LIGAND_CODE(i, pair.K)};
  column.LIGAND = pair.J;
  column.SECOND_LIGAND = pair.K;
  column.HAS_ESD = true;
  column.DECIMALS = decimals;
  column.HEAD = PAIR_LABEL(LIGAND_LABEL(i, pair.J), LIGAND_LABEL(i, pair.K), report.WITH_ESDS);
  report.COLUMNS.push_back(column);
}

void ADD_END_COLUMN(REPORT& report, const PAIR_TABLE& table) {
  const int pairs = static_cast<int>(report.COLUMNS.size());
  REPORT_COLUMN column;
  column.NAME = REFERENCE().ATOM(report.CENTRE).LAB + std::string(table.END_NAME);
  column.UNIT = table.END_UNIT;
  column.DECIMALS = table.END_DECIMALS;
  column.AT = END_COLUMN(pairs, report.WITH_ESDS);
  column.WIDTH = table.END_WIDTH;
  column.HEAD = table.END_HEAD;
  column.HEAD_AT = column.AT + table.END_WIDTH - CHARACTERS(table.END_HEAD);
  report.COLUMNS.push_back(column);
}

bool HAS_BOND(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int m) {
  return phase.BONDS.HAS_BOND(i, m);
}

void ADD_PAIR_CELLS(int i, const std::vector<LIGAND_PAIR>& pairs, const PAIR_TABLE& table,
                    REPORT_ROW& row) {
  const CRYSTAL_STRUCTURE_TYPE& phase = PHASE(row.HEAD.BLOCK);
  for (const auto& [j, k] : pairs)
    row.CELLS.push_back(
        HAS_BOND(phase, i, j) && HAS_BOND(phase, i, k)
            ? REAL_CELL(phase.BANGLES(i, j, k, table.VALUE), phase.BANGLES(i, j, k, table.STD))
            : NO_VALUE_CELL());
  row.CELLS.push_back(REAL_CELL(phase.POLYHEDRON(i, table.END_VALUE)));
}

REPORT PAIR_REPORT(int i, const std::vector<LIGAND_PAIR>& pairs, const PAIR_TABLE& table,
                   bool with_esds, const std::vector<int>& places) {
  REPORT report;
  report.QUANTITY = table.QUANTITY;
  report.OF = table.OF;
  report.CENTRE = i;
  report.WITH_ESDS = with_esds;
  report.SHOW_CODES = RUN.LIST_SYMCODES;
  report.TITLE = {"", "", std::string(table.NONE) + REFERENCE().ATOM(i).LAB};
  if (pairs.empty()) return report;
  report.IS_TABLE = true;
  report.TITLE.back() = TABLE_TITLE(table.TITLE, i);
  for (const LIGAND_PAIR& pair : pairs) ADD_PAIR_COLUMN(report, pair, table);
  ADD_END_COLUMN(report, table);
  for (int place : places) {
    REPORT_ROW row = START_CENTRE_ROW(place, i, report.COLUMNS.size());
    if (row.SENTENCE.empty()) ADD_PAIR_CELLS(i, pairs, table, row);
    report.ROWS.push_back(std::move(row));
  }
  return report;
}

}  // namespace

REPORT ANGLE_REPORT(int i, bool with_esds, const std::vector<int>& places) {
  return PAIR_REPORT(i, ALL_PAIRS(i), angle_table, with_esds, places);
}

REPORT EDGE_REPORT(int i, bool with_esds, const std::vector<int>& places) {
  return PAIR_REPORT(i, EDGE_PAIRS(i), edge_table, with_esds, places);
}

}  // namespace FACETOR_LIST
