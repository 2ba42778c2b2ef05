// CHECK and PTEDIT: what they say and what they change.
#include "facetor6_commands__check_ptedit.h"

#include <array>

#include "src/facetor6_ptedit/ptedit.h"
#include "src/facetor6_readfiles/check.h"

using namespace BLOCK_TESTS;
using FACETOR_PTEDIT::RUN_PTEDIT;
using FACETOR_READFILES::RUN_CHECK_CIF;

// ---- PTEDIT ----

namespace {

class PTEDIT : public BLOCK_COMMANDS {
 protected:
  std::string EDIT(const std::string& kind, const std::string& lines) {
    return SAID(kind + "\n" + lines + "\n\n", RUN_PTEDIT);
  }
};

}  // namespace

TEST_F(PTEDIT, NEEDS_BLOCKS) {
  EXPECT_EQ(SAID("", RUN_PTEDIT),
            "\n*****This command allows you to reset the P and/or T of the datablocks\n"
            "\n*****WARNING: *****There are no datasets loaded\n\n");
}

TEST_F(PTEDIT, RANGES) {
  ADD_BLOCKS(5);
  EDIT("P", "2 -4 3.5\n");
  EXPECT_EQ(P(1), 0.0f);
  for (int block = 2; block <= 4; ++block) EXPECT_EQ(P(block), 3.5f);
  EXPECT_EQ(P(5), 0.0f);
  EXPECT_EQ(ESD_P(2), 0.02f) << "the earlier esd stays";
  EDIT("P", "4 -2 1.0\n");
  EXPECT_EQ(P(3), 3.5f) << "a range that ends before it begins does nothing";
  EDIT("p", "3 0\n");
  EXPECT_EQ(P(3), 0.0f) << "a pressure of 0 can be set";
}

TEST_F(PTEDIT, TEMPERATURES_MUST_BE_ABOVE_0) {
  ADD_BLOCKS(1);
  EDIT("T", "1 0\n1 -5\n");
  EXPECT_EQ(T(1), 298.0f);
  EDIT("T", "1 400 3\n");
  EXPECT_EQ(T(1), 400.0f);
  EXPECT_EQ(ESD_T(1), 3.0f);
}

TEST_F(PTEDIT, BOTH) {
  ADD_BLOCKS(1);
  EDIT("B", "1 2.5 500 0.1 4\n");
  EXPECT_EQ(P(1), 2.5f);
  EXPECT_EQ(T(1), 500.0f);
  EXPECT_FLOAT_EQ(ESD_P(1), 0.1f);
  EXPECT_EQ(ESD_T(1), 4.0f);
}

TEST_F(PTEDIT, REFUSES_WHAT_NAMES_NO_BLOCK_OR_NO_VALUE) {
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

// No file tells these: what the record held before stays.
TEST_F(PTEDIT, ESDS_NOT_ABOVE_THE_SMALLEST_REAL_LEAVE_THE_OLD_ONES) {
  ADD_BLOCKS(1);
  for (const char* esd : {"0", "-0.3", "1e-39", "1.17e-38", ""}) {
    const std::string text = esd;
    EDIT("P", "1 2.5 " + text + "\n");
    EXPECT_EQ(P(1), 2.5f) << text;
    EXPECT_EQ(ESD_P(1), 0.02f) << text;
    EDIT("T", "1 400 " + text + "\n");
    EXPECT_EQ(T(1), 400.0f) << text;
    EXPECT_EQ(ESD_T(1), 1.0f) << text;
    EDIT("B", "1 3.5 500 " + text + " " + text + "\n");
    EXPECT_EQ(P(1), 3.5f) << text;
    EXPECT_EQ(T(1), 500.0f) << text;
    EXPECT_EQ(ESD_P(1), 0.02f) << text;
    EXPECT_EQ(ESD_T(1), 1.0f) << text;
  }
  EDIT("P", "1 2.5 1.18e-38\n");
  EXPECT_EQ(ESD_P(1), 1.18e-38f);
}

TEST_F(PTEDIT, ESD_OF_A_TEMPERATURE_THAT_IS_REFUSED_IS_NOT_TAKEN) {
  ADD_BLOCKS(1);
  EDIT("T", "1 0 7\n1 -1 -5 7\n");
  EXPECT_EQ(T(1), 298.0f);
  EXPECT_EQ(ESD_T(1), 1.0f);
}

TEST_F(PTEDIT, BOTH_WITHOUT_A_TEMPERATURE_ABOVE_0_SETS_THE_PRESSURE_ALONE) {
  for (const char* t : {"0", "-5"}) {
    INIT_PHASE_LIST();
    ADD_BLOCKS(1);
    EDIT("B", "1 2.5 " + std::string(t) + " 0.1 4\n");
    EXPECT_EQ(P(1), 2.5f) << t;
    EXPECT_EQ(ESD_P(1), 0.1f) << t;
    EXPECT_EQ(T(1), 298.0f) << t;
    EXPECT_EQ(ESD_T(1), 1.0f) << t;
  }
  EDIT("B", "1 3.5\n");
  EXPECT_EQ(P(1), 3.5f);
  EXPECT_EQ(T(1), 298.0f) << "none was given";
}

// Behind the block number a negative number ends a range, unless it is written as a real.
TEST_F(PTEDIT, A_NEGATIVE_NUMBER_WITH_A_POINT_IS_A_PRESSURE) {
  ADD_BLOCKS(3);
  EXPECT_TRUE(HOLDS(EDIT("P", "2 -3\n"), " *****Illegal input\n")) << "a range without a value";
  EDIT("P", "2 -3.\n");
  EXPECT_EQ(P(2), -3.0f);
  EXPECT_EQ(P(1), 0.0f);
  EXPECT_EQ(P(3), 0.0f);
  EDIT("P", "2 -2 -0.5\n");
  EXPECT_EQ(P(2), -0.5f);
  EDIT("P", "2 -3e0\n3 -2(1)\n");
  EXPECT_EQ(P(2), -3.0f);
  EXPECT_EQ(P(3), -2.0f);
  EXPECT_EQ(ESD_P(3), 1.0f);
  EDIT("P", "2 -3 -4\n");
  EXPECT_EQ(P(2), -4.0f);
  EXPECT_EQ(P(3), -4.0f);
  EDIT("B", "1 -3.5 300\n");
  EXPECT_EQ(P(1), -3.5f);
  EXPECT_EQ(T(1), 300.0f);
  EXPECT_TRUE(HOLDS(EDIT("P", "1 -99999999999 5\n"), " *****Illegal input\n"));
}

TEST_F(PTEDIT, AN_ESD_IN_BRACKETS_BELONGS_TO_ITS_VALUE) {
  ADD_BLOCKS(3);
  EDIT("P", "1 -2 3.5(2)\n");
  for (int block : {1, 2}) {
    EXPECT_EQ(P(block), 3.5f);
    EXPECT_EQ(ESD_P(block), 0.2f) << "and not 2";
  }
  EDIT("T", "3 2.98E+2(3)\n");
  EXPECT_EQ(T(3), 298.0f);
  EXPECT_EQ(ESD_T(3), 3.0f);
  EDIT("P", "3 1.25(3) 0.7\n");
  EXPECT_FLOAT_EQ(ESD_P(3), 0.03f) << "a second esd has no place";
  EDIT("P", "3 3.5(0)\n");
  EXPECT_FLOAT_EQ(ESD_P(3), 0.03f) << "an esd of 0 leaves the old one";
}

TEST_F(PTEDIT, FREE_ESDS_FILL_THE_PLACES_THAT_HAVE_NONE) {
  const auto edited = [this](const std::string& line) {
    INIT_PHASE_LIST();
    ADD_BLOCKS(1);
    EDIT("B", line + "\n");
    EXPECT_EQ(P(1), 3.5f) << line;
    EXPECT_EQ(T(1), 400.0f) << line;
    return std::array<float, 2>{ESD_P(1), ESD_T(1)};
  };
  EXPECT_EQ(edited("1 3.5(2) 400(5)"), (std::array<float, 2>{0.2f, 5.0f}));
  EXPECT_EQ(edited("1 3.5(2) 400 5"), (std::array<float, 2>{0.2f, 5.0f}));
  EXPECT_EQ(edited("1 3.5 400(5) 0.2"), (std::array<float, 2>{0.2f, 5.0f}));
  EXPECT_EQ(edited("1 3.5 400 0.2 5"), (std::array<float, 2>{0.2f, 5.0f}));
  EXPECT_EQ(edited("1 3.5 400 0.2"), (std::array<float, 2>{0.2f, 1.0f})) << "P before T";
  EXPECT_EQ(edited("1 3.5(2) 400(5) 9"), (std::array<float, 2>{0.2f, 5.0f}));
}

TEST_F(PTEDIT, A_DECIMAL_COMMA_IS_REFUSED) {
  ADD_BLOCKS(6);
  for (const char* line :
       {"6 1,54", "6  1,54 0.05", "1 -6 1,54", "1,6 1.54", "6\t1,54", "6 ,1,5"}) {
    EXPECT_TRUE(HOLDS(EDIT("P", std::string(line) + "\n"), " *****Illegal input\n")) << line;
    for (int block = 1; block <= 6; ++block) EXPECT_EQ(P(block), 0.0f) << line;
  }
  EDIT("P", "2,-3,6.5\n");
  EXPECT_EQ(P(2), 6.5f);
  EXPECT_EQ(P(3), 6.5f);
  EDIT("P", " 1,54 \n4, 1.5, 0.5\n5 2.5 # not 2,5\n");
  EXPECT_EQ(P(1), 54.0f) << "a list without blanks";
  EXPECT_EQ(P(4), 1.5f);
  EXPECT_EQ(P(5), 2.5f);
}

TEST_F(PTEDIT, AN_ESD_THAT_CANNOT_BE_MEANT_IS_REFUSED) {
  ADD_BLOCKS(1);
  for (const char* line : {"1 3.5(2", "1 3.5)", "1 3.5()", "1 3.5(-2)", "1 3.5(2)4", "1 3.5 0.2(1)",
                           "1(1) 3.5", "1 3.5 ( 2 )", "1 3.5 (2)"}) {
    EXPECT_TRUE(HOLDS(EDIT("P", std::string(line) + "\n"), " *****Illegal input\n")) << line;
    EXPECT_EQ(P(1), 0.0f) << line;
    EXPECT_EQ(ESD_P(1), 0.02f) << line;
  }
  EXPECT_TRUE(HOLDS(EDIT("B", "1 3.5 (2) 400 (5)\n"), " *****Illegal input\n"));
  EXPECT_EQ(P(1), 0.0f);
  EDIT("P", "1 (2.5)\n");
  EXPECT_EQ(P(1), 2.5f) << "a value in brackets";
}

TEST_F(PTEDIT, SIX_NUMBERS_ARE_TAKEN_AND_MORE_ARE_PASSED_OVER) {
  ADD_BLOCKS(3);
  EXPECT_FALSE(HOLDS(EDIT("B", "1 -2 2.5 400 0.1 4 9 8 7\n"), "Illegal"));
  for (int block : {1, 2}) {
    EXPECT_EQ(P(block), 2.5f);
    EXPECT_EQ(T(block), 400.0f);
    EXPECT_EQ(ESD_P(block), 0.1f);
    EXPECT_EQ(ESD_T(block), 4.0f);
  }
  EXPECT_EQ(P(3), 0.0f);
}

TEST_F(PTEDIT, SEPARATORS_AND_COMMENTS) {
  for (const char* line : {"2,2.5,0.1", "2\t2.5\t0.1", "2 2.5(0.1)", "(2)/2.5/0.1", " 2 , 2.5 ,0.1",
                           "2 2.5 0.1 # at last", "2 2.5 0.1 # 7"}) {
    INIT_PHASE_LIST();
    ADD_BLOCKS(2);
    EXPECT_FALSE(HOLDS(EDIT("P", std::string(line) + "\n"), "Illegal")) << line;
    EXPECT_EQ(P(2), 2.5f) << line;
    EXPECT_EQ(ESD_P(2), 0.1f) << line;
    EXPECT_EQ(P(1), 0.0f) << line;
  }
}

// ---- CHECK ----

namespace {

class CHECK : public BLOCK_COMMANDS {
 protected:
  // What CHECK says of the file, given the name of the list and the answers behind it.
  static std::string CHECKED(const std::string& cif, const std::string& list,
                             const std::string& answers = "n\n") {
    PUT_FILE("a.cif", cif);
    PUT_FILE("list.cif", list);
    CONSOLE_TESTS::PEND("a");
    return SAID("list\n" + answers, RUN_CHECK_CIF);
  }

  // The heading of a block and what follows it up to the missing items.
  static std::string HEADING(const std::string& number, const std::string& name) {
    return "\n\n ******New data block, #" + number + " named: " + name + ":\n\n";
  }
};

const std::string question = "Do you want to add these CIFs into Gemmara (Y/N) <Y>?";

}  // namespace

TEST_F(CHECK, REPORTS_PER_BLOCK) {
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

TEST_F(CHECK, WITH_A_LIST_OF_COMMENTS_FINDS_ALL_PRESENT) {
  PUT_FILE("a.cif", "data_one\n_cell_length_a 5\n");
  PUT_FILE("list.cif", "# nothing\n#\n");
  CONSOLE_TESTS::PEND("a");
  EXPECT_TRUE(HOLDS(SAID("list\nn\n", RUN_CHECK_CIF), "\n   All required items are present\n"));
}

TEST_F(CHECK, ADDS_THE_BLOCKS_ON_THE_USERS_WORD) {
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

TEST_F(CHECK, ENDS_WITHOUT_BLOCKS_OR_FILES) {
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

TEST_F(CHECK, WITHOUT_A_LIST_NOTHING_IS_CHECKED_OR_CHANGED) {
  ADD_BLOCKS(1);
  const std::string title = PHASE(1).BLOCK_TITLE;
  PUT_FILE("a.cif", "data_one\n_cell_length_a 5\n");
  PUT_FILE("empty.cif", "");
  for (const char* answers : {"\n", "none\n\n", "empty\n"}) {
    CONSOLE_TESTS::PEND("a");
    const std::string said = SAID(answers, RUN_CHECK_CIF);
    EXPECT_TRUE(HOLDS(said, "\n\n   Now open the CIF with the list of items to be checked\n"));
    EXPECT_FALSE(HOLDS(said, "New data block")) << answers;
    EXPECT_FALSE(HOLDS(said, question)) << answers;
    EXPECT_EQ(NPHASES, 1);
    EXPECT_EQ(PHASE(1).BLOCK_TITLE, title);
    EXPECT_EQ(IUSE(1), 1);
  }
  CONSOLE_TESTS::PEND("a");
  EXPECT_TRUE(SAID("empty\n", RUN_CHECK_CIF)
                  .ends_with("\n*****Error in reading file: empty.cif or it is empty\n"));
}

TEST_F(CHECK, BLOCKS_ARE_NAMED_BY_WHAT_STANDS_BEHIND_THE_FIRST_UNDERSCORE) {
  const std::string said = CHECKED("data_\n_a 1\nDATA_two_b\n_a 2\ndata_three  \n_a 3\n", "_a\n");
  EXPECT_TRUE(HOLDS(said, HEADING("  1", "") + "   _a 1\n"));
  EXPECT_TRUE(HOLDS(said, HEADING("  2", "two_b") + "   _a 2\n"));
  EXPECT_TRUE(HOLDS(said, HEADING("  3", "three") + "   _a 3\n"));
}

TEST_F(CHECK, ITEMS_ARE_FOUND_IN_ANOTHER_CASE_AND_BEHIND_BLANKS) {
  const std::string said =
      CHECKED("data_one\n   _Cell_Length_A 5\n_cell_length_b 6\n_cell_angle_alpha 90\n",
              "  _CELL_length_a\n\t_cell_length_B\n  _Cell_angle_beta\n");
  EXPECT_TRUE(said.ends_with(HEADING("  1", "one") + "   _Cell_Length_A 5\n   _cell_length_b 6\n" +
                             "\n   MISSING items:\n   _Cell_angle_beta\n\n\n\n" + question));
}

// What stands before the first block belongs to none.
TEST_F(CHECK, LINES_OF_DATA_GLOBAL_COUNT_FOR_THE_BLOCK_BEFORE_IT) {
  const std::string said = CHECKED(
      "data_global\n_journal_year 2019\ndata_one\n_cell_length_a 5\ndata_global\n"
      "_journal_volume 12\ndata_two\n_cell_length_a 6\n",
      "_journal_year\n_journal_volume\n");
  EXPECT_TRUE(HOLDS(said, HEADING("  1", "one") + "   _journal_volume 12\n\n   MISSING items:\n" +
                              "   _journal_year\n"));
  EXPECT_TRUE(HOLDS(
      said, HEADING("  2", "two") + "\n   MISSING items:\n   _journal_year\n   _journal_volume\n"));
  EXPECT_FALSE(HOLDS(said, "#  3"));
}

TEST_F(CHECK, A_BLOCK_ENDS_BEFORE_THE_FIRST_LINE_OF_THE_NEXT) {
  const std::string said = CHECKED("data_one\n_a 1\ndata_two\n_a 2\n", "data_two\n");
  EXPECT_TRUE(HOLDS(said, HEADING("  1", "one") + "\n   MISSING items:\n   data_two\n"));
  EXPECT_TRUE(HOLDS(said, HEADING("  2", "two") + "   data_two\n"));
}

TEST_F(CHECK, OLDER_OPERATOR_NAME_IN_FILE_OR_LIST_IS_THE_NEWER_ONE) {
  const std::string said =
      CHECKED("data_one\n_space_group_symop_operation_xyz\n", "_symmetry_equiv_pos_as_xyz\n");
  EXPECT_TRUE(HOLDS(said, "   _space_group_symop_operation_xyz\n\n   All required items are"));
}

TEST_F(CHECK, READ_ONLY_FILES_PASS) {
  AS_A_COMMON_USER([] {
    PUT_FILE("a.cif", "data_one\n_cell_length_a 5\n");
    PUT_FILE("list.cif", "_cell_length_a\n");
    for (const char* name : {"a.cif", "list.cif"})
      CONSOLE_TESTS::fs::permissions(name, CONSOLE_TESTS::fs::perms(0400));
    CONSOLE_TESTS::PEND("a");
    EXPECT_TRUE(HOLDS(SAID("list\nn\n", RUN_CHECK_CIF), "   All required items are present\n"));
  });
}

// U11 = U22 = U33 = 0.01 in a cubic cell of 5: Ueq = 0.01, beta11 = 2 pi^2 0.01 / 25 = 0.0078957.
// Uiso = 0.02: B = 8 pi^2 0.02 = 1.579137.
TEST_F(CHECK, DISPLACEMENTS_OF_ADDED_BLOCKS_ARE_READY_FOR_CALCULATIONS) {
  CHECKED(
      "data_one\n_cell_length_a 5\n_cell_length_b 5\n_cell_length_c 5\n"
      "_cell_angle_alpha 90\n_cell_angle_beta 90\n_cell_angle_gamma 90\n"
      "_symmetry_space_group_name_H-M 'P 1'\n\nloop_\n"
      "_atom_site_label\n_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n"
      "_atom_site_U_iso_or_equiv\n_atom_site_adp_type\n"
      "O1 0.1 0.2 0.3 0.01 Uani\nO2 0.5 0.5 0.5 0.02 Uiso\n\nloop_\n"
      "_atom_site_aniso_label\n_atom_site_aniso_U_11\n_atom_site_aniso_U_22\n"
      "_atom_site_aniso_U_33\n_atom_site_aniso_U_12\n_atom_site_aniso_U_13\n"
      "_atom_site_aniso_U_23\nO1 0.01 0.01 0.01 0 0 0\n",
      "_cell_length_a\n", "\n");
  ASSERT_EQ(NPHASES, 1);
  EXPECT_EQ(PHASE(1).ATOM(1).UTYPE, "beta");
  EXPECT_NEAR(PHASE(1).ATOM(1).U[0], 0.0078957f, 1e-6f);
  EXPECT_NEAR(PHASE(1).ATOM(1).UEQ, 0.01f, 1e-6f);
  EXPECT_NEAR(PHASE(1).ATOM(2).BISO, 1.579137f, 1e-5f);
}

TEST_F(CHECK, CONDITIONS_OF_ADDED_BLOCKS_STAY_AS_THEY_WERE_READ) {
  CHECKED(
      "data_told\n_diffrn_ambient_temperature 150(2)\n_diffrn_ambient_pressure 2500000(3000)\n"
      "data_zero\n_diffrn_ambient_temperature 0\n_diffrn_ambient_pressure 0\n"
      "data_untold\n_cell_length_a 5\n",
      "_cell_length_a\n", "\n");
  ASSERT_EQ(NPHASES, 3);
  EXPECT_EQ(T(1), 150.0f);
  EXPECT_EQ(ESD_T(1), 2.0f);
  EXPECT_FLOAT_EQ(P(1), 2.5f);
  EXPECT_FLOAT_EQ(ESD_P(1), 0.003f);
  EXPECT_EQ(T(2), 0.0f) << "READ would make it 298";
  EXPECT_EQ(P(2), 0.0f);
  EXPECT_EQ(T(3), 298.0f);
  EXPECT_EQ(ESD_T(3), 0.0f) << "nobody measured it";
  EXPECT_EQ(P(3), 0.0f);
  EXPECT_EQ(ESD_P(3), 0.0f);
}

TEST_F(CHECK, ADDED_BLOCKS_WITHOUT_A_NAME_ARE_CALLED_BY_THE_FILE) {
  CHECKED("data_\n_cell_length_a 5\ndata_\n_cell_length_a 6\n", "_cell_length_a\n", "\n");
  ASSERT_EQ(NPHASES, 2);
  EXPECT_EQ(PHASE(1).BLOCK_TITLE, "a");
  EXPECT_EQ(PHASE(2).BLOCK_TITLE, "a_2");
}
