// The table of bond valences, column by column: values of 8 columns from 45 and the sum at 47 + 8n;
// with esds values of 11 columns from 46 and the sum at 46 + 11n.
#include "facetor6_commands__list_blocks.h"

using namespace LIST_TESTS;

namespace {

class VALENCE_TABLES : public BLOCKS {
 protected:
  static std::string VALENCES(std::string_view option = "") {
    return SAID("", [option] { FACETOR_LIST_BONDVALENCE(1, option); });
  }

  // Two bonds whose valences are 0.25 and 0.5, with the sum.
  static void ADD_VALENCES(int block, float sum) {
    BOND(block, {1.5f, 1.6f});
    ADD_BOND_VALUES(block);
    PHASE(block).POLYHEDRON(1, POLY_VALENCE_SUM) = sum;
  }
};

const std::string words = "BOND VALENCES FROM";
const std::string warning =
    "\n*****WARNING: If you see small or zero bond valences, check the list of parameters used, "
    "and "
    "the scattering factors for the atoms\n\n";
const std::string several_species =
    "*****Bond valences cannot be calculated if both the central atom and ligand sites have "
    "multiple occupancy\n";

}  // namespace

TEST_F(VALENCE_TABLES, A_CENTRE_WITHOUT_BONDS_SAYS_SO_AND_NOTHING_ELSE) {
  ADD("first");
  BV_FLAGS(BV_MULTIPLE_SITES) = true;
  const std::string none =
      "\n\n     NO BONDS FOUND FROM CENTRAL ATOM Si1     BETWEEN  0.01 AND  2.20 ANGSTROM\n";
  EXPECT_EQ(VALENCES(), none);
  EXPECT_EQ(VALENCES("ESD"), none);
}

TEST_F(VALENCE_TABLES, VALUES_AND_THEIR_SUM) {
  ADD("first");
  ADD_VALENCES(1, 0.75f);
  EXPECT_EQ(VALENCES(), TITLE(words) + head + " O1      O2        BVSUM\n" + start_1 +
                            "  0.2500  0.5000     0.750\n");
  EXPECT_EQ(VALENCES("esd"), TITLE(words) + head + " O1         O2          BVSUM\n" + esd_start_1 +
                                 "  0.250(10)  0.500(10)  0.75(2)\n");
}

TEST_F(VALENCE_TABLES, LABELS_AND_CODES_AS_IN_THE_BOND_TABLE) {
  ADD("first");
  ADD_VALENCES(1, 0.75f);
  PHASE(1).ATOM(2).LAB = "Oxygen7";
  RUN.LIST_SYMCODES = true;
  EXPECT_EQ(VALENCES(), TITLE(words) + head + " Oxygen  O2        BVSUM\n\n" +
                            std::string(36, ' ') + "symcodes: 1_555   2_555\n" + start_1 +
                            "  0.2500  0.5000     0.750\n");
}

TEST_F(VALENCE_TABLES, A_VALENCE_IS_SHOWN_WHERE_THE_BOND_HAS_A_LENGTH) {
  ADD("first");
  ADD_VALENCES(1, 0.75f);
  PHASE(1).BONDS(1, 1, BOND_VALENCE) = 0.0f;
  PHASE(1).BONDS(1, 1, BOND_VALENCE_STD) = 0.0f;
  PHASE(1).BONDS(1, 2, BOND_LENGTH) = 0.0001f;
  EXPECT_EQ(ROWS(VALENCES(), start_1), start_1 + "  0.0000 No value     0.750\n");
  // A zero without an esd has five decimals: 46 blank, 47 to 53. "No value" 57 to 64, sum from 68.
  EXPECT_EQ(ROWS(VALENCES("ESD"), esd_start_1), esd_start_1 + "  0.00000   No value    0.75(2)\n");
  PHASE(1).BONDS(1, 2, BOND_LENGTH) = 0.00011f;
  EXPECT_EQ(ROWS(VALENCES(), start_1), start_1 + "  0.0000  0.5000     0.750\n");
}

TEST_F(VALENCE_TABLES, THE_COLUMNS_ARE_THOSE_OF_THE_REFERENCE) {
  ADD("first");
  ADD("second");
  ADD("third");
  ADD_VALENCES(1, 0.75f);
  BOND(2, {1.51f, 1.61f, 1.71f});
  ADD_BOND_VALUES(2);
  PHASE(2).POLYHEDRON(1, POLY_VALENCE_SUM) = 1.5f;
  PHASE(3).NBONDS(1) = NO_CENTRE;
  EXPECT_EQ(ROWS(VALENCES(), start_1), start_1 + "  0.2500  0.5000     0.750\n" + start_2 +
                                           "  0.2500  0.5000     1.500\n" + start_3 + no_centre +
                                           "\n");
  EXPECT_EQ(ROWS(VALENCES("ESD"), esd_start_1),
            esd_start_1 + "  0.250(10)  0.500(10)  0.75(2)\n" + esd_start_2 +
                "  0.250(10)  0.500(10)  1.50(2)\n" + esd_start_3 + no_centre + "\n");
  IREFERENCE = 2;
  EXPECT_EQ(VALENCES(),
            "\n\n     BOND VALENCES FROM CENTRAL ATOM Si1    (NAME IN REFERENCE BLOCK second)\n"
            "     BETWEEN  0.01 AND  2.20 ANGSTROM\n" +
                head + " O1      O2       O3        BVSUM\n" + start_1 +
                "  0.2500  0.5000 No value     0.750\n" + start_2 +
                "  0.2500  0.5000   0.7500     1.500\n" + start_3 + no_centre + "\n");
}

TEST_F(VALENCE_TABLES, ROWS_STAND_IN_DISPLAY_ORDER_WITHOUT_THE_HIDDEN_BLOCKS) {
  ADD("first");
  ADD("second");
  ADD("third");
  ADD_VALENCES(1, 0.75f);
  ADD_VALENCES(2, 1.25f);
  ADD_VALENCES(3, 0.25f);
  ISORT(1) = 3;
  ISORT(3) = 1;
  EXPECT_EQ(ROWS(VALENCES(), start_3), start_3 + "  0.2500  0.5000     0.250\n" + start_2 +
                                           "  0.2500  0.5000     1.250\n" + start_1 +
                                           "  0.2500  0.5000     0.750\n" + warning);
  IUSE(3) = 0;
  RUN.LIST_ALL_BLOCKS = false;
  EXPECT_EQ(ROWS(VALENCES(), start_2),
            start_2 + "  0.2500  0.5000     1.250\n" + start_1 + "  0.2500  0.5000     0.750\n")
      << "a hidden row gives no warning";
}

TEST_F(VALENCE_TABLES, A_SUM_BELOW_A_HALF_IN_ANY_ROW_GIVES_ONE_WARNING_BEHIND_ALL) {
  ADD("first");
  ADD("second");
  ADD("third");
  for (int block : {1, 2, 3}) ADD_VALENCES(block, 0.5f);
  const std::string row = "  0.2500  0.5000     0.500\n";
  const std::string low_row = "  0.2500  0.5000     0.499\n";
  EXPECT_EQ(ROWS(VALENCES(), start_1), start_1 + row + start_2 + row + start_3 + row)
      << "a half is not below a half";
  PHASE(1).POLYHEDRON(1, POLY_VALENCE_SUM) = 0.499f;
  EXPECT_EQ(ROWS(VALENCES(), start_1), start_1 + low_row + start_2 + row + start_3 + row + warning);
  PHASE(2).POLYHEDRON(1, POLY_VALENCE_SUM) = 0.499f;
  EXPECT_EQ(ROWS(VALENCES(), start_1),
            start_1 + low_row + start_2 + low_row + start_3 + row + warning);
  for (int block : {1, 2}) PHASE(block).POLYHEDRON(1, POLY_VALENCE_SUM) = 0.5f;
  PHASE(3).POLYHEDRON(1, POLY_VALENCE_SUM) = 0.499f;
  EXPECT_EQ(ROWS(VALENCES(), start_1), start_1 + row + start_2 + row + start_3 + low_row + warning);
}

TEST_F(VALENCE_TABLES, A_CENTRE_WITHOUT_BONDS_OR_ABSENT_GIVES_NO_WARNING) {
  ADD("first");
  ADD("second");
  ADD("third");
  ADD_VALENCES(1, 0.75f);
  PHASE(3).NBONDS(1) = NO_CENTRE;
  EXPECT_EQ(ROWS(VALENCES(), start_2),
            start_2 + " No value No value     0.000\n" + start_3 + no_centre + "\n");
}

TEST_F(VALENCE_TABLES, MIXED_SITES_ARE_TOLD_WITH_OR_WITHOUT_THE_WARNING) {
  ADD("first");
  ADD_VALENCES(1, 0.75f);
  for (int flag = 1; flag < BV_MULTIPLE_SITES; ++flag) BV_FLAGS(flag) = true;
  const std::string row = start_1 + "  0.2500  0.5000     0.750\n";
  EXPECT_EQ(ROWS(VALENCES(), start_1), row);
  BV_FLAGS(BV_MULTIPLE_SITES) = true;
  EXPECT_EQ(ROWS(VALENCES(), start_1), row + several_species);
  PHASE(1).POLYHEDRON(1, POLY_VALENCE_SUM) = 0.25f;
  EXPECT_EQ(ROWS(VALENCES(), start_1),
            start_1 + "  0.2500  0.5000     0.250\n" + warning + several_species);
}

TEST_F(VALENCE_TABLES, ALL_MEANS_THE_ATOMS_IN_USE) {
  ADD("first");
  ADD_VALENCES(1, 0.75f);
  BOND(1, {1.5f}, 0.003f, 3);
  ADD_BOND_VALUES(1, 3);
  PHASE(1).ATOM_USE(2) = ATOM_OMITTED;
  PHASE(1).ATOM_USE(4) = -1;
  EXPECT_EQ(SAID("", [] { FACETOR_LIST_ALL_BONDVALENCE("ESD"); }),
            TITLE(words) + head + " O1         O2          BVSUM\n" + esd_start_1 +
                "  0.250(10)  0.500(10)  0.75(2)\n" + TITLE(words, "O2") + head +
                " O1          BVSUM\n" + esd_start_1 + "  0.250(10)  0.75(2)\n");
}
