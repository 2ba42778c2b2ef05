// Which bonds, angles and axes operators make equal.
#include "src/kva_crystal_structures/equal_features.h"

#include <gtest/gtest.h>

#include "structures.h"

using namespace STRUCTURES;

namespace {

using FIRSTS = std::vector<std::size_t>;

// Bonds from atom 1 at the origin to images of atom 2 at these positions.
std::vector<FEATURE> BONDS_TO(const std::vector<VECTOR3>& positions) {
  std::vector<FEATURE> bonds;
  for (const VECTOR3& x : positions) bonds.push_back({{2, x}, {1, {0, 0, 0}}});
  return bonds;
}

const std::vector<VECTOR3> octahedron{{0.5f, 0, 0},  {-0.5f, 0, 0}, {0, 0.5f, 0},
                                      {0, -0.5f, 0}, {0, 0, 0.5f},  {0, 0, -0.5f}};

CRYSTAL_STRUCTURE_TYPE PEROVSKITE(const std::string& group) {
  return MADE({4, 4, 4}, {90, 90, 90}, group, {{"Ti1", {0, 0, 0}}, {"O1", {0.5f, 0, 0}}});
}

FIRSTS EQUALS(const std::string& group) {
  return FIRST_EQUALS(PEROVSKITE(group), BONDS_TO(octahedron), LIKENESS::EITHER_WAY);
}

}  // namespace

// The cell is a cube in all of them: the operators decide, not the lengths.
TEST(EQUAL_FEATURES, OPERATORS_DECIDE_AND_NOT_LENGTHS) {
  EXPECT_EQ(EQUALS("P m -3 m"), (FIRSTS{0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(EQUALS("P 4/m m m"), (FIRSTS{0, 0, 0, 0, 4, 4}));
  EXPECT_EQ(EQUALS("P m m m"), (FIRSTS{0, 0, 2, 2, 4, 4}));
  EXPECT_EQ(EQUALS("P 1"), (FIRSTS{0, 1, 2, 3, 4, 5}));
}

// The 12 angles of 90 degrees and the 3 of 180 in the cubic group; the pairs stand as 12, 13, 14
// ...
TEST(EQUAL_FEATURES, ANGLES_KEEP_THEIR_CENTRE) {
  std::vector<FEATURE> angles;
  for (std::size_t j = 0; j < 6; ++j)
    for (std::size_t k = j + 1; k < 6; ++k)
      angles.push_back({{2, octahedron[j]}, {1, {0, 0, 0}}, {2, octahedron[k]}});
  const FIRSTS cubic = FIRST_EQUALS(PEROVSKITE("P m -3 m"), angles, LIKENESS::EITHER_WAY);
  const FIRSTS opposite{0, 9, 14};  // 1-2, 3-4, 5-6
  for (std::size_t k = 0; k < 15; ++k) {
    const bool straight = k == opposite[0] || k == opposite[1] || k == opposite[2];
    EXPECT_EQ(cubic[k], straight ? 0u : 1u) << k;
  }
}

// A screw axis takes the bond from an atom to its image above to the one from below: the same
// length, but another end; a displacement along it is another one.
TEST(EQUAL_FEATURES, A_BOND_IS_THE_SAME_FROM_ITS_OTHER_END) {
  const CRYSTAL_STRUCTURE_TYPE chain =
      MADE({5, 6, 7}, {90, 95, 90}, "P 21", {{"Na1", {0.1f, 0.0f, 0.2f}}});
  const FEATURE_POINT atom{1, {0.1f, 0.0f, 0.2f}};
  const std::vector<FEATURE> bonds{{{1, {-0.1f, 0.5f, -0.2f}}, atom},
                                   {{1, {-0.1f, -0.5f, -0.2f}}, atom}};
  EXPECT_EQ(FIRST_EQUALS(chain, bonds, LIKENESS::EITHER_WAY), (FIRSTS{0, 0}));
  EXPECT_EQ(FIRST_EQUALS(chain, bonds, LIKENESS::IN_ORDER), (FIRSTS{0, 1}));
}

TEST(EQUAL_FEATURES, OTHER_ATOMS_AND_ABSENT_ONES_ARE_APART) {
  std::vector<FEATURE> bonds = BONDS_TO({{0.5f, 0, 0}, {-0.5f, 0, 0}, {0, 0.5f, 0}});
  bonds[1].front().ATOM = 3;
  bonds[2].clear();
  bonds.emplace_back();
  EXPECT_EQ(FIRST_EQUALS(PEROVSKITE("P m -3 m"), bonds, LIKENESS::EITHER_WAY),
            (FIRSTS{0, 1, 2, 2}));
}

// a, b, c, alpha, beta, gamma
TEST(EQUAL_FEATURES, AXES_ARE_PERMUTED_BY_OPERATORS) {
  EXPECT_EQ(FIRST_EQUAL_AXES(PEROVSKITE("P m -3 m")), (FIRSTS{0, 0, 0, 3, 3, 3}));
  EXPECT_EQ(FIRST_EQUAL_AXES(PEROVSKITE("P 4")), (FIRSTS{0, 0, 2, 3, 3, 5}));
  EXPECT_EQ(FIRST_EQUAL_AXES(PEROVSKITE("P 2 2 2")), (FIRSTS{0, 1, 2, 3, 4, 5}));
  const CRYSTAL_STRUCTURE_TYPE hexagonal =
      MADE({5, 5, 7}, {90, 90, 120}, "P 3", {{"Na1", {0.1f, 0.2f, 0.3f}}});
  EXPECT_EQ(FIRST_EQUAL_AXES(hexagonal), (FIRSTS{0, 0, 2, 3, 3, 5}));
}

// A two-fold axis along b in a cell that is not its own: it takes a to b - a, which is as long but
// no axis, b to itself and c to -c. That needs b = 2 a cos(gamma), 2/3 for 3 and 4, and not a = b.
TEST(EQUAL_FEATURES, AN_AXIS_THAT_IS_TAKEN_BETWEEN_TWO_IS_EQUAL_TO_NONE) {
  CRYSTAL_STRUCTURE_TYPE phase =
      MADE({3, 4, 5}, {90, 90, 48.18969f}, "P 2", {{"Na1", {0.1f, 0.2f, 0.3f}}});
  std::vector<XTAL::SYM_OP> operators = phase.SPG.SYMOP.ITEMS();
  ASSERT_EQ(operators.size(), 2u);
  operators[1].ROT = {{{-1, 0, 0}, {1, 1, 0}, {0, 0, -1}}};
  phase.SPG.SYMOP = operators;
  EXPECT_EQ(FIRST_EQUAL_AXES(phase), (FIRSTS{0, 1, 2, 3, 4, 5}));
}
