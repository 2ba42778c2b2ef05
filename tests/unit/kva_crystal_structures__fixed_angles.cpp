// Angles that the symmetry of the apex fixes: their exact values, and where the rule ends.
#include <gtest/gtest.h>

#include <cmath>

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
// (0.1, -h, 0) make the angle. The crystal system is set as given.
VALUE_ESD MIRRORED(SYSTEM system, float angle) {
  const VECTOR3 ligand{0.1f, 0.1f * TAN_HALF(angle), 0};
  auto phase = MADE({4, 4, 4}, {90, 90, 90}, "P m",
                    {{"Si1", {0, 0, 0}}, {"O1", ligand, {small_esd, small_esd, small_esd}}});
  phase.SPG.CRYSTALSYS = {system};
  return ANGLE_AND_SIGMA_VCV(phase, {0, 0, 0}, ligand, {ligand[0], -ligand[1], ligand[2]});
}

// The same with ligands (x, 1/4, 0) and (x, -1/4, 0), which lack that much of a straight angle.
VALUE_ESD NEARLY_STRAIGHT(float lacking) {
  const float x = 0.25f * TAN_HALF(lacking);
  const auto phase =
      MADE({4, 4, 4}, {90, 90, 90}, "P m",
           {{"Si1", {0, 0, 0}}, {"O1", {x, 0.25f, 0}, {small_esd, small_esd, small_esd}}});
  return ANGLE_AND_SIGMA_VCV(phase, {0, 0, 0}, {x, 0.25f, 0}, {x, -0.25f, 0});
}

// Apex at the origin, on the axis along c of a cell with edges 5; ligands 1 angstrom from the axis
// and the height above the apex, the second that much farther out.
VALUE_ESD ABOUT_AXIS(const std::string& symbol, float gamma, float height,
                     const std::array<float, 2>& second, float farther = 0.0f) {
  const float z = 0.2f * height;
  const auto phase =
      MADE({5, 5, 5}, {90, 90, gamma}, symbol,
           {{"Si1", {0, 0, 0}}, {"O1", {0.2f, 0, z}, {small_esd, small_esd, small_esd}}});
  const float longer = 1.0f + farther;
  return ANGLE_AND_SIGMA_VCV(phase, {0, 0, 0}, {0.2f, 0, z},
                             {longer * second[0], longer * second[1], z});
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

// tan(45) = z / sqrt(0.3^2 + 0.1^2) makes the angle across the mirror 90 degrees, until z
// moves, which no mirror forbids.
TEST(FIXED_ANGLES, A_ROUND_VALUE_ACROSS_A_MIRROR_IS_NOT_FIXED) {
  const float z = std::sqrt(0.1f);
  const auto phase = MADE({5, 5, 5}, {90, 90, 90}, "P 4/m m m",
                          {{"Si1", {0, 0, 0}}, {"O1", {0.3f, 0.1f, z}, {0, 0, 0.001f}}});
  const VALUE_ESD angle = ANGLE_AND_SIGMA_VCV(phase, {0, 0, 0}, {0.3f, 0.1f, z}, {0.3f, 0.1f, -z});
  EXPECT_NEAR(angle.VALUE, 90.0f, 1e-4f);
  // theta = 2 arctan(z / r), so d theta = 2 r dz / (r^2 + z^2) with r^2 = z^2 = 0.1.
  EXPECT_NEAR(angle.ESD, 0.001f / std::sqrt(0.1f) * XTAL::DEGREES_PER_RADIAN, 1e-3f);
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

// Ligands that are 0.05 degrees off 180, as they lie higher than the apex along the axis, may move.
TEST(FIXED_ANGLES, A_TWO_FOLD_AXIS_LEAVES_WHAT_LIES_HIGHER) {
  const VECTOR3 ligand{0.4f, TAN_HALF(0.05f) * 0.4f, 0};
  const auto phase = MADE({5, 5, 7}, {90, 90, 90}, "P 2",
                          {{"Si1", {0, 0, 0}}, {"O1", ligand, {0.001f, 0.001f, 0.001f}}});
  const VALUE_ESD angle = ANGLE_AND_SIGMA_VCV(phase, {0, 0, 0}, ligand, {-ligand[0], ligand[1], 0});
  EXPECT_NEAR(angle.VALUE, 179.95f, 0.002f);
  EXPECT_GT(angle.ESD, 0.0f);
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

// There 0, y, z lies the half of y a along the axis, and so the angle of its two images lacks twice
// arctan((y a / 2) / r) of 180 degrees, where r is the root of (0.866 y a)^2 + (z c)^2. Nearly
// across the axis, to a tenth of a degree, it is taken for straight.
TEST(FIXED_ANGLES, ACROSS_A_TWO_FOLD_AXIS_A_TENTH_OF_A_DEGREE_DOES_NOT_COUNT) {
  for (const float lacking : {0.09f, 0.11f}) {
    const float z = 0.3f;
    const float y = TAN_HALF(lacking) * z * 7.0f / 4.5f;
    const VECTOR3 ligand{0, y, z};
    const auto phase = MADE({9, 9, 7}, {90, 90, 120}, "P 3 2 1",
                            {{"B1", {0, 0, 0}}, {"O1", ligand, {small_esd, small_esd, small_esd}}});
    const VALUE_ESD angle = ANGLE_AND_SIGMA_VCV(phase, {0, 0, 0}, ligand, {-y, -y, -z});
    EXPECT_NEAR(angle.VALUE, lacking < 0.1f ? 180.0f : 179.89f, 0.001f);
    EXPECT_EQ(angle.ESD > 0.0f, lacking > 0.1f);
  }
}

// ---- mirrors ----

TEST(MIRRORS, FIX_NO_ANGLE_BUT_THE_STRAIGHT_ONE) {
  for (SYSTEM system : {SYSTEM::HEXAGONAL, SYSTEM::TETRAGONAL, SYSTEM::CUBIC, SYSTEM::MONOCLINIC})
    for (float value : {30.0f, 45.0f, 60.0f, 90.0f, 120.0f, 135.0f}) {
      const VALUE_ESD angle = MIRRORED(system, value);
      EXPECT_NEAR(angle.VALUE, value, 1e-4f) << SYSTEM_NAME(system);
      EXPECT_GT(angle.ESD, 0.0f) << SYSTEM_NAME(system) << " " << value;
    }
}

TEST(MIRRORS, A_STRAIGHT_ANGLE_REACHES_A_THOUSANDTH_OF_A_DEGREE) {
  for (float lacking : {0.0f, 0.0008f}) {
    EXPECT_EQ(NEARLY_STRAIGHT(lacking).VALUE, 180.0f) << lacking;
    EXPECT_EQ(NEARLY_STRAIGHT(lacking).ESD, 0.0f) << lacking;
  }
  EXPECT_NEAR(NEARLY_STRAIGHT(0.0012f).VALUE, 179.9988f, 1e-4f);
  EXPECT_GT(NEARLY_STRAIGHT(0.0012f).ESD, 0.0f);
}

// ---- axes ----

TEST(AXES, A_SIX_FOLD_AXIS_GIVES_60) {
  const VALUE_ESD angle = ABOUT_AXIS("P 6", 120, 0, {0.2f, 0.2f});
  EXPECT_EQ(angle.VALUE, 60.0f);
  EXPECT_EQ(angle.ESD, 0.0f);
}

// cos(theta) = (cos(full) + h^2) / (1 + h^2) for ligands the height h above the apex.
TEST(AXES, FIX_THE_ANGLE_OF_LIGANDS_AT_RIGHT_ANGLES_TO_THEM) {
  struct AXIS {
    const char* SYMBOL;
    float GAMMA;
    float ANGLE;
    std::array<float, 2> SECOND;  // the first ligand is 0.2, 0
  };
  for (const AXIS& axis : {AXIS{"P 3", 120, 120, {0, 0.2f}}, AXIS{"P 4", 90, 90, {0, 0.2f}},
                           AXIS{"P 6", 120, 60, {0.2f, 0.2f}}}) {
    const VALUE_ESD in_plane = ABOUT_AXIS(axis.SYMBOL, axis.GAMMA, 0.0009f, axis.SECOND);
    EXPECT_EQ(in_plane.VALUE, axis.ANGLE) << axis.SYMBOL;
    EXPECT_EQ(in_plane.ESD, 0.0f) << axis.SYMBOL;
    EXPECT_GT(ABOUT_AXIS(axis.SYMBOL, axis.GAMMA, 0.0012f, axis.SECOND).ESD, 0.0f) << axis.SYMBOL;
    const float h = 0.025f;
    const VALUE_ESD above = ABOUT_AXIS(axis.SYMBOL, axis.GAMMA, h, axis.SECOND);
    const float cosine = (XTAL::COSD(axis.ANGLE) + h * h) / (1.0f + h * h);
    EXPECT_NEAR(above.VALUE, XTAL::ACOSD(cosine), 1e-4f) << axis.SYMBOL;
    EXPECT_LT(above.VALUE, axis.ANGLE - 0.01f) << axis.SYMBOL;
    EXPECT_GT(above.ESD, 0.0f) << axis.SYMBOL;
  }
}

// ---- by derivatives ----

// x, x, x moves along the axis [111] alone: tetrahedral angles stay at arccos(-1/3), and the two
// atoms on the axis in line with the apex, whatever their distances. Steps of one coordinate after
// the other would show 0.9 degrees of each.
TEST(DERIVATIVES, A_LIGAND_ON_A_THREE_FOLD_AXIS_STAYS_ON_IT) {
  const VECTOR3 esd{0.003f, 0.003f, 0.003f};
  const auto phase = MADE(
      {8, 8, 8}, {90, 90, 90}, "P -4 3 m",
      {{"Si1", {0, 0, 0}}, {"O1", {0.1f, 0.1f, 0.1f}, esd}, {"F1", {0.87f, 0.87f, 0.87f}, esd}},
      {0.01f, 0.01f, 0.01f});
  const VALUE_ESD tetrahedral =
      ANGLE_AND_SIGMA_VCV(phase, {0, 0, 0}, {0.1f, 0.1f, 0.1f}, {-0.1f, -0.1f, 0.1f});
  EXPECT_NEAR(tetrahedral.VALUE, 109.47122f, 1e-4f);
  EXPECT_EQ(tetrahedral.ESD, 0.0f);
  const VALUE_ESD in_line =
      ANGLE_AND_SIGMA_VCV(phase, {0, 0, 0}, {0.1f, 0.1f, 0.1f}, {-0.13f, -0.13f, -0.13f});
  EXPECT_EQ(in_line.VALUE, 180.0f);
  EXPECT_EQ(in_line.ESD, 0.0f);
}

// The octahedron of rutile, O at x, x, 0: 180 across the centre, 90 between the axis and the plane,
// and 2 arctan(c / 2 over what a sqrt 2 (1/2 - x) is) in the plane, which x and the cell change.
TEST(DERIVATIVES, THE_ANGLES_OF_RUTILE) {
  const auto phase = MADE({4.594f, 4.594f, 2.959f}, {90, 90, 90}, "P 42/m n m",
                          {{"Ti1", {0, 0, 0}}, {"O1", {0.305f, 0.305f, 0}, {0.0002f, 0.0002f, 0}}},
                          {0.0003f, 0.0003f, 0.0002f});
  const VECTOR3 apical{0.305f, 0.305f, 0};
  const VECTOR3 up{-0.195f, 0.195f, 0.5f};
  const VECTOR3 down{-0.195f, 0.195f, -0.5f};
  const auto angle = [&](const VECTOR3& first, const VECTOR3& second) {
    return ANGLE_AND_SIGMA_VCV(phase, {0, 0, 0}, first, second);
  };
  EXPECT_NEAR(angle(apical, up).VALUE, 90.0f, 1e-5f);
  EXPECT_EQ(angle(apical, up).ESD, 0.0f);
  EXPECT_EQ(angle(apical, {-0.305f, -0.305f, 0}).VALUE, 180.0f);
  EXPECT_EQ(angle(apical, {-0.305f, -0.305f, 0}).ESD, 0.0f);
  EXPECT_EQ(angle(up, {0.195f, -0.195f, -0.5f}).VALUE, 180.0f);
  const float r = 4.594f * 0.195f * std::sqrt(2.0f);
  EXPECT_NEAR(angle(up, down).VALUE, 2.0f * std::atan(2.959f / 2.0f / r) * XTAL::DEGREES_PER_RADIAN,
              1e-3f);
  // d theta = 2 (h/r) / (1 + (h/r)^2) times the relative changes of h = c / 2 and r, of which x
  // gives 0.0002 / 0.195.
  const float t = 2.959f / 2.0f / r;
  const float relative =
      std::hypot(0.0002f / 0.195f, std::hypot(0.0003f / 4.594f, 0.0002f / 2.959f));
  EXPECT_NEAR(angle(up, down).ESD, 2.0f * t / (1.0f + t * t) * relative * XTAL::DEGREES_PER_RADIAN,
              1e-3f);
}

// Layers of one atom: 60 degrees in the layer whatever a; between layers the angle follows c / a.
TEST(DERIVATIVES, THE_CELL_FIXES_THE_ANGLES_IN_A_HEXAGONAL_LAYER) {
  const float third = 1.0f / 3.0f;
  const auto phase = MADE({2.665f, 2.665f, 4.947f}, {90, 90, 120}, "P 63/m m c",
                          {{"Zn1", {third, 2 * third, 0.25f}}}, {0.002f, 0.002f, 0.004f});
  const VECTOR3 apex{third, 2 * third, 0.25f};
  const VALUE_ESD in_layer = ANGLE_AND_SIGMA_VCV(phase, apex, {1 + third, 2 * third, 0.25f},
                                                 {1 + third, 1 + 2 * third, 0.25f});
  EXPECT_NEAR(in_layer.VALUE, 60.0f, 1e-4f);
  EXPECT_EQ(in_layer.ESD, 0.0f);
  const VALUE_ESD between =
      ANGLE_AND_SIGMA_VCV(phase, apex, {1 + third, 2 * third, 0.25f}, {2 * third, third, 0.75f});
  EXPECT_GT(between.ESD, 0.0f);
}

// On rhombohedral axes the triangle of calcite's oxygens keeps its 60 degrees when a, b and c grow
// together; raised apart they would not leave it.
TEST(DERIVATIVES, THE_CELL_FIXES_THE_ANGLES_OF_A_TRIANGLE_ON_RHOMBOHEDRAL_AXES) {
  const auto phase = MADE({6.375f, 6.375f, 6.375f}, {46.08f, 46.08f, 46.08f}, "R -3 c:R",
                          {{"O1", {0.507f, -0.007f, 0.25f}, {0.0003f, 0.0003f, 0}}},
                          {0.001f, 0.001f, 0.001f}, {0.01f, 0.01f, 0.01f});
  const VALUE_ESD angle = ANGLE_AND_SIGMA_VCV(phase, {0.507f, -0.007f, 0.25f},
                                              {0.25f, 0.507f, -0.007f}, {-0.007f, 0.25f, 0.507f});
  EXPECT_NEAR(angle.VALUE, 60.0f, 1e-4f);
  EXPECT_EQ(angle.ESD, 0.0f);
}

// Three atoms in line without any symmetry: nothing keeps them there. Moved across the line by dx,
// either end of 2 angstroms turns its bond by dx / 2, the apex both.
TEST(DERIVATIVES, AN_ANGLE_THAT_HAPPENS_TO_BE_STRAIGHT_IS_NOT_FIXED) {
  const auto phase = MADE({10, 10, 10}, {90, 90, 90}, "P 1",
                          {{"Si1", {0.5f, 0.5f, 0.5f}, {0, 0, 0.0003f}},
                           {"O1", {0.7f, 0.5f, 0.5f}, {0, 0, 0.0004f}},
                           {"O2", {0.3f, 0.5f, 0.5f}}});
  const VALUE_ESD angle =
      ANGLE_AND_SIGMA_VCV(phase, {0.5f, 0.5f, 0.5f}, {0.7f, 0.5f, 0.5f}, {0.3f, 0.5f, 0.5f});
  EXPECT_EQ(angle.VALUE, 180.0f);
  EXPECT_NEAR(angle.ESD, std::hypot(0.003f, 0.002f) * XTAL::DEGREES_PER_RADIAN, 1e-3f);
}

// In 32 bits the cosine of 0.02 degrees is 1 and that of 179.97 off by as much as it says.
TEST(SMALL_ANGLES, HAVE_THEIR_DIGITS) {
  const auto metric = XTAL::METRICTENSOR({5, 5, 5}, {90, 90, 90});
  for (float degrees : {0.02f, 0.5f, 5.0f, 175.0f, 179.97f, 179.999f}) {
    const float radians = degrees / XTAL::DEGREES_PER_RADIAN;
    EXPECT_NEAR(
        CRYST_ANGLE({0.4f, 0, 0}, {0.4f * std::cos(radians), 0.4f * std::sin(radians), 0}, metric),
        degrees, 2e-5f);
  }
}

// ---- which ligands count ----

TEST(LIGANDS, THE_IMAGE_OF_THE_FIRST_LIES_WITHIN_A_THOUSANDTH_OF_AN_ANGSTROM_OF_THE_SECOND) {
  EXPECT_EQ(ABOUT_AXIS("P 4", 90, 0.0009f, {0, 0.2f}, 0.0008f).ESD, 0.0f);
  EXPECT_GT(ABOUT_AXIS("P 4", 90, 0.0009f, {0, 0.2f}, 0.0012f).ESD, 0.0f);
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
