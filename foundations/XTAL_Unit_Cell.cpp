// The unit cell record and the displacement tensors in its frame.
#include "foundations/XTAL_Unit_Cell.h"

#include <algorithm>  // for find
#include <cmath>      // for sqrt, abs, isfinite
#include <string_view>

#include "console_code/kva_utilities/text.h"

namespace XTAL {

namespace {

constexpr float unset_angle = 0.00001f;  // degrees; below it an angle was not given
constexpr float no_esds = 0.00001f;      // sum of esds that counts as none
constexpr float two_pi_sq = 19.7392f;    // beta = 2 pi^2 a* b* U

void CLEAR_ERROR() {
  ERR_CRYS = 0;
  ERR_CRYS_MESS.clear();
}

// Cosines and sines of the three angles.
struct ANGLE_FUNCTIONS {
  VECTOR3 COS{};
  VECTOR3 SIN{};
};

ANGLE_FUNCTIONS FUNCTIONS_OF(const VECTOR3& angles) {
  ANGLE_FUNCTIONS f;
  for (std::size_t k = 0; k < 3; ++k) {
    f.COS[k] = COSD(angles[k]);
    f.SIN[k] = SIND(angles[k]);
  }
  return f;
}

// Square of the volume of a cell with edges 1.
float ANGLE_DETERMINANT(const VECTOR3& cos) {
  return 1.0f - SQUARE(cos[0]) - SQUARE(cos[1]) - SQUARE(cos[2]) + 2.0f * cos[0] * cos[1] * cos[2];
}

// ---- steps of SET_CELL_RECORD ----

void SET_VOLUME(CRYSTAL_CELL& c) {
  const float d = ANGLE_DETERMINANT(FUNCTIONS_OF(c.ANG).COS);
  c.CELLVOL = c.CELL[0] * c.CELL[1] * c.CELL[2] * std::sqrt(std::abs(d));
  c.RCELLVOL = 1.0f / c.CELLVOL;
}

void SET_RECIPROCAL_CELL(CRYSTAL_CELL& c) {
  const ANGLE_FUNCTIONS f = FUNCTIONS_OF(c.ANG);
  for (std::size_t k = 0; k < 3; ++k) {
    const std::size_t l = (k + 1) % 3;
    const std::size_t m = (k + 2) % 3;
    c.RCELL[k] = c.CELL[l] * c.CELL[m] * f.SIN[k] / c.CELLVOL;
    c.RANG[k] = ACOSD((f.COS[l] * f.COS[m] - f.COS[k]) / (f.SIN[l] * f.SIN[m]));
  }
}

// The inverse frame; false when there is none.
bool SET_FRAME(CRYSTAL_CELL& c) {
  GET_CRYST_ORTHOG_MATRIX(c.CELL, c.ANG, c.CR_ORTH_CEL, c.CARTTYPE);
  bool singular = false;
  c.ORTH_CR_CEL = INVERT_MATRIX(c.CR_ORTH_CEL, singular);
  return !singular;
}

// Contribution of the angle esds to the relative variance of the volume.
float ANGLE_TERM(const CRYSTAL_CELL& c) {
  const ANGLE_FUNCTIONS f = FUNCTIONS_OF(c.ANG);
  const float d = std::abs(ANGLE_DETERMINANT(f.COS));
  if (!(d > 0.0f)) return 0.0f;
  float sum = 0.0f;
  for (std::size_t k = 0; k < 3; ++k) {
    const float sigma = c.ANG_STD[k] / DEGREES_PER_RADIAN;
    const float slope = f.COS[k] - f.COS[(k + 1) % 3] * f.COS[(k + 2) % 3];
    sum += SQUARE(sigma) / d * SQUARE(f.SIN[k]) * SQUARE(slope);
  }
  return sum;
}

void SET_VOLUME_ESD(CRYSTAL_CELL& c) {
  float length_sum = 0.0f;
  float angle_sum = 0.0f;
  float q = 0.0f;
  for (std::size_t k = 0; k < 3; ++k) {
    length_sum += std::abs(c.CELL_STD[k]);
    angle_sum += std::abs(c.ANG_STD[k]);
    q += SQUARE(c.CELL_STD[k] / c.CELL[k]);
  }
  c.STDVOL = 0.0f;
  if (length_sum < no_esds && angle_sum < no_esds) return;
  if (angle_sum > no_esds) q += ANGLE_TERM(c);
  c.STDVOL = c.CELLVOL * std::sqrt(q);
}

// The B matrix of W. R. Busing and H. A. Levy, Acta Cryst. 22 (1967) 457-464.
MATRIX3 BUSING_LEVY_MATRIX(const CRYSTAL_CELL& c) {
  const ANGLE_FUNCTIONS reciprocal = FUNCTIONS_OF(c.RANG);
  return {{{c.RCELL[0], c.RCELL[1] * reciprocal.COS[2], c.RCELL[2] * reciprocal.COS[1]},
           {0.0f, c.RCELL[1] * reciprocal.SIN[2], -c.RCELL[2] * reciprocal.SIN[1] * COSD(c.ANG[0])},
           {0.0f, 0.0f, 1.0f / c.CELL[2]}}};
}

void SET_BUSING_LEVY(CRYSTAL_CELL& c) {
  if (c.CARTTYPE == "CA") {
    c.BL_M = TRANSPOSE(c.ORTH_CR_CEL);
    c.BL_MINV = TRANSPOSE(c.CR_ORTH_CEL);
    return;
  }
  bool singular = false;
  c.BL_M = BUSING_LEVY_MATRIX(c);
  c.BL_MINV = INVERT_MATRIX(c.BL_M, singular);
}

// Reciprocal lengths that belong to the off-diagonal components 12, 13 and 23.
float RECIPROCAL_PRODUCT(const CRYSTAL_CELL& c, std::size_t component) {
  constexpr std::array<std::array<std::size_t, 2>, 3> axes{{{0, 1}, {0, 2}, {1, 2}}};
  const auto& pair = axes[component - 3];
  return c.RCELL[pair[0]] * c.RCELL[pair[1]];
}

// beta / U of a component.
float BETA_PER_U(const CRYSTAL_CELL& c, std::size_t component) {
  return two_pi_sq *
         (component < 3 ? c.GR[component][component] : RECIPROCAL_PRODUCT(c, component));
}

// A blank word means "CA", which is also the frame that the other words get.
bool IS_FRAME_WORD(const std::string& word) {
  constexpr std::array<std::string_view, 6> accepted{"", "CA", "AC", "BC", "BA", "CB"};
  return std::find(accepted.begin(), accepted.end(), word) != accepted.end();
}

}  // namespace

void GET_CRYST_ORTHOG_MATRIX(const VECTOR3& cellv, const VECTOR3& angl, MATRIX3& m,
                             const std::string& cartype) {
  if (!IS_FRAME_WORD(KVA_UTILITIES::U_CASE(KVA_UTILITIES::TRIM(cartype)))) {
    ERR_CRYS = 1;
    ERR_CRYS_MESS = "Invalid CarType in call to Get_Cryst_Orthog_Matrix. Reset to default";
  }
  const ANGLE_FUNCTIONS f = FUNCTIONS_OF(angl);
  const float cs = (f.COS[0] * f.COS[1] - f.COS[2]) / (f.SIN[0] * f.SIN[1]);
  const float sn = std::sqrt(1.0f - SQUARE(cs));
  m = {{{cellv[0] * f.SIN[1] * sn, 0.0f, 0.0f},
        {-cellv[0] * f.SIN[1] * cs, cellv[1] * f.SIN[0], 0.0f},
        {cellv[0] * f.COS[1], cellv[1] * f.COS[0], cellv[2]}}};
}

MATRIX3 METRICTENSOR(const VECTOR3& cellv, const VECTOR3& angl) {
  const float ab = cellv[0] * cellv[1] * COSD(angl[2]);
  const float ac = cellv[0] * cellv[2] * COSD(angl[1]);
  const float bc = cellv[1] * cellv[2] * COSD(angl[0]);
  return {{{SQUARE(cellv[0]), ab, ac}, {ab, SQUARE(cellv[1]), bc}, {ac, bc, SQUARE(cellv[2])}}};
}

void SET_CELL_RECORD(const VECTOR3& cellv, const VECTOR3& angl, CRYSTAL_CELL& celda,
                     const std::string& cartype, const VECTOR3& scell, const VECTOR3& sang) {
  CLEAR_ERROR();
  celda.CELL_STD = scell;
  celda.ANG_STD = sang;
  celda.CELL = cellv;
  celda.ANG = angl;
  for (float& angle : celda.ANG)
    if (angle < unset_angle) angle = 90.0f;
  SET_VOLUME(celda);
  SET_RECIPROCAL_CELL(celda);
  celda.CARTTYPE = cartype;
  if (!SET_FRAME(celda)) {
    ERR_CRYS = -1;
    ERR_CRYS_MESS = " Bad cell parameters ";
    return;
  }
  SET_VOLUME_ESD(celda);
  celda.GD = METRICTENSOR(celda.CELL, celda.ANG);
  celda.GR = METRICTENSOR(celda.RCELL, celda.RANG);
  SET_BUSING_LEVY(celda);
}

void SET_CELL_RECORD(const VECTOR3& cellv, const VECTOR3& angl, CRYSTAL_CELL& celda,
                     const std::string& cartype) {
  SET_CELL_RECORD(cellv, angl, celda, cartype, VECTOR3{}, VECTOR3{});
}

// ---- displacement tensors ----

void BETA_TO_U(const VECTOR6& beta, VECTOR6& u, const CRYSTAL_CELL& celda) {
  for (std::size_t k = 0; k < 6; ++k) u[k] = beta[k] / BETA_PER_U(celda, k);
}

void U_TO_BETA(const VECTOR6& u, VECTOR6& beta, const CRYSTAL_CELL& celda) {
  for (std::size_t k = 0; k < 6; ++k) beta[k] = u[k] * BETA_PER_U(celda, k);
}

float U_EQUIV(const CRYSTAL_CELL& celda, const VECTOR6& u) {
  VECTOR3 aa{};
  for (std::size_t k = 0; k < 3; ++k) aa[k] = celda.CELL[k] * celda.RCELL[k];
  const float sum = u[0] * SQUARE(aa[0]) + u[1] * SQUARE(aa[1]) + u[2] * SQUARE(aa[2]) +
                    2.0f * u[3] * aa[0] * aa[1] * COSD(celda.ANG[2]) +
                    2.0f * u[4] * aa[0] * aa[2] * COSD(celda.ANG[1]) +
                    2.0f * u[5] * aa[1] * aa[2] * COSD(celda.ANG[0]);
  return sum / 3.0f;
}

float DISTANCE_FRAC(const VECTOR3& x_frac, const VECTOR3& y_frac, const CRYSTAL_CELL& celda) {
  return LENGTH(MULTIPLY(celda.CR_ORTH_CEL, SUBTRACT(y_frac, x_frac)));
}

bool IS_SENSIBLE(const CRYSTAL_CELL& cell) {
  constexpr float half_turn = 180.0f;
  bool sensible = ERR_CRYS == 0 && std::isfinite(cell.CELLVOL) && cell.CELLVOL > 0.0f;
  for (std::size_t k = 0; k < 3; ++k) {
    sensible = sensible && cell.CELL[k] > 0.0f && cell.ANG[k] < half_turn;
    for (float element : cell.CR_ORTH_CEL[k]) sensible = sensible && std::isfinite(element);
  }
  return sensible;
}

VECTOR3 REACH_OF(const CRYSTAL_CELL& celda, float distance) {
  constexpr float margin = 1e-4f;
  VECTOR3 reach{};
  for (std::size_t k = 0; k < 3; ++k)
    reach[k] = distance * celda.RCELL[k] * (1.0f + margin) + margin;
  return reach;
}

}  // namespace XTAL
