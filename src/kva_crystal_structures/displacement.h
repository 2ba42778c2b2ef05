// Displacement parameters: one internal form (beta), equivalents, their images and their esds.
#pragma once

#include "src/kva_crystal_structures/records.h"

namespace KVA_CRYSTAL_STRUCTURES {

inline constexpr float EIGHT_PI_SQ = 78.9568352f;  // B = 8 pi^2 U
inline constexpr float TWO_PI_SQ = 19.7392088f;    // beta = 2 pi^2 a* b* U

// Brings the atom's values to beta form and fills UEQ and BISO. Doing it twice changes nothing.
void SET_ATOM_ADP(CRYSTAL_STRUCTURE_TYPE& phase, int i);
void SET_ALLATOM_ADP(CRYSTAL_STRUCTURE_TYPE& phase);

float U_EQUIV_FROM_BETA(const XTAL::CRYSTAL_CELL& cell, const VECTOR6& beta);

// True when the atom's tensor is in beta form, not U.
bool IS_BETA(const ATOM_TYPE& atom);

// A tensor with the esds of its components.
struct TENSOR {
  VECTOR6 VALUE{};
  VECTOR6 STD{};
};
TENSOR TENSOR_AS_U(const TENSOR& beta, const XTAL::CRYSTAL_CELL& cell);

// R B R^T; the second form takes any real matrix.
VECTOR6 APPLYSO_BETA(const KVA_UTILITIES::IMATRIX3& rot, const VECTOR6& beta);
VECTOR6 APPLYSO_BETA(const MATRIX3& t, const VECTOR6& beta);

// Root-mean-square displacement along a fractional vector, angstroms, of a tensor in beta form.
float ATOM_DISPL(const VECTOR6& beta, const VECTOR3& v_frac, const MATRIX3& metric);

// Covariance and esds of the tensor of the atom's image under operator op, or under t if given.
MATRIX6 CALC_VCV_BETA(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int op,
                      const MATRIX3* t = nullptr);
VECTOR6 CALC_ESD_BETA(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int op,
                      const MATRIX3* t = nullptr);

// Esd of the equivalent U of an anisotropic atom, square angstroms: that of a linear function of
// the tensor, whose components the site ties as CALC_VCV_BETA tells. The cell counts as exact.
float CALC_ESD_U_EQUIV(const CRYSTAL_STRUCTURE_TYPE& phase, int i);

// Esd of UEQ: that of the components with the ties of the site; of an isotropic atom, or where the
// components have none, the one that was given with U or B.
float U_EQUIV_STD(const CRYSTAL_STRUCTURE_TYPE& phase, int i);

}  // namespace KVA_CRYSTAL_STRUCTURES
