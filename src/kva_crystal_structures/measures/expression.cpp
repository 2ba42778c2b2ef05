// Sums, products and powers of an expression, its functions, and the whole of it.
#include "src/kva_crystal_structures/measures/expression.h"

#include "console_code/kva_utilities/text.h"
#include "src/kva_crystal_structures/measures/parser.h"

namespace KVA_CRYSTAL_STRUCTURES {

namespace PARSING {

using KVA_UTILITIES::EQUAL_TEXT;
using KVA_UTILITIES::ISDIGIT;
using KVA_UTILITIES::ISLETTER;

namespace {

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
  if (EQUAL_TEXT(word, REFERENCE_WORD)) return PARSE_REFERENCE(p);
  if (EQUAL_TEXT(word, CENTROID_WORD))
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
  if (ISDIGIT(c) || c == '.') return PARSE_NUMBER(p);
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

}  // namespace PARSING

EXPRESSION_ERROR PARSE_EXPRESSION(std::string_view text, EXPRESSION& expression) {
  expression = {std::string(text), {}, {}, {}};
  using namespace PARSING;
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

bool IS_TORSION(const EXPRESSION& expression) {
  return IS_ONE_QUANTITY(expression) && expression.CALLS.front().KIND == QUANTITY::TORSION;
}

}  // namespace KVA_CRYSTAL_STRUCTURES
