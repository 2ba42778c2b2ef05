// Edges of the listings: tables wider than any screen, whole lines of names, and conditions that no
// file gave an esd.
#include "facetor6_commands__list_blocks.h"

using namespace LIST_TESTS;

namespace {

class LIST_RULES : public BLOCKS {
 protected:
  static void SURROUND(int n) {
    ADD("first");
    BOND(1, std::vector<float>(static_cast<std::size_t>(n), 1.5f));
    ADD_ANGLES(1, n);
  }
};

}  // namespace

// 66 pairs: 44 + 66 * 8 columns, two blanks and 9 columns behind them, or 45 + 66 * 11 and 9 with
// esds. The last pair is 11 and 12, with the angle 100 + 11 + 12 and the edge 11 + 1.2.
TEST_F(LIST_RULES, ALL_PAIRS_OF_TWELVE_LIGANDS_STAND_IN_ONE_ROW) {
  SURROUND(12);
  const std::string angles = ROWS(SAID("", [] { FACETOR_LIST_ANGLES(1); }), start_1);
  EXPECT_EQ(angles.size(), 44u + 66 * 8 + 2 + 9 + 1);
  EXPECT_TRUE(angles.ends_with(" 121.000 122.000 123.000    12.5000\n")) << angles;
  const std::string with_esds = ROWS(SAID("", [] { FACETOR_LIST_ANGLES(1, "ESD"); }), esd_start_1);
  EXPECT_EQ(with_esds.size(), 45u + 66 * 11 + 9 + 1);
  EXPECT_TRUE(with_esds.ends_with(" 121.0(5)   122.0(5)   123.0(5)    12.5000\n")) << with_esds;
  const std::string edges = ROWS(SAID("", [] { FACETOR_LIST_EDGES(1); }), start_1);
  EXPECT_TRUE(edges.ends_with("  12.200     1.250\n")) << edges;
}

TEST_F(LIST_RULES, TWENTY_BONDS_STAND_IN_ONE_ROW) {
  SURROUND(20);
  std::string lengths;
  std::string fields;
  for (int j = 1; j <= 20; ++j) {
    lengths += "  1.5000";
    fields += "  1.500(3) ";
  }
  EXPECT_EQ(ROWS(SAID("", [] { FACETOR_LIST_BONDS(1); }), start_1),
            start_1 + lengths + "   20  1.7500   2.250\n");
  EXPECT_EQ(ROWS(SAID("", [] { FACETOR_LIST_BONDS(1, "ESD"); }), esd_start_1),
            esd_start_1 + fields + "  20  1.7500 2.250(15)\n");
}

// Ten atoms fill a line of names; a block without atoms has its line start alone.
TEST_F(LIST_RULES, NAMES_FILL_WHOLE_LINES_AND_A_BLOCK_WITHOUT_ATOMS_HAS_NONE) {
  std::vector<SITE> sites;
  std::string names;
  for (int k = 1; k <= 10; ++k) {
    sites.push_back({"O" + std::to_string(k), {0.09f * static_cast<float>(k), 0, 0}});
    names += k < 10 ? "O" + std::to_string(k) + "      " : "O10";
  }
  ADD("first", MADE({20, 20, 20}, {90, 90, 90}, "P 1", sites));
  ADD("second", MADE({20, 20, 20}, {90, 90, 90}, "P 1", {}));
  EXPECT_EQ(SAID("", [] { FACETOR_LIST_ATOMS(); }),
            "  Site names in each block, in input order\n" + start_1 +
                "\n                                  Site name: " + names + "\n" + start_2 + "\n");
}

// ---- conditions without an esd ----

// Each text has its blank first: T from column 21, P from 31.
TEST_F(LIST_RULES, CONDITIONS_WITHOUT_AN_ESD_HAVE_NO_BRACKETS) {
  ADD("first");
  PHASE(1).PT(TEMPERATURE, PT_ESD) = 0.0f;
  EXPECT_EQ(FACETOR_LINESTART(1, true), "  1: first         : 298.000   0.0001      1");
  PHASE(1).PT(PRESSURE, PT_VALUE) = 3.5f;
  EXPECT_EQ(FACETOR_LINESTART(1, true), "  1: first         : 298.000   3.50000     1");
}
