// Coordinates and displacement parameters, line by line.
#include <limits>

#include "facetor6_commands__list_blocks.h"
#include "src/kva_crystal_structures/displacement.h"

using namespace LIST_TESTS;

namespace {

class POSITIONS : public BLOCKS {
 protected:
  static std::string XYZ(std::string_view option = "") {
    return SAID("", [option] { FACETOR_LIST_XYZ(1, option); });
  }
  static std::string ADPS(std::string_view option) {
    return SAID("", [option] { FACETOR_LIST_ADPS(1, option); });
  }

  // One anisotropic atom in a cell, usually of 10 angstroms, with a four-fold axis along z.
  static void ADD_TETRAGONAL(const std::string& title, const VECTOR3& x_frac, float edge = 10) {
    CRYSTAL_STRUCTURE_TYPE phase = MADE({edge, edge, edge}, {90, 90, 90}, "P 4",
                                        {{"Si1", x_frac, {0.0002f, 0.0005f, 0.0007f}}});
    ATOM_TYPE& atom = phase.ATOM(1);
    atom.THTYPE = "Aniso";
    atom.UTYPE = "u_ij";
    atom.U = {0.01f, 0.02f, 0.03f, 0.004f, 0.005f, 0.006f};
    atom.U_STD = {0.0004f, 0.0005f, 0.0006f, 0.0002f, 0.0003f, 0.0007f};
    SET_ALLATOM_ADP(phase);
    ADD(title, phase);
  }

  // The atom of the second block is brought to that of the first by x' = -y, y' = x, z' = z.
  static void ADD_ROTATED_PAIR() {
    ADD_TETRAGONAL("first", {0.1f, 0.25f, 0.3f});
    ADD_TETRAGONAL("second", {0.25f, 0.9f, 0.3f});
  }

  // Three atoms on one site of each block.
  static void ADD_MIXED(const std::string& title, bool mixed) {
    CRYSTAL_STRUCTURE_TYPE phase = MADE({10, 10, 10}, {90, 90, 90}, "P 1",
                                        {{"Mg1", {0.1f, 0.2f, 0.3f}},
                                         {"Fe1", {0.1f, 0.2f, mixed ? 0.3f : 0.8f}},
                                         {"Mn1", {0.1f, 0.2f, mixed ? 0.3f : 0.6f}}});
    phase.ATOM(1).OCC = 0.75f;
    phase.ATOM(2).OCC = 0.2f;
    phase.ATOM(3).OCC = 0.05f;
    phase.ATOM(1).OCC_STD = 0.03f;
    ADD(title, phase);
  }
};

// Column 45 operator, 47-56 label, 57 "(", 58-61 symbol, 62 ")".
const std::string si_by_1 = "1 Si1       (Si  )";

// Six values of 10 columns.
const std::string zero_tensor = "   0.00000   0.00000   0.00000   0.00000   0.00000   0.00000";

}  // namespace

// ---- coordinates ----

TEST_F(POSITIONS, COORDINATES_ARE_THOSE_NEAR_THE_REFERENCE_ATOM) {
  ADD_ROTATED_PAIR();
  const std::string title = "\n\n ATOMS EQUIVALENT TO ATOM Si1 IN REFERENCE BLOCK (first)\n" + head;
  const std::string said = XYZ();
  EXPECT_TRUE(said.starts_with(title + " SITE      ATOM     X         Y         Z       OCC\n" +
                               start_1 + si_by_1 + "   0.10000   0.25000   0.30000 1.000\n" +
                               start_2))
      << said;
  EXPECT_TRUE(said.ends_with(" Si1       (Si  )   0.10000   0.25000   0.30000 1.000\n")) << said;
  const int op = said[said.size() - 55] - '0';
  EXPECT_EQ(PHASE(2).SPG.SYMOPSYMB(op), "-y,x,z") << "the operator stands in column 45";
}

TEST_F(POSITIONS, COORDINATE_ESDS_ARE_THOSE_OF_THE_IMAGE) {
  ADD_ROTATED_PAIR();
  // Fields of 13 from 63. The image has the esd of y on x and that of x on y.
  const std::string said = XYZ("ESD");
  EXPECT_EQ(ROWS(said, head),
            head + " SITE      ATOM      X            Y            Z            OCC\n" +
                esd_start_1 + si_by_1 + " 0.1000(2)    0.2500(5)    0.3000(7)    1.00000\n" +
                ROWS(said, esd_start_2));
  EXPECT_TRUE(said.ends_with(" Si1       (Si  ) 0.1000(5)    0.2500(2)    0.3000(7)    1.00000\n"))
      << said;
}

TEST_F(POSITIONS, AN_OPERATOR_ABOVE_NINE_MAKES_A_COLUMN_OF_ITS_OWN) {
  const auto hexagonal = [](const VECTOR3& x_frac) {
    return MADE({5, 5, 9}, {90, 90, 120}, "P 6/m m m", {{"Si1", x_frac}});
  };
  ADD("first", hexagonal({0.125f, 0.375f, 0.25f}));
  ADD("second", hexagonal({0.875f, 0.625f, 0.75f}));  // related by operator 13, -x,-y,-z
  EXPECT_EQ(ROWS(XYZ(), start_1),
            start_1 + "  1 Si1       (Si  )   0.12500   0.37500   0.25000 1.000\n" + start_2 +
                " 13 Si1       (Si  )   0.12500   0.37500   0.25000 1.000\n");
}

TEST_F(POSITIONS, DUPLICATES_FOLLOW_WITH_SYMBOL_AND_OCCUPANCY) {
  ADD_MIXED("first", true);
  ADD_MIXED("second", false);
  ASSERT_EQ(PHASE(1).ATOM_DUP(1, 1), 2);
  ASSERT_EQ(PHASE(1).ATOM_DUP(1, 2), 3);
  // Occupancy 93-98; symbols from 102 and 115, occupancies 106-111 and 119-124.
  EXPECT_EQ(
      ROWS(XYZ(), head),
      head + " SITE      ATOM     X         Y         Z       OCC     ATOM OCC     ATOM OCC\n" +
          start_1 +
          "1 Mg1       (Mg  )   0.10000   0.20000   0.30000 0.750   Fe   0.200   Mn   0.050\n" +
          start_2 + "1 Mg1       (Mg  )   0.10000   0.20000   0.30000 0.750\n");
  // With esds the occupancy has 102-114; symbols from 118 and 131.
  EXPECT_EQ(ROWS(XYZ("ESD"), head),
            head +
                " SITE      ATOM      X            Y            Z            OCC         ATOM OCC"
                "     ATOM OCC\n" +
                esd_start_1 +
                "1 Mg1       (Mg  ) 0.100000     0.200000     0.300000     0.75(3)        Fe   "
                "0.200   Mn   0.050\n" +
                esd_start_2 +
                "1 Mg1       (Mg  ) 0.100000     0.200000     0.300000     0.75(3)\n");
}

TEST_F(POSITIONS, ONE_DUPLICATE_HAS_ONE_HEAD_AND_A_HIDDEN_ONE_NONE) {
  ADD_MIXED("first", false);
  ADD_MIXED("second", true);
  PHASE(2).ATOM_DUP(1, 2) = 0;
  const std::string plain_head = " SITE      ATOM     X         Y         Z       OCC";
  EXPECT_NE(XYZ().find(plain_head + "     ATOM OCC\n"), std::string::npos);
  IUSE(2) = 0;
  RUN.LIST_ALL_BLOCKS = false;
  EXPECT_NE(XYZ().find(plain_head + "\n"), std::string::npos);
}

TEST_F(POSITIONS, OMITTED_ATOMS_ARE_FOUND_AND_LONG_LABELS_ARE_WHOLE) {
  ADD("first");
  PHASE(1).ATOM_USE(1) = ATOM_OMITTED;
  PHASE(1).ATOM(1).LAB = "Silicon_number_1";
  PHASE(1).ATOM(1).SFACSYMB = "Si+4";
  PHASE(1).ATOM(1).OCC = 100.0f;
  // With a blank the label has 17 characters for 10 columns, "100.000" 8 for 6.
  EXPECT_EQ(ROWS(XYZ(), start_1),
            start_1 + "1 Silicon_number_1 (Si+4)   0.10000   0.20000   0.30000 100.000\n");
  EXPECT_EQ(ROWS(ADPS("U"), start_1),
            start_1 + "1 Silicon_number_1 (Si+4)" + zero_tensor + " 0.0000  0.000\n");
}

TEST_F(POSITIONS, A_SITE_WITHOUT_EQUIVALENT_KEEPS_ITS_LINE_START) {
  ADD("first");
  ADD("second");
  PHASE(2).ATOM(1).X = {0.6f, 0.7f, 0.8f};
  EXPECT_EQ(ROWS(XYZ(), start_2), start_2 + "         *****No equivalent atom found\n");
  EXPECT_EQ(ROWS(XYZ("ESD"), esd_start_2),
            esd_start_2 + "         *****No equivalent atom found\n");
  EXPECT_EQ(ROWS(ADPS("U"), start_2), start_2 + "        *****No equivalent atom found\n");
  EXPECT_EQ(ROWS(ADPS("ESD, U"), esd_start_2),
            esd_start_2 + "        *****No equivalent atom found\n");
}

TEST_F(POSITIONS, A_REFERENCE_ATOM_WITHOUT_A_POSITION_HAS_NO_EQUIVALENT) {
  ADD("first");
  PHASE(1).ATOM(1).X[1] = std::numeric_limits<float>::quiet_NaN();
  EXPECT_EQ(ROWS(XYZ(), start_1), start_1 + "         *****No equivalent atom found\n");
  EXPECT_TRUE(ADPS("U").starts_with(
      "\n\n ADPs TRANSFORMED TO POSITION EQUIVALENT TO ATOM IN REFERENCE BLOCK (first) AT  0.100"
      "    NaN  0.300\n"));
}

TEST_F(POSITIONS, AN_EQUIVALENT_ATOM_LIES_WITHIN_ONE_ANGSTROM) {
  ADD("first");
  ADD("second");
  ADD("third");
  PHASE(2).ATOM(1).X[0] = 0.197f;  // 0.97 from the silicon of the reference
  PHASE(3).ATOM(1).X[0] = 0.203f;  // 1.03
  EXPECT_EQ(ROWS(XYZ(), start_2), start_2 + si_by_1 + "   0.19700   0.20000   0.30000 1.000\n" +
                                      start_3 + "         *****No equivalent atom found\n");
  EXPECT_EQ(ROWS(ADPS("U"), start_2), start_2 + si_by_1 + zero_tensor + " 0.0000  0.000\n" +
                                          start_3 + "        *****No equivalent atom found\n");
}

TEST_F(POSITIONS, ROWS_STAND_IN_DISPLAY_ORDER_WITHOUT_THE_HIDDEN_BLOCKS) {
  ADD("first");
  ADD("second");
  ADD("third");
  for (int block : {1, 2, 3}) {
    PHASE(block).ATOM(1).X[0] = 0.1f + 0.01f * static_cast<float>(block);
    PHASE(block).ATOM(1).UEQ = 0.01f * static_cast<float>(block);
    PHASE(block).ATOM(1).OCC = 0.1f * static_cast<float>(block);
  }
  ISORT(1) = 3;
  ISORT(2) = 1;
  ISORT(3) = 2;
  const auto xyz_row = [](const std::string& line_start, const std::string& x,
                          const std::string& occupancy) {
    return line_start + si_by_1 + x + "   0.20000   0.30000" + occupancy + "\n";
  };
  const auto adp_row = [](const std::string& line_start, const std::string& ueq) {
    return line_start + si_by_1 + zero_tensor + ueq + "  0.000\n";
  };
  const std::string third = xyz_row(start_3, "   0.13000", " 0.300");
  const std::string second = xyz_row(start_2, "   0.12000", " 0.200");
  EXPECT_EQ(ROWS(XYZ(), start_3), third + xyz_row(start_1, "   0.11000", " 0.100") + second);
  EXPECT_EQ(ROWS(ADPS("U"), start_3), adp_row(start_3, " 0.0300") + adp_row(start_1, " 0.0100") +
                                          adp_row(start_2, " 0.0200"));
  IUSE(1) = 0;
  RUN.LIST_ALL_BLOCKS = false;
  EXPECT_EQ(ROWS(XYZ(), start_3), third + second);
  EXPECT_EQ(ROWS(ADPS("U"), start_3), adp_row(start_3, " 0.0300") + adp_row(start_2, " 0.0200"));
}

TEST_F(POSITIONS, THE_SITES_ARE_THOSE_OF_THE_REFERENCE) {
  ADD("first");
  ADD("second", MADE({10, 10, 10}, {90, 90, 90}, "P 1",
                     {{"Al1", {0.25f, 0.35f, 0.45f}}, {"Si7", {0.1f, 0.2f, 0.3f}}}));
  IREFERENCE = 2;
  const std::string xyz_head = head + " SITE      ATOM     X         Y         Z       OCC\n";
  const std::string of_al = "\n\n ATOMS EQUIVALENT TO ATOM Al1 IN REFERENCE BLOCK (second)\n" +
                            xyz_head + start_1 + "         *****No equivalent atom found\n" +
                            start_2 + "1 Al1       (Al  )   0.25000   0.35000   0.45000 1.000\n";
  const std::string of_si = "\n\n ATOMS EQUIVALENT TO ATOM Si7 IN REFERENCE BLOCK (second)\n" +
                            xyz_head + start_1 + si_by_1 +
                            "   0.10000   0.20000   0.30000 1.000\n" + start_2 +
                            "1 Si7       (Si  )   0.10000   0.20000   0.30000 1.000\n";
  EXPECT_EQ(XYZ(), of_al);
  EXPECT_EQ(SAID("", [] { FACETOR_LIST_ALL_XYZ(); }), of_al + of_si);
  EXPECT_EQ(ADPS("BETA"),
            "\n\n ADPs TRANSFORMED TO POSITION EQUIVALENT TO ATOM IN REFERENCE BLOCK (second) AT  "
            "0.250  0.350  0.450\n" +
                head +
                " SITE      ATOM     b11       b22       b33       b12       b13       b23        "
                "Beq\n" +
                start_1 + "        *****No equivalent atom found\n" + start_2 +
                "1 Al1       (Al  )" + zero_tensor + "  0.000\n");
}

// The centring vector of R takes 2/3 1/3 1/3 to the origin, but for the rounding of 32 bits or of
// the digits of a file.
TEST_F(POSITIONS, ZERO_BUT_FOR_ROUNDING_IS_ZERO) {
  const auto hexagonal = [](const VECTOR3& x_frac) {
    return MADE({5, 5, 14}, {90, 90, 120}, "R -3 c", {{"Si1", x_frac}});
  };
  ADD("first", hexagonal({0, 0, 0}));
  ADD("second", hexagonal({0.666666667f, 0.333333333f, 0.333333333f}));
  ADD("third", hexagonal({0.666667f, 0.333333f, 0.333333f}));
  const std::string zeros = si_by_1 + " 0.00000      0.00000      0.00000      1.00000\n";
  EXPECT_EQ(ROWS(XYZ("ESD"), esd_start_1),
            esd_start_1 + zeros + esd_start_2 + zeros + esd_start_3 + zeros);
}

TEST_F(POSITIONS, A_SMALL_COORDINATE_IS_NOT_ZERO) {
  ADD("first", MADE({10, 10, 10}, {90, 90, 90}, "P 1",
                    {{"Si1", {0.00001f, 0.000002f, 0.0004f}, {0, 0.0000003f, 0}}}));
  EXPECT_EQ(ROWS(XYZ("ESD"), esd_start_1),
            esd_start_1 + si_by_1 + " 1.00E-05     0.0000020(3) 4.00E-04     1.00000\n");
}

TEST_F(POSITIONS, ALL_MEANS_THE_ATOMS_IN_USE) {
  ADD("first");
  PHASE(1).ATOM_USE(2) = ATOM_OMITTED;
  PHASE(1).ATOM_USE(3) = -1;
  const std::string xyz = SAID("", [] { FACETOR_LIST_ALL_XYZ(); });
  EXPECT_TRUE(xyz.starts_with("\n\n ATOMS EQUIVALENT TO ATOM Si1 IN"));
  EXPECT_NE(xyz.find("\n\n ATOMS EQUIVALENT TO ATOM O3 IN"), std::string::npos);
  EXPECT_EQ(xyz.find("TO ATOM O1"), std::string::npos);
  EXPECT_EQ(xyz.find("TO ATOM O2"), std::string::npos);
  const std::string adps = SAID("", [] { FACETOR_LIST_ALL_ADPS("U"); });
  EXPECT_NE(adps.find("(first) AT  0.100  0.200  0.300\n"), std::string::npos);
  EXPECT_NE(adps.find("(first) AT  0.100  0.200  0.600\n"), std::string::npos);
  EXPECT_EQ(adps.find("(first) AT  0.400  0.200  0.300\n"), std::string::npos);
}

// ---- displacement parameters ----

// The image under x' = -y, y' = x, z' = z has U11' = U22, U22' = U11, U33' = U33, U12' = -U12,
// U13' = -U23, U23' = U13, and the esds likewise. Ueq = 0.06 / 3 = 0.02, Beq = 8 pi^2 0.02 = 1.579.
TEST_F(POSITIONS, U_AT_THE_POSITION_OF_THE_REFERENCE_ATOM) {
  ADD_ROTATED_PAIR();
  const std::string title =
      "\n\n ADPs TRANSFORMED TO POSITION EQUIVALENT TO ATOM IN REFERENCE BLOCK (first) AT  0.100  "
      "0.250  0.300\n" +
      head;
  std::string said = ADPS("U");
  // Six values of 10 columns from 63, Ueq 123-129, Beq 130-136.
  EXPECT_TRUE(said.starts_with(
      title +
      " SITE      ATOM     U11       U22       U33       U12       U13       U23        Ueq  "
      "Beq\n" +
      start_1 + si_by_1 +
      "   0.01000   0.02000   0.03000   0.00400   0.00500   0.00600 0.0200  1.579\n" + start_2))
      << said;
  EXPECT_TRUE(said.ends_with(
      " Si1       (Si  )   0.02000   0.01000   0.03000  -0.00400  -0.00600   0.00500 0.0200  "
      "1.579\n"))
      << said;
  said = ADPS("ESD, U");
  // Six fields of 13 columns from 63, Ueq 141-146, Beq 150-155.
  EXPECT_TRUE(said.starts_with(title +
                               " SITE      ATOM      U11          U22          U33          U12    "
                               "      U13          U23        Ueq       Beq\n" +
                               esd_start_1 + si_by_1 +
                               " 0.0100(4)    0.0200(5)    0.0300(6)    0.0040(2)    0.0050(3)    "
                               "0.0060(7)    0.020    1.579\n" +
                               esd_start_2))
      << said;
  EXPECT_TRUE(
      said.ends_with(" Si1       (Si  ) 0.0200(5)    0.0100(4)    0.0300(6)   -0.0040(2)   "
                     "-0.0060(7)    0.0050(3)    0.020    1.579\n"))
      << said;
}

// beta = 2 pi^2 U / 100 = 0.197392 U, in a cell of 10 angstroms; the esds, times
// 100000: 9.87, 7.90, 11.84, 3.95, 13.82 and 5.92, of which what is left behind the digits rounds
// up.
TEST_F(POSITIONS, BETA_AT_THE_POSITION_OF_THE_REFERENCE_ATOM) {
  ADD_ROTATED_PAIR();
  std::string said = ADPS("BETA");
  EXPECT_NE(said.find(head +
                      " SITE      ATOM     b11       b22       b33       b12       b13       "
                      "b23        Beq\n" +
                      start_1 + si_by_1 +
                      "   0.00197   0.00395   0.00592   0.00079   0.00099   0.00118  1.579\n"),
            std::string::npos)
      << said;
  EXPECT_TRUE(said.ends_with(
      " Si1       (Si  )   0.00395   0.00197   0.00592  -0.00079  -0.00118   0.00099  1.579\n"))
      << said;
  said = ADPS("ESD, BETA");
  EXPECT_NE(said.find(head +
                      " SITE      ATOM      b11          b22          b33          b12       "
                      "   b13          b23        Beq\n" +
                      esd_start_1),
            std::string::npos)
      << said;
  EXPECT_TRUE(
      said.ends_with(" Si1       (Si  ) 0.00395(10)  0.00197(8)   0.00592(12) -0.00079(4)  "
                     "-0.00118(14)  0.00099(6)   1.579\n"))
      << said;
}

TEST_F(POSITIONS, U_BY_THE_CELL_OF_ITS_OWN_BLOCK) {
  ADD_TETRAGONAL("first", {0.1f, 0.25f, 0.3f});
  ADD_TETRAGONAL("second", {0.1f, 0.25f, 0.3f}, 8);
  EXPECT_EQ(ROWS(ADPS("U"), start_2),
            start_2 + si_by_1 +
                "   0.01000   0.02000   0.03000   0.00400   0.00500   0.00600 0.0200  1.579\n");
  EXPECT_EQ(ROWS(ADPS("ESD, U"), esd_start_2),
            esd_start_2 + si_by_1 +
                " 0.0100(4)    0.0200(5)    0.0300(6)    0.0040(2)    0.0050(3)    0.0060(7)    "
                "0.020    1.579\n");
}

TEST_F(POSITIONS, ISOTROPIC_ATOMS_HAVE_A_TENSOR_OF_ZEROS) {
  ADD("first");
  PHASE(1).ATOM(1).UEQ = 0.0125f;
  PHASE(1).ATOM(1).BISO = 0.987f;
  EXPECT_EQ(ROWS(ADPS("U"), start_1), start_1 + si_by_1 + zero_tensor + " 0.0125  0.987\n");
  EXPECT_EQ(ROWS(ADPS("BETA"), start_1), start_1 + si_by_1 + zero_tensor + "  0.987\n");
}

TEST_F(POSITIONS, ISOTROPIC_ATOMS_WITH_ESDS) {
  ADD("first");
  PHASE(1).ATOM(1).UEQ = 0.0125f;
  PHASE(1).ATOM(1).BISO = 1234.5f;
  // A zero without an esd has five decimals; "1234.500" has 8 characters
  // and reaches out to the left of the 6 columns 150-155.
  EXPECT_EQ(ROWS(ADPS("ESD, U"), esd_start_1),
            esd_start_1 + si_by_1 +
                " 0.00000      0.00000      0.00000      0.00000      0.00000      0.00000      "
                "0.013 1234.500\n");
}

TEST_F(POSITIONS, A_COLUMN_WIDENS_FOR_A_LONG_TENSOR_VALUE) {
  ADD_TETRAGONAL("first", {0.1f, 0.25f, 0.3f});
  PHASE(1).ATOM(1).U[0] = 20000.0f;  // beta form: U11 is 20000 / 0.197392
  EXPECT_EQ(ROWS(ADPS("BETA"), start_1),
            start_1 + si_by_1 +
                " 20000.00000   0.00395   0.00592   0.00079   0.00099   0.00118  1.579\n");
}
