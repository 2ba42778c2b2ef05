// The questions of GRAPH and FIT.
#include "src/facetor6_graph/subjects.h"

#include <array>
#include <set>

#include "console_code/console/input.h"
#include "console_code/console/output.h"
#include "console_code/console/prompts.h"
#include "console_code/console/state.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_console/measure_list.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_console/valence_table.h"
#include "src/facetor6_list/reports.h"

namespace FACETOR_GRAPH {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

// ---- the menu ----

struct SUBJECT_ROW {
  SUBJECT CODE;
  std::string_view TEXT;
  FACETOR_LIST::REPORT_CODE REPORT;  // that has the values
};
constexpr std::array<SUBJECT_ROW, 6> subjects{
    {{SUBJECT::CELLS, "cells", FACETOR_LIST::REPORT_CELLS},
     {SUBJECT::BONDS, "bond lengths", FACETOR_LIST::REPORT_BONDS},
     {SUBJECT::ANGLES, "angles between bonds", FACETOR_LIST::REPORT_ANGLES},
     {SUBJECT::VOLUMES, "polyhedral volumes", FACETOR_LIST::REPORT_BONDS},
     {SUBJECT::VALENCES, "valences of bonds", FACETOR_LIST::REPORT_VALENCES},
     {SUBJECT::MEASURES, "measures", FACETOR_LIST::REPORT_MEASURES}}};

bool IS_OF_SITES(SUBJECT subject) {
  return subject != SUBJECT::CELLS && subject != SUBJECT::MEASURES;
}

// As they were last offered; whoever shows the menu keeps a view of it.
std::vector<std::string_view> offered_texts;
std::vector<SUBJECT> offered;

SUBJECT ASK_MENU(std::string_view command) {
  std::vector<std::string_view> whole;
  for (const SUBJECT_ROW& row : subjects) whole.push_back(row.TEXT);
  const std::span<const std::string_view> menu = SUBJECT_MENU();
  FACETOR_LIST::TELL_NOT_OFFERED(whole, menu);
  const int selection = GET_LIST_SELECTION(command, menu);
  return selection > 0 ? offered[static_cast<std::size_t>(selection - 1)] : SUBJECT::NONE;
}

// ---- names of measures ----

LINE_HELP HELP_WITH_MEASURES() {
  LINE_HELP help;
  for (const MEASURE& measure : MEASURES) help.WORDS.push_back({measure.NAME});
  return help;
}

// The measures that the pending words name, up to the first word that names none.
std::vector<std::size_t> TAKE_MEASURES() {
  std::vector<std::size_t> measures;
  while (CONSOLE.INSTRING_LEN > 0) {
    std::string rest = CONSOLE.INSTRING;
    const std::size_t place = FIND_MEASURE(MEASURES, CUT_WORD(rest));
    if (place == MEASURES.size()) break;
    measures.push_back(place);
    TAKE_WORD();
  }
  return measures;
}

std::vector<std::size_t> ALL_MEASURES() {
  std::vector<std::size_t> measures;
  for (std::size_t m = 0; m < MEASURES.size(); ++m) measures.push_back(m);
  return measures;
}

// None when the command is dropped.
std::vector<std::size_t> ASK_MEASURES() {
  const bool on_the_line = CONSOLE.INSTRING_LEN > 0;
  while (true) {
    if (!on_the_line) {
      GET_INPUT("     Names of measures (blanks between, blank for all):", HELP_WITH_MEASURES());
      if (CONSOLE.DROPPED) return {};
    }
    const bool blank = CONSOLE.INSTRING_LEN == 0;
    const std::vector<std::size_t> measures = TAKE_MEASURES();
    if (on_the_line || blank) return measures.empty() ? ALL_MEASURES() : measures;
    if (CONSOLE.INSTRING_LEN == 0) return measures;
    WRITE_OUT(AS_IT_IS(MISSING_MEASURE(TAKE_WORD())));
    CLEAR_INPUT();
    REFUSE_ANSWER();
  }
}

}  // namespace

std::span<const std::string_view> SUBJECT_MENU() {
  offered_texts.clear();
  offered.clear();
  for (const SUBJECT_ROW& row : subjects) {
    if (!FACETOR_LIST::IS_OFFERED(row.REPORT)) continue;
    offered_texts.push_back(row.TEXT);
    offered.push_back(row.CODE);
  }
  return offered_texts;
}

SUBJECT_CHOICE ASK_SUBJECT(std::string_view command) {
  SUBJECT_CHOICE choice;
  const SUBJECT subject = ASK_MENU(command);
  if (subject == SUBJECT::VALENCES && !VALENCES_DONE) {
    WRITE_OUT("|*****No bond valences have been calculated: CALC valences first");
    return choice;
  }
  if (IS_OF_SITES(subject) && subject != SUBJECT::NONE) {
    const bool on_the_line = CONSOLE.INSTRING_LEN > 0;
    choice.SITES = FACETOR_LIST::ASK_SITES_ONCE();
    if (!on_the_line) CLEAR_INPUT();
    if (choice.SITES.empty()) return choice;
  }
  if (subject == SUBJECT::MEASURES) {
    choice.MEASURES = ASK_MEASURES();
    if (choice.MEASURES.empty()) return choice;
  }
  choice.OF = subject;
  return choice;
}

// ---- against what ----

namespace {

// P, unless the used blocks have one P and several T.
AGAINST USUAL_ABSCISSA() {
  std::set<float> pressures;
  std::set<float> temperatures;
  for (int block : USED_BLOCKS()) {
    pressures.insert(PHASE(block).PT(PRESSURE, PT_VALUE));
    temperatures.insert(PHASE(block).PT(TEMPERATURE, PT_VALUE));
  }
  return pressures.size() == 1 && temperatures.size() > 1 ? AGAINST::TEMPERATURE
                                                          : AGAINST::PRESSURE;
}

// The choice that a word means; NOTHING when it means none.
ABSCISSA_CHOICE CHOICE_OF(std::string_view word) {
  if (EQUAL_TEXT(word, "P")) return {AGAINST::PRESSURE};
  if (EQUAL_TEXT(word, "T")) return {AGAINST::TEMPERATURE};
  const std::size_t place = FIND_MEASURE(MEASURES, word);
  if (place == MEASURES.size()) return {};
  return {AGAINST::MEASURE, place};
}

// Takes a 2 off the pending text when it comes next.
bool TAKE_CURVE() {
  std::string rest = CONSOLE.INSTRING;
  if (CUT_WORD(rest) != "2") return false;
  TAKE_WORD();
  return true;
}

}  // namespace

ABSCISSA_CHOICE ASK_ABSCISSA(bool with_curve) {
  const AGAINST usual = USUAL_ABSCISSA();
  const std::string prompt = std::string("     Against P, T, or a measure <") +
                             (usual == AGAINST::PRESSURE ? "P" : "T") + ">?";
  // Behind the answer on the line of the command may stand the name of a file.
  bool more_may_follow = CONSOLE.INSTRING_LEN > 0 && !with_curve;
  while (true) {
    if (CONSOLE.INSTRING_LEN == 0) {
      LINE_HELP help = HELP_WITH_MEASURES();
      help.WORDS.insert(help.WORDS.end(), {{"P"}, {"T"}});
      GET_INPUT(prompt, help);
      if (CONSOLE.DROPPED) return {};
      if (CONSOLE.INSTRING_LEN == 0) return {usual};
    }
    MARK_ANSWER();
    const std::string answer = AS_IT_IS(TRIM(CONSOLE.INSTRING));
    ABSCISSA_CHOICE choice = CHOICE_OF(TAKE_WORD());
    if (with_curve) choice.PARABOLA = TAKE_CURVE();
    const bool understood = CONSOLE.INSTRING_LEN == 0 || more_may_follow;
    if (choice.WHAT != AGAINST::NOTHING && understood) return choice;
    WRITE_OUT("*****\"" + answer + "\" is not known here: answer P, T or the name of a measure" +
              (with_curve ? ", and 2 for a parabola" : ""));
    CLEAR_INPUT();
    more_may_follow = false;
    REFUSE_ANSWER();
  }
}

}  // namespace FACETOR_GRAPH
