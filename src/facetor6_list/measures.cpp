// The table of the user's measures: a row a block, a column a measure.
#include <algorithm>  // for clamp, max
#include <cmath>      // for abs, floor, log10

#include "src/facetor6_console/measure_list.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/list_parts.h"
#include "src/facetor6_list/measure_reports.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;

namespace {

constexpr int value_width = 12;

// Decimals of plain values, by which the largest of a column shows five digits.
int DECIMALS_OF(const std::vector<std::vector<MEASURED_VALUE>>& values, std::size_t m) {
  constexpr int least = 3;
  constexpr int usual = 4;
  constexpr int most = 9;
  float largest = 0.0f;
  for (const std::vector<MEASURED_VALUE>& block : values)
    if (block[m].FOUND) largest = std::max(largest, std::abs(block[m].VALUE));
  if (!(largest > 0.0f)) return usual;
  return std::clamp(usual - static_cast<int>(std::floor(std::log10(largest))), least, most);
}

// The same unit in the letters of the other reports.
std::string PLAIN_UNIT(std::string_view unit) {
  constexpr std::array<std::array<std::string_view, 2>, 4> plain{
      {{"Å", "A"}, {"Å²", "A^2"}, {"Å³", "A^3"}, {"deg²", "deg^2"}}};
  for (const auto& [from, to] : plain)
    if (unit == from) return std::string(to);
  return std::string(unit);
}

REPORT_CELL CELL_OF(const MEASURE& measure, const MEASURED_VALUE& value) {
  if (!value.FOUND) return NO_VALUE_CELL();
  return IS_COUNT(measure.FORMULA) ? WHOLE_CELL(static_cast<int>(value.VALUE))
                                   : REAL_CELL(value.VALUE, value.ESD);
}

}  // namespace

namespace {

std::vector<int> BLOCKS_AT(const std::vector<int>& places) {
  std::vector<int> blocks;
  for (int place : places) blocks.push_back(ISORT(place));
  return blocks;
}

// The report behind the warnings of what was matched for it.
void WRITE_MEASURES(bool with_esds, const std::vector<int>& places) {
  WARN_OF_MEASURED_MATCHES(BLOCKS_AT(places));
  REPORT report = MEASURE_REPORT(with_esds, places);
  WRITE_REPORT(report);
}

}  // namespace

REPORT MEASURE_REPORT(bool with_esds, const std::vector<int>& places) {
  REPORT report;
  report.QUANTITY = "measures";
  report.IS_TABLE = true;
  report.WITH_ESDS = with_esds;
  const std::vector<std::vector<MEASURED_VALUE>> values = MEASURE_BLOCKS(BLOCKS_AT(places));
  for (std::size_t m = 0; m < MEASURES.size(); ++m) {
    REPORT_COLUMN& column =
        ADD_COLUMN(report, MEASURES[m].NAME, value_width, DECIMALS_OF(values, m));
    column.UNIT = PLAIN_UNIT(UNIT_OF(MEASURES[m].FORMULA));
    column.HAS_ESD = true;
    if (with_esds) column.HEAD_AT = column.AT + 1;
  }
  for (std::size_t row = 0; row < places.size(); ++row) {
    report.ROWS.emplace_back();
    report.ROWS.back().HEAD = HEAD_OF_PLACE(places[row]);
    for (std::size_t m = 0; m < MEASURES.size(); ++m)
      report.ROWS.back().CELLS.push_back(CELL_OF(MEASURES[m], values[row][m]));
  }
  return report;
}

void FACETOR_LIST_MEASURES(std::string_view option) {
  WRITE_MEASURES(WANTS_ESDS(option), LISTED_PLACES());
}

void FACETOR_LIST_MEASURES_USED() {
  if (MEASURES.empty() || NPHASES == 0) return;
  std::vector<int> used;
  for (int place = 1; place <= NPHASES; ++place)
    if (IUSE(ISORT(place)) != 0) used.push_back(place);
  WRITE_MEASURES(true, used);
}

}  // namespace FACETOR_LIST
