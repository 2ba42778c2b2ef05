// Bond valences: the law, mixed sites, the table of pairs and the dialogue that changes it.
#include "facetor6_commands__valence_blocks.h"
#include "foundations/XTAL_Bond_Valence_Tables.h"

using namespace VALENCE_TESTS;

// ---- tables ----

TEST(VALENCE_PARAMETERS, COUNTS_AND_FIRST_RECORD) {
  EXPECT_EQ(XTAL::BVS_TABLE.size(), 247u);
  EXPECT_EQ(XTAL::BVS_REFERENCES[0], "Unknown  (provided by the user)");
  const XTAL::BVS_TABLE_TYPE& first = XTAL::BVS_TABLE[0];
  EXPECT_EQ(first.SYMB, "AC+3");
  EXPECT_EQ(first.D0[0], 2.24f);
  EXPECT_EQ(first.D0[3], 2.75f);
  EXPECT_EQ(first.B[0], 0.37f);
  EXPECT_EQ(first.B[3], 0.40f);
  EXPECT_EQ(first.REF[3], 16);
  int filled = 0;
  for (const XTAL::BVS_TABLE_TYPE& row : XTAL::BVS_TABLE)
    for (std::size_t a = 0; a < 14; ++a) {
      filled += row.D0[a] != 0.0f;
      EXPECT_GT(row.B[a], 0.0f) << row.SYMB;
      EXPECT_TRUE(row.REF[a] >= 0 && row.REF[a] <= 36) << row.SYMB;
      EXPECT_EQ(row.D0[a] != 0.0f, row.REF[a] != 0) << row.SYMB;
    }
  EXPECT_EQ(filled, 1315);
  for (std::string_view reference : XTAL::BVS_REFERENCES) EXPECT_LE(reference.size(), 80u);
  for (std::size_t i = 1; i < XTAL::AP_TABLE.size(); ++i)
    EXPECT_LE(XTAL::AP_TABLE[i - 1].Z, XTAL::AP_TABLE[i].Z) << "in order of the atomic number";
}

// ---- the law ----

TEST_F(VALENCES, A_SINGLE_BOND_SEEN_FROM_BOTH_ENDS) {
  ADD(PAIR("Si1", "O1"));
  const std::string said = CALC();
  // Si+4 with O-2: 1.624, 0.37 (Brown and Altermatt 1985; Brese and O'Keeffe 1991).
  const float s = LAW(1.624f, 0.37f, PHASE(1).BONDS(1, 1, BOND_LENGTH));
  EXPECT_NEAR(PHASE(1).BONDS(1, 1, BOND_VALENCE), s, 1e-6f);
  EXPECT_NEAR(PHASE(1).BONDS(2, 1, BOND_VALENCE), s, 1e-6f);
  EXPECT_NEAR(PHASE(1).BONDS(1, 1, BOND_VALENCE_STD), s * 0.009f / 0.37f, 1e-5f);
  EXPECT_NEAR(PHASE(1).POLYHEDRON(1, POLY_VALENCE_SUM), s, 1e-6f);
  EXPECT_TRUE(VALENCES_DONE);
  EXPECT_EQ(PHASE(1).ATOM(1).SFACSYMB, "Si+4") << "the default charge, in the case of the symbol";
  EXPECT_EQ(PHASE(1).ATOM(1).CHARGE, 4.0f);
  EXPECT_TRUE(
      HOLDS(said,
            "\n          These are the parameters used to calculate bond valences\n"
            "\n         Bond type         d0    b      source\n"
            "      1: SI+4 -- O-2       1.624 0.370  Brese and O'Keeffe (1991) Acta Cryst. B47, "
            "192-197\n"
            "***** Scattering factor symbols of atoms have been modfied by Gemmara to match bond "
            "valence tables\n\n\n"))
      << said;
  EXPECT_TRUE(HOLDS(said, question));
}

TEST_F(VALENCES, ESDS_OF_A_SUM_ADD_LINEARLY) {
  ADD(MADE({9, 9, 9}, {90, 90, 90}, "P 1",
           {{"Si1", {0, 0, 0}},
            {"O1", {0.18f, 0, 0}, {0.001f, 0, 0}},
            {"O2", {-0.18f, 0, 0}, {0.001f, 0, 0}}}));
  CALC();
  EXPECT_NEAR(PHASE(1).POLYHEDRON(1, POLY_VALENCE_SUM_STD),
              2.0f * PHASE(1).BONDS(1, 1, BOND_VALENCE_STD), 1e-5f);
}

TEST_F(VALENCES, OCCUPANCIES_WEIGH) {
  auto half = PAIR("Si1", "O1");
  half.ATOM(2).OCC = 0.5f;
  ADD(half);
  CALC();
  const float s = LAW(1.624f, 0.37f, PHASE(1).BONDS(1, 1, BOND_LENGTH));
  EXPECT_NEAR(PHASE(1).BONDS(1, 1, BOND_VALENCE), 0.5f * s, 1e-6f);
}

TEST_F(VALENCES, A_MIXED_CENTRE_SUMS_ITS_SPECIES_FROM_EITHER_END) {
  auto mixed = MADE({9, 9, 9}, {90, 90, 90}, "P 1",
                    {{"Al1", {0, 0, 0}}, {"Si1", {0, 0, 0}}, {"O1", {0.18f, 0, 0}}});
  mixed.ATOM(1).OCC = 0.75f;
  mixed.ATOM(2).OCC = 0.25f;
  ADD(mixed);
  CALC();
  const float d = PHASE(1).BONDS(1, 1, BOND_LENGTH);
  // Al+3 with O-2: 1.620, 0.37.
  const float s = 0.75f * LAW(1.620f, 0.37f, d) + 0.25f * LAW(1.624f, 0.37f, d);
  EXPECT_NEAR(PHASE(1).BONDS(1, 1, BOND_VALENCE), s, 1e-6f);
  EXPECT_NEAR(PHASE(1).BONDS(3, 1, BOND_VALENCE), s, 1e-6f) << "seen from the oxygen";
}

TEST_F(VALENCES, TWO_MIXED_SITES_HAVE_NONE) {
  auto mixed =
      MADE({9, 9, 9}, {90, 90, 90}, "P 1",
           {{"Al1", {0, 0, 0}}, {"Si1", {0, 0, 0}}, {"O1", {0.18f, 0, 0}}, {"F1", {0.18f, 0, 0}}});
  for (int i = 1; i <= 4; ++i) mixed.ATOM(i).OCC = 0.5f;
  ADD(mixed);
  const std::string said = CALC();
  EXPECT_EQ(PHASE(1).BONDS(1, 1, BOND_VALENCE), 0.0f);
  EXPECT_TRUE(BV_FLAGS(BV_MULTIPLE_SITES));
  EXPECT_TRUE(HOLDS(said,
                    "*****Bond valences cannot be calculated if both the central atom and ligand "
                    "sites have multiple occupancy\n"));
}

// ---- pairs without parameters ----

TEST_F(VALENCES, PAIRS_OF_ONE_KIND_ARE_MISSING) {
  RUN.BONDEX = {};
  ADD(PAIR("O1", "F1"));
  const std::string said = CALC("");
  EXPECT_TRUE(HOLDS(said,
                    "\n***** Parameters for the following atom pairs were not found, use AtomEdit "
                    "to set scattering factors:\n     F-1  -- O-2\n"))
      << said;
  EXPECT_TRUE(
      said.ends_with("\n*****WARNING: No scattering factors recognised, use Atom Edit to assign "
                     "scattering factors to atoms\n\n"));
  EXPECT_TRUE(BV_FLAGS(BV_NO_PARAMETERS));
  EXPECT_FALSE(VALENCES_DONE);
}

TEST_F(VALENCES, WHAT_IS_NO_ELEMENT_IS_TOLD) {
  RUN.BONDEX = {};
  ADD(PAIR("X1", "O1"));
  CALC("");
  EXPECT_TRUE(BV_FLAGS(BV_NOT_ELEMENTS));
  EXPECT_EQ(PHASE(1).ATOM(1).SFACSYMB, "**");
}

// ---- the dialogue ----

TEST_F(VALENCES, PARAMETERS_CAN_BE_CHANGED) {
  ADD(PAIR("Si1", "O1"));
  const std::string said = CALC("y\n1 1.7 0.4\n\n\nn\n");
  EXPECT_TRUE(
      HOLDS(said,
            "\n      To change the parameters for an atom pair: type in the list number the "
            "d0 and b:\n  Input list no, d0, b:Input new element and charge labels for this "
            "atom pair (blank for no change):  Input list no, d0, b:\n"))
      << said;
  EXPECT_TRUE(HOLDS(said, "      1: SI+4 -- O-2       1.700 0.400  Set by the user\n"));
  EXPECT_TRUE(
      HOLDS(said, "***** Bond valence parameters for some atoms have been set by the user\n"));
  EXPECT_NEAR(PHASE(1).BONDS(1, 1, BOND_VALENCE),
              LAW(1.7f, 0.4f, PHASE(1).BONDS(1, 1, BOND_LENGTH)), 1e-6f);
  CALC();
  EXPECT_EQ(BV_PAIRS(1).D0, 1.7f) << "a second run keeps the changes";
}

TEST_F(VALENCES, LABELS_CAN_BE_CHANGED) {
  ADD(PAIR("Si1", "O1"));
  const std::string said = CALC("y\n1 1.7 0.4\nge+4\nge+4 o-2\n\nn\n");
  EXPECT_TRUE(HOLDS(said, " *****Only one scattering factor read - try again\n"));
  EXPECT_EQ(PHASE(1).ATOM(1).SFACSYMB, "GE+4");
  EXPECT_EQ(PHASE(1).ATOM(1).CHEMSYMB, "Si") << "only the scattering factor changes";
  EXPECT_EQ(BV_PAIRS(1).CATION, "GE+4");
  EXPECT_TRUE(BV_FLAGS(BV_LABELS_BY_USER));
  EXPECT_GT(PHASE(1).BONDS(1, 1, BOND_VALENCE), 0.0f);
}

TEST_F(VALENCES, WRONG_NUMBERS_ARE_REFUSED) {
  ADD(PAIR("Si1", "O1"));
  const std::string said = CALC("y\n2 1 0.4\n0 1 0.4\n-3 1 1\n1 1.7\n1 1.7 0\n1 1.7 -1\nx\n\nn\n");
  const std::string ask = "  Input list no, d0, b:";
  const std::string three = " *****Three numbers are needed: list no, d0 and b above 0\n";
  EXPECT_TRUE(HOLDS(said, ask + "A list number of    2 is not valid\n" + ask +
                              "A list number of    0 is not valid\n" + ask +
                              "A list number of   -3 is not valid\n" + ask + three + ask + three +
                              ask + three + ask + three + ask + "\n"))
      << said;
  EXPECT_EQ(BV_PAIRS(1).D0, 1.624f);
  EXPECT_FALSE(BV_FLAGS(BV_PARAMETERS_BY_USER));
}
