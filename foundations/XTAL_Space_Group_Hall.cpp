// Hall symbols to generators: S. R. Hall, Acta Cryst. A37 (1981) 517-525, and International Tables
// for Crystallography, volume B, 1.4.
#include <algorithm>  // for find_if
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

// Takes an origin shift such as (0 0 4), in twelfths, off the end of the text.
TRANSLATION TAKE_ORIGIN_SHIFT(std::string& text) {
  TRANSLATION shift{};
  const std::size_t open = text.find('(');
  if (open == std::string::npos) return shift;
  const std::vector<NUMBER> numbers = NUM_FROM_TEXT(text.substr(open));
  for (std::size_t k = 0; k < std::min<std::size_t>(3, numbers.size()); ++k)
    shift[k] = 2 * (numbers[k].IVAL % 12);
  text.resize(open);
  return shift;
}

// The operator as it is after the origin has moved: t + v - R v.
EXACT_OP SHIFTED(const EXACT_OP& op, const TRANSLATION& shift) {
  TRANSLATION back{-shift[0], -shift[1], -shift[2]};
  return PRODUCT(EXACT(IDENTITY, shift), PRODUCT(op, EXACT(IDENTITY, back)));
}

}  // namespace

std::vector<EXACT_OP> DECODE_HALL(std::string_view hall) {
  std::string text = LEFT_ADJUST(hall);
  const TRANSLATION shift = TAKE_ORIGIN_SHIFT(text);
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
  for (EXACT_OP& generator : generators) generator = SHIFTED(generator, shift);
  return generators;
}

}  // namespace XTAL
