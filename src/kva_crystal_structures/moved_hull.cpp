// Sums of pyramids of polyhedra of which vertices are moved.
#include "src/kva_crystal_structures/moved_hull.h"

namespace KVA_CRYSTAL_STRUCTURES {

namespace {

TRIANGLE TRIANGLE_OF(std::span<const VECTOR3> v, const CORNERS& corners) {
  TRIANGLE triangle{corners, FACE_PLANE_OF(v, corners), {}, {}};
  const ROUGH_PLANE rough = ROUGH_PLANE_OF(v, corners);
  const float clear = CLEAR_OF(rough);
  for (std::size_t l = 0; l < v.size() && triangle.BEYOND.COUNT < 2; ++l) {
    if (HAS_CORNER(corners, l) || ROUGH_SIDE_OF(rough, v[l]) > clear) continue;
    const float side = SIDE_OF(triangle.PLANE, v[l]);
    if (IS_BEYOND(side)) triangle.BEYOND.ADD(l);
    if (IS_WITHIN(side)) triangle.WITHIN.ADD(l);
  }
  return triangle;
}

}  // namespace

std::vector<TRIANGLE> TRIANGLES_OF(std::span<const VECTOR3> v) {
  const std::size_t n = v.size();
  if (n < 4) return {};
  std::vector<TRIANGLE> triangles;
  triangles.reserve(n * (n - 1) * (n - 2) / 6);
  for (std::size_t i = 0; i < n; ++i)
    for (std::size_t j = i + 1; j < n; ++j)
      for (std::size_t k = j + 1; k < n; ++k) triangles.push_back(TRIANGLE_OF(v, {i, j, k}));
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

namespace {

// Pyramid over a triangle whose corners have moved, and others perhaps as well; 0 when it is no
// face.
float PYRAMID_MADE_AGAIN(std::span<const VECTOR3> v, const CORNERS& corners) {
  const FACE_PLANE plane = FACE_PLANE_OF(v, corners);
  if (HOLDS_CENTRE(plane)) return 0.0f;
  bool fourth_vertex = false;
  for (std::size_t l = 0; l < v.size(); ++l) {
    if (HAS_CORNER(corners, l)) continue;
    const float side = SIDE_OF(plane, v[l]);
    if (IS_BEYOND(side)) return 0.0f;
    fourth_vertex = fourth_vertex || IS_WITHIN(side);
  }
  return PYRAMID(plane, fourth_vertex);
}

// The same, as far as the rough plane tells it; what lay beyond the triangle is looked at first.
float PYRAMID_SOONER(std::span<const VECTOR3> v, const TRIANGLE& triangle) {
  const ROUGH_PLANE plane = ROUGH_PLANE_OF(v, triangle.AT);
  if (SURELY_HOLDS_CENTRE(plane)) return 0.0f;
  const float clear = CLEAR_OF(plane);
  if (triangle.BEYOND.COUNT > 0 && ROUGH_SIDE_OF(plane, v[triangle.BEYOND.LAST]) < -clear)
    return 0.0f;
  for (std::size_t l = 0; l < v.size(); ++l) {
    if (HAS_CORNER(triangle.AT, l)) continue;
    const float side = ROUGH_SIDE_OF(plane, v[l]);
    if (side < -clear) return 0.0f;
    if (!(side > clear)) return PYRAMID_MADE_AGAIN(v, triangle.AT);
  }
  return PYRAMID(FACE_PLANE_OF(v, triangle.AT), false);
}

// Pyramid over a triangle when only one vertex has moved, which is none of its corners.
float PYRAMID_KEPT(const TRIANGLE& triangle, std::size_t moved, const VECTOR3& vertex) {
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
