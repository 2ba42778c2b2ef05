// Tests of packed tables: they are those of layout.h, whose places are counted by hand.
#include "console_code/kva_utilities/long_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace KVA_UTILITIES;

namespace {

using LINES = std::vector<std::string>;

LINES PACKED(const std::vector<FIELD_LINE>& lines) {
  LONG_TABLE table;
  MAKE_ROOM(table, lines.size(), 4);
  for (const FIELD_LINE& line : lines) ADD_LINE(line, table);
  const std::vector<COLUMN_SHIFT> shifts = SHIFTS_OF(table);
  LINES texts;
  std::string text;
  for (TABLE_PLACE place; place.LINE < table.ENDS.size(); texts.push_back(text))
    TAKE_LINE(table, shifts, place, text);
  return texts;
}

LINES PLAIN(std::vector<FIELD_LINE> lines) {
  SET_COLUMNS(lines);
  LINES texts;
  for (const FIELD_LINE& line : lines) texts.push_back(LINE_TEXT(line));
  return texts;
}

// A line of fields about six places apart, of every kind that a table may hold.
FIELD_LINE ANY_LINE(std::mt19937& random, int most_columns) {
  const LINES texts{"1.0",  "-12.345", " 7.1(2)", " 3.14159(26)", "1000:",   " a title :",
                    "Mg2+", "é-Å",     "",        "  ",           "No value"};
  const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  FIELD_LINE line;
  for (int column = 0; column < most_columns; ++column) {
    if (below(5) == 0) continue;
    FIELD field;
    field.COLUMN = column;
    field.AT = 1 + 6 * column + below(3);
    field.TEXT = texts[static_cast<std::size_t>(below(static_cast<int>(texts.size())))];
    field.WIDTH = below(4) == 0 ? 0 : 5 + below(8);
    field.RIGHT = field.WIDTH > 0 && below(2) == 0;
    field.TOUCHES = below(6) == 0;
    line.push_back(field);
  }
  if (!line.empty() && below(6) == 0)
    line.push_back({line.back().COLUMN, line.back().AT + below(8), "a sentence"});
  return line;
}

}  // namespace

TEST(LONG_TABLE, FIELDS_STAND_WHERE_THEY_ARE_ASKED_FOR) {
  EXPECT_EQ(
      PACKED({{{0, 6, "a"}, {1, 12, "b"}}, {{0, 1, "1.0", 6, true}, {1, 7, "12.34", 6, true}}, {}}),
      (LINES{"     a     b", "   1.0 12.34", ""}));
  EXPECT_EQ(PACKED({{{0, 1, " 1.2345(6)", 9}, {1, 11, "7"}}}), (LINES{"1.2345(6) 7"}))
      << "the blank before a value goes first";
}

TEST(LONG_TABLE, ONE_LONG_NUMBER_MOVES_WHAT_FOLLOWS_IN_ALL_LINES) {
  EXPECT_EQ(PACKED({{{0, 4, "no"}, {1, 10, "b"}},
                    {{0, 1, "999:", 4, true}, {1, 5, "1.0", 6, true}},
                    {{0, 1, "1000:", 4, true}, {1, 5, "2.0", 6, true}}}),
            (LINES{"    no    b", " 999:   1.0", "1000:   2.0"}));
}

TEST(LONG_TABLE, ANY_TABLE_IS_THAT_OF_THE_PLAIN_RULE) {
  std::mt19937 random(4);
  int widened = 0;
  for (int n = 0; n < 3000; ++n) {
    std::vector<FIELD_LINE> lines;
    const int columns = 1 + n % 7;
    for (int k = 0; k < 1 + n % 5; ++k) lines.push_back(ANY_LINE(random, columns));
    LONG_TABLE table;
    for (const FIELD_LINE& line : lines) ADD_LINE(line, table);
    widened += table.FITS ? 0 : 1;
    ASSERT_EQ(PACKED(lines), PLAIN(lines)) << "table " << n;
  }
  EXPECT_GT(widened, 500);
  EXPECT_LT(widened, 2900);
}
