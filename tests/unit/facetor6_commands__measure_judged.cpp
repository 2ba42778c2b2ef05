// Values and esds of measures against numpy, on structures of all crystal systems.
#include <sys/wait.h>

#include <iomanip>
#include <iostream>

#include "console__dialogue.h"
#include "places.h"
#include "src/facetor6_calc/calc.h"
#include "src/facetor6_console/measure_list.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_console/valence_table.h"
#include "src/facetor6_readfiles/readfiles.h"

namespace {

using namespace FACETOR_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;

constexpr int not_installed = 77;

class MEASURES_JUDGED : public CONSOLE_TESTS::CONSOLE_TEST {
 protected:
  // The judge's status; what it says goes to judged.txt.
  static int JUDGE(const std::string& script, const std::string& arguments) {
    const std::string command = "/usr/bin/python3 -B '" + PLACES::SOURCE() + "/tests/judges/" +
                                script + "' " + arguments + " > judged.txt 2>&1";
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  static void READ_AND_CALCULATE(const std::string& name, float dmax) {
    RUN = {};
    RUN.DMAX = dmax;
    SAID("1\n" + name + ".cif\nY\n", [] { FACETOR_READFILES::READ_PHASE_FROM_FILE(); });
    SAID("\n", [] { FACETOR_CALC::RUN_FACETOR_CALC_BONDS(); });
    SAID("N\n", [] { FACETOR_CALC::RUN_FACETOR_CALC_VALENCE(); });
  }

  // Parameters of the first species of each centre and oxygen.
  static void TELL_PAIRS(const std::string& name, std::ostream& results) {
    for (int i = 1; i <= REFERENCE().NATOMS; ++i) {
      if (REFERENCE().NBONDS(i) < 1) continue;
      const VALENCE_LAW law = VALENCE_LAW_OF(REFERENCE(), i, 1, BV_PAIRS);
      if (law.COUNT > 0)
        results << "pair\t" << name << '\t' << REFERENCE().ATOM(i).LAB << '\t' << law.TERMS[0].D0
                << '\t' << law.TERMS[0].B << '\n';
    }
  }

  static void TELL_MEASURE(const std::string& name, const std::string& text,
                           std::ostream& results) {
    MEASURES.clear();
    const std::string error = DEFINE_MEASURE("m", text);
    EXPECT_EQ(error, "") << name << ": " << text;
    if (!error.empty()) return;
    const MEASURED_VALUE value = MEASURE_BLOCKS({1}).front().front();
    EXPECT_TRUE(value.FOUND) << name << ": " << text;
    results << "measure\t" << name << '\t' << text << '\t'
            << TEXT_WITH_CODES(MEASURES[0].FORMULA, MEASURES[0].BOUND) << '\t'
            << std::setprecision(9) << value.VALUE << '\t' << value.ESD << '\n';
  }

  // What the program has for the structures of the judge.
  static void WRITE_RESULTS() {
    std::ifstream index("index.txt");
    std::ofstream results("results.tsv");
    std::string name;
    int measures = 0;
    for (std::string line; std::getline(index, line);) {
      std::istringstream words(line);
      std::string kind;
      words >> kind;
      if (kind == "measure") {
        TELL_MEASURE(name, line.substr(kind.size() + 1), results);
        ++measures;
        continue;
      }
      float dmax = 0.0f;
      words >> name >> dmax;
      ALLOCATE_PHASE_LIST(START_PHASES);
      CLEAR_FACETOR_VALENCE();
      READ_AND_CALCULATE(name, dmax);
      ASSERT_EQ(NPHASES, 1) << name;
      for (const std::string& op : REFERENCE().SPG.SYMOPSYMB)
        results << "operator\t" << name << '\t' << op << '\n';
      TELL_PAIRS(name, results);
    }
    std::cout << measures << " measures\n";
    MEASURES.clear();
    ALLOCATE_PHASE_LIST(START_PHASES);
    CLEAR_FACETOR_VALENCE();
    RUN = {};
  }
};

TEST_F(MEASURES_JUDGED, VALUES_AND_ESDS_ARE_THOSE_OF_NUMPY) {
  SET_DEFAULT_CHARGES();
  if (JUDGE("measure_values.py", "--write .") == not_installed)
    GTEST_SKIP() << "numpy or gemmi is not installed";
  WRITE_RESULTS();
  EXPECT_EQ(JUDGE("measure_values.py", "results.tsv"), 0) << TEXT_OF("judged.txt");
  EXPECT_EQ(JUDGE("measure_esds.py", "results.tsv"), 0) << TEXT_OF("judged.txt");
}

}  // namespace
