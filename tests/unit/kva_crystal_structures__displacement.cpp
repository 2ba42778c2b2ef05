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

TEST(ANISOTROPIC, BETA_ONCE_AND_NOT_TWICE) {
  auto phase = WITH_U("P 1", {0, 0, 0}, {0.01f, 0.02f, 0.03f, 0, 0, 0});
  SET_ATOM_ADP(phase, 1);
  EXPECT_EQ(phase.ATOM(1).UTYPE, "beta");
  EXPECT_NEAR(phase.ATOM(1).U[0], 19.7392f * 0.01f / 25.0f, 1e-8f);
  EXPECT_NEAR(phase.ATOM(1).UEQ, 0.02f, 1e-7f);
  EXPECT_NEAR(phase.ATOM(1).BISO, 8 * 9.8696f * 0.02f, 1e-5f);
  const VECTOR6 once = phase.ATOM(1).U;
  SET_ATOM_ADP(phase, 1);
  EXPECT_EQ(phase.ATOM(1).U, once);
  EXPECT_NEAR(phase.ATOM(1).UEQ, 0.02f, 1e-7f);
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

TEST(ESDS, ANY_MATRIX_CAN_BE_GIVEN) {
  const auto phase = WITH_U("P 1", {0, 0, 0}, {}, {1, 2, 3, 4, 5, 6});
  const MATRIX3 inversion{{{-1, 0, 0}, {0, -1, 0}, {0, 0, -1}}};
  EXPECT_EQ(CALC_ESD_BETA(phase, 1, 1, &inversion), (VECTOR6{1, 2, 3, 4, 5, 6}));
}
