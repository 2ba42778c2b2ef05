// Sums of pyramids of polyhedra of which vertices are moved.
#include "src/kva_crystal_structures/moved_hull.h"

#include <algorithm>  // for max, remove_if
#include <cmath>      // for abs, sqrt

namespace KVA_CRYSTAL_STRUCTURES {

namespace {

// Finds where the other vertices lie.
void LOOK_AROUND(std::span<const VECTOR3> v, TRIANGLE& triangle) {
  triangle.BEYOND = triangle.WITHIN = {};
  triangle.PLANE = FACE_PLANE_OF(v, triangle.AT);
  for (std::size_t l = 0; l < v.size() && triangle.BEYOND.COUNT < 2; ++l) {
    if (HAS_CORNER(triangle.AT, l)) continue;
    const float side = SIDE_OF(triangle.PLANE, v[l]);
    if (IS_BEYOND(side)) triangle.BEYOND.ADD(l);
    if (IS_WITHIN(side)) triangle.WITHIN.ADD(l);
  }
}

// The same, as far as the rough plane tells it. With two vertices beyond, nobody asks for PLANE.
void LOOK_AROUND_SOONER(std::span<const VECTOR3> v, TRIANGLE& triangle) {
  const ROUGH_PLANE rough = ROUGH_PLANE_OF(v, triangle.AT);
  const float clear = CLEAR_OF(rough);
  for (std::size_t l = 0; l < v.size(); ++l) {
    if (HAS_CORNER(triangle.AT, l)) continue;
    const float side = ROUGH_SIDE_OF(rough, v[l]);
    if (side > clear) continue;
    if (!(side < -clear)) return LOOK_AROUND(v, triangle);
    triangle.BEYOND.ADD(l);
    if (triangle.BEYOND.COUNT == 2) return;
  }
  triangle.PLANE = FACE_PLANE_OF(v, triangle.AT);
}

}  // namespace

std::vector<TRIANGLE> TRIANGLES_OF(std::span<const VECTOR3> v) {
  const std::size_t n = v.size();
  if (n < 4) return {};
  std::vector<TRIANGLE> triangles;
  triangles.reserve(n * (n - 1) * (n - 2) / 6);
  for (std::size_t i = 0; i < n; ++i)
    for (std::size_t j = i + 1; j < n; ++j)
      for (std::size_t k = j + 1; k < n; ++k) {
        triangles.emplace_back().AT = {i, j, k};
        LOOK_AROUND_SOONER(v, triangles.back());
      }
  return triangles;
}

float VOLUME_AS_MADE(const std::vector<TRIANGLE>& triangles) {
  float volume = 0.0f;
  for (const TRIANGLE& triangle : triangles)
    if (triangle.BEYOND.COUNT == 0 && !HOLDS_CENTRE(triangle.PLANE))
      volume += PYRAMID(triangle.PLANE, triangle.WITHIN.COUNT > 0);
  return volume;
}

// Seen from a centre outside the hull, the faces between are missing, and the areas of the others,
// as vectors that point outward, leave a sum that points back at the centre. Those of a closed
// surface add up to nothing.
bool SURELY_FILL_THE_HULL(const std::vector<TRIANGLE>& triangles) {
  constexpr float nothing = 1e-3f;  // square angstroms
  VECTOR3 sum{};
  for (const TRIANGLE& triangle : triangles) {
    if (triangle.BEYOND.COUNT > 0) continue;
    if (triangle.WITHIN.COUNT > 1) return false;
    const float outward = triangle.PLANE.HEIGHT > 0.0f ? 0.5f : -0.5f;
    const float share = triangle.WITHIN.COUNT > 0 ? 0.5f * outward : outward;
    for (std::size_t c = 0; c < 3; ++c) sum[c] += share * triangle.PLANE.NORMAL[c];
  }
  return XTAL::LENGTH(sum) < nothing && !triangles.empty();
}

// ---- triangles that stay faces, or none ----

namespace {

// How much the products of a rough plane may change with the moves.
struct PRODUCT_CHANGES {
  float OF_NORMAL = 0.0f;   // square angstroms
  float OF_VOLUMES = 0.0f;  // cubic angstroms: of the normal with a vector to another point
};

// The edges of a tetrahedron of vertices or the centre are no longer than reach. Six times its
// volume changes by the length of a move times twice the area of a side at the most.
PRODUCT_CHANGES CHANGES_BY(const MOVES& moves, std::span<const VECTOR3> v) {
  constexpr float rounding = 1e-5f;  // of products, far more than their own
  float radius = 0.0f;
  for (const VECTOR3& vertex : v) radius = std::max(radius, XTAL::LENGTH(vertex));
  const float reach = 2.0f * (radius + moves.OF_ONE + moves.OF_ALL);
  const float area = XTAL::SQUARE(reach);
  return {3.0f * std::max(moves.OF_ONE, moves.OF_ALL) * reach + rounding * area,
          std::max(moves.OF_ONE, 4.0f * moves.OF_ALL) * area + rounding * area * reach};
}

SURE_OF SURE_WITH(const PRODUCT_CHANGES& changes, std::span<const VECTOR3> v,
                  const CORNERS& corners) {
  constexpr float shortest_normal = 1e-4f;  // square angstroms; of corners near a line: rounding
  const ROUGH_PLANE plane = ROUGH_PLANE_OF(v, corners);
  const float least_offset = std::abs(plane.OFFSET) - changes.OF_VOLUMES;
  if (!(least_offset > 0.0f)) return SURE_OF::NOTHING;
  const float normal = std::sqrt(plane.SQUARE);
  const float longest_normal = normal + changes.OF_NORMAL;
  const float clear = 2.0f * in_plane * XTAL::SQUARE(longest_normal) / least_offset;
  bool all_on_this_side = true;
  for (std::size_t l = 0; l < v.size(); ++l) {
    if (HAS_CORNER(corners, l)) continue;
    const float beyond = XTAL::DOT(XTAL::SUBTRACT(v[l], plane.POINT), plane.NORMAL);
    const float outward = plane.OFFSET > 0.0f ? beyond : -beyond;
    if (outward - changes.OF_VOLUMES > clear) return SURE_OF::NO_FACE;
    all_on_this_side = all_on_this_side && outward + changes.OF_VOLUMES < -clear;
  }
  const bool has_height = least_offset > 2.0f * plane_through_centre * longest_normal &&
                          normal - changes.OF_NORMAL > shortest_normal;
  return all_on_this_side && has_height ? SURE_OF::FACE : SURE_OF::NOTHING;
}

}  // namespace

void TELL_SURE_ONES(std::span<const VECTOR3> v, const MOVES& moves,
                    std::vector<TRIANGLE>& triangles) {
  const PRODUCT_CHANGES changes = CHANGES_BY(moves, v);
  for (TRIANGLE& triangle : triangles) triangle.WHEN_MOVED = SURE_WITH(changes, v, triangle.AT);
  const auto left_out = std::remove_if(
      triangles.begin(), triangles.end(),
      [](const TRIANGLE& triangle) { return triangle.WHEN_MOVED == SURE_OF::NO_FACE; });
  triangles.erase(std::max(left_out, triangles.begin() + (triangles.empty() ? 0 : 1)),
                  triangles.end());
}

// ---- moved vertices ----

namespace {

// PYRAMID_OVER when any vertices have moved, as far as it is known before or the rough plane tells
// it; what lay beyond the triangle is looked at first.
float PYRAMID_SOONER(std::span<const VECTOR3> v, const TRIANGLE& triangle) {
  if (triangle.WHEN_MOVED == SURE_OF::FACE) return PYRAMID(FACE_PLANE_OF(v, triangle.AT), false);
  const ROUGH_PLANE plane = ROUGH_PLANE_OF(v, triangle.AT);
  if (SURELY_HOLDS_CENTRE(plane)) return 0.0f;
  const float clear = CLEAR_OF(plane);
  if (triangle.BEYOND.COUNT > 0 && ROUGH_SIDE_OF(plane, v[triangle.BEYOND.LAST]) < -clear)
    return 0.0f;
  for (std::size_t l = 0; l < v.size(); ++l) {
    if (HAS_CORNER(triangle.AT, l)) continue;
    const float side = ROUGH_SIDE_OF(plane, v[l]);
    if (side < -clear) return 0.0f;
    if (!(side > clear)) return PYRAMID_OVER(v, triangle.AT);
  }
  const FACE_PLANE exact = FACE_PLANE_OF(v, triangle.AT);
  return HOLDS_CENTRE(exact) ? 0.0f : PYRAMID(exact, false);
}

// Pyramid over a triangle when only one vertex has moved, which is none of its corners.
float PYRAMID_KEPT(const TRIANGLE& triangle, std::size_t moved, const VECTOR3& vertex) {
  if (triangle.WHEN_MOVED == SURE_OF::FACE) return PYRAMID(triangle.PLANE, false);
  if (triangle.BEYOND.ANY_BUT(moved) || HOLDS_CENTRE(triangle.PLANE)) return 0.0f;
  const float side = SIDE_OF(triangle.PLANE, vertex);
  if (IS_BEYOND(side)) return 0.0f;
  return PYRAMID(triangle.PLANE, IS_WITHIN(side) || triangle.WITHIN.ANY_BUT(moved));
}

}  // namespace

float VOLUME_WITH_ONE_MOVED(std::span<const VECTOR3> v, const std::vector<TRIANGLE>& triangles,
                            std::size_t moved) {
  float volume = 0.0f;
  for (const TRIANGLE& triangle : triangles)
    volume += HAS_CORNER(triangle.AT, moved) ? PYRAMID_SOONER(v, triangle)
                                             : PYRAMID_KEPT(triangle, moved, v[moved]);
  return volume;
}

float VOLUME_WITH_ALL_MOVED(std::span<const VECTOR3> v, const std::vector<TRIANGLE>& triangles) {
  float volume = 0.0f;
  for (const TRIANGLE& triangle : triangles) volume += PYRAMID_SOONER(v, triangle);
  return volume;
}

}  // namespace KVA_CRYSTAL_STRUCTURES
