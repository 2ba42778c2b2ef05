// The atom editor: its command table, which atoms count in calculations, and new scattering factor
// names.
#include "src/facetor6_atomedit/atomedit.h"

#include <array>
#include <string>
#include <vector>

#include "console_code/console/command.h"
#include "console_code/console/input.h"
#include "console_code/console/output.h"
#include "console_code/console/prompts.h"
#include "console_code/console/state.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"
#include "foundations/XTAL_Scattering_Chemical_Tables.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_console/valence_table.h"
#include "src/facetor6_list/list.h"
#include "src/kva_crystal_structures/atom_search.h"

namespace FACETOR_ATOMEDIT {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

constexpr int name_length = 10;        // characters of an atom name in an answer
constexpr int sfac_symbol_length = 4;  // characters of a scattering factor name

// ---- the editor's commands ----

enum EDIT_COMMAND { EDIT_LIST = 1, EDIT_SHOW, EDIT_SET, EDIT_USE, EDIT_OMIT, EDIT_ELEMENT };
enum EDIT_GROUP { SETTINGS_GROUP = 1, ATOMS_GROUP };

struct EDIT_ENTRY {
  std::string_view WORD;
  std::string_view DESCRIPTION;
  EDIT_GROUP GROUP;
};

// ORDER EDIT_COMMAND
constexpr std::array<EDIT_ENTRY, 6> edit_table{{
    {"LIST", "List crystal data", SETTINGS_GROUP},
    {"SHOW", "Show program parameters", SETTINGS_GROUP},
    {"SET", "Set program parameters", SETTINGS_GROUP},
    {"USE", "Use atoms", ATOMS_GROUP},
    {"OMIT", "Omit atoms", ATOMS_GROUP},
    {"ELEMENT", "Set element names and charge", ATOMS_GROUP},
}};

void SET_CLIST_ATOMEDIT() {
  CONSOLE.COMMANDS.CLEAR();
  for (const EDIT_ENTRY& entry : edit_table)
    CONSOLE.COMMANDS.ADD(
        {std::string(entry.WORD), std::string(entry.DESCRIPTION), entry.GROUP, false});
  CONSOLE.COMMANDS(EDIT_LIST).MENU = FACETOR_LIST::LIST_MENU();
  CONSOLE.COMMANDS(EDIT_SET).MENU = SET_MENU();
  CONSOLE.CLIST_GROUP_TITLE.CLEAR();
  CONSOLE.CLIST_GROUP_TITLE.ADD("Program and data settings");
  CONSOLE.CLIST_GROUP_TITLE.ADD("Atom editing");
}

// ---- use of atoms ----

// Sets the atom's use, unless it is a duplicate of another.
void SET_USE_OF_ATOM(CRYSTAL_STRUCTURE_TYPE& phase, int atom, bool use) {
  if (phase.ATOM_USE(atom) >= ATOM_OMITTED) phase.ATOM_USE(atom) = use ? ATOM_USED : ATOM_OMITTED;
}

// Atoms of the reference block whose label begins with name, and the atoms at their positions in
// the blocks. False, with a message, when there is none.
bool SET_ATOM_USE_NAME(const std::string& name, const std::vector<int>& blocks, bool use) {
  const std::vector<int> atoms = FIND_ALLATOMS_BY_NAME(REFERENCE(), name, "omit");
  if (atoms.empty()) {
    WRITE_OUT("|*****No atoms found with this name in the reference block!");
    return false;
  }
  for (int block : blocks) {
    const ATOM_IMAGES images = IMAGES_OF(PHASE(block));
    for (int i : atoms) {
      const FOUND_ATOM found = FIND_ATOM(images, REFERENCE().ATOM(i).X, "omit");
      if (found.ATOM > 0) SET_USE_OF_ATOM(PHASE(block), found.ATOM, use);
    }
  }
  return true;
}

// All atoms of an element in the blocks. False, with a message, when there is none.
bool SET_ATOM_USE_ELEMENT(const std::string& symbol, const std::vector<int>& blocks, bool use) {
  bool found = false;
  for (int block : blocks) {
    CRYSTAL_STRUCTURE_TYPE& phase = PHASE(block);
    for (int i = 1; i <= phase.NATOMS; ++i) {
      if (!EQUAL_TEXT(phase.ATOM(i).CHEMSYMB, symbol)) continue;
      SET_USE_OF_ATOM(phase, i, use);
      found = true;
    }
  }
  if (!found) WRITE_OUT("|*****No atoms found with this chemical symbol!");
  return found;
}

// One character, or two of which the second is a letter, that are a chemical symbol.
bool MEANS_ELEMENT(const std::string& answer) {
  const bool short_enough = answer.size() == 1 || (answer.size() == 2 && ISLETTER(answer[1]));
  return short_enough && XTAL::IS_CHEMSYMB(answer);
}

void CHANGE_USE(const std::string& answer, const std::vector<int>& blocks, bool use) {
  const std::string now = use ? " are now used" : " are now omitted";
  if (MEANS_ELEMENT(answer)) {
    std::string symbol;
    int z = 0;
    XTAL::GET_CHEMSYMB(answer, symbol, z);
    if (SET_ATOM_USE_ELEMENT(symbol, blocks, use))
      WRITE_OUT("     Atoms of element " + AS_IT_IS(symbol) + now +
                (blocks.size() > 1 ? "     in all blocks" : ""));
    return;
  }
  if (SET_ATOM_USE_NAME(answer, blocks, use))
    WRITE_OUT("     Atoms with names beginning " + AS_IT_IS(answer) + now +
              "     in the reference block, and equivalent atoms in other blocks");
}

void RUN_SET_ATOM_USE(bool use) {
  std::vector<int> blocks{1};
  if (NPHASES > 1) {
    WRITE_OUT(
        "|*****First you will select which datablocks to use; these are all the datablocks:|");
    FACETOR_LIST::FACETOR_LIST_PHASE();
    blocks = ASK_BLOCKS("Input the datablock numbers to use, <CR> to exit: ");
  }
  if (blocks.empty()) return;
  while (true) {
    WRITE_OUT("*****These are the atom names in the reference block:");
    FACETOR_LIST::FACETOR_LIST_ATOMS("", IREFERENCE);
    GET_INPUT(use ? "     Input the element or atom name to be used (blank to exit):"
                  : "     Input the element or atom name to be omitted (blank to exit):",
              HELP_WITH_LABELS());
    if (CONSOLE.INSTRING_LEN == 0) return;
    CHANGE_USE(CUT_TEXT(LEFT_ADJUST(CONSOLE.INSTRING), name_length), blocks, use);
    WRITE_OUT(NPHASES > 1 ? "|*****These are the atom names and their updated status in all blocks:"
                          : "|*****These are the atom names and their status:");
    FACETOR_LIST::FACETOR_LIST_ATOMS();
    WRITE_REFERENCE();
    KEEP_RECORDED({"", "EXIT"});
  }
}

// ---- elements ----

// Gives each atom of the blocks whose scattering factor begins with old_symbol the new one; how
// many.
int CHANGE_ELEMENTS(const std::string& old_symbol, const std::string& new_symbol,
                    const std::vector<int>& blocks) {
  int changed = 0;
  for (int block : blocks)
    for (int i = 1; i <= PHASE(block).NATOMS; ++i) {
      ATOM_TYPE& atom = PHASE(block).ATOM(i);
      if (!BEGINS_WITH(atom.SFACSYMB, old_symbol)) continue;
      atom.SFACSYMB = CUT_TEXT(new_symbol, sfac_symbol_length);
      XTAL::GET_CHEMSYMB(atom.SFACSYMB, atom.CHEMSYMB, atom.Z);
      ++changed;
    }
  CLEAR_FACETOR_VALENCE();  // its tables depend on the elements
  return changed;
}

// Takes pairs of old and new names until an empty line.
void ASK_ELEMENTS(const std::vector<int>& blocks) {
  while (true) {
    GET_INPUT("Input current sfactor and new sfactor:");
    if (CONSOLE.INSTRING_LEN == 0) return;
    std::array<std::string, 2> words;
    int count = 0;
    GETWORDS(CONSOLE.INSTRING, words, count);
    if (count == 0) {
      WRITE_OUT(" *****No words recognised in input - try again");
    } else if (count == 1) {
      WRITE_OUT(" *****Only one scattering factor read - try again");
    } else {
      if (CHANGE_ELEMENTS(U_CASE(words[0]), U_CASE(words[1]), blocks) == 0)
        WRITE_OUT(" *****No atoms found with scattering factor " + AS_IT_IS(words[0]));
      CHEMSYMB_PRESENT();
      KEEP_RECORDED({"", "EXIT"});
    }
  }
}

void RUN_SET_ELEMENTS() {
  WRITE_OUT(
      "|| This command allows you to change the element symbol and charge for the scattering "
      "factor on sites");
  WRITE_OUT("*****These are the site names and scattering factors:");
  FACETOR_LIST::FACETOR_LIST_ATOMS("SCAT");
  std::vector<int> blocks{1};
  if (NPHASES > 1) {
    WRITE_OUT("|*****First select which datablocks to modify:");
    blocks = ASK_BLOCKS("Input the datablock numbers to modify, <CR> to exit: ");
  }
  if (blocks.empty()) return;
  WRITE_OUT("|     Now input the current scattering factor name and a new name:");
  ASK_ELEMENTS(blocks);
  WRITE_OUT("*****These are now the site names and scattering factors:");
  FACETOR_LIST::FACETOR_LIST_ATOMS("SCAT");
}

// ---- the editor ----

void EXECUTE_ATOMEDIT(int icom) {
  switch (icom) {
    case EDIT_LIST:
      return FACETOR_LIST::RUN_FACETOR_LIST();
    case EDIT_SHOW:
      return RUN_SHOW_FACETOR_PARAMS();
    case EDIT_SET:
      return RUN_SET_FACETOR_PARAMS();
    case EDIT_USE:
      return RUN_SET_ATOM_USE(true);
    case EDIT_OMIT:
      return RUN_SET_ATOM_USE(false);
    case EDIT_ELEMENT:
      return RUN_SET_ELEMENTS();
    default:
      WRITE_OUT(" This command not yet available");
  }
}

}  // namespace

void RUN_ATOMEDIT() {
  ANNOUNCE("Edit utility for atom entries");
  if (CHECK_NOPHASES()) {
    WARNING("There are no datasets to be edited");
    return;
  }
  while (true) {
    CONSOLE.CMD_PROMPT = "ATOMEDIT>";
    SET_CLIST_ATOMEDIT();
    int icom = 0;
    COMMAND(icom, {"EXIT"});
    if (icom <= 0) return;
    EXECUTE_ATOMEDIT(icom);
    KEEP_RECORDED({"EXIT"});
  }
}

}  // namespace FACETOR_ATOMEDIT
