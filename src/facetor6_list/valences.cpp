// The table of bond valences and their sums.
#include "console_code/console/output.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_console/valence_table.h"
#include "src/facetor6_list/bond_reports.h"
#include "src/facetor6_list/bond_tables.h"
#include "src/facetor6_list/list_parts.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;

namespace {

void ADD_SUM_COLUMN(REPORT& report) {
  const int n = REFERENCE().NBONDS(report.CENTRE);
  REPORT_COLUMN column;
  column.NAME = REFERENCE().ATOM(report.CENTRE).LAB + "_BVS";
  column.UNIT = "v.u.";
  column.HAS_ESD = true;
  column.DECIMALS = 3;
  column.AT = END_COLUMN(n, report.WITH_ESDS);
  column.WIDTH = report.WITH_ESDS ? any_width : 8;
  column.HEAD = "BVSUM";
  column.HEAD_AT = LABEL_COLUMN(n + 1, report.WITH_ESDS) + (report.WITH_ESDS ? 1 : 2);
  report.COLUMNS.push_back(column);
}

void ADD_VALENCE_CELLS(int i, REPORT_ROW& row) {
  const CRYSTAL_STRUCTURE_TYPE& phase = PHASE(row.HEAD.BLOCK);
  for (int m = 1; m <= REFERENCE().NBONDS(i); ++m)
    row.CELLS.push_back(
        phase.BONDS(i, m, BOND_LENGTH) > shortest_shown
            ? REAL_CELL(phase.BONDS(i, m, BOND_VALENCE), phase.BONDS(i, m, BOND_VALENCE_STD))
            : NO_VALUE_CELL());
  row.CELLS.push_back(
      REAL_CELL(phase.POLYHEDRON(i, POLY_VALENCE_SUM), phase.POLYHEDRON(i, POLY_VALENCE_SUM_STD)));
}

bool HAS_LOW_SUM(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  constexpr float suspicious_sum = 0.5f;  // valence units
  return phase.NBONDS(i) > 0 && phase.POLYHEDRON(i, POLY_VALENCE_SUM) < suspicious_sum;
}

}  // namespace

REPORT VALENCE_REPORT(int i, bool with_esds, const std::vector<int>& places) {
  REPORT report = LIGAND_REPORT(i, "valences", "     BOND VALENCES FROM CENTRAL ATOM ", with_esds);
  if (!report.IS_TABLE) return report;
  ADD_LIGAND_COLUMNS(report, "_s", "v.u.", true);
  ADD_SUM_COLUMN(report);
  for (int place : places) {
    REPORT_ROW row = START_CENTRE_ROW(place, i, report.COLUMNS.size());
    if (row.SENTENCE.empty()) ADD_VALENCE_CELLS(i, row);
    report.ROWS.push_back(std::move(row));
  }
  return report;
}

void WRITE_VALENCE_NOTES(const REPORT& report) {
  if (!report.IS_TABLE) return;
  bool low_sum = false;
  for (const REPORT_ROW& row : report.ROWS)
    low_sum = low_sum || HAS_LOW_SUM(PHASE(row.HEAD.BLOCK), report.CENTRE);
  if (low_sum)
    WARNING(
        "If you see small or zero bond valences, check the list of parameters used, and the "
        "scattering factors for the atoms");
  if (BV_FLAGS(BV_MULTIPLE_SITES))
    WRITE_OUT("*****" + std::string(BV_FLAG_TEXTS(BV_MULTIPLE_SITES)));
}

}  // namespace FACETOR_LIST
