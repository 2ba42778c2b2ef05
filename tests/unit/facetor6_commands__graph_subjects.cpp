// FIT and GRAPH: subjects without values, and blocks of which no line can be told.
#include "console__dialogue.h"
#include "facetor6_commands__measuring.h"
#include "src/facetor6_calc/calc.h"
#include "src/facetor6_console/measure_list.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_graph/fit.h"
#include "src/facetor6_graph/graph.h"
#include "structures.h"

namespace {

using namespace FACETOR_CONSOLE;
using namespace STRUCTURES;

class GRAPH_SUBJECTS : public MEASURE_TESTS::MEASURE_TEST {
 protected:
  // Blocks of one site whose P are those; without P where it is negative.
  static void LOAD(const std::vector<float>& pressures) {
    STRUCTURE_LIST list;
    for (const float p : pressures) {
      CRYSTAL_STRUCTURE_TYPE block =
          MADE({4, 5, 6}, {90, 90, 90}, "P 1", {{"Fe1", {0.1f, 0, 0}}}, {0.01f, 0.01f, 0.01f});
      block.PT(PRESSURE, PT_VALUE) = p;
      block.PT(TEMPERATURE, PT_VALUE) = 298.0f;
      list.ADD(block);
    }
    bool error = false;
    ADD_PHASE_LIST(list, list.COUNT(), error);
    ASSERT_FALSE(error);
  }

  static std::string FITTED(const std::string& line) {
    CONSOLE_TESTS::PEND(line);
    return SAID("", [] { FACETOR_GRAPH::RUN_FIT(); });
  }

  static std::string DRAWN(const std::string& line) {
    CONSOLE_TESTS::PEND(line);
    return SAID("", [] { FACETOR_GRAPH::RUN_GRAPH(); });
  }
};

TEST_F(GRAPH_SUBJECTS, WITHOUT_BLOCKS_THERE_IS_NOTHING_TO_ASK) {
  for (const std::string& said : {FITTED("cells P"), DRAWN("cells P")})
    EXPECT_NE(said.find("No datablocks with use flags set!\n"), std::string::npos) << said;
}

TEST_F(GRAPH_SUBJECTS, VALENCES_WAIT_FOR_THEIR_CALCULATION) {
  STRUCTURE_LIST list;
  list.ADD(MADE({4, 4, 4}, {90, 90, 90}, "P m -3 m", {{"Ti1", {0, 0, 0}}, {"O1", {0.5f, 0, 0}}}));
  bool error = false;
  ADD_PHASE_LIST(list, 1, error);
  ASSERT_FALSE(error);
  SAID("\n", [] { FACETOR_CALC::RUN_FACETOR_CALC_BONDS(); });
  const std::string told = "*****No bond valences have been calculated: CALC valences first\n";
  EXPECT_NE(FITTED("valences Ti1 P").find(told), std::string::npos);
  EXPECT_NE(DRAWN("valences Ti1 P").find(told), std::string::npos);
}

// A measure that has a value in no block.
TEST_F(GRAPH_SUBJECTS, WHAT_HAS_NO_VALUE_IS_NEITHER_FITTED_NOR_DRAWN) {
  LOAD({0.1f, 1.0f, 2.0f});
  ASSERT_EQ(DEFINE_MEASURE("none", "1/(a - a)"), "");
  EXPECT_NE(FITTED("measures none P")
                .find("*****There is nothing to fit: no used block has such a value\n"),
            std::string::npos);
  EXPECT_NE(DRAWN("measures none P")
                .find("*****There is nothing to draw: no used block has such a value\n"),
            std::string::npos);
}

TEST_F(GRAPH_SUBJECTS, OF_TOO_FEW_BLOCKS_OR_PRESSURES_THERE_IS_NO_LINE) {
  LOAD({0.1f, 0.1f, 0.1f, 0.1f});
  EXPECT_NE(FITTED("cells P").find("No line: fewer than two different P"), std::string::npos);
  EXPECT_NE(FITTED("cells P 2").find("No parabola: fewer than three different P"),
            std::string::npos);
}

}  // namespace
