// The tables of quantities and functions.
#include "src/kva_crystal_structures/measures/words.h"

#include <algorithm>  // for all_of
#include <array>

#include "console_code/kva_utilities/text.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::EQUAL_TEXT;
using KVA_UTILITIES::ISDIGIT;
using KVA_UTILITIES::ISLETTER;

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

consteval bool ROWS_STAND_IN_ORDER() {
  int position = 0;
  for (const QUANTITY_ROW& row : quantities)
    if (static_cast<int>(row.KIND) != position++) return false;
  return true;
}
static_assert(ROWS_STAND_IN_ORDER(), "a quantity's number is its place in the table");

constexpr std::array functions{
    FUNCTION_ROW{OPERATION::SQRT, "sqrt"},     FUNCTION_ROW{OPERATION::ABS, "abs"},
    FUNCTION_ROW{OPERATION::EXP, "exp"},       FUNCTION_ROW{OPERATION::LOG, "log"},
    FUNCTION_ROW{OPERATION::MIN, "min", true}, FUNCTION_ROW{OPERATION::MAX, "max", true},
    FUNCTION_ROW{OPERATION::SIN, "sin"},       FUNCTION_ROW{OPERATION::COS, "cos"},
    FUNCTION_ROW{OPERATION::TAN, "tan"},       FUNCTION_ROW{OPERATION::ASIN, "asin"},
    FUNCTION_ROW{OPERATION::ACOS, "acos"},     FUNCTION_ROW{OPERATION::ATAN, "atan"},
};

}  // namespace

bool IS_NAME_CHARACTER(char c) {
  return ISLETTER(c) || ISDIGIT(c) || c == '_';
}

const FUNCTION_ROW* FUNCTION_OF(std::string_view word) {
  for (const FUNCTION_ROW& row : functions)
    if (EQUAL_TEXT(row.WORD, word)) return &row;
  return nullptr;
}

const QUANTITY_ROW* QUANTITY_OF(std::string_view word) {
  for (const QUANTITY_ROW& row : quantities)
    if (EQUAL_TEXT(row.WORD, word)) return &row;
  return nullptr;
}

const QUANTITY_ROW& ROW_OF(QUANTITY kind) {
  return quantities[static_cast<std::size_t>(kind)];
}

std::vector<std::string> EXPRESSION_WORDS() {
  std::vector<std::string> words;
  for (const QUANTITY_ROW& row : quantities)
    if (row.KIND != QUANTITY::BOND_ANGLE) words.emplace_back(row.WORD);
  for (const FUNCTION_ROW& row : functions) words.emplace_back(row.WORD);
  words.emplace_back(CENTROID_WORD);
  words.emplace_back(REFERENCE_WORD);
  return words;
}

bool IS_RESERVED_WORD(std::string_view text) {
  return QUANTITY_OF(text) != nullptr || FUNCTION_OF(text) != nullptr ||
         EQUAL_TEXT(text, CENTROID_WORD) || EQUAL_TEXT(text, REFERENCE_WORD);
}

bool IS_NAME(std::string_view text) {
  return !text.empty() && ISLETTER(text.front()) &&
         std::all_of(text.begin(), text.end(), IS_NAME_CHARACTER) && !IS_RESERVED_WORD(text);
}

}  // namespace KVA_CRYSTAL_STRUCTURES
