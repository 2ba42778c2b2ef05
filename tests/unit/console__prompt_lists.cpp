// Tests of lists of numbers and of choices out of a list.
#include <gtest/gtest.h>

#include <array>
#include <numeric>  // for iota
#include <string_view>

#include "console_code/console/prompts.h"
#include "tests/unit/console__dialogue.h"

using namespace CONSOLE_TESTS;

namespace {

using NUMBERS = std::vector<int>;

const std::string hint =
    "\n  (Input negative numbers to define a range: 4,-7 means 4,5,6 and 7, or 'all' for "
    "everything)\n";

class LISTS : public CONSOLE_TEST {
 protected:
  NUMBERS list;
  std::string said;

  NUMBERS LISTED(const std::string& input, int nmax) {
    said = SAID(input, [&] { list = GET_LIST("List: ", nmax); });
    return list;
  }

  // With text pending; input is what can be typed behind it.
  NUMBERS LISTED_PENDING(const std::string& pending, int nmax, const std::string& input = "") {
    PEND(pending);
    return LISTED(input, nmax);
  }
};

TEST_F(LISTS, TYPED_LIST_GOES_ON_UNTIL_A_BLANK_LINE) {
  EXPECT_EQ(LISTED("1 3\n5,7\n\n", 10), (NUMBERS{1, 3, 5, 7}));
  EXPECT_EQ(said, hint + "\nList:\nList:\nList:");
}

TEST_F(LISTS, BLANK_ANSWER_IS_AN_EMPTY_LIST) {
  EXPECT_EQ(LISTED("\n", 10), NUMBERS{});
  EXPECT_EQ(said, hint + "\nList:");
}

TEST_F(LISTS, PENDING_LIST_IS_USED_WITHOUT_A_PROMPT_AND_ENDS_AT_ONCE) {
  EXPECT_EQ(LISTED_PENDING("2,4", 10), (NUMBERS{2, 4}));
  EXPECT_EQ(said, "");
  EXPECT_EQ(CONSOLE.INSTRING_LEN, 0);
}

TEST_F(LISTS, RANGES) {
  EXPECT_EQ(LISTED_PENDING("4,-7", 10), (NUMBERS{4, 5, 6, 7}));
  EXPECT_EQ(LISTED_PENDING("4 -4", 10), NUMBERS{4});
  EXPECT_EQ(LISTED_PENDING("1,3,-5", 10), (NUMBERS{1, 3, 4, 5}));
  EXPECT_EQ(LISTED_PENDING("1 -3 9", 10), (NUMBERS{1, 2, 3, 9}));
}

TEST_F(LISTS, FALLING_RANGE_STILL_RISES) {
  EXPECT_EQ(LISTED_PENDING("7,-4", 10), (NUMBERS{4, 5, 6, 7}));
}

// 2,-3 stores 2 3; -5 takes the 3 back and stores 3 4 5.
TEST_F(LISTS, RANGE_BEHIND_A_RANGE_GOES_ON_FROM_ITS_END) {
  EXPECT_EQ(LISTED_PENDING("2,-3,-5", 10), (NUMBERS{2, 3, 4, 5}));
}

TEST_F(LISTS, REPEATS_AND_ZEROS) {
  EXPECT_EQ(LISTED_PENDING("2 2 0 2", 10), (NUMBERS{2, 2, 2}));
  EXPECT_EQ(LISTED_PENDING("2,,4", 10), (NUMBERS{2, 4}));  // a value left out is a zero
}

TEST_F(LISTS, ALL_ANYWHERE_IN_ANY_CASE_IS_EVERYTHING) {
  for (const char* text : {"ALL", "all", "small", "1 2 All"})
    EXPECT_EQ(LISTED_PENDING(text, 3), (NUMBERS{1, 2, 3})) << text;
  EXPECT_EQ(LISTED("all\n", 3), (NUMBERS{1, 2, 3}));
  EXPECT_EQ(said, hint + "\nList:");
  EXPECT_EQ(CONSOLE.INSTRING_LEN, 0);
  EXPECT_EQ(LISTED("all\n", 1), NUMBERS{1});
}

TEST_F(LISTS, ALL_BEHIND_OTHER_LINES_FILLS_THE_LIST) {
  EXPECT_EQ(LISTED("3\nall\n", 4), (NUMBERS{3, 1, 2, 3}));
}

TEST_F(LISTS, FULL_LIST_RETURNS_WITHOUT_ASKING_FOR_MORE) {
  EXPECT_EQ(LISTED("1 2\n3\n", 3), (NUMBERS{1, 2, 3}));
  EXPECT_EQ(said, hint + "\nList:\nList:");
}

TEST_F(LISTS, WHAT_STANDS_BEHIND_A_FULL_LIST_IS_NOT_LOOKED_AT) {
  EXPECT_EQ(LISTED("1 2 99\n", 2), (NUMBERS{1, 2}));
}

TEST_F(LISTS, RANGE_IS_CUT_WHERE_THE_LIST_IS_FULL) {
  EXPECT_EQ(LISTED("3 3\n1 -5\n", 5), (NUMBERS{3, 3, 1, 2, 3}));
}

TEST_F(LISTS, FIRST_INPUT_CANNOT_BE_ZERO_OR_NEGATIVE) {
  for (const char* line : {"0,3\n4\n\n", "-2\n4\n\n", ",3\n4\n\n"}) {
    EXPECT_EQ(LISTED(line, 10), NUMBERS{4}) << line;
    EXPECT_EQ(said, hint +
                        "\nList:First input cannot be zero or negative - try again:\n"
                        "\nList:\nList:")
        << line;
  }
}

TEST_F(LISTS, TOO_LARGE_A_NUMBER_KEEPS_WHAT_WAS_STORED_SO_FAR) {
  EXPECT_EQ(LISTED("1 2 11 3\n4\n\n", 10), (NUMBERS{1, 2, 4}));
  EXPECT_EQ(said, hint + "\nList:Input exceeds max number of data - try again:\n\nList:\nList:");
  EXPECT_EQ(LISTED("1 -11\n\n", 10), NUMBERS{1});
}

TEST_F(LISTS, FAULT_IN_A_PENDING_LIST_GOES_ON_AT_THE_PROMPT_WITHOUT_THE_HINT) {
  EXPECT_EQ(LISTED_PENDING("1 11", 10, "2\n\n"), (NUMBERS{1, 2}));
  EXPECT_EQ(said, "Input exceeds max number of data - try again:\n\nList:\nList:");
  EXPECT_EQ(LISTED_PENDING("abc", 10, "2\n\n"), NUMBERS{2});
  EXPECT_EQ(
      said,
      "*****Type whole numbers from 1 to 10, with blanks between them, or all\n\nList:\nList:");
  EXPECT_EQ(LISTED_PENDING("0", 10, "2\n\n"), NUMBERS{2});
}

TEST_F(LISTS, WHAT_IS_NO_WHOLE_NUMBER_IS_ASKED_FOR_AGAIN) {
  for (const std::string& line :
       {std::string("abc"), std::string("1.5"), std::string("1e999"), std::string("nan"),
        std::string("99999999999999999999"), std::string(255, 'x'), std::string("\x01y\x02"),
        std::string("4-7")}) {
    EXPECT_EQ(LISTED(line + "\n2\n\n", 10), NUMBERS{2}) << line;
    EXPECT_EQ(said, hint +
                        "\nList:*****Type whole numbers from 1 to 10, with blanks between them, or "
                        "all\n\nList:\nList:")
        << line;
  }
}

TEST_F(LISTS, HUGE_RANGE_END_IS_TOO_LARGE) {
  EXPECT_EQ(LISTED("1 -2147483647\n\n", 10), NUMBERS{1});
}

TEST_F(LISTS, LARGE_LISTS) {
  NUMBERS all(100000);
  std::iota(all.begin(), all.end(), 1);
  EXPECT_EQ(LISTED("all\n", 100000), all);
}

TEST_F(LISTS, ROOM_FOR_NOTHING_IS_A_SYSTEM_WARNING) {
  for (const int nmax : {0, -3}) {
    EXPECT_EQ(LISTED("", nmax), NUMBERS{});
    EXPECT_EQ(said,
              "*****System warning: get_list called with nmax<1, please report to the Gemmara "
              "developers\n");
  }
}

TEST_F(LISTS, MACRO_LINE_IS_TAKEN_ONLY_WHEN_NOTHING_IS_PENDING) {
  START_MACRO_WITH("5\n\n");
  EXPECT_EQ(LISTED_PENDING("4", 10), NUMBERS{4});
  EXPECT_EQ(LISTED("", 10), NUMBERS{5});
  EXPECT_EQ(said, hint + "\nList:5\n\nList:\n");
}

// ---- choices ----

constexpr std::array<std::string_view, 4> menu{"cells", "Atoms", "atom coordinates", "bonds"};

class SELECTION : public CONSOLE_TEST {
 protected:
  int choice = -9;
  std::string said;

  int FROM_PENDING(const std::string& pending) {
    PEND(pending);
    said = SAID("", [&] { choice = GET_LIST_INSTRING(menu); });
    return choice;
  }

  int SELECTED(const std::string& input, bool use_pending = true) {
    said = SAID(input, [&] { choice = GET_LIST_SELECTION("output  ", menu, use_pending); });
    return choice;
  }

  const std::string shown =
      "\n"
      "     Possible selections for output:\n"
      "      1: cells\n"
      "      2: Atoms\n"
      "      3: atom coordinates\n"
      "      4: bonds\n"
      "      0: Exit\n";
  const std::string prompt = "\n     Enter selection by number:";
};

TEST_F(SELECTION, FIRST_PENDING_WORD_CHOOSES_AND_THE_REST_STAYS_PENDING) {
  EXPECT_EQ(FROM_PENDING("CELL  all blocks"), 1);
  EXPECT_EQ(said, "");
  EXPECT_EQ(CONSOLE.INSTRING, "all blocks");
  EXPECT_EQ(CONSOLE.INSTRING_LEN, 10);
  EXPECT_EQ(FROM_PENDING("b"), 4);
  EXPECT_EQ(CONSOLE.INSTRING_LEN, 0);
}

TEST_F(SELECTION, WORD_MUST_STAND_AT_THE_START_OF_THE_ENTRY) {
  EXPECT_EQ(FROM_PENDING("coordinates"), 0);
  EXPECT_EQ(CONSOLE.INSTRING, "coordinates");
  EXPECT_EQ(FROM_PENDING("cellsx rest"), 0);
  EXPECT_EQ(CONSOLE.INSTRING, "cellsx rest");
}

TEST_F(SELECTION, TWO_FITS_ARE_AMBIGUOUS_AND_CLEAR_THE_LINE) {
  EXPECT_EQ(FROM_PENDING("atom 5"), -1);
  EXPECT_EQ(said, "\n*****WARNING: Ambiguous option\n\n");
  EXPECT_EQ(CONSOLE.INSTRING_LEN, 0);
  EXPECT_EQ(FROM_PENDING("atoms"), 2);
}

TEST_F(SELECTION, THE_FIRST_ENTRY_CAN_BE_ONE_OF_TWO_FITS) {
  constexpr std::array<std::string_view, 2> alike{"bonds", "bond valences"};
  PEND("bon");
  said = SAID("", [&] { choice = GET_LIST_INSTRING(alike); });
  EXPECT_EQ(choice, -1);
  EXPECT_EQ(said, "\n*****WARNING: Ambiguous option\n\n");
}

TEST_F(SELECTION, NOTHING_PENDING_OR_NO_ENTRY_CHOOSES_NOTHING) {
  EXPECT_EQ(FROM_PENDING(""), 0);
  PEND("cells");
  EXPECT_EQ(GET_LIST_INSTRING({}), 0);
  EXPECT_EQ(GET_LIST_SELECTION("none", {}), 0);
  EXPECT_EQ(CONSOLE.INSTRING, "cells");
}

TEST_F(SELECTION, WORD_IS_COMPARED_BY_ITS_FIRST_30_CHARACTERS) {
  constexpr std::array<std::string_view, 1> long_menu{"abcdefghijklmnopqrstuvwxyz0123 and more"};
  PEND("abcdefghijklmnopqrstuvwxyz0123XYZ rest");
  EXPECT_EQ(GET_LIST_INSTRING(long_menu), 1);
  EXPECT_EQ(CONSOLE.INSTRING, "rest");
}

TEST_F(SELECTION, PENDING_CHOICE_SHOWS_NO_MENU) {
  PEND("bonds Si1");
  EXPECT_EQ(SELECTED(""), 4);
  EXPECT_EQ(said, "");
  EXPECT_EQ(CONSOLE.INSTRING, "Si1");
}

TEST_F(SELECTION, MENU_AND_NUMBER) {
  EXPECT_EQ(SELECTED("3\n"), 3);
  EXPECT_EQ(said, shown + prompt);
  EXPECT_EQ(CONSOLE.INSTRING_LEN, 0);
}

TEST_F(SELECTION, PENDING_TEXT_CAN_BE_LEFT_ASIDE) {
  PEND("bonds");
  EXPECT_EQ(SELECTED("1\n", false), 1);
  EXPECT_EQ(said, shown + prompt);
}

TEST_F(SELECTION, PENDING_TEXT_THAT_FITS_NOTHING_SHOWS_THE_MENU) {
  PEND("xyz");
  EXPECT_EQ(SELECTED("2\n"), 2);
  EXPECT_EQ(said, shown + prompt);
}

TEST_F(SELECTION, AMBIGUOUS_PENDING_TEXT_WARNS_AND_SHOWS_THE_MENU) {
  PEND("at");
  EXPECT_EQ(SELECTED("2\n"), 2);
  EXPECT_EQ(said, "\n*****WARNING: Ambiguous option\n\n" + shown + prompt);
}

TEST_F(SELECTION, BLANK_ZERO_AND_NEGATIVE_LEAVE) {
  EXPECT_EQ(SELECTED("\n"), 0);
  EXPECT_EQ(SELECTED("0\n"), 0);
  EXPECT_EQ(SELECTED("-2\n"), 0);
  EXPECT_EQ(SELECTED("-1e30\n"), 0);
}

TEST_F(SELECTION, VALUES_ARE_ROUNDED_TO_THE_NEAREST_NUMBER) {
  EXPECT_EQ(SELECTED("0.4\n"), 0);
  EXPECT_EQ(SELECTED("0.6\n"), 1);
  EXPECT_EQ(SELECTED("2.7\n"), 3);
  EXPECT_EQ(SELECTED("4.4\n"), 4);
}

TEST_F(SELECTION, TOO_LARGE_A_NUMBER_IS_INVALID_AND_ASKED_FOR_AGAIN) {
  EXPECT_EQ(SELECTED("5\n4.6\n1e30\n2\n"), 2);
  const std::string invalid = prompt + "     Invalid input!\n";
  EXPECT_EQ(said, shown + invalid + invalid + invalid + prompt);
}

TEST_F(SELECTION, NONSENSE_IS_AN_ILLEGAL_VALUE) {
  EXPECT_EQ(SELECTED("abc\nnan\n1e999\n1\n"), 1);
  const std::string illegal =
      "\n*****WARNING: Illegal value input, try again:\n\n     Enter selection by number:";
  EXPECT_EQ(said, shown + prompt + illegal + illegal + illegal);
}

TEST_F(SELECTION, NUMBERS_OF_A_LONG_MENU_STAND_IN_TWO_COLUMNS) {
  const std::vector<std::string_view> long_menu(11, "entry");
  const std::string text = SAID("11\n", [&] { choice = GET_LIST_SELECTION("x", long_menu); });
  EXPECT_EQ(choice, 11);
  EXPECT_NE(text.find("\n      9: entry\n     10: entry\n     11: entry\n"), std::string::npos);
}

}  // namespace
