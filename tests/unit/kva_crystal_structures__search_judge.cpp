// The neighbour search against the plain loops over random structures of all space groups.
#include <gtest/gtest.h>

#include <random>

#include "console_code/kva_utilities/text.h"
#include "plain_loops_judge.h"
#include "structures.h"

using namespace STRUCTURES;
using PLAIN_LOOPS::EXPECT_SAME;

namespace {

constexpr int largest_group_number = 230;
// Thousands of structures take a second, but forty times that in a build that checks everything.
constexpr int structures_per_group = KVA_UTILITIES::BOUNDS_CHECKED ? 1 : 10;
constexpr int searches_per_structure = 8;

// What is drawn by lot, the same in every run and with every library.
struct LOTS {
  std::mt19937 RANDOM;

  int BELOW(int n) { return static_cast<int>(RANDOM() % static_cast<unsigned>(n)); }
  float UNIT() { return static_cast<float>(RANDOM() >> 8) / 16777216.0f; }
  float BETWEEN(float low, float high) { return low + (high - low) * UNIT(); }
  template <std::size_t N>
  float ONE_OF(const std::array<float, N>& values) {
    return values[static_cast<std::size_t>(BELOW(static_cast<int>(N)))];
  }
};

// ---- random structures ----

struct CELL {
  VECTOR3 LENGTHS{};
  VECTOR3 ANGLES{90.0f, 90.0f, 90.0f};
};

bool SYSTEM_IS(const XTAL::SPACE_GROUP& group, std::string_view name) {
  return KVA_UTILITIES::INDEXALL(group.CRYSTALSYS, name) > 0;
}

// A cell that the group allows, from much smaller to much larger than the usual radii.
CELL RANDOM_CELL(const XTAL::SPACE_GROUP& group, LOTS& lots) {
  CELL cell;
  for (float& length : cell.LENGTHS) length = lots.BETWEEN(1.2f, 16.0f);
  if (SYSTEM_IS(group, "triclinic"))
    for (float& angle : cell.ANGLES) angle = lots.BETWEEN(65.0f, 115.0f);
  if (SYSTEM_IS(group, "mono")) cell.ANGLES[1] = lots.BETWEEN(80.0f, 130.0f);
  if (SYSTEM_IS(group, "trigonal") || SYSTEM_IS(group, "hexagonal")) cell.ANGLES[2] = 120.0f;
  const bool cubic = SYSTEM_IS(group, "cubic");
  if (cubic || !(cell.ANGLES[2] < 120.0f) || SYSTEM_IS(group, "tetragonal"))
    cell.LENGTHS[1] = cell.LENGTHS[0];
  if (cubic) cell.LENGTHS[2] = cell.LENGTHS[0];
  return cell;
}

// A coordinate on a symmetry element, on the border of the cell or close to either, or anywhere.
float RANDOM_COORDINATE(LOTS& lots) {
  constexpr std::array<float, 10> special{0.0f, 0.125f,     0.25f, 0.33333f,  0.375f,
                                          0.5f, 0.6666667f, 0.75f, 0.999999f, 0.9999999f};
  constexpr std::array<float, 4> off{0.0f, 0.0f, 1e-6f, -2e-4f};
  return lots.BELOW(2) == 0 ? lots.ONE_OF(special) + lots.ONE_OF(off) : lots.UNIT();
}

VECTOR3 RANDOM_POSITION(LOTS& lots) {
  return {RANDOM_COORDINATE(lots), RANDOM_COORDINATE(lots), RANDOM_COORDINATE(lots)};
}

CRYSTAL_STRUCTURE_TYPE RANDOM_STRUCTURE(int number, LOTS& lots) {
  constexpr int most_atoms = 5;
  const std::string symbol = std::to_string(number);
  XTAL::SPACE_GROUP group;
  XTAL::SET_SPACEGROUP(symbol, group);
  const CELL cell = RANDOM_CELL(group, lots);
  std::vector<SITE> sites;
  const int atoms = 1 + lots.BELOW(most_atoms);
  for (int i = 0; i < atoms; ++i) sites.push_back({"O" + std::to_string(i), RANDOM_POSITION(lots)});
  if (lots.BELOW(3) == 0) sites.push_back({"Si", sites[0].X});  // a mixed site
  CRYSTAL_STRUCTURE_TYPE phase = MADE(cell.LENGTHS, cell.ANGLES, symbol, sites);
  if (atoms > 1 && lots.BELOW(3) == 0) phase.ATOM_USE(2) = ATOM_OMITTED;
  return phase;
}

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
