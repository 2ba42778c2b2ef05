// The convex hull of a few points, in 64-bit reals.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "src/kva_crystal_structures/records.h"
#include "src/kva_crystal_structures/wide_reals.h"

namespace KVA_CRYSTAL_STRUCTURES {

// A face of the hull: three of the points, anticlockwise as seen from outside.
using HULL_TRIANGLE = std::array<WIDE3, 3>;

// The triangles of the hull; none of fewer than four points and of points that lie in a plane to
// within 1e-4 angstroms.
std::vector<HULL_TRIANGLE> HULL_TRIANGLES(std::span<const WIDE3> points_cart);

// Volume of the hull of Cartesian points, in cubic angstroms; exactly 0 for fewer than four points
// and for points that lie in a plane to within 1e-4 angstroms.
float HULL_VOLUME(std::span<const VECTOR3> points_cart);

// How far outside the hull the point lies, in angstroms; 0 inside, and where there is no hull.
float DISTANCE_OUTSIDE_HULL(std::span<const VECTOR3> points_cart, const VECTOR3& point_cart);

}  // namespace KVA_CRYSTAL_STRUCTURES
