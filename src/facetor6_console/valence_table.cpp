// The valence table's report, and forgetting it.
#include "src/facetor6_console/valence_table.h"

#include "console_code/console/output.h"
#include "console_code/kva_utilities/columns.h"

namespace FACETOR_CONSOLE {

using namespace KVA_CONSOLE;
using namespace KVA_UTILITIES;

const ROW<std::string_view, BV_FLAG_COUNT> BV_FLAG_TEXTS{
    {"Scattering factor symbols of atoms have been modfied by Gemmara to match bond valence tables",
     "Some atoms are not recognised as elements: use AtomEdit to set scattering factors",
     "Bond valence parameters not found for these atoms: use AtomEdit to set scattering factors",
     "Scattering factor symbols of atoms have been modfied by the user to match bond valence "
     "tables",
     "Bond valence parameters for some atoms have been set by the user",
     "More than 40 cation-anion pairs found in the structures; this exceeds program capacity",
     "Bond valences cannot be calculated if both the central atom and ligand sites have multiple "
     "occupancy"}};

void CLEAR_FACETOR_VALENCE() {
  BV_PAIRS.CLEAR();
  BV_MISSING.CLEAR();
  BV_FLAGS.FILL(false);
  VALENCES_DONE = false;
}

void REPORT_BVS_PARAMS() {
  constexpr int label_columns = 4;
  WRITE_OUT("|          These are the parameters used to calculate bond valences");
  WRITE_OUT("|         Bond type         d0    b      source");
  for (int row = 1; row <= BV_PAIRS.COUNT(); ++row) {
    const BV_PAIR& pair = BV_PAIRS(row);
    WRITE_OUT("     " + INTEGER_COLUMNS(row, 2) + ": " + TEXT_COLUMNS(pair.CATION, label_columns) +
              " -- " + TEXT_COLUMNS(pair.ANION, label_columns) + "     " +
              REAL_COLUMNS(pair.D0, 6, 3) + REAL_COLUMNS(pair.B, 6, 3) + "  " + pair.SOURCE);
  }
  if (BV_MISSING.COUNT() > 0)
    WRITE_OUT(
        "|***** Parameters for the following atom pairs were not found, use AtomEdit to set "
        "scattering factors:");
  for (const LABEL_PAIR& pair : BV_MISSING)
    WRITE_OUT("     " + TEXT_COLUMNS(pair.FIRST, label_columns) + " -- " +
              TEXT_COLUMNS(pair.SECOND, label_columns));
  for (int flag = 1; flag <= BV_FLAG_COUNT; ++flag)
    if (BV_FLAGS(flag)) WRITE_OUT("***** " + std::string(BV_FLAG_TEXTS(flag)));
}

}  // namespace FACETOR_CONSOLE
