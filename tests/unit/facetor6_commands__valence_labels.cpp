// Labels on their way into the table of pairs: which atoms are given a charge, labels that only
// begin those of the table, and sites of three species.
#include "facetor6_commands__valence_blocks.h"

using namespace VALENCE_TESTS;

namespace {

using STRINGS = std::vector<std::string>;

}  // namespace

TEST_F(VALENCES, OMITTED_ATOMS_AND_DUPLICATES_ARE_GIVEN_CHARGES_TOO) {
  ADD(MADE({9, 9, 9}, {90, 90, 90}, "P 1",
           {{"Si1", {0, 0, 0}}, {"O1", {0.18f, 0, 0}}, {"Al1", {0, 0, 0}}, {"Mg1", {0.5f, 0, 0}}}));
  ASSERT_EQ(PHASE(1).ATOM_USE(3), -1);
  PHASE(1).ATOM_USE(4) = ATOM_OMITTED;
  CALC();
  EXPECT_EQ(PHASE(1).ATOM(3).SFACSYMB, "Al+3");
  EXPECT_EQ(PHASE(1).ATOM(4).SFACSYMB, "Mg+2");
}

TEST_F(VALENCES, A_CHARGE_OF_0_HAS_A_SIGN) {
  ADD(OXIDES({"Si", "Ar"}));
  CALC();
  EXPECT_EQ(PHASE(1).ATOM(3).SFACSYMB, "Ar+0");
  EXPECT_EQ(PHASE(1).ATOM(3).CHARGE, 0.0f);
}

// "Fe+" begins Fe+2, the first row of iron, with 1.734 and 0.37 for oxygen.
TEST_F(VALENCES, A_LABEL_MAY_BE_THE_BEGINNING_OF_A_ROW) {
  auto phase = PAIR("Fe1", "O1");
  phase.ATOM(1).SFACSYMB = "Fe+";
  ADD(phase);
  CALC();
  ASSERT_EQ(PAIRS_FOUND(), STRINGS{"FE+ O-2"});
  EXPECT_EQ(BV_PAIRS(1).D0, 1.734f);
  EXPECT_EQ(BV_PAIRS(1).B, 0.37f);
  EXPECT_NEAR(PHASE(1).BONDS(1, 1, BOND_VALENCE),
              LAW(1.734f, 0.37f, PHASE(1).BONDS(1, 1, BOND_LENGTH)), 1e-6f);
}

TEST_F(VALENCES, ALL_THREE_SPECIES_OF_A_CENTRE_ARE_PAIRED) {
  ADD(MADE({9, 9, 9}, {90, 90, 90}, "P 1",
           {{"Al1", {0, 0, 0}}, {"Si1", {0, 0, 0}}, {"Mg1", {0, 0, 0}}, {"O1", {0.18f, 0, 0}}}));
  CALC();
  EXPECT_EQ(PAIRS_FOUND(), (STRINGS{"AL+3 O-2", "SI+4 O-2", "MG+2 O-2"}));
}
