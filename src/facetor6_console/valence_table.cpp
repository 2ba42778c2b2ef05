// The valence table's report, and forgetting it.
#include "src/facetor6_console/valence_table.h"

#include "console_code/console/output.h"
#include "console_code/console/tables.h"
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

namespace {

constexpr int label_columns = 4;

enum PAIR_COLUMN { PAIR_NUMBER, PAIR_LABELS, PAIR_D0, PAIR_B, PAIR_SOURCE };

std::vector<FIELD_LINE> PAIR_TABLE() {
  std::vector<FIELD_LINE> table{{{PAIR_LABELS, 10, "Bond type"},
                                 {PAIR_D0, 28, "d0"},
                                 {PAIR_B, 34, "b"},
                                 {PAIR_SOURCE, 41, "source"}}};
  for (int row = 1; row <= BV_PAIRS.COUNT(); ++row) {
    const BV_PAIR& pair = BV_PAIRS(row);
    table.push_back({{PAIR_NUMBER, 1, INTEGER_COLUMNS(row) + ":", 8, true},
                     {PAIR_LABELS, 9,
                      " " + TEXT_COLUMNS(pair.CATION, label_columns) + " -- " +
                          TEXT_COLUMNS(pair.ANION, label_columns),
                      13},
                     {PAIR_D0, 22, REAL_AT_LEAST(pair.D0, 0, 3), 11, true},
                     {PAIR_B, 33, REAL_AT_LEAST(pair.B, 0, 3), 6, true},
                     {PAIR_SOURCE, 41, pair.SOURCE}});
  }
  return table;
}

}  // namespace

void REPORT_BVS_PARAMS() {
  WRITE_OUT("|          These are the parameters used to calculate bond valences");
  WRITE_OUT("");
  WRITE_TABLE(PAIR_TABLE(), PAIR_D0);
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
