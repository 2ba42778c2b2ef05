// Displacement parameters in their internal form, under symmetry, with esds.
#include "src/kva_crystal_structures/displacement.h"

#include <gtest/gtest.h>

#include <cmath>

#include "structures.h"

using namespace STRUCTURES;

namespace {

CRYSTAL_STRUCTURE_TYPE WITH_U(const std::string& symbol, const VECTOR3& x, const VECTOR6& u,
                              const VECTOR6& std = {}) {
  auto phase = MADE({5, 5, 7}, {90, 90, 90}, symbol, {{"Si1", x}});
  phase.ATOM(1).THTYPE = "Aniso";
  phase.ATOM(1).UTYPE = "u_ij";
  phase.ATOM(1).U = u;
  phase.ATOM(1).U_STD = std;
  return phase;
}

// A triclinic record whose one atom vibrates alike in all directions: U_ij = U cos of the
// reciprocal angle, by cos alpha* = (cos beta cos gamma - cos alpha) / (sin beta sin gamma).
constexpr float sphere_u = 0.02f;

CRYSTAL_STRUCTURE_TYPE SPHERE_IN_TRICLINIC_CELL() {
  const VECTOR3 angles{80, 95, 103};
  auto phase = MADE({5, 6, 7}, angles, "P 1", {{"Si1", {0.1f, 0.2f, 0.3f}}});
  const auto cos_star = [&angles](std::size_t k) {
    const float l = angles[(k + 1) % 3];
    const float m = angles[(k + 2) % 3];
    return (XTAL::COSD(l) * XTAL::COSD(m) - XTAL::COSD(angles[k])) /
           (XTAL::SIND(l) * XTAL::SIND(m));
  };
  ATOM_TYPE& atom = phase.ATOM(1);
  atom.THTYPE = "Aniso";
  atom.UTYPE = "u_ij";
  atom.U = {sphere_u,
            sphere_u,
            sphere_u,
            sphere_u * cos_star(2),
            sphere_u * cos_star(1),
            sphere_u * cos_star(0)};
  return phase;
}

}  // namespace

TEST(ISOTROPIC, WHAT_IS_MISSING_FOLLOWS_FROM_WHAT_IS_GIVEN) {
  auto phase = MADE({5, 5, 5}, {90, 90, 90}, "P 1",
                    {{"A1", {0, 0, 0}}, {"A2", {0.5f, 0, 0}}, {"A3", {0, 0.5f, 0}}});
  phase.ATOM(1).UEQ = 0.01f;
  phase.ATOM(2).BISO = 0.789568f;
  phase.ATOM(3).UEQ = 0.02f;
  phase.ATOM(3).BISO = 1.0f;
  SET_ALLATOM_ADP(phase);
  EXPECT_NEAR(phase.ATOM(1).BISO, 0.789568f, 1e-6f) << "8 pi^2 U";
  EXPECT_NEAR(phase.ATOM(2).UEQ, 0.01f, 1e-8f);
  EXPECT_EQ(phase.ATOM(3).BISO, 1.0f) << "both given stay";
  EXPECT_EQ(phase.ATOM(3).UEQ, 0.02f);
}

TEST(ISOTROPIC, VALUES_BELOW_0_0001_WERE_NOT_GIVEN) {
  const auto set = [](float biso, float ueq) {
    auto phase = MADE({5, 5, 5}, {90, 90, 90}, "P 1", {{"A1", {0, 0, 0}}});
    phase.ATOM(1).BISO = biso;
    phase.ATOM(1).UEQ = ueq;
    SET_ATOM_ADP(phase, 1);
    return phase.ATOM(1);
  };
  EXPECT_NEAR(set(0.00009f, 0.01f).BISO, 0.789568f, 1e-6f) << "8 pi^2 U";
  EXPECT_EQ(set(0.00011f, 0.01f).BISO, 0.00011f);
  EXPECT_NEAR(set(0.789568f, 0.00009f).UEQ, 0.01f, 1e-8f);
  EXPECT_EQ(set(0.789568f, 0.00011f).UEQ, 0.00011f);
}

TEST(ANISOTROPIC, BETA_ONCE_AND_NOT_TWICE) {
  auto phase = WITH_U("P 1", {0, 0, 0}, {0.01f, 0.02f, 0.03f, 0, 0, 0},
                      {0.001f, 0.002f, 0.003f, 0.004f, 0.005f, 0.006f});
  SET_ATOM_ADP(phase, 1);
  EXPECT_EQ(phase.ATOM(1).UTYPE, "beta");
  const VECTOR6 edges{25, 25, 49, 25, 35, 35};
  for (std::size_t c = 0; c < 6; ++c)
    EXPECT_NEAR(phase.ATOM(1).U_STD[c], 19.7392f * 0.001f * static_cast<float>(c + 1) / edges[c],
                1e-9f)
        << c;
  EXPECT_NEAR(phase.ATOM(1).U[0], 19.7392f * 0.01f / 25.0f, 1e-8f);
  EXPECT_NEAR(phase.ATOM(1).UEQ, 0.02f, 1e-7f);
  EXPECT_NEAR(phase.ATOM(1).BISO, 8 * 9.8696f * 0.02f, 1e-5f);
  const VECTOR6 once = phase.ATOM(1).U;
  const VECTOR6 std_once = phase.ATOM(1).U_STD;
  SET_ATOM_ADP(phase, 1);
  EXPECT_EQ(phase.ATOM(1).U, once);
  EXPECT_EQ(phase.ATOM(1).U_STD, std_once);
  EXPECT_NEAR(phase.ATOM(1).UEQ, 0.02f, 1e-7f);
}

TEST(ANISOTROPIC, EQUIVALENTS_IN_AN_OBLIQUE_CELL) {
  auto phase = SPHERE_IN_TRICLINIC_CELL();
  SET_ATOM_ADP(phase, 1);
  EXPECT_NEAR(phase.ATOM(1).UEQ, sphere_u, 1e-7f);
  EXPECT_NEAR(phase.ATOM(1).BISO, 78.9568f * sphere_u, 1e-4f);
}

TEST(ANISOTROPIC, A_TENSOR_GIVEN_AS_BETA_HAS_ITS_EQUIVALENTS) {
  auto phase = SPHERE_IN_TRICLINIC_CELL();
  ATOM_TYPE& atom = phase.ATOM(1);
  XTAL::U_TO_BETA(VECTOR6(atom.U), atom.U, phase.CELL);
  atom.UTYPE = "beta";
  const VECTOR6 beta = atom.U;
  SET_ATOM_ADP(phase, 1);
  EXPECT_EQ(atom.U, beta);
  EXPECT_NEAR(atom.UEQ, sphere_u, 1e-7f);
  EXPECT_NEAR(atom.BISO, 78.9568f * sphere_u, 1e-4f);
}

TEST(ANISOTROPIC, A_TENSOR_OF_ANOTHER_KIND_KEEPS_ITS_VALUES_AND_GETS_B) {
  auto phase = WITH_U("P 1", {0, 0, 0}, {0.001f, 0.002f, 0.003f, 0.004f, 0, 0});
  phase.ATOM(1).UTYPE = "none";
  phase.ATOM(1).UEQ = 0.5f;
  SET_ATOM_ADP(phase, 1);
  EXPECT_EQ(phase.ATOM(1).UTYPE, "none");
  EXPECT_EQ(phase.ATOM(1).U, (VECTOR6{0.001f, 0.002f, 0.003f, 0.004f, 0, 0}));
  EXPECT_EQ(phase.ATOM(1).UEQ, 0.5f);
  // Edges 5, 5, 7: 4/3 (25 * 0.001 + 25 * 0.002 + 49 * 0.003).
  EXPECT_NEAR(phase.ATOM(1).BISO, 1.33333f * 0.222f, 1e-6f);
}

TEST(DISPLACEMENTS, ALONG_A_VECTOR_OF_AN_OBLIQUE_CELL) {
  auto sphere = SPHERE_IN_TRICLINIC_CELL();
  SET_ATOM_ADP(sphere, 1);
  for (const VECTOR3& v : {VECTOR3{0.3f, 0, 0}, {0, 0.2f, 0}, {0, 0, -0.4f}, {0.1f, 0.2f, -0.3f}})
    EXPECT_NEAR(ATOM_DISPL(sphere.ATOM(1).U, v, sphere.CELL.GD), std::sqrt(sphere_u), 1e-6f);
  // With U33 alone g^T beta g = 2 pi^2 c*^2 U33 (c^2 z)^2 and v^T g = (c z)^2: the mean square
  // along c is U33 (c c*)^2 = U33 / sin^2 beta.
  auto rod = MADE({5, 6, 7}, {90, 120, 90}, "P 1", {{"Si1", {0, 0, 0}}});
  VECTOR6 beta{};
  XTAL::U_TO_BETA({0, 0, 0.01f, 0, 0, 0}, beta, rod.CELL);
  EXPECT_NEAR(ATOM_DISPL(beta, {0, 0, 0.2f}, rod.CELL.GD), 0.1f / std::sqrt(0.75f), 1e-6f);
}

TEST(DISPLACEMENTS, VECTORS_OF_PLAIN_LENGTH_BELOW_0_0001_HAVE_NO_DIRECTION) {
  auto phase = WITH_U("P 1", {0, 0, 0}, {0.01f, 0.01f, 0.01f, 0, 0, 0});
  SET_ATOM_ADP(phase, 1);
  const auto along = [&phase](const VECTOR3& v) {
    return ATOM_DISPL(phase.ATOM(1).U, v, phase.CELL.GD);
  };
  EXPECT_EQ(along({0, 0, 0.00009f}), 0.0f);
  EXPECT_NEAR(along({0, 0, 0.00011f}), 0.1f, 1e-5f);
  EXPECT_EQ(along({0.00007f, 0.00007f, 0}), 0.0f) << "0.000099";
  EXPECT_NEAR(along({0.00008f, 0.00008f, 0}), 0.1f, 1e-5f) << "0.000113";
}

TEST(DISPLACEMENTS, ALONG_A_VECTOR) {
  auto phase = WITH_U("P 1", {0, 0, 0}, {0.01f, 0.04f, 0.09f, 0, 0, 0});
  SET_ATOM_ADP(phase, 1);
  // Along a, b and c the mean squares are U11, U22 and U33.
  EXPECT_NEAR(ATOM_DISPL(phase.ATOM(1).U, {0.3f, 0, 0}, phase.CELL.GD), 0.1f, 1e-5f);
  EXPECT_NEAR(ATOM_DISPL(phase.ATOM(1).U, {0, -0.3f, 0}, phase.CELL.GD), 0.2f, 1e-5f);
  EXPECT_NEAR(ATOM_DISPL(phase.ATOM(1).U, {0, 0, 0.3f}, phase.CELL.GD), 0.3f, 1e-5f);
  // Between a and b of equal length: the mean of U11 and U22.
  EXPECT_NEAR(ATOM_DISPL(phase.ATOM(1).U, {0.3f, 0.3f, 0}, phase.CELL.GD), std::sqrt(0.025f),
              1e-5f);
  EXPECT_EQ(ATOM_DISPL(phase.ATOM(1).U, {0.00005f, 0, 0}, phase.CELL.GD), 0.0f);
}

TEST(SYMMETRY, TENSORS_TURN_WITH_THE_OPERATOR) {
  // A four-fold axis along c exchanges 11 and 22, changes the sign of 12, and 13 with 23.
  const VECTOR6 turned = APPLYSO_BETA(KVA_UTILITIES::IMATRIX3{{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}},
                                      VECTOR6{1, 2, 3, 4, 5, 6});
  EXPECT_EQ(turned, (VECTOR6{2, 1, 3, -4, -6, 5}));
}

TEST(ESDS, A_GENERAL_POSITION_HAS_INDEPENDENT_COMPONENTS) {
  const auto phase = WITH_U("P 4", {0.1f, 0.2f, 0.3f}, {}, {1, 2, 3, 4, 5, 6});
  EXPECT_EQ(CALC_ESD_BETA(phase, 1, 1), (VECTOR6{1, 2, 3, 4, 5, 6}));
  // Under the four-fold rotation the esds change places as the components do.
  int four_fold = 0;
  for (int op = 1; op <= 4; ++op)
    if (phase.SPG.SYMOPSYMB(op) == "-y,x,z") four_fold = op;
  EXPECT_EQ(CALC_ESD_BETA(phase, 1, four_fold), (VECTOR6{2, 1, 3, 4, 6, 5}));
}

TEST(ESDS, THE_SITE_TIES_COMPONENTS_TOGETHER) {
  // On the mirror x = y of P 4 m m the components 11 and 22 are one parameter.
  const auto phase = WITH_U("P 4 m m", {0.1f, 0.1f, 0.3f}, {}, {2, 2, 1, 1, 1, 1});
  const MATRIX6 v = CALC_VCV_BETA(phase, 1, 1);
  EXPECT_EQ(v[0][0], 4.0f);
  EXPECT_EQ(v[0][1], 4.0f);
  EXPECT_EQ(v[1][0], 4.0f);
}

// On the mirror -y, -x of P 3 m 1 the components 11 and 22 are one parameter. The three-fold axis
// -y, x - y makes 11 - 2 * 12 + 22 of 22: its variance is 4 + 4 * 1 + 4, and 2 * 4 from the tie.
TEST(ESDS, AN_IMAGE_KEEPS_WHAT_THE_SITE_TIES) {
  auto phase = WITH_U("P 3 m 1", {0.1f, 0.9f, 0.3f}, {}, {2, 2, 1, 1, 1, 1});
  int three_fold = 0;
  for (int op = 1; op <= 6; ++op)
    if (phase.SPG.SYMOPSYMB(op) == "-y,x-y,z") three_fold = op;
  ASSERT_GT(three_fold, 0);
  EXPECT_NEAR(CALC_ESD_BETA(phase, 1, three_fold)[1], std::sqrt(20.0f), 1e-5f);
  const MATRIX3 same{{{0, -1, 0}, {1, -1, 0}, {0, 0, 1}}};
  EXPECT_NEAR(CALC_ESD_BETA(phase, 1, 1, &same)[1], std::sqrt(20.0f), 1e-5f);
}

// The two-fold axis -x-y-z, z, y of a primitive cell of a face-centred lattice. Its rows r give
// B' = R B R^T, for example B'11 = B11 + B22 + B33 + 2 (B12 + B13 + B23), less B11. The first two
// components of the constraints are 22 and 33; 22, 33; 22, 33; of B'12 = -(B13 + B33 + B23) less
// B12: 33 and 12; of B'13 = -(B12 + B22 + B23) less B13: 22 and 12; of B'23 none.
TEST(ESDS, ONLY_THE_FIRST_TWO_COMPONENTS_OF_A_CONSTRAINT_ARE_TIED) {
  auto phase = WITH_U("P 1", {0, 0, 0}, {}, {1, 2, 3, 4, 5, 6});
  const std::vector<std::string> operators{"x,y,z", "-x-y-z,z,y"};
  XTAL::SET_SPACEGROUP("", phase.SPG, operators, "GEN");
  ASSERT_EQ(phase.SPG.MULTIP, 2);
  SET_ALLATOM_MULTIP(phase);
  MATRIX6 expected{};
  for (std::size_t c = 0; c < 6; ++c) expected[c][c] = XTAL::SQUARE(static_cast<float>(c + 1));
  expected[1][2] = expected[2][1] = 2 * 3;
  expected[2][3] = expected[3][2] = 3 * 4;
  expected[1][3] = expected[3][1] = 2 * 4;
  const MATRIX6 v = CALC_VCV_BETA(phase, 1, 1);
  for (std::size_t r = 0; r < 6; ++r)
    for (std::size_t c = 0; c < 6; ++c) EXPECT_EQ(v[r][c], expected[r][c]) << r << c;
}

// B'11 = B11 + 2 B12 + B22, B'12 = B12 + B22, B'13 = B13 + B23; the others stay. With the matrix
// transposed 22, 12 and 23 would change instead.
TEST(ESDS, A_GIVEN_MATRIX_IS_TAKEN_AS_IT_STANDS) {
  const auto phase = WITH_U("P 1", {0.1f, 0.2f, 0.3f}, {}, {1, 2, 3, 4, 5, 6});
  const MATRIX3 shear{{{1, 1, 0}, {0, 1, 0}, {0, 0, 1}}};
  EXPECT_EQ(APPLYSO_BETA(shear, {1, 2, 3, 4, 5, 6}), (VECTOR6{11, 2, 3, 6, 11, 6}));
  const VECTOR6 esd = CALC_ESD_BETA(phase, 1, 1, &shear);
  const VECTOR6 variances{1 + 4 * 16 + 4, 4, 9, 16 + 4, 25 + 36, 36};
  for (std::size_t c = 0; c < 6; ++c) EXPECT_NEAR(esd[c], std::sqrt(variances[c]), 1e-5f) << c;
}

TEST(ESDS, ANY_MATRIX_CAN_BE_GIVEN) {
  const auto phase = WITH_U("P 1", {0, 0, 0}, {}, {1, 2, 3, 4, 5, 6});
  const MATRIX3 inversion{{{-1, 0, 0}, {0, -1, 0}, {0, 0, -1}}};
  EXPECT_EQ(CALC_ESD_BETA(phase, 1, 1, &inversion), (VECTOR6{1, 2, 3, 4, 5, 6}));
}
