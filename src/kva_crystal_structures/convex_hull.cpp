// Convex hulls, point by point: each takes away the faces that it sees, and closes the gap with a
// face over each edge of it. The surface stays closed even where rounding decides what a point
// sees, so that coplanar points need no care.
#include "src/kva_crystal_structures/convex_hull.h"

#include <algorithm>  // for max_element, stable_partition, find, clamp, min
#include <cmath>      // for abs

namespace KVA_CRYSTAL_STRUCTURES {

namespace {

using POINT = WIDE3;
using FACE = HULL_TRIANGLE;

POINT BETWEEN(const POINT& a, const POINT& b) {
  return SUBTRACT(b, a);
}

POINT NORMAL_OF(const FACE& face) {
  return CROSS(BETWEEN(face[0], face[1]), BETWEEN(face[0], face[2]));
}

// Six times the volume over the face up to the point, above 0 outside.
double SIX_VOLUMES(const FACE& face, const POINT& point) {
  return DOT(NORMAL_OF(face), BETWEEN(face[0], point));
}

// No point sees the faces that it is a corner of, whatever rounding makes of their volumes.
bool SEES(const POINT& point, const FACE& face) {
  constexpr double rounding = 1e-9;  // cubic angstroms
  return SIX_VOLUMES(face, point) > rounding;
}

// The point for which the measure is largest.
template <typename MEASURE>
POINT FARTHEST(std::span<const POINT> points, const MEASURE& measure) {
  return *std::max_element(points.begin(), points.end(),
                           [&](const POINT& a, const POINT& b) { return measure(a) < measure(b); });
}

// Four points far from each other as faces; none when all lie in a plane.
std::vector<FACE> FIRST_FACES(std::span<const POINT> points) {
  constexpr double flat = 1e-4;  // angstroms
  const POINT a = points.front();
  const POINT b = FARTHEST(points, [&](const POINT& p) { return LENGTH(BETWEEN(a, p)); });
  const POINT along = BETWEEN(a, b);
  const POINT c =
      FARTHEST(points, [&](const POINT& p) { return LENGTH(CROSS(along, BETWEEN(a, p))); });
  const POINT normal = NORMAL_OF({a, b, c});
  const POINT d =
      FARTHEST(points, [&](const POINT& p) { return std::abs(DOT(normal, BETWEEN(a, p))); });
  const double up = DOT(normal, BETWEEN(a, d));
  if (LENGTH(normal) <= flat * LENGTH(along) || std::abs(up) <= flat * LENGTH(normal)) return {};
  if (up > 0.0) return {{a, c, b}, {a, b, d}, {b, c, d}, {c, a, d}};
  return {{a, b, c}, {b, a, d}, {c, b, d}, {a, c, d}};
}

using HULL_EDGE = std::array<POINT, 2>;

// Edges of the seen faces whose other side is not seen.
std::vector<HULL_EDGE> HORIZON(const std::vector<FACE>& seen) {
  std::vector<HULL_EDGE> edges;
  for (const FACE& face : seen)
    for (std::size_t k = 0; k < 3; ++k) {
      const HULL_EDGE edge{face[k], face[(k + 1) % 3]};
      const auto other = std::find(edges.begin(), edges.end(), HULL_EDGE{edge[1], edge[0]});
      if (other == edges.end())
        edges.push_back(edge);
      else
        edges.erase(other);
    }
  return edges;
}

void ADD_POINT(const POINT& point, std::vector<FACE>& faces) {
  const auto hidden = [&](const FACE& face) { return !SEES(point, face); };
  const auto first_seen = std::stable_partition(faces.begin(), faces.end(), hidden);
  const std::vector<FACE> seen(first_seen, faces.end());
  faces.erase(first_seen, faces.end());
  for (const HULL_EDGE& edge : HORIZON(seen)) faces.push_back({edge[0], edge[1], point});
}

std::vector<FACE> HULL_OF(std::span<const VECTOR3> points_cart) {
  std::vector<POINT> points;
  for (const VECTOR3& p : points_cart) points.push_back(WIDE(p));
  return HULL_TRIANGLES(points);
}

// Distance of the point from the segment.
double FROM_EDGE(const HULL_EDGE& edge, const POINT& point) {
  const POINT along = BETWEEN(edge[0], edge[1]);
  const POINT to = BETWEEN(edge[0], point);
  const double t = std::clamp(DOT(to, along) / DOT(along, along), 0.0, 1.0);
  return LENGTH(SUBTRACT(to, SCALED(along, t)));
}

// Distance of the point from the triangle: from its plane above it, from its edges elsewhere.
double FROM_FACE(const FACE& face, const POINT& point) {
  const POINT normal = NORMAL_OF(face);
  bool above = true;
  double nearest_edge = FROM_EDGE({face[2], face[0]}, point);
  for (std::size_t k = 0; k < 3; ++k) {
    const HULL_EDGE edge{face[k], face[(k + 1) % 3]};
    above = above && DOT(CROSS(normal, BETWEEN(edge[0], edge[1])), BETWEEN(edge[0], point)) > 0.0;
    nearest_edge = std::min(nearest_edge, FROM_EDGE(edge, point));
  }
  return above ? SIX_VOLUMES(face, point) / LENGTH(normal) : nearest_edge;
}

}  // namespace

std::vector<HULL_TRIANGLE> HULL_TRIANGLES(std::span<const WIDE3> points_cart) {
  if (points_cart.size() < 4) return {};
  std::vector<FACE> faces = FIRST_FACES(points_cart);
  if (faces.empty()) return {};
  for (const POINT& point : points_cart) ADD_POINT(point, faces);
  return faces;
}

float HULL_VOLUME(std::span<const VECTOR3> points_cart) {
  const std::vector<FACE> faces = HULL_OF(points_cart);
  double six_volumes = 0.0;
  for (const FACE& face : faces) six_volumes -= SIX_VOLUMES(face, faces.front()[0]);
  return static_cast<float>(six_volumes / 6.0);
}

float DISTANCE_OUTSIDE_HULL(std::span<const VECTOR3> points_cart, const VECTOR3& point_cart) {
  const POINT point = WIDE(point_cart);
  bool outside = false;
  double distance = 0.0;
  for (const FACE& face : HULL_OF(points_cart)) {
    if (!SEES(point, face)) continue;
    const double from_face = FROM_FACE(face, point);
    distance = outside ? std::min(distance, from_face) : from_face;
    outside = true;
  }
  return static_cast<float>(distance);
}

}  // namespace KVA_CRYSTAL_STRUCTURES
