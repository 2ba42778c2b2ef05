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

// Three-fold axes along c and along the diagonal of a cube, an inversion and a mirror with x and y
// exchanged: the powers and products that give the identity.
TEST(SMALL_MATH, INVERSES_OF_ROTATIONS) {
  const MATRIX3 three_fold{{{0, -1, 0}, {1, -1, 0}, {0, 0, 1}}};
  EXPECT_EQ(INVERSE_ROTATION(three_fold), (MATRIX3{{{-1, 1, 0}, {-1, 0, 0}, {0, 0, 1}}}));
  const MATRIX3 diagonal{{{0, 0, 1}, {1, 0, 0}, {0, 1, 0}}};
  EXPECT_EQ(INVERSE_ROTATION(diagonal), TRANSPOSE(diagonal));
  for (const MATRIX3& own :
       {MATRIX3{{{-1, 0, 0}, {0, -1, 0}, {0, 0, -1}}}, MATRIX3{{{0, 1, 0}, {1, 0, 0}, {0, 0, 1}}}})
    EXPECT_EQ(INVERSE_ROTATION(own), own);
}

TEST(SMALL_MATH, A_MATRIX_IS_SINGULAR_FROM_1E_5_OF_THE_BOX_OF_ITS_ROWS) {
  // Determinant e; the rows have the lengths 1, 1 and sqrt(1 + e^2), which is 1.
  const auto leaning = [](float e) { return MATRIX3{{{1, 0, 0}, {0, 1, 0}, {0, 1, e}}}; };
  bool singular = true;
  const MATRIX3 inverse = INVERT_MATRIX(leaning(1.1e-5f), singular);
  EXPECT_FALSE(singular);
  EXPECT_NEAR(inverse[2][2], 1.0f / 1.1e-5f, 0.1f);
  EXPECT_EQ(INVERT_MATRIX(leaning(0.9e-5f), singular), MATRIX3{});
  EXPECT_TRUE(singular);
  INVERT_MATRIX(leaning(-0.9e-5f), singular);
  EXPECT_TRUE(singular);
  // Short rows are no reason.
  INVERT_MATRIX({{{1e-6f, 0, 0}, {0, 1e-6f, 0}, {0, 0, 1e-6f}}}, singular);
  EXPECT_FALSE(singular);
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
  EXPECT_EQ(cell.RCELLVOL, 0.025f);
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

// ---- the Cartesian frame and the Busing-Levy matrix ----

TEST(FRAMES, THE_WORD_IS_KEPT_AS_IT_WAS_PASSED) {
  CRYSTAL_CELL cell;
  SET_CELL_RECORD({5, 6, 7}, {80, 95, 103}, cell, " ");
  EXPECT_EQ(cell.CARTTYPE, " ");
  SET_CELL_RECORD({5, 6, 7}, {80, 95, 103}, cell, "bc");
  EXPECT_EQ(cell.CARTTYPE, "bc");
  SET_CELL_RECORD({5, 6, 7}, {80, 95, 103}, cell);
  EXPECT_EQ(cell.CARTTYPE, "CA") << "no word passed";
}

TEST(FRAMES, ACCEPTED_WORDS_IN_EITHER_CASE) {
  const MATRIX3 frame = CELL({5, 6, 7}, {80, 95, 103}).CR_ORTH_CEL;
  for (const char* word : {"", "  ", "CA", "AC", "BC", "BA", "CB", "ca", "cb "}) {
    CRYSTAL_CELL cell;
    SET_CELL_RECORD({5, 6, 7}, {80, 95, 103}, cell, word);
    EXPECT_EQ(ERR_CRYS, 0) << word;
    EXPECT_EQ(ERR_CRYS_MESS, "") << word;
    EXPECT_EQ(cell.CR_ORTH_CEL, frame) << word;
  }
}

TEST(FRAMES, OTHER_WORDS_ARE_TOLD_AND_TAKEN_AS_CA) {
  for (const char* word : {"AB", "C", "A", "CAB", "??"}) {
    CRYSTAL_CELL cell;
    SET_CELL_RECORD({5, 6, 7}, {80, 95, 103}, cell, word);
    EXPECT_NE(ERR_CRYS, 0) << word;
    EXPECT_EQ(ERR_CRYS_MESS,
              "Invalid CarType in call to Get_Cryst_Orthog_Matrix. Reset to default");
    EXPECT_EQ(cell.CR_ORTH_CEL, CELL({5, 6, 7}, {80, 95, 103}).CR_ORTH_CEL) << word;
  }
}

TEST(FRAMES, CA_TAKES_THE_BUSING_LEVY_MATRIX_FROM_THE_FRAME) {
  CRYSTAL_CELL cell;
  SET_CELL_RECORD({5, 6, 7}, {80, 95, 103}, cell, "CA");
  EXPECT_EQ(cell.BL_M, TRANSPOSE(cell.ORTH_CR_CEL));
  EXPECT_EQ(cell.BL_MINV, TRANSPOSE(cell.CR_ORTH_CEL));
}

// W. R. Busing and H. A. Levy, Acta Cryst. 22 (1967) 457-464: a*, b* cos gamma*, c* cos beta*;
// b* sin gamma*, -c* sin beta* cos alpha; 1/c. The frame would give the same numbers but for their
// last digits, which here differ.
TEST(FRAMES, ANY_OTHER_WORD_TAKES_THE_PUBLISHED_BUSING_LEVY_MATRIX) {
  for (const char* word : {" ", "ca", "BC"}) {
    CRYSTAL_CELL cell;
    SET_CELL_RECORD({5, 6, 7}, {80, 95, 103}, cell, word);
    const VECTOR3& r = cell.RCELL;
    const VECTOR3& w = cell.RANG;
    const MATRIX3 published{{{r[0], r[1] * COSD(w[2]), r[2] * COSD(w[1])},
                             {0, r[1] * SIND(w[2]), -r[2] * SIND(w[1]) * COSD(80)},
                             {0, 0, 1.0f / 7.0f}}};
    EXPECT_EQ(cell.BL_M, published) << word;
    EXPECT_NE(cell.BL_M, TRANSPOSE(cell.ORTH_CR_CEL)) << word;
    EXPECT_MATRIX_NEAR(MULTIPLY(cell.BL_M, cell.BL_MINV), {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
                       1e-6f);
  }
}

// ---- angles that are not given, and cells that cannot be ----

TEST(UNIT_CELL, UNSET_ANGLES_ARE_RIGHT_ANGLES) {
  EXPECT_EQ(CELL({1, 1, 1}, {0, 0, 0}).ANG, (VECTOR3{90, 90, 90}));
  EXPECT_EQ(CELL({1, 1, 1}, {0.9e-5f, 90, -100}).ANG, (VECTOR3{90, 90, 90}));
  EXPECT_EQ(CELL({1, 1, 1}, {90, 1.1e-5f, 90}).ANG, (VECTOR3{90, 1.1e-5f, 90}));
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

TEST(UNIT_CELL, IMPOSSIBLE_ANGLES_HAVE_A_VOLUME_ALL_THE_SAME) {
  // D = 1 - 2 cos^2 30 = -1/2, so V = 40 sqrt(1/2).
  const CRYSTAL_CELL cell = CELL({2, 4, 5}, {30, 30, 90});
  EXPECT_EQ(ERR_CRYS, -1);
  EXPECT_NEAR(cell.CELLVOL, 40.0f * std::sqrt(0.5f), 1e-4f);
}

TEST(UNIT_CELL, A_BAD_CELL_LEAVES_WHAT_COMES_AFTER_ITS_FRAME) {
  CRYSTAL_CELL cell;
  SET_CELL_RECORD({5, 6, 7}, {80, 95, 103}, cell, "CA", {0.1f, 0, 0}, {});
  const CRYSTAL_CELL before = cell;
  SET_CELL_RECORD({0, 1, 1}, {90, 90, 90}, cell, "CA", {0.2f, 0, 0}, {});
  EXPECT_EQ(ERR_CRYS, -1);
  EXPECT_EQ(cell.CELL, (VECTOR3{0, 1, 1}));
  EXPECT_EQ(cell.CELLVOL, 0.0f);
  EXPECT_EQ(cell.STDVOL, before.STDVOL);
  EXPECT_EQ(cell.GD, before.GD);
  EXPECT_EQ(cell.GR, before.GR);
  EXPECT_EQ(cell.BL_M, before.BL_M);
  EXPECT_EQ(cell.BL_MINV, before.BL_MINV);
}

// ---- esds ----

TEST(UNIT_CELL, ESD_OF_THE_VOLUME) {
  // Lengths alone: V sqrt(q), q = (0.02/2)^2 + (0.04/4)^2 = 2e-4.
  EXPECT_NEAR(CELL({2, 4, 5}, {90, 90, 90}, {0.02f, 0.04f, 0.0f}).STDVOL, 40.0f * std::sqrt(2e-4f),
              1e-5f);
  // One angle of 100 degrees with esd 0.1: D = sin^2, so q = (s^2 / D) sin^2 cos^2 = (s cos)^2.
  const float sigma = 0.1f / DEGREES_PER_RADIAN;
  const CRYSTAL_CELL cell = CELL({2, 4, 5}, {90, 100, 90}, {}, {0, 0.1f, 0});
  EXPECT_NEAR(cell.STDVOL, cell.CELLVOL * sigma * std::abs(COSD(100.0f)), 1e-5f);
}

// Each angle gives (s^2 / D) sin^2 (its cosine - product of the other two cosines)^2.
TEST(UNIT_CELL, ESD_OF_THE_VOLUME_FROM_EACH_ANGLE_OF_AN_OBLIQUE_CELL) {
  const float sigma = 0.1f / DEGREES_PER_RADIAN;
  // 60, 60, 60: D = 1 - 3/4 + 1/4 = 1/2; q = s^2 * 2 * 3/4 * (1/2 - 1/4)^2 = 3/32 s^2.
  for (std::size_t k = 0; k < 3; ++k) {
    VECTOR3 esds{};
    esds[k] = 0.1f;
    EXPECT_NEAR(CELL({2, 4, 5}, {60, 60, 60}, {}, esds).STDVOL,
                40.0f * std::sqrt(0.5f) * sigma * std::sqrt(3.0f / 32.0f), 1e-6f)
        << k;
  }
  // 60, 90, 120: D = 1 - 1/4 - 1/4 = 1/2. The cosines 1/2, 0, -1/2 give the slopes 1/2, 1/4, -1/2
  // and so 2 * 3/4 * 1/4, 2 * 1/16 and again 2 * 3/4 * 1/4.
  const VECTOR3 q{0.375f, 0.125f, 0.375f};
  for (std::size_t k = 0; k < 3; ++k) {
    VECTOR3 esds{};
    esds[k] = 0.1f;
    EXPECT_NEAR(CELL({2, 4, 5}, {60, 90, 120}, {}, esds).STDVOL,
                40.0f * std::sqrt(0.5f) * sigma * std::sqrt(q[k]), 1e-6f)
        << k;
  }
}

TEST(UNIT_CELL, ESDS_THAT_SUM_TO_LESS_THAN_1E_5_COUNT_AS_NONE) {
  // V = 1e6: any esd would show.
  EXPECT_EQ(CELL({100, 100, 100}, {90, 90, 90}, {3e-6f, -3e-6f, 3e-6f}).STDVOL, 0.0f);
  EXPECT_NEAR(CELL({100, 100, 100}, {90, 90, 90}, {1.1e-5f, 0, 0}).STDVOL, 0.11f, 1e-4f);
  EXPECT_NEAR(CELL({100, 100, 100}, {90, 90, 90}, {1e-5f, -1e-5f, 0}).STDVOL,
              0.1f * std::sqrt(2.0f), 1e-4f)
      << "magnitudes are summed";
  EXPECT_EQ(CELL({100, 100, 100}, {80, 80, 80}, {}, {3e-6f, 3e-6f, -3e-6f}).STDVOL, 0.0f);
  // sigma |cos 80| V, with V = 1e6 sin 80.
  EXPECT_NEAR(CELL({100, 100, 100}, {80, 90, 90}, {}, {1.1e-5f, 0, 0}).STDVOL,
              1e6f * SIND(80) * 1.1e-5f / DEGREES_PER_RADIAN * COSD(80), 1e-4f);
  EXPECT_NEAR(CELL({100, 100, 100}, {80, 90, 90}, {}, {1.1e-5f, 0, -1.1e-5f}).STDVOL,
              1e6f * SIND(80) * 1.1e-5f / DEGREES_PER_RADIAN * COSD(80), 1e-4f);
}

TEST(UNIT_CELL, ANGLE_ESDS_BELOW_THE_LIMIT_ADD_NOTHING_TO_LENGTH_ESDS) {
  // V = 1000 sin 10, sigma(a) / a = 2e-8; the angle's sigma cos 10 = 1.5e-7 would be far more.
  const float volume = 1000.0f * SIND(10);
  EXPECT_NEAR(CELL({1000, 1, 1}, {10, 90, 90}, {2e-5f, 0, 0}, {0.9e-5f, 0, 0}).STDVOL,
              2e-8f * volume, 1e-7f);
  const float sigma = 1.1e-5f / DEGREES_PER_RADIAN;
  EXPECT_NEAR(CELL({1000, 1, 1}, {10, 90, 90}, {2e-5f, 0, 0}, {1.1e-5f, 0, 0}).STDVOL,
              volume * std::sqrt(4e-16f + SQUARE(sigma * COSD(10))), 1e-7f);
}

// ---- distances ----

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

TEST(TENSORS, EACH_COMPONENT_HAS_ITS_OWN_PAIR_OF_RECIPROCAL_LENGTHS) {
  // a* = 1/2, b* = 1/4, c* = 1/5: beta = 19.7392 U times 1/4, 1/16, 1/25, 1/8, 1/10, 1/20.
  const CRYSTAL_CELL cell = CELL({2, 4, 5}, {90, 90, 90});
  VECTOR6 beta{};
  U_TO_BETA({1, 1, 1, 1, 1, 1}, beta, cell);
  VECTOR6 u{};
  BETA_TO_U({1, 1, 1, 1, 1, 1}, u, cell);
  const VECTOR6 divisors{4, 16, 25, 8, 10, 20};
  for (std::size_t k = 0; k < 6; ++k) {
    EXPECT_NEAR(beta[k], 19.7392f / divisors[k], 1e-6f) << k;
    EXPECT_NEAR(u[k], divisors[k] / 19.7392f, 1e-6f) << k;
  }
}

// An isotropic tensor has the off-diagonal components U times the cosine of the reciprocal angle,
// here 180 degrees less the direct one; its equivalent is U.
TEST(TENSORS, EQUIVALENT_VALUES_IN_CELLS_WITH_ONE_OBLIQUE_ANGLE) {
  EXPECT_NEAR(
      U_EQUIV(CELL({2, 4, 5}, {110, 90, 90}), {0.01f, 0.01f, 0.01f, 0, 0, 0.01f * COSD(70)}), 0.01f,
      1e-8f);
  EXPECT_NEAR(
      U_EQUIV(CELL({2, 4, 5}, {90, 110, 90}), {0.01f, 0.01f, 0.01f, 0, 0.01f * COSD(70), 0}), 0.01f,
      1e-8f);
  EXPECT_NEAR(
      U_EQUIV(CELL({2, 4, 5}, {90, 90, 110}), {0.01f, 0.01f, 0.01f, 0.01f * COSD(70), 0, 0}), 0.01f,
      1e-8f);
}

TEST(TENSORS, EQUIVALENT_VALUES) {
  EXPECT_NEAR(U_EQUIV(CELL({2, 4, 5}, {90, 90, 90}), {0.01f, 0.02f, 0.03f, 1, 1, 1}), 0.02f, 1e-8f);
  // An isotropic tensor in hexagonal axes: U12 = U11 cos(gamma*) = U11 / 2, and Ueq = U11.
  EXPECT_NEAR(U_EQUIV(CELL({5, 5, 14}, {90, 90, 120}), {0.01f, 0.01f, 0.01f, 0.005f, 0, 0}), 0.01f,
              1e-7f);
}
