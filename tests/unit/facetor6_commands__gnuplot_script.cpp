// The gnuplot script of a graph, whole, and what gnuplot makes of it where it is installed.
#include "src/facetor6_graph/gnuplot_script.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <set>

#include "console_code/console_programs.h"

using namespace FACETOR_GRAPH;
using namespace KVA_CONSOLE;
namespace fs = std::filesystem;

namespace {

// Two bonds against pressure, the first block being the reference.
GRAPH TWO_BONDS() {
  GRAPH graph;
  graph.PICTURE_NAME = "bonds.svg";
  graph.SHEET_NAME = "bonds.csv";
  graph.X_TITLE = "P (GPa)";
  graph.Y_TITLE = "Bond length (Å)";
  graph.X_COLUMN = 5;
  graph.REFERENCE_BLOCK = 1;
  graph.ITEMS = {{"Fe1-O1[1] ×3", 8}, {"Fe1-O1[4] ×3", 10}};
  return graph;
}

std::string SCRIPT_OF(const GRAPH& graph, std::string_view sheet_text = "") {
  WORK work("", 1);
  return FACETOR_GRAPH::SCRIPT_OF(graph, work, sheet_text);
}

std::string SCRIPT_TO_OUTPUT(const GRAPH& graph, std::string_view sheet_text = "") {
  WORK work("", 1);
  return FACETOR_GRAPH::SCRIPT_TO_OUTPUT(graph, work, sheet_text);
}

constexpr std::string_view sheet =
    "block,title,T,T_esd,P,P_esd,use,Fe1-O1[1],Fe1-O1[1]_esd,Fe1-O1[4],Fe1-O1[4]_esd\n"
    "1,\"#1, \"\"in air\"\"\",298,,0.0001,,1,2.116,0.001,1.945,0.001\n"
    "2,$(touch made) `touch made` @x \\,298,,1.54,0.05,1,2.111,0.001,1.944,\n"
    "3,EOD,298,,3.1,0.05,1,,,1.943,0.002\n";

class GNUPLOT : public testing::Test {
 protected:
  void SetUp() override {
    path = FIND_PROGRAM("gnuplot");
    start = fs::current_path();
    folder = fs::temp_directory_path() / ("gemmara_gnuplot_" + std::to_string(::getpid()));
    fs::remove_all(folder);
    fs::create_directory(folder);
    fs::current_path(folder);
  }
  void TearDown() override {
    fs::current_path(start);
    fs::remove_all(folder);
  }
  // What the script draws; an error of gnuplot's fails.
  std::string DRAWN(const std::string& script, bool silent = true) const {
    PROGRAM_CALL call;
    call.PATH = path;
    call.ARGUMENTS = {"-d"};
    call.INPUT = script;
    const PROGRAM_ANSWER answer = RUN_PROGRAM(call);
    EXPECT_EQ(answer.END, PROGRAM_END::BY_ITSELF);
    EXPECT_EQ(answer.STATUS, 0) << answer.ERRORS;
    if (silent) {
      EXPECT_EQ(answer.ERRORS, "");
    }
    EXPECT_EQ(answer.ERRORS.find("gnuplot>"), std::string::npos) << answer.ERRORS;
    return answer.OUTPUT;
  }
  void PUT(const std::string& name, std::string_view text) const {
    std::ofstream(folder / name, std::ios::binary) << text;
  }
  std::size_t FILES() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
  }

  std::string path;
  fs::path start;
  fs::path folder;
};

std::size_t COUNT(const std::string& text, std::string_view word) {
  std::size_t count = 0;
  for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1))
    ++count;
  return count;
}

// ---- texts ----

TEST(GNUPLOT_SCRIPT, IS_WHAT_A_PERSON_WOULD_HAVE_WRITTEN) {
  EXPECT_EQ(
      SCRIPT_OF(TWO_BONDS()),
      "set terminal svg size 321,263 font 'Helvetica,10.5' background 'white' noenhanced\n"
      "set output 'bonds.svg'\n"
      "set encoding utf8\n"
      "set datafile separator ','\n"
      "set datafile commentschars ''\n"
      "set key below Left reverse samplen 1 height 0.5 autotitle columnheader\n"
      "set autoscale xfix\n"
      "set offsets graph 0.05, graph 0.05, graph 0.05, graph 0.05\n"
      "set xlabel 'P (GPa)' offset 0,0.6\n"
      "set ylabel 'Bond length (Å)' offset 1,0\n"
      "set errorbars 0\n"
      "esd(n) = valid(n) ? column(n) : 0\n"
      "plot 'bonds.csv' using 5:8:(esd(6)):(esd(9)) with xyerrorbars pt 7 ps 0.6 lc rgb '#000000' "
      "title 'Fe1-O1[1] ×3', \\\n"
      "     '' using 5:10:(esd(6)):(esd(11)) with xyerrorbars pt 4 ps 0.6 lc rgb '#D55E00' "
      "title 'Fe1-O1[4] ×3', \\\n"
      "     for [n = 8:10:2] '' using 5:($1 == 1 ? column(n) : NaN) with points pt 6 ps 1.2 lw 0.7 "
      "lc rgb '#000000' title (n == 8 ? 'reference' : '')\n");
}

TEST(GNUPLOT_SCRIPT, WITHOUT_A_REFERENCE_BLOCK_NOTHING_IS_MARKED) {
  GRAPH graph = TWO_BONDS();
  graph.REFERENCE_BLOCK = 0;
  EXPECT_EQ(SCRIPT_OF(graph).find("reference"), std::string::npos);
}

TEST(GNUPLOT_SCRIPT, IS_NOT_FINISHED_WHEN_THE_KEY_IS_PRESSED) {
  WORK work("", 1);
  std::raise(SIGINT);
  EXPECT_TRUE(
      FACETOR_GRAPH::SCRIPT_OF(TWO_BONDS(), work).ends_with("esd(n) = valid(n) ? column(n) : 0\n"));
  EXPECT_TRUE(work.STOPPED);
}

TEST(GNUPLOT_SCRIPT, A_SECOND_UNIT_HAS_THE_RIGHT_AXIS) {
  GRAPH graph = TWO_BONDS();
  graph.RIGHT_TITLE = "Angle (°)";
  graph.ITEMS[1].ON_RIGHT = true;
  const std::string script = SCRIPT_OF(graph);
  EXPECT_NE(script.find("set y2label 'Angle (°)' offset -1,0\nset ytics nomirror\nset y2tics\n"),
            std::string::npos);
  EXPECT_NE(script.find("'' using 5:10:(esd(6)):(esd(11)) axes x1y2 with xyerrorbars"),
            std::string::npos);
  EXPECT_NE(script.find("for [n = 10:10:2] '' using 5:($1 == 1 ? column(n) : NaN) axes x1y2"),
            std::string::npos);
  EXPECT_EQ(COUNT(script, "'reference'"), 1U);  // one entry of the legend
}

TEST(GNUPLOT_SCRIPT, SERIES_DIFFER_IN_SHAPE_AND_COLOUR) {
  GRAPH graph = TWO_BONDS();
  graph.ITEMS.clear();
  for (int k = 0; k < 70; ++k) graph.ITEMS.push_back({"x", 8 + 2 * k});
  const std::string script = SCRIPT_OF(graph);
  std::set<std::string> looks;
  for (std::size_t at = script.find("xyerrorbars "); at != std::string::npos;
       at = script.find("xyerrorbars ", at + 1))
    looks.insert(script.substr(at, script.find(" title", at) - at));
  EXPECT_EQ(looks.size(), 70U);
}

// As many series of that name.
GRAPH MANY(std::size_t count, const std::string& name) {
  GRAPH graph = TWO_BONDS();
  graph.ITEMS.clear();
  for (std::size_t k = 0; k < count; ++k)
    graph.ITEMS.push_back({name, 8 + 2 * static_cast<int>(k)});
  return graph;
}

// 235 pixels and 14 for each row of the legend, up to 2000. A row is 281 pixels wide, and an entry
// takes 28 and 6 for each character of the longest name, with a reference 15 characters at least:
// 10 characters 88, so three a row, 11 characters two. 1 pixel is 2.54/96 cm, or 300/96 of a PNG:
// 249, 263, 1999 and 2000 are 6.588, 6.959, 52.890 and 52.917 cm, 778.1, 821.9, 6246.9 and 6250.
TEST(GNUPLOT_SCRIPT, A_PICTURE_GROWS_WITH_THE_ROWS_OF_ITS_LEGEND) {
  struct CASE {
    std::size_t COUNT;
    std::string NAME;
    int REFERENCE_BLOCK;
    std::string SVG, PDF, PNG;
  };
  const std::string long_name(50, 'x');
  const std::vector<CASE> cases{
      {1, "a", 0, "249", "6.6", "778"},           {8, "a", 0, "249", "6.6", "778"},
      {9, "a", 0, "263", "7.0", "822"},           {6, "bvs", 0, "249", "6.6", "778"},
      {7, "bvs", 0, "263", "7.0", "822"},         {3, "Fe-O[1] ×3", 0, "249", "6.6", "778"},
      {4, "Fe-O[1] ×3", 0, "263", "7.0", "822"},  {2, "Fe1-O[1] ×3", 0, "249", "6.6", "778"},
      {3, "Fe1-O[1] ×3", 0, "263", "7.0", "822"}, {1, "a", 1, "249", "6.6", "778"},
      {2, "a", 1, "263", "7.0", "822"},           {126, long_name, 0, "1999", "52.9", "6247"},
      {127, long_name, 0, "2000", "52.9", "6250"}};
  for (const CASE& wanted : cases) {
    GRAPH graph = MANY(wanted.COUNT, wanted.NAME);
    graph.REFERENCE_BLOCK = wanted.REFERENCE_BLOCK;
    const auto terminal = [&graph](PICTURE kind) {
      graph.KIND = kind;
      const std::string script = SCRIPT_OF(graph);
      return script.substr(0, script.find(" font"));
    };
    const std::string which = std::to_string(wanted.COUNT) + " " + wanted.NAME;
    EXPECT_EQ(terminal(PICTURE::SVG), "set terminal svg size 321," + wanted.SVG) << which;
    EXPECT_EQ(terminal(PICTURE::PDF), "set terminal pdfcairo size 8.5cm," + wanted.PDF + "cm")
        << which;
    EXPECT_EQ(terminal(PICTURE::PNG), "set terminal pngcairo size 1003," + wanted.PNG) << which;
  }
}

TEST(GNUPLOT_SCRIPT, A_PDF_DIFFERS_IN_ITS_TERMINAL_ALONE) {
  GRAPH graph = TWO_BONDS();
  graph.PICTURE_NAME = "bonds.pdf";
  const std::string svg = SCRIPT_OF(graph);
  graph.KIND = PICTURE::PDF;
  EXPECT_EQ(SCRIPT_OF(graph),
            "set terminal pdfcairo size 8.5cm,7.0cm font 'Helvetica,10' linewidth 1.5 "
            "pointscale 0.8 noenhanced\n" +
                svg.substr(svg.find('\n') + 1));
}

TEST(GNUPLOT_SCRIPT, A_PNG_WITH_TWO_AXES) {
  GRAPH graph = TWO_BONDS();
  graph.KIND = PICTURE::PNG;
  graph.PICTURE_NAME = "both.png";
  graph.SHEET_NAME = "both.csv";
  graph.RIGHT_TITLE = "w (°)";
  graph.X_COLUMN = 3;
  graph.REFERENCE_BLOCK = 2;
  graph.ITEMS = {{"d", 8}, {"e", 10}, {"w", 12, true}};
  EXPECT_EQ(
      SCRIPT_OF(graph),
      "set terminal pngcairo size 1003,822 font 'Helvetica,8' fontscale 3.1 linewidth 3 "
      "pointscale 3.6 noenhanced\n"
      "set output 'both.png'\n"
      "set encoding utf8\n"
      "set datafile separator ','\n"
      "set datafile commentschars ''\n"
      "set key below Left reverse samplen 1 height 0.5 autotitle columnheader\n"
      "set autoscale xfix\n"
      "set offsets graph 0.05, graph 0.05, graph 0.05, graph 0.05\n"
      "set xlabel 'P (GPa)' offset 0,0.6\n"
      "set ylabel 'Bond length (Å)' offset 1,0\n"
      "set y2label 'w (°)' offset -1,0\n"
      "set ytics nomirror\n"
      "set y2tics\n"
      "set errorbars 0\n"
      "esd(n) = valid(n) ? column(n) : 0\n"
      "plot 'both.csv' using 3:8:(esd(4)):(esd(9)) with xyerrorbars pt 7 ps 0.6 lc rgb '#000000' "
      "title 'd', \\\n"
      "     '' using 3:10:(esd(4)):(esd(11)) with xyerrorbars pt 4 ps 0.6 lc rgb '#D55E00' "
      "title 'e', \\\n"
      "     '' using 3:12:(esd(4)):(esd(13)) axes x1y2 with xyerrorbars pt 9 ps 0.6 "
      "lc rgb '#0072B2' title 'w', \\\n"
      "     for [n = 8:10:2] '' using 3:($1 == 2 ? column(n) : NaN) with points pt 6 ps 1.2 lw 0.7 "
      "lc rgb '#000000' title (n == 8 ? 'reference' : ''), \\\n"
      "     for [n = 12:12:2] '' using 3:($1 == 2 ? column(n) : NaN) axes x1y2 with points pt 6 "
      "ps 1.2 lw 0.7 lc rgb '#000000' title ''\n");
}

// The rings stand in the legend also when all series are on the right.
TEST(GNUPLOT_SCRIPT, THE_REFERENCE_OF_THE_RIGHT_AXIS_ALONE_IS_NAMED) {
  GRAPH graph = TWO_BONDS();
  for (SERIES& item : graph.ITEMS) item.ON_RIGHT = true;
  const std::string script = SCRIPT_OF(graph);
  EXPECT_EQ(COUNT(script, "for [n ="), 1U);
  EXPECT_NE(script.find("title (n == 8 ? 'reference' : '')\n"), std::string::npos) << script;
}

// Letters for points, no esds and no rings; the letters of the alphabet begin anew behind the last.
TEST(GNUPLOT_SCRIPT, A_TERMINAL_GETS_THE_SHEET_AND_LETTERS) {
  GRAPH graph = TWO_BONDS();
  graph.KIND = PICTURE::TERMINAL;
  EXPECT_EQ(SCRIPT_OF(graph, sheet),
            "$sheet << EOD\n" + std::string(sheet) +
                "EOD\n"
                "set terminal dumb size 79,30 noenhanced\n"
                "set encoding utf8\n"
                "set datafile separator ','\n"
                "set datafile commentschars ''\n"
                "set key below Left reverse samplen 1 height 0.5 autotitle columnheader\n"
                "set autoscale xfix\n"
                "set offsets graph 0.05, graph 0.05, graph 0.05, graph 0.05\n"
                "set xlabel 'P (GPa)'\n"
                "set ylabel 'Bond length (Å)' offset 1,0\n"
                "plot $sheet using 5:8 pt 1 title 'Fe1-O1[1] ×3', \\\n"
                "     '' using 5:10 pt 2 title 'Fe1-O1[4] ×3'\n");
  GRAPH many = MANY(27, "x");
  many.KIND = PICTURE::TERMINAL;
  const std::string script = SCRIPT_OF(many);
  EXPECT_NE(script.find("using 5:58 pt 26 title"), std::string::npos) << script;
  EXPECT_NE(script.find("using 5:60 pt 1 title"), std::string::npos) << script;
}

// Ten shapes, filled and open by turns, and the seven dark colours of the palette.
TEST(GNUPLOT_SCRIPT, LOOKS_FOLLOW_IN_ORDER) {
  const std::string script = SCRIPT_OF(MANY(11, "x"));
  std::size_t at = 0;
  for (const char* const look : {"pt 7 ps 0.6 lc rgb '#000000'", "pt 4 ps 0.6 lc rgb '#D55E00'",
                                 "pt 9 ps 0.6 lc rgb '#0072B2'", "pt 12 ps 0.6 lc rgb '#E69F00'",
                                 "pt 5 ps 0.6 lc rgb '#009E73'", "pt 6 ps 0.6 lc rgb '#CC79A7'",
                                 "pt 13 ps 0.6 lc rgb '#56B4E9'", "pt 8 ps 0.6 lc rgb '#000000'",
                                 "pt 11 ps 0.6 lc rgb '#D55E00'", "pt 10 ps 0.6 lc rgb '#0072B2'",
                                 "pt 7 ps 0.6 lc rgb '#E69F00'"}) {
    at = script.find("xyerrorbars ", at) + 12;
    EXPECT_EQ(script.substr(at, script.find(" title", at) - at), look);
  }
}

TEST(GNUPLOT_SCRIPT, TEXTS_ARE_QUOTED) {
  EXPECT_EQ(GNUPLOT_TEXT("O3'"), "'O3'''");
  EXPECT_EQ(GNUPLOT_TEXT("\" ` $(x) @y \\"), "'\" ` $(x) @y \\'");
  EXPECT_EQ(GNUPLOT_TEXT("'O1"), "'’O1'");
  EXPECT_EQ(GNUPLOT_TEXT("''O1"), "'’''O1'");
  EXPECT_EQ(GNUPLOT_TEXT("'"), "'’'");
  EXPECT_EQ(GNUPLOT_TEXT("a\nb\tc\x1F!~\x7F"), "'a b c !~ '");
  EXPECT_EQ(GNUPLOT_TEXT("Å ×"), "'Å ×'");
  EXPECT_EQ(GNUPLOT_FILE("bonds.csv"), "'bonds.csv'");
  EXPECT_EQ(GNUPLOT_FILE("< touch made"), "'./< touch made'");
  EXPECT_EQ(GNUPLOT_FILE("|touch made"), "'./|touch made'");
  EXPECT_EQ(GNUPLOT_FILE("-x'.csv"), "'./-x''.csv'");
}

// ---- gnuplot ----

TEST_F(GNUPLOT, DRAWS_EVERY_KIND_OF_PICTURE) {
  if (path.empty()) GTEST_SKIP() << "gnuplot is not installed";
  PUT("bonds.csv", sheet);
  GRAPH graph = TWO_BONDS();
  EXPECT_NE(DRAWN(SCRIPT_TO_OUTPUT(graph)).find("</svg>"), std::string::npos);
  graph.KIND = PICTURE::PDF;
  EXPECT_EQ(DRAWN(SCRIPT_TO_OUTPUT(graph)).substr(0, 5), "%PDF-");
  graph.KIND = PICTURE::PNG;
  EXPECT_EQ(DRAWN(SCRIPT_TO_OUTPUT(graph)).substr(1, 3), "PNG");
  EXPECT_EQ(FILES(), 1U);  // no title of the sheet has been run
}

// The user's own run of the script makes the same picture, under its name.
TEST_F(GNUPLOT, RUNS_THE_SCRIPT_OF_THE_USER) {
  if (path.empty()) GTEST_SKIP() << "gnuplot is not installed";
  PUT("bonds.csv", sheet);
  EXPECT_EQ(DRAWN(SCRIPT_OF(TWO_BONDS())), "");
  std::ifstream file(folder / "bonds.svg", std::ios::binary);
  const std::string written{std::istreambuf_iterator<char>(file), {}};
  EXPECT_EQ(written, DRAWN(SCRIPT_TO_OUTPUT(TWO_BONDS())));
}

// Three and two points of the series: a block without the value is left out, one without an esd is
// not, nor is a title with quotes, a comma or "#".
TEST_F(GNUPLOT, DRAWS_EVERY_POINT) {
  if (path.empty()) GTEST_SKIP() << "gnuplot is not installed";
  GRAPH graph = TWO_BONDS();
  graph.KIND = PICTURE::TERMINAL;
  const std::string picture = DRAWN(SCRIPT_TO_OUTPUT(graph, sheet));
  const std::string points = picture.substr(0, picture.find("(GPa)"));
  EXPECT_EQ(COUNT(points, "A") + COUNT(points, "B"), 5U) << picture;
  EXPECT_EQ(FILES(), 0U);
}

TEST_F(GNUPLOT, RUNS_NOTHING_THAT_STANDS_IN_A_NAME) {
  if (path.empty()) GTEST_SKIP() << "gnuplot is not installed";
  const std::string hostile =
      "' `touch made` $(touch made) @x \\ \"`touch made`\"\nsystem 'touch made'";
  GRAPH graph = TWO_BONDS();
  graph.X_TITLE = hostile;
  graph.Y_TITLE = hostile;
  graph.RIGHT_TITLE = hostile;
  graph.ITEMS[0].NAME = hostile;
  graph.ITEMS[1] = {"'", 10, true};
  for (const char* const name :
       {"< touch made #", "|touch made; cat > x", "`touch made`.csv", "-"}) {
    graph.SHEET_NAME = name;
    graph.PICTURE_NAME = std::string(name) + ".svg";
    PUT(name, sheet);
    EXPECT_EQ(DRAWN(SCRIPT_OF(graph), false), "");
    EXPECT_TRUE(fs::exists(folder / graph.PICTURE_NAME)) << name;
  }
  EXPECT_EQ(FILES(), 8U);  // sheets and pictures
  EXPECT_FALSE(fs::exists(folder / "made"));
}

// gnuplot sees one abscissa and values without a range, and draws them all the same.
TEST_F(GNUPLOT, DRAWS_A_SINGLE_POINT) {
  if (path.empty()) GTEST_SKIP() << "gnuplot is not installed";
  PUT("bonds.csv", sheet.substr(0, sheet.find("\n2,") + 1));
  EXPECT_NE(DRAWN(SCRIPT_TO_OUTPUT(TWO_BONDS()), false).find("</svg>"), std::string::npos);
}

}  // namespace
