// READ as the user meets it: the whole dialogue line by line, and files that are wrong in every
// way.
#include <algorithm>  // for min

#include "phases.h"
#include "src/facetor6_readfiles/readfiles.h"
#include "structures.h"

using namespace FACETOR_READFILES;
using namespace FACETOR_CONSOLE;
using namespace STRUCTURES;

namespace {

class READ_DIALOGUE : public PHASE_TESTS::PHASES {
 protected:
  // What READ says of a file with the text, from its opening on.
  std::string READ(const std::string& text, const std::string& answers = "\n") {
    PUT_FILE("a.cif", text);
    CONSOLE_TESTS::PEND("cif a");
    const std::string said = SAID(answers, READ_PHASE_FROM_FILE);
    EXPECT_TRUE(said.starts_with(opened)) << said;
    return said.substr(std::min(said.size(), opened.size()));
  }

  const std::string opened = "\n\nSuccessfully opened cif file\nNamed a.cif\n\n";
};

const std::string p1 = "_symmetry_space_group_name_H-M 'P 1'\n";
const std::string right_angles =
    "_cell_angle_alpha 90\n_cell_angle_beta 90\n_cell_angle_gamma 90\n";
const std::string lengths = "_cell_length_a 5.0(1)\n_cell_length_b 6\n_cell_length_c 7\n";
const std::string cell = lengths + right_angles;

std::string CELL(const std::string& a, const std::string& b, const std::string& c) {
  return "_cell_length_a " + a + "\n_cell_length_b " + b + "\n_cell_length_c " + c + "\n";
}
const std::string loop =
    "\nloop_\n_atom_site_label\n_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n";
const std::string atoms = loop + "Si1 0.1 0.2 0.3\nO1 0.3 0.2 0.3\n";

const std::string menu =
    "\n     Possible selections for File type:\n"
    "      1: cif\n"
    "      2: RFINE prm\n"
    "      3: Crystal17 out\n"
    "      4: CCSL cnt\n"
    "      5: full CIF\n"
    "      0: Exit\n"
    "\n     Enter selection by number:";
const std::string question = "Do you want to add this new data (Y/N) <Y>?";
const std::string found =
    "\nThe following  1 crystal structures were read from the file:\n"
    "\n       BLOCKNAME              T       P\n";
const std::string loaded =
    "\nThe loaded phases are now:\n       BLOCKNAME      T        P         IUSE\n";

std::string WARNED(const std::string& text) {
  return "\n*****WARNING: " + text + "\n\n";
}

std::string NO_SYMMETRY(const std::string& reason) {
  return WARNED("No symmetry detected in CIF block #  1, " + reason + ", space group set to P1");
}

}  // namespace

// ---- the dialogue ----

TEST_F(READ_DIALOGUE, NO_SELECTION_ENDS_THE_COMMAND) {
  EXPECT_EQ(SAID("\n", READ_PHASE_FROM_FILE), menu);
  EXPECT_EQ(SAID("-1\n", READ_PHASE_FROM_FILE), menu);
}

TEST_F(READ_DIALOGUE, TYPES_WITHOUT_A_READER_ASK_AGAIN) {
  EXPECT_EQ(SAID("2\n4\n\n", READ_PHASE_FROM_FILE),
            menu + "\n*****Reading of RFINE prm file not yet available\n" + menu +
                "\n*****Reading of CCSL cnt file not yet available\n" + menu);
}

TEST_F(READ_DIALOGUE, EVERYTHING_ASKED_FOR_STEP_BY_STEP) {
  PUT_FILE("a.cif", "data_one\n" + p1 + cell + atoms);
  EXPECT_EQ(
      SAID("1\na\nno\n", READ_PHASE_FROM_FILE),
      menu + "\n\n     Open cif file (*.cif):\nSuccessfully opened cif file\nNamed a.cif\n\n" +
          found + "  1: one                   298.0   0.000\n" + question + "\nNo phases loaded\n");
  EXPECT_EQ(NPHASES, 0);
}

TEST_F(READ_DIALOGUE, A_FILE_THAT_CANNOT_BE_OPENED_LEADS_BACK_TO_THE_TYPES) {
  CONSOLE_TESTS::PEND("cif missing");
  EXPECT_EQ(SAID("\n\n", READ_PHASE_FROM_FILE),
            "\n*****File missing.cif does not exist, but is required to pre-exist\n"
            "\n     Open cif file (*.cif):" +
                menu);
}

TEST_F(READ_DIALOGUE, AN_EMPTY_FILE_AND_ONE_WITHOUT_BLOCKS) {
  EXPECT_EQ(READ("", ""), "\n*****Error in reading file: a.cif or it is empty\n");
  EXPECT_EQ(
      READ("hello\n", ""),
      WARNED("Allocate_crystal_structurelist called with n < 1 called from expand_phase_list") +
          WARNED("     No crystal structures were read from this file"));
  EXPECT_EQ(NPHASES, 0);
}

TEST_F(READ_DIALOGUE, BLOCKS_OF_DIFFERENT_COUNTS_ARE_TOLD_AFTER_THE_LIST) {
  READ("data_one\n" + p1 + cell + atoms);
  EXPECT_EQ(READ("data_two\n" + p1 + cell + loop + "Si1 0 0 0\n"),
            found + "  1: two                   298.0   0.000\n" + question + loaded +
                "  1: one           : 298.0   0.000         1\n"
                "  2: two           : 298.0   0.000         1\n" +
                WARNED("Different numbers of atoms in different data blocks: read output with "
                       "care!"));
  EXPECT_EQ(IUSE(2), 1);
  EXPECT_EQ(ISORT(2), 2);
}

TEST_F(READ_DIALOGUE, THE_LIST_SHOWS_CONDITIONS_AS_READ_AND_THE_BLOCK_GETS_SENSIBLE_ONES) {
  const std::string text = "data_cold\n" + p1 + cell +
                           "_diffrn_ambient_temperature -100\n_diffrn_ambient_pressure -500000\n" +
                           atoms;
  EXPECT_EQ(READ(text), found + "  1: cold                 -100.0  -0.500\n" + question + loaded +
                            "  1: cold          : 298.0  -0.500         1\n");
  EXPECT_EQ(PHASE(1).PT(TEMPERATURE, PT_VALUE), 298.0f);
  EXPECT_FLOAT_EQ(PHASE(1).PT(PRESSURE, PT_VALUE), -0.5f) << "a negative pressure is one";
}

TEST_F(READ_DIALOGUE, CONDITIONS_THAT_NOBODY_MEASURED_HAVE_NO_ESDS) {
  READ("data_one\n" + p1 + cell + atoms);
  EXPECT_EQ(PHASE(1).PT(TEMPERATURE, PT_VALUE), 298.0f);
  EXPECT_EQ(PHASE(1).PT(TEMPERATURE, PT_ESD), 0.0f);
  EXPECT_EQ(PHASE(1).PT(PRESSURE, PT_VALUE), 0.0001f);
  EXPECT_EQ(PHASE(1).PT(PRESSURE, PT_ESD), 0.0f);
  READ("data_two\n" + p1 + cell +
       "_diffrn_ambient_temperature -5(2)\n_diffrn_ambient_pressure 0(50)\n" + atoms);
  EXPECT_EQ(PHASE(2).PT(TEMPERATURE, PT_VALUE), 298.0f);
  EXPECT_EQ(PHASE(2).PT(TEMPERATURE, PT_ESD), 0.0f) << "2 was that of another temperature";
  EXPECT_EQ(PHASE(2).PT(PRESSURE, PT_VALUE), 0.0001f);
  EXPECT_FLOAT_EQ(PHASE(2).PT(PRESSURE, PT_ESD), 0.00005f);
}

TEST_F(READ_DIALOGUE, BLOCKS_WITHOUT_A_NAME_ARE_CALLED_BY_THE_FILE) {
  EXPECT_TRUE(READ("data_\n" + p1 + cell + atoms)
                  .starts_with(found + "  1: a                     298.0   0.000\n"));
  READ("data_\n" + p1 + cell + atoms + "\ndata_A_2\n" + p1 + cell + atoms + "\nDATA_  \n" + p1 +
       cell + atoms);
  ASSERT_EQ(NPHASES, 4);
  EXPECT_EQ(PHASE(2).BLOCK_TITLE, "a");
  EXPECT_EQ(PHASE(3).BLOCK_TITLE, "A_2");
  EXPECT_EQ(PHASE(4).BLOCK_TITLE, "a_3") << "as a_2 is there already";
}

TEST_F(READ_DIALOGUE, ATOMS_ARE_READY_FOR_CALCULATIONS) {
  READ("data_one\n_symmetry_space_group_name_H-M 'P -1'\n" + cell +
       "\nloop_\n_atom_site_label\n_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n"
       "_atom_site_occupancy\nSi1 1.0 0 0 0\nO1 -0.25 0.2 0.3 0.5\nAl1 0 0 0 1\n");
  const CRYSTAL_STRUCTURE_TYPE& phase = PHASE(1);
  EXPECT_EQ(phase.ATOM(1).MULT, 1);
  EXPECT_EQ(phase.ATOM(2).MULT, 2);
  EXPECT_EQ(phase.ATOM(1).OCC, 1.0f) << "an occupancy of 0 is unset";
  EXPECT_EQ(phase.ATOM(2).OCC, 0.5f);
  EXPECT_EQ(phase.ATOM(1).X[0], 0.0f);
  EXPECT_EQ(phase.ATOM(2).X[0], 0.75f);
  EXPECT_EQ(phase.ATOM_USE(3), -1);
  EXPECT_EQ(phase.ATOM_DUP(1, 1), 3);
}

TEST_F(READ_DIALOGUE, THE_WHOLE_DIALOGUE) {
  PUT_FILE("a.cif",
           "data_one\n_cell_length_a 5\n_cell_length_b 5\n_cell_length_c 5\n"
           "_symmetry_space_group_name_H-M 'P 2'\n_cell_angle_alpha 90\n_cell_angle_beta 95\n"
           "_cell_angle_gamma 90\n"
           "_diffrn_ambient_pressure 0\n" +
               atoms);
  CONSOLE_TESTS::PEND("cif a");
  EXPECT_EQ(SAID("\n", READ_PHASE_FROM_FILE),
            "\n\nSuccessfully opened cif file\nNamed a.cif\n\n"
            "\nThe following  1 crystal structures were read from the file:\n"
            "\n       BLOCKNAME              T       P\n"
            "  1: one                   298.0   0.000\n"
            "Do you want to add this new data (Y/N) <Y>?"
            "\nThe loaded phases are now:\n"
            "       BLOCKNAME      T        P         IUSE\n"
            "  1: one           : 298.0   0.000         1\n");
  EXPECT_FLOAT_EQ(PHASE(1).PT(PRESSURE, PT_VALUE), 0.0001f) << "a pressure of 0 is unset";
  EXPECT_EQ(SYSTEM_TEXT(PHASE(1).SPG.CRYSTALSYS), "Mono b-uni");
  EXPECT_EQ(PHASE(1).ATOM(1).MULT, 2);
}

TEST_F(READ_DIALOGUE, THE_FIRST_ANGLE_THAT_IS_NOT_RIGHT_NAMES_THE_AXIS) {
  PUT_FILE("a.cif",
           "data_one\n_symmetry_space_group_name_H-M 'P 2'\n_cell_angle_alpha 95\n_cell_angle_beta "
           "96\n" +
               atoms +
               "\ndata_two\n_symmetry_space_group_name_H-M 'P 2'\n_cell_angle_beta 90.005\n" +
               atoms);
  CONSOLE_TESTS::PEND("cif a");
  SAID("y\n", READ_PHASE_FROM_FILE);
  EXPECT_EQ(SYSTEM_TEXT(PHASE(1).SPG.CRYSTALSYS), "Mono a-uni");
  EXPECT_EQ(SYSTEM_TEXT(PHASE(2).SPG.CRYSTALSYS), "Monoclinic");
}

TEST_F(READ_DIALOGUE, EACH_AXIS_CAN_BE_THE_UNIQUE_ONE_FROM_A_HUNDREDTH_OF_A_DEGREE_ON) {
  const auto system = [&](const std::string& angle) {
    INIT_PHASE_LIST();
    READ("data_one\n_symmetry_space_group_name_H-M 'P 2'\n" + lengths + angle + "\n" + atoms);
    return SYSTEM_TEXT(PHASE(1).SPG.CRYSTALSYS);
  };
  EXPECT_EQ(system("_cell_angle_alpha 90.02"), "Mono a-uni");
  EXPECT_EQ(system("_cell_angle_beta 89.98"), "Mono b-uni");
  EXPECT_EQ(system("_cell_angle_gamma 95"), "Mono c-uni");
  EXPECT_EQ(system("_cell_angle_gamma 90.005"), "Monoclinic");
}

TEST_F(READ_DIALOGUE, A_SMALL_PRESSURE_IS_ONE) {
  READ("data_one\n" + p1 + cell + "_diffrn_ambient_pressure 20\n" + atoms);
  EXPECT_FLOAT_EQ(PHASE(1).PT(PRESSURE, PT_VALUE), 0.00002f) << "20 kPa";
}

TEST_F(READ_DIALOGUE, WHAT_CANNOT_BE_READ_LEAVES_WHAT_IS_LOADED) {
  PUT_FILE("a.cif", "data_one\n_symmetry_space_group_name_H-M 'P 1'\n" + atoms);
  CONSOLE_TESTS::PEND("cif a");
  SAID("y\n", READ_PHASE_FROM_FILE);
  PUT_FILE("empty.cif", "");
  CONSOLE_TESTS::PEND("cif empty");
  EXPECT_TRUE(SAID("", READ_PHASE_FROM_FILE)
                  .ends_with("\n*****Error in reading file: empty.cif or it is empty\n"));
  PUT_FILE("noblock.cif", "hello\n");
  CONSOLE_TESTS::PEND("cif noblock");
  EXPECT_TRUE(SAID("", READ_PHASE_FROM_FILE)
                  .ends_with(WARNED("     No crystal structures were read from this file")));
  CONSOLE_TESTS::PEND("cif missing");
  const std::string said = SAID("\n\n", READ_PHASE_FROM_FILE);
  EXPECT_NE(said.find("*****File missing.cif does not exist, but is required to pre-exist\n"),
            std::string::npos);
  CONSOLE_TESTS::PEND("cif a");
  EXPECT_NE(SAID("n\n", READ_PHASE_FROM_FILE).find("The loaded phases are now:"),
            std::string::npos);
  EXPECT_EQ(NPHASES, 1) << "the answer was no";
  EXPECT_EQ(PHASE(1).BLOCK_TITLE, "one");
}

TEST_F(READ_DIALOGUE, DISPLACEMENTS_COME_AS_BETA_WITH_THEIR_B) {
  // Uii of 0.01 in an orthogonal cell: B = 8 pi^2 U = 0.789568, beta11 = 2 pi^2 U / a^2.
  READ("data_one\n" + p1 + "_cell_length_a 5\n_cell_length_b 5\n_cell_length_c 5\n" + right_angles +
       atoms +
       "\nloop_\n_atom_site_aniso_label\n_atom_site_aniso_U_11\n_atom_site_aniso_U_22\n"
       "_atom_site_aniso_U_33\n_atom_site_aniso_U_12\n_atom_site_aniso_U_13\n"
       "_atom_site_aniso_U_23\nSi1 0.01 0.01 0.01 0 0 0\n");
  const ATOM_TYPE& atom = PHASE(1).ATOM(1);
  EXPECT_EQ(atom.UTYPE, "beta");
  EXPECT_NEAR(atom.U[0], 0.197392f / 25.0f, 1e-6f);
  EXPECT_NEAR(atom.BISO, 0.789568f, 1e-5f);
}

TEST_F(READ_DIALOGUE, A_BLOCK_NAMED_GLOBAL_ANYHOW_IS_NONE) {
  EXPECT_EQ(READ("data_myGlobal_1\n_x 1\ndata_one\n" + p1 + cell + atoms),
            found + "  1: one                   298.0   0.000\n" + question + loaded +
                "  1: one           : 298.0   0.000         1\n");
}

// ---- files that are wrong ----

std::string UNREAD(const std::string& what) {
  return WARNED("Block #  1 bad: a cell " + what +
                " is missing or cannot be read, READ full does not read it");
}

TEST_F(READ_DIALOGUE, BLOCK_NUMBERS_ABOVE_999_ARE_SHOWN_WHOLE) {
  std::string text;
  for (int block = 1; block < 1000; ++block) text += "data_good\n" + p1 + cell + atoms;
  text += "data_bad\n" + p1 + CELL("five", "6", "7") + right_angles + atoms;
  const std::string said = READ(text, "n\n");
  EXPECT_NE(said.find("*****WARNING: Block #1000 bad: a cell length is missing"), std::string::npos)
      << said.substr(0, 400);
}

TEST_F(READ_DIALOGUE, WRONG_BLOCKS_ARE_READ_WITH_A_REASON_AND_NOTHING_LOADED_IS_LOST) {
  READ("data_held\n" + p1 + cell + atoms);
  PHASE(1).NBONDS(1) = 1;
  const std::string bad_cell = WARNED("Bad cell parameters in block #  1 in the cif");
  const std::string no_atoms =
      WARNED("cifdata_key of _atom_site_ not found by read_loop_cif in block #  1 in the cif");
  const std::string angles = "_cell_angle_alpha 60\n_cell_angle_beta 60\n_cell_angle_gamma 150\n";
  const std::string neither = NO_SYMMETRY("neither operators nor HM symbol");
  const std::string operators = "_symmetry_equiv_pos_as_xyz\n'x,y,z'\n";
  const std::vector<std::pair<std::string, std::string>> cases{
      {p1 + cell, no_atoms},
      {cell + atoms, neither},
      {p1 + CELL("0", "6", "7") + right_angles + atoms, bad_cell},
      {p1 + CELL("-5", "6", "7") + right_angles + atoms, bad_cell},
      {p1 + CELL("-5", "-5", "7") + right_angles + atoms, bad_cell},
      {p1 + CELL("1", "1", "1") + angles + atoms, bad_cell},  // 60 + 60 is less than 150
      {p1 + CELL("1e30", "1e30", "1") + right_angles + atoms, bad_cell},
      {p1 + CELL("1e13", "1e13", "1e13") + right_angles + atoms, bad_cell},
      {p1 + CELL("five", "6", "7") + right_angles + atoms, UNREAD("length")},
      {p1 + CELL("5", "6", "7") + "_cell_angle_beta 95\n_cell_angle_gamma 90\n" + atoms,
       UNREAD("angle")},
      {operators + "'x+y,y,z'\n" + cell + atoms, neither},  // a shear closes to no finite group
      {operators + "'x+1/97,y,z'\n" + cell + atoms, neither},
      {operators + "'x,y'\n" + cell + atoms, neither},
      {operators + "'x,x,z'\n" + cell + atoms, neither},
      {"_symmetry_space_group_name_H-M 'Q 1 2 3'\n" + cell + atoms, neither},
      {p1 + cell + loop + std::string(300, 'L') + " 0 0 0\n",
       WARNED("Loop for atoms found in cif, but no atom info from cif in block #  1 in the cif") +
           WARNED("Block #  1 bad: READ full reads 1 sites (not 0)")}};
  for (const auto& [text, warnings] : cases) {
    EXPECT_EQ(READ("data_bad\n" + text, "n\n"),
              warnings + found + "  1: bad                   298.0   0.000\n" + question + loaded +
                  "  1: held          : 298.0   0.000         1\n")
        << text;
    EXPECT_EQ(NPHASES, 1);
    EXPECT_EQ(PHASE(1).NBONDS(1), 1);
  }
}

TEST_F(READ_DIALOGUE, A_BLOCK_OF_FALSE_VALUES_CAN_BE_ADDED) {
  READ("data_bad\n" + p1 + "_cell_length_a 0\n" + loop + "Si1 1e39 nan inf\nO1 1e30 -1e30 ?\n");
  ASSERT_EQ(NPHASES, 1);
  for (int i = 1; i <= 2; ++i)
    for (float x : PHASE(1).ATOM(i).X) EXPECT_TRUE(x >= 0.0f && x < 1.0f) << i;
}

TEST_F(READ_DIALOGUE, A_LOOP_OF_25_COLUMNS) {
  // A line of more than 20 words counts 21 and each further line 1, so that 5 lines make a row.
  std::string text = "data_wide\n" + p1 + cell + loop;
  for (int i = 5; i <= 25; ++i) text += "_atom_site_c" + std::to_string(i) + "\n";
  for (int row = 1; row <= 10; ++row) {
    text += "O" + std::to_string(row) + " 0." + std::to_string(row) + " 0 0";
    for (int i = 5; i <= 25; ++i) text += " 1";
    text += "\n";
  }
  READ(text);
  ASSERT_EQ(PHASE(1).NATOMS, 2);
  EXPECT_EQ(PHASE(1).ATOM(1).LAB, "O1");
  EXPECT_EQ(PHASE(1).ATOM(2).LAB, "O6");
  EXPECT_FLOAT_EQ(PHASE(1).ATOM(2).X[0], 0.6f);
}

TEST_F(READ_DIALOGUE, AN_OPEN_TEXT_FIELD_HIDES_THE_BLOCKS_BEHIND_IT) {
  EXPECT_EQ(READ("data_one\n;\nopen\n" + p1 + cell + atoms + "\ndata_two\n" + p1 + cell + atoms),
            WARNED("READ full reads 2 structures from this file (not 1)") + found +
                "  1: one                   298.0   0.000\n" + question + loaded +
                "  1: one           : 298.0   0.000         1\n");
}

TEST_F(READ_DIALOGUE, NOISE_AS_A_FILE) {
  std::string noise = "data_noise\n";
  unsigned state = 7;
  for (int i = 0; i < 300000; ++i) {
    state = state * 1664525U + 1013904223U;
    noise += static_cast<char>(state >> 24U);
  }
  const std::string said = READ(noise, "n\n");
  EXPECT_TRUE(said.ends_with("\nNo phases loaded\n"));
  EXPECT_EQ(READ(std::string(1000000, '\0'), ""),
            WARNED("Allocate_crystal_structurelist called with n < 1 called from "
                   "expand_phase_list") +
                WARNED("     No crystal structures were read from this file"));
}

// ---- operators without quotes ----

// They are not read; what they say is compared with the symbol's group.
TEST_F(READ_DIALOGUE, OPERATORS_WITHOUT_QUOTES_THAT_CONTRADICT_THE_SYMBOL_ARE_TOLD) {
  const auto with = [](const std::string& operators) {
    return "data_one\n_symmetry_space_group_name_H-M 'P 21'\n" + cell +
           "loop_\n_space_group_symop_operation_xyz\n" + operators + atoms;
  };
  const std::string told = WARNED(
      "The operators in CIF block #  1 are not read, as they are not in quotes, but they do not "
      "agree with the HM symbol: READ full reads them");
  const std::string rest = found + "  1: one                   298.0   0.000\n" + question +
                           loaded + "  1: one           : 298.0   0.000         1\n";
  // P 21 with its axis at x = 1/4.
  const std::string full_reads =
      WARNED("Block #  1 one: READ full reads another space group (unknown)");
  EXPECT_EQ(READ(with("x,y,z\n1/2-x,1/2+y,-z\n")), told + full_reads + rest);
  EXPECT_EQ(PHASE(1).SPG.SYMOPSYMB(2), "-x,y+1/2,-z");
  INIT_PHASE_LIST();
  for (const char* told_too : {"1 x,y,z\n2 1/2-x,1/2+y,-z\n", "# two\nx,y,z\n1/2-x,1/2+y,-z\n",
                               "_id\nx,y,z 1\n1/2-x,1/2+y,-z 2\n", "x, y, z\n1/2-x, 1/2+y, -z\n",
                               "1/2-x,1/2+y,-z\nx,y,z\n"}) {
    INIT_PHASE_LIST();
    const std::string said = READ(with(told_too));
    EXPECT_TRUE(said.starts_with(told) && said.ends_with(rest)) << told_too;
  }
  INIT_PHASE_LIST();
  EXPECT_EQ(READ("data_one\n_symmetry_space_group_name_H-M 'P 21'\n" + cell + atoms +
                 "\nloop_\n_space_group_symop_operation_xyz\nx,y,z\n1/2-x,1/2+y,-z\n"),
            told + full_reads + rest)
      << "on the last line of the file";
  for (const char* agreeing : {"x,y,z\n-x,1/2+y,-z\n", "_id\nx,y,z 1\n-x,1/2+y,-z 2\n",
                               "-x,y+0.5,-z\n", "x,y\n", "a,b,c\n"}) {
    INIT_PHASE_LIST();
    EXPECT_EQ(READ(with(agreeing)), rest) << agreeing;
  }
  INIT_PHASE_LIST();
  EXPECT_EQ(READ(with("'x,y,z\n")),
            WARNED("Block #  1 one: READ full reads another space group (P 1)") + rest);
}

TEST_F(READ_DIALOGUE, DISPLACEMENTS_BEFORE_THE_SITES_ARE_TOLD) {
  const std::string aniso = "\nloop_\n_atom_site_aniso_label\n_atom_site_aniso_U_11\nSi1 0.01\n";
  EXPECT_TRUE(READ("data_one\n" + p1 + cell + aniso + atoms)
                  .starts_with(WARNED("The loop of displacement parameters stands before that of "
                                      "the sites in block #  1 in the cif: the atoms are not read "
                                      "rightly, READ full reads them")));
  INIT_PHASE_LIST();
  EXPECT_TRUE(READ("data_one\n" + p1 + cell + atoms + aniso).starts_with(found));
  INIT_PHASE_LIST();
  EXPECT_TRUE(READ("data_one\n" + p1 + cell + aniso).starts_with(found)) << "there are no sites";
}
