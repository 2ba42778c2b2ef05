// Texts: case, search, trimming, cutting.
#include "console_code/kva_utilities/text.h"

#include <gtest/gtest.h>

#include <array>
#include <ctime>
#include <regex>

using namespace KVA_UTILITIES;

TEST(TEXT, CASE_CHANGES_TOUCH_ASCII_LETTERS_ONLY) {
  EXPECT_EQ(U_CASE("Si1 \xC3\xA9z"), "SI1 \xC3\xA9Z");
  EXPECT_EQ(L_CASE("ABC-Z[9]"), "abc-z[9]");
}

TEST(TEXT, INDEXALL_COUNTS_FROM_1_AND_IGNORES_CASE) {
  EXPECT_EQ(INDEXALL("LOOP_ data_x", "DATA_"), 7);
  EXPECT_EQ(INDEXALL("abc", "a"), 1);
  EXPECT_EQ(INDEXALL("abc", "d"), 0);
  EXPECT_EQ(INDEXALL("abc", ""), 0) << "an empty text is found nowhere";
  EXPECT_EQ(INDEXALL("", "a"), 0);
}

TEST(TEXT, TRIMMING_KEEPS_LEADING_BLANKS) {
  EXPECT_EQ(TRIM("  a b  "), "  a b");
  EXPECT_EQ(LENTRIM("  a b  "), 5);
  EXPECT_EQ(LENTRIM("    "), 0);
  EXPECT_EQ(LEFT_ADJUST("  a b  "), "a b");
}

TEST(TEXT, STRIP_FRONT_BLANK_TELLS_WHAT_IS_LEFT) {
  std::string text = "   abc  ";
  int n = -1;
  STRIP_FRONT_BLANK(text, n);
  EXPECT_EQ(text, "abc");
  EXPECT_EQ(n, 3);
  text = "   ";
  STRIP_FRONT_BLANK(text, n);
  EXPECT_EQ(n, 0);
}

TEST(TEXT, ADD_FRONT_BLANKS_SHIFTS_RIGHT) {
  std::string text = "ab";
  ADD_FRONT_BLANKS(text, 2);
  EXPECT_EQ(text, "  ab");
  ADD_FRONT_BLANKS(text, -1);
  EXPECT_EQ(text, "  ab");
}

TEST(TEXT, BEGINS_WITH_NEEDS_A_TEXT) {
  EXPECT_TRUE(BEGINS_WITH("Si10", "si1"));
  EXPECT_TRUE(BEGINS_WITH("Si10", "Si1  "));
  EXPECT_FALSE(BEGINS_WITH("Si", "Si1"));
  EXPECT_FALSE(BEGINS_WITH("Si", "")) << "a blank label would match every row";
  EXPECT_FALSE(BEGINS_WITH("", ""));
}

TEST(TEXT, EQUAL_TEXT_IS_BLIND_TO_CASE_AND_TRAILING_BLANKS) {
  EXPECT_TRUE(EQUAL_TEXT("isotr", "Isotr  "));
  EXPECT_TRUE(EQUAL_TEXT("", "  "));
  EXPECT_FALSE(EQUAL_TEXT(" isotr", "isotr"));
}

TEST(TEXT, LETTERS_STARS_AND_REPLACED_CHARACTERS) {
  EXPECT_TRUE(ISLETTER('a') && ISLETTER('Z'));
  EXPECT_FALSE(ISLETTER('1') || ISLETTER('[') || ISLETTER('@'));
  EXPECT_EQ(MAKESTARS(3), "***");
  EXPECT_EQ(MAKESTARS(-2), "");
  std::string text = "aXbxc";
  REPLACE_CHAR(text, 'x', '.');
  EXPECT_EQ(text, "a.b.c");
}

TEST(TEXT, CUT_TEXT_NEVER_SPLITS_A_CHARACTER) {
  EXPECT_EQ(CUT_TEXT("abcdef", 4), "abcd");
  EXPECT_EQ(CUT_TEXT("ab  cd", 4), "ab");
  EXPECT_EQ(CUT_TEXT("a\xC3\xA9", 2), "a") << "the second character has two bytes";
  EXPECT_EQ(CUT_TEXT("a\xC3\xA9", 3), "a\xC3\xA9");
  EXPECT_EQ(CUT_TEXT("abc", 0), "");
}

TEST(TEXT, CUT_WORD_TAKES_ONE_WORD_OFF) {
  std::string text = "  one  two ";
  EXPECT_EQ(CUT_WORD(text), "one");
  EXPECT_EQ(text, "two");
  EXPECT_EQ(CUT_WORD(text), "two");
  EXPECT_EQ(CUT_WORD(text), "");
}

TEST(TEXT, DATES_HAVE_A_FIXED_FORM) {
  EXPECT_TRUE(std::regex_match(DATE_KVA(), std::regex("[0-3][0-9]-[A-Z]{3}-[0-9]{4}")));
  EXPECT_TRUE(std::regex_match(DATE_ISO(), std::regex("[0-9]{4}-[01][0-9]-[0-3][0-9]")));
  EXPECT_TRUE(std::regex_match(CLOCK_KVA(), std::regex("[0-2][0-9]:[0-5][0-9]:[0-6][0-9]")));
}

// The system's own calendar is the judge; midnight may pass between the two.
TEST(TEXT, DATES_ARE_THOSE_OF_TODAY) {
  const auto today = [](const char* format) {
    const std::time_t now = std::time(nullptr);
    std::array<char, 40> text{};
    std::strftime(text.data(), text.size(), format, std::localtime(&now));
    return std::string(text.data());
  };
  const std::string before = U_CASE(today("%d-%b-%Y")) + today("%Y-%m-%d");
  const std::string told = DATE_KVA() + DATE_ISO();
  const std::string after = U_CASE(today("%d-%b-%Y")) + today("%Y-%m-%d");
  EXPECT_TRUE(told == before || told == after) << told << " " << after;
}

// ---- UTF-8 ----

TEST(AS_UTF8, LEAVES_UTF_8_AND_TAKES_OTHER_BYTES_FOR_LATIN_1) {
  EXPECT_EQ(AS_UTF8("Fe₂O₃ Å 𝛼"), "Fe₂O₃ Å 𝛼");
  EXPECT_EQ(AS_UTF8("caf\xE9"), "café");
  EXPECT_EQ(AS_UTF8("\xE9t\xE9 é"), "été é");
  EXPECT_EQ(AS_UTF8("\xC3"), "Ã");  // cut inside a character
  EXPECT_EQ(AS_UTF8("\xE2\x82"), "â\xC2\x82");
}

// A longer form than need be, a surrogate, and a number above the last character are none.
TEST(AS_UTF8, TAKES_NO_FORM_THAT_THE_STANDARD_FORBIDS) {
  EXPECT_EQ(AS_UTF8("\xC0\xAF"), "À¯");
  EXPECT_EQ(AS_UTF8("\xED\xA0\x80"), "í\xC2\xA0\xC2\x80");
  EXPECT_EQ(AS_UTF8("\xF4\x90\x80\x80"), "ô\xC2\x90\xC2\x80\xC2\x80");
}
