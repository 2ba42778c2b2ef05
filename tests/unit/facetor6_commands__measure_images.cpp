// MEASURE: the images that are chosen without codes, in structures where one knows what is meant.
// Angles by numpy, as the nearest neighbours of the oxygen, or along the ring, have them.
#include <filesystem>

#include "console__dialogue.h"
#include "facetor6_commands__measuring.h"
#include "places.h"
#include "src/facetor6_console/measure_list.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_readfiles/readfiles.h"
#include "structures.h"

namespace {

using namespace FACETOR_CONSOLE;
using namespace STRUCTURES;

class MEASURED_IMAGES : public MEASURE_TESTS::MEASURE_TEST {
 protected:
  static float VALUE(const std::string& text) {
    EXPECT_EQ(DEFINE_MEASURE("m", text), "") << text;
    const std::vector<MEASURED_VALUE> values = MEASURE_BLOCKS({1}).front();
    return values.empty() ? 0.0f : values.front().VALUE;
  }

  static std::string STEPS() { return MEASURE_LINES("m").back(); }
};

// Parameters typical of low albite; each T-O-T is that of the two T next to the oxygen.
TEST_F(MEASURED_IMAGES, BRIDGES_OF_ALBITE_ARE_BETWEEN_BONDED_TETRAHEDRA) {
  STRUCTURE_LIST list;
  list.ADD(MADE({8.142f, 12.785f, 7.159f}, {94.19f, 116.61f, 87.68f}, "C -1",
                {{"T1o", {0.0090f, 0.1685f, 0.2080f}},
                 {"T1m", {0.0040f, 0.8205f, 0.2372f}},
                 {"T2o", {0.6920f, 0.1102f, 0.3150f}},
                 {"T2m", {0.6816f, 0.8819f, 0.3607f}},
                 {"OA1", {0.0049f, 0.1311f, 0.9669f}},
                 {"OA2", {0.5921f, 0.9972f, 0.2804f}},
                 {"OBo", {0.8123f, 0.1100f, 0.1908f}},
                 {"OBm", {0.8202f, 0.8512f, 0.2586f}},
                 {"OCo", {0.0134f, 0.3024f, 0.2697f}},
                 {"OCm", {0.0237f, 0.6936f, 0.2292f}},
                 {"ODo", {0.2076f, 0.1090f, 0.3890f}},
                 {"ODm", {0.1839f, 0.8681f, 0.4360f}}}));
  bool error = false;
  ADD_PHASE_LIST(list, list.COUNT(), error);
  ASSERT_FALSE(error);
  EXPECT_NEAR(VALUE("angle(T1o, OA1, T1m)"), 141.4035f, 1e-3f);
  EXPECT_NEAR(VALUE("angle(T2o, OA2, T2m)"), 129.9817f, 1e-3f);
  EXPECT_NEAR(VALUE("angle(T1o, OBo, T2o)"), 139.7651f, 1e-3f);
  EXPECT_NEAR(VALUE("angle(T1m, OBm, T2m)"), 161.1449f, 1e-3f);
  EXPECT_NEAR(VALUE("angle(T1o, OCo, T2m)"), 129.9349f, 1e-3f);
  EXPECT_NEAR(VALUE("angle(T1m, OCm, T2o)"), 135.6457f, 1e-3f);
  EXPECT_NEAR(VALUE("angle(T1o, ODo, T2m)"), 133.9488f, 1e-3f);
  EXPECT_NEAR(VALUE("angle(T1m, ODm, T2o)"), 151.7992f, 1e-3f);
}

class MEASURED_SAMPLES : public MEASURED_IMAGES {
 protected:
  // False when the file is not there.
  static bool READ_SAMPLE(const std::string& name) {
    const std::filesystem::path file = std::filesystem::path(PLACES::SAMPLES()) / name;
    if (PLACES::SAMPLES().empty() || !std::filesystem::exists(file)) return false;
    SAID("5\n" + file.string() + "\nY\n", [] { FACETOR_READFILES::READ_PHASE_FROM_FILE(); });
    return NPHASES == 1;
  }
};

// Along the ring an oxygen is followed by one of the next tetrahedron. The second O2 is as near to
// the first in the same tetrahedron, and chosen: 60 degrees. Its equal is the one along the ring.
TEST_F(MEASURED_SAMPLES, A_MICA_HAS_ITS_RING_BY_THE_SECOND_OF_TWO_EQUAL_IMAGES) {
  if (!READ_SAMPLE("cif/Lepidolite.cif")) GTEST_SKIP() << "no lepidolite in GEMMARA_SAMPLES";
  EXPECT_NEAR(VALUE("angle(O1, O2, O2)"), 60.1430f, 1e-3f);
  EXPECT_EQ(STEPS(), "     O1-O2 2.620 (2 equal, next 2.627); O2-O2 2.622 (2 equal, next 3.370)");
  EXPECT_NEAR(VALUE("angle(O1, O2, O2[2])"), 134.8539f, 1e-3f);
  EXPECT_NEAR(VALUE("angle(SiT, O1, SiT)"), 135.9463f, 1e-3f);
  EXPECT_NEAR(VALUE("angle(SiT, O2, SiT)"), 132.0650f, 1e-3f);
}

TEST_F(MEASURED_SAMPLES, JOINTS_OF_A_PEROVSKITE_ARE_BETWEEN_OCTAHEDRA) {
  if (!READ_SAMPLE("cif/CaTiO3-Perovskite.cif")) GTEST_SKIP() << "no CaTiO3 in GEMMARA_SAMPLES";
  EXPECT_NEAR(VALUE("angle(Ti, O1, Ti)"), 156.7653f, 1e-3f);
  EXPECT_NEAR(VALUE("angle(Ti, O2, Ti)"), 158.2393f, 1e-3f);
}

// The paper has 2.86(2) angstroms for O2w...O1, 1.96 and 169 degrees for O1w-H11...O1.
TEST_F(MEASURED_SAMPLES, HYDROGEN_BONDS_ARE_AS_PRINTED) {
  if (!READ_SAMPLE("cif/2213608.cif")) GTEST_SKIP() << "no 2213608 in GEMMARA_SAMPLES";
  EXPECT_NEAR(VALUE("angle(O1w, H11, O1)"), 169.0f, 0.5f);
  EXPECT_NEAR(VALUE("dist(H11, O1)"), 1.96f, 0.005f);
  EXPECT_NEAR(VALUE("dist(O2w, O1)"), 2.86f, 0.005f);
}

// The other ring is that of the same molecule: -x, -y, 2-z is the inversion at its iron, 0, 0, 1.
TEST_F(MEASURED_SAMPLES, RINGS_OF_A_FERROCENE_ARE_PARALLEL) {
  if (!READ_SAMPLE("cif-series/ferrocene-models/ferrocene1.cif"))
    GTEST_SKIP() << "no ferrocene in GEMMARA_SAMPLES";
  const std::string ring = "C(11), C(12), C(13), C(14), C(15)";
  EXPECT_NEAR(VALUE("planes(" + ring + "; " + ring + ")"), 0.0f, 1e-4f);
  EXPECT_NE(MEASURE_LINES("m").front().find("; C(11)[3_557], C(12)[3_557]"), std::string::npos);
}

}  // namespace
