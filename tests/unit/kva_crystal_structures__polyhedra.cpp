// Polyhedra: exact solids, degenerate ones, published and drawn values.
#include "src/kva_crystal_structures/polyhedra.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "kva_crystal_structures__polyhedra.h"

using namespace POLYHEDRA;

// ---- exact solids ----

TEST(SOLIDS, TETRAHEDRON) {
  const auto phase = CALCULATED(tetrahedron);
  // V = 8 r^3 / (9 sqrt 3).
  EXPECT_NEAR(POLY(phase, POLY_VOLUME), 8.0f * 1.6f * 1.6f * 1.6f / (9.0f * std::sqrt(3.0f)),
              2e-4f);
  EXPECT_NEAR(POLY(phase, POLY_ELONGATION), 1.0f, 2e-5f);
  EXPECT_NEAR(POLY(phase, POLY_VARIANCE), 0.0f, 1e-3f);
  EXPECT_NEAR(POLY(phase, POLY_MEAN_EDGE), 1.6f * std::sqrt(8.0f / 3.0f), 1e-4f);
  EXPECT_NEAR(POLY(phase, POLY_DELTA), 0.0f, 1e-4f);
  EXPECT_NEAR(POLY(phase, POLY_RADIUS), 1.6f, 1e-5f);
  EXPECT_EQ(POLY(phase, POLY_RADIUS_SDEV), 0.0f) << "four points always lie on a sphere";
  EXPECT_NEAR(POLY(phase, POLY_IDEAL_VOLUME), POLY(phase, POLY_VOLUME), 1e-3f);
  EXPECT_NEAR(POLY(phase, POLY_VOLUME_SRB), POLY(phase, POLY_VOLUME), 1e-5f);
}

TEST(SOLIDS, OCTAHEDRON) {
  const auto phase = CALCULATED(octahedron);
  EXPECT_NEAR(POLY(phase, POLY_VOLUME), 4.0f / 3.0f * 8.0f, 1e-4f);
  EXPECT_NEAR(POLY(phase, POLY_ELONGATION), 1.0f, 1e-5f);
  EXPECT_NEAR(POLY(phase, POLY_VARIANCE), 0.0f, 1e-4f);
  EXPECT_NEAR(POLY(phase, POLY_MEAN_EDGE), 2.0f * std::sqrt(2.0f), 1e-5f);
  EXPECT_NEAR(POLY(phase, POLY_DELTA), 0.0f, 1e-5f);
  EXPECT_NEAR(POLY(phase, POLY_RADIUS), 2.0f, 1e-6f);
  EXPECT_NEAR(POLY(phase, POLY_IDEAL_VOLUME), 1.33333f * 8.0f, 1e-4f);
}

TEST(SOLIDS, FACES_OF_FOUR_CORNERS_COUNT_ONCE) {
  // Cube of half-diagonal r: edge 2 r / sqrt 3.
  const float cube_edge = 2.0f * 2.4f / std::sqrt(3.0f);
  EXPECT_NEAR(POLY(CALCULATED(cube), POLY_VOLUME), cube_edge * cube_edge * cube_edge, 1e-3f);
  // Cuboctahedron with edge r: 5 sqrt 2 / 3 r^3.
  EXPECT_NEAR(POLY(CALCULATED(cuboctahedron), POLY_VOLUME),
              5.0f * std::sqrt(2.0f) / 3.0f * 2.8f * 2.8f * 2.8f, 2e-3f);
  // Square antiprism of edge 1: V = sqrt(4 + 3 sqrt 2) / 3; height of the squares 2^(-1/4).
  const float h = 0.5f / std::pow(2.0f, 0.25f);
  std::vector<VECTOR3> antiprism;
  const float q = std::sqrt(0.5f);
  for (const auto& v : {VECTOR3{0.5f, 0.5f, h},
                        {0.5f, -0.5f, h},
                        {-0.5f, 0.5f, h},
                        {-0.5f, -0.5f, h},
                        {q, 0, -h},
                        {-q, 0, -h},
                        {0, q, -h},
                        {0, -q, -h}})
    antiprism.push_back({2 * v[0], 2 * v[1], 2 * v[2]});
  EXPECT_NEAR(POLY(CALCULATED(antiprism), POLY_VOLUME),
              8.0f * std::sqrt(4.0f + 3.0f * std::sqrt(2.0f)) / 3.0f, 1e-3f);
}

TEST(SOLIDS, ICOSAHEDRON) {
  const auto phase = CALCULATED(icosahedron);
  // Edge a = r / sin(2 pi / 5); V = 5 (3 + sqrt 5) a^3 / 12.
  const float a = 2.7f / std::sin(1.2566371f);
  EXPECT_NEAR(POLY(phase, POLY_VOLUME), 5.0f * (3.0f + std::sqrt(5.0f)) / 12.0f * a * a * a, 2e-3f);
  EXPECT_NEAR(POLY(phase, POLY_IDEAL_VOLUME), POLY(phase, POLY_VOLUME), 3e-3f);
  EXPECT_NEAR(POLY(phase, POLY_RADIUS_SDEV), 0.0f, 1e-5f);
}

// All faces have five corners. With vertices at (1, 1, 1), (0, 1/t, t) and so on, where t is the
// golden ratio, the edge is 2 / t; V = (15 + 7 sqrt 5) edge^3 / 4. The centre is off the middle.
TEST(SOLIDS, DODECAHEDRON) {
  const float t = 0.5f * (1.0f + std::sqrt(5.0f));
  std::vector<VECTOR3> dodecahedron =
      SIGNED({{1, 1, 1}, {0, 1 / t, t}, {t, 0, 1 / t}, {1 / t, t, 0}});
  ASSERT_EQ(dodecahedron.size(), 20u);
  for (VECTOR3& vertex : dodecahedron) vertex = XTAL::ADD(vertex, {0.11f, 0.07f, 0.03f});
  const float edge = 2.0f / t;
  EXPECT_NEAR(POLY(CALCULATED(dodecahedron), POLY_VOLUME),
              (15.0f + 7.0f * std::sqrt(5.0f)) / 4.0f * edge * edge * edge, 2e-3f);
}

// ---- angles, edges, and what they give ----

TEST(ANGLES, EVERY_PAIR_OF_LIGANDS) {
  const auto phase = CALCULATED(octahedron);
  EXPECT_EQ(phase.NANGLES(1), 15);
  int right = 0;
  int straight = 0;
  for (int j = 1; j <= 6; ++j)
    for (int k = j + 1; k <= 6; ++k) {
      const float angle = phase.BANGLES(1, j, k, ANGLE);
      right += std::abs(angle - 90.0f) < 1e-3f;
      straight += std::abs(angle - 180.0f) < 0.05f;
    }
  EXPECT_EQ(right, 12);
  EXPECT_EQ(straight, 3);
}

// Ligands along x and y, 1.5 and 2 angstroms away: the edge of 2.5 has the direction (-0.6, 0.8)
// and takes 0.36 and 0.64 of the variances of x and y of both; the angle is turned by the first
// ligand's y over 1.5 and by the second's x over 2.
TEST(ANGLES, THE_TABLE_HOLDS_ANGLE_AND_EDGE_WITH_THEIR_ESDS) {
  const auto phase = CALCULATED({{1.5f, 0, 0}, {0, 2, 0}}, {0.01f, 0.02f, 0.05f});
  EXPECT_EQ(phase.NANGLES(1), 1);
  EXPECT_NEAR(phase.BANGLES(1, 1, 2, ANGLE), 90.0f, 2e-4f);
  EXPECT_NEAR(phase.BANGLES(1, 1, 2, ANGLE_STD),
              std::hypot(0.02f / 1.5f, 0.01f / 2.0f) * XTAL::DEGREES_PER_RADIAN, 1e-3f);
  EXPECT_NEAR(phase.BANGLES(1, 1, 2, EDGE), 2.5f, 1e-5f);
  EXPECT_NEAR(phase.BANGLES(1, 1, 2, EDGE_STD),
              std::sqrt(2.0f * (0.36f * 0.0001f + 0.64f * 0.0004f)), 1e-5f);
}

TEST(ANGLES, A_TRANS_ANGLE_BELOW_135_LEAVES_VARIANCE_AND_EDGE_AT_0) {
  std::vector<VECTOR3> bent = octahedron;
  bent[0] = {1.1547f, 1.1547f, 1.1547f};  // 125 degrees from its partner at -x: a 13th pair
  const auto phase = CALCULATED(bent);
  EXPECT_EQ(POLY(phase, POLY_VARIANCE), 0.0f);
  EXPECT_EQ(POLY(phase, POLY_MEAN_EDGE), 0.0f);
  EXPECT_GT(POLY(phase, POLY_ELONGATION), 1.0f);
}

// The first ligand turned by t between two others: 180 - t to its partner, and cosines of plus and
// minus sin(t) / sqrt(2) to the four others, which so are off 90 by asin of that.
TEST(ANGLES, A_TRANS_ANGLE_LIES_WITHIN_45_DEGREES_OF_180) {
  const auto turned = [](float t) {
    std::vector<VECTOR3> bent = octahedron;
    const float aside = 2.0f * XTAL::SIND(t) * std::sqrt(0.5f);
    bent[0] = {2.0f * XTAL::COSD(t), aside, aside};
    return CALCULATED(bent);
  };
  const auto trans = turned(44.9f);
  const float off = 90.0f - XTAL::ACOSD(XTAL::SIND(44.9f) * std::sqrt(0.5f));
  EXPECT_NEAR(POLY(trans, POLY_VARIANCE), 4.0f * off * off / 11.0f, 0.01f);
  EXPECT_GT(POLY(trans, POLY_MEAN_EDGE), 2.0f);
  const auto thirteen = turned(45.1f);
  EXPECT_EQ(POLY(thirteen, POLY_VARIANCE), 0.0f);
  EXPECT_EQ(POLY(thirteen, POLY_MEAN_EDGE), 0.0f);
}

TEST(ANGLES, A_VARIANCE_BY_HAND) {
  // One ligand of the octahedron turned by 10 degrees towards another: its four right angles become
  // 80, 100 and twice 90, its trans angle 170. Variance (10^2 + 10^2) / 11.
  std::vector<VECTOR3> bent = octahedron;
  const float t = 10.0f / XTAL::DEGREES_PER_RADIAN;
  bent[0] = {2.0f * std::cos(t), 2.0f * std::sin(t), 0};
  EXPECT_NEAR(POLY(CALCULATED(bent), POLY_VARIANCE), 200.0f / 11.0f, 2e-3f);
}

// Two ligands at +-a along x, h above the centre, and two at +-a along y, h below: two edges 2a at
// right angles and 2h apart, V = 4 a^2 h / 3. Two angles have the cosine (h^2 - a^2) / d^2, four
// -h^2 / d^2. The regular tetrahedron of this volume has the edge cbrt(6 sqrt(2) V), and its
// vertices lie sqrt(3/8) of that from its centre.
TEST(ANGLES, A_FLATTENED_TETRAHEDRON_BY_HAND) {
  constexpr float a = 1.2f;
  constexpr float d_sq = 2.44f;  // with h = 1
  const auto phase = CALCULATED({{a, 0, 1}, {-a, 0, 1}, {0, a, -1}, {0, -a, -1}});
  EXPECT_NEAR(POLY(phase, POLY_VOLUME), 1.92f, 1e-4f);
  const float two = XTAL::ACOSD((1.0f - a * a) / d_sq) - 109.47f;
  const float four = XTAL::ACOSD(-1.0f / d_sq) - 109.47f;
  EXPECT_NEAR(POLY(phase, POLY_VARIANCE), (2.0f * two * two + 4.0f * four * four) / 5.0f, 0.005f);
  EXPECT_NEAR(POLY(phase, POLY_MEAN_EDGE), (4.0f * a + 4.0f * std::sqrt(2.0f * a * a + 4)) / 6.0f,
              1e-5f);
  const float r = std::sqrt(0.375f) * std::cbrt(6.0f * std::sqrt(2.0f) * 1.92f);
  EXPECT_NEAR(POLY(phase, POLY_ELONGATION), d_sq / (r * r), 5e-5f);
}

// Half-axes a, b, c at right angles: V = 4 abc / 3, so that r^3 = abc.
TEST(ANGLES, A_STRETCHED_OCTAHEDRON_BY_HAND) {
  constexpr float a = 1.8f;
  constexpr float b = 2.0f;
  constexpr float c = 2.3f;
  const auto phase = CALCULATED(SIGNED({{a, 0, 0}, {0, b, 0}, {0, 0, c}}));
  EXPECT_NEAR(POLY(phase, POLY_MEAN_LENGTH), (a + b + c) / 3.0f, 1e-5f);
  EXPECT_NEAR(POLY(phase, POLY_VOLUME), 4.0f * a * b * c / 3.0f, 1e-4f);
  EXPECT_NEAR(POLY(phase, POLY_VARIANCE), 0.0f, 1e-4f);
  EXPECT_NEAR(POLY(phase, POLY_MEAN_EDGE),
              (std::hypot(a, b) + std::hypot(b, c) + std::hypot(a, c)) / 3.0f, 1e-5f);
  const float r = std::cbrt(a * b * c);
  EXPECT_NEAR(POLY(phase, POLY_ELONGATION), (a * a + b * b + c * c) / 3.0f / (r * r), 1e-5f);
}

namespace {

// The polyhedron in a triclinic cell.
CRYSTAL_STRUCTURE_TYPE IN_OBLIQUE_CELL(const std::vector<VECTOR3>& ligands_cart) {
  auto phase = AROUND(ligands_cart);
  XTAL::SET_CELL_RECORD({edge, 35, 30}, {80, 95, 103}, phase.CELL, " ");
  for (int j = 1; j <= phase.NBONDS(1); ++j) {
    const VECTOR3 v_frac =
        XTAL::MULTIPLY(phase.CELL.ORTH_CR_CEL, ligands_cart[static_cast<std::size_t>(j - 1)]);
    phase.ATOM(j + 1).X = XTAL::ADD(phase.ATOM(1).X, v_frac);
    for (int k = 0; k < 3; ++k)
      phase.BONDS(1, j, BOND_VECTOR_X + k) = v_frac[static_cast<std::size_t>(k)];
  }
  CALC_ANGLES_ALLATOMS(phase);
  CALC_POLY_ALLATOMS(phase);
  return phase;
}

}  // namespace

// An octahedron around a point off the centre: the axes of the cell make no difference.
TEST(ANGLES, AXES_THAT_ARE_NOT_AT_RIGHT_ANGLES) {
  const VECTOR3 off{0.1f, -0.2f, 0.15f};
  std::vector<VECTOR3> ligands = octahedron;
  for (VECTOR3& v : ligands) v = XTAL::ADD(v, off);
  const auto phase = IN_OBLIQUE_CELL(ligands);
  EXPECT_NEAR(POLY(phase, POLY_VOLUME), 32.0f / 3.0f, 1e-4f);
  EXPECT_NEAR(POLY(phase, POLY_VOLUME_SRB), 32.0f / 3.0f, 1e-4f);
  EXPECT_NEAR(POLY(phase, POLY_MEAN_EDGE), 2.0f * std::sqrt(2.0f), 1e-5f);
  EXPECT_NEAR(POLY(phase, POLY_VARIANCE), POLY(CALCULATED(ligands), POLY_VARIANCE), 0.005f);
  EXPECT_NEAR(POLY(phase, POLY_RADIUS), 2.0f, 1e-5f);
  EXPECT_NEAR(POLY(phase, POLY_RADIUS_SDEV), 0.0f, 2e-5f);
  EXPECT_NEAR(POLY(phase, POLY_DELTA), XTAL::LENGTH(off), 1e-5f);
  const VECTOR3 off_frac = XTAL::MULTIPLY(phase.CELL.ORTH_CR_CEL, off);
  for (int k = 0; k < 3; ++k) {
    const float expected = 0.5f + off_frac[static_cast<std::size_t>(k)];
    EXPECT_NEAR(POLY(phase, POLY_SPHERE_X + k), expected, 1e-6f);
    EXPECT_NEAR(POLY(phase, POLY_BARYCENTRE_X + k), expected, 1e-6f);
  }
}

// ---- few, flat and other degenerate ligands ----

TEST(DEGENERATE, FEW_LIGANDS) {
  EXPECT_EQ(POLY(CALCULATED({}), POLY_MEAN_LENGTH), 0.0f);
  EXPECT_NEAR(POLY(CALCULATED({{1.5f, 0, 0}}), POLY_MEAN_LENGTH), 1.5f, 1e-5f);
  const auto two = CALCULATED({{1.5f, 0, 0}, {0, 1.7f, 0}});
  EXPECT_NEAR(POLY(two, POLY_MEAN_LENGTH), 1.6f, 1e-5f);
  EXPECT_NEAR(POLY(two, POLY_CENTRE_X), 0.5f, 1e-6f);
  EXPECT_NEAR(POLY(two, POLY_BARYCENTRE_X), 0.5f + 0.75f / edge, 1e-6f);
  EXPECT_EQ(POLY(two, POLY_VOLUME), 0.0f);
  EXPECT_EQ(POLY(two, POLY_ELONGATION), 0.0f) << "wiped, as there is no volume";
  const auto three = CALCULATED({{1, 0, 0}, {-0.5f, 0.8660254f, 0}, {-0.5f, -0.8660254f, 0}});
  EXPECT_NEAR(POLY(three, POLY_BARYCENTRE_X), 0.5f, 1e-6f);
  EXPECT_EQ(POLY(three, POLY_VARIANCE), 0.0f);
  EXPECT_EQ(POLY(three, POLY_ELONGATION), 0.0f);
  EXPECT_NEAR(POLY(three, POLY_MEAN_EDGE), std::sqrt(3.0f), 1e-5f) << "the mean edge survives";
}

TEST(DEGENERATE, OTHER_NUMBERS_OF_LIGANDS_HAVE_NO_DISTORTION) {
  std::vector<VECTOR3> five = octahedron;
  five.pop_back();
  std::vector<VECTOR3> seven = octahedron;
  seven.push_back({1.5f, 1.5f, 1.5f});
  for (std::vector<VECTOR3> ligands : {five, seven, cube, icosahedron}) {
    ligands[0] = ON_A_SPHERE({ligands[0]}, 2.2f)[0];  // bonds of two lengths
    const auto phase = CALCULATED(ligands);
    EXPECT_GT(POLY(phase, POLY_VOLUME), 1.0f);
    for (int column : {POLY_ELONGATION, POLY_VARIANCE, POLY_MEAN_EDGE})
      EXPECT_EQ(POLY(phase, column), 0.0f) << ligands.size() << " ligands, column " << column;
  }
}

// V = 8 r^3 / (9 sqrt 3) of a tetrahedron, one ligand of which is turned a little so that there is
// a variance to lose.
TEST(DEGENERATE, VOLUMES_BELOW_0_1_LOSE_THE_DISTORTION) {
  const auto of_volume = [](float volume) {
    std::vector<VECTOR3> ligands = tetrahedron;
    ligands[0][0] += 0.05f;
    const float now = POLYHEDRON_VOLUME(ligands, {0, 0, 0});
    for (VECTOR3& v : ligands)
      for (float& x : v) x *= std::cbrt(volume / now);
    const auto phase = CALCULATED(ligands);
    EXPECT_NEAR(POLY(phase, POLY_VOLUME), volume, 1e-4f);
    EXPECT_GT(POLY(phase, POLY_MEAN_EDGE), 0.5f) << "kept whatever the volume";
    return phase;
  };
  EXPECT_EQ(POLY(of_volume(0.099f), POLY_ELONGATION), 0.0f);
  EXPECT_EQ(POLY(of_volume(0.099f), POLY_VARIANCE), 0.0f);
  EXPECT_GT(POLY(of_volume(0.101f), POLY_ELONGATION), 1.0f);
  EXPECT_GT(POLY(of_volume(0.101f), POLY_VARIANCE), 0.1f);
}

// Ligands in multiples of 5/4, three of them on a line: a flat triangle without a volume.
TEST(DEGENERATE, THREE_LIGANDS_OF_FOUR_IN_A_LINE_HAVE_NO_VOLUME) {
  const auto phase =
      CALCULATED({{1.25f, -1.25f, 1.25f}, {1.25f, 0, 1.25f}, {1.25f, 1.25f, 1.25f}, {0, 0, -2.5f}},
                 {0.01f, 0.01f, 0.01f});
  for (int column : {POLY_VOLUME, POLY_VOLUME_STD, POLY_ELONGATION, POLY_VARIANCE})
    EXPECT_EQ(POLY(phase, column), 0.0f) << column;
}

TEST(DEGENERATE, THE_TABLE_IS_CLEARED_FIRST) {
  auto phase = AROUND(octahedron);
  for (int column = 1; column <= POLY_COLUMNS; ++column) {
    phase.POLYHEDRON(1, column) = 99.0f;
    phase.POLYHEDRON(2, column) = 99.0f;
  }
  CALC_ANGLES_ALLATOMS(phase);
  CALC_POLY_ALLATOMS(phase);
  EXPECT_EQ(POLY(phase, POLY_VALENCE_SUM), 0.0f);
  EXPECT_EQ(POLY(phase, POLY_VALENCE_SUM_STD), 0.0f);
  for (int column = 1; column <= POLY_COLUMNS; ++column)
    EXPECT_EQ(phase.POLYHEDRON(2, column), 0.0f) << "an atom without bonds, column " << column;
}

TEST(DEGENERATE, SMALL_VOLUMES_KEEP_THEIR_VALUE_AND_LOSE_THE_REST) {
  const auto phase = CALCULATED(ON_A_SPHERE(tetrahedron, 0.5f));
  EXPECT_GT(POLY(phase, POLY_VOLUME), 0.05f);
  EXPECT_LT(POLY(phase, POLY_VOLUME), 0.1f);
  EXPECT_EQ(POLY(phase, POLY_ELONGATION), 0.0f);
  EXPECT_EQ(POLY(phase, POLY_VARIANCE), 0.0f);
}

TEST(DEGENERATE, NOTHING_CRASHES_WITH_ANY_NUMBER_OF_LIGANDS) {
  std::mt19937 random(7);
  std::uniform_real_distribution<float> place(-2.0f, 2.0f);
  for (int n = 2; n <= 20; ++n) {
    std::vector<VECTOR3> ligands;
    for (int i = 0; i < n; ++i) ligands.push_back({place(random), place(random), place(random)});
    const auto phase = CALCULATED(ligands);
    EXPECT_GT(POLY(phase, POLY_MEAN_LENGTH), 0.0f);
    ligands.assign(static_cast<std::size_t>(n), {1, 1, 1});
    CALCULATED(ligands);
    for (int i = 0; i < n; ++i)
      ligands[static_cast<std::size_t>(i)] = {0.1f * static_cast<float>(i), 0, 0};
    CALCULATED(ligands);
  }
}

TEST(DEGENERATE, A_GAP_IN_THE_ROWS_IS_NO_LIGAND) {
  auto phase = AROUND(octahedron);
  phase.BONDS.CLEAR_ROW(1, 3);
  phase.NBONDS(1) = 5;
  CALC_ANGLES_ALLATOMS(phase);
  CALC_POLY_ALLATOMS(phase);
  EXPECT_EQ(BONDS_PRESENT(phase, 1), (std::vector<int>{1, 2, 4, 5, 6}));
  EXPECT_EQ(phase.NANGLES(1), 10);
  EXPECT_EQ(phase.BANGLES(1, 3, 4, ANGLE), 0.0f);
  EXPECT_FLOAT_EQ(POLY(phase, POLY_MEAN_LENGTH), 2.0f);
}

TEST(DEGENERATE, A_MISSING_RIGID_BOND_LENGTH_LEAVES_NO_CORRECTED_VOLUME) {
  auto phase = AROUND(octahedron);
  phase.BONDS(1, 2, BOND_LENGTH_SRB) = 0.0f;
  EXPECT_EQ(CALC_POLYVOL_SRB(phase, 1), 0.0f);
}

// One ligand of six moved out from 2 to 2.2 angstroms: (2 + 2.2) * 4 * 4 / 6.
TEST(DEGENERATE, RIGID_BOND_LENGTHS_MOVE_EACH_LIGAND_ALONG_ITS_BOND) {
  auto phase = AROUND(octahedron);
  phase.BONDS(1, 1, BOND_LENGTH_SRB) = 2.2f;
  CALC_ANGLES_ALLATOMS(phase);
  CALC_POLY_ALLATOMS(phase);
  EXPECT_NEAR(POLY(phase, POLY_VOLUME), 32.0f / 3.0f, 1e-4f);
  EXPECT_NEAR(POLY(phase, POLY_VOLUME_SRB), 11.2f, 1e-4f);
}

// ---- centres outside ----

namespace {

std::vector<VECTOR3> MOVED(std::vector<VECTOR3> ligands, const VECTOR3& by) {
  for (VECTOR3& v : ligands) v = XTAL::ADD(v, by);
  return ligands;
}

bool IS_OUTSIDE(const std::vector<VECTOR3>& ligands) {
  return CENTRES_OUTSIDE(CALCULATED(ligands)) == std::vector<int>{1};
}

// An octahedron of bonds of 2 angstroms in a cell of 4: 4/3 of 8, wherever the centre lies.
TEST(VOLUMES, OF_FRACTIONAL_POSITIONS_ARE_THOSE_IN_THE_CELL) {
  XTAL::CRYSTAL_CELL cell;
  XTAL::SET_CELL_RECORD({4, 4, 4}, {90, 90, 90}, cell);
  const std::vector<VECTOR3> ligands{{0.5f, 0, 0},  {-0.5f, 0, 0}, {0, 0.5f, 0},
                                     {0, -0.5f, 0}, {0, 0, 0.5f},  {0, 0, -0.5f}};
  EXPECT_NEAR(POLYHEDRON_VOLUME_XYZ(cell.CR_ORTH_CEL, ligands, {0, 0, 0}), 32.0f / 3.0f, 1e-4f);
}

}  // namespace

// Faces of the octahedron with vertices at 2 lie 2 / sqrt 3 = 1.1547 from its middle.
TEST(OUTSIDE, FROM_A_HUNDREDTH_OF_AN_ANGSTROM_ON) {
  const float from_middle = 2.0f / std::sqrt(3.0f);
  const auto away = [&](float distance) {
    const float x = (from_middle + distance) / std::sqrt(3.0f);
    return MOVED(octahedron, {x, x, x});
  };
  EXPECT_FALSE(IS_OUTSIDE(octahedron));
  EXPECT_FALSE(IS_OUTSIDE(away(0.009f)));
  EXPECT_TRUE(IS_OUTSIDE(away(0.011f)));
}

// Off a vertex the planes of the faces are nearer than the octahedron is: 0.015 / sqrt 3 = 0.0087.
TEST(OUTSIDE, COUNTED_FROM_THE_NEAREST_POINT) {
  EXPECT_TRUE(IS_OUTSIDE(MOVED(octahedron, {0, 0, 2.015f})));
  EXPECT_FALSE(IS_OUTSIDE(MOVED(octahedron, {0, 0, 2.009f})));
}

TEST(OUTSIDE, FOUR_OR_SIX_LIGANDS_WITH_A_VOLUME_COUNT) {
  const VECTOR3 far{5, 5, 5};
  EXPECT_TRUE(IS_OUTSIDE(MOVED(tetrahedron, far)));
  EXPECT_FALSE(IS_OUTSIDE(MOVED(ON_A_SPHERE(tetrahedron, 0.5f), far))) << "below 0.1";
  EXPECT_FALSE(IS_OUTSIDE(MOVED(cube, far)));
  EXPECT_FALSE(IS_OUTSIDE({{1, 1, 1}, {1, -1, 1}, {-1, -1, 1}, {-1, 1, 1}})) << "flat";
}
