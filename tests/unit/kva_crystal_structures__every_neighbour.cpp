// Every neighbour in range is found: in all space groups, in cells that are shorter than the range
// and oblique, against a search over all cells in 64-bit reals that shares nothing with the program
// but the operators of the group.
#include <gtest/gtest.h>

#include <algorithm>  // for max, min
#include <cmath>
#include <iostream>

#include "plain_loops.h"
#include "random_structures.h"
#include "src/kva_crystal_structures/bonds.h"

using namespace RANDOM_STRUCTURES;

namespace {

using WIDE3 = std::array<double, 3>;

constexpr double pi = 3.14159265358979323846;

// ---- the judge ----

// Squared lengths by the law of cosines, straight from the six parameters.
struct WIDE_CELL {
  WIDE3 EDGE{};
  WIDE3 COSINE{};

  double SQUARE(const WIDE3& v) const {
    const WIDE3 w{v[0] * EDGE[0], v[1] * EDGE[1], v[2] * EDGE[2]};
    return w[0] * w[0] + w[1] * w[1] + w[2] * w[2] +
           2.0 * (w[1] * w[2] * COSINE[0] + w[0] * w[2] * COSINE[1] + w[0] * w[1] * COSINE[2]);
  }

  // Distance of the lattice planes across axis k: volume over the area of the other two edges.
  double PLANE_DISTANCE(std::size_t k) const {
    const double volume_sq = 1.0 - COSINE[0] * COSINE[0] - COSINE[1] * COSINE[1] -
                             COSINE[2] * COSINE[2] + 2.0 * COSINE[0] * COSINE[1] * COSINE[2];
    return EDGE[k] * std::sqrt(volume_sq / (1.0 - COSINE[k] * COSINE[k]));
  }
};

WIDE_CELL WIDE(const XTAL::CRYSTAL_CELL& cell) {
  WIDE_CELL wide;
  for (std::size_t k = 0; k < 3; ++k) {
    wide.EDGE[k] = static_cast<double>(cell.CELL[k]);
    wide.COSINE[k] = std::cos(static_cast<double>(cell.ANG[k]) * pi / 180.0);
  }
  return wide;
}

struct NEIGHBOUR {
  int ATOM = 0;
  WIDE3 V{};
};

// All atoms around atom i, and whether the answer hangs on rounding: something lies so close to a
// limit, or to something else without being at its place, that it may count or not. What is too
// crowded is unclear as well.
struct AROUND {
  std::vector<NEIGHBOUR> NEIGHBOURS;
  bool UNCLEAR = false;
};

void TAKE(const WIDE_CELL& cell, const NEIGHBOUR& candidate, AROUND& around) {
  for (const NEIGHBOUR& known : around.NEIGHBOURS) {
    const double apart = std::sqrt(cell.SQUARE(
        {candidate.V[0] - known.V[0], candidate.V[1] - known.V[1], candidate.V[2] - known.V[2]}));
    if (apart > 0.15) continue;
    around.UNCLEAR = around.UNCLEAR || apart > 0.0002 || candidate.ATOM != known.ATOM;
    return;
  }
  around.NEIGHBOURS.push_back(candidate);
}

AROUND ALL_AROUND(const CRYSTAL_STRUCTURE_TYPE& phase, int i, double dmin, double dmax) {
  constexpr double clear = 0.005;  // angstroms from a limit
  constexpr std::size_t too_many = 60;
  const WIDE_CELL cell = WIDE(phase.CELL);
  std::array<int, 3> cells{};
  for (std::size_t k = 0; k < 3; ++k)
    cells[k] = static_cast<int>(dmax / cell.PLANE_DISTANCE(k)) + 3;
  AROUND around;
  for (int atom = 1; atom <= phase.NATOMS; ++atom)
    for (const XTAL::SYM_OP& op : phase.SPG.SYMOP) {
      WIDE3 from{};
      for (std::size_t r = 0; r < 3; ++r) {
        double x = static_cast<double>(op.TR[r]);
        for (std::size_t c = 0; c < 3; ++c)
          x += op.ROT[r][c] * static_cast<double>(phase.ATOM(atom).X[c]);
        x -= static_cast<double>(phase.ATOM(i).X[r]);
        from[r] = x - std::floor(x);
      }
      for (int t1 = -cells[0]; t1 <= cells[0]; ++t1)
        for (int t2 = -cells[1]; t2 <= cells[1]; ++t2)
          for (int t3 = -cells[2]; t3 <= cells[2]; ++t3) {
            const WIDE3 v{from[0] + t1, from[1] + t2, from[2] + t3};
            const double d = std::sqrt(cell.SQUARE(v));
            around.UNCLEAR = around.UNCLEAR || std::abs(d - dmin) < clear ||
                             std::abs(d - dmax) < clear || around.NEIGHBOURS.size() > too_many;
            if (around.UNCLEAR) return around;
            if (d >= dmin && d <= dmax) TAKE(cell, {atom, v}, around);
          }
    }
  return around;
}

// ---- structures by lot ----

struct SETTING {
  std::string SYMBOL;
  bool RHOMBOHEDRAL_AXES = false;
};

std::vector<SETTING> ALL_SETTINGS() {
  std::vector<SETTING> settings;
  for (int number = 1; number <= largest_group_number; ++number)
    settings.push_back({std::to_string(number)});
  for (const char* symbol :
       {"R 3:R", "R -3:R", "R 3 2:R", "R 3 m:R", "R 3 c:R", "R -3 m:R", "R -3 c:R"})
    settings.push_back({symbol, true});
  return settings;
}

// Edges of 2 to 5 angstroms, with angles as oblique as the group allows.
CELL SHORT_CELL(const SETTING& setting, LOTS& lots) {
  XTAL::SPACE_GROUP group;
  XTAL::SET_SPACEGROUP(setting.SYMBOL, group);
  CELL cell = RANDOM_CELL(group, lots);
  for (float& edge : cell.LENGTHS) edge = lots.BETWEEN(2.0f, 5.0f);
  if (SYSTEM_IS(group, XTAL::SYSTEM::TRICLINIC))
    for (float& angle : cell.ANGLES) angle = lots.BETWEEN(60.0f, 115.0f);
  if (SYSTEM_IS(group, XTAL::SYSTEM::MONOCLINIC)) cell.ANGLES[1] = lots.BETWEEN(60.0f, 135.0f);
  const bool cubic = SYSTEM_IS(group, XTAL::SYSTEM::CUBIC) || setting.RHOMBOHEDRAL_AXES;
  if (cubic || !(cell.ANGLES[2] < 120.0f) || SYSTEM_IS(group, XTAL::SYSTEM::TETRAGONAL))
    cell.LENGTHS[1] = cell.LENGTHS[0];
  if (cubic) cell.LENGTHS[2] = cell.LENGTHS[0];
  if (setting.RHOMBOHEDRAL_AXES) {
    const float angle = lots.BETWEEN(50.0f, 110.0f);
    cell.ANGLES = {angle, angle, angle};
  }
  return cell;
}

// On symmetry elements more often than not, as crowded cells are full otherwise.
VECTOR3 PLACE(LOTS& lots) {
  constexpr std::array<float, 8> special{0.0f,  0.0f,        0.25f,      0.5f,
                                         0.75f, 0.33333334f, 0.6666667f, 0.125f};
  VECTOR3 x{};
  for (float& coordinate : x) coordinate = lots.BELOW(4) == 0 ? lots.UNIT() : lots.ONE_OF(special);
  return x;
}

CRYSTAL_STRUCTURE_TYPE SHORT_STRUCTURE(const SETTING& setting, LOTS& lots) {
  const CELL cell = SHORT_CELL(setting, lots);
  std::vector<SITE> sites;
  for (int n = 1 + lots.BELOW(2); n > 0; --n)
    sites.push_back({"O" + std::to_string(n), PLACE(lots)});
  return MADE(cell.LENGTHS, cell.ANGLES, setting.SYMBOL, sites);
}

// ---- the comparison ----

bool IS_ROW(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int j, const NEIGHBOUR& neighbour) {
  constexpr double same = 0.001;  // angstroms
  const VECTOR3 v = phase.BONDS.VECTOR(i, j);
  const WIDE3 apart{neighbour.V[0] - static_cast<double>(v[0]),
                    neighbour.V[1] - static_cast<double>(v[1]),
                    neighbour.V[2] - static_cast<double>(v[2])};
  return phase.BONDS.LIGAND(i, j) == neighbour.ATOM && WIDE(phase.CELL).SQUARE(apart) < same * same;
}

// Each row is a neighbour, no two the same; with room for all of them, each neighbour is a row.
void EXPECT_ROWS_ARE(const CRYSTAL_STRUCTURE_TYPE& phase, int i, const AROUND& around) {
  const int all = static_cast<int>(around.NEIGHBOURS.size());
  ASSERT_EQ(phase.NBONDS(i), std::min(all, MAX_BONDS)) << phase.SPG.SPG_SYMB;
  std::vector<int> rows_of(around.NEIGHBOURS.size(), 0);
  for (int j = 1; j <= phase.NBONDS(i); ++j) {
    int neighbours_of_row = 0;
    for (std::size_t n = 0; n < around.NEIGHBOURS.size(); ++n)
      if (IS_ROW(phase, i, j, around.NEIGHBOURS[n])) {
        ++neighbours_of_row;
        ++rows_of[n];
      }
    EXPECT_EQ(neighbours_of_row, 1) << phase.SPG.SPG_SYMB;
  }
  for (int rows : rows_of) EXPECT_LE(rows, 1) << phase.SPG.SPG_SYMB;
}

// The rows of the search over the next cells stand first, in their order.
void EXPECT_OLD_ROWS_FIRST(const CRYSTAL_STRUCTURE_TYPE& phase, int i, float dmin, float dmax) {
  const PLAIN_LOOPS::QUESTION asked{XTAL::MODULO_LAT(phase.ATOM(i).X), dmin, dmax};
  PLAIN_LOOPS::NEIGHBOURS old;
  PLAIN_LOOPS::ADD_PASS(phase, asked, PLAIN_LOOPS::PASS::NEXT, old);
  ASSERT_LE(old.COUNT, phase.NBONDS(i));
  for (int j = 1; j <= old.COUNT; ++j) {
    const auto& row = old.ROWS[static_cast<std::size_t>(j - 1)];
    EXPECT_EQ(phase.BONDS.VECTOR(i, j), (VECTOR3{row[1], row[2], row[3]}));
    EXPECT_EQ(phase.BONDS(i, j, BOND_LIGAND), row[4]);
    EXPECT_EQ(phase.BONDS(i, j, BOND_OPERATOR), row[5]);
  }
}

struct TALLY {
  int COMPARED = 0;        // centres with all their neighbours
  int BEYOND = 0;          // of them, those that have some behind the next cells
  int BEYOND_CENTRED = 0;  // of them, those in centred groups
};

// Compares the bonds of one structure; nothing is counted where rounding decides.
void COMPARE(CRYSTAL_STRUCTURE_TYPE& phase, float dmin, float dmax, TALLY& tally) {
  CALC_BONDS_ALLATOMS(phase, dmin, dmax);
  for (int i = 1; i <= phase.NATOMS; ++i) {
    if (phase.ATOM_USE(i) != ATOM_USED) continue;
    const AROUND around =
        ALL_AROUND(phase, i, static_cast<double>(dmin), static_cast<double>(dmax));
    if (around.UNCLEAR) continue;
    EXPECT_ROWS_ARE(phase, i, around);
    EXPECT_OLD_ROWS_FIRST(phase, i, dmin, dmax);
    if (around.NEIGHBOURS.size() > MAX_BONDS) continue;
    PLAIN_LOOPS::NEIGHBOURS next;
    PLAIN_LOOPS::ADD_PASS(phase, {XTAL::MODULO_LAT(phase.ATOM(i).X), dmin, dmax},
                          PLAIN_LOOPS::PASS::NEXT, next);
    const bool beyond = next.COUNT < phase.NBONDS(i);
    ++tally.COMPARED;
    tally.BEYOND += beyond ? 1 : 0;
    tally.BEYOND_CENTRED += beyond && phase.SPG.NUMLAT > 1 ? 1 : 0;
  }
}

}  // namespace

TEST(EVERY_NEIGHBOUR, IS_FOUND_IN_ALL_GROUPS_AND_SHORT_CELLS) {
  constexpr int wanted = KVA_UTILITIES::BOUNDS_CHECKED ? 1 : 3;
  constexpr int most_structures = 300;  // crowded cells give few that can be compared
  LOTS lots{std::mt19937(2026)};
  TALLY all;
  for (const SETTING& setting : ALL_SETTINGS()) {
    TALLY here;
    for (int n = 0; n < most_structures && here.COMPARED < wanted; ++n) {
      CRYSTAL_STRUCTURE_TYPE phase = SHORT_STRUCTURE(setting, lots);
      const VECTOR3& edges = phase.CELL.CELL;
      const float shortest = std::min({edges[0], edges[1], edges[2]});
      // From the shortest distances on, or a shell further out.
      const bool shell = lots.BELOW(2) == 0;
      const float dmax = shortest * lots.BETWEEN(shell ? 1.0f : 0.4f, shell ? 2.5f : 1.6f);
      COMPARE(phase, shell ? dmax - lots.BETWEEN(0.1f, 0.5f) : 0.5f, dmax, here);
      ASSERT_FALSE(HasFailure()) << setting.SYMBOL << ", structure " << n;
    }
    EXPECT_GT(here.COMPARED, 0) << setting.SYMBOL;
    all.COMPARED += here.COMPARED;
    all.BEYOND += here.BEYOND;
    all.BEYOND_CENTRED += here.BEYOND_CENTRED;
  }
  std::cout << all.COMPARED << " centres with all their neighbours, " << all.BEYOND
            << " of them behind the next cells\n";
  EXPECT_GT(all.COMPARED, 230 * wanted);
  EXPECT_GT(all.BEYOND, 20 * wanted);
  EXPECT_GT(all.BEYOND_CENTRED, 10 * wanted);
}

// The magnesium of a carbonate in R -3, at 0, 0, z = 0 of hexagonal axes, has six oxygens at one
// distance by its three-fold axis and its centre of symmetry: two of them lie behind the next
// cells.
TEST(EVERY_NEIGHBOUR, SIX_OXYGENS_AROUND_A_CENTRE_OF_R_3_BAR) {
  CRYSTAL_STRUCTURE_TYPE phase = MADE({4.8f, 4.8f, 16.0f}, {90, 90, 120}, "R -3",
                                      {{"Mg1", {0, 0, 0}}, {"O1", {0.248f, -0.035f, 0.244f}}});
  CALC_BONDS_ALLATOMS(phase, 0.01f, 2.6f);
  ASSERT_EQ(phase.NBONDS(1), 6);
  for (int j = 2; j <= 6; ++j)
    EXPECT_NEAR(phase.BONDS(1, j, BOND_LENGTH), phase.BONDS(1, 1, BOND_LENGTH), 1e-4f);
}

// A cubic cell of 2 angstroms up to 4.5: 6 at 2, 12 at 2.83, then more than the table holds.
TEST(EVERY_NEIGHBOUR, COUNTS_UP_TO_THE_ROOM_OF_THE_TABLE) {
  CRYSTAL_STRUCTURE_TYPE phase = MADE({2, 2, 2}, {90, 90, 90}, "P 1", {{"Cu1", {0.9f, 0, 0.4f}}});
  CALC_BONDS_ALLATOMS(phase, 3.9f, 4.1f);
  EXPECT_EQ(phase.NBONDS(1), 6) << "two cells away along each edge";
  CALC_BONDS_ALLATOMS(phase, 2.9f, 4.1f);
  EXPECT_EQ(phase.NBONDS(1), 14) << "and the corners of the cube";
  EXPECT_FALSE(WARN_KVASTRUCTURES);
  CALC_BONDS_ALLATOMS(phase, 0.1f, 4.1f);
  EXPECT_EQ(phase.NBONDS(1), MAX_BONDS);
  EXPECT_EQ(WARN_KVASTRUCTURES_MESS, "Too many distances around atom: try decreasing dmax-dmin");
}

// No search goes on for ever: behind twenty cells it ends and says so.
TEST(EVERY_NEIGHBOUR, A_RANGE_OF_HUNDREDS_OF_CELLS_ENDS) {
  CRYSTAL_STRUCTURE_TYPE phase = MADE({2, 2, 2}, {90, 90, 90}, "P 1", {{"Cu1", {0, 0, 0}}});
  CALC_BONDS_ALLATOMS(phase, 39.9999f, 40.0001f);
  EXPECT_GE(phase.NBONDS(1), 6) << "twenty cells along each edge";
  CALC_BONDS_ALLATOMS(phase, 4999.0f, 5000.0f);
  EXPECT_EQ(phase.NBONDS(1), 0);
  EXPECT_EQ(WARN_KVASTRUCTURES_MESS,
            "dmax reaches over more cells than are searched: try decreasing dmax");
}
