// Numbers and texts into fixed columns, value(esd), aligned tables. Prints nothing.
#include "console_code/kva_utilities/columns.h"

#include <algorithm>  // for max, min
#include <array>
#include <charconv>
#include <cmath>  // for abs, isfinite, isinf, llrint, signbit
#include <cstdint>
#include <cstring>  // for memcpy

#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_UTILITIES {

namespace {

constexpr int most_decimals = 60;

std::string FILL_LEFT(std::string text, int w) {
  const auto width = static_cast<std::size_t>(std::max(w, 0));
  if (text.size() > width) return MAKESTARS(w);
  if (text.size() < width) text.insert(0, width - text.size(), ' ');
  return text;
}

// The word for a value that is no finite number; blank for one that is.
std::string WORD_FOR(float value) {
  if (NOTNUM(value)) return "NaN";
  if (!std::isinf(value)) return "";
  return value > 0.0f ? "Inf" : "-Inf";
}

// Digits of the exact value of a finite real, rounded to d decimals, ties to even.
std::string DIGITS(float value, int d, std::chars_format format) {
  std::array<char, 128> buffer{};
  const auto result = std::to_chars(buffer.begin(), buffer.end(), static_cast<double>(value),
                                    format, std::clamp(d, 0, most_decimals));
  std::string digits(buffer.begin(), result.ptr);
  if (digits[0] == '-' && digits.find_first_of("123456789") == std::string::npos)
    digits.erase(0, 1);
  return digits;
}

// A short text that is written from its end.
struct BACKWARD_TEXT {
  std::array<char, 48> CHARS{};
  char* AT = CHARS.end();

  void PUT(char c) { *--AT = c; }
  std::string TEXT() { return {AT, CHARS.end()}; }
};

// The same in fixed point for the numbers that tables mostly hold. Up to 12 decimals 5^d has 28
// bits and the real 24, so that their product is exact in 64 bits and is rounded just once. False
// for others, with nothing put.
bool PUT_SHORT_FIXED(float value, int d, BACKWARD_TEXT& text) {
  constexpr std::array<double, 13> powers{1.0, 1e1, 1e2, 1e3,  1e4,  1e5, 1e6,
                                          1e7, 1e8, 1e9, 1e10, 1e11, 1e12};
  constexpr double most_units = 1e15;
  if (d < 0 || d >= static_cast<int>(powers.size())) return false;
  const double units = std::abs(static_cast<double>(value)) * powers[static_cast<std::size_t>(d)];
  if (!(units < most_units)) return false;
  const auto rounded = static_cast<std::uint64_t>(std::llrint(units));
  std::uint64_t rest = rounded;
  for (int place = 0; place <= d || rest > 0; ++place, rest /= 10U) {
    if (place == d && d > 0) text.PUT('.');
    text.PUT(static_cast<char>('0' + rest % 10U));
  }
  if (std::signbit(value) && rounded > 0) text.PUT('-');
  return true;
}

// Fixed point without padding.
std::string FIXED(float value, int d) {
  BACKWARD_TEXT text;
  if (PUT_SHORT_FIXED(value, d, text)) return text.TEXT();
  const std::string word = WORD_FOR(value);
  return word.empty() ? DIGITS(value, d, std::chars_format::fixed) : word;
}

// Exponent form without padding: 3.50E+07.
std::string EXPONENT(float value, int d) {
  const std::string word = WORD_FOR(value);
  return word.empty() ? U_CASE(DIGITS(value, d, std::chars_format::scientific)) : word;
}

// "0.5" as ".5" and "-0.5" as "-.5".
std::string WITHOUT_LEADING_ZERO(const std::string& text) {
  if (text.starts_with("0.")) return text.substr(1);
  if (text.starts_with("-0.")) return "-" + text.substr(2);
  return text;
}

// Bytes before the character with the 0-based number n.
std::size_t BYTE_OFFSET(std::string_view text, std::size_t n) {
  std::size_t byte = 0;
  while (byte < text.size()) {
    const bool starts = (static_cast<unsigned char>(text[byte]) & 0xC0U) != 0x80U;
    if (starts && n-- == 0) break;
    ++byte;
  }
  return byte;
}

// True of a text of ASCII alone; eight bytes at a time.
bool IS_ASCII(std::string_view text) {
  constexpr std::uint64_t high_bits = 0x8080808080808080U;
  std::uint64_t seen = 0;
  const auto see = [&seen]<class WORD>(const char* from, WORD word) {
    std::memcpy(&word, from, sizeof word);
    seen |= word;
  };
  constexpr std::size_t eight = sizeof(std::uint64_t);
  constexpr std::size_t four = sizeof(std::uint32_t);
  if (text.size() >= eight) {
    const char* const last = text.data() + text.size() - eight;
    for (const char* from = text.data(); from < last; from += eight) see(from, std::uint64_t{});
    see(last, std::uint64_t{});
  } else if (text.size() >= four) {
    see(text.data(), std::uint32_t{});
    see(text.data() + text.size() - four, std::uint32_t{});
  } else {
    for (const char c : text) seen |= static_cast<unsigned char>(c);
  }
  return (seen & high_bits) == 0;
}

std::size_t CHARACTER_COUNT(std::string_view text) {
  if (IS_ASCII(text)) return text.size();
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
  }));
}

}  // namespace

int CHARACTERS(std::string_view text) {
  return static_cast<int>(CHARACTER_COUNT(text));
}

// ---- single fields ----

std::string REAL_COLUMNS(float value, int w, int d) {
  std::string text = FIXED(value, d);
  if (static_cast<int>(text.size()) > w) text = WITHOUT_LEADING_ZERO(text);
  return FILL_LEFT(text, w);
}

std::string REAL_AT_LEAST(float value, int w, int d) {
  std::string text = FIXED(value, d);
  const auto width = static_cast<std::size_t>(std::max(w, 0));
  if (text.size() < width) text.insert(0, width - text.size(), ' ');
  return text;
}

std::string EXPONENT_COLUMNS(float value, int w, int d) {
  return FILL_LEFT(EXPONENT(value, d), w);
}

std::string SHORTEST_REAL(float value) {
  constexpr float smallest_fixed = 0.0001f;
  constexpr float largest_fixed = 1e7f;  // above it not every digit would mean something
  if (!std::isfinite(value)) return "";
  const float size = std::abs(value);
  if (!(size > 0.0f)) return "0";
  const bool fixed = size >= smallest_fixed && size < largest_fixed;
  std::array<char, 32> buffer{};
  const auto result =
      std::to_chars(buffer.begin(), buffer.end(), value,
                    fixed ? std::chars_format::fixed : std::chars_format::scientific);
  return {buffer.begin(), result.ptr};
}

std::string INTEGER_COLUMNS(int value, int w) {
  std::string text = std::to_string(value);
  return w > 0 ? FILL_LEFT(text, w) : text;
}

std::string INTEGER_AT_LEAST(int value, int w) {
  const std::string text = std::to_string(value);
  return FILL_LEFT(text, std::max(w, CHARACTERS(text)));
}

std::string TEXT_COLUMNS(std::string_view text, int n) {
  const auto width = static_cast<std::size_t>(std::max(n, 0));
  std::string field(text.substr(0, IS_ASCII(text) ? width : BYTE_OFFSET(text, width)));
  field.append(width - std::min(width, CHARACTER_COUNT(field)), ' ');
  return field;
}

void PUT_AT(std::string& line, int column, std::string_view text) {
  const auto before = static_cast<std::size_t>(std::max(column - 1, 0));
  const std::size_t length = CHARACTER_COUNT(line);
  if (length < before) line.append(before - length, ' ');
  const std::size_t start = BYTE_OFFSET(line, before);
  const std::size_t end =
      start + BYTE_OFFSET(std::string_view(line).substr(start), CHARACTER_COUNT(text));
  line.replace(start, end - start, text);
}

void PUT_FIELD(std::string& line, int column, int width, std::string_view text) {
  const auto room = static_cast<std::size_t>(std::max(width, 0));
  if (text.size() > room && text.starts_with(' ')) text.remove_prefix(1);
  PUT_AT(line, column, text.size() > room ? MAKESTARS(width) : std::string(text));
}

// ---- plain numbers ----

namespace {

struct NUMBER_LAYOUT {
  bool EXPONENT = false;
  int DECIMALS = 0;
};

// How a finite value fills about w columns.
NUMBER_LAYOUT LAYOUT_FOR(float value, int w) {
  const bool positive = value > 0.0f;
  const int sign = positive ? 0 : 1;
  const float magnitude = std::abs(value);
  float limit = 1.0f;
  for (int i = 0; i < w - 1 - sign; ++i) limit *= 10.0f;
  if (magnitude > limit - 1.0f) {
    const int decimals = w - 6 - sign;
    return {true, decimals < 0 ? 1 : decimals};
  }
  int count = 2;
  for (float rest = magnitude; rest >= 1.0f; rest /= 10.0f) ++count;
  const int fraction = value < 0.0f && magnitude < 1.0f ? 1 : 0;
  return {false, std::max(w - count - sign + fraction, 0)};
}

}  // namespace

std::string RFORM(float value, int w) {
  const std::string word = WORD_FOR(value);
  if (!word.empty()) return word;
  const NUMBER_LAYOUT layout = LAYOUT_FOR(value, w);
  if (layout.EXPONENT) return EXPONENT(value, layout.DECIMALS);
  std::string text = FIXED(value, layout.DECIMALS);
  if (text.starts_with("-0.")) text.replace(0, 3, " -.");
  return text;
}

std::string WRITE_VAL(float value, char vtype, int w, int d) {
  return vtype == 'E' || vtype == 'e' ? EXPONENT_COLUMNS(value, w, d) : REAL_COLUMNS(value, w, d);
}

// ---- value(esd) ----

namespace {

constexpr float no_esd = 1e-8f;             // esds below it count as none
constexpr float whole_esd = 1e6f;           // esds from here on are written as whole numbers
constexpr float counts_as_none = 0.09999f;  // remainder of the esd that does not round it up
constexpr int two_digit_limit = 20;         // the printed esd stays below it

// A value without an esd in about 8 columns.
std::string PLAIN_VALUE(float value) {
  constexpr int columns = 8;
  constexpr int exponent_decimals = 2;
  const float magnitude = std::abs(value);
  const float largest = value < 0.0f ? 999999.0f : 1e7f;
  const bool is_zero = !(magnitude > 0.0f);
  if ((magnitude < 0.001f && !is_zero) || magnitude > largest)
    return EXPONENT(value, exponent_decimals);
  const NUMBER_LAYOUT layout = LAYOUT_FOR(value, columns);
  return FIXED(value, layout.EXPONENT ? 0 : layout.DECIMALS);
}

// An esd in units of the last of so many decimals.
struct ESD_DIGITS {
  int PRINTED = 0;
  int DECIMALS = 0;
};

ESD_DIGITS DIGITS_OF_ESD(float std) {
  float scaled = std;
  int decimals = 0;
  while (scaled < 2.0f) {
    scaled *= 10.0f;
    ++decimals;
  }
  int printed = static_cast<int>(scaled);
  if (scaled - static_cast<float>(printed) > counts_as_none) ++printed;
  if (printed == two_digit_limit && decimals > 0) return {2, decimals - 1};
  return {printed, decimals};
}

// The value with as many decimals as its esd has, and the esd in units of the last one. Most begin
// with the blank that stands for a sign.
std::string VALUE_WITH_ESD(float value, float std) {
  const ESD_DIGITS esd = DIGITS_OF_ESD(std);
  BACKWARD_TEXT text;
  text.PUT(')');
  for (int rest = esd.PRINTED; rest > 0; rest /= 10) text.PUT(static_cast<char>('0' + rest % 10));
  text.PUT('(');
  if (PUT_SHORT_FIXED(value, esd.DECIMALS, text)) {
    if (*text.AT != '-') text.PUT(' ');
    return text.TEXT();
  }
  return FIXED(value, esd.DECIMALS) + text.TEXT();
}

std::string VALUE_TEXT(float value, float std) {
  if (NOTNUM(value)) return "NaN";
  if (std::isinf(value)) return value > 0.0f ? "INF" : "-INF";
  if (std < no_esd || NOTNUM(std)) return PLAIN_VALUE(value);
  if (std >= whole_esd) return FIXED(value, 0) + "(" + FIXED(std, 0) + ")";
  return VALUE_WITH_ESD(value, std);
}

}  // namespace

std::string SETNUM_STD(float value, float std) {
  if (std < 0.0f) {
    ERR_TEXT = true;
    ERR_TEXT_MESS = "A negative standard deviation was passed on SetNum_Std procedure!";
    return "";
  }
  std::string text = VALUE_TEXT(value, std);
  if (!text.starts_with('-') && !text.starts_with(' ')) text.insert(text.begin(), ' ');
  return text;
}

}  // namespace KVA_UTILITIES
