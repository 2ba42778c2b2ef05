// The values that GRAPH draws and FIT fits: one feature each, followed through the used blocks.
// Asks and prints nothing.
#pragma once

#include <string>
#include <vector>

#include "console_code/console/work.h"
#include "src/facetor6_graph/subjects.h"
#include "src/facetor6_list/report.h"

namespace FACETOR_GRAPH {

using FACETOR_LIST::REPORT_CELL;

struct FEATURE_VALUES {
  std::string NAME;                // in sheets: "Fe1-O1[1]"
  std::string LABEL;               // with the number of those that are equal: "Fe1-O1 ×3"
  std::string UNIT;                // as reports have it: "A", "deg", "A^3", "v.u."
  std::vector<REPORT_CELL> CELLS;  // by block
};

struct FOLLOWED {
  std::vector<FACETOR_LIST::ROW_HEAD> BLOCKS;  // in use, in display order
  std::vector<FEATURE_VALUES> FEATURES;        // that have a value in some block
  FEATURE_VALUES ABSCISSA;
  REPORT_CELL REFERENCE;  // the abscissa of the reference block, which may not be in use
};

// Of the cells a, b, c and V: as they are, or each over its value in the reference block.
enum class CELL_FORM { PLAIN, RELATIVE };

// Features that symmetry makes equal stand once. Torsions are moved by 360 degrees to lie within
// 180 of their value in the reference block. Unfinished where the user has stopped the work, whose
// steps are the sites.
FOLLOWED FOLLOW(const SUBJECT_CHOICE& subject, const ABSCISSA_CHOICE& abscissa, CELL_FORM form,
                KVA_CONSOLE::WORK& work);

bool HAS_NUMBER(const REPORT_CELL& cell);

}  // namespace FACETOR_GRAPH
