// Tests of the questions for a character, values, ranges, matrices and texts.
#include "console_code/console/prompts.h"

#include <gtest/gtest.h>

#include <array>

#include "console_code/kva_utilities/numbers.h"
#include "tests/unit/console__dialogue.h"

using namespace CONSOLE_TESTS;

namespace {

const std::string illegal_value = "\n*****WARNING: Illegal value input, try again:\n\n";

// Lines that hold no number and must do no harm.
const std::vector<std::string> nonsense{"abc",      "1e999",
                                        "-1e999",   "nan",
                                        "inf",      std::string(255, 'x'),
                                        "1.2.3",    "\x01\x02x\x7f",
                                        "--5",      "e",
                                        "\xC3\xA4", "+",
                                        "0x10",     "1|2"};

class PROMPTS : public CONSOLE_TEST {
 protected:
  static char ANSWERED(const std::string& input, const std::string& control, std::string& said) {
    char answer = '?';
    said = SAID(input, [&] { answer = GET_ANSWER("Sort by P or T", 'P', 'T', control); });
    return answer;
  }
};

// ---- one character ----

TEST_F(PROMPTS, ANSWER_FINDS_A_WORD_IGNORING_CASE) {
  PEND("take Small ones");
  EXPECT_EQ(ANSWER("ALL"), 8);
  EXPECT_EQ(ANSWER("none"), 0);
  EXPECT_EQ(ANSWER(""), 0);
}

TEST_F(PROMPTS, QUESTION_SHOWS_ITS_LETTERS_AND_DEFAULT) {
  std::string said;
  EXPECT_EQ(ANSWERED("p\n", "", said), 'P');
  EXPECT_EQ(said, "Sort by P or T (P/T)?");
  EXPECT_EQ(ANSWERED("t\n", "P", said), 'T');
  EXPECT_EQ(said, "Sort by P or T (P/T) <P>?");
  EXPECT_EQ(ANSWERED("\n", "T", said), 'T');
  EXPECT_EQ(said, "Sort by P or T (P/T) <T>?");
}

TEST_F(PROMPTS, BLANK_ANSWER_IS_THE_DEFAULT_OR_A_BLANK) {
  std::string said;
  EXPECT_EQ(ANSWERED("\n", "P", said), 'P');
  EXPECT_EQ(ANSWERED("   \n", "anything else", said), 'T');
  EXPECT_EQ(ANSWERED("\n", "", said), ' ');
}

TEST_F(PROMPTS, REFUSED_BLANK_ASKS_AGAIN_WITHOUT_A_MESSAGE) {
  std::string said;
  EXPECT_EQ(ANSWERED("\n\np\n", "Pr", said), 'P');
  EXPECT_EQ(said, "Sort by P or T (P/T) <P>?Sort by P or T (P/T) <P>?Sort by P or T (P/T) <P>?");
  // "R" alone: the default is the second letter, is shown, and a blank is refused all the same.
  EXPECT_EQ(ANSWERED("\np\n", "R", said), 'P');
  EXPECT_EQ(said, "Sort by P or T (P/T) <T>?Sort by P or T (P/T) <T>?");
}

TEST_F(PROMPTS, OTHER_ANSWERS_ASK_AGAIN_WITHOUT_A_MESSAGE) {
  std::string said;
  EXPECT_EQ(ANSWERED("abc\n12\nP\n", "", said), 'P');
  EXPECT_EQ(said, "Sort by P or T (P/T)?Sort by P or T (P/T)?Sort by P or T (P/T)?");
}

TEST_F(PROMPTS, SECOND_LETTER_IS_TESTED_FIRST_ANYWHERE_IN_THE_LINE) {
  char answer = '?';
  SAID("yen\n", [&] { answer = GET_ANSWER_YN("Ok?"); });
  EXPECT_EQ(answer, 'N');
  SAID("why\n", [&] { answer = GET_ANSWER_YN("Ok?"); });
  EXPECT_EQ(answer, 'Y');
}

TEST_F(PROMPTS, ANSWER_LEAVES_NOTHING_PENDING_AND_TAKES_NO_PENDING_TEXT) {
  PEND("Y");
  char answer = '?';
  EXPECT_EQ(SAID("no more\n", [&] { answer = GET_ANSWER_YN("Ok?"); }), "Ok? (Y/N)?");
  EXPECT_EQ(answer, 'N');
  EXPECT_EQ(CONSOLE.INSTRING_LEN, 0);
}

TEST_F(PROMPTS, YES_OR_NO_WITH_AND_WITHOUT_DEFAULT) {
  char answer = '?';
  EXPECT_EQ(SAID("\n", [&] { answer = GET_ANSWER_YN("Ok", "Y"); }), "Ok (Y/N) <Y>?");
  EXPECT_EQ(answer, 'Y');
  EXPECT_EQ(SAID("\n", [&] { answer = GET_ANSWER_YN("Ok", "N"); }), "Ok (Y/N) <N>?");
  EXPECT_EQ(answer, 'N');
  SAID("\n", [&] { answer = GET_ANSWER_YN("Ok"); });
  EXPECT_EQ(answer, ' ');
}

TEST_F(PROMPTS, WRONG_MACRO_ANSWER_TAKES_THE_NEXT_MACRO_LINE) {
  START_MACRO_WITH("other\n8\nY\nlast line\n");
  char answer = '?';
  EXPECT_EQ(SAID("", [&] { answer = GET_ANSWER_YN("Ok", "N"); }),
            "Ok (Y/N) <N>?other\nOk (Y/N) <N>?8\nOk (Y/N) <N>?Y\n");
  EXPECT_EQ(answer, 'Y');
}

TEST_F(PROMPTS, ENDED_MACRO_GIVES_THE_DEFAULT_AND_A_REFUSED_BLANK_PASSES_TO_THE_CONSOLE) {
  START_MACRO_WITH("");
  char answer = '?';
  EXPECT_EQ(SAID("", [&] { answer = GET_ANSWER_YN("Ok", "N"); }),
            "Ok (Y/N) <N>?\n***** Macro completed\n");
  EXPECT_EQ(answer, 'N');
  START_MACRO_WITH("");
  EXPECT_EQ(SAID("y\n", [&] { answer = GET_ANSWER_YN("Ok", "Nr"); }),
            "Ok (Y/N) <N>?\n***** Macro completed\nOk (Y/N) <N>?");
  EXPECT_EQ(answer, 'Y');
}

// ---- values ----

TEST_F(PROMPTS, ONE_VALUE) {
  float v = 7.0f;
  EXPECT_EQ(SAID("2.5 rest\n", [&] { GET_INPUT_VALUES("Value: ", v); }), "\nValue:");
  EXPECT_EQ(v, 2.5f);
  EXPECT_EQ(CONSOLE.INSTRING,
            "2.5 rest");  // the line stays, so that callers can tell a blank from a zero
}

TEST_F(PROMPTS, BLANK_ANSWER_LEAVES_ZEROS_AND_NO_LENGTH) {
  float v1 = 7.0f;
  float v2 = 8.0f;
  SAID("\n", [&] { GET_INPUT_VALUES("Value: ", v1, &v2); });
  EXPECT_EQ(v1, 0.0f);
  EXPECT_EQ(v2, 0.0f);
  EXPECT_EQ(CONSOLE.INSTRING_LEN, 0);
}

TEST_F(PROMPTS, TWO_VALUES_BY_BLANK_OR_COMMA) {
  float v1 = 0.0f;
  float v2 = 0.0f;
  for (const char* line : {"1.5 -2e1\n", "1.5,-20\n", " 1.5 , -2D+01\n"}) {
    SAID(line, [&] { GET_INPUT_VALUES("Values: ", v1, &v2); });
    EXPECT_EQ(v1, 1.5f);
    EXPECT_EQ(v2, -20.0f);
  }
}

TEST_F(PROMPTS, NO_FEED_LEAVES_OUT_THE_BLANK_LINE) {
  float v = 0.0f;
  EXPECT_EQ(SAID("1\n", [&] { GET_INPUT_VALUES("Value:", v, nullptr, "nofeed"); }), "Value:");
}

TEST_F(PROMPTS, SECOND_VALUE_MAY_BE_LEFT_OUT_ONLY_WITH_THE_OPTION) {
  float v1 = 0.0f;
  float v2 = 9.0f;
  EXPECT_EQ(SAID("3\n", [&] { GET_INPUT_VALUES("V:", v1, &v2, "option"); }), "\nV:");
  EXPECT_EQ(v1, 3.0f);
  EXPECT_EQ(v2, 0.0f);
  SAID("4 abc\n", [&] { GET_INPUT_VALUES("V:", v1, &v2, "Option nofeed"); });
  EXPECT_EQ(v1, 4.0f);
  EXPECT_EQ(v2, 0.0f);
  EXPECT_EQ(SAID("3\n5 6\n", [&] { GET_INPUT_VALUES("V:", v1, &v2); }),
            "\nV:" + illegal_value + "V:");
  EXPECT_EQ(v1, 5.0f);
  EXPECT_EQ(v2, 6.0f);
}

TEST_F(PROMPTS, NONSENSE_IS_ASKED_FOR_AGAIN_WITHOUT_THE_FIRST_BLANK_LINE) {
  for (const std::string& line : nonsense) {
    float v = 7.0f;
    EXPECT_EQ(SAID(line + "\n2\n", [&] { GET_INPUT_VALUES("Value:", v); }),
              "\nValue:" + illegal_value + "Value:")
        << line;
    EXPECT_EQ(v, 2.0f) << line;
  }
}

TEST_F(PROMPTS, BLANK_AFTER_A_HALF_READ_LINE_STILL_LEAVES_ZEROS) {
  float v1 = 7.0f;
  float v2 = 8.0f;
  SAID("5 abc\n\n", [&] { GET_INPUT_VALUES("V:", v1, &v2); });
  EXPECT_EQ(v1, 0.0f);
  EXPECT_EQ(v2, 0.0f);
}

TEST_F(PROMPTS, VALUES_DISCARD_PENDING_TEXT) {
  PEND("5");
  float v = 0.0f;
  SAID("6\n", [&] { GET_INPUT_VALUES("V:", v); });
  EXPECT_EQ(v, 6.0f);
}

TEST_F(PROMPTS, MANY_VALUES_ARE_TAKEN_AS_FAR_AS_THERE_IS_ROOM) {
  std::array<float, 3> v{9.0f, 9.0f, 9.0f};
  int count = 0;
  EXPECT_EQ(SAID("1 2\n", [&] { count = GET_INPUT_NVALUES("V: ", v); }), "V:");
  EXPECT_EQ(count, 2);
  EXPECT_EQ(v, (std::array<float, 3>{1.0f, 2.0f, 0.0f}));
  SAID("1,2,3,4,5\n", [&] { count = GET_INPUT_NVALUES("V:", v); });
  EXPECT_EQ(count, 3);
  EXPECT_EQ(v, (std::array<float, 3>{1.0f, 2.0f, 3.0f}));
}

TEST_F(PROMPTS, MANY_VALUES_SKIP_WHAT_IS_NO_NUMBER_AND_ASK_ONCE) {
  std::array<float, 3> v{9.0f, 9.0f, 9.0f};
  int count = 0;
  EXPECT_EQ(SAID("a 1 b 2.5\n", [&] { count = GET_INPUT_NVALUES("V:", v); }), "V:");
  EXPECT_EQ(count, 2);
  EXPECT_EQ(v, (std::array<float, 3>{1.0f, 2.5f, 0.0f}));
  SAID("\n", [&] { count = GET_INPUT_NVALUES("V:", v); });
  EXPECT_EQ(count, 0);
  EXPECT_EQ(v, (std::array<float, 3>{0.0f, 0.0f, 0.0f}));
  for (const std::string& line : {std::string("abc"), std::string("nan"), std::string(255, 'x')}) {
    SAID(line + "\n", [&] { count = GET_INPUT_NVALUES("V:", v); });
    EXPECT_EQ(count, 0) << line;
  }
}

// ---- ranges ----

TEST_F(PROMPTS, RANGE_IS_PUT_IN_ORDER) {
  float low = 9.0f;
  float high = 9.0f;
  EXPECT_EQ(SAID("5 1\n", [&] { GET_INPUT_RANGE("Range: ", low, high); }), "\nRange:");
  EXPECT_EQ(low, 1.0f);
  EXPECT_EQ(high, 5.0f);
  SAID("3 3\n", [&] { GET_INPUT_RANGE("Range:", low, high); });
  EXPECT_EQ(low, 3.0f);
  EXPECT_EQ(high, 3.0f);
  SAID("-2,4\n", [&] { GET_INPUT_RANGE("Range:", low, high); });
  EXPECT_EQ(low, -2.0f);
  EXPECT_EQ(high, 4.0f);
}

TEST_F(PROMPTS, BLANK_RANGE_IS_ZERO_TO_ZERO_WITH_STEP_1) {
  float low = 9.0f;
  float high = 9.0f;
  float step = 9.0f;
  SAID("\n", [&] { GET_INPUT_RANGE("Range:", low, high, &step); });
  EXPECT_EQ(low, 0.0f);
  EXPECT_EQ(high, 0.0f);
  EXPECT_EQ(step, 1.0f);
  EXPECT_EQ(CONSOLE.INSTRING_LEN, 0);
}

TEST_F(PROMPTS, STEP_IS_POSITIVE_AND_A_ZERO_ONE_IS_THE_LARGEST_REAL) {
  float low = 0.0f;
  float high = 0.0f;
  float step = 0.0f;
  SAID("1 5 -0.5\n", [&] { GET_INPUT_RANGE("Range:", low, high, &step); });
  EXPECT_EQ(step, 0.5f);
  SAID("1 5 0\n", [&] { GET_INPUT_RANGE("Range:", low, high, &step); });
  EXPECT_EQ(step, KVA_UTILITIES::LARGEST_REAL);
}

TEST_F(PROMPTS, FAILED_RANGE_IS_ASKED_FOR_AGAIN_WITH_ITS_BLANK_LINE_AND_NO_MESSAGE) {
  float low = 0.0f;
  float high = 0.0f;
  float step = 0.0f;
  EXPECT_EQ(SAID("1 5\n1 5 2\n", [&] { GET_INPUT_RANGE("R:", low, high, &step); }), "\nR:\nR:");
  EXPECT_EQ(step, 2.0f);
  EXPECT_EQ(SAID("9 abc\n\n", [&] { GET_INPUT_RANGE("R:", low, high); }), "\nR:\nR:");
  EXPECT_EQ(low, 0.0f);
  EXPECT_EQ(high, 0.0f);
  for (const std::string& line : nonsense) {
    EXPECT_EQ(SAID(line + "\n1 2\n", [&] { GET_INPUT_RANGE("R:", low, high); }), "\nR:\nR:")
        << line;
    EXPECT_EQ(high, 2.0f) << line;
  }
}

// ---- matrices ----

using MATRIX = std::vector<std::vector<float>>;

MATRIX MATRIX_OF(std::size_t nrow, std::size_t ncol, float value) {
  return MATRIX(nrow, std::vector<float>(ncol, value));
}

TEST_F(PROMPTS, MATRIX_IS_READ_ROW_BY_ROW) {
  MATRIX m = MATRIX_OF(2, 3, 9.0f);
  int ierr = 5;
  EXPECT_EQ(SAID("1 2 3\n4,5,6\n", [&] { GET_INPUT_MATRIX("Matrix  ", 2, 3, m, ierr); }),
            "Matrix:\n  Row 1:  Row 2:");
  EXPECT_EQ(ierr, 0);
  EXPECT_EQ(m, (MATRIX{{1.0f, 2.0f, 3.0f}, {4.0f, 5.0f, 6.0f}}));
}

TEST_F(PROMPTS, BLANK_ROW_ENDS_THE_MATRIX_WITH_WHAT_WAS_READ) {
  MATRIX m = MATRIX_OF(3, 2, 9.0f);
  int ierr = 5;
  SAID("1 2\n\n", [&] { GET_INPUT_MATRIX("M", 3, 2, m, ierr); });
  EXPECT_EQ(ierr, -1);
  EXPECT_EQ(m, (MATRIX{{1.0f, 2.0f}, {0.0f, 0.0f}, {0.0f, 0.0f}}));
}

TEST_F(PROMPTS, WRONG_ROW_IS_REPEATED) {
  MATRIX m = MATRIX_OF(2, 2, 9.0f);
  int ierr = 5;
  EXPECT_EQ(SAID("1 2\n3 x\n3\n3 4\n", [&] { GET_INPUT_MATRIX("M", 2, 2, m, ierr); }),
            "M:\n  Row 1:  Row 2:"
            "\n*****WARNING: Error reading input for this row, try again\n\n  Row 2:"
            "\n*****WARNING: Error reading input for this row, try again\n\n  Row 2:");
  EXPECT_EQ(ierr, 0);
  EXPECT_EQ(m, (MATRIX{{1.0f, 2.0f}, {3.0f, 4.0f}}));
}

TEST_F(PROMPTS, IMPOSSIBLE_MATRIX_IS_NOT_ASKED_FOR) {
  struct SIZE {
    int NROW;
    int NCOL;
  };
  // Too few rows, no column, ten of either, larger than the matrix (which is 9 by 9).
  MATRIX m = MATRIX_OF(9, 9, 9.0f);
  for (const SIZE size : {SIZE{1, 3}, SIZE{3, 0}, SIZE{10, 3}, SIZE{3, 10}, SIZE{-1, -1}}) {
    int ierr = 5;
    EXPECT_EQ(SAID("", [&] { GET_INPUT_MATRIX("M", size.NROW, size.NCOL, m, ierr); }), "");
    EXPECT_EQ(ierr, -1);
  }
  EXPECT_EQ(m, MATRIX_OF(9, 9, 0.0f));
  MATRIX small = MATRIX_OF(2, 2, 9.0f);
  int ierr = 5;
  EXPECT_EQ(SAID("", [&] { GET_INPUT_MATRIX("M", 3, 2, small, ierr); }), "");
  EXPECT_EQ(SAID("", [&] { GET_INPUT_MATRIX("M", 2, 3, small, ierr); }), "");
  EXPECT_EQ(ierr, -1);
}

TEST_F(PROMPTS, LARGEST_MATRIX_HAS_NINE_ROWS) {
  MATRIX m = MATRIX_OF(9, 1, 0.0f);
  int ierr = 5;
  SAID("1\n2\n3\n4\n5\n6\n7\n8\n9\n", [&] { GET_INPUT_MATRIX("M", 9, 1, m, ierr); });
  EXPECT_EQ(ierr, 0);
  EXPECT_EQ(m[8][0], 9.0f);
}

// ---- texts ----

TEST_F(PROMPTS, TEXT_IS_LEFT_ADJUSTED_AND_KEEPS_ITS_CASE) {
  std::string text;
  EXPECT_EQ(SAID("   Some Text  \n", [&] { text = GET_INPUT_STRING("Text: "); }), "\nText:");
  EXPECT_EQ(text, "Some Text");
}

TEST_F(PROMPTS, BLANK_TEXT_IS_AN_ANSWER_UNLESS_REFUSED) {
  std::string text = "old";
  SAID("\n", [&] { text = GET_INPUT_STRING("Text:"); });
  EXPECT_EQ(text, "");
  EXPECT_EQ(SAID("\n  \nword\n", [&] { text = GET_INPUT_STRING("Text:", "r"); }),
            "\nText:Text:Text:");
  EXPECT_EQ(text, "word");
}

TEST_F(PROMPTS, LONG_TEXT_IS_CUT_AT_255_CHARACTERS) {
  std::string text;
  SAID(std::string(300, 'x') + "\n", [&] { text = GET_INPUT_STRING("Text:"); });
  EXPECT_EQ(text, std::string(255, 'x'));
}

}  // namespace
