// Texts: case, search, trimming, cutting, date. Knows nothing of numbers, files or the console.
#include "console_code/kva_utilities/text.h"

#include <algorithm>  // for search, transform
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

std::string_view WITHOUT_TRAILING_BLANKS(std::string_view text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

// Bytes of a UTF-8 character behind its first.
constexpr bool IS_CONTINUATION(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

std::tm LOCAL_TIME() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return local;
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

int LENTRIM(std::string_view text) {
  return static_cast<int>(WITHOUT_TRAILING_BLANKS(text).size());
}

std::string TRIM(std::string_view text) {
  return std::string(WITHOUT_TRAILING_BLANKS(text));
}

std::string LEFT_ADJUST(std::string_view text) {
  const std::string_view trimmed = WITHOUT_TRAILING_BLANKS(text);
  return std::string(trimmed.substr(std::min(trimmed.find_first_not_of(' '), trimmed.size())));
}

void STRIP_FRONT_BLANK(std::string& text, int& n) {
  text = LEFT_ADJUST(text);
  n = static_cast<int>(text.size());
}

void ADD_FRONT_BLANKS(std::string& text, int n) {
  if (n > 0) text.insert(0, static_cast<std::size_t>(n), ' ');
}

int INDEXALL(std::string_view text, std::string_view sub) {
  if (sub.empty()) return 0;
  const auto* const at = std::search(text.begin(), text.end(), sub.begin(), sub.end(),
                                     [](char a, char b) { return UPPER(a) == UPPER(b); });
  return at == text.end() ? 0 : static_cast<int>(at - text.begin()) + 1;
}

bool BEGINS_WITH(std::string_view text, std::string_view start) {
  const std::string_view trimmed = WITHOUT_TRAILING_BLANKS(start);
  if (trimmed.empty() || trimmed.size() > text.size()) return false;
  return std::equal(trimmed.begin(), trimmed.end(), text.begin(),
                    [](char a, char b) { return UPPER(a) == UPPER(b); });
}

bool EQUAL_TEXT(std::string_view a, std::string_view b) {
  const std::string_view first = WITHOUT_TRAILING_BLANKS(a);
  const std::string_view second = WITHOUT_TRAILING_BLANKS(b);
  return first.size() == second.size() && (first.empty() || BEGINS_WITH(first, second));
}

std::string MAKESTARS(int n) {
  return std::string(static_cast<std::size_t>(std::max(n, 0)), '*');
}

bool ISLETTER(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

void REPLACE_CHAR(std::string& text, char a, char b) {
  for (char& c : text)
    if (UPPER(c) == UPPER(a)) c = b;
}

std::string CUT_TEXT(std::string_view text, int n) {
  std::size_t length = std::min(text.size(), static_cast<std::size_t>(std::max(n, 0)));
  if (length < text.size())
    while (length > 0 && IS_CONTINUATION(text[length])) --length;
  return TRIM(text.substr(0, length));
}

std::string CUT_WORD(std::string& text) {
  text = LEFT_ADJUST(text);
  const std::size_t length = std::min(text.find(' '), text.size());
  const std::string word = text.substr(0, length);
  text = LEFT_ADJUST(std::string_view(text).substr(length));
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

}  // namespace KVA_UTILITIES
