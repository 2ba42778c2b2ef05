// The text of an expression as it is read, character by character, and the parts of the grammar:
// each PARSE routine takes its part off the text, or sets the error, behind which nothing is read.
#pragma once

#include "src/kva_crystal_structures/measures/expression.h"

namespace KVA_CRYSTAL_STRUCTURES::PARSING {

inline constexpr int LARGEST_NUMBER = 9999;  // of an operator, a bond, or a k

// The text that is read, how far, and what came of it.
struct PARSER {
  std::string_view TEXT;
  EXPRESSION& RESULT;
  EXPRESSION_ERROR ERROR{};
  std::size_t AT = 0;
  int DEPTH = 0;
  bool IN_REFERENCE = false;
};

bool FAILED(const PARSER& p);

// Sets the first error, and gives no node: -1.
int FAIL(PARSER& p, std::size_t at, std::string text);

// One level further into brackets, signs and powers; an error where they are too many.
bool GO_DEEPER(PARSER& p);

// ---- characters ----

void SKIP_BLANKS(PARSER& p);

// The next character behind blanks, which are skipped; 0 at the end.
char PEEK(PARSER& p);
bool TAKE(PARSER& p, char c);  // whether it was the next one

// Takes the character, or sets an error; what: what it ends or divides.
bool EXPECT(PARSER& p, char c, std::string_view what);

template <class FITS>
std::string_view TAKE_WHILE(PARSER& p, FITS fits) {
  const std::size_t start = p.AT;
  while (p.AT < p.TEXT.size() && fits(p.TEXT[p.AT])) ++p.AT;
  return p.TEXT.substr(start, p.AT - start);
}

// For messages: a text in quotes, and one whole character of the expression.
std::string QUOTED(std::string_view text);
std::string_view CHARACTER_AT(const PARSER& p, std::size_t at);

int WHOLE_NUMBER(std::string_view digits);  // LARGEST_NUMBER + 1 where it is more

// ---- nodes: their place in the tree, or -1 ----

int ADD_NODE(PARSER& p, NODE node);
int ADD_OPERATION(PARSER& p, OPERATION operation, int left, int right, std::size_t at);

// Digits with a point, an exponent and an esd in brackets: 5.0347(4), 1e-3, .5
int PARSE_NUMBER(PARSER& p);

// What follows a quantity's word, which stands at that place of the text.
int PARSE_QUANTITY(PARSER& p, const QUANTITY_ROW& row, std::size_t at);

}  // namespace KVA_CRYSTAL_STRUCTURES::PARSING
