// FIT and GRAPH: subjects without values, blocks of which no line can be told, and the interrupt
// key.
#include <sys/time.h>  // for setitimer

#include <csignal>
#include <filesystem>

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
  struct CONDITIONS {
    float P;
    float T = 298.0f;
    int USE = 1;
  };

  // Blocks of one site under these conditions.
  static void LOAD(const std::vector<CONDITIONS>& series) {
    STRUCTURE_LIST list;
    for (const CONDITIONS& conditions : series) {
      CRYSTAL_STRUCTURE_TYPE block =
          MADE({4, 5, 6}, {90, 90, 90}, "P 1", {{"Fe1", {0.1f, 0, 0}}}, {0.01f, 0.01f, 0.01f});
      block.PT(PRESSURE, PT_VALUE) = conditions.P;
      block.PT(TEMPERATURE, PT_VALUE) = conditions.T;
      list.ADD(block);
    }
    bool error = false;
    ADD_PHASE_LIST(list, list.COUNT(), error);
    ASSERT_FALSE(error);
    for (std::size_t k = 0; k < series.size(); ++k) IUSE(static_cast<int>(k) + 1) = series[k].USE;
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
  LOAD({{0.1f}, {1.0f}, {2.0f}});
  ASSERT_EQ(DEFINE_MEASURE("none", "1/(a - a)"), "");
  EXPECT_NE(FITTED("measures none P")
                .find("*****There is nothing to fit: no used block has such a value\n"),
            std::string::npos);
  EXPECT_NE(DRAWN("measures none P")
                .find("*****There is nothing to draw: no used block has such a value\n"),
            std::string::npos);
}

TEST_F(GRAPH_SUBJECTS, OF_TOO_FEW_BLOCKS_OR_PRESSURES_THERE_IS_NO_LINE) {
  LOAD({{0.1f}, {0.1f}, {0.1f}, {0.1f}});
  EXPECT_NE(FITTED("cells P").find("No line: fewer than two different P"), std::string::npos);
  EXPECT_NE(FITTED("cells P 2").find("No parabola: fewer than three different P"),
            std::string::npos);
}

// P, unless the used blocks have one P and several T.
TEST_F(GRAPH_SUBJECTS, WHAT_VARIES_ALONE_IS_THE_USUAL_ABSCISSA) {
  struct CASE {
    std::vector<CONDITIONS> SERIES;
    char USUAL;
  };
  const std::vector<CASE> cases{
      {{{1, 298}}, 'P'},
      {{{1, 298}, {1, 298}}, 'P'},
      {{{1, 298}, {2, 298}}, 'P'},
      {{{1, 298}, {1, 400}}, 'T'},
      {{{1, 298}, {2, 400}}, 'P'},
      {{{1, 298}, {1, 400}, {2, 500}}, 'P'},
      {{{1, 298}, {1, 400}, {2, 500, 0}}, 'T'},
      {{{1, 298}, {1, 298}, {1, 400, 0}}, 'P'},
      {{{2, 298, 0}, {1, 298}, {1, 400}}, 'T'},
  };
  for (std::size_t k = 0; k < cases.size(); ++k) {
    FORGET();
    LOAD(cases[k].SERIES);
    CONSOLE_TESTS::PEND("cells");
    const std::string said = SAID("\n", [] { FACETOR_GRAPH::RUN_FIT(); });
    const std::string asked = std::string("Against P, T, or a measure <") + cases[k].USUAL + ">?";
    EXPECT_NE(said.find(asked), std::string::npos) << k << said;
  }
}

// While it lives the key is pressed ten times a millisecond, which does nothing outside of long
// work.
struct PRESSED_KEY {
  PRESSED_KEY() {
    const itimerval often{{0, 100}, {0, 100}};
    ::setitimer(ITIMER_REAL, &often, nullptr);
  }
  ~PRESSED_KEY() {
    const itimerval never{};
    ::setitimer(ITIMER_REAL, &never, nullptr);
    std::signal(SIGALRM, usual_alarm);
    std::signal(SIGINT, usual_interrupt);
  }
  PRESSED_KEY(const PRESSED_KEY&) = delete;
  PRESSED_KEY& operator=(const PRESSED_KEY&) = delete;

  void (*usual_interrupt)(int) = std::signal(SIGINT, SIG_IGN);
  void (*usual_alarm)(int) = std::signal(SIGALRM, [](int) { std::raise(SIGINT); });
};

TEST_F(GRAPH_SUBJECTS, THE_KEY_STOPS_BOTH_AND_LEAVES_NO_FILE) {
  constexpr int blocks = 3000;
  STRUCTURE_LIST list;
  for (int block = 1; block <= blocks; ++block)
    list.ADD(MADE({4, 4, 4}, {90, 90, 90}, "P m -3 m", {{"Ti1", {0, 0, 0}}, {"O1", {0.5f, 0, 0}}}));
  bool error = false;
  ADD_PHASE_LIST(list, blocks, error);
  ASSERT_FALSE(error);
  SAID("\n", [] { FACETOR_CALC::RUN_FACETOR_CALC_BONDS(); });
  std::string fitted;
  std::string drawn;
  {
    const PRESSED_KEY key;
    fitted = FITTED("bond ALL P");
    drawn = DRAWN("bond ALL P stopped.svg");
  }
  EXPECT_EQ(fitted, "\n*****The fit was stopped\n");
  EXPECT_EQ(drawn, "\n*****The graph was stopped\n");
  for (const char* name : {"stopped.svg", "stopped.csv", "stopped.gp"})
    EXPECT_FALSE(std::filesystem::exists(name)) << name;
}

}  // namespace
