// The dialogue of CSV, and the writing of sheets part by part.
#include "src/facetor6_sheets/csv.h"

#include <algorithm>     // for any_of
#include <system_error>  // for generic_category

#include "console_code/console/input.h"
#include "console_code/console/open_file.h"
#include "console_code/console/output.h"
#include "console_code/console/prompts.h"
#include "console_code/console/state.h"
#include "console_code/console/work.h"
#include "console_code/kva_utilities/columns.h"
#include "src/facetor6_console/measure_list.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_console/valence_table.h"
#include "src/facetor6_list/list_parts.h"
#include "src/facetor6_list/reports.h"
#include "src/facetor6_sheets/sheet.h"

namespace FACETOR_SHEETS {

using namespace FACETOR_CONSOLE;
using namespace FACETOR_LIST;
using namespace KVA_CONSOLE;
using namespace KVA_UTILITIES;

namespace {

// ---- the menu ----

constexpr std::string_view all_entry = "all, a line a value";

using MENU = std::vector<std::string_view>;

// As it was last offered; whoever shows it keeps a view of it.
MENU offered;

MENU WHOLE_MENU() {
  MENU menu;
  for (const REPORT_ENTRY& entry : REPORT_ENTRIES) menu.push_back(entry.TEXT);
  menu.push_back(FIT_ENTRY);
  return menu;
}

// ---- what is written ----

struct SHEET {
  std::vector<REPORT_CODE> CODES;  // one, or all of the long form
  std::vector<int> SITES;
  std::vector<int> PLACES;
  bool LONG = false;
};

// The file being written. Nothing of one that is not kept stays.
struct SHEET_FILE {
  SHEET_FILE() {
    RECORD.DESCRIPTOR = "csv file";
    RECORD.EXT = "csv";
    RECORD.UNIT = DATA_UNIT;
  }
  ~SHEET_FILE() { CLOSE_FILE(RECORD); }
  SHEET_FILE(const SHEET_FILE&) = delete;
  SHEET_FILE& operator=(const SHEET_FILE&) = delete;

  FILE_RECORD RECORD;
  bool REFUSED = false;  // the system takes no more
  int ROWS = 0;
};

// Adds lines with their ends.
void ADD_LINES(std::string_view lines, SHEET_FILE& file) {
  if (lines.empty() || file.REFUSED) return;
  file.REFUSED = !WRITE_UNIT(file.RECORD.UNIT, lines.substr(0, lines.size() - 1));
}

// ---- part by part ----

// The reports that have columns; not all of them when the user has stopped the work, which is at
// the step.
REPORTS TABLES_OF(REPORT_CODE code, const std::vector<int>& sites, const std::vector<int>& places,
                  int step, WORK& work) {
  constexpr std::size_t sites_at_once = 256;
  REPORTS tables;
  std::size_t first = 0;
  do {
    if (!GO_ON(work, step)) return tables;
    for (REPORT& report : REPORTS_OF(code, PART_OF(sites, first, sites_at_once), places))
      if (report.IS_TABLE) tables.push_back(std::move(report));
    first += sites_at_once;
  } while (IS_OF_SITES(code) && first < sites.size());
  return tables;
}

void ADD_WIDE_PART(const SHEET& sheet, const std::vector<int>& part, int step, WORK& work,
                   SHEET_FILE& file) {
  const REPORTS tables = TABLES_OF(sheet.CODES.front(), sheet.SITES, part, step, work);
  if (work.STOPPED) return;
  ADD_LINES(WIDE_LINES(tables), file);
  file.ROWS += static_cast<int>(part.size());
}

// One quantity of the long form: its values in a part of the blocks, and what their lines share.
struct LONG_QUANTITY {
  REPORT_CODE CODE;
  std::vector<std::string> MIDDLES;
  REPORTS TABLES;
};

std::vector<LONG_QUANTITY> LONG_QUANTITIES(const SHEET& sheet, WORK& work) {
  std::vector<LONG_QUANTITY> quantities;
  for (REPORT_CODE code : sheet.CODES)
    quantities.push_back({code, LONG_MIDDLES(TABLES_OF(code, sheet.SITES, {}, 1, work)), {}});
  return quantities;
}

void ADD_LONG_PART(const SHEET& sheet, const std::vector<int>& part, int step, WORK& work,
                   std::vector<LONG_QUANTITY>& quantities, SHEET_FILE& file) {
  for (LONG_QUANTITY& quantity : quantities)
    quantity.TABLES = TABLES_OF(quantity.CODE, sheet.SITES, part, step, work);
  for (std::size_t k = 0; k < part.size(); ++k) {
    std::string text;
    for (const LONG_QUANTITY& quantity : quantities) {
      if (!GO_ON(work, step)) return;
      file.ROWS += ADD_LONG_LINES(quantity.TABLES, quantity.MIDDLES, k, text);
    }
    ADD_LINES(text, file);
  }
}

// False when the user has stopped it.
bool WRITE_ROWS(const SHEET& sheet, SHEET_FILE& file) {
  constexpr std::size_t part_length = 64;  // blocks that are held at a time
  WORK work("Writing blocks", static_cast<int>(sheet.PLACES.size()));
  std::vector<LONG_QUANTITY> quantities;
  if (sheet.LONG) quantities = LONG_QUANTITIES(sheet, work);
  ADD_LINES(
      SHEET_LINE(sheet.LONG ? LONG_NAMES()
                            : WIDE_NAMES(TABLES_OF(sheet.CODES.front(), sheet.SITES, {}, 1, work))),
      file);
  for (std::size_t first = 0; first < sheet.PLACES.size(); first += part_length) {
    const int step = static_cast<int>(first) + 1;
    if (!GO_ON(work, step)) return false;
    if (file.REFUSED) return true;
    const std::vector<int> part = PART_OF(sheet.PLACES, first, part_length);
    if (sheet.LONG)
      ADD_LONG_PART(sheet, part, step, work, quantities, file);
    else
      ADD_WIDE_PART(sheet, part, step, work, file);
  }
  return !work.STOPPED;
}

// A line holds all blocks, so that a site is held at a time.
bool WRITE_FOR_PAPER(const SHEET& sheet, SHEET_KIND kind, SHEET_FILE& file) {
  WORK work("Writing sites", static_cast<int>(sheet.CODES.size() * sheet.SITES.size()));
  ADD_LINES(PAPER_HEAD(REPORTS_OF(REPORT_CELLS, {}, sheet.PLACES).front(), kind), file);
  int step = 0;
  for (REPORT_CODE code : sheet.CODES) {
    const std::vector<int> one{0};
    for (int site : IS_OF_SITES(code) ? sheet.SITES : one) {
      if (!GO_ON(work, ++step)) return false;
      std::string text;
      for (const REPORT& report : TABLES_OF(code, {site}, sheet.PLACES, step, work))
        file.ROWS += ADD_PAPER_LINES(report, kind, text);
      ADD_LINES(text, file);
    }
  }
  return !work.STOPPED;
}

// ---- the last fit ----

std::vector<std::string> FIT_NAMES() {
  std::vector<std::string> names;
  for (const REPORT_COLUMN& column : LAST_FIT.COLUMNS) {
    names.push_back(column.NAME);
    if (column.HAS_ESD) names.push_back(column.NAME + "_esd");
  }
  return names;
}

std::vector<std::string> FIT_FIELDS(const std::vector<REPORT_CELL>& row, SHEET_KIND kind) {
  std::vector<std::string> fields;
  for (std::size_t k = 0; k < row.size(); ++k) {
    const REPORT_COLUMN& column = LAST_FIT.COLUMNS[k];
    if (kind != SHEET_KIND::CSV) {
      fields.push_back(PAPER_FIELD(row[k], column, true));
      continue;
    }
    fields.push_back(VALUE_FIELD(row[k]));
    if (column.HAS_ESD) fields.push_back(ESD_FIELD(row[k]));
  }
  return fields;
}

std::vector<std::string> FIT_HEAD(SHEET_KIND kind) {
  if (kind == SHEET_KIND::CSV) return FIT_NAMES();
  std::vector<std::string> names;
  for (const REPORT_COLUMN& column : LAST_FIT.COLUMNS) names.push_back(column.NAME);
  return names;
}

void WRITE_FIT(SHEET_KIND kind, SHEET_FILE& file) {
  ADD_LINES(SHEET_LINE(FIT_HEAD(kind), kind), file);
  for (const std::vector<REPORT_CELL>& row : LAST_FIT.ROWS) {
    ADD_LINES(SHEET_LINE(FIT_FIELDS(row, kind), kind), file);
    ++file.ROWS;
  }
}

// ---- the dialogue ----

// Asks for the file until one is open; false: none is wanted.
bool OPEN_SHEET(SHEET_FILE& file) {
  FILE_RECORD& record = file.RECORD;
  while (true) {
    record.NAME = NAME_OF_NEW_FILE(record);
    if (record.NAME.empty()) return false;
    if (!MAY_REPLACE({record.NAME})) continue;
    const int error = OPEN_WHOLE(record.UNIT, record.NAME, UNIT_MODE::REPLACE);
    if (error == 0) return true;
    WRITE_OUT("*****The file " + AS_IT_IS(record.NAME) + " cannot be written (" +
              std::generic_category().message(error) + "): choose another name");
    REFUSE_ANSWER();
  }
}

void FINISH(bool done, SHEET_FILE& file) {
  if (!done) {
    CLOSE_FILE(file.RECORD);
    return WRITE_OUT("|*****The sheet was stopped: CSV writes it anew");
  }
  if (KEEP_FILE(file.RECORD))
    WRITE_OUT("     " + INTEGER_COLUMNS(file.ROWS) + " rows written to the file");
}

void WRITE_SHEET(const SHEET& sheet) {
  SHEET_FILE file;
  if (!OPEN_SHEET(file)) return;
  const SHEET_KIND kind = KIND_OF_SHEET(file.RECORD.NAME);
  const bool done =
      kind == SHEET_KIND::CSV ? WRITE_ROWS(sheet, file) : WRITE_FOR_PAPER(sheet, kind, file);
  FINISH(done, file);
}

void WRITE_LAST_FIT() {
  SHEET_FILE file;
  if (!OPEN_SHEET(file)) return;
  WRITE_FIT(KIND_OF_SHEET(file.RECORD.NAME), file);
  FINISH(true, file);
}

void WARN_OF_MATCHES(const SHEET& sheet) {
  std::vector<int> blocks;
  for (int place : sheet.PLACES) blocks.push_back(ISORT(place));
  if (sheet.CODES.back() == REPORT_MEASURES) WARN_OF_MEASURED_MATCHES(blocks);
}

// Every quantity that there is, in every block.
void RUN_ALL() {
  SHEET sheet{{}, USED_ATOMS(), LISTED_PLACES(true), true};
  for (const REPORT_ENTRY& entry : REPORT_ENTRIES)
    if (IS_OFFERED(entry.CODE) && (entry.CODE != REPORT_VALENCES || VALENCES_DONE))
      sheet.CODES.push_back(entry.CODE);
  EQUAL_ATOMS();
  WARN_OF_MATCHES(sheet);
  WRITE_SHEET(sheet);
}

bool HAS_TABLE(REPORT_CODE code, const std::vector<int>& sites) {
  return std::any_of(sites.begin(), sites.end(),
                     [code](int site) { return REPORTS_OF(code, {site}, {}).front().IS_TABLE; });
}

void RUN_ONE(REPORT_CODE code) {
  if (code == REPORT_VALENCES && !VALENCES_DONE)
    return WRITE_OUT("|*****No bond valences have been calculated: CALC valences first");
  SHEET sheet{{code}, {}, LISTED_PLACES(), false};
  if (IS_OF_SITES(code)) {
    EQUAL_ATOMS();
    sheet.SITES = ASK_SITES_ONCE();
    if (sheet.SITES.empty()) return;
    if (!HAS_TABLE(code, sheet.SITES))
      return WRITE_OUT("|*****There are no such values of what was chosen: choose another site");
  }
  WARN_OF_MATCHES(sheet);
  WRITE_SHEET(sheet);
}

}  // namespace

std::span<const std::string_view> CSV_MENU() {
  offered.clear();
  for (const REPORT_ENTRY& entry : REPORT_ENTRIES)
    if (IS_OFFERED(entry.CODE)) offered.push_back(entry.TEXT);
  offered.push_back(all_entry);
  if (!LAST_FIT.COLUMNS.empty()) offered.push_back(FIT_ENTRY);
  return offered;
}

void RUN_CSV() {
  if (CHECK_NOPHASES()) return;
  const std::span<const std::string_view> menu = CSV_MENU();
  TELL_NOT_OFFERED(WHOLE_MENU(), menu);
  const int selection = GET_LIST_SELECTION("Csv", menu);
  if (selection <= 0) return;
  const std::string_view chosen = menu[static_cast<std::size_t>(selection - 1)];
  if (chosen == all_entry) return RUN_ALL();
  if (chosen == FIT_ENTRY) return WRITE_LAST_FIT();
  for (const REPORT_ENTRY& entry : REPORT_ENTRIES)
    if (chosen == entry.TEXT) return RUN_ONE(entry.CODE);
}

}  // namespace FACETOR_SHEETS
