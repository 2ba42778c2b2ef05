// The columns that the tables share.
#include "src/facetor6_list/list_parts.h"

#include "cifcode/cif_code_new/writer.h"
#include "console_code/console/output.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

constexpr int head_length = 45;  // of the head's start
constexpr int plain_step = 8;    // columns from value to value
constexpr int esd_step = 11;
constexpr int plain_width = 8;  // columns of a plain value
constexpr int codes_word_column = 37;

int STEP(bool esd) {
  return esd ? esd_step : plain_step;
}

}  // namespace

// ---- which blocks and atoms ----

bool BLOCK_IS_LISTED(int block) {
  return RUN.LIST_ALL_BLOCKS || IUSE(block) != 0;
}

std::vector<int> LISTED_PLACES() {
  std::vector<int> places;
  for (int place = 1; place <= NPHASES; ++place)
    if (BLOCK_IS_LISTED(ISORT(place))) places.push_back(place);
  return places;
}

bool WANTS_ESDS(std::string_view option) {
  return INDEXALL(option, "esd") > 0;
}

std::vector<int> USED_ATOMS() {
  std::vector<int> atoms;
  for (int i = 1; i <= REFERENCE().NATOMS; ++i)
    if (REFERENCE().ATOM_USE(i) == ATOM_USED) atoms.push_back(i);
  return atoms;
}

bool LIST_STOPPED(WORK& work, int step) {
  if (GO_ON(work, step)) return false;
  WRITE_OUT("|*****The list was stopped");
  return true;
}

void FOR_EACH_USED_ATOM(void (*report)(int, std::string_view), std::string_view option) {
  const std::vector<int> atoms = USED_ATOMS();
  WORK work("", static_cast<int>(atoms.size()));
  int step = 0;
  for (int i : atoms) {
    if (LIST_STOPPED(work, ++step)) return;
    report(i, option);
  }
}

std::string FIRST_CHARACTERS(std::string_view text, int n) {
  return TRIM(TEXT_COLUMNS(text, n));
}

// ---- columns ----

int VALUE_COLUMN(int m, bool esd) {
  const int first = esd ? head_length + 1 : head_length;
  return first + STEP(esd) * (m - 1);
}

int LABEL_COLUMN(int m, bool esd) {
  return head_length + 2 + STEP(esd) * (m - 1);
}

int END_COLUMN(int q, bool esd) {
  const int first = esd ? head_length + 1 : head_length + 2;
  return first + STEP(esd) * q;
}

std::string TABLE_TITLE(std::string_view words, int i) {
  return std::string(words) + REFERENCE().ATOM(i).LAB + "    (NAME IN REFERENCE BLOCK " +
         REFERENCE().BLOCK_TITLE + ")";
}

std::string TABLE_HEAD(const std::vector<std::string>& labels, bool esd) {
  std::string line = FACETOR_HEADSTART();
  for (std::size_t m = 0; m < labels.size(); ++m)
    PUT_AT(line, LABEL_COLUMN(static_cast<int>(m) + 1, esd), labels[m]);
  return line;
}

std::string CODE_LINE(const std::vector<std::string>& codes, bool esd, bool with_word) {
  std::string line;
  if (with_word) PUT_AT(line, codes_word_column, "symcodes:");
  for (std::size_t m = 0; m < codes.size(); ++m)
    PUT_AT(line, LABEL_COLUMN(static_cast<int>(m) + 1, esd), codes[m]);
  return line;
}

bool START_CENTRE_ROW(int place, int i, bool esd, std::string& line) {
  line = FACETOR_LINESTART(place, esd);
  if (PHASE(ISORT(place)).NBONDS(i) >= 0) return true;
  line += "  No equivalent central atom in this structure";
  return false;
}

void PUT_VALUE(std::string& line, int m, bool esd, float value, float std, int decimals) {
  if (esd)
    PUT_FIELD(line, VALUE_COLUMN(m, true), esd_step, SETNUM_STD(value, std));
  else
    PUT_AT(line, VALUE_COLUMN(m, false), REAL_COLUMNS(value, plain_width, decimals));
}

void PUT_NO_VALUE(std::string& line, int m, bool esd) {
  PUT_AT(line, VALUE_COLUMN(m, esd), "No value");
}

// ---- ligands ----

std::string LIGAND_LABEL(int i, int m) {
  const CRYSTAL_STRUCTURE_TYPE& reference = REFERENCE();
  const int ligand = reference.BONDS.LIGAND(i, m);
  return ligand > 0 ? reference.ATOM(ligand).LAB : "";
}

std::string LIGAND_CODE(int i, int m) {
  const CRYSTAL_STRUCTURE_TYPE& reference = REFERENCE();
  return KVA_CIFNEW::WRITE_SYMCODE(reference.BONDS(i, m, BOND_SYMCODE));
}

}  // namespace FACETOR_LIST
