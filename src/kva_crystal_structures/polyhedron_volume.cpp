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

// A triangle of vertices, and what is known of the vertices beyond its plane.
struct TRIANGLE {
  std::array<std::size_t, 3> CORNERS{};  // their numbers, from 0
  int BEYOND = 0;                        // none, one, or 2 for more than one
  std::size_t LAST_BEYOND = 0;           // the last that was looked at
};

bool HAS_CORNER(const TRIANGLE& triangle, std::size_t vertex) {
  const auto& [i, j, k] = triangle.CORNERS;
  return i == vertex || j == vertex || k == vertex;
}

struct PLANE {
  VECTOR3 POINT{};
  VECTOR3 NORMAL{};
  float AREA = 0.0f;    // of the triangle, square angstroms
  float HEIGHT = 0.0f;  // signed distance from the centre, angstroms
};

// Inline: CALC spends more time here than anywhere else.
inline PLANE PLANE_OF(const std::vector<VECTOR3>& v, const TRIANGLE& triangle) {
  const auto& [i, j, k] = triangle.CORNERS;
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

bool IS_BEYOND(const PLANE& plane, const VECTOR3& vertex) {
  return SIDE_OF(plane, vertex) < -in_plane;
}

TRIANGLE TRIANGLE_OF(const std::vector<VECTOR3>& v, std::size_t i, std::size_t j, std::size_t k) {
  TRIANGLE triangle{{i, j, k}};
  const PLANE plane = PLANE_OF(v, triangle);
  for (std::size_t l = 0; l < v.size() && triangle.BEYOND < 2; ++l)
    if (!HAS_CORNER(triangle, l) && IS_BEYOND(plane, v[l])) {
      ++triangle.BEYOND;
      triangle.LAST_BEYOND = l;
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
      for (std::size_t k = j + 1; k < n; ++k) triangles.push_back(TRIANGLE_OF(v, i, j, k));
  return triangles;
}

// Volume of the pyramid from the centre over a triangle; 0 when it is no face of the hull. A face
// with a fourth vertex in its plane counts half, as two pairs of triangles make it up. Vertices may
// have moved since the triangle was made: what lay beyond it is looked at first.
float PYRAMID(const std::vector<VECTOR3>& v, const TRIANGLE& triangle) {
  const PLANE plane = PLANE_OF(v, triangle);
  if (HOLDS_CENTRE(plane)) return 0.0f;
  if (triangle.BEYOND > 0 && IS_BEYOND(plane, v[triangle.LAST_BEYOND])) return 0.0f;
  float divisor = 3.0f;
  for (std::size_t l = 0; l < v.size(); ++l) {
    if (HAS_CORNER(triangle, l)) continue;
    const float side = SIDE_OF(plane, v[l]);
    if (side < -in_plane) return 0.0f;
    if (std::abs(side) < in_plane) divisor = 6.0f;
  }
  return plane.AREA * std::abs(plane.HEIGHT) / divisor;
}

// Volume of the hull of the vertices about the centre at 0.
float SUM_OF_PYRAMIDS(const std::vector<VECTOR3>& v, const std::vector<TRIANGLE>& triangles) {
  float volume = 0.0f;
  for (const TRIANGLE& triangle : triangles) volume += PYRAMID(v, triangle);
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
  return SUM_OF_PYRAMIDS(v, TRIANGLES_OF(v));
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

// The triangles that may be faces of the hull wherever one vertex moves while the others stay:
// those at the vertex, and those with no other vertex beyond them.
std::vector<TRIANGLE> POSSIBLE_FACES(const std::vector<TRIANGLE>& triangles, std::size_t moving) {
  std::vector<TRIANGLE> possible;
  possible.reserve(triangles.size());
  for (const TRIANGLE& triangle : triangles)
    if (HAS_CORNER(triangle, moving) || triangle.BEYOND == 0 ||
        (triangle.BEYOND == 1 && triangle.LAST_BEYOND == moving))
      possible.push_back(triangle);
  return possible;
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
  polyhedron.VOLUME = SUM_OF_PYRAMIDS(polyhedron.VERTICES, polyhedron.TRIANGLES);
  return polyhedron;
}

// Change of the volume with each ligand coordinate, by a shift of one esd.
std::vector<float> VOLUME_DERIVATIVES(const POLYHEDRON_ABOUT_ZERO& polyhedron, const MATRIX3& frame,
                                      const SQUARE_MATRIX& vcv) {
  std::vector<float> jacobian(vcv.SIDE, 0.0f);
  std::vector<VECTOR3> vertices = polyhedron.VERTICES;
  for (std::size_t j = 0; j < vertices.size(); ++j) {
    const std::vector<TRIANGLE> possible = POSSIBLE_FACES(polyhedron.TRIANGLES, j);
    for (std::size_t c = 0; c < 3; ++c) {
      const std::size_t p = 3 * j + c;
      if (!(vcv(p, p) > TINY_REAL)) continue;
      const float shift = std::sqrt(vcv(p, p));
      VECTOR3 shifted = polyhedron.VECTORS_FRAC[j];
      shifted[c] += shift;
      vertices[j] = XTAL::MULTIPLY(frame, shifted);
      jacobian[p] = (SUM_OF_PYRAMIDS(vertices, possible) - polyhedron.VOLUME) / shift;
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
    variance +=
        SQUARE(SUM_OF_PYRAMIDS(IN_FRAME(frame, polyhedron.VECTORS_FRAC), polyhedron.TRIANGLES) -
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
  // Not as ESD_OF does it: the esd of a volume that is no number is none.
  phase.POLYHEDRON(i, POLY_VOLUME_STD) = variance < 0.0f ? 0.0f : std::sqrt(variance);
}

void CALC_POLYVOL_VCV(CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  CALC_POLYVOL_VCV(COORDINATIONS_OF(phase), phase, i);
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
