// GRAPH and FIT by the whole program, on series whose lengths are worked out by hand: an Fe atom at
// the origin of P m m m with two O at x and -x along a cell edge of 10 angstroms, so that the bond
// is ten times x, and its esd ten times that of x.
#include <algorithm>
#include <cmath>

#include "program__console.h"

using namespace PROGRAM_TESTS;

namespace {

struct BLOCK {
  std::string TITLE;
  std::string P;
  std::string T;
  std::string X;
};

std::string CIF(const std::vector<BLOCK>& blocks) {
  std::string text;
  for (const BLOCK& block : blocks)
    text += "data_" + block.TITLE +
            "\n_cell_length_a 10.0\n_cell_length_b 11.0\n_cell_length_c 12.0\n"
            "_cell_angle_alpha 90\n_cell_angle_beta 90\n_cell_angle_gamma 90\n"
            "_space_group_name_H-M_alt 'P m m m'\n"
            "_diffrn_ambient_pressure " +
            block.P + "\n_diffrn_ambient_temperature " + block.T +
            "\nloop_\n_atom_site_label\n_atom_site_type_symbol\n_atom_site_fract_x\n"
            "_atom_site_fract_y\n_atom_site_fract_z\nFe1 Fe2+ 0 0 0\nO1 O2- " +
            block.X + " 0 0\n";
  return text;
}

// Pressures in kPa. The bond is 2.000, 1.990, 1.980, 1.970 with an esd of 0.001.
const std::vector<BLOCK> series{{"one", "1000000", "298", "0.2000(1)"},
                                {"two", "2000000", "298", "0.1990(1)"},
                                {"three", "3000000", "298", "0.1980(1)"},
                                {"four", "4000000", "298", "0.1970(1)"}};

std::vector<BLOCK> WITH(std::vector<BLOCK> blocks, std::size_t k, const BLOCK& block) {
  blocks[k] = block;
  return blocks;
}

class GRAPHS : public PROGRAM {
 protected:
  void SetUp() override {
    PROGRAM::SetUp();
    const char* const found = std::getenv("PATH");
    usual_path = found != nullptr ? found : "";
    PUT_FILE(work / "series.cif", CIF(series));
    PUT_STAND_IN("cat > seen.gp; echo '<svg/>'");
  }
  void TearDown() override {
    ::setenv("PATH", usual_path.c_str(), 1);
    PROGRAM::TearDown();
  }

  // A program that is found in place of gnuplot.
  void PUT_STAND_IN(const std::string& text) const {
    fs::create_directories(folder / "bin");
    PUT_FILE(folder / "bin/gnuplot", "#!/bin/sh\n" + text + "\n");
    fs::permissions(folder / "bin/gnuplot", fs::perms::owner_all);
    ::setenv("PATH", ((folder / "bin").string() + ":/usr/bin:/bin").c_str(), 1);
  }
  void TAKE_GNUPLOT_AWAY() const { ::setenv("PATH", (folder / "nowhere").c_str(), 1); }

  // What is said behind reading and CALC.
  RUN_RESULT BEHIND_CALC(const std::string& lines, const std::string& file = "series.cif") const {
    RUN_RESULT result = RUN("READ full " + file + "\ny\nCALC poly\n\n0\n" + lines + "EXIT\n");
    const std::size_t at = result.SAID.rfind("1: polyhedra and bonds");
    result.SAID = at == std::string::npos ? "" : result.SAID.substr(at);
    return result;
  }
  // The same lines as a macro.
  RUN_RESULT IN_A_MACRO(const std::string& lines) const {
    PUT_FILE(work / "m.mcr", "READ full series.cif\ny\nCALC poly\n\n0\n" + lines + "EXIT\n");
    return RUN("EXIT\n", "m.mcr");
  }

  std::vector<std::string> FILES() const {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(work))
      names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }

  std::string usual_path;
};

// Of a line of a sheet without quotes.
std::vector<std::string> FIELDS(const std::string& line) {
  std::vector<std::string> fields;
  std::istringstream stream(line + ",");
  for (std::string field; std::getline(stream, field, ',');) fields.push_back(field);
  return fields;
}

bool IS_INSTALLED(const std::string& program) {
  return std::system(("command -v " + program + " > /dev/null").c_str()) == 0;
}

bool HAS(const std::string& text, std::string_view part) {
  return text.find(part) != std::string::npos;
}

void EXPECT_SAYS(const std::string& text, std::string_view part) {
  EXPECT_TRUE(HAS(text, part)) << "missing: " << part << "\nin: " << text;
}

// ---- FIT ----

// y = 2 - 0.01 (P - 1) exactly, esd 0.001 at P 1, 2, 3, 4: the squares of P about 2.5 sum up to 5.
// Slope 0.001/sqrt(5) = 0.00045; value 0.001 sqrt(1/4 + 1.5^2/5) = 0.00084; relative slope -0.005,
// its variance (0.2 + 0.005^2 0.7 - 2 (-0.005)(-0.3)) 1e-6/4, esd 0.00022. Esds are rounded up.
TEST_F(GRAPHS, FIT_PRINTS_A_LINE_A_FEATURE) {
  EXPECT_SAYS(BEHIND_CALC("FIT bond Fe1 P\n").SAID,
              "     FEATURE       N AT P = 1        PER GPa         10^-3 PER GPa      CHI2\n"
              "     Fe1-O1 ×2     4 2.0000(9)      -0.0100(5)      -5.0(3)             0.00\n");
}

TEST_F(GRAPHS, FIT_ASKS_WHEN_NOTHING_IS_ON_THE_LINE) {
  const std::string typed = BEHIND_CALC("FIT\n2\nFe1\n\n").SAID;
  EXPECT_SAYS(typed,
              "     Possible selections for Fit:\n      1: cells\n      2: bond lengths\n"
              "      3: angles between bonds\n      4: polyhedral volumes\n"
              "      5: valences of bonds\n      0: Exit\n");
  EXPECT_SAYS(typed, "     Against P, T, or a measure <P>?");
  EXPECT_SAYS(typed, "     Fe1-O1 ×2     4 2.0000(9)      -0.0100(5)");
}

TEST_F(GRAPHS, FIT_OF_A_PARABOLA_SHOWS_THE_SECOND_COEFFICIENT) {
  PUT_FILE(work / "curve.cif", CIF({{"a", "0", "298", "0.2000(1)"},
                                    {"b", "1000000", "298", "0.1990(1)"},
                                    {"c", "2000000", "298", "0.1982(1)"},
                                    {"d", "3000000", "298", "0.1976(1)"},
                                    {"e", "4000000", "298", "0.1972(1)"}}));
  // 2.000 - 0.011 P + 0.001 P^2.
  const std::string said = BEHIND_CALC("FIT bond Fe1 P 2\nFIT bond Fe1 P\n", "curve.cif").SAID;
  EXPECT_SAYS(said, "CHI2 PER GPa^2\n");
  EXPECT_SAYS(said, " 5 2.0000(10)     -0.0110(12)     -5.5(6)             0.00 0.0010(3)\n");
  // The line leaves 0.002, -0.001, -0.002, -0.001, 0.002: 14 over 3 degrees of freedom.
  EXPECT_SAYS(said, "4.67 curved: try 2\n");
}

TEST_F(GRAPHS, FIT_NEEDS_THREE_BLOCKS_AND_TWO_ABSCISSAE) {
  const std::string said = BEHIND_CALC(
                               "OMIT 3 4\n\nFIT bond Fe1 P\nUSE 3\n\nFIT bond Fe1 T\n"
                               "FIT bond Fe1 P 2\n")
                               .SAID;
  EXPECT_SAYS(said, "     Fe1-O1 ×2     2 No line: fewer than three blocks\n");
  EXPECT_SAYS(said, "     Fe1-O1 ×2     3 No line: fewer than two different T\n");
  EXPECT_SAYS(said, "     Fe1-O1 ×2     3 No parabola: fewer than four blocks\n");
}

TEST_F(GRAPHS, FIT_TELLS_WHERE_JUST_SOME_BLOCKS_HAVE_AN_ESD) {
  PUT_FILE(work / "some.cif", CIF(WITH(series, 2, {"three", "3000000", "298", "0.1980"})));
  // Equal weights have no chi-square that could tell of a curve.
  EXPECT_SAYS(BEHIND_CALC("FIT bond Fe1 P\n", "some.cif").SAID,
              " No value equal weights: just some blocks have an esd\n");
}

TEST_F(GRAPHS, FIT_BECOMES_A_SHEET) {
  BEHIND_CALC("FIT bond Fe1 P\nCSV fit line.csv\nFIT bond Fe1 P 2\nCSV fit curve.csv\n");
  const std::vector<std::string> line = LINES(TEXT_OF(work / "line.csv"));
  ASSERT_EQ(line.size(), 2u);
  EXPECT_EQ(line[0], "feature,n,at,value,value_esd,slope,slope_esd,relative,relative_esd,chi2");
  EXPECT_EQ(line[1].substr(0, 15), "Fe1-O1 ×2,4,1,");
  EXPECT_EQ(LINES(TEXT_OF(work / "curve.csv"))[0],
            "feature,n,at,value,value_esd,slope,slope_esd,relative,relative_esd,chi2,second,"
            "second_esd");
}

// Temperatures vary and pressures do not: T is the default. 2.00 + 0.0001 (T - 100): 5e-5 a kelvin,
// 50 in 10^-6.
TEST_F(GRAPHS, TEMPERATURE_IS_THE_DEFAULT_WHERE_ONLY_IT_VARIES) {
  PUT_FILE(work / "warm.cif", CIF({{"a", "100", "100", "0.2000(1)"},
                                   {"b", "100", "200", "0.2010(1)"},
                                   {"c", "100", "300", "0.2020(1)"}}));
  const std::string said = BEHIND_CALC("FIT bond Fe1\n\n", "warm.cif").SAID;
  EXPECT_SAYS(said, "     Against P, T, or a measure <T>?");
  EXPECT_SAYS(said, "AT T = 100      PER K           10^-6 PER K        CHI2\n");
  EXPECT_SAYS(said, " 3 2.0000(10)      0.000100(7)     50(4)              0.00\n");
}

TEST_F(GRAPHS, A_MEASURE_MAY_BE_THE_ABSCISSA) {
  const std::string said =
      BEHIND_CALC("MEASURE d = dist(Fe1, O1)\nMEASURE twice = 2*d\nFIT\n6\ntwice d\nd\n").SAID;
  // Slopes 2 and 1 against d itself. The esd of d is carried over: that of a point is 0.0028 and
  // 0.0014, that of the slope this over 0.01 sqrt(5), of the value this times sqrt(0.7).
  EXPECT_SAYS(said, " AT d = ");
  EXPECT_SAYS(said, "     twice       4 4.000(3)        2.00(13)");
  EXPECT_SAYS(said, "     d           4 2.0000(12)      1.00(7)");
}

TEST_F(GRAPHS, A_WORD_THAT_IS_NO_ABSCISSA_IS_ASKED_FOR_AGAIN) {
  const std::string said = BEHIND_CALC("FIT bond Fe1 Q\nP 3\nP\n").SAID;
  const std::string wanted =
      " is not known here: answer P, T or the name of a measure, and 2 for a parabola\n";
  EXPECT_SAYS(said, "*****\"Q\"" + wanted);
  EXPECT_SAYS(said, "*****\"P 3\"" + wanted);
  EXPECT_SAYS(said, "     Fe1-O1 ×2     4 2.0000(9)");
  const std::string macro = IN_A_MACRO("FIT bond Fe1 Q\nFIT bond Fe1 P\n").SAID;
  EXPECT_EQ(COUNT_OF(macro, "*****\"Q\"" + wanted), 1u);
  const std::string drawn = BEHIND_CALC("GRAPH bond Fe1 Q\nP\n\n").SAID;
  EXPECT_SAYS(drawn, "*****\"Q\" is not known here: answer P, T or the name of a measure\n");
  EXPECT_SAYS(macro, "     Fe1-O1 ×2     4 2.0000(9)");
}

TEST_F(GRAPHS, WITHOUT_CALC_CELLS_ALONE_ARE_OFFERED) {
  const std::string said = RUN("FIT\nREAD full series.cif\ny\nFIT cells P\nFIT\n0\nEXIT\n").SAID;
  EXPECT_SAYS(said, "Possible selections for Fit:\n      1: cells\n      0: Exit\n");
  // Every cell is the same, without esds: value, slope and relative slope have none either.
  EXPECT_SAYS(said, "     a           4 10.0000         0.00000         0.00000        No value\n");
}

// The values that a graph draws, fitted by numpy as well: lines and parabolas, pressures with esds,
// bonds with esds and without.
TEST_F(GRAPHS, NUMPY_FITS_THE_SAME_TO_THE_SHEET) {
  if (std::system("/usr/bin/python3 -c 'import numpy' 2> /dev/null") != 0)
    GTEST_SKIP() << "python3-numpy is not installed";
  std::vector<BLOCK> blocks{
      {"a", "1000000(20000)", "298", "0.2003(1)"}, {"b", "2000000(40000)", "298", "0.1989(2)"},
      {"c", "3500000(30000)", "298", "0.1975(1)"}, {"d", "5000000(90000)", "298", "0.1968(3)"},
      {"e", "7000000(50000)", "298", "0.1957(1)"}, {"f", "9000000(60000)", "298", "0.1951(2)"}};
  const std::string judge =
      "/usr/bin/python3 -B '" + PLACES::SOURCE() + "/tests/judges/line_fit.py'";
  for (const bool esds : {true, false}) {
    if (!esds)
      for (BLOCK& block : blocks) block.X.resize(6);
    PUT_FILE(work / "many.cif", CIF(blocks));
    BEHIND_CALC(
        "GRAPH bond Fe1 P points.svg\ny\nFIT bond Fe1 P\nCSV fit line.csv\ny\n"
        "FIT bond Fe1 P 2\nCSV fit curve.csv\ny\n",
        "many.cif");
    EXPECT_EQ(LINES(TEXT_OF(work / "points.csv")).size(), 7u);
    for (const char* const sheet : {"line.csv", "curve.csv"}) {
      const RUN_RESULT judged = SHELL(judge + " --sheets points.csv " + sheet);
      EXPECT_EQ(judged.STATUS, 0) << judged.SAID << judged.ERRORS;
    }
  }
}

// ---- GRAPH ----

TEST_F(GRAPHS, THREE_FILES_ARE_WRITTEN) {
  const std::string said = BEHIND_CALC("GRAPH bond Fe1 P bonds.svg\n").SAID;
  EXPECT_SAYS(said,
              "     4 rows written to bonds.csv, the script to bonds.gp\n"
              "     The graph is drawn in bonds.svg\n");
  const std::vector<std::string> sheet = LINES(TEXT_OF(work / "bonds.csv"));
  ASSERT_EQ(sheet.size(), 5u);
  EXPECT_EQ(sheet[0], "block,title,T,T_esd,P,P_esd,use,Fe1-O1[1],Fe1-O1[1]_esd");
  for (std::size_t k = 1; k < sheet.size(); ++k) {
    const std::vector<std::string> fields = FIELDS(sheet[k]);
    ASSERT_EQ(fields.size(), 9u) << sheet[k];
    EXPECT_EQ(fields[1], series[k - 1].TITLE);
    EXPECT_EQ(fields[4], std::to_string(k));
    EXPECT_NEAR(std::stod(fields[7]), 2.01 - 0.01 * static_cast<double>(k), 1e-6);
    EXPECT_NEAR(std::stod(fields[8]), 0.001, 1e-5);
  }
  const std::string script = TEXT_OF(work / "bonds.gp");
  EXPECT_SAYS(script, "plot 'bonds.csv' using 5:8:(esd(6)):(esd(9)) with xyerrorbars");
  EXPECT_SAYS(script, "title 'Fe1-O1 ×2'");
  EXPECT_EQ(TEXT_OF(work / "bonds.svg"), "<svg/>\n");
  // gnuplot gets the same script without the line that names the picture.
  std::string to_output = script;
  to_output.erase(to_output.find("set output"), std::string("set output 'bonds.svg'\n").size());
  EXPECT_EQ(TEXT_OF(work / "seen.gp"), to_output);
}

TEST_F(GRAPHS, THE_DIALOGUE_ASKS_ONE_THING_AFTER_THE_OTHER) {
  const std::string said = BEHIND_CALC("GRAPH\n2\nFe1\n\nbonds\n").SAID;
  EXPECT_SAYS(said, "Possible selections for Graph:");
  EXPECT_SAYS(said, "Enter central site name (or ALL):");
  EXPECT_SAYS(said, "Against P, T, or a measure <P>?");
  EXPECT_SAYS(said, "Save graph (*.svg):");
  EXPECT_SAYS(said, "The graph is drawn in bonds.svg");
}

TEST_F(GRAPHS, BLOCKS_THAT_ARE_NOT_USED_ARE_NOT_DRAWN) {
  BEHIND_CALC("OMIT 2\n\nGRAPH bond Fe1 P bonds.svg\nOMIT 1\n3\nGRAPH bond Fe1 P later.svg\n");
  EXPECT_EQ(LINES(TEXT_OF(work / "bonds.csv")).size(), 4u);
  EXPECT_SAYS(TEXT_OF(work / "bonds.gp"), "($1 == 1 ? column(n) : NaN)");
  EXPECT_EQ(LINES(TEXT_OF(work / "later.csv")).size(), 3u);
  EXPECT_SAYS(TEXT_OF(work / "later.gp"), "($1 == 3 ? column(n) : NaN)");
}

// Each over its value in the reference block; a, b and c are 10, 11, 12 in all blocks.
TEST_F(GRAPHS, CELLS_ARE_DRAWN_OVER_THE_REFERENCE) {
  BEHIND_CALC("GRAPH cells P cells.svg\n");
  const std::vector<std::string> sheet = LINES(TEXT_OF(work / "cells.csv"));
  ASSERT_EQ(sheet.size(), 5u);
  EXPECT_EQ(sheet[0],
            "block,title,T,T_esd,P,P_esd,use,a/a0,a/a0_esd,b/b0,b/b0_esd,c/c0,c/c0_esd,V/V0,"
            "V/V0_esd");
  EXPECT_EQ(sheet[2], "2,two,298,,2,,1,1,,1,,1,,1,");
}

// The same values and esds as a measure has, digit for digit.
TEST_F(GRAPHS, CELLS_HAVE_THE_ESDS_OF_MEASURE) {
  std::string cif = CIF(series);
  for (const char* const edge : {"9.99(1)", "9.97(2)", "9.94(1)", "9.92(3)"})
    cif.replace(cif.find("length_a 10.0"), 13, std::string("length_a ") + edge);
  PUT_FILE(work / "series.cif", cif);
  BEHIND_CALC(
      "GRAPH cells P cells.svg\nMEASURE ra = a/ref(a)\nMEASURE rv = V/ref(V)\n"
      "CSV measures measures.csv\n");
  const std::vector<std::string> cells = LINES(TEXT_OF(work / "cells.csv"));
  const std::vector<std::string> measures = LINES(TEXT_OF(work / "measures.csv"));
  ASSERT_EQ(cells.size(), 5u);
  ASSERT_EQ(measures.size(), 5u);
  for (std::size_t k = 1; k < 5; ++k) {
    const std::vector<std::string> drawn = FIELDS(cells[k]);
    const std::vector<std::string> measured = FIELDS(measures[k]);
    ASSERT_EQ(drawn.size(), 15u);
    ASSERT_EQ(measured.size(), 11u);
    for (const std::size_t field : {0u, 1u}) {
      EXPECT_EQ(drawn[7 + field], measured[7 + field]);
      EXPECT_EQ(drawn[13 + field], measured[9 + field]);
      // The reference is 1 without an esd.
      EXPECT_EQ(measured[7 + field].empty(), k == 1 && field == 1);
    }
  }
}

// Four atoms whose last stands 175, 180 and 185 degrees around the middle two.
TEST_F(GRAPHS, TORSIONS_DO_NOT_JUMP) {
  struct TURN {
    std::string P, Y, Z;
  };
  std::string cif;
  for (const TURN& turn : {TURN{"1", "0.400381", "0.508716"}, TURN{"2", "0.4", "0.5"},
                           TURN{"3", "0.400381", "0.491284"}})
    cif += "data_" + turn.P +
           "\n_cell_length_a 10\n_cell_length_b 10\n_cell_length_c 10\n_cell_angle_alpha 90\n"
           "_cell_angle_beta 90\n_cell_angle_gamma 90\n_space_group_name_H-M_alt 'P 1'\n"
           "_diffrn_ambient_pressure " +
           turn.P +
           "000000\nloop_\n_atom_site_label\n_atom_site_type_symbol\n_atom_site_fract_x\n"
           "_atom_site_fract_y\n_atom_site_fract_z\nC1 C 0.5 0.6 0.5\nC2 C 0.5 0.5 0.5\n"
           "C3 C 0.6 0.5 0.5\nC4 C 0.6 " +
           turn.Y + " " + turn.Z + "\n";
  PUT_FILE(work / "turn.cif", cif);
  RUN("READ full turn.cif\ny\nMEASURE turn = torsion(C1, C2, C3, C4)\nGRAPH measures turn P t.svg\n"
      "FIT measures turn P\nCSV fit fit.csv\nEXIT\n");
  const std::vector<std::string> sheet = LINES(TEXT_OF(work / "t.csv"));
  ASSERT_EQ(sheet.size(), 4u);
  std::vector<double> angles;
  for (std::size_t k = 1; k < 4; ++k) angles.push_back(std::stod(FIELDS(sheet[k])[7]));
  EXPECT_NEAR(std::abs(angles[0]), 175.0, 0.001);
  EXPECT_NEAR(std::abs(angles[1]), 180.0, 0.001);
  EXPECT_NEAR(std::abs(angles[2]), 185.0, 0.001);
  EXPECT_GT(angles[0] * angles[2], 0.0);
  const std::vector<std::string> fit = LINES(TEXT_OF(work / "fit.csv"));
  ASSERT_EQ(fit.size(), 2u);
  EXPECT_NEAR(std::abs(std::stod(FIELDS(fit[1])[5])), 5.0, 0.001);  // degrees per GPa
  EXPECT_EQ(FIELDS(fit[1])[6], "");                                 // nothing scatters
}

TEST_F(GRAPHS, TWO_UNITS_HAVE_TWO_AXES_AND_THREE_ARE_REFUSED) {
  const std::string measures =
      "MEASURE d = dist(Fe1, O1)\nMEASURE w = angle(O1, Fe1, O1)\nMEASURE cell = V\n";
  const std::string said = BEHIND_CALC(measures +
                                       "GRAPH measures d w P two.svg\n"
                                       "GRAPH measures P three.svg\n")
                               .SAID;
  EXPECT_SAYS(TEXT_OF(work / "two.gp"), "set y2label 'w (°)'");
  EXPECT_SAYS(TEXT_OF(work / "two.gp"), "set ylabel 'd (Å)'");
  EXPECT_SAYS(said, "*****There are more than two units: choose measures of one or two\n");
  EXPECT_FALSE(fs::exists(work / "three.svg"));
}

TEST_F(GRAPHS, A_MEASURE_AS_ABSCISSA_STANDS_FIRST_IN_THE_SHEET) {
  BEHIND_CALC("MEASURE d = dist(Fe1, O1)\nGRAPH bond Fe1 d bonds.svg\n");
  EXPECT_EQ(LINES(TEXT_OF(work / "bonds.csv"))[0],
            "block,title,T,T_esd,P,P_esd,use,d,d_esd,Fe1-O1[1],Fe1-O1[1]_esd");
  EXPECT_SAYS(TEXT_OF(work / "bonds.gp"), "using 8:10:(esd(9)):(esd(11))");
  EXPECT_SAYS(TEXT_OF(work / "bonds.gp"), "set xlabel 'd (Å)'");
}

TEST_F(GRAPHS, NAMES_OF_MEASURES_ARE_CHECKED) {
  const std::string said =
      BEHIND_CALC("MEASURE d = dist(Fe1, O1)\nGRAPH measures\nd none\n\nP\nall.svg\n").SAID;
  EXPECT_SAYS(said, "     Names of measures (blanks between, blank for all):");
  EXPECT_SAYS(said, "*****");
  EXPECT_SAYS(said, "The graph is drawn in all.svg");
}

// ---- files that exist, and other names ----

TEST_F(GRAPHS, ONE_QUESTION_IS_ASKED_FOR_ALL_FILES_THAT_EXIST) {
  PUT_FILE(work / "bonds.csv", "old sheet");
  PUT_FILE(work / "bonds.svg", "old picture");
  const std::string said = BEHIND_CALC(
                               "GRAPH bond Fe1 P bonds.svg\nn\nother.svg\n"
                               "GRAPH bond Fe1 P bonds.svg\ny\n")
                               .SAID;
  EXPECT_EQ(COUNT_OF(said, "*****Files bonds.csv, bonds.svg exist"), 2u) << said;
  EXPECT_SAYS(said, "The graph is drawn in other.svg");
  EXPECT_SAYS(said, "The graph is drawn in bonds.svg");
  EXPECT_EQ(TEXT_OF(work / "bonds.svg"), "<svg/>\n");
}

TEST_F(GRAPHS, IN_A_MACRO_THEY_ARE_REPLACED_AND_TOLD) {
  PUT_FILE(work / "bonds.gp", "old script");
  const std::string said = IN_A_MACRO("GRAPH bond Fe1 P bonds.svg\n").SAID;
  EXPECT_SAYS(said, "     The file bonds.gp exists: it is replaced\n");
  EXPECT_SAYS(TEXT_OF(work / "bonds.gp"), "set terminal svg");
}

TEST_F(GRAPHS, OTHER_KINDS_OF_FILES_ARE_REFUSED) {
  const std::string said =
      BEHIND_CALC("GRAPH bond Fe1 P bonds.csv\nbonds.gp\nbonds.eps\nbonds.png\n").SAID;
  EXPECT_SAYS(said, "*****The file bonds.csv is of another kind\n");
  EXPECT_SAYS(said, "*****The file bonds.gp is of another kind\n");
  EXPECT_SAYS(said, "*****A graph is a svg, pdf or png: choose one of these extensions\n");
  EXPECT_SAYS(said, "The graph is drawn in bonds.png");
  EXPECT_SAYS(TEXT_OF(work / "bonds.gp"), "set terminal pngcairo");
}

// The script names its files without the folder, in which it is run.
TEST_F(GRAPHS, FILES_MAY_STAND_IN_A_FOLDER) {
  fs::create_directory(work / "figures");
  EXPECT_SAYS(BEHIND_CALC("GRAPH bond Fe1 P figures/bonds.pdf\n").SAID,
              "The graph is drawn in figures/bonds.pdf");
  EXPECT_SAYS(TEXT_OF(work / "figures/bonds.gp"), "plot 'bonds.csv'");
  EXPECT_TRUE(fs::exists(work / "figures/seen.gp"));
  EXPECT_SAYS(BEHIND_CALC("GRAPH bond Fe1 P ./figures/more\n").SAID,
              "The graph is drawn in ./figures/more.svg");
}

// ---- what goes wrong ----

TEST_F(GRAPHS, WITHOUT_GNUPLOT_THE_FILES_ARE_WRITTEN) {
  TAKE_GNUPLOT_AWAY();
  const std::string said = BEHIND_CALC("GRAPH bond Fe1 P bonds.svg\nGRAPH bond Fe1 P\n\n").SAID;
  EXPECT_SAYS(said, "*****gnuplot is not installed: bonds.gp draws bonds.csv when it is\n");
  EXPECT_SAYS(said, "*****gnuplot is not installed: name a file, and it is drawn when it is\n");
  EXPECT_EQ(FILES(), (std::vector<std::string>{"bonds.csv", "bonds.gp", "series.cif"}));
}

TEST_F(GRAPHS, AN_OLD_PICTURE_STAYS_WHEN_GNUPLOT_FAILS) {
  PUT_FILE(work / "bonds.svg", "old picture");
  PUT_STAND_IN("echo half a picture; echo '         line 0: no such thing' >&2; exit 1");
  const std::string said = BEHIND_CALC("GRAPH bond Fe1 P bonds.svg\ny\n").SAID;
  EXPECT_SAYS(said, "*****gnuplot: no such thing\n");
  EXPECT_EQ(TEXT_OF(work / "bonds.svg"), "old picture");
  PUT_STAND_IN("echo '         line 0: warning: empty x range' >&2; echo '<svg/>'");
  BEHIND_CALC("GRAPH bond Fe1 P bonds.svg\ny\n");
  EXPECT_EQ(TEXT_OF(work / "bonds.svg"), "<svg/>\n");
  PUT_STAND_IN("echo '         line 0: unknown or ambiguous terminal type; type ...' >&2; exit 1");
  EXPECT_SAYS(BEHIND_CALC("GRAPH bond Fe1 P bonds.pdf\ny\n").SAID,
              "*****This gnuplot draws no pdf: choose svg\n");
}

TEST_F(GRAPHS, A_FULL_DISK_IS_TOLD) {
  for (const char* const name : {"bonds.csv", "later.gp", "last.svg"})
    fs::create_symlink("/dev/full", work / name);
  const std::string said = BEHIND_CALC(
                               "GRAPH bond Fe1 P bonds.svg\ny\nGRAPH bond Fe1 P later.svg\n"
                               "y\nGRAPH bond Fe1 P last.svg\ny\n")
                               .SAID;
  EXPECT_SAYS(said, "*****The file bonds.csv could not be written: No space left on device\n");
  EXPECT_SAYS(said, "*****The file later.gp could not be written: No space left on device\n");
  EXPECT_SAYS(said, "*****The file last.svg could not be written: No space left on device\n");
  EXPECT_FALSE(fs::exists(work / "bonds.gp"));
  EXPECT_FALSE(fs::exists(work / "later.svg"));
}

TEST_F(GRAPHS, A_FOLDER_THAT_IS_NOT_THERE_IS_TOLD) {
  EXPECT_SAYS(BEHIND_CALC("GRAPH bond Fe1 P nowhere/bonds.svg\n").SAID,
              "*****The file nowhere/bonds.csv could not be written");
}

TEST_F(GRAPHS, A_FOLDER_THAT_MAY_NOT_BE_WRITTEN_IS_TOLD) {
  const std::string as_nobody = "setpriv --reuid=65534 --clear-groups ";
  if (::geteuid() == 0 && SHELL(as_nobody + "cat \"$GEMMARA\"").STATUS != 0)
    GTEST_SKIP() << "root may write everywhere, and there is no other user";
  PUT_FILE(folder / "input",
           "READ full series.cif\ny\nCALC poly\n\n0\n"
           "GRAPH bond Fe1 P bonds.svg\nFIT bond Fe1 P\nEXIT\n");
  fs::permissions(work, fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                  fs::perm_options::remove);
  const RUN_RESULT run = SHELL((::geteuid() == 0 ? as_nobody : "") + "\"$GEMMARA\" < ../input");
  fs::permissions(work, fs::perms::owner_write, fs::perm_options::add);
  EXPECT_SAYS(run.SAID, "*****The file bonds.csv could not be written");
  EXPECT_SAYS(run.SAID, "     Fe1-O1 ×2     4 2.0000(9)");
  EXPECT_EQ(FILES(), std::vector<std::string>{"series.cif"});
}

// Titles, labels and names of files reach neither a shell nor gnuplot but as texts.
TEST_F(GRAPHS, NOTHING_IN_A_FILE_IS_RUN) {
  ::setenv("PATH", usual_path.c_str(), 1);
  std::vector<BLOCK> blocks = series;
  blocks[0].TITLE = "`touch${IFS}made`$(touch${IFS}made)";
  blocks[1].TITLE = "'\"@x\\";
  blocks[2].TITLE = "Å\x01|;EOD";
  std::string cif = CIF(blocks);
  for (std::size_t at = cif.find("O1 O2-"); at != std::string::npos; at = cif.find("O1 O2-", at))
    cif.replace(at, 6, "O1'`touch${IFS}made` O2-");
  PUT_FILE(work / "series.cif", cif);
  const std::string said =
      BEHIND_CALC("GRAPH bond Fe1 P $(touch made).svg\ny\nGRAPH bond Fe1 P\n\n").SAID;
  EXPECT_FALSE(fs::exists(work / "made")) << said;
  EXPECT_TRUE(fs::exists(work / "$(touch made).csv")) << said;
  if (!IS_INSTALLED("gnuplot")) GTEST_SKIP() << "gnuplot is not installed";
  EXPECT_SAYS(said, "The graph is drawn in $(touch made).svg");
  EXPECT_SAYS(TEXT_OF(work / "$(touch made).svg"), "</svg>");
}

// gnuplot gets UTF-8, whatever the file has.
TEST_F(GRAPHS, BYTES_OF_AN_OLDER_FILE_ARE_LATIN_1) {
  std::string cif = CIF(series);
  for (std::size_t at = cif.find("O1 O2-"); at != std::string::npos; at = cif.find("O1 O2-", at))
    cif.replace(at, 6, "O\xE5 O2-");
  PUT_FILE(work / "series.cif", cif);
  BEHIND_CALC("GRAPH bond Fe1 P bonds.svg\n");
  EXPECT_SAYS(TEXT_OF(work / "bonds.gp"), "title 'Fe1-Oå ×2'");
  EXPECT_SAYS(TEXT_OF(work / "bonds.csv"), ",Fe1-Oå[1],");
}

// ---- recorded, logged, in the terminal ----

TEST_F(GRAPHS, ARE_RECORDED_AND_REPLAYED) {
  BEHIND_CALC("RECORD again\nGRAPH\n2\nFe1\n\nbonds.svg\nFIT bond Fe1\n\nEND\n");
  const std::string recorded = TEXT_OF(work / "again.mcr");
  EXPECT_SAYS(recorded, "GRAPH\n2\nFe1\n\nbonds.svg\n");
  fs::remove(work / "bonds.svg");
  const std::string said = BEHIND_CALC("MACRO again\n").SAID;
  EXPECT_SAYS(said, "The files bonds.csv, bonds.gp exist: they are replaced");
  EXPECT_SAYS(said, "     Fe1-O1 ×2     4 2.0000(9)");
  EXPECT_TRUE(fs::exists(work / "bonds.svg"));
}

TEST_F(GRAPHS, A_BLANK_NAME_DRAWS_IN_THE_TERMINAL_AND_IN_THE_LOG) {
  PUT_STAND_IN("cat > /dev/null; echo; echo '  | A  B |  '; printf '  +------+\\014'");
  const std::string said = BEHIND_CALC("LOG it\nGRAPH bond Fe1 P\n\n").SAID;
  EXPECT_SAYS(said, "\n  | A  B |\n  +------+\n");
  EXPECT_SAYS(TEXT_OF(work / "it.log"), "\n  | A  B |\n  +------+\n");
  EXPECT_EQ(FILES(), (std::vector<std::string>{"it.log", "series.cif"}));
}

// ---- examples ----

// The figure of the README is what its macro makes.
TEST_F(GRAPHS, THE_FIGURE_OF_THE_README_IS_UP_TO_DATE) {
  const fs::path source = PLACES::SOURCE();
  fs::create_directories(work / "docs/figures");
  fs::copy(source / "examples", work / "examples", fs::copy_options::recursive);
  const RUN_RESULT run = SHELL("cd examples/figures && \"$GEMMARA\" figures.mcr < /dev/null");
  EXPECT_EQ(run.STATUS, 0) << run.SAID;
  for (const char* const name : {"hematite.csv", "hematite.gp"}) {
    EXPECT_EQ(TEXT_OF(work / "docs/figures" / name), TEXT_OF(source / "docs/figures" / name))
        << name;
    EXPECT_FALSE(TEXT_OF(source / "docs/figures" / name).empty());
  }
  EXPECT_TRUE(fs::exists(source / "docs/figures/hematite.svg"));
}

// A pyroxene, whose chain has one such angle, at the oxygens that two silicons share, and quartz.
TEST_F(GRAPHS, THE_SURVEY_MAKES_A_LINE_A_SITE) {
  ::setenv("PATH", usual_path.c_str(), 1);
  if (!IS_INSTALLED("parallel") || !IS_INSTALLED("python3"))
    GTEST_SKIP() << "GNU parallel or python3 is not installed";
  const std::string survey = PLACES::SOURCE() + "/examples/survey/survey.sh";
  const RUN_RESULT run = SHELL("'" + survey + "' '" + PLACES::SOURCE() + "/examples/measures' 2");
  EXPECT_EQ(run.STATUS, 0) << run.ERRORS;
  EXPECT_SAYS(run.SAID, " sites written to sites.csv");
  const std::string sites = TEXT_OF(work / "sites.csv");
  EXPECT_SAYS(sites, "sheet,title,site,ligands,mean_Si_O,mean_Si_O_Si\n");
  EXPECT_SAYS(sites, ",Diopside,Si,4,1.635");
  EXPECT_SAYS(sites, ",Quartz,Si1,4,1.608");
  EXPECT_SAYS(sites, ",143.7");
}

// ---- gnuplot itself ----

TEST_F(GRAPHS, GNUPLOT_DRAWS_THEM_ALL) {
  ::setenv("PATH", usual_path.c_str(), 1);
  if (!IS_INSTALLED("gnuplot")) GTEST_SKIP() << "gnuplot is not installed";
  const std::string said =
      BEHIND_CALC(
          "CALC val\n\n0\nMEASURE d = dist(Fe1, O1)\nMEASURE w = angle(O1, Fe1, O1)\n"
          "GRAPH cells P a.svg\nGRAPH bond ALL P b.pdf\nGRAPH angles Fe1 T c.png\n"
          "GRAPH measures d w P d.svg\nGRAPH bond Fe1 d e.png\nGRAPH bond Fe1 P\n\n")
          .SAID;
  for (const char* const name : {"a.svg", "b.pdf", "c.png", "d.svg", "e.png"})
    EXPECT_SAYS(said, std::string("The graph is drawn in ") + name);
  EXPECT_SAYS(said, "A Fe1-O1 ×2");
}

}  // namespace
