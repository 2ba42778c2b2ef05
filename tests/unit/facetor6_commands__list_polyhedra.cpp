// Angles, edges and sphere-fit reports, column by column: pairs take 8 columns each from 45, or 11
// from 46 with esds; the end value follows at 47 + 8q or 46 + 11q.
#include "console__dialogue.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/list.h"
#include "structures.h"

using namespace FACETOR_LIST;
using namespace FACETOR_CONSOLE;
using namespace STRUCTURES;

namespace {

class POLYHEDRA_LISTS : public CONSOLE_TESTS::CONSOLE_TEST {
 protected:
  void SetUp() override {
    CONSOLE_TEST::SetUp();
    INIT_PHASE_LIST();
    RUN = RUN_PARAMETERS{};
    STRUCTURE_LIST newx;
    newx.ADD(MADE(
        {9, 9, 9}, {90, 90, 90}, "P 1",
        {{"Si1", {0, 0, 0}}, {"O1", {0.2f, 0, 0}}, {"Obr12", {0, 0.2f, 0}}, {"O3", {0, 0, 0.2f}}}));
    newx(1).BLOCK_TITLE = "first";
    newx(1).PT(TEMPERATURE, PT_VALUE) = 298;
    newx.ADD(newx(1));
    newx(2).BLOCK_TITLE = "second";
    bool error = false;
    ADD_PHASE_LIST(newx, 2, error);
  }

  // n bonds of the first atom in the block, with angles 100 + j + k and edges j + k / 10.
  static void BOND(int block, int n) {
    CRYSTAL_STRUCTURE_TYPE& phase = PHASE(block);
    phase.NBONDS(1) = n;
    for (int j = 1; j <= n; ++j) {
      phase.BONDS(1, j, BOND_CENTRE) = 1;
      phase.BONDS(1, j, BOND_LIGAND) = static_cast<float>(2 + (j - 1) % 3);
      phase.BONDS(1, j, BOND_SYMCODE) = static_cast<float>(j) + 0.555f;
    }
    for (int k = 2; k <= n; ++k)
      for (int j = 1; j < k; ++j) {
        phase.BANGLES(1, j, k, ANGLE) = static_cast<float>(100 + j + k);
        phase.BANGLES(1, j, k, ANGLE_STD) = 0.5f;
        phase.BANGLES(1, j, k, EDGE) = static_cast<float>(j) + 0.1f * static_cast<float>(k);
        phase.BANGLES(1, j, k, EDGE_STD) = 0.004f;
      }
    phase.POLYHEDRON(1, POLY_VARIANCE) = 12.5f;
    phase.POLYHEDRON(1, POLY_MEAN_EDGE) = 1.25f;
  }

  std::string ANGLES(std::string_view option = "") {
    return SAID("", [option] { FACETOR_LIST_ANGLES(1, option); });
  }
  std::string EDGES(std::string_view option = "") {
    return SAID("", [option] { FACETOR_LIST_EDGES(1, option); });
  }
};

const std::string head = "       BLOCKNAME      T        P         IUSE";
const std::string start_1 = "  1: first         : 298.0   0.000         1";
const std::string start_2 = "  2: second        : 298.0   0.000         1";
const std::string esd_start_1 = "  1: first         : 298.000   0.0001      1";
const std::string esd_start_2 = "  2: second        : 298.000   0.0001      1";

}  // namespace

TEST_F(POLYHEDRA_LISTS, ANGLES_OF_THREE_LIGANDS) {
  BOND(1, 3);
  BOND(2, 3);
  EXPECT_EQ(ANGLES(),
            "\n\n     ANGLES AROUND CENTRAL ATOM Si1    (NAME IN REFERENCE BLOCK first)\n" + head +
                " O1-Obr  O1-O3   Obr-O3   AngleVar\n" + start_1 +
                " 103.000 104.000 105.000    12.5000\n" + start_2 +
                " 103.000 104.000 105.000    12.5000\n");
  // With esds a label may have 4 characters, or 5 beside a shorter one.
  EXPECT_EQ(ANGLES("ESD"),
            "\n\n     ANGLES AROUND CENTRAL ATOM Si1    (NAME IN REFERENCE BLOCK first)\n" + head +
                " O1-Obr12   O1-O3      Obr12-O3   AngleVar\n" + esd_start_1 +
                "  103.0(5)   104.0(5)   105.0(5)    12.5000\n" + esd_start_2 +
                "  103.0(5)   104.0(5)   105.0(5)    12.5000\n");
}

TEST_F(POLYHEDRA_LISTS, A_MISSING_BOND_OR_CENTRE) {
  BOND(1, 3);
  BOND(2, 3);
  PHASE(2).BONDS.CLEAR_ROW(1, 2);
  EXPECT_TRUE(ANGLES().ends_with(start_2 + "No value 104.000No value    12.5000\n"));
  PHASE(2).NBONDS(1) = NO_CENTRE;
  EXPECT_TRUE(ANGLES().ends_with(start_2 + "  No equivalent central atom in this structure\n"));
}

TEST_F(POLYHEDRA_LISTS, SYMMETRY_CODES_OF_BOTH_LIGANDS) {
  BOND(1, 2);
  RUN.LIST_SYMCODES = true;
  EXPECT_NE(ANGLES().find("\n\n" + std::string(36, ' ') + "symcodes: 1_555\n" +
                          std::string(46, ' ') + "2_555\n"),
            std::string::npos);
}

TEST_F(POLYHEDRA_LISTS, FEWER_THAN_TWO_BONDS) {
  BOND(1, 1);
  EXPECT_EQ(ANGLES(), "\n\n     NO ANGLES FOUND FROM CENTRAL ATOM Si1\n");
  EXPECT_EQ(EDGES(), "\n\n     NO EDGES FOUND AROUND CENTRAL ATOM Si1\n");
}

TEST_F(POLYHEDRA_LISTS, EDGES_AND_BODY_DIAGONALS) {
  BOND(1, 4);
  BOND(2, 4);
  for (int k = 2; k <= 4; ++k)
    for (int j = 1; j < k; ++j) PHASE(1).BANGLES(1, j, k, ANGLE) = 146.0f;
  PHASE(1).BANGLES(1, 1, 2, ANGLE) = 145.9f;
  EXPECT_EQ(EDGES(), "\n\n     EDGES AROUND CENTRAL ATOM Si1    (NAME IN REFERENCE BLOCK first)\n" +
                         head + " O1-Obr   AVERAGE\n" + start_1 + "   1.200     1.250\n" + start_2 +
                         "   1.200     1.250\n");
  EXPECT_TRUE(EDGES("ESD").ends_with(" O1-Obr12   AVERAGE\n" + esd_start_1 +
                                     "  1.200(4)     1.250\n" + esd_start_2 +
                                     "  1.200(4)     1.250\n"))
      << EDGES("ESD");
}

TEST_F(POLYHEDRA_LISTS, THREE_LIGANDS_HAVE_NO_DIAGONALS) {
  BOND(1, 3);
  PHASE(1).BANGLES(1, 1, 2, ANGLE) = 179.0f;
  EXPECT_NE(EDGES().find(" O1-Obr  O1-O3   Obr-O3   AVERAGE\n"), std::string::npos);
}

TEST_F(POLYHEDRA_LISTS, SPHERE_FIT) {
  const auto orbix = [this] { return SAID("", [] { FACETOR_LIST_ORBIX(1); }); };
  BOND(1, 2);
  EXPECT_EQ(orbix(), "\n\n     NO POLYHEDRON FOUND AROUND CENTRAL ATOM Si1\n");
  BOND(1, 3);
  EXPECT_EQ(orbix(),
            "\n\n     POLYHEDRON AROUND CENTRAL ATOM Si1 HAS CN=3, NO DISTORTION PARAMETERS CAN BE "
            "CALCULATED\n");
  BOND(1, 5);
  BOND(2, 5);
  CRYSTAL_STRUCTURE_TYPE& phase = PHASE(1);
  for (int k = 0; k < 3; ++k) {
    phase.POLYHEDRON(1, POLY_SPHERE_X + k) = 0.25f;
    phase.POLYHEDRON(1, POLY_BARYCENTRE_X + k) = 0.5f;
  }
  phase.POLYHEDRON(1, POLY_DELTA) = 0.2f;
  phase.POLYHEDRON(1, POLY_RADIUS) = 2.0f;
  phase.POLYHEDRON(1, POLY_RADIUS_SDEV) = 0.1f;
  phase.POLYHEDRON(1, POLY_MEAN_LENGTH) = 2.05f;
  phase.POLYHEDRON(1, POLY_VOLUME) = 9.0f;
  phase.POLYHEDRON(1, POLY_IDEAL_VOLUME) = 10.0f;
  PHASE(2).POLYHEDRON(1, POLY_VOLUME) = 0.05f;
  // VDIST 1 - 9/10, ECCV 1 - 0.9^3, SPHV 1 - 3 * 0.1 / 2.
  EXPECT_EQ(
      orbix(),
      "\n\n     POLYHEDRON AROUND CENTRAL ATOM Si1    (NAME IN REFERENCE BLOCK first), parameters "
      "as defined in Acta Cryst. B52 (1996) 78-81\n" +
          head +
          " N  CENTROID COORDINATES  DELTA(A) Rsph SDEV(R) AVERAGE VOLUME VIDEAL VDIST   ECCV   "
          "SPHV  BARYCENTRE COORDINATES\n" +
          start_1 +
          "  5  0.2500  0.2500  0.2500  0.200  2.000  0.100  2.050  9.000 10.000  0.100  0.271  "
          "0.850  0.5000  0.5000  0.5000\n" +
          start_2 + "  5  Polyhedron has zero volume, probably co-planar ligands\n");
  phase.POLYHEDRON(1, POLY_RADIUS) = 0.0f;
  EXPECT_NE(orbix().find(start_1 + "  5  Polyhedron has zero volume"), std::string::npos)
      << "no sphere, no division by its radius";
}
