// Numbers and texts into fixed columns, and value(esd). Expected texts are worked out by hand from
// the rule: the esd is multiplied by 10 until it reaches 2; N counts the times; the whole part is
// printed, raised by 1 when what is left exceeds 0.09999; 20 becomes 2 with one decimal less.
#include "console_code/kva_utilities/columns.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>  // for snprintf
#include <cstdlib>
#include <limits>

#include "console_code/kva_utilities/numbers.h"

using namespace KVA_UTILITIES;

namespace {
constexpr float nan_value = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();
}  // namespace

// ---- fields ----

// 0.1 as a 32-bit real is 0.100000001490116119384765625.
TEST(COLUMNS_AT_LEAST, DIGITS_ARE_THOSE_OF_THE_EXACT_VALUE) {
  EXPECT_EQ(REAL_AT_LEAST(0.1f, 0, 12), "0.100000001490");
  EXPECT_EQ(REAL_AT_LEAST(0.1f, 0, 13), "0.1000000014901");
  EXPECT_EQ(REAL_AT_LEAST(-0.1f, 0, 9), "-0.100000001");
  EXPECT_EQ(REAL_AT_LEAST(-0.1f, 0, 0), "0") << "a zero has no sign";
  EXPECT_EQ(REAL_AT_LEAST(1e12f, 0, 2), "999999995904.00");
  EXPECT_EQ(REAL_AT_LEAST(1e12f, 0, 4), "999999995904.0000");
}

// The C library rounds the exact value as well, and ties to the even digit.
TEST(COLUMNS_AT_LEAST, DIGITS_ARE_THOSE_OF_THE_C_LIBRARY) {
  constexpr std::uint32_t largest = 0x60000000U;  // 3.7e19
  std::array<char, 64> text{};
  for (std::uint32_t bits = 1; bits < largest; bits += 104729U) {
    const float value = std::bit_cast<float>(bits);
    const int decimals = static_cast<int>(bits % 15U);
    std::snprintf(text.data(), text.size(), "%.*f", decimals, static_cast<double>(value));
    EXPECT_EQ(REAL_AT_LEAST(value, 0, decimals), text.data()) << bits;
  }
  for (int sixteenths = 1; sixteenths < 4096; ++sixteenths) {  // ties among them
    const float value = static_cast<float>(sixteenths) / 16.0f;
    std::snprintf(text.data(), text.size(), "%.3f", static_cast<double>(value));
    EXPECT_EQ(REAL_AT_LEAST(value, 0, 3), text.data()) << sixteenths;
  }
}

TEST(COLUMNS_AT_LEAST, NUMBERS_THAT_DO_NOT_FIT_ARE_WHOLE) {
  EXPECT_EQ(REAL_AT_LEAST(1.25f, 6, 2), "  1.25");
  EXPECT_EQ(REAL_AT_LEAST(-1234.5f, 6, 2), "-1234.50");
  EXPECT_EQ(REAL_AT_LEAST(-0.25f, 4, 2), "-0.25");
  EXPECT_EQ(INTEGER_AT_LEAST(12, 3), " 12");
  EXPECT_EQ(INTEGER_AT_LEAST(12345, 3), "12345");
}

TEST(REAL_COLUMNS, RIGHT_ADJUSTED_AND_ROUNDED_TO_NEAREST) {
  EXPECT_EQ(REAL_COLUMNS(1.5f, 8, 4), "  1.5000");
  EXPECT_EQ(REAL_COLUMNS(2.5f, 4, 0), "   2") << "a tie goes to the even digit";
  EXPECT_EQ(REAL_COLUMNS(3.5f, 4, 0), "   4");
  EXPECT_EQ(REAL_COLUMNS(0.125f, 5, 2), " 0.12");
  EXPECT_EQ(REAL_COLUMNS(298.0f, 6, 1), " 298.0");
}

TEST(REAL_COLUMNS, ZERO_HAS_NO_SIGN_AND_A_LEADING_ZERO_WHERE_THERE_IS_ROOM) {
  EXPECT_EQ(REAL_COLUMNS(-0.00001f, 7, 3), "  0.000");
  EXPECT_EQ(REAL_COLUMNS(-0.0f, 4, 1), " 0.0");
  EXPECT_EQ(REAL_COLUMNS(0.5f, 2, 1), ".5");
  EXPECT_EQ(REAL_COLUMNS(-0.5f, 3, 1), "-.5");
}

TEST(REAL_COLUMNS, WHAT_DOES_NOT_FIT_FILLS_THE_FIELD_WITH_STARS) {
  EXPECT_EQ(REAL_COLUMNS(12345.678f, 8, 3), "********");
  EXPECT_EQ(REAL_COLUMNS(-1.0f, 2, 1), "**");
  EXPECT_EQ(REAL_COLUMNS(3.0e38f, 9, 3), "*********");
}

TEST(REAL_COLUMNS, NO_NUMBERS) {
  EXPECT_EQ(REAL_COLUMNS(nan_value, 6, 2), "   NaN");
  EXPECT_EQ(REAL_COLUMNS(infinity, 6, 2), "   Inf");
  EXPECT_EQ(REAL_COLUMNS(-infinity, 6, 2), "  -Inf");
  EXPECT_EQ(REAL_COLUMNS(nan_value, 2, 1), "**");
}

TEST(FIELDS, INTEGERS_TEXTS_AND_EXPONENTS) {
  EXPECT_EQ(INTEGER_COLUMNS(7, 3), "  7");
  EXPECT_EQ(INTEGER_COLUMNS(1234, 3), "***");
  EXPECT_EQ(INTEGER_COLUMNS(-12), "-12");
  EXPECT_EQ(TEXT_COLUMNS("abc", 5), "abc  ");
  EXPECT_EQ(TEXT_COLUMNS("abcdef", 4), "abcd");
  EXPECT_EQ(TEXT_COLUMNS("\xC3\xA9tat", 5), "\xC3\xA9tat ") << "columns are characters";
  EXPECT_EQ(EXPONENT_COLUMNS(3.5e7f, 9, 2), " 3.50E+07");
  EXPECT_EQ(WRITE_VAL(1.5f, 'F', 8, 4), "  1.5000");
  EXPECT_EQ(WRITE_VAL(1.5f, 'E', 8, 2), "1.50E+00");
  EXPECT_EQ(WRITE_VAL(12345.0f, 'F', 4, 1), "****");
}

TEST(FIELDS, TEXT_AT_A_COLUMN) {
  std::string line = "ab";
  PUT_AT(line, 5, "xy");
  EXPECT_EQ(line, "ab  xy");
  PUT_AT(line, 2, "Q");
  EXPECT_EQ(line, "aQ  xy");
  line = "\xC3\xA9";
  PUT_AT(line, 3, "x");
  EXPECT_EQ(line, "\xC3\xA9 x");
}

// A page between two that may not be read: a text at its start, and one at its end.
TEST(FIELDS, CHARACTERS_ARE_COUNTED_WITHOUT_A_LOOK_BESIDE_THE_TEXT) {
  const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  void* const pages = ::mmap(nullptr, 3 * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(pages, MAP_FAILED);
  char* const start = static_cast<char*>(pages) + page;
  ASSERT_EQ(::mprotect(start, page, PROT_READ | PROT_WRITE), 0);
  std::fill(start, start + page, 'x');
  for (std::size_t length = 0; length <= 20; ++length) {
    EXPECT_EQ(CHARACTERS({start, length}), static_cast<int>(length));
    EXPECT_EQ(CHARACTERS({start + page - length, length}), static_cast<int>(length));
  }
  ::munmap(pages, 3 * page);
}

TEST(FIELDS, VALUE_AND_ESD_NEVER_REACH_THE_NEXT_FIELD) {
  std::string line;
  PUT_FIELD(line, 1, 7, " 1.2(3)");
  EXPECT_EQ(line, " 1.2(3)");
  line.clear();
  PUT_FIELD(line, 1, 6, " 1.2(3)");
  EXPECT_EQ(line, "1.2(3)") << "the leading blank goes first";
  line.clear();
  PUT_FIELD(line, 1, 5, " 1.2(3)");
  EXPECT_EQ(line, "*****") << "a cut number would be a wrong one";
}

// ---- value(esd) ----

TEST(SETNUM_STD, THE_ESD_LIES_BETWEEN_2_AND_19) {
  EXPECT_EQ(SETNUM_STD(1.2345f, 0.0012f), " 1.2345(12)");
  EXPECT_EQ(SETNUM_STD(1.2345f, 0.00125f), " 1.2345(13)") << "12.5 rounds up";
  EXPECT_EQ(SETNUM_STD(-1.2345f, 0.0012f), "-1.2345(12)");
  EXPECT_EQ(SETNUM_STD(10.0f, 0.25f), " 10.0(3)");
  EXPECT_EQ(SETNUM_STD(10.0f, 0.195f), " 10.0(2)")
      << "19.5 rounds to 20, which is 2 a digit earlier";
  EXPECT_EQ(SETNUM_STD(5.0347f, 0.0004f), " 5.0347(4)");
}

TEST(SETNUM_STD, A_REMAINDER_UP_TO_A_TENTH_COUNTS_AS_NONE) {
  EXPECT_EQ(SETNUM_STD(1.0f, 0.01205f), " 1.000(12)") << "12.05";
  EXPECT_EQ(SETNUM_STD(1.0f, 0.01215f), " 1.000(13)") << "12.15";
  // From 2 on an esd is not scaled, so that nothing is lost on the way.
  EXPECT_EQ(SETNUM_STD(100.0f, 12.0625f), " 100(12)");
  EXPECT_EQ(SETNUM_STD(100.0f, 12.09f), " 100(12)");
  EXPECT_EQ(SETNUM_STD(100.0f, 12.1f), " 100(13)") << "0.1 is above 0.09999";
}

TEST(SETNUM_STD, WHOLE_ESDS) {
  EXPECT_EQ(SETNUM_STD(10.0f, 2.0f), " 10(2)");
  EXPECT_EQ(SETNUM_STD(10.0f, 1.9f), " 10.0(19)") << "19 at one decimal";
  EXPECT_EQ(SETNUM_STD(10.0f, 1.99f), " 10(2)") << "19.9 rounds up to 20 tenths";
  EXPECT_EQ(SETNUM_STD(1000.0f, 25.0f), " 1000(25)");
  EXPECT_EQ(SETNUM_STD(1000.0f, 123.4f), " 1000(124)");
  EXPECT_EQ(SETNUM_STD(123.0f, 20.0f), " 123(20)") << "a field cannot have -1 decimals";
  EXPECT_EQ(SETNUM_STD(2.0e6f, 1.0e6f), " 2000000(1000000)");
  EXPECT_EQ(SETNUM_STD(2.0e6f, 300000.25f), " 2000000(300001)") << "below 1e6 it is rounded up";
  EXPECT_EQ(SETNUM_STD(2.0e6f, 1000000.25f), " 2000000(1000000)") << "from 1e6 on to the nearest";
}

TEST(SETNUM_STD, WITHOUT_AN_ESD_ABOUT_8_COLUMNS) {
  EXPECT_EQ(SETNUM_STD(0.25f, 0.0f), " 0.250000");
  EXPECT_EQ(SETNUM_STD(-0.25f, 0.0f), "-0.250000");
  EXPECT_EQ(SETNUM_STD(90.0f, 0.0f), " 90.0000");
  EXPECT_EQ(SETNUM_STD(298.0f, 0.0f), " 298.000");
  EXPECT_EQ(SETNUM_STD(0.0f, 0.0f), " 0.00000");
  EXPECT_EQ(SETNUM_STD(0.0005f, 0.0f), " 5.00E-04");
  EXPECT_EQ(SETNUM_STD(3500000.0f, 0.0f), " 3500000");
  EXPECT_EQ(SETNUM_STD(2.0e7f, 0.0f), " 2.00E+07");
  EXPECT_EQ(SETNUM_STD(-2.0e6f, 0.0f), "-2.00E+06");
  EXPECT_EQ(SETNUM_STD(1.5f, 5e-9f), SETNUM_STD(1.5f, 0.0f)) << "an esd below 1e-8 is none";
  // 1e-8 times 10 is below 2 eight times: 10 at the ninth. 2e-8 is 2 at the eighth.
  EXPECT_EQ(SETNUM_STD(1.5f, 1e-8f), " 1.500000000(10)") << "1e-8 itself is one";
  EXPECT_EQ(SETNUM_STD(1.5f, 2.5e-8f), " 1.50000000(3)");
  EXPECT_EQ(SETNUM_STD(1.5f, nan_value), " 1.50000") << "an esd that is no number is none";
  EXPECT_EQ(SETNUM_STD(0.001f, 0.0f), " 0.001000") << "0.001 is not below 0.001";
  EXPECT_EQ(SETNUM_STD(0.0007f, 0.0f), " 7.00E-04");
  EXPECT_EQ(SETNUM_STD(9.5e6f, 0.0f), " 9500000");
  EXPECT_EQ(SETNUM_STD(1e7f, 0.0f), " 10000000") << "1e7 is not above 1e7";
  EXPECT_EQ(SETNUM_STD(-600000.0f, 0.0f), "-600000");
  EXPECT_EQ(SETNUM_STD(-999999.0f, 0.0f), "-999999");
  EXPECT_EQ(SETNUM_STD(-1.0e6f, 0.0f), "-1.00E+06");
}

TEST(SETNUM_STD, WHAT_HAS_NO_TEXT) {
  ERR_TEXT = false;
  EXPECT_EQ(SETNUM_STD(1.0f, -0.1f), "");
  EXPECT_TRUE(ERR_TEXT);
  EXPECT_EQ(ERR_TEXT_MESS, "A negative standard deviation was passed on SetNum_Std procedure!");
  EXPECT_EQ(SETNUM_STD(nan_value, 0.0f), " NaN");
  EXPECT_EQ(SETNUM_STD(infinity, 0.0f), " INF");
  EXPECT_EQ(SETNUM_STD(-infinity, 0.0f), "-INF");
}

TEST(SETNUM_STD, IS_READ_BACK_AS_IT_WAS) {
  std::array<float, 1> value{};
  std::array<float, 1> std{};
  int count = 0;
  GETNUM_STD(SETNUM_STD(13.7473f, 0.0015f), value, std, count);
  EXPECT_EQ(value[0], 13.7473f);
  EXPECT_FLOAT_EQ(std[0], 0.0015f);
}

// ---- plain numbers ----

TEST(RFORM, DECIMALS_FILL_THE_WIDTH) {
  EXPECT_EQ(RFORM(1.5f, 8), "1.50000") << "8 - 3 = 5 decimals";
  EXPECT_EQ(RFORM(123.456f, 8), "123.456");
  EXPECT_EQ(RFORM(0.0f, 8), "0.00000") << "zero takes the branch of what is not positive";
  EXPECT_EQ(RFORM(-1.5f, 8), "-1.5000");
  EXPECT_EQ(RFORM(1.0f, 8), "1.00000") << "1 is not below 1: 3 places are taken";
  EXPECT_EQ(RFORM(10.0f, 8), "10.0000");
  EXPECT_EQ(RFORM(-0.25f, 8), " -.250000") << "the leading zero of a negative fraction goes";
}

TEST(RFORM, LARGE_NUMBERS_TAKE_AN_EXPONENT) {
  EXPECT_EQ(RFORM(2.0e8f, 8), "2.00E+08") << "8 - 6 = 2 decimals";
  EXPECT_EQ(RFORM(1.0e7f, 8), "1.00E+07") << "more than 10 to the 7th less 1";
  EXPECT_EQ(RFORM(9999999.0f, 8), "9999999") << "not more than that";
  EXPECT_EQ(RFORM(2.0e8f, 6), "2E+08") << "6 - 6 = 0 decimals";
  EXPECT_EQ(RFORM(-2.0e8f, 8), "-2.0E+08");
  EXPECT_EQ(RFORM(2.0e8f, 5), "2.0E+08") << "never fewer than 1";
  EXPECT_EQ(RFORM(nan_value, 8), "NaN");
  EXPECT_EQ(RFORM(infinity, 8), "Inf");
  EXPECT_EQ(RFORM(-infinity, 8), "-Inf");
}

// ---- the fewest digits ----

// 0.1f + 0.2f is 0.3 and 2^-25; 2^24 = 16777216 has no neighbour at 16777217.
TEST(SHORTEST_REAL, HAS_THE_DIGITS_THAT_A_32_BIT_REAL_NEEDS) {
  EXPECT_EQ(SHORTEST_REAL(2.1129162f), "2.1129162");
  EXPECT_EQ(SHORTEST_REAL(298.0f), "298");
  EXPECT_EQ(SHORTEST_REAL(0.0001f), "0.0001");
  EXPECT_EQ(SHORTEST_REAL(0.00001f), "1e-05");
  EXPECT_EQ(SHORTEST_REAL(-0.000025f), "-2.5e-05");
  EXPECT_EQ(SHORTEST_REAL(100000.0f), "100000");
  EXPECT_EQ(SHORTEST_REAL(1e7f), "1e+07");
  EXPECT_EQ(SHORTEST_REAL(-0.0f), "0");
  EXPECT_EQ(SHORTEST_REAL(std::numeric_limits<float>::quiet_NaN()), "");
  EXPECT_EQ(SHORTEST_REAL(std::numeric_limits<float>::infinity()), "");
}

TEST(SHORTEST_REAL, IS_READ_BACK_THE_SAME) {
  for (std::uint32_t bits = 1; bits < 0x7F800000U; bits += 104729U) {
    const float value = std::bit_cast<float>(bits);
    EXPECT_EQ(std::strtof(SHORTEST_REAL(value).c_str(), nullptr), value) << bits;
  }
}
