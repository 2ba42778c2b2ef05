// Quantities with their atoms, centroids and bond numbers.
#include <algorithm>  // for all_of

#include "console_code/kva_utilities/text.h"
#include "src/kva_crystal_structures/measures/parser.h"

namespace KVA_CRYSTAL_STRUCTURES::PARSING {

using KVA_UTILITIES::EQUAL_TEXT;
using KVA_UTILITIES::ISDIGIT;
using enum ARGUMENTS;

// ---- atoms ----

namespace {

bool IS_PLAIN_LABEL_CHARACTER(char c) {
  return IS_NAME_CHARACTER(c) || c == '*' || c == '\'';
}

// A closing quote stands before what may follow an atom.
bool CLOSES_QUOTE(const PARSER& p, std::size_t at) {
  std::size_t next = at + 1;
  while (next < p.TEXT.size() && p.TEXT[next] == ' ') ++next;
  return next >= p.TEXT.size() || p.TEXT[next] == ',' || p.TEXT[next] == ';' ||
         p.TEXT[next] == ')' || p.TEXT[next] == '[';
}

bool PARSE_QUOTED_LABEL(PARSER& p, ATOM_TEXT& atom) {
  const std::size_t start = ++p.AT;
  for (; p.AT < p.TEXT.size(); ++p.AT)
    if (p.TEXT[p.AT] == '\'' && CLOSES_QUOTE(p, p.AT)) {
      atom.LABEL = KVA_UTILITIES::LEFT_ADJUST(p.TEXT.substr(start, p.AT - start));
      ++p.AT;
      return true;
    }
  FAIL(p, atom.AT, "a quote is not closed: ' is wanted behind the label");
  return false;
}

// Letters, digits, "_", "*", "'" and pairs of round brackets directly behind them: O3, C1', O(1)
bool PARSE_BARE_LABEL(PARSER& p, ATOM_TEXT& atom) {
  TAKE_WHILE(p, IS_PLAIN_LABEL_CHARACTER);
  while (p.AT > atom.AT && p.AT < p.TEXT.size() && p.TEXT[p.AT] == '(') {
    ++p.AT;
    TAKE_WHILE(p, IS_PLAIN_LABEL_CHARACTER);
    if (p.AT >= p.TEXT.size() || p.TEXT[p.AT] != ')') {
      FAIL(p, p.AT, "\")\" is wanted in the site label: put other labels in quotes, as in 'O 1'");
      return false;
    }
    ++p.AT;
    TAKE_WHILE(p, IS_PLAIN_LABEL_CHARACTER);
  }
  atom.LABEL = p.TEXT.substr(atom.AT, p.AT - atom.AT);
  if (atom.LABEL.empty()) {
    FAIL(p, p.AT,
         "a site label is wanted: put labels with other characters in quotes, as in 'O 1'");
    return false;
  }
  if (std::all_of(atom.LABEL.begin(), atom.LABEL.end(), ISDIGIT)) {
    FAIL(p, atom.AT, "a label of digits alone stands in quotes: '" + atom.LABEL + "'");
    return false;
  }
  return true;
}

bool FAIL_CODE(PARSER& p, std::size_t at) {
  FAIL(p, at, "square brackets hold a symmetry code as in [4_655], or a number as in [2]");
  return false;
}

// [4_655] or [2]
bool PARSE_CODE(PARSER& p, ATOM_TEXT& atom) {
  if (!TAKE(p, '[')) return true;
  const std::size_t start = p.AT;
  SKIP_BLANKS(p);
  const int number = WHOLE_NUMBER(TAKE_WHILE(p, ISDIGIT));
  if (number < 1 || number > LARGEST_NUMBER) return FAIL_CODE(p, start);
  if (p.AT < p.TEXT.size() && p.TEXT[p.AT] == '_') {
    ++p.AT;
    const std::string_view cells = TAKE_WHILE(p, ISDIGIT);
    if (cells.size() != 3) return FAIL_CODE(p, start);
    atom.CODED = true;
    atom.OPERATOR = number;
    for (std::size_t k = 0; k < 3; ++k) atom.CELLS[k] = cells[k] - '5';
  } else {
    atom.NEAREST = number;
  }
  if (!TAKE(p, ']')) return FAIL_CODE(p, start);
  return true;
}

// Whether the end comes next, or what may follow an atom.
bool ATOM_MAY_END(PARSER& p) {
  const char next = PEEK(p);
  return next == '\0' || next == ',' || next == ';' || next == ')';
}

bool PARSE_ATOM(PARSER& p, CALL& call) {
  const bool quoted = PEEK(p) == '\'';
  ATOM_TEXT atom;
  atom.AT = p.AT;
  if (!(quoted ? PARSE_QUOTED_LABEL(p, atom) : PARSE_BARE_LABEL(p, atom))) return false;
  atom.LABEL_END = p.AT;
  atom.END = p.AT;
  if (PEEK(p) == '[') {
    if (!PARSE_CODE(p, atom)) return false;
    atom.END = p.AT;
  }
  if (!ATOM_MAY_END(p)) {
    FAIL(p, p.AT,
         "unexpected " + QUOTED(CHARACTER_AT(p, p.AT)) +
             ": commas stand between sites, and labels with other characters in quotes, as in 'O "
             "1'");
    return false;
  }
  call.POINTS.push_back({static_cast<int>(p.RESULT.ATOMS.size()), 0});
  p.RESULT.ATOMS.push_back(std::move(atom));
  return true;
}

// ---- calls ----

// Whether the word comes next, and an opening bracket behind it.
bool COMES_WITH_BRACKET(PARSER& p, std::string_view word) {
  SKIP_BLANKS(p);
  if (!EQUAL_TEXT(p.TEXT.substr(p.AT, word.size()), word)) return false;
  PARSER ahead{p.TEXT, p.RESULT, {}, p.AT + word.size()};
  return PEEK(ahead) == '(';
}

bool PARSE_POINT(PARSER& p, CALL& call);

bool PARSE_CENTROID(PARSER& p, CALL& call) {
  const std::size_t start = p.AT;
  p.AT += CENTROID_WORD.size();
  if (!GO_DEEPER(p) || !EXPECT(p, '(', "behind centroid")) return false;
  int members = 0;
  do {
    if (!PARSE_POINT(p, call)) return false;
    ++members;
  } while (TAKE(p, ','));
  if (!EXPECT(p, ')', "behind the atoms of centroid")) return false;
  --p.DEPTH;
  if (members < 2) {
    FAIL(p, start, "centroid takes two atoms or more, as in centroid(A, B)");
    return false;
  }
  call.POINTS.push_back({-1, members});
  return true;
}

bool PARSE_POINT(PARSER& p, CALL& call) {
  return COMES_WITH_BRACKET(p, CENTROID_WORD) ? PARSE_CENTROID(p, call) : PARSE_ATOM(p, call);
}

// Points divided by commas; how many.
int PARSE_POINTS(PARSER& p, CALL& call) {
  int points = 0;
  do {
    if (!PARSE_POINT(p, call)) return 0;
    ++points;
  } while (TAKE(p, ','));
  return points;
}

// An error that shows how the quantity is written; always false.
bool FAIL_FORM(PARSER& p, const CALL& call) {
  const QUANTITY_ROW& row = ROW_OF(call.KIND);
  std::string text = std::string(row.WORD) + " is written as " + std::string(row.FORM);
  if (call.KIND == QUANTITY::ANGLE) text += " or " + std::string(ROW_OF(QUANTITY::BOND_ANGLE).FORM);
  if (row.TAKES == NONE) text = std::string(row.WORD) + " stands without brackets";
  FAIL(p, call.AT, std::move(text));
  return false;
}

bool PARSE_GROUPS(PARSER& p, CALL& call) {
  constexpr int smallest_plane = 3;
  call.FIRST_GROUP = PARSE_POINTS(p, call);
  if (call.FIRST_GROUP == 0) return false;
  if (!TAKE(p, ';')) return FAIL_FORM(p, call);
  const int second = PARSE_POINTS(p, call);
  if (second == 0) return false;
  const bool one_plane = ROW_OF(call.KIND).TAKES == POINT_AND_PLANE;
  if (one_plane ? call.FIRST_GROUP != 1 : call.FIRST_GROUP < smallest_plane)
    return FAIL_FORM(p, call);
  if (second >= smallest_plane) return true;
  FAIL(p, call.AT, "a plane takes three atoms or more: " + std::string(ROW_OF(call.KIND).FORM));
  return false;
}

// Bond numbers, each behind a comma.
bool PARSE_BOND_NUMBERS(PARSER& p, CALL& call) {
  const int wanted = ROW_OF(call.KIND).COUNT;
  for (int k = 0; k < wanted; ++k) {
    if (!TAKE(p, ',')) return FAIL_FORM(p, call);
    SKIP_BLANKS(p);
    const std::size_t at = p.AT;
    const int number = WHOLE_NUMBER(TAKE_WHILE(p, ISDIGIT));
    if (number < 1 || number > LARGEST_NUMBER) {
      FAIL(p, at, "a bond number is wanted, from 1, as in " + std::string(ROW_OF(call.KIND).FORM));
      return false;
    }
    call.BONDS[static_cast<std::size_t>(k)] = number;
  }
  if (wanted < 2 || call.BONDS[0] != call.BONDS[1]) return true;
  FAIL(p, call.AT, "two different bonds are wanted");
  return false;
}

// Whether a comma and a digit come next, as in angle(M, 1, 2); labels of digits stand in quotes.
bool BOND_NUMBER_COMES(PARSER& p) {
  if (PEEK(p) != ',') return false;
  PARSER ahead{p.TEXT, p.RESULT, {}, p.AT + 1};
  if (!ISDIGIT(PEEK(ahead))) return false;
  TAKE_WHILE(ahead, ISDIGIT);
  const char next = PEEK(ahead);
  return next == ',' || next == ')';
}

bool PARSE_ARGUMENTS(PARSER& p, CALL& call) {
  if (call.KIND == QUANTITY::ANGLE) {
    if (!PARSE_POINT(p, call)) return false;
    if (call.POINTS.size() == 1 && BOND_NUMBER_COMES(p)) {
      call.KIND = QUANTITY::BOND_ANGLE;
      return PARSE_BOND_NUMBERS(p, call);
    }
    const int points = TAKE(p, ',') ? 1 + PARSE_POINTS(p, call) : 1;
    return FAILED(p) ? false : points == ROW_OF(call.KIND).COUNT || FAIL_FORM(p, call);
  }
  switch (ROW_OF(call.KIND).TAKES) {
    case POINTS: {
      const int points = PARSE_POINTS(p, call);
      return points > 0 && (points == ROW_OF(call.KIND).COUNT || FAIL_FORM(p, call));
    }
    case SITE:
      return PARSE_ATOM(p, call) && (PEEK(p) != ',' || FAIL_FORM(p, call));
    case SITE_AND_BONDS:
      return PARSE_ATOM(p, call) && PARSE_BOND_NUMBERS(p, call);
    default:
      return PARSE_GROUPS(p, call);
  }
}

}  // namespace

int PARSE_QUANTITY(PARSER& p, const QUANTITY_ROW& row, std::size_t at) {
  CALL call;
  call.KIND = row.KIND;
  call.IN_REFERENCE = p.IN_REFERENCE;
  call.AT = at;
  const bool bracket = PEEK(p) == '(';
  if (bracket != (row.TAKES != NONE)) {
    FAIL_FORM(p, call);
    return -1;
  }
  if (bracket) {
    ++p.AT;
    if (!PARSE_ARGUMENTS(p, call)) return -1;
    if (!EXPECT(p, ')', "behind " + std::string(ROW_OF(call.KIND).WORD) + "(...")) return -1;
  }
  NODE node;
  node.OP = OPERATION::QUANTITY;
  node.INDEX = static_cast<int>(p.RESULT.CALLS.size());
  node.AT = at;
  p.RESULT.CALLS.push_back(std::move(call));
  return ADD_NODE(p, node);
}

}  // namespace KVA_CRYSTAL_STRUCTURES::PARSING
