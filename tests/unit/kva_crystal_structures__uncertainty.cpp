// Distances and angles with their esds: by hand, by analytic derivatives, and by drawing
// coordinates and cells at random.
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
                         const std::string& system = "") {
    auto phase = MADE({5, 6, 7}, angles, symbol, {{"O1", {0, 0, 0}}}, {0.1f, 0.2f, 0.3f},
                      {0.4f, 0.5f, 0.6f});
    if (!system.empty()) phase.SPG.CRYSTALSYS = system;
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
  EXPECT_EQ(shifts("P 2", {90, 100, 90}, "Mono b-uni").size(), 6u) << "with its unique axis named";
  EXPECT_TRUE(shifts("P 1", {90, 90, 90}, "unheard of").empty());
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

// With the copy as second ligand the apex is linked with neither.
TEST(ANGLES, A_SECOND_LIGAND_OF_THE_APEX_KIND_IS_NOT_LINKED_WITH_IT) {
  const RIGHT_ANGLE at({0, 0.010f, 0}, {});
  const VALUE_ESD angle = ANGLE_AND_SIGMA_VCV(at.PHASE, at.O, at.SI, at.COPY);
  EXPECT_NEAR(angle.ESD, std::sqrt(2.0f) * 0.010f / 5.0f * degrees, 2e-4f);
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

TEST(ANGLES, OF_THREE_ATOMS_HAVE_AN_ESD) {
  const auto phase = TRICLINIC();
  EXPECT_GT(ANGLE_AND_SIGMA_VCV(phase, phase.ATOM(1).X, phase.ATOM(2).X, phase.ATOM(3).X).ESD,
            0.0f);
  EXPECT_EQ(ANGLE_AND_SIGMA_VCV(phase, phase.ATOM(1).X, phase.ATOM(1).X, phase.ATOM(3).X).ESD, 0.0f)
      << "no length, no angle";
}
