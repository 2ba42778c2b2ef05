// The bond table in its four forms, column by column. Behind the line start of 44 columns plain
// values take 8 columns each from 45, the end group follows at 47 + 8n; values with esds take 11
// columns each from 46, each text with a blank first, the end group at 46 + 11n. A label stands one
// or two columns further right than its value begins, at 47 + 8(m-1) or 47 + 11(m-1).
#include "facetor6_commands__list_blocks.h"

using namespace LIST_TESTS;

namespace {

class BOND_TABLES : public BLOCKS {
 protected:
  static std::string BONDS(std::string_view option = "") {
    return SAID("", [option] { FACETOR_LIST_BONDS(1, option); });
  }
};

const std::string srb_words = "SRB-CORRECTED BOND LENGTHS FROM";
const std::string displ_words = "THERMAL DISPLACEMENTS ALONG BONDS OF";
const std::string srb_end = "        N SRB AVE RAW AVE  SRBVOL  RAWVOL\n";

}  // namespace

// ---- title and end of the head ----

TEST_F(BOND_TABLES, A_CENTRE_WITHOUT_BONDS_SAYS_SO_IN_EVERY_FORM) {
  ADD("first");
  LIMITS_OF_BONDS = {1.25f, 12.5f};
  RUN.DMAX = 3.5f;  // for the next search
  for (const char* option : {"", "ESD", "srb", "displ"})
    EXPECT_EQ(
        BONDS(option),
        "\n\n     NO BONDS FOUND FROM CENTRAL ATOM Si1     BETWEEN  1.25 AND 12.50 ANGSTROM\n");
}

TEST_F(BOND_TABLES, TWO_FIVE_AND_EIGHT_BONDS_HAVE_NO_DISTORTION) {
  ADD("first");
  BOND(1, {1.5f, 1.6f});
  EXPECT_EQ(BONDS(), TITLE("BONDS FROM") + head + " O1      O2       N AVERAGE  VOLUME\n" +
                         start_1 + "  1.5000  1.6000    2  1.7500   2.250\n");
  BOND(1, {1.5f, 1.6f, 1.7f, 1.8f, 1.9f});
  EXPECT_EQ(BONDS(), TITLE("BONDS FROM") + head +
                         " O1      O2      O3      O1      O2       N AVERAGE  VOLUME\n" + start_1 +
                         "  1.5000  1.6000  1.7000  1.8000  1.9000    5  1.7500   2.250\n");
  BOND(1, {1.5f, 1.5f, 1.5f, 1.5f, 1.6f, 1.6f, 1.6f, 1.6f});
  EXPECT_EQ(BONDS(),
            TITLE("BONDS FROM") + head +
                " O1      O2      O3      O1      O2      O3      O1      O2       N AVERAGE  "
                "VOLUME\n" +
                start_1 +
                "  1.5000  1.5000  1.5000  1.5000  1.6000  1.6000  1.6000  1.6000    8  1.7500   "
                "2.250\n");
}

TEST_F(BOND_TABLES, THREE_FOUR_AND_SIX_BONDS_HAVE_ELONGATION_AND_VARIANCE) {
  ADD("first");
  const std::string words = "       N AVERAGE  QE       AV     VOLUME\n";
  BOND(1, {1.5f, 1.6f, 1.7f});
  EXPECT_EQ(BONDS(), TITLE("BONDS FROM") + head + " O1      O2      O3" + words + start_1 +
                         "  1.5000  1.6000  1.7000    3  1.7500  1.0125  12.500   2.250\n");
  BOND(1, {1.5f, 1.6f, 1.7f, 1.8f});
  EXPECT_EQ(BONDS(), TITLE("BONDS FROM") + head + " O1      O2      O3      O1" + words + start_1 +
                         "  1.5000  1.6000  1.7000  1.8000    4  1.7500  1.0125  12.500   2.250\n");
  BOND(1, {1.5f, 1.6f, 1.7f, 1.8f, 1.9f, 2.0f});
  EXPECT_EQ(BONDS(),
            TITLE("BONDS FROM") + head + " O1      O2      O3      O1      O2      O3" + words +
                start_1 +
                "  1.5000  1.6000  1.7000  1.8000  1.9000  2.0000    6  1.7500  1.0125  12.500   "
                "2.250\n");
}

TEST_F(BOND_TABLES, VALUES_WITH_ESDS) {
  ADD("first");
  BOND(1, {1.5f, 1.6f, 1.7f, 1.8f});
  EXPECT_EQ(
      BONDS("ESD"),
      TITLE("BONDS FROM") + head +
          " O1         O2         O3         O1          N AVERAGE  QE       AV     VOLUME\n" +
          esd_start_1 +
          "  1.500(3)   1.600(3)   1.700(3)   1.800(3)    4  1.7500  1.0125  12.500 2.250(15)\n");
}

TEST_F(BOND_TABLES, WORDS_OF_THE_OPTION_IN_ANY_CASE_AND_ESDS_BEFORE_ALL) {
  ADD("first");
  BOND(1, {1.5f});
  ADD_BOND_VALUES(1);
  EXPECT_EQ(BONDS("with Esds, srb, displ"), TITLE("BONDS FROM") + head +
                                                " O1          N AVERAGE  VOLUME\n" + esd_start_1 +
                                                "  1.500(3)    1  1.7500 2.250(15)\n");
  EXPECT_EQ(BONDS("displ, Srb"), TITLE(srb_words) + head + " O1" + srb_end + start_1 +
                                     "  1.5100    1  1.5100  1.7500  2.5000  2.2500\n");
  EXPECT_EQ(BONDS("DISP"), TITLE(displ_words) + head + " O1        N AVERAGE\n" + start_1 +
                               "  0.1000    1  0.1000  1.7500\n");
}

// ---- labels and codes ----

TEST_F(BOND_TABLES, A_LABEL_HAS_SIX_CHARACTERS) {
  ADD("first");
  BOND(1, {1.5f, 1.6f, 1.7f});
  PHASE(1).ATOM(2).LAB = "Oxygen7";
  PHASE(1).ATOM(3).LAB = "\u00d6xyg\u00e4n7";  // seven characters, nine bytes
  PHASE(1).ATOM(4).LAB = "O1 by2";
  EXPECT_EQ(BONDS(), TITLE("BONDS FROM") + head +
                         " Oxygen  \u00d6xyg\u00e4n  O1 by2   N AVERAGE  QE       AV     VOLUME\n" +
                         start_1 +
                         "  1.5000  1.6000  1.7000    3  1.7500  1.0125  12.500   2.250\n");
  EXPECT_EQ(BONDS("ESD"), TITLE("BONDS FROM") + head +
                              " Oxygen     \u00d6xyg\u00e4n     O1 by2      N AVERAGE  QE       AV"
                              "     VOLUME\n" +
                              esd_start_1 +
                              "  1.500(3)   1.600(3)   1.700(3)    3  1.7500  1.0125  12.500"
                              " 2.250(15)\n");
}

TEST_F(BOND_TABLES, SYMMETRY_CODES_STAND_UNDER_THE_LABELS) {
  ADD("first");
  BOND(1, {1.5f, 1.6f});
  PHASE(1).BONDS(1, 1, BOND_SYMCODE) = 192.645f;
  RUN.LIST_SYMCODES = true;
  // "symcodes:" in 37 to 45, codes from 47 on.
  const std::string word = "\n" + std::string(36, ' ') + "symcodes: ";
  EXPECT_EQ(BONDS(), TITLE("BONDS FROM") + head + " O1      O2       N AVERAGE  VOLUME\n" + word +
                         "192_645 2_555\n" + start_1 + "  1.5000  1.6000    2  1.7500   2.250\n");
  EXPECT_EQ(BONDS("ESD"), TITLE("BONDS FROM") + head +
                              " O1         O2          N AVERAGE  VOLUME\n" + word +
                              "192_645    2_555\n" + esd_start_1 +
                              "  1.500(3)   1.600(3)    2  1.7500 2.250(15)\n");
}

// ---- rows ----

TEST_F(BOND_TABLES, MISSING_BONDS_AND_CENTRES_IN_EVERY_FORM) {
  ADD("first");
  ADD("second");
  ADD("third");
  ADD("fourth");
  BOND(1, {1.5f, 1.6f, 1.7f, 1.8f});
  BOND(2, {1.5f, 0.0f, 1.7f, 1.8f});
  for (int block : {1, 2}) ADD_BOND_VALUES(block);
  PHASE(3).NBONDS(1) = NO_CENTRE;
  const std::string start_4 = "  4: fourth        : 298.0   0.000         1";
  const std::string esd_start_4 = "  4: fourth        : 298.0(10) 0.0001      1";
  // "No value" and a blank before it are nine columns.
  EXPECT_EQ(ROWS(BONDS(), start_2),
            start_2 + "   1.5000 No value   1.7000   1.8000    3  1.7500\n" + start_3 + no_centre +
                "\n" + start_4 + " No value No value No value No value    0  0.0000\n");
  // "No value" at the first column of its field: 46, 57, 68, 79.
  EXPECT_EQ(ROWS(BONDS("ESD"), esd_start_2),
            esd_start_2 + "  1.500(3)  No value    1.700(3)   1.800(3)    3  1.7500\n" +
                esd_start_3 + no_centre + "\n" + esd_start_4 +
                " No value   No value   No value   No value     0  0.0000\n");
  // (1.51 + 1.71 + 1.81) / 3.
  EXPECT_EQ(ROWS(BONDS("srb"), start_2),
            start_2 +
                "   1.5100 No value   1.7100   1.8100    3  1.6767  1.7500  2.5000  2.2500\n" +
                start_3 + no_centre + "\n" + start_4 + " No value No value No value No value\n");
  // (0.1 + 0 + 0.3 + 0.4) / 4.
  EXPECT_EQ(ROWS(BONDS("displ"), start_2),
            start_2 + "  0.1000  0.0000  0.3000  0.4000    4  0.2000  1.7500\n" + start_3 +
                no_centre + "\n" + start_4 +
                "  0.0000  0.0000  0.0000  0.0000    4  0.0000  0.0000\n");
}

TEST_F(BOND_TABLES, THE_COLUMNS_ARE_THOSE_OF_THE_REFERENCE) {
  ADD("first");
  ADD("second");
  BOND(1, {1.5f, 1.6f});
  BOND(2, {1.51f, 1.61f, 1.71f});
  PHASE(2).ATOM(2).LAB = "S1";
  EXPECT_EQ(BONDS(), TITLE("BONDS FROM") + head + " O1      O2       N AVERAGE  VOLUME\n" +
                         start_1 + "  1.5000  1.6000    2  1.7500   2.250\n" + start_2 +
                         "  1.5100  1.6100    3  1.7500\n");
  IREFERENCE = 2;
  EXPECT_EQ(BONDS(),
            "\n\n     BONDS FROM CENTRAL ATOM Si1    (NAME IN REFERENCE BLOCK second)\n"
            "     BETWEEN  0.01 AND  2.20 ANGSTROM\n" +
                head + " S1      O2       O3       N AVERAGE  QE       AV     VOLUME\n" + start_1 +
                "  1.5000  1.6000 No value    2  1.7500\n" + start_2 +
                "  1.5100  1.6100   1.7100    3  1.7500  1.0125  12.500   2.250\n");
}

TEST_F(BOND_TABLES, CORRECTED_LENGTHS_ARE_COUNTED_WHERE_THERE_ARE_ANY) {
  ADD("first");
  BOND(1, {1.5f, 1.6f, 1.7f});
  ADD_BOND_VALUES(1);
  EXPECT_EQ(BONDS("srb"), TITLE(srb_words) + head + " O1      O2      O3" + srb_end + start_1 +
                              "  1.5100  1.6100  1.7100    3  1.6100  1.7500  2.5000  2.2500\n");
  PHASE(1).BONDS(1, 2, BOND_LENGTH_SRB) = 0;
  PHASE(1).BONDS(1, 3, BOND_LENGTH_SRB) = -1.0f;
  EXPECT_EQ(ROWS(BONDS("srb"), start_1),
            start_1 + "  1.5100 No value No value    1  1.5100  1.7500  2.5000  2.2500\n");
  PHASE(1).BONDS(1, 1, BOND_LENGTH_SRB) = 0;
  EXPECT_EQ(ROWS(BONDS("srb"), start_1), start_1 + " No value No value No value\n")
      << "no end group without a value";
}

TEST_F(BOND_TABLES, A_LENGTH_UP_TO_THE_LIMIT_IS_NO_BOND) {
  ADD("first");
  BOND(1, {0.0001f, 0.0005f}, 0.0f);
  EXPECT_EQ(ROWS(BONDS(), start_1), start_1 + " No value  0.0005    2  1.7500   2.250\n");
  // Without an esd a value below 0.001 has an exponent: 57 blank, 58 to 65.
  EXPECT_EQ(ROWS(BONDS("ESD"), esd_start_1),
            esd_start_1 + " No value    5.00E-04    2  1.7500 2.250(15)\n");
}

TEST_F(BOND_TABLES, ROWS_STAND_IN_DISPLAY_ORDER_WITHOUT_THE_HIDDEN_BLOCKS) {
  ADD("first");
  ADD("second");
  ADD("third");
  BOND(1, {1.51f});
  BOND(2, {1.52f});
  BOND(3, {1.53f});
  ISORT(1) = 3;
  ISORT(2) = 1;
  ISORT(3) = 2;
  EXPECT_EQ(ROWS(BONDS(), start_3), start_3 + "  1.5300    1  1.7500   2.250\n" + start_1 +
                                        "  1.5100    1  1.7500   2.250\n" + start_2 +
                                        "  1.5200    1  1.7500   2.250\n");
  IUSE(1) = 0;
  RUN.LIST_ALL_BLOCKS = false;
  EXPECT_EQ(ROWS(BONDS("ESD"), esd_start_3), esd_start_3 + "  1.530(3)    1  1.7500 2.250(15)\n" +
                                                 esd_start_2 +
                                                 "  1.520(3)    1  1.7500 2.250(15)\n");
  PHASE(3).NBONDS(1) = NO_CENTRE;
  EXPECT_EQ(ROWS(BONDS(), start_3),
            start_3 + no_centre + "\n" + start_2 + "  1.5200    1  1.7500   2.250\n");
}

TEST_F(BOND_TABLES, COLUMNS_WIDEN_FOR_LONG_VALUES) {
  ADD("first");
  BOND(1, {1234.5f, 12.25f}, 0.00012f);
  PHASE(1).POLYHEDRON(1, POLY_MEAN_LENGTH) = 1234.5f;
  PHASE(1).POLYHEDRON(1, POLY_VOLUME) = 12345.5f;
  // "1234.5000" and "12345.500" have 10 characters with a blank, for 8 columns.
  EXPECT_EQ(ROWS(BONDS(), start_1), start_1 + " 1234.5000 12.2500    2 1234.5000 12345.500\n");
  PHASE(1).BONDS(1, 1, BOND_LENGTH) = 1.25f;
  // With a blank "1.25000(12)" has 12 characters and "12.25000(12)" 13, for 11 columns.
  EXPECT_EQ(ROWS(BONDS("ESD"), esd_start_1),
            esd_start_1 + "  1.25000(12) 12.25000(12)  2 1234.5000 12345.500(15)\n");
}

TEST_F(BOND_TABLES, ALL_MEANS_THE_ATOMS_IN_USE) {
  ADD("first");
  BOND(1, {1.5f}, 0.003f, 3);
  PHASE(1).ATOM_USE(2) = ATOM_OMITTED;
  PHASE(1).ATOM_USE(4) = -1;
  EXPECT_EQ(SAID("", [] { FACETOR_LIST_ALL_BONDS("ESD"); }),
            "\n\n     NO BONDS FOUND FROM CENTRAL ATOM Si1     BETWEEN  0.01 AND  2.20 ANGSTROM\n" +
                TITLE("BONDS FROM", "O2") + head + " O1          N AVERAGE  VOLUME\n" +
                esd_start_1 + "  1.500(3)    1  1.7500 2.250(15)\n");
}

TEST_F(BOND_TABLES, ALL_MEANS_THE_ATOMS_OF_THE_REFERENCE_THOUGH_OTHER_BLOCKS_HAVE_FEWER) {
  ADD("first", MADE({10, 10, 10}, {90, 90, 90}, "P 1", {{"Si1", {0.1f, 0.2f, 0.3f}}}));
  ADD("second");
  IREFERENCE = 2;
  std::string expected;
  for (const char* label : {"Si1", "O1", "O2", "O3"})
    expected += "\n\n     NO BONDS FOUND FROM CENTRAL ATOM " + std::string(label) +
                "     BETWEEN  0.01 AND  2.20 ANGSTROM\n";
  EXPECT_EQ(SAID("", [] { FACETOR_LIST_ALL_BONDS(); }), expected);
}

// ---- many blocks ----

// They are listed in parts of 256. One long value in the last part widens its column in all rows.
TEST_F(BOND_TABLES, ROWS_OF_MANY_BLOCKS_STAND_UNDER_EACH_OTHER) {
  for (int block = 1; block <= 300; ++block) {
    ADD("block");
    BOND(block, {1.5f, block == 299 ? 1234.5f : 1.6f});
  }
  std::string rows;
  for (int block = 1; block <= 300; ++block) {
    const std::string number = std::to_string(block);
    rows += std::string(3 - number.size(), ' ') + number + ": block         : 298.0   0.000" +
            "         1  1.5000 " + (block == 299 ? "1234.5000" : "   1.6000") +
            "    2  1.7500   2.250\n";
  }
  EXPECT_EQ(BONDS(),
            "\n\n     BONDS FROM CENTRAL ATOM Si1    (NAME IN REFERENCE BLOCK block)\n"
            "     BETWEEN  0.01 AND  2.20 ANGSTROM\n" +
                head + " O1        O2       N AVERAGE  VOLUME\n" + rows);
}
