// From the code of a report to the report.
#include "src/facetor6_list/reports.h"

#include "console_code/console/input.h"
#include "console_code/console/output.h"
#include "console_code/console/prompts.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_console/measure_list.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/bond_reports.h"
#include "src/facetor6_list/list_parts.h"
#include "src/facetor6_list/measure_reports.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_UTILITIES;

bool NEEDS_BONDS(REPORT_CODE code) {
  return code >= REPORT_BONDS && code <= REPORT_VALENCES;
}

bool IS_OF_SITES(REPORT_CODE code) {
  for (const REPORT_ENTRY& entry : REPORT_ENTRIES)
    if (entry.CODE == code) return entry.OF_SITES;
  return false;
}

bool IS_OFFERED(REPORT_CODE code) {
  if (code == REPORT_MEASURES) return !MEASURES.empty();
  return !NEEDS_BONDS(code) || (NPHASES > 0 && SUM_NBONDS(REFERENCE()) > 0);
}

void TELL_NOT_OFFERED(std::span<const std::string_view> all,
                      std::span<const std::string_view> offered) {
  const std::string_view entry = PENDING_ENTRY(all, offered);
  if (entry.empty()) return;
  if (entry == MEASURES_ENTRY)
    WRITE_OUT("*****There are no measures: MEASURE defines them");
  else if (entry == FIT_ENTRY)
    WRITE_OUT("*****There is no fit: FIT makes one");
  else
    WRITE_OUT("*****There are no bonds: CALC polyhedra first");
  CLEAR_INPUT();
}

REPORT REPORT_OF(REPORT_CODE code, int i, std::string_view option, const MATCHED_ATOMS& atoms,
                 const std::vector<int>& places) {
  const bool esds = WANTS_ESDS(option);
  switch (code) {
    case NO_REPORT:
      break;
    case REPORT_CELLS:
      return CELL_REPORT(esds, places);
    case REPORT_XYZ:
      return XYZ_REPORT(i, esds, atoms);
    case REPORT_ADPS:
      return ADP_REPORT(i, INDEXALL(option, "BETA") > 0 ? TENSOR_FORM::BETA : TENSOR_FORM::U, esds,
                        atoms);
    case REPORT_BONDS:
      return BOND_REPORT(i, BOND_FORM::LENGTHS, esds, places);
    case REPORT_SRB:
      return BOND_REPORT(i, BOND_FORM::SRB, false, places);
    case REPORT_DISPL:
      return BOND_REPORT(i, BOND_FORM::DISPLACEMENTS, false, places);
    case REPORT_ANGLES:
      return ANGLE_REPORT(i, esds, places);
    case REPORT_EDGES:
      return EDGE_REPORT(i, esds, places);
    case REPORT_ORBIX:
      return ORBIX_REPORT(i, places);
    case REPORT_VALENCES:
      return VALENCE_REPORT(i, esds, places);
    case REPORT_MEASURES:
      return MEASURE_REPORT(esds, places);
  }
  return {};
}

std::vector<REPORT> REPORTS_OF(REPORT_CODE code, const std::vector<int>& sites,
                               const std::vector<int>& places) {
  constexpr std::string_view option = "ESD";
  if (!IS_OF_SITES(code)) return {REPORT_OF(code, 0, option, {}, places)};
  const std::vector<MATCHED_ATOMS> atoms =
      NEEDS_BONDS(code) ? std::vector<MATCHED_ATOMS>(sites.size()) : MATCH_ATOMS(sites, places);
  std::vector<REPORT> reports;
  for (std::size_t k = 0; k < sites.size(); ++k)
    reports.push_back(REPORT_OF(code, sites[k], option, atoms[k], places));
  return reports;
}

}  // namespace FACETOR_LIST
