// Errors, characters, nodes and numbers of an expression.
#include "src/kva_crystal_structures/measures/parser.h"

#include <algorithm>  // for min

#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CRYSTAL_STRUCTURES::PARSING {

using KVA_UTILITIES::ISDIGIT;

bool FAILED(const PARSER& p) {
  return !p.ERROR.TEXT.empty();
}

int FAIL(PARSER& p, std::size_t at, std::string text) {
  if (!FAILED(p)) p.ERROR = {std::move(text), at};
  p.AT = p.TEXT.size();
  return -1;
}

bool GO_DEEPER(PARSER& p) {
  constexpr int deepest_nesting = 100;
  if (++p.DEPTH <= deepest_nesting) return true;
  FAIL(p, p.AT, "too many brackets, signs or powers within each other: define parts of it first");
  return false;
}

// ---- characters ----

std::string QUOTED(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

void SKIP_BLANKS(PARSER& p) {
  while (p.AT < p.TEXT.size() && (p.TEXT[p.AT] == ' ' || p.TEXT[p.AT] == '\t')) ++p.AT;
}

char PEEK(PARSER& p) {
  SKIP_BLANKS(p);
  return p.AT < p.TEXT.size() ? p.TEXT[p.AT] : '\0';
}

bool TAKE(PARSER& p, char c) {
  if (PEEK(p) != c) return false;
  ++p.AT;
  return true;
}

std::string_view CHARACTER_AT(const PARSER& p, std::size_t at) {
  std::size_t end = at + 1;
  while (end < p.TEXT.size() && (static_cast<unsigned char>(p.TEXT[end]) & 0xC0U) == 0x80U) ++end;
  return p.TEXT.substr(at, end - at);
}

bool EXPECT(PARSER& p, char c, std::string_view what) {
  if (TAKE(p, c)) return true;
  const bool at_end = p.AT >= p.TEXT.size();
  FAIL(p, p.AT,
       (at_end ? std::string("the end comes too early")
               : "unexpected " + QUOTED(CHARACTER_AT(p, p.AT))) +
           ": " + QUOTED(std::string(1, c)) + " is wanted " + std::string(what));
  return false;
}

int WHOLE_NUMBER(std::string_view digits) {
  int value = 0;
  for (char c : digits) value = std::min(LARGEST_NUMBER + 1, 10 * value + (c - '0'));
  return value;
}

// ---- nodes ----

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

int PARSE_NUMBER(PARSER& p) {
  const std::size_t start = p.AT;
  TAKE_WHILE(p, ISDIGIT);
  if (p.AT < p.TEXT.size() && p.TEXT[p.AT] == '.') ++p.AT;
  TAKE_WHILE(p, ISDIGIT);
  if (p.AT < p.TEXT.size() && (p.TEXT[p.AT] == 'e' || p.TEXT[p.AT] == 'E')) {
    std::size_t digits = p.AT + 1;
    if (digits < p.TEXT.size() && (p.TEXT[digits] == '+' || p.TEXT[digits] == '-')) ++digits;
    if (digits < p.TEXT.size() && ISDIGIT(p.TEXT[digits])) {
      p.AT = digits;
      TAKE_WHILE(p, ISDIGIT);
    }
  }
  if (p.AT < p.TEXT.size() && p.TEXT[p.AT] == '(') {
    ++p.AT;
    TAKE_WHILE(p, ISDIGIT);
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

}  // namespace KVA_CRYSTAL_STRUCTURES::PARSING
