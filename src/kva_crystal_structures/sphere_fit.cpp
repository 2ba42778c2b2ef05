// The algebraic least-squares sphere through the ligands of a centre, and the volume that the ideal
// polyhedron of the same coordination has on it (E. Makovicky and T. Balic-Zunic, Acta Cryst. B54
// (1998) 766-773; T. Balic-Zunic and E. Makovicky, Acta Cryst. B52 (1996) 78-81). Prints nothing.
#include "src/kva_crystal_structures/sphere_fit.h"

#include <algorithm>  // for min
#include <cmath>      // for sqrt

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/vectors.h"
#include "src/kva_crystal_structures/coordination.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::PUT_VECTOR;
using KVA_UTILITIES::TINY_REAL;

namespace {

// Volume of the ideal polyhedron on a sphere of unit radius, coordination 4 to 12.
constexpr int vfact_first = 4;
constexpr std::array<float, 9> VFACT{0.5132f, 0.86603f, 1.33333f, 1.58509f, 1.81571f,
                                     2.0437f, 2.24f,    2.4f,     2.5362f};

float IDEAL_VOLUME(std::size_t n, float radius) {
  const std::size_t last = VFACT.size() - 1;
  return VFACT[std::min(n - vfact_first, last)] * radius * radius * radius;
}

VECTOR3 MEAN(const std::vector<VECTOR3>& vectors) {
  VECTOR3 mean{};
  for (const VECTOR3& v : vectors) mean = XTAL::ADD(mean, v);
  for (float& component : mean) component /= static_cast<float>(vectors.size());
  return mean;
}

// True when the ligands lie in a plane, as far as their spread m, which has no negative
// eigenvalues, can tell: its determinant is then small against the cube of their mean. Whole rows
// of m may be rounding errors, so they are no measure.
bool IS_FLAT(const MATRIX3& m) {
  constexpr float smallest = 1e-5f;
  const float mean = KVA_UTILITIES::TRACE(m) / 3.0f;
  return !(XTAL::DETERMINANT(m) > smallest * mean * mean * mean);
}

// Centre of the sphere that minimises the misfit of |V - s|^2 to a common radius squared: the
// solution of M s = C.
VECTOR3 FIT_SPHERE(const std::vector<VECTOR3>& v_cart, bool& singular) {
  const float n = static_cast<float>(v_cart.size());
  VECTOR3 x{};
  MATRIX3 x2{};
  MATRIX3 x3{};
  for (const VECTOR3& v : v_cart)
    for (std::size_t a = 0; a < 3; ++a) {
      x[a] += v[a];
      for (std::size_t b = 0; b < 3; ++b) {
        x2[a][b] += v[a] * v[b];
        x3[a][b] += v[a] * v[b] * v[b];
      }
    }

  MATRIX3 m{};
  VECTOR3 c{};
  const float t = KVA_UTILITIES::TRACE(x2) / n;
  for (std::size_t a = 0; a < 3; ++a) {
    for (std::size_t b = 0; b < 3; ++b) m[a][b] = 2.0f * (x2[a][b] - x[a] * x[b] / n);
    c[a] = x3[a][0] + x3[a][1] + x3[a][2] - t * x[a];
  }
  const MATRIX3 inverse = XTAL::INVERT_MATRIX(m, singular);
  singular = singular || IS_FLAT(m);
  return XTAL::MULTIPLY(inverse, c);
}

// Mean radius of the sphere and, for more than four ligands, the scatter of the radii: four always
// lie on a sphere exactly.
void SET_RADII(CRYSTAL_STRUCTURE_TYPE& phase, int i, const std::vector<VECTOR3>& vectors_frac,
               const VECTOR3& sphere_frac) {
  const float n = static_cast<float>(vectors_frac.size());
  std::vector<float> radii;
  float sum = 0.0f;
  for (const VECTOR3& v : vectors_frac) {
    radii.push_back(XTAL::DISTANCE_FRAC(sphere_frac, v, phase.CELL));
    sum += radii.back();
  }
  const float mean = sum / n;
  phase.POLYHEDRON(i, POLY_RADIUS) = mean;
  phase.POLYHEDRON(i, POLY_IDEAL_VOLUME) = IDEAL_VOLUME(vectors_frac.size(), mean);
  if (vectors_frac.size() <= vfact_first) return;
  float sum_sq = 0.0f;
  for (float radius : radii) sum_sq += (radius - mean) * (radius - mean);
  if (sum_sq > TINY_REAL) phase.POLYHEDRON(i, POLY_RADIUS_SDEV) = std::sqrt(sum_sq / n);
}

}  // namespace

void CALC_POLY_ORBIX(CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  const std::vector<VECTOR3> vectors_frac = LIGAND_VECTORS(phase, i);
  if (vectors_frac.empty()) return;

  const VECTOR3 centre = CENTRE_POSITION(phase, i);
  PUT_VECTOR(phase.POLYHEDRON(i), POLY_CENTRE_X, centre);
  PUT_VECTOR(phase.POLYHEDRON(i), POLY_BARYCENTRE_X, XTAL::ADD(MEAN(vectors_frac), centre));
  if (vectors_frac.size() < vfact_first) return;

  std::vector<VECTOR3> v_cart;
  for (const VECTOR3& v : vectors_frac) v_cart.push_back(XTAL::MULTIPLY(phase.CELL.CR_ORTH_CEL, v));
  bool singular = false;
  const VECTOR3 sphere_cart = FIT_SPHERE(v_cart, singular);
  if (singular) {
    SET_ERR_KVASTRUCTURES("Error inverting matrix to determine centroid coords for polyhedron " +
                          KVA_UTILITIES::INTEGER_AT_LEAST(i, 2) + " in " + phase.BLOCK_TITLE);
    return;
  }
  const VECTOR3 sphere_frac = XTAL::MULTIPLY(phase.CELL.ORTH_CR_CEL, sphere_cart);
  const VECTOR3 sphere_position = XTAL::ADD(sphere_frac, centre);
  PUT_VECTOR(phase.POLYHEDRON(i), POLY_SPHERE_X, sphere_position);
  phase.POLYHEDRON(i, POLY_DELTA) = XTAL::DISTANCE_FRAC(centre, sphere_position, phase.CELL);
  SET_RADII(phase, i, vectors_frac, XTAL::SUBTRACT(sphere_position, centre));
}

}  // namespace KVA_CRYSTAL_STRUCTURES
