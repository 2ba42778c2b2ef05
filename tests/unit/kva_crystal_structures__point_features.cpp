// Angles, planes, hulls and distortions of points whose values are seen without a calculation, and
// of those that have none.
#include <gtest/gtest.h>

#include <cmath>

#include "src/kva_crystal_structures/measures/features.h"

namespace {

using namespace KVA_CRYSTAL_STRUCTURES;

const std::vector<WIDE3> octahedron{{1, 0, 0},  {-1, 0, 0}, {0, 1, 0},
                                    {0, -1, 0}, {0, 0, 1},  {0, 0, -1}};
const std::vector<WIDE3> tetrahedron{{1, 1, 1}, {1, -1, -1}, {-1, 1, -1}, {-1, -1, 1}};
const std::vector<WIDE3> cube{{1, 1, 1},  {1, 1, -1},  {1, -1, 1},  {1, -1, -1},
                              {-1, 1, 1}, {-1, 1, -1}, {-1, -1, 1}, {-1, -1, -1}};
// No two of its ligands stand across from each other.
const std::vector<WIDE3> prism{{2, 0, 1},  {-1, 1.7320508, 1},  {-1, -1.7320508, 1},
                               {2, 0, -1}, {-1, 1.7320508, -1}, {-1, -1.7320508, -1}};

TEST(POINT_FEATURES, A_LEG_OF_NO_LENGTH_MAKES_NO_ANGLE) {
  EXPECT_DOUBLE_EQ(WIDE_ANGLE({1, 0, 0}, {0, 2, 0}), 90.0);
  EXPECT_TRUE(std::isnan(WIDE_ANGLE({0, 0, 0}, {0, 2, 0})));
  EXPECT_TRUE(std::isnan(WIDE_ANGLE({1, 0, 0}, {0, 0, 0})));
}

// Three points in line have no side; then the way around all of them tells it.
TEST(POINT_FEATURES, THE_SIDE_OF_A_PLANE_IS_THAT_OF_ITS_FIRST_POINTS_THAT_HAVE_ONE) {
  EXPECT_DOUBLE_EQ(
      OFF_PLANE({5, 7, 3}, std::vector<WIDE3>{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 1, 0}}), 3.0);
  EXPECT_DOUBLE_EQ(
      OFF_PLANE({5, 7, 3}, std::vector<WIDE3>{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, -1, 0}}), -3.0);
  const std::vector<WIDE3> line{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}};
  EXPECT_TRUE(std::isnan(OFF_PLANE({0, 0, 1}, line)));
  EXPECT_TRUE(std::isnan(ANGLE_OF_PLANES(line, line)));
}

// The corners of a flat rectangle lie half its height off its middle line.
TEST(POINT_FEATURES, POINTS_WITHIN_A_HUNDREDTH_OF_AN_ANGSTROM_OF_A_LINE_MAKE_NO_PLANE) {
  const auto rectangle = [](double height) {
    return std::vector<WIDE3>{{0, 0, 0}, {4, 0, 0}, {4, height, 0}, {0, height, 0}};
  };
  EXPECT_TRUE(IN_ONE_LINE(rectangle(0.019)));
  EXPECT_FALSE(IN_ONE_LINE(rectangle(0.021)));
  EXPECT_TRUE(std::isnan(OFF_PLANE({0, 0, 2}, rectangle(0.019))));
  EXPECT_DOUBLE_EQ(OFF_PLANE({0, 0, 2}, rectangle(0.021)), 2.0);
}

// A cube of edge 2, an octahedron of 4/3 of the cube of its bond, a tetrahedron of a third of the
// cube around it.
TEST(POINT_FEATURES, HULLS_HAVE_THE_FACES_AND_VOLUMES_OF_THE_BODIES) {
  const auto expect = [](const std::vector<WIDE3>& body, std::size_t faces, std::size_t corners,
                         double volume) {
    const std::vector<HULL_FACE> found = HULL_FACES(body);
    EXPECT_EQ(found.size(), faces);
    for (const HULL_FACE& face : found) EXPECT_EQ(face.size(), corners);
    EXPECT_NEAR(VOLUME_WITHIN(found, body), volume, 1e-9);
  };
  expect(cube, 6, 4, 8.0);
  expect(octahedron, 8, 3, 4.0 / 3.0);
  expect(tetrahedron, 4, 3, 8.0 / 3.0);
  expect({{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}}, 0, 0, 0.0);  // flat
  // Of the prism, with triangles of 3 sqrt(3) and height 2, and faces of two kinds.
  EXPECT_NEAR(VOLUME_WITHIN(HULL_FACES(prism), prism), 6.0 * std::sqrt(3.0), 1e-6);
  EXPECT_EQ(HULL_FACES(prism).size(), 5U);
}

// A corner that lies less than a thousandth of an angstrom above its faces still belongs to them.
TEST(POINT_FEATURES, A_FACE_THAT_IS_NEARLY_FLAT_IS_ONE) {
  std::vector<WIDE3> bent = cube;
  bent[0][2] += 0.0008;
  EXPECT_EQ(HULL_FACES(bent).size(), 6U);
  bent[0][2] += 0.01;
  EXPECT_GT(HULL_FACES(bent).size(), 6U);
}

TEST(POINT_FEATURES, DISTORTIONS_ARE_ZERO_OF_REGULAR_BODIES_AND_NONE_OF_OTHERS) {
  EXPECT_NEAR(ANGLE_VARIANCE(octahedron), 0.0, 1e-9);
  EXPECT_NEAR(ANGLE_VARIANCE(tetrahedron), 0.0, 1e-3) << "against 109.47 as it is tabulated";
  EXPECT_NEAR(CIS_DEVIATION(octahedron), 0.0, 1e-9);
  for (const std::vector<WIDE3>& other : {cube, prism}) {
    EXPECT_TRUE(std::isnan(ANGLE_VARIANCE(other)));
    EXPECT_TRUE(std::isnan(CIS_DEVIATION(other)));
  }
  EXPECT_TRUE(std::isnan(CIS_DEVIATION(tetrahedron)));
  // Of the angles of the ligand along z, tilted by 3 degrees to x, one is 87, one 93; two stay.
  std::vector<WIDE3> tilted = octahedron;
  const double tilt = std::acos(-1.0) / 60.0;
  tilted[4] = {std::sin(tilt), 0.0, std::cos(tilt)};
  EXPECT_NEAR(CIS_DEVIATION(tilted), 6.0, 1e-9);
  EXPECT_NEAR(ANGLE_VARIANCE(tilted), 18.0 / 11.0, 1e-9);
}

// Lengths 1, 1, 1, 1, 2, 2 with mean 4/3: deviations of 1/3, four times, and 2/3, twice.
TEST(POINT_FEATURES, LENGTHS_TELL_BAUR_INDEX_AND_EFFECTIVE_COORDINATION) {
  std::vector<WIDE3> longer = octahedron;
  for (std::size_t k : {4U, 5U}) longer[k] = SCALED(longer[k], 2.0);
  EXPECT_NEAR(BAUR_INDEX(longer), (4.0 / 3.0 + 4.0 / 3.0) / (6.0 * 4.0 / 3.0), 1e-12);
  EXPECT_NEAR(BAUR_INDEX(octahedron), 0.0, 1e-12);
  EXPECT_NEAR(EFFECTIVE_COORDINATION(octahedron), 6.0, 1e-12);
  EXPECT_NEAR(EFFECTIVE_COORDINATION(longer), 4.0, 1e-9) << "of exp(1 - 64) each, the two are none";
  EXPECT_NEAR(DISTANCE_TO_CENTROID(cube), 0.0, 1e-12);
}

}  // namespace
