// Texts: case, search, trimming, cutting. Knows nothing of numbers, files or the console.
#pragma once

#include <string>
#include <string_view>

namespace KVA_UTILITIES {

// Upper and lower case of the ASCII letters; every other byte stays.
std::string U_CASE(std::string_view text);
std::string L_CASE(std::string_view text);

// Length without trailing blanks, and the text cut there.
int LENTRIM(std::string_view text);
std::string TRIM(std::string_view text);

// Without leading blanks and without trailing blanks.
std::string LEFT_ADJUST(std::string_view text);

// Removes the leading blanks and the trailing ones; n receives the length that is left.
void STRIP_FRONT_BLANK(std::string& text, int& n);
void ADD_FRONT_BLANKS(std::string& text, int n);

// Position from 1 of sub in text, ignoring case; 0 when absent or when sub is empty.
int INDEXALL(std::string_view text, std::string_view sub);

// True when text, trimmed, begins with start, trimmed, ignoring case. An empty start never fits.
bool BEGINS_WITH(std::string_view text, std::string_view start);

// True when both are equal without trailing blanks, ignoring case.
bool EQUAL_TEXT(std::string_view a, std::string_view b);

// n stars.
std::string MAKESTARS(int n);

bool ISLETTER(char c);

// Replaces each a by b, ignoring case in the search.
void REPLACE_CHAR(std::string& text, char a, char b);

// The text as a field of n columns holds it: cut at n bytes, never inside a UTF-8 character, and
// without trailing blanks.
std::string CUT_TEXT(std::string_view text, int n);

// Takes the first blank-delimited word off the text; the rest is left-adjusted.
std::string CUT_WORD(std::string& text);

// Today as 11 characters, "01-FEB-2025"; and as "2025-02-01".
std::string DATE_KVA();
std::string DATE_ISO();

// The local time as "14:05:09".
std::string CLOCK_KVA();

}  // namespace KVA_UTILITIES
