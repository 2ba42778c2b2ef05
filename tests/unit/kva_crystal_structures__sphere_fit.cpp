// The sphere that fits the ligands of a centre: positions, radii and ideal volumes.
#include "src/kva_crystal_structures/sphere_fit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "kva_crystal_structures__polyhedra.h"

using namespace POLYHEDRA;

namespace {

// n ligands: n - 2 in a regular ring about c, one above and one below. The fit of such a bipyramid
// is centred whatever the two radii.
std::vector<VECTOR3> BIPYRAMID(int n, float ring_radius, float axial_radius) {
  std::vector<VECTOR3> vertices{{0, 0, axial_radius}, {0, 0, -axial_radius}};
  for (int k = 0; k < n - 2; ++k) {
    const float turn = 360.0f * static_cast<float>(k) / static_cast<float>(n - 2);
    vertices.push_back({ring_radius * XTAL::COSD(turn), ring_radius * XTAL::SIND(turn), 0});
  }
  return vertices;
}

void EXPECT_POSITION(const CRYSTAL_STRUCTURE_TYPE& phase, int first_column,
                     const VECTOR3& expected) {
  for (int c = 0; c < 3; ++c)
    EXPECT_NEAR(POLY(phase, first_column + c), expected[static_cast<std::size_t>(c)], 1e-6f)
        << first_column + c;
}

// The polyhedron with its centre moved to 0.1, 0.2, 0.3: only what is given as a position changes.
CRYSTAL_STRUCTURE_TYPE FITTED(const std::vector<VECTOR3>& ligands) {
  auto phase = AROUND(ligands);
  phase.BOND_CEN(1, CENTRE_X) = 0.1f;
  phase.BOND_CEN(1, CENTRE_Y) = 0.2f;
  phase.BOND_CEN(1, CENTRE_Z) = 0.3f;
  CALC_POLY_ORBIX(phase, 1);
  return phase;
}

}  // namespace

// ---- positions ----

TEST(POSITIONS, CENTRE_AND_BARYCENTRE_FROM_TWO_LIGANDS_ON) {
  // Barycentres in angstroms: (0.75, 0.85, 0), (0.5, 0.6, 0.7), (0.25, 0.5, 0.75).
  const auto two = FITTED({{1.5f, 0, 0}, {0, 1.7f, 0}});
  EXPECT_POSITION(two, POLY_CENTRE_X, {0.1f, 0.2f, 0.3f});
  EXPECT_POSITION(two, POLY_BARYCENTRE_X, {0.1f + 0.75f / edge, 0.2f + 0.85f / edge, 0.3f});
  EXPECT_POSITION(two, POLY_SPHERE_X, {0, 0, 0});
  const auto three = FITTED({{1.5f, 0, 0}, {0, 1.8f, 0}, {0, 0, 2.1f}});
  EXPECT_POSITION(three, POLY_CENTRE_X, {0.1f, 0.2f, 0.3f});
  EXPECT_POSITION(three, POLY_BARYCENTRE_X,
                  {0.1f + 0.5f / edge, 0.2f + 0.6f / edge, 0.3f + 0.7f / edge});
  EXPECT_POSITION(three, POLY_SPHERE_X, {0, 0, 0});
  const auto four = FITTED({{1, 0, 0}, {0, 2, 0}, {0, 0, 3}, {0, 0, 0}});
  EXPECT_POSITION(four, POLY_CENTRE_X, {0.1f, 0.2f, 0.3f});
  EXPECT_POSITION(four, POLY_BARYCENTRE_X,
                  {0.1f + 0.25f / edge, 0.2f + 0.5f / edge, 0.3f + 0.75f / edge});
}

// ---- radii ----

TEST(RADII, FOUR_LIGANDS_LIE_ON_THEIR_SPHERE_WITHOUT_SCATTER) {
  std::mt19937 random(41);
  std::uniform_real_distribution<float> off(-0.4f, 0.4f);
  const VECTOR3 s{0.2f, -0.1f, 0.3f};
  for (int repeat = 0; repeat < 20; ++repeat) {
    std::vector<VECTOR3> ligands = tetrahedron;
    for (VECTOR3& v : ligands)
      for (float& x : v) x += off(random);
    ligands = ON_A_SPHERE(ligands, 1.9f);
    for (VECTOR3& v : ligands) v = XTAL::ADD(v, s);
    const auto phase = FITTED(ligands);
    EXPECT_POSITION(phase, POLY_SPHERE_X,
                    {0.1f + s[0] / edge, 0.2f + s[1] / edge, 0.3f + s[2] / edge});
    EXPECT_NEAR(POLY(phase, POLY_DELTA), std::sqrt(0.14f), 2e-5f);
    EXPECT_NEAR(POLY(phase, POLY_RADIUS), 1.9f, 2e-5f);
    EXPECT_EQ(POLY(phase, POLY_RADIUS_SDEV), 0.0f);
    EXPECT_NEAR(POLY(phase, POLY_IDEAL_VOLUME), 0.5132f * 1.9f * 1.9f * 1.9f, 2e-4f);
  }
}

TEST(RADII, SCATTER_OF_MORE_THAN_FOUR) {
  // 2, 2, 2, 2.4, 2.4: mean 2.16, sum of squares 3 * 0.16^2 + 2 * 0.24^2 = 0.192, over 5.
  const auto five = FITTED(BIPYRAMID(5, 2.0f, 2.4f));
  EXPECT_NEAR(POLY(five, POLY_DELTA), 0.0f, 1e-5f);
  EXPECT_NEAR(POLY(five, POLY_RADIUS), 2.16f, 1e-5f);
  EXPECT_NEAR(POLY(five, POLY_RADIUS_SDEV), std::sqrt(0.192f / 5.0f), 1e-5f);
  // 2, 2, 2, 2, 2.3, 2.3: mean 2.1, sum of squares 4 * 0.1^2 + 2 * 0.2^2 = 0.12, over 6.
  const auto six = FITTED(BIPYRAMID(6, 2.0f, 2.3f));
  EXPECT_NEAR(POLY(six, POLY_RADIUS), 2.1f, 1e-5f);
  EXPECT_NEAR(POLY(six, POLY_RADIUS_SDEV), std::sqrt(0.12f / 6.0f), 1e-5f);
}

// ---- ideal volumes ----

// On the unit sphere; the factors have four or five digits. 5: sqrt(3) / 2. 6: 4 / 3. 7: the
// pentagonal bipyramid, 5 sin(72) / 3. 8: sqrt((475 + 29 sqrt(145)) / 250), J. D. Berman and K.
// Hanes, Math. Ann. 188 (1970) 78-84. 9: the tricapped trigonal prism, 3 sqrt(2 sqrt(3) - 3). 10
// and 11: E. Makovicky and T. Balic-Zunic, Acta Cryst. B54 (1998) 766-773. 12: the icosahedron,
// sqrt(40
// + 8 sqrt(5)) / 3.
TEST(IDEAL_VOLUMES, OF_EVERY_COORDINATION) {
  const std::vector<float> ideal{std::sqrt(3.0f) / 2.0f,
                                 4.0f / 3.0f,
                                 5.0f / 3.0f * XTAL::SIND(72),
                                 std::sqrt((475.0f + 29.0f * std::sqrt(145.0f)) / 250.0f),
                                 3.0f * std::sqrt(2.0f * std::sqrt(3.0f) - 3.0f),
                                 2.24f,
                                 2.4f,
                                 std::sqrt(40.0f + 8.0f * std::sqrt(5.0f)) / 3.0f};
  for (int n = 5; n <= 12; ++n)
    EXPECT_NEAR(POLY(FITTED(BIPYRAMID(n, 2, 2)), POLY_IDEAL_VOLUME),
                8.0f * ideal[static_cast<std::size_t>(n - 5)], 6e-4f)
        << n;
}

TEST(IDEAL_VOLUMES, MORE_THAN_12_LIGANDS_TAKE_THE_FACTOR_OF_12) {
  for (int n = 13; n <= 20; ++n)
    EXPECT_NEAR(POLY(FITTED(BIPYRAMID(n, 2, 2)), POLY_IDEAL_VOLUME), 8.0f * 2.5362f, 2e-4f) << n;
}

// ---- no sphere ----

// Planes across an axis that pass the centre by: what is left of the spread along the axis are
// rounding errors.
TEST(FLAT, RINGS_OFF_THE_CENTRE_HAVE_NO_SPHERE) {
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
        const auto phase = FITTED(ring);
        for (int c = POLY_SPHERE_X; c <= POLY_IDEAL_VOLUME; ++c)
          ASSERT_EQ(phase.POLYHEDRON(1, c), 0.0f) << n << " ligands, column " << c;
      }
}

TEST(FLAT, COPLANAR_LIGANDS_HAVE_NO_SPHERE) {
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
