// ATOMEDIT: its commands and dialogues line by line, which atoms an answer means, new elements, and
// that omitted atoms leave every report and come back.
#include "src/facetor6_atomedit/atomedit.h"

#include <algorithm>  // for min

#include "facetor6_commands__list_blocks.h"
#include "src/facetor6_calc/calc.h"
#include "src/facetor6_exportfiles/exportfiles.h"
#include "src/facetor6_writefiles/writefiles.h"
#include "src/kva_crystal_structures/displacement.h"

using namespace FACETOR_ATOMEDIT;
using namespace LIST_TESTS;

namespace {

// The announcement stands from column (100 - 29) / 2 = 35, one blank behind it.
const std::string announcement =
    "\n" + std::string(34, '*') + "Edit utility for atom entries " + std::string(36, '*') + "\n\n";
const std::string prompt = "\nATOMEDIT>";  // answers are not echoed
const std::string in_reference = "*****These are the atom names in the reference block:\n";
const std::string status = "\n*****These are the atom names and their status:\n";
const std::string updated =
    "\n*****These are the atom names and their updated status in all blocks:\n";
const std::string names_title = "  Site names in each block, in input order\n";
const std::string factors_title =
    "  Site names and scattering factors in each block, in input order\n";
const std::string names = "                                  Site name: ";
const std::string factors = "                          Scattering factor: ";
const std::string marks =
    "     *****Atoms marked with * are currently marked as omitted from calculations\n"
    "     *****Atoms marked with ! are duplicates of other atoms\n";
const std::string ask_omit = "     Input the element or atom name to be omitted (blank to exit):";
const std::string ask_use = "     Input the element or atom name to be used (blank to exit):";
const std::string reference_line =
    "\n     REFERENCE BLOCK IS #1: first   T = 298.0 K, P =  0.000 GPa\n";
const std::string choose_blocks =
    "\n*****First you will select which datablocks to use; these are all the datablocks:\n\n" +
    head + "\n";
const std::string blocks_hint =
    "\n  (Input negative numbers to define a range: 4,-7 means 4,5,6 and 7, or 'all' for "
    "everything)\n";
const std::string ask_blocks = "\nInput the datablock numbers to use, <CR> to exit:";
const std::string no_name = "\n*****No atoms found with this name in the reference block!\n";
const std::string no_element = "\n*****No atoms found with this chemical symbol!\n";
const std::string as_named = "     in the reference block, and equivalent atoms in other blocks\n";

const std::string elements_title =
    "\n\n This command allows you to change the element symbol and charge for the scattering "
    "factor on sites\n*****These are the site names and scattering factors:\n";
const std::string now_elements = "*****These are now the site names and scattering factors:\n";
const std::string give_elements =
    "\n     Now input the current scattering factor name and a new name:\n";
const std::string ask_elements = "Input current sfactor and new sfactor:";
const std::string not_elements =
    "\n*****WARNING: Some atoms are not recognised as elements: use AtomEdit to set scattering "
    "factors\n\n";

class EDITOR : public BLOCKS {
 protected:
  // What the editor says to the lines, from its first prompt to its last.
  std::string EDIT(const std::string& lines) {
    const std::string opening = announcement + prompt;
    const std::string said = SAID(lines + "exit\n", RUN_ATOMEDIT);
    EXPECT_TRUE(said.starts_with(opening)) << said;
    EXPECT_TRUE(said.ends_with(prompt)) << said;
    return said.substr(std::min(said.size(), opening.size()));
  }

  // OMIT or USE with one answer.
  std::string OMIT(const std::string& answer) { return EDIT("omit\n" + answer + "\n\n"); }
  std::string USE(const std::string& answer) { return EDIT("use\n" + answer + "\n\n"); }

  // A block of atoms without symmetry in a cell of 10 angstroms.
  static void ADD_SITES(const std::string& title, const std::vector<SITE>& sites) {
    ADD(title, MADE({10, 10, 10}, {90, 90, 90}, "P 1", sites));
  }

  static void ADD_LABELS(const std::vector<std::string>& labels) {
    std::vector<SITE> sites;
    for (const std::string& label : labels)
      sites.push_back({label, {0.12f * static_cast<float>(sites.size()), 0, 0}});
    ADD_SITES("first", sites);
  }

  // ATOM_USE of the atoms in order.
  static std::string USES(int block) {
    std::string uses;
    for (int i = 1; i <= PHASE(block).NATOMS; ++i)
      uses += (i > 1 ? " " : "") + std::to_string(PHASE(block).ATOM_USE(i));
    return uses;
  }

  static bool HOLDS(const std::string& said, const std::string& text) {
    return said.find(text) != std::string::npos;
  }

  static const ATOM_TYPE& ATOM(int block, int atom) { return PHASE(block).ATOM(atom); }
};

}  // namespace

// ---- the commands ----

TEST_F(EDITOR, NEEDS_BLOCKS_IN_USE) {
  const std::string refusal = announcement +
                              "\n*****WARNING: No datablocks with use flags set!\n\n"
                              "\n*****WARNING: There are no datasets to be edited\n\n";
  EXPECT_EQ(SAID("", RUN_ATOMEDIT), refusal);
  ADD("first");
  IUSE(1) = 0;
  EXPECT_EQ(SAID("", RUN_ATOMEDIT), refusal);
}

TEST_F(EDITOR, ENDS_WITH_EXIT_OR_X) {
  ADD("first");
  EXPECT_EQ(SAID("exit\n", RUN_ATOMEDIT), announcement + prompt);
  EXPECT_EQ(SAID("\nx\n", RUN_ATOMEDIT), announcement + prompt + prompt);
}

TEST_F(EDITOR, COMMANDS_OF_THE_PROGRAM_ARE_NOT_KNOWN_IN_IT) {
  ADD("first");
  EXPECT_EQ(EDIT("read quartz.cif\nclear\nsort\n"), prompt + prompt + prompt);
  EXPECT_EQ(NPHASES, 1);
}

TEST_F(EDITOR, ABBREVIATIONS_OF_ITS_COMMANDS) {
  ADD("first");
  EXPECT_EQ(EDIT("s\n"), "*****Ambiguous command\n" + prompt) << "SHOW and SET";
  EXPECT_TRUE(HOLDS(EDIT("o\n\n"), ask_omit));
  EXPECT_TRUE(HOLDS(EDIT("u\n\n"), ask_use));
  EXPECT_TRUE(HOLDS(EDIT("e\n\n"), ask_elements));
}

TEST_F(EDITOR, LIST_SHOW_AND_SET_WORK_IN_IT) {
  ADD("first");
  EXPECT_EQ(EDIT("list site names\n"),
            names_title + start_1 + "\n" + names + "Si1     O1      O2      O3\n" + prompt);
  EXPECT_TRUE(HOLDS(EDIT("show\n"), "Current Settings"));
  RUN.LIST_ALL_BLOCKS = true;
  EXPECT_EQ(EDIT("set hide\n"), prompt);
  EXPECT_FALSE(RUN.LIST_ALL_BLOCKS);
}

TEST_F(EDITOR, THE_PROMPT_COMES_BACK_FROM_SYSTEM_MODE) {
  ADD("first");
  EXPECT_EQ(EDIT("sys\nprog\n"),
            "     To exit from system and return to the program, type PROG\n\nSYSTEM>" + prompt);
}

// ---- USE and OMIT, line by line ----

TEST_F(EDITOR, EVERY_LINE_OF_OMIT_AND_USE_WITH_ONE_BLOCK) {
  ADD("first");
  const std::string all_used =
      names_title + start_1 + "\n" + names + "Si1     O1      O2      O3\n";
  const std::string oxygens_out =
      names_title + start_1 + "\n" + names + "Si1     O1*     O2*     O3*\n" + marks;
  const std::string o2_back =
      names_title + start_1 + "\n" + names + "Si1     O1*     O2      O3*\n" + marks;
  EXPECT_EQ(EDIT("omit\nO\n\nuse\nO2\nO\n\n"),
            in_reference + all_used + ask_omit + "     Atoms of element O are now omitted\n" +
                status + oxygens_out + reference_line + in_reference + oxygens_out + ask_omit +
                prompt + in_reference + oxygens_out + ask_use +
                "     Atoms with names beginning O2 are now used" + as_named + status + o2_back +
                reference_line + in_reference + o2_back + ask_use +
                "     Atoms of element O are now used\n" + status + all_used + reference_line +
                in_reference + all_used + ask_use + prompt);
}

TEST_F(EDITOR, EVERY_LINE_OF_OMIT_WITH_SEVERAL_BLOCKS) {
  ADD("first");
  ADD("second");
  const std::string block_list = choose_blocks + start_1 + "\n" + start_2 + "\n" + blocks_hint;
  const std::string reference_used =
      names_title + start_1 + "\n" + names + "Si1     O1      O2      O3\n";
  const std::string reference_out =
      names_title + start_1 + "\n" + names + "Si1*    O1      O2      O3\n" + marks;
  const std::string both_out = names_title + start_1 + "\n" + names +
                               "Si1*    O1      O2      O3\n" + start_2 + "\n" + names +
                               "Si1*    O1      O2      O3\n" + marks;
  EXPECT_EQ(EDIT("omit\n1,-2\nSI\n\n"),
            block_list + ask_blocks + in_reference + reference_used + ask_omit +
                "     Atoms of element Si are now omitted     in all blocks\n" + updated +
                both_out + reference_line + in_reference + reference_out + ask_omit + prompt);
}

TEST_F(EDITOR, NO_BLOCK_ENDS_THE_COMMAND) {
  ADD("first");
  ADD("second");
  for (const char* command : {"omit\n\n", "use\n\n"})
    EXPECT_EQ(EDIT(command),
              choose_blocks + start_1 + "\n" + start_2 + "\n" + blocks_hint + ask_blocks + prompt);
}

TEST_F(EDITOR, BLOCK_NUMBERS_MAY_STAND_BEHIND_THE_COMMAND) {
  ADD("first");
  ADD("second");
  EXPECT_TRUE(EDIT("omit 2\nO1\n\n")
                  .starts_with(choose_blocks + start_1 + "\n" + start_2 + "\n" + in_reference));
  EXPECT_EQ(USES(1), "1 1 1 1");
  EXPECT_EQ(USES(2), "1 0 1 1");
}

TEST_F(EDITOR, A_NAME_BEHIND_THE_COMMAND_ANSWERS_NO_QUESTION) {
  ADD("first");
  EXPECT_TRUE(EDIT("omit O1\n\n").starts_with(in_reference)) << "nothing is omitted";
  EXPECT_EQ(USES(1), "1 1 1 1");
}

TEST_F(EDITOR, ALL_BLOCKS_ARE_TOLD_ONLY_WHEN_SEVERAL_WERE_CHOSEN) {
  ADD("first");
  ADD("second");
  EXPECT_TRUE(HOLDS(EDIT("omit\n2\n\nO\n\n"), "     Atoms of element O are now omitted\n"));
  EXPECT_TRUE(HOLDS(EDIT("use\n2,2\nO\n\n"), "     Atoms of element O are now used\n"))
      << "one block named twice";
  EXPECT_TRUE(HOLDS(EDIT("omit\nall\nO\n\n"),
                    "     Atoms of element O are now omitted     in all blocks\n"));
}

TEST_F(EDITOR, THE_REFERENCE_BLOCK_IS_THE_ONE_SHOWN_AND_SEARCHED) {
  ADD_SITES("first", {{"Si1", {0, 0, 0}}});
  ADD_SITES("second", {{"Al1", {0, 0, 0}}});
  IREFERENCE = 2;
  const std::string said = EDIT("omit all\nSi1\nAl1\n\n");
  EXPECT_TRUE(HOLDS(
      said, in_reference + names_title + start_2 + "\n" + names + "Al1\n" + ask_omit + no_name))
      << said;
  EXPECT_TRUE(HOLDS(said, "\n     REFERENCE BLOCK IS #2: second   T = 298.0 K"));
  EXPECT_EQ(USES(1), "0");
  EXPECT_EQ(USES(2), "0");
}

// ---- what an answer means ----

TEST_F(EDITOR, ANSWERS_ARE_ELEMENTS_OR_THE_BEGINNING_OF_NAMES) {
  struct CASE {
    std::string ANSWER;
    std::string USES;
    std::string SAID;
  };
  const auto element = [](const std::string& symbol) {
    return "     Atoms of element " + symbol + " are now omitted\n";
  };
  const auto name = [](const std::string& text) {
    return "     Atoms with names beginning " + text + " are now omitted" + as_named;
  };
  const std::vector<CASE> cases{
      // Si1 Si10 O1 O11 O2 OW Ca P2x
      {"O", "1 1 0 0 0 0 1 1", element("O")},
      {"o", "1 1 0 0 0 0 1 1", element("O")},
      {"Si", "0 0 1 1 1 1 1 1", element("Si")},
      {"sI", "0 0 1 1 1 1 1 1", element("Si")},
      {"CA", "1 1 1 1 1 1 0 1", element("Ca")},
      {"OW", "1 1 1 1 1 0 1 1", name("OW")},  // no symbol as a whole
      {"O1", "1 1 0 0 1 1 1 1", name("O1")},  // a digit: a name
      {"P2", "1 1 1 1 1 1 1 0", name("P2")},  // P alone is phosphorus
      {"O2 ", "1 1 1 1 0 1 1 1", name("O2")},
      {"  O2", "1 1 1 1 0 1 1 1", name("O2")},
      {"si1", "0 0 1 1 1 1 1 1", name("si1")},  // names match from their start
      {"Si10", "1 0 1 1 1 1 1 1", name("Si10")},
      {"S", "1 1 1 1 1 1 1 1", no_element},  // sulphur, not the beginning of Si1
      {"Fe", "1 1 1 1 1 1 1 1", no_element},
      {"X", "1 1 1 1 1 1 1 1", no_name},  // no symbol: a name
      {"1", "1 1 1 1 1 1 1 1", no_name},
      {"W1", "1 1 1 1 1 1 1 1", no_name},
      {"O*", "1 1 1 1 1 1 1 1", no_name},
      {"Si1 Si10", "1 1 1 1 1 1 1 1", no_name}};
  ADD_LABELS({"Si1", "Si10", "O1", "O11", "O2", "OW", "Ca", "P2x"});
  for (const CASE& given : cases) {
    for (int i = 1; i <= 8; ++i) PHASE(1).ATOM_USE(i) = ATOM_USED;
    const std::string said = OMIT(given.ANSWER);
    EXPECT_TRUE(HOLDS(said, ask_omit + given.SAID + status)) << given.ANSWER << said;
    EXPECT_EQ(USES(1), given.USES) << given.ANSWER;
  }
}

TEST_F(EDITOR, A_ONE_LETTER_LABEL_CANNOT_BE_NAMED) {
  // "O" is the element, although an atom bears it as label; "M" is no element and so a label.
  ADD_LABELS({"O", "O1", "M"});
  OMIT("O");
  EXPECT_EQ(USES(1), "0 0 1");
  OMIT("M");
  EXPECT_EQ(USES(1), "0 0 0");
}

TEST_F(EDITOR, ELEMENTS_COUNT_AND_NOT_LABELS) {
  ADD_LABELS({"Si1", "T1"});
  PHASE(1).ATOM(2).CHEMSYMB = "Si";
  OMIT("Si");
  EXPECT_EQ(USES(1), "0 0");
}

TEST_F(EDITOR, ANSWERS_ARE_CUT_AT_TEN_CHARACTERS) {
  ADD_LABELS({"Octahedral_1", "Octahedral_2", "Tetra"});
  // Ten characters are "Octahedral".
  EXPECT_TRUE(HOLDS(OMIT("Octahedral_1"), "     Atoms with names beginning Octahedral are now"));
  EXPECT_EQ(USES(1), "0 0 1");
}

TEST_F(EDITOR, STRANGE_ANSWERS_DO_NO_HARM) {
  ADD("first");
  for (const std::string& answer :
       {std::string(250, 'O'), std::string("\"'|#!"), std::string("\x01\x02\x7f"),
        std::string("\xc3\xb8"), std::string("-1e999")})
    EXPECT_TRUE(HOLDS(EDIT("omit\n" + answer + "\n\n\n\n"), prompt));
  EXPECT_EQ(USES(1), "1 1 1 1");
}

TEST_F(EDITOR, OMITTED_ATOMS_ARE_FOUND_BY_NAME_AND_COME_BACK) {
  ADD("first");
  OMIT("O1");
  OMIT("O1");
  EXPECT_EQ(USES(1), "1 0 1 1");
  USE("O1");
  EXPECT_EQ(USES(1), "1 1 1 1");
}

// ---- the chosen blocks ----

TEST_F(EDITOR, ATOMS_OF_OTHER_BLOCKS_FOLLOW_BY_POSITION) {
  ADD_SITES("first", {{"Si1", {0.1f, 0.1f, 0.1f}},
                      {"O1", {0.3f, 0.1f, 0.1f}},
                      {"O2", {0.5f, 0.1f, 0.1f}},
                      {"O3", {0.98f, 0.5f, 0.5f}}});
  // Other labels and order; the first lies 0.9 angstroms from O1 and 1.1 from O2, the last 0.4 from
  // O3 across the end of the cell.
  ADD_SITES("second", {{"Ox", {0.39f, 0.1f, 0.1f}},
                       {"Tx", {0.1f, 0.1f, 0.1f}},
                       {"O2", {0.7f, 0.7f, 0.7f}},
                       {"Oz", {0.02f, 0.5f, 0.5f}}});
  EXPECT_TRUE(HOLDS(EDIT("omit all\nO2\n\n"),
                    ask_omit + "     Atoms with names beginning O2 are now omitted" + as_named))
      << "a block in which nothing lies there says nothing";
  EXPECT_EQ(USES(1), "1 1 0 1");
  EXPECT_EQ(USES(2), "1 1 1 1") << "its own O2 lies elsewhere";
  EDIT("omit all\nO1\n\n");
  EXPECT_EQ(USES(1), "1 0 0 1");
  EXPECT_EQ(USES(2), "0 1 1 1");
  EDIT("omit all\nSi1\n\n");
  EXPECT_EQ(USES(2), "0 0 1 1");
  EDIT("omit all\nO3\n\n");
  EXPECT_EQ(USES(2), "0 0 1 0");
  EDIT("use all\nO1\n\n");
  EXPECT_EQ(USES(2), "1 0 1 0") << "omitted atoms are found by position";
  IREFERENCE = 2;
  EDIT("use all\nOz\n\n");
  EXPECT_EQ(USES(1), "0 1 0 1") << "from the other end";
  EXPECT_EQ(USES(2), "1 0 1 1");
}

TEST_F(EDITOR, POSITIONS_FOLLOW_THE_SYMMETRY_OF_THE_OTHER_BLOCK) {
  const auto centric = [](const VECTOR3& x_frac) {
    return MADE({10, 10, 10}, {90, 90, 90}, "P -1", {{"Si1", x_frac}});
  };
  ADD("first", centric({0.1f, 0.2f, 0.3f}));
  ADD("second", centric({0.9f, 0.8f, 0.7f}));
  EDIT("omit all\nSi1\n\n");
  EXPECT_EQ(USES(2), "0");
}

TEST_F(EDITOR, BLOCKS_THAT_WERE_NOT_CHOSEN_STAY) {
  for (const char* title : {"first", "second", "third"}) ADD(title);
  EDIT("omit\n2,3\n\nO1\nSi\n\n");
  EXPECT_EQ(USES(1), "1 1 1 1") << "not even the reference block";
  EXPECT_EQ(USES(2), "0 0 1 1");
  EXPECT_EQ(USES(3), "0 0 1 1");
}

TEST_F(EDITOR, BLOCKS_THAT_ARE_NOT_IN_USE_CAN_BE_EDITED) {
  ADD("first");
  ADD("second");
  IUSE(2) = 0;
  EDIT("omit\n2\n\nO\n\n");
  EXPECT_EQ(USES(2), "1 0 0 0");
}

TEST_F(EDITOR, AN_ELEMENT_IS_LOOKED_FOR_IN_EVERY_CHOSEN_BLOCK) {
  ADD_SITES("first", {{"Si1", {0, 0, 0}}});
  ADD_SITES("second", {{"Al1", {0.5f, 0, 0}}, {"Al2", {0, 0.5f, 0}}});
  EXPECT_TRUE(HOLDS(EDIT("omit all\nAl\n\n"),
                    "     Atoms of element Al are now omitted     in all blocks\n"));
  EXPECT_EQ(USES(1), "1");
  EXPECT_EQ(USES(2), "0 0") << "the reference block need not have it";
  EXPECT_TRUE(HOLDS(EDIT("omit\n1\n\nAl\n\n"), ask_omit + no_element + updated));
}

// ---- duplicates and growth ----

TEST_F(EDITOR, DUPLICATES_NEVER_CHANGE) {
  const std::vector<SITE> mixed{
      {"Mg1", {0.1f, 0, 0}}, {"Fe1", {0.1f, 0, 0}}, {"Mg2", {0.1f, 0, 0}}, {"O1", {0.5f, 0, 0}}};
  ADD_SITES("first", mixed);
  ASSERT_EQ(USES(1), "1 -1 -1 1");
  OMIT("Fe");
  EXPECT_EQ(USES(1), "1 -1 -1 1");
  OMIT("Mg");
  EXPECT_EQ(USES(1), "0 -1 -1 1") << "the second magnesium is a duplicate as well";
  USE("Mg");
  EXPECT_EQ(USES(1), "1 -1 -1 1");
  EXPECT_TRUE(HOLDS(OMIT("Fe1"), no_name)) << "a duplicate cannot be named";
  EXPECT_EQ(USES(1), "1 -1 -1 1");
  EXPECT_TRUE(HOLDS(OMIT("Mg1"), names + "Mg1*    Fe1!    Mg2!    O1\n" + marks));
}

TEST_F(EDITOR, USE_FLAGS_ARE_LOST_WHEN_A_LARGER_BLOCK_COMES) {
  ADD_LABELS({"Si1", "Al1", "O1", "O2"});
  PHASE(1).ATOM(2).X = PHASE(1).ATOM(1).X;  // becomes a duplicate when the record grows
  OMIT("O");
  ASSERT_EQ(USES(1), "1 1 0 0");
  ADD_SITES("small", {{"Si1", {0, 0, 0}}});
  EXPECT_EQ(USES(1), "1 1 0 0");
  ADD_SITES("large", std::vector<SITE>(5, {"Si1", {0.5f, 0.5f, 0.5f}}));
  EXPECT_EQ(USES(1), "1 -1 1 1");
}

// ---- elements, line by line ----

TEST_F(EDITOR, EVERY_LINE_OF_ELEMENT_WITH_ONE_BLOCK) {
  ADD("first");
  const std::string before = factors_title + start_1 + "\n" + names +
                             "Si1     O1      O2      O3\n" + factors +
                             "Si      O       O       O\n";
  const std::string after = factors_title + start_1 + "\n" + names +
                            "Si1     O1      O2      O3\n" + factors +
                            "AL+3    O       O       O\n";
  EXPECT_EQ(EDIT("element\n\"\nsi\nsi al+3\n\n"),
            elements_title + before + give_elements + ask_elements +
                " *****No words recognised in input - try again\n" + ask_elements +
                " *****Only one scattering factor read - try again\n" + ask_elements +
                ask_elements + now_elements + after + prompt);
}

TEST_F(EDITOR, EVERY_LINE_OF_ELEMENT_WITH_SEVERAL_BLOCKS) {
  ADD_SITES("first", {{"Si1", {0, 0, 0}}});
  ADD_SITES("second", {{"Si1", {0, 0, 0}}});
  const std::string which = "\n*****First select which datablocks to modify:\n";
  const std::string ask_which = "\nInput the datablock numbers to modify, <CR> to exit:";
  const auto listed = [](const std::string& first, const std::string& second) {
    return factors_title + start_1 + "\n" + names + "Si1\n" + factors + first + "\n" + start_2 +
           "\n" + names + "Si1\n" + factors + second + "\n";
  };
  EXPECT_EQ(EDIT("element\n2\n\nSi Ge\n\n"), elements_title + listed("Si", "Si") + which +
                                                 blocks_hint + ask_which + ask_which +
                                                 give_elements + ask_elements + ask_elements +
                                                 now_elements + listed("Si", "GE") + prompt);
  EXPECT_EQ(EDIT("element\n\n"),
            elements_title + listed("Si", "GE") + which + blocks_hint + ask_which + prompt)
      << "no block ends the command";
  EXPECT_EQ(EDIT("element 1\nSi Ge\n\n"), elements_title + listed("Si", "GE") + which +
                                              give_elements + ask_elements + ask_elements +
                                              now_elements + listed("GE", "GE") + prompt)
      << "the number stands behind the command";
}

// ---- what a new element changes ----

TEST_F(EDITOR, A_NEW_FACTOR_GIVES_SYMBOL_AND_ATOMIC_NUMBER) {
  ADD("first");
  EDIT("element\nSI fe+3\n\n");
  EXPECT_EQ(ATOM(1, 1).SFACSYMB, "FE+3");
  EXPECT_EQ(ATOM(1, 1).CHEMSYMB, "Fe");
  EXPECT_EQ(ATOM(1, 1).Z, 26);
  EXPECT_EQ(ATOM(1, 1).LAB, "Si1") << "the label stays";
  EXPECT_EQ(ATOM(1, 2).SFACSYMB, "O");
}

TEST_F(EDITOR, FACTORS_MATCH_FROM_THEIR_START) {
  ADD_LABELS({"Si1", "S1", "Si2", "Cs1"});
  PHASE(1).ATOM(3).SFACSYMB = "Si+4";
  EDIT("element\nsi+4 P\n\n");
  EXPECT_EQ(ATOM(1, 1).SFACSYMB, "Si");
  EXPECT_EQ(ATOM(1, 3).SFACSYMB, "P");
  EDIT("element\ns K\n\n");
  EXPECT_EQ(ATOM(1, 1).SFACSYMB, "K") << "S begins Si too";
  EXPECT_EQ(ATOM(1, 2).SFACSYMB, "K");
  EXPECT_EQ(ATOM(1, 4).SFACSYMB, "Cs") << "and does not begin Cs";
}

TEST_F(EDITOR, FACTORS_ARE_CUT_AT_FOUR_AND_FURTHER_WORDS_IGNORED) {
  ADD("first");
  EDIT("element\nSi cr+6o4 O F\n\n");
  EXPECT_EQ(ATOM(1, 1).SFACSYMB, "CR+6");
  EXPECT_EQ(ATOM(1, 1).CHEMSYMB, "Cr");
  EXPECT_EQ(ATOM(1, 2).SFACSYMB, "O");
}

TEST_F(EDITOR, ALL_ATOMS_CHANGE_ALSO_THOSE_OMITTED_OR_DUPLICATES) {
  ADD_SITES("first", {{"Mg1", {0.1f, 0, 0}}, {"Mg2", {0.1f, 0, 0}}, {"Mg3", {0.5f, 0, 0}}});
  OMIT("Mg3");
  EDIT("element\nMg Zn\n\n");
  for (int i = 1; i <= 3; ++i) EXPECT_EQ(ATOM(1, i).CHEMSYMB, "Zn") << i;
  EXPECT_EQ(USES(1), "1 -1 0");
}

TEST_F(EDITOR, WHAT_IS_NO_ELEMENT_IS_WARNED_OF) {
  ADD("first");
  EXPECT_TRUE(HOLDS(EDIT("element\nSi xx\n\n"), ask_elements + not_elements + ask_elements));
  EXPECT_EQ(ATOM(1, 1).SFACSYMB, "XX");
  EXPECT_EQ(ATOM(1, 1).CHEMSYMB, "**");
  EXPECT_EQ(ATOM(1, 1).Z, 0);
  EXPECT_FALSE(HOLDS(EDIT("element\nxx si\n\n"), not_elements));
  EXPECT_EQ(ATOM(1, 1).Z, 14);
  OMIT("Si1");
  EXPECT_FALSE(HOLDS(EDIT("element\nSi xx\n\n"), not_elements)) << "omitted atoms do not count";
}

TEST_F(EDITOR, A_FACTOR_THAT_NO_ATOM_HAS_CHANGES_NOTHING_AND_IS_TOLD) {
  ADD("first");
  EXPECT_TRUE(HOLDS(EDIT("element\nFe Mn\n\n"),
                    ask_elements + " *****No atoms found with scattering factor Fe\n" +
                        ask_elements + now_elements));
  EXPECT_TRUE(HOLDS(EDIT("element\n\"\" Mn\n\n"),
                    ask_elements + " *****No atoms found with scattering factor\n" + ask_elements +
                        now_elements));
  EXPECT_EQ(ATOM(1, 1).SFACSYMB, "Si");
  EXPECT_EQ(ATOM(1, 2).SFACSYMB, "O");
}

TEST_F(EDITOR, BONDS_AND_VALENCES_FOLLOW_THE_NEW_ELEMENT) {
  ADD_SITES("first", {{"Si1", {0, 0, 0}}, {"O1", {0.165f, 0, 0}}});
  const auto calculate = [] {
    SAID("\n", FACETOR_CALC::RUN_FACETOR_CALC_BONDS);
    if (SUM_NBONDS(PHASE(1)) > 0) SAID("n\n", FACETOR_CALC::RUN_FACETOR_CALC_VALENCE);
  };
  calculate();
  // exp((d0 - 1.65) / 0.37) with d0 1.624 for silicon, 1.620 for aluminium.
  EXPECT_NEAR(PHASE(1).BONDS(1, 1, BOND_VALENCE), 0.9321f, 0.0001f);
  ASSERT_TRUE(VALENCES_DONE);
  EDIT("element\nSi Al\n\n");
  EXPECT_FALSE(VALENCES_DONE) << "the tables belong to the old element";
  EXPECT_EQ(BV_PAIRS.COUNT(), 0);
  EXPECT_EQ(EDIT("list valences\n"),
            "\n ***** No bond valences have been calculated - use calc*****\n" + prompt);
  calculate();
  EXPECT_NEAR(PHASE(1).BONDS(1, 1, BOND_VALENCE), 0.9221f, 0.0001f);
  EDIT("element\nO N\n\n");
  calculate();
  EXPECT_EQ(SUM_NBONDS(PHASE(1)), 0) << "nitrogen counts as a cation";
}

// ---- omitted atoms in every report ----

namespace {

// Reports of two blocks with one tetrahedron each, calculated anew.
class REPORTS : public EDITOR {
 protected:
  void SetUp() override {
    EDITOR::SetUp();
    ADD("first", TETRAHEDRON());
    ADD("second", TETRAHEDRON());
  }

  // Silicon at 0.1, 0.1, 0.1 with four oxygen atoms 1.6 angstroms away, all anisotropic.
  static CRYSTAL_STRUCTURE_TYPE TETRAHEDRON() {
    constexpr float near = 0.1f - 0.0924f;  // 1.6 / sqrt(3) = 0.924 angstroms
    constexpr float far = 0.1f + 0.0924f;
    CRYSTAL_STRUCTURE_TYPE phase = MADE({10, 10, 10}, {90, 90, 90}, "P 1",
                                        {{"Si1", {0.1f, 0.1f, 0.1f}, {0.0002f, 0.0002f, 0.0002f}},
                                         {"O1", {far, far, far}, {0.0003f, 0.0003f, 0.0003f}},
                                         {"O2", {far, near, near}, {0.0003f, 0.0003f, 0.0003f}},
                                         {"O3", {near, far, near}, {0.0003f, 0.0003f, 0.0003f}},
                                         {"O4", {near, near, far}, {0.0003f, 0.0003f, 0.0003f}}});
    for (int i = 1; i <= phase.NATOMS; ++i) {
      ATOM_TYPE& atom = phase.ATOM(i);
      atom.THTYPE = "Aniso";
      atom.UTYPE = "u_ij";
      atom.U = {0.01f, 0.02f, 0.03f, 0.001f, 0.002f, 0.003f};
    }
    SET_ALLATOM_ADP(phase);
    return phase;
  }

  void CALC() {
    SAID("\n", FACETOR_CALC::RUN_FACETOR_CALC_BONDS);
    if (SUM_NBONDS(PHASE(1)) > 0) SAID("n\n", FACETOR_CALC::RUN_FACETOR_CALC_VALENCE);
  }

  // Every report on all sites, by its name.
  std::vector<std::pair<std::string, std::string>> ALL_SITES() {
    std::vector<std::pair<std::string, std::string>> said;
    const auto add = [&](const std::string& name, void (*report)(std::string_view),
                         std::string_view option) {
      said.emplace_back(name + " " + std::string(option),
                        SAID("", [report, option] { report(option); }));
    };
    for (std::string_view option : {"", "ESD"}) {
      add("xyz", FACETOR_LIST_ALL_XYZ, option);
      add("bonds", FACETOR_LIST_ALL_BONDS, option);
      add("angles", FACETOR_LIST_ALL_ANGLES, option);
      add("edges", FACETOR_LIST_ALL_EDGES, option);
      add("valences", FACETOR_LIST_ALL_BONDVALENCE, option);
    }
    for (std::string_view option : {"U", "BETA", "ESD, U", "ESD, BETA"})
      add("adps", FACETOR_LIST_ALL_ADPS, option);
    for (std::string_view option : {"srb", "displ"}) add("bonds", FACETOR_LIST_ALL_BONDS, option);
    add(
        "orbix", [](std::string_view) { FACETOR_LIST_ALL_ORBIX(); }, "");
    said.emplace_back("cif", WRITTEN());
    return said;
  }

  // What WRITE puts into a file, behind the lines that tell of the writing.
  std::string WRITTEN() {
    std::filesystem::remove("all.cif");
    CONSOLE_TESTS::PEND("cif all.cif");
    SAID(SUM_NBONDS(PHASE(1)) > 0 ? "y\ny\n" : "y\n", FACETOR_WRITEFILES::WRITE_PHASE_TO_FILE);
    return ROWS(TEXT_OF("all.cif"), "_cell_length_a");
  }

  static std::string REPORT(const std::vector<std::pair<std::string, std::string>>& said,
                            const std::string& name) {
    for (const auto& [title, text] : said)
      if (title == name) return text;
    return "no report " + name;
  }
};

}  // namespace

TEST_F(REPORTS, AN_OMITTED_LIGAND_IS_IN_NONE_AND_COMES_BACK_IN_ALL) {
  CALC();
  const auto before = ALL_SITES();
  for (const auto& [name, text] : before)
    EXPECT_TRUE(HOLDS(text, "O4") || name == "orbix ") << name;
  EDIT("omit all\nO4\n\n");
  CALC();
  const auto without = ALL_SITES();
  for (const auto& [name, text] : without) EXPECT_FALSE(HOLDS(text, "O4")) << name << text;
  // Three bonds of 0.924 sqrt(3) = 1.6004 angstroms, no distortion and no volume of three ligands.
  EXPECT_TRUE(HOLDS(REPORT(without, "bonds "),
                    start_2 + "  1.6004  1.6004  1.6004    3  1.6004  0.0000   0.000   0.000\n"))
      << REPORT(without, "bonds ");
  EXPECT_TRUE(HOLDS(REPORT(without, "orbix "), "Si1 HAS CN=3"));
  EDIT("use all\nO4\n\n");
  CALC();
  const auto after = ALL_SITES();
  for (std::size_t k = 0; k < before.size(); ++k) EXPECT_EQ(after[k].second, before[k].second);
}

TEST_F(REPORTS, AN_OMITTED_CENTRE_HAS_NO_TABLE_AND_BONDS_NOTHING) {
  EDIT("omit all\nSi1\n\n");
  CALC();
  EXPECT_EQ(SUM_NBONDS(PHASE(1)), 0);
  for (const auto& [name, text] : ALL_SITES()) EXPECT_FALSE(HOLDS(text, "Si1")) << name << text;
  EXPECT_EQ(SAID("", [] { RUN_FACETOR_LIST_GEOM(REPORT_BONDS); }),
            "     No bond lengths have been loaded or calculated\n");
  EXPECT_TRUE(HOLDS(SAID("Si1\n\n", [] { RUN_FACETOR_LIST_GEOM(REPORT_XYZ); }),
                    "     *****Site with name = Si1 in reference block marked not to be used\n"));
  EDIT("use all\nSi1\n\n");
  CALC();
  EXPECT_EQ(PHASE(2).NBONDS(1), 4);
}

TEST_F(REPORTS, AN_ATOM_OMITTED_IN_ONE_BLOCK_LEAVES_A_GAP_THERE) {
  EDIT("omit\n2\n\nO4\n\n");
  CALC();
  const std::string bonds = SAID("", [] { FACETOR_LIST_BONDS(1); });
  EXPECT_EQ(PHASE(1).NBONDS(1), 4);
  EXPECT_EQ(PHASE(2).NBONDS(1), 3);
  // Its own column is empty, and the volume is withheld.
  EXPECT_TRUE(bonds.ends_with(start_2 + "  1.6004  1.6004  1.6004 No value    3  1.6004\n"))
      << bonds;
  EXPECT_EQ(PHASE(2).NBONDS(5), 0) << "omitted, not absent";
  // Coordinates are shown for omitted atoms of other blocks; CALC has charged the symbols.
  EXPECT_TRUE(HOLDS(SAID("", [] { FACETOR_LIST_XYZ(5); }), "\n" + start_2 + "1 O4        (O-2 )"));
}

TEST_F(REPORTS, AN_OMITTED_REFERENCE_ATOM_HAS_NO_COLUMN_FOR_ANY_BLOCK) {
  EDIT("omit\n1\n\nO4\n\n");
  CALC();
  for (int block = 1; block <= 2; ++block) {
    EXPECT_EQ(PHASE(block).NBONDS(1), 3) << block;
    EXPECT_EQ(PHASE(block).NBONDS(5), 0) << block;
  }
}

TEST_F(REPORTS, EXPORT_REFUSES_AN_OMITTED_CENTRE) {
  EDIT("omit all\nSi1\n\n");
  CALC();
  EXPECT_TRUE(HOLDS(SAID("y\n2\nSi1\n\n\n", FACETOR_EXPORTFILES::RUN_EXPORT),
                    "     ***** This atom is marked not to be used and cannot be selected\n"));
}

TEST_F(REPORTS, NOTHING_IS_LEFT_WHEN_EVERY_ATOM_IS_OMITTED) {
  EDIT("omit all\nSi\nO\n\n");
  CALC();
  auto reports = ALL_SITES();
  reports.pop_back();  // the CIF has its cell and symmetry still
  for (const auto& [name, text] : reports) EXPECT_EQ(text, "") << name;
  EXPECT_EQ(SUM_NBONDS(PHASE(1)), 0);
}
