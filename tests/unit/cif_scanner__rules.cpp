// Rules of the CIF scanner that files run into: names within names, comments, what stays of an
// earlier read.
#include <gtest/gtest.h>

#include <sstream>

#include "cifcode/cif_code_new/scanner.h"

using namespace KVA_CIFNEW;

namespace {

FILE_LINES LINES(const std::string& text) {
  FILE_LINES lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.ADD(line);
  return lines;
}

constexpr int label = 1;
constexpr int x = 2;

// A loop with key "_a_", text "_a_label" and number "_a_x".
CIFDATA_TYPE LOOP() {
  CIFDATA_TYPE loop;
  loop.KEY = "_a_";
  loop.NLABELS = 2;
  loop.LABELS(label) = "_a_label";
  loop.LABELS(x) = "_a_x";
  loop.VTYPE(label) = 'C';
  loop.VTYPE(x) = 'F';
  return loop;
}

CIFDATA_TYPE READ(const std::string& text) {
  CIFDATA_TYPE loop = LOOP();
  FILE_LINES lines = LINES(text);
  READ_LOOP_CIF(lines, loop);
  return loop;
}

std::string SYSTEM_OF(const std::string& text) {
  std::string system;
  const FILE_LINES lines = LINES(text);
  READ_CIF_SYSTEM(lines, 1, lines.COUNT(), system);
  return system;
}

}  // namespace

// ---- blocks and the keyed search ----

TEST(BLOCK_RULES, GLOBAL_ANYWHERE_IN_THE_LINE_AND_IN_ANY_CASE_STARTS_NO_BLOCK) {
  LIST<int> nlines;
  int nblocks = 0;
  FIND_ALL_BLOCKS_CIF(LINES("data_one\ndata_my_Global_2\ndata_three # global\ndata_four\n"), nlines,
                      nblocks);
  ASSERT_EQ(nblocks, 2);
  EXPECT_EQ(nlines(1), 1);
  EXPECT_EQ(nlines(2), 4);
}

TEST(SEARCH_RULES, WHAT_STANDS_OUTSIDE_THE_GIVEN_LINES_IS_NOT_SEEN) {
  const FILE_LINES lines = LINES("_k 1(1)\n_k 2(1)\n_k 3(1)\n");
  std::string text;
  READ_CIF_TEXT("_k", lines, 2, 3, text);
  EXPECT_EQ(text, "2(1)");
  float value = 0;
  float std = 0;
  READ_CIF_VALUE("_k", lines, 3, 3, value, std);
  EXPECT_EQ(value, 3.0f);
  READ_CIF_VALUE("_k", lines, 4, 9, value, std);
  EXPECT_EQ(value, 0.0f);
}

TEST(SEARCH_RULES, THE_SECOND_NAME_OF_THE_SYSTEM_COUNTS_ONLY_WHERE_THE_FIRST_HAS_NO_TEXT) {
  EXPECT_EQ(SYSTEM_OF("_symmetry_cell_setting cubic\n_space_group_crystal_system hexagonal\n"),
            "hexagonal");
  EXPECT_EQ(SYSTEM_OF("_space_group_crystal_system\n_symmetry_cell_setting cubic\n"), "cubic");
  EXPECT_EQ(SYSTEM_OF("_space_group_crystal_system ?\n_symmetry_cell_setting cubic\n"), "")
      << "a question mark is a text";
}

// ---- loops ----

TEST(LOOP_RULES, OF_TWO_COLUMNS_THAT_HOLD_A_LABEL_THE_LATER_COUNTS) {
  const CIFDATA_TYPE loop = READ("_a_label\n_a_x\n_a_x_su\nSi1 0.25 0.01\n");
  ASSERT_EQ(loop.N, 1);
  EXPECT_EQ(loop.IND(x), 3);
  EXPECT_EQ(loop.VAL(1, x), 0.01f);
}

TEST(LOOP_RULES, INDENTED_LINES_ARE_THE_SAME_AS_OTHERS) {
  const CIFDATA_TYPE loop = READ("  loop_\n    _a_label\n   _a_x\n  Si1 1\n  ? 9\n  _b 1\n O1 2\n");
  ASSERT_EQ(loop.N, 1);
  EXPECT_EQ(loop.CVAL(1, label), "Si1");
}

TEST(LOOP_RULES, A_COMMENT_IN_THE_HEADER_IS_NO_COLUMN_ALTHOUGH_IT_NAMES_ONE) {
  const CIFDATA_TYPE loop = READ("_a_label\n# not _a_y\n? _a_z\n_a_x\nSi1 0.5\n");
  ASSERT_EQ(loop.N, 1);
  EXPECT_EQ(loop.VAL(1, x), 0.5f);
}

TEST(LOOP_RULES, A_BANG_STARTS_NO_COMMENT_BUT_ENDS_A_NUMBER_AS_A_HASH_DOES) {
  const CIFDATA_TYPE loop = READ("_a_label\n_a_x\n!Si1 1.5#7\nO1#2 2.5!7\n# 3 4\nAl1 # 5\n");
  ASSERT_EQ(loop.N, 3);
  EXPECT_EQ(loop.CVAL(1, label), "!Si1");
  EXPECT_EQ(loop.VAL(1, x), 1.5f);
  EXPECT_EQ(loop.CVAL(2, label), "O1#2") << "in a text it is a character";
  EXPECT_EQ(loop.VAL(2, x), 2.5f);
  EXPECT_EQ(loop.VAL(3, x), 0.0f) << "within a line the mark is a word";
}

TEST(LOOP_RULES, AN_ABSENT_LOOP_LEAVES_THE_VALUES_OF_THE_LAST_BUT_NO_COLUMNS_AND_ROWS) {
  CIFDATA_TYPE loop = READ("_a_label\n_a_x\nSi1 0.25(2)\n");
  FILE_LINES other = LINES("_b 1\n");
  READ_LOOP_CIF(other, loop);
  EXPECT_TRUE(ERR_KVACIF);
  EXPECT_EQ(loop.N, 0);
  EXPECT_EQ(loop.IND(label), 0);
  EXPECT_EQ(loop.IND(x), 0);
  ASSERT_EQ(loop.CVAL.COUNT(), 1);
  EXPECT_EQ(loop.CVAL(1, label), "Si1");
  EXPECT_EQ(loop.VAL(1, x), 0.25f);
  EXPECT_FLOAT_EQ(loop.VAL_STD(1, x), 0.02f);
}

TEST(LOOP_RULES, READING_CLEARS_WHAT_WAS_TOLD_BEFORE) {
  ERR_KVACIF = true;
  ERR_KVACIF_MESS = "something";
  READ("_a_label\n_a_x\nSi1 1\n");
  EXPECT_FALSE(ERR_KVACIF);
  EXPECT_EQ(ERR_KVACIF_MESS, "");
}
