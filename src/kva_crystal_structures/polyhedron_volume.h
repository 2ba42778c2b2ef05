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

// Volume of the convex hull of Cartesian vertices: that of the pyramids from the centre, unless the
// hull shows that they do not fill it. Flat and collinear vertices have none. Fewer than four set
// ERR_GEOMETRY.
float POLYHEDRON_VOLUME(std::span<const VECTOR3> vertices_cart, const VECTOR3& centre_cart);

// Sum of the pyramids from the centre at 0 over the faces; 0 for fewer than four vertices. It is
// the volume of the hull when the centre lies inside and no five vertices lie in a plane; three on
// a line make it a NaN.
float PYRAMIDS_VOLUME(std::span<const VECTOR3> v);

inline bool ERR_GEOMETRY = false;
inline std::string ERR_GEOMETRY_MESS;

}  // namespace KVA_CRYSTAL_STRUCTURES
