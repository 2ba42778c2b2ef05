// The convex hull of a few points, in 64-bit reals.
#pragma once

#include <span>

#include "src/kva_crystal_structures/records.h"

namespace KVA_CRYSTAL_STRUCTURES {

// Volume of the hull of Cartesian points, in cubic angstroms; exactly 0 for fewer than four points
// and for points that lie in a plane to within 1e-4 angstroms.
float HULL_VOLUME(std::span<const VECTOR3> points_cart);

// How far outside the hull the point lies, in angstroms; 0 inside, and where there is no hull.
float DISTANCE_OUTSIDE_HULL(std::span<const VECTOR3> points_cart, const VECTOR3& point_cart);

}  // namespace KVA_CRYSTAL_STRUCTURES
