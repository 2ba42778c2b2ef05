// Columns of a report that symmetry makes equal, so that papers and graphs show them once.
#pragma once

#include <string>
#include <vector>

#include "src/facetor6_list/report.h"

namespace FACETOR_LIST {

// A column that stands for all that are equal to it.
struct DISTINCT_COLUMN {
  std::size_t COLUMN = 0;  // its place among the report's, from 0
  int COUNT = 1;           // how many it stands for, itself included
  std::string LABEL;       // the name without bond numbers, and the count: "Fe1-O1 ×3"
};

// The columns of a sheet, those that are equal once, as the first of them. Equal are those that an
// operator takes to one another in every block of the report's rows: bonds and edges either way
// round, angles around their centre, axes and angles of the cell. Values are not looked at, and
// two blocks of different symmetry keep apart what one of them does.
std::vector<DISTINCT_COLUMN> DISTINCT_COLUMNS(const REPORT& report);

}  // namespace FACETOR_LIST
