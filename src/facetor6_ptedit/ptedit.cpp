// The dialogue of PTEDIT and the setting of PT. Pressures in GPa, temperatures in K.
#include "src/facetor6_ptedit/ptedit.h"

#include <cmath>  // for abs
#include <optional>
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
using KVA_UTILITIES::NUMBER;
using KVA_UTILITIES::TINY_REAL;

namespace {

constexpr std::size_t most_numbers = 6;  // of a line: two blocks, two values, two esds

// What one line of input asks for.
struct PT_CHANGE {
  int FIRST = 0;  // blocks
  int LAST = 0;
  std::vector<float> VALUES;  // behind the block numbers
};

// The i-th value (from 0) behind the block numbers, 0 when it was left out.
float VALUE_AT(const PT_CHANGE& change, std::size_t i) {
  return i < change.VALUES.size() ? change.VALUES[i] : 0.0f;
}

bool IS_BLOCK_NUMBER(const NUMBER& number) {
  return number.WHOLE && std::abs(number.IVAL) >= 1 && std::abs(number.IVAL) <= NPHASES;
}

// Blocks and values of a line; nothing when a block number is not in the list or no value follows.
std::optional<PT_CHANGE> CHANGE_FROM(const std::vector<NUMBER>& numbers) {
  if (!IS_BLOCK_NUMBER(numbers[0]) || numbers[0].IVAL < 1) return std::nullopt;
  PT_CHANGE change;
  change.FIRST = numbers[0].IVAL;
  change.LAST = change.FIRST;
  std::size_t next = 1;
  if (numbers.size() > 1 && numbers[1].VAL < 0.0f) {
    if (!IS_BLOCK_NUMBER(numbers[1])) return std::nullopt;
    change.LAST = -numbers[1].IVAL;
    next = 2;
  }
  for (; next < numbers.size(); ++next) change.VALUES.push_back(numbers[next].VAL);
  if (change.VALUES.empty()) return std::nullopt;
  return change;
}

// ---- setting ----

void SET_ESD(CRYSTAL_STRUCTURE_TYPE& phase, PT_ROW row, float esd) {
  if (esd > TINY_REAL) phase.PT(row, PT_ESD) = esd;
}

void SET_PRESSURE(CRYSTAL_STRUCTURE_TYPE& phase, float p, float esd) {
  phase.PT(PRESSURE, PT_VALUE) = p;
  SET_ESD(phase, PRESSURE, esd);
}

// A temperature of 0 or less leaves the old one.
void SET_TEMPERATURE(CRYSTAL_STRUCTURE_TYPE& phase, float t, float esd) {
  if (!(t > 0.0f)) return;
  phase.PT(TEMPERATURE, PT_VALUE) = t;
  SET_ESD(phase, TEMPERATURE, esd);
}

void APPLY_CHANGE(char kind, const PT_CHANGE& change) {
  for (int block = change.FIRST; block <= change.LAST; ++block) {
    CRYSTAL_STRUCTURE_TYPE& phase = PHASE(block);
    switch (kind) {
      case 'P':
        SET_PRESSURE(phase, VALUE_AT(change, 0), VALUE_AT(change, 1));
        break;
      case 'T':
        SET_TEMPERATURE(phase, VALUE_AT(change, 0), VALUE_AT(change, 1));
        break;
      default:
        SET_PRESSURE(phase, VALUE_AT(change, 0), VALUE_AT(change, 2));
        SET_TEMPERATURE(phase, VALUE_AT(change, 1), VALUE_AT(change, 3));
    }
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
    if (INSTRING_LEN == 0) return ' ';
    const char kind = KVA_UTILITIES::U_CASE(INSTRING)[0];
    if (kind == 'P' || kind == 'T' || kind == 'B') return kind;
  }
}

// Takes lines of blocks and values until a line holds no number.
void CHANGE_BLOCKS(char kind) {
  WRITE_OUT("|*****These are the new P and T:");
  while (true) {
    GET_INPUT(VALUES_PROMPT(kind));
    bool all_numbers = false;
    std::vector<NUMBER> numbers = KVA_UTILITIES::NUM_FROM_TEXT(INSTRING, all_numbers);
    if (numbers.empty()) return;
    if (numbers.size() > most_numbers) numbers.resize(most_numbers);
    const std::optional<PT_CHANGE> change = CHANGE_FROM(numbers);
    if (!all_numbers || !change) {
      WRITE_OUT(" *****Illegal input");
      continue;
    }
    if (change->LAST < change->FIRST) continue;
    APPLY_CHANGE(kind, *change);
    FACETOR_LIST::LIST_PHASE_ESD(PHASE, change->FIRST, change->LAST);
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
