// Names of several files: words, patterns, natural order.
#include "console_code/kva_utilities/file_patterns.h"

#include <algorithm>  // for min

#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_UTILITIES {

std::vector<std::string> FILE_WORDS(std::string_view text) {
  std::vector<std::string> words;
  std::string_view rest = LEFT_ADJUST_VIEW(text);
  while (!rest.empty()) {
    const bool quoted = rest[0] == '"';
    if (quoted) rest.remove_prefix(1);
    const std::size_t end = std::min(rest.find(quoted ? '"' : ' '), rest.size());
    if (end > 0) words.emplace_back(rest.substr(0, end));
    rest = LEFT_ADJUST_VIEW(rest.substr(std::min(end + 1, rest.size())));
  }
  return words;
}

bool IS_PATTERN(std::string_view name) {
  return name.find_first_of("*?[") != std::string_view::npos || INDEXALL(name, "{P}") > 0 ||
         INDEXALL(name, "{T}") > 0;
}

namespace {

bool IS_LETTER_OR_DIGIT(char c) {
  return ISDIGIT(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Characters of the number at the start of a text, 12, 1.54 or 1p54; 0 when there is none.
std::size_t NUMBER_LENGTH(std::string_view text) {
  std::size_t length = 0;
  while (length < text.size() && ISDIGIT(text[length])) ++length;
  if (length == 0 || length + 1 >= text.size()) return length;
  const bool decimals = (text[length] == '.' || text[length] == 'p') && ISDIGIT(text[length + 1]);
  if (!decimals) return length;
  ++length;
  while (length < text.size() && ISDIGIT(text[length])) ++length;
  return length;
}

float NUMBER_OF(std::string_view text) {
  std::string digits(text);
  for (char& c : digits)
    if (c == 'p') c = '.';
  NUMBER number;
  GETNUM(digits, number);
  return number.VAL;
}

// ---- patterns ----

// A pattern against a name. Whether what is left of both fits is worked out once for each pair of
// places, so that many stars take no longer than the product of the lengths.
struct MATCH {
  std::string_view PATTERN;
  std::string_view NAME;
  PATTERN_NUMBERS& NUMBERS;
  std::vector<bool> FAILED;  // by places in pattern and name

  bool FROM(std::size_t p, std::size_t n);
  bool TRY(std::size_t p, std::size_t n);
  bool IS_SIGN(std::size_t p, std::size_t n) const;
  bool NUMBER_FROM(std::size_t p, std::size_t n);
  bool CLASS_FROM(std::size_t p, std::size_t n);
};

bool MATCH::FROM(std::size_t p, std::size_t n) {
  const std::size_t place = p * (NAME.size() + 1) + n;
  if (FAILED[place]) return false;
  const bool fits = TRY(p, n);
  if (!fits) FAILED[place] = true;
  return fits;
}

// Whether "-" here is the sign of a number: of a pressure, and where a star was before it not
// behind a letter or digit, as the "-" of hematite-1.54 only divides.
bool MATCH::IS_SIGN(std::size_t p, std::size_t n) const {
  const bool is_pressure = PATTERN[p + 1] == 'P' || PATTERN[p + 1] == 'p';
  const bool behind_star = p > 0 && PATTERN[p - 1] == '*' && n > 0;
  return is_pressure && n < NAME.size() && NAME[n] == '-' &&
         !(behind_star && IS_LETTER_OR_DIGIT(NAME[n - 1]));
}

// {P} or {T} takes as many characters as it can.
bool MATCH::NUMBER_FROM(std::size_t p, std::size_t n) {
  constexpr std::size_t mark = 3;
  const bool sign = IS_SIGN(p, n);
  const std::size_t start = n + (sign ? 1 : 0);
  std::optional<float>& number =
      PATTERN[p + 1] == 'P' || PATTERN[p + 1] == 'p' ? NUMBERS.P : NUMBERS.T;
  for (std::size_t length = NUMBER_LENGTH(NAME.substr(start)); length > 0; --length) {
    if (!ISDIGIT(NAME[start + length - 1]) || !FROM(p + mark, start + length)) continue;
    const float value = NUMBER_OF(NAME.substr(start, length));
    number = sign ? -value : value;
    return true;
  }
  return false;
}

// [a-c], [!x]; without a closing bracket "[" stands for itself.
bool MATCH::CLASS_FROM(std::size_t p, std::size_t n) {
  const std::size_t close = PATTERN.find(']', p + 2);
  if (n >= NAME.size()) return false;
  if (close == std::string_view::npos) return NAME[n] == '[' && FROM(p + 1, n + 1);
  std::string_view inside = PATTERN.substr(p + 1, close - p - 1);
  const bool none = inside[0] == '!' || inside[0] == '^';
  if (none) inside.remove_prefix(1);
  bool found = false;
  for (std::size_t i = 0; i < inside.size(); ++i) {
    const bool range = i + 2 < inside.size() && inside[i + 1] == '-';
    found = found || (NAME[n] >= inside[i] && NAME[n] <= inside[range ? i + 2 : i]);
    if (range) i += 2;
  }
  return found != none && FROM(close + 1, n + 1);
}

bool MATCH::TRY(std::size_t p, std::size_t n) {
  if (p == PATTERN.size()) return n == NAME.size();
  const std::string_view mark = PATTERN.substr(p, 3);
  if (EQUAL_TEXT(mark, "{P}") || EQUAL_TEXT(mark, "{T}")) return NUMBER_FROM(p, n);
  if (PATTERN[p] == '*') return FROM(p + 1, n) || (n < NAME.size() && FROM(p, n + 1));
  if (PATTERN[p] == '[') return CLASS_FROM(p, n);
  return n < NAME.size() && (PATTERN[p] == '?' || PATTERN[p] == NAME[n]) && FROM(p + 1, n + 1);
}

}  // namespace

bool FITS_PATTERN(std::string_view pattern, std::string_view name, PATTERN_NUMBERS& numbers) {
  numbers = PATTERN_NUMBERS{};
  MATCH match{pattern, name, numbers, {}};
  match.FAILED.assign((pattern.size() + 1) * (name.size() + 1), false);
  return match.FROM(0, 0);
}

bool NATURAL_LESS(std::string_view a, std::string_view b) {
  const std::string_view whole_a = a;
  const std::string_view whole_b = b;
  while (!a.empty() && !b.empty()) {
    const std::size_t length_a = NUMBER_LENGTH(a);
    const std::size_t length_b = NUMBER_LENGTH(b);
    if (length_a > 0 && length_b > 0) {
      const float number_a = NUMBER_OF(a.substr(0, length_a));
      const float number_b = NUMBER_OF(b.substr(0, length_b));
      if (number_a != number_b) return number_a < number_b;
      a.remove_prefix(length_a);
      b.remove_prefix(length_b);
      continue;
    }
    if (a[0] != b[0]) return static_cast<unsigned char>(a[0]) < static_cast<unsigned char>(b[0]);
    a.remove_prefix(1);
    b.remove_prefix(1);
  }
  if (a.empty() != b.empty()) return a.empty();
  return whole_a < whole_b;  // 1 and 01
}

}  // namespace KVA_UTILITIES
