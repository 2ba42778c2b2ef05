// Bytes as an output of the CRYSTAL program.
#include "src/facetor6_calc/calc.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/list.h"
#include "src/facetor6_readfiles/readfiles.h"
#include "src/facetor6_writefiles/writefiles.h"
#include "tests/fuzz/fuzz_support.h"

namespace {

using namespace FACETOR_CONSOLE;

constexpr int blank_lines = 100;

void CALCULATE_AND_LIST() {
  if (REFERENCE().NATOMS == 0) return;
  FACETOR_CALC::RUN_FACETOR_CALC_BONDS();
  FACETOR_LIST::FACETOR_LIST_CELLS("ESD");
  FACETOR_LIST::FACETOR_LIST_ALL_XYZ("ESD");
  FACETOR_LIST::FACETOR_LIST_ALL_BONDS("ESD");
  FACETOR_LIST::FACETOR_LIST_ALL_ORBIX();
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FUZZ::START();
  FUZZ::PUT_FILE("a.out", FUZZ::TEXT_OF(data, size));
  // A symbol that is not known is asked for again; the blank answer is P 1.
  FUZZ::WITH_CONSOLE("3\na.out\n", blank_lines, FACETOR_READFILES::READ_PHASE_FROM_FILE);
  if (size == 0) return 0;
  FUZZ::MUST_HOLD(NPHASES == 1, "an output is one block");
  FUZZ::WITH_CONSOLE("", blank_lines, CALCULATE_AND_LIST);
  FUZZ::WITH_CONSOLE("1\nb.cif\nY\n", blank_lines, FACETOR_WRITEFILES::WRITE_PHASE_TO_FILE);
  return 0;
}
