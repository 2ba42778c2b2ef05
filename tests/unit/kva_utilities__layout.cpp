// Tests of tables whose columns move apart, and of their panels. Places are counted by hand.
#include "console_code/kva_utilities/layout.h"

#include <gtest/gtest.h>

using namespace KVA_UTILITIES;

namespace {

using LINES = std::vector<std::string>;

LINES SET(std::vector<FIELD_LINE> table) {
  SET_COLUMNS(table);
  LINES lines;
  for (const FIELD_LINE& line : table) lines.push_back(LINE_TEXT(line));
  return lines;
}

// Numbers in fields of six columns from column 1, 7, 13, with a head over the end of each.
FIELD_LINE NUMBERS(const LINES& texts) {
  FIELD_LINE line;
  int column = 0;
  for (const std::string& text : texts) {
    line.push_back({column, 1 + 6 * column, text, 6, true});
    ++column;
  }
  return line;
}

FIELD_LINE HEADS(const LINES& words) {
  FIELD_LINE line;
  int column = 0;
  for (const std::string& word : words) {
    line.push_back({column, 6 + 6 * column, word});
    ++column;
  }
  return line;
}

// value(esd) in fields of eight columns.
FIELD_LINE VALUES(const LINES& texts) {
  FIELD_LINE line;
  int column = 0;
  for (const std::string& text : texts) {
    line.push_back({column, 1 + 8 * column, text, 8});
    ++column;
  }
  return line;
}

}  // namespace

TEST(LAYOUT, WHERE_ALL_FIT_NOTHING_MOVES) {
  EXPECT_EQ(SET({HEADS({"a", "b", "c"}), NUMBERS({"1.0", "12.34", "3"}), NUMBERS({"999.99"})}),
            (LINES{"     a     b     c", "   1.0 12.34     3", "999.99"}))
      << "the first column needs no blank before it";
  EXPECT_EQ(SET({VALUES({" 1.2(3)", "-1.2(3)", " 5"})}), (LINES{" 1.2(3) -1.2(3)  5"}));
}

TEST(LAYOUT, A_LONG_NUMBER_WIDENS_ITS_COLUMN_AND_HEADS_MOVE_WITH_ITS_END) {
  // "123.45" and a blank need seven columns, "-1234.5" eight.
  EXPECT_EQ(SET({HEADS({"a", "b", "c"}), NUMBERS({"1.0", "123.45", "3"}),
                 NUMBERS({"1.0", "2", "-1234.5"})}),
            (LINES{"     a      b       c", "   1.0 123.45       3", "   1.0      2 -1234.5"}));
}

TEST(LAYOUT, ALL_WORDS_OF_A_COLUMN_MOVE_TOGETHER) {
  // The number needs one place more than its six.
  EXPECT_EQ(SET({{{0, 6, "a"}, {1, 9, "b"}, {1, 12, "c"}}, NUMBERS({"1234567"})}),
            (LINES{"      a  b  c", "1234567"}));
}

TEST(LAYOUT, A_BLANK_OF_A_VALUE_MAY_GO_WHERE_THAT_IS_ENOUGH) {
  // Nine characters with the blank, for eight columns: without it they fit.
  EXPECT_EQ(SET({VALUES({" 12.34(5)", " 1.5(2)"})}), (LINES{"12.34(5) 1.5(2)"}));
  // Twice they would touch: each column is as wide as its longest value and a blank.
  EXPECT_EQ(SET({VALUES({" 12.34(5)", " 12.34(5)"}), VALUES({" 1(2)", " 3"})}),
            (LINES{" 12.34(5) 12.34(5)", " 1(2)     3"}));
}

TEST(LAYOUT, A_VALUE_WITHOUT_A_BLANK_DOES_NOT_TOUCH) {
  // Both have eight characters with the sign, and the second begins where the first ends.
  EXPECT_EQ(SET({VALUES({" 1.23(4)", "-1.2(4)"})}), (LINES{" 1.23(4) -1.2(4)"}));
}

TEST(LAYOUT, A_COLON_DIVIDES_AND_WHAT_MAY_TOUCH_DOES) {
  std::vector<FIELD_LINE> table{{{0, 1, "12:", 3, true}, {1, 4, "345", 3, true}}};
  EXPECT_EQ(SET(table), (LINES{"12:345"}));
  table[0].push_back({2, 7, "6", 1, true, true});
  EXPECT_EQ(SET(table), (LINES{"12:3456"}));
  table[0][2].TOUCHES = false;
  EXPECT_EQ(SET(table), (LINES{"12:345 6"}));
}

TEST(LAYOUT, A_SENTENCE_WIDENS_NOTHING) {
  std::vector<FIELD_LINE> table{NUMBERS({"1", "2"}), NUMBERS({"3"})};
  table[1].push_back({0, 7, "  no value of any kind"});
  EXPECT_EQ(SET(table), (LINES{"     1     2", "     3  no value of any kind"}));
}

TEST(LAYOUT, CHARACTERS_ARE_COUNTED_NOT_BYTES) {
  EXPECT_EQ(SET({{{0, 1, "\u00c4\u00d6", 2}, {1, 3, " \u00dc1", 3}, {2, 6, "7", 2, true}}}),
            (LINES{"\u00c4\u00d6 \u00dc1 7"}));
}

// ---- panels ----

TEST(PANELS, WHOLE_COLUMNS_BEHIND_THE_START_OF_EACH_ROW) {
  std::vector<FIELD_LINE> table{HEADS({"r", "a", "b", "c", "d"}),
                                NUMBERS({"1", "2", "3", "4", "5"}), NUMBERS({"6", "7"})};
  table.emplace_back();
  SET_COLUMNS(table);
  // 18 columns hold the start and two columns.
  EXPECT_EQ(PANELS(table, 1, 18),
            (std::vector<LINES>{{"     r     a     b", "     1     2     3", "     6     7", ""},
                                {"     r     c     d", "     1     4     5", "     6", ""}}));
  EXPECT_EQ(PANELS(table, 1, 17).size(), 4u);
  EXPECT_EQ(PANELS(table, 1, 30).size(), 1u);
  EXPECT_EQ(PANELS(table, 1, 29).size(), 2u);
  EXPECT_EQ(PANELS(table, 1, 1).size(), 4u) << "at least a column each";
}

TEST(PANELS, A_WORD_OVER_TWO_COLUMNS_HOLDS_THEM_TOGETHER) {
  std::vector<FIELD_LINE> table{{{2, 10, "both of us"}}, NUMBERS({"1", "2", "3", "4"})};
  SET_COLUMNS(table);
  EXPECT_EQ(PANELS(table, 1, 19), (std::vector<LINES>{{"         both of us", "     1     2     3"},
                                                      {"", "     1   4"}}));
}

TEST(PANELS, ONLY_THE_FIRST_PANEL_MAY_TOUCH_THE_START) {
  const std::vector<FIELD_LINE> table{
      {{0, 1, "USE"}, {2, 8, "OCC"}},
      {{0, 1, "1", 1}, {1, 2, "7", 1, true, true}, {2, 8, "0.500", 5, true}}};
  EXPECT_EQ(PANELS(table, 1, 7), (std::vector<LINES>{{"USE", "17"}, {"USE OCC", "1   0.500"}}));
}

TEST(PANELS, A_SENTENCE_IS_REPEATED_WITH_THE_START) {
  std::vector<FIELD_LINE> table{NUMBERS({"1", "2", "3"}), NUMBERS({"4"})};
  table[1].push_back({0, 7, " nothing that would fit here"});
  SET_COLUMNS(table);
  EXPECT_EQ(PANELS(table, 1, 12),
            (std::vector<LINES>{{"     1     2", "     4 nothing that would fit here"},
                                {"     1     3", "     4 nothing that would fit here"}}));
}
