// What CALC takes over from the search for the bonds, against searches at each position.
#include "src/kva_crystal_structures/coordination.h"

#include <gtest/gtest.h>

#include "random_structures.h"
#include "src/kva_crystal_structures/angles.h"
#include "src/kva_crystal_structures/bonds.h"
#include "src/kva_crystal_structures/polyhedra.h"

using namespace RANDOM_STRUCTURES;

namespace {

constexpr int structures_per_group = KVA_UTILITIES::BOUNDS_CHECKED ? 1 : 6;
constexpr float dmin = 0.5f;
constexpr float dmax = 2.6f;

void CALCULATE(CRYSTAL_STRUCTURE_TYPE& phase) {
  CALC_BONDS_ALLATOMS(phase, dmin, dmax);
  MEASURE_BLOCK(TARGETS_OF(phase), RULER_FOR(phase), phase, MATCHING_RADIUS(phase));
  CALC_ANGLES_ALLATOMS(phase);
}

// Each bond and angle of centre i as it is measured between positions alone. Returns their number.
int EXPECT_AS_BETWEEN_POSITIONS(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  int compared = 0;
  const VECTOR3 centre = CENTRE_POSITION(phase, i);
  const COORDINATIONS around = COORDINATIONS_OF(RULER_FOR(phase));
  const std::vector<PLACED_ATOM>& ligands = around.LIGANDS(i);
  const std::vector<int> present = BONDS_PRESENT(phase, i);
  for (std::size_t n = 0; n < ligands.size(); ++n) {
    const PLACED_ATOM found = ATOM_AT(around.OWN_RULER, ligands[n].X);
    EXPECT_EQ(ligands[n].ATOM, found.ATOM);
    EXPECT_EQ(ligands[n].VCV, found.VCV);
    if (n == 0) continue;
    const VALUE_ESD angle = ANGLE_AND_SIGMA_VCV(phase, centre, ligands[0].X, ligands[n].X);
    EXPECT_EQ(phase.BANGLES(i, present[0], present[n], ANGLE), angle.VALUE);
    EXPECT_EQ(phase.BANGLES(i, present[0], present[n], ANGLE_STD), angle.ESD);
    const VALUE_ESD edge = DISTANCE_AND_SIGMA_VCV(phase, ligands[0].X, ligands[n].X);
    EXPECT_EQ(phase.BANGLES(i, present[0], present[n], EDGE_STD), edge.ESD);
    ++compared;
  }
  return compared;
}

}  // namespace

TEST(COORDINATION, LIGANDS_ARE_THE_ATOMS_AT_THEIR_POSITIONS_IN_ALL_230_GROUPS) {
  LOTS lots{std::mt19937(32)};
  int compared = 0;
  for (int number = 1; number <= largest_group_number; ++number)
    for (int n = 0; n < structures_per_group; ++n) {
      CRYSTAL_STRUCTURE_TYPE phase = RANDOM_STRUCTURE(number, lots);
      CALCULATE(phase);
      for (int i = 1; i <= phase.NATOMS; ++i)
        if (phase.NBONDS(i) > 0) compared += EXPECT_AS_BETWEEN_POSITIONS(phase, i);
      if (HasFailure()) {
        ADD_FAILURE() << "group " << number << ", structure " << n;
        return;
      }
    }
  EXPECT_GT(compared, 1000 * structures_per_group);
}

// Three places of one oxygen along x, 0.095 and 0.013 angstroms apart. The search for the bonds
// lists the first and the last. At the last, the one in the middle is met first, but the position
// is that of the last: the esd of the bond is that of its x, 0.0005 of 10 angstroms.
TEST(COORDINATION, A_POSITION_ON_A_SPLIT_SITE_IS_THE_ATOM_AT_IT) {
  auto phase = MADE({10, 10, 10}, {90, 90, 90}, "P 1",
                    {{"Si1", {0.1f, 0.2f, 0.3f}},
                     {"O1", {0.25f, 0.2f, 0.3f}},
                     {"O2", {0.2595f, 0.2f, 0.3f}, {0.0009f, 0, 0}},
                     {"O3", {0.2608f, 0.2f, 0.3f}, {0.0005f, 0, 0}}});
  CALCULATE(phase);
  ASSERT_EQ(phase.NBONDS(1), 2);
  EXPECT_EQ(phase.BONDS(1, 2, BOND_LIGAND), 4.0f);
  EXPECT_NEAR(phase.BONDS(1, 2, BOND_LENGTH), 1.608f, 1e-5f);
  EXPECT_NEAR(phase.BONDS(1, 2, BOND_LENGTH_STD), 0.005f, 1e-5f);
  EXPECT_GT(EXPECT_AS_BETWEEN_POSITIONS(phase, 1), 0);
}
