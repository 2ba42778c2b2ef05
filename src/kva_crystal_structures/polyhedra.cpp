// Angles, edges, volumes and distortion parameters of the coordination polyhedra of one block.
// Prints nothing.
#include "src/kva_crystal_structures/polyhedra.h"

#include <cmath>    // for sqrt, cbrt, abs
#include <utility>  // for exchange

#include "console_code/kva_utilities/numbers.h"

#include "src/kva_crystal_structures/sphere_fit.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::TINY_REAL;
using XTAL::SQUARE;

namespace {

constexpr float plane_through_centre = 1e-5f;  // angstroms; such a face has no pyramid
constexpr float in_plane = 1e-3f;              // square angstroms, tolerance of the face test
constexpr float no_volume = 0.1f;              // cubic angstroms; below: no distortion parameters
constexpr float trans_limit = 45.0f;           // degrees; how far a trans angle lies from 180

// Angles of the regular polyhedra in degrees, and constants of their volumes.
constexpr float triangle_angle = 120.0f;
constexpr float tetrahedron_angle = 109.47f;
constexpr float octahedron_angle = 90.0f;
constexpr float tetrahedron_radius = 0.612372f;  // centre to vertex, edge 1
constexpr float root_two = 1.41421f;

float CUBE_ROOT(float x) {
  return static_cast<float>(std::cbrt(static_cast<double>(x)));
}

// ---- volume of a polyhedron ----

struct FACE {
  float AREA = 0.0f;     // square angstroms
  float HEIGHT = 0.0f;   // signed distance of the plane from the centre, angstroms
  float DIVISOR = 3.0f;  // 3, or 6 when a fourth vertex lies in the plane
};

// The triangle i, j, k as a face of the hull; false when its plane holds the centre or when
// another vertex lies beyond it.
bool FACE_OF_HULL(const std::vector<VECTOR3>& v, std::size_t i, std::size_t j, std::size_t k,
                  FACE& face) {
  const VECTOR3 normal = XTAL::CROSS(XTAL::SUBTRACT(v[j], v[i]), XTAL::SUBTRACT(v[k], v[i]));
  face.AREA = 0.5f * XTAL::LENGTH(normal);
  face.HEIGHT = 0.5f * XTAL::DOT(v[i], normal) / face.AREA;
  if (std::abs(face.HEIGHT) < plane_through_centre) return false;
  face.DIVISOR = 3.0f;
  for (std::size_t l = 0; l < v.size(); ++l) {
    if (l == i || l == j || l == k) continue;
    const float t = 0.5f * XTAL::DOT(XTAL::SUBTRACT(v[i], v[l]), normal) / face.AREA * face.HEIGHT;
    if (t < -in_plane) return false;
    if (std::abs(t) < in_plane) face.DIVISOR = 6.0f;
  }
  return true;
}

std::vector<VECTOR3> IN_FRAME(const MATRIX3& orthogonalisation,
                              std::span<const VECTOR3> vectors_frac) {
  std::vector<VECTOR3> vectors_cart;
  vectors_cart.reserve(vectors_frac.size());
  for (const VECTOR3& vector : vectors_frac)
    vectors_cart.push_back(XTAL::MULTIPLY(orthogonalisation, vector));
  return vectors_cart;
}

// Volume of the hull of vertices relative to the centre. Fewer than four set the error.
float HULL_VOLUME(const std::vector<VECTOR3>& v) {
  ERR_GEOMETRY = v.size() < 4;
  ERR_GEOMETRY_MESS =
      ERR_GEOMETRY ? "The number of vertices for polyhedron volume is less than 4" : "";
  if (ERR_GEOMETRY) return 0.0f;
  float volume = 0.0f;
  FACE face;
  for (std::size_t i = 0; i < v.size(); ++i)
    for (std::size_t j = i + 1; j < v.size(); ++j)
      for (std::size_t k = j + 1; k < v.size(); ++k)
        if (FACE_OF_HULL(v, i, j, k, face))
          volume += face.AREA * std::abs(face.HEIGHT) / face.DIVISOR;
  return volume;
}

}  // namespace

float POLYHEDRON_VOLUME(std::span<const VECTOR3> vertices_cart, const VECTOR3& centre_cart) {
  std::vector<VECTOR3> v;
  v.reserve(vertices_cart.size());
  for (const VECTOR3& vertex : vertices_cart) v.push_back(XTAL::SUBTRACT(vertex, centre_cart));
  return HULL_VOLUME(v);
}

float POLYHEDRON_VOLUME_XYZ(const MATRIX3& orthogonalisation,
                            std::span<const VECTOR3> vertices_frac, const VECTOR3& centre_frac) {
  return POLYHEDRON_VOLUME(IN_FRAME(orthogonalisation, vertices_frac),
                           XTAL::MULTIPLY(orthogonalisation, centre_frac));
}

// ---- ligands of a centre ----

std::vector<int> BONDS_PRESENT(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  std::vector<int> present;
  const int rows = static_cast<int>(phase.BONDS.CENTRES(i).size());
  for (int j = 1; j <= rows; ++j)
    if (phase.BONDS(i, j, BOND_CENTRE) > 0.0f) present.push_back(j);
  return present;
}

namespace {

std::vector<VECTOR3> LIGAND_VECTORS(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  std::vector<VECTOR3> vectors;
  for (int j : BONDS_PRESENT(phase, i)) vectors.push_back(phase.BONDS.VECTOR(i, j));
  return vectors;
}

float VOLUME_IN_FRAME(const MATRIX3& orthogonalisation, const std::vector<VECTOR3>& vectors_frac) {
  return HULL_VOLUME(IN_FRAME(orthogonalisation, vectors_frac));
}

// ---- angles and edges ----

// The atoms at the ends of the bonds of centre i.
std::vector<PLACED_ATOM> LIGANDS_OF_CENTRE(const RULER& ruler, const CRYSTAL_STRUCTURE_TYPE& phase,
                                           int i) {
  const VECTOR3 centre = CENTRE_POSITION(phase, i);
  std::vector<PLACED_ATOM> ligands;
  for (const VECTOR3& vector : LIGAND_VECTORS(phase, i))
    ligands.push_back(ATOM_AT(ruler, XTAL::ADD(centre, vector)));
  return ligands;
}

void CALC_ANGLES_OF_CENTRE(const RULER& ruler, CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  const std::vector<int> present = BONDS_PRESENT(phase, i);
  const std::vector<PLACED_ATOM> ligands = LIGANDS_OF_CENTRE(ruler, phase, i);
  const APEX_ATOM centre = APEX_AT(ruler, CENTRE_POSITION(phase, i));
  for (std::size_t first = 0; first < present.size(); ++first) {
    const int j = present[first];
    for (std::size_t second = first + 1; second < present.size(); ++second) {
      const int k = present[second];
      const VALUE_ESD angle = ANGLE_AND_SIGMA_VCV(ruler, centre, ligands[first], ligands[second]);
      const VALUE_ESD edge = DISTANCE_AND_SIGMA_VCV(ruler, ligands[first], ligands[second]);
      phase.BANGLES(i, j, k, ANGLE) = angle.VALUE;
      phase.BANGLES(i, j, k, ANGLE_STD) = angle.ESD;
      phase.BANGLES(i, j, k, EDGE) = edge.VALUE;
      phase.BANGLES(i, j, k, EDGE_STD) = edge.ESD;
      ++phase.NANGLES(i);
    }
  }
}

}  // namespace

void CALC_ANGLES_ALLATOMS(const RULER& ruler, CRYSTAL_STRUCTURE_TYPE& phase) {
  for (int i = 1; i <= CAPACITY(phase); ++i) {
    phase.NANGLES(i) = 0;
    if (phase.NBONDS(i) > 0) CALC_ANGLES_OF_CENTRE(ruler, phase, i);
  }
}

void CALC_ANGLES_ALLATOMS(CRYSTAL_STRUCTURE_TYPE& phase) {
  CALC_ANGLES_ALLATOMS(RULER_FOR(phase), phase);
}

// ---- volume with its esd ----

namespace {

using MATRIX = std::vector<std::vector<float>>;

// Copies the 6 by 6 covariance of ligands j and k (from 0) into the rows and columns of both.
void PLACE_PAIR(const MATRIX6& pair, std::size_t j, std::size_t k, MATRIX& vcv) {
  const std::array<std::size_t, 2> ligand{j, k};
  for (std::size_t row = 0; row < 6; ++row)
    for (std::size_t column = 0; column < 6; ++column)
      vcv[3 * ligand[row / 3] + row % 3][3 * ligand[column / 3] + column % 3] = pair[row][column];
}

// Covariance of the coordinates of all ligands, 3n by 3n, with the correlations that symmetry
// imposes between them.
MATRIX LIGAND_COVARIANCE(const RULER& ruler, const std::vector<PLACED_ATOM>& ligands) {
  const std::size_t n = ligands.size();
  MATRIX vcv(3 * n, std::vector<float>(3 * n, 0.0f));
  for (std::size_t j = 0; j < n; ++j)
    for (std::size_t k = j + 1; k < n; ++k)
      PLACE_PAIR(CALC_VCV_TWO_ATOMS(ruler, ligands[j], ligands[k]), j, k, vcv);
  return vcv;
}

// Change of the volume with each ligand coordinate, by a shift of one esd.
std::vector<float> VOLUME_DERIVATIVES(const CRYSTAL_STRUCTURE_TYPE& phase,
                                      const std::vector<VECTOR3>& vectors_frac, float volume,
                                      const MATRIX& vcv) {
  const MATRIX3& frame = phase.CELL.CR_ORTH_CEL;
  std::vector<VECTOR3> vertices = IN_FRAME(frame, vectors_frac);
  std::vector<float> jacobian(vcv.size(), 0.0f);
  for (std::size_t p = 0; p < jacobian.size(); ++p) {
    if (!(vcv[p][p] > TINY_REAL)) continue;
    const float shift = std::sqrt(vcv[p][p]);
    VECTOR3 shifted = vectors_frac[p / 3];
    shifted[p % 3] += shift;
    const VECTOR3 vertex = std::exchange(vertices[p / 3], XTAL::MULTIPLY(frame, shifted));
    jacobian[p] = (HULL_VOLUME(vertices) - volume) / shift;
    vertices[p / 3] = vertex;
  }
  return jacobian;
}

float VARIANCE(const std::vector<float>& jacobian, const MATRIX& vcv) {
  float variance = 0.0f;
  for (std::size_t p = 0; p < jacobian.size(); ++p)
    for (std::size_t q = 0; q < jacobian.size(); ++q)
      variance += jacobian[p] * vcv[p][q] * jacobian[q];
  return variance;
}

float VOLUME_VARIANCE_OF_CELL(const RULER& ruler, const std::vector<VECTOR3>& vectors_frac,
                              float volume) {
  float variance = 0.0f;
  for (const MATRIX3& frame : ruler.SHIFTED_FRAMES)
    variance += SQUARE(VOLUME_IN_FRAME(frame, vectors_frac) - volume);
  return variance;
}

void CALC_VOLUME_WITH_ESD(const RULER& ruler, CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  const std::vector<VECTOR3> vectors_frac = LIGAND_VECTORS(phase, i);
  const float volume = VOLUME_IN_FRAME(phase.CELL.CR_ORTH_CEL, vectors_frac);
  phase.POLYHEDRON(i, POLY_VOLUME) = volume;

  const MATRIX vcv = LIGAND_COVARIANCE(ruler, LIGANDS_OF_CENTRE(ruler, phase, i));
  const std::vector<float> jacobian = VOLUME_DERIVATIVES(phase, vectors_frac, volume, vcv);
  const float variance =
      VARIANCE(jacobian, vcv) + VOLUME_VARIANCE_OF_CELL(ruler, vectors_frac, volume);
  // A sum that symmetry makes zero may come out a rounding error below it.
  phase.POLYHEDRON(i, POLY_VOLUME_STD) = variance < 0.0f ? 0.0f : std::sqrt(variance);
}

}  // namespace

void CALC_POLYVOL_VCV(CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  CALC_VOLUME_WITH_ESD(RULER_FOR(phase), phase, i);
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
  return VOLUME_IN_FRAME(phase.CELL.CR_ORTH_CEL, vectors_frac);
}

// ---- distortion ----

namespace {

float MEAN_LENGTH(const CRYSTAL_STRUCTURE_TYPE& phase, int i, const std::vector<int>& present) {
  float sum = 0.0f;
  for (int j : present) sum += phase.BONDS(i, j, BOND_LENGTH);
  return sum / static_cast<float>(present.size());
}

// Spread of the bond lengths relative to their mean, for polyhedra without a volume.
float LENGTH_SPREAD(const CRYSTAL_STRUCTURE_TYPE& phase, int i, const std::vector<int>& present,
                    float mean) {
  float sum = 0.0f;
  for (int j : present) sum += SQUARE(phase.BONDS(i, j, BOND_LENGTH) - mean);
  return std::sqrt(sum) / static_cast<float>(present.size()) / mean;
}

// Mean of (d / r)^2: the quadratic elongation of K. Robinson, G. V. Gibbs and P. H. Ribbe, Science
// 172 (1971) 567-570, with r the bond length of the regular polyhedron of the same volume.
float ELONGATION(const CRYSTAL_STRUCTURE_TYPE& phase, int i, const std::vector<int>& present,
                 float r) {
  float sum = 0.0f;
  for (int j : present) sum += SQUARE(phase.BONDS(i, j, BOND_LENGTH) / r);
  return sum / static_cast<float>(present.size());
}

struct PAIR_SUMS {
  float DEVIATION_SQ = 0.0f;  // square degrees, from the regular angle
  float EDGE = 0.0f;          // angstroms
  int COUNT = 0;
};

// Sums over the ligand pairs, without those whose angle lies within skip degrees of 180.
PAIR_SUMS SUM_PAIRS(const CRYSTAL_STRUCTURE_TYPE& phase, int i, const std::vector<int>& present,
                    float regular_angle, float skip) {
  PAIR_SUMS sums;
  for (std::size_t first = 0; first < present.size(); ++first)
    for (std::size_t second = first + 1; second < present.size(); ++second) {
      const float angle = phase.BANGLES(i, present[first], present[second], ANGLE);
      if (std::abs(std::abs(angle) - 180.0f) <= skip) continue;
      sums.DEVIATION_SQ += SQUARE(angle - regular_angle);
      sums.EDGE += phase.BANGLES(i, present[first], present[second], EDGE);
      ++sums.COUNT;
    }
  return sums;
}

constexpr float skip_none = -1.0f;

void CALC_TRIANGLE(CRYSTAL_STRUCTURE_TYPE& phase, int i, const std::vector<int>& present) {
  const PAIR_SUMS sums = SUM_PAIRS(phase, i, present, triangle_angle, skip_none);
  phase.POLYHEDRON(i, POLY_VARIANCE) = sums.DEVIATION_SQ * 0.5f;
  phase.POLYHEDRON(i, POLY_VOLUME) = 0.0f;
  phase.POLYHEDRON(i, POLY_MEAN_EDGE) = sums.EDGE / 3.0f;
}

void CALC_VOLUMES(const RULER& ruler, CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  CALC_VOLUME_WITH_ESD(ruler, phase, i);
  phase.POLYHEDRON(i, POLY_VOLUME_SRB) = CALC_POLYVOL_SRB(phase, i);
}

void CALC_TETRAHEDRON(const RULER& ruler, CRYSTAL_STRUCTURE_TYPE& phase, int i,
                      const std::vector<int>& present) {
  const PAIR_SUMS sums = SUM_PAIRS(phase, i, present, tetrahedron_angle, skip_none);
  phase.POLYHEDRON(i, POLY_VARIANCE) = sums.DEVIATION_SQ / 5.0f;
  phase.POLYHEDRON(i, POLY_MEAN_EDGE) = sums.EDGE / 6.0f;
  CALC_VOLUMES(ruler, phase, i);
  const float r =
      tetrahedron_radius * CUBE_ROOT(12.0f * phase.POLYHEDRON(i, POLY_VOLUME) / root_two);
  phase.POLYHEDRON(i, POLY_ELONGATION) = ELONGATION(phase, i, present, r);
}

// Angle variance and mean edge stay 0 unless twelve pairs are no trans pairs.
void CALC_OCTAHEDRON(CRYSTAL_STRUCTURE_TYPE& phase, int i, const std::vector<int>& present) {
  const PAIR_SUMS sums = SUM_PAIRS(phase, i, present, octahedron_angle, trans_limit);
  if (sums.COUNT == 12) {
    phase.POLYHEDRON(i, POLY_VARIANCE) = sums.DEVIATION_SQ / 11.0f;
    phase.POLYHEDRON(i, POLY_MEAN_EDGE) = sums.EDGE / 12.0f;
  }
  const float r = CUBE_ROOT(3.0f * phase.POLYHEDRON(i, POLY_VOLUME) * 0.25f);
  phase.POLYHEDRON(i, POLY_ELONGATION) = ELONGATION(phase, i, present, r);
}

void CALC_POLY_OF_CENTRE(const RULER& ruler, CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  const std::vector<int> present = BONDS_PRESENT(phase, i);
  const std::size_t n = present.size();
  if (n == 0) return;
  const float mean = MEAN_LENGTH(phase, i, present);
  phase.POLYHEDRON(i, POLY_MEAN_LENGTH) = mean;
  if (n == 1) return;
  if (n < 4) phase.POLYHEDRON(i, POLY_ELONGATION) = LENGTH_SPREAD(phase, i, present, mean);
  CALC_POLY_ORBIX(phase, i);
  if (n == 3) CALC_TRIANGLE(phase, i, present);
  if (n == 4) CALC_TETRAHEDRON(ruler, phase, i, present);
  if (n != 3 && n != 4) CALC_VOLUMES(ruler, phase, i);
  if (n == 6) CALC_OCTAHEDRON(phase, i, present);
  if (phase.POLYHEDRON(i, POLY_VOLUME) < no_volume) {
    phase.POLYHEDRON(i, POLY_ELONGATION) = 0.0f;
    phase.POLYHEDRON(i, POLY_VARIANCE) = 0.0f;
  }
}

}  // namespace

void CALC_POLY_ALLATOMS(const RULER& ruler, CRYSTAL_STRUCTURE_TYPE& phase) {
  phase.POLYHEDRON.ASSIGN(CAPACITY(phase));
  for (int i = 1; i <= CAPACITY(phase); ++i)
    if (phase.NBONDS(i) > 0) CALC_POLY_OF_CENTRE(ruler, phase, i);
}

void CALC_POLY_ALLATOMS(CRYSTAL_STRUCTURE_TYPE& phase) {
  CALC_POLY_ALLATOMS(RULER_FOR(phase), phase);
}

}  // namespace KVA_CRYSTAL_STRUCTURES
