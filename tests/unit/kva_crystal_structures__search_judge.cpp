// The neighbour search against the plain loops over random structures of all space groups.
#include <gtest/gtest.h>

#include <random>

#include "plain_loops_judge.h"
#include "random_structures.h"

using namespace RANDOM_STRUCTURES;
using PLAIN_LOOPS::EXPECT_SAME;

namespace {

// Thousands of structures take a second, but forty times that in a build that checks everything.
constexpr int structures_per_group = KVA_UTILITIES::BOUNDS_CHECKED ? 1 : 3;
constexpr int searches_per_structure = 8;

// ---- random searches ----

// At an atom or near it, on a special position, on the border, cells away, or far out.
VECTOR3 RANDOM_POINT(const CRYSTAL_STRUCTURE_TYPE& phase, LOTS& lots) {
  constexpr std::array<float, 6> whole_cells{0.0f, 1.0f, -1.0f, -7.0f, 123.0f, 40000.0f};
  VECTOR3 x =
      lots.BELOW(2) == 0 ? phase.ATOM(1 + lots.BELOW(phase.NATOMS)).X : RANDOM_POSITION(lots);
  const float shift = lots.BELOW(3) == 0 ? 0.003f : 0.0f;
  for (float& coordinate : x)
    coordinate +=
        lots.BETWEEN(-shift, shift) + (lots.BELOW(3) == 0 ? lots.ONE_OF(whole_cells) : 0.0f);
  return x;
}

// From what counts as one position to beyond the cell.
float RANDOM_RADIUS(const CRYSTAL_STRUCTURE_TYPE& phase, LOTS& lots) {
  constexpr std::array<float, 7> fixed{0.0f, 0.02f, 0.1f, 0.5f, 1.4f, 2.2f, 3.0f};
  constexpr std::array<float, 5> edges{0.45f, 0.55f, 1.0f, 1.5f, 3.5f};
  return lots.BELOW(4) == 0 ? lots.ONE_OF(edges) * phase.CELL.CELL[0] : lots.ONE_OF(fixed);
}

}  // namespace

TEST(DISTANCE_ARRAY_AND_PLAIN_LOOPS, AGREE_BIT_FOR_BIT_IN_ALL_230_GROUPS) {
  constexpr std::array<float, 4> least{-0.1f, 0.0f, 0.01f, 0.8f};
  const std::array<std::string, 4> options{"", "OMIT", "FINDOPS", "OMIT FINDOPS"};
  LOTS lots{std::mt19937(230)};
  int rows = 0;
  for (int number = 1; number <= largest_group_number; ++number)
    for (int n = 0; n < structures_per_group; ++n) {
      const CRYSTAL_STRUCTURE_TYPE phase = RANDOM_STRUCTURE(number, lots);
      ASSERT_GT(phase.SPG.MULTIP, 0) << number;
      const ATOM_IMAGES images = IMAGES_OF(phase);
      for (int s = 0; s < searches_per_structure; ++s)
        rows += EXPECT_SAME(images, RANDOM_POINT(phase, lots), lots.ONE_OF(least),
                            RANDOM_RADIUS(phase, lots), options[static_cast<std::size_t>(s % 4)]);
      if (HasFailure()) return;
    }
  EXPECT_GT(rows, 1000 * structures_per_group) << "searches that find nothing prove nothing";
}

// The images stay right when atoms are taken out of use and back.
TEST(DISTANCE_ARRAY_AND_PLAIN_LOOPS, USE_FLAGS_COUNT_AS_THEY_ARE_WHEN_SEARCHING) {
  CRYSTAL_STRUCTURE_TYPE phase =
      MADE({5, 6, 7}, {90, 90, 90}, "P n m a",
           {{"Si1", {0.1f, 0.25f, 0.3f}}, {"O1", {0.2f, 0.1f, 0.3f}}, {"O2", {0.4f, 0.25f, 0.6f}}});
  const ATOM_IMAGES images = IMAGES_OF(phase);
  EXPECT_SAME(images, phase.ATOM(1).X, 0.01f, 3.0f, "");
  phase.ATOM_USE(2) = ATOM_OMITTED;
  EXPECT_SAME(images, phase.ATOM(1).X, 0.01f, 3.0f, "");
  EXPECT_SAME(images, phase.ATOM(1).X, 0.01f, 3.0f, "OMIT");
}

// Coordinates that are no numbers have no box: the search must still end, and find what loops find.
TEST(DISTANCE_ARRAY_AND_PLAIN_LOOPS, AN_ATOM_WITHOUT_A_POSITION_HIDES_NO_OTHER) {
  CRYSTAL_STRUCTURE_TYPE phase = MADE({8, 9, 10}, {90, 90, 90}, "P 1",
                                      {{"Si1", {0.1f, 0.1f, 0.1f}}, {"O1", {0.2f, 0.1f, 0.1f}}});
  phase.ATOM(1).X[0] = std::numeric_limits<float>::quiet_NaN();
  int count = 0;
  NEIGHBOUR_TABLE table;
  DISTANCE_ARRAY(phase, {0.2f, 0.1f, 0.1f}, -0.1f, 0.5f, count, table);
  const PLAIN_LOOPS::NEIGHBOURS judge =
      PLAIN_LOOPS::SEARCH(phase, {0.2f, 0.1f, 0.1f}, -0.1f, 0.5f, false, false);
  ASSERT_EQ(count, judge.COUNT);
  for (int r = 1; r <= count; ++r)
    EXPECT_EQ(table(r, NEIGHBOUR_ATOM), judge.ROWS[static_cast<std::size_t>(r - 1)][4]);
}

// A radius of nothing, below nothing, without end, or none at all.
TEST(DISTANCE_ARRAY_AND_PLAIN_LOOPS, STRANGE_RADII) {
  const CRYSTAL_STRUCTURE_TYPE phase =
      MADE({5, 6, 7}, {80, 95, 110}, "P -1", {{"Si1", {0, 0, 0}}, {"O1", {0.2f, 0.3f, 0.4f}}});
  for (float dmax : {0.0f, -1.0f, -1e30f, 1e30f, std::numeric_limits<float>::infinity(),
                     -std::numeric_limits<float>::infinity()})
    for (float dmin : {-1.0f, 0.0f, 3.0f}) EXPECT_SAME(phase, {0.2f, 0.3f, 0.4f}, dmin, dmax, "");
}
