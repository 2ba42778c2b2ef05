// Space groups and symmetry operators.
#include "console_code/console/output.h"
#include "console_code/kva_utilities/columns.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/list_parts.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_UTILITIES;

namespace {

std::string INVERSION_TEXT(const XTAL::SPACE_GROUP& group) {
  constexpr int acentric = 1;
  if (group.CENTRED == acentric) return "   acentric";
  std::string text = "   ";
  for (float x : group.CENTRE_COORD) text += REAL_COLUMNS(x, 8, 5);
  return text;
}

}  // namespace

void LIST_SYMOPS() {
  WRITE_OUT("||     The symmetry operators of the reference block (#" +
            INTEGER_COLUMNS(IREFERENCE) + ") are:");
  const XTAL::SPACE_GROUP& group = REFERENCE().SPG;
  for (int op = 1; op <= group.MULTIP; ++op)
    WRITE_OUT("     " + INTEGER_AT_LEAST(op, 3) + ":" + group.SYMOPSYMB(op));
}

void FACETOR_LIST_SYMM() {
  WRITE_OUT("  space group                 coords of inversion centre");
  for (int place : LISTED_PLACES()) {
    const int block = ISORT(place);
    const XTAL::SPACE_GROUP& group = PHASE(block).SPG;
    WRITE_OUT(INTEGER_AT_LEAST(block, 7) + "  " + AS_IT_IS(TEXT_COLUMNS(group.SPG_SYMB, 20)) +
              INVERSION_TEXT(group));
  }
  LIST_SYMOPS();
}

}  // namespace FACETOR_LIST
