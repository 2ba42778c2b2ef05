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

constexpr std::size_t sites_at_once = 256;

// The reports that have columns.
REPORTS TABLES_OF(REPORT_CODE code, const std::vector<int>& sites, const std::vector<int>& places) {
  REPORTS tables;
  for (REPORT& report : REPORTS_OF(code, sites, places))
    if (report.IS_TABLE) tables.push_back(std::move(report));
  return tables;
}

// Some sites of a quantity.
struct SITE_GROUP {
  REPORT_CODE CODE;
  std::vector<int> SITES;
  TEXT_LIST MIDDLES{};  // of the long form: what their lines share
  REPORTS TABLES{};     // of the part of the blocks that is being written
};

std::vector<SITE_GROUP> GROUPS_OF(const SHEET& sheet) {
  std::vector<SITE_GROUP> groups;
  for (REPORT_CODE code : sheet.CODES) {
    std::size_t first = 0;
    do {
      groups.push_back({code, PART_OF(sheet.SITES, first, sites_at_once)});
      first += sites_at_once;
    } while (IS_OF_SITES(code) && first < sheet.SITES.size());
  }
  return groups;
}

// False when the user has stopped it, here and below.
bool WRITE_HEAD(const SHEET& sheet, std::vector<SITE_GROUP>& groups, WORK& work, SHEET_FILE& file) {
  NAMES_TAKEN taken;
  std::string line;
  ADD_FIELDS(sheet.LONG ? LONG_NAMES() : START_NAMES(taken), line);
  REPORT_CODE code = NO_REPORT;
  for (SITE_GROUP& group : groups) {
    if (!GO_ON(work, 1)) return false;
    const REPORTS tables = TABLES_OF(group.CODE, group.SITES, {});
    if (!sheet.LONG) {
      ADD_FIELDS(WIDE_NAMES(tables, taken), line);
      continue;
    }
    if (group.CODE != code) {  // each quantity has names of its own
      taken = {};
      START_NAMES(taken);
      code = group.CODE;
    }
    group.MIDDLES = LONG_MIDDLES(tables, taken);
  }
  line += '\n';
  ADD_LINES(line, file);
  return true;
}

// The tables of all groups are made for the first block of a part and held up to its last.
bool WRITE_PART(const SHEET& sheet, const std::vector<int>& part, int step, WORK& work,
                std::vector<SITE_GROUP>& groups, SHEET_FILE& file) {
  for (std::size_t k = 0; k < part.size(); ++k) {
    std::string text;
    if (!sheet.LONG) ADD_FIELDS(SHEET_START(HEAD_OF_PLACE(part[k])), text);
    for (SITE_GROUP& group : groups) {
      if (!GO_ON(work, step)) return false;
      if (k == 0) group.TABLES = TABLES_OF(group.CODE, group.SITES, part);
      if (sheet.LONG) {
        file.ROWS += ADD_LONG_LINES(group.TABLES, group.MIDDLES, k, text);
        ADD_LINES(text, file);
        text.clear();
      } else {
        ADD_FIELDS(WIDE_FIELDS(group.TABLES, k), text);
      }
      if (k + 1 == part.size()) group.TABLES = {};
    }
    if (sheet.LONG) continue;
    text += '\n';
    ADD_LINES(text, file);
    ++file.ROWS;
  }
  return true;
}

bool WRITE_ROWS(const SHEET& sheet, SHEET_FILE& file) {
  // Blocks that are held at a time; of so many sites one.
  const std::size_t part_length = sheet.SITES.size() > sites_at_once ? 1 : 64;
  WORK work("Writing blocks", static_cast<int>(sheet.PLACES.size()));
  std::vector<SITE_GROUP> groups = GROUPS_OF(sheet);
  if (!WRITE_HEAD(sheet, groups, work, file)) return false;
  for (std::size_t first = 0; first < sheet.PLACES.size(); first += part_length) {
    if (file.REFUSED) return true;
    const std::vector<int> part = PART_OF(sheet.PLACES, first, part_length);
    if (!WRITE_PART(sheet, part, static_cast<int>(first) + 1, work, groups, file)) return false;
  }
  return true;
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
      for (const REPORT& report : TABLES_OF(code, {site}, sheet.PLACES))
        file.ROWS += ADD_PAPER_LINES(report, kind, text);
      ADD_LINES(text, file);
    }
  }
  return true;
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

bool WRITE_FIT(SHEET_KIND kind, SHEET_FILE& file) {
  WORK work("", 1);
  ADD_LINES(SHEET_LINE(FIT_HEAD(kind), kind), file);
  for (const std::vector<REPORT_CELL>& row : LAST_FIT.ROWS) {
    if (!GO_ON(work, 1)) return false;
    ADD_LINES(SHEET_LINE(FIT_FIELDS(row, kind), kind), file);
    ++file.ROWS;
  }
  return true;
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
  FINISH(WRITE_FIT(KIND_OF_SHEET(file.RECORD.NAME), file), file);
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
