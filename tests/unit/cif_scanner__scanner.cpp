// The CIF scanner, its departures from the published syntax included.
#include "cifcode/cif_code_new/scanner.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "places.h"

using namespace KVA_CIFNEW;
namespace fs = std::filesystem;

namespace {

FILE_LINES LINES(const std::string& text) {
  FILE_LINES lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.ADD(KVA_UTILITIES::CUT_LINE(line));
  return lines;
}

struct BLOCKS {
  LIST<int> NLINES;
  int COUNT = 0;
};

BLOCKS BLOCKS_OF(const std::string& text) {
  BLOCKS blocks;
  FIND_ALL_BLOCKS_CIF(LINES(text), blocks.NLINES, blocks.COUNT);
  return blocks;
}

// A loop with key "_a_", texts "_a_label" and "_a_more", numbers "_a_x" and "_a_y".
CIFDATA_TYPE READ(const std::string& text) {
  CIFDATA_TYPE loop;
  loop.KEY = "_a_";
  loop.NLABELS = 4;
  loop.LABELS = {{"_a_label", "_a_more", "_a_x", "_a_y"}};
  loop.VTYPE = {{'C', 'C', 'F', 'F'}};
  FILE_LINES lines = LINES(text);
  READ_LOOP_CIF(lines, loop);
  return loop;
}

constexpr int label = 1;
constexpr int more = 2;
constexpr int x = 3;
constexpr int y = 4;

std::string TEXT_OF(const std::string& key, const std::string& text) {
  std::string found;
  const FILE_LINES lines = LINES(text);
  READ_CIF_TEXT(key, lines, 1, lines.COUNT(), found);
  return found;
}

struct VALUE {
  float V = -1.0f;
  float STD = -1.0f;
};

VALUE VALUE_OF(const std::string& text, const std::string& key = "_cell_length_a") {
  VALUE value;
  const FILE_LINES lines = LINES(text);
  READ_CIF_VALUE(key, lines, 1, lines.COUNT(), value.V, value.STD);
  return value;
}

}  // namespace

// ---- cleaning ----

TEST(CLEANING, CONTROL_CHARACTERS_INDENTS_AND_THE_OLDER_NAME) {
  FILE_LINES lines = LINES("\t_cell_length_a\t5\n  _SYMMETRY_equiv_pos_as_xyz\n");
  CLEAN_CIF(lines);
  EXPECT_EQ(lines(1), "_cell_length_a 5");
  EXPECT_EQ(lines(2), "_space_group_symop_operation_xyz");
}

// ---- blocks ----

TEST(BLOCKS_OF_A_FILE, ARE_FOUND_IN_ANY_CASE) {
  const BLOCKS blocks = BLOCKS_OF("# x\ndata_one\nDATA_two\n data_indented\n");
  EXPECT_EQ(blocks.COUNT, 2);
  EXPECT_EQ(blocks.NLINES(1), 2);
  EXPECT_EQ(blocks.NLINES(2), 3);
  EXPECT_EQ(BLOCKS_OF("no block here\n").COUNT, 0);
  EXPECT_EQ(BLOCKS_OF("").COUNT, 0);
}

TEST(BLOCKS_OF_A_FILE, GLOBAL_BLOCKS_ARE_COUNTED_FOR_ROOM_BUT_START_NONE) {
  const BLOCKS blocks = BLOCKS_OF("data_global\ndata_one\n");
  EXPECT_EQ(blocks.COUNT, 1);
  ASSERT_EQ(blocks.NLINES.COUNT(), 2);
  EXPECT_EQ(blocks.NLINES(1), 2);
  EXPECT_EQ(blocks.NLINES(2), 0);
}

TEST(BLOCKS_OF_A_FILE, TEXT_FIELDS_HIDE_THEM) {
  EXPECT_EQ(BLOCKS_OF("data_a\n;\ndata_b\n;\ndata_c\n").COUNT, 2);
  EXPECT_EQ(BLOCKS_OF("data_a\n;text\ndata_b\ndata_c\n").COUNT, 1)
      << "an open field hides the rest";
}

TEST(BLOCKS_OF_A_FILE, THE_COUNT_IS_ONLY_RAISED) {
  LIST<int> nlines;
  int nblocks = 3;
  FIND_ALL_BLOCKS_CIF(LINES("data_a\n"), nlines, nblocks);
  EXPECT_EQ(nblocks, 4);
}

// A mark of UTF-8, blanks and a tab before data_, a text field, a global block, ends of lines of
// another system, no end of the last line.
TEST(BLOCKS_OF_A_FILE, BYTES_GIVE_THE_SAME_BLOCKS) {
  const std::string mark = "\xEF\xBB\xBF";
  const std::string first = "data_a\r\n_x 1\r\n;\r\ndata_text\r\n;\r\n";
  const std::string second = " \tDATA_b\n\ndata_global\n_y 2\n";
  const std::string third = "data_c";
  EXPECT_EQ(BLOCKS_OF_CIF(mark + first + second + third),
            (std::vector<std::string_view>{first, second, third}));
  EXPECT_EQ(BLOCKS_OF_CIF("# nothing\n" + second), (std::vector<std::string_view>{second}));
  EXPECT_TRUE(BLOCKS_OF_CIF("").empty());
  EXPECT_TRUE(BLOCKS_OF_CIF(std::string(255, ' ') + "data_a\n").empty()) << "behind what is kept";
  FILE_LINES lines;
  CLEAN_LINES_OF(first, lines);
  EXPECT_EQ(lines.ITEMS, (std::vector<std::string>{"data_a", "_x 1", ";", "data_text", ";"}));
  CLEAN_LINES_OF(second, lines);
  EXPECT_EQ(lines.ITEMS, (std::vector<std::string>{"DATA_b", "", "data_global", "_y 2"}));
  CLEAN_LINES_OF("data_d\n_symmetry_equiv_pos_as_xyz x,y,z\n", lines);
  EXPECT_EQ(lines.ITEMS,
            (std::vector<std::string>{"data_d", "_space_group_symop_operation_xyz x,y,z"}));
}

TEST(BLOCKS_OF_A_FILE, LINES_OF_A_BLOCK) {
  const FILE_LINES lines = LINES("a\nb\nc\n");
  EXPECT_EQ(BLOCK_LINES(lines, 2, 3).ITEMS, (std::vector<std::string>{"b", "c"}));
  EXPECT_EQ(BLOCK_LINES(lines, -1, 99).COUNT(), 3);
  EXPECT_EQ(BLOCK_LINES(lines, 3, 2).COUNT(), 0);
}

// ---- keyed search ----

TEST(KEYED_SEARCH, NAMES_ARE_FOUND_AS_SUBSTRINGS_IN_ANY_CASE) {
  EXPECT_EQ(TEXT_OF("_Name", "_x 1\n_the_NAME_long value here\n"), "value here");
  EXPECT_EQ(TEXT_OF("_name", "_x_name_y 5\n"), "5") << "what is glued to the key goes with it";
  EXPECT_EQ(TEXT_OF("_name", "_name 'quartz'\n"), "'quartz'") << "quotes stay";
  EXPECT_EQ(TEXT_OF("_name", "_name\n value\n"), "") << "the value stands on the name's line";
  EXPECT_EQ(TEXT_OF("_none", "_name 1\n"), "");
}

TEST(KEYED_SEARCH, COMMENTS_WITH_A_HASH_ARE_READ_AND_THOSE_WITH_A_BANG_ARE_NOT) {
  EXPECT_EQ(TEXT_OF("_name", "# _name 1\n_name 2\n"), "1");
  EXPECT_EQ(TEXT_OF("_name", "  ! _name 1\n_name 2\n"), "2");
}

TEST(KEYED_SEARCH, THE_LINE_MOVES_ONLY_ON_A_MATCH) {
  const FILE_LINES lines = LINES("a\n_k 1\n_k 2\n");
  std::string string;
  int line = 1;
  FIND_KEY_STRING(lines, line, 99, "_k", string);
  EXPECT_EQ(line, 2);
  line = 3;
  FIND_KEY_STRING(lines, line, 3, "_none", string);
  EXPECT_EQ(line, 3);
  EXPECT_EQ(string, "");
  line = -5;
  FIND_KEY_STRING(lines, line, 99, "_k", string);
  EXPECT_EQ(line, 2);
}

TEST(KEYED_SEARCH, A_KEY_OF_SEVERAL_WORDS_IS_TAKEN_OFF_WHOLE) {
  EXPECT_EQ(TEXT_OF(" SPACE  GROUP  N. :", " SPACE  GROUP  N. :   14\n"), "14");
}

// ---- scalars ----

TEST(SCALARS, EXACTLY_ONE_NUMBER) {
  EXPECT_EQ(VALUE_OF("_cell_length_a 5.4321(12)\n").V, 5.4321f);
  EXPECT_FLOAT_EQ(VALUE_OF("_cell_length_a 5.4321(12)\n").STD, 0.0012f);
  for (const char* text :
       {"_cell_length_a 5.4321(12) 7\n", "_cell_length_a ?\n", "_cell_length_a\n",
        "_cell_length_a 1.5(\n", "_cell_length_a 1.5)\n", "_other 1\n"}) {
    EXPECT_EQ(VALUE_OF(text).V, 0.0f) << text;
    EXPECT_EQ(VALUE_OF(text).STD, 0.0f) << text;
  }
  EXPECT_EQ(VALUE_OF("_cell_length_a 5 # angstroms 7\n").V, 5.0f);
}

TEST(SCALARS, CRYSTAL_SYSTEMS) {
  const auto system = [](const std::string& text) {
    std::string found;
    const FILE_LINES lines = LINES(text);
    READ_CIF_SYSTEM(lines, 1, lines.COUNT(), found);
    return found;
  };
  EXPECT_EQ(system("_space_group_crystal_system  Cubic\n"), "cubic");
  EXPECT_EQ(system("_symmetry_cell_setting monoclinic\n"), "monoclinic");
  for (const char* name :
       {"triclinic", "monoclinic", "orthorhombic", "tetragonal", "trigonal", "hexagonal", "cubic"})
    EXPECT_EQ(system("_space_group_crystal_system " + std::string(name) + "\n"), name);
  EXPECT_EQ(system("_space_group_crystal_system 'cubic'\n"), "") << "quotes do not match";
  EXPECT_EQ(system("_space_group_crystal_system rhombohedral\n"), "");
  EXPECT_EQ(system("_x 1\n"), "");
}

// ---- loops ----

TEST(LOOPS, COLUMNS_ARE_FOUND_BY_NAME_AND_OTHERS_COUNTED) {
  const CIFDATA_TYPE loop =
      READ("loop_\n_a_x\n_a_other\n_a_LABEL\n 1.5(2) z Si1\n 2.5 z O1\n_b 1\n");
  ASSERT_EQ(loop.N, 2);
  EXPECT_EQ(loop.CVAL(1, label), "Si1");
  EXPECT_EQ(loop.VAL(1, x), 1.5f);
  EXPECT_FLOAT_EQ(loop.VAL_STD(1, x), 0.2f);
  EXPECT_EQ(loop.VAL(2, x), 2.5f);
  EXPECT_EQ(loop.IND(y), 0);
  EXPECT_EQ(loop.VAL(1, y), 0.0f);
  EXPECT_EQ(loop.CVAL(1, more), "");
}

TEST(LOOPS, AN_ABSENT_LOOP_IS_AN_ERROR) {
  const CIFDATA_TYPE loop = READ("_b_x 1\n");
  EXPECT_TRUE(ERR_KVACIF);
  EXPECT_EQ(ERR_KVACIF_MESS, "cifdata_key of _a_ not found by read_loop_cif");
  EXPECT_EQ(loop.N, 0);
  READ("");
  EXPECT_TRUE(ERR_KVACIF);
}

TEST(LOOPS, THE_KEY_MUST_STAND_AT_COLUMN_1) {
  EXPECT_EQ(READ("# the _a_ loop\nloop_\n_a_label\nSi1\n").N, 1);
}

TEST(LOOPS, VALUES_ONE_A_LINE_AND_SURPLUS_WORDS) {
  const CIFDATA_TYPE spread = READ("_a_label\n_a_x\n_a_y\nSi1\n1\n2\nO1\n3\n4\n");
  ASSERT_EQ(spread.N, 2);
  EXPECT_EQ(spread.VAL(2, y), 4.0f);
  const CIFDATA_TYPE surplus = READ("_a_label\n_a_x\nSi1 1 2 3\nO1 4\n");
  ASSERT_EQ(surplus.N, 2);
  EXPECT_EQ(surplus.VAL(2, x), 4.0f);
}

TEST(LOOPS, COMMENT_BLANK_AND_QUESTION_LINES_ARE_SKIPPED) {
  const CIFDATA_TYPE loop = READ("_a_label\n\n# c\n_a_x\nSi1 1\n\n# c\n? 2\nO1 3\n");
  ASSERT_EQ(loop.N, 2) << "a row whose first value is ? vanishes";
  EXPECT_EQ(loop.CVAL(2, label), "O1");
}

TEST(LOOPS, QUESTION_LINES_AMONG_THE_NAMES_COUNT_NOTHING) {
  const CIFDATA_TYPE loop = READ("_a_label\n? _a_y\n_a_x\nSi1 1\n");
  ASSERT_EQ(loop.N, 1);
  EXPECT_EQ(loop.IND(x), 2);
  EXPECT_EQ(loop.IND(y), 0);
  EXPECT_EQ(loop.VAL(1, x), 1.0f);
}

TEST(LOOPS, A_BANG_STARTS_NO_COMMENT) {
  const CIFDATA_TYPE loop = READ("_a_label\n_a_x\n!1 2\n");
  ASSERT_EQ(loop.N, 1);
  EXPECT_EQ(loop.CVAL(1, label), "!1");
}

TEST(LOOPS, UNKNOWN_VALUES_READ_AS_0) {
  const CIFDATA_TYPE loop = READ("_a_label\n_a_x\n_a_y\nSi1 ? .\n");
  EXPECT_EQ(loop.VAL(1, x), 0.0f);
  EXPECT_EQ(loop.VAL(1, y), 0.0f);
}

TEST(LOOPS, CAPITAL_WORDS_END_THEM_AND_A_SMALL_LOOP_IS_TAKEN_FOR_DATA) {
  EXPECT_EQ(READ("_a_label\n_a_x\nSi1 1\nLOOP_\nO1 2\n").N, 1);
  EXPECT_EQ(READ("_a_label\n_a_x\nSi1 1\nDATA_x\nO1 2\n").N, 1);
  EXPECT_EQ(READ("_a_label\n_a_x\nSi1 1\nloop_\n_b_x\n").N, 1) << "the half row is dropped";
  const CIFDATA_TYPE one_column = READ("_a_label\nSi1\nloop_\n_b_x\n");
  ASSERT_EQ(one_column.N, 2);
  EXPECT_EQ(one_column.CVAL(2, label), "loop_");
  const CIFDATA_TYPE mixed_case = READ("_a_label\nSi1\nLoop_\nData_x\nLOOP_\nO1\n");
  ASSERT_EQ(mixed_case.N, 3) << "only words all in capitals end a loop";
  EXPECT_EQ(mixed_case.CVAL(2, label), "Loop_");
  EXPECT_EQ(mixed_case.CVAL(3, label), "Data_x");
}

TEST(LOOPS, ONLY_DOUBLE_QUOTES_GROUP_AND_APOSTROPHES_BECOME_BLANKS) {
  const CIFDATA_TYPE loop = READ("_a_label\n_a_more\n\"Si 1\" 'a'\n'O 1' b\n");
  ASSERT_EQ(loop.N, 2);
  EXPECT_EQ(loop.CVAL(1, label), "Si 1");
  EXPECT_EQ(loop.CVAL(1, more), " a") << "a blank in place of the opening apostrophe";
  EXPECT_EQ(loop.CVAL(2, label), " O");
  EXPECT_EQ(loop.CVAL(2, more), "1");
}

TEST(LOOPS, WORDS_ARE_CUT_AT_40) {
  const CIFDATA_TYPE loop = READ("_a_label\n_a_x\n" + std::string(120, 'L') + " 1\n");
  ASSERT_EQ(loop.N, 1);
  EXPECT_EQ(loop.CVAL(1, label), std::string(40, 'L'));
  EXPECT_EQ(loop.VAL(1, x), 1.0f);
}

TEST(LOOPS, A_HEADER_LINE_WITH_TWO_LABELS_IS_ONE_COLUMN) {
  const CIFDATA_TYPE loop = READ("_a_label _a_x\n_a_y\nSi1 2\n");
  ASSERT_EQ(loop.N, 1);
  EXPECT_EQ(loop.IND(label), 1);
  EXPECT_EQ(loop.IND(x), 0);
  EXPECT_EQ(loop.VAL(1, y), 2.0f);
}

TEST(LOOPS, MORE_THAN_20_COLUMNS_COUNT_WRONG_BUT_HARM_NOTHING) {
  std::string text;
  for (int i = 1; i <= 25; ++i) text += i == 25 ? "_a_x\n" : "_a_c" + std::to_string(i) + "\n";
  std::string row;
  for (int i = 1; i <= 25; ++i) row += std::to_string(i) + " ";
  // A line of 25 words counts 21, each further line adds 1: 5 lines make a row of 25.
  const CIFDATA_TYPE loop =
      READ(text + row + "\n" + row + "\n" + row + "\n" + row + "\n" + row + "\n" + row + "\n");
  ASSERT_EQ(loop.N, 1);
  EXPECT_EQ(loop.IND(x), 25);
  EXPECT_EQ(loop.VAL(1, x), 0.0f) << "a column above 20 reads as 0";
}

TEST(LOOPS, AN_UNFINISHED_ROW_IS_DROPPED) {
  EXPECT_EQ(READ("_a_label\n_a_x\nSi1 1\nO1\n").N, 1);
  EXPECT_EQ(READ("_a_label\n_a_x\nSi1\n_b 1\n").N, 0);
  EXPECT_FALSE(ERR_KVACIF) << "the loop is there";
  EXPECT_EQ(READ("_a_label\n_a_x\n").N, 0);
}

TEST(LOOPS, SEMICOLON_TEXT_IS_READ_AS_WORDS) {
  EXPECT_EQ(READ("_a_label\n_a_more\n;\ntext\n;\nb\n").N, 2);
}

TEST(LOOPS, A_RECORD_CAN_BE_USED_AGAIN) {
  CIFDATA_TYPE loop;
  loop.KEY = "_a_";
  loop.NLABELS = 1;
  loop.LABELS(1) = "_a_label";
  loop.VTYPE(1) = 'C';
  FILE_LINES first = LINES("_a_label\nSi1\nO1\n");
  READ_LOOP_CIF(first, loop);
  EXPECT_EQ(loop.N, 2);
  FILE_LINES second = LINES("_a_label\nCa1\n");
  READ_LOOP_CIF(second, loop);
  EXPECT_EQ(loop.N, 1);
  EXPECT_EQ(loop.CVAL.COUNT(), 1);
}

TEST(LOOPS, COLUMNS_OF_AN_EARLIER_LOOP_ARE_FORGOTTEN) {
  CIFDATA_TYPE loop = READ("_a_x\n_a_label\n1 Si1\n");
  ASSERT_EQ(loop.IND(x), 1);
  FILE_LINES second = LINES("_a_label\n2\n");
  READ_LOOP_CIF(second, loop);
  ASSERT_EQ(loop.N, 1);
  EXPECT_EQ(loop.IND(x), 0);
  EXPECT_EQ(loop.VAL(1, x), 0.0f);
}

TEST(LOOPS, AN_ABSENT_LOOP_LEAVES_THE_VALUES_OF_THE_EARLIER_ONE) {
  CIFDATA_TYPE loop = READ("_a_label\n_a_x\nSi1 2\n");
  FILE_LINES other = LINES("_b_label\nO1\n");
  READ_LOOP_CIF(other, loop);
  EXPECT_TRUE(ERR_KVACIF);
  EXPECT_EQ(loop.N, 0);
  ASSERT_EQ(loop.CVAL.COUNT(), 1);
  EXPECT_EQ(loop.CVAL(1, label), "Si1");
  EXPECT_EQ(loop.VAL(1, x), 2.0f);
}

TEST(LOOPS, LINES_AND_KEY_ARE_LEFT_ADJUSTED) {
  CIFDATA_TYPE loop;
  loop.KEY = "  _a_";
  loop.NLABELS = 1;
  loop.LABELS(1) = "_a_label";
  loop.VTYPE(1) = 'C';
  FILE_LINES lines = LINES("  _a_label\n   Si1\n");
  READ_LOOP_CIF(lines, loop);
  EXPECT_FALSE(ERR_KVACIF);
  ASSERT_EQ(loop.N, 1);
  EXPECT_EQ(loop.CVAL(1, label), "Si1");
  EXPECT_EQ(loop.KEY, "_a_");
  EXPECT_EQ(lines.ITEMS, (std::vector<std::string>{"_a_label", "Si1"}));
}

// ---- real files ----

// The numbers of blocks of real files, as listed beside them.
TEST(REAL_FILES, HAVE_THE_LISTED_NUMBER_OF_BLOCKS) {
  const fs::path samples = PLACES::SAMPLES();
  std::ifstream index(samples / "index.tsv");
  if (!index) GTEST_SKIP() << "no sample files at " << samples;
  std::string line;
  std::getline(index, line);
  int compared = 0;
  while (std::getline(index, line)) {
    std::vector<std::string> cell;
    std::istringstream stream(line);
    for (std::string text; std::getline(stream, text, '\t');) cell.push_back(text);
    if (cell.size() < 5 || !cell[0].ends_with(".cif") || !fs::exists(samples / cell[0])) continue;
    if (cell[4].empty() || cell[4].find_first_not_of("0123456789") != std::string::npos) continue;
    KVA_UTILITIES::FILE_RECORD file;
    file.NAME = (samples / cell[0]).string();
    FILE_LINES lines;
    std::string message;
    KVA_UTILITIES::READ_FILE(file, lines, message);
    CLEAN_CIF(lines);
    LIST<int> starts;
    int blocks = 0;
    FIND_ALL_BLOCKS_CIF(lines, starts, blocks);
    EXPECT_EQ(blocks, std::stoi(cell[4])) << cell[0];
    std::string bytes;
    KVA_UTILITIES::READ_FILE_BYTES((samples / cell[0]).string(), bytes);
    EXPECT_EQ(BLOCKS_OF_CIF(bytes).size(), std::stoul(cell[4])) << cell[0];
    ++compared;
  }
  EXPECT_GT(compared, 200);
}
