// The grammar of expressions turned round: each byte chooses what comes next.
#include "tests/fuzz/measure_grammar.h"

#include <array>
#include <span>

namespace FUZZ {

namespace {

using WORDS = std::span<const std::string_view>;

// Names of measures are few, so that they use one another; one of them is none.
constexpr std::array<std::string_view, 6> names{"m", "n1", "K_2", "longer_name", "M", "missing"};
// Sites of the files beside the dialogue, in other letters, in quotes, and a few that are none.
constexpr std::array<std::string_view, 16> labels{"Si1", "O1",    "Si1",  "O1",  "Si1", "O1",
                                                  "si1", "'O1'",  "O1",   "Mg1", "Fe1", "OX",
                                                  "M",   "'O 1'", "O(1)", "1"};
constexpr std::array<std::string_view, 14> numbers{
    "1", "0",    "2",    "0.5",       "1e3",  "5.0347(4)", "1.0E-2(3)",
    ".", "1..2", "1e99", "7.5(99999", "1(1)", "00.00",     "12345678901234567890"};
constexpr std::array<std::string_view, 8> cells{"a", "b", "c", "alpha", "gamma", "V", "T", "P"};
constexpr std::array<std::string_view, 3> by_points{"dist", "angle", "torsion"};
constexpr std::array<std::string_view, 5> of_site{"x", "y", "z", "uiso", "occ"};
constexpr std::array<std::string_view, 11> of_centre{"mean", "vol",  "qe",    "av",    "bvs", "n",
                                                     "baur", "econ", "shift", "sigma", "VOL"};
constexpr std::array<std::string_view, 14> functions{"sqrt", "abs",  "exp", "log", "min",
                                                     "max",  "sin",  "cos", "tan", "asin",
                                                     "acos", "atan", "LOG", "foo"};
constexpr std::array<std::string_view, 6> operators{" + ", "-", "*", " / ", "^", " "};
constexpr std::array<std::string_view, 16> codes{
    "",    "",    "",        "",        "",        "",    "",     "",
    "[2]", "[3]", "[1_555]", "[3_655]", "[4_565]", "[2]", "[40]", "[2_5 5]"};
constexpr std::string_view misprints = "()[];,=^'\"_.|? 9-\t";

constexpr int deepest = 9;

// Bytes as choices; at their end the first choice, which always leads to an end.
struct CHOICES {
  std::string_view BYTES;
  std::size_t AT = 0;

  std::size_t NEXT(std::size_t count) {
    return AT < BYTES.size() ? static_cast<unsigned char>(BYTES[AT++]) % count : 0;
  }
  std::string OF(WORDS words) { return std::string(words[NEXT(words.size())]); }
};

std::string POINTS(CHOICES& choose, std::size_t count, int depth);

std::string ATOM(CHOICES& choose) {
  const std::string label = choose.OF(labels);
  return label + choose.OF(codes);
}

std::string POINT(CHOICES& choose, int depth) {
  if (depth >= deepest || choose.NEXT(5) != 1) return ATOM(choose);
  return "centroid(" + POINTS(choose, 1 + choose.NEXT(4), depth + 1) + ")";
}

std::string POINTS(CHOICES& choose, std::size_t count, int depth) {
  std::string text;
  for (std::size_t k = 0; k < count; ++k) text += (k > 0 ? ", " : "") + POINT(choose, depth);
  return text;
}

// Mostly the count that is wanted.
std::size_t ABOUT(CHOICES& choose, std::size_t count) {
  const std::size_t chosen = choose.NEXT(12);
  return chosen == 10 ? count + 1 : chosen == 11 ? count - 1 : count;
}

std::string CALL_OF_POINTS(CHOICES& choose, int depth) {
  const std::size_t which = choose.NEXT(by_points.size());
  return std::string(by_points[which]) + "(" + POINTS(choose, ABOUT(choose, which + 2), depth) +
         ")";
}

std::string CALL_OF_PLANES(CHOICES& choose, int depth) {
  const bool one = choose.NEXT(2) == 0;
  const std::string first = POINTS(choose, ABOUT(choose, one ? 1 : 3), depth);
  return (one ? "offplane(" : "planes(") + first + "; " +
         POINTS(choose, ABOUT(choose, 3 + choose.NEXT(2)), depth) + ")";
}

std::string CALL_OF_BONDS(CHOICES& choose) {
  constexpr std::array<std::string_view, 3> words{"bond", "angle", "edge"};
  const std::size_t which = choose.NEXT(words.size());
  std::string text = std::string(words[which]) + "(" + ATOM(choose);
  const std::size_t bonds = ABOUT(choose, which == 0 ? 1 : 2);
  for (std::size_t k = 0; k < bonds; ++k) text += ", " + std::to_string(choose.NEXT(8));
  return text + ")";
}

std::string SUM(CHOICES& choose, int depth);

std::string FUNCTION(CHOICES& choose, int depth) {
  const std::string word = choose.OF(functions);
  std::string text = word + "(" + SUM(choose, depth);
  const bool several = word == "min" || word == "max";
  for (std::size_t k = ABOUT(choose, several ? 2 : 1); k > 1; --k)
    text += ", " + SUM(choose, depth);
  return text + ")";
}

std::string FACTOR(CHOICES& choose, int depth) {
  if (depth >= deepest) return choose.OF(numbers);
  switch (choose.NEXT(12)) {
    case 1:
      return choose.OF(names);
    case 2:
      return choose.OF(cells);
    case 3:
      return CALL_OF_POINTS(choose, depth + 1);
    case 4:
      return CALL_OF_PLANES(choose, depth + 1);
    case 5:
      return CALL_OF_BONDS(choose);
    case 6:
      return choose.OF(of_site) + "(" + ATOM(choose) + ")";
    case 7:
      return choose.OF(of_centre) + "(" + ATOM(choose) + ")";
    case 8:
      return FUNCTION(choose, depth + 1);
    case 9:
      return "ref(" + SUM(choose, depth + 1) + ")";
    case 10:
      return "(" + SUM(choose, depth + 1) + ")";
    case 11:
      return "-" + FACTOR(choose, depth + 1);
    default:
      return choose.OF(numbers);
  }
}

std::string SUM(CHOICES& choose, int depth) {
  std::string text = FACTOR(choose, depth);
  while (choose.NEXT(3) == 1) text += choose.OF(operators) + FACTOR(choose, depth);
  return text;
}

// One character goes, comes or becomes another.
std::string WITH_MISPRINT(std::string text, CHOICES& choose) {
  const std::size_t at = choose.NEXT(text.size());
  const char character = misprints[choose.NEXT(misprints.size())];
  switch (choose.NEXT(3)) {
    case 1:
      return text.erase(at, 1);
    case 2:
      text[at] = character;
      return text;
    default:
      return text.insert(at, 1, character);
  }
}

}  // namespace

std::string DEFINITION_OF(std::string_view bytes) {
  CHOICES choose{bytes};
  const std::string name = choose.OF(names);
  switch (choose.NEXT(16)) {
    case 14:
      return name;
    case 15:
      return name + " =";
    default:
      break;
  }
  const bool has_fault = choose.NEXT(8) == 7;
  const std::string text = SUM(choose, 0);
  return name + " = " + (has_fault ? WITH_MISPRINT(text, choose) : text);
}

}  // namespace FUZZ
