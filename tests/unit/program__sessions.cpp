// Whole sessions: some at random, judged by tests/judges/random_sessions.py, and what such sessions
// have found.
#include <array>

#include "program__console.h"
#include "said_by.h"

using namespace PROGRAM_TESTS;

namespace {

class SESSIONS : public PROGRAM {
 protected:
  void SetUp() override {
    PROGRAM::SetUp();
    PUT_FILE(work / "a.cif",
             "data_global\n_cell_length_a 5.0\n_cell_length_b 6.0\n_cell_length_c 7.0\n"
             "_cell_angle_alpha 90\n_cell_angle_beta 90\n_cell_angle_gamma 90\n"
             "_space_group_name_H-M_alt 'P m m m'\nloop_\n_atom_site_label\n_atom_site_fract_x\n"
             "_atom_site_fract_y\n_atom_site_fract_z\nFe1 0 0 0\nO1 0.4 0 0\n");
  }

  // The macro that these lines leave when they are recorded behind reading and CALC.
  std::string RECORDED(const std::string& lines) const {
    RUN("READ full a.cif\nY\nCALC poly\n\n0\nRECORD again\n" + lines + "END\nEXIT\n");
    return TEXT_OF(work / "again.mcr");
  }
};

}  // namespace

TEST_F(SESSIONS, AT_RANDOM_HOLD_THEIR_PROPERTIES) {
  if (std::system("command -v python3 > /dev/null") != 0) GTEST_SKIP() << "no python3";
  const std::string source = PLACES::SOURCE();
  std::string command =
      "python3 '" + source + "/tests/judges/random_sessions.py' '" + PLACES::PROGRAM() + "' 40 1";
  for (const std::string place : {"/examples", "/tests/transcripts/data", "/tests/odd"})
    command += " '" + source + place + "'";
  const std::string said = SAID_BY(command + " 2>&1");
  ASSERT_FALSE(said.empty());
  std::istringstream counts(LINES(said).back());
  std::array<int, 6> count{};
  for (int& number : count) counts >> number;
  const auto [sessions, runs, tables, rows, cells, finds] = count;
  ASSERT_TRUE(counts) << said;
  EXPECT_EQ(finds, 0) << said;
  EXPECT_EQ(sessions, 40);
  EXPECT_GE(runs, 60) << "half of the sessions take two runs at least";
  EXPECT_GT(rows, 1000) << "the sessions have shown no tables";
  EXPECT_GT(cells, 100) << "the sessions have compared no sheets";
  EXPECT_GT(tables, 500);
}

TEST_F(SESSIONS, CLEAR_FORGETS_THE_LAST_FIT) {
  const std::string fit =
      "READ full a.cif a.cif a.cif\nY\nPTEDIT\nP\n1 1\n2 2\n3 3\n\n\nFIT cells P\n";
  EXPECT_NE(RUN(fit + "CSV\n0\nEXIT\n").SAID.find(": fit\n"), std::string::npos);
  EXPECT_EQ(RUN(fit + "CLEAR\nREAD full a.cif\nY\nCSV\n0\nEXIT\n").SAID.find(": fit\n"),
            std::string::npos);
}

TEST_F(SESSIONS, A_BLOCK_CALLED_GLOBAL_IS_WRITTEN_SO_THAT_READ_CIF_FINDS_IT) {
  const RUN_RESULT run =
      RUN("READ full a.cif\nY\nWRITE cif b\nY\nCLEAR\nREAD cif b.cif\nY\nEXIT\n");
  EXPECT_NE(TEXT_OF(work / "b.cif").find("data_glob_al\n"), std::string::npos);
  EXPECT_NE(run.SAID.find("  1: glob_al       : 298.0   0.000         1\n"), std::string::npos);
}

TEST_F(SESSIONS, A_LINE_END_IN_A_TITLE_DOES_NOT_GET_INTO_THE_NAME_OF_A_WRITTEN_BLOCK) {
  std::string text = TEXT_OF(work / "a.cif");
  PUT_FILE(work / "a.cif", text.replace(text.find("global\n"), 7, "old\rend\n"));
  RUN("READ cif a.cif\nY\nWRITE cif b\nY\nEXIT\n");
  EXPECT_NE(TEXT_OF(work / "b.cif").find("data_old_end\n"), std::string::npos);
}

TEST_F(SESSIONS, A_SITE_THAT_IS_REFUSED_IS_NOT_RECORDED) {
  EXPECT_EQ(RECORDED("CSV bond Zz\nYy\nFe1\ns.csv\n"), "CSV bond\nFe1\ns.csv\nEND\n");
  // The first Y replaces the macro of before.
  EXPECT_EQ(RECORDED("Y\nCSV\n4\nZz\nFe1\nt.csv\n"), "CSV\n4\nFe1\nt.csv\nEND\n");
}

TEST_F(SESSIONS, A_FILE_NAME_THAT_IS_REFUSED_IS_NOT_RECORDED) {
  EXPECT_EQ(RECORDED("CSV cells s.cif\ns.csv\nWRITE cif w.csv\nw.cif\nY\nN\n\n\n"),
            "CSV cells\ns.csv\nWRITE cif\nw.cif\nY\nN\n\n\nEND\n");
}

TEST_F(SESSIONS, A_GRAPH_REFUSED_FOR_ITS_ABSCISSA_MEASURES_OR_FILE_IS_RECORDED_WITHOUT_THEM) {
  EXPECT_EQ(RECORDED("GRAPH cells zz\nP\ng.txt\ng.svg\n"), "GRAPH cells\nP\ng.svg\nEND\n");
}

// A macro replaces without a question, so its lines hold neither the answer nor a name given up.
TEST_F(SESSIONS, A_FILE_THAT_IS_NOT_TO_BE_REPLACED_IS_NOT_RECORDED) {
  PUT_FILE(work / "s.csv", "mine\n");
  const std::string macro = RECORDED("CSV cells s.csv\nN\nt.csv\nCSV cells t.csv\nY\n");
  EXPECT_EQ(macro, "CSV cells\nt.csv\nCSV cells t.csv\nEND\n");
  RUN("READ full a.cif\nY\nMACRO again\nEXIT\n");
  EXPECT_EQ(TEXT_OF(work / "s.csv"), "mine\n");
}
