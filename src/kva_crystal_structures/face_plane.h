// Triangles of the vertices of a polyhedron about its centre at 0: on which side of one another
// vertex lies, and the pyramid from the centre over one that is a face. Inline, since CALC spends
// more time here than anywhere else.
#pragma once

#include <cmath>  // for abs
#include <limits>
#include <span>

#include "src/kva_crystal_structures/records.h"

namespace KVA_CRYSTAL_STRUCTURES {

using CORNERS = std::array<std::size_t, 3>;  // numbers of vertices, from 0

inline bool HAS_CORNER(const CORNERS& corners, std::size_t vertex) {
  return corners[0] == vertex || corners[1] == vertex || corners[2] == vertex;
}

inline constexpr float in_plane = 1e-3f;  // square angstroms, tolerance of the face test
inline constexpr float plane_through_centre = 1e-5f;  // angstroms

struct FACE_PLANE {
  VECTOR3 POINT{};
  VECTOR3 NORMAL{};
  float AREA = 0.0f;    // of the triangle, square angstroms
  float HEIGHT = 0.0f;  // signed distance from the centre, angstroms
};

// Collinear corners have no area, and a height that is no number.
inline FACE_PLANE FACE_PLANE_OF(std::span<const VECTOR3> v, const CORNERS& corners) {
  const auto& [i, j, k] = corners;
  FACE_PLANE plane{v[i], XTAL::CROSS(XTAL::SUBTRACT(v[j], v[i]), XTAL::SUBTRACT(v[k], v[i]))};
  plane.AREA = 0.5f * XTAL::LENGTH(plane.NORMAL);
  plane.HEIGHT = 0.5f * XTAL::DOT(v[i], plane.NORMAL) / plane.AREA;
  return plane;
}

// Such a face has no pyramid.
inline bool HOLDS_CENTRE(const FACE_PLANE& plane) {
  return std::abs(plane.HEIGHT) < plane_through_centre;
}

// Which side of the plane a vertex is on, in square angstroms: below 0 beyond it, as seen from the
// centre.
inline float SIDE_OF(const FACE_PLANE& plane, const VECTOR3& vertex) {
  return 0.5f * XTAL::DOT(XTAL::SUBTRACT(plane.POINT, vertex), plane.NORMAL) / plane.AREA *
         plane.HEIGHT;
}

inline bool IS_BEYOND(float side) {
  return side < -in_plane;
}

inline bool IS_WITHIN(float side) {
  return std::abs(side) < in_plane;
}

// Volume of the pyramid from the centre over a face. With a fourth vertex in its plane it counts
// half, as two pairs of triangles make the face up.
inline float PYRAMID(const FACE_PLANE& plane, bool fourth_vertex) {
  return plane.AREA * std::abs(plane.HEIGHT) / (fourth_vertex ? 6.0f : 3.0f);
}

// Pyramid over a triangle of vertices; 0 when it is no face, as a vertex lies beyond it.
inline float PYRAMID_OVER(std::span<const VECTOR3> v, const CORNERS& corners) {
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

// ---- the same without roots and divisions ----

// A plane whose normal is as long as twice the area of the triangle.
struct ROUGH_PLANE {
  VECTOR3 POINT{};
  VECTOR3 NORMAL{};
  float OFFSET = 0.0f;  // of the plane along the normal, from the centre
  float SQUARE = 0.0f;  // of the normal
};

inline ROUGH_PLANE ROUGH_PLANE_OF(std::span<const VECTOR3> v, const CORNERS& corners) {
  const auto& [i, j, k] = corners;
  ROUGH_PLANE plane{v[i], XTAL::CROSS(XTAL::SUBTRACT(v[j], v[i]), XTAL::SUBTRACT(v[k], v[i]))};
  plane.OFFSET = XTAL::DOT(v[i], plane.NORMAL);
  plane.SQUARE = XTAL::DOT(plane.NORMAL, plane.NORMAL);
  return plane;
}

// What SIDE_OF is, times the square of the normal.
inline float ROUGH_SIDE_OF(const ROUGH_PLANE& plane, const VECTOR3& vertex) {
  return XTAL::DOT(XTAL::SUBTRACT(plane.POINT, vertex), plane.NORMAL) * plane.OFFSET;
}

// Beyond it a rough side tells the side for sure: twice the tolerance is far more than rounding.
// Corners near a line tell nothing.
inline float CLEAR_OF(const ROUGH_PLANE& plane) {
  constexpr float smallest_square = 1e-10f;
  return plane.SQUARE > smallest_square ? 2.0f * in_plane * plane.SQUARE
                                        : std::numeric_limits<float>::infinity();
}

// Half of the tolerance, for the same reason.
inline bool SURELY_HOLDS_CENTRE(const ROUGH_PLANE& plane) {
  constexpr float near = 0.5f * plane_through_centre;
  return XTAL::SQUARE(plane.OFFSET) < XTAL::SQUARE(near) * plane.SQUARE;
}

}  // namespace KVA_CRYSTAL_STRUCTURES
