// Volumes of coordination polyhedra with their esds.
#pragma once

#include <span>

#include "src/kva_crystal_structures/coordination.h"

namespace KVA_CRYSTAL_STRUCTURES {

// Volume and its esd of centre i, into POLYHEDRON. The coordinations are the record's own.
void CALC_POLYVOL_VCV(const COORDINATIONS& around, CRYSTAL_STRUCTURE_TYPE& phase, int i);
void CALC_POLYVOL_VCV(CRYSTAL_STRUCTURE_TYPE& phase, int i);

// Volume of the polyhedron with rigid-bond corrected bond lengths; 0 when a length is missing.
float CALC_POLYVOL_SRB(const CRYSTAL_STRUCTURE_TYPE& phase, int i);

// Volume in cubic angstroms of fractional vertices about a fractional centre.
float POLYHEDRON_VOLUME_XYZ(const MATRIX3& orthogonalisation,
                            std::span<const VECTOR3> vertices_frac, const VECTOR3& centre_frac);

// Volume of Cartesian vertices about a Cartesian centre inside their hull. Fewer than four vertices
// give 0 and set ERR_GEOMETRY; three collinear vertices give a NaN.
float POLYHEDRON_VOLUME(std::span<const VECTOR3> vertices_cart, const VECTOR3& centre_cart);

inline bool ERR_GEOMETRY = false;
inline std::string ERR_GEOMETRY_MESS;

}  // namespace KVA_CRYSTAL_STRUCTURES
