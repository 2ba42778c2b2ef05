// The neighbour search against plain nested loops, and the searches built on it.
#include "src/kva_crystal_structures/atom_search.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <random>

#include "foundations/XTAL_Space_Group_Tables.h"
#include "plain_loops_judge.h"
#include "structures.h"

using namespace STRUCTURES;
using PLAIN_LOOPS::EXPECT_SAME;

namespace {

CRYSTAL_STRUCTURE_TYPE QUARTZ_LIKE() {
  return MADE({4.9f, 4.9f, 5.4f}, {90, 90, 120}, "P 32 2 1",
              {{"Si1", {0.47f, 0, 0.6667f}, {0.0002f, 0, 0}},
               {"O1", {0.4135f, 0.2669f, 0.7858f}, {0.0003f, 0.0004f, 0.0002f}}});
}

}  // namespace

// ---- the search ----

TEST(DISTANCE_ARRAY, ROWS_ARE_THOSE_OF_THE_PLAIN_LOOPS_BIT_FOR_BIT) {
  std::mt19937 random(1);
  std::uniform_real_distribution<float> unit(0.0f, 1.0f);
  struct LATTICE {
    const char* SYMBOL;
    VECTOR3 LENGTHS;
    VECTOR3 ANGLES;
  };
  const std::vector<LATTICE> lattices{
      {"P 1", {5, 6, 7}, {75, 98, 110}},       {"P -1", {3, 9, 4}, {60, 70, 80}},
      {"C 2/c", {9, 8, 5}, {90, 107, 90}},     {"P n m a", {10, 6, 5}, {90, 90, 90}},
      {"I 41/a", {13, 13, 14}, {90, 90, 90}},  {"I 41/a:1", {5, 5, 11}, {90, 90, 90}},
      {"R -3 c", {5, 5, 14}, {90, 90, 120}},   {"R -3 c:R", {5, 5, 5}, {55, 55, 55}},
      {"F d -3 m:1", {8, 8, 8}, {90, 90, 90}}, {"F m -3 m", {4, 4, 4}, {90, 90, 90}}};
  for (const LATTICE& lattice : lattices) {
    std::vector<SITE> sites{{"Ca1", {0, 0, 0}}, {"O1", {0.25f, 0.25f, 0.25f}}};
    for (int i = 0; i < 4; ++i)
      sites.push_back({"O" + std::to_string(i + 2), {unit(random), unit(random), unit(random)}});
    CRYSTAL_STRUCTURE_TYPE phase = MADE(lattice.LENGTHS, lattice.ANGLES, lattice.SYMBOL, sites);
    phase.ATOM_USE(3) = ATOM_OMITTED;
    for (const char* options : {"", "OMIT", "FINDOPS", "OMIT FINDOPS"})
      for (float dmax : {0.02f, 1.0f, 2.2f, 3.5f})
        for (const VECTOR3& x : {VECTOR3{0, 0, 0}, VECTOR3{0.999f, 0.3f, -0.2f},
                                 VECTOR3{2.25f, 0.25f, 0.25f}, VECTOR3{0.5f, 0.5f, 0.5f}}) {
          EXPECT_SAME(phase, x, -0.1f, dmax, options);
          EXPECT_SAME(phase, x, 0.5f, dmax, options);
        }
  }
}

TEST(DISTANCE_ARRAY, AN_ATOM_REACHED_BY_SEVERAL_OPERATORS_COMES_ONCE_BY_THE_LOWEST) {
  const auto phase = MADE({4, 4, 4}, {90, 90, 90}, "P m -3 m", {{"Ti1", {0.5f, 0.5f, 0.5f}}});
  int count = 0;
  NEIGHBOUR_TABLE table;
  DISTANCE_ARRAY(phase, {0.5f, 0.5f, 0.5f}, -0.1f, 0.5f, count, table);
  ASSERT_EQ(count, 1);
  EXPECT_EQ(table(1, NEIGHBOUR_OPERATOR), 1.0f);
  EXPECT_EQ(table(1, NEIGHBOUR_DISTANCE), 0.0f) << "a minimum below 0 admits the point itself";
  DISTANCE_ARRAY(phase, {0.5f, 0.5f, 0.5f}, -0.1f, 0.5f, count, table, "FINDOPS");
  EXPECT_EQ(count, 20) << "every operator, up to the room there is";
}

TEST(DISTANCE_ARRAY, LIMITS_BELONG_TO_THE_RANGE) {
  const auto phase = MADE({4, 4, 4}, {90, 90, 90}, "P 1", {{"Ti1", {0, 0, 0}}});
  int count = 0;
  NEIGHBOUR_TABLE table;
  DISTANCE_ARRAY(phase, {0, 0, 0}, 4.0f, 4.0f, count, table);
  EXPECT_EQ(count, 6);
  DISTANCE_ARRAY(phase, {0, 0, 0}, 4.001f, 5.0f, count, table);
  EXPECT_EQ(count, 0);
}

TEST(DISTANCE_ARRAY, A_21ST_NEIGHBOUR_STOPS_THE_SEARCH) {
  const auto phase = MADE({2, 2, 2}, {90, 90, 90}, "P 1", {{"Ti1", {0, 0, 0}}});
  INIT_ERR_KVASTRUCTURES();
  int count = 0;
  NEIGHBOUR_TABLE table;
  DISTANCE_ARRAY(phase, {0, 0, 0}, 0.1f, 3.5f, count, table);
  EXPECT_EQ(count, 20);
  EXPECT_TRUE(WARN_KVASTRUCTURES);
  EXPECT_EQ(WARN_KVASTRUCTURES_MESS, "Too many distances around atom: try decreasing dmax-dmin");
}

TEST(DISTANCE_ARRAY, IMAGES_LESS_THAN_A_TENTH_OF_AN_ANGSTROM_APART_ARE_ONE_NEIGHBOUR) {
  // The atom at x and its image at -x, edge 10: 20 x apart.
  const auto neighbours = [](float x, std::string_view options) {
    const auto phase = MADE({10, 10, 10}, {90, 90, 90}, "P -1", {{"O1", {x, 0, 0}}});
    int count = 0;
    NEIGHBOUR_TABLE table;
    DISTANCE_ARRAY(phase, {0.1f, 0, 0}, 0.0f, 2.0f, count, table, options);
    return count;
  };
  EXPECT_EQ(neighbours(0.00495f, ""), 1) << "0.099 angstroms";
  EXPECT_EQ(neighbours(0.00495f, "FINDOPS"), 2);
  EXPECT_EQ(neighbours(0.00505f, ""), 2) << "0.101 angstroms";
}

TEST(DISTANCE_ARRAY, NO_NUMBERS_FIND_NOTHING) {
  const auto phase = QUARTZ_LIKE();
  const float nan_value = std::numeric_limits<float>::quiet_NaN();
  const float infinity = std::numeric_limits<float>::infinity();
  int count = -1;
  NEIGHBOUR_TABLE table;
  DISTANCE_ARRAY(phase, {nan_value, 0, 0}, 0.0f, 2.0f, count, table);
  EXPECT_EQ(count, 0);
  DISTANCE_ARRAY(phase, {infinity, 0, 0}, 0.0f, 2.0f, count, table);
  EXPECT_EQ(count, 0);
  DISTANCE_ARRAY(phase, {0, 0, 0}, 0.0f, nan_value, count, table);
  EXPECT_EQ(count, 0);
}

TEST(DISTANCE_ARRAY, IS_QUICK_ENOUGH_FOR_2000_ATOMS) {
  std::mt19937 random(2);
  std::uniform_real_distribution<float> unit(0.0f, 1.0f);
  CRYSTAL_STRUCTURE_TYPE phase = MADE({30, 30, 30}, {90, 90, 90}, "P 1", {{"O1", {0, 0, 0}}});
  phase.ATOM.ASSIGN(2000, phase.ATOM(1));
  phase.ATOM_USE.ASSIGN(2000, ATOM_USED);
  phase.NATOMS = 2000;
  for (ATOM_TYPE& atom : phase.ATOM) atom.X = {unit(random), unit(random), unit(random)};
  const auto start = std::chrono::steady_clock::now();
  for (int i = 1; i <= 200; ++i) FIND_ATOM(IMAGES_OF(phase), phase.ATOM(i).X);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

// ---- atoms by position ----

TEST(FIND_ATOM, AT_AN_ATOM) {
  const auto phase = QUARTZ_LIKE();
  const FOUND_ATOM found = FIND_ATOM(IMAGES_OF(phase), phase.ATOM(2).X);
  EXPECT_EQ(found.ATOM, 2);
  EXPECT_EQ(found.OPERATOR, 1);
  EXPECT_EQ(found.X, phase.ATOM(2).X);
}

TEST(FIND_ATOM, THE_POSITION_STAYS_IN_THE_CELL_OF_THE_POINT) {
  const auto phase = MADE({5, 5, 5}, {90, 90, 90}, "P 1", {{"Si1", {0, 0, 0}}});
  const FOUND_ATOM found = FIND_ATOM(IMAGES_OF(phase), {1.02f, 0, 0});
  EXPECT_EQ(found.ATOM, 1);
  EXPECT_NEAR(found.X[0], 1.0f, 1e-6f);
  const FOUND_ATOM negative = FIND_ATOM(IMAGES_OF(phase), {-2.98f, 0, 0});
  EXPECT_NEAR(negative.X[0], -3.0f, 1e-6f);
}

TEST(FIND_ATOM, OF_EQUAL_DISTANCES_THE_LOWEST_NUMBER) {
  const auto phase =
      MADE({5, 5, 5}, {90, 90, 90}, "P 1", {{"O1", {0.625f, 0, 0}}, {"O2", {0.375f, 0, 0}}});
  EXPECT_EQ(FIND_ATOM(IMAGES_OF(phase), {0.5f, 0, 0}).ATOM, 1);
}

TEST(FIND_ATOM, NOTHING_NEAR_IS_ATOM_0) {
  const auto phase = MADE({9, 9, 9}, {90, 90, 90}, "P 1", {{"Si1", {0, 0, 0}}});
  const FOUND_ATOM found = FIND_ATOM(IMAGES_OF(phase), {0.5f, 0.25f, -0.125f});
  EXPECT_EQ(found.ATOM, 0);
  EXPECT_EQ(found.X, (VECTOR3{0, 0, 0}));
  EXPECT_EQ(FIND_ATOM(IMAGES_OF(phase), {0.2f, 0, 0}, "", 2.0f).ATOM, 1) << "1.8 angstroms away";
}

TEST(FIND_ATOM, DUPLICATES_ARE_NEVER_FOUND_AND_OMITTED_ONES_WHEN_ASKED_FOR) {
  auto phase = MADE({9, 9, 9}, {90, 90, 90}, "P 1", {{"Mg1", {0, 0, 0}}, {"Fe1", {0, 0, 0}}});
  EXPECT_EQ(FIND_ATOM(IMAGES_OF(phase), {0, 0, 0}).ATOM, 1);
  phase.ATOM_USE(1) = ATOM_OMITTED;
  EXPECT_EQ(FIND_ATOM(IMAGES_OF(phase), {0, 0, 0}).ATOM, 0);
  EXPECT_EQ(FIND_ATOM(IMAGES_OF(phase), {0, 0, 0}, "omit").ATOM, 1);
}

TEST(FIND_ATOM, A_DUPLICATE_IS_NOT_FOUND_EVEN_WHERE_NOTHING_ELSE_IS) {
  auto phase = MADE({9, 9, 9}, {90, 90, 90}, "P 1", {{"Mg1", {0, 0, 0}}, {"Fe1", {0.5f, 0, 0}}});
  phase.ATOM_USE(2) = -1;
  EXPECT_EQ(FIND_ATOM(IMAGES_OF(phase), {0.5f, 0, 0}).ATOM, 0);
  EXPECT_EQ(FIND_ATOM(IMAGES_OF(phase), {0.5f, 0, 0}, "OMIT").ATOM, 0);
  phase.ATOM_USE(2) = ATOM_OMITTED;
  EXPECT_EQ(FIND_ATOM(IMAGES_OF(phase), {0.5f, 0, 0}, "OMIT").ATOM, 2);
}

// Fifty oxygens, more than a table of neighbours holds, stand within the radius: the one that lies
// at 0.3 angstroms is listed last.
TEST(FIND_ATOM, THE_NEAREST_OF_ANY_NUMBER_OF_IMAGES) {
  std::vector<SITE> sites;
  for (int i = 0; i < 49; ++i)
    sites.push_back({"O1",
                     {0.5f + 0.012f * static_cast<float>(i % 7 - 3), 0.56f,
                      0.5f + 0.012f * static_cast<float>(i / 7 - 3)}});
  sites.push_back({"O2", {0.5f, 0.53f, 0.5f}});
  const auto phase = MADE({10, 10, 10}, {90, 90, 90}, "P 1", sites);
  EXPECT_EQ(FIND_ATOM(IMAGES_OF(phase), {0.5f, 0.5f, 0.5f}, "", 2.0f).ATOM, 50);
}

// Two places 0.05 angstroms apart count as the first, but a position at the second is the second.
TEST(FIND_ATOM, A_POSITION_ON_ONE_OF_TWO_CLOSE_ATOMS_IS_THAT_ATOM) {
  const auto phase = MADE({10, 10, 10}, {90, 90, 90}, "P 1",
                          {{"O1", {0.2f, 0.2f, 0.2f}}, {"O2", {0.205f, 0.2f, 0.2f}}});
  const ATOM_IMAGES images = IMAGES_OF(phase);
  EXPECT_EQ(FIND_ATOM(images, {0.205f, 0.2f, 0.2f}).ATOM, 2);
  EXPECT_EQ(FIND_ATOM(images, {0.20505f, 0.2f, 0.2f}).ATOM, 2) << "0.0005 angstroms from it";
  EXPECT_EQ(FIND_ATOM(images, {0.2f, 0.2f, 0.2f}).ATOM, 1);
  const FOUND_ATOM between = FIND_ATOM(images, {0.204f, 0.2f, 0.2f});
  EXPECT_EQ(between.ATOM, 1) << "nearer to the second, but the two count as the first";
  EXPECT_NEAR(between.X[0], 0.2f, 1e-6f);
}

// 0.5 angstroms to each side, one of them 0.0008 angstroms nearer: equal, so the lower number.
TEST(FIND_ATOM, DISTANCES_WITHIN_A_THOUSANDTH_OF_AN_ANGSTROM_ARE_EQUAL) {
  auto phase = MADE({10, 10, 10}, {90, 90, 90}, "P 1",
                    {{"O1", {0.55f, 0.2f, 0.2f}}, {"O2", {0.45008f, 0.2f, 0.2f}}});
  EXPECT_EQ(FIND_ATOM(IMAGES_OF(phase), {0.5f, 0.2f, 0.2f}).ATOM, 1);
  phase.ATOM(2).X[0] = 0.4502f;
  EXPECT_EQ(FIND_ATOM(IMAGES_OF(phase), {0.5f, 0.2f, 0.2f}).ATOM, 2) << "0.002 nearer";
}

// An atom on the mirror x = 1/2 is its own image by several operators: the lowest counts. In a cell
// of 2 angstroms an atom 2.5 angstroms away lies behind the next cell.
TEST(FIND_ATOM, LOWEST_OPERATOR_AND_ANY_CELL) {
  const auto mirror = MADE({4, 4, 4}, {90, 90, 90}, "P m m m", {{"O1", {0.5f, 0.5f, 0.5f}}});
  EXPECT_EQ(FIND_ATOM(IMAGES_OF(mirror), {0.5f, 0.5f, 0.5f}).OPERATOR, 1);
  EXPECT_EQ(FIND_ATOM(IMAGES_OF(mirror), {0.55f, 0.5f, 0.5f}).OPERATOR, 1);
  const auto flat = MADE({2, 9, 9}, {90, 45, 90}, "P 1", {{"O1", {0.02f, 0, 0.98f}}});
  const FOUND_ATOM far = FIND_ATOM(IMAGES_OF(flat), {3.9f, 0, 0.02f}, "", 1.4f);
  EXPECT_EQ(far.ATOM, 1);
  EXPECT_NEAR(far.X[2], -0.02f, 1e-5f);
}

TEST(FIND_ATOM, LEAVES_THE_ERROR_STATE_AS_IT_IS) {
  const auto phase = MADE({9, 9, 9}, {90, 90, 90}, "P 1", {{"Si1", {0, 0, 0}}});
  INIT_ERR_KVASTRUCTURES();
  EXPECT_EQ(FIND_ATOM(IMAGES_OF(phase), {0.5f, 0, 0}).ATOM, 0);
  EXPECT_FALSE(ERR_KVASTRUCTURES) << "an atom that is not there is an answer";
  SET_WARN_KVASTRUCTURES("of the search for bonds");
  EXPECT_EQ(FIND_ATOM(IMAGES_OF(phase), {0, 0, 0}).ATOM, 1);
  EXPECT_EQ(WARN_KVASTRUCTURES_MESS, "of the search for bonds");
  INIT_ERR_KVASTRUCTURES();
}

// ---- atoms by name ----

TEST(NAMES, LABELS_MATCH_FROM_THEIR_START) {
  auto phase = MADE({9, 9, 9}, {90, 90, 90}, "P 1",
                    {{"Si1", {0, 0, 0}},
                     {"Si10", {0.5f, 0, 0}},
                     {"ASi1", {0, 0.5f, 0}},
                     {"SI1", {0, 0, 0.5f}},
                     {"Si1d", {0, 0, 0}}});
  phase.ATOM_USE(4) = ATOM_OMITTED;
  EXPECT_EQ(FIND_ALLATOMS_BY_NAME(phase, "si1"), (std::vector<int>{1, 2}));
  EXPECT_EQ(FIND_ALLATOMS_BY_NAME(phase, "Si1", "omit"), (std::vector<int>{1, 2, 4}));
  EXPECT_EQ(FIND_ALLATOMS_BY_NAME(phase, "Si1", "dup"), (std::vector<int>{1, 2, 5}));
  EXPECT_EQ(FIND_ALLATOMS_BY_NAME(phase, "Si1  "), (std::vector<int>{1, 2}));
  EXPECT_TRUE(FIND_ALLATOMS_BY_NAME(phase, "O").empty());
}

// ---- multiplicities and codes ----

TEST(MULTIPLICITIES, CENTRING_IS_NOT_COUNTED) {
  const auto primitive = MADE({5, 6, 7}, {90, 90, 90}, "P n m a",
                              {{"O1", {0.1f, 0.2f, 0.3f}}, {"O2", {0.1f, 0.25f, 0.3f}}});
  EXPECT_EQ(primitive.ATOM(1).MULT, 8);
  EXPECT_EQ(primitive.ATOM(2).MULT, 4);
  const auto centred =
      MADE({5, 5, 5}, {90, 90, 90}, "F m -3 m", {{"O1", {0.11f, 0.23f, 0.37f}}, {"O2", {0, 0, 0}}});
  EXPECT_EQ(centred.ATOM(1).MULT, 192 / 4);
  EXPECT_EQ(centred.ATOM(2).MULT, 1);
}

TEST(MULTIPLICITIES, AN_ATOM_IS_ON_A_SPECIAL_POSITION_UP_TO_0_0004_OF_AN_EDGE) {
  // The mirror of P n m a takes y to 1/2 - y: 0.0003 and 0.0005 from y.
  const auto phase = MADE({5, 6, 7}, {90, 90, 90}, "P n m a",
                          {{"O1", {0.1f, 0.25015f, 0.3f}}, {"O2", {0.4f, 0.25025f, 0.3f}}});
  EXPECT_EQ(phase.ATOM(1).MULT, 4);
  EXPECT_EQ(phase.ATOM(2).MULT, 8);
}

namespace {

// Distinct positions among the images, each compared with each; as the lattice repeats them, over
// the number of its vectors.
int COUNTED_PLAINLY(const XTAL::SPACE_GROUP& group, const VECTOR3& x) {
  constexpr double one_position = 0.0004;
  std::vector<std::array<double, 3>> positions;
  for (const XTAL::SYM_OP& op : group.SYMOP) {
    std::array<double, 3> image{};
    for (std::size_t i = 0; i < 3; ++i) {
      image[i] = static_cast<double>(op.TR[i]);
      for (std::size_t j = 0; j < 3; ++j) image[i] += op.ROT[i][j] * static_cast<double>(x[j]);
    }
    const auto is_image = [&image](const std::array<double, 3>& other) {
      double most = 0.0;
      for (std::size_t k = 0; k < 3; ++k)
        most = std::max(most, std::abs(std::remainder(image[k] - other[k], 1.0)));
      return most < one_position;
    };
    if (std::none_of(positions.begin(), positions.end(), is_image)) positions.push_back(image);
  }
  return static_cast<int>(positions.size()) / std::max(group.NUMLAT, 1);
}

}  // namespace

// Thirds of four digits and of five are equal positions within rounding of the file.
TEST(MULTIPLICITIES, ARE_WHAT_PLAIN_LOOPS_COUNT_IN_EVERY_SETTING) {
  const std::vector<SITE> sites{{"O1", {0.11f, 0.23f, 0.37f}},       {"O2", {0, 0, 0}},
                                {"O3", {0.17f, 0.17f, 0.17f}},       {"O4", {0.125f, 0, 0.25f}},
                                {"O5", {0.3333f, 0.6667f, 0.21f}},   {"O6", {0.1f, 0.2f, 0.25f}},
                                {"O7", {0.33333f, 0.66667f, 0.25f}}, {"O8", {0.25f, 0.25f, 1.25f}},
                                {"O9", {-0.3f, 0.3f, 0.5f}}};
  for (const XTAL::SPGR_INFO_TYPE& row : XTAL::SPGR_INFO) {
    const auto phase = MADE({8, 8, 8}, {90, 90, 90}, std::string(row.HM), sites);
    for (int i = 1; i <= phase.NATOMS; ++i)
      EXPECT_EQ(phase.ATOM(i).MULT, COUNTED_PLAINLY(phase.SPG, phase.ATOM(i).X))
          << row.HM << ' ' << phase.ATOM(i).LAB;
  }
}

TEST(CODES, OPERATOR_AND_NEAREST_CELLS) {
  const auto phase = MADE({5, 6, 7}, {90, 90, 90}, "P -1", {{"O1", {0.1f, 0.2f, 0.3f}}});
  EXPECT_FLOAT_EQ(SYMMETRY_CODE(phase, 1, 1, {0.1f, 0.2f, 0.3f}), 1.555f);
  EXPECT_FLOAT_EQ(SYMMETRY_CODE(phase, 1, 2, {0.9f, -0.2f, -1.3f}), 2.654f);
  EXPECT_EQ(SYMMETRY_CODE(phase, 1, 1, {99.1f, 0.2f, 0.3f}), 0.0f) << "no digit for 99 cells";
}

TEST(CODES, A_CENTRED_IMAGE_HAS_THE_OPERATOR_OF_ITS_COPY) {
  // C 2: two operators, their copies with (1/2,1/2,0) are numbers 3 and 4.
  const CRYSTAL_STRUCTURE_TYPE phase =
      MADE({5, 6, 7}, {90, 100, 90}, "C 2", {{"Si1", {0.1f, 0.2f, 0.3f}}});
  ASSERT_EQ(phase.SPG.MULTIP, 4);
  EXPECT_FLOAT_EQ(SYMMETRY_CODE(phase, 1, 1, {0.1f, 0.2f, 0.3f}), 1.555f);
  EXPECT_FLOAT_EQ(SYMMETRY_CODE(phase, 1, 1, {0.6f, 0.7f, 0.3f}), 3.555f);
  EXPECT_FLOAT_EQ(SYMMETRY_CODE(phase, 1, 1, {-0.4f, 0.7f, 1.3f}), 3.456f);
  EXPECT_FLOAT_EQ(SYMMETRY_CODE(phase, 1, 2, {0.4f, 0.7f, -0.3f}), 4.555f);
}

// Whatever the group, the operator and cell of a code bring the ligand to the end of its bond.
TEST(CODES, A_CODE_LEADS_TO_THE_LIGAND_IN_EVERY_LATTICE) {
  for (const char* symbol :
       {"P 21/c", "A m m 2", "C 2/c", "I 41/a", "F d d 2", "R -3 c", "I a -3 d", "F d -3 m"}) {
    const CRYSTAL_STRUCTURE_TYPE phase =
        MADE({6, 6, 6}, {90, 90, std::string(symbol) == "R -3 c" ? 120.0f : 90.0f}, symbol,
             {{"Si1", {0.11f, 0.23f, 0.37f}}});
    int count = 0;
    NEIGHBOUR_TABLE table;
    DISTANCE_ARRAY(phase, phase.ATOM(1).X, 0.5f, 4.0f, count, table);
    ASSERT_GT(count, 0) << symbol;
    for (int row = 1; row <= count; ++row) {
      VECTOR3 target = phase.ATOM(1).X;
      for (int k = 0; k < 3; ++k)
        target[static_cast<std::size_t>(k)] += table(row, NEIGHBOUR_VECTOR_X + k);
      const float code =
          SYMMETRY_CODE(phase, 1, static_cast<int>(table(row, NEIGHBOUR_OPERATOR)), target);
      const int op = static_cast<int>(code);
      const int digits = static_cast<int>(std::lround(1000.0f * (code - static_cast<float>(op))));
      VECTOR3 reached = XTAL::APPLY_OP(phase.SPG.SYMOP(op), phase.ATOM(1).X);
      reached[0] += static_cast<float>(digits / 100 - 5);
      reached[1] += static_cast<float>(digits / 10 % 10 - 5);
      reached[2] += static_cast<float>(digits % 10 - 5);
      for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(reached[k], target[k], 1e-4) << symbol;
    }
  }
}
