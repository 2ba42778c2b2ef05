// Rows of texts as lines with aligned columns.
#include "console_code/kva_utilities/aligned_rows.h"

#include <gtest/gtest.h>

using namespace KVA_UTILITIES;

TEST(WRITE_COLS, NUMBERS_STAND_AT_THEIR_POINT_AND_TEXTS_AT_THE_LEFT) {
  const std::vector<std::string> lines =
      WRITE_COLS({{"Si1", "12.34(5)", "."}, {"O", "1.2", "3"}, {"Ca2", "150", "?"}});
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0], " Si1   12.34(5)  .");
  EXPECT_EQ(lines[1], " O      1.2      3");
  EXPECT_EQ(lines[2], " Ca2  150        ?");
}

TEST(WRITE_COLS, A_COLUMN_WITH_ONE_WORD_IS_A_COLUMN_OF_TEXTS) {
  const std::vector<std::string> lines = WRITE_COLS({{"1.5", "x"}, {"150", "y"}, {"abcd", "z"}});
  EXPECT_EQ(lines[0], " 1.5   x");
  EXPECT_EQ(lines[1], " 150   y");
  EXPECT_EQ(lines[2], " abcd  z");
  EXPECT_TRUE(WRITE_COLS({}).empty());
}

TEST(WRITE_COLS, BRACKETS_WITHOUT_AN_ESD_ARE_NO_NUMBER) {
  for (const std::string word : {"1.2(x)", "1.2(5"}) {
    const std::vector<std::string> lines = WRITE_COLS({{word}, {"150"}});
    EXPECT_EQ(lines[0], " " + word);
    EXPECT_EQ(lines[1], " 150") << "at the left, as texts stand";
  }
}

TEST(WRITE_COLS, A_BLANK_CELL_IS_NO_NUMBER) {
  const std::vector<std::string> lines = WRITE_COLS({{"1.5", "x"}, {"", "y"}, {"150", "z"}});
  EXPECT_EQ(lines[0], " 1.5  x");
  EXPECT_EQ(lines[1], "      y");
  EXPECT_EQ(lines[2], " 150  z");
}

TEST(WRITE_COLS, CELLS_ARE_LEFT_ADJUSTED_FIRST) {
  const std::vector<std::string> lines = WRITE_COLS({{" 1.5", " x"}, {"   150", "y"}});
  EXPECT_EQ(lines[0], "   1.5  x");
  EXPECT_EQ(lines[1], " 150    y");
}

// Stars are a number that does not fit: the others stay at their point, the stars at the right end.
TEST(WRITE_COLS, STARS_LEAVE_NUMBERS_AT_THEIR_POINT) {
  const std::vector<std::string> lines =
      WRITE_COLS({{"298.0", "55.25", "1.5"}, {"4.2", "**", "150"}, {"***********", "1.5", "NaN"}});
  EXPECT_EQ(lines[0], "       298.0  55.25    1.5");
  EXPECT_EQ(lines[1], "         4.2     **  150");
  EXPECT_EQ(lines[2], " ***********   1.5     NaN");
  EXPECT_EQ(WRITE_COLS({{"-Inf", "1"}, {"Inf", "1"}, {"1.25", "1"}}),
            (std::vector<std::string>{" -Inf  1", "  Inf  1", " 1.25  1"}));
}

TEST(WRITE_COLS, LINES_HAVE_NO_TRAILING_BLANKS_AND_BLANKS_BEFORE_A_NUMBER_DO_NOT_COUNT) {
  const std::vector<std::string> lines = WRITE_COLS({{"Si1", " 1.25(3)"}, {"O1", "-123.5"}});
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0], " Si1     1.25(3)");
  EXPECT_EQ(lines[1], " O1   -123.5");
}

// The word that makes a column one of texts may come in any row, and rows may end early.
TEST(ALIGNED_ROWS, ROWS_MAY_DIFFER_IN_LENGTH_AND_THE_LAST_ROW_COUNTS_FOR_ALL) {
  ALIGNED_ROWS rows;
  ADD_ROW({"1.5", "22.25(3)", "x"}, rows);
  ADD_ROW({"150"}, rows);
  ADD_ROW({}, rows);
  ADD_ROW({"O1'", "4"}, rows);
  ASSERT_EQ(rows.ENDS.size(), 4u);
  EXPECT_EQ(ALIGNED_LINE(rows, 0), " 1.5  22.25(3)  x");
  EXPECT_EQ(ALIGNED_LINE(rows, 1), " 150");
  EXPECT_EQ(ALIGNED_LINE(rows, 2), "");
  EXPECT_EQ(ALIGNED_LINE(rows, 3), " O1'   4");
}

// An a with a ring is two bytes and one character.
TEST(ALIGNED_ROWS, CHARACTERS_COUNT_AND_NOT_BYTES) {
  EXPECT_EQ(WRITE_COLS({{"\xC3\xA5", "1"}, {"abc", "2"}}),
            (std::vector<std::string>{" \xC3\xA5    1", " abc  2"}));
}
