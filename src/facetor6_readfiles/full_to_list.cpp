// Every structure of a CIF, by the full reader, as a phase record; and what the full reader finds
// where the plain one reads otherwise.
#include <algorithm>  // for count, max
#include <string>
#include <string_view>

#include "cifcode/cif_code_new/scanner.h"
#include "cifcode/cif_full/structure.h"
#include "common_code/Raman_module.h"
#include "console_code/console/output.h"
#include "console_code/console/work.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_readfiles/readfiles.h"

namespace FACETOR_READFILES {

using namespace KVA_CIFFULL;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

// ---- what is told ----

// Structures of the file, read or not, so far.
std::string STRUCTURE_WORDS(int number) {
  return "in block #" + INTEGER_AT_LEAST(number, 3) + " in the cif";
}

void TELL(const STRUCTURE& structure, int number) {
  std::string where = " " + STRUCTURE_WORDS(number);
  if (structure.STATUS == BLOCK_STATUS::PASSED_OVER)
    where = structure.TITLE.empty() ? "" : " in data_" + std::string(structure.TITLE);
  if (structure.STATUS == BLOCK_STATUS::NO_CELL)
    WARNING("The cell of " + AS_IT_IS(structure.TITLE) +
            " is missing or cannot be read, the block is not read" + where);
  for (const std::string& telling : structure.TELLINGS) WARNING(AS_IT_IS(telling + where));
}

// ---- records ----

// The loop of modes is read by the lines of its block.
void READ_MODES(const STRUCTURE& structure, CRYSTAL_STRUCTURE_TYPE& phase) {
  FILE_LINES lines;
  std::string_view rest = structure.BYTES;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
    lines.ADD(CUT_LINE(rest.substr(0, end)));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  KVA_CIFNEW::CLEAN_CIF(lines);
  RAMAN::READ_MODE_LIST(lines, 1, lines.COUNT(), phase.MODE_LIST);
}

void FILL_RECORD(const STRUCTURE& structure, CRYSTAL_STRUCTURE_TYPE& phase) {
  INIT_CRYSTAL_STRUCTURE_TYPE(phase);
  phase.BLOCK_TITLE = CUT_TEXT(structure.TITLE, TITLE_LENGTH);
  phase.CELL = structure.CELL;
  CHECK_VOLUME(structure.VOLUME.VALUE, structure.VOLUME.STD, phase);
  phase.PT(TEMPERATURE, PT_VALUE) = structure.T.VALUE;
  phase.PT(TEMPERATURE, PT_ESD) = structure.T.STD;
  phase.PT(PRESSURE, PT_VALUE) = structure.P.VALUE;
  phase.PT(PRESSURE, PT_ESD) = structure.P.STD;
  phase.SPG = structure.SPG->GROUP;
  STORE_ATOMS(structure.ATOMS, structure.ATOMS.COUNT(), phase);
  if (structure.HAS_MODES) READ_MODES(structure, phase);
}

}  // namespace

void READ_FULL_TO_LIST(std::string_view bytes, STRUCTURE_LIST& newx, int& nblocks) {
  constexpr int many_lines = 25000;
  WORK work("Reading structures: block", 0);
  newx.CLEAR();
  nblocks = 0;
  if (std::count(bytes.begin(), bytes.end(), '\n') > many_lines)
    WRITE_OUT("|*****This is a large file, please be patient while it is read in*****|");
  STRUCTURE_READER reader = STRUCTURES_OF(bytes);
  STRUCTURE structure;
  int number = 0;
  int passed_over = 0;
  while (NEXT_STRUCTURE(reader, structure)) {
    if (structure.STATUS != BLOCK_STATUS::PASSED_OVER) ++number;
    TELL(structure, number);
    if (structure.STATUS == BLOCK_STATUS::PASSED_OVER) ++passed_over;
    if (structure.STATUS != BLOCK_STATUS::READ) continue;
    if (!GO_ON(work, ++nblocks)) return newx.CLEAR();
    newx.ITEMS.emplace_back();
    FILL_RECORD(structure, newx(nblocks));
  }
  if (passed_over > 0)
    WRITE_OUT("     " + INTEGER_COLUMNS(passed_over) +
              " blocks without a structure were passed over");
}

// ---- the check of the plain reader ----

namespace {

// The blocks of the plain reader, and how many of them have been looked at.
struct PLAIN_BLOCKS {
  std::vector<std::string_view> BLOCKS;
  std::size_t SEEN = 0;
};

std::string_view FIRST_LINE(std::string_view block) {
  return block.substr(0, block.find('\n'));
}

// The number of the block on whose first line the place is, 0 without one. Places are asked for in
// order.
int BLOCK_AT(PLAIN_BLOCKS& plain, const char* place) {
  for (; plain.SEEN < plain.BLOCKS.size(); ++plain.SEEN) {
    const std::string_view line = FIRST_LINE(plain.BLOCKS[plain.SEEN]);
    if (place < line.data()) return 0;
    if (place <= line.data() + line.size()) return static_cast<int>(++plain.SEEN);
  }
  return 0;
}

bool SAME_OPERATORS(const XTAL::SPACE_GROUP& a, const XTAL::SPACE_GROUP& b) {
  return a.SYMOPSYMB.ITEMS() == b.SYMOPSYMB.ITEMS() || XTAL::SPGR_EQUAL(a, b);
}

void REPORT_DIFFERENCES(const STRUCTURE& structure, const CRYSTAL_STRUCTURE_TYPE& plain,
                        int block) {
  const std::string start =
      "Block #" + INTEGER_AT_LEAST(block, 3) + " " + AS_IT_IS(plain.BLOCK_TITLE) + ": ";
  // The plain reader takes 1 angstrom and 90 degrees where the file tells nothing.
  if (!structure.MISSING.empty())
    WARNING(start + "a cell " + std::string(structure.MISSING) +
            " is missing or cannot be read, READ full does not read it");
  if (structure.STATUS == BLOCK_STATUS::NO_CELL) return;
  const std::string told =
      DIFFERENCES(structure, plain, SAME_OPERATORS(structure.SPG->GROUP, plain.SPG));
  if (!told.empty()) WARNING(start + "READ full reads " + AS_IT_IS(told));
}

}  // namespace

void CHECK_PLAIN_READING(std::string_view bytes, STRUCTURE_LIST& newx) {
  WORK work("Checking structures: block", newx.COUNT());
  PLAIN_BLOCKS plain{KVA_CIFNEW::BLOCKS_OF_CIF(bytes)};
  STRUCTURE_READER reader = STRUCTURES_OF(bytes);
  STRUCTURE structure;
  int read = 0;
  int alone = 0;
  while (NEXT_STRUCTURE(reader, structure)) {
    const int block = BLOCK_AT(plain, structure.BYTES.data());
    if (structure.STATUS == BLOCK_STATUS::PASSED_OVER) continue;
    if (structure.STATUS == BLOCK_STATUS::READ) ++read;
    if (!GO_ON(work, read)) return newx.CLEAR();
    if (block > 0)
      REPORT_DIFFERENCES(structure, newx(block), block);
    else if (structure.STATUS == BLOCK_STATUS::READ)
      ++alone;
  }
  if (alone > 0)
    WARNING("READ full reads " + INTEGER_COLUMNS(read) + " structures from this file (not " +
            INTEGER_COLUMNS(read - alone) + ")");
}

}  // namespace FACETOR_READFILES
