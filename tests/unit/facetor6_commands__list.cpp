// Reports column by column. Expected lines are counted out from the layout: the line start takes
// columns 1 to 44 (number 1-3, title 6-19, T 21-26, P 28-34, use 44), plain values 8 columns each
// from 45, values with esds 11 columns each from 46, the end group from 47 + 8n or 46 + 11n.
#include "src/facetor6_list/list.h"

#include "console__dialogue.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_console/valence_table.h"
#include "structures.h"

using namespace FACETOR_LIST;
using namespace FACETOR_CONSOLE;
using namespace STRUCTURES;

namespace {

class LISTING : public CONSOLE_TESTS::CONSOLE_TEST {
 protected:
  void SetUp() override {
    CONSOLE_TEST::SetUp();
    INIT_PHASE_LIST();
    RUN = RUN_PARAMETERS{};
    CLEAR_FACETOR_VALENCE();
  }

  static void ADD(const std::string& title, float p = 0.0001f, float sigp = 0.0f) {
    STRUCTURE_LIST newx;
    newx.ADD(MADE({5, 6, 7}, {90, 90, 90}, "P 1",
                  {{"Si1", {0.1f, 0.2f, 0.3f}, {0.0002f, 0, 0}},
                   {"O1", {0.4f, 0.2f, 0.3f}},
                   {"O2", {0.1f, 0.5f, 0.3f}}},
                  {0.001f, 0, 0}));
    newx(1).BLOCK_TITLE = title;
    newx(1).PT(TEMPERATURE, PT_VALUE) = 298;
    newx(1).PT(TEMPERATURE, PT_ESD) = 1;
    newx(1).PT(PRESSURE, PT_VALUE) = p;
    newx(1).PT(PRESSURE, PT_ESD) = sigp;
    bool error = false;
    ADD_PHASE_LIST(newx, 1, error);
  }

  // Gives the first atom of a block bonds of the lengths; 0 leaves a gap.
  static void BOND(int block, const std::vector<float>& lengths, float std = 0.003f) {
    CRYSTAL_STRUCTURE_TYPE& phase = PHASE(block);
    phase.NBONDS(1) = 0;
    for (std::size_t j = 0; j < lengths.size(); ++j) {
      const int row = static_cast<int>(j) + 1;
      phase.BONDS(1, row, BOND_LENGTH) = lengths[j];
      if (lengths[j] <= 0.0f) continue;
      ++phase.NBONDS(1);
      phase.BONDS(1, row, BOND_CENTRE) = 1;
      phase.BONDS(1, row, BOND_LENGTH_STD) = std;
      phase.BONDS(1, row, BOND_LIGAND) = static_cast<float>(2 + j % 2);
      phase.BONDS(1, row, BOND_SYMCODE) = 12.555f;
      phase.BONDS(1, row, BOND_LENGTH_SRB) = lengths[j] + 0.01f;
      phase.BONDS(1, row, BOND_DISPL_CENTRE) = 0.1f * static_cast<float>(row);
      phase.BONDS(1, row, BOND_VALENCE) = 0.25f * static_cast<float>(row);
      phase.BONDS(1, row, BOND_VALENCE_STD) = 0.01f;
    }
    phase.POLYHEDRON(1, POLY_MEAN_LENGTH) = 1.75f;
    phase.POLYHEDRON(1, POLY_ELONGATION) = 1.0125f;
    phase.POLYHEDRON(1, POLY_VARIANCE) = 12.5f;
    phase.POLYHEDRON(1, POLY_VOLUME) = 2.25f;
    phase.POLYHEDRON(1, POLY_VOLUME_STD) = 0.015f;
    phase.POLYHEDRON(1, POLY_VOLUME_SRB) = 2.5f;
    phase.POLYHEDRON(1, POLY_VALENCE_SUM) = 0.75f;
    phase.POLYHEDRON(1, POLY_VALENCE_SUM_STD) = 0.02f;
  }

  static std::string BONDS(std::string_view option = "") {
    return SAID("", [option] { FACETOR_LIST_BONDS(1, option); });
  }
};

const std::string head = "       BLOCKNAME      T        P         IUSE";
const std::string start_1 = "  1: first         : 298.0   0.000         1";
const std::string esd_start_1 = "  1: first         : 298.0(10) 0.0001      1";

std::string BOND_TITLE(const std::string& words) {
  return "\n\n     " + words + " CENTRAL ATOM Si1    (NAME IN REFERENCE BLOCK first)\n" +
         "     BETWEEN  0.01 AND  2.20 ANGSTROM\n";
}

}  // namespace

// ---- line start and summaries ----

TEST_F(LISTING, LINE_START_AND_HEAD) {
  EXPECT_EQ(FACETOR_HEADSTART(), head);
  EXPECT_EQ(head.size(), 45u);
  ADD("first");
  EXPECT_EQ(FACETOR_LINESTART(1), start_1);
  EXPECT_EQ(FACETOR_LINESTART(1).size(), 44u);
  PHASE(1).BLOCK_TITLE = "a title that is too long";
  EXPECT_EQ(FACETOR_LINESTART(1), "  1: a title that i: 298.0   0.000         1");
  PHASE(1).PT(TEMPERATURE, PT_VALUE) = 123456;
  EXPECT_EQ(FACETOR_LINESTART(1), "  1: a title that i:******   0.000         1");
}

TEST_F(LISTING, AMBIENT_PRESSURE_HAS_NO_ESD) {
  ADD("first", 0.00011f, 0.00001f);
  EXPECT_EQ(FACETOR_LINESTART(1, true), esd_start_1);
  PHASE(1).PT(PRESSURE, PT_VALUE) = 0.00012f;
  EXPECT_EQ(FACETOR_LINESTART(1, true), "  1: first         : 298.0(10) 0.000120(10)1");
  PHASE(1).PT(PRESSURE, PT_VALUE) = 3.5f;
  PHASE(1).PT(PRESSURE, PT_ESD) = 0.05f;
  EXPECT_EQ(FACETOR_LINESTART(1, true), "  1: first         : 298.0(10) 3.50(5)     1");
}

TEST_F(LISTING, HIDDEN_BLOCKS_LEAVE_NO_ROW_AND_NUMBERS_KEEP_THEIR_GAPS) {
  ADD("first");
  ADD("second");
  ADD("third");
  IUSE(2) = 0;
  const std::string third = "  3: third         : 298.0   0.000         1\n";
  EXPECT_EQ(SAID("", FACETOR_LIST_PHASE),
            head + "\n" + start_1 + "\n  2: second        : 298.0   0.000         0\n" + third);
  EXPECT_EQ(SAID("", FACETOR_LIST_PHASE_USED), head + "\n" + start_1 + "\n" + third);
  EXPECT_TRUE(RUN.LIST_ALL_BLOCKS) << "the setting is restored";
  RUN.LIST_ALL_BLOCKS = false;
  EXPECT_EQ(FACETOR_LINESTART(2), "");
  EXPECT_EQ(SAID("", FACETOR_LIST_PHASE), head + "\n" + start_1 + "\n" + third);
}

TEST_F(LISTING, SUMMARIES_OF_LISTS) {
  ADD("first", 2.5f, 0.02f);
  EXPECT_EQ(SAID("", [] { LIST_PHASE(PHASE, 0); }),
            "\n      There are no crystal structures to list\n");
  EXPECT_EQ(SAID("", [] { LIST_PHASE(PHASE, 1); }),
            "\n       BLOCKNAME              T       P\n"
            "  1: first                 298.0   2.500\n");
  EXPECT_EQ(SAID("", [] { LIST_PHASE_ESD(PHASE, 1, 1); }),
            "\n       BLOCKNAME              P    esdP     T    esdT\n"
            "  1: first                 2.500  0.020  298.0   1.0\n");
}

TEST_F(LISTING, CELLS) {
  ADD("first");
  EXPECT_EQ(SAID("", [] { FACETOR_LIST_CELLS(); }),
            head + "  a        b        c       alpha   beta    gamma     V\n" + start_1 +
                "   5.0000   6.0000   7.0000  90.000  90.000  90.000  210.000\n");
  // a at 47 as " 5.0000(10)", b at 60; V = 210 with esd 210 * 0.001 / 5 = 0.042.
  EXPECT_EQ(
      SAID("", [] { FACETOR_LIST_CELLS("ESD"); }),
      head + "  a            b            c            alpha        beta         gamma        V\n" +
          esd_start_1 +
          "   5.0000(10)   6.00000      7.00000      90.0000      90.0000      90.0000      "
          "210.00(5)\n");
}

// ---- symmetry and sites ----

TEST_F(LISTING, SYMMETRY) {
  ADD("first");
  XTAL::SET_SPACEGROUP("P -1", PHASE(1).SPG);
  EXPECT_EQ(SAID("", FACETOR_LIST_SYMM),
            "  space group                 coords of inversion centre\n"
            "      1  P -1                    0.00000 0.00000 0.00000\n"
            "\n\n     The symmetry operators of the reference block (#1) are:\n"
            "       1:x,y,z\n"
            "       2:-x,-y,-z\n");
  XTAL::SET_SPACEGROUP("P 1", PHASE(1).SPG);
  EXPECT_EQ(SAID("", FACETOR_LIST_SYMM).substr(57, 44),
            "      1  P 1                    acentric\n\n\n ");
}

TEST_F(LISTING, SITE_NAMES_WITH_THEIR_MARKS) {
  ADD("first");
  EXPECT_EQ(SAID("", [] { FACETOR_LIST_ATOMS(); }),
            "  Site names in each block, in input order\n" + start_1 +
                "\n                                  Site name: Si1     O1      O2\n");
  PHASE(1).ATOM_USE(2) = ATOM_OMITTED;
  PHASE(1).ATOM_USE(3) = -1;
  PHASE(1).ATOM(1).LAB = "Silicon_1";
  // The longest name with its mark has 9 characters: fields of 10.
  EXPECT_EQ(SAID("", [] { FACETOR_LIST_ATOMS("SCAT"); }),
            "  Site names and scattering factors in each block, in input order\n" + start_1 +
                "\n                                  Site name: Silicon_1 O1*       O2!\n"
                "                          Scattering factor: Si        O         O\n"
                "     *****Atoms marked with * are currently marked as omitted from calculations\n"
                "     *****Atoms marked with ! are duplicates of other atoms\n");
}

TEST_F(LISTING, COORDINATES) {
  ADD("first");
  EXPECT_EQ(SAID("", [] { FACETOR_LIST_XYZ(1); }),
            "\n\n ATOMS EQUIVALENT TO ATOM Si1 IN REFERENCE BLOCK (first)\n" + head +
                " SITE      ATOM     X         Y         Z       OCC\n" + start_1 +
                "1 Si1       (Si  )   0.10000   0.20000   0.30000 1.000\n");
  EXPECT_EQ(SAID("", [] { FACETOR_LIST_XYZ(1, "ESD"); }),
            "\n\n ATOMS EQUIVALENT TO ATOM Si1 IN REFERENCE BLOCK (first)\n" + head +
                " SITE      ATOM      X            Y            Z            OCC\n" + esd_start_1 +
                "1 Si1       (Si  ) 0.1000(2)    0.200000     0.300000     1.00000\n");
}

TEST_F(LISTING, AN_ATOM_THAT_IS_ABSENT_LEAVES_A_ROW) {
  ADD("first");
  ADD("second");
  PHASE(2).ATOM(1).X = {0.6f, 0.7f, 0.8f};
  EXPECT_TRUE(
      SAID("", [] { FACETOR_LIST_XYZ(1); })
          .ends_with("  2: second        : 298.0   0.000         1         *****No equivalent "
                     "atom found\n"));
  EXPECT_TRUE(
      SAID("", [] { FACETOR_LIST_ADPS(1, "U"); })
          .ends_with("  2: second        : 298.0   0.000         1        *****No equivalent "
                     "atom found\n"));
}

TEST_F(LISTING, ISOTROPIC_ATOMS_HAVE_A_TENSOR_OF_ZEROS) {
  ADD("first");
  PHASE(1).ATOM(1).UEQ = 0.0125f;
  PHASE(1).ATOM(1).BISO = 0.987f;
  EXPECT_TRUE(
      SAID("", [] { FACETOR_LIST_ADPS(1, "U"); })
          .ends_with(start_1 +
                     "1 Si1       (Si  )   0.00000   0.00000   0.00000   0.00000   0.00000   "
                     "0.00000 0.0125  0.987\n"));
  EXPECT_TRUE(
      SAID("", [] { FACETOR_LIST_ADPS(1, "BETA"); })
          .ends_with(start_1 +
                     "1 Si1       (Si  )   0.00000   0.00000   0.00000   0.00000   0.00000   "
                     "0.00000  0.987\n"));
}

// ---- bonds ----

TEST_F(LISTING, NO_BONDS) {
  ADD("first");
  EXPECT_EQ(BONDS(),
            "\n\n     NO BONDS FOUND FROM CENTRAL ATOM Si1     BETWEEN  0.01 AND  2.20 ANGSTROM\n");
}

TEST_F(LISTING, FOUR_BONDS) {
  ADD("first");
  BOND(1, {1.5f, 1.6f, 1.7f, 1.8f});
  EXPECT_EQ(BONDS(), BOND_TITLE("BONDS FROM") + head +
                         " O1      O2      O1      O2       N AVERAGE  QE       AV     VOLUME\n" +
                         start_1 +
                         "  1.5000  1.6000  1.7000  1.8000    4  1.7500  1.0125  12.500   2.250\n");
  EXPECT_EQ(
      BONDS("ESD"),
      BOND_TITLE("BONDS FROM") + head +
          " O1         O2         O1         O2          N AVERAGE  QE       AV     VOLUME\n" +
          esd_start_1 +
          "  1.500(3)   1.600(3)   1.700(3)   1.800(3)    4  1.7500  1.0125  12.500 2.250(15)\n");
}

TEST_F(LISTING, OTHER_COORDINATIONS_SHOW_NO_DISTORTION) {
  ADD("first");
  BOND(1, {1.5f, 1.6f, 1.7f, 1.8f, 1.9f});
  EXPECT_TRUE(BONDS().ends_with(" N AVERAGE  VOLUME\n" + start_1 +
                                "  1.5000  1.6000  1.7000  1.8000  1.9000    5  1.7500   2.250\n"));
}

TEST_F(LISTING, A_VALUE_TOO_WIDE_IS_STARS) {
  ADD("first");
  BOND(1, {1234567.0f});
  EXPECT_TRUE(BONDS().ends_with(start_1 + "********    1  1.7500   2.250\n"));
}

TEST_F(LISTING, MISSING_BONDS_AND_CENTRES) {
  ADD("first");
  ADD("second");
  ADD("third");
  ADD("fourth");
  BOND(1, {1.5f, 1.6f, 1.7f, 1.8f});
  BOND(2, {1.5f, 0.0f, 1.7f, 1.8f});
  PHASE(3).NBONDS(1) = NO_CENTRE;
  const std::string plain = BONDS();
  EXPECT_TRUE(plain.ends_with(
      "  2: second        : 298.0   0.000         1  1.5000No value  1.7000  1.8000    3  1.7500\n"
      "  3: third         : 298.0   0.000         1  No equivalent central atom in this structure\n"
      "  4: fourth        : 298.0   0.000         1No valueNo valueNo valueNo value    0  "
      "0.0000\n"))
      << plain;
  EXPECT_NE(BONDS("ESD").find("  1.500(3)  No value    1.700(3)   1.800(3)    3  1.7500\n"),
            std::string::npos);
}

TEST_F(LISTING, RIGID_BOND_AND_DISPLACEMENT_FORMS) {
  ADD("first");
  BOND(1, {1.5f, 1.6f});
  EXPECT_EQ(BONDS("srb"), BOND_TITLE("SRB-CORRECTED BOND LENGTHS FROM") + head +
                              " O1      O2        N SRB AVE RAW AVE  SRBVOL  RAWVOL\n" + start_1 +
                              "  1.5100  1.6100    2  1.5600  1.7500  2.5000  2.2500\n");
  EXPECT_EQ(BONDS("displ"), BOND_TITLE("THERMAL DISPLACEMENTS ALONG BONDS OF") + head +
                                " O1      O2        N AVERAGE\n" + start_1 +
                                "  0.1000  0.2000    2  0.1500  1.7500\n");
  PHASE(1).BONDS(1, 1, BOND_LENGTH_SRB) = 0;
  PHASE(1).BONDS(1, 2, BOND_LENGTH_SRB) = 0;
  EXPECT_TRUE(BONDS("srb").ends_with(start_1 + "No valueNo value\n"))
      << "no end group without values";
}

TEST_F(LISTING, SYMMETRY_CODES_STAND_UNDER_THE_LABELS) {
  ADD("first");
  BOND(1, {1.5f, 1.6f});
  RUN.LIST_SYMCODES = true;
  const std::string codes = std::string(36, ' ') + "symcodes: 12_555  12_555\n";
  EXPECT_NE(BONDS().find("VOLUME\n\n" + codes), std::string::npos) << BONDS();
}

TEST_F(LISTING, VALENCES) {
  ADD("first");
  BOND(1, {1.5f, 1.6f});
  EXPECT_EQ(SAID("", [] { FACETOR_LIST_BONDVALENCE(1); }),
            BOND_TITLE("BOND VALENCES FROM") + head + " O1      O2        BVSUM\n" + start_1 +
                "  0.2500  0.5000     0.750\n");
  EXPECT_EQ(SAID("", [] { FACETOR_LIST_BONDVALENCE(1, "ESD"); }),
            BOND_TITLE("BOND VALENCES FROM") + head + " O1         O2          BVSUM\n" +
                esd_start_1 + "  0.250(10)  0.500(10)  0.75(2)\n");
  PHASE(1).POLYHEDRON(1, POLY_VALENCE_SUM) = 0.4f;
  BV_FLAGS(BV_MULTIPLE_SITES) = true;
  EXPECT_TRUE(
      SAID("", [] { FACETOR_LIST_BONDVALENCE(1); })
          .ends_with("\n*****WARNING: If you see small or zero bond valences, check the list of "
                     "parameters used, and the scattering factors for the atoms\n\n*****Bond "
                     "valences cannot be calculated if both the central atom and ligand sites "
                     "have multiple occupancy\n"));
}

// ---- the driver and the menus ----

TEST_F(LISTING, WITHOUT_BONDS_GEOMETRY_SAYS_SO) {
  ADD("first");
  EXPECT_EQ(SAID("", [] { RUN_FACETOR_LIST_GEOM(REPORT_BONDS); }),
            "     No bond lengths have been loaded or calculated\n");
}

TEST_F(LISTING, SITES_BY_NAME) {
  ADD("first");
  BOND(1, {1.5f});
  PHASE(1).ATOM_USE(2) = ATOM_OMITTED;
  PHASE(1).ATOM_USE(3) = -1;
  const std::string ask =
      "     The central atom is at the position for the reference block and given by list/table "
      "xyz\n"
      "\n\n\n    Enter central site name (or ALL):";
  const std::string table = BONDS();
  EXPECT_EQ(SAID("si\nO1\nO2\nXy\ncall\n\n", [] { RUN_FACETOR_LIST_GEOM(REPORT_BONDS); }),
            ask + table + ask +
                "     *****Site with name = O1 in reference block marked not to be used\n" + ask +
                "\n     *****Site with name = O2 in reference block is a duplicate of Si1\n" + ask +
                "Site with name = Xy not found in reference block\n" + ask + table + ask)
      << "ALL anywhere means all, and omitted atoms and duplicates are passed over";
}

TEST_F(LISTING, MENUS_GROW_WITH_BONDS_OF_THE_REFERENCE) {
  ADD("first");
  ADD("second");
  BOND(2, {1.5f});
  EXPECT_EQ(SAID("0\n", RUN_FACETOR_TABLE),
            "\n     Possible selections for Table:\n      1: cells\n      2: xyz\n      3: adps\n  "
            "    0: "
            "Exit\n\n     Enter selection by number:");
  BOND(1, {1.5f});
  const std::string said = SAID("0\n", RUN_FACETOR_LIST);
  EXPECT_NE(said.find("     14: valences of bonds\n      0: Exit\n"), std::string::npos);
  CONSOLE_TESTS::PEND("val");
  EXPECT_EQ(SAID("", RUN_FACETOR_LIST),
            "\n ***** No bond valences have been calculated - use calc*****\n");
}
