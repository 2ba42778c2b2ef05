// From columns and rows of reports to the lines of sheets.
#include "src/facetor6_sheets/sheet.h"

#include <array>

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/files.h"
#include "console_code/kva_utilities/names.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/equal_columns.h"

namespace FACETOR_SHEETS {

using namespace FACETOR_CONSOLE;
using namespace FACETOR_LIST;
using namespace KVA_UTILITIES;

namespace {

// ---- the first columns ----

using FIELDS = std::vector<std::string>;

const FIELDS start_names{"block", "title", "T", "T_esd", "P", "P_esd", "use"};

const REPORT_CELL& CELL_AT(const REPORT_ROW& row, std::size_t k) {
  static const REPORT_CELL nothing;
  return k < row.CELLS.size() ? row.CELLS[k] : nothing;
}

std::string NAME_ONCE(const std::string& name, NAMES_TAKEN& taken) {
  return UNIQUE_NAME(name, taken, LINE_LENGTH);
}

}  // namespace

FIELDS SHEET_START(const ROW_HEAD& head) {
  const REPORT_CELL t = REAL_CELL(head.T, head.T_STD);
  const REPORT_CELL p = REAL_CELL(head.P, head.P_STD);
  return {INTEGER_COLUMNS(head.BLOCK),
          TRIM(head.TITLE),
          VALUE_FIELD(t),
          ESD_FIELD(t),
          VALUE_FIELD(p),
          ESD_FIELD(p),
          head.USED ? "1" : "0"};
}

FIELDS START_NAMES(NAMES_TAKEN& taken) {
  taken.CAPITALS_DIFFER = true;
  for (const std::string& name : start_names) NAME_ONCE(name, taken);
  return start_names;
}

void ADD_FIELDS(const FIELDS& fields, std::string& line) {
  if (fields.empty()) return;
  if (!line.empty()) line += ',';
  line += SHEET_LINE(fields);
  line.pop_back();
}

// ---- a row a block ----

FIELDS WIDE_NAMES(const REPORTS& reports, NAMES_TAKEN& taken) {
  FIELDS names;
  for (const REPORT& report : reports)
    for (const REPORT_COLUMN& column : report.COLUMNS) {
      if (!column.IN_SHEET) continue;
      names.push_back(NAME_ONCE(column.NAME, taken));
      if (column.HAS_ESD) names.push_back(NAME_ONCE(column.NAME + "_esd", taken));
    }
  return names;
}

FIELDS WIDE_FIELDS(const REPORTS& reports, std::size_t k) {
  FIELDS fields;
  for (const REPORT& report : reports)
    for (std::size_t c = 0; c < report.COLUMNS.size(); ++c) {
      if (!report.COLUMNS[c].IN_SHEET) continue;
      const REPORT_CELL& cell = CELL_AT(report.ROWS[k], c);
      fields.push_back(VALUE_FIELD(cell));
      if (report.COLUMNS[c].HAS_ESD) fields.push_back(ESD_FIELD(cell));
    }
  return fields;
}

// ---- a row a value ----

std::vector<std::string> LONG_NAMES() {
  FIELDS names = start_names;
  for (const char* name : {"quantity", "centre", "feature", "codes", "value", "esd"})
    names.emplace_back(name);
  return names;
}

namespace {

std::string CENTRE_LABEL(const REPORT& report) {
  return report.CENTRE > 0 ? REFERENCE().ATOM(report.CENTRE).LAB : "";
}

// Fields that others follow on their line.
std::string LINE_START(const FIELDS& fields) {
  std::string line = SHEET_LINE(fields);
  line.back() = ',';
  return line;
}

std::string JOINED(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

}  // namespace

TEXT_LIST LONG_MIDDLES(const REPORTS& reports, NAMES_TAKEN& taken) {
  TEXT_LIST middles;
  for (const REPORT& report : reports)
    for (const REPORT_COLUMN& column : report.COLUMNS) {
      if (!column.IN_SHEET) continue;
      const std::string feature = NAME_ONCE(column.NAME, taken);
      if (column.HAS_ESD) NAME_ONCE(column.NAME + "_esd", taken);
      ADD_TEXT(LINE_START({report.QUANTITY, CENTRE_LABEL(report), feature, JOINED(column.CODES)}),
               middles);
    }
  return middles;
}

int ADD_LONG_LINES(const REPORTS& reports, const TEXT_LIST& middles, std::size_t k,
                   std::string& text) {
  if (reports.empty()) return 0;
  const std::string start = LINE_START(SHEET_START(reports.front().ROWS[k].HEAD));
  int count = 0;
  std::size_t middle = 0;
  for (const REPORT& report : reports)
    for (std::size_t c = 0; c < report.COLUMNS.size(); ++c) {
      if (!report.COLUMNS[c].IN_SHEET) continue;
      const std::string_view between = TEXT_AT(middles, middle++);
      const REPORT_CELL& cell = CELL_AT(report.ROWS[k], c);
      if (!HAS_VALUE(cell)) continue;
      text.append(start).append(between).append(VALUE_FIELD(cell)).append(",");
      text.append(ESD_FIELD(cell)).append("\n");
      ++count;
    }
  return count;
}

// ---- for a paper ----

std::string PAPER_HEAD(const REPORT& report, SHEET_KIND kind) {
  struct HEAD_ROW {
    std::string_view WORDS;
    START_COLUMN COLUMN;
  };
  constexpr std::array<HEAD_ROW, 2> rows{{{"T (K)", START_T}, {"P (GPa)", START_P}}};
  std::string text;
  for (const HEAD_ROW& head : rows) {
    FIELDS fields{std::string(head.WORDS)};
    for (const REPORT_ROW& row : report.ROWS)
      for (const FIELD& field : START_FIELDS(row.HEAD, true))
        if (field.COLUMN == head.COLUMN) fields.push_back(LEFT_ADJUST(field.TEXT));
    text += SHEET_LINE(fields, kind);
  }
  return text;
}

int ADD_PAPER_LINES(const REPORT& report, SHEET_KIND kind, std::string& text) {
  const std::vector<DISTINCT_COLUMN> distinct = DISTINCT_COLUMNS(report);
  for (const DISTINCT_COLUMN& shown : distinct) {
    FIELDS fields{shown.LABEL};
    for (const REPORT_ROW& row : report.ROWS)
      fields.push_back(
          PAPER_FIELD(CELL_AT(row, shown.COLUMN), report.COLUMNS[shown.COLUMN], report.WITH_ESDS));
    text += SHEET_LINE(fields, kind);
  }
  return static_cast<int>(distinct.size());
}

}  // namespace FACETOR_SHEETS
