// The volume of a polyhedron from its vertices: which triangles are faces, and what each adds.
#include <gtest/gtest.h>

#include <cmath>

#include "kva_crystal_structures__polyhedra.h"

using namespace POLYHEDRA;

namespace {

// A triangle below the centre, that many angstroms under it and with the area 9/2 size^2, and a
// vertex above. The pyramids of the three upper faces fill area * height / 3.
std::vector<VECTOR3> LOW_TETRAHEDRON(float size, float depth, float height) {
  return {
      {-size, -size, -depth}, {2 * size, -size, -depth}, {-size, 2 * size, -depth}, {0, 0, height}};
}

}  // namespace

// ---- faces ----

// Area 4.5e6, 93750 above the centre. A base that counts has its fourth vertex at (height + depth)
// * depth, 7e-7, which is in its plane by the rule: area * depth / 6.
TEST(FACES, A_PLANE_WITHIN_1E_5_OF_THE_CENTRE_ADDS_NOTHING) {
  EXPECT_NEAR(POLYHEDRON_VOLUME(LOW_TETRAHEDRON(1000, 1.1e-5f, 0.0625f), {0, 0, 0}),
              93750.0f + 4.5e6f * 1.1e-5f / 6.0f, 0.2f);
  EXPECT_NEAR(POLYHEDRON_VOLUME(LOW_TETRAHEDRON(1000, 0.9e-5f, 0.0625f), {0, 0, 0}), 93750.0f,
              0.2f);
}

// Area 4.5, 0.15 above the centre. Whether the fourth vertex is in the plane of the base is decided
// by (height + depth) * depth: 0.109 * 0.009 = 0.00098, 0.1093 * 0.0093 = 0.00102.
TEST(FACES, A_FOURTH_VERTEX_IS_IN_THE_PLANE_BELOW_0_001) {
  EXPECT_NEAR(POLYHEDRON_VOLUME(LOW_TETRAHEDRON(1, 0.009f, 0.1f), {0, 0, 0}),
              0.15f + 4.5f * 0.009f / 6.0f, 1e-5f);
  EXPECT_NEAR(POLYHEDRON_VOLUME(LOW_TETRAHEDRON(1, 0.0093f, 0.1f), {0, 0, 0}),
              0.15f + 4.5f * 0.0093f / 3.0f, 1e-5f);
}

// A fifth vertex below the middle of the base, 1 below the centre. The three small faces around it
// fill 1.5 (1 + bump), as do the upper ones 1.5; up to 0.001 the base is taken for a face as well,
// with a fourth vertex in its plane: 1.5 / 2.
TEST(FACES, A_VERTEX_IS_BEYOND_A_PLANE_FROM_0_001) {
  const auto with_bump = [](float bump) {
    std::vector<VECTOR3> vertices = LOW_TETRAHEDRON(1, 1, 1);
    vertices.push_back({0, 0, -1 - bump});
    return POLYHEDRON_VOLUME(vertices, {0, 0, 0});
  };
  EXPECT_NEAR(with_bump(0.0009f), 1.5f + 1.5f * 1.0009f + 0.75f, 1e-4f);
  EXPECT_NEAR(with_bump(0.0011f), 1.5f + 1.5f * 1.0011f, 1e-4f);
}

// ---- vertices ----

TEST(VERTICES, THREE_COLLINEAR_VERTICES_GIVE_NO_NUMBER) {
  const std::vector<VECTOR3> vertices{{1, 1, 1}, {2, 2, 1}, {3, 3, 1}, {0, 0, -2}};
  EXPECT_TRUE(std::isnan(POLYHEDRON_VOLUME(vertices, {0, 0, 0})));
}

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
