// Patterns of file names, the numbers in them, and the order of a series.
#include "console_code/kva_utilities/file_patterns.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

using namespace KVA_UTILITIES;

bool FITS(std::string_view pattern, std::string_view name) {
  PATTERN_NUMBERS numbers;
  return FITS_PATTERN(pattern, name, numbers);
}

TEST(FILE_PATTERNS, STARS_MARKS_AND_CLASSES) {
  EXPECT_TRUE(FITS("P*.cif", "P2.cif"));
  EXPECT_TRUE(FITS("*", ""));
  EXPECT_FALSE(FITS("P*.cif", "P2.out"));
  EXPECT_TRUE(FITS("a?c", "abc"));
  EXPECT_FALSE(FITS("a?c", "ac"));
  EXPECT_TRUE(FITS("a[b-d]e", "ace"));
  EXPECT_FALSE(FITS("a[!b-d]e", "ace"));
  EXPECT_TRUE(FITS("a[1", "a[1"));
  EXPECT_FALSE(FITS("a*a*a*a*a*a*a*a*a*a*a*a*a*b", std::string(250, 'a')));  // and ends at once
}

TEST(FILE_PATTERNS, NUMBERS_STAND_FOR_PRESSURE_AND_TEMPERATURE) {
  PATTERN_NUMBERS numbers;
  ASSERT_TRUE(FITS_PATTERN("q_{P}_{T}K.cif", "q_1.54_300K.cif", numbers));
  EXPECT_FLOAT_EQ(*numbers.P, 1.54f);
  EXPECT_FLOAT_EQ(*numbers.T, 300.0f);
  ASSERT_TRUE(FITS_PATTERN("*{P}.cif", "x1p54.cif", numbers));
  EXPECT_FLOAT_EQ(*numbers.P, 1.54f);
  EXPECT_FALSE(numbers.T);
  ASSERT_TRUE(FITS_PATTERN("a{P}*", "a12", numbers));
  EXPECT_FLOAT_EQ(*numbers.P, 12.0f);  // as long as it can be
  EXPECT_FALSE(FITS_PATTERN("a{P}b", "axb", numbers));
}

// In small letters as well, sign and all.
TEST(FILE_PATTERNS, THE_LETTER_OF_A_NUMBER_IS_OF_EITHER_CASE) {
  PATTERN_NUMBERS numbers;
  ASSERT_TRUE(FITS_PATTERN("q{p}_{t}K.cif", "q-1.5_300K.cif", numbers));
  EXPECT_FLOAT_EQ(*numbers.P, -1.5f);
  EXPECT_FLOAT_EQ(*numbers.T, 300.0f);
  ASSERT_TRUE(FITS_PATTERN("{t}K_{p}.cif", "300K_-1.5.cif", numbers));
  EXPECT_FLOAT_EQ(*numbers.P, -1.5f);
  EXPECT_FALSE(FITS("q{t}.cif", "q-300.cif"));
}

// "-" divides words of a name more often than it makes a pressure negative.
TEST(FILE_PATTERNS, A_DASH_IS_A_SIGN_WHERE_IT_DIVIDES_NOTHING) {
  PATTERN_NUMBERS numbers;
  ASSERT_TRUE(FITS_PATTERN("*{P}.cif", "hematite-1.54.cif", numbers));
  EXPECT_FLOAT_EQ(*numbers.P, 1.54f);
  ASSERT_TRUE(FITS_PATTERN("*{P}GPa.out", "mgo_-5GPa.out", numbers));
  EXPECT_FLOAT_EQ(*numbers.P, -5.0f);
  ASSERT_TRUE(FITS_PATTERN("P{P}.cif", "P-1.5.cif", numbers));
  EXPECT_FLOAT_EQ(*numbers.P, -1.5f);
  ASSERT_TRUE(FITS_PATTERN("*{T}K.cif", "quartz-300K.cif", numbers));
  EXPECT_FLOAT_EQ(*numbers.T, 300.0f);  // kelvins have no sign
  EXPECT_FALSE(FITS_PATTERN("quartz{T}K.cif", "quartz-300K.cif", numbers));
}

TEST(FILE_PATTERNS, A_SERIES_IS_ORDERED_BY_ITS_NUMBERS) {
  std::vector<std::string> names{"P10.cif",  "P2.cif", "P0.5.cif", "P1p54.cif",
                                 "P1p6.cif", "A3.cif", "P2b.cif"};
  std::sort(names.begin(), names.end(), NATURAL_LESS);
  EXPECT_EQ(names, (std::vector<std::string>{"A3.cif", "P0.5.cif", "P1p54.cif", "P1p6.cif",
                                             "P2.cif", "P2b.cif", "P10.cif"}));
  EXPECT_FALSE(NATURAL_LESS("a", "a"));
  EXPECT_NE(NATURAL_LESS("a1", "a01"), NATURAL_LESS("a01", "a1"));
}

TEST(FILE_PATTERNS, BLANKS_DIVIDE_NAMES_AND_QUOTES_KEEP_THEM) {
  EXPECT_EQ(FILE_WORDS("  a.cif  \"b c.cif\" d"),
            (std::vector<std::string>{"a.cif", "b c.cif", "d"}));
  EXPECT_EQ(FILE_WORDS("\"\" \"open end"), (std::vector<std::string>{"open end"}));
  EXPECT_TRUE(IS_PATTERN("x{t}.cif"));
  EXPECT_FALSE(IS_PATTERN("x{1}.cif"));
}

// Behind any letter or digit "-" divides; behind other characters it is a sign.
TEST(FILE_PATTERNS, WHAT_STANDS_BEFORE_A_DASH_TELLS_WHETHER_IT_IS_A_SIGN) {
  PATTERN_NUMBERS numbers;
  for (const std::string before : {"a", "z", "A", "Z", "0", "9"}) {
    ASSERT_TRUE(FITS_PATTERN("*{P}.cif", "x" + before + "-3.cif", numbers)) << before;
    EXPECT_FLOAT_EQ(*numbers.P, 3.0f) << before;
  }
  for (const std::string before : {"_", "~", "(", "@", "{", " "}) {
    ASSERT_TRUE(FITS_PATTERN("*{P}.cif", "x" + before + "-3.cif", numbers)) << before;
    EXPECT_FLOAT_EQ(*numbers.P, -3.0f) << before;
  }
}

TEST(FILE_PATTERNS, A_NUMBER_LEAVES_WHAT_THE_PATTERN_WANTS_BEHIND_IT) {
  PATTERN_NUMBERS numbers;
  ASSERT_TRUE(FITS_PATTERN("{P}.5", "1.5", numbers));
  EXPECT_FLOAT_EQ(*numbers.P, 1.0f);  // not 1.5, and not "1."
  ASSERT_TRUE(FITS_PATTERN("a{T}2", "a122", numbers));
  EXPECT_FLOAT_EQ(*numbers.T, 12.0f);
  ASSERT_TRUE(FITS_PATTERN("a{P}", "a12", numbers));
  EXPECT_FLOAT_EQ(*numbers.P, 12.0f);
  EXPECT_FALSE(FITS("a{P}", "a"));
  EXPECT_FALSE(FITS("a{P}", "a-"));
}

TEST(FILE_PATTERNS, CLASSES_OF_LETTERS_RANGES_AND_THEIR_OPPOSITES) {
  for (const char* letter : {"a", "b", "d", "f"})
    EXPECT_TRUE(FITS("x[abd-f]y", "x" + std::string(letter) + "y")) << letter;
  for (const char* other : {"c", "g", "-", "A", ""})
    EXPECT_FALSE(FITS("x[abd-f]y", "x" + std::string(other) + "y")) << other;
  EXPECT_FALSE(FITS("x[abd-f]y", "xbz"));
  EXPECT_FALSE(FITS("x[ab]yz", "xyyz")) << "what stands behind it does not count";
  EXPECT_TRUE(FITS("x[^b]", "xc"));
  EXPECT_FALSE(FITS("x[^b]", "xb"));
  EXPECT_FALSE(FITS("x[^b]", "x"));
  EXPECT_TRUE(FITS("[a-]", "-")) << "no range without an end";
  EXPECT_TRUE(FITS("[]]", "]")) << "the first one does not close";
  EXPECT_FALSE(FITS("a[1", "ab1")) << "without an end it is a letter";
  EXPECT_FALSE(FITS("a[1", "a[2"));
}

TEST(FILE_PATTERNS, A_SHORTER_NAME_COMES_FIRST) {
  EXPECT_TRUE(NATURAL_LESS("a", "ab"));
  EXPECT_FALSE(NATURAL_LESS("ab", "a"));
  EXPECT_TRUE(NATURAL_LESS("a2", "a2b"));
  EXPECT_FALSE(NATURAL_LESS("a2b", "a02"));
}

}  // namespace
