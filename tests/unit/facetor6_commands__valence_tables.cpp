// The way to the tables of bond valences through LIST and TABLE, and gaps, codes and wide values
// in them.
// Columns: line start 1-44, values 8 each from 45 (11 each from 46 with esds), the sum from
// 47 + 8n (46 + 11n).
#include "facetor6_commands__list_blocks.h"

using namespace LIST_TESTS;

namespace {

const std::string ask =
    "     The central atom is at the position for the reference block and given by list/table "
    "xyz\n\n\n\n    Enter central site name (or ALL):";

class VALENCE_LISTS : public BLOCKS {
 protected:
  // Bonds with valences of 0.25, 0.5, 0.75 ... and their sum.
  static void GIVE(int block, const std::vector<float>& lengths, float sum) {
    BOND(block, lengths);
    CRYSTAL_STRUCTURE_TYPE& phase = PHASE(block);
    for (int j = 1; j <= static_cast<int>(lengths.size()); ++j) {
      if (lengths[static_cast<std::size_t>(j - 1)] <= 0.0f) continue;
      phase.BONDS(1, j, BOND_VALENCE) = 0.25f * static_cast<float>(j);
      phase.BONDS(1, j, BOND_VALENCE_STD) = 0.01f;
    }
    phase.POLYHEDRON(1, POLY_VALENCE_SUM) = sum;
    phase.POLYHEDRON(1, POLY_VALENCE_SUM_STD) = 0.02f;
  }

  static std::string TABLE(std::string_view option = "") {
    return SAID("", [option] { FACETOR_LIST_BONDVALENCE(1, option); });
  }

  // A block with valences that were calculated.
  static void ADD_DONE() {
    ADD("first");
    GIVE(1, {1.5f}, 0.75f);
    BV_PAIRS.ADD({"SI+4", "O-2", 0.37f, 1.624f, "somewhere"});
    VALENCES_DONE = true;
  }
};

const std::string parameters =
    "\n          These are the parameters used to calculate bond valences\n"
    "\n         Bond type         d0    b      source\n"
    "      1: SI+4 -- O-2       1.624 0.370  somewhere\n";

}  // namespace

// ---- the table ----

TEST_F(VALENCE_LISTS, A_GAP_BETWEEN_BONDS_LEAVES_THE_OTHERS_IN_THEIR_COLUMNS) {
  ADD("first");
  ADD("second");
  ADD("third");
  GIVE(1, {1.5f, 1.6f, 1.7f}, 1.5f);
  GIVE(2, {1.5f, 0.0f, 1.7f}, 1.0f);
  PHASE(3).NBONDS(1) = NO_CENTRE;
  EXPECT_EQ(TABLE(), TITLE("BOND VALENCES FROM") + head + " O1       O2      O3        BVSUM\n" +
                         start_1 + "  0.2500   0.5000  0.7500     1.500\n" + start_2 +
                         "  0.2500 No value  0.7500     1.000\n" + start_3 + no_centre + "\n");
  EXPECT_EQ(TABLE("ESD"),
            TITLE("BOND VALENCES FROM") + head + " O1         O2         O3          BVSUM\n" +
                esd_start_1 + "  0.250(10)  0.500(10)  0.750(10)  1.50(2)\n" + esd_start_2 +
                "  0.250(10) No value    0.750(10)  1.00(2)\n" + esd_start_3 + no_centre + "\n");
}

TEST_F(VALENCE_LISTS, SYMMETRY_CODES_STAND_UNDER_THE_LABELS) {
  ADD("first");
  GIVE(1, {1.5f, 1.6f}, 0.75f);
  RUN.LIST_SYMCODES = true;
  EXPECT_EQ(ROWS(TABLE(), head), head + " O1      O2        BVSUM\n\n" + std::string(36, ' ') +
                                     "symcodes: 1_555   2_555\n" + start_1 +
                                     "  0.2500  0.5000     0.750\n");
  EXPECT_EQ(ROWS(TABLE("ESD"), head), head + " O1         O2          BVSUM\n\n" +
                                          std::string(36, ' ') + "symcodes: 1_555      2_555\n" +
                                          esd_start_1 + "  0.250(10)  0.500(10)  0.75(2)\n");
}

TEST_F(VALENCE_LISTS, COLUMNS_WIDEN_FOR_LONG_VALUES) {
  ADD("first");
  GIVE(1, {1.5f, 1.6f}, 1.0e6f);
  PHASE(1).BONDS(1, 1, BOND_VALENCE) = 12345.0f;
  EXPECT_EQ(ROWS(TABLE(), start_1), start_1 + " 12345.0000  0.5000   1000000.000\n");
}

// ---- LIST and TABLE ----

TEST_F(VALENCE_LISTS, LIST_SHOWS_THE_PARAMETERS_AND_THEN_THE_SITES) {
  ADD_DONE();
  const std::string table = TABLE();
  EXPECT_EQ(ROWS(table, start_1), start_1 + "  0.2500     0.750\n");
  CONSOLE_TESTS::PEND("valences");
  EXPECT_EQ(SAID("si\n\n", RUN_FACETOR_LIST), parameters + ask + table + ask);
  EXPECT_TRUE(SAID("14\nsi\n\n", RUN_FACETOR_LIST).ends_with(parameters + ask + table + ask));
}

TEST_F(VALENCE_LISTS, TABLE_SHOWS_THEM_WITH_ESDS) {
  ADD_DONE();
  const std::string table = TABLE("ESD");
  EXPECT_EQ(ROWS(table, esd_start_1), esd_start_1 + "  0.250(10)  0.75(2)\n");
  CONSOLE_TESTS::PEND("valences");
  EXPECT_EQ(SAID("si\n\n", RUN_FACETOR_TABLE), parameters + ask + table + ask);
  EXPECT_TRUE(SAID("7\nsi\n\n", RUN_FACETOR_TABLE).ends_with(parameters + ask + table + ask));
}
