// Volumes of the hulls of ligands, as the sum of pyramids from the centre over the faces. Prints
// nothing.
#include "src/kva_crystal_structures/polyhedron_volume.h"

#include <cmath>  // for sqrt, abs

#include "console_code/kva_utilities/matrix.h"
#include "console_code/kva_utilities/numbers.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::NOTNUM;
using KVA_UTILITIES::TINY_REAL;
using XTAL::SQUARE;

// ---- volume of a hull ----

namespace {

constexpr float plane_through_centre = 1e-5f;  // angstroms; such a face has no pyramid
constexpr float in_plane = 1e-3f;              // square angstroms, tolerance of the face test

using CORNERS = std::array<std::size_t, 3>;  // numbers of vertices, from 0

bool HAS_CORNER(const CORNERS& corners, std::size_t vertex) {
  return corners[0] == vertex || corners[1] == vertex || corners[2] == vertex;
}

struct PLANE {
  VECTOR3 POINT{};
  VECTOR3 NORMAL{};
  float AREA = 0.0f;    // of the triangle, square angstroms
  float HEIGHT = 0.0f;  // signed distance from the centre, angstroms
};

// Inline: CALC spends more time here than anywhere else.
inline PLANE PLANE_OF(const std::vector<VECTOR3>& v, const CORNERS& corners) {
  const auto& [i, j, k] = corners;
  PLANE plane{v[i], XTAL::CROSS(XTAL::SUBTRACT(v[j], v[i]), XTAL::SUBTRACT(v[k], v[i]))};
  plane.AREA = 0.5f * XTAL::LENGTH(plane.NORMAL);
  plane.HEIGHT = 0.5f * XTAL::DOT(v[i], plane.NORMAL) / plane.AREA;
  return plane;
}

bool HOLDS_CENTRE(const PLANE& plane) {
  return std::abs(plane.HEIGHT) < plane_through_centre;
}

// Which side of the plane a vertex is on, in square angstroms: below 0 beyond it, as seen from the
// centre.
float SIDE_OF(const PLANE& plane, const VECTOR3& vertex) {
  return 0.5f * XTAL::DOT(XTAL::SUBTRACT(plane.POINT, vertex), plane.NORMAL) / plane.AREA *
         plane.HEIGHT;
}

bool IS_BEYOND(float side) {
  return side < -in_plane;
}

bool IS_WITHIN(float side) {
  return std::abs(side) < in_plane;
}

// Volume of the pyramid from the centre over a face. With a fourth vertex in its plane it counts
// half, as two pairs of triangles make the face up.
float PYRAMID(const PLANE& plane, bool fourth_vertex) {
  return plane.AREA * std::abs(plane.HEIGHT) / (fourth_vertex ? 6.0f : 3.0f);
}

// None, one or more vertices: how many, and the last that was met.
struct SOME_VERTICES {
  int COUNT = 0;
  std::size_t LAST = 0;

  void ADD(std::size_t vertex) {
    ++COUNT;
    LAST = vertex;
  }
  bool ANY_BUT(std::size_t vertex) const { return COUNT > 1 || (COUNT == 1 && LAST != vertex); }
};

// A triangle of vertices, and where the others lie: those in its plane are known as long as no more
// than one lies beyond it.
struct TRIANGLE {
  CORNERS AT{};
  PLANE IN{};
  SOME_VERTICES BEYOND;
  SOME_VERTICES WITHIN;
};

TRIANGLE TRIANGLE_OF(const std::vector<VECTOR3>& v, const CORNERS& corners) {
  TRIANGLE triangle{corners, PLANE_OF(v, corners), {}, {}};
  for (std::size_t l = 0; l < v.size() && triangle.BEYOND.COUNT < 2; ++l) {
    if (HAS_CORNER(corners, l)) continue;
    const float side = SIDE_OF(triangle.IN, v[l]);
    if (IS_BEYOND(side)) triangle.BEYOND.ADD(l);
    if (IS_WITHIN(side)) triangle.WITHIN.ADD(l);
  }
  return triangle;
}

// All triangles of the vertices; none of fewer than four, which sets the error.
std::vector<TRIANGLE> TRIANGLES_OF(const std::vector<VECTOR3>& v) {
  const std::size_t n = v.size();
  ERR_GEOMETRY = n < 4;
  ERR_GEOMETRY_MESS =
      ERR_GEOMETRY ? "The number of vertices for polyhedron volume is less than 4" : "";
  if (ERR_GEOMETRY) return {};
  std::vector<TRIANGLE> triangles;
  triangles.reserve(n * (n - 1) * (n - 2) / 6);
  for (std::size_t i = 0; i < n; ++i)
    for (std::size_t j = i + 1; j < n; ++j)
      for (std::size_t k = j + 1; k < n; ++k) triangles.push_back(TRIANGLE_OF(v, {i, j, k}));
  return triangles;
}

// Volume of the hull of the vertices about the centre at 0.
float HULL_VOLUME(const std::vector<TRIANGLE>& triangles) {
  float volume = 0.0f;
  for (const TRIANGLE& triangle : triangles)
    if (triangle.BEYOND.COUNT == 0 && !HOLDS_CENTRE(triangle.IN))
      volume += PYRAMID(triangle.IN, triangle.WITHIN.COUNT > 0);
  return volume;
}

std::vector<VECTOR3> IN_FRAME(const MATRIX3& orthogonalisation,
                              std::span<const VECTOR3> vectors_frac) {
  std::vector<VECTOR3> vectors_cart;
  vectors_cart.reserve(vectors_frac.size());
  for (const VECTOR3& vector : vectors_frac)
    vectors_cart.push_back(XTAL::MULTIPLY(orthogonalisation, vector));
  return vectors_cart;
}

}  // namespace

float POLYHEDRON_VOLUME(std::span<const VECTOR3> vertices_cart, const VECTOR3& centre_cart) {
  std::vector<VECTOR3> v;
  v.reserve(vertices_cart.size());
  for (const VECTOR3& vertex : vertices_cart) v.push_back(XTAL::SUBTRACT(vertex, centre_cart));
  return HULL_VOLUME(TRIANGLES_OF(v));
}

float POLYHEDRON_VOLUME_XYZ(const MATRIX3& orthogonalisation,
                            std::span<const VECTOR3> vertices_frac, const VECTOR3& centre_frac) {
  return POLYHEDRON_VOLUME(IN_FRAME(orthogonalisation, vertices_frac),
                           XTAL::MULTIPLY(orthogonalisation, centre_frac));
}

// ---- volume with its esd ----

namespace {

struct SQUARE_MATRIX {
  std::size_t SIDE = 0;
  std::vector<float> VALUES;  // row by row

  explicit SQUARE_MATRIX(std::size_t side) : SIDE(side), VALUES(side * side, 0.0f) {}
  float& operator()(std::size_t row, std::size_t column) { return VALUES[row * SIDE + column]; }
  float operator()(std::size_t row, std::size_t column) const {
    return VALUES[row * SIDE + column];
  }
};

// Copies the 6 by 6 covariance of ligands j and k (from 0) into the rows and columns of both.
void PLACE_PAIR(const MATRIX6& pair, std::size_t j, std::size_t k, SQUARE_MATRIX& vcv) {
  const std::array<std::size_t, 2> start{3 * j, 3 * k};
  for (std::size_t row = 0; row < 6; ++row)
    for (std::size_t column = 0; column < 6; ++column)
      vcv(start[row / 3] + row % 3, start[column / 3] + column % 3) = pair[row][column];
}

// Covariance of the coordinates of all ligands, 3n by 3n, with the correlations that symmetry
// imposes between them.
SQUARE_MATRIX LIGAND_COVARIANCE(const std::vector<PLACED_ATOM>& ligands) {
  const std::size_t n = ligands.size();
  SQUARE_MATRIX vcv(3 * n);
  for (std::size_t j = 0; j < n; ++j)
    for (std::size_t k = j + 1; k < n; ++k)
      PLACE_PAIR(CALC_VCV_TWO_ATOMS(ligands[j], ligands[k]), j, k, vcv);
  return vcv;
}

// Pyramid over a triangle whose corners have moved, and others perhaps as well; 0 when it is no
// face of the hull. What lay beyond it is looked at first.
float MOVED_PYRAMID(const std::vector<VECTOR3>& v, const TRIANGLE& triangle) {
  const PLANE plane = PLANE_OF(v, triangle.AT);
  if (HOLDS_CENTRE(plane)) return 0.0f;
  if (triangle.BEYOND.COUNT > 0 && IS_BEYOND(SIDE_OF(plane, v[triangle.BEYOND.LAST]))) return 0.0f;
  bool fourth_vertex = false;
  for (std::size_t l = 0; l < v.size(); ++l) {
    if (HAS_CORNER(triangle.AT, l)) continue;
    const float side = SIDE_OF(plane, v[l]);
    if (IS_BEYOND(side)) return 0.0f;
    fourth_vertex = fourth_vertex || IS_WITHIN(side);
  }
  return PYRAMID(plane, fourth_vertex);
}

// Pyramid over a triangle when only one vertex has moved, which is none of its corners.
float UNMOVED_PYRAMID(const TRIANGLE& triangle, std::size_t moved, const VECTOR3& vertex) {
  if (triangle.BEYOND.ANY_BUT(moved) || HOLDS_CENTRE(triangle.IN)) return 0.0f;
  const float side = SIDE_OF(triangle.IN, vertex);
  if (IS_BEYOND(side)) return 0.0f;
  return PYRAMID(triangle.IN, IS_WITHIN(side) || triangle.WITHIN.ANY_BUT(moved));
}

// Volume of the hull when only one vertex has moved since the triangles were made.
float HULL_VOLUME(const std::vector<VECTOR3>& v, const std::vector<TRIANGLE>& triangles,
                  std::size_t moved) {
  float volume = 0.0f;
  for (const TRIANGLE& triangle : triangles)
    volume += HAS_CORNER(triangle.AT, moved) ? MOVED_PYRAMID(v, triangle)
                                             : UNMOVED_PYRAMID(triangle, moved, v[moved]);
  return volume;
}

// The same when all vertices have.
float HULL_VOLUME(const std::vector<VECTOR3>& v, const std::vector<TRIANGLE>& triangles) {
  float volume = 0.0f;
  for (const TRIANGLE& triangle : triangles) volume += MOVED_PYRAMID(v, triangle);
  return volume;
}

// A polyhedron about its centre at 0: the ligands as fractional vectors, the same as Cartesian
// vertices, the triangles of these and the volume.
struct POLYHEDRON_ABOUT_ZERO {
  std::vector<VECTOR3> VECTORS_FRAC;
  std::vector<VECTOR3> VERTICES;
  std::vector<TRIANGLE> TRIANGLES;
  float VOLUME = 0.0f;
};

POLYHEDRON_ABOUT_ZERO POLYHEDRON_OF(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  POLYHEDRON_ABOUT_ZERO polyhedron;
  polyhedron.VECTORS_FRAC = LIGAND_VECTORS(phase, i);
  polyhedron.VERTICES = IN_FRAME(phase.CELL.CR_ORTH_CEL, polyhedron.VECTORS_FRAC);
  polyhedron.TRIANGLES = TRIANGLES_OF(polyhedron.VERTICES);
  polyhedron.VOLUME = HULL_VOLUME(polyhedron.TRIANGLES);
  return polyhedron;
}

// Change of the volume with each ligand coordinate, by a shift of one esd.
std::vector<float> VOLUME_DERIVATIVES(const POLYHEDRON_ABOUT_ZERO& polyhedron, const MATRIX3& frame,
                                      const SQUARE_MATRIX& vcv) {
  std::vector<float> jacobian(vcv.SIDE, 0.0f);
  std::vector<VECTOR3> vertices = polyhedron.VERTICES;
  for (std::size_t j = 0; j < vertices.size(); ++j) {
    for (std::size_t c = 0; c < 3; ++c) {
      const std::size_t p = 3 * j + c;
      if (!(vcv(p, p) > TINY_REAL)) continue;
      const float shift = std::sqrt(vcv(p, p));
      VECTOR3 shifted = polyhedron.VECTORS_FRAC[j];
      shifted[c] += shift;
      vertices[j] = XTAL::MULTIPLY(frame, shifted);
      jacobian[p] = (HULL_VOLUME(vertices, polyhedron.TRIANGLES, j) - polyhedron.VOLUME) / shift;
    }
    vertices[j] = polyhedron.VERTICES[j];
  }
  return jacobian;
}

float VARIANCE(const std::vector<float>& jacobian, const SQUARE_MATRIX& vcv) {
  float variance = 0.0f;
  for (std::size_t p = 0; p < jacobian.size(); ++p)
    for (std::size_t q = 0; q < jacobian.size(); ++q)
      variance += jacobian[p] * vcv(p, q) * jacobian[q];
  return variance;
}

float VOLUME_VARIANCE_OF_CELL(const POLYHEDRON_ABOUT_ZERO& polyhedron,
                              const std::vector<MATRIX3>& shifted_frames) {
  // Shifts without an esd are left out, so that a volume that is no number is passed on here.
  if (NOTNUM(polyhedron.VOLUME)) return polyhedron.VOLUME;
  float variance = 0.0f;
  for (const MATRIX3& frame : shifted_frames)
    variance += SQUARE(HULL_VOLUME(IN_FRAME(frame, polyhedron.VECTORS_FRAC), polyhedron.TRIANGLES) -
                       polyhedron.VOLUME);
  return variance;
}

}  // namespace

void CALC_POLYVOL_VCV(const COORDINATIONS& around, CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  const POLYHEDRON_ABOUT_ZERO polyhedron = POLYHEDRON_OF(phase, i);
  phase.POLYHEDRON(i, POLY_VOLUME) = polyhedron.VOLUME;

  const SQUARE_MATRIX vcv = LIGAND_COVARIANCE(around.LIGANDS(i));
  const std::vector<float> jacobian = VOLUME_DERIVATIVES(polyhedron, phase.CELL.CR_ORTH_CEL, vcv);
  const float variance =
      VARIANCE(jacobian, vcv) + VOLUME_VARIANCE_OF_CELL(polyhedron, around.SHIFTED_FRAMES);
  // Unlike ESD_OF: a volume that is no number has an esd that is none either.
  phase.POLYHEDRON(i, POLY_VOLUME_STD) = variance < 0.0f ? 0.0f : std::sqrt(variance);
}

void CALC_POLYVOL_VCV(CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  CALC_POLYVOL_VCV(COORDINATIONS_OF(RULER_FOR(phase)), phase, i);
}

float CALC_POLYVOL_SRB(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  std::vector<VECTOR3> vectors_frac;
  for (int j : BONDS_PRESENT(phase, i)) {
    const float corrected = phase.BONDS(i, j, BOND_LENGTH_SRB);
    const float length = phase.BONDS(i, j, BOND_LENGTH);
    if (!(corrected > 0.0f) || !(length > 0.0f)) return 0.0f;
    VECTOR3 vector = phase.BONDS.VECTOR(i, j);
    for (float& component : vector) component *= corrected / length;
    vectors_frac.push_back(vector);
  }
  return POLYHEDRON_VOLUME_XYZ(phase.CELL.CR_ORTH_CEL, vectors_frac, {});
}

}  // namespace KVA_CRYSTAL_STRUCTURES
