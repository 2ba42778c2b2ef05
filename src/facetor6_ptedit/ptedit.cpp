// The dialogue of PTEDIT and the setting of PT. Pressures in GPa, temperatures in K.
#include "src/facetor6_ptedit/ptedit.h"

#include <algorithm>  // for min
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "console_code/console/input.h"
#include "console_code/console/output.h"
#include "console_code/console/state.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/list.h"

namespace FACETOR_PTEDIT {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

// ---- a line of input ----

// A pressure or a temperature with its esd; what was left out is 0.
struct NEW_VALUE {
  float VALUE = 0.0f;
  float STD = 0.0f;
  bool HAS_STD = false;
};

// What one line of input asks for.
struct PT_CHANGE {
  int FIRST = 0;  // blocks
  int LAST = 0;
  NEW_VALUE P;
  NEW_VALUE T;
};

// A word of the line with its number.
struct PT_WORD {
  NUMBER_STD NUMBER;
  bool IS_VALUE = false;  // it has a point, an exponent or an esd: no block number
  bool IN_BRACKETS = false;
};

bool IS_DIGIT_AT(std::string_view text, std::size_t place) {
  return place < text.size() && ISDIGIT(text[place]);
}

// A comma between two digits divides the numbers of a list without blanks, as in 2,-3,6.5. Where
// blanks divide them it is a decimal comma, as in 6 1,54.
bool HAS_DECIMAL_COMMA(std::string_view text) {
  if (text.find_first_of(" \t") == std::string_view::npos) return false;
  for (std::size_t comma = text.find(','); comma != std::string_view::npos;
       comma = text.find(',', comma + 1))
    if (comma > 0 && IS_DIGIT_AT(text, comma - 1) && IS_DIGIT_AT(text, comma + 1)) return true;
  return false;
}

// The numbers of a line; nothing when a word is none. Brackets around a number do not count, those
// behind it hold its esd.
std::optional<std::vector<PT_WORD>> WORDS_OF(std::string_view text) {
  constexpr std::string_view dividers = " ,\t/";
  std::vector<PT_WORD> words;
  while (true) {
    text.remove_prefix(std::min(text.find_first_not_of(dividers), text.size()));
    if (text.empty()) return words;
    std::string_view word = text.substr(0, text.find_first_of(dividers));
    text.remove_prefix(word.size());
    PT_WORD found;
    found.IN_BRACKETS = word.starts_with('(') && word.ends_with(')');
    if (found.IN_BRACKETS) word = word.substr(1, word.size() - 2);
    if (!GETNUM_STD(word, found.NUMBER)) return std::nullopt;
    found.IS_VALUE = word.find_first_of(".eEdD(") != std::string_view::npos;
    words.push_back(found);
  }
}

// The block that the word names; 0 when it names none.
int BLOCK_OF(const PT_WORD& word) {
  const NUMBER& number = word.NUMBER.VALUE;
  const bool names_block =
      !word.IS_VALUE && number.WHOLE && number.IVAL >= 1 && number.IVAL <= NPHASES;
  return names_block ? number.IVAL : 0;
}

bool ENDS_RANGE(const PT_WORD& word) {
  return !word.IS_VALUE && word.NUMBER.VALUE.VAL < 0.0f;
}

// Takes the numbers of the blocks off the front; false when one of them is not in the list.
bool TAKE_BLOCKS(std::span<const PT_WORD>& words, PT_CHANGE& change) {
  if (words.empty()) return false;
  change.FIRST = BLOCK_OF(words[0]);
  change.LAST = change.FIRST;
  words = words.subspan(1);
  if (!words.empty() && ENDS_RANGE(words[0])) {
    PT_WORD last = words[0];
    last.NUMBER.VALUE.IVAL = -last.NUMBER.VALUE.IVAL;
    change.LAST = BLOCK_OF(last);
    words = words.subspan(1);
  }
  return change.FIRST > 0 && change.LAST > 0;
}

// An esd that a blank parts from its value, as in 1.54 (5), could be 5 or 0.05.
bool HAS_LOOSE_ESD(std::span<const PT_WORD> words) {
  for (std::size_t i = 1; i < words.size(); ++i)
    if (words[i].IN_BRACKETS && !words[i - 1].IN_BRACKETS) return true;
  return false;
}

// Takes values in the order asked for and then esds, for those that have none. False without a
// value. What follows does not count.
bool TAKE_VALUES(std::span<const PT_WORD> words, std::span<NEW_VALUE* const> wanted) {
  if (words.empty() || HAS_LOOSE_ESD(words)) return false;
  for (NEW_VALUE* value : wanted) {
    if (words.empty()) break;
    *value = {words[0].NUMBER.VALUE.VAL, words[0].NUMBER.STD, words[0].NUMBER.HAS_STD};
    words = words.subspan(1);
  }
  for (NEW_VALUE* value : wanted) {
    if (words.empty() || value->HAS_STD) continue;
    if (words[0].NUMBER.HAS_STD) return false;  // an esd has none
    value->STD = words[0].NUMBER.VALUE.VAL;
    words = words.subspan(1);
  }
  return true;
}

// Blocks and values of a line for P, T or both; nothing when it cannot be meant so.
std::optional<PT_CHANGE> CHANGE_FROM(char kind, std::string_view line) {
  const std::string_view text = LEFT_ADJUST_VIEW(line.substr(0, line.find('#')));
  if (HAS_DECIMAL_COMMA(text)) return std::nullopt;
  const std::optional<std::vector<PT_WORD>> words = WORDS_OF(text);
  if (!words) return std::nullopt;
  PT_CHANGE change;
  std::vector<NEW_VALUE*> wanted;  // P before T
  if (kind != 'T') wanted.push_back(&change.P);
  if (kind != 'P') wanted.push_back(&change.T);
  std::span<const PT_WORD> rest(*words);
  if (!TAKE_BLOCKS(rest, change) || !TAKE_VALUES(rest, wanted)) return std::nullopt;
  return change;
}

// ---- setting ----

void SET_CONDITION(CRYSTAL_STRUCTURE_TYPE& phase, PT_ROW row, const NEW_VALUE& value) {
  phase.PT(row, PT_VALUE) = value.VALUE;
  if (value.STD > TINY_REAL) phase.PT(row, PT_ESD) = value.STD;
}

// A temperature of 0 or less leaves the old one.
void APPLY_CHANGE(char kind, const PT_CHANGE& change) {
  for (int block = change.FIRST; block <= change.LAST; ++block) {
    if (kind != 'T') SET_CONDITION(PHASE(block), PRESSURE, change.P);
    if (kind != 'P' && change.T.VALUE > 0.0f) SET_CONDITION(PHASE(block), TEMPERATURE, change.T);
  }
}

// ---- dialogue ----

std::string_view VALUES_PROMPT(char kind) {
  switch (kind) {
    case 'P':
      return "     Input the block number or range plus P and esdP (esd optional):";
    case 'T':
      return "     Input the block number or range plus T and esdT (in K, esd optional):";
    default:
      return "     Input the block number or range plus P, T and esdP esdT (esds optional):";
  }
}

// P, T or B; a blank when the user wants none.
char ASK_KIND() {
  while (true) {
    GET_INPUT("     Do you want to change P or T or both (blank to exit)?");
    if (CONSOLE.INSTRING_LEN == 0) return ' ';
    const char kind = U_CASE(CONSOLE.INSTRING)[0];
    if (kind == 'P' || kind == 'T' || kind == 'B') return kind;
  }
}

// Takes lines of blocks and values until a line holds no number.
void CHANGE_BLOCKS(char kind) {
  WRITE_OUT("|*****These are the new P and T:");
  while (true) {
    GET_INPUT(VALUES_PROMPT(kind));
    if (NUM_FROM_TEXT(CONSOLE.INSTRING).empty()) return;
    const std::optional<PT_CHANGE> change = CHANGE_FROM(kind, CONSOLE.INSTRING);
    if (!change) {
      WRITE_OUT(" *****Illegal input");
      continue;
    }
    if (change->LAST < change->FIRST) continue;
    APPLY_CHANGE(kind, *change);
    FACETOR_LIST::LIST_PHASE_ESD(PHASE, change->FIRST, change->LAST);
    KEEP_RECORDED({"", ""});
  }
}

}  // namespace

void RUN_PTEDIT() {
  WRITE_OUT("|*****This command allows you to reset the P and/or T of the datablocks");
  if (NPHASES == 0) {
    WARNING("*****There are no datasets loaded");
    return;
  }
  while (true) {
    WRITE_OUT("|*****These are the datablocks:");
    FACETOR_LIST::LIST_PHASE_ESD(PHASE, 1, NPHASES);
    const char kind = ASK_KIND();
    if (kind == ' ') return;
    CHANGE_BLOCKS(kind);
  }
}

}  // namespace FACETOR_PTEDIT
