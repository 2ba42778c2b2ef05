// Bytes as a CIF: read by both readers, everything calculated, everything listed and written.
#include "console_code/console/prompts.h"
#include "src/facetor6_calc/calc.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_exportfiles/exportfiles.h"
#include "src/facetor6_list/list.h"
#include "src/facetor6_readfiles/check.h"
#include "src/facetor6_readfiles/readfiles.h"
#include "src/facetor6_writefiles/writefiles.h"
#include "tests/fuzz/fuzz_support.h"

namespace {

using namespace FACETOR_CONSOLE;
using namespace FACETOR_LIST;

constexpr int blank_lines = 100;

void CALCULATE() {
  if (REFERENCE().NATOMS == 0) return;
  FACETOR_CALC::RUN_FACETOR_CALC_BONDS();
  if (KVA_CRYSTAL_STRUCTURES::SUM_NBONDS(REFERENCE()) > 0) FACETOR_CALC::RUN_FACETOR_CALC_VALENCE();
}

void LIST_EVERYTHING() {
  FACETOR_LIST_PHASE();
  FACETOR_LIST_PHASE_USED();
  LIST_PHASE_ESD(PHASE, 1, NPHASES);
  FACETOR_LIST_SYMM();
  LIST_SYMOPS();
  FACETOR_LIST_ATOMS();
  FACETOR_LIST_ATOMS("SCAT");
  for (const char* option : {"", "ESD"}) {
    FACETOR_LIST_CELLS(option);
    FACETOR_LIST_ALL_XYZ(option);
    FACETOR_LIST_ALL_BONDS(option);
    FACETOR_LIST_ALL_BONDVALENCE(option);
    FACETOR_LIST_ALL_ANGLES(option);
    FACETOR_LIST_ALL_EDGES(option);
  }
  for (const char* option : {"U", "BETA", "ESD, U", "ESD, BETA"}) FACETOR_LIST_ALL_ADPS(option);
  FACETOR_LIST_ALL_BONDS("srb");
  FACETOR_LIST_ALL_BONDS("displ");
  FACETOR_LIST_ALL_ORBIX();
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FUZZ::START();
  FUZZ::PUT_FILE("a.cif", FUZZ::TEXT_OF(data, size));
  FUZZ::WITH_CONSOLE("5\na.cif\nY\n", blank_lines, FACETOR_READFILES::READ_PHASE_FROM_FILE);
  FUZZ::WITH_CONSOLE("1\na.cif\nY\n", blank_lines, FACETOR_READFILES::READ_PHASE_FROM_FILE);
  FUZZ::WITH_CONSOLE("a.cif\n\n", blank_lines, FACETOR_READFILES::RUN_CHECK_CIF);
  if (NPHASES == 0) return 0;
  FUZZ::WITH_CONSOLE("", blank_lines, CALCULATE);
  FUZZ::WITH_CONSOLE("", blank_lines, LIST_EVERYTHING);
  FUZZ::WITH_CONSOLE("1\nb.cif\nY\nY\n", blank_lines, FACETOR_WRITEFILES::WRITE_PHASE_TO_FILE);
  FUZZ::WITH_CONSOLE("Y\n1\nc.dat\n", blank_lines, FACETOR_EXPORTFILES::RUN_EXPORT);
  // What was written must be readable.
  const int blocks = NPHASES;
  FUZZ::WITH_CONSOLE("1\nb.cif\nY\n", blank_lines, FACETOR_READFILES::READ_PHASE_FROM_FILE);
  FUZZ::MUST_HOLD(NPHASES == 2 * blocks, "every block that is written can be read");
  return 0;
}
