// MEASURE: polyhedra whose values are seen without a calculation, those that have none, and blocks
// in which the atoms of a measure are not what they are in the reference block.
#include <cmath>

#include "console__dialogue.h"
#include "facetor6_commands__measuring.h"
#include "src/facetor6_calc/calc.h"
#include "src/facetor6_console/measure_list.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_measure/measure.h"
#include "structures.h"

namespace {

using namespace FACETOR_CONSOLE;
using namespace STRUCTURES;

class MEASURED_POLYHEDRA : public MEASURE_TESTS::MEASURE_TEST {
 protected:
  static void CALCULATE() {
    SAID("\n", [] { FACETOR_CALC::RUN_FACETOR_CALC_BONDS(); });
  }

  static MEASURED_VALUE MEASURED_AS(const std::string& text, int block = 1) {
    EXPECT_EQ(DEFINE_MEASURE("m", text), "") << text;
    return MEASURE_BLOCKS({block}).front()[KVA_CRYSTAL_STRUCTURES::FIND_MEASURE(MEASURES, "m")];
  }

  static void EXPECT_VALUE(const std::string& text, float value, float esd = 0.0f, int block = 1) {
    const MEASURED_VALUE measured = MEASURED_AS(text, block);
    EXPECT_TRUE(measured.FOUND) << text;
    EXPECT_NEAR(measured.VALUE, value, 2e-5f * std::max(1.0f, std::abs(value))) << text;
    EXPECT_NEAR(measured.ESD, esd, 1e-3f * esd + 1e-6f) << text;
  }

  static void EXPECT_NONE(const std::string& text, int block = 1) {
    EXPECT_FALSE(MEASURED_AS(text, block).FOUND) << text;
  }

  static std::string ANSWER(const std::string& line) {
    CONSOLE_TESTS::PEND(line);
    return SAID("", [] { FACETOR_MEASURE::RUN_MEASURE(); });
  }
};

// The eight chlorine atoms are the corners of the cell, moved by half of it: a cube of its edge.
TEST_F(MEASURED_POLYHEDRA, A_CUBE_HAS_THE_VOLUME_OF_THE_CELL) {
  LOAD({MADE({4, 4, 4}, {90, 90, 90}, "P m -3 m", {{"Cs1", {0, 0, 0}}, {"Cl1", {0.5f, 0.5f, 0.5f}}},
             {0.01f, 0.01f, 0.01f})});
  RUN.DMAX = 3.7f;
  CALCULATE();
  EXPECT_VALUE("n(Cs1)", 8.0f);
  EXPECT_VALUE("vol(Cs1)", 64.0f, 3.0f * 16.0f * 0.01f);
  EXPECT_VALUE("mean(Cs1)", 2.0f * std::sqrt(3.0f), std::sqrt(3.0f) / 2.0f * 0.01f);
  EXPECT_VALUE("baur(Cs1)", 0.0f);
  EXPECT_VALUE("econ(Cs1)", 8.0f);
  EXPECT_VALUE("shift(Cs1)", 0.0f);
  for (const std::string text : {"qe(Cs1)", "av(Cs1)", "sigma(Cs1)"}) EXPECT_NONE(text);
  EXPECT_EQ(ANSWER("k = n(Cs1)"), "     k = n(Cs1[1_555])\n     reference block: 8\n");
}

TEST_F(MEASURED_POLYHEDRA, A_REGULAR_OCTAHEDRON_IS_NOT_DISTORTED) {
  LOAD({MADE({4, 4, 4}, {90, 90, 90}, "P m -3 m", {{"Ti1", {0, 0, 0}}, {"O1", {0.5f, 0, 0}}},
             {0.01f, 0.01f, 0.01f})});
  CALCULATE();
  EXPECT_VALUE("sigma(Ti1)", 0.0f);
  EXPECT_VALUE("av(Ti1)", 0.0f);
  EXPECT_VALUE("qe(Ti1)", 1.0f);
  EXPECT_VALUE("econ(Ti1)", 6.0f);
  EXPECT_VALUE(
      "edge(Ti1, 1, 3)^2 + edge(Ti1, 1, 4)^2 + edge(Ti1, 1, 2)^2 + edge(Ti1, 1, 5)^2 + "
      "edge(Ti1, 1, 6)^2",
      4.0f * 8.0f + 16.0f, 2.0f * 48.0f / 4.0f * 0.01f);
  EXPECT_EQ(DEFINE_MEASURE("m", "bvs(Ti1)"), "*****CALC valences first");
}

// A triangle has neither a volume nor what is derived from one.
TEST_F(MEASURED_POLYHEDRA, THREE_LIGANDS_HAVE_NO_VOLUME) {
  LOAD({MADE({10, 10, 10}, {90, 90, 90}, "P 1",
             {{"C1", {0.5f, 0.5f, 0.5f}},
              {"O1", {0.63f, 0.5f, 0.5f}},
              {"O2", {0.435f, 0.6125833f, 0.5f}},
              {"O3", {0.435f, 0.3874167f, 0.5f}}})});
  RUN.DMAX = 1.5f;
  CALCULATE();
  EXPECT_VALUE("n(C1)", 3.0f);
  EXPECT_VALUE("mean(C1)", 1.3f);
  for (const std::string text : {"vol(C1)", "qe(C1)", "av(C1)", "sigma(C1)"}) EXPECT_NONE(text);
}

// The corners of a square about its middle: what a tetrahedron's volume would be measured by is 0.
TEST_F(MEASURED_POLYHEDRA, A_SQUARE_HAS_A_VOLUME_OF_ZERO_AND_NO_DISTORTION) {
  LOAD({MADE({4, 4, 10}, {90, 90, 90}, "P 4/m m m", {{"Cu1", {0, 0, 0}}, {"O1", {0.5f, 0, 0}}})});
  CALCULATE();
  EXPECT_VALUE("n(Cu1)", 4.0f);
  EXPECT_VALUE("vol(Cu1)", 0.0f);
  for (const std::string text : {"qe(Cu1)", "av(Cu1)", "sigma(Cu1)"}) EXPECT_NONE(text);
}

// In the second block the oxygen O3 is not there: one bond is missing, the others are what they
// are.
TEST_F(MEASURED_POLYHEDRA, WITHOUT_ALL_BONDS_A_POLYHEDRON_HAS_NO_VALUE) {
  const std::vector<SITE> sites{{"C1", {0.5f, 0.5f, 0.5f}},
                                {"O1", {0.63f, 0.5f, 0.5f}},
                                {"O2", {0.435f, 0.6125833f, 0.5f}},
                                {"O3", {0.435f, 0.3874167f, 0.5f}}};
  const auto made = [&](std::size_t count) {
    return MADE({10, 10, 10}, {90, 90, 90}, "P 1",
                {sites.begin(), sites.begin() + static_cast<std::ptrdiff_t>(count)});
  };
  LOAD({made(4), made(3)});
  RUN.DMAX = 1.5f;
  CALCULATE();
  EXPECT_NONE("mean(C1)", 2);
  EXPECT_VALUE("bond(C1, 1) + bond(C1, 2) + bond(C1, 3)", 3.9f);
  EXPECT_NONE("bond(C1, 1) + bond(C1, 2) + bond(C1, 3)", 2);
  EXPECT_NONE("x(O3)", 2);
  EXPECT_NONE("occ(O3)", 2);
  EXPECT_NONE("dist(C1, O3)", 2);
}

// Half way between the two atoms of the reference block, 1 angstrom apart, stands the only one of
// the second: both would be that one.
TEST_F(MEASURED_POLYHEDRA, TWO_ATOMS_THAT_ARE_ONE_IN_A_BLOCK_HAVE_NO_DISTANCE) {
  LOAD({MADE({10, 10, 10}, {90, 90, 90}, "P 1", {{"C1", {0.1f, 0, 0}}, {"C2", {0.2f, 0, 0}}}),
        MADE({10, 10, 10}, {90, 90, 90}, "P 1", {{"C1", {0.15f, 0, 0}}})});
  EXPECT_VALUE("dist(C1, C2)", 1.0f);
  EXPECT_NONE("dist(C1, C2)", 2);
  EXPECT_VALUE("x(C1) - x(C2)", 0.0f, 0.0f, 2);
}

// Iron shares the site in the reference block. In the second the site is magnesium's alone, and of
// what is not there nobody tells an occupancy; in the third aluminium shares it as well.
TEST_F(MEASURED_POLYHEDRA, OF_A_SHARED_SITE_EACH_ELEMENT_HAS_ITS_OWN_OCCUPANCY_OR_NONE) {
  const auto made = [](const std::vector<std::pair<std::string, float>>& shares) {
    std::vector<SITE> sites;
    for (const auto& share : shares) sites.push_back({share.first, {0, 0, 0}});
    sites.push_back({"O1", {0.5f, 0, 0}});
    CRYSTAL_STRUCTURE_TYPE block = MADE({4, 5, 6}, {90, 90, 90}, "P 1", sites);
    int i = 0;
    for (const auto& share : shares) block.ATOM(++i).OCC = share.second;
    return block;
  };
  LOAD({made({{"Mg1", 0.75f}, {"Fe1", 0.25f}}), made({{"Mg1", 1.0f}}),
        made({{"Al1", 0.125f}, {"Mg1", 0.375f}, {"Fe1", 0.5f}})});
  for (int b = 1; b <= 3; ++b)
    for (int i = 1; i <= PHASE(b).NATOMS; ++i)
      if (PHASE(b).ATOM(i).LAB == "O1")
        PHASE(b).ATOM(i).OCC = 0.5f + 0.125f * static_cast<float>(b);
  EXPECT_VALUE("occ(Fe1)", 0.25f);
  EXPECT_NONE("occ(Fe1)", 2);
  EXPECT_VALUE("occ(Mg1)", 1.0f, 0.0f, 2);
  EXPECT_VALUE("occ(Fe1)", 0.5f, 0.0f, 3);
  EXPECT_VALUE("occ(Mg1)", 0.375f, 0.0f, 3);
  EXPECT_VALUE("occ(O1)", 0.875f, 0.0f, 3);
}

// Manganese where the reference block has iron alone is what became of it.
TEST_F(MEASURED_POLYHEDRA, ANOTHER_ELEMENT_ON_A_SITE_OF_ONE_IS_MEASURED) {
  CRYSTAL_STRUCTURE_TYPE other =
      MADE({4, 5, 6}, {90, 90, 90}, "P 1", {{"Mn1", {0, 0, 0}}, {"O1", {0.5f, 0, 0}}});
  other.ATOM(1).OCC = 0.5f;
  LOAD({MADE({4, 5, 6}, {90, 90, 90}, "P 1", {{"Fe1", {0, 0, 0}}, {"O1", {0.5f, 0, 0}}}), other});
  EXPECT_VALUE("occ(Fe1)", 0.5f, 0.0f, 2);
}

TEST_F(MEASURED_POLYHEDRA, VALUES_WITHOUT_THEIR_SIGN) {
  LOAD({MADE({4, 5, 6}, {90, 90, 90}, "P 1", {{"Fe1", {0.1f, 0, 0}}})});
  EXPECT_VALUE("abs(3.0(2))", 3.0f, 0.2f);
  EXPECT_VALUE("abs(-3.0(2))", 3.0f, 0.2f);
  EXPECT_VALUE("5*abs(1.0(2) - 2)", 5.0f, 1.0f);
  EXPECT_VALUE("+2 - +-3", 5.0f);
}

TEST_F(MEASURED_POLYHEDRA, WITHOUT_BLOCKS_THERE_ARE_NO_VALUES) {
  EXPECT_EQ(DEFINE_MEASURE("m", "1"), "");
  EXPECT_TRUE(MEASURE_BLOCKS({}).empty());
  EXPECT_TRUE(MEASURE_EXPRESSIONS({"1"}, {}).empty());
  EXPECT_EQ(SAID("", [] { WARN_OF_MEASURED_MATCHES({}); }), "");
}

// Derivatives of a power by its base, n x^(n-1), also of a negative one; and of the lesser or
// greater of two by that one alone.
TEST_F(MEASURED_POLYHEDRA, POWERS_AND_EXTREMES_HAVE_THE_ESDS_OF_WHAT_THEY_ARE_OF) {
  LOAD({MADE({4, 5, 6}, {90, 90, 90}, "P 1", {{"Fe1", {0.1f, 0, 0}}})});
  EXPECT_VALUE("(0 - 2.0(1))^2", 4.0f, 0.4f);
  EXPECT_VALUE("(0 - 2.0(1))^3", -8.0f, 1.2f);
  EXPECT_VALUE("3.0(1)^0", 1.0f);
  EXPECT_VALUE("max(1.0(1), 3.0(2))", 3.0f, 0.2f);
  EXPECT_VALUE("max(3.0(2), 1.0(1))", 3.0f, 0.2f);
  EXPECT_VALUE("min(1.0(1), 3.0(2))", 1.0f, 0.1f);
  EXPECT_VALUE("min(3.0(2), 1.0(1))", 1.0f, 0.1f);
}

}  // namespace
