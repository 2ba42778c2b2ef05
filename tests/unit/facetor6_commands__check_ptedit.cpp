// CHECK and PTEDIT: what they say and what they change.
#include "console__dialogue.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_ptedit/ptedit.h"
#include "src/facetor6_readfiles/check.h"
#include "structures.h"

using namespace FACETOR_CONSOLE;
using namespace FACETOR_PTEDIT;
using namespace FACETOR_READFILES;
using namespace STRUCTURES;

namespace {

class BLOCK_COMMANDS : public CONSOLE_TESTS::CONSOLE_TEST {
 protected:
  void SetUp() override {
    CONSOLE_TEST::SetUp();
    INIT_PHASE_LIST();
  }

  static void ADD_BLOCKS(int n) {
    for (int i = 0; i < n; ++i) {
      STRUCTURE_LIST newx;
      newx.ADD(MADE({5, 5, 5}, {90, 90, 90}, "P 1", {{"O1", {0, 0, 0}}}));
      newx(1).PT(TEMPERATURE, PT_VALUE) = 298;
      newx(1).PT(TEMPERATURE, PT_ESD) = 1;
      newx(1).PT(PRESSURE, PT_ESD) = 0.02f;
      bool error = false;
      ADD_PHASE_LIST(newx, 1, error);
    }
  }

  static float P(int block) { return PHASE(block).PT(PRESSURE, PT_VALUE); }
  static float T(int block) { return PHASE(block).PT(TEMPERATURE, PT_VALUE); }

  std::string EDIT(const std::string& kind, const std::string& lines) {
    return SAID(kind + "\n" + lines + "\n\n", RUN_PTEDIT);
  }

  static bool HOLDS(const std::string& said, const std::string& text) {
    return said.find(text) != std::string::npos;
  }
};

}  // namespace

// ---- PTEDIT ----

TEST_F(BLOCK_COMMANDS, PTEDIT_NEEDS_BLOCKS) {
  EXPECT_EQ(SAID("", RUN_PTEDIT),
            "\n*****This command allows you to reset the P and/or T of the datablocks\n"
            "\n*****WARNING: *****There are no datasets loaded\n\n");
}

TEST_F(BLOCK_COMMANDS, PTEDIT_RANGES) {
  ADD_BLOCKS(5);
  EDIT("P", "2 -4 3.5\n");
  EXPECT_EQ(P(1), 0.0f);
  for (int block = 2; block <= 4; ++block) EXPECT_EQ(P(block), 3.5f);
  EXPECT_EQ(P(5), 0.0f);
  EXPECT_EQ(PHASE(2).PT(PRESSURE, PT_ESD), 0.02f) << "the earlier esd stays";
  EDIT("P", "4 -2 1.0\n");
  EXPECT_EQ(P(3), 3.5f) << "a range that ends before it begins does nothing";
  EDIT("p", "3 0\n");
  EXPECT_EQ(P(3), 0.0f) << "a pressure of 0 can be set";
}

TEST_F(BLOCK_COMMANDS, PTEDIT_TEMPERATURES_MUST_BE_ABOVE_0) {
  ADD_BLOCKS(1);
  EDIT("T", "1 0\n1 -5\n");
  EXPECT_EQ(T(1), 298.0f);
  EDIT("T", "1 400 3\n");
  EXPECT_EQ(T(1), 400.0f);
  EXPECT_EQ(PHASE(1).PT(TEMPERATURE, PT_ESD), 3.0f);
}

TEST_F(BLOCK_COMMANDS, PTEDIT_BOTH) {
  ADD_BLOCKS(1);
  EDIT("B", "1 2.5 500 0.1 4\n");
  EXPECT_EQ(P(1), 2.5f);
  EXPECT_EQ(T(1), 500.0f);
  EXPECT_FLOAT_EQ(PHASE(1).PT(PRESSURE, PT_ESD), 0.1f);
  EXPECT_EQ(PHASE(1).PT(TEMPERATURE, PT_ESD), 4.0f);
}

TEST_F(BLOCK_COMMANDS, PTEDIT_REFUSES_WHAT_NAMES_NO_BLOCK_OR_NO_VALUE) {
  ADD_BLOCKS(2);
  for (const char* line : {"3 1.0", "0 1.0", "-1 1.0", "1 -3 1.0", "1.5 1.0", "1", "1 -2",
                           "1 1e999", "99999999999 1.0", "1 abc 7", "1 1e999 5", "1 2.5 x"}) {
    const std::string said = EDIT("P", std::string(line) + "\n");
    EXPECT_TRUE(HOLDS(said, " *****Illegal input\n")) << line;
    EXPECT_EQ(P(1), 0.0f) << line;
    EXPECT_EQ(P(2), 0.0f) << line;
  }
  EXPECT_FALSE(HOLDS(EDIT("P", "no numbers\nT\n"), "Illegal")) << "no number leaves the loop";
}

// ---- CHECK ----

TEST_F(BLOCK_COMMANDS, CHECK_REPORTS_PER_BLOCK) {
  PUT_FILE("a.cif", "data_one\n_cell_length_a 5\n_cell_length_b 6\ndata_two\n_cell_length_a 5\n");
  PUT_FILE("list.cif", "# lengths\n_cell_length_a\n\n_cell_length_b  # b\n");
  CONSOLE_TESTS::PEND("a");
  const std::string said = SAID("list\nn\n", RUN_CHECK_CIF);
  EXPECT_TRUE(HOLDS(said,
                    "\n\n ******New data block, #  1 named: one:\n\n   _cell_length_a 5\n   "
                    "_cell_length_b 6\n\n   All required items are present\n\n"));
  EXPECT_TRUE(HOLDS(said,
                    "\n\n ******New data block, #  2 named: two:\n\n   _cell_length_a 5\n\n   "
                    "MISSING items:\n   _cell_length_b\n"));
  EXPECT_EQ(NPHASES, 0) << "the answer was no";
}

TEST_F(BLOCK_COMMANDS, CHECK_WITH_A_LIST_OF_COMMENTS_FINDS_ALL_PRESENT) {
  PUT_FILE("a.cif", "data_one\n_cell_length_a 5\n");
  PUT_FILE("list.cif", "# nothing\n#\n");
  CONSOLE_TESTS::PEND("a");
  EXPECT_TRUE(HOLDS(SAID("list\nn\n", RUN_CHECK_CIF), "\n   All required items are present\n"));
}

TEST_F(BLOCK_COMMANDS, CHECK_ADDS_THE_BLOCKS_ON_THE_USERS_WORD) {
  PUT_FILE("a.cif",
           "data_one\n_cell_length_a 5\n_symmetry_space_group_name_H-M 'P -1'\n\nloop_\n"
           "_atom_site_label\n_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n"
           "O1 0.1 0.2 0.3\n");
  PUT_FILE("list.cif", "_cell_length_a\n");
  CONSOLE_TESTS::PEND("a");
  EXPECT_TRUE(
      SAID("list\n\n", RUN_CHECK_CIF)
          .ends_with("\nThe loaded phases are now:\n\n       BLOCKNAME      T        P         "
                     "IUSE\n  1: one           : 298.0   0.000         1\n"));
  EXPECT_EQ(P(1), 0.0f) << "the pressure stays as it was read";
  EXPECT_EQ(PHASE(1).ATOM(1).MULT, 2);
}

TEST_F(BLOCK_COMMANDS, CHECK_ENDS_WITHOUT_BLOCKS_OR_FILES) {
  PUT_FILE("a.cif", "no blocks\n");
  CONSOLE_TESTS::PEND("a");
  EXPECT_TRUE(SAID("", RUN_CHECK_CIF).ends_with("\n*****WARNING: No blocks found in CIF\n\n"));
  PUT_FILE("empty.cif", "");
  CONSOLE_TESTS::PEND("empty");
  EXPECT_TRUE(SAID("", RUN_CHECK_CIF)
                  .ends_with("\n*****Error in reading file: empty.cif or it is empty\n"));
  const std::string said = SAID("\n", RUN_CHECK_CIF);
  EXPECT_TRUE(said.ends_with("     Open CIF file (*.cif):"));
}
