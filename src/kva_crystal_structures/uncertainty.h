// Distances and angles with their esds. Coordinates of different atoms and cell parameters are
// uncorrelated; what the symmetry of a site or of an image ties together is fully correlated.
#pragma once

#include "src/kva_crystal_structures/records.h"

namespace KVA_CRYSTAL_STRUCTURES {

struct VALUE_ESD {
  float VALUE = 0.0f;
  float ESD = 0.0f;
};

// Length of a fractional vector in angstroms; angle between two in degrees (0 for a zero length).
float CRYST_DIST(const VECTOR3& v_frac, const MATRIX3& metric);
float CRYST_ANGLE(const VECTOR3& v1_frac, const VECTOR3& v2_frac, const MATRIX3& metric);

// Covariance and esds of the coordinates of the atom's image under operator op.
MATRIX3 CALC_VCV_XYZ(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int op);
VECTOR3 CALC_ESD_XYZ(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int op);

// Joint covariance of the atoms at two positions; an atom that is not there contributes nothing.
MATRIX6 CALC_VCV_TWO_ATOMS(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x1_frac,
                           const VECTOR3& x2_frac);

// Distance between two positions (angstroms), angle x1 - x0 - x2 (degrees), with esds.
VALUE_ESD DISTANCE_AND_SIGMA_VCV(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x0_frac,
                                 const VECTOR3& x1_frac);
VALUE_ESD ANGLE_AND_SIGMA_VCV(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x0_frac,
                              const VECTOR3& x1_frac, const VECTOR3& x2_frac);

// Cells that differ from the record's own by one esd of one independent parameter each, as the
// crystal system has them: the terms of every esd that comes from the cell. Cubic and orthorhombic
// cells have their angles set to 90 degrees, or to the cell's own with keep_angles.
struct CELL_SHIFT {
  VECTOR3 CELL{};
  VECTOR3 ANG{};
};
std::vector<CELL_SHIFT> CELL_SHIFTS(const CRYSTAL_STRUCTURE_TYPE& phase, bool keep_angles = false);

}  // namespace KVA_CRYSTAL_STRUCTURES
