// The dialogue of CHECK and its report. Works on the files, not on the loaded blocks.
#include "src/facetor6_readfiles/check.h"

#include <algorithm>  // for min
#include <string>
#include <vector>

#include "cifcode/cif_code_new/scanner.h"
#include "console_code/console/input.h"
#include "console_code/console/open_file.h"
#include "console_code/console/output.h"
#include "console_code/console/prompts.h"
#include "console_code/console/state.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/list.h"
#include "src/facetor6_readfiles/readfiles.h"
#include "src/kva_crystal_structures/atom_search.h"
#include "src/kva_crystal_structures/displacement.h"

namespace FACETOR_READFILES {

using namespace KVA_CIFNEW;
using namespace KVA_CONSOLE;
using namespace KVA_UTILITIES;

namespace {

// Name and lines of a file that the user chooses; false, after a message, when there are none.
bool READ_CHOSEN_CIF(std::string& name, FILE_LINES& lines) {
  FILE_RECORD file;
  file.DESCRIPTOR = "CIF file";
  file.EXT = "cif";
  file.UNIT = DATA_UNIT;
  OPEN_FILE(file, "OLD READ");
  if (!file.OPEN) return false;
  name = file.NAME;
  std::string message;
  READ_FILE(file, lines, message);
  CLOSE_FILE(file);
  if (message.empty()) return true;
  WRITE_OUT_BLANK(1);
  WRITE_OUT(message);
  return false;
}

// The items that the list asks for, as search texts.
std::vector<std::string> REQUIRED_ITEMS(FILE_LINES& list) {
  STRIP_COMMENTS(list, "#");
  STRIP_BLANK_LINES(list);
  CLEAN_CIF(list);
  std::vector<std::string> items;
  for (const std::string& line : list)
    if (LENTRIM(line) > 0) items.push_back(LEFT_ADJUST(line));
  return items;
}

std::string BLOCK_NAME(const std::string& first_line) {
  return TRIM(first_line.substr(std::min(first_line.find('_') + 1, first_line.size())));
}

// Shows the items that the block has and then those that it lacks.
void REPORT_BLOCK(const FILE_LINES& block, int number, const std::vector<std::string>& items) {
  WRITE_OUT("|| ******New data block, #" + INTEGER_AT_LEAST(number, 3) +
            " named: " + AS_IT_IS(BLOCK_NAME(block(1))) + ":|");
  std::vector<std::string> missing;
  for (const std::string& item : items) {
    const int line = FINDLINE(block, item, 0, 0);
    if (line > 0)
      WRITE_OUT("   " + AS_IT_IS(block(line)));
    else
      missing.push_back(item);
  }
  if (missing.empty()) return WRITE_OUT("|   All required items are present|");
  WRITE_OUT("|   MISSING items:");
  for (const std::string& item : missing) WRITE_OUT("   " + AS_IT_IS(item));
}

void ADD_TO_LOADED(const std::string& file_name) {
  std::string bytes;
  if (!READ_FILE_BYTES(file_name, bytes)) return WRITE_OUT("*****Error opening file: " + file_name);
  STRUCTURE_LIST newx;
  int nblocks = 0;
  READ_CIF_TO_LIST(bytes, newx, nblocks);
  NAME_UNTITLED(file_name, newx);
  // Pressures and temperatures stay as read; what calculations rely on is made here.
  for (KVA_CRYSTAL_STRUCTURES::CRYSTAL_STRUCTURE_TYPE& phase : newx) {
    KVA_CRYSTAL_STRUCTURES::SET_ALLATOM_MULTIP(phase);
    KVA_CRYSTAL_STRUCTURES::SET_ALLATOM_ADP(phase);
  }
  bool error = false;
  FACETOR_CONSOLE::ADD_PHASE_LIST(newx, nblocks, error);
  if (error)
    return WARNING("|Problem allocating arrays in add_phase_list, called from run_check_cif");
  WRITE_OUT("|The loaded phases are now:|");
  FACETOR_LIST::FACETOR_LIST_PHASE();
}

}  // namespace

void RUN_CHECK_CIF() {
  ANNOUNCE("This routine just checks for the presence of items in a CIF");
  WARNING("Remember that it does not work off the list of structures previously loaded");
  WRITE_OUT("   Now select the CIF to be checked");
  std::string cif_name;
  FILE_LINES ciflines;
  if (!READ_CHOSEN_CIF(cif_name, ciflines)) return;
  CLEAN_CIF(ciflines);
  LIST<int> starts;
  int nblocks = 0;
  FIND_ALL_BLOCKS_CIF(ciflines, starts, nblocks);
  if (nblocks == 0) return WARNING("No blocks found in CIF");

  CLEAR_INPUT();
  WRITE_OUT("||   Now open the CIF with the list of items to be checked");
  std::string list_name;
  FILE_LINES list;
  if (!READ_CHOSEN_CIF(list_name, list)) return;
  const std::vector<std::string> items = REQUIRED_ITEMS(list);
  for (int block = 1; block <= nblocks; ++block) {
    const int end = block < nblocks ? starts(block + 1) - 1 : ciflines.COUNT();
    REPORT_BLOCK(BLOCK_LINES(ciflines, starts(block), end), block, items);
  }
  WRITE_OUT("||");
  if (GET_ANSWER_YN("Do you want to add these CIFs into Gemmara", "Y") == 'Y')
    ADD_TO_LOADED(cif_name);
}

}  // namespace FACETOR_READFILES
