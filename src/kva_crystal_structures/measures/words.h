// The words of expressions: quantities, functions, centroid and ref; and what may be a name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace KVA_CRYSTAL_STRUCTURES {

// ---- quantities ----

enum class QUANTITY {
  DIST,
  ANGLE,
  TORSION,
  OFFPLANE,
  PLANES,
  X,
  Y,
  Z,
  UISO,
  OCC,
  MEAN,
  VOL,
  QE,
  AV,
  BVS,
  N,
  BAUR,
  ECON,
  SHIFT,
  SIGMA,
  BOND,
  BOND_ANGLE,
  EDGE,
  CELL_A,
  CELL_B,
  CELL_C,
  CELL_ALPHA,
  CELL_BETA,
  CELL_GAMMA,
  CELL_V,
  CONDITION_T,
  CONDITION_P
};

// What stands between the brackets behind a quantity's word.
enum class ARGUMENTS {
  NONE,             // a word alone
  POINTS,           // a fixed number of atoms or centroids
  POINT_AND_PLANE,  // (A; B, C, D, ...)
  TWO_PLANES,       // (A, B, C, ... ; D, E, F, ...)
  SITE,             // one atom
  SITE_AND_BONDS    // an atom and bond numbers
};

struct QUANTITY_ROW {
  QUANTITY KIND;
  std::string_view WORD;
  ARGUMENTS TAKES;
  int COUNT;              // of points or of bond numbers
  std::string_view FORM;  // as it is written, for messages
  std::string_view UNIT;  // blank for a pure number
  bool NEEDS_BONDS;       // it is a polyhedron's
};
const QUANTITY_ROW& ROW_OF(QUANTITY kind);

// The first quantity with the word ("angle" has two); none: nullptr.
const QUANTITY_ROW* QUANTITY_OF(std::string_view word);

// ---- operations and functions ----

enum class OPERATION {
  NUMBER,    // VALUE and ESD
  QUANTITY,  // INDEX of a call
  MEASURE,   // NAME of another definition
  ADD,
  SUBTRACT,
  MULTIPLY,
  DIVIDE,
  POWER,
  NEGATE,
  SQRT,
  ABS,
  EXP,
  LOG,
  MIN,
  MAX,
  SIN,
  COS,
  TAN,
  ASIN,
  ACOS,
  ATAN
};

struct FUNCTION_ROW {
  OPERATION OP;
  std::string_view WORD;
  bool OF_SEVERAL = false;  // two or more arguments
};
const FUNCTION_ROW* FUNCTION_OF(std::string_view word);  // nullptr: none

inline constexpr std::string_view CENTROID_WORD = "centroid";
inline constexpr std::string_view REFERENCE_WORD = "ref";

// ---- names ----

bool IS_NAME_CHARACTER(char c);

// All words that cannot be names, for a prompt: quantities, functions, centroid and ref.
std::vector<std::string> EXPRESSION_WORDS();

// Whether text is letters, digits and "_", begins with a letter, and is none of those words.
bool IS_NAME(std::string_view text);
bool IS_RESERVED_WORD(std::string_view text);

}  // namespace KVA_CRYSTAL_STRUCTURES
