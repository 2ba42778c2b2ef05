// What is said of atoms that are matched doubtfully, with the number and title of the block.
#include "src/facetor6_console/match_warnings.h"

#include <string>

#include "console_code/console/output.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_console/phase_list.h"

namespace FACETOR_CONSOLE {

using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

std::string BLOCK_NAME(int block) {
  return INTEGER_AT_LEAST(block, 3) + " " + TRIM(PHASE(block).BLOCK_TITLE);
}

void WARN_OF_OTHER_GROUP(int block) {
  const std::string& symbol = PHASE(block).SPG.SPG_SYMB;
  const std::string& reference_symbol = REFERENCE().SPG.SPG_SYMB;
  WARNING("Block #" + BLOCK_NAME(block) + " has the space group " + TRIM(symbol) +
          ", the reference block has " + TRIM(reference_symbol) +
          (EQUAL_TEXT(symbol, reference_symbol) ? ", with other operators" : ""));
}

}  // namespace

void WARN_OF_FAULTS(int block, const MATCH_FAULTS& faults) {
  const std::string sites = "In block #" + BLOCK_NAME(block) + ": ";
  if (faults.OTHER_ELEMENT > 0)
    WARNING(sites + INTEGER_COLUMNS(faults.OTHER_ELEMENT) +
            " sites are matched with another element, first " +
            REFERENCE().ATOM(faults.FIRST_OTHER_ELEMENT).LAB + " with " +
            PHASE(block).ATOM(faults.MET_THERE).LAB);
  if (faults.SHARING > 0)
    WARNING(sites + INTEGER_COLUMNS(faults.SHARING) +
            " sites share their place with another site, first " +
            REFERENCE().ATOM(faults.FIRST_SHARING).LAB);
  if (faults.OTHER_GROUP) WARN_OF_OTHER_GROUP(block);
}

}  // namespace FACETOR_CONSOLE
