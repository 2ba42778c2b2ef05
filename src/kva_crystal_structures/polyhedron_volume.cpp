// Volumes of the hulls of ligands, with their esds. Prints nothing.
#include "src/kva_crystal_structures/polyhedron_volume.h"

#include <algorithm>  // for max
#include <cmath>      // for sqrt, abs
#include <utility>    // for move

#include "console_code/kva_utilities/numbers.h"
#include "src/kva_crystal_structures/convex_hull.h"
#include "src/kva_crystal_structures/moved_hull.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::TINY_REAL;
using XTAL::SQUARE;

// ---- pyramids from the centre ----

float PYRAMIDS_VOLUME(std::span<const VECTOR3> v) {
  if (v.size() < 4) return 0.0f;
  float volume = 0.0f;
  for (std::size_t i = 0; i < v.size(); ++i)
    for (std::size_t j = i + 1; j < v.size(); ++j)
      for (std::size_t k = j + 1; k < v.size(); ++k) volume += PYRAMID_OVER(v, {i, j, k});
  return volume;
}

// ---- volume of a polyhedron ----

namespace {

// Whether the volume of the hull shows that the pyramids fill it. A hull that is flat is none.
bool PYRAMIDS_FILL(float hull, float pyramids) {
  constexpr float same_volume = 0.002f;  // cubic angstroms
  return hull > 0.0f && std::abs(pyramids - hull) <= same_volume;
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
  ERR_GEOMETRY = v.size() < 4;
  ERR_GEOMETRY_MESS =
      ERR_GEOMETRY ? "The number of vertices for polyhedron volume is less than 4" : "";
  const float hull = HULL_VOLUME(v);
  const float pyramids = PYRAMIDS_VOLUME(v);
  return PYRAMIDS_FILL(hull, pyramids) ? pyramids : hull;
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

// A polyhedron about its centre at 0: the ligands as fractional vectors, the same as Cartesian
// vertices, and the volume. Without triangles it is not by pyramids but that of the hull, and so
// are all that are compared with it.
struct POLYHEDRON_ABOUT_ZERO {
  std::vector<VECTOR3> VECTORS_FRAC;
  std::vector<VECTOR3> VERTICES;
  std::vector<TRIANGLE> TRIANGLES;
  float VOLUME = 0.0f;
};

// The hull is made only where the triangles leave a doubt.
POLYHEDRON_ABOUT_ZERO POLYHEDRON_OF(const MATRIX3& frame, std::vector<VECTOR3> vectors_frac) {
  POLYHEDRON_ABOUT_ZERO polyhedron;
  polyhedron.VECTORS_FRAC = std::move(vectors_frac);
  polyhedron.VERTICES = IN_FRAME(frame, polyhedron.VECTORS_FRAC);
  polyhedron.TRIANGLES = TRIANGLES_OF(polyhedron.VERTICES);
  polyhedron.VOLUME = VOLUME_AS_MADE(polyhedron.TRIANGLES);
  if (SURELY_FILL_THE_HULL(polyhedron.TRIANGLES)) return polyhedron;
  const float hull = HULL_VOLUME(polyhedron.VERTICES);
  if (PYRAMIDS_FILL(hull, polyhedron.VOLUME)) return polyhedron;
  polyhedron.TRIANGLES.clear();
  polyhedron.VOLUME = hull;
  return polyhedron;
}

// Volume when only the vertex with the number moved is another than the polyhedron's.
float WITH_ONE_MOVED(const POLYHEDRON_ABOUT_ZERO& polyhedron, std::span<const VECTOR3> vertices,
                     std::size_t moved) {
  return polyhedron.TRIANGLES.empty()
             ? HULL_VOLUME(vertices)
             : VOLUME_WITH_ONE_MOVED(vertices, polyhedron.TRIANGLES, moved);
}

// The same in another frame.
float IN_OTHER_FRAME(const POLYHEDRON_ABOUT_ZERO& polyhedron, const MATRIX3& frame) {
  const std::vector<VECTOR3> vertices = IN_FRAME(frame, polyhedron.VECTORS_FRAC);
  return polyhedron.TRIANGLES.empty() ? HULL_VOLUME(vertices)
                                      : VOLUME_WITH_ALL_MOVED(vertices, polyhedron.TRIANGLES);
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
      jacobian[p] = (WITH_ONE_MOVED(polyhedron, vertices, j) - polyhedron.VOLUME) / shift;
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
  float variance = 0.0f;
  for (const MATRIX3& frame : shifted_frames)
    variance += SQUARE(IN_OTHER_FRAME(polyhedron, frame) - polyhedron.VOLUME);
  return variance;
}

float LENGTH_OF_COLUMN(const MATRIX3& m, std::size_t c) {
  return XTAL::LENGTH(VECTOR3{m[0][c], m[1][c], m[2][c]});
}

// The moves of the vertices that the derivatives and the shifted frames make.
MOVES LONGEST_MOVES(const POLYHEDRON_ABOUT_ZERO& polyhedron, const SQUARE_MATRIX& vcv,
                    const MATRIX3& frame, const std::vector<MATRIX3>& shifted_frames) {
  constexpr float more = 1.01f;  // what rounding may add
  constexpr float rounding = 1e-5f;
  MOVES moves;
  for (std::size_t p = 0; p < vcv.SIDE; ++p)
    moves.OF_ONE = std::max(moves.OF_ONE, ESD_OF(vcv(p, p)) * LENGTH_OF_COLUMN(frame, p % 3));
  float longest_sq = 0.0f;
  for (const VECTOR3& vector : polyhedron.VECTORS_FRAC)
    longest_sq = std::max(longest_sq, XTAL::DOT(vector, vector));
  for (const MATRIX3& shifted : shifted_frames) {
    float change_sq = 0.0f;
    for (std::size_t row = 0; row < 3; ++row) {
      const VECTOR3 change = XTAL::SUBTRACT(shifted[row], frame[row]);
      change_sq += XTAL::DOT(change, change);
    }
    moves.OF_ALL = std::max(moves.OF_ALL, std::sqrt(change_sq * longest_sq));
  }
  return {more * moves.OF_ONE + rounding, more * moves.OF_ALL + rounding};
}

}  // namespace

void CALC_POLYVOL_VCV(const COORDINATIONS& around, CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  const MATRIX3& frame = phase.CELL.CR_ORTH_CEL;
  POLYHEDRON_ABOUT_ZERO polyhedron = POLYHEDRON_OF(frame, LIGAND_VECTORS(phase, i));
  phase.POLYHEDRON(i, POLY_VOLUME) = polyhedron.VOLUME;
  phase.POLYHEDRON(i, POLY_VOLUME_STD) = 0.0f;
  // Flat, as fewer than four ligands are.
  if (polyhedron.TRIANGLES.empty() && !(polyhedron.VOLUME > 0.0f)) return;

  const SQUARE_MATRIX vcv = LIGAND_COVARIANCE(around.LIGANDS(i));
  TELL_SURE_ONES(polyhedron.VERTICES, LONGEST_MOVES(polyhedron, vcv, frame, around.SHIFTED_FRAMES),
                 polyhedron.TRIANGLES);
  const std::vector<float> jacobian = VOLUME_DERIVATIVES(polyhedron, frame, vcv);
  phase.POLYHEDRON(i, POLY_VOLUME_STD) =
      ESD_OF(VARIANCE(jacobian, vcv) + VOLUME_VARIANCE_OF_CELL(polyhedron, around.SHIFTED_FRAMES));
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
  return POLYHEDRON_OF(phase.CELL.CR_ORTH_CEL, std::move(vectors_frac)).VOLUME;
}

}  // namespace KVA_CRYSTAL_STRUCTURES
