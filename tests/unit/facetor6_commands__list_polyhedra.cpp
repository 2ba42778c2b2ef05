// Angles, edges and sphere-fit reports, column by column: pairs take 8 columns each from 45, or 11
// from 46 with esds; the end value follows at 47 + 8q or 46 + 11q, and the last letter of its head
// stands over its last column.
#include "facetor6_commands__list_blocks.h"
#include "src/facetor6_calc/calc.h"

using namespace LIST_TESTS;

namespace {

class POLYHEDRA : public BLOCKS {
 protected:
  void SetUp() override {
    BLOCKS::SetUp();
    ADD("first");
    ADD("second");
  }

  // n bonds with their angles and edges.
  static void SURROUND(int block, int n, int centre = 1) {
    BOND(block, std::vector<float>(static_cast<std::size_t>(n), 1.5f), 0.003f, centre);
    ADD_ANGLES(block, n, centre);
  }

  // A sphere fitted to the ligands of the first atom.
  static void FIT(int block) {
    CRYSTAL_STRUCTURE_TYPE& phase = PHASE(block);
    for (int k = 0; k < 3; ++k) {
      phase.POLYHEDRON(1, POLY_SPHERE_X + k) = 0.125f * static_cast<float>(k + 1);
      phase.POLYHEDRON(1, POLY_BARYCENTRE_X + k) = 0.125f * static_cast<float>(k + 4);
    }
    phase.POLYHEDRON(1, POLY_DELTA) = 0.2f;
    phase.POLYHEDRON(1, POLY_RADIUS) = 2.0f;
    phase.POLYHEDRON(1, POLY_RADIUS_SDEV) = 0.1f;
    phase.POLYHEDRON(1, POLY_MEAN_LENGTH) = 2.05f;
    phase.POLYHEDRON(1, POLY_VOLUME) = 9.0f;
    phase.POLYHEDRON(1, POLY_IDEAL_VOLUME) = 10.0f;
  }

  static std::string ANGLES(std::string_view option = "") {
    return SAID("", [option] { FACETOR_LIST_ANGLES(1, option); });
  }
  static std::string EDGES(std::string_view option = "") {
    return SAID("", [option] { FACETOR_LIST_EDGES(1, option); });
  }
  static std::string ORBIX() {
    return SAID("", [] { FACETOR_LIST_ORBIX(1); });
  }
};

// Blocks of their own, whose bonds are calculated.
class CALCULATED_POLYHEDRA : public BLOCKS {};

std::string AROUND(const std::string& words, const std::string& label = "Si1",
                   const std::string& block = "first") {
  return "\n\n     " + words + " AROUND CENTRAL ATOM " + label + "    (NAME IN REFERENCE BLOCK " +
         block + ")";
}

const std::string orbix_head =
    ", parameters as defined in Acta Cryst. B52 (1996) 78-81\n" + head +
    " N  CENTROID COORDINATES  DELTA(A) Rsph SDEV(R) AVERAGE VOLUME VIDEAL VDIST   ECCV   SPHV  "
    "BARYCENTRE COORDINATES\n";

// What FIT gives, behind the count: VDIST 1 - 9/10, ECCV 1 - 0.9^3, SPHV 1 - 3 * 0.1 / 2.
const std::string fit_values =
    "  0.1250  0.2500  0.3750  0.200  2.000  0.100  2.050  9.000 10.000  0.100  0.271  0.850  "
    "0.5000  0.6250  0.7500\n";
const std::string no_volume = "  Polyhedron has zero volume, probably co-planar ligands\n";

}  // namespace

// ---- angles and edges ----

TEST_F(POLYHEDRA, ANGLES_OF_THREE_LIGANDS) {
  for (int block : {1, 2}) SURROUND(block, 3);
  EXPECT_EQ(ANGLES(), AROUND("ANGLES") + "\n" + head + " O1-O2   O1-O3   O2-O3    AngleVar\n" +
                          start_1 + " 103.000 104.000 105.000    12.5000\n" + start_2 +
                          " 103.000 104.000 105.000    12.5000\n");
  EXPECT_EQ(ANGLES("Esd"), AROUND("ANGLES") + "\n" + head +
                               " O1-O2      O1-O3      O2-O3      AngleVar\n" + esd_start_1 +
                               "  103.0(5)   104.0(5)   105.0(5)    12.5000\n" + esd_start_2 +
                               "  103.0(5)   104.0(5)   105.0(5)    12.5000\n");
}

TEST_F(POLYHEDRA, EDGES_OF_THREE_LIGANDS_WHATEVER_THEIR_ANGLES) {
  for (int block : {1, 2}) SURROUND(block, 3);
  PHASE(1).BANGLES(1, 1, 2, ANGLE) = 179.0f;
  EXPECT_EQ(EDGES(), AROUND("EDGES") + "\n" + head + " O1-O2   O1-O3   O2-O3    AVERAGE\n" +
                         start_1 + "   1.200   1.300   2.300     1.250\n" + start_2 +
                         "   1.200   1.300   2.300     1.250\n");
  EXPECT_EQ(EDGES("ESD"), AROUND("EDGES") + "\n" + head +
                              " O1-O2      O1-O3      O2-O3      AVERAGE\n" + esd_start_1 +
                              "  1.200(4)   1.300(4)   2.300(4)     1.250\n" + esd_start_2 +
                              "  1.200(4)   1.300(4)   2.300(4)     1.250\n");
}

TEST_F(POLYHEDRA, BODY_DIAGONALS_OF_THE_REFERENCE_ARE_NO_EDGES) {
  for (int block : {1, 2}) SURROUND(block, 4);
  for (int k = 2; k <= 4; ++k)
    for (int j = 1; j < k; ++j) PHASE(1).BANGLES(1, j, k, ANGLE) = 146.0f;
  PHASE(1).BANGLES(1, 1, 3, ANGLE) = 145.9f;
  EXPECT_EQ(EDGES(), AROUND("EDGES") + "\n" + head + " O1-O3    AVERAGE\n" + start_1 +
                         "   1.300     1.250\n" + start_2 + "   1.300     1.250\n");
  EXPECT_EQ(EDGES("ESD"), AROUND("EDGES") + "\n" + head + " O1-O3      AVERAGE\n" + esd_start_1 +
                              "  1.300(4)     1.250\n" + esd_start_2 + "  1.300(4)     1.250\n");
  IREFERENCE = 2;
  EXPECT_EQ(EDGES(), AROUND("EDGES", "Si1", "second") + "\n" + head +
                         " O1-O2   O1-O3   O1-O1   O2-O3   O2-O1   O3-O1    AVERAGE\n" + start_1 +
                         "   1.200   1.300   1.400   2.300   2.400   3.400     1.250\n" + start_2 +
                         "   1.200   1.300   1.400   2.300   2.400   3.400     1.250\n");
}

TEST_F(POLYHEDRA, NO_ANGLES_OR_EDGES) {
  const std::string no_edges = "\n\n     NO EDGES FOUND AROUND CENTRAL ATOM Si1\n";
  for (int n : {0, 1}) {
    SURROUND(1, n);
    for (const char* option : {"", "ESD"}) {
      EXPECT_EQ(ANGLES(option), "\n\n     NO ANGLES FOUND FROM CENTRAL ATOM Si1\n");
      EXPECT_EQ(EDGES(option), no_edges);
    }
  }
  SURROUND(1, 4);
  for (int k = 2; k <= 4; ++k)
    for (int j = 1; j < k; ++j) PHASE(1).BANGLES(1, j, k, ANGLE) = 180.0f;
  EXPECT_EQ(EDGES(), no_edges);
}

TEST_F(POLYHEDRA, LABELS_OF_PAIRS_SHARE_SEVEN_OR_NINE_CHARACTERS) {
  struct HEADS {
    std::string FIRST;
    std::string SECOND;
    std::string PLAIN;      // label from 48, as "No value" needs nine columns; end words from 57
    std::string WITH_ESDS;  // end words from 58
  };
  const std::vector<HEADS> all{
      {"O1", "O2", " O1-O2    AngleVar", " O1-O2      AngleVar"},
      {"Obr12", "O3", " Obr-O3   AngleVar", " Obr12-O3   AngleVar"},
      {"O3", "Obr123", " O3-Obr   AngleVar", " O3-Obr12   AngleVar"},
      {"Oab", "Obr123", " Oab-Obr  AngleVar", " Oab-Obr12  AngleVar"},
      {"Oab1", "Oab2", " Oab-Oab  AngleVar", " Oab1-Oab2  AngleVar"},
      {"Obr12", "Oap34", " Obr-Oap  AngleVar", " Obr1-Oap3  AngleVar"},
      {"Obr123", "Oabc", " Obr-Oab  AngleVar", " Obr1-Oabc  AngleVar"},
      {"\u00d6ab", "\u00d6br\u00e423", " \u00d6ab-\u00d6br  AngleVar",
       " \u00d6ab-\u00d6br\u00e42  AngleVar"},
      {"\u00d6\u00e4b12", "\u00d6b\u00e434", " \u00d6\u00e4b-\u00d6b\u00e4  AngleVar",
       " \u00d6\u00e4b1-\u00d6b\u00e43  AngleVar"}};
  SURROUND(1, 2);
  for (const HEADS& heads : all) {
    PHASE(1).ATOM(2).LAB = heads.FIRST;
    PHASE(1).ATOM(3).LAB = heads.SECOND;
    const std::string title = AROUND("ANGLES") + "\n" + head;
    EXPECT_TRUE(ANGLES().starts_with(title + " " + heads.PLAIN + "\n")) << ANGLES();
    EXPECT_TRUE(ANGLES("ESD").starts_with(title + heads.WITH_ESDS + "\n")) << ANGLES("ESD");
  }
}

TEST_F(POLYHEDRA, SYMMETRY_CODES_OF_BOTH_LIGANDS) {
  SURROUND(1, 3);
  PHASE(1).BONDS(1, 1, BOND_SYMCODE) = 12.645f;
  RUN.LIST_SYMCODES = true;
  const std::string codes = "\n" + std::string(36, ' ') + "symcodes:  12_645   12_645   2_555\n" +
                            std::string(47, ' ') + "2_555    3_555    3_555\n";
  const std::string esd_codes = "\n" + std::string(36, ' ') +
                                "symcodes: 12_645     12_645     2_555\n" + std::string(46, ' ') +
                                "2_555      3_555      3_555\n";
  const std::string angles = AROUND("ANGLES") + "\n" + head;
  const std::string edges = AROUND("EDGES") + "\n" + head;
  EXPECT_TRUE(ANGLES().starts_with(angles + "  O1-O2    O1-O3    O2-O3    AngleVar\n" + codes +
                                   start_1 + "  103.000"))
      << ANGLES();
  EXPECT_TRUE(ANGLES("ESD").starts_with(angles + " O1-O2      O1-O3      O2-O3      AngleVar\n" +
                                        esd_codes + esd_start_1 + "  103.0(5)"))
      << ANGLES("ESD");
  EXPECT_TRUE(EDGES().starts_with(edges + "  O1-O2    O1-O3    O2-O3    AVERAGE\n" + codes +
                                  start_1 + "    1.200"))
      << EDGES();
  EXPECT_TRUE(EDGES("ESD").starts_with(edges + " O1-O2      O1-O3      O2-O3      AVERAGE\n" +
                                       esd_codes + esd_start_1 + "  1.200(4)"))
      << EDGES("ESD");
}

TEST_F(POLYHEDRA, PAIRS_WITHOUT_ONE_OF_THEIR_BONDS_AND_ABSENT_CENTRES) {
  ADD("third");
  SURROUND(1, 3);
  SURROUND(2, 3);
  PHASE(2).BONDS.CLEAR_ROW(1, 2);
  EXPECT_EQ(ROWS(ANGLES(), start_2), start_2 + " No value  104.000 No value    12.5000\n" +
                                         start_3 + " No value No value No value     0.0000\n");
  EXPECT_EQ(ROWS(EDGES(), start_2), start_2 + " No value    1.300 No value     1.250\n" + start_3 +
                                        " No value No value No value     0.000\n");
  // "No value" at the first column of its field: 46, 57, 68.
  EXPECT_EQ(ROWS(ANGLES("ESD"), esd_start_2),
            esd_start_2 + " No value    104.0(5)  No value     12.5000\n" + esd_start_3 +
                " No value   No value   No value      0.0000\n");
  EXPECT_EQ(ROWS(EDGES("ESD"), esd_start_2),
            esd_start_2 + " No value    1.300(4)  No value      1.250\n" + esd_start_3 +
                " No value   No value   No value      0.000\n");
  for (int block : {2, 3}) PHASE(block).NBONDS(1) = NO_CENTRE;
  const std::string rows = start_2 + no_centre + "\n" + start_3 + no_centre + "\n";
  const std::string esd_rows = esd_start_2 + no_centre + "\n" + esd_start_3 + no_centre + "\n";
  EXPECT_EQ(ROWS(ANGLES(), start_2), rows);
  EXPECT_EQ(ROWS(EDGES(), start_2), rows);
  EXPECT_EQ(ROWS(ANGLES("ESD"), esd_start_2), esd_rows);
  EXPECT_EQ(ROWS(EDGES("ESD"), esd_start_2), esd_rows);
}

TEST_F(POLYHEDRA, THE_PAIRS_ARE_THOSE_OF_THE_REFERENCE) {
  SURROUND(1, 3);
  SURROUND(2, 2);
  PHASE(2).ATOM(2).LAB = "S1";
  IREFERENCE = 2;
  EXPECT_EQ(ANGLES(), AROUND("ANGLES", "Si1", "second") + "\n" + head + " S1-O2    AngleVar\n" +
                          start_1 + " 103.000    12.5000\n" + start_2 + " 103.000    12.5000\n");
  PHASE(1).NBONDS(1) = 1;
  for (int j : {2, 3}) PHASE(1).BONDS.CLEAR_ROW(1, j);
  SURROUND(2, 3);
  EXPECT_EQ(ROWS(ANGLES(), " S1"), " S1-O2    S1-O3    O2-O3    AngleVar\n" + start_1 +
                                       " No value No value No value    12.5000\n" + start_2 +
                                       "  103.000  104.000  105.000    12.5000\n");
}

TEST_F(POLYHEDRA, ROWS_STAND_IN_DISPLAY_ORDER_WITHOUT_THE_HIDDEN_BLOCKS) {
  ADD("third");
  for (int block : {1, 2, 3}) {
    SURROUND(block, 2);
    PHASE(block).BANGLES(1, 1, 2, ANGLE) = 100.0f + static_cast<float>(block);
    PHASE(block).BANGLES(1, 1, 2, EDGE) = 2.0f + 0.1f * static_cast<float>(block);
  }
  ISORT(1) = 3;
  ISORT(2) = 1;
  ISORT(3) = 2;
  EXPECT_EQ(ROWS(ANGLES(), start_3), start_3 + " 103.000    12.5000\n" + start_1 +
                                         " 101.000    12.5000\n" + start_2 +
                                         " 102.000    12.5000\n");
  EXPECT_EQ(ROWS(EDGES(), start_3), start_3 + "   2.300     1.250\n" + start_1 +
                                        "   2.100     1.250\n" + start_2 + "   2.200     1.250\n");
  IUSE(1) = 0;
  RUN.LIST_ALL_BLOCKS = false;
  EXPECT_EQ(ROWS(ANGLES("ESD"), esd_start_3),
            esd_start_3 + "  103.0(5)    12.5000\n" + esd_start_2 + "  102.0(5)    12.5000\n");
  EXPECT_EQ(ROWS(EDGES("ESD"), esd_start_3),
            esd_start_3 + "  2.300(4)     1.250\n" + esd_start_2 + "  2.200(4)     1.250\n");
}

TEST_F(POLYHEDRA, COLUMNS_WIDEN_FOR_LONG_ANGLES) {
  SURROUND(1, 2);
  IUSE(2) = 0;
  RUN.LIST_ALL_BLOCKS = false;
  PHASE(1).BANGLES(1, 1, 2, ANGLE) = 12345.5f;
  PHASE(1).POLYHEDRON(1, POLY_VARIANCE) = 12345.5f;
  // "12345.500" has 9 characters for 8 columns, "12345.5000" 10 for 9.
  EXPECT_EQ(ROWS(ANGLES(), start_1), start_1 + " 12345.500   12345.5000\n");
  PHASE(1).BANGLES(1, 1, 2, ANGLE) = 103.125f;
  PHASE(1).BANGLES(1, 1, 2, ANGLE_STD) = 0.0012f;
  // "103.1250(12)" has 12 characters for 11 columns.
  EXPECT_EQ(ROWS(ANGLES("ESD"), esd_start_1), esd_start_1 + "  103.1250(12) 12345.5000\n");
}

TEST_F(POLYHEDRA, ALL_MEANS_THE_ATOMS_IN_USE) {
  IUSE(2) = 0;
  RUN.LIST_ALL_BLOCKS = false;
  SURROUND(1, 2, 3);
  PHASE(1).ATOM_USE(2) = ATOM_OMITTED;
  PHASE(1).ATOM_USE(4) = -1;
  EXPECT_EQ(SAID("", [] { FACETOR_LIST_ALL_ANGLES("ESD"); }),
            "\n\n     NO ANGLES FOUND FROM CENTRAL ATOM Si1\n" + AROUND("ANGLES", "O2") + "\n" +
                head + " O1-O2      AngleVar\n" + esd_start_1 + "  103.0(5)    12.5000\n");
  EXPECT_EQ(SAID("", [] { FACETOR_LIST_ALL_EDGES("ESD"); }),
            "\n\n     NO EDGES FOUND AROUND CENTRAL ATOM Si1\n" + AROUND("EDGES", "O2") + "\n" +
                head + " O1-O2      AVERAGE\n" + esd_start_1 + "  1.200(4)     1.250\n");
}

// ---- the sphere fit ----

TEST_F(POLYHEDRA, UP_TO_THREE_LIGANDS_HAVE_NO_SPHERE) {
  FIT(1);
  for (int n : {0, 2}) {
    SURROUND(1, n);
    EXPECT_EQ(ORBIX(), "\n\n     NO POLYHEDRON FOUND AROUND CENTRAL ATOM Si1\n");
  }
  SURROUND(1, 3);
  EXPECT_EQ(ORBIX(),
            "\n\n     POLYHEDRON AROUND CENTRAL ATOM Si1 HAS CN=3, NO DISTORTION PARAMETERS CAN BE "
            "CALCULATED\n");
}

TEST_F(POLYHEDRA, FOUR_AND_MORE_LIGANDS_HAVE_A_ROW_A_BLOCK_WITH_ITS_OWN_COUNT) {
  ADD("third");
  SURROUND(1, 4);
  SURROUND(2, 12);
  PHASE(3).NBONDS(1) = NO_CENTRE;
  for (int block : {1, 2, 3}) FIT(block);
  RUN.LIST_SYMCODES = true;  // this table has no line for them
  EXPECT_EQ(ORBIX(), AROUND("POLYHEDRON") + orbix_head + start_1 + "  4" + fit_values + start_2 +
                         " 12" + fit_values + start_3 + no_centre + "\n");
  IREFERENCE = 2;
  EXPECT_EQ(ORBIX(), AROUND("POLYHEDRON", "Si1", "second") + orbix_head + start_1 + "  4" +
                         fit_values + start_2 + " 12" + fit_values + start_3 + no_centre + "\n");
  PHASE(1).NBONDS(1) = 2;
  EXPECT_EQ(ROWS(ORBIX(), start_1), start_1 + "  2" + fit_values + start_2 + " 12" + fit_values +
                                        start_3 + no_centre + "\n");
}

TEST_F(POLYHEDRA, A_POLYHEDRON_WITHOUT_VOLUME_KEEPS_ITS_COUNT) {
  SURROUND(1, 5);
  FIT(1);
  // Block 2 has no bonds at all.
  EXPECT_EQ(ROWS(ORBIX(), start_1), start_1 + "  5" + fit_values + start_2 + "  0" + no_volume);
  PHASE(1).POLYHEDRON(1, POLY_VOLUME) = 0.0999f;
  EXPECT_EQ(ROWS(ORBIX(), start_1), start_1 + "  5" + no_volume + start_2 + "  0" + no_volume);
  PHASE(1).POLYHEDRON(1, POLY_VOLUME) = 0.1f;
  // VDIST 1 - 0.1 / 10.
  EXPECT_EQ(ROWS(ORBIX(), start_1),
            start_1 +
                "  5  0.1250  0.2500  0.3750  0.200  2.000  0.100  2.050  0.100 10.000  0.990  "
                "0.271  0.850  0.5000  0.6250  0.7500\n" +
                start_2 + "  0" + no_volume);
}

TEST_F(POLYHEDRA, WITHOUT_A_RADIUS_OR_AN_IDEAL_VOLUME_THERE_IS_NO_DIVISION) {
  SURROUND(1, 5);
  IUSE(2) = 0;
  RUN.LIST_ALL_BLOCKS = false;
  for (POLYHEDRON_COLUMN divisor : {POLY_RADIUS, POLY_IDEAL_VOLUME}) {
    FIT(1);
    PHASE(1).POLYHEDRON(1, divisor) = 0.0f;
    EXPECT_EQ(ROWS(ORBIX(), start_1), start_1 + "  5" + no_volume);
  }
}

TEST_F(POLYHEDRA, SPHERES_STAND_IN_DISPLAY_ORDER_WITHOUT_THE_HIDDEN_BLOCKS) {
  ADD("third");
  SURROUND(1, 4);
  SURROUND(2, 5);
  SURROUND(3, 6);
  for (int block : {1, 2, 3}) FIT(block);
  ISORT(1) = 3;
  ISORT(2) = 1;
  ISORT(3) = 2;
  EXPECT_EQ(ROWS(ORBIX(), start_3), start_3 + "  6" + fit_values + start_1 + "  4" + fit_values +
                                        start_2 + "  5" + fit_values);
  IUSE(1) = 0;
  RUN.LIST_ALL_BLOCKS = false;
  EXPECT_EQ(ROWS(ORBIX(), start_3), start_3 + "  6" + fit_values + start_2 + "  5" + fit_values);
}

// 1 - 0.4 / 0.5 = 0.2 and 1 - 3 (0.1 / 0.5) = 0.4: a small sphere is a sphere.
TEST_F(POLYHEDRA, A_SMALL_SPHERE_HAS_ITS_ROW) {
  SURROUND(1, 4);
  FIT(1);
  PHASE(1).POLYHEDRON(1, POLY_DELTA) = 0.4f;
  PHASE(1).POLYHEDRON(1, POLY_RADIUS) = 0.5f;
  PHASE(1).POLYHEDRON(1, POLY_RADIUS_SDEV) = 0.1f;
  PHASE(1).POLYHEDRON(1, POLY_VOLUME) = 0.11f;
  PHASE(1).POLYHEDRON(1, POLY_IDEAL_VOLUME) = 0.22f;
  // Block 2 has no bonds at all.
  EXPECT_EQ(ROWS(ORBIX(), start_1),
            start_1 +
                "  4  0.1250  0.2500  0.3750  0.400  0.500  0.100  2.050  0.110  0.220  "
                "0.500  0.992  0.400  0.5000  0.6250  0.7500\n" +
                start_2 + "  0" + no_volume);
}

TEST_F(POLYHEDRA, ALL_SPHERES_OF_THE_ATOMS_IN_USE) {
  IUSE(2) = 0;
  RUN.LIST_ALL_BLOCKS = false;
  SURROUND(1, 4, 3);
  PHASE(1).POLYHEDRON(3, POLY_VOLUME) = 0.0f;
  PHASE(1).ATOM_USE(2) = ATOM_OMITTED;
  PHASE(1).ATOM_USE(4) = -1;
  EXPECT_EQ(SAID("", FACETOR_LIST_ALL_ORBIX),
            "\n\n     NO POLYHEDRON FOUND AROUND CENTRAL ATOM Si1\n" + AROUND("POLYHEDRON", "O2") +
                orbix_head + start_1 + "  4" + no_volume);
}

// ---- from coordinates to the table ----

// Magnesia with a cell edge of 4.2: six oxygens at r = 2.1 make an octahedron of the volume
// 4/3 r^3 = 12.348, which is also the largest that a sphere of that radius holds. A regular
// polyhedron has no distortion and no eccentricity, and the sphericity 1.
TEST_F(CALCULATED_POLYHEDRA, A_REGULAR_OCTAHEDRON_HAS_NO_DISTORTION_AND_FULL_SPHERICITY) {
  ADD("first", MADE({4.2f, 4.2f, 4.2f}, {90, 90, 90}, "F m -3 m",
                    {{"Mg1", {0, 0, 0}}, {"O1", {0.5f, 0.5f, 0.5f}}}));
  SAID("\n", FACETOR_CALC::RUN_FACETOR_CALC_BONDS);
  EXPECT_EQ(SAID("", [] { FACETOR_LIST_ORBIX(1); }),
            AROUND("POLYHEDRON", "Mg1") + orbix_head + start_1 +
                "  6  0.0000  0.0000  0.0000  0.000  2.100  0.000  2.100 12.348 12.348  0.000  "
                "0.000  1.000  0.0000  0.0000  0.0000\n");
}
