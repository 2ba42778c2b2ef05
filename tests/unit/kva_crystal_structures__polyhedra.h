// Centres with ligands at chosen places, and the regular solids.
#pragma once

#include <cmath>

#include "src/kva_crystal_structures/polyhedra.h"
#include "src/kva_crystal_structures/polyhedron_volume.h"
#include "src/kva_crystal_structures/uncertainty.h"
#include "structures.h"

namespace POLYHEDRA {

using namespace STRUCTURES;

// A centre with ligands at Cartesian places around it, in a large cubic cell without symmetry.
inline constexpr float edge = 40.0f;

inline CRYSTAL_STRUCTURE_TYPE AROUND(const std::vector<VECTOR3>& ligands_cart,
                                     const VECTOR3& std = {}) {
  std::vector<SITE> sites{{"Si1", {0.5f, 0.5f, 0.5f}}};
  for (const VECTOR3& v : ligands_cart)
    sites.push_back({"O" + std::to_string(sites.size()),
                     {0.5f + v[0] / edge, 0.5f + v[1] / edge, 0.5f + v[2] / edge},
                     {std[0] / edge, std[1] / edge, std[2] / edge}});
  auto phase = MADE({edge, edge, edge}, {90, 90, 90}, "P 1", sites);
  phase.NBONDS(1) = static_cast<int>(ligands_cart.size());
  phase.BOND_CEN(1, CENTRE_ATOM) = 1;
  for (int k = 0; k < 3; ++k) phase.BOND_CEN(1, CENTRE_X + k) = 0.5f;
  for (int j = 1; j <= phase.NBONDS(1); ++j) {
    const VECTOR3 v = XTAL::SUBTRACT(phase.ATOM(j + 1).X, phase.ATOM(1).X);
    phase.BONDS(1, j, BOND_CENTRE) = 1;
    phase.BONDS(1, j, BOND_LENGTH) = CRYST_DIST(v, phase.CELL.GD);
    phase.BONDS(1, j, BOND_LENGTH_SRB) = phase.BONDS(1, j, BOND_LENGTH);
    phase.BONDS(1, j, BOND_LIGAND) = static_cast<float>(j + 1);
    phase.BONDS(1, j, BOND_OPERATOR) = 1;
    phase.BONDS.PUT_VECTOR(1, j, v);
  }
  return phase;
}

inline CRYSTAL_STRUCTURE_TYPE CALCULATED(const std::vector<VECTOR3>& ligands,
                                         const VECTOR3& std = {}) {
  auto phase = AROUND(ligands, std);
  CALC_ANGLES_ALLATOMS(phase);
  CALC_POLY_ALLATOMS(phase);
  return phase;
}

// All sign changes of the vertices.
inline std::vector<VECTOR3> SIGNED(const std::vector<VECTOR3>& vertices) {
  std::vector<VECTOR3> all;
  for (const VECTOR3& v : vertices)
    for (int signs = 0; signs < 8; ++signs) {
      VECTOR3 w = v;
      bool wanted = true;
      for (std::size_t k = 0; k < 3; ++k)
        if (((signs >> k) & 1) != 0) {
          wanted = wanted && v[k] != 0.0f;
          w[k] = -w[k];
        }
      if (wanted) all.push_back(w);
    }
  return all;
}

inline std::vector<VECTOR3> ON_A_SPHERE(std::vector<VECTOR3> vertices, float radius) {
  for (VECTOR3& v : vertices) {
    const float length = XTAL::LENGTH(v);
    for (float& x : v) x *= radius / length;
  }
  return vertices;
}

inline const std::vector<VECTOR3> tetrahedron =
    ON_A_SPHERE({{1, 1, 1}, {1, -1, -1}, {-1, 1, -1}, {-1, -1, 1}}, 1.6f);
inline const std::vector<VECTOR3> octahedron =
    ON_A_SPHERE(SIGNED({{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}), 2.0f);
inline const std::vector<VECTOR3> cube = ON_A_SPHERE(SIGNED({{1, 1, 1}}), 2.4f);
inline const std::vector<VECTOR3> cuboctahedron =
    ON_A_SPHERE(SIGNED({{1, 1, 0}, {1, 0, 1}, {0, 1, 1}}), 2.8f);
inline const float golden = (1.0f + std::sqrt(5.0f)) / 2.0f;
inline const std::vector<VECTOR3> icosahedron =
    ON_A_SPHERE(SIGNED({{0, 1, golden}, {1, golden, 0}, {golden, 0, 1}}), 2.7f);

inline float POLY(const CRYSTAL_STRUCTURE_TYPE& phase, int column) {
  return phase.POLYHEDRON(1, column);
}

}  // namespace POLYHEDRA
