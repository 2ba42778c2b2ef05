// Distances and angles with their esds. Coordinates of different atoms and cell parameters are
// uncorrelated; what the symmetry of a site or of an image ties together is fully correlated.
#pragma once

#include "src/kva_crystal_structures/atom_search.h"
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

// Cells that differ from the record's own by one esd of one independent parameter each, as the
// crystal system has them: the terms of every esd that comes from the cell. Cubic and orthorhombic
// cells have their angles set to 90 degrees, or to the cell's own with keep_angles.
struct CELL_SHIFT {
  VECTOR3 CELL{};
  VECTOR3 ANG{};
};
std::vector<CELL_SHIFT> CELL_SHIFTS(const CRYSTAL_STRUCTURE_TYPE& phase, bool keep_angles = false);

// ---- measuring in one record ----

// What all measurements in one record share. It holds as its images do.
struct RULER {
  ATOM_IMAGES IMAGES;
  std::vector<MATRIX3> ATOM_VCV;         // covariance of the coordinates of each atom as listed
  std::vector<MATRIX3> SHIFTED_METRICS;  // metric tensors of the shifted cells
  std::vector<MATRIX3> SHIFTED_FRAMES;   // fractional to Cartesian, shifted cells with their angles
};
RULER RULER_FOR(const CRYSTAL_STRUCTURE_TYPE& phase);

// A position and the atom there with the covariance of its coordinates; an atom that is not there
// has number 0 and no covariance.
struct PLACED_ATOM {
  VECTOR3 X{};
  int ATOM = 0;
  int OPERATOR = 0;
  MATRIX3 VCV{};
};
PLACED_ATOM ATOM_AT(const RULER& ruler, const VECTOR3& x_frac);

// The apex of angles, with the operators that leave it in place (the identity first) and the
// lattice translation of each.
struct APEX_ATOM {
  PLACED_ATOM PLACED;
  int ORDER = 0;
  LIST<int> OPERATORS;
  LIST<VECTOR3> TRANSLATIONS;
};
APEX_ATOM APEX_AT(const RULER& ruler, const VECTOR3& x_frac);

// Joint covariance of two atoms.
MATRIX6 CALC_VCV_TWO_ATOMS(const RULER& ruler, const PLACED_ATOM& atom1, const PLACED_ATOM& atom2);

// Distance between two positions (angstroms), angle atom1 - apex - atom2 (degrees), with esds.
VALUE_ESD DISTANCE_AND_SIGMA_VCV(const RULER& ruler, const PLACED_ATOM& atom0,
                                 const PLACED_ATOM& atom1);
VALUE_ESD ANGLE_AND_SIGMA_VCV(const RULER& ruler, const APEX_ATOM& apex, const PLACED_ATOM& atom1,
                              const PLACED_ATOM& atom2);

// The same for single measurements, by positions.
MATRIX6 CALC_VCV_TWO_ATOMS(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x1_frac,
                           const VECTOR3& x2_frac);
VALUE_ESD DISTANCE_AND_SIGMA_VCV(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x0_frac,
                                 const VECTOR3& x1_frac);
VALUE_ESD ANGLE_AND_SIGMA_VCV(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x0_frac,
                              const VECTOR3& x1_frac, const VECTOR3& x2_frac);

}  // namespace KVA_CRYSTAL_STRUCTURES
