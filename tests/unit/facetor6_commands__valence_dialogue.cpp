// The dialogue in which the table of pairs is changed: every way through it, and what it refuses.
#include "facetor6_commands__valence_blocks.h"

using namespace VALENCE_TESTS;

namespace {

using STRINGS = std::vector<std::string>;

const std::string numbers = "  Input list no, d0, b:";
const std::string labels =
    "Input new element and charge labels for this atom pair (blank for no change):";
const std::string one_word = " *****Only one scattering factor read - try again\n";
const std::string change =
    "\n      To change the parameters for an atom pair: type in the list number the d0 and b:\n";
const std::string head = "These are the parameters used to calculate bond valences\n";

}  // namespace

// ---- ways through it ----

TEST_F(VALENCES, A_BLANK_ANSWER_CHANGES_NOTHING) {
  ADD(PAIR("Si1", "O1"));
  const std::string said = CALC("\n");
  EXPECT_EQ(TIMES(said, head), 1);
  EXPECT_FALSE(HOLDS(said, numbers));
  EXPECT_EQ(BV_PAIRS(1).D0, 1.624f);
}

TEST_F(VALENCES, SEVERAL_ROWS_IN_ONE_GO_AND_THE_TABLE_AGAIN_AFTER_AN_EMPTY_LINE) {
  ADD(OXIDES({"Si", "Al"}));
  const std::string said = CALC("y\n1 1.7 0.4\n\n2 1.8 0.5\n\n\nn\n");
  EXPECT_TRUE(HOLDS(said, question + change + numbers + labels + numbers + labels + numbers +
                              "\n          " + head))
      << said;
  EXPECT_EQ(TIMES(said, head), 2);
  EXPECT_TRUE(HOLDS(said,
                    "      1: SI+4 -- O-2       1.700 0.400  Set by the user\n"
                    "      2: AL+3 -- O-2       1.800 0.500  Set by the user\n"));
}

TEST_F(VALENCES, THE_QUESTION_COMES_BACK_WITH_THE_TABLE) {
  ADD(PAIR("Si1", "O1"));
  const std::string said = CALC("y\n\ny\n1 1.7 0.4\n\n\nn\n");
  EXPECT_EQ(TIMES(said, question), 3);
  EXPECT_EQ(TIMES(said, head), 3);
  EXPECT_EQ(BV_PAIRS(1).D0, 1.7f);
}

TEST_F(VALENCES, NEW_LABELS_GO_TO_BOTH_ENDS_IN_ALL_BLOCKS) {
  ADD(OXIDES({"Si", "Al"}));
  ADD(OXIDES({"Si", "Al"}));
  IUSE(2) = 0;
  const std::string said = CALC("y\n1 1.7 0.4\nge+4 s-2\n\nn\n");
  EXPECT_TRUE(HOLDS(said, labels + numbers + "\n")) << "the prompt for numbers comes back";
  for (int block = 1; block <= 2; ++block) {
    EXPECT_EQ(PHASE(block).ATOM(1).SFACSYMB, "GE+4") << block;
    EXPECT_EQ(PHASE(block).ATOM(2).SFACSYMB, "S-2") << block;
    EXPECT_EQ(PHASE(block).ATOM(3).SFACSYMB, "Al+3") << "another label stays";
    EXPECT_EQ(PHASE(block).ATOM(4).SFACSYMB, "S-2") << "every atom with the label";
  }
  EXPECT_EQ(PHASE(1).ATOM(2).CHEMSYMB, "O") << "the element stays";
  EXPECT_EQ(PHASE(1).ATOM(2).CHARGE, -2.0f) << "and the charge";
  EXPECT_EQ(PAIRS_FOUND(), (STRINGS{"GE+4 S-2", "AL+3 O-2"}));
  EXPECT_TRUE(HOLDS(said,
                    "      1: GE+4 -- S-2       1.700 0.400  Set by the user\n"
                    "      2: AL+3 -- O-2       1.620 0.370  "));
  EXPECT_TRUE(HOLDS(said,
                    "***** Scattering factor symbols of atoms have been modfied by the user to "
                    "match bond valence tables\n"));
  EXPECT_NEAR(PHASE(1).BONDS(1, 1, BOND_VALENCE),
              LAW(1.7f, 0.4f, PHASE(1).BONDS(1, 1, BOND_LENGTH)), 1e-6f);
  EXPECT_EQ(PHASE(2).BONDS(3, 1, BOND_VALENCE), 0.0f) << "aluminium has no row with sulphur";
}

TEST_F(VALENCES, LABELS_CAN_BE_EXCHANGED) {
  ADD(PAIR("Si1", "O1"));
  CALC("y\n1 1.7 0.4\no-2 si+4\n\nn\n");
  EXPECT_EQ(PHASE(1).ATOM(1).SFACSYMB, "O-2");
  EXPECT_EQ(PHASE(1).ATOM(2).SFACSYMB, "SI+4") << "each atom is changed once";
  EXPECT_EQ(PAIRS_FOUND(), STRINGS{"O-2 SI+4"});
  EXPECT_GT(PHASE(1).BONDS(1, 1, BOND_VALENCE), 0.0f);
}

TEST_F(VALENCES, LABELS_ARE_CUT_AT_4_AND_A_THIRD_WORD_IS_IGNORED) {
  ADD(PAIR("Si1", "O1"));
  CALC("y\n1 1.7 0.4\nge+4x o-2 f-1\n\nn\n");
  EXPECT_EQ(PAIRS_FOUND(), STRINGS{"GE+4 O-2"});
  EXPECT_EQ(PHASE(1).ATOM(1).SFACSYMB, "GE+4");
}

// ---- what it refuses ----

TEST_F(VALENCES, ONE_LABEL_OR_A_BLANK_ONE_IS_ASKED_FOR_AGAIN) {
  ADD(PAIR("Si1", "O1"));
  const std::string said = CALC("y\n1 1.7 0.4\nge+4\n\"\" \"\"\n\"\" o-2\nge+4 \"  \"\n\n\nn\n");
  EXPECT_TRUE(HOLDS(said, numbers + labels + one_word + labels + one_word + labels + one_word +
                              labels + one_word + labels + numbers + "\n"))
      << said;
  EXPECT_EQ(PAIRS_FOUND(), STRINGS{"SI+4 O-2"});
  EXPECT_EQ(PHASE(1).ATOM(1).SFACSYMB, "Si+4");
  EXPECT_FALSE(BV_FLAGS(BV_LABELS_BY_USER));
  EXPECT_TRUE(BV_FLAGS(BV_PARAMETERS_BY_USER)) << "the numbers were taken";
}

TEST_F(VALENCES, A_LIST_NUMBER_IS_SHOWN_WHOLE) {
  ADD(PAIR("Si1", "O1"));
  const std::string said =
      CALC("y\n9999 1 1\n10000 1 1\n12345 1 1\n1e30 1 1\n-999 1 1\n-1000 1 1\n-1e30 1 1\n\nn\n");
  // By Python, int(numpy.float32(1e30)).
  const std::string nearest_to_1e30 = "1000000015047466219876688855040";
  const auto refused = [](const std::string& number) {
    return numbers + "A list number of " + number + " is not valid\n";
  };
  EXPECT_TRUE(HOLDS(said, change + refused("9999") + refused("10000") + refused("12345") +
                              refused(nearest_to_1e30) + refused("-999") + refused("-1000") +
                              refused("-" + nearest_to_1e30) + numbers + "\n"))
      << said;
  EXPECT_FALSE(BV_FLAGS(BV_PARAMETERS_BY_USER));
}

TEST_F(VALENCES, A_LIST_NUMBER_IS_ROUNDED) {
  ADD(OXIDES({"Si", "Al"}));
  const std::string said = CALC("y\n1.4 1.7 0.4\n\n1.6 1.8 0.4\n\n0.4 1 1\n2.6 1 1\n\nn\n");
  EXPECT_EQ(BV_PAIRS(1).D0, 1.7f);
  EXPECT_EQ(BV_PAIRS(2).D0, 1.8f);
  EXPECT_TRUE(HOLDS(said, "A list number of    0 is not valid\n"));
  EXPECT_TRUE(HOLDS(said, "A list number of    3 is not valid\n"));
}
