// Covariances of coordinates, and distances with their esds. Coordinates of different atoms and
// cell parameters are uncorrelated; what the symmetry of a site or of an image ties together is
// fully correlated.
#pragma once

#include "src/kva_crystal_structures/atom_search.h"
#include "src/kva_crystal_structures/records.h"

namespace KVA_CRYSTAL_STRUCTURES {

struct VALUE_ESD {
  float VALUE = 0.0f;
  float ESD = 0.0f;
};

// Length of a fractional vector in angstroms.
float CRYST_DIST(const VECTOR3& v_frac, const MATRIX3& metric);

// A fractional vector as a metric tensor measures it: what it brings to every angle that it makes.
struct LEG {
  VECTOR3 V{};
  VECTOR3 G_V{};  // metric tensor times V
  float LENGTH = 0.0f;
};
LEG LEG_OF(const VECTOR3& v_frac, const MATRIX3& metric);

// Root of a variance; one that symmetry makes zero may come out a rounding error below it.
float ESD_OF(float variance);

// Covariance and esds of the coordinates of the atom's image under operator op.
MATRIX3 CALC_VCV_XYZ(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int op);
VECTOR3 CALC_ESD_XYZ(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int op);

// ---- measuring in one record ----

// What all measurements in one record share. It holds as its images do.
struct RULER {
  ATOM_IMAGES IMAGES;
  std::vector<MATRIX3> ATOM_VCV;           // covariance of the coordinates of each atom as listed
  std::vector<MATRIX3> SHIFTED_METRICS;    // metric tensors of the shifted cells
  std::vector<MATRIX3> SYMMETRIC_METRICS;  // and of those that tell what symmetry fixes
};
RULER RULER_FOR(const CRYSTAL_STRUCTURE_TYPE& phase);

// A position and the atom there with the covariance of its coordinates; an atom that is not there
// has number 0 and no covariance.
struct PLACED_ATOM {
  VECTOR3 X{};
  int ATOM = 0;
  int OPERATOR = 0;
  MATRIX3 VCV{};
  MATRIX3 ROTATION{};  // of the operator
};
PLACED_ATOM PLACE_ATOM(const RULER& ruler, int atom, int op, const VECTOR3& x_frac);

// The same of the atom that is looked up at the position.
PLACED_ATOM ATOM_AT(const RULER& ruler, const VECTOR3& x_frac);

// Joint covariance of two atoms.
MATRIX6 CALC_VCV_TWO_ATOMS(const PLACED_ATOM& atom1, const PLACED_ATOM& atom2);

// Distance between two positions in angstroms, with its esd.
VALUE_ESD DISTANCE_AND_SIGMA_VCV(const RULER& ruler, const PLACED_ATOM& atom0,
                                 const PLACED_ATOM& atom1);

// The same for single measurements, by positions.
MATRIX6 CALC_VCV_TWO_ATOMS(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x1_frac,
                           const VECTOR3& x2_frac);
VALUE_ESD DISTANCE_AND_SIGMA_VCV(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x0_frac,
                                 const VECTOR3& x1_frac);

}  // namespace KVA_CRYSTAL_STRUCTURES
