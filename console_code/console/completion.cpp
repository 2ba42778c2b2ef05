// What TAB adds to a line: words that were offered, entries of menus, names of files. Knows no
// command and no terminal.
#include "console_code/console/completion.h"

#include <algorithm>  // for any_of, min, mismatch, sort, unique

#include "console_code/console/open_file.h"
#include "console_code/console_win.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CONSOLE {

using namespace KVA_UTILITIES;

namespace {

// ---- candidates ----

bool INSIDE_CHARACTER(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;  // UTF-8, not the first byte
}

// As far as all texts are the same, in whole characters.
std::string COMMON_START(const std::vector<std::string>& texts) {
  const std::string& first = texts.front();
  std::size_t length = first.size();
  for (const std::string& text : texts) {
    const std::size_t shorter = std::min(length, text.size());
    std::size_t same = 0;
    while (same < shorter && text[same] == first[same]) ++same;
    length = same;
  }
  while (length > 0 && length < first.size() && INSIDE_CHARACTER(first[length])) --length;
  return first.substr(0, length);
}

// behind: what follows the only candidate.
COMPLETION CHOOSE(std::string_view typed, std::vector<std::string> candidates,
                  std::string_view behind) {
  if (candidates.empty()) return {};
  std::sort(candidates.begin(), candidates.end());
  candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
  std::string text = COMMON_START(candidates);
  if (candidates.size() == 1)
    text += behind;
  else if (text.size() <= typed.size())
    text = typed;
  return {typed.size(), text, candidates};
}

// ---- words ----

bool FITS(std::string_view word, std::string_view typed) {
  return typed.empty() || BEGINS_WITH(word, typed);
}

std::vector<std::string> FIRST_WORDS(const LINE_HELP& help, std::string_view typed) {
  std::vector<std::string> words;
  for (const OFFERED_WORD& offered : help.WORDS)
    if (FITS(offered.WORD, typed)) words.push_back(offered.WORD);
  return words;
}

// The menu of the one word that first is or begins.
std::span<const std::string_view> MENU_BEHIND(const LINE_HELP& help, std::string_view first) {
  std::span<const std::string_view> menu;
  int fitting = 0;
  for (const OFFERED_WORD& offered : help.WORDS) {
    if (EQUAL_TEXT(offered.WORD, first)) return offered.MENU;
    if (!FITS(offered.WORD, first)) continue;
    menu = offered.MENU;
    ++fitting;
  }
  return fitting == 1 ? menu : std::span<const std::string_view>{};
}

// An entry may have several words, of which the command line takes the first.
std::vector<std::string> MENU_WORDS(std::span<const std::string_view> menu,
                                    std::string_view typed) {
  std::vector<std::string> words;
  for (std::string_view entry : menu) {
    const std::string_view word = CUT_WORD(entry);
    if (FITS(word, typed)) words.emplace_back(word);
  }
  return words;
}

// ---- files ----

// A name that a line can hold.
bool CAN_BE_TYPED(const std::string& name) {
  constexpr char delete_character = 0x7F;
  return std::none_of(name.begin(), name.end(),
                      [](char c) { return (c >= 0 && c < ' ') || c == delete_character; });
}

COMPLETION COMPLETE_FILE(std::string_view typed) {
  if (typed.starts_with('"') || typed.starts_with('\'')) typed.remove_prefix(1);
  const std::size_t name_at = typed.rfind('/') + 1;  // 0 when there is no folder
  const std::string_view folder = typed.substr(0, name_at);
  const std::string_view start = typed.substr(name_at);
  std::vector<std::string> names;
  for (const std::string& name : FILE_NAMES(folder.empty() ? "." : USER_PATH(folder), start)) {
    const bool hidden = name.starts_with('.') && start.empty();
    if (!hidden && CAN_BE_TYPED(name)) names.push_back(name);
  }
  return CHOOSE(start, names, "");
}

// ---- the line ----

// Where its words begin; the last is the one at the cursor, which may be empty.
std::vector<std::size_t> WORD_STARTS(std::string_view before) {
  std::vector<std::size_t> starts;
  bool behind_blank = true;
  for (std::size_t i = 0; i < before.size(); ++i) {
    if (behind_blank && before[i] != ' ') starts.push_back(i);
    behind_blank = before[i] == ' ';
  }
  if (behind_blank) starts.push_back(before.size());
  return starts;
}

// Whether a word of an expression may begin there: not within a word of letters and digits.
bool WORD_MAY_BEGIN(std::string_view before, std::size_t at) {
  const auto joins = [](char c) { return ISLETTER(c) || ISDIGIT(c) || c == '_'; };
  const bool within = at > 0 && joins(before[at - 1]);
  if (at == before.size()) return !within;
  return before[at] != ' ' && !(within && joins(before[at]));
}

// Words may have signs and brackets in them, as the site C(11) has, so the longest piece at the end
// of the line that begins one counts.
COMPLETION COMPLETE_EXPRESSION(std::string_view before, const LINE_HELP& help) {
  COMPLETION found;
  for (std::size_t at = 0; at <= before.size() && found.CANDIDATES.empty(); ++at) {
    if (!WORD_MAY_BEGIN(before, at)) continue;
    const std::string_view word = before.substr(at);
    found = CHOOSE(word, FIRST_WORDS(help, word), "");
  }
  return found;
}

}  // namespace

// The name of a file may have blanks, so the longest piece of the line that begins one counts.
COMPLETION COMPLETE(std::string_view before, const LINE_HELP& help) {
  if (help.EXPRESSION) return COMPLETE_EXPRESSION(before, help);
  const std::vector<std::size_t> starts = WORD_STARTS(before);
  const std::string_view typed = before.substr(starts.back());
  const std::string_view behind = help.FILES ? " " : "";  // something may follow
  const bool has_words = !help.WORDS.empty();
  if (has_words && starts.size() == 1) return CHOOSE(typed, FIRST_WORDS(help, typed), behind);
  if (has_words && starts.size() == 2) {
    std::string_view rest = before;
    const std::span<const std::string_view> menu = MENU_BEHIND(help, CUT_WORD(rest));
    COMPLETION word = CHOOSE(typed, MENU_WORDS(menu, typed), behind);
    if (!word.CANDIDATES.empty()) return word;
  }
  if (!help.FILES) return {};
  for (std::size_t i = has_words ? 1 : 0; i < starts.size(); ++i) {
    COMPLETION file = COMPLETE_FILE(before.substr(starts[i]));
    if (!file.CANDIDATES.empty()) return file;
  }
  return {};
}

}  // namespace KVA_CONSOLE
