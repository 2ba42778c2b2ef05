// Cells, metrics, volumes and displacement tensors, worked out by hand.
#include "foundations/XTAL_Unit_Cell.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace XTAL;

namespace {

CRYSTAL_CELL CELL(const VECTOR3& lengths, const VECTOR3& angles, const VECTOR3& length_esds = {},
                  const VECTOR3& angle_esds = {}) {
  CRYSTAL_CELL cell;
  SET_CELL_RECORD(lengths, angles, cell, " ", length_esds, angle_esds);
  return cell;
}

void EXPECT_MATRIX_NEAR(const MATRIX3& a, const MATRIX3& b, float tolerance) {
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) EXPECT_NEAR(a[i][j], b[i][j], tolerance) << i << j;
}

}  // namespace

// ---- circular functions and matrices ----

TEST(SMALL_MATH, CIRCULAR_FUNCTIONS_ARE_EXACT_WHERE_THEY_CAN_BE) {
  EXPECT_EQ(COSD(90.0f), 0.0f);
  EXPECT_EQ(COSD(60.0f), 0.5f);
  EXPECT_EQ(COSD(120.0f), -0.5f);
  EXPECT_EQ(COSD(180.0f), -1.0f);
  EXPECT_EQ(SIND(30.0f), 0.5f);
  EXPECT_EQ(SIND(90.0f), 1.0f);
  EXPECT_EQ(SIND(180.0f), 0.0f);
  EXPECT_EQ(ACOSD(0.0f), 90.0f);
  EXPECT_EQ(ACOSD(1.5f), 0.0f) << "the argument is limited";
  EXPECT_EQ(ACOSD(-1.5f), 180.0f);
}

TEST(SMALL_MATH, INVERSES_AND_SINGULAR_MATRICES) {
  bool singular = true;
  const MATRIX3 inverse =
      INVERT_MATRIX({{{2.0f, 0.0f, 0.0f}, {0.0f, 4.0f, 0.0f}, {1.0f, 0.0f, 1.0f}}}, singular);
  EXPECT_FALSE(singular);
  EXPECT_MATRIX_NEAR(inverse, {{{0.5f, 0.0f, 0.0f}, {0.0f, 0.25f, 0.0f}, {-0.5f, 0.0f, 1.0f}}},
                     1e-7f);
  INVERT_MATRIX({{{1, 2, 3}, {2, 4, 6}, {0, 0, 1}}}, singular);
  EXPECT_TRUE(singular) << "two rows are parallel";
  INVERT_MATRIX({{{std::numeric_limits<float>::quiet_NaN(), 0, 0}, {0, 1, 0}, {0, 0, 1}}},
                singular);
  EXPECT_TRUE(singular);
  EXPECT_EQ(DETERMINANT(MATRIX3{{{2, 0, 0}, {0, 3, 0}, {0, 0, 4}}}), 24.0f);
}

TEST(SMALL_MATH, COORDINATES_ARE_REDUCED_TO_0_UP_TO_1) {
  EXPECT_EQ(MODULO_LAT({-0.25f, 1.0f, 2.5f}), (VECTOR3{0.75f, 0.0f, 0.5f}));
  EXPECT_EQ(MODULO_LAT({-1e-9f, 0.0f, 0.0f})[0], 0.0f) << "what rounds to 1 becomes 0";
}

// ---- cells ----

TEST(UNIT_CELL, ORTHORHOMBIC) {
  const CRYSTAL_CELL cell = CELL({2, 4, 5}, {90, 90, 90});
  EXPECT_EQ(ERR_CRYS, 0);
  EXPECT_EQ(cell.CELLVOL, 40.0f);
  EXPECT_EQ(cell.RCELL, (VECTOR3{0.5f, 0.25f, 0.2f}));
  EXPECT_EQ(cell.RANG, (VECTOR3{90, 90, 90}));
  EXPECT_EQ(cell.GD, (MATRIX3{{{4, 0, 0}, {0, 16, 0}, {0, 0, 25}}}));
  EXPECT_EQ(cell.STDVOL, 0.0f);
  EXPECT_MATRIX_NEAR(cell.BL_M, {{{0.5f, 0, 0}, {0, 0.25f, 0}, {0, 0, 0.2f}}}, 1e-7f);
}

TEST(UNIT_CELL, HEXAGONAL) {
  // V = a^2 c sin 120; a* = 1 / (a sin 120); gamma* = 60.
  const CRYSTAL_CELL cell = CELL({5, 5, 14}, {90, 90, 120});
  EXPECT_NEAR(cell.CELLVOL, 350.0f * std::sqrt(0.75f), 1e-3f);
  EXPECT_NEAR(cell.RCELL[0], 0.2f / std::sqrt(0.75f), 1e-6f);
  EXPECT_NEAR(cell.RANG[2], 60.0f, 1e-4f);
  EXPECT_NEAR(cell.GD[0][1], -12.5f, 1e-5f);
}

TEST(UNIT_CELL, THE_FRAME_HAS_Z_ALONG_C_AND_X_ALONG_A_STAR) {
  const CRYSTAL_CELL cell = CELL({5, 6, 7}, {80, 95, 103});
  const MATRIX3& m = cell.CR_ORTH_CEL;
  EXPECT_EQ(m[0][1], 0.0f);
  EXPECT_EQ(m[0][2], 0.0f);
  EXPECT_EQ(m[1][2], 0.0f);
  EXPECT_EQ(m[2][2], 7.0f);
  // The frame reproduces the metric: M^T M = G.
  EXPECT_MATRIX_NEAR(MULTIPLY(TRANSPOSE(m), m), cell.GD, 2e-5f);
  EXPECT_MATRIX_NEAR(MULTIPLY(m, cell.ORTH_CR_CEL), {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}, 1e-6f);
  // Direct and reciprocal metric are inverse to each other.
  EXPECT_MATRIX_NEAR(MULTIPLY(cell.GD, cell.GR), {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}, 1e-5f);
  // Busing and Levy's matrix: B^T B is the reciprocal metric.
  EXPECT_MATRIX_NEAR(MULTIPLY(TRANSPOSE(cell.BL_M), cell.BL_M), cell.GR, 1e-6f);
}

TEST(UNIT_CELL, UNSET_ANGLES_ARE_RIGHT_ANGLES) {
  EXPECT_EQ(CELL({1, 1, 1}, {0, 0, 0}).ANG, (VECTOR3{90, 90, 90}));
}

TEST(UNIT_CELL, ESD_OF_THE_VOLUME) {
  // Lengths alone: V sqrt(q), q = (0.02/2)^2 + (0.04/4)^2 = 2e-4.
  EXPECT_NEAR(CELL({2, 4, 5}, {90, 90, 90}, {0.02f, 0.04f, 0.0f}).STDVOL, 40.0f * std::sqrt(2e-4f),
              1e-5f);
  // One angle of 100 degrees with esd 0.1: D = sin^2, so q = (s^2 / D) sin^2 cos^2 = (s cos)^2.
  const float sigma = 0.1f / DEGREES_PER_RADIAN;
  const CRYSTAL_CELL cell = CELL({2, 4, 5}, {90, 100, 90}, {}, {0, 0.1f, 0});
  EXPECT_NEAR(cell.STDVOL, cell.CELLVOL * sigma * std::abs(COSD(100.0f)), 1e-5f);
}

TEST(UNIT_CELL, IMPOSSIBLE_CELLS_ARE_TOLD) {
  for (const VECTOR3& lengths : {VECTOR3{0, 1, 1}, VECTOR3{1, 1, 0}}) {
    CELL(lengths, {90, 90, 90});
    EXPECT_EQ(ERR_CRYS, -1);
    EXPECT_EQ(ERR_CRYS_MESS, " Bad cell parameters ");
  }
  CELL({5, 5, 5}, {10, 20, 170});
  EXPECT_EQ(ERR_CRYS, -1) << "no solid has these angles";
  CELL({5, 5, 5}, {90, 90, 90});
  EXPECT_EQ(ERR_CRYS, 0) << "the next cell clears the error";
}

TEST(UNIT_CELL, DISTANCES_KNOW_NO_SYMMETRY) {
  const CRYSTAL_CELL cell = CELL({2, 4, 5}, {90, 90, 90});
  EXPECT_FLOAT_EQ(DISTANCE_FRAC({0.1f, 0, 0}, {0.9f, 0, 0}, cell), 1.6f);
  // A monoclinic cell by the cosine rule: |a/2 - c/2|^2 = 1 + 2.25 - 2 * 1.5 cos 100.
  const CRYSTAL_CELL oblique = CELL({2, 4, 3}, {90, 100, 90});
  EXPECT_NEAR(DISTANCE_FRAC({0.5f, 0, 0}, {0, 0, 0.5f}, oblique),
              std::sqrt(3.25f - 3.0f * COSD(100.0f)), 1e-6f);
}

// ---- displacement tensors ----

TEST(TENSORS, BETA_AND_U_ARE_INVERSE_TO_EACH_OTHER) {
  const CRYSTAL_CELL cell = CELL({5, 6, 7}, {80, 95, 103});
  const VECTOR6 u{0.01f, 0.02f, 0.03f, 0.001f, -0.002f, 0.003f};
  VECTOR6 beta{};
  VECTOR6 back{};
  U_TO_BETA(u, beta, cell);
  BETA_TO_U(beta, back, cell);
  for (std::size_t k = 0; k < 6; ++k) EXPECT_NEAR(back[k], u[k], 1e-8f);
  EXPECT_NEAR(beta[0], 19.7392f * cell.GR[0][0] * 0.01f, 1e-8f);
}

TEST(TENSORS, EQUIVALENT_VALUES) {
  EXPECT_NEAR(U_EQUIV(CELL({2, 4, 5}, {90, 90, 90}), {0.01f, 0.02f, 0.03f, 1, 1, 1}), 0.02f, 1e-8f);
  // An isotropic tensor in hexagonal axes: U12 = U11 cos(gamma*) = U11 / 2, and Ueq = U11.
  EXPECT_NEAR(U_EQUIV(CELL({5, 5, 14}, {90, 90, 120}), {0.01f, 0.01f, 0.01f, 0.005f, 0, 0}), 0.01f,
              1e-7f);
}
