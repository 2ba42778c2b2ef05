// Fields and lines of sheets: CSV by RFC 4180 with LF, and the two forms for papers, tabs and
// LaTeX. Texts only; nothing is written here.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "src/facetor6_list/report.h"

namespace FACETOR_SHEETS {

enum class SHEET_KIND { CSV, TSV, TEX };

// By the extension of the name; CSV for any other.
SHEET_KIND KIND_OF_SHEET(std::string_view name);

// One line with its end, the fields quoted or escaped as the kind wants, as UTF-8.
std::string SHEET_LINE(const std::vector<std::string>& fields, SHEET_KIND kind = SHEET_KIND::CSV);

bool HAS_VALUE(const FACETOR_LIST::REPORT_CELL& cell);

// The value with all digits that its 32-bit real needs, its esd likewise, a value in words as it
// is; blank where there is none.
std::string VALUE_FIELD(const FACETOR_LIST::REPORT_CELL& cell);
std::string ESD_FIELD(const FACETOR_LIST::REPORT_CELL& cell);

// value(esd) with the rounding of tables (the decimals of the column where it has no esds); "-"
// where there is none.
std::string PAPER_FIELD(const FACETOR_LIST::REPORT_CELL& cell,
                        const FACETOR_LIST::REPORT_COLUMN& column, bool with_esds);

}  // namespace FACETOR_SHEETS
