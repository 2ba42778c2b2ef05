// Quantities of points in space, in 64-bit reals: lengths, angles, planes, and the distortion of
// polyhedra. Knows no structure.
#pragma once

#include <limits>
#include <span>
#include <vector>

#include "src/kva_crystal_structures/wide_reals.h"

namespace KVA_CRYSTAL_STRUCTURES {

using WIDE_POINTS = std::span<const WIDE3>;  // Cartesian, angstroms

// What stands for a value that there is not.
inline constexpr double no_value = std::numeric_limits<double>::quiet_NaN();

// ---- atoms; all angles in degrees ----

double WIDE_ANGLE(const WIDE3& leg1, const WIDE3& leg2);

// From -180 to 180, positive when the far bond, seen along the middle one, is turned clockwise from
// the near one (IUPAC Commission on Macromolecular Nomenclature, Pure and Applied Chemistry 53
// (1981) 733-752).
double TORSION_OF(const WIDE3& a, const WIDE3& b, const WIDE3& c, const WIDE3& d);

// Whether points lie in one line, or at one place: they make no plane.
bool IN_ONE_LINE(WIDE_POINTS points);

// The plane of least squares, all weights 1. The normal points to the side from which the first
// three points run anticlockwise, or all of them where those are in line.
struct WIDE_PLANE {
  WIDE3 POINT{};
  WIDE3 NORMAL{};  // length 1; not numbers for points in one line
};
WIDE_PLANE PLANE_THROUGH(WIDE_POINTS points);
double OFF_PLANE(const WIDE3& point, WIDE_POINTS plane);
double ANGLE_OF_PLANES(WIDE_POINTS plane1, WIDE_POINTS plane2);  // 0 to 90

WIDE3 MEAN_OF(WIDE_POINTS points);

// ---- polyhedra: ligands as vectors from their centre ----

// A face of the convex hull: its vertices in order, seen from outside anticlockwise.
using HULL_FACE = std::vector<std::size_t>;
// Faces of the hull; none of points in one plane. Vertices within a thousandth of an angstrom of
// the plane of a face belong to it.
std::vector<HULL_FACE> HULL_FACES(WIDE_POINTS vertices);
// Volume within the faces. One with more than three vertices is spanned about their mean, so that
// a vertex that leaves its plane counts to the same amount both ways.
double VOLUME_WITHIN(const std::vector<HULL_FACE>& faces, WIDE_POINTS vertices);

double MEAN_LENGTH_OF(WIDE_POINTS ligands);

// Quadratic elongation and angle variance as CALC has them, for 4 and 6 ligands.
double QUADRATIC_ELONGATION(const std::vector<HULL_FACE>& faces, WIDE_POINTS ligands);
double ANGLE_VARIANCE(WIDE_POINTS ligands);

// Mean deviation of the bond lengths over their mean (W. H. Baur, Acta Cryst. B30 (1974)
// 1195-1215).
double BAUR_INDEX(WIDE_POINTS ligands);

// Effective coordination number with the weighted mean length iterated to its own fixed point (R.
// Hoppe, Zeitschrift fuer Kristallographie 150 (1979) 23-52).
double EFFECTIVE_COORDINATION(WIDE_POINTS ligands);

double DISTANCE_TO_CENTROID(WIDE_POINTS ligands);

// Sum of the deviations of the twelve cis angles of six ligands from 90 degrees; none of a
// polyhedron that has another number of them.
double CIS_DEVIATION(WIDE_POINTS ligands);

}  // namespace KVA_CRYSTAL_STRUCTURES
