// Hall symbols to generators: S. R. Hall, Acta Cryst. A37 (1981) 517-525, and International Tables
// for Crystallography, volume B, 1.4.
#include <algorithm>  // for find_if, min
#include <cstdlib>    // for abs
#include <optional>

#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"
#include "foundations/XTAL_Space_Group_Parts.h"

namespace XTAL {

using namespace KVA_UTILITIES;

namespace {

using TRANSLATION = std::array<int, 3>;  // in 24ths

// ---- lattice and translations ----

struct LETTER_TRANSLATION {
  char LETTER;
  TRANSLATION VECTOR;
};

constexpr std::array<LETTER_TRANSLATION, 10> lattice_translations{{
    {'A', {0, 12, 12}},
    {'B', {12, 0, 12}},
    {'C', {12, 12, 0}},
    {'I', {12, 12, 12}},
    {'R', {16, 8, 8}},
    {'R', {8, 16, 16}},
    {'F', {0, 12, 12}},
    {'F', {12, 0, 12}},
    {'F', {12, 12, 0}},
    {'P', {0, 0, 0}},
}};

constexpr std::array<LETTER_TRANSLATION, 8> glide_translations{{
    {'a', {12, 0, 0}},
    {'b', {0, 12, 0}},
    {'c', {0, 0, 12}},
    {'n', {12, 12, 12}},
    {'u', {6, 0, 0}},
    {'v', {0, 6, 0}},
    {'w', {0, 0, 6}},
    {'d', {6, 6, 6}},
}};

EXACT_OP EXACT(const IMATRIX3& rot, const TRANSLATION& in_24ths) {
  const EXACT_OP op{
      rot, {in_24ths[0] * UNITS_OF_24TH, in_24ths[1] * UNITS_OF_24TH, in_24ths[2] * UNITS_OF_24TH}};
  return PRODUCT({IDENTITY, {}}, op);  // brings the translation into range
}

// ---- rotations ----

struct ROTATION_ABOUT_Z {
  char SYMBOL;
  IMATRIX3 ROT;
};

// About z; the others follow by cycling the axes.
constexpr std::array<ROTATION_ABOUT_Z, 7> rotations_about_z{{
    {'1', {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}},
    {'2', {{{-1, 0, 0}, {0, -1, 0}, {0, 0, 1}}}},
    {'3', {{{0, -1, 0}, {1, -1, 0}, {0, 0, 1}}}},
    {'4', {{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}}},
    {'6', {{{1, -1, 0}, {1, 0, 0}, {0, 0, 1}}}},
    {'\'', {{{0, -1, 0}, {-1, 0, 0}, {0, 0, -1}}}},  // two-fold along a-b
    {'"', {{{0, 1, 0}, {1, 0, 0}, {0, 0, -1}}}},     // two-fold along a+b
}};

constexpr IMATRIX3 body_diagonal{{{0, 0, 1}, {1, 0, 0}, {0, 1, 0}}};  // three-fold along a+b+c

constexpr std::string_view axes = "xyz";

// The rotation named by symbol about z, cycled to stand about axis 0 to 2.
std::optional<IMATRIX3> ROTATION(char symbol, std::size_t axis) {
  const auto found =
      std::find_if(rotations_about_z.begin(), rotations_about_z.end(),
                   [symbol](const ROTATION_ABOUT_Z& row) { return row.SYMBOL == symbol; });
  if (found == rotations_about_z.end()) return std::nullopt;
  const std::size_t shift = axis + 1;
  IMATRIX3 rot{};
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) rot[(i + shift) % 3][(j + shift) % 3] = found->ROT[i][j];
  return rot;
}

// ---- one rotation symbol, such as -2ya or 61 ----

// What the symbols before tell about the next one.
struct CONTEXT {
  int PLACE = 0;  // rotations read so far
  char LAST_ORDER = ' ';
  std::size_t LAST_AXIS = 2;
};

struct ROTATION_SYMBOL {
  bool IMPROPER = false;
  char ORDER = ' ';
  char AXIS = ' ';  // x y z ' " * or blank
  TRANSLATION SHIFT{};
  int SCREW = 0;
};

bool TAKE_CHARACTER(char c, ROTATION_SYMBOL& symbol) {
  const auto glide = std::find_if(glide_translations.begin(), glide_translations.end(),
                                  [c](const LETTER_TRANSLATION& row) { return row.LETTER == c; });
  if (glide != glide_translations.end()) {
    for (std::size_t k = 0; k < 3; ++k) symbol.SHIFT[k] += glide->VECTOR[k];
  } else if (std::string_view("xyz'\"*").find(c) != std::string_view::npos) {
    symbol.AXIS = c;
  } else if (c >= '1' && c <= '5') {
    symbol.SCREW = c - '0';
  } else {
    return false;
  }
  return true;
}

std::optional<ROTATION_SYMBOL> CUT_SYMBOL(std::string_view word) {
  ROTATION_SYMBOL symbol;
  symbol.IMPROPER = word.starts_with('-');
  if (symbol.IMPROPER) word.remove_prefix(1);
  if (word.empty() || std::string_view("12346").find(word[0]) == std::string_view::npos)
    return std::nullopt;
  symbol.ORDER = word[0];
  for (char c : word.substr(1))
    if (!TAKE_CHARACTER(c, symbol)) return std::nullopt;
  return symbol;
}

// The axis that a symbol without one stands for.
char DEFAULT_AXIS(const ROTATION_SYMBOL& symbol, const CONTEXT& context) {
  if (context.PLACE == 1 && symbol.ORDER == '2')
    return context.LAST_ORDER == '2' || context.LAST_ORDER == '4' ? 'x' : '\'';
  if (context.PLACE == 2 && symbol.ORDER == '3') return '*';
  return 'z';
}

std::optional<EXACT_OP> OPERATOR_OF(ROTATION_SYMBOL symbol, CONTEXT& context) {
  if (symbol.AXIS == ' ') symbol.AXIS = DEFAULT_AXIS(symbol, context);
  std::optional<IMATRIX3> rot;
  if (symbol.AXIS == '*') {
    if (symbol.ORDER == '3') rot = body_diagonal;
  } else if (symbol.AXIS == '\'' || symbol.AXIS == '"') {
    if (symbol.ORDER == '2') rot = ROTATION(symbol.AXIS, context.LAST_AXIS);
  } else {
    const std::size_t axis = axes.find(symbol.AXIS);
    rot = ROTATION(symbol.ORDER, axis);
    symbol.SHIFT[axis] += 24 * symbol.SCREW / (symbol.ORDER - '0');
    context.LAST_AXIS = axis;
  }
  if (!rot) return std::nullopt;
  context.LAST_ORDER = symbol.ORDER;
  ++context.PLACE;
  return EXACT(symbol.IMPROPER ? NEGATIVE(*rot) : *rot, symbol.SHIFT);
}

// ---- the whole symbol ----

// The inversion and the centring vectors that the first word of a symbol names; empty, with the
// error set when its letter is no lattice, when it names none.
std::vector<EXACT_OP> LATTICE_GENERATORS(std::string lattice) {
  std::vector<EXACT_OP> generators;
  if (lattice.starts_with('-')) {
    generators.push_back({INVERSION, {}});
    lattice.erase(0, 1);
  }
  if (lattice.size() != 1 || !ISLETTER(lattice[0])) return {};
  bool known = false;
  for (const LETTER_TRANSLATION& row : lattice_translations) {
    if (row.LETTER != lattice[0]) continue;
    known = true;
    generators.push_back(EXACT(IDENTITY, row.VECTOR));
  }
  if (known) return generators;
  SET_ERR_SYMM(lattice == "Z" ? "Unconventional Lattice Symbol Z needs centring vectors"
                              : "Wrong Lattice Symbol");
  return {};
}

// ---- change of basis ----

// V of x' = V x + v: the matrix in twelfths, the shift in 24ths.
struct BASIS_CHANGE {
  IMATRIX3 IN_TWELFTHS{{{12, 0, 0}, {0, 12, 0}, {0, 0, 12}}};
  TRANSLATION SHIFT{};
  bool IS_SHIFT = true;  // the axes stay
};

// A shift such as 0 0 4, in twelfths.
BASIS_CHANGE SHIFT_IN_TWELFTHS(std::string_view text) {
  BASIS_CHANGE change;
  const std::vector<NUMBER> numbers = NUM_FROM_TEXT(text);
  for (std::size_t k = 0; k < std::min<std::size_t>(3, numbers.size()); ++k)
    change.SHIFT[k] = 2 * (numbers[k].IVAL % 12);
  return change;
}

// Takes a whole number of at most three digits off the front of a text; usual where none stands.
std::optional<int> TAKE_DIGITS(std::string_view& text, int usual) {
  constexpr std::size_t most_digits = 3;
  std::size_t n = 0;
  while (n < text.size() && ISDIGIT(text[n])) ++n;
  if (n > most_digits) return std::nullopt;
  int value = n > 0 ? 0 : usual;
  for (char c : text.substr(0, n)) value = 10 * value + (c - '0');
  text.remove_prefix(n);
  return value;
}

bool TAKE_CHARACTER(std::string_view& text, char c) {
  if (!text.starts_with(c)) return false;
  text.remove_prefix(1);
  return true;
}

// A term of a coordinate, +1/2*x, -x/2 or 1/4, in 24ths, and its axis; axis 3 is the shift.
struct TERM {
  int IN_24THS = 0;
  std::size_t AXIS = 3;
};

// Takes a term off the front; nothing when there is none, or it is no whole number of 24ths.
std::optional<TERM> TAKE_TERM(std::string_view& text) {
  TERM term;
  const bool negative = TAKE_CHARACTER(text, '-');
  if (!negative) TAKE_CHARACTER(text, '+');
  const std::size_t length = text.size();
  const std::optional<int> above = TAKE_DIGITS(text, 1);
  std::optional<int> below = TAKE_CHARACTER(text, '/') ? TAKE_DIGITS(text, 0) : 1;
  TAKE_CHARACTER(text, '*');
  for (std::size_t axis = 0; axis < 3 && term.AXIS == 3; ++axis)
    if (TAKE_CHARACTER(text, axes[axis])) term.AXIS = axis;
  if (TAKE_CHARACTER(text, '/')) below = TAKE_DIGITS(text, 0);
  if (text.size() == length || !above || !below || *below == 0) return std::nullopt;
  if (24 * *above % *below != 0) return std::nullopt;
  term.IN_24THS = (negative ? -24 : 24) * *above / *below;
  return term;
}

// Puts a coordinate such as x-z or 1/2*x+1/4 into its row of the change; false when it is none.
bool READ_COORDINATE(std::string_view text, std::size_t row, BASIS_CHANGE& change) {
  constexpr int largest = 6 * 12;
  change.IN_TWELFTHS[row] = {};
  if (text.empty()) return false;
  while (!text.empty()) {
    const std::optional<TERM> term = TAKE_TERM(text);
    if (!term) return false;
    if (term->AXIS == 3) {
      change.SHIFT[row] += term->IN_24THS % 24;
      continue;
    }
    int& element = change.IN_TWELFTHS[row][term->AXIS];
    element += term->IN_24THS / 2;
    if (term->IN_24THS % 2 != 0 || std::abs(element) > largest) return false;
  }
  return true;
}

// Takes what stands in brackets, a shift in twelfths or three coordinates, off the end of the text;
// nothing when the coordinates cannot be read.
std::optional<BASIS_CHANGE> TAKE_BASIS_CHANGE(std::string& text) {
  const std::size_t open = text.find('(');
  if (open == std::string::npos) return BASIS_CHANGE{};
  std::string inside = L_CASE(text.substr(open + 1));
  text.resize(open);
  inside.resize(std::min(inside.find(')'), inside.size()));
  if (inside.find(',') == std::string::npos) return SHIFT_IN_TWELFTHS(inside);
  std::erase(inside, ' ');
  BASIS_CHANGE change;
  change.IS_SHIFT = false;
  std::string_view rest = inside;
  for (std::size_t row = 0; row < 3; ++row) {
    const std::string_view coordinate = rest.substr(0, rest.find(','));
    if (!READ_COORDINATE(coordinate, row, change)) return std::nullopt;
    rest.remove_prefix(std::min(coordinate.size() + 1, rest.size()));
  }
  if (!rest.empty() || DETERMINANT(change.IN_TWELFTHS) == 0) return std::nullopt;
  return change;
}

// Cofactors, so that m times this is the determinant times the identity.
IMATRIX3 ADJUGATE(const IMATRIX3& m) {
  IMATRIX3 adjugate{};
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) {
      const std::size_t a = (i + 1) % 3;
      const std::size_t b = (i + 2) % 3;
      const std::size_t c = (j + 1) % 3;
      const std::size_t d = (j + 2) % 3;
      adjugate[j][i] = m[a][c] * m[b][d] - m[a][d] * m[b][c];
    }
  return adjugate;
}

// The operator in the new axes, V R V^-1 and V t, before the origin moves; nothing where it is no
// operator there.
std::optional<EXACT_OP> IN_NEW_AXES(const EXACT_OP& op, const BASIS_CHANGE& change) {
  const IMATRIX3& v = change.IN_TWELFTHS;
  const int determinant = DETERMINANT(v);
  EXACT_OP moved;
  moved.ROT = MULTIPLY(MULTIPLY(v, op.ROT), ADJUGATE(v));
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = 0; j < 3; ++j) {
      if (moved.ROT[i][j] % determinant != 0) return std::nullopt;
      moved.ROT[i][j] /= determinant;
      moved.TR[i] += v[i][j] * op.TR[j];
    }
    if (moved.TR[i] % 12 != 0) return std::nullopt;
    moved.TR[i] /= 12;
  }
  return PRODUCT({IDENTITY, {}}, moved);  // brings the translation into range
}

// The edges of the old cell, which are centring vectors where the new one is larger.
std::vector<EXACT_OP> OLD_EDGES(const BASIS_CHANGE& change) {
  std::vector<EXACT_OP> edges;
  for (std::size_t j = 0; j < 3; ++j) {
    TRANSLATION edge{};
    for (std::size_t i = 0; i < 3; ++i) edge[i] = 2 * change.IN_TWELFTHS[i][j];
    const EXACT_OP op = EXACT(IDENTITY, edge);
    if (op != EXACT_OP{IDENTITY, {}}) edges.push_back(op);
  }
  return edges;
}

// The generators in the new axes; empty where these are no axes of the lattice. A cell n times as
// large holds n times as many operators.
std::vector<EXACT_OP> CHANGED(const std::vector<EXACT_OP>& generators, const BASIS_CHANGE& change) {
  if (change.IS_SHIFT) return generators;
  constexpr std::size_t same_cell = std::size_t{12} * 12 * 12;
  std::vector<EXACT_OP> changed = OLD_EDGES(change);
  for (const EXACT_OP& generator : generators) {
    const std::optional<EXACT_OP> moved = IN_NEW_AXES(generator, change);
    if (!moved) return {};
    changed.push_back(*moved);
  }
  const auto share = static_cast<std::size_t>(std::abs(DETERMINANT(change.IN_TWELFTHS)));
  const std::size_t before = CLOSE_GROUP(generators).size();
  const std::size_t after = CLOSE_GROUP(changed).size();
  return after * share == before * same_cell ? changed : std::vector<EXACT_OP>{};
}

// The operator as it is after the origin has moved: t + v - R v.
EXACT_OP SHIFTED(const EXACT_OP& op, const TRANSLATION& shift) {
  TRANSLATION back{-shift[0], -shift[1], -shift[2]};
  return PRODUCT(EXACT(IDENTITY, shift), PRODUCT(op, EXACT(IDENTITY, back)));
}

}  // namespace

std::vector<EXACT_OP> DECODE_HALL(std::string_view hall) {
  std::string text = LEFT_ADJUST(hall);
  const std::optional<BASIS_CHANGE> change = TAKE_BASIS_CHANGE(text);
  if (!change) return {};
  std::vector<EXACT_OP> generators = LATTICE_GENERATORS(U_CASE(CUT_WORD(text)));
  if (generators.empty()) return {};
  CONTEXT context;
  while (!text.empty()) {
    const std::optional<ROTATION_SYMBOL> symbol = CUT_SYMBOL(L_CASE(CUT_WORD(text)));
    const std::optional<EXACT_OP> op = symbol ? OPERATOR_OF(*symbol, context) : std::nullopt;
    if (!op) return {};
    generators.push_back(*op);
  }
  if (context.PLACE == 0) return {};
  generators = CHANGED(generators, *change);
  for (EXACT_OP& generator : generators) generator = SHIFTED(generator, change->SHIFT);
  return generators;
}

}  // namespace XTAL
