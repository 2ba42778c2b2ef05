// TRANSFORM: the dialogue line by line, coordinates, esds and tensors by hand, and that the
// geometry of published structures outlives a change of origin or hand.
#include "src/facetor6_transform/transform.h"

#include <algorithm>  // for find_if, sort
#include <cmath>      // for abs, isinf

#include "facetor6_commands__list_blocks.h"
#include "places.h"
#include "src/facetor6_calc/calc.h"
#include "src/facetor6_readfiles/readfiles.h"
#include "src/kva_crystal_structures/displacement.h"

using namespace FACETOR_TRANSFORM;
using namespace LIST_TESTS;

namespace {

// Three rows of a matrix as they are typed.
const std::string identity = "1 0 0\n0 1 0\n0 0 1\n";
const std::string inversion = "-1 0 0\n0 -1 0\n0 0 -1\n";
const std::string shear = "1 1 0\n0 1 0\n0 0 1\n";  // x' = x + y

// The announcement stands from column (100 - 34) / 2 = 33, one blank behind it.
const std::string announcement = "\n" + std::string(32, '*') +
                                 "Transformation of atom coordinates " + std::string(33, '*') +
                                 "\n\n";
const std::string explanation =
    "\n       This command enables you to transform the positional parameters of all atoms in one "
    "or more datablocks\n"
    "       The unit cell and the symmetry operators of the space group are not changed\n"
    " The transformation to be applied (written as vectors and matrices) is x(new)=T.x(old) + "
    "Offset\n\n";
const std::string matrix_question =
    "Input the 3x3 transformation matrix T. Each line requires three values a,b,c so that x(new) = "
    "ax + by + cz:\n";
// Nothing is echoed, so the answers and their line ends are missing.
const std::string rows_question = "  Row 1:  Row 2:  Row 3:";
const std::string shift_question = "Input the origin shift for x,y, & z:";
const std::string block_list =
    "\n*****These are all the datablocks:\n\n"
    "       BLOCKNAME      T        P         IUSE\n";
const std::string blocks_hint =
    "\n  (Input negative numbers to define a range: 4,-7 means 4,5,6 and 7, or 'all' for "
    "everything)\n";
const std::string blocks_question = "\nInput the datablock numbers to transform, <CR> to exit:";
const std::string new_coordinates = "\n    Here is the list of all the new atom coordinates:\n";
const std::string keep_question =
    "    Do you want to keep these transformed coordinates (Y/N) <N>?";
const std::string restored = "\n    The original atom coordinates have been restored:\n";
const std::string again_question =
    "    Do you want to apply the same transformation to other datablocks (Y/N) <N>?";
const std::string opening = announcement + explanation + matrix_question;

class TRANSFORMATION : public BLOCKS {
 protected:
  std::string TRANSFORM(const std::string& answers) { return SAID(answers, RUN_TRANSFORM); }

  // Transforms the blocks and keeps the result.
  void KEEP(const std::string& matrix, const std::string& shift, const std::string& blocks = "1") {
    TRANSFORM(matrix + shift + "\n" + blocks + "\ny\nn\n");
  }

  // One atom without symmetry at x = 0.1, 0.2, 0.3.
  static void ADD_ATOM(const std::string& title, const VECTOR3& x_std = {}) {
    ADD(title, MADE({10, 10, 10}, {90, 90, 90}, "P 1", {{"Si1", {0.1f, 0.2f, 0.3f}, x_std}}));
  }

  static const VECTOR3& X(int block, int atom = 1) { return PHASE(block).ATOM(atom).X; }

  static void EXPECT_VECTOR(const VECTOR3& found, const VECTOR3& expected) {
    for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(found[k], expected[k], 1e-6f) << "axis " << k;
  }

  // Gives the atom a tensor in beta form.
  static void SET_BETA(int block, const VECTOR6& beta, const VECTOR6& beta_std) {
    ATOM_TYPE& atom = PHASE(block).ATOM(1);
    atom.THTYPE = "Aniso";
    atom.UTYPE = "beta";
    atom.U = beta;
    atom.U_STD = beta_std;
  }

  static bool HOLDS(const std::string& said, const std::string& text) {
    return said.find(text) != std::string::npos;
  }

  // Title, head and rows of the coordinates of an atom; a row is its block and what follows.
  static std::string XYZ_TABLE(const std::string& atom, const std::vector<std::string>& rows) {
    std::string table = "\n\n ATOMS EQUIVALENT TO ATOM " + atom + " IN REFERENCE BLOCK (first)\n" +
                        head + " SITE      ATOM     X         Y         Z       OCC\n";
    for (const std::string& row : rows) table += row + "\n";
    return table;
  }
};

}  // namespace

// ---- the dialogue ----

TEST_F(TRANSFORMATION, NEEDS_BLOCKS_IN_USE) {
  const std::string refusal = announcement +
                              "\n*****WARNING: No datablocks with use flags set!\n\n"
                              "\n*****WARNING: There are no datasets to be modified\n\n";
  EXPECT_EQ(TRANSFORM(""), refusal);
  ADD_ATOM("first");
  IUSE(1) = 0;
  EXPECT_EQ(TRANSFORM(""), refusal);
}

TEST_F(TRANSFORMATION, EVERY_LINE_OF_A_TRANSFORMATION_THAT_IS_KEPT) {
  ADD_ATOM("first");
  // 1 - 0.1, 0.5 - 0.2, -0.3: one block fills the list, so no further number is asked for.
  EXPECT_EQ(TRANSFORM(inversion + "1 0.5 0\n1\ny\n\n"),
            opening + rows_question + shift_question + block_list + start_1 + "\n" + blocks_hint +
                blocks_question + new_coordinates +
                XYZ_TABLE("Si1", {start_1 + "1 Si1       (Si  )   0.90000   0.30000  -0.30000 "
                                            "1.000"}) +
                keep_question + again_question);
  EXPECT_VECTOR(X(1), {0.9f, 0.3f, -0.3f});
}

TEST_F(TRANSFORMATION, EVERY_LINE_OF_A_TRANSFORMATION_THAT_IS_NOT_KEPT) {
  ADD_ATOM("first");
  ADD_ATOM("second");
  const VECTOR3 before = X(2);
  // Block 2 is half a cell away, where nothing lies near the atom of block 1.
  EXPECT_EQ(
      TRANSFORM(identity + "0.5\n2\n\nn\n"),
      opening + rows_question + shift_question + block_list + start_1 + "\n" + start_2 + "\n" +
          blocks_hint + blocks_question + blocks_question + new_coordinates +
          XYZ_TABLE("Si1", {start_1 + "1 Si1       (Si  )   0.10000   0.20000   0.30000 1.000",
                            start_2 + "         *****No equivalent atom found"}) +
          keep_question + restored +
          XYZ_TABLE("Si1", {start_1 + "1 Si1       (Si  )   0.10000   0.20000   0.30000 1.000",
                            start_2 + "1 Si1       (Si  )   0.10000   0.20000   0.30000 1.000"}));
  EXPECT_EQ(X(2), before);
}

TEST_F(TRANSFORMATION, THE_SECOND_QUESTION_LEADS_BACK_TO_THE_BLOCKS) {
  ADD_ATOM("first");
  ADD_ATOM("second");
  const std::string said = TRANSFORM(identity + "0.25\n1\n\ny\ny\n2\n\ny\n\n");
  EXPECT_TRUE(HOLDS(said, keep_question + again_question + block_list)) << said;
  EXPECT_TRUE(said.ends_with(keep_question + again_question));
  EXPECT_VECTOR(X(1), {0.35f, 0.2f, 0.3f});
  EXPECT_VECTOR(X(2), {0.35f, 0.2f, 0.3f});
}

TEST_F(TRANSFORMATION, A_REFUSAL_IN_THE_SECOND_ROUND_KEEPS_THE_FIRST) {
  ADD_ATOM("first");
  ADD_ATOM("second");
  const std::string said = TRANSFORM(identity + "0.25\n1\n\ny\ny\n1,-2\nn\n");
  EXPECT_FALSE(said.ends_with(again_question)) << "a refusal ends the command";
  EXPECT_VECTOR(X(1), {0.35f, 0.2f, 0.3f});
  EXPECT_VECTOR(X(2), {0.1f, 0.2f, 0.3f});
}

TEST_F(TRANSFORMATION, EVERY_EARLY_END_CHANGES_NOTHING_AND_ASKS_NOTHING_MORE) {
  ADD_ATOM("first");
  const VECTOR3 before = X(1);
  EXPECT_EQ(TRANSFORM("\n"), opening + "  Row 1:");
  EXPECT_EQ(TRANSFORM("-1 0 0\n\n"), opening + "  Row 1:  Row 2:");
  EXPECT_EQ(TRANSFORM(inversion + "\n\n"), opening + rows_question + shift_question + block_list +
                                               start_1 + "\n" + blocks_hint + blocks_question);
  EXPECT_TRUE(HOLDS(TRANSFORM(inversion + "\n1\n\n"), keep_question + restored))
      << "a blank answer is the default, no";
  EXPECT_EQ(X(1), before);
}

TEST_F(TRANSFORMATION, TEXT_BEHIND_THE_COMMAND_ANSWERS_NO_QUESTION) {
  ADD_ATOM("first");
  CONSOLE_TESTS::PEND("1 0 0");
  EXPECT_EQ(TRANSFORM("\n"), opening + "  Row 1:");
}

TEST_F(TRANSFORMATION, THE_LIST_OF_BLOCKS_HIDES_WHAT_LISTINGS_HIDE) {
  ADD_ATOM("first");
  ADD_ATOM("second");
  IUSE(2) = 0;
  RUN.LIST_ALL_BLOCKS = false;
  EXPECT_TRUE(HOLDS(TRANSFORM(identity + "\n\n"), block_list + start_1 + "\n" + blocks_hint));
}

// ---- which matrices are taken ----

TEST_F(TRANSFORMATION, A_DETERMINANT_OF_ZERO_IS_REFUSED_AND_THE_MATRIX_ASKED_FOR_AGAIN) {
  ADD_ATOM("first");
  const std::string no_sense =
      "\n *****The transformation has a determinant of zero. This makes no sense!\n";
  EXPECT_EQ(TRANSFORM("1 1 0\n1 1 0\n0 0 1\n\n"),
            opening + rows_question + no_sense + matrix_question + "  Row 1:");
  // The limit is a magnitude of 0.01.
  EXPECT_TRUE(HOLDS(TRANSFORM("0.0099 0 0\n0 1 0\n0 0 1\n\n"), no_sense));
  EXPECT_TRUE(HOLDS(TRANSFORM("-0.0099 0 0\n0 1 0\n0 0 1\n\n"), no_sense));
  EXPECT_FALSE(HOLDS(TRANSFORM("0.0101 0 0\n0 1 0\n0 0 1\n\n"), no_sense));
}

TEST_F(TRANSFORMATION, OTHER_VOLUMES_ARE_REFUSED_WITH_THE_DETERMINANT) {
  ADD_ATOM("first");
  // The first element is the determinant: 10 columns, 4 decimals.
  const std::vector<std::pair<std::string, std::string>> cases{
      {"2", "    2.0000"},      {"-2", "   -2.0000"},     {"0.5", "    0.5000"},
      {"0.0101", "    0.0101"}, {"1.0002", "    1.0002"}, {"-0.9998", "   -0.9998"},
      {"1e9", "**********"}};
  for (const auto& [element, shown] : cases)
    EXPECT_EQ(TRANSFORM(element + " 0 0\n0 1 0\n0 0 1\n\n"),
              opening + rows_question + "\n *****The determinant of the transformation is " +
                  shown +
                  "\n      This type of transformation is not yet suppported in Gemmara\n\n" +
                  matrix_question + "  Row 1:");
}

TEST_F(TRANSFORMATION, DETERMINANTS_BEYOND_THE_RANGE_OF_REALS_ARE_REFUSED) {
  ADD_ATOM("first");
  const std::string words = "\n *****The determinant of the transformation is ";
  EXPECT_TRUE(HOLDS(TRANSFORM("1e30 0 0\n0 1e30 0\n0 0 1\n\n"), words + "       Inf\n"));
  EXPECT_TRUE(HOLDS(TRANSFORM("-1e30 0 0\n0 1e30 0\n0 0 1\n\n"), words + "      -Inf\n"));
  EXPECT_TRUE(HOLDS(TRANSFORM("1e30 1e30 1e30\n1e30 1e30 1e30\n1e30 1e30 1e30\n\n"),
                    words + "       NaN\n"));
}

TEST_F(TRANSFORMATION, UNIT_DETERMINANTS_ARE_TAKEN_WITHIN_A_TENTHOUSANDTH) {
  ADD_ATOM("first");
  for (const std::string element : {"1", "-1", "1.00009", "0.99991", "-1.00009", "-0.99991"})
    EXPECT_TRUE(TRANSFORM(element + " 0 0\n0 1 0\n0 0 1\n\n\n")
                    .starts_with(opening + rows_question + shift_question))
        << element;
}

// ---- coordinates ----

TEST_F(TRANSFORMATION, ROWS_OF_THE_MATRIX_GIVE_THE_NEW_COORDINATES) {
  ADD_ATOM("first");
  KEEP("1 1 0\n0 1 -1\n0 0 1\n", "0.5 0.25 -1");
  // 0.1 + 0.2 + 0.5, 0.2 - 0.3 + 0.25, 0.3 - 1.
  EXPECT_VECTOR(X(1), {0.8f, 0.15f, -0.7f});
}

TEST_F(TRANSFORMATION, COORDINATES_ARE_NOT_BROUGHT_BACK_INTO_THE_CELL) {
  ADD_ATOM("first");
  KEEP(inversion, "0 0 3");
  EXPECT_VECTOR(X(1), {-0.1f, -0.2f, 2.7f});
}

TEST_F(TRANSFORMATION, A_SHIFT_MAY_BE_BLANK_OR_SHORT) {
  ADD_ATOM("first");
  KEEP(identity, "");
  EXPECT_VECTOR(X(1), {0.1f, 0.2f, 0.3f});
  KEEP(identity, "0.5");
  EXPECT_VECTOR(X(1), {0.6f, 0.2f, 0.3f});
  KEEP(identity, "none, 0.5 (0.25) 0.125 0.0625");
  // What is no number is skipped, and a fourth number is not wanted.
  EXPECT_VECTOR(X(1), {1.1f, 0.45f, 0.425f});
}

TEST_F(TRANSFORMATION, ALL_ATOMS_OF_THE_CHOSEN_BLOCKS_AND_ONLY_THESE) {
  for (const char* title : {"first", "second", "third"}) {
    CRYSTAL_STRUCTURE_TYPE phase = MADE(
        {10, 10, 10}, {90, 90, 90}, "P 1",
        {{"Si1", {0.1f, 0, 0}}, {"Al1", {0.1f, 0, 0}}, {"O1", {0.4f, 0, 0}}, {"O2", {0.7f, 0, 0}}});
    ADD(title, phase);
    PHASE(NPHASES).ATOM_USE(3) = ATOM_OMITTED;
  }
  IUSE(3) = 0;
  ASSERT_EQ(PHASE(1).ATOM_USE(2), -1) << "a duplicate";
  KEEP(identity, "0 0.5 0", "3,1\n");
  for (int atom = 1; atom <= 4; ++atom) {
    EXPECT_EQ(X(1, atom)[1], 0.5f) << "omitted atoms and duplicates too: " << atom;
    EXPECT_EQ(X(2, atom)[1], 0.0f) << atom;
    EXPECT_EQ(X(3, atom)[1], 0.5f) << "a block that is not in use: " << atom;
  }
  EXPECT_EQ(PHASE(1).ATOM_USE(2), -1);
  EXPECT_EQ(PHASE(1).ATOM_USE(3), ATOM_OMITTED);
}

TEST_F(TRANSFORMATION, A_BLOCK_NAMED_TWICE_IS_TRANSFORMED_ONCE) {
  ADD_ATOM("first");
  ADD_ATOM("second");
  KEEP(identity, "0.25", "1,1");
  EXPECT_VECTOR(X(1), {0.35f, 0.2f, 0.3f});
  KEEP(identity, "0.25", "all");
  EXPECT_VECTOR(X(1), {0.6f, 0.2f, 0.3f});
  EXPECT_VECTOR(X(2), {0.35f, 0.2f, 0.3f});
}

TEST_F(TRANSFORMATION, CELL_AND_OPERATORS_STAY) {
  ADD("first", MADE({5, 5, 7}, {90, 90, 120}, "P 32 2 1", {{"Si1", {0.47f, 0, 0.6667f}}}));
  const XTAL::SPACE_GROUP group = PHASE(1).SPG;
  const XTAL::CRYSTAL_CELL cell = PHASE(1).CELL;
  KEEP(inversion, "0.1 0.2 0.3");
  EXPECT_EQ(PHASE(1).SPG.SPG_SYMB, group.SPG_SYMB);
  EXPECT_EQ(PHASE(1).SPG.SYMOPSYMB.ITEMS(), group.SYMOPSYMB.ITEMS());
  EXPECT_EQ(PHASE(1).CELL.CELL, cell.CELL);
  EXPECT_EQ(PHASE(1).CELL.ANG, cell.ANG);
}

TEST_F(TRANSFORMATION, A_REFUSED_RESULT_LEAVES_ALL_BLOCKS_AND_RESULTS_AS_THEY_WERE) {
  ADD_ATOM("first", {0.003f, 0.004f, 0.012f});
  ADD("second");
  BOND(2, {1.6f});
  SET_BETA(1, {0.01f, 0.02f, 0.03f, 0.001f, 0.002f, 0.003f}, {});
  const std::vector<VECTOR3> before{X(1), X(2, 1), X(2, 2), X(2, 3), X(2, 4)};
  TRANSFORM(shear + "0.1 0.7 1.3\n1,2\nno\n");
  EXPECT_EQ((std::vector<VECTOR3>{X(1), X(2, 1), X(2, 2), X(2, 3), X(2, 4)}), before);
  EXPECT_EQ(PHASE(1).ATOM(1).X_STD, (VECTOR3{0.003f, 0.004f, 0.012f}));
  EXPECT_EQ(PHASE(1).ATOM(1).U, (VECTOR6{0.01f, 0.02f, 0.03f, 0.001f, 0.002f, 0.003f}));
  EXPECT_EQ(PHASE(2).NBONDS(1), 1);
  EXPECT_EQ(PHASE(2).BONDS(1, 1, BOND_LENGTH), 1.6f);
}

TEST_F(TRANSFORMATION, NUMBERS_BEYOND_ALL_MEASURE_DO_NO_HARM) {
  ADD("first", MADE({10, 10, 10}, {90, 90, 90}, "P -1",
                    {{"Si1", {0.9f, 0, 0}, {0.1f, 0, 0}}, {"O1", {0.95f, 0.1f, 0.1f}}}));
  SET_BETA(1, {0.01f, 0.02f, 0.03f, 0.001f, 0.002f, 0.003f}, {1, 1, 1, 1, 1, 1});
  KEEP("1e38 0 0\n0 1e-38 0\n0 0 1\n", "3.4e38 1e30 -1e30");
  EXPECT_TRUE(std::isinf(X(1)[0]));
  EXPECT_TRUE(HOLDS(SAID("", [] { FACETOR_LIST_ALL_XYZ("ESD"); }), "No equivalent atom found"));
  SAID("", [] { FACETOR_LIST_ALL_ADPS("ESD"); });
  SAID("\n", FACETOR_CALC::RUN_FACETOR_CALC_BONDS);
  EXPECT_EQ(PHASE(1).NBONDS(1), 0);
  const std::string said = TRANSFORM(inversion + "\n1\nn\n");
  EXPECT_TRUE(HOLDS(said, restored));
}

// ---- esds ----

TEST_F(TRANSFORMATION, ESDS_OF_MIXED_COORDINATES_ADD_AS_VARIANCES) {
  ADD_ATOM("first", {0.003f, 0.004f, 0.012f});
  KEEP("1 1 0\n0 1 0\n0 0 1\n", "");
  // 3, 4, 5.
  EXPECT_VECTOR(PHASE(1).ATOM(1).X_STD, {0.005f, 0.004f, 0.012f});
  KEEP("1 0 1\n0 1 0\n0 0 1\n", "");
  // 5, 12, 13.
  EXPECT_VECTOR(PHASE(1).ATOM(1).X_STD, {0.013f, 0.004f, 0.012f});
}

TEST_F(TRANSFORMATION, ESDS_FOLLOW_THEIR_AXES_AND_HAVE_NO_SIGN) {
  ADD_ATOM("first", {0.003f, 0.004f, 0.012f});
  KEEP("0 -1 0\n0 0 1\n-1 0 0\n", "0.5 0.5 0.5");
  EXPECT_VECTOR(X(1), {0.3f, 0.8f, 0.4f});
  EXPECT_VECTOR(PHASE(1).ATOM(1).X_STD, {0.004f, 0.012f, 0.003f});
}

TEST_F(TRANSFORMATION, COORDINATES_TIED_BY_THE_OLD_SITE_ADD_AS_ESDS) {
  // On the mirror x, x, z the two coordinates are one parameter: x + y = 2x has the esd 2 s. At the
  // new position 2x, x, z there is no mirror.
  ADD("first", MADE({10, 10, 10}, {90, 90, 90}, "P 4 m m",
                    {{"Si1", {0.1f, 0.1f, 0.3f}, {0.002f, 0.002f, 0.001f}}}));
  ASSERT_EQ(PHASE(1).ATOM(1).MULT, 4);
  KEEP(shear, "");
  EXPECT_VECTOR(X(1), {0.2f, 0.1f, 0.3f});
  EXPECT_VECTOR(PHASE(1).ATOM(1).X_STD, {0.004f, 0.002f, 0.001f});
  EXPECT_EQ(PHASE(1).ATOM(1).MULT, 8);
}

TEST_F(TRANSFORMATION, COORDINATES_THAT_ONLY_THE_NEW_SITE_TIES_ADD_AS_VARIANCES) {
  ADD("first", MADE({10, 10, 10}, {90, 90, 90}, "P 4 m m",
                    {{"Si1", {0.2f, -0.1f, 0.3f}, {0.003f, 0.004f, 0.001f}}}));
  ASSERT_EQ(PHASE(1).ATOM(1).MULT, 8);
  KEEP(shear, "0.8 0 0");
  // x + y + 0.8 = 0.2 + 0.9 + 0.8, as -0.1 was read as 0.9: the mirror is x, x, z again.
  EXPECT_VECTOR(X(1), {1.9f, 0.9f, 0.3f});
  EXPECT_VECTOR(PHASE(1).ATOM(1).X_STD, {0.005f, 0.004f, 0.001f});
  EXPECT_EQ(PHASE(1).ATOM(1).MULT, 4);
}

TEST_F(TRANSFORMATION, MULTIPLICITIES_ARE_THOSE_OF_THE_NEW_POSITIONS) {
  ADD("first", MADE({10, 10, 10}, {90, 90, 90}, "P -1", {{"Si1", {0, 0, 0}}}));
  ASSERT_EQ(PHASE(1).ATOM(1).MULT, 1);
  KEEP(identity, "0.1");
  EXPECT_EQ(PHASE(1).ATOM(1).MULT, 2);
  KEEP(identity, "0.4 1.5 -1");
  EXPECT_EQ(PHASE(1).ATOM(1).MULT, 1);
}

// ---- displacement tensors ----

TEST_F(TRANSFORMATION, TENSORS_BECOME_T_B_T_TRANSPOSED) {
  ADD_ATOM("first");
  SET_BETA(1, {0.010f, 0.020f, 0.030f, 0.002f, 0.003f, 0.004f},
           {0.001f, 0.002f, 0.006f, 0.001f, 0.003f, 0.004f});
  KEEP(shear, "");
  // 11 = b11 + 2 b12 + b22, 12 = b12 + b22, 13 = b13 + b23; the others stay. Their esds:
  // sqrt(1 + 4 + 4), sqrt(1 + 4), sqrt(9 + 16), in thousandths.
  const VECTOR6 beta{0.034f, 0.020f, 0.030f, 0.022f, 0.007f, 0.004f};
  const VECTOR6 std{0.003f, 0.002f, 0.006f, 0.0022361f, 0.005f, 0.004f};
  for (std::size_t c = 0; c < 6; ++c) {
    EXPECT_NEAR(PHASE(1).ATOM(1).U[c], beta[c], 1e-7f) << c;
    EXPECT_NEAR(PHASE(1).ATOM(1).U_STD[c], std[c], 1e-7f) << c;
  }
}

TEST_F(TRANSFORMATION, INVERSION_LEAVES_TENSORS_AS_THEY_ARE) {
  ADD_ATOM("first");
  const VECTOR6 beta{0.010f, 0.020f, 0.030f, 0.002f, -0.003f, 0.004f};
  const VECTOR6 std{0.001f, 0.002f, 0.006f, 0.001f, 0.003f, 0.004f};
  SET_BETA(1, beta, std);
  KEEP(inversion, "0.5 0.5 0.5");
  for (std::size_t c = 0; c < 6; ++c) {
    EXPECT_FLOAT_EQ(PHASE(1).ATOM(1).U[c], beta[c]);
    EXPECT_FLOAT_EQ(PHASE(1).ATOM(1).U_STD[c], std[c]);
  }
}

TEST_F(TRANSFORMATION, COMPONENTS_TIED_BY_THE_OLD_SITE_ADD_AS_ESDS) {
  // On the mirror x, x, z b11 = b22 is one parameter: the esd of b11 + 2 b12 + b22 is, in
  // thousandths, sqrt((3 + 3)^2 + 4 * 4^2) = 10, and that of b13 + b23 is 2 + 2.
  ADD("first", MADE({10, 10, 10}, {90, 90, 90}, "P 4 m m", {{"Si1", {0.1f, 0.1f, 0.3f}}}));
  SET_BETA(1, {0.02f, 0.02f, 0.03f, 0.001f, 0.002f, 0.002f},
           {0.003f, 0.003f, 0.006f, 0.004f, 0.002f, 0.002f});
  KEEP(shear, "");
  EXPECT_NEAR(PHASE(1).ATOM(1).U_STD[0], 0.010f, 1e-7f);
  EXPECT_NEAR(PHASE(1).ATOM(1).U_STD[4], 0.004f, 1e-7f);
}

TEST_F(TRANSFORMATION, DISPLACEMENTS_ALONG_BONDS_COME_BACK) {
  ADD("first", MADE({5, 6, 7}, {90, 90, 90}, "P b n m",
                    {{"Si1", {0.1f, 0.2f, 0.3f}}, {"O1", {0.35f, 0.3f, 0.4f}}}));
  for (int i = 1; i <= 2; ++i) {
    ATOM_TYPE& atom = PHASE(1).ATOM(i);
    atom.THTYPE = "Aniso";
    atom.UTYPE = "u_ij";
    atom.U = {0.01f, 0.02f, 0.03f, 0.004f, -0.005f, 0.006f};
  }
  SET_ALLATOM_ADP(PHASE(1));
  const auto displacements = [] {
    SAID("\n", FACETOR_CALC::RUN_FACETOR_CALC_BONDS);
    std::vector<float> along;
    for (int i = 1; i <= 2; ++i)
      for (int j = 1; j <= PHASE(1).NBONDS(i); ++j)
        for (int column : {BOND_DISPL_CENTRE, BOND_DISPL_LIGAND})
          along.push_back(PHASE(1).BONDS(i, j, column));
    std::sort(along.begin(), along.end());
    return along;
  };
  const std::vector<float> before = displacements();
  ASSERT_GE(before.size(), 4u);
  ASSERT_GT(before.front(), 0.05f);
  // An operator of the group, x + 1/2, -y + 1/2, -z, and an inversion on another centre.
  for (const auto& [matrix, shift] : std::vector<std::pair<std::string, std::string>>{
           {"1 0 0\n0 -1 0\n0 0 -1\n", "0.5 0.5"}, {inversion, "0.5 0.5 0.5"}}) {
    KEEP(matrix, shift);
    const std::vector<float> after = displacements();
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t k = 0; k < before.size(); ++k) EXPECT_NEAR(after[k], before[k], 1e-5f);
  }
}

TEST_F(TRANSFORMATION, ISOTROPIC_DISPLACEMENTS_STAY) {
  ADD_ATOM("first");
  PHASE(1).ATOM(1).UEQ = 0.01f;
  PHASE(1).ATOM(1).BISO = 0.79f;
  KEEP(shear, "");
  EXPECT_EQ(PHASE(1).ATOM(1).UEQ, 0.01f);
  EXPECT_EQ(PHASE(1).ATOM(1).BISO, 0.79f);
  EXPECT_EQ(PHASE(1).ATOM(1).U, VECTOR6{});
}

// ---- results that end ----

TEST_F(TRANSFORMATION, THE_BONDS_OF_A_TRANSFORMED_BLOCK_ARE_GONE_AND_THOSE_OF_OTHERS_STAY) {
  ADD("first");
  ADD("second");
  SAID("2 4\n", FACETOR_CALC::RUN_FACETOR_CALC_BONDS);
  for (int block = 1; block <= 2; ++block) {
    ASSERT_EQ(PHASE(block).NBONDS(1), 3);
    ASSERT_EQ(PHASE(block).NANGLES(1), 3);
    ASSERT_EQ(PHASE(block).BOND_CEN(1, CENTRE_ATOM), 1.0f);
    ASSERT_GT(PHASE(block).POLYHEDRON(1, POLY_MEAN_LENGTH), 2.9f);
  }
  KEEP(identity, "0.001", "2\n");
  const CRYSTAL_STRUCTURE_TYPE& done = PHASE(2);
  EXPECT_EQ(done.NBONDS(1), 0);
  EXPECT_EQ(done.NANGLES(1), 0);
  for (int j = 1; j <= 3; ++j)
    for (int column = 1; column <= BOND_COLUMNS; ++column)
      EXPECT_EQ(done.BONDS(1, j, column), 0.0f) << j << " " << column;
  for (int column = 1; column <= CENTRE_COLUMNS; ++column)
    EXPECT_EQ(done.BOND_CEN(1, column), 0.0f) << column;
  for (int column = 1; column <= ANGLE_COLUMNS; ++column)
    EXPECT_EQ(done.BANGLES(1, 1, 2, column), 0.0f) << column;
  for (int column = 1; column <= POLY_COLUMNS; ++column)
    EXPECT_EQ(done.POLYHEDRON(1, column), 0.0f) << column;
  EXPECT_EQ(PHASE(1).NBONDS(1), 3);
  EXPECT_NEAR(PHASE(1).BONDS(1, 1, BOND_LENGTH), 3.0f, 1e-5f);
}

TEST_F(TRANSFORMATION, REPORTS_SAY_THAT_A_TRANSFORMED_BLOCK_HAS_NO_VALUES) {
  ADD("first");
  ADD("second");
  SAID("2 4\n", FACETOR_CALC::RUN_FACETOR_CALC_BONDS);
  KEEP(identity, "", "2\n");
  // Three values of 8 columns and a blank behind column 44, then the number of bonds and their
  // mean.
  EXPECT_TRUE(SAID("", [] {
                FACETOR_LIST_BONDS(1);
              }).ends_with(start_2 + " No value No value No value    0  0.0000\n"));
  KEEP(identity, "", "1\n");
  EXPECT_EQ(SAID("", [] { RUN_FACETOR_LIST_GEOM(REPORT_BONDS); }),
            "     No bond lengths have been loaded or calculated\n");
}

// ---- the geometry of real structures ----

namespace {

// A value that must come back, and the share of it by which it may differ: a ten-thousandth, as far
// as 32-bit reals of 90 degrees or 10 cubic angstroms carry.
struct ITEM {
  float VALUE;
  float SHARE = 1e-4f;
};
using GEOMETRY_ROW = std::vector<ITEM>;

// The esd of an angle comes from shifts of the coordinates by one esd in one direction; a structure
// turned against them shows the curvature there, 4% at esds of 0.015 angstroms.
constexpr float share_of_angle_esd = 0.05f;

// All there is to say of the bonds of a centre.
struct GEOMETRY {
  std::string CENTRE;
  std::vector<GEOMETRY_ROW> BONDS;
  std::vector<GEOMETRY_ROW> ANGLES;
  std::vector<GEOMETRY_ROW> POLYHEDRA;  // one row
};

GEOMETRY_ROW BOND_ROW(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int j) {
  GEOMETRY_ROW row;
  for (int column :
       {BOND_LIGAND, BOND_LENGTH, BOND_LENGTH_STD, BOND_LENGTH_SRB, BOND_VALENCE, BOND_VALENCE_STD})
    row.push_back({phase.BONDS(i, j, column)});
  return row;
}

GEOMETRY_ROW ANGLE_ROW(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int j, int k) {
  return {{phase.BANGLES(i, j, k, ANGLE)},
          {phase.BANGLES(i, j, k, ANGLE_STD), share_of_angle_esd},
          {phase.BANGLES(i, j, k, EDGE)},
          {phase.BANGLES(i, j, k, EDGE_STD)}};
}

GEOMETRY_ROW POLYHEDRON_ROW(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  GEOMETRY_ROW row;
  for (int column : {POLY_MEAN_LENGTH, POLY_ELONGATION, POLY_VARIANCE, POLY_VOLUME, POLY_VOLUME_STD,
                     POLY_MEAN_EDGE, POLY_DELTA, POLY_RADIUS, POLY_RADIUS_SDEV, POLY_IDEAL_VOLUME,
                     POLY_VOLUME_SRB, POLY_VALENCE_SUM, POLY_VALENCE_SUM_STD})
    row.push_back({phase.POLYHEDRON(i, column)});
  return row;
}

GEOMETRY GEOMETRY_OF(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  GEOMETRY geometry;
  geometry.CENTRE = phase.BLOCK_TITLE + " " + phase.ATOM(i).LAB;
  for (int j = 1; j <= phase.NBONDS(i); ++j) {
    geometry.BONDS.push_back(BOND_ROW(phase, i, j));
    for (int k = j + 1; k <= phase.NBONDS(i); ++k)
      geometry.ANGLES.push_back(ANGLE_ROW(phase, i, j, k));
  }
  geometry.POLYHEDRA.push_back(POLYHEDRON_ROW(phase, i));
  return geometry;
}

bool AGREE(const GEOMETRY_ROW& expected, const GEOMETRY_ROW& found) {
  constexpr float least_difference = 1e-4f;
  for (std::size_t k = 0; k < expected.size(); ++k) {
    const auto [value, share] = expected[k];
    if (!(std::abs(found[k].VALUE - value) <= least_difference + share * std::abs(value)))
      return false;
  }
  return true;
}

std::string TEXT(const std::vector<GEOMETRY_ROW>& rows) {
  std::string text;
  for (const GEOMETRY_ROW& row : rows) {
    for (const ITEM& item : row) text += " " + std::to_string(item.VALUE);
    text += "\n";
  }
  return text;
}

// The same rows in whatever order.
void EXPECT_SAME_ROWS(const std::string& centre, const std::vector<GEOMETRY_ROW>& expected,
                      std::vector<GEOMETRY_ROW> found) {
  ASSERT_EQ(found.size(), expected.size()) << centre;
  const std::string text = TEXT(found);
  for (const GEOMETRY_ROW& row : expected) {
    const auto match = std::find_if(found.begin(), found.end(),
                                    [&](const GEOMETRY_ROW& other) { return AGREE(row, other); });
    ASSERT_NE(match, found.end()) << centre << " has lost" << TEXT({row}) << "and has\n" << text;
    found.erase(match);
  }
}

// Structures as they were published, calculated with bonds and valences.
class PUBLISHED_STRUCTURES : public TRANSFORMATION {
 protected:
  void READ(const std::string& file, const std::string& range) {
    SET_DEFAULT_CHARGES();
    CONSOLE_TESTS::PEND("cif " + PLACES::SOURCE() + "/examples/" + file);
    SAID("y\n", FACETOR_READFILES::READ_PHASE_FROM_FILE);
    dmin_and_dmax = range;
  }

  std::vector<GEOMETRY> CALCULATED() {
    SAID(dmin_and_dmax + "\n", FACETOR_CALC::RUN_FACETOR_CALC_BONDS);
    SAID("n\n", FACETOR_CALC::RUN_FACETOR_CALC_VALENCE);
    std::vector<GEOMETRY> all;
    for (int block = 1; block <= NPHASES; ++block)
      for (int i = 1; i <= PHASE(block).NATOMS; ++i) all.push_back(GEOMETRY_OF(PHASE(block), i));
    return all;
  }

  // Transforms all blocks in one go; their geometry must be what it was.
  void EXPECT_UNCHANGED(const std::string& matrix, const std::string& shift) {
    SCOPED_TRACE(matrix + shift);
    const std::vector<GEOMETRY> before = CALCULATED();
    KEEP(matrix, shift, "all");
    ASSERT_EQ(SUM_NBONDS(REFERENCE()), 0);
    const std::vector<GEOMETRY> after = CALCULATED();
    for (std::size_t c = 0; c < before.size(); ++c) {
      EXPECT_SAME_ROWS(before[c].CENTRE, before[c].BONDS, after[c].BONDS);
      EXPECT_SAME_ROWS(before[c].CENTRE, before[c].ANGLES, after[c].ANGLES);
      EXPECT_SAME_ROWS(before[c].CENTRE, before[c].POLYHEDRA, after[c].POLYHEDRA);
    }
  }

  std::string dmin_and_dmax;
};

}  // namespace

// R -3 c: the origin may move by half of c, and by the centring.
TEST_F(PUBLISHED_STRUCTURES, HEMATITE_ON_ANOTHER_ORIGIN_OR_INVERTED) {
  READ("hematite-pressure/hematite.cif", "");
  const std::vector<GEOMETRY> start_geometry = CALCULATED();
  // Iron at 0, 0, z with esds of z alone; six bonds to oxygen, each with its esd.
  ASSERT_EQ(start_geometry[0].BONDS.size(), 6u);
  ASSERT_GT(start_geometry[0].BONDS[0][2].VALUE, 0.001f);
  EXPECT_UNCHANGED(identity, "0 0 0.5");
  EXPECT_UNCHANGED(identity, "0.6666667 0.3333333 0.3333333");
  EXPECT_UNCHANGED(inversion, "");
  EXPECT_UNCHANGED(inversion, "0 0 0.5");
}

// The three-fold axis takes x, 0, 1/4 to 0, x, 1/4 and -x, -x, 1/4, which a two-fold axis ties.
TEST_F(PUBLISHED_STRUCTURES, HEMATITE_TURNED_ABOUT_ITS_THREEFOLD_AXIS) {
  READ("hematite-pressure/hematite.cif", "");
  const float std = PHASE(1).ATOM(2).X_STD[0];
  EXPECT_UNCHANGED("0 -1 0\n1 -1 0\n0 0 1\n", "");
  EXPECT_VECTOR(PHASE(1).ATOM(2).X_STD, {0, std, 0});
  EXPECT_UNCHANGED("0 -1 0\n1 -1 0\n0 0 1\n", "");
  EXPECT_VECTOR(PHASE(1).ATOM(2).X_STD, {std, std, 0});
}

// C 2/m: the origin may move by half of each edge.
TEST_F(PUBLISHED_STRUCTURES, SODIUM_NICKELATE_ON_ANOTHER_ORIGIN_OR_INVERTED) {
  READ("sodium-nickelate-pressure/nanio2.cif", "1.5 2.5");
  EXPECT_UNCHANGED(identity, "0.5 0 0");
  EXPECT_UNCHANGED(identity, "0 0.5 0.5");
  EXPECT_UNCHANGED(inversion, "0.5 0.5 0.5");
  EXPECT_UNCHANGED(inversion, "");
}

// C 2/c: the origin may move by half of each edge. The numbers were published without esds; those
// of general coordinates and of the heights on the two-fold axes are supplied here.
TEST_F(PUBLISHED_STRUCTURES, GYPSUM_ON_ANOTHER_ORIGIN_OR_INVERTED) {
  READ("gypsum-pressure/gypsum.cif", "1.3 2.8");
  for (int block = 1; block <= NPHASES; ++block)
    for (int i = 1; i <= PHASE(block).NATOMS; ++i) {
      ATOM_TYPE& atom = PHASE(block).ATOM(i);
      const bool general = atom.MULT == 4;  // of the 8 operators half are centred copies
      atom.X_STD = {general ? 0.0006f : 0.0f, 0.0002f, general ? 0.0005f : 0.0f};
    }
  EXPECT_UNCHANGED(identity, "0.5 0 0");
  EXPECT_UNCHANGED(identity, "0 0.5 0.5");
  EXPECT_UNCHANGED(inversion, "0.5 0.5 0.5");
  EXPECT_UNCHANGED(inversion, "");
}

// Atoms may come to lie cells away from the origin.
TEST_F(PUBLISHED_STRUCTURES, NOTHING_DEPENDS_ON_THE_CELL_IN_WHICH_THE_COORDINATES_STAND) {
  READ("sodium-nickelate-pressure/nanio2.cif", "1.5 2.5");
  EXPECT_UNCHANGED(identity, "3 -2 5");
  EXPECT_UNCHANGED(inversion, "-4 7 0.5");
}
