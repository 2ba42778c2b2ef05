// CALC follows the bonds of the reference block by position: how far an atom may have moved, and
// that displacement tensors turn with the images of their atoms.
#include "facetor6_commands__list_blocks.h"
#include "src/facetor6_calc/calc.h"
#include "src/facetor6_console/match_warnings.h"
#include "src/kva_crystal_structures/displacement.h"

using namespace LIST_TESTS;

namespace {

class MATCHING : public BLOCKS {
 protected:
  static void CALC() { SAID("\n", FACETOR_CALC::RUN_FACETOR_CALC_BONDS); }

  // A silicon and an oxygen atom, 1.6 angstroms apart along x unless they are moved along y.
  static void ADD_MOVED(const std::string& title, float silicon, float oxygen) {
    ADD(title, MADE({10, 10, 10}, {90, 90, 90}, "P 1",
                    {{"Si1", {0.2f, 0.2f + silicon / 10, 0.2f}},
                     {"O1", {0.36f, 0.2f + oxygen / 10, 0.2f}}}));
  }

  // What the principal axes along the cell's edges are to be.
  struct ELLIPSOID {
    VECTOR3 X;
    float U11;
    float U22;
  };

  // A silicon and an oxygen atom in a cell with a four-fold axis along z.
  static void ADD_ELLIPSOIDS(const std::string& title, float edge, const ELLIPSOID& silicon,
                             const ELLIPSOID& oxygen) {
    CRYSTAL_STRUCTURE_TYPE phase =
        MADE({edge, edge, 10}, {90, 90, 90}, "P 4", {{"Si1", silicon.X}, {"O1", oxygen.X}});
    int i = 0;
    for (const ELLIPSOID& ellipsoid : {silicon, oxygen}) {
      ATOM_TYPE& atom = phase.ATOM(++i);
      atom.THTYPE = "Aniso";
      atom.UTYPE = "u_ij";
      atom.U = {ellipsoid.U11, ellipsoid.U22, 0.16f, 0, 0, 0};
    }
    SET_ALLATOM_ADP(phase);
    ADD(title, phase);
  }
};

}  // namespace

// ---- how far an atom may have moved ----

// The shortest bond is 1.6 angstroms, nine tenths of it are 1.44. A move of 1.4 across the bond
// makes it sqrt(1.6^2 + 1.4^2) = 2.1260 angstroms long.
TEST_F(MATCHING, AN_ATOM_IS_FOLLOWED_OVER_NINE_TENTHS_OF_THE_SHORTEST_BOND) {
  ADD_MOVED("first", 0, 0);
  ADD_MOVED("second", 1.4f, 0);
  ADD_MOVED("third", 0, 1.4f);
  ADD_MOVED("fourth", 1.5f, 0);
  ADD_MOVED("fifth", 0, 1.5f);
  ADD("sixth", MADE({10, 10, 10}, {90, 90, 90}, "P 1", {}));
  CALC();
  const auto line_start = [](const std::string& number, const std::string& title) {
    return "  " + number + ": " + title + std::string(14 - title.size(), ' ') +
           ": 298.0   0.000         1";
  };
  EXPECT_EQ(ROWS(SAID("", [] { FACETOR_LIST_BONDS(1); }), start_1),
            start_1 + "   1.6000    1  1.6000   0.000\n" + start_2 +
                "   2.1260    1  2.1260   0.000\n" + start_3 + "   2.1260    1  2.1260   0.000\n" +
                line_start("4", "fourth") + no_centre + "\n" + line_start("5", "fifth") +
                " No value    0  0.0000\n" + line_start("6", "sixth") + no_centre + "\n");
}

// ---- tensors of images ----

// The bond lies along x, where the silicon has 0.01 and the oxygen 0.0225 square angstroms: root
// mean squares of 0.1 and 0.15. In the second and third block -y, x, z brings listed atoms to their
// places, which have the values along y therefore. The third block's cell is smaller.
TEST_F(MATCHING, DISPLACEMENTS_ALONG_A_BOND_ARE_THOSE_OF_THE_IMAGES) {
  ADD_ELLIPSOIDS("first", 10, {{0.1f, 0.25f, 0.3f}, 0.01f, 0.04f},
                 {{0.26f, 0.25f, 0.3f}, 0.0225f, 0.09f});
  ADD_ELLIPSOIDS("second", 10, {{0.25f, 0.9f, 0.3f}, 0.04f, 0.01f},
                 {{0.26f, 0.25f, 0.3f}, 0.0225f, 0.09f});
  ADD_ELLIPSOIDS("third", 8, {{0.1f, 0.25f, 0.3f}, 0.01f, 0.04f},
                 {{0.25f, 0.74f, 0.3f}, 0.09f, 0.0225f});
  CALC();
  for (int block = 1; block <= 3; ++block) {
    ASSERT_EQ(PHASE(block).NBONDS(1), 1) << block;
    EXPECT_NEAR(PHASE(block).BONDS(1, 1, BOND_DISPL_CENTRE), 0.1f, 1e-5f) << block;
    EXPECT_NEAR(PHASE(block).BONDS(1, 1, BOND_DISPL_LIGAND), 0.15f, 1e-5f) << block;
  }
  // 10 * 0.16 and 8 * 0.16 angstroms.
  EXPECT_EQ(ROWS(SAID("", [] { FACETOR_LIST_BONDS(1, "displ"); }), start_1),
            start_1 + "  0.1000    1  0.1000  1.6000\n" + start_2 +
                "  0.1000    1  0.1000  1.6000\n" + start_3 + "  0.1000    1  0.1000  1.2800\n");
}

// B of anisotropic atoms corrects the length as well: Beq = 8 pi^2 (U11 + U22 + U33) / 3, so that
// 3 / (8 pi^2) times the difference is that of the traces, 0.2725 - 0.21, and the length
// sqrt(1.6^2 + 0.0625) = 1.6194.
TEST_F(MATCHING, THE_RIGID_BOND_CORRECTION_TAKES_ANISOTROPIC_ATOMS) {
  ADD_ELLIPSOIDS("first", 10, {{0.1f, 0.25f, 0.3f}, 0.01f, 0.04f},
                 {{0.26f, 0.25f, 0.3f}, 0.0225f, 0.09f});
  CALC();
  EXPECT_TRUE(ROWS(SAID("", [] { FACETOR_LIST_BONDS(1, "srb"); }), start_1)
                  .starts_with(start_1 + "  1.6194    1  1.6194  1.6000"));
}

// ---- block numbers in warnings ----

TEST_F(MATCHING, BLOCK_NUMBERS_ABOVE_999_ARE_SHOWN_WHOLE) {
  for (int block = 1; block <= 1000; ++block) ADD_MOVED("one", 0, 0);
  KVA_CRYSTAL_STRUCTURES::MATCH_FAULTS faults;
  faults.SHARING = 2;
  faults.FIRST_SHARING = 1;
  const auto warn = [&](int block) {
    return SAID("", [&] { FACETOR_CONSOLE::WARN_OF_FAULTS(block, faults); });
  };
  const std::string behind = " one: 2 sites share their place with another site, first Si1\n\n";
  EXPECT_EQ(warn(7), "\n*****WARNING: In block #  7" + behind);
  EXPECT_EQ(warn(1000), "\n*****WARNING: In block #1000" + behind);
}
