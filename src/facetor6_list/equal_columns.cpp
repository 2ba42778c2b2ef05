// From the columns of a report to the points that its values are of.
#include "src/facetor6_list/equal_columns.h"

#include <numeric>  // for iota

#include "console_code/kva_utilities/columns.h"
#include "foundations/XTAL_Small_Math.h"
#include "src/facetor6_console/phase_list.h"
#include "src/kva_crystal_structures/equal_features.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

using FIRSTS = std::vector<std::size_t>;

// ---- one block ----

FEATURE_POINT CENTRE_POINT(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  return {CENTRE_NUMBER(phase, i), CENTRE_POSITION(phase, i)};
}

FEATURE_POINT LIGAND_POINT(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int m) {
  return {phase.BONDS.LIGAND(i, m), XTAL::ADD(CENTRE_POSITION(phase, i), phase.BONDS.VECTOR(i, m))};
}

// What the column's values are of in a block; no points where an atom has no partner.
FEATURE FEATURE_OF(const CRYSTAL_STRUCTURE_TYPE& phase, const REPORT& report,
                   const REPORT_COLUMN& column) {
  const int i = report.CENTRE;
  for (int ligand : {column.LIGAND, column.SECOND_LIGAND})
    if (ligand > 0 && !phase.BONDS.HAS_BOND(i, ligand)) return {};
  FEATURE points{LIGAND_POINT(phase, i, column.LIGAND)};
  if (report.OF != FEATURES::EDGES) points.push_back(CENTRE_POINT(phase, i));
  if (column.SECOND_LIGAND > 0) points.push_back(LIGAND_POINT(phase, i, column.SECOND_LIGAND));
  return points;
}

// Of all columns, of which only those of ligands may be equal to others.
FIRSTS FIRSTS_OF_LIGANDS(const CRYSTAL_STRUCTURE_TYPE& phase, const REPORT& report) {
  std::vector<std::size_t> columns;
  std::vector<FEATURE> features;
  FIRSTS firsts;
  for (std::size_t k = 0; k < report.COLUMNS.size(); ++k) {
    firsts.push_back(k);
    if (report.COLUMNS[k].LIGAND == 0) continue;
    columns.push_back(k);
    features.push_back(FEATURE_OF(phase, report, report.COLUMNS[k]));
  }
  const LIKENESS likeness =
      report.OF == FEATURES::DIRECTED_BONDS ? LIKENESS::IN_ORDER : LIKENESS::EITHER_WAY;
  const FIRSTS equal = FIRST_EQUALS(phase, features, likeness);
  for (std::size_t n = 0; n < columns.size(); ++n) firsts[columns[n]] = columns[equal[n]];
  return firsts;
}

FIRSTS FIRSTS_OF_AXES(const CRYSTAL_STRUCTURE_TYPE& phase, const REPORT& report) {
  FIRSTS firsts = FIRST_EQUAL_AXES(phase);
  while (firsts.size() < report.COLUMNS.size()) firsts.push_back(firsts.size());
  return firsts;
}

FIRSTS FIRSTS_IN(const CRYSTAL_STRUCTURE_TYPE& phase, const REPORT& report) {
  return report.OF == FEATURES::AXES ? FIRSTS_OF_AXES(phase, report)
                                     : FIRSTS_OF_LIGANDS(phase, report);
}

// ---- all blocks ----

// What either list keeps apart is apart.
FIRSTS EQUAL_IN_BOTH(const FIRSTS& one, const FIRSTS& other) {
  FIRSTS both;
  for (std::size_t k = 0; k < one.size(); ++k) {
    std::size_t first = 0;
    while (first < k && !(one[first] == one[k] && other[first] == other[k])) ++first;
    both.push_back(first);
  }
  return both;
}

bool HAS_ROW(const REPORT& report, const REPORT_ROW& row) {
  return report.CENTRE == 0 || PHASE(row.HEAD.BLOCK).NBONDS(report.CENTRE) >= 0;
}

FIRSTS FIRSTS_OF(const REPORT& report) {
  FIRSTS firsts(report.COLUMNS.size());
  std::iota(firsts.begin(), firsts.end(), std::size_t{0});
  if (report.OF == FEATURES::NONE) return firsts;
  bool is_first_row = true;
  for (const REPORT_ROW& row : report.ROWS) {
    if (!HAS_ROW(report, row)) continue;
    const FIRSTS in_block = FIRSTS_IN(PHASE(row.HEAD.BLOCK), report);
    firsts = is_first_row ? in_block : EQUAL_IN_BOTH(firsts, in_block);
    is_first_row = false;
  }
  return firsts;
}

// The name without what stands in square brackets behind it, such as bond numbers.
std::string WITHOUT_NUMBERS(const REPORT_COLUMN& column) {
  if (column.LIGAND == 0) return column.NAME;
  const std::size_t start = column.NAME.rfind('[');
  const std::size_t end = column.NAME.find(']', start);
  return column.NAME.substr(0, start) + column.NAME.substr(end + 1);
}

}  // namespace

std::vector<DISTINCT_COLUMN> DISTINCT_COLUMNS(const REPORT& report) {
  const FIRSTS firsts = FIRSTS_OF(report);
  std::vector<DISTINCT_COLUMN> distinct;
  for (std::size_t k = 0; k < firsts.size(); ++k) {
    if (!report.COLUMNS[k].IN_SHEET || firsts[k] != k) continue;
    int count = 0;
    for (std::size_t first : firsts) count += first == k ? 1 : 0;
    std::string label = WITHOUT_NUMBERS(report.COLUMNS[k]);
    if (count > 1) label += " ×" + INTEGER_COLUMNS(count);
    distinct.push_back({k, count, std::move(label)});
  }
  return distinct;
}

}  // namespace FACETOR_LIST
