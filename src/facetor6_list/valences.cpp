// The table of bond valences and their sums.
#include "console_code/console/output.h"
#include "console_code/kva_utilities/columns.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_console/valence_table.h"
#include "src/facetor6_list/bond_tables.h"
#include "src/facetor6_list/list_parts.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

std::string VALENCE_SUM_TEXT(const CRYSTAL_STRUCTURE_TYPE& phase, int i, bool esd) {
  const float sum = phase.POLYHEDRON(i, POLY_VALENCE_SUM);
  return esd ? SETNUM_STD(sum, phase.POLYHEDRON(i, POLY_VALENCE_SUM_STD)) : REAL_COLUMNS(sum, 8, 3);
}

std::string VALENCE_ROW(int place, int i, bool esd) {
  const CRYSTAL_STRUCTURE_TYPE& phase = PHASE(ISORT(place));
  std::string line;
  if (!START_CENTRE_ROW(place, i, esd, line)) return line;
  const int n = REFERENCE().NBONDS(i);
  for (int m = 1; m <= n; ++m)
    if (phase.BONDS(i, m, BOND_LENGTH) > shortest_shown)
      PUT_VALUE(line, m, esd, phase.BONDS(i, m, BOND_VALENCE), phase.BONDS(i, m, BOND_VALENCE_STD),
                value_decimals);
    else
      PUT_NO_VALUE(line, m, esd);
  PUT_AT(line, END_COLUMN(n, esd), VALENCE_SUM_TEXT(phase, i, esd));
  return line;
}

bool HAS_LOW_SUM(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  constexpr float suspicious_sum = 0.5f;  // valence units
  return phase.NBONDS(i) > 0 && phase.POLYHEDRON(i, POLY_VALENCE_SUM) < suspicious_sum;
}

}  // namespace

void FACETOR_LIST_BONDVALENCE(int i, std::string_view option) {
  const bool esd = WANTS_ESDS(option);
  if (!WRITE_BOND_TITLE(i, "||     BOND VALENCES FROM CENTRAL ATOM ")) return;
  WRITE_BOND_HEAD(i, esd, esd ? 1 : 2, "BVSUM");
  bool low_sum = false;
  for (int place : LISTED_PLACES()) {
    WRITE_OUT(VALENCE_ROW(place, i, esd));
    low_sum = low_sum || HAS_LOW_SUM(PHASE(ISORT(place)), i);
  }
  if (low_sum)
    WARNING(
        "If you see small or zero bond valences, check the list of parameters used, and the "
        "scattering factors for the atoms");
  if (BV_FLAGS(BV_MULTIPLE_SITES))
    WRITE_OUT("*****" + std::string(BV_FLAG_TEXTS(BV_MULTIPLE_SITES)));
}

void FACETOR_LIST_ALL_BONDVALENCE(std::string_view option) {
  FOR_EACH_USED_ATOM(FACETOR_LIST_BONDVALENCE, option);
}

}  // namespace FACETOR_LIST
