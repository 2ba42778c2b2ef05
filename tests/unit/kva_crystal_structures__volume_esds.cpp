// The esd of a polyhedron's volume: from coordinates, from symmetry, from the cell.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "kva_crystal_structures__polyhedra.h"
#include "src/kva_crystal_structures/bonds.h"
#include "src/kva_crystal_structures/convex_hull.h"

using namespace POLYHEDRA;

TEST(VOLUME_ESDS, HAVE_THE_SPREAD_OF_RANDOM_DRAWS) {
  const VECTOR3 std{0.004f, 0.005f, 0.006f};
  const auto phase = CALCULATED(octahedron, std);
  std::mt19937 random(99);
  const auto uniform = [&random] { return (static_cast<double>(random()) + 0.5) / 4294967296.0; };
  const auto normal = [&uniform] {
    return static_cast<float>(std::sqrt(-2.0 * std::log(uniform())) *
                              std::cos(6.283185307179586 * uniform()));
  };
  double sum = 0.0;
  double sum_sq = 0.0;
  constexpr int draws = 20000;
  for (int n = 0; n < draws; ++n) {
    std::vector<VECTOR3> moved = octahedron;
    for (VECTOR3& v : moved)
      for (std::size_t k = 0; k < 3; ++k) v[k] += std[k] * normal();
    const auto volume = static_cast<double>(POLYHEDRON_VOLUME(moved, {0, 0, 0}));
    sum += volume;
    sum_sq += volume * volume;
  }
  const double mean = sum / draws;
  const auto spread = static_cast<float>(std::sqrt(sum_sq / draws - mean * mean));
  EXPECT_NEAR(POLY(phase, POLY_VOLUME_STD), spread, 0.03f * spread);
}

namespace {

// The whole polyhedron is made again by what gave its volume: pyramids where they fill the hull.
// Without correlations the variance is the sum of the squared changes of the volume.
struct MADE_AGAIN {
  float VOLUME = 0.0f;
  bool BY_PYRAMIDS = false;

  explicit MADE_AGAIN(const std::vector<VECTOR3>& ligands)
      : VOLUME(POLYHEDRON_VOLUME(ligands, {})), BY_PYRAMIDS(VOLUME == PYRAMIDS_VOLUME(ligands)) {}
  float CHANGE_SQ(const std::vector<VECTOR3>& moved) const {
    return XTAL::SQUARE((BY_PYRAMIDS ? PYRAMIDS_VOLUME(moved) : HULL_VOLUME(moved)) - VOLUME);
  }
};

// Every coordinate is moved by its esd, so far that faces come and go.
void EXPECT_ESD_OF_HULLS(std::vector<VECTOR3> ligands, const VECTOR3& std) {
  const auto phase = CALCULATED(ligands, std);
  const MADE_AGAIN hull(ligands);
  float variance = 0.0f;
  for (VECTOR3& v : ligands)
    for (std::size_t k = 0; k < 3; ++k) {
      const float old = v[k];
      v[k] += std[k];
      variance += hull.CHANGE_SQ(ligands);
      v[k] = old;
    }
  EXPECT_NEAR(POLY(phase, POLY_VOLUME), hull.VOLUME, 1e-3f);
  EXPECT_NEAR(POLY(phase, POLY_VOLUME_STD), std::sqrt(variance), 2e-3f);
}

// So many ligands at random, 2.5 angstroms away.
std::vector<VECTOR3> SOME_LIGANDS(std::size_t n, std::mt19937& random) {
  const auto uniform = [&random] { return static_cast<float>(random() % 20001) / 10000.0f - 1.0f; };
  std::vector<VECTOR3> ligands;
  while (ligands.size() < n) {
    const VECTOR3 v{uniform(), uniform(), uniform()};
    if (XTAL::LENGTH(v) > 0.3f) ligands.push_back(v);
  }
  return ON_A_SPHERE(ligands, 2.5f);
}

}  // namespace

TEST(VOLUME_ESDS, ARE_THOSE_OF_THE_HULL_MADE_AGAIN) {
  std::mt19937 random(7);
  for (std::size_t n = 4; n <= 12; ++n)
    for (int trial = 0; trial < 20; ++trial) {
      EXPECT_ESD_OF_HULLS(SOME_LIGANDS(n, random), {0.5f, 0.6f, 0.7f});
      if (HasFailure()) FAIL() << n;
    }
}

// One coordinate of one ligand after the other moves, and no other.
TEST(VOLUME_ESDS, OF_A_LIGAND_THAT_ALONE_MOVES_FAR) {
  std::mt19937 random(8);
  for (std::size_t n = 5; n <= 9; ++n)
    for (std::size_t p = 0; p < 3 * n; ++p) {
      std::vector<VECTOR3> ligands = SOME_LIGANDS(n, random);
      const MADE_AGAIN hull(ligands);
      auto phase = AROUND(ligands);
      constexpr float esd = 0.8f;
      phase.ATOM(static_cast<int>(p / 3) + 2).X_STD[p % 3] = esd / edge;
      CALC_POLYVOL_VCV(phase, 1);
      ligands[p / 3][p % 3] += esd;
      EXPECT_NEAR(POLY(phase, POLY_VOLUME_STD), std::sqrt(hull.CHANGE_SQ(ligands)), 2e-3f)
          << n << " " << p;
    }
}

// A cell whose angle alpha grows from 90 to 150 degrees brings vertices half as near to planes
// across c. One that was beyond such a plane, or within, then lies in it. Distances along c: the
// side of it is (1.386 * 0.0018) = 0.0025, then a quarter of that, where 0.001 divides.
TEST(VOLUME_ESDS, OF_A_CELL_THAT_BRINGS_A_VERTEX_INTO_A_PLANE) {
  for (const float off : {0.0018f, -0.0018f}) {
    std::vector<VECTOR3> ligands = cube;
    ligands.front()[2] += off;
    const MADE_AGAIN hull(ligands);
    auto phase = AROUND(ligands);
    const VECTOR3 angles{90, 90, 90};
    const VECTOR3 esds{60, 0, 0};
    XTAL::SET_CELL_RECORD({edge, edge, edge}, angles, phase.CELL, " ", {}, esds);
    CALC_POLYVOL_VCV(phase, 1);
    XTAL::CRYSTAL_CELL sheared;
    XTAL::SET_CELL_RECORD({edge, edge, edge}, XTAL::ADD(angles, esds), sheared, " ");
    for (VECTOR3& v : ligands)
      v = XTAL::MULTIPLY(sheared.CR_ORTH_CEL, XTAL::SCALED(v, 1.0f / edge));
    EXPECT_NEAR(POLY(phase, POLY_VOLUME_STD), std::sqrt(hull.CHANGE_SQ(ligands)), 1e-4f) << off;
  }
}

// Squares of coplanar ligands: an esd that leaves them in their plane, and one that does not.
TEST(VOLUME_ESDS, OF_HULLS_WITH_MORE_THAN_THREE_LIGANDS_IN_A_PLANE) {
  for (const std::vector<VECTOR3>& ligands : {cube, cuboctahedron, octahedron})
    for (float esd : {0.0002f, 0.02f, 0.3f}) EXPECT_ESD_OF_HULLS(ligands, {esd, 2 * esd, 3 * esd});
}

// A cell that its system would make rectangular, but which is not: without an esd anywhere the
// volume has none either.
TEST(VOLUME_ESDS, CELL_KEEPS_ITS_ANGLES) {
  for (const char* symbol : {"P 2 2 2", "P 2 3", "P 4"}) {
    auto phase = CALCULATED(ON_A_SPHERE(octahedron, 2.0f));
    XTAL::SET_CELL_RECORD({edge, edge, edge}, {90, 91, 90}, phase.CELL);
    XTAL::SET_SPACEGROUP(symbol, phase.SPG);
    CALC_POLYVOL_VCV(phase, 1);
    EXPECT_EQ(POLY(phase, POLY_VOLUME_STD), 0.0f) << symbol;
  }
}

TEST(VOLUME_ESDS, SYMMETRY_KEEPS_ITS_CORRELATIONS) {
  // BO6 of perovskite: nothing but the cell can change the volume, V = (a / 2)^3 * 4 / 3.
  auto phase =
      MADE({4, 4, 4}, {90, 90, 90}, "P m -3 m",
           {{"Ti1", {0.5f, 0.5f, 0.5f}}, {"O1", {0.5f, 0.5f, 0}}}, {0.002f, 0.002f, 0.002f});
  const BOND_EXCLUSION bondex{{true, true, true, true}};
  CALC_BONDS_ALLATOMS(phase, 0.01f, 2.2f, &bondex);
  MEASURE_BLOCK(TARGETS_OF(phase), RULER_FOR(phase), phase, MATCHING_RADIUS(phase));
  CALC_ANGLES_ALLATOMS(phase);
  CALC_POLY_ALLATOMS(phase);
  EXPECT_NEAR(POLY(phase, POLY_VOLUME), 4.0f / 3.0f * 8.0f, 1e-4f);
  // dV = V * 3 da / a.
  EXPECT_NEAR(POLY(phase, POLY_VOLUME_STD), 10.6667f * 3.0f * 0.0005f, 1e-4f);
  EXPECT_EQ(phase.BANGLES(1, 1, 2, ANGLE_STD), 0.0f) << "fixed at 90 or 180 by symmetry";
}

// Half-axes of 2 angstroms, V = 4 abc / 3: when x of one atom moves both ends of its axis,
// dV = 4 bc / 3 da.
TEST(VOLUME_ESDS, LIGANDS_THAT_ARE_IMAGES_OF_ONE_ATOM_MOVE_TOGETHER) {
  auto phase = MADE({10, 10, 10}, {90, 90, 90}, "P -1",
                    {{"Si1", {0, 0, 0}},
                     {"O1", {0.2f, 0, 0}, {0.001f, 0, 0}},
                     {"O2", {0, 0.2f, 0}},
                     {"O3", {0, 0, 0.2f}}});
  CALC_BONDS_ALLATOMS(phase, 0.01f, 2.2f);
  ASSERT_EQ(phase.NBONDS(1), 6);
  CALC_POLYVOL_VCV(phase, 1);
  EXPECT_NEAR(POLY(phase, POLY_VOLUME), 32.0f / 3.0f, 1e-4f);
  EXPECT_NEAR(POLY(phase, POLY_VOLUME_STD), 16.0f / 3.0f * 0.01f, 1e-4f);
}

// The volume goes with that of the cell. The edges are longer by 1, 2 and 3 percent: one at a time,
// all together when cubic, a with b by a's esd on axes of one length.
TEST(VOLUME_ESDS, OF_THE_CELL_BY_CRYSTAL_SYSTEM) {
  const auto relative = [](const char* symbol, float beta, const VECTOR3& length_esds,
                           const VECTOR3& angle_esds) {
    auto phase = CALCULATED(octahedron);
    XTAL::SET_CELL_RECORD({edge, edge, edge}, {90, beta, 90}, phase.CELL, " ", length_esds,
                          angle_esds);
    XTAL::SET_SPACEGROUP(symbol, phase.SPG);
    CALC_POLYVOL_VCV(phase, 1);
    return POLY(phase, POLY_VOLUME_STD) / POLY(phase, POLY_VOLUME);
  };
  const VECTOR3 percents{0.01f * edge, 0.02f * edge, 0.03f * edge};
  const float apart = std::sqrt(0.0001f + 0.0004f + 0.0009f);
  EXPECT_NEAR(relative("P 2 3", 90, percents, {}), 1.01f * 1.02f * 1.03f - 1.0f, 2e-5f);
  for (const char* symbol : {"P 4", "P 3", "P 6"})
    EXPECT_NEAR(relative(symbol, 90, percents, {}), std::hypot(1.01f * 1.01f - 1.0f, 0.03f), 2e-5f)
        << symbol;
  EXPECT_NEAR(relative("P 2 2 2", 90, percents, {}), apart, 2e-5f);
  for (const char* symbol : {"P 2", "P -1"}) {
    EXPECT_NEAR(relative(symbol, 100, percents, {}), apart, 2e-5f) << symbol;
    EXPECT_NEAR(relative(symbol, 100, {}, {0, 0.5f, 0}),
                1.0f - XTAL::SIND(100.5f) / XTAL::SIND(100), 2e-5f)
        << symbol;
  }
}
