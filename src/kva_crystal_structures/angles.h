// Angles between atoms with their esds.
#pragma once

#include "src/kva_crystal_structures/legs_64.h"
#include "src/kva_crystal_structures/uncertainty.h"

namespace KVA_CRYSTAL_STRUCTURES {

// Angle between two vectors in degrees, which the metric tensor measures; 0 for a zero length.
float ANGLE_BETWEEN(const LEG& leg1, const LEG& leg2, const MATRIX3& metric);
float CRYST_ANGLE(const VECTOR3& v1_frac, const VECTOR3& v2_frac, const MATRIX3& metric);

// The apex of angles, with the operators that leave it in place (the identity first) and the
// lattice translation of each.
struct APEX_ATOM {
  PLACED_ATOM PLACED;
  VECTOR3 ESDS{};  // of its coordinates; 0 for those too small to shift by
  int ORDER = 0;
  LIST<int> OPERATORS;
  LIST<VECTOR3> TRANSLATIONS;
};
APEX_ATOM APEX_AT(const RULER& ruler, const VECTOR3& x_frac);

// The vector from an apex to a ligand, and what it becomes when one parameter grows by its esd:
// what it brings to the esds of all angles at the apex.
struct SPOKE {
  PLACED_ATOM LIGAND;
  VECTOR3 ESDS{};       // of the ligand's coordinates, as those of the apex
  MATRIX6 WITH_APEX{};  // joint covariance of apex and ligand
  LEG AS_IS;
  LEG_64 AS_IS_64;
  std::array<LEG, 3> APEX_SHIFTED;
  std::array<LEG, 3> LIGAND_SHIFTED;
  std::vector<LEG> IN_SHIFTED_CELLS;
};
SPOKE SPOKE_TO(const RULER& ruler, const APEX_ATOM& apex, const PLACED_ATOM& ligand);

// Angle at the apex of two spokes in degrees, with its esd; an angle that symmetry fixes has none.
VALUE_ESD ANGLE_AND_SIGMA_VCV(const RULER& ruler, const APEX_ATOM& apex, const SPOKE& spoke1,
                              const SPOKE& spoke2);

// The same for a single measurement, by positions: the apex first.
VALUE_ESD ANGLE_AND_SIGMA_VCV(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x0_frac,
                              const VECTOR3& x1_frac, const VECTOR3& x2_frac);

}  // namespace KVA_CRYSTAL_STRUCTURES
