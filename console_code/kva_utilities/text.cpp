// Texts: case, search, trimming, cutting, date. Knows nothing of numbers, files or the console.
#include "console_code/kva_utilities/text.h"

#include <algorithm>  // for all_of, equal, max, min, transform
#include <array>
#include <ctime>

namespace KVA_UTILITIES {

namespace {

constexpr char UPPER(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
constexpr char LOWER(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Bytes of a UTF-8 character behind its first.
constexpr bool IS_CONTINUATION(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

std::tm LOCAL_TIME() {
  const std::time_t now = std::time(nullptr);
  const std::tm* const local = std::localtime(&now);
  return local != nullptr ? *local : std::tm{};
}

std::string DIGITS(int value, std::size_t width) {
  std::string digits = std::to_string(value);
  if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
  return digits;
}

}  // namespace

std::string U_CASE(std::string_view text) {
  std::string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(), UPPER);
  return upper;
}

std::string L_CASE(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), LOWER);
  return lower;
}

std::string_view TRIM_VIEW(std::string_view text) {
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

int LENTRIM(std::string_view text) {
  return static_cast<int>(TRIM_VIEW(text).size());
}

std::string TRIM(std::string_view text) {
  return std::string(TRIM_VIEW(text));
}

std::string_view LEFT_ADJUST_VIEW(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  return TRIM_VIEW(text);
}

std::string LEFT_ADJUST(std::string_view text) {
  return std::string(LEFT_ADJUST_VIEW(text));
}

void STRIP_FRONT_BLANK(std::string& text, int& n) {
  text = LEFT_ADJUST(text);
  n = static_cast<int>(text.size());
}

void ADD_FRONT_BLANKS(std::string& text, int n) {
  if (n > 0) text.insert(0, static_cast<std::size_t>(n), ' ');
}

namespace {

// Mostly the cases are the same as well.
bool SAME_LETTER(char a, char b) {
  return a == b || UPPER(a) == UPPER(b);
}

// True when text, which is at least as long, begins with start.
bool STARTS_SAME(std::string_view text, std::string_view start) {
  return std::equal(start.begin(), start.end(), text.begin(), SAME_LETTER);
}

}  // namespace

int INDEXALL(std::string_view text, std::string_view sub) {
  if (sub.empty() || sub.size() > text.size()) return 0;
  const char first = UPPER(sub.front());
  const char last = UPPER(sub.back());
  const std::size_t behind = sub.size() - 1;
  // Most lines do not hold the "_" of a data name at all.
  const bool has_case = LOWER(sub.front()) != first;
  std::size_t at = has_case ? 0 : text.find(first);
  // Data names begin alike, so that the end tells more.
  for (; at <= text.size() - sub.size(); ++at)
    if (UPPER(text[at + behind]) == last && UPPER(text[at]) == first &&
        STARTS_SAME(text.substr(at), sub))
      return static_cast<int>(at) + 1;
  return 0;
}

TEXT_SEARCH SEARCH_FOR(std::string_view sub) {
  constexpr std::size_t longest_step = 255;
  TEXT_SEARCH search{sub, {}};
  search.STEP.fill(static_cast<unsigned char>(std::min(sub.size(), longest_step)));
  for (std::size_t i = 0; i + 1 < sub.size(); ++i) {
    const auto step = static_cast<unsigned char>(std::min(sub.size() - 1 - i, longest_step));
    search.STEP[static_cast<unsigned char>(UPPER(sub[i]))] = step;
    search.STEP[static_cast<unsigned char>(LOWER(sub[i]))] = step;
  }
  return search;
}

int INDEXALL(std::string_view text, const TEXT_SEARCH& search) {
  const std::string_view sub = search.SUB;
  if (sub.empty()) return 0;
  const char upper = UPPER(sub.back());
  const char lower = LOWER(sub.back());
  std::size_t end = sub.size();
  while (end <= text.size()) {
    const char last = text[end - 1];
    if ((last == upper || last == lower) && STARTS_SAME(text.substr(end - sub.size()), sub))
      return static_cast<int>(end - sub.size()) + 1;
    end += search.STEP[static_cast<unsigned char>(last)];
  }
  return 0;
}

bool BEGINS_WITH(std::string_view text, std::string_view start) {
  const std::string_view trimmed = TRIM_VIEW(start);
  return !trimmed.empty() && trimmed.size() <= text.size() && STARTS_SAME(text, trimmed);
}

bool EQUAL_TEXT(std::string_view a, std::string_view b) {
  const std::string_view first = TRIM_VIEW(a);
  const std::string_view second = TRIM_VIEW(b);
  return first.size() == second.size() && (first.empty() || BEGINS_WITH(first, second));
}

std::string MAKESTARS(int n) {
  return std::string(static_cast<std::size_t>(std::max(n, 0)), '*');
}

bool ISLETTER(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool ISDIGIT(char c) {
  return c >= '0' && c <= '9';
}

void REPLACE_CHAR(std::string& text, char a, char b) {
  for (char& c : text)
    if (UPPER(c) == UPPER(a)) c = b;
}

std::string_view CUT_VIEW(std::string_view text, int n) {
  std::size_t length = std::min(text.size(), static_cast<std::size_t>(std::max(n, 0)));
  if (length < text.size())
    while (length > 0 && IS_CONTINUATION(text[length])) --length;
  return TRIM_VIEW(text.substr(0, length));
}

std::string CUT_TEXT(std::string_view text, int n) {
  return std::string(CUT_VIEW(text, n));
}

namespace {

// Bytes of the character that the text begins with; 0 when it is no UTF-8. Table 3-7 of the Unicode
// standard: no longer forms than need be, no surrogates, nothing above U+10FFFF.
std::size_t CHARACTER_LENGTH(std::string_view text) {
  struct FIRST_BYTES {
    unsigned char FROM, TO;
    std::size_t LENGTH;
    unsigned char SECOND_FROM, SECOND_TO;
  };
  constexpr std::array<FIRST_BYTES, 8> rows{{{0xC2, 0xDF, 2, 0x80, 0xBF},
                                             {0xE0, 0xE0, 3, 0xA0, 0xBF},
                                             {0xE1, 0xEC, 3, 0x80, 0xBF},
                                             {0xED, 0xED, 3, 0x80, 0x9F},
                                             {0xEE, 0xEF, 3, 0x80, 0xBF},
                                             {0xF0, 0xF0, 4, 0x90, 0xBF},
                                             {0xF1, 0xF3, 4, 0x80, 0xBF},
                                             {0xF4, 0xF4, 4, 0x80, 0x8F}}};
  const auto first = static_cast<unsigned char>(text[0]);
  if (first < 0x80U) return 1;
  for (const FIRST_BYTES& row : rows) {
    if (first < row.FROM || first > row.TO || text.size() < row.LENGTH) continue;
    const auto second = static_cast<unsigned char>(text[1]);
    const std::string_view rest = text.substr(1, row.LENGTH - 1);
    return second >= row.SECOND_FROM && second <= row.SECOND_TO &&
                   std::all_of(rest.begin(), rest.end(), IS_CONTINUATION)
               ? row.LENGTH
               : 0;
  }
  return 0;
}

// A byte of Latin-1 above ASCII.
std::string AS_TWO_BYTES(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return {static_cast<char>(0xC0U | (byte >> 6U)), static_cast<char>(0x80U | (byte & 0x3FU))};
}

}  // namespace

std::string AS_UTF8(std::string_view text) {
  std::string converted;
  while (!text.empty()) {
    const std::size_t length = CHARACTER_LENGTH(text);
    converted += length > 0 ? text.substr(0, length) : std::string_view(AS_TWO_BYTES(text[0]));
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return converted;
}

std::string_view CUT_WORD(std::string_view& text) {
  text = LEFT_ADJUST_VIEW(text);
  const std::string_view word = text.substr(0, text.find(' '));
  text = LEFT_ADJUST_VIEW(text.substr(word.size()));
  return word;
}

std::string CUT_WORD(std::string& text) {
  std::string_view rest = text;
  const std::string word(CUT_WORD(rest));
  text = std::string(rest);
  return word;
}

std::string DATE_KVA() {
  constexpr std::string_view months = "JANFEBMARAPRMAYJUNJULAUGSEPOCTNOVDEC";
  const std::tm today = LOCAL_TIME();
  return DIGITS(today.tm_mday, 2) + "-" +
         std::string(months.substr(3 * static_cast<std::size_t>(today.tm_mon), 3)) + "-" +
         DIGITS(today.tm_year + 1900, 4);
}

std::string DATE_ISO() {
  const std::tm today = LOCAL_TIME();
  return DIGITS(today.tm_year + 1900, 4) + "-" + DIGITS(today.tm_mon + 1, 2) + "-" +
         DIGITS(today.tm_mday, 2);
}

std::string CLOCK_KVA() {
  const std::tm now = LOCAL_TIME();
  return DIGITS(now.tm_hour, 2) + ":" + DIGITS(now.tm_min, 2) + ":" + DIGITS(now.tm_sec, 2);
}

std::string DATE_AND_TIME() {
  constexpr std::size_t hours_and_minutes = 5;
  return DATE_KVA() + " " + CLOCK_KVA().substr(0, hours_and_minutes);
}

}  // namespace KVA_UTILITIES
