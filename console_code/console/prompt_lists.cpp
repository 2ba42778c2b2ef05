// Lists of numbers and choices out of a list of texts. Asks; keeps nothing but the pending input.
#include <algorithm>  // for any_of, find_if, max, min
#include <array>
#include <cmath>    // for abs, round
#include <cstdint>  // for int64_t

#include "console_code/console/input.h"
#include "console_code/console/output.h"
#include "console_code/console/prompts.h"
#include "console_code/console/state.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CONSOLE {

using namespace KVA_UTILITIES;

namespace {

constexpr std::size_t work_list_size = 255;  // numbers taken from one line
constexpr int option_columns = 30;           // of a pending word that are compared

using WORK_LIST = std::array<int, work_list_size>;

// ---- lists of numbers ----

// Numbers of the pending line, zeros behind the last; "all" is the range of everything.
bool READ_WORK_LIST(int nmax, WORK_LIST& work, bool& one_shot) {
  work.fill(0);
  bool read = true;
  if (ANSWER("ALL") > 0) {
    work[0] = 1;
    work[1] = -nmax;
    one_shot = true;
  } else {
    int count = 0;
    read = READ_INTEGERS(CONSOLE.INSTRING, work, count);
  }
  CLEAR_INPUT();
  return read;
}

// Puts the range from the last number stored to end in its place, cut where the list is full.
void STORE_RANGE(std::vector<int>& list, int end, std::size_t room) {
  const int first = std::min(list.back(), end);
  const int last = std::max(list.back(), end);
  list.pop_back();
  for (int number = first; number <= last && list.size() < room; ++number) list.push_back(number);
}

// Stores the numbers of the work list in order. False at a number above nmax.
bool STORE_WORK_LIST(const WORK_LIST& work, int nmax, std::vector<int>& list) {
  const auto room = static_cast<std::size_t>(nmax);
  for (const int number : work) {
    if (list.size() >= room) return true;
    if (std::abs(static_cast<std::int64_t>(number)) > nmax) return false;
    if (number > 0) list.push_back(number);
    if (number < 0) STORE_RANGE(list, -number, room);
  }
  return true;
}

// ---- choices ----

// Whether a word, or its beginning, is one of those behind the first of an entry.
bool GOES_ON_WITH(std::string_view entry, std::string_view word) {
  constexpr std::size_t shortest = 3;  // a shorter beginning may be the label of a site
  std::string rest(entry);
  CUT_WORD(rest);
  while (!rest.empty()) {
    const std::string next = CUT_WORD(rest);
    if (EQUAL_TEXT(next, word) || (word.size() >= shortest && BEGINS_WITH(next, word))) return true;
  }
  return false;
}

// The entry may have been typed in full, as in LIST bond lengths: its other words go with the
// first, and no question takes them for its answer.
void TAKE_WORDS_OF(std::string_view entry) {
  while (CONSOLE.BEHIND_COMMAND && CONSOLE.INSTRING_LEN > 0) {
    std::string rest = CONSOLE.INSTRING;
    if (!GOES_ON_WITH(entry, CUT_WORD(rest))) return;
    TAKE_WORD();
  }
}

void WRITE_SELECTIONS(std::string_view title, std::span<const std::string_view> list) {
  WRITE_OUT_BLANK(1);
  WRITE_OUT("     Possible selections for " + TRIM(title) + ":");
  int number = 0;
  for (const std::string_view entry : list)
    WRITE_OUT("     " + INTEGER_AT_LEAST(++number, 2) + ": " + TRIM(entry));
  WRITE_OUT("      0: Exit");
}

}  // namespace

std::vector<int> GET_LIST(std::string_view prompt, int nmax) {
  std::vector<int> list;
  if (nmax < 1) {
    WRITE_OUT(
        "*****System warning: get_list called with nmax<1, please report to "
        "the Gemmara developers");
    return list;
  }
  bool one_shot = CONSOLE.INSTRING_LEN > 0;
  if (!one_shot) {
    WRITE_OUT_BLANK(1);
    WRITE_OUT(
        "  (Input negative numbers to define a range: 4,-7 means 4,5,6 and 7, or 'all' for "
        "everything)");
  }
  while (true) {
    if (CONSOLE.INSTRING_LEN == 0) {
      WRITE_OUT_BLANK(1);
      GET_INPUT(prompt, {.WORDS = {{"all"}}});
      if (CONSOLE.DROPPED) return {};
      if (CONSOLE.INSTRING_LEN == 0) return list;
    }
    WORK_LIST work;
    if (!READ_WORK_LIST(nmax, work, one_shot)) {
      WRITE_OUT("*****Type whole numbers from 1 to " + std::to_string(nmax) +
                ", with blanks between them, or all");
      one_shot = false;
    } else if (work[0] <= 0) {
      WRITE_OUT("First input cannot be zero or negative - try again:");
      one_shot = false;
    } else if (!STORE_WORK_LIST(work, nmax, list)) {
      WRITE_OUT("Input exceeds max number of data - try again:");
      one_shot = false;
    } else if (one_shot || list.size() >= static_cast<std::size_t>(nmax)) {
      return list;
    }
  }
}

int GET_LIST_INSTRING(std::span<const std::string_view> list) {
  if (list.empty() || CONSOLE.INSTRING_LEN == 0) return 0;
  std::string rest = CONSOLE.INSTRING;
  const std::string word = CUT_TEXT(CUT_WORD(rest), option_columns);
  int choice = 0;
  int number = 0;
  for (const std::string_view entry : list) {
    ++number;
    if (INDEXALL(entry, word) != 1) continue;
    if (choice > 0) {
      WARNING("Ambiguous option");
      CLEAR_INPUT();
      return -1;
    }
    choice = number;
  }
  if (choice > 0) TAKE_WORD();
  return choice;
}

std::string_view PENDING_ENTRY(std::span<const std::string_view> all,
                               std::span<const std::string_view> offered) {
  if (CONSOLE.INSTRING_LEN == 0) return "";
  std::string rest = CONSOLE.INSTRING;
  const std::string word = CUT_TEXT(CUT_WORD(rest), option_columns);
  const auto begun = [&word](std::string_view entry) { return INDEXALL(entry, word) == 1; };
  if (std::any_of(offered.begin(), offered.end(), begun)) return "";
  const auto entry = std::find_if(all.begin(), all.end(), begun);
  return entry == all.end() ? "" : *entry;
}

int GET_LIST_SELECTION(std::string_view title, std::span<const std::string_view> list,
                       bool use_pending) {
  if (list.empty()) return 0;
  if (use_pending) {
    const int choice = GET_LIST_INSTRING(list);
    if (choice > 0) {
      TAKE_WORDS_OF(list[static_cast<std::size_t>(choice - 1)]);
      return choice;
    }
  }
  WRITE_SELECTIONS(title, list);
  while (true) {
    float value = 0.0f;
    GET_INPUT_VALUES("     Enter selection by number: ", value);
    CLEAR_INPUT();
    if (!(value >= TINY_REAL)) return 0;
    const float rounded = std::round(value);
    if (rounded <= static_cast<float>(list.size())) return static_cast<int>(rounded);
    WRITE_OUT("     Invalid input!");
  }
}

}  // namespace KVA_CONSOLE
