// The measures as a report: for tables, sheets and graphs.
#pragma once

#include <vector>

#include "src/facetor6_list/report.h"

namespace FACETOR_LIST {

// Values of all measures in the blocks at these places of the display order.
REPORT MEASURE_REPORT(bool with_esds, const std::vector<int>& places);

}  // namespace FACETOR_LIST
