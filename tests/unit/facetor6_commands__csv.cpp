// CSV: its dialogue and every form of its sheets, line for line.
#include "src/facetor6_sheets/csv.h"

#include <sys/time.h>  // for setitimer

#include <algorithm>  // for sort
#include <csignal>

#include "facetor6_commands__list_blocks.h"
#include "src/facetor6_console/measure_list.h"
#include "src/facetor6_console/valence_table.h"

using namespace LIST_TESTS;
using namespace KVA_CONSOLE;
namespace fs = std::filesystem;

namespace {

const std::string starts = "block,title,T,T_esd,P,P_esd,use";
const std::string first = "1,first,298,1,0.0001,,1";
const std::string second = "2,second,298,1,0.0001,,1";
const std::string question =
    "     The central atom is at the position for the reference block and given by list/table xyz\n"
    "\n\n\n    Enter central site name (or ALL):";

class CSV : public BLOCKS {
 protected:
  // Two blocks; the second has no partner for the second ligand of its silicon.
  void SetUp() override {
    BLOCKS::SetUp();
    MEASURES.clear();
    FACETOR_SHEETS::LAST_FIT = {};
    ADD("first");
    ADD("second");
    for (int block : {1, 2}) PHASE(block).PT(PRESSURE, PT_VALUE) = ONE_ATMOSPHERE;
    BOND(1, {1.5f, 1.6f});
    BOND(2, {1.5f, 0.0f});
    ADD_BOND_VALUES(1);
    ADD_BOND_VALUES(2);
    ADD_ANGLES(1, 2);
    ADD_ANGLES(2, 2);
    VALENCES_DONE = true;
  }
  void TearDown() override {
    MEASURES.clear();
    FACETOR_SHEETS::LAST_FIT = {};
    BLOCKS::TearDown();
  }

  static std::string ANSWER(const std::string& line, const std::string& input = "") {
    CONSOLE_TESTS::PEND(line);
    return SAID(input, [] { FACETOR_SHEETS::RUN_CSV(); });
  }

  // The file that is written for the answers on one line.
  static std::string SHEET(const std::string& answers, const std::string& name, int rows) {
    EXPECT_EQ(ANSWER(answers + " " + name),
              "     " + std::to_string(rows) + " rows written to the file\n");
    const std::string text = TEXT_OF(name);
    fs::remove(name);
    return text;
  }
};

}  // namespace

// ---- a row a block ----

TEST_F(CSV, CELLS_HAVE_AN_EMPTY_ESD_WHERE_THERE_IS_NONE) {
  EXPECT_EQ(
      SHEET("cells", "c.csv", 2),
      starts + ",a,a_esd,b,b_esd,c,c_esd,alpha,alpha_esd,beta,beta_esd,gamma,gamma_esd,V,V_esd\n" +
          first + ",10,,10,,10,,90,,90,,90,,1000,\n" + second + ",10,,10,,10,,90,,90,,90,,1000,\n");
}

// An isotropic displacement is no tensor, and one that nobody gave is none, whatever LIST shows.
TEST_F(CSV, POSITIONS_AND_DISPLACEMENTS_OF_A_SITE) {
  PHASE(1).ATOM(1).X_STD = {0.001f, 0.0f, 0.0f};
  EXPECT_EQ(SHEET("xyz Si1", "x.csv", 2),
            starts + ",Si1_x,Si1_x_esd,Si1_y,Si1_y_esd,Si1_z,Si1_z_esd,Si1_occ,Si1_occ_esd\n" +
                first + ",0.1,0.001,0.2,,0.3,,1,\n" + second + ",0.1,,0.2,,0.3,,1,\n");
  PHASE(1).ATOM(2).BISO = 2.0f;
  PHASE(1).ATOM(2).UEQ = 0.025f;
  EXPECT_EQ(SHEET("adps o1", "u.csv", 2),
            starts +
                ",O1_U11,O1_U11_esd,O1_U22,O1_U22_esd,O1_U33,O1_U33_esd,O1_U12,O1_U12_esd,"
                "O1_U13,O1_U13_esd,O1_U23,O1_U23_esd,O1_Ueq\n" +
                first + ",,,,,,,,,,,,,0.025\n" + second + ",,,,,,,,,,,,,\n");
  PHASE(2).ATOM(2).THTYPE = "Aniso";
  EXPECT_TRUE(SHEET("adps o1", "u.csv", 2).ends_with(second + ",0,,0,,0,,0,,0,,0,,0\n"))
      << "a tensor of zeros that was given";
}

// The volume stands only where the coordination is that of the reference block.
TEST_F(CSV, BONDS_HAVE_THEIR_NUMBERS_AND_AN_ABSENT_LIGAND_IS_EMPTY) {
  EXPECT_EQ(
      SHEET("bond Si1", "b.csv", 2),
      starts + ",Si1-O1[1],Si1-O1[1]_esd,Si1-O2[2],Si1-O2[2]_esd,Si1_N,Si1_mean,Si1_V,Si1_V_esd\n" +
          first + ",1.5,0.003,1.6,0.003,2,1.75,2.25,0.015\n" + second + ",1.5,0.003,,,1,1.75,,\n");
}

// Three ligands have an elongation and a variance.
TEST_F(CSV, DISTORTIONS_STAND_WHERE_THEY_MEAN_SOMETHING) {
  BOND(1, {1.5f, 1.6f, 1.7f});
  const std::string text = SHEET("bond Si1", "b.csv", 2);
  EXPECT_NE(text.find(",Si1_N,Si1_mean,Si1_QE,Si1_AV,Si1_V,Si1_V_esd\n"), std::string::npos);
  EXPECT_NE(text.find(",3,1.75,1.0125,12.5,2.25,0.015\n"), std::string::npos);
}

TEST_F(CSV, ANGLES_AND_EDGES_HAVE_A_NAME_WITH_A_COMMA) {
  EXPECT_EQ(SHEET("angles Si1", "a.csv", 2),
            starts + ",\"O1-Si1-O2[1,2]\",\"O1-Si1-O2[1,2]_esd\",Si1_AV\n" + first +
                ",103,0.5,12.5\n" + second + ",,,12.5\n");
  EXPECT_EQ(SHEET("edges Si1", "e.csv", 2),
            starts + ",\"Si1:O1-O2[1,2]\",\"Si1:O1-O2[1,2]_esd\",Si1_meanedge\n" + first +
                ",1.2,0.004,1.25\n" + second + ",,,1.25\n");
}

TEST_F(CSV, RIGID_BONDS_AND_DISPLACEMENTS_ARE_THOSE_OF_THE_BONDS_ALONE) {
  EXPECT_EQ(SHEET("rigid Si1", "r.csv", 2), starts + ",Si1-O1[1]_srb,Si1-O2[2]_srb\n" + first +
                                                ",1.51,1.61\n" + second + ",1.51,\n");
  EXPECT_EQ(SHEET("displace Si1", "d.csv", 2), starts + ",Si1-O1[1]_displ,Si1-O2[2]_displ\n" +
                                                   first + ",0.1,0.2\n" + second + ",0.1,0\n");
}

TEST_F(CSV, VALENCES_END_WITH_THEIR_SUM) {
  EXPECT_EQ(SHEET("valences Si1", "v.csv", 2),
            starts +
                ",Si1-O1[1]_s,Si1-O1[1]_s_esd,Si1-O2[2]_s,Si1-O2[2]_s_esd,Si1_BVS,Si1_BVS_esd\n" +
                first + ",0.25,0.01,0.5,0.01,0.75,0.02\n" + second + ",0.25,0.01,,,0.75,0.02\n");
  VALENCES_DONE = false;
  EXPECT_EQ(ANSWER("valences"),
            "\n*****No bond valences have been calculated: CALC valences first\n");
}

// 1 - 2.25/4.5, 1 - (1 - 1/2)^3 and 1 - 3 * 0.5/2.
TEST_F(CSV, ORBIX_HAS_ITS_ELEVEN_PARAMETERS) {
  for (int block : {1, 2}) {
    BOND(block, {1.5f, 1.6f, 1.7f, 1.8f});
    int column = POLY_SPHERE_X;
    for (float value : {0.125f, 0.25f, 0.5f, 1.0f, 2.0f, 0.5f, 4.5f})
      PHASE(block).POLYHEDRON(1, column++) = value;
  }
  PHASE(2).POLYHEDRON(1, POLY_VOLUME) = 0.0f;
  EXPECT_EQ(SHEET("orbix Si1", "o.csv", 2),
            starts +
                ",Si1_xc,Si1_yc,Si1_zc,Si1_delta,Si1_rsph,Si1_sdr,Si1_vol,Si1_videal,Si1_vdist,"
                "Si1_ecc,Si1_sph\n" +
                first + ",0.125,0.25,0.5,1,2,0.5,2.25,4.5,0.5,0.875,0.25\n" + second +
                ",,,,,,,,,,,\n");
}

// An oxygen stands where the reference block has its silicon.
TEST_F(CSV, DOUBTFUL_MATCHES_ARE_TOLD_OF_MEASURES_ALONE) {
  PHASE(2).ATOM(1).LAB = "O4";
  PHASE(2).ATOM(1).Z = 8;
  EXPECT_EQ(DEFINE_MEASURE("m", "dist(Si1, O1)"), "");
  const std::string rows = "     2 rows written to the file\n";
  EXPECT_EQ(ANSWER("cells c.csv"), rows);
  EXPECT_EQ(ANSWER("measures m.csv"),
            "\n*****WARNING: In block #  2 second: 1 sites are matched with another element, first "
            "Si1 with O4\n\n" +
                rows);
}

TEST_F(CSV, MEASURES_HAVE_THEIR_NAMES_AND_A_NAME_THAT_IS_TAKEN_A_NUMBER) {
  EXPECT_EQ(DEFINE_MEASURE("half", "a/2"), "");
  EXPECT_EQ(DEFINE_MEASURE("use", "7.5(5)"), "");
  EXPECT_EQ(DEFINE_MEASURE("none", "1/0"), "");
  EXPECT_EQ(SHEET("measures", "m.csv", 2), starts + ",half,half_esd,use_2,use_esd,none,none_esd\n" +
                                               first + ",5,,7.5,0.5,,\n" + second +
                                               ",5,,7.5,0.5,,\n");
}

TEST_F(CSV, SITES_OF_ONE_LABEL_ARE_TOLD_APART_BY_NUMBERS) {
  PHASE(1).ATOM(3).LAB = "O1";
  const std::string text = SHEET("xyz all", "x.csv", 2);
  EXPECT_NE(
      text.find(",O1_x,O1_x_esd,O1_y,O1_y_esd,O1_z,O1_z_esd,O1_occ,O1_occ_esd,O1_x_2,O1_x_esd_2,"
                "O1_y_2,"),
      std::string::npos)
      << text;
  EXPECT_NE(text.find(first + ",0.1,,0.2,,0.3,,1,,0.4,,0.2,,0.3,,1,,0.1,,0.5,,0.3,,1,,"),
            std::string::npos)
      << text;
}

TEST_F(CSV, CAPITALS_TELL_LABELS_APART) {
  PHASE(1).ATOM(3).LAB = "o1";
  EXPECT_NE(SHEET("xyz all", "x.csv", 2).find(",o1_x,o1_x_esd,"), std::string::npos);
}

TEST_F(CSV, BLOCKS_STAND_AS_IN_TABLES_AND_HIDDEN_ONES_IN_THE_LONG_FORM_ALONE) {
  ISORT(1) = 2;
  ISORT(2) = 1;
  IUSE(1) = 0;
  const std::string cell = ",10,,10,,10,,90,,90,,90,,1000,\n";
  EXPECT_NE(SHEET("cells", "c.csv", 2).find(second + cell + "1,first,298,1,0.0001,,0" + cell),
            std::string::npos);
  RUN.LIST_ALL_BLOCKS = false;
  EXPECT_TRUE(SHEET("cells", "c.csv", 1).ends_with(second + cell));
  ANSWER("all l.csv");
  const std::string text = TEXT_OF("l.csv");
  EXPECT_NE(text.find("\n1,first,298,1,0.0001,,0,cells,,a,,10,\n"), std::string::npos);
}

// ---- texts ----

TEST_F(CSV, TITLES_WITH_COMMAS_QUOTES_AND_LINE_ENDS_ARE_QUOTED) {
  PHASE(1).BLOCK_TITLE = "a \"b\", c";
  PHASE(2).BLOCK_TITLE = "one\ntwo";
  const std::string text = SHEET("cells", "c.csv", 2);
  EXPECT_NE(text.find("\n1,\"a \"\"b\"\", c\",298,"), std::string::npos) << text;
  EXPECT_NE(text.find("\n2,\"one\ntwo\",298,"), std::string::npos) << text;
}

TEST_F(CSV, BYTES_THAT_ARE_NO_UTF_8_ARE_TAKEN_FOR_LATIN_1) {
  PHASE(1).BLOCK_TITLE = "caf\xE9";
  PHASE(2).BLOCK_TITLE = "Fe₂O₃ $(x) `y` \\";
  const std::string text = SHEET("cells", "c.csv", 2);
  EXPECT_NE(text.find("\n1,café,"), std::string::npos) << text;
  EXPECT_NE(text.find("\n2,Fe₂O₃ $(x) `y` \\,"), std::string::npos) << text;
}

// ---- a row a value ----

TEST_F(CSV, THE_LONG_FORM_HAS_A_LINE_FOR_EACH_VALUE_THAT_THERE_IS) {
  VALENCES_DONE = false;
  PHASE(1).ATOM(4).BISO = 2.0f;
  PHASE(1).ATOM(4).UEQ = 0.025f;
  EXPECT_EQ(DEFINE_MEASURE("m", "a/2"), "");
  ANSWER("all l.csv");
  const std::string text = TEXT_OF("l.csv");
  EXPECT_TRUE(text.starts_with(starts + ",quantity,centre,feature,codes,value,esd\n" + first +
                               ",cells,,a,,10,\n"))
      << text;
  for (const char* line : {",xyz,Si1,Si1_x,,0.1,\n", ",adps,O3,O3_Ueq,,0.025,\n",
                           ",bond,Si1,Si1-O2[2],2_555,1.6,0.003\n", ",bond,Si1,Si1_N,,2,\n",
                           ",angles,Si1,\"O1-Si1-O2[1,2]\",1_555 2_555,103,0.5\n",
                           ",edges,Si1,\"Si1:O1-O2[1,2]\",1_555 2_555,1.2,0.004\n",
                           ",rigid,Si1,Si1-O1[1]_srb,1_555,1.51,\n",
                           ",displace,Si1,Si1-O1[1]_displ,1_555,0.1,\n", ",measures,,m,,5,\n"})
    EXPECT_NE(text.find(first + line), std::string::npos) << line << text;
  EXPECT_EQ(text.find("valences"), std::string::npos);
  EXPECT_EQ(text.find("O3_U11"), std::string::npos);
  EXPECT_EQ(text.find(second + ",bond,Si1,Si1-O2[2]"), std::string::npos);
  EXPECT_EQ(text.find(second + ",angles,Si1,\"O1"), std::string::npos);
  EXPECT_NE(text.find(second + ",bond,Si1,Si1-O1[1],1_555,1.5,0.003\n"), std::string::npos);
  EXPECT_EQ(text.find(",,\n"), std::string::npos) << "a line without a value";
}

// ---- for a paper ----

// In P 1 nothing is equal, not even two lengths of one value.
TEST_F(CSV, A_PAPER_GETS_VALUES_AS_TABLE_ROUNDS_THEM) {
  EXPECT_EQ(SHEET("bond Si1", "b.tsv", 5),
            "T (K)\t298.0(10)\t298.0(10)\n"
            "P (GPa)\t0.0001\t0.0001\n"
            "Si1-O1\t1.500(3)\t1.500(3)\n"
            "Si1-O2\t1.600(3)\t-\n"
            "Si1_N\t2\t1\n"
            "Si1_mean\t1.7500\t1.7500\n"
            "Si1_V\t2.250(15)\t-\n");
}

TEST_F(CSV, LATEX_HAS_ITS_CHARACTERS_ESCAPED) {
  PHASE(1).ATOM(1).LAB = "*S_1#";
  PHASE(1).ATOM(2).LAB = "O{1}~";
  EXPECT_EQ(SHEET("bond *S_1#", "b.TEX", 5),
            "T (K) & 298.0(10) & 298.0(10) \\\\\n"
            "P (GPa) & 0.0001 & 0.0001 \\\\\n"
            "{*}S\\_1\\#-O\\{1\\}\\textasciitilde{} & 1.500(3) & 1.500(3) \\\\\n"
            "{*}S\\_1\\#-O2 & 1.600(3) & - \\\\\n"
            "{*}S\\_1\\#\\_N & 2 & 1 \\\\\n"
            "{*}S\\_1\\#\\_mean & 1.7500 & 1.7500 \\\\\n"
            "{*}S\\_1\\#\\_V & 2.250(15) & - \\\\\n");
}

// ---- the dialogue ----

TEST_F(CSV, THE_MENU_GROWS_WITH_WHAT_THERE_IS) {
  const auto menu = [] {
    std::string text;
    for (std::string_view entry : FACETOR_SHEETS::CSV_MENU()) text += std::string(entry) + ";";
    return text;
  };
  EXPECT_EQ(menu(),
            "cells;xyz;adps;bond lengths;angles between bonds;edges;orbix poly params;rigid bond "
            "lengths;displace along bonds;valences of bonds;all, a line a value;");
  CLEAR_FACETOR_BONDS();
  EXPECT_EQ(menu(), "cells;xyz;adps;all, a line a value;");
  EXPECT_EQ(DEFINE_MEASURE("m", "a"), "");
  FACETOR_SHEETS::LAST_FIT.COLUMNS.resize(1);
  EXPECT_EQ(menu(), "cells;xyz;adps;measures;all, a line a value;fit;");
}

TEST_F(CSV, ALL_ANSWERS_MAY_BE_TYPED) {
  EXPECT_EQ(ANSWER("", "4\nSi1\nb\n"),
            "\n     Possible selections for Csv:\n"
            "      1: cells\n"
            "      2: xyz\n"
            "      3: adps\n"
            "      4: bond lengths\n"
            "      5: angles between bonds\n"
            "      6: edges\n"
            "      7: orbix poly params\n"
            "      8: rigid bond lengths\n"
            "      9: displace along bonds\n"
            "     10: valences of bonds\n"
            "     11: all, a line a value\n"
            "      0: Exit\n\n"
            "     Enter selection by number:" +
                question + "\n     Save csv file (*.csv):     2 rows written to the file\n");
  EXPECT_TRUE(fs::exists("b.csv"));
}

TEST_F(CSV, BLANKS_LEAVE_AND_WRITE_NOTHING) {
  ANSWER("", "\n");
  EXPECT_EQ(ANSWER("bond", "\n"), question);
  EXPECT_EQ(ANSWER("bond Si1", "\n"), "\n     Save csv file (*.csv):");
  EXPECT_EQ(fs::exists("b.csv"), false);
}

TEST_F(CSV, AN_UNKNOWN_SITE_IS_ASKED_FOR_AGAIN_AND_ENDS_THE_COMMAND_IN_A_MACRO) {
  const std::string unknown = "Site with name = Xx not found in reference block\n";
  EXPECT_EQ(ANSWER("bond Xx", "Si1\nb.csv\n"),
            unknown + question + "\n     Save csv file (*.csv):     2 rows written to the file\n");
  START_MACRO_WITH("Si1\nb.csv\n");
  EXPECT_EQ(ANSWER("bond Xx"), unknown);
  EXPECT_TRUE(CONSOLE.DROPPED);
}

TEST_F(CSV, A_SITE_WITHOUT_SUCH_VALUES_IS_TOLD) {
  EXPECT_EQ(ANSWER("bond O1"),
            "\n*****There are no such values of what was chosen: choose another site\n");
}

TEST_F(CSV, A_FILE_THAT_EXISTS_IS_REPLACED_AFTER_A_QUESTION) {
  PUT_FILE("c.csv", "old");
  const std::string asked = "*****File c.csv exists\nDo you want to overwrite it (Y/N) <N>?";
  EXPECT_EQ(ANSWER("cells c.csv", "n\n\n"), asked + "\n     Save csv file (*.csv):");
  EXPECT_EQ(TEXT_OF("c.csv"), "old");
  EXPECT_EQ(ANSWER("cells c.csv", "y\n"), asked + "     2 rows written to the file\n");
  EXPECT_TRUE(TEXT_OF("c.csv").starts_with(starts));
}

TEST_F(CSV, IN_A_MACRO_IT_IS_REPLACED_AND_TOLD) {
  PUT_FILE("c.csv", "old");
  START_MACRO_WITH("exit\n");
  EXPECT_EQ(ANSWER("cells c.csv"),
            "     The file c.csv exists: it is replaced\n     2 rows written to the file\n");
}

TEST_F(CSV, OTHER_KINDS_FOLDERS_AND_OPEN_FILES_ARE_REFUSED) {
  PUT_FILE("mine.cif", "old");
  fs::create_directory("sub.csv");
  EXPECT_EQ(ANSWER("cells mine.cif", "sub.csv\n\n"),
            "*****The file mine.cif is of another kind\n"
            "\n     Save csv file (*.csv):*****The file sub.csv is a folder: choose another name\n"
            "\n     Save csv file (*.csv):");
  EXPECT_EQ(TEXT_OF("mine.cif"), "old");
  CONSOLE.LOG_FILE.UNIT = LOG_UNIT;
  CONSOLE.LOG_FILE.NAME = "said.txt";
  ASSERT_EQ(KVA_UTILITIES::OPEN_UNIT(LOG_UNIT, "said.txt", KVA_UTILITIES::UNIT_MODE::REPLACE), 0);
  EXPECT_EQ(ANSWER("cells said.txt", "\n"),
            "*****The file said.txt is open: choose another name\n\n     Save csv file (*.csv):");
}

TEST_F(CSV, WITHOUT_A_FOLDER_OR_ROOM_NOTHING_IS_WRITTEN_AND_IT_IS_TOLD) {
  EXPECT_EQ(
      ANSWER("cells none/c.csv", "\n"),
      "*****The file none/c.csv cannot be written (No such file or directory): choose another "
      "name\n\n     Save csv file (*.csv):");
  EXPECT_EQ(ANSWER("cells /dev/./full", "y\n"),
            "*****File /dev/./full exists\nDo you want to overwrite it (Y/N) <N>?"
            "*****Nothing was written to /dev/./full: No space left on device\n");
}

namespace {

// What is said when the key is pressed every millisecond of the work.
template <class COMMAND>
std::string SAID_WITH_THE_KEY(COMMAND command) {
  void (*const usual_interrupt)(int) = std::signal(SIGINT, SIG_IGN);
  void (*const usual_alarm)(int) = std::signal(SIGALRM, [](int) { std::raise(SIGINT); });
  const itimerval every_millisecond{{0, 1000}, {0, 1000}};
  const itimerval never{};
  ::setitimer(ITIMER_REAL, &every_millisecond, nullptr);
  const std::string said = command();
  ::setitimer(ITIMER_REAL, &never, nullptr);
  std::signal(SIGALRM, usual_alarm);
  std::signal(SIGINT, usual_interrupt);
  return said;
}

}  // namespace

// The old file stays, and nothing beside it.
TEST_F(CSV, A_SHEET_THAT_IS_STOPPED_LEAVES_THE_OLD_FILE) {
  constexpr int blocks = 3000;
  constexpr std::size_t fits = 100000;
  const std::string stopped =
      "***** Macro stopped\n\n*****The sheet was stopped: CSV writes it anew\n";
  for (int block = 3; block <= blocks; ++block) ADD("more");
  FACETOR_SHEETS::LAST_FIT.COLUMNS = {{.NAME = "feature"}};
  FACETOR_SHEETS::LAST_FIT.ROWS.assign(fits, {TEXT_CELL("V")});
  PUT_FILE("l.csv", "old");
  for (const char* entry : {"all", "fit"}) {
    START_MACRO_WITH("exit\n");
    const std::string said =
        SAID_WITH_THE_KEY([&] { return ANSWER(std::string(entry) + " l.csv"); });
    EXPECT_TRUE(said.ends_with(stopped)) << said;
    EXPECT_EQ(TEXT_OF("l.csv"), "old");
  }
  std::vector<std::string> names;
  for (const auto& file : fs::directory_iterator(".")) names.push_back(file.path().filename());
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"home", "l.csv", "local", "test.mcr"}));
}

TEST_F(CSV, THE_LAST_FIT_IS_A_SHEET) {
  FACETOR_SHEETS::LAST_FIT.COLUMNS = {{.NAME = "feature"},
                                      {.NAME = "n"},
                                      {.NAME = "value", .HAS_ESD = true},
                                      {.NAME = "chi2", .DECIMALS = 2}};
  FACETOR_SHEETS::LAST_FIT.ROWS = {
      {TEXT_CELL("O1-Si1-O2[1,2]"), WHOLE_CELL(5), REAL_CELL(1.5f, 0.003f), REAL_CELL(0.25f)},
      {TEXT_CELL("V"), WHOLE_CELL(5), REAL_CELL(2.5f), NO_VALUE_CELL()}};
  EXPECT_EQ(SHEET("fit", "f.csv", 2),
            "feature,n,value,value_esd,chi2\n\"O1-Si1-O2[1,2]\",5,1.5,0.003,0.25\nV,5,2.5,,\n");
  EXPECT_EQ(SHEET("fit", "f.tsv", 2),
            "feature\tn\tvalue\tchi2\nO1-Si1-O2[1,2]\t5\t1.500(3)\t0.25\nV\t5\t2.50000\t-\n");
}
