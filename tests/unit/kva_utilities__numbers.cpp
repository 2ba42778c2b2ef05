// Numbers out of texts.
#include "console_code/kva_utilities/numbers.h"

#include <gtest/gtest.h>

#include <cstdlib>  // for strtof

#include <array>
#include <charconv>
#include <random>
#include <string>

using namespace KVA_UTILITIES;

namespace {

float VALUE_OF(std::string_view word) {
  NUMBER number;
  EXPECT_TRUE(GETNUM(word, number)) << word;
  return number.VAL;
}

bool IS_NUMBER(std::string_view word) {
  NUMBER number;
  return GETNUM(word, number);
}

}  // namespace

// ---- GETNUM ----

TEST(GETNUM, FORMS_THAT_FILES_HOLD) {
  EXPECT_EQ(VALUE_OF("1.25"), 1.25f);
  EXPECT_EQ(VALUE_OF("-0.5"), -0.5f);
  EXPECT_EQ(VALUE_OF("+0.5"), 0.5f);
  EXPECT_EQ(VALUE_OF(".5"), 0.5f);
  EXPECT_EQ(VALUE_OF("5."), 5.0f);
  EXPECT_EQ(VALUE_OF("1e3"), 1000.0f);
  EXPECT_EQ(VALUE_OF("2.5D+02"), 250.0f);
  EXPECT_EQ(VALUE_OF("3.50E+07"), 3.5e7f);
  EXPECT_EQ(VALUE_OF("-.001230"), -0.00123f);
}

// Digits with a point at every place, against the library's own conversion, bit by bit.
TEST(GETNUM, VALUES_ARE_CORRECTLY_ROUNDED) {
  EXPECT_EQ(VALUE_OF("0.1"), 0.1f);
  EXPECT_EQ(VALUE_OF("16777217.0"), 16777216.0f) << "half way: to the even neighbour";
  std::mt19937 random(1);
  for (int trial = 0; trial < 20000; ++trial) {
    std::string text;
    const std::size_t digits = 1 + random() % 11;
    for (std::size_t i = 0; i < digits; ++i) text += static_cast<char>('0' + random() % 10);
    text.insert(random() % (digits + 1), ".");
    float expected = 0.0f;
    std::from_chars(text.data(), text.data() + text.size(), expected);
    ASSERT_EQ(VALUE_OF(text), expected) << text;
  }
}

TEST(GETNUM, WHOLE_NUMBERS_ARE_KNOWN_AS_SUCH) {
  NUMBER number;
  ASSERT_TRUE(GETNUM("-42", number));
  EXPECT_TRUE(number.WHOLE);
  EXPECT_EQ(number.IVAL, -42);
  ASSERT_TRUE(GETNUM("42.0", number));
  EXPECT_FALSE(number.WHOLE);
  ASSERT_TRUE(GETNUM("99999999999", number));
  EXPECT_FALSE(number.WHOLE) << "fits no integer";
}

TEST(GETNUM, WHAT_IS_NO_NUMBER) {
  for (const char* word : {"",   "-",   "+",    ".",   "E",   "e5",   "--1",  "+-1", "1-2", "1.2.3",
                           "1e", "1e+", "1e5.", "nan", "inf", "0x10", "4abc", "1,5", " 1",  "1 "})
    EXPECT_FALSE(IS_NUMBER(word)) << word;
  EXPECT_EQ(ERR_TEXT_MESS, "The variable cannot be computed as a number in GETNUM");
}

TEST(GETNUM, TOO_LARGE_IS_AN_ERROR_AND_TOO_SMALL_IS_ZERO) {
  EXPECT_FALSE(IS_NUMBER("1e999"));
  EXPECT_EQ(ERR_TEXT_MESS, "Limits of digit variable exceeded in GETNUM");
  EXPECT_FALSE(IS_NUMBER("-4e38"));
  EXPECT_FALSE(IS_NUMBER(std::string(300, '9')));
  EXPECT_EQ(VALUE_OF("1e-60"), 0.0f);
  EXPECT_EQ(VALUE_OF("1e-999"), 0.0f);
  EXPECT_EQ(VALUE_OF("0." + std::string(350, '0') + "1"), 0.0f);
}

// ---- words ----

TEST(GETWORDS, BLANKS_SEPARATE_AND_DOUBLE_QUOTES_KEEP_TOGETHER) {
  std::array<std::string, 5> words;
  int count = 0;
  GETWORDS("  one \"two three\" 'four five'", words, count);
  EXPECT_EQ(count, 4);
  EXPECT_EQ(words[1], "two three");
  EXPECT_EQ(words[2], "'four");
  EXPECT_EQ(words[3], "five'");
}

TEST(GETWORDS, A_MISSING_QUOTE_ENDS_THE_SCAN) {
  std::array<std::string, 5> words;
  int count = 0;
  GETWORDS("one \"two three", words, count);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(ERR_TEXT_MESS, "Non balanced quotes!");
}

TEST(GETWORDS, ONE_WORD_TOO_MANY_LEAVES_THE_LARGER_COUNT) {
  std::array<std::string, 2> words;
  int count = 0;
  GETWORDS("a b c d e", words, count);
  EXPECT_EQ(count, 3);
  EXPECT_EQ(ERR_TEXT_MESS, "Dimension of DIRE exceeded");
  GETWORDS("a", std::span<std::string>(), count);
  EXPECT_EQ(count, 1);
}

// ---- values with esds ----

namespace {

struct READ_BACK {
  std::array<float, 3> VALUES{};
  std::array<float, 3> STDS{};
  int COUNT = 0;
};

READ_BACK READ_STD(std::string_view text) {
  READ_BACK read;
  GETNUM_STD(text, read.VALUES, read.STDS, read.COUNT);
  return read;
}

// What looks like an esd without its bracket is none.
TEST(NUMBERS_WITH_ESDS, AN_ESD_BEGINS_WITH_A_BRACKET) {
  const READ_BACK read = READ_STD("1.5/3) 2.5(3)");
  EXPECT_EQ(read.STDS[0], 0.0f);
  NUMBER_STD number;
  EXPECT_FALSE(GETNUM_STD("1.5a3)", number));
}

// Short numbers are read on a road of their own, to the same bits.
TEST(NUMBERS_WITH_ESDS, SHORT_ONES_ARE_THE_NEAREST_REALS) {
  unsigned seed = 1;
  for (int i = 0; i < 20000; ++i) {
    seed = seed * 1664525U + 1013904223U;
    std::string text = std::to_string((seed >> 8) % 10000000U);
    text.insert((seed >> 4) % (text.size() + 1), ".");
    if (seed % 2 == 0) text.insert(0, "-");
    NUMBER_STD number;
    ASSERT_TRUE(GETNUM_STD(text, number)) << text;
    EXPECT_EQ(number.VALUE.VAL, std::strtof(text.c_str(), nullptr)) << text;
    ASSERT_TRUE(GETNUM_STD(text + "(37)", number)) << text;
    const std::size_t decimals = text.size() - text.find('.') - 1;
    EXPECT_EQ(number.STD, std::strtof(("37e-" + std::to_string(decimals)).c_str(), nullptr))
        << text;
  }
}

// ---- beyond every real ----

TEST(GETNUM, WHAT_NO_64_BIT_REAL_HOLDS_IS_ZERO_OR_NO_NUMBER) {
  const std::string zeros(400, '0');
  NUMBER number;
  for (const std::string& tiny : {"." + zeros + "1", "0." + zeros + "1", "-0." + zeros + "1"}) {
    EXPECT_TRUE(GETNUM(tiny, number)) << tiny.substr(0, 4);
    EXPECT_EQ(number.VAL, 0.0f) << tiny.substr(0, 4);
  }
  EXPECT_FALSE(GETNUM("1" + zeros, number));
  EXPECT_FALSE(GETNUM("-1" + zeros + ".5", number));
}

TEST(GETNUM_STD, ESDS_THAT_NO_REAL_HOLDS_ARE_NONE) {
  NUMBER_STD number;
  EXPECT_FALSE(GETNUM_STD("1.0(1" + std::string(60, '0') + ")", number));
  EXPECT_FALSE(GETNUM_STD("1E30(999999999999)", number));
  EXPECT_FALSE(GETNUM_STD("1.5(2)x", number));
  double value = 0.0;
  double std = 0.0;
  EXPECT_FALSE(GETNUM_STD_WIDE("1.0(" + std::string(400, '9') + ")", value, std));
  EXPECT_FALSE(GETNUM_STD_WIDE("1e300(" + std::string(100, '9') + ")", value, std));
  EXPECT_FALSE(GETNUM_STD_WIDE("1e999", value, std));
  EXPECT_FALSE(GETNUM_STD_WIDE("1.0(2", value, std));
  EXPECT_TRUE(GETNUM_STD_WIDE("1.50e-3(4)", value, std));
  EXPECT_DOUBLE_EQ(value, 0.0015);
  EXPECT_NEAR(std, 0.00004, 1e-18);
}

TEST(READ_INTEGERS, WHAT_IS_BEHIND_THE_LAST_IS_NOT_LOOKED_AT) {
  std::array<int, 2> values{};
  int count = 0;
  EXPECT_TRUE(READ_INTEGERS("1 2 x", values, count));
  EXPECT_EQ(count, 2);
  EXPECT_EQ(values, (std::array{1, 2}));
}

}  // namespace

TEST(GETNUM_STD, AN_ESD_HAS_NO_SIGN) {
  EXPECT_EQ(READ_STD("5.0(-1)").COUNT, 0);
  EXPECT_EQ(ERR_TEXT_MESS, "Bad format");
}

TEST(GETNUM_STD, THE_ESD_COUNTS_IN_UNITS_OF_THE_LAST_DIGIT) {
  EXPECT_EQ(READ_STD("1.234(5)").VALUES[0], 1.234f);
  EXPECT_EQ(READ_STD("1.234(5)").STDS[0], 0.005f);
  EXPECT_EQ(READ_STD("1.234(12)").STDS[0], 0.012f);
  EXPECT_EQ(READ_STD("12(3)").STDS[0], 3.0f);
  EXPECT_EQ(READ_STD("12.(3)").VALUES[0], 12.0f);
  EXPECT_EQ(READ_STD("12.(3)").STDS[0], 3.0f);
  EXPECT_EQ(READ_STD("-0.25(4)").VALUES[0], -0.25f);
  EXPECT_EQ(READ_STD(".26185(2)").STDS[0], 0.00002f);
}

// Units of the last digit of the mantissa, times the power of ten.
TEST(GETNUM_STD, AN_EXPONENT_MOVES_THE_ESD_AS_IT_MOVES_THE_VALUE) {
  const auto expect = [](std::string_view text, float value, float std) {
    const READ_BACK read = READ_STD(text);
    EXPECT_EQ(read.COUNT, 1) << text;
    EXPECT_FLOAT_EQ(read.VALUES[0], value) << text;
    EXPECT_FLOAT_EQ(read.STDS[0], std) << text;
  };
  expect("5.00E0(2)", 5.0f, 0.02f);
  expect("3.00E+2(2)", 300.0f, 2.0f);
  expect("3E2(2)", 300.0f, 200.0f);
  expect("1.5e-3(4)", 0.0015f, 0.0004f);
  expect("-1.25D+01(12)", -12.5f, 1.2f);
  expect("2.50E+06(3)", 2500000.0f, 30000.0f);
  expect("1.E1(3)", 10.0f, 30.0f);
  expect("0.0E-99999999999(5)", 0.0f, 0.0f);
  expect("0.0E99(0)", 0.0f, 0.0f);
  EXPECT_EQ(READ_STD("0.0E99(5)").COUNT, 0) << "an esd of 5e98 is no 32-bit real";
  EXPECT_EQ(READ_STD("0.0E99999999999(5)").COUNT, 0);
}

TEST(GETNUM_STD, AN_ESD_WITH_A_POINT_STANDS_AS_IT_IS) {
  EXPECT_EQ(READ_STD("12.5(1.2)").STDS[0], 1.2f);
  EXPECT_EQ(READ_STD("2.50(0.1)").STDS[0], 0.1f);
  EXPECT_FLOAT_EQ(READ_STD("5.0E2(0.1)").STDS[0], 10.0f);
}

TEST(GETNUM_STD, A_WORD_TELLS_WHETHER_IT_HAS_AN_ESD) {
  NUMBER_STD number;
  ASSERT_TRUE(GETNUM_STD("-3.5(2)", number));
  EXPECT_EQ(number.VALUE.VAL, -3.5f);
  EXPECT_TRUE(number.HAS_STD);
  EXPECT_EQ(number.STD, 0.2f);
  ASSERT_TRUE(GETNUM_STD("7(0)", number));
  EXPECT_TRUE(number.HAS_STD && number.VALUE.WHOLE);
  EXPECT_EQ(number.STD, 0.0f);
  ASSERT_TRUE(GETNUM_STD("7", number));
  EXPECT_FALSE(number.HAS_STD);
  for (const char* word : {"3.5(2)4", "3.5(2", "3.5)", "(2)", "", "x", "3,5(2)"}) {
    EXPECT_FALSE(GETNUM_STD(word, number)) << word;
    EXPECT_TRUE(ERR_TEXT) << word;
  }
}

TEST(GETNUM_STD_WIDE, A_VALUE_AND_ITS_ESD_IN_64_BITS) {
  double value = 0.0;
  double std = 0.0;
  const auto reads = [&](std::string_view word, double wanted, double wanted_std) {
    EXPECT_TRUE(GETNUM_STD_WIDE(word, value, std)) << word;
    EXPECT_EQ(value, wanted) << word;
    EXPECT_DOUBLE_EQ(std, wanted_std) << word;
  };
  reads("0.1", 0.1, 0.0);
  reads("5.0347(4)", 5.0347, 4e-4);
  reads("12(3)", 12.0, 3.0);
  reads("5.00E2(3)", 500.0, 3.0);
  reads("1.5e-3(2)", 1.5e-3, 2e-4);
}

TEST(GETNUM_STD_WIDE, WHAT_IS_NO_NUMBER_OR_TOO_LARGE) {
  double value = 0.0;
  double std = 0.0;
  for (const char* word : {"", "x", "1.5x", "5.03(4", "5.03()", "5.03(4)5", "5.03(a)", "5.03(0.4)",
                           "1e999", "1e308(99)"})
    EXPECT_FALSE(GETNUM_STD_WIDE(word, value, std)) << word;
}

TEST(GETNUM_STD, SEVERAL_NUMBERS_AND_COMMENTS) {
  const READ_BACK read = READ_STD("5.4321(12) 7 # 8");
  EXPECT_EQ(read.COUNT, 2);
  EXPECT_EQ(read.VALUES[1], 7.0f);
  EXPECT_EQ(READ_STD("1 ! 2 # 3").COUNT, 1);
  EXPECT_FALSE(ERR_TEXT);
  EXPECT_EQ(READ_STD("1#2 ! 3").COUNT, 0) << "only a line without ! ends at #";
  EXPECT_EQ(ERR_TEXT_MESS, "Bad format");
  EXPECT_EQ(READ_STD("1#2 3").COUNT, 1);
  EXPECT_EQ(READ_STD("1 2 3 4 5").COUNT, 5) << "more numbers than there is room for are counted";
}

TEST(GETNUM_STD, ERRORS_KEEP_WHAT_WAS_COMPLETE) {
  EXPECT_EQ(READ_STD("   ").COUNT, 0);
  EXPECT_EQ(ERR_TEXT_MESS, "Blank line");
  EXPECT_EQ(READ_STD("# only a comment").COUNT, 0);
  EXPECT_EQ(READ_STD("1.5(").COUNT, 0);
  EXPECT_EQ(ERR_TEXT_MESS, "Wrong format using Standard values");
  EXPECT_EQ(READ_STD("1.5)").COUNT, 0);
  EXPECT_EQ(ERR_TEXT_MESS, "Wrong format using Standard values");
  EXPECT_EQ(READ_STD("1)5(").COUNT, 0);
  EXPECT_EQ(ERR_TEXT_MESS, "Wrong format using Standard values");
  EXPECT_EQ(READ_STD("1.5()").COUNT, 0);
  EXPECT_EQ(ERR_TEXT_MESS, "Bad format");
  EXPECT_EQ(READ_STD("?").COUNT, 0);
  EXPECT_EQ(READ_STD("2 abc 3").COUNT, 1);
}

TEST(GETNUM_STD, STARTS_FROM_0_AND_WITHOUT_AN_ERROR) {
  std::array<float, 2> values{7.0f, 8.0f};
  std::array<float, 2> stds{9.0f, 10.0f};
  int count = 3;
  ERR_TEXT = true;
  ERR_TEXT_MESS = "an earlier error";
  GETNUM_STD("1.5", values, stds, count);
  EXPECT_FALSE(ERR_TEXT);
  EXPECT_EQ(ERR_TEXT_MESS, "");
  EXPECT_EQ(count, 1);
  EXPECT_EQ(values, (std::array<float, 2>{1.5f, 0.0f}));
  EXPECT_EQ(stds, (std::array<float, 2>{0.0f, 0.0f}));
}

TEST(NUM_FROM_TEXT, TAKES_THE_NUMBERS_AND_SKIPS_THE_REST) {
  const std::vector<NUMBER> numbers = NUM_FROM_TEXT("x 3 -6, (4.5)\t2/7 3-6 4abc # 9");
  ASSERT_EQ(numbers.size(), 5u);
  EXPECT_EQ(numbers[0].IVAL, 3);
  EXPECT_EQ(numbers[1].IVAL, -6);
  EXPECT_EQ(numbers[2].VAL, 4.5f);
  EXPECT_EQ(numbers[3].IVAL, 2);
  EXPECT_EQ(numbers[4].IVAL, 7);
  EXPECT_TRUE(NUM_FROM_TEXT("").empty());
}

TEST(NUM_FROM_TEXT, TAKES_AT_MOST_50_WORDS) {
  std::string line;
  for (int i = 1; i <= 60; ++i) line += std::to_string(i) + " ";
  const std::vector<NUMBER> numbers = NUM_FROM_TEXT(line);
  ASSERT_EQ(numbers.size(), 50u);
  EXPECT_EQ(numbers[49].IVAL, 50);
}

// ---- list-directed reading ----

TEST(LIST_DIRECTED, BLANKS_TABS_AND_COMMAS_SEPARATE) {
  std::array<float, 3> v{};
  EXPECT_TRUE(READ_REALS("1.5,2\t 3", v));
  EXPECT_EQ(v, (std::array<float, 3>{1.5f, 2.0f, 3.0f}));
  EXPECT_TRUE(READ_REALS(" 1 , 2 ,3 and more", v));
  EXPECT_EQ(v[2], 3.0f);
}

TEST(LIST_DIRECTED, NULL_VALUES_AND_SLASH_KEEP_WHAT_WAS) {
  std::array<float, 3> v{7.0f, 8.0f, 9.0f};
  EXPECT_TRUE(READ_REALS("1,,3", v));
  EXPECT_EQ(v, (std::array<float, 3>{1.0f, 8.0f, 3.0f}));
  EXPECT_TRUE(READ_REALS("4 /", v));
  EXPECT_EQ(v, (std::array<float, 3>{4.0f, 8.0f, 3.0f}));
  EXPECT_TRUE(READ_REALS(",5,6", v));
  EXPECT_EQ(v, (std::array<float, 3>{4.0f, 5.0f, 6.0f}));
}

TEST(LIST_DIRECTED, ERRORS) {
  std::array<float, 2> v{};
  EXPECT_FALSE(READ_REALS("1", v)) << "one value is missing";
  EXPECT_FALSE(READ_REALS("1 x", v));
  EXPECT_FALSE(READ_REALS("nan 1", v));
  EXPECT_FALSE(READ_REALS("1e999 1", v));
}

TEST(LIST_DIRECTED, WHOLE_NUMBERS) {
  std::array<int, 4> v{};
  int count = 0;
  EXPECT_TRUE(READ_INTEGERS("4,-7 9", v, count));
  EXPECT_EQ(count, 3);
  EXPECT_EQ(v, (std::array<int, 4>{4, -7, 9, 0}));
  EXPECT_FALSE(READ_INTEGERS("1.5", v, count)) << "a real where an integer is wanted";
  EXPECT_FALSE(READ_INTEGERS("abc", v, count));
  EXPECT_TRUE(READ_INTEGERS("", v, count));
  EXPECT_EQ(count, 0);
}
