// Numbers out of texts: words, values with esds, list-directed input. Prints nothing.
#include "console_code/kva_utilities/numbers.h"

#include <array>
#include <charconv>
#include <cmath>  // for abs

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

bool IS_DIGIT(char c) {
  return c >= '0' && c <= '9';
}

// ---- one word ----

// A number as the parts of its text.
struct NUMBER_TEXT {
  bool NEGATIVE = false;
  std::string MANTISSA;  // digits with at most one point
  std::string EXPONENT;  // sign and digits, blank when there is none
  bool POINT = false;
};

// Takes a "+" or "-" off the front; true for "-".
bool TAKE_SIGN(std::string_view& word) {
  if (word.empty() || (word[0] != '+' && word[0] != '-')) return false;
  const bool negative = word[0] == '-';
  word.remove_prefix(1);
  return negative;
}

// Takes digits, and one point when allowed, off the front.
std::string TAKE_DIGITS(std::string_view& word, bool point_allowed, bool& point) {
  std::size_t n = 0;
  while (n < word.size() && (IS_DIGIT(word[n]) || (word[n] == '.' && point_allowed && !point))) {
    point = point || word[n] == '.';
    ++n;
  }
  std::string digits(word.substr(0, n));
  word.remove_prefix(n);
  return digits;
}

// Cuts a word such as -1.5E+3 into its parts; false when it has another form.
bool CUT_NUMBER(std::string_view word, NUMBER_TEXT& parts) {
  parts.NEGATIVE = TAKE_SIGN(word);
  parts.MANTISSA = TAKE_DIGITS(word, true, parts.POINT);
  if (parts.MANTISSA.empty() || parts.MANTISSA == ".") return false;
  if (word.empty()) return true;
  if (std::string_view("EeDd").find(word[0]) == std::string_view::npos) return false;
  word.remove_prefix(1);
  const bool negative_exponent = TAKE_SIGN(word);
  bool no_point = false;
  const std::string digits = TAKE_DIGITS(word, false, no_point);
  if (digits.empty() || !word.empty()) return false;
  parts.EXPONENT = (negative_exponent ? "-" : "+") + digits;
  return true;
}

// Whether a number outside the range of a real is too small rather than too large.
bool IS_TINY(const NUMBER_TEXT& parts, const std::string& text) {
  double wide = 0.0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), wide);
  if (result.ec == std::errc()) return std::abs(wide) < 1.0;
  if (!parts.EXPONENT.empty()) return parts.EXPONENT[0] == '-';
  return parts.MANTISSA[0] == '0' || parts.MANTISSA[0] == '.';
}

}  // namespace

bool GETNUM(std::string_view word, NUMBER& number) {
  INIT_ERR_TEXT();
  number = NUMBER{};
  NUMBER_TEXT parts;
  if (!CUT_NUMBER(word, parts))
    return FAIL("The variable cannot be computed as a number in GETNUM");

  std::string text = parts.MANTISSA;
  if (!parts.EXPONENT.empty()) text += "e" + parts.EXPONENT;
  const auto real = std::from_chars(text.data(), text.data() + text.size(), number.VAL);
  if (real.ec == std::errc::result_out_of_range) {
    if (!IS_TINY(parts, text)) return FAIL("Limits of digit variable exceeded in GETNUM");
    number.VAL = 0.0f;
  }
  if (parts.NEGATIVE) number.VAL = -number.VAL;

  if (!parts.POINT && parts.EXPONENT.empty()) {
    const std::string& digits = parts.MANTISSA;
    const auto whole = std::from_chars(digits.data(), digits.data() + digits.size(), number.IVAL);
    number.WHOLE = whole.ec == std::errc();
    if (parts.NEGATIVE) number.IVAL = -number.IVAL;
  }
  return true;
}

// ---- words of a line ----

void GETWORDS(std::string_view text, std::span<std::string> words, int& count) {
  INIT_ERR_TEXT();
  count = 0;
  while (true) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    if (text.empty()) return;
    const bool quoted = text[0] == '"';
    if (quoted) text.remove_prefix(1);
    const std::size_t end = text.find(quoted ? '"' : ' ');
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

// ---- values with esds ----

namespace {

// The text of a line of numbers without its comment.
std::string WITHOUT_COMMENT(std::string_view text) {
  std::size_t end = text.find('!');
  if (end == std::string_view::npos) end = text.find('#');
  return LEFT_ADJUST(text.substr(0, end));
}

// Decimals of the text of a value: what stands behind its point.
std::size_t DECIMALS(std::string_view value) {
  const std::size_t point = value.find('.');
  return point == std::string_view::npos ? 0 : value.size() - point - 1;
}

// A word such as 1.234(5) or 1.234.
bool READ_VALUE_STD(std::string_view word, float& value, float& std) {
  const std::size_t open = word.find('(');
  const std::size_t close = word.find(')');
  const bool has_open = open != std::string_view::npos;
  const bool has_close = close != std::string_view::npos;
  if (has_open != has_close || (has_open && close < open))
    return FAIL("Wrong format using Standard values");
  NUMBER number;
  if (!GETNUM(word.substr(0, open), number)) return FAIL("Bad format");
  value = number.VAL;
  std = 0.0f;
  if (!has_open) return true;
  if (!GETNUM(word.substr(open + 1, close - open - 1), number) || number.VAL < 0.0f)
    return FAIL("Bad format");
  float scale = 1.0f;
  for (std::size_t d = 0; d < DECIMALS(word.substr(0, open)); ++d) scale *= 10.0f;
  std = number.VAL / scale;
  return true;
}

}  // namespace

void GETNUM_STD(std::string_view text, std::span<float> values, std::span<float> stds, int& count) {
  INIT_ERR_TEXT();
  count = 0;
  for (float& value : values) value = 0.0f;
  for (float& std : stds) std = 0.0f;
  if (LENTRIM(text) == 0) {
    FAIL("Blank line");
    return;
  }
  std::string rest = WITHOUT_COMMENT(text);
  while (!rest.empty()) {
    float value = 0.0f;
    float std = 0.0f;
    if (!READ_VALUE_STD(CUT_WORD(rest), value, std)) return;
    const auto place = static_cast<std::size_t>(count);
    if (place < values.size()) values[place] = value;
    if (place < stds.size()) stds[place] = std;
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

}  // namespace KVA_UTILITIES
