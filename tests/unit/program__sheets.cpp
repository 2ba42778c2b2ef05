// Sheets of the whole program: recorded and replayed, of blocks of other symmetry, against the
// printed tables (tests/judges/sheets.py), and read by pandas.
#include <array>

#include "program__console.h"

namespace {

using namespace PROGRAM_TESTS;

class SHEETS : public PROGRAM {};

// TiO6 in a cube and in the same cube with a fourfold axis alone.
std::string TITANATE(const std::string& name, const std::string& group, const std::string& c) {
  return "data_" + name + "\n_cell_length_a 4.000(2)\n_cell_length_b 4.000(2)\n_cell_length_c " +
         c +
         "\n_cell_angle_alpha 90\n_cell_angle_beta 90\n_cell_angle_gamma 90\n"
         "_symmetry_space_group_name_H-M '" +
         group +
         "'\nloop_\n_atom_site_label\n_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n"
         "Ti1 0 0 0\nO1 0.5 0 0\n" +
         (group == "P m -3 m" ? "" : "O2 0 0 0.5\n");
}

const std::string calculate = "Y\nSET exclude\nY\nY\nY\nY\nCALC poly\n1 2.3\n\n";

}  // namespace

// Half the cell is a bond; 0.002/2 is its esd.
TEST_F(SHEETS, A_BLOCK_OF_LESS_SYMMETRY_KEEPS_APART_WHAT_THE_REFERENCE_HAS_EQUAL) {
  PUT_FILE(work / "cubic.cif", TITANATE("cubic", "P m -3 m", "4.000(2)"));
  PUT_FILE(work / "both.cif", TITANATE("cubic", "P m -3 m", "4.000(2)") +
                                  TITANATE("tetragonal", "P 4/m m m", "4.200(2)"));
  RUN("READ cif cubic.cif\n" + calculate + "CSV bond Ti1 one.tsv\nCSV cells one.tex\nEXIT\n");
  EXPECT_EQ(LINES(TEXT_OF(work / "one.tsv"))[2], "Ti1-O1 ×6\t2.0000(10)");
  const std::vector<std::string> cell = LINES(TEXT_OF(work / "one.tex"));
  ASSERT_EQ(cell.size(), 5u);
  EXPECT_EQ(cell[2], "a $\\times$3 & 4.000(2) \\\\");
  EXPECT_EQ(cell[3], "alpha $\\times$3 & 90.0000 \\\\");
  RUN("READ cif both.cif\n" + calculate + "CSV bond Ti1 two.tsv\nEXIT\n");
  const std::vector<std::string> lines = LINES(TEXT_OF(work / "two.tsv"));
  ASSERT_GE(lines.size(), 4u);
  const std::string both = lines[2] + "\n" + lines[3];
  EXPECT_NE(both.find("Ti1-O1 ×4\t2.0000(10)\t2.0000(10)"), std::string::npos) << both;
  EXPECT_NE(both.find("Ti1-O1 ×2\t2.0000(10)\t2.1000(10)"), std::string::npos) << both;
}

TEST_F(SHEETS, A_RECORDED_SHEET_IS_REPLAYED) {
  PUT_FILE(work / "cubic.cif", TITANATE("cubic", "P m -3 m", "4.000(2)"));
  RUN("READ cif cubic.cif\nY\nRECORD made.mcr\nCSV\n2\nTi1\nsites\nCSV cells "
      "cells.csv\nEND\nEXIT\n");
  EXPECT_EQ(TEXT_OF(work / "made.mcr"), "CSV\n2\nTi1\nsites\nCSV cells cells.csv\nEND\n");
  const std::string sites = TEXT_OF(work / "sites.csv");
  EXPECT_NE(sites, "");
  PUT_FILE(work / "sites.csv", "old");
  const RUN_RESULT run = RUN("READ cif cubic.cif\nY\nLOG said\nMACRO made.mcr\nEXIT\n");
  EXPECT_EQ(TEXT_OF(work / "sites.csv"), sites);
  for (const std::string& said : {run.SAID, TEXT_OF(work / "said.log")}) {
    EXPECT_NE(
        said.find("Save csv file (*.csv):sites\n     The file sites.csv exists: it is replaced\n"
                  "     1 rows written to the file\n"),
        std::string::npos)
        << said;
  }
}

TEST_F(SHEETS, ABBREVIATIONS_ARE_AS_BEFORE) {
  const RUN_RESULT run = RUN("C\nCA\nCS\nEXIT\n");
  EXPECT_EQ(COUNT_OF(run.SAID, "*****Ambiguous command"), 1u) << run.SAID;
  EXPECT_EQ(COUNT_OF(run.SAID, "WARNING"), 2u) << run.SAID;  // no blocks, of CALC and CSV
}

TEST_F(SHEETS, HOLD_WHAT_TABLES_SHOW) {
  if (std::system("command -v python3 > /dev/null") != 0) GTEST_SKIP() << "no python3";
  std::string command = "python3 '" + PLACES::SOURCE() + "/tests/judges/sheets.py' \"$GEMMARA\"";
  for (const std::string sub : {"/examples", "/tests/transcripts/data"})
    command += " '" + PLACES::SOURCE() + sub + "'";
  const std::string said = SHELL(command).SAID;
  ASSERT_FALSE(said.empty());
  std::istringstream counts(LINES(said).back());
  std::array<int, 4> number{0, 0, 0, -1};
  for (int& count : number) counts >> count;
  EXPECT_EQ(number[3], 0) << said;
  EXPECT_GT(number[0], 20);
  EXPECT_GT(number[1], 100 * number[0]);
  EXPECT_GT(number[2], 100 * number[0]);
}

// The long form turned into the wide one has its columns and values.
TEST_F(SHEETS, PANDAS_MAKES_THE_LONG_FORM_WIDE) {
  if (std::system("/usr/bin/python3 -c 'import pandas' 2> /dev/null") != 0)
    GTEST_SKIP() << "python3-pandas is not installed";
  RUN("READ cif '" + PLACES::SOURCE() +
      "/examples/hematite-pressure/hematite.cif'\nY\nCALC poly\n\n\nCSV bond ALL wide.csv\n"
      "CSV all long.csv\nEXIT\n");
  PUT_FILE(work / "judge.py",
           "import pandas\n"
           "wide = pandas.read_csv('wide.csv').set_index('block')\n"
           "long = pandas.read_csv('long.csv')\n"
           "long = long[long.quantity == 'bond']\n"
           "for values, end in (('value', ''), ('esd', '_esd')):\n"
           "    made = long.pivot(index='block', columns='feature', values=values)\n"
           "    made = made.dropna(axis=1, how='all').add_suffix(end)\n"
           "    pandas.testing.assert_frame_equal(made, wide[made.columns], check_names=False,\n"
           "                                      check_dtype=False, check_exact=True)\n"
           "    print(made.shape)\n");
  // 6 blocks; 6 and 4 bonds, five values behind each; esds of bonds and volumes.
  const RUN_RESULT run = SHELL("/usr/bin/python3 judge.py");
  EXPECT_EQ(run.SAID, "(6, 20)\n(6, 12)\n") << run.ERRORS;
}
