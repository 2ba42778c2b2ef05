// The volume of a polyhedron from its vertices: which triangles are faces, and what each adds.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "kva_crystal_structures__polyhedra.h"
#include "src/kva_crystal_structures/convex_hull.h"
#include "src/kva_crystal_structures/moved_hull.h"

using namespace POLYHEDRA;

namespace {

// A triangle below the centre, that many angstroms under it and with the area 9/2 size^2, and a
// vertex above. The pyramids of the three upper faces fill area * height / 3.
std::vector<VECTOR3> LOW_TETRAHEDRON(float size, float depth, float height) {
  return {
      {-size, -size, -depth}, {2 * size, -size, -depth}, {-size, 2 * size, -depth}, {0, 0, height}};
}

}  // namespace

// ---- faces by pyramids ----

// Area 4.5e6, 93750 above the centre. A base that counts has its fourth vertex at (height + depth)
// * depth, 7e-7, which is in its plane by the rule: area * depth / 6.
TEST(PYRAMIDS, A_PLANE_WITHIN_1E_5_OF_THE_CENTRE_ADDS_NOTHING) {
  EXPECT_NEAR(PYRAMIDS_VOLUME(LOW_TETRAHEDRON(1000, 1.1e-5f, 0.0625f)),
              93750.0f + 4.5e6f * 1.1e-5f / 6.0f, 0.2f);
  EXPECT_NEAR(PYRAMIDS_VOLUME(LOW_TETRAHEDRON(1000, 0.9e-5f, 0.0625f)), 93750.0f, 0.2f);
}

// Area 4.5, 0.15 above the centre. Whether the fourth vertex is in the plane of the base is decided
// by (height + depth) * depth: 0.109 * 0.009 = 0.00098, 0.1093 * 0.0093 = 0.00102.
TEST(PYRAMIDS, A_FOURTH_VERTEX_IS_IN_THE_PLANE_BELOW_0_001) {
  EXPECT_NEAR(PYRAMIDS_VOLUME(LOW_TETRAHEDRON(1, 0.009f, 0.1f)), 0.15f + 4.5f * 0.009f / 6.0f,
              1e-5f);
  EXPECT_NEAR(PYRAMIDS_VOLUME(LOW_TETRAHEDRON(1, 0.0093f, 0.1f)), 0.15f + 4.5f * 0.0093f / 3.0f,
              1e-5f);
}

// A fifth vertex below the middle of the base, 1 below the centre. The three small faces around it
// fill 1.5 (1 + bump), as do the upper ones 1.5; up to 0.001 the base is taken for a face as well,
// with a fourth vertex in its plane: 1.5 / 2. The hull tells that it is none.
TEST(PYRAMIDS, A_VERTEX_IS_BEYOND_A_PLANE_FROM_0_001) {
  const auto with_bump = [](float bump) {
    std::vector<VECTOR3> vertices = LOW_TETRAHEDRON(1, 1, 1);
    vertices.push_back({0, 0, -1 - bump});
    return vertices;
  };
  EXPECT_NEAR(PYRAMIDS_VOLUME(with_bump(0.0009f)), 1.5f + 1.5f * 1.0009f + 0.75f, 1e-4f);
  EXPECT_NEAR(PYRAMIDS_VOLUME(with_bump(0.0011f)), 1.5f + 1.5f * 1.0011f, 1e-4f);
  EXPECT_NEAR(POLYHEDRON_VOLUME(with_bump(0.0009f), {}), 1.5f + 1.5f * 1.0009f, 1e-4f);
}

TEST(PYRAMIDS, THREE_COLLINEAR_VERTICES_GIVE_NO_NUMBER) {
  EXPECT_TRUE(std::isnan(
      PYRAMIDS_VOLUME(std::vector<VECTOR3>{{1, 1, 1}, {2, 2, 1}, {3, 3, 1}, {0, 0, -2}})));
}

// ---- moved vertices ----

// Vertices about the centre, some of them in planes with it or on lines, all of them moved by up to
// so much, or only one. The judge is the sum of pyramids made anew.
TEST(PYRAMIDS, WHAT_IS_SURE_OF_TRIANGLES_CHANGES_NO_VOLUME) {
  std::mt19937 random(7);
  const auto real = [&](float size) {
    return std::uniform_real_distribution<float>(-size, size)(random);
  };
  std::size_t all = 0;
  std::size_t left = 0;
  std::size_t stay_faces = 0;
  for (int n = 0; n < 4000; ++n) {
    std::vector<VECTOR3> v;
    for (int k = 0; k < 4 + n % 7; ++k) {
      VECTOR3 vertex{real(2), real(2), n % 5 == 0 ? std::round(real(2)) : real(2)};
      if (n % 3 == 0) vertex = XTAL::SCALED(vertex, 2.0f / (0.1f + XTAL::LENGTH(vertex)));
      v.push_back(vertex);
    }
    const float size = n % 2 == 0 ? 0.003f : 0.1f;
    const auto moved = [&](VECTOR3 vertex) {
      for (float& component : vertex) component += real(0.5f * size);
      return vertex;
    };
    std::vector<TRIANGLE> triangles = TRIANGLES_OF(v);
    all += triangles.size();
    TELL_SURE_ONES(v, {size, size}, triangles);
    left += triangles.size();
    for (const TRIANGLE& triangle : triangles)
      if (triangle.WHEN_MOVED == SURE_OF::FACE) ++stay_faces;
    std::vector<VECTOR3> with_one = v;
    with_one[static_cast<std::size_t>(n) % v.size()] =
        moved(v[static_cast<std::size_t>(n) % v.size()]);
    EXPECT_EQ(VOLUME_WITH_ONE_MOVED(with_one, triangles, static_cast<std::size_t>(n) % v.size()),
              PYRAMIDS_VOLUME(with_one));
    for (VECTOR3& vertex : v) vertex = moved(vertex);
    EXPECT_EQ(VOLUME_WITH_ALL_MOVED(v, triangles), PYRAMIDS_VOLUME(v)) << n;
  }
  EXPECT_LT(left, all * 7 / 10);
  EXPECT_GT(stay_faces, left / 10);
}

// ---- hulls ----

// Over triangles large and small, a fourth point at that height.
TEST(HULLS, NONE_OF_POINTS_THAT_LIE_IN_A_PLANE_TO_A_TEN_THOUSANDTH_OF_AN_ANGSTROM) {
  for (const double leg : {0.1, 2.0, 9.0}) {
    const auto faces = [&](double height) {
      return HULL_TRIANGLES(std::vector<WIDE3>{{0, 0, 0}, {leg, 0, 0}, {0, leg, 0}, {0, 0, height}})
          .size();
    };
    EXPECT_EQ(faces(0.9e-4), 0U) << leg;
    EXPECT_EQ(faces(1.1e-4), 4U) << leg;
  }
  EXPECT_EQ(HULL_TRIANGLES(std::vector<WIDE3>{{0, 0, 0}, {0.1, 0, 0}, {0, 0.005, 0}, {0, 0, 0.005}})
                .size(),
            4U);
}

// Of the cube from -1 to 1: above a face, off an edge, off a corner, and within.
TEST(HULLS, A_POINT_LIES_OUTSIDE_BY_ITS_DISTANCE_FROM_FACE_EDGE_OR_CORNER) {
  const std::vector<VECTOR3> cube = SIGNED({{1, 1, 1}});
  EXPECT_NEAR(DISTANCE_OUTSIDE_HULL(cube, {0.3f, 0.2f, 1.5f}), 0.5f, 1e-6f);
  EXPECT_NEAR(DISTANCE_OUTSIDE_HULL(cube, {1.3f, 1.4f, 0.5f}), 0.5f, 1e-6f);
  EXPECT_NEAR(DISTANCE_OUTSIDE_HULL(cube, {1.2f, -1.3f, 1.6f}), 0.7f, 1e-6f);
  EXPECT_EQ(DISTANCE_OUTSIDE_HULL(cube, {0.9f, -0.9f, 0.9f}), 0.0f);
}

// A ligand in the middle of an edge of the cube of 2 changes nothing.
TEST(HULLS, COLLINEAR_VERTICES) {
  std::vector<VECTOR3> vertices = SIGNED({{1, 1, 1}});
  vertices.push_back({1, 1, 0});
  EXPECT_NEAR(POLYHEDRON_VOLUME(vertices, {0.1f, 0.2f, 0.3f}), 8.0f, 1e-4f);
}

// Regular prisms with n corners at 2, height 3: V = 3 * n / 2 * 4 sin(360 / n). From five corners
// on the faces by pyramids count too often.
TEST(HULLS, FIVE_AND_MORE_COPLANAR_VERTICES) {
  for (int n : {3, 4, 5, 6, 8, 10}) {
    std::vector<VECTOR3> vertices;
    for (int k = 0; k < n; ++k)
      for (float z : {-1.5f, 1.5f}) {
        const float angle = 360.0f * static_cast<float>(k) / static_cast<float>(n);
        vertices.push_back({2.0f * XTAL::COSD(angle), 2.0f * XTAL::SIND(angle), z});
      }
    const float volume = 6.0f * static_cast<float>(n) * XTAL::SIND(360.0f / static_cast<float>(n));
    EXPECT_NEAR(POLYHEDRON_VOLUME(vertices, {0, 0, 0}), volume, 1e-3f) << n;
    EXPECT_NEAR(POLYHEDRON_VOLUME(vertices, {9, 7, 5}), volume, 1e-3f) << n << " from outside";
  }
}

TEST(HULLS, A_CENTRE_OUTSIDE_CHANGES_NOTHING) {
  const float volume = 4.0f / 3.0f * 8.0f;
  for (const VECTOR3& centre : {VECTOR3{0, 0, 3}, VECTOR3{2, 2, 2}, VECTOR3{0.7f, 0.7f, 0.7f}})
    EXPECT_NEAR(POLYHEDRON_VOLUME(octahedron, centre), volume, 1e-4f);
}

TEST(HULLS, FLAT_AND_COLLINEAR_VERTICES_HAVE_NONE) {
  const std::vector<VECTOR3> square{{1, 1, 0.5f}, {1, -1, 0.5f}, {-1, -1, 0.5f}, {-1, 1, 0.5f}};
  EXPECT_EQ(POLYHEDRON_VOLUME(square, {0, 0, 0}), 0.0f) << "a pyramid stands on it";
  EXPECT_EQ(POLYHEDRON_VOLUME(square, {0, 0, 0.5f}), 0.0f);
  const std::vector<VECTOR3> line{{1, 2, 3}, {2, 4, 6}, {3, 6, 9}, {4, 8, 12}, {5, 10, 15}};
  EXPECT_EQ(POLYHEDRON_VOLUME(line, {0, 0, 1}), 0.0f);
  const std::vector<VECTOR3> point(6, VECTOR3{1, 2, 3});
  EXPECT_EQ(POLYHEDRON_VOLUME(point, {0, 0, 0}), 0.0f);
}

namespace {

// Share of a box that lies in the hull: within all planes through three vertices that have the
// others on one side.
double VOLUME_BY_DARTS(const std::vector<VECTOR3>& v, std::mt19937& random) {
  struct HALF_SPACE {
    VECTOR3 NORMAL;
    float LIMIT;
  };
  std::vector<HALF_SPACE> within;
  for (std::size_t i = 0; i < v.size(); ++i)
    for (std::size_t j = 0; j < v.size(); ++j)
      for (std::size_t k = 0; k < v.size(); ++k) {
        const VECTOR3 normal = XTAL::CROSS(XTAL::SUBTRACT(v[j], v[i]), XTAL::SUBTRACT(v[k], v[i]));
        const float limit = XTAL::DOT(normal, v[i]);
        bool face = XTAL::LENGTH(normal) > 1e-4f;
        for (const VECTOR3& other : v) face = face && XTAL::DOT(normal, other) <= limit + 1e-5f;
        if (face) within.push_back({normal, limit});
      }
  const auto uniform = [&random] { return static_cast<float>(random() % 60001) / 10000.0f - 3.0f; };
  constexpr int darts = 20000;
  int hits = 0;
  for (int n = 0; n < darts; ++n) {
    const VECTOR3 at{uniform(), uniform(), uniform()};
    bool inside = true;
    for (const HALF_SPACE& half : within)
      inside = inside && XTAL::DOT(half.NORMAL, at) <= half.LIMIT;
    hits += inside ? 1 : 0;
  }
  return 216.0 * hits / darts;
}

}  // namespace

// Vertices on a grid, so that many are coplanar and collinear, and at random; centres anywhere.
// Darts miss by 216 sqrt(p (1 - p) / 20000), three times of which is 2.3 at most.
TEST(HULLS, HAVE_THE_VOLUME_THAT_DARTS_FIND) {
  std::mt19937 random(11);
  const auto coordinate = [&random](bool grid) {
    return grid ? static_cast<float>(random() % 5) - 2.0f
                : static_cast<float>(random() % 50001) / 10000.0f - 2.5f;
  };
  for (int trial = 0; trial < 60; ++trial) {
    const bool grid = trial % 2 == 0;
    std::vector<VECTOR3> vertices;
    while (static_cast<int>(vertices.size()) < 4 + trial % 9)
      vertices.push_back({coordinate(grid), coordinate(grid), coordinate(grid)});
    const VECTOR3 centre{coordinate(false), coordinate(false), coordinate(false)};
    EXPECT_NEAR(static_cast<double>(POLYHEDRON_VOLUME(vertices, centre)),
                VOLUME_BY_DARTS(vertices, random), 2.4)
        << trial;
  }
}

// ---- vertices ----

TEST(VERTICES, FEWER_THAN_FOUR_VERTICES_ARE_TOLD) {
  EXPECT_EQ(POLYHEDRON_VOLUME(std::vector<VECTOR3>{{1, 0, 0}, {0, 1, 0}}, {0, 0, 0}), 0.0f);
  EXPECT_TRUE(ERR_GEOMETRY);
  EXPECT_EQ(ERR_GEOMETRY_MESS, "The number of vertices for polyhedron volume is less than 4");
  POLYHEDRON_VOLUME(octahedron, {0, 0, 0});
  EXPECT_FALSE(ERR_GEOMETRY);
}

TEST(VERTICES, A_CENTRE_ON_A_FACE_LOSES_ONLY_THAT_FACE) {
  // A square pyramid with the centre in its base: V = base * height / 3.
  const std::vector<VECTOR3> pyramid{{1, 1, 0}, {1, -1, 0}, {-1, -1, 0}, {-1, 1, 0}, {0, 0, 1.5f}};
  EXPECT_NEAR(POLYHEDRON_VOLUME(pyramid, {0, 0, 0}), 2.0f, 1e-5f);
}
