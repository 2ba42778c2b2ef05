// Definitions of measures: checks, binding to the reference block, values.
#include "src/facetor6_console/measure_list.h"

#include <algorithm>  // for any_of
#include <bit>        // for bit_cast
#include <cstdint>    // for uint64_t

#include "console_code/console/output.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_console/match_warnings.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_console/valence_table.h"
#include "src/kva_crystal_structures/bonds.h"

namespace FACETOR_CONSOLE {

using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

int last_number = 0;                   // of a definition
std::uint64_t bound_to = 0;            // the reference block that the measures are bound to
constexpr std::uint64_t no_block = 0;  // nothing is loaded

// ---- the reference block ----

// A number out of all that the binding of measures looks at.
struct FINGERPRINT {
  std::uint64_t VALUE = 14695981039346656037ULL;

  void ADD(std::uint64_t number) { VALUE = (VALUE ^ number) * 1099511628211ULL; }
  void ADD(float number) { ADD(static_cast<std::uint64_t>(std::bit_cast<std::uint32_t>(number))); }
  void ADD(const VECTOR3& vector) {
    for (float component : vector) ADD(component);
  }
  void ADD(std::string_view text) {
    for (char c : text) ADD(static_cast<std::uint64_t>(static_cast<unsigned char>(c)));
    ADD(static_cast<std::uint64_t>(text.size()));
  }
};

std::uint64_t FINGERPRINT_OF_REFERENCE() {
  if (NPHASES == 0) return no_block;
  const CRYSTAL_STRUCTURE_TYPE& reference = REFERENCE();
  FINGERPRINT print;
  print.ADD(reference.CELL.CELL);
  print.ADD(reference.CELL.ANG);
  for (const std::string& op : reference.SPG.SYMOPSYMB) print.ADD(op);
  for (int i = 1; i <= reference.NATOMS; ++i) {
    print.ADD(reference.ATOM(i).LAB);
    print.ADD(reference.ATOM(i).X);
    print.ADD(static_cast<std::uint64_t>(reference.ATOM_USE(i)) +
              static_cast<std::uint64_t>(reference.NATOMS));
  }
  return print.VALUE;
}

// ---- checks of a definition ----

std::string AT_CHARACTER(const EXPRESSION_ERROR& error) {
  return "*****At character " + INTEGER_COLUMNS(static_cast<int>(error.AT) + 1) + ": " + error.TEXT;
}

// Whether a measure uses another, itself or through others.
bool USES(const EXPRESSION& formula, std::string_view name, std::vector<char>& seen) {
  for (const NODE& node : formula.NODES) {
    if (node.OP != OPERATION::MEASURE) continue;
    if (EQUAL_TEXT(node.NAME, name)) return true;
    const std::size_t place = FIND_MEASURE(MEASURES, node.NAME);
    if (place == MEASURES.size() || seen[place] != 0) continue;
    seen[place] = 1;
    if (USES(MEASURES[place].FORMULA, name, seen)) return true;
  }
  return false;
}

std::string CHECK_NAMES(const EXPRESSION& formula, std::string_view name) {
  for (const NODE& node : formula.NODES) {
    if (node.OP != OPERATION::MEASURE) continue;
    if (!EQUAL_TEXT(node.NAME, name) && FIND_MEASURE(MEASURES, node.NAME) == MEASURES.size())
      return AT_CHARACTER({formula.TEXT.substr(node.AT, node.NAME.size()) +
                               " is no quantity and no measure: define it first",
                           node.AT});
  }
  std::vector<char> seen(MEASURES.size(), 0);
  if (USES(formula, name, seen))
    return "*****" + std::string(name) + " would use itself: give the new measure another name";
  return "";
}

std::string CHECK_RESULTS(const EXPRESSION& formula) {
  if (NPHASES == 0) return "";
  for (const CALL& call : formula.CALLS) {
    if (!ROW_OF(call.KIND).NEEDS_BONDS) continue;
    if (SUM_NBONDS(REFERENCE()) == 0) return "*****CALC polyhedra first";
    if (call.KIND == QUANTITY::BVS && !VALENCES_DONE) return "*****CALC valences first";
  }
  return "";
}

// Binds to the reference block, if there is one.
EXPRESSION_ERROR BIND(MEASURE& measure) {
  measure.BOUND = {};
  return NPHASES == 0 ? EXPRESSION_ERROR{}
                      : BIND_ATOMS(measure.FORMULA, REFERENCE(), measure.BOUND);
}

bool IS_BOUND(const MEASURE& measure) {
  return measure.BOUND.ATOMS.size() == measure.FORMULA.ATOMS.size() && measure.PROBLEM.empty();
}

std::string SHOWN_TEXT(const MEASURE& measure) {
  return IS_BOUND(measure) ? TEXT_WITH_CODES(measure.FORMULA, measure.BOUND) : measure.FORMULA.TEXT;
}

std::string NAME_ERROR(std::string_view name) {
  if (IS_NAME(name)) return "";
  if (IS_RESERVED_WORD(name))
    return "*****" + std::string(name) + " is a quantity or a function: choose another name";
  return "*****A name has letters, digits and _, and begins with a letter: name = expression";
}

}  // namespace

// ---- definitions ----

std::string MISSING_MEASURE(std::string_view name) {
  if (FIND_MEASURE(MEASURES, name) < MEASURES.size()) return "";
  const std::string error = NAME_ERROR(name);
  if (!error.empty()) return error;
  return "*****There is no measure " + std::string(name) + ": define it with " + std::string(name) +
         " = expression";
}

std::string DEFINE_MEASURE(std::string_view name, std::string_view text) {
  FOLLOW_REFERENCE();
  std::string problem = NAME_ERROR(name);
  if (!problem.empty()) return problem;
  MEASURE measure;
  measure.NAME = name;
  EXPRESSION_ERROR error = PARSE_EXPRESSION(text, measure.FORMULA);
  if (!error.TEXT.empty()) return AT_CHARACTER(error);
  problem = CHECK_NAMES(measure.FORMULA, name);
  if (problem.empty()) problem = CHECK_RESULTS(measure.FORMULA);
  if (!problem.empty()) return problem;
  error = BIND(measure);
  if (!error.TEXT.empty()) return AT_CHARACTER(error);
  measure.NUMBER = ++last_number;
  const std::size_t place = FIND_MEASURE(MEASURES, name);
  if (place == MEASURES.size())
    MEASURES.push_back(std::move(measure));
  else
    MEASURES[place] = std::move(measure);
  return "";
}

std::string REMOVE_MEASURE(std::string_view name) {
  const std::string missing = MISSING_MEASURE(name);
  if (!missing.empty()) return missing;
  for (const MEASURE& other : MEASURES)
    for (const NODE& node : other.FORMULA.NODES)
      if (node.OP == OPERATION::MEASURE && EQUAL_TEXT(node.NAME, name))
        return "*****used by " + other.NAME;
  MEASURES.erase(MEASURES.begin() + static_cast<std::ptrdiff_t>(FIND_MEASURE(MEASURES, name)));
  return "";
}

// ---- values ----

namespace {

// Before CALC the shortest distance between two sites stands for the shortest bond.
float RADIUS_OF_MATCHING() {
  if (SUM_NBONDS(REFERENCE()) > 0) return MATCHING_RADIUS(REFERENCE());
  return MATCHING_RADIUS(SHORTEST_DISTANCE(REFERENCE()));
}

std::vector<std::vector<MEASURED_VALUE>> VALUES_IN(const std::vector<MEASURE>& measures,
                                                   const std::vector<int>& blocks) {
  const MEASURE_SETTINGS settings{REFERENCE(), RADIUS_OF_MATCHING(), BV_PAIRS, VALENCES_DONE};
  MEASURED_BLOCK reference = MEASURED_BLOCK_OF(REFERENCE(), IREFERENCE);
  const MEASURED_REFERENCE in_reference = MEASURE_REFERENCE(measures, settings, reference);
  std::vector<std::vector<MEASURED_VALUE>> values;
  for (int block : blocks) {
    std::vector<MEASURED> measured = in_reference.VALUES;
    if (block != IREFERENCE) {
      MEASURED_BLOCK other = MEASURED_BLOCK_OF(PHASE(block), block);
      measured = MEASURE_IN_BLOCK(measures, settings, in_reference, other);
    }
    values.emplace_back();
    for (const MEASURED& value : measured) values.back().push_back(AS_VALUE(value));
  }
  INIT_ERR_KVASTRUCTURES();  // atoms that are missing are told in the table
  return values;
}

// A measure with those that it needs, directly and through others, itself the last.
std::vector<MEASURE> WITH_WHAT_IT_USES(std::string_view name) {
  std::vector<char> wanted(MEASURES.size(), 0);
  std::vector<std::string> names{std::string(name)};
  while (!names.empty()) {
    const std::size_t place = FIND_MEASURE(MEASURES, names.back());
    names.pop_back();
    if (place == MEASURES.size() || wanted[place] != 0) continue;
    wanted[place] = 1;
    for (const NODE& node : MEASURES[place].FORMULA.NODES)
      if (node.OP == OPERATION::MEASURE) names.push_back(node.NAME);
  }
  std::vector<MEASURE> measures;
  const std::size_t own = FIND_MEASURE(MEASURES, name);
  for (std::size_t m = 0; m < MEASURES.size(); ++m)
    if (wanted[m] != 0 && m != own) measures.push_back(MEASURES[m]);
  measures.push_back(MEASURES[own]);
  return measures;
}

std::string VALUE_TEXT(const MEASURED_VALUE& value, const EXPRESSION& formula) {
  if (!value.FOUND) return "No value";
  if (IS_COUNT(formula)) return INTEGER_COLUMNS(static_cast<int>(value.VALUE));
  const std::string_view unit = UNIT_OF(formula);
  const std::string text = LEFT_ADJUST(SETNUM_STD(value.VALUE, value.ESD));
  return unit.empty() ? text : text + " " + std::string(unit);
}

std::string STEPS_TEXT(const std::vector<CHAIN_STEP>& steps) {
  const auto length = [](double angstroms) {
    return LEFT_ADJUST(REAL_COLUMNS(static_cast<float>(angstroms), 8, 3));
  };
  std::string text;
  for (const CHAIN_STEP& step : steps)
    text += (text.empty() ? "     " : "; ") + step.FROM + "-" + step.TO + " " +
            length(step.LENGTH) + " (" + INTEGER_COLUMNS(step.EQUAL) + " equal, next " +
            length(step.NEXT) + ")";
  return text;
}

}  // namespace

std::vector<std::vector<MEASURED_VALUE>> MEASURE_BLOCKS(const std::vector<int>& blocks) {
  FOLLOW_REFERENCE();
  return NPHASES == 0 ? std::vector<std::vector<MEASURED_VALUE>>{} : VALUES_IN(MEASURES, blocks);
}

std::vector<std::vector<MEASURED_VALUE>> MEASURE_EXPRESSIONS(
    const std::vector<std::string>& expressions, const std::vector<int>& blocks) {
  if (NPHASES == 0) return {};
  std::vector<MEASURE> measures(expressions.size());
  for (std::size_t m = 0; m < expressions.size(); ++m)
    PARSE_EXPRESSION(expressions[m], measures[m].FORMULA);
  return VALUES_IN(measures, blocks);
}

void WARN_OF_MEASURED_MATCHES(const std::vector<int>& blocks) {
  FOLLOW_REFERENCE();
  if (NPHASES == 0) return;
  for (const MEASURE& measure : MEASURES) {
    const std::string missing = CHECK_RESULTS(measure.FORMULA);
    if (missing.empty()) continue;
    WRITE_OUT(missing);
    break;
  }
  const MATCH_BASIS basis = MATCH_BASIS_OF(MEASURES, REFERENCE(), RADIUS_OF_MATCHING());
  if (basis.ATOMS.empty() && basis.TARGETS.empty()) return;
  for (int block : blocks)
    if (block != IREFERENCE) WARN_OF_FAULTS(block, MATCH_FAULTS_OF(basis, IMAGES_OF(PHASE(block))));
}

std::vector<std::string> MEASURE_LINES(std::string_view name) {
  FOLLOW_REFERENCE();
  const std::size_t place = FIND_MEASURE(MEASURES, name);
  if (place == MEASURES.size()) return {};
  const MEASURE& measure = MEASURES[place];
  if (NPHASES == 0) return {"     " + measure.NAME + " = " + measure.FORMULA.TEXT};
  std::vector<std::string> lines{"     " + measure.NAME + " = " + SHOWN_TEXT(measure)};
  if (!measure.PROBLEM.empty()) {
    lines.push_back(measure.PROBLEM);
    return lines;
  }
  const std::string missing = CHECK_RESULTS(measure.FORMULA);
  if (!missing.empty()) {
    lines.push_back(missing);
    return lines;
  }
  const MEASURED_VALUE value = VALUES_IN(WITH_WHAT_IT_USES(name), {IREFERENCE}).front().back();
  lines.push_back("     reference block: " + VALUE_TEXT(value, measure.FORMULA));
  if (!measure.BOUND.STEPS.empty()) lines.push_back(STEPS_TEXT(measure.BOUND.STEPS));
  return lines;
}

// ---- another reference block ----

void FOLLOW_REFERENCE() {
  const std::uint64_t reference = FINGERPRINT_OF_REFERENCE();
  if (reference == bound_to) return;
  bound_to = reference;
  if (reference == no_block) return;  // the codes are kept, to tell what changes with the next one
  for (MEASURE& measure : MEASURES) {
    const std::string before = SHOWN_TEXT(measure);
    const std::string problem_before = measure.PROBLEM;
    const EXPRESSION_ERROR error = BIND(measure);
    measure.PROBLEM = error.TEXT.empty() ? "" : AT_CHARACTER(error);
    if (!measure.PROBLEM.empty()) {
      if (measure.PROBLEM != problem_before)
        WRITE_OUT(AS_IT_IS("*****The measure " + measure.NAME +
                           " does not fit the reference block: " + error.TEXT));
    } else if (SHOWN_TEXT(measure) != before) {
      WRITE_OUT(
          AS_IT_IS("     With this reference block " + measure.NAME + " = " + SHOWN_TEXT(measure)));
    }
  }
}

namespace {

// A label as it stands in an expression: in quotes where it would be read as something else.
std::string LABEL_IN_EXPRESSION(const std::string& label) {
  EXPRESSION bare;
  const bool plain = PARSE_EXPRESSION("x(" + label + ")", bare).TEXT.empty() &&
                     bare.ATOMS.size() == 1 && bare.ATOMS[0].LABEL == label;
  return plain ? label : "'" + label + "'";
}

}  // namespace

LINE_HELP HELP_WITH_EXPRESSIONS() {
  LINE_HELP help = HELP_WITH_LABELS();
  help.EXPRESSION = true;
  for (OFFERED_WORD& label : help.WORDS) label.WORD = LABEL_IN_EXPRESSION(label.WORD);
  for (const std::string& word : EXPRESSION_WORDS()) help.WORDS.push_back({word});
  for (const MEASURE& measure : MEASURES) help.WORDS.push_back({measure.NAME});
  return help;
}

}  // namespace FACETOR_CONSOLE
