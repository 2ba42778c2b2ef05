// Which prompts lose the text that is pending, what they leave, and lists over several lines.
#include <array>
#include <string_view>
#include <vector>

#include "console_code/console/prompts.h"
#include "tests/unit/console__dialogue.h"

using namespace CONSOLE_TESTS;

namespace {

using PENDING = CONSOLE_TEST;

TEST_F(PENDING, IS_LOST_AT_EVERY_PROMPT_FOR_VALUES_AND_TEXTS) {
  std::array<float, 2> v{};
  PEND("1 2");
  EXPECT_EQ(SAID("3 4\n", [&v] { GET_INPUT_NVALUES("V:", v); }), "V:");
  EXPECT_EQ(v, (std::array<float, 2>{3.0f, 4.0f}));

  float low = 0.0f;
  float high = 0.0f;
  PEND("1 2");
  EXPECT_EQ(SAID("3 4\n", [&] { GET_INPUT_RANGE("R:", low, high); }), "\nR:");
  EXPECT_EQ(low, 3.0f);
  EXPECT_EQ(high, 4.0f);

  std::vector<std::vector<float>> m(2, std::vector<float>(2));
  int ierr = 5;
  PEND("1 2");
  EXPECT_EQ(SAID("3 4\n5 6\n", [&] { GET_INPUT_MATRIX("M", 2, 2, m, ierr); }),
            "M:\n  Row 1:  Row 2:");
  EXPECT_EQ(m, (std::vector<std::vector<float>>{{3.0f, 4.0f}, {5.0f, 6.0f}}));

  std::string text;
  PEND("pending");
  EXPECT_EQ(SAID("typed\n", [&text] { text = GET_INPUT_STRING("T:", "R"); }), "\nT:");
  EXPECT_EQ(text, "typed");
}

// Text behind the command is told as it is lost, once; the line just read is not.
TEST_F(PENDING, BEHIND_A_COMMAND_IS_TOLD_WHERE_IT_IS_NOT_USED) {
  const auto ask = [] {
    GET_ANSWER("Sort by P or T?", 'P', 'T', "P");
    GET_ANSWER("Sort increasing or decreasing?", 'I', 'D', "I");
  };
  PEND("P D");
  CONSOLE.BEHIND_COMMAND = true;
  EXPECT_EQ(SAID("T\nD\n", ask),
            "*****\"P D\" behind the command is not used: answer the question\n"
            "Sort by P or T? (P/T) <P>?Sort increasing or decreasing? (I/D) <I>?");
  PEND("P D");
  EXPECT_EQ(SAID("T\nD\n", ask),
            "Sort by P or T? (P/T) <P>?Sort increasing or decreasing? (I/D) <I>?");
}

TEST_F(PENDING, AN_ENTRY_THAT_IS_NOT_OFFERED_IS_KNOWN_BY_ITS_START) {
  constexpr std::array<std::string_view, 4> all{"cells", "bond lengths", "bars", "measures"};
  constexpr std::array<std::string_view, 2> offered{"cells", "bars"};
  const auto begun_by = [&](const std::string& typed) {
    PEND(typed);
    return std::string(PENDING_ENTRY(all, offered));
  };
  EXPECT_EQ(begun_by("BOND Fe1"), "bond lengths");
  EXPECT_EQ(begun_by("m"), "measures");
  EXPECT_EQ(begun_by("b"), "") << "it begins an entry that is offered";
  EXPECT_EQ(begun_by("lengths"), "");
  EXPECT_EQ(begun_by(""), "");
}

TEST_F(PENDING, OTHER_WORDS_OF_AN_ENTRY_GO_WITH_ITS_FIRST) {
  constexpr std::array<std::string_view, 4> menu{"bond lengths", "angles between bonds",
                                                 "valences of bonds", "all, a line a value"};
  const auto left_of = [&menu](const std::string& typed, int choice) {
    PEND(typed);
    CONSOLE.BEHIND_COMMAND = true;
    EXPECT_EQ(GET_LIST_SELECTION("Table", menu), choice) << typed;
    return CONSOLE.INSTRING;
  };
  EXPECT_EQ(left_of("bond lengths", 1), "");
  EXPECT_EQ(left_of("b LENGTH Fe1", 1), "Fe1");
  EXPECT_EQ(left_of("angles bonds B1", 2), "B1");
  EXPECT_EQ(left_of("angles B between", 2),
            "B between");  // a site; a beginning needs three letters
  EXPECT_EQ(left_of("bond lengthsx", 1), "lengthsx");
  EXPECT_EQ(left_of("valences of bonds Ca", 3), "Ca");
  EXPECT_EQ(left_of("valences o bonds", 3), "o bonds");
  EXPECT_EQ(left_of("all, a line a value x.csv", 4), "x.csv");
  EXPECT_EQ(left_of("all, a", 4), "");
}

// So that callers can tell a blank answer from a zero.
TEST_F(PENDING, IS_THE_LINE_JUST_READ_BEHIND_VALUES_AND_RANGES) {
  float low = 9.0f;
  float high = 9.0f;
  SAID("0 0\n", [&] { GET_INPUT_VALUES("V:", low, &high); });
  EXPECT_EQ(CONSOLE.INSTRING, "0 0");
  EXPECT_EQ(CONSOLE.INSTRING_LEN, 3);
  SAID("0 0 rest\n", [&] { GET_INPUT_RANGE("R:", low, high); });
  EXPECT_EQ(CONSOLE.INSTRING, "0 0 rest");
  EXPECT_EQ(CONSOLE.INSTRING_LEN, 8);
}

TEST_F(PENDING, WORD_MUST_FIT_AN_ENTRY_UP_TO_ITS_30TH_CHARACTER) {
  constexpr std::array<std::string_view, 1> menu{"abcdefghijklmnopqrstuvwxyz0123 and more"};
  PEND("abcdefghijklmnopqrstuvwxyz012x");
  EXPECT_EQ(GET_LIST_INSTRING(menu), 0);
  EXPECT_EQ(CONSOLE.INSTRING, "abcdefghijklmnopqrstuvwxyz012x");
}

// The rule for the first number is one for each line, and a line that breaks it costs nothing of
// the lines before it.
TEST_F(PENDING, LINES_OF_A_LIST_EACH_BEGIN_WITH_A_POSITIVE_NUMBER) {
  std::vector<int> list;
  const std::string said =
      SAID("2 3\n-5\n0 4\nabc\n7\n\n", [&list] { list = GET_LIST("List:", 10); });
  EXPECT_EQ(list, (std::vector<int>{2, 3, 7}));
  const std::string refused = "First input cannot be zero or negative - try again:\n";
  EXPECT_TRUE(said.ends_with(
      "\nList:\nList:" + refused + "\nList:" + refused +
      "\nList:*****Type whole numbers from 1 to 10, with blanks between them, or all\n"
      "\nList:\nList:"))
      << said;
}

}  // namespace
