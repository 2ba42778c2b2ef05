// Distances and angles with their esds: by hand, by analytic derivatives, and by drawing
// coordinates and cells at random.
#include "src/kva_crystal_structures/angles.h"
#include "src/kva_crystal_structures/cell_shifts.h"
#include "src/kva_crystal_structures/uncertainty.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "structures.h"

using namespace STRUCTURES;

namespace {

// Normal deviates, the same everywhere.
struct DEVIATES {
  std::mt19937 RANDOM{12345};

  double UNIFORM() { return (static_cast<double>(RANDOM()) + 0.5) / 4294967296.0; }
  float NEXT() {
    return static_cast<float>(std::sqrt(-2.0 * std::log(UNIFORM())) *
                              std::cos(6.283185307179586 * UNIFORM()));
  }
  VECTOR3 AROUND(const VECTOR3& x, const VECTOR3& std) {
    return {x[0] + std[0] * NEXT(), x[1] + std[1] * NEXT(), x[2] + std[2] * NEXT()};
  }
};

// Mean square deviation of draws.
struct SPREAD {
  double SUM = 0.0;
  double SUM_SQ = 0.0;
  int N = 0;

  void ADD(float deviate) {
    const auto value = static_cast<double>(deviate);
    SUM += value;
    SUM_SQ += value * value;
    ++N;
  }
  float STD() const {
    const double mean = SUM / N;
    return static_cast<float>(std::sqrt(SUM_SQ / N - mean * mean));
  }
};

CRYSTAL_STRUCTURE_TYPE TRICLINIC() {
  return MADE({6.1f, 7.2f, 8.3f}, {81, 97, 109}, "P 1",
              {{"Si1", {0.30f, 0.40f, 0.50f}, {0.0010f, 0.0012f, 0.0008f}},
               {"O1", {0.50f, 0.45f, 0.55f}, {0.0020f, 0.0015f, 0.0011f}},
               {"O2", {0.25f, 0.60f, 0.45f}, {0.0014f, 0.0021f, 0.0018f}}},
              {0.004f, 0.006f, 0.005f}, {0.05f, 0.04f, 0.06f});
}

VALUE_ESD DISTANCE(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int j) {
  return DISTANCE_AND_SIGMA_VCV(phase, phase.ATOM(i).X, phase.ATOM(j).X);
}

}  // namespace

// ---- lengths and angles of vectors ----

TEST(VECTORS, LENGTHS_AND_ANGLES) {
  const MATRIX3 metric = XTAL::METRICTENSOR({2, 4, 5}, {90, 90, 90});
  EXPECT_FLOAT_EQ(CRYST_DIST({0.5f, 0, 0}, metric), 1.0f);
  EXPECT_FLOAT_EQ(CRYST_ANGLE({0.5f, 0, 0}, {0.5f, 0.25f, 0}, metric), 45.0f);
  EXPECT_EQ(CRYST_ANGLE({0.5f, 0, 0}, {-0.25f, 0, 0}, metric), 180.0f);
  EXPECT_EQ(CRYST_ANGLE({0.5f, 0, 0}, {0.7f, 0, 0}, metric), 0.0f);
  EXPECT_EQ(CRYST_ANGLE({0, 0, 0}, {0.7f, 0, 0}, metric), 0.0f) << "no direction, no angle";
}

// ---- cell terms ----

TEST(CELL_TERMS, BY_CRYSTAL_SYSTEM) {
  const auto shifts = [](const char* symbol, const VECTOR3& angles,
                         XTAL::CRYSTAL_SYSTEM system = {}) {
    auto phase = MADE({5, 6, 7}, angles, symbol, {{"O1", {0, 0, 0}}}, {0.1f, 0.2f, 0.3f},
                      {0.4f, 0.5f, 0.6f});
    if (system != XTAL::CRYSTAL_SYSTEM{}) phase.SPG.CRYSTALSYS = system;
    return CELL_SHIFTS(phase);
  };
  const auto cubic = shifts("P m -3 m", {90, 90, 90});
  ASSERT_EQ(cubic.size(), 1u);
  EXPECT_EQ(cubic[0].CELL, (VECTOR3{5.1f, 6.2f, 7.3f}));
  for (const char* symbol : {"P 4", "P 6", "P 3", "R 3:R"}) {
    const auto uniaxial = shifts(symbol, {90, 90, 90});
    ASSERT_EQ(uniaxial.size(), 2u) << symbol;
    EXPECT_EQ(uniaxial[0].CELL, (VECTOR3{5.1f, 5.1f, 7.0f}));
    EXPECT_EQ(uniaxial[1].CELL, (VECTOR3{5.0f, 6.0f, 7.3f}));
  }
  const auto orthorhombic = shifts("P 2 2 2", {91, 92, 93});
  ASSERT_EQ(orthorhombic.size(), 3u);
  EXPECT_EQ(orthorhombic[1].CELL, (VECTOR3{5.0f, 6.2f, 7.0f}));
  EXPECT_EQ(orthorhombic[1].ANG, (VECTOR3{90, 90, 90}));
  EXPECT_EQ(shifts("P 1", {80, 90, 100}).size(), 6u);
  EXPECT_EQ(shifts("P 2", {90, 100, 90})[4].ANG, (VECTOR3{90, 100.5f, 90}));
  EXPECT_EQ(shifts("P 2", {90, 100, 90}, {XTAL::SYSTEM::MONOCLINIC, 'b'}).size(), 6u)
      << "with its unique axis";
  auto unknown = MADE({5, 6, 7}, {90, 90, 90}, "P 1", {{"O1", {0, 0, 0}}}, {0.1f, 0.2f, 0.3f});
  unknown.SPG.CRYSTALSYS = {};
  EXPECT_TRUE(CELL_SHIFTS(unknown).empty());
}

TEST(CELL_TERMS, A_SHIFT_THAT_CHANGES_NOTHING_IS_LEFT_OUT) {
  const auto shifts = [](const char* symbol, const VECTOR3& angles, const VECTOR3& length_esds,
                         const VECTOR3& angle_esds) {
    return CELL_SHIFTS(
        MADE({5, 6, 7}, angles, symbol, {{"O1", {0, 0, 0}}}, length_esds, angle_esds));
  };
  const auto monoclinic = shifts("P 2", {90, 100, 90}, {0.1f, 0, 0.3f}, {0, 0.5f, 0});
  ASSERT_EQ(monoclinic.size(), 3u);
  EXPECT_EQ(monoclinic[0].CELL, (VECTOR3{5.1f, 6, 7}));
  EXPECT_EQ(monoclinic[1].CELL, (VECTOR3{5, 6, 7.3f}));
  EXPECT_EQ(monoclinic[2].ANG, (VECTOR3{90, 100.5f, 90}));
  EXPECT_TRUE(shifts("P 1", {80, 85, 95}, {}, {}).empty());
  // These come from angles made right and axes made equal, not from an esd.
  EXPECT_EQ(shifts("P 2 2 2", {90, 91, 90}, {}, {}).size(), 3u);
  EXPECT_EQ(shifts("P 4", {90, 90, 90}, {}, {}).size(), 1u);
}

// ---- coordinates ----

TEST(COORDINATES, ESDS_TURN_WITH_THE_OPERATOR) {
  const auto phase =
      MADE({5, 5, 7}, {90, 90, 90}, "P 4", {{"O1", {0.1f, 0.2f, 0.3f}, {0.01f, 0.02f, 0.03f}}});
  int four_fold = 0;
  for (int op = 1; op <= 4; ++op)
    if (phase.SPG.SYMOPSYMB(op) == "-y,x,z") four_fold = op;
  const VECTOR3 esd = CALC_ESD_XYZ(phase, 1, four_fold);
  EXPECT_NEAR(esd[0], 0.02f, 1e-8f);
  EXPECT_NEAR(esd[1], 0.01f, 1e-8f);
  EXPECT_NEAR(esd[2], 0.03f, 1e-8f);
}

// Each of the two operators of the axis ties half of the pairs, and keeps what the other has tied.
TEST(COORDINATES, A_SITE_ON_A_THREE_FOLD_AXIS_HAS_ONE) {
  const auto phase =
      MADE({5, 5, 5}, {90, 90, 90}, "P 2 3", {{"O1", {0.1f, 0.1f, 0.1f}, {0.01f, 0.01f, 0.01f}}});
  for (const VECTOR3& row : CALC_VCV_XYZ(phase, 1, 1))
    for (float v : row) EXPECT_NEAR(v, 1e-4f, 1e-9f);
}

TEST(COORDINATES, A_SITE_TIES_ITS_COORDINATES) {
  const auto phase =
      MADE({5, 5, 7}, {90, 90, 90}, "P 4 m m", {{"O1", {0.1f, 0.1f, 0.3f}, {0.01f, 0.01f, 0.02f}}});
  const MATRIX3 v = CALC_VCV_XYZ(phase, 1, 1);
  EXPECT_NEAR(v[0][1], 1e-4f, 1e-9f) << "x and y are one parameter";
  EXPECT_NEAR(v[1][0], 1e-4f, 1e-9f);
  EXPECT_EQ(v[0][2], 0.0f);
}

TEST(COORDINATES, TWO_ATOMS) {
  const auto phase = MADE({5, 6, 7}, {90, 90, 90}, "P -1",
                          {{"O1", {0.1f, 0.2f, 0.3f}, {0.01f, 0.02f, 0.03f}},
                           {"O2", {0.4f, 0.2f, 0.3f}, {0.01f, 0.01f, 0.01f}}});
  const MATRIX6 different = CALC_VCV_TWO_ATOMS(phase, phase.ATOM(1).X, phase.ATOM(2).X);
  EXPECT_NEAR(different[1][1], 4e-4f, 1e-9f);
  EXPECT_NEAR(different[4][4], 1e-4f, 1e-9f);
  EXPECT_EQ(different[0][3], 0.0f);
  const MATRIX6 image = CALC_VCV_TWO_ATOMS(phase, phase.ATOM(1).X, {-0.1f, -0.2f, -0.3f});
  EXPECT_NEAR(image[0][3], -1e-4f, 1e-9f) << "an inverted image moves the other way";
  EXPECT_NEAR(image[3][0], -1e-4f, 1e-9f);
  const MATRIX6 absent = CALC_VCV_TWO_ATOMS(phase, {0.5f, 0.6f, 0.7f}, phase.ATOM(2).X);
  EXPECT_EQ(absent[0][0], 0.0f) << "an atom that is not there contributes nothing";
  EXPECT_NEAR(absent[3][3], 1e-4f, 1e-9f);
}

TEST(COORDINATES, OPPOSITE_ONES_OF_A_SITE_HAVE_A_NEGATIVE_COVARIANCE) {
  // x, -x, z of P 4 m m: what x gains, y loses.
  const auto phase =
      MADE({5, 5, 7}, {90, 90, 90}, "P 4 m m", {{"O1", {0.1f, 0.9f, 0.3f}, {0.01f, 0.01f, 0.02f}}});
  const MATRIX3 v = CALC_VCV_XYZ(phase, 1, 1);
  EXPECT_NEAR(v[0][1], -1e-4f, 1e-9f);
  EXPECT_NEAR(v[1][0], -1e-4f, 1e-9f);
}

// The four-fold axis takes x, y to -y, x, so that the image's y moves as x does and its x against
// y; two steps of it take x and y to their opposites. The two-fold axis takes x, y, z to x, -y, -z:
// the y, x, -z of what the four-fold axis makes.
TEST(COORDINATES, IMAGES_OF_ONE_ATOM_MOVE_AS_THE_OPERATOR_TURNS_THEM) {
  const auto phase =
      MADE({5, 5, 7}, {90, 90, 90}, "P 4 2 2", {{"O1", {0.1f, 0.2f, 0.3f}, {0.01f, 0.02f, 0.03f}}});
  const VECTOR3 first{0.1f, 0.2f, 0.3f};
  const VECTOR3 second{-0.2f, 0.1f, 0.3f};
  const VECTOR3 fourth{0.2f, -0.1f, 0.3f};
  const VECTOR3 turned_over{0.1f, -0.2f, -0.3f};
  const auto expect_link = [&phase](const VECTOR3& x1, const VECTOR3& x2, const MATRIX3& link) {
    const MATRIX6 joint = CALC_VCV_TWO_ATOMS(phase, x1, x2);
    for (std::size_t i = 0; i < 3; ++i)
      for (std::size_t j = 0; j < 3; ++j) {
        EXPECT_NEAR(joint[i][j + 3], link[i][j], 1e-9f) << i << j;
        EXPECT_NEAR(joint[j + 3][i], link[i][j], 1e-9f) << j << i;
      }
  };
  expect_link(first, second, {{{0, 1e-4f, 0}, {-4e-4f, 0, 0}, {0, 0, 9e-4f}}});
  expect_link(second, first, {{{0, -4e-4f, 0}, {1e-4f, 0, 0}, {0, 0, 9e-4f}}});
  expect_link(second, turned_over, {{{0, 4e-4f, 0}, {1e-4f, 0, 0}, {0, 0, -9e-4f}}});
  expect_link(second, fourth, {{{-4e-4f, 0, 0}, {0, -1e-4f, 0}, {0, 0, 9e-4f}}});
}

TEST(COORDINATES, AN_ATOM_STANDS_FOR_A_POSITION_WITHIN_0_02_ANGSTROMS) {
  const auto phase = MADE({10, 10, 10}, {90, 90, 90}, "P 1",
                          {{"O1", {0.1f, 0.2f, 0.3f}, {0.01f, 0.01f, 0.01f}},
                           {"O2", {0.6f, 0.2f, 0.3f}, {0.01f, 0.01f, 0.01f}}});
  const auto variance = [&phase](float x) {
    return CALC_VCV_TWO_ATOMS(phase, {x, 0.2f, 0.3f}, phase.ATOM(2).X)[0][0];
  };
  EXPECT_NEAR(variance(0.1019f), 1e-4f, 1e-9f) << "0.019 angstroms away";
  EXPECT_EQ(variance(0.1021f), 0.0f) << "0.021 angstroms away";
}

// ---- distances ----

TEST(DISTANCES, COORDINATES_ALONG_AN_EDGE_BY_HAND) {
  // 5 * sqrt(0.003^2 + 0.004^2) = 0.025.
  const auto phase = MADE(
      {5, 6, 7}, {90, 90, 90}, "P 1",
      {{"Si1", {0.1f, 0, 0}, {0.003f, 0.1f, 0.1f}}, {"O1", {0.4f, 0, 0}, {0.004f, 0.1f, 0.1f}}});
  EXPECT_FLOAT_EQ(DISTANCE(phase, 1, 2).VALUE, 1.5f);
  EXPECT_NEAR(DISTANCE(phase, 1, 2).ESD, 0.025f, 1e-6f);
}

TEST(DISTANCES, THE_CELL_ALONE_GIVES_AN_ESD) {
  // Ti-O = a / 2 in perovskite: its esd is half that of a.
  const auto phase =
      MADE({4, 4, 4}, {90, 90, 90}, "P m -3 m",
           {{"Ti1", {0.5f, 0.5f, 0.5f}}, {"O1", {0.5f, 0.5f, 0}}}, {0.002f, 0.002f, 0.002f});
  EXPECT_NEAR(DISTANCE(phase, 1, 2).ESD, 0.001f, 1e-6f);
}

TEST(DISTANCES, NO_ESDS_GIVE_NONE) {
  const auto phase =
      MADE({5, 6, 7}, {90, 90, 90}, "P 1", {{"Si1", {0, 0, 0}}, {"O1", {0.3f, 0, 0}}});
  EXPECT_EQ(DISTANCE(phase, 1, 2).ESD, 0.0f);
  EXPECT_EQ(DISTANCE(phase, 1, 1).VALUE, 0.0f);
  EXPECT_EQ(DISTANCE(phase, 1, 1).ESD, 0.0f);
}

TEST(DISTANCES, TO_THE_MIRROR_IMAGE_HAS_THE_FULL_ESD_OF_2X) {
  // O at x, x, z of P 4 m m and its image at -x, x, z: d = 2 x a, esd 2 a sigma(x).
  const auto phase =
      MADE({5, 5, 7}, {90, 90, 90}, "P 4 m m", {{"O1", {0.15f, 0.15f, 0.3f}, {0.002f, 0.002f, 0}}});
  const VALUE_ESD d = DISTANCE_AND_SIGMA_VCV(phase, phase.ATOM(1).X, {-0.15f, 0.15f, 0.3f});
  EXPECT_NEAR(d.VALUE, 1.5f, 1e-6f);
  EXPECT_NEAR(d.ESD, 0.02f, 1e-6f);
}

// x, 2x, z of P 3 m 1 is one parameter. With u and v from it to a fixed point d^2 = a^2 (u^2 + v^2
// - uv), which changes with x by -3 a^2 v: d^2 = 1.75, and 25 * 0.3 / (2 d) times the esd of x.
TEST(DISTANCES, FROM_X_2X_HAVE_THE_ESD_OF_ONE_PARAMETER) {
  const auto phase =
      MADE({5, 5, 7}, {90, 90, 120}, "P 3 m 1",
           {{"Si1", {0.3f, 0.1f, 0.3f}}, {"O1", {0.1f, 0.2f, 0.3f}, {0.001f, 0.002f, 0}}});
  EXPECT_NEAR(DISTANCE(phase, 1, 2).VALUE, std::sqrt(1.75f), 1e-6f);
  EXPECT_NEAR(DISTANCE(phase, 1, 2).ESD, 3.75f / std::sqrt(1.75f) * 0.001f, 1e-6f);
}

// From x, y to -y, x: d^2 = 2 a^2 (x^2 + y^2), so that the esd of x alone gives 2 a^2 x sigma / d.
TEST(DISTANCES, TO_THE_IMAGE_UNDER_A_FOUR_FOLD_AXIS) {
  const auto phase =
      MADE({5, 5, 7}, {90, 90, 90}, "P 4", {{"O1", {0.2f, 0.1f, 0.3f}, {0.002f, 0, 0}}});
  const VALUE_ESD d = DISTANCE_AND_SIGMA_VCV(phase, phase.ATOM(1).X, {-0.1f, 0.2f, 0.3f});
  const float length = 5.0f * std::sqrt(0.1f);
  EXPECT_NEAR(d.VALUE, length, 1e-6f);
  EXPECT_NEAR(d.ESD, 50.0f * 0.2f * 0.002f / length, 1e-6f);
}

TEST(DISTANCES, TO_THE_OWN_LATTICE_TRANSLATE_HAS_THE_ESD_OF_THE_EDGE_ALONE) {
  const auto phase = MADE({5, 6, 7}, {90, 90, 90}, "P 2 2 2",
                          {{"O1", {0.1f, 0.2f, 0.3f}, {0.01f, 0.01f, 0.01f}}}, {0.003f, 0, 0});
  const VALUE_ESD d = DISTANCE_AND_SIGMA_VCV(phase, phase.ATOM(1).X, {1.1f, 0.2f, 0.3f});
  EXPECT_NEAR(d.VALUE, 5.0f, 1e-6f);
  EXPECT_NEAR(d.ESD, 0.003f, 2e-6f);
}

TEST(DISTANCES, AGREE_WITH_THE_DERIVATIVES_OF_THE_TRICLINIC_FORMULA) {
  const auto phase = TRICLINIC();
  const VECTOR3 u = XTAL::SUBTRACT(phase.ATOM(2).X, phase.ATOM(1).X);
  const VECTOR3& c = phase.CELL.CELL;
  const VECTOR3& w = phase.CELL.ANG;
  const float d = CRYST_DIST(u, phase.CELL.GD);
  // d^2 = sum (u_i a_i)^2 + 2 sum u_j u_k a_j a_k cos(alpha_i), differentiated.
  float variance = 0.0f;
  const auto add = [&variance](float derivative, float std) {
    variance += derivative * derivative * std * std;
  };
  for (std::size_t i = 0; i < 3; ++i) {
    const std::size_t j = (i + 1) % 3;
    const std::size_t k = (i + 2) % 3;
    const float half =
        u[i] * c[i] + u[j] * c[j] * XTAL::COSD(w[k]) + u[k] * c[k] * XTAL::COSD(w[j]);
    add(half * c[i] / d, phase.ATOM(1).X_STD[i]);
    add(half * c[i] / d, phase.ATOM(2).X_STD[i]);
    add(half * u[i] / d, phase.CELL.CELL_STD[i]);
    add(u[j] * u[k] * c[j] * c[k] * XTAL::SIND(w[i]) / d,
        phase.CELL.ANG_STD[i] / XTAL::DEGREES_PER_RADIAN);
  }
  const float expected = std::sqrt(variance);
  EXPECT_NEAR(DISTANCE(phase, 1, 2).ESD, expected, 0.005f * expected);
}

TEST(RANDOM_DRAWS, HAVE_THE_SPREAD_OF_DISTANCE_AND_ANGLE) {
  const auto phase = TRICLINIC();
  DEVIATES draw;
  SPREAD distance;
  SPREAD angle;
  for (int n = 0; n < 20000; ++n) {
    const MATRIX3 metric = XTAL::METRICTENSOR(draw.AROUND(phase.CELL.CELL, phase.CELL.CELL_STD),
                                              draw.AROUND(phase.CELL.ANG, phase.CELL.ANG_STD));
    std::array<VECTOR3, 3> x;
    for (std::size_t i = 0; i < 3; ++i) {
      const ATOM_TYPE& atom = phase.ATOM(static_cast<int>(i) + 1);
      x[i] = draw.AROUND(atom.X, atom.X_STD);
    }
    distance.ADD(CRYST_DIST(XTAL::SUBTRACT(x[1], x[0]), metric));
    angle.ADD(CRYST_ANGLE(XTAL::SUBTRACT(x[1], x[0]), XTAL::SUBTRACT(x[2], x[0]), metric));
  }
  EXPECT_NEAR(DISTANCE(phase, 1, 2).ESD, distance.STD(), 0.03f * distance.STD());
  const VALUE_ESD ours =
      ANGLE_AND_SIGMA_VCV(phase, phase.ATOM(1).X, phase.ATOM(2).X, phase.ATOM(3).X);
  EXPECT_NEAR(ours.ESD, angle.STD(), 0.03f * angle.STD());
}

// A sulfate group as in gypsum: S on a two-fold axis of C 2/c at 0, y, 3/4, two oxygens and their
// images at -x, y, 3/2 - z. Only what the symmetry leaves free is drawn.
TEST(RANDOM_DRAWS, HAVE_THE_SPREAD_OF_A_GROUP_ON_AN_AXIS) {
  const auto phase = MADE({6.28f, 15.18f, 5.67f}, {90, 114.1f, 90}, "C 2/c",
                          {{"S1", {0, 0.3285f, 0.75f}, {0, 0.0007f, 0}},
                           {"O1", {0.084f, 0.272f, 0.592f}, {0.002f, 0.0008f, 0.0025f}},
                           {"O2", {0.2f, 0.383f, 0.914f}, {0.0015f, 0.001f, 0.002f}}},
                          {0.006f, 0.012f, 0.005f}, {0, 0.08f, 0});
  const auto image = [](const VECTOR3& x) { return VECTOR3{-x[0], x[1], 1.5f - x[2]}; };
  // Of atoms s, a, b: the edge from a to b and the angle between them at s.
  const auto edge = [](const VECTOR3& a, const VECTOR3& b, const MATRIX3& metric) {
    return CRYST_DIST(XTAL::SUBTRACT(b, a), metric);
  };
  const auto angle = [](const VECTOR3& s, const VECTOR3& a, const VECTOR3& b,
                        const MATRIX3& metric) {
    return CRYST_ANGLE(XTAL::SUBTRACT(a, s), XTAL::SUBTRACT(b, s), metric);
  };
  DEVIATES draw;
  std::array<SPREAD, 6> spread;
  for (int n = 0; n < 20000; ++n) {
    const MATRIX3 metric = XTAL::METRICTENSOR(draw.AROUND(phase.CELL.CELL, phase.CELL.CELL_STD),
                                              draw.AROUND(phase.CELL.ANG, phase.CELL.ANG_STD));
    std::array<VECTOR3, 3> x;
    for (std::size_t i = 0; i < 3; ++i) {
      const ATOM_TYPE& atom = phase.ATOM(static_cast<int>(i) + 1);
      x[i] = draw.AROUND(atom.X, atom.X_STD);
    }
    spread[0].ADD(edge(x[0], x[1], metric));
    spread[1].ADD(edge(x[1], image(x[1]), metric));
    spread[2].ADD(edge(x[1], image(x[2]), metric));
    spread[3].ADD(angle(x[0], x[1], x[2], metric));
    spread[4].ADD(angle(x[0], x[1], image(x[1]), metric));
    spread[5].ADD(angle(x[0], image(x[1]), x[2], metric));
  }
  const VECTOR3& s = phase.ATOM(1).X;
  const VECTOR3& o1 = phase.ATOM(2).X;
  const VECTOR3& o2 = phase.ATOM(3).X;
  const std::array<float, 6> ours{DISTANCE_AND_SIGMA_VCV(phase, s, o1).ESD,
                                  DISTANCE_AND_SIGMA_VCV(phase, o1, image(o1)).ESD,
                                  DISTANCE_AND_SIGMA_VCV(phase, o1, image(o2)).ESD,
                                  ANGLE_AND_SIGMA_VCV(phase, s, o1, o2).ESD,
                                  ANGLE_AND_SIGMA_VCV(phase, s, o1, image(o1)).ESD,
                                  ANGLE_AND_SIGMA_VCV(phase, s, image(o1), o2).ESD};
  for (std::size_t k = 0; k < ours.size(); ++k)
    EXPECT_NEAR(ours[k], spread[k].STD(), 0.03f * spread[k].STD()) << k;
}

// ---- angles ----

namespace {

constexpr float degrees = XTAL::DEGREES_PER_RADIAN;

// Esds in angstroms as fractions of edges 5, 5, 5.
VECTOR3 OF_5(const VECTOR3& std) {
  return {std[0] / 5.0f, std[1] / 5.0f, std[2] / 5.0f};
}

// O, its copy one cell along a, and Si 1.5 angstroms from O along b: a right angle at O.
struct RIGHT_ANGLE {
  VECTOR3 O{0.1f, 0.2f, 0.3f};
  VECTOR3 COPY{1.1f, 0.2f, 0.3f};
  VECTOR3 SI{0.1f, 0.5f, 0.3f};
  CRYSTAL_STRUCTURE_TYPE PHASE;

  RIGHT_ANGLE(const VECTOR3& std_o, const VECTOR3& std_si)
      : PHASE(MADE({5, 5, 5}, {90, 90, 90}, "P 1",
                   {{"O1", O, OF_5(std_o)}, {"Si1", SI, OF_5(std_si)}})) {}
};

}  // namespace

// Moved by dx, the apex and the second ligand each turn the bond between them by dx / 1.5; moved by
// dy, the apex and the first ligand each turn theirs by dy / 5. The apex moves as the first ligand
// does, so dy turns nothing; the rule links the apex with the second ligand like with the first,
// which takes twice the apex's dx off: (0.005^2 + 0.003^2 - 2 * 0.003^2) / 1.5^2.
TEST(ANGLES, THE_SECOND_LIGAND_IS_LINKED_WITH_THE_APEX_AS_THE_FIRST_IS) {
  const RIGHT_ANGLE at({0.003f, 0.010f, 0}, {0.005f, 0, 0});
  const VALUE_ESD angle = ANGLE_AND_SIGMA_VCV(at.PHASE, at.O, at.COPY, at.SI);
  EXPECT_NEAR(angle.VALUE, 90.0f, 1e-4f);
  EXPECT_NEAR(angle.ESD, 0.004f / 1.5f * degrees, 2e-4f);
}

// With the copy as second ligand the apex is linked with neither: dy turns the bond to the copy
// twice, dx that to Si. If nothing but dy has an esd, nothing that can move changes the angle.
TEST(ANGLES, A_SECOND_LIGAND_OF_THE_APEX_KIND_IS_NOT_LINKED_WITH_IT) {
  const RIGHT_ANGLE at({0.003f, 0.010f, 0}, {});
  const VALUE_ESD angle = ANGLE_AND_SIGMA_VCV(at.PHASE, at.O, at.SI, at.COPY);
  EXPECT_NEAR(angle.ESD, std::hypot(0.003f / 1.5f, std::sqrt(2.0f) * 0.010f / 5.0f) * degrees,
              2e-4f);
  const RIGHT_ANGLE fixed({0, 0.010f, 0}, {});
  EXPECT_EQ(ANGLE_AND_SIGMA_VCV(fixed.PHASE, fixed.O, fixed.SI, fixed.COPY).ESD, 0.0f);
}

// Ligands at (-2.5, 2.5) and (2.5, 2.5) angstroms, copies of one atom. Moved by dy both bonds turn
// by dy 2.5 / 12.5, which adds up; moved by dx they turn alike, which leaves the angle.
TEST(ANGLES, COPIES_OF_ONE_ATOM_AS_LIGANDS_MOVE_TOGETHER) {
  const auto esd = [](const VECTOR3& std) {
    const auto phase = MADE({5, 5, 5}, {90, 90, 90}, "P 1",
                            {{"Si1", {0.5f, 0.1f, 0.3f}}, {"O1", {0.0f, 0.6f, 0.3f}, OF_5(std)}});
    return ANGLE_AND_SIGMA_VCV(phase, phase.ATOM(1).X, {0.0f, 0.6f, 0.3f}, {1.0f, 0.6f, 0.3f}).ESD;
  };
  EXPECT_NEAR(esd({0, 0.002f, 0}), 0.4f * 0.002f * degrees, 2e-4f);
  EXPECT_NEAR(esd({0.002f, 0, 0}), 0.0f, 2e-4f);
}

// One structure of P 3 m 1 with its ligand given as x, 2x, as 2x, x, or as x, -x. The angle at the
// axis between two of its images has cos = (z^2 c^2 - 3 x^2 a^2 / 2) / (z^2 c^2 + 3 x^2 a^2), so
// that with p = 3 x^2 a^2 and q = z^2 c^2 it changes with x by 3 p q / (x (p + q)^2 sin).
TEST(ANGLES, ANY_IMAGE_MAY_BE_GIVEN_FOR_A_SITE_ON_A_MIRROR) {
  constexpr float p = 0.75f;
  constexpr float q = 0.49f;
  const float cosine = (q - 0.5f * p) / (p + q);
  const float sine = std::sqrt(1.0f - cosine * cosine);
  const float esd = 3.0f * p * q / (0.1f * (p + q) * (p + q) * sine) * 0.001f * degrees;
  const auto angle = [](const VECTOR3& x, const VECTOR3& std) {
    const auto phase =
        MADE({5, 5, 7}, {90, 90, 120}, "P 3 m 1", {{"Si1", {0, 0, 0}}, {"O1", x, std}});
    return ANGLE_AND_SIGMA_VCV(phase, {0, 0, 0}, x, {-x[1], x[0] - x[1], x[2]});
  };
  for (const VALUE_ESD& found : {angle({0.1f, 0.2f, 0.1f}, {0.001f, 0.002f, 0}),
                                 angle({0.2f, 0.1f, 0.1f}, {0.002f, 0.001f, 0}),
                                 angle({0.1f, -0.1f, 0.1f}, {0.001f, 0.001f, 0})}) {
    EXPECT_NEAR(found.VALUE, XTAL::ACOSD(cosine), 1e-3f);
    EXPECT_NEAR(found.ESD, esd, 0.01f * esd);
  }
}

TEST(ANGLES, OF_THREE_ATOMS_HAVE_AN_ESD) {
  const auto phase = TRICLINIC();
  EXPECT_GT(ANGLE_AND_SIGMA_VCV(phase, phase.ATOM(1).X, phase.ATOM(2).X, phase.ATOM(3).X).ESD,
            0.0f);
  EXPECT_EQ(ANGLE_AND_SIGMA_VCV(phase, phase.ATOM(1).X, phase.ATOM(1).X, phase.ATOM(3).X).ESD, 0.0f)
      << "no length, no angle";
}
