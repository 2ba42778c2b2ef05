// Angles that the symmetry of the apex fixes: their exact values, and where the rule ends.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "src/kva_crystal_structures/angles.h"
#include "structures.h"

using namespace STRUCTURES;
using XTAL::SYSTEM;

namespace {

constexpr float small_esd = 0.001f;

// Tangent of half the angle.
float TAN_HALF(float angle) {
  return std::tan(0.5f * angle / XTAL::DEGREES_PER_RADIAN);
}

// Apex at the origin, on the mirror across b of P m in a cell with edges 4; ligands (0.1, h, 0) and
// (0.1, -h, 0) times lengthening make the angle, (0, 0.25, 0) and (0, -0.25, 0) the straight one.
// The crystal system is set as given.
VALUE_ESD MIRRORED(SYSTEM system, float angle, float lengthening = 1.0f) {
  VECTOR3 ligand{0.1f, 0.1f * TAN_HALF(angle), 0};
  if (angle == 180.0f) ligand = {0, 0.25f, 0};
  auto phase = MADE({4, 4, 4}, {90, 90, 90}, "P m",
                    {{"Si1", {0, 0, 0}}, {"O1", ligand, {small_esd, small_esd, small_esd}}});
  phase.SPG.CRYSTALSYS = {system};
  return ANGLE_AND_SIGMA_VCV(
      phase, {0, 0, 0}, ligand,
      {ligand[0] * lengthening, -ligand[1] * lengthening, ligand[2] * lengthening});
}

// Apex at the origin, on the axis along c of a cell with edges 5; ligands off its height by as much
// as makes their angle this much less than the axis demands.
VALUE_ESD ABOUT_AXIS(const std::string& symbol, float gamma, float full_angle, float less,
                     const std::array<float, 2>& second) {
  // sin(angle / 2) = sin(full / 2) cos(elevation).
  const float half = XTAL::SIND(0.5f * (full_angle - less)) / XTAL::SIND(0.5f * full_angle);
  const float z = 0.2f * std::sqrt(1.0f / (half * half) - 1.0f);
  const auto phase =
      MADE({5, 5, 5}, {90, 90, gamma}, symbol,
           {{"Si1", {0, 0, 0}}, {"O1", {0.2f, 0, z}, {small_esd, small_esd, small_esd}}});
  return ANGLE_AND_SIGMA_VCV(phase, {0, 0, 0}, {0.2f, 0, z}, {second[0], second[1], z});
}

}  // namespace

// ---- one of each kind ----

TEST(FIXED_ANGLES, A_FOUR_FOLD_AXIS_THROUGH_THE_APEX) {
  const auto phase =
      MADE({5, 5, 7}, {90, 90, 90}, "P 4",
           {{"Si1", {0.5f, 0.5f, 0.25f}}, {"O1", {0.8f, 0.5f, 0.25f}, {0.01f, 0.01f, 0}}},
           {0.01f, 0.01f, 0.01f});
  const VALUE_ESD right =
      ANGLE_AND_SIGMA_VCV(phase, phase.ATOM(1).X, {0.8f, 0.5f, 0.25f}, {0.5f, 0.8f, 0.25f});
  EXPECT_EQ(right.VALUE, 90.0f);
  EXPECT_EQ(right.ESD, 0.0f);
  const VALUE_ESD straight =
      ANGLE_AND_SIGMA_VCV(phase, phase.ATOM(1).X, {0.8f, 0.5f, 0.25f}, {0.2f, 0.5f, 0.25f});
  EXPECT_EQ(straight.VALUE, 180.0f);
  EXPECT_EQ(straight.ESD, 0.0f);
}

TEST(FIXED_ANGLES, AN_INVERSION_CENTRE_AT_THE_APEX) {
  const auto phase =
      MADE({5, 6, 7}, {80, 95, 103}, "P -1",
           {{"Si1", {0.5f, 0, 0.5f}}, {"O1", {0.7f, 0.1f, 0.6f}, {0.01f, 0.01f, 0.01f}}});
  const VALUE_ESD angle =
      ANGLE_AND_SIGMA_VCV(phase, phase.ATOM(1).X, {0.7f, 0.1f, 0.6f}, {0.3f, -0.1f, 0.4f});
  EXPECT_EQ(angle.VALUE, 180.0f);
  EXPECT_EQ(angle.ESD, 0.0f);
}

TEST(FIXED_ANGLES, A_MIRROR_FIXES_ONLY_SPECIAL_VALUES) {
  const auto mirrored = [](float z) {
    const auto phase = MADE({5, 5, 5}, {90, 90, 90}, "P 4/m m m",
                            {{"Si1", {0, 0, 0}}, {"O1", {0.3f, 0.1f, z}, {0.01f, 0.01f, 0.01f}}});
    return ANGLE_AND_SIGMA_VCV(phase, {0, 0, 0}, {0.3f, 0.1f, z}, {0.3f, 0.1f, -z});
  };
  // tan(45) = z / sqrt(0.3^2 + 0.1^2) makes the angle across the mirror 90 degrees.
  const VALUE_ESD special = mirrored(std::sqrt(0.1f));
  EXPECT_EQ(special.VALUE, 90.0f);
  EXPECT_EQ(special.ESD, 0.0f);
  EXPECT_GT(mirrored(0.2f).ESD, 0.0f);
}

TEST(FIXED_ANGLES, A_THREE_FOLD_AXIS_GIVES_120) {
  const auto phase = MADE({5, 5, 7}, {90, 90, 120}, "P 3",
                          {{"C1", {0, 0, 0.5f}}, {"O1", {0.25f, 0, 0.5f}, {0.01f, 0, 0}}});
  const VALUE_ESD angle =
      ANGLE_AND_SIGMA_VCV(phase, {0, 0, 0.5f}, {0.25f, 0, 0.5f}, {0, 0.25f, 0.5f});
  EXPECT_EQ(angle.VALUE, 120.0f);
  EXPECT_EQ(angle.ESD, 0.0f);
}

TEST(FIXED_ANGLES, A_TWO_FOLD_AXIS_GIVES_180_ACROSS_IT) {
  const auto phase = MADE({5, 6, 7}, {90, 98, 90}, "P 2",
                          {{"Si1", {0, 0.3f, 0}}, {"O1", {0.2f, 0.3f, 0.1f}, {0.01f, 0, 0.01f}}});
  const VALUE_ESD across =
      ANGLE_AND_SIGMA_VCV(phase, {0, 0.3f, 0}, {0.2f, 0.3f, 0.1f}, {-0.2f, 0.3f, -0.1f});
  EXPECT_EQ(across.VALUE, 180.0f);
  EXPECT_EQ(across.ESD, 0.0f);
}

// In hexagonal axes the ligand 0, y, z is not across the two-fold axis along a, though its x is
// that of the apex. With a = 9, c = 7 the cosine is (81 (0.0225 / 2 - 0.0225) - 49 0.0225) / 2.925
// = -0.68846, 133.508 degrees.
TEST(FIXED_ANGLES, A_TWO_FOLD_AXIS_OF_HEXAGONAL_AXES_FIXES_NOTHING_ELSE) {
  const auto phase = MADE({9, 9, 7}, {90, 90, 120}, "P 3 2 1",
                          {{"B1", {0, 0, 0}}, {"O1", {0, 0.15f, 0.15f}, {0.001f, 0.001f, 0.001f}}});
  const VALUE_ESD angle =
      ANGLE_AND_SIGMA_VCV(phase, {0, 0, 0}, {0, 0.15f, 0.15f}, {-0.15f, -0.15f, -0.15f});
  EXPECT_NEAR(angle.VALUE, 133.508f, 0.001f);
  EXPECT_GT(angle.ESD, 0.0f);
}

// ---- mirrors ----

TEST(MIRRORS, EACH_CRYSTAL_SYSTEM_HAS_ITS_VALUES) {
  struct RULE {
    SYSTEM OF;
    std::set<float> FIXED;
  };
  const std::vector<RULE> rules{{SYSTEM::HEXAGONAL, {60, 180}},
                                {SYSTEM::TRIGONAL, {60, 180}},
                                {SYSTEM::TETRAGONAL, {45, 90, 135, 180}},
                                {SYSTEM::CUBIC, {45, 90, 135, 180}},
                                {SYSTEM::ORTHORHOMBIC, {180}},
                                {SYSTEM::MONOCLINIC, {180}},
                                {SYSTEM::TRICLINIC, {}}};
  for (const RULE& rule : rules)
    for (float value : {30.0f, 45.0f, 60.0f, 90.0f, 120.0f, 135.0f, 180.0f}) {
      const VALUE_ESD angle = MIRRORED(rule.OF, value);
      if (rule.FIXED.contains(value)) {
        EXPECT_EQ(angle.VALUE, value) << SYSTEM_NAME(rule.OF);
        EXPECT_EQ(angle.ESD, 0.0f) << SYSTEM_NAME(rule.OF) << " " << value;
      } else {
        EXPECT_NEAR(angle.VALUE, value, 1e-4f) << SYSTEM_NAME(rule.OF);
        EXPECT_GT(angle.ESD, 0.0f) << SYSTEM_NAME(rule.OF) << " " << value;
      }
    }
}

TEST(MIRRORS, A_VALUE_REACHES_A_THOUSANDTH_OF_A_DEGREE) {
  for (float off : {-0.0008f, 0.0008f}) {
    EXPECT_EQ(MIRRORED(SYSTEM::TETRAGONAL, 90.0f + off).VALUE, 90.0f);
    EXPECT_EQ(MIRRORED(SYSTEM::TETRAGONAL, 90.0f + off).ESD, 0.0f);
    EXPECT_EQ(MIRRORED(SYSTEM::HEXAGONAL, 60.0f + off).VALUE, 60.0f);
    EXPECT_EQ(MIRRORED(SYSTEM::HEXAGONAL, 60.0f + off).ESD, 0.0f);
  }
  for (float off : {-0.0012f, 0.0012f}) {
    EXPECT_NEAR(MIRRORED(SYSTEM::TETRAGONAL, 90.0f + off).VALUE, 90.0f + off, 1e-4f);
    EXPECT_GT(MIRRORED(SYSTEM::TETRAGONAL, 90.0f + off).ESD, 0.0f);
    EXPECT_GT(MIRRORED(SYSTEM::HEXAGONAL, 60.0f + off).ESD, 0.0f);
  }
}

// In P 3 1 m the mirror y,x,z takes 2, 1, 0 tenths to 1, 2, 0; between them lie 60 degrees, half of
// it tan(30) = (a - b) / 20 over 3 (a + b) / 20 = sqrt 3 / 3.
TEST(MIRRORS, SIXTY_DEGREES_IN_HEXAGONAL_AXES) {
  const auto phase =
      MADE({9, 9, 7}, {90, 90, 120}, "P 3 1 m",
           {{"B1", {0.1f, 0.1f, 0.2f}}, {"O1", {0.3f, 0.2f, 0.2f}, {0.001f, 0.001f, 0.001f}}});
  const VALUE_ESD angle =
      ANGLE_AND_SIGMA_VCV(phase, {0.1f, 0.1f, 0.2f}, {0.3f, 0.2f, 0.2f}, {0.2f, 0.3f, 0.2f});
  EXPECT_EQ(angle.VALUE, 60.0f);
  EXPECT_EQ(angle.ESD, 0.0f);
}

// ---- axes ----

TEST(AXES, A_SIX_FOLD_AXIS_GIVES_60) {
  const VALUE_ESD angle = ABOUT_AXIS("P 6", 120, 60, 0, {0.2f, 0.2f});
  EXPECT_EQ(angle.VALUE, 60.0f);
  EXPECT_EQ(angle.ESD, 0.0f);
}

TEST(AXES, A_VALUE_REACHES_A_TENTH_OF_A_DEGREE) {
  struct AXIS {
    const char* SYMBOL;
    float GAMMA;
    float ANGLE;
    std::array<float, 2> SECOND;  // the first ligand is 0.2, 0
  };
  for (const AXIS& axis : {AXIS{"P 3", 120, 120, {0, 0.2f}}, AXIS{"P 4", 90, 90, {0, 0.2f}},
                           AXIS{"P 6", 120, 60, {0.2f, 0.2f}}}) {
    const VALUE_ESD near = ABOUT_AXIS(axis.SYMBOL, axis.GAMMA, axis.ANGLE, 0.09f, axis.SECOND);
    EXPECT_EQ(near.VALUE, axis.ANGLE) << axis.SYMBOL;
    EXPECT_EQ(near.ESD, 0.0f) << axis.SYMBOL;
    const VALUE_ESD far = ABOUT_AXIS(axis.SYMBOL, axis.GAMMA, axis.ANGLE, 0.11f, axis.SECOND);
    EXPECT_NEAR(far.VALUE, axis.ANGLE - 0.11f, 0.002f) << axis.SYMBOL;
    EXPECT_GT(far.ESD, 0.0f) << axis.SYMBOL;
  }
}

// ---- which ligands count ----

// The ligands are 0.4 sqrt 2 = 0.566 angstroms from the apex; the second is a little farther out.
TEST(LIGANDS, THE_IMAGE_OF_THE_FIRST_LIES_WITHIN_A_THOUSANDTH_OF_AN_ANGSTROM_OF_THE_SECOND) {
  const float length = 0.4f * std::sqrt(2.0f);
  EXPECT_EQ(MIRRORED(SYSTEM::CUBIC, 90, 1.0f + 0.0008f / length).ESD, 0.0f);
  EXPECT_GT(MIRRORED(SYSTEM::CUBIC, 90, 1.0f + 0.0012f / length).ESD, 0.0f);
}

// No atom lies at the two positions: what the cell alone gives is kept. Half the angle is
// arctan(z c / x a), so an esd of c turns the right angle by sigma(c) / c.
TEST(LIGANDS, POSITIONS_WITHOUT_ATOMS_ARE_NO_IMAGES_OF_EACH_OTHER) {
  const auto phase = MADE({5, 5, 5}, {90, 90, 90}, "P 4/m",
                          {{"Si1", {0, 0, 0}}, {"O1", {0.4f, 0.3f, 0.2f}}}, {0, 0, 0.005f});
  const VALUE_ESD angle = ANGLE_AND_SIGMA_VCV(phase, {0, 0, 0}, {0.1f, 0, 0.1f}, {0.1f, 0, -0.1f});
  EXPECT_NEAR(angle.VALUE, 90.0f, 1e-4f);
  EXPECT_NEAR(angle.ESD, 0.001f * XTAL::DEGREES_PER_RADIAN, 1e-4f);
}
