// Texts: case, search, trimming, cutting. Knows nothing of numbers, files or the console.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace KVA_UTILITIES {

// Upper and lower case of the ASCII letters; every other byte stays.
std::string U_CASE(std::string_view text);
std::string L_CASE(std::string_view text);

// Routines named VIEW return a part of the text itself, which must outlive it.

// Length without trailing blanks, and the text cut there.
int LENTRIM(std::string_view text);
std::string_view TRIM_VIEW(std::string_view text);
std::string TRIM(std::string_view text);

// Without leading blanks and without trailing blanks.
std::string_view LEFT_ADJUST_VIEW(std::string_view text);
std::string LEFT_ADJUST(std::string_view text);

// Removes the leading blanks and the trailing ones; n receives the length that is left.
void STRIP_FRONT_BLANK(std::string& text, int& n);
void ADD_FRONT_BLANKS(std::string& text, int n);

// Position from 1 of sub in text, ignoring case; 0 when absent or when sub is empty.
int INDEXALL(std::string_view text, std::string_view sub);

// One text to be looked for in many lines, and how far it may be moved on when its last character
// would stand on a given one (R. N. Horspool, Software: Practice and Experience 10 (1980) 501-506).
struct TEXT_SEARCH {
  std::string_view SUB;
  std::array<unsigned char, 256> STEP{};
};
TEXT_SEARCH SEARCH_FOR(std::string_view sub);
int INDEXALL(std::string_view text, const TEXT_SEARCH& search);

// True when text, trimmed, begins with start, trimmed, ignoring case. An empty start never fits.
bool BEGINS_WITH(std::string_view text, std::string_view start);

// True when both are equal without trailing blanks, ignoring case.
bool EQUAL_TEXT(std::string_view a, std::string_view b);

// n stars.
std::string MAKESTARS(int n);

bool ISLETTER(char c);
bool ISDIGIT(char c);

// Replaces each a by b, ignoring case in the search.
void REPLACE_CHAR(std::string& text, char a, char b);

// The text as a field of n columns holds it: cut at n bytes, never inside a UTF-8 character, and
// without trailing blanks.
std::string_view CUT_VIEW(std::string_view text, int n);
std::string CUT_TEXT(std::string_view text, int n);

// The text as UTF-8: bytes that are none are taken for Latin-1, as older files have it.
std::string AS_UTF8(std::string_view text);

// Takes the first blank-delimited word off the text; the rest is left-adjusted.
std::string_view CUT_WORD(std::string_view& text);
std::string CUT_WORD(std::string& text);

// Today as 11 characters, "01-FEB-2025"; and as "2025-02-01".
std::string DATE_KVA();
std::string DATE_ISO();

// The local time as "14:05:09"; and date and time as "01-FEB-2025 14:05".
std::string CLOCK_KVA();
std::string DATE_AND_TIME();

}  // namespace KVA_UTILITIES
