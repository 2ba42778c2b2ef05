// The limits of the number routines: how many words are read, where a number changes its form, what
// is left of an earlier error, and values that no order can hold.
#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <string>
#include <vector>

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/numbers.h"

using namespace KVA_UTILITIES;

namespace {

std::string REPEATED(const std::string& text, int n) {
  std::string all;
  for (int i = 0; i < n; ++i) all += text;
  return all;
}

}  // namespace

// ---- reading ----

TEST(NUM_FROM_TEXT, LOOKS_AT_50_WORDS) {
  std::string text;
  for (int i = 1; i <= 60; ++i) text += std::to_string(i) + " ";
  const std::vector<NUMBER> numbers = NUM_FROM_TEXT(text);
  ASSERT_EQ(numbers.size(), 50u);
  EXPECT_EQ(numbers[49].IVAL, 50);
  const std::vector<NUMBER> last = NUM_FROM_TEXT(REPEATED("x ", 49) + "7 8");
  ASSERT_EQ(last.size(), 1u) << "words that are no numbers count as well";
  EXPECT_EQ(last[0].IVAL, 7);
}

TEST(NUMBER_ERRORS, EACH_ROUTINE_BEGINS_WITHOUT_THE_LAST_ONE) {
  const auto old_error = [] {
    ERR_TEXT = true;
    ERR_TEXT_MESS = "an earlier error";
  };
  const auto clear = [] { return !ERR_TEXT && ERR_TEXT_MESS.empty(); };
  NUMBER number;
  old_error();
  EXPECT_TRUE(GETNUM("1", number) && clear());
  std::array<std::string, 2> words;
  int count = 0;
  old_error();
  GETWORDS("one two", words, count);
  EXPECT_TRUE(clear());
  std::array<float, 2> values{7.0f, 7.0f};
  std::array<float, 2> stds{7.0f, 7.0f};
  old_error();
  GETNUM_STD("1.5(2)", values, stds, count);
  EXPECT_TRUE(clear());
  EXPECT_EQ(values, (std::array<float, 2>{1.5f, 0.0f})) << "and without the last values";
  EXPECT_EQ(stds, (std::array<float, 2>{0.2f, 0.0f}));
  NUM_FROM_TEXT("no numbers at all");
  EXPECT_TRUE(clear()) << "what is skipped is no error";
}

TEST(GETNUM_STD, AN_EXCLAMATION_MARK_CUTS_WHEREVER_IT_STANDS) {
  std::array<float, 3> values{};
  std::array<float, 3> stds{};
  int count = 0;
  GETNUM_STD("1 # 2 ! 3", values, stds, count);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(ERR_TEXT_MESS, "Bad format") << "with a ! the # is a word, and no number";
}

TEST(LIST_DIRECTED, A_SLASH_BEHIND_A_VALUE_ENDS_THE_INPUT_AND_D_IS_AN_EXPONENT) {
  std::array<float, 3> reals{7.0f, 8.0f, 9.0f};
  EXPECT_TRUE(READ_REALS("4/5 6", reals));
  EXPECT_EQ(reals, (std::array<float, 3>{4.0f, 8.0f, 9.0f}));
  EXPECT_TRUE(READ_REALS("4d2 5D-1 6e0", reals));
  EXPECT_EQ(reals, (std::array<float, 3>{400.0f, 0.5f, 6.0f}));
  std::array<int, 3> integers{7, 8, 9};
  int count = 0;
  EXPECT_TRUE(READ_INTEGERS("4/5 6", integers, count));
  EXPECT_EQ(count, 1);
  EXPECT_EQ(integers, (std::array<int, 3>{4, 8, 9}));
}

// ---- writing ----

// In 8 columns the limit is 10^7, of a negative value 10^6; what exceeds it less 1 takes an
// exponent, with 8 - 6 = 2 decimals, of a negative value 1.
TEST(RFORM, CHANGES_TO_AN_EXPONENT_ABOVE_THE_LARGEST_WHOLE_NUMBER_THAT_FITS) {
  EXPECT_EQ(RFORM(9999999.0f, 8), "9999999");
  EXPECT_EQ(RFORM(1.0e7f, 8), "1.00E+07");
  EXPECT_EQ(RFORM(-999999.0f, 8), "-999999");
  EXPECT_EQ(RFORM(-1.0e6f, 8), "-1.0E+06");
  EXPECT_EQ(RFORM(2.0e8f, 6), "2E+08") << "6 - 6 = 0 decimals are not negative";
  EXPECT_EQ(RFORM(-2.0e8f, 6), "-2.0E+08") << "-1 decimals become 1";
}

// 8 columns less the count, which is 2 and 1 more for each division until the value is below 1.
TEST(RFORM, POWERS_OF_TEN_COUNT_WITH_THE_NUMBERS_ABOVE_THEM) {
  EXPECT_EQ(RFORM(0.5f, 8), "0.500000") << "8 - 2";
  EXPECT_EQ(RFORM(1.0f, 8), "1.00000") << "8 - 3";
  EXPECT_EQ(RFORM(10.0f, 8), "10.0000") << "8 - 4";
  EXPECT_EQ(RFORM(-1.0f, 8), "-1.0000") << "8 - 3 - 1; only below 1 there is one more";
}

// ---- order ----

// Only what is smaller than the largest finite real is chosen; the tail repeats the last choice.
TEST(SET_SORT, VALUES_WITHOUT_A_PLACE_REPEAT_THE_LAST_CHOICE) {
  constexpr float largest = std::numeric_limits<float>::max();
  constexpr float infinity = std::numeric_limits<float>::infinity();
  constexpr float nan_value = std::numeric_limits<float>::quiet_NaN();
  EXPECT_EQ(SET_SORT(std::vector<float>{3.0e38f, nan_value, 1.0f, infinity}, true),
            (std::vector<int>{3, 1, 1, 1}));
  EXPECT_EQ(SET_SORT(std::vector<float>{largest, 2.0f}, true), (std::vector<int>{2, 2}));
  EXPECT_EQ(SET_SORT(std::vector<float>{nan_value, nan_value}, true), (std::vector<int>{1, 1}));
}
