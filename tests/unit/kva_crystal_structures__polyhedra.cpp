// Polyhedra: exact solids, degenerate ones, published and drawn values.
#include "src/kva_crystal_structures/polyhedra.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "src/kva_crystal_structures/bonds.h"
#include "src/kva_crystal_structures/sphere_fit.h"
#include "src/kva_crystal_structures/uncertainty.h"
#include "structures.h"

using namespace STRUCTURES;

namespace {

// A centre of the origin with ligands at Cartesian places, in a large cubic cell without symmetry.
constexpr float edge = 40.0f;

CRYSTAL_STRUCTURE_TYPE AROUND(const std::vector<VECTOR3>& ligands_cart, const VECTOR3& std = {}) {
  std::vector<SITE> sites{{"Si1", {0.5f, 0.5f, 0.5f}}};
  for (const VECTOR3& v : ligands_cart)
    sites.push_back({"O" + std::to_string(sites.size()),
                     {0.5f + v[0] / edge, 0.5f + v[1] / edge, 0.5f + v[2] / edge},
                     {std[0] / edge, std[1] / edge, std[2] / edge}});
  auto phase = MADE({edge, edge, edge}, {90, 90, 90}, "P 1", sites);
  phase.NBONDS(1) = static_cast<int>(ligands_cart.size());
  phase.BOND_CEN(1, CENTRE_ATOM) = 1;
  for (int k = 0; k < 3; ++k) phase.BOND_CEN(1, CENTRE_X + k) = 0.5f;
  for (int j = 1; j <= phase.NBONDS(1); ++j) {
    const VECTOR3 v = XTAL::SUBTRACT(phase.ATOM(j + 1).X, phase.ATOM(1).X);
    phase.BONDS(1, j, BOND_CENTRE) = 1;
    phase.BONDS(1, j, BOND_LENGTH) = CRYST_DIST(v, phase.CELL.GD);
    phase.BONDS(1, j, BOND_LENGTH_SRB) = phase.BONDS(1, j, BOND_LENGTH);
    phase.BONDS(1, j, BOND_LIGAND) = static_cast<float>(j + 1);
    for (int k = 0; k < 3; ++k)
      phase.BONDS(1, j, BOND_VECTOR_X + k) = v[static_cast<std::size_t>(k)];
  }
  return phase;
}

CRYSTAL_STRUCTURE_TYPE CALCULATED(const std::vector<VECTOR3>& ligands, const VECTOR3& std = {}) {
  auto phase = AROUND(ligands, std);
  CALC_ANGLES_ALLATOMS(phase);
  CALC_POLY_ALLATOMS(phase);
  return phase;
}

// All sign changes of a vertex and, cyclic, of its axes.
std::vector<VECTOR3> SIGNED(const std::vector<VECTOR3>& vertices) {
  std::vector<VECTOR3> all;
  for (const VECTOR3& v : vertices)
    for (int signs = 0; signs < 8; ++signs) {
      VECTOR3 w = v;
      bool wanted = true;
      for (std::size_t k = 0; k < 3; ++k)
        if (((signs >> k) & 1) != 0) {
          wanted = wanted && v[k] != 0.0f;
          w[k] = -w[k];
        }
      if (wanted) all.push_back(w);
    }
  return all;
}

std::vector<VECTOR3> SCALED(std::vector<VECTOR3> vertices, float radius) {
  for (VECTOR3& v : vertices) {
    const float length = XTAL::LENGTH(v);
    for (float& x : v) x *= radius / length;
  }
  return vertices;
}

const std::vector<VECTOR3> tetrahedron =
    SCALED({{1, 1, 1}, {1, -1, -1}, {-1, 1, -1}, {-1, -1, 1}}, 1.6f);
const std::vector<VECTOR3> octahedron = SCALED(SIGNED({{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}), 2.0f);
const std::vector<VECTOR3> cube = SCALED(SIGNED({{1, 1, 1}}), 2.4f);
const std::vector<VECTOR3> cuboctahedron = SCALED(SIGNED({{1, 1, 0}, {1, 0, 1}, {0, 1, 1}}), 2.8f);
const float golden = (1.0f + std::sqrt(5.0f)) / 2.0f;
const std::vector<VECTOR3> icosahedron =
    SCALED(SIGNED({{0, 1, golden}, {1, golden, 0}, {golden, 0, 1}}), 2.7f);

float POLY(const CRYSTAL_STRUCTURE_TYPE& phase, int column) {
  return phase.POLYHEDRON(1, column);
}

}  // namespace

// ---- exact solids ----

TEST(SOLIDS, TETRAHEDRON) {
  const auto phase = CALCULATED(tetrahedron);
  // V = 8 r^3 / (9 sqrt 3).
  EXPECT_NEAR(POLY(phase, POLY_VOLUME), 8.0f * 1.6f * 1.6f * 1.6f / (9.0f * std::sqrt(3.0f)),
              2e-4f);
  EXPECT_NEAR(POLY(phase, POLY_ELONGATION), 1.0f, 2e-5f);
  EXPECT_NEAR(POLY(phase, POLY_VARIANCE), 0.0f, 1e-3f);
  EXPECT_NEAR(POLY(phase, POLY_MEAN_EDGE), 1.6f * std::sqrt(8.0f / 3.0f), 1e-4f);
  EXPECT_NEAR(POLY(phase, POLY_DELTA), 0.0f, 1e-4f);
  EXPECT_NEAR(POLY(phase, POLY_RADIUS), 1.6f, 1e-5f);
  EXPECT_EQ(POLY(phase, POLY_RADIUS_SDEV), 0.0f) << "four points always lie on a sphere";
  EXPECT_NEAR(POLY(phase, POLY_IDEAL_VOLUME), POLY(phase, POLY_VOLUME), 1e-3f);
  EXPECT_NEAR(POLY(phase, POLY_VOLUME_SRB), POLY(phase, POLY_VOLUME), 1e-5f);
}

TEST(SOLIDS, OCTAHEDRON) {
  const auto phase = CALCULATED(octahedron);
  EXPECT_NEAR(POLY(phase, POLY_VOLUME), 4.0f / 3.0f * 8.0f, 1e-4f);
  EXPECT_NEAR(POLY(phase, POLY_ELONGATION), 1.0f, 1e-5f);
  EXPECT_NEAR(POLY(phase, POLY_VARIANCE), 0.0f, 1e-4f);
  EXPECT_NEAR(POLY(phase, POLY_MEAN_EDGE), 2.0f * std::sqrt(2.0f), 1e-5f);
  EXPECT_NEAR(POLY(phase, POLY_DELTA), 0.0f, 1e-5f);
  EXPECT_NEAR(POLY(phase, POLY_RADIUS), 2.0f, 1e-6f);
  EXPECT_NEAR(POLY(phase, POLY_IDEAL_VOLUME), 1.33333f * 8.0f, 1e-4f);
}

TEST(SOLIDS, FACES_OF_FOUR_CORNERS_COUNT_ONCE) {
  // Cube of half-diagonal r: edge 2 r / sqrt 3.
  const float cube_edge = 2.0f * 2.4f / std::sqrt(3.0f);
  EXPECT_NEAR(POLY(CALCULATED(cube), POLY_VOLUME), cube_edge * cube_edge * cube_edge, 1e-3f);
  // Cuboctahedron with edge r: 5 sqrt 2 / 3 r^3.
  EXPECT_NEAR(POLY(CALCULATED(cuboctahedron), POLY_VOLUME),
              5.0f * std::sqrt(2.0f) / 3.0f * 2.8f * 2.8f * 2.8f, 2e-3f);
  // Square antiprism of edge 1: V = sqrt(4 + 3 sqrt 2) / 3; height of the squares 2^(-1/4).
  const float h = 0.5f / std::pow(2.0f, 0.25f);
  std::vector<VECTOR3> antiprism;
  const float q = std::sqrt(0.5f);
  for (const auto& v : {VECTOR3{0.5f, 0.5f, h},
                        {0.5f, -0.5f, h},
                        {-0.5f, 0.5f, h},
                        {-0.5f, -0.5f, h},
                        {q, 0, -h},
                        {-q, 0, -h},
                        {0, q, -h},
                        {0, -q, -h}})
    antiprism.push_back({2 * v[0], 2 * v[1], 2 * v[2]});
  EXPECT_NEAR(POLY(CALCULATED(antiprism), POLY_VOLUME),
              8.0f * std::sqrt(4.0f + 3.0f * std::sqrt(2.0f)) / 3.0f, 1e-3f);
}

TEST(SOLIDS, ICOSAHEDRON) {
  const auto phase = CALCULATED(icosahedron);
  // Edge a = r / sin(2 pi / 5); V = 5 (3 + sqrt 5) a^3 / 12.
  const float a = 2.7f / std::sin(1.2566371f);
  EXPECT_NEAR(POLY(phase, POLY_VOLUME), 5.0f * (3.0f + std::sqrt(5.0f)) / 12.0f * a * a * a, 2e-3f);
  EXPECT_NEAR(POLY(phase, POLY_IDEAL_VOLUME), POLY(phase, POLY_VOLUME), 3e-3f);
  EXPECT_NEAR(POLY(phase, POLY_RADIUS_SDEV), 0.0f, 1e-5f);
}

// ---- angles, edges, and what they give ----

TEST(ANGLES, EVERY_PAIR_OF_LIGANDS) {
  const auto phase = CALCULATED(octahedron);
  EXPECT_EQ(phase.NANGLES(1), 15);
  int right = 0;
  int straight = 0;
  for (int j = 1; j <= 6; ++j)
    for (int k = j + 1; k <= 6; ++k) {
      const float angle = phase.BANGLES(1, j, k, ANGLE);
      right += std::abs(angle - 90.0f) < 1e-3f;
      straight += std::abs(angle - 180.0f) < 0.05f;
    }
  EXPECT_EQ(right, 12);
  EXPECT_EQ(straight, 3);
}

TEST(ANGLES, A_TRANS_ANGLE_BELOW_135_LEAVES_VARIANCE_AND_EDGE_AT_0) {
  std::vector<VECTOR3> bent = octahedron;
  bent[0] = {1.1547f, 1.1547f, 1.1547f};  // 125 degrees from its partner at -x: a 13th pair
  const auto phase = CALCULATED(bent);
  EXPECT_EQ(POLY(phase, POLY_VARIANCE), 0.0f);
  EXPECT_EQ(POLY(phase, POLY_MEAN_EDGE), 0.0f);
  EXPECT_GT(POLY(phase, POLY_ELONGATION), 1.0f);
}

TEST(ANGLES, A_VARIANCE_BY_HAND) {
  // One ligand of the octahedron turned by 10 degrees towards another: its four right angles become
  // 80, 100 and twice 90, its trans angle 170. Variance (10^2 + 10^2) / 11.
  std::vector<VECTOR3> bent = octahedron;
  const float t = 10.0f / XTAL::DEGREES_PER_RADIAN;
  bent[0] = {2.0f * std::cos(t), 2.0f * std::sin(t), 0};
  EXPECT_NEAR(POLY(CALCULATED(bent), POLY_VARIANCE), 200.0f / 11.0f, 2e-3f);
}

// ---- few, flat and other degenerate ligands ----

TEST(DEGENERATE, FEW_LIGANDS) {
  EXPECT_EQ(POLY(CALCULATED({}), POLY_MEAN_LENGTH), 0.0f);
  EXPECT_NEAR(POLY(CALCULATED({{1.5f, 0, 0}}), POLY_MEAN_LENGTH), 1.5f, 1e-5f);
  const auto two = CALCULATED({{1.5f, 0, 0}, {0, 1.7f, 0}});
  EXPECT_NEAR(POLY(two, POLY_MEAN_LENGTH), 1.6f, 1e-5f);
  EXPECT_EQ(POLY(two, POLY_VOLUME), 0.0f);
  EXPECT_EQ(POLY(two, POLY_ELONGATION), 0.0f) << "wiped, as there is no volume";
  const auto three = CALCULATED({{1, 0, 0}, {-0.5f, 0.8660254f, 0}, {-0.5f, -0.8660254f, 0}});
  EXPECT_EQ(POLY(three, POLY_VARIANCE), 0.0f);
  EXPECT_EQ(POLY(three, POLY_ELONGATION), 0.0f);
  EXPECT_NEAR(POLY(three, POLY_MEAN_EDGE), std::sqrt(3.0f), 1e-5f) << "the mean edge survives";
}

// A cell that its system would make rectangular, but which is not: without an esd anywhere the
// volume has none either.
TEST(VOLUME_ESDS, CELL_KEEPS_ITS_ANGLES) {
  for (const char* symbol : {"P 2 2 2", "P 2 3", "P 4"}) {
    auto phase = CALCULATED(SCALED(octahedron, 2.0f));
    XTAL::SET_CELL_RECORD({edge, edge, edge}, {90, 91, 90}, phase.CELL);
    XTAL::SET_SPACEGROUP(symbol, phase.SPG);
    CALC_POLYVOL_VCV(phase, 1);
    EXPECT_EQ(POLY(phase, POLY_VOLUME_STD), 0.0f) << symbol;
  }
}

// Planes across an axis that pass the centre by: what is left of the spread along the axis are
// rounding errors.
TEST(DEGENERATE, RINGS_OFF_THE_CENTRE_HAVE_NO_SPHERE) {
  std::mt19937 random(20261121);
  std::uniform_real_distribution<float> coordinate(-2.0f, 2.0f);
  for (std::size_t axis = 0; axis < 3; ++axis)
    for (int n = 4; n <= 9; ++n)
      for (int repeat = 0; repeat < 50; ++repeat) {
        const float height = coordinate(random);
        std::vector<VECTOR3> ring;
        for (int k = 0; k < n; ++k) {
          VECTOR3 v{coordinate(random), coordinate(random), coordinate(random)};
          v[axis] = height;
          ring.push_back(v);
        }
        const auto phase = CALCULATED(ring);
        for (int c = POLY_SPHERE_X; c <= POLY_IDEAL_VOLUME; ++c)
          ASSERT_EQ(phase.POLYHEDRON(1, c), 0.0f) << n << " ligands, column " << c;
      }
}

TEST(DEGENERATE, COPLANAR_LIGANDS_HAVE_NO_SPHERE) {
  INIT_ERR_KVASTRUCTURES();
  auto phase = AROUND({{2, 0, 0}, {0, 2, 0}, {-2, 0, 0}, {0, -2, 0}});
  CALC_POLY_ORBIX(phase, 1);
  EXPECT_TRUE(ERR_KVASTRUCTURES);
  EXPECT_EQ(ERR_KVASTRUCTURES_MESS,
            "Error inverting matrix to determine centroid coords for polyhedron  1 in test block");
  for (int column = POLY_SPHERE_X; column <= POLY_IDEAL_VOLUME; ++column)
    EXPECT_EQ(POLY(phase, column), 0.0f);
  EXPECT_FLOAT_EQ(POLY(phase, POLY_BARYCENTRE_X), 0.5f);
}

TEST(DEGENERATE, SMALL_VOLUMES_KEEP_THEIR_VALUE_AND_LOSE_THE_REST) {
  const auto phase = CALCULATED(SCALED(tetrahedron, 0.5f));
  EXPECT_GT(POLY(phase, POLY_VOLUME), 0.05f);
  EXPECT_LT(POLY(phase, POLY_VOLUME), 0.1f);
  EXPECT_EQ(POLY(phase, POLY_ELONGATION), 0.0f);
  EXPECT_EQ(POLY(phase, POLY_VARIANCE), 0.0f);
}

TEST(DEGENERATE, THREE_COLLINEAR_VERTICES_GIVE_NO_NUMBER) {
  const std::vector<VECTOR3> vertices{{1, 1, 1}, {2, 2, 1}, {3, 3, 1}, {0, 0, -2}};
  EXPECT_TRUE(std::isnan(POLYHEDRON_VOLUME(vertices, {0, 0, 0})));
}

TEST(DEGENERATE, FEWER_THAN_FOUR_VERTICES_ARE_TOLD) {
  EXPECT_EQ(POLYHEDRON_VOLUME(std::vector<VECTOR3>{{1, 0, 0}, {0, 1, 0}}, {0, 0, 0}), 0.0f);
  EXPECT_TRUE(ERR_GEOMETRY);
  EXPECT_EQ(ERR_GEOMETRY_MESS, "The number of vertices for polyhedron volume is less than 4");
  POLYHEDRON_VOLUME(octahedron, {0, 0, 0});
  EXPECT_FALSE(ERR_GEOMETRY);
}

TEST(DEGENERATE, A_CENTRE_ON_A_FACE_LOSES_ONLY_THAT_FACE) {
  // A square pyramid with the centre in its base: V = base * height / 3.
  const std::vector<VECTOR3> pyramid{{1, 1, 0}, {1, -1, 0}, {-1, -1, 0}, {-1, 1, 0}, {0, 0, 1.5f}};
  EXPECT_NEAR(POLYHEDRON_VOLUME(pyramid, {0, 0, 0}), 2.0f, 1e-5f);
}

TEST(DEGENERATE, NOTHING_CRASHES_WITH_ANY_NUMBER_OF_LIGANDS) {
  std::mt19937 random(7);
  std::uniform_real_distribution<float> place(-2.0f, 2.0f);
  for (int n = 2; n <= 20; ++n) {
    std::vector<VECTOR3> ligands;
    for (int i = 0; i < n; ++i) ligands.push_back({place(random), place(random), place(random)});
    const auto phase = CALCULATED(ligands);
    EXPECT_GT(POLY(phase, POLY_MEAN_LENGTH), 0.0f);
    ligands.assign(static_cast<std::size_t>(n), {1, 1, 1});
    CALCULATED(ligands);
    for (int i = 0; i < n; ++i)
      ligands[static_cast<std::size_t>(i)] = {0.1f * static_cast<float>(i), 0, 0};
    CALCULATED(ligands);
  }
}

TEST(DEGENERATE, MORE_THAN_12_LIGANDS_TAKE_THE_FACTOR_OF_12) {
  std::vector<VECTOR3> many = icosahedron;
  many.push_back({2.7f, 0, 0});
  const auto phase = CALCULATED(many);
  const float r = POLY(phase, POLY_RADIUS);
  EXPECT_NEAR(POLY(phase, POLY_IDEAL_VOLUME), 2.5362f * r * r * r, 1e-3f);
}

TEST(DEGENERATE, A_GAP_IN_THE_ROWS_IS_NO_LIGAND) {
  auto phase = AROUND(octahedron);
  phase.BONDS.CLEAR_ROW(1, 3);
  phase.NBONDS(1) = 5;
  CALC_ANGLES_ALLATOMS(phase);
  CALC_POLY_ALLATOMS(phase);
  EXPECT_EQ(BONDS_PRESENT(phase, 1), (std::vector<int>{1, 2, 4, 5, 6}));
  EXPECT_EQ(phase.NANGLES(1), 10);
  EXPECT_EQ(phase.BANGLES(1, 3, 4, ANGLE), 0.0f);
  EXPECT_FLOAT_EQ(POLY(phase, POLY_MEAN_LENGTH), 2.0f);
}

TEST(DEGENERATE, A_MISSING_RIGID_BOND_LENGTH_LEAVES_NO_CORRECTED_VOLUME) {
  auto phase = AROUND(octahedron);
  phase.BONDS(1, 2, BOND_LENGTH_SRB) = 0.0f;
  EXPECT_EQ(CALC_POLYVOL_SRB(phase, 1), 0.0f);
}

// ---- esds ----

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

TEST(VOLUME_ESDS, SYMMETRY_KEEPS_ITS_CORRELATIONS) {
  // BO6 of perovskite: nothing but the cell can change the volume, V = (a / 2)^3 * 4 / 3.
  auto phase =
      MADE({4, 4, 4}, {90, 90, 90}, "P m -3 m",
           {{"Ti1", {0.5f, 0.5f, 0.5f}}, {"O1", {0.5f, 0.5f, 0}}}, {0.002f, 0.002f, 0.002f});
  const BOND_EXCLUSION bondex{{true, true, true, true}};
  CALC_BONDS_ALLATOMS(phase, 0.01f, 2.2f, &bondex);
  MEASURE_BLOCK(phase, phase, true, MATCHING_RADIUS(phase));
  CALC_ANGLES_ALLATOMS(phase);
  CALC_POLY_ALLATOMS(phase);
  EXPECT_NEAR(POLY(phase, POLY_VOLUME), 4.0f / 3.0f * 8.0f, 1e-4f);
  // dV = V * 3 da / a.
  EXPECT_NEAR(POLY(phase, POLY_VOLUME_STD), 10.6667f * 3.0f * 0.0005f, 1e-4f);
  EXPECT_EQ(phase.BANGLES(1, 1, 2, ANGLE_STD), 0.0f) << "fixed at 90 or 180 by symmetry";
}
