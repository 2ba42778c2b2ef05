// The table of cation-anion pairs as it is built from the bonds of all blocks: charges, what is
// found and what is missing, and how full it may be.
#include "facetor6_commands__valence_blocks.h"

using namespace VALENCE_TESTS;

namespace {

using STRINGS = std::vector<std::string>;

// Forty cations with a default charge and parameters for oxygen.
const STRINGS forty{"Li", "Be", "B",  "C",  "N",  "Na", "Mg", "Al", "Si", "P",
                    "K",  "Ca", "Sc", "Ti", "V",  "Cr", "Mn", "Fe", "Co", "Ni",
                    "Cu", "Zn", "Ga", "Ge", "As", "Se", "Rb", "Sr", "Y",  "Zr",
                    "Nb", "Mo", "Pd", "Ag", "Cd", "In", "Sn", "Sb", "Te", "Cs"};

}  // namespace

// ---- default charges ----

TEST_F(VALENCES, THE_DEFAULT_CHARGE_OF_EVERY_ELEMENT) {
  // By atomic number, ten in a line. 0: noble gases and elements without a row.
  const std::vector<int> charges{1, 0, 1,  2, 3,  4,  5,  -2, -1, 0,  // H to Ne
                                 1, 2, 3,  4, 5,  -2, -1, 0,  1,  2,  // Na to Ca
                                 3, 4, 5,  6, 7,  3,  3,  2,  2,  2,  // Sc to Zn
                                 3, 4, 5,  6, -1, 0,  1,  2,  3,  4,  // Ga to Zr
                                 5, 6, 7,  6, 4,  2,  1,  2,  3,  4,  // Nb to Sn
                                 5, 6, -1, 0, 1,  2,  3,  4,  3,  3,  // Sb to Nd
                                 0, 3, 3,  3, 3,  3,  3,  3,  3,  3,  // Pm to Yb
                                 3, 4, 5,  6, 7,  8,  5,  2,  3,  2,  // Lu to Hg
                                 3, 4, 5,  0, 0,  0,  0,  0,  0,  4,  // Tl to Th
                                 0, 6};                               // Pa, U
  ASSERT_EQ(charges.size(), 92u);
  for (int z = 1; z <= 92; ++z)
    EXPECT_EQ(DEFAULT_CHARGES(z), charges[static_cast<std::size_t>(z - 1)]) << z;
}

TEST_F(VALENCES, CHARGES_ARE_GIVEN_ONLY_WHERE_THERE_IS_NONE) {
  auto phase = OXIDES({"Fe", "Fe"});
  phase.ATOM(3).SFACSYMB = "Fe+2";
  phase.ATOM(3).CHARGE = 2.0f;
  ADD(phase);
  CALC();
  EXPECT_EQ(PHASE(1).ATOM(1).SFACSYMB, "Fe+3");
  EXPECT_EQ(PHASE(1).ATOM(1).CHARGE, 3.0f);
  EXPECT_EQ(PHASE(1).ATOM(2).SFACSYMB, "O-2");
  EXPECT_EQ(PHASE(1).ATOM(2).CHARGE, -2.0f);
  EXPECT_EQ(PHASE(1).ATOM(3).SFACSYMB, "Fe+2");
  EXPECT_EQ(PHASE(1).ATOM(3).CHARGE, 2.0f);
  EXPECT_EQ(PAIRS_FOUND(), (STRINGS{"FE+3 O-2", "FE+2 O-2"}));
  EXPECT_TRUE(BV_FLAGS(BV_LABELS_CHANGED));
}

TEST_F(VALENCES, SYMBOLS_WITH_CHARGES_RAISE_NO_FLAG) {
  auto phase = PAIR("Si1", "O1");
  phase.ATOM(1).SFACSYMB = "Si+4";
  phase.ATOM(2).SFACSYMB = "O-2";
  ADD(phase);
  CALC();
  for (bool flag : BV_FLAGS) EXPECT_FALSE(flag);
}

TEST_F(VALENCES, AN_ELEMENT_BEYOND_URANIUM_HAS_NO_DEFAULT) {
  ALLOW_ALL_BONDS();
  ADD(OXIDES({"Pu", "Si"}));
  EXPECT_EQ(PHASE(1).ATOM(1).Z, 94);
  CALC();
  EXPECT_EQ(PHASE(1).ATOM(1).SFACSYMB, "Pu") << "what the file says of it stays";
  EXPECT_TRUE(BV_FLAGS(BV_NOT_ELEMENTS));
  EXPECT_EQ(PAIRS_FOUND(), STRINGS{"SI+4 O-2"});
  EXPECT_TRUE(PAIRS_MISSING().empty()) << "what is no element is told by the flag alone";
}

TEST_F(VALENCES, A_BONDED_ATOM_THAT_IS_NO_ELEMENT_RAISES_THE_FLAG_AGAIN) {
  ALLOW_ALL_BONDS();
  auto phase = PAIR("Si1", "O1");
  phase.ATOM(2).SFACSYMB = "**-2";
  ADD(phase);
  CALC("");
  EXPECT_TRUE(BV_FLAGS(BV_NOT_ELEMENTS)) << "by the pair: the symbol itself is long enough";
  EXPECT_TRUE(PAIRS_MISSING().empty());
}

// ---- which pairs ----

TEST_F(VALENCES, PAIRS_COME_FROM_EVERY_BLOCK_USED_OR_NOT) {
  ADD(PAIR("Si1", "O1"));
  ADD(PAIR("Al1", "F1"));
  IUSE(2) = 0;
  CALC();
  EXPECT_EQ(PAIRS_FOUND(), (STRINGS{"SI+4 O-2", "AL+3 F-1"}));
  EXPECT_EQ(PHASE(2).ATOM(1).SFACSYMB, "Al+3") << "charges too";
}

TEST_F(VALENCES, EVERY_BLOCK_GETS_ITS_VALENCES_USED_OR_NOT) {
  ADD(PAIR("Si1", "O1"));
  ADD(PAIR("Al1", "O1"));
  IUSE(2) = 0;
  CALC();
  // Al+3 with O-2: 1.620, 0.37.
  const float s = LAW(1.620f, 0.37f, PHASE(2).BONDS(1, 1, BOND_LENGTH));
  EXPECT_NEAR(PHASE(2).BONDS(1, 1, BOND_VALENCE), s, 1e-6f);
  EXPECT_NEAR(PHASE(2).POLYHEDRON(1, POLY_VALENCE_SUM), s, 1e-6f);
}

TEST_F(VALENCES, A_MULTIPLE_SITE_IN_ANY_BLOCK_IS_TOLD) {
  ADD(PAIR("Si1", "O1"));
  auto mixed =
      MADE({9, 9, 9}, {90, 90, 90}, "P 1",
           {{"Al1", {0, 0, 0}}, {"O1", {0.18f, 0, 0}}, {"Si1", {0, 0, 0}}, {"F1", {0.18f, 0, 0}}});
  ADD(mixed);
  CALC();
  EXPECT_TRUE(BV_FLAGS(BV_MULTIPLE_SITES));
}

TEST_F(VALENCES, DUPLICATES_OF_THE_CENTRE_ARE_PAIRED_THOSE_OF_THE_LIGAND_ARE_NOT) {
  const auto site = [](const char* one, const char* two, const char* ligand) {
    return MADE({9, 9, 9}, {90, 90, 90}, "P 1",
                {{one, {0, 0, 0}}, {two, {0, 0, 0}}, {ligand, {0.18f, 0, 0}}});
  };
  ADD(site("O1", "F1", "Si1"));
  PHASE(1).BONDS.CLEAR_ROW(1, 1);  // leaves the bond as the silicon sees it
  CALC();
  EXPECT_EQ(PAIRS_FOUND(), STRINGS{"SI+4 O-2"});
  CLEAR_FACETOR_VALENCE();
  SAID("\n", RUN_FACETOR_CALC_BONDS);
  PHASE(1).BONDS.CLEAR_ROW(3, 1);  // and as the mixed site sees it
  CALC();
  EXPECT_EQ(PAIRS_FOUND(), (STRINGS{"SI+4 O-2", "SI+4 F-1"}));
}

TEST_F(VALENCES, THE_TABLE_IS_BUILT_ONLY_WHILE_IT_IS_EMPTY) {
  ADD(PAIR("Si1", "O1"));
  CALC();
  PHASE(1).ATOM(1).SFACSYMB = "Al+3";
  CALC();
  EXPECT_EQ(PAIRS_FOUND(), STRINGS{"SI+4 O-2"});
  EXPECT_EQ(PHASE(1).BONDS(1, 1, BOND_VALENCE), 0.0f);
  CLEAR_FACETOR_VALENCE();
  CALC();
  EXPECT_EQ(PAIRS_FOUND(), STRINGS{"AL+3 O-2"});
}

// ---- which have no parameters ----

TEST_F(VALENCES, A_PAIR_WITHOUT_A_D0_IS_MISSING) {
  ADD(OXIDES({"Rh", "Si"}));  // Rh+4 stands in the table, without parameters for oxygen
  const std::string said = CALC();
  EXPECT_EQ(PAIRS_FOUND(), STRINGS{"SI+4 O-2"});
  EXPECT_EQ(PAIRS_MISSING(), STRINGS{"RH+4 O-2"}) << "once, from both ends";
  EXPECT_EQ(PHASE(1).BONDS(1, 1, BOND_VALENCE), 0.0f);
  EXPECT_TRUE(HOLDS(said, "     RH+4 -- O-2\n")) << said;
}

TEST_F(VALENCES, A_LABEL_THAT_IS_NOT_FOUND_IS_MISSING) {
  auto phase = OXIDES({"Si", "Al"});
  phase.ATOM(1).SFACSYMB = "Si+7";
  ADD(phase);
  CALC();
  EXPECT_EQ(PAIRS_FOUND(), STRINGS{"AL+3 O-2"});
  // What is not found counts as no cation, so the labels are exchanged from either end.
  EXPECT_EQ(PAIRS_MISSING(), (STRINGS{"O-2 SI+7", "SI+7 O-2"}));
}

TEST_F(VALENCES, TWO_CATIONS_ARE_EXCHANGED_AND_MISSING) {
  ALLOW_ALL_BONDS();
  ADD(PAIR("Si1", "Al1"));
  CALC("");
  EXPECT_EQ(PAIRS_MISSING(), (STRINGS{"AL+3 SI+4", "SI+4 AL+3"}));
}

TEST_F(VALENCES, A_MISSING_PAIR_IS_LISTED_ONCE) {
  auto phase = OXIDES({"Si", "Si", "Si"});
  for (int i = 1; i <= 5; i += 2) phase.ATOM(i).SFACSYMB = "Si+7";
  ADD(phase);
  CALC("");
  EXPECT_EQ(BV_MISSING.COUNT(), 2) << "three bonds, each from both ends";
}

TEST_F(VALENCES, NO_MORE_THAN_20_MISSING_PAIRS) {
  auto phase = OXIDES(STRINGS(26, "Si"));
  for (int i = 0; i < 25; ++i)
    phase.ATOM(2 * i + 1).SFACSYMB = std::string("X") + static_cast<char>('A' + i) + "+1";
  ADD(phase);
  const std::string said = CALC();
  EXPECT_EQ(BV_MISSING.COUNT(), 20);
  EXPECT_EQ(PAIRS_FOUND(), STRINGS{"SI+4 O-2"}) << "the pair behind them is found";
  EXPECT_EQ(PHASE(1).BONDS(49, 1, BOND_VALENCE), 0.0f);
  EXPECT_GT(PHASE(1).BONDS(51, 1, BOND_VALENCE), 0.0f);
  EXPECT_EQ(TIMES(said, "+1 -- O-2"), 10) << "as many from one end as from the other";
  EXPECT_EQ(TIMES(said, "O-2  -- X"), 10);
}

// ---- how many ----

TEST_F(VALENCES, EXACTLY_40_PAIRS_ARE_NOT_TOO_MANY) {
  ADD(OXIDES(forty));
  const std::string said = CALC();
  EXPECT_EQ(BV_PAIRS.COUNT(), 40);
  EXPECT_FALSE(BV_FLAGS(BV_TOO_MANY_PAIRS));
  EXPECT_FALSE(HOLDS(said, "More than 40"));
  for (int i = 1; i <= 79; i += 2) EXPECT_GT(PHASE(1).BONDS(i, 1, BOND_VALENCE), 0.0f) << i;
}

TEST_F(VALENCES, A_PAIR_BEHIND_THE_FORTIETH_IS_LOST_WITH_A_WORD) {
  STRINGS labels = forty;
  labels.push_back("Ba");
  labels.push_back("Li");
  ADD(OXIDES(labels));
  const std::string said = CALC();
  EXPECT_EQ(BV_PAIRS.COUNT(), 40);
  EXPECT_TRUE(HOLDS(said,
                    "***** More than 40 cation-anion pairs found in the structures; this exceeds "
                    "program capacity\n"));
  EXPECT_EQ(PHASE(1).BONDS(81, 1, BOND_VALENCE), 0.0f) << "barium";
  EXPECT_GT(PHASE(1).BONDS(83, 1, BOND_VALENCE), 0.0f) << "lithium, which has its row";
}

// ---- what is done ----

TEST_F(VALENCES, BEGIN_WITH_AN_ANNOUNCEMENT) {
  ADD(PAIR("Si1", "O1"));
  // 25 characters in a line of 100 stars: from column (100 - 25) / 2 = 37, a blank behind them.
  EXPECT_TRUE(CALC().starts_with("\n" + std::string(36, '*') + "Bond valence calculations " +
                                 std::string(38, '*') +
                                 "\n\n\n          These are the parameters"));
}

TEST_F(VALENCES, ARE_NOT_DONE_WHILE_THE_REFERENCE_BLOCK_SUMS_TO_0) {
  auto mixed =
      MADE({9, 9, 9}, {90, 90, 90}, "P 1",
           {{"Al1", {0, 0, 0}}, {"Si1", {0, 0, 0}}, {"O1", {0.18f, 0, 0}}, {"F1", {0.18f, 0, 0}}});
  ADD(mixed);
  ADD(PAIR("Si1", "O1"));
  CALC();
  EXPECT_GT(BV_PAIRS.COUNT(), 0);
  EXPECT_GT(PHASE(2).POLYHEDRON(1, POLY_VALENCE_SUM), 0.0f) << "the other block does not count";
  EXPECT_FALSE(VALENCES_DONE);
}

TEST_F(VALENCES, A_RUN_WITHOUT_VALENCES_TAKES_BACK_THAT_THEY_WERE_DONE) {
  ADD(PAIR("Si1", "O1"));
  CALC();
  EXPECT_TRUE(VALENCES_DONE);
  PHASE(1).ATOM(2).OCC = 0.0f;
  CALC();
  EXPECT_FALSE(VALENCES_DONE);
}
