// Numbers out of texts: words, values with esds, list-directed input; order and tests of numbers.
// Prints nothing.
#include "console_code/kva_utilities/numbers.h"

#include <algorithm>  // for copy_n, min
#include <array>
#include <charconv>
#include <cmath>    // for abs, isfinite, pow
#include <cstddef>  // for ptrdiff_t

#include "console_code/kva_utilities/text.h"

namespace KVA_UTILITIES {

void INIT_ERR_TEXT() {
  ERR_TEXT = false;
  ERR_TEXT_MESS.clear();
}

namespace {

bool FAIL(std::string_view text) {
  ERR_TEXT = true;
  ERR_TEXT_MESS = text;
  return false;
}

bool STARTS_EXPONENT(char c) {
  return c == 'e' || c == 'E' || c == 'd' || c == 'D';
}

// ---- one word ----

// A number as the parts of its text.
struct NUMBER_TEXT {
  bool NEGATIVE = false;
  std::string_view MANTISSA;  // digits with at most one point
  bool POINT = false;
  bool NEGATIVE_EXPONENT = false;
  std::string_view EXPONENT;  // digits, blank when there is none
};

// Takes a "+" or "-" off the front; true for "-".
bool TAKE_SIGN(std::string_view& text) {
  if (text.empty() || (text[0] != '+' && text[0] != '-')) return false;
  const bool negative = text[0] == '-';
  text.remove_prefix(1);
  return negative;
}

// Number of digits from position start on.
std::size_t DIGITS_FROM(std::string_view text, std::size_t start) {
  std::size_t end = start;
  while (end < text.size() && ISDIGIT(text[end])) ++end;
  return end - start;
}

std::string_view TAKE_FRONT(std::string_view& text, std::size_t n) {
  const std::string_view front = text.substr(0, n);
  text.remove_prefix(n);
  return front;
}

// Takes digits with at most one point off the front; false without a digit.
bool TAKE_MANTISSA(std::string_view& text, NUMBER_TEXT& parts) {
  std::size_t n = DIGITS_FROM(text, 0);
  parts.POINT = n < text.size() && text[n] == '.';
  if (parts.POINT) n += 1 + DIGITS_FROM(text, n + 1);
  parts.MANTISSA = TAKE_FRONT(text, n);
  return n > (parts.POINT ? 1U : 0U);
}

// Takes a number such as -1.5E+3 off the front; false when there is none.
bool TAKE_NUMBER(std::string_view& text, NUMBER_TEXT& parts) {
  parts.NEGATIVE = TAKE_SIGN(text);
  if (!TAKE_MANTISSA(text, parts)) return false;
  if (text.empty() || !STARTS_EXPONENT(text[0])) return true;
  text.remove_prefix(1);
  parts.NEGATIVE_EXPONENT = TAKE_SIGN(text);
  parts.EXPONENT = TAKE_FRONT(text, DIGITS_FROM(text, 0));
  return !parts.EXPONENT.empty();
}

// Whether a number outside the range of a real is too small rather than too large.
bool IS_TINY(const NUMBER_TEXT& parts, std::string_view text) {
  double wide = 0.0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), wide);
  if (result.ec == std::errc()) return std::abs(wide) < 1.0;
  if (!parts.EXPONENT.empty()) return parts.NEGATIVE_EXPONENT;
  return parts.MANTISSA[0] == '0' || parts.MANTISSA[0] == '.';
}

// The digits of a whole number; false for another number or one that does not fit.
bool READ_WHOLE(const NUMBER_TEXT& parts, NUMBER& number) {
  if (parts.POINT || !parts.EXPONENT.empty()) return false;
  const char* const first = parts.MANTISSA.data();
  const auto whole = std::from_chars(first, first + parts.MANTISSA.size(), number.IVAL);
  number.WHOLE = whole.ec == std::errc();
  number.VAL = static_cast<float>(number.IVAL);
  return number.WHOLE;
}

// Most numbers are short. Seven digits with a point among them and the power of ten are reals
// without rounding, so that their quotient is rounded just once (W. D. Clinger, ACM SIGPLAN Notices
// 25 (1990) 92-101). False for longer ones.
bool READ_SHORT(std::string_view mantissa, float& value) {
  constexpr std::array<float, 8> powers{1.0f, 1e1f, 1e2f, 1e3f, 1e4f, 1e5f, 1e6f, 1e7f};
  if (mantissa.size() > powers.size()) return false;
  int digits = 0;
  std::size_t behind_point = 0;
  for (std::size_t i = 0; i < mantissa.size(); ++i)
    if (mantissa[i] == '.')
      behind_point = mantissa.size() - i - 1;
    else
      digits = 10 * digits + (mantissa[i] - '0');
  value = static_cast<float>(digits) / powers[behind_point];
  return true;
}

// The number without its sign; one too small for a real is zero, one too large gives false.
bool READ_REAL(const NUMBER_TEXT& parts, float& value) {
  if (parts.EXPONENT.empty() && READ_SHORT(parts.MANTISSA, value)) return true;
  std::string_view text = parts.MANTISSA;
  std::string with_exponent;
  if (!parts.EXPONENT.empty()) {
    with_exponent.append(parts.MANTISSA).append(parts.NEGATIVE_EXPONENT ? "e-" : "e+");
    text = with_exponent.append(parts.EXPONENT);
  }
  const auto real = std::from_chars(text.data(), text.data() + text.size(), value);
  if (real.ec != std::errc::result_out_of_range) return true;
  value = 0.0f;
  return IS_TINY(parts, text);
}

// The value of a number; false, with the error set, when it is too large.
bool VALUE_OF(const NUMBER_TEXT& parts, NUMBER& number) {
  number = NUMBER{};
  if (!READ_WHOLE(parts, number) && !READ_REAL(parts, number.VAL))
    return FAIL("Limits of digit variable exceeded in GETNUM");
  if (parts.NEGATIVE) {
    number.VAL = -number.VAL;
    number.IVAL = -number.IVAL;
  }
  return true;
}

}  // namespace

bool GETNUM(std::string_view word, NUMBER& number) {
  INIT_ERR_TEXT();
  number = NUMBER{};
  NUMBER_TEXT parts;
  if (!TAKE_NUMBER(word, parts) || !word.empty())
    return FAIL("The variable cannot be computed as a number in GETNUM");
  return VALUE_OF(parts, number);
}

// ---- words of a line ----

namespace {

// The position of the first blank, of which a word is near.
std::size_t FIRST_BLANK(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size() && text[at] != ' ') ++at;
  return at;
}

}  // namespace

void GETWORDS(std::string_view text, std::span<std::string_view> words, int& count) {
  INIT_ERR_TEXT();
  count = 0;
  while (true) {
    while (text.starts_with(' ')) text.remove_prefix(1);
    if (text.empty()) return;
    const bool quoted = text[0] == '"';
    if (quoted) text.remove_prefix(1);
    const std::size_t end = quoted ? text.find('"') : FIRST_BLANK(text);
    if (quoted && end == std::string_view::npos) {
      FAIL("Non balanced quotes!");
      return;
    }
    const std::string_view word = text.substr(0, end);
    text.remove_prefix(std::min(word.size() + 1, text.size()));
    ++count;
    if (static_cast<std::size_t>(count) > words.size()) {
      FAIL("Dimension of DIRE exceeded");
      return;
    }
    words[static_cast<std::size_t>(count - 1)] = word;
  }
}

void GETWORDS(std::string_view text, std::span<std::string> words, int& count) {
  std::vector<std::string_view> views(words.size());
  GETWORDS(text, views, count);
  const std::size_t found = std::min(static_cast<std::size_t>(count), words.size());
  std::copy_n(views.begin(), found, words.begin());
}

// ---- values with esds ----

namespace {

// The text of a line of numbers without its comment: "!" ends it, or else "#".
std::string_view WITHOUT_COMMENT(std::string_view text) {
  const std::size_t mark = text.find('!');
  return text.substr(0, mark != std::string_view::npos ? mark : text.find('#'));
}

// Farther than any digit of a real lies from its point.
constexpr int most_places = 400;

// Power of ten of a number, 0 when it has none.
int EXPONENT_OF(const NUMBER_TEXT& parts) {
  if (parts.EXPONENT.empty()) return 0;
  int exponent = most_places;  // one that is no int
  const std::string_view text = parts.EXPONENT;
  std::from_chars(text.data(), text.data() + text.size(), exponent);
  exponent = std::min(exponent, most_places);
  return parts.NEGATIVE_EXPONENT ? -exponent : exponent;
}

// Digits of a number behind its point. The exponent is not counted.
int DECIMALS_OF(const NUMBER_TEXT& parts) {
  if (!parts.POINT) return 0;
  const std::size_t decimals = parts.MANTISSA.size() - parts.MANTISSA.find('.') - 1;
  return static_cast<int>(std::min<std::size_t>(decimals, most_places));
}

// value times a power of ten.
float SCALED(float value, int power) {
  if (!(value > 0.0f)) return 0.0f;
  float scale = 1.0f;
  for (int k = 0; k < std::abs(power); ++k) scale *= 10.0f;
  return power < 0 ? value / scale : value * scale;
}

// Brackets that do not pair are told from other faults.
bool FAIL_STD(std::string_view word) {
  const std::size_t open = word.find('(');
  const std::size_t close = word.find(')');
  const bool has_open = open != std::string_view::npos;
  const bool has_close = close != std::string_view::npos;
  const bool pair = has_open == has_close && !(has_open && close < open);
  return FAIL(pair ? "Bad format" : "Wrong format using Standard values");
}

// Takes digits off the front as the number that they count, behind those before. Returns how many
// they are; beyond nine the number is of no use.
std::ptrdiff_t TAKE_DIGITS(const char*& at, const char* end, unsigned& number) {
  const char* const first = at;
  for (; at != end; ++at) {
    const unsigned digit = static_cast<unsigned char>(*at) - static_cast<unsigned>('0');
    if (digit > 9U) break;
    number = 10U * number + digit;
  }
  return at - first;
}

// The form that most numbers have, -0.12345(12) or -0.12345, by the rule for short numbers. False
// for any other, of which nothing is taken.
bool TAKE_SHORT_STD(std::string_view& word, NUMBER_STD& number) {
  constexpr std::array<float, 8> powers{1.0f, 1e1f, 1e2f, 1e3f, 1e4f, 1e5f, 1e6f, 1e7f};
  const auto is_short = [](std::ptrdiff_t digits) { return digits > 0 && digits <= 7; };
  const char* at = word.data();
  const char* const end = at + word.size();
  const bool negative = at != end && *at == '-';
  if (negative || (at != end && *at == '+')) ++at;
  unsigned units = 0;
  const std::ptrdiff_t before_point = TAKE_DIGITS(at, end, units);
  const bool point = at != end && *at == '.';
  const std::ptrdiff_t decimals = point ? TAKE_DIGITS(++at, end, units) : 0;
  if (!is_short(before_point + decimals)) return false;
  const float unit = powers[static_cast<std::size_t>(decimals)];
  if (at != end) {
    unsigned esd = 0;
    if (*at != '(' || !is_short(TAKE_DIGITS(++at, end, esd)) || at == end || *at != ')')
      return false;
    ++at;
    number.HAS_STD = true;
    number.STD = static_cast<float>(esd) / unit;
  }
  const float value = static_cast<float>(units) / unit;
  const int whole = point ? 0 : static_cast<int>(units);
  number.VALUE = {negative ? -value : value, negative ? -whole : whole, !point};
  word.remove_prefix(static_cast<std::size_t>(at - word.data()));
  return true;
}

// Takes a number with its esd, 1.234(5) or 1.234, off the front of a word. False, with the error
// set, when there is none or it is too large.
bool TAKE_NUMBER_STD(std::string_view& rest, NUMBER_STD& number) {
  const std::string_view word = rest;
  number = NUMBER_STD{};
  if (TAKE_SHORT_STD(rest, number)) return true;
  number = NUMBER_STD{};
  NUMBER_TEXT parts;
  if (!TAKE_NUMBER(rest, parts) || !VALUE_OF(parts, number.VALUE)) return FAIL_STD(word);
  if (rest.empty()) return true;
  NUMBER_TEXT units;
  NUMBER esd;
  if (TAKE_FRONT(rest, 1) != "(" || !TAKE_NUMBER(rest, units) || !rest.starts_with(')') ||
      !VALUE_OF(units, esd) || esd.VAL < 0.0f)
    return FAIL_STD(word);
  rest.remove_prefix(1);
  // Without a point the esd counts units of the last digit, with one it is the esd: 12.5(1.2)
  const int unit = units.POINT ? 0 : -DECIMALS_OF(parts);
  number.HAS_STD = true;
  number.STD = SCALED(esd.VAL, EXPONENT_OF(parts) + unit);
  return number.STD <= LARGEST_REAL || FAIL_STD(word);
}

}  // namespace

namespace {

// A text that is one short number and nothing else, as most are; false for any other.
bool IS_SHORT_STD(std::string_view text, NUMBER_STD& number) {
  return TAKE_SHORT_STD(text, number) && text.empty();
}

}  // namespace

bool GETNUM_STD(std::string_view word, NUMBER_STD& number) {
  INIT_ERR_TEXT();
  std::string_view rest = word;
  return TAKE_NUMBER_STD(rest, number) && (rest.empty() || FAIL_STD(word));
}

void GETNUM_STD(std::string_view text, std::span<float> values, std::span<float> stds, int& count) {
  INIT_ERR_TEXT();
  NUMBER_STD only;
  if (values.size() == 1 && stds.size() == 1 && IS_SHORT_STD(text, only)) {
    values[0] = only.VALUE.VAL;
    stds[0] = only.STD;
    count = 1;
    return;
  }
  count = 0;
  for (float& value : values) value = 0.0f;
  for (float& std : stds) std = 0.0f;
  if (LENTRIM(text) == 0) {
    FAIL("Blank line");
    return;
  }
  std::string_view rest = LEFT_ADJUST_VIEW(WITHOUT_COMMENT(text));
  while (!rest.empty()) {
    NUMBER_STD number;
    std::string_view word = rest.substr(0, rest.find(' '));
    rest = LEFT_ADJUST_VIEW(rest.substr(word.size()));
    // What stands behind the closing bracket does not count.
    if (!TAKE_NUMBER_STD(word, number)) return;
    const auto place = static_cast<std::size_t>(count);
    if (place < values.size()) values[place] = number.VALUE.VAL;
    if (place < stds.size()) stds[place] = number.STD;
    ++count;
  }
}

std::vector<NUMBER> NUM_FROM_TEXT(std::string_view text) {
  bool all_numbers = false;
  return NUM_FROM_TEXT(text, all_numbers);
}

std::vector<NUMBER> NUM_FROM_TEXT(std::string_view text, bool& all_numbers) {
  constexpr std::size_t most_words = 50;
  std::string line(text.substr(0, text.find('#')));
  for (char& c : line)
    if (std::string_view(")(,\t/").find(c) != std::string_view::npos) c = ' ';
  std::array<std::string, most_words> words;
  int count = 0;
  GETWORDS(line, words, count);
  std::vector<NUMBER> numbers;
  for (std::size_t i = 0; i < std::min(static_cast<std::size_t>(count), most_words); ++i) {
    NUMBER number;
    if (GETNUM(words[i], number)) numbers.push_back(number);
  }
  INIT_ERR_TEXT();
  all_numbers = static_cast<int>(numbers.size()) == count;
  return numbers;
}

// ---- list-directed reading ----

namespace {

// What stands next in list-directed input.
enum class ITEM { VALUE, NULL_VALUE, SLASH, END };

constexpr std::string_view blanks = " \t";

void SKIP_BLANKS(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
}

// Takes the next item off the text, with the separator behind it.
ITEM NEXT_ITEM(std::string_view& text, std::string_view& word) {
  SKIP_BLANKS(text);
  if (text.empty()) return ITEM::END;
  if (text[0] == '/') return ITEM::SLASH;
  if (text[0] == ',') {
    text.remove_prefix(1);
    return ITEM::NULL_VALUE;
  }
  word = text.substr(0, text.find_first_of(" \t,/"));
  text.remove_prefix(word.size());
  SKIP_BLANKS(text);
  if (!text.empty() && text[0] == ',') text.remove_prefix(1);
  return ITEM::VALUE;
}

}  // namespace

bool READ_REALS(std::string_view text, std::span<float> values) {
  for (float& value : values) {
    std::string_view word;
    const ITEM item = NEXT_ITEM(text, word);
    if (item == ITEM::SLASH) return true;
    if (item == ITEM::END) return false;
    if (item == ITEM::NULL_VALUE) continue;
    NUMBER number;
    if (!GETNUM(word, number)) return false;
    value = number.VAL;
  }
  return true;
}

bool READ_INTEGERS(std::string_view text, std::span<int> values, int& count) {
  count = 0;
  for (int& value : values) {
    std::string_view word;
    const ITEM item = NEXT_ITEM(text, word);
    if (item == ITEM::SLASH || item == ITEM::END) return true;
    ++count;
    if (item == ITEM::NULL_VALUE) continue;
    NUMBER number;
    if (!GETNUM(word, number) || !number.WHOLE) return false;
    value = number.IVAL;
  }
  return true;
}

// ---- 64-bit reals ----

namespace {

// The whole text as a number.
bool READ_WIDE(std::string_view text, double& value) {
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  return result.ec == std::errc() && result.ptr == end && std::isfinite(value);
}

}  // namespace

bool GETNUM_STD_WIDE(std::string_view word, double& value, double& std) {
  value = 0.0;
  std = 0.0;
  const std::string_view number = word.substr(0, word.find('('));
  std::string_view rest = number;
  NUMBER_TEXT parts;
  if (!TAKE_NUMBER(rest, parts) || !rest.empty() || !READ_WIDE(number, value)) return false;
  if (number.size() == word.size()) return true;
  if (word.back() != ')') return false;
  const std::string_view digits = word.substr(number.size() + 1, word.size() - number.size() - 2);
  if (digits.empty() || DIGITS_FROM(digits, 0) != digits.size()) return false;
  const std::size_t decimals =
      parts.POINT ? parts.MANTISSA.size() - 1 - parts.MANTISSA.find('.') : 0;
  // The unit of the last digit: a power of ten, with the number's own exponent.
  double exponent = 0.0;
  if (!parts.EXPONENT.empty() && !READ_WIDE(parts.EXPONENT, exponent)) return false;
  if (parts.NEGATIVE_EXPONENT) exponent = -exponent;
  return READ_WIDE(digits, std) &&
         std::isfinite(std *= std::pow(10.0, exponent - static_cast<double>(decimals)));
}

// ---- order and tests ----

std::vector<int> SET_SORT(std::span<const float> values, bool keep_zero) {
  constexpr float counts_as_zero = 1e-08f;
  std::vector<int> order;
  std::vector<bool> taken(values.size(), false);
  std::size_t choice = 0;
  for (std::size_t place = 0; place < values.size(); ++place) {
    float bound = LARGEST_REAL;
    for (std::size_t i = 0; i < values.size(); ++i) {
      const bool kept = keep_zero || std::abs(values[i]) > counts_as_zero;
      if (taken[i] || !kept || !(values[i] < bound)) continue;
      bound = values[i];
      choice = i;
    }
    taken[choice] = true;
    order.push_back(static_cast<int>(choice) + 1);
  }
  return order;
}

bool NOTNUM(float x) {
  return x != x;
}

bool INFINITE_NUMBER(float x) {
  return x + 1.0f == x;
}

bool INVALID_NUMBER(float x) {
  return NOTNUM(x) || INFINITE_NUMBER(x);
}

}  // namespace KVA_UTILITIES
