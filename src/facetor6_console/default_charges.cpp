// The charge that an element is given when a file tells none.
#include "foundations/XTAL_Bond_Valence_Tables.h"
#include "src/facetor6_console/valence_table.h"

namespace FACETOR_CONSOLE {

void SET_DEFAULT_CHARGES() {
  DEFAULT_CHARGES.FILL(0);
  for (const XTAL::AP_TABLE_TYPE& row : XTAL::AP_TABLE) {
    if (row.Z > NUMBER_OF_ELEMENTS) return;
    if (row.Z > 0) DEFAULT_CHARGES(row.Z) = row.DEFAULT_OXIDATION;
  }
}

}  // namespace FACETOR_CONSOLE
