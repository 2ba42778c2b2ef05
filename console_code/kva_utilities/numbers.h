// Numbers out of texts: single words, values with esds, list-directed input. The only place that
// parses numbers. Prints nothing; failures are told by ERR_TEXT and ERR_TEXT_MESS. Then what is
// asked of numbers: whether they are any, and their order.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace KVA_UTILITIES {

// The smallest normal 32-bit real. A value below it means "unset".
inline constexpr float TINY_REAL = 1.17549435e-38f;
inline constexpr float LARGEST_REAL = 3.40282347e+38f;

inline bool ERR_TEXT = false;      // set by the routines below when a text could not be read
inline std::string ERR_TEXT_MESS;  // why, in words
void INIT_ERR_TEXT();

// A word as a number. IVAL counts only when WHOLE.
struct NUMBER {
  float VAL = 0.0f;
  int IVAL = 0;
  bool WHOLE = false;  // no point and no exponent, and it fits an int
};

// Reads one word, such as -1.25, +3, .5, 1e-3, 2.5D+02. False with the error set when it is no
// number; nan and inf are none.
bool GETNUM(std::string_view word, NUMBER& number);

// A number with its esd, if the word has one.
struct NUMBER_STD {
  NUMBER VALUE;
  float STD = 0.0f;
  bool HAS_STD = false;
};

// Reads one word such as 1.234(5), which is 1.234 with 0.005, or 1.234. The esd counts units of the
// mantissa's last digit, or stands as it is when it has a point; both times the power of ten:
// 3.00E+2(2) is 300 with 2, and 12.5(1.2) 12.5 with 1.2. False with the error set when the word is
// something else.
bool GETNUM_STD(std::string_view word, NUMBER_STD& number);

// Splits a text at blanks; double quotes keep a word whole. Fills words from the first and sets
// count, also when it is larger than there is room (error "Dimension of DIRE exceeded").
void GETWORDS(std::string_view text, std::span<std::string> words, int& count);
// The same with the words as parts of the text itself.
void GETWORDS(std::string_view text, std::span<std::string_view> words, int& count);

// Numbers with esds, as in CIF: 1.234(5) 0.25 and so on. "!" ends the text, or else "#".
// count: numbers complete before an error; at most as many as values has room for are stored.
void GETNUM_STD(std::string_view text, std::span<float> values, std::span<float> stds, int& count);

// All words of the text that are numbers; brackets, commas, tabs and "/" separate, "#" ends.
std::vector<NUMBER> NUM_FROM_TEXT(std::string_view text);
// The same; all_numbers tells whether there was no other word among them.
std::vector<NUMBER> NUM_FROM_TEXT(std::string_view text, bool& all_numbers);

// List-directed reading, the only one: blanks, tabs and commas separate, two commas in a row
// leave the value as it was, "/" ends the input. What is not read keeps its value. False on a
// read error or when fewer values than wanted stand in the text without "/".
bool READ_REALS(std::string_view text, std::span<float> values);

// The same for whole numbers, as many as there are up to the size of values; count receives how
// many were read. Running out is no error; text that is no whole number is.
bool READ_INTEGERS(std::string_view text, std::span<int> values, int& count);

// One word such as 5.0347(4) or 1e-3 as 64-bit reals, without a sign in front: the value, and the
// esd in units of the mantissa's last digit. False when it is no such number.
bool GETNUM_STD_WIDE(std::string_view word, double& value, double& std);

// Indices, from 1, of the values in ascending order; equal values keep their order. Without
// keep_zero, values of magnitude 1e-08 or less are not chosen, and the tail repeats the last
// choice.
std::vector<int> SET_SORT(std::span<const float> values, bool keep_zero);

bool NOTNUM(float x);
// True when x + 1 equals x: infinities, and every finite value of 2 to the power 24 or more.
// (The C library owns the shorter name.)
bool INFINITE_NUMBER(float x);
bool INVALID_NUMBER(float x);

}  // namespace KVA_UTILITIES
