// From reports to features.
#include "src/facetor6_graph/features.h"

#include <algorithm>  // for any_of
#include <cmath>      // for remainder
#include <string_view>

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text_list.h"
#include "src/facetor6_console/measure_list.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/equal_columns.h"
#include "src/facetor6_list/list_parts.h"
#include "src/facetor6_list/reports.h"

namespace FACETOR_GRAPH {

using namespace FACETOR_CONSOLE;
using namespace FACETOR_LIST;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

bool HAS_NUMBER(const REPORT_CELL& cell) {
  return cell.KIND == CELL_KIND::REAL || cell.KIND == CELL_KIND::WHOLE;
}

namespace {

using PLACES = std::vector<int>;
using ITEMS = std::vector<FEATURE_VALUES>;

// Where the reference block stands in the display order.
int PLACE_OF_REFERENCE() {
  for (int place = 1; place <= NPHASES; ++place)
    if (ISORT(place) == IREFERENCE) return place;
  return 0;
}

std::vector<int> BLOCKS_AT(const PLACES& places) {
  std::vector<int> blocks;
  for (int place : places) blocks.push_back(ISORT(place));
  return blocks;
}

// ---- features of one report ----

REPORT_CELL CELL_AT(const REPORT_ROW& row, std::size_t k) {
  return k < row.CELLS.size() ? row.CELLS[k] : REPORT_CELL{};
}

bool IS_WANTED(const REPORT& report, const REPORT_COLUMN& column, SUBJECT subject) {
  switch (subject) {
    case SUBJECT::VOLUMES:
      return column.NAME == REFERENCE().ATOM(report.CENTRE).LAB + "_V";
    case SUBJECT::CELLS:
      return column.NAME == "a" || column.NAME == "b" || column.NAME == "c" || column.NAME == "V";
    default:
      return column.LIGAND > 0;
  }
}

// The name with how many it stands for.
std::string NAME_WITH_COUNT(const std::string& name, int count) {
  return count > 1 ? name + " ×" + INTEGER_COLUMNS(count) : name;
}

void ADD_FEATURES(const REPORT& report, SUBJECT subject, ITEMS& items) {
  if (!report.IS_TABLE) return;
  for (const DISTINCT_COLUMN& distinct : DISTINCT_COLUMNS(report)) {
    const REPORT_COLUMN& column = report.COLUMNS[distinct.COLUMN];
    if (!IS_WANTED(report, column, subject)) continue;
    FEATURE_VALUES item{column.NAME, NAME_WITH_COUNT(column.NAME, distinct.COUNT), column.UNIT, {}};
    for (const REPORT_ROW& row : report.ROWS) item.CELLS.push_back(CELL_AT(row, distinct.COLUMN));
    items.push_back(std::move(item));
  }
}

// A label without bond numbers, where it is the only one of its kind.
std::string WITHOUT_NUMBERS(const std::string& label) {
  const std::size_t start = label.rfind('[');
  const std::size_t end = label.find(']', start);
  if (start == std::string::npos || end == std::string::npos) return label;
  return label.substr(0, start) + label.substr(end + 1);
}

void SHORTEN_LABELS(ITEMS& items, WORK& work) {
  TEXT_COUNTS shorter;
  for (const FEATURE_VALUES& item : items) {
    if (!GO_ON(work, work.TOTAL)) return;
    ++shorter.COUNTS[FIND_OR_ADD(WITHOUT_NUMBERS(item.LABEL), shorter)];
  }
  for (FEATURE_VALUES& item : items) {
    if (!GO_ON(work, work.TOTAL)) return;
    std::string label = WITHOUT_NUMBERS(item.LABEL);
    if (shorter.COUNTS[FIND_OR_ADD(label, shorter)] == 1) item.LABEL = std::move(label);
  }
}

// ---- features of a subject ----

REPORT_CELL CELL_OF(const MEASURED_VALUE& value) {
  return value.FOUND ? REAL_CELL(value.VALUE, value.ESD) : NO_VALUE_CELL();
}

ITEMS CELL_ITEMS(const PLACES& places, CELL_FORM form) {
  ITEMS items;
  for (const REPORT& report : REPORTS_OF(REPORT_CELLS, {}, places))
    ADD_FEATURES(report, SUBJECT::CELLS, items);
  std::vector<std::string> expressions;
  for (const FEATURE_VALUES& item : items)
    expressions.push_back(form == CELL_FORM::PLAIN ? item.NAME
                                                   : item.NAME + "/ref(" + item.NAME + ")");
  const auto values = MEASURE_EXPRESSIONS(expressions, BLOCKS_AT(places));
  for (std::size_t k = 0; k < items.size(); ++k) {
    for (std::size_t row = 0; row < places.size(); ++row)
      items[k].CELLS[row] = CELL_OF(values[row][k]);
    if (form == CELL_FORM::PLAIN) continue;
    const std::string over = "/" + items[k].NAME + "0";
    items[k].LABEL.insert(items[k].NAME.size(), over);
    items[k].NAME += over;
    items[k].UNIT.clear();
  }
  return items;
}

ITEMS SITE_ITEMS(const SUBJECT_CHOICE& choice, const PLACES& places, WORK& work) {
  REPORT_CODE code = REPORT_BONDS;
  if (choice.OF == SUBJECT::ANGLES) code = REPORT_ANGLES;
  if (choice.OF == SUBJECT::VALENCES) code = REPORT_VALENCES;
  ITEMS items;
  int step = 0;
  for (int site : choice.SITES) {
    if (!GO_ON(work, ++step)) return {};
    ADD_FEATURES(REPORTS_OF(code, {site}, places).front(), choice.OF, items);
  }
  SHORTEN_LABELS(items, work);
  return items;
}

// By less than a turn from the reference.
void MOVE_TORSION(std::vector<REPORT_CELL>& cells, const REPORT_CELL& reference) {
  constexpr float turn = 360.0f;
  if (!HAS_NUMBER(reference)) return;
  for (REPORT_CELL& cell : cells)
    if (HAS_NUMBER(cell))
      cell.VALUE = reference.VALUE + std::remainder(cell.VALUE - reference.VALUE, turn);
}

// Of the measures at these places in their list. The last place is that of the reference block.
ITEMS MEASURE_ITEMS(const std::vector<std::size_t>& measures, const PLACES& places) {
  ITEMS items;
  const REPORT report = REPORTS_OF(REPORT_MEASURES, {}, places).front();
  for (std::size_t m : measures) {
    const REPORT_COLUMN& column = report.COLUMNS[m];
    FEATURE_VALUES item{column.NAME, column.NAME, column.UNIT, {}};
    for (const REPORT_ROW& row : report.ROWS) item.CELLS.push_back(CELL_AT(row, m));
    if (IS_TORSION(MEASURES[m].FORMULA)) MOVE_TORSION(item.CELLS, item.CELLS.back());
    items.push_back(std::move(item));
  }
  return items;
}

ITEMS ITEMS_OF(const SUBJECT_CHOICE& choice, const PLACES& used, CELL_FORM form, WORK& work) {
  switch (choice.OF) {
    case SUBJECT::CELLS:
      return CELL_ITEMS(used, form);
    case SUBJECT::MEASURES: {
      PLACES places = used;
      places.push_back(PLACE_OF_REFERENCE());
      ITEMS items = MEASURE_ITEMS(choice.MEASURES, places);
      for (FEATURE_VALUES& item : items) item.CELLS.pop_back();
      return items;
    }
    default:
      return SITE_ITEMS(choice, used, work);
  }
}

// ---- the abscissa ----

REPORT_CELL CONDITION_CELL(int place, AGAINST what) {
  const ROW_HEAD head = HEAD_OF_PLACE(place);
  return what == AGAINST::TEMPERATURE ? REAL_CELL(head.T, head.T_STD)
                                      : REAL_CELL(head.P, head.P_STD);
}

// The last cell is that of the reference block.
FEATURE_VALUES ABSCISSA_OF(const ABSCISSA_CHOICE& choice, const PLACES& used) {
  PLACES places = used;
  places.push_back(PLACE_OF_REFERENCE());
  if (choice.WHAT == AGAINST::MEASURE) return MEASURE_ITEMS({choice.MEASURE}, places).front();
  FEATURE_VALUES abscissa;
  abscissa.NAME = choice.WHAT == AGAINST::TEMPERATURE ? "T" : "P";
  abscissa.LABEL = abscissa.NAME;
  abscissa.UNIT = choice.WHAT == AGAINST::TEMPERATURE ? "K" : "GPa";
  for (int place : places) abscissa.CELLS.push_back(CONDITION_CELL(place, choice.WHAT));
  return abscissa;
}

bool HAS_NUMBERS(const FEATURE_VALUES& item) {
  return std::any_of(item.CELLS.begin(), item.CELLS.end(), HAS_NUMBER);
}

}  // namespace

FOLLOWED FOLLOW(const SUBJECT_CHOICE& subject, const ABSCISSA_CHOICE& abscissa, CELL_FORM form,
                WORK& work) {
  constexpr bool not_all = false;
  const PLACES used = LISTED_PLACES(not_all);
  FOLLOWED followed;
  for (int place : used) followed.BLOCKS.push_back(HEAD_OF_PLACE(place));
  followed.FEATURES = ITEMS_OF(subject, used, form, work);
  std::erase_if(followed.FEATURES, [](const FEATURE_VALUES& item) { return !HAS_NUMBERS(item); });
  followed.ABSCISSA = ABSCISSA_OF(abscissa, used);
  followed.REFERENCE = followed.ABSCISSA.CELLS.back();
  followed.ABSCISSA.CELLS.pop_back();
  return followed;
}

}  // namespace FACETOR_GRAPH
