// The words of expressions, their grammar, and their arithmetic. Prints nothing.
#include "src/kva_crystal_structures/measures/expression.h"

#include <algorithm>  // for any_of, all_of, max, min
#include <cmath>
#include <numbers>  // for pi

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::EQUAL_TEXT;
using KVA_UTILITIES::ISLETTER;

// ---- words ----

namespace {

using enum ARGUMENTS;

// clang-format off
constexpr std::array quantities{  // ORDER QUANTITY
    QUANTITY_ROW{QUANTITY::DIST,        "dist",     POINTS,          2, "dist(A, B)",                "Å",    false},
    QUANTITY_ROW{QUANTITY::ANGLE,       "angle",    POINTS,          3, "angle(A, B, C)",            "deg",  false},
    QUANTITY_ROW{QUANTITY::TORSION,     "torsion",  POINTS,          4, "torsion(A, B, C, D)",       "deg",  false},
    QUANTITY_ROW{QUANTITY::OFFPLANE,    "offplane", POINT_AND_PLANE, 4, "offplane(A; B, C, D, ...)", "Å",    false},
    QUANTITY_ROW{QUANTITY::PLANES,      "planes",   TWO_PLANES,      6, "planes(A, B, C; D, E, F)",  "deg",  false},
    QUANTITY_ROW{QUANTITY::X,           "x",        SITE,            1, "x(A)",                      "",     false},
    QUANTITY_ROW{QUANTITY::Y,           "y",        SITE,            1, "y(A)",                      "",     false},
    QUANTITY_ROW{QUANTITY::Z,           "z",        SITE,            1, "z(A)",                      "",     false},
    QUANTITY_ROW{QUANTITY::UISO,        "uiso",     SITE,            1, "uiso(A)",                   "Å²",   false},
    QUANTITY_ROW{QUANTITY::OCC,         "occ",      SITE,            1, "occ(A)",                    "",     false},
    QUANTITY_ROW{QUANTITY::MEAN,        "mean",     SITE,            1, "mean(M)",                   "Å",    true},
    QUANTITY_ROW{QUANTITY::VOL,         "vol",      SITE,            1, "vol(M)",                    "Å³",   true},
    QUANTITY_ROW{QUANTITY::QE,          "qe",       SITE,            1, "qe(M)",                     "",     true},
    QUANTITY_ROW{QUANTITY::AV,          "av",       SITE,            1, "av(M)",                     "deg²", true},
    QUANTITY_ROW{QUANTITY::BVS,         "bvs",      SITE,            1, "bvs(M)",                    "v.u.", true},
    QUANTITY_ROW{QUANTITY::N,           "n",        SITE,            1, "n(M)",                      "",     true},
    QUANTITY_ROW{QUANTITY::BAUR,        "baur",     SITE,            1, "baur(M)",                   "",     true},
    QUANTITY_ROW{QUANTITY::ECON,        "econ",     SITE,            1, "econ(M)",                   "",     true},
    QUANTITY_ROW{QUANTITY::SHIFT,       "shift",    SITE,            1, "shift(M)",                  "Å",    true},
    QUANTITY_ROW{QUANTITY::SIGMA,       "sigma",    SITE,            1, "sigma(M)",                  "deg",  true},
    QUANTITY_ROW{QUANTITY::BOND,        "bond",     SITE_AND_BONDS,  1, "bond(M, k)",                "Å",    true},
    QUANTITY_ROW{QUANTITY::BOND_ANGLE,  "angle",    SITE_AND_BONDS,  2, "angle(M, k, l)",            "deg",  true},
    QUANTITY_ROW{QUANTITY::EDGE,        "edge",     SITE_AND_BONDS,  2, "edge(M, k, l)",             "Å",    true},
    QUANTITY_ROW{QUANTITY::CELL_A,      "a",        NONE,            0, "a",                         "Å",    false},
    QUANTITY_ROW{QUANTITY::CELL_B,      "b",        NONE,            0, "b",                         "Å",    false},
    QUANTITY_ROW{QUANTITY::CELL_C,      "c",        NONE,            0, "c",                         "Å",    false},
    QUANTITY_ROW{QUANTITY::CELL_ALPHA,  "alpha",    NONE,            0, "alpha",                     "deg",  false},
    QUANTITY_ROW{QUANTITY::CELL_BETA,   "beta",     NONE,            0, "beta",                      "deg",  false},
    QUANTITY_ROW{QUANTITY::CELL_GAMMA,  "gamma",    NONE,            0, "gamma",                     "deg",  false},
    QUANTITY_ROW{QUANTITY::CELL_V,      "V",        NONE,            0, "V",                         "Å³",   false},
    QUANTITY_ROW{QUANTITY::CONDITION_T, "T",        NONE,            0, "T",                         "K",    false},
    QUANTITY_ROW{QUANTITY::CONDITION_P, "P",        NONE,            0, "P",                         "GPa",  false},
};
// clang-format on

constexpr bool ROWS_STAND_IN_ORDER() {
  int position = 0;
  for (const QUANTITY_ROW& row : quantities)
    if (static_cast<int>(row.KIND) != position++) return false;
  return true;
}
static_assert(ROWS_STAND_IN_ORDER(), "a quantity's number is its place in the table");

struct FUNCTION_ROW {
  OPERATION OP;
  std::string_view WORD;
  bool OF_SEVERAL = false;  // two or more arguments
};
constexpr std::array functions{
    FUNCTION_ROW{OPERATION::SQRT, "sqrt"},     FUNCTION_ROW{OPERATION::ABS, "abs"},
    FUNCTION_ROW{OPERATION::EXP, "exp"},       FUNCTION_ROW{OPERATION::LOG, "log"},
    FUNCTION_ROW{OPERATION::MIN, "min", true}, FUNCTION_ROW{OPERATION::MAX, "max", true},
    FUNCTION_ROW{OPERATION::SIN, "sin"},       FUNCTION_ROW{OPERATION::COS, "cos"},
    FUNCTION_ROW{OPERATION::TAN, "tan"},       FUNCTION_ROW{OPERATION::ASIN, "asin"},
    FUNCTION_ROW{OPERATION::ACOS, "acos"},     FUNCTION_ROW{OPERATION::ATAN, "atan"},
};

constexpr std::string_view centroid_word = "centroid";
constexpr std::string_view reference_word = "ref";

bool IS_DIGIT(char c) {
  return c >= '0' && c <= '9';
}

bool IS_NAME_CHARACTER(char c) {
  return ISLETTER(c) || IS_DIGIT(c) || c == '_';
}

const FUNCTION_ROW* FUNCTION_OF(std::string_view word) {
  for (const FUNCTION_ROW& row : functions)
    if (EQUAL_TEXT(row.WORD, word)) return &row;
  return nullptr;
}

// The first quantity with the word; "angle" has two.
const QUANTITY_ROW* QUANTITY_OF(std::string_view word) {
  for (const QUANTITY_ROW& row : quantities)
    if (EQUAL_TEXT(row.WORD, word)) return &row;
  return nullptr;
}

}  // namespace

const QUANTITY_ROW& ROW_OF(QUANTITY kind) {
  return quantities[static_cast<std::size_t>(kind)];
}

std::vector<std::string> EXPRESSION_WORDS() {
  std::vector<std::string> words;
  for (const QUANTITY_ROW& row : quantities)
    if (row.KIND != QUANTITY::BOND_ANGLE) words.emplace_back(row.WORD);
  for (const FUNCTION_ROW& row : functions) words.emplace_back(row.WORD);
  words.emplace_back(centroid_word);
  words.emplace_back(reference_word);
  return words;
}

bool IS_RESERVED_WORD(std::string_view text) {
  return QUANTITY_OF(text) != nullptr || FUNCTION_OF(text) != nullptr ||
         EQUAL_TEXT(text, centroid_word) || EQUAL_TEXT(text, reference_word);
}

bool IS_NAME(std::string_view text) {
  return !text.empty() && ISLETTER(text.front()) &&
         std::all_of(text.begin(), text.end(), IS_NAME_CHARACTER) && !IS_RESERVED_WORD(text);
}

// ---- grammar ----

namespace {

constexpr int deepest_nesting = 100;  // brackets, signs and powers within each other
constexpr int largest_number = 9999;  // of an operator, a bond, or a k

// The text that is read, how far, and what came of it. Once an error is set nothing more is read.
struct PARSER {
  std::string_view TEXT;
  EXPRESSION& RESULT;
  EXPRESSION_ERROR ERROR{};
  std::size_t AT = 0;
  int DEPTH = 0;
  bool IN_REFERENCE = false;
};

bool FAILED(const PARSER& p) {
  return !p.ERROR.TEXT.empty();
}

// Sets the first error, and gives no node.
int FAIL(PARSER& p, std::size_t at, std::string text) {
  if (!FAILED(p)) p.ERROR = {std::move(text), at};
  p.AT = p.TEXT.size();
  return -1;
}

std::string QUOTED(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

void SKIP_BLANKS(PARSER& p) {
  while (p.AT < p.TEXT.size() && (p.TEXT[p.AT] == ' ' || p.TEXT[p.AT] == '\t')) ++p.AT;
}

// The next character that is no blank; 0 at the end.
char PEEK(PARSER& p) {
  SKIP_BLANKS(p);
  return p.AT < p.TEXT.size() ? p.TEXT[p.AT] : '\0';
}

bool TAKE(PARSER& p, char c) {
  if (PEEK(p) != c) return false;
  ++p.AT;
  return true;
}

// One whole character of the text, for messages.
std::string_view CHARACTER_AT(const PARSER& p, std::size_t at) {
  std::size_t end = at + 1;
  while (end < p.TEXT.size() && (static_cast<unsigned char>(p.TEXT[end]) & 0xC0U) == 0x80U) ++end;
  return p.TEXT.substr(at, end - at);
}

// Wants the character; what: what it ends or divides.
bool EXPECT(PARSER& p, char c, std::string_view what) {
  if (TAKE(p, c)) return true;
  const bool at_end = p.AT >= p.TEXT.size();
  FAIL(p, p.AT,
       (at_end ? std::string("the end comes too early")
               : "unexpected " + QUOTED(CHARACTER_AT(p, p.AT))) +
           ": " + QUOTED(std::string(1, c)) + " is wanted " + std::string(what));
  return false;
}

template <class FITS>
std::string_view TAKE_WHILE(PARSER& p, FITS fits) {
  const std::size_t start = p.AT;
  while (p.AT < p.TEXT.size() && fits(p.TEXT[p.AT])) ++p.AT;
  return p.TEXT.substr(start, p.AT - start);
}

int WHOLE_NUMBER(std::string_view digits) {
  int value = 0;
  for (char c : digits) value = std::min(largest_number + 1, 10 * value + (c - '0'));
  return value;
}

int ADD_NODE(PARSER& p, NODE node) {
  p.RESULT.NODES.push_back(std::move(node));
  return static_cast<int>(p.RESULT.NODES.size()) - 1;
}

int ADD_OPERATION(PARSER& p, OPERATION operation, int left, int right, std::size_t at) {
  if (left < 0) return -1;
  NODE node;
  node.OP = operation;
  node.LEFT = left;
  node.RIGHT = right;
  node.AT = at;
  return ADD_NODE(p, node);
}

// ---- numbers ----

// Digits with a point, an exponent and an esd in brackets: 5.0347(4), 1e-3, .5
int PARSE_NUMBER(PARSER& p) {
  const std::size_t start = p.AT;
  TAKE_WHILE(p, IS_DIGIT);
  if (p.AT < p.TEXT.size() && p.TEXT[p.AT] == '.') ++p.AT;
  TAKE_WHILE(p, IS_DIGIT);
  if (p.AT < p.TEXT.size() && (p.TEXT[p.AT] == 'e' || p.TEXT[p.AT] == 'E')) {
    std::size_t digits = p.AT + 1;
    if (digits < p.TEXT.size() && (p.TEXT[digits] == '+' || p.TEXT[digits] == '-')) ++digits;
    if (digits < p.TEXT.size() && IS_DIGIT(p.TEXT[digits])) {
      p.AT = digits;
      TAKE_WHILE(p, IS_DIGIT);
    }
  }
  if (p.AT < p.TEXT.size() && p.TEXT[p.AT] == '(') {
    ++p.AT;
    TAKE_WHILE(p, IS_DIGIT);
    if (p.AT >= p.TEXT.size() || p.TEXT[p.AT] != ')')
      return FAIL(p, start, "an esd is written as in 5.0347(4)");
    ++p.AT;
  }
  NODE node;
  node.OP = OPERATION::NUMBER;
  node.AT = start;
  const std::string_view word = p.TEXT.substr(start, p.AT - start);
  if (!KVA_UTILITIES::GETNUM_STD_WIDE(word, node.VALUE, node.ESD))
    return FAIL(p, start, QUOTED(word) + " is no number");
  return ADD_NODE(p, node);
}

// ---- atoms ----

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
  if (std::all_of(atom.LABEL.begin(), atom.LABEL.end(), IS_DIGIT)) {
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
  const int number = WHOLE_NUMBER(TAKE_WHILE(p, IS_DIGIT));
  if (number < 1 || number > largest_number) return FAIL_CODE(p, start);
  if (p.AT < p.TEXT.size() && p.TEXT[p.AT] == '_') {
    ++p.AT;
    const std::string_view cells = TAKE_WHILE(p, IS_DIGIT);
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

bool PARSE_ATOM(PARSER& p, CALL& call) {
  ATOM_TEXT atom;
  atom.AT = p.AT;
  const bool read = PEEK(p) == '\'' ? (atom.AT = p.AT, PARSE_QUOTED_LABEL(p, atom))
                                    : (atom.AT = p.AT, PARSE_BARE_LABEL(p, atom));
  if (!read) return false;
  atom.LABEL_END = p.AT;
  atom.END = p.AT;
  if (PEEK(p) == '[') {
    if (!PARSE_CODE(p, atom)) return false;
    atom.END = p.AT;
  }
  call.POINTS.push_back({static_cast<int>(p.RESULT.ATOMS.size()), 0});
  p.RESULT.ATOMS.push_back(std::move(atom));
  return true;
}

// ---- calls ----

bool GO_DEEPER(PARSER& p) {
  if (++p.DEPTH <= deepest_nesting) return true;
  FAIL(p, p.AT, "too many brackets, signs or powers within each other: define parts of it first");
  return false;
}

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
  p.AT += centroid_word.size();
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
  return COMES_WITH_BRACKET(p, centroid_word) ? PARSE_CENTROID(p, call) : PARSE_ATOM(p, call);
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

bool FAIL_FORM(PARSER& p, const CALL& call) {
  const QUANTITY_ROW& row = ROW_OF(call.KIND);
  FAIL(p, call.AT,
       std::string(row.WORD) + " is written as " + std::string(row.FORM) +
           (call.KIND == QUANTITY::ANGLE ? " or " + std::string(ROW_OF(QUANTITY::BOND_ANGLE).FORM)
                                         : ""));
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
    const int number = WHOLE_NUMBER(TAKE_WHILE(p, IS_DIGIT));
    if (number < 1 || number > largest_number) {
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
  if (!IS_DIGIT(PEEK(ahead))) return false;
  TAKE_WHILE(ahead, IS_DIGIT);
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

int PARSE_QUANTITY(PARSER& p, const QUANTITY_ROW& row, std::size_t at) {
  CALL call;
  call.KIND = row.KIND;
  call.IN_REFERENCE = p.IN_REFERENCE;
  call.AT = at;
  const bool bracket = PEEK(p) == '(';
  if (bracket != (row.TAKES != NONE)) return FAIL_FORM(p, call) ? 0 : -1;
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

// ---- sums, products, powers ----

int PARSE_SUM(PARSER& p);

int PARSE_FUNCTION(PARSER& p, const FUNCTION_ROW& row, std::size_t at) {
  const std::string word(row.WORD);
  if (!EXPECT(p, '(', "behind " + word)) return -1;
  int node = PARSE_SUM(p);
  int arguments = 1;
  while (!FAILED(p) && TAKE(p, ',')) {
    const int right = PARSE_SUM(p);
    if (FAILED(p)) return -1;
    ++arguments;
    if (row.OF_SEVERAL) node = ADD_OPERATION(p, row.OP, node, right, at);
  }
  if (FAILED(p) || !EXPECT(p, ')', "behind " + word + "(...")) return -1;
  if (row.OF_SEVERAL)
    return arguments > 1
               ? node
               : FAIL(p, at, word + " takes two values or more, as in " + word + "(x, y)");
  if (arguments > 1) return FAIL(p, at, word + " takes one value");
  return ADD_OPERATION(p, row.OP, node, -1, at);
}

int PARSE_REFERENCE(PARSER& p) {
  if (!EXPECT(p, '(', "behind ref")) return -1;
  const bool outer = p.IN_REFERENCE;
  p.IN_REFERENCE = true;
  const int node = PARSE_SUM(p);
  p.IN_REFERENCE = outer;
  if (FAILED(p) || !EXPECT(p, ')', "behind ref(...")) return -1;
  return node;
}

int PARSE_WORD(PARSER& p) {
  const std::size_t at = p.AT;
  const std::string_view word = TAKE_WHILE(p, IS_NAME_CHARACTER);
  if (EQUAL_TEXT(word, reference_word)) return PARSE_REFERENCE(p);
  if (EQUAL_TEXT(word, centroid_word))
    return FAIL(p, at, "centroid stands where an atom may, as in dist(A, centroid(B, C))");
  if (const FUNCTION_ROW* row = FUNCTION_OF(word)) return PARSE_FUNCTION(p, *row, at);
  if (const QUANTITY_ROW* row = QUANTITY_OF(word)) return PARSE_QUANTITY(p, *row, at);
  if (PEEK(p) == '(')
    return FAIL(p, at, std::string(word) + " is no function: see MEASURE in the manual");
  NODE node;
  node.OP = OPERATION::MEASURE;
  node.NAME = KVA_UTILITIES::L_CASE(word);
  node.IN_REFERENCE = p.IN_REFERENCE;
  node.AT = at;
  return ADD_NODE(p, node);
}

int PARSE_PRIMARY(PARSER& p) {
  const char c = PEEK(p);
  if (IS_DIGIT(c) || c == '.') return PARSE_NUMBER(p);
  if (ISLETTER(c)) return PARSE_WORD(p);
  if (c != '(')
    return FAIL(
        p, p.AT,
        (c == '\0' ? "the end comes too early" : "unexpected " + QUOTED(CHARACTER_AT(p, p.AT))) +
            ": a number, a quantity or a measure is wanted");
  ++p.AT;
  const int node = PARSE_SUM(p);
  return FAILED(p) || !EXPECT(p, ')', "to close a bracket") ? -1 : node;
}

int PARSE_FACTOR(PARSER& p);

// "^" binds to the right, and before a sign: -2^2 is -4, 2^3^2 is 2^9.
int PARSE_POWER(PARSER& p) {
  const int left = PARSE_PRIMARY(p);
  const std::size_t at = p.AT;
  if (FAILED(p) || !TAKE(p, '^')) return left;
  const int right = PARSE_FACTOR(p);
  return FAILED(p) ? -1 : ADD_OPERATION(p, OPERATION::POWER, left, right, at);
}

int PARSE_FACTOR(PARSER& p) {
  if (!GO_DEEPER(p)) return -1;
  const std::size_t at = p.AT;
  int node = -1;
  if (TAKE(p, '-'))
    node = ADD_OPERATION(p, OPERATION::NEGATE, PARSE_FACTOR(p), -1, at);
  else
    node = TAKE(p, '+') ? PARSE_FACTOR(p) : PARSE_POWER(p);
  --p.DEPTH;
  return FAILED(p) ? -1 : node;
}

int PARSE_PRODUCT(PARSER& p) {
  int node = PARSE_FACTOR(p);
  while (!FAILED(p)) {
    const char c = PEEK(p);
    if (c != '*' && c != '/') break;
    const std::size_t at = p.AT++;
    const int right = PARSE_FACTOR(p);
    if (FAILED(p)) break;
    node = ADD_OPERATION(p, c == '*' ? OPERATION::MULTIPLY : OPERATION::DIVIDE, node, right, at);
  }
  return FAILED(p) ? -1 : node;
}

int PARSE_SUM(PARSER& p) {
  if (!GO_DEEPER(p)) return -1;
  int node = PARSE_PRODUCT(p);
  while (!FAILED(p)) {
    const char c = PEEK(p);
    if (c != '+' && c != '-') break;
    const std::size_t at = p.AT++;
    const int right = PARSE_PRODUCT(p);
    if (FAILED(p)) break;
    node = ADD_OPERATION(p, c == '+' ? OPERATION::ADD : OPERATION::SUBTRACT, node, right, at);
  }
  --p.DEPTH;
  return FAILED(p) ? -1 : node;
}

}  // namespace

EXPRESSION_ERROR PARSE_EXPRESSION(std::string_view text, EXPRESSION& expression) {
  expression = {std::string(text), {}, {}, {}};
  PARSER parser{expression.TEXT, expression};
  PARSE_SUM(parser);
  if (!FAILED(parser) && PEEK(parser) != '\0') {
    const std::string_view rest = CHARACTER_AT(parser, parser.AT);
    FAIL(parser, parser.AT,
         "unexpected " + QUOTED(rest) +
             (rest == ")" ? ": a bracket is closed that was not opened"
                          : ": an operator or the end is wanted"));
  }
  return parser.ERROR;
}

bool IS_ONE_QUANTITY(const EXPRESSION& expression) {
  return expression.NODES.size() == 1 && expression.NODES.front().OP == OPERATION::QUANTITY;
}

std::string_view UNIT_OF(const EXPRESSION& expression) {
  return IS_ONE_QUANTITY(expression) ? ROW_OF(expression.CALLS.front().KIND).UNIT : "";
}

bool IS_COUNT(const EXPRESSION& expression) {
  return IS_ONE_QUANTITY(expression) && expression.CALLS.front().KIND == QUANTITY::N;
}

// ---- arithmetic ----

namespace {

constexpr double radians_per_degree = std::numbers::pi / 180.0;

OPERATED POWER_OF(double left, double right) {
  const double value = std::pow(left, right);
  // A power of a negative number has no derivative by its exponent, which must be whole.
  return {value, right == 0.0 ? 0.0 : right * std::pow(left, right - 1.0),
          left > 0.0 ? value * std::log(left) : 0.0};
}

double SIGN_OF(double x) {
  return static_cast<double>(x > 0.0) - static_cast<double>(x < 0.0);
}

// Arc sine of x in degrees per unit of x.
double ARC_SLOPE(double x) {
  return 1.0 / (std::sqrt(1.0 - x * x) * radians_per_degree);
}

}  // namespace

OPERATED OPERATE(OPERATION operation, double left, double right) {
  // Also where the rules of the machine would let it pass, as in the power 0.
  if (std::isnan(left) || std::isnan(right)) return {left + right, 0.0, 0.0};
  const double angle = left * radians_per_degree;
  switch (operation) {
    case OPERATION::ADD:
      return {left + right, 1.0, 1.0};
    case OPERATION::SUBTRACT:
      return {left - right, 1.0, -1.0};
    case OPERATION::MULTIPLY:
      return {left * right, right, left};
    case OPERATION::DIVIDE:
      return {left / right, 1.0 / right, -left / (right * right)};
    case OPERATION::POWER:
      return POWER_OF(left, right);
    case OPERATION::NEGATE:
      return {-left, -1.0, 0.0};
    case OPERATION::SQRT:
      return {std::sqrt(left), 0.5 / std::sqrt(left), 0.0};
    case OPERATION::ABS:
      return {std::abs(left), SIGN_OF(left), 0.0};
    case OPERATION::EXP:
      return {std::exp(left), std::exp(left), 0.0};
    case OPERATION::LOG:
      return {std::log(left), 1.0 / left, 0.0};
    case OPERATION::MIN:
      return left <= right ? OPERATED{left, 1.0, 0.0} : OPERATED{right, 0.0, 1.0};
    case OPERATION::MAX:
      return left >= right ? OPERATED{left, 1.0, 0.0} : OPERATED{right, 0.0, 1.0};
    case OPERATION::SIN:
      return {std::sin(angle), std::cos(angle) * radians_per_degree, 0.0};
    case OPERATION::COS:
      return {std::cos(angle), -std::sin(angle) * radians_per_degree, 0.0};
    case OPERATION::TAN: {
      const double tangent = std::tan(angle);
      return {tangent, (1.0 + tangent * tangent) * radians_per_degree, 0.0};
    }
    case OPERATION::ASIN:
      return {std::asin(left) / radians_per_degree, ARC_SLOPE(left), 0.0};
    case OPERATION::ACOS:
      return {std::acos(left) / radians_per_degree, -ARC_SLOPE(left), 0.0};
    case OPERATION::ATAN:
      return {std::atan(left) / radians_per_degree,
              1.0 / ((1.0 + left * left) * radians_per_degree), 0.0};
    default:
      return {};
  }
}

}  // namespace KVA_CRYSTAL_STRUCTURES
