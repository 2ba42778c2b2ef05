// Reports as sheets: wide (a row a block), long (a row a value), and for a paper (a row a
// quantity). Texts only; nothing is written here.
#pragma once

#include <string>
#include <vector>

#include "src/facetor6_list/report.h"
#include "src/facetor6_sheets/sheet_text.h"

namespace FACETOR_SHEETS {

using FACETOR_LIST::REPORT;
using REPORTS = std::vector<REPORT>;

// ---- a row a block ----

// The names of all columns, each once in the sheet: the first columns, then a value a column of the
// reports, with NAME_esd behind those that have esds.
std::vector<std::string> WIDE_NAMES(const REPORTS& reports);

// The rows of the reports, which have the same blocks, as lines of CSV.
std::string WIDE_LINES(const REPORTS& reports);

// ---- a row a value ----

std::vector<std::string> LONG_NAMES();

// What stands between the block and the value in the lines of each value of the reports, which are
// all of one quantity. The feature is the name of the value in the wide form.
std::vector<std::string> LONG_MIDDLES(const REPORTS& reports);

// Adds a line to text for each value that there is in row k of these reports; returns how many.
int ADD_LONG_LINES(const REPORTS& reports, const std::vector<std::string>& middles, std::size_t k,
                   std::string& text);

// ---- for a paper ----

// The lines above: T and P of the blocks of the report.
std::string PAPER_HEAD(const REPORT& report, SHEET_KIND kind);

// A line a column, those that symmetry makes equal once; returns how many.
int ADD_PAPER_LINES(const REPORT& report, SHEET_KIND kind, std::string& text);

}  // namespace FACETOR_SHEETS
