// Expressions over quantities of a crystal structure: from a text to a small tree of plain records.
// Knows the words and the grammar; nothing of any structure.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "src/kva_crystal_structures/measures/words.h"

namespace KVA_CRYSTAL_STRUCTURES {

// An atom as it stands in the text.
struct ATOM_TEXT {
  std::string LABEL;  // without quotes
  bool CODED = false;
  int OPERATOR = 0;            // of a code such as [4_655], numbered from 1
  std::array<int, 3> CELLS{};  // whole cells of the code
  int NEAREST = 0;             // k of [k]; 0: none
  std::size_t AT = 0;          // its first character in the text, from 0
  std::size_t LABEL_END = 0;   // behind the label
  std::size_t END = 0;         // behind its square brackets
};

// Points in postfix order: an atom, or a centroid of the COUNT points before it.
struct POINT_ITEM {
  int ATOM = -1;  // place in the expression's ATOMS, from 0; -1 for a centroid
  int COUNT = 0;
};

struct CALL {
  QUANTITY KIND{};
  std::vector<POINT_ITEM> POINTS;
  int FIRST_GROUP = 0;         // points in front of ";", if there is one
  std::array<int, 2> BONDS{};  // bond numbers, from 1
  bool IN_REFERENCE = false;   // inside ref(...)
  std::size_t AT = 0;
};

struct NODE {
  OPERATION OP{};
  int LEFT = -1;  // operands, which stand before their node
  int RIGHT = -1;
  double VALUE = 0.0;
  double ESD = 0.0;
  int INDEX = -1;
  std::string NAME;           // lower case
  bool IN_REFERENCE = false;  // of MEASURE
  std::size_t AT = 0;
};

struct EXPRESSION {
  std::string TEXT;         // as typed
  std::vector<NODE> NODES;  // the last is the root
  std::vector<CALL> CALLS;
  std::vector<ATOM_TEXT> ATOMS;  // from left to right
};

// Why a text is no expression; TEXT is blank when it is one.
struct EXPRESSION_ERROR {
  std::string TEXT;
  std::size_t AT = 0;  // character, from 0
};

EXPRESSION_ERROR PARSE_EXPRESSION(std::string_view text, EXPRESSION& expression);

// Whether the expression is one quantity alone, and its unit then; else blank.
bool IS_ONE_QUANTITY(const EXPRESSION& expression);
std::string_view UNIT_OF(const EXPRESSION& expression);
bool IS_COUNT(const EXPRESSION& expression);    // a number of ligands alone
bool IS_TORSION(const EXPRESSION& expression);  // one torsion alone

}  // namespace KVA_CRYSTAL_STRUCTURES
