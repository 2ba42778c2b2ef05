// The CSV command: all that LIST and TABLE show, and the last fit, as sheets.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "src/facetor6_list/report.h"

namespace FACETOR_SHEETS {

// A sheet of its own: values with their esds, for which columns that HAS_ESD get NAME_esd.
struct VALUE_SHEET {
  std::vector<FACETOR_LIST::REPORT_COLUMN> COLUMNS;  // NAME, HAS_ESD and DECIMALS
  std::vector<std::vector<FACETOR_LIST::REPORT_CELL>> ROWS;
};

// The last result of FIT, which the entry "fit" writes; without columns there is none.
inline VALUE_SHEET LAST_FIT;

void RUN_CSV();
// Its menu as it is now.
std::span<const std::string_view> CSV_MENU();

}  // namespace FACETOR_SHEETS
