// The unit cell: everything that follows from six parameters and their esds. Prints nothing.
#pragma once

#include <string>

#include "foundations/XTAL_Small_Math.h"

namespace XTAL {

struct CRYSTAL_CELL {
  VECTOR3 CELL{};         // a, b, c in angstroms
  VECTOR3 ANG{};          // alpha, beta, gamma in degrees
  VECTOR3 CELL_STD{};     // esds of a, b, c
  VECTOR3 ANG_STD{};      // esds of the angles, degrees
  VECTOR3 RCELL{};        // reciprocal lengths
  VECTOR3 RANG{};         // reciprocal angles, degrees
  MATRIX3 GD{};           // direct metric tensor
  MATRIX3 GR{};           // reciprocal metric tensor
  MATRIX3 CR_ORTH_CEL{};  // fractional to Cartesian
  MATRIX3 ORTH_CR_CEL{};  // Cartesian to fractional
  MATRIX3 BL_M{};         // Busing-Levy B matrix
  MATRIX3 BL_MINV{};      // its inverse
  float CELLVOL = 0.0f;   // volume, cubic angstroms
  float STDVOL = 0.0f;    // its esd
  float RCELLVOL = 0.0f;  // 1 / volume
  std::string CARTTYPE;   // the Cartesian frame asked for, 2 characters
};

// Error state of this module: 0 and blank after success.
inline int ERR_CRYS = 0;
inline std::string ERR_CRYS_MESS;

// Fills the record from lengths (angstroms), angles (degrees) and their esds. Nonsense values leave
// ERR_CRYS at -1 with " Bad cell parameters ".
void SET_CELL_RECORD(const VECTOR3& cellv, const VECTOR3& angl, CRYSTAL_CELL& celda,
                     const std::string& cartype, const VECTOR3& scell, const VECTOR3& sang);
// The same with esds of zero.
void SET_CELL_RECORD(const VECTOR3& cellv, const VECTOR3& angl, CRYSTAL_CELL& celda,
                     const std::string& cartype = "CA");

// Whether the last SET_CELL_RECORD succeeded and gave the cell positive lengths, angles below 180
// degrees, a positive volume and a finite frame.
bool IS_SENSIBLE(const CRYSTAL_CELL& cell);

// Fractional to Cartesian: z along c, y in the b-c plane, x along a*. That is the frame "CA", also
// used for the words "AC", "BC", "BA" and "CB". Any other word but a blank gives it as well and
// leaves ERR_CRYS at 1 with "Invalid CarType ...".
void GET_CRYST_ORTHOG_MATRIX(const VECTOR3& cellv, const VECTOR3& angl, MATRIX3& m,
                             const std::string& cartype = " ");

// Displacement tensors, order 11, 22, 33, 12, 13, 23.
void BETA_TO_U(const VECTOR6& beta, VECTOR6& u, const CRYSTAL_CELL& celda);
void U_TO_BETA(const VECTOR6& u, VECTOR6& beta, const CRYSTAL_CELL& celda);
float U_EQUIV(const CRYSTAL_CELL& celda, const VECTOR6& u);

// Metric tensor of lengths and angles.
MATRIX3 METRICTENSOR(const VECTOR3& cellv, const VECTOR3& angl);

// Length in angstroms of y - x; no symmetry, no lattice translation.
float DISTANCE_FRAC(const VECTOR3& x_frac, const VECTOR3& y_frac, const CRYSTAL_CELL& celda);

// How far along each cell edge, as a fraction of it, something can lie that is within a distance
// (angstroms) of a point: the distance of the lattice planes across each axis tells. The margin is
// wider than the rounding of a coordinate difference.
VECTOR3 REACH_OF(const CRYSTAL_CELL& celda, float distance);

}  // namespace XTAL
