// Displacement parameters in beta form, their images under symmetry and their esds.
#include "src/kva_crystal_structures/displacement.h"

#include <cmath>  // for sqrt, abs

#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"
#include "console_code/kva_utilities/vectors.h"

namespace KVA_CRYSTAL_STRUCTURES {

using namespace KVA_UTILITIES;

namespace {

constexpr float not_given = 0.0001f;  // square angstroms; a B or U below it was not given
constexpr float four_thirds = 1.33333f;
constexpr float no_direction = 0.0001f;  // length of a vector without a direction

}  // namespace

// ---- one internal form ----

bool IS_BETA(const ATOM_TYPE& atom) {
  return INDEXALL(atom.UTYPE, "beta") > 0;
}

float U_EQUIV_FROM_BETA(const XTAL::CRYSTAL_CELL& cell, const VECTOR6& beta) {
  VECTOR6 u{};
  XTAL::BETA_TO_U(beta, u, cell);
  return XTAL::U_EQUIV(cell, u);
}

namespace {

void SET_ISOTROPIC(ATOM_TYPE& atom) {
  if (atom.BISO < not_given) atom.BISO = EIGHT_PI_SQ * atom.UEQ;
  if (atom.UEQ < not_given) atom.UEQ = atom.BISO / EIGHT_PI_SQ;
}

void U_ATOM_TO_BETA(const XTAL::CRYSTAL_CELL& cell, ATOM_TYPE& atom) {
  atom.UEQ = XTAL::U_EQUIV(cell, atom.U);
  XTAL::U_TO_BETA(VECTOR6(atom.U), atom.U, cell);
  XTAL::U_TO_BETA(VECTOR6(atom.U_STD), atom.U_STD, cell);
  atom.UTYPE = "beta";
}

}  // namespace

void SET_ATOM_ADP(CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  ATOM_TYPE& atom = phase.ATOM(i);
  if (EQUAL_TEXT(atom.THTYPE, "isotr")) return SET_ISOTROPIC(atom);
  if (atom.UTYPE == "u_ij")
    U_ATOM_TO_BETA(phase.CELL, atom);
  else if (atom.UTYPE == "beta")
    atom.UEQ = U_EQUIV_FROM_BETA(phase.CELL, atom.U);
  atom.BISO = four_thirds * TRACE(XTAL::MULTIPLY(VECTOR_TO_MATRIX(atom.U), phase.CELL.GD));
}

void SET_ALLATOM_ADP(CRYSTAL_STRUCTURE_TYPE& phase) {
  for (int i = 1; i <= phase.NATOMS; ++i) SET_ATOM_ADP(phase, i);
}

// ---- symmetry ----

TENSOR TENSOR_AS_U(const TENSOR& beta, const XTAL::CRYSTAL_CELL& cell) {
  TENSOR u;
  XTAL::BETA_TO_U(beta.VALUE, u.VALUE, cell);
  XTAL::BETA_TO_U(beta.STD, u.STD, cell);
  return u;
}

VECTOR6 APPLYSO_BETA(const MATRIX3& t, const VECTOR6& beta) {
  return MATRIX_TO_VECTOR(
      XTAL::MULTIPLY(XTAL::MULTIPLY(t, VECTOR_TO_MATRIX(beta)), XTAL::TRANSPOSE(t)));
}

VECTOR6 APPLYSO_BETA(const IMATRIX3& rot, const VECTOR6& beta) {
  return APPLYSO_BETA(XTAL::REAL_MATRIX(rot), beta);
}

float ATOM_DISPL(const VECTOR6& beta, const VECTOR3& v_frac, const MATRIX3& metric) {
  if (XTAL::LENGTH(v_frac) < no_direction) return 0.0f;
  const VECTOR3 g = XTAL::MULTIPLY(metric, v_frac);
  const float along = XTAL::DOT(g, XTAL::MULTIPLY(VECTOR_TO_MATRIX(beta), g));
  // Not a number where a tensor that is not positive definite has no displacement.
  return std::sqrt(along / (TWO_PI_SQ * XTAL::DOT(v_frac, g)));
}

// ---- esds ----

namespace {

// Derivatives of the transformed components with the old ones: column c is the image of the unit
// tensor c.
MATRIX6 TENSOR_JACOBIAN(const MATRIX3& t) {
  MATRIX6 jacobian{};
  for (std::size_t c = 0; c < 6; ++c) {
    VECTOR6 unit{};
    unit[c] = 1.0f;
    const VECTOR6 image = APPLYSO_BETA(t, unit);
    for (std::size_t r = 0; r < 6; ++r) jacobian[r][c] = image[r];
  }
  return jacobian;
}

MATRIX6 TRANSFORM_COVARIANCE(const MATRIX6& jacobian, const MATRIX6& v) {
  MATRIX6 result{};
  for (std::size_t r = 0; r < 6; ++r)
    for (std::size_t c = 0; c < 6; ++c)
      for (std::size_t k = 0; k < 6; ++k)
        for (std::size_t l = 0; l < 6; ++l)
          result[r][c] += jacobian[r][k] * v[k][l] * jacobian[c][l];
  return result;
}

// One linear constraint ties its first two components: they are fully correlated.
void LINK_COMPONENTS(const VECTOR6& constraint, const VECTOR6& variances, MATRIX6& v) {
  std::vector<std::size_t> linked;
  for (std::size_t c = 0; c < 6; ++c)
    if (!(std::abs(constraint[c]) < TINY_REAL)) linked.push_back(c);
  if (linked.size() < 2) return;
  const float covariance = std::sqrt(variances[linked[0]] * variances[linked[1]]);
  v[linked[0]][linked[1]] = covariance;
  v[linked[1]][linked[0]] = covariance;
}

// Applies the constraints that the symmetry of the site imposes.
void CONSTRAIN_BY_SITE(const CRYSTAL_STRUCTURE_TYPE& phase, int i, const VECTOR6& variances,
                       MATRIX6& v) {
  int order = 0;
  LIST<int> operators;
  LIST<VECTOR3> translations;
  XTAL::GET_STABILIZER(phase.ATOM(i).X, phase.SPG, order, operators, translations);
  for (int s = 2; s <= order; ++s) {
    MATRIX6 constraints = TENSOR_JACOBIAN(XTAL::REAL_MATRIX(phase.SPG.SYMOP(operators(s)).ROT));
    for (std::size_t r = 0; r < 6; ++r) {
      constraints[r][r] -= 1.0f;
      LINK_COMPONENTS(constraints[r], variances, v);
    }
  }
}

}  // namespace

MATRIX6 CALC_VCV_BETA(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int op, const MATRIX3* t) {
  const ATOM_TYPE& atom = phase.ATOM(i);
  VECTOR6 variances{};
  MATRIX6 v{};
  for (std::size_t c = 0; c < 6; ++c) {
    variances[c] = atom.U_STD[c] * atom.U_STD[c];
    v[c][c] = variances[c];
  }
  if (atom.MULT != phase.SPG.MULTIP) CONSTRAIN_BY_SITE(phase, i, variances, v);
  if (t != nullptr) return TRANSFORM_COVARIANCE(TENSOR_JACOBIAN(*t), v);
  if (op == 1) return v;
  return TRANSFORM_COVARIANCE(TENSOR_JACOBIAN(XTAL::REAL_MATRIX(phase.SPG.SYMOP(op).ROT)), v);
}

VECTOR6 CALC_ESD_BETA(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int op, const MATRIX3* t) {
  if (t == nullptr && op == 1) return phase.ATOM(i).U_STD;
  const MATRIX6 v = CALC_VCV_BETA(phase, i, op, t);
  VECTOR6 esd{};
  // What symmetry makes zero may come out a rounding error below it.
  for (std::size_t c = 0; c < 6; ++c) esd[c] = v[c][c] > 0.0f ? std::sqrt(v[c][c]) : 0.0f;
  return esd;
}

float CALC_ESD_U_EQUIV(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  VECTOR6 gradient{};
  for (std::size_t c = 0; c < 6; ++c) {
    VECTOR6 unit{};
    unit[c] = 1.0f;
    gradient[c] = IS_BETA(phase.ATOM(i)) ? U_EQUIV_FROM_BETA(phase.CELL, unit)
                                         : XTAL::U_EQUIV(phase.CELL, unit);
  }
  const MATRIX6 v = CALC_VCV_BETA(phase, i, 1);
  float variance = 0.0f;
  for (std::size_t r = 0; r < 6; ++r)
    for (std::size_t c = 0; c < 6; ++c) variance += gradient[r] * v[r][c] * gradient[c];
  return variance > 0.0f ? std::sqrt(variance) : 0.0f;
}

float U_EQUIV_STD(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  const ATOM_TYPE& atom = phase.ATOM(i);
  const float of_components = EQUAL_TEXT(atom.THTYPE, "isotr") ? 0.0f : CALC_ESD_U_EQUIV(phase, i);
  return of_components > 0.0f ? of_components : atom.BISO_STD / EIGHT_PI_SQ;
}

}  // namespace KVA_CRYSTAL_STRUCTURES
