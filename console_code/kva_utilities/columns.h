// Numbers and texts into fixed columns, value(esd), aligned tables. The only place that writes
// numbers. Every routine returns its text; nothing is printed here.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace KVA_UTILITIES {

// Real in w columns with d decimals: fixed point, right-adjusted, nearest with ties to even.
// A zero has no sign. NaN, Inf and -Inf as words. What does not fit fills the field with "*".
std::string REAL_COLUMNS(float value, int w, int d);

// The same without stars: in w columns, or in as many as it needs.
std::string REAL_AT_LEAST(float value, int w, int d);

// Real in exponent form, one digit before the point and d decimals: 3.50E+07, right-adjusted.
std::string EXPONENT_COLUMNS(float value, int w, int d);

// The fewest digits from which the same 32-bit real is read back: 2.1129, 0.0001, 1e-05. A zero has
// no sign. Blank for what is not finite.
std::string SHORTEST_REAL(float value);

// Whole number in w columns, right-adjusted; w of 0: as many columns as needed.
std::string INTEGER_COLUMNS(int value, int w = 0);

// The same without stars, for what is counted: in w columns, or in as many as it needs.
std::string INTEGER_AT_LEAST(int value, int w);

// Characters (not bytes) of a text.
int CHARACTERS(std::string_view text);

// Text in exactly n columns: left-adjusted, cut at n, blank-filled (n counts characters).
std::string TEXT_COLUMNS(std::string_view text, int n);

// Puts text into line so that its first character stands in the column (from 1); the line grows
// with blanks as needed, and what stood there is overwritten.
void PUT_AT(std::string& line, int column, std::string_view text);

// A field for value(esd) at the column: text if it fits into width columns, without its leading
// blank if only so, else width times "*".
void PUT_FIELD(std::string& line, int column, int width, std::string_view text);

// Value with its esd in units of the last digit, " 1.2345(12)"; a value without an esd alone.
// A negative esd sets ERR_TEXT. The rule: the esd is printed with 2 to 19, rounded up when the
// remainder exceeds 0.09999.
std::string SETNUM_STD(float value, float std);

// Plain number at about w columns, left-adjusted.
std::string RFORM(float value, int w);

// Kind 'F' or 'E', w columns, d decimals.
std::string WRITE_VAL(float value, char vtype, int w, int d);

}  // namespace KVA_UTILITIES
