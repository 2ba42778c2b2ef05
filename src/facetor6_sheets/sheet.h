// Reports as sheets: wide (a row a block), long (a row a value), and for a paper (a row a
// quantity). Texts only; nothing is written here.
#pragma once

#include <string>
#include <vector>

#include "console_code/kva_utilities/names.h"
#include "src/facetor6_list/report.h"
#include "src/facetor6_sheets/sheet_text.h"

namespace FACETOR_SHEETS {

using FACETOR_LIST::REPORT;
using REPORTS = std::vector<REPORT>;

// Adds fields to a line of CSV, which has no end yet.
void ADD_FIELDS(const std::vector<std::string>& fields, std::string& line);

// ---- a row a block ----

// The names of the first columns, which are taken then, and their fields.
std::vector<std::string> START_NAMES(KVA_UTILITIES::NAMES_TAKEN& taken);
std::vector<std::string> SHEET_START(const FACETOR_LIST::ROW_HEAD& head);

// The names of the columns that follow, each once in the sheet: a value a column of the reports,
// with NAME_esd behind those that have esds. And their fields in row k.
std::vector<std::string> WIDE_NAMES(const REPORTS& reports, KVA_UTILITIES::NAMES_TAKEN& taken);
std::vector<std::string> WIDE_FIELDS(const REPORTS& reports, std::size_t k);

// ---- a row a value ----

std::vector<std::string> LONG_NAMES();

// What stands between the block and the value in the lines of each value of the reports, which are
// all of one quantity. The feature is the name of the value in the wide form; taken: the names of
// that quantity so far, with those of the first columns.
KVA_UTILITIES::TEXT_LIST LONG_MIDDLES(const REPORTS& reports, KVA_UTILITIES::NAMES_TAKEN& taken);

// Adds a line to text for each value that there is in row k of these reports; returns how many.
int ADD_LONG_LINES(const REPORTS& reports, const KVA_UTILITIES::TEXT_LIST& middles, std::size_t k,
                   std::string& text);

// ---- for a paper ----

// The lines above: T and P of the blocks of the report.
std::string PAPER_HEAD(const REPORT& report, SHEET_KIND kind);

// A line a column, those that symmetry makes equal once; returns how many.
int ADD_PAPER_LINES(const REPORT& report, SHEET_KIND kind, std::string& text);

}  // namespace FACETOR_SHEETS
