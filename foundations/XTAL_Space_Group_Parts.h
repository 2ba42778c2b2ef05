// What the sources of the space groups share: exact operators, and the steps from a description to
// the sorted group. For these sources only.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundations/XTAL_Space_Group_Tables.h"
#include "foundations/XTAL_Space_Groups.h"

namespace XTAL {

// Translations are whole numbers of 1/240000: every n/24 is exact, and so are 4 decimals.
inline constexpr int TRANSLATION_UNITS = 240000;
inline constexpr int UNITS_OF_24TH = TRANSLATION_UNITS / 24;
inline constexpr std::size_t LARGEST_GROUP = 192;  // operators of the largest group
inline constexpr int LARGEST_ELEMENT = 9;          // of a rotation matrix on any axes, by size

// An operator with an exact translation, each component 0 up to TRANSLATION_UNITS.
struct EXACT_OP {
  IMATRIX3 ROT{};
  std::array<int, 3> TR{};

  auto operator<=>(const EXACT_OP&) const = default;
};

inline constexpr IMATRIX3 IDENTITY{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
inline constexpr IMATRIX3 INVERSION{{{-1, 0, 0}, {0, -1, 0}, {0, 0, -1}}};

void SET_ERR_SYMM(const std::string& text);

// First operator, then the second.
EXACT_OP PRODUCT(const EXACT_OP& second, const EXACT_OP& first);
EXACT_OP EXACT_FROM(const IMATRIX3& rot, const VECTOR3& tr);
SYM_OP REAL_FROM(const EXACT_OP& op);
IMATRIX3 NEGATIVE(const IMATRIX3& rot);

// All products of the generators, in order of appearance behind the identity. Empty, with the error
// set, when they do not close to a crystallographic group.
std::vector<EXACT_OP> CLOSE_GROUP(const std::vector<EXACT_OP>& generators);

// Generators of a Hall symbol by the published notation; empty when the text is none, with the
// error set when its lattice letter is no lattice.
std::vector<EXACT_OP> DECODE_HALL(std::string_view hall);

// Sorts the operators into reduced ones, inversion and centring, and fills everything of the record
// that follows from them. False, with the error set, when they are no group or too many.
bool FILL_FROM_OPERATORS(const std::vector<EXACT_OP>& operators, SPACE_GROUP& spacegroup);

// The operators and their texts, in this order.
void SET_OPERATOR_LIST(const std::vector<EXACT_OP>& operators, SPACE_GROUP& spacegroup);

// Laue class, point group and crystal system from the rotation parts.
void SET_CLASSES(SPACE_GROUP& spacegroup);

// A symbol resolved: its row in SPGR_INFO (from 0), or a Hall symbol without a row.
struct RESOLVED_SYMBOL {
  int ROW = -1;
  int N = 0;
  std::string HM;
  std::string HALL;  // blank: not resolved
  bool WAS_HALL = false;
};
RESOLVED_SYMBOL RESOLVE_SYMBOL(std::string_view text);

// First row of SPGR_INFO with the same set of operators; -1 when there is none.
int ROW_WITH_OPERATORS(const SPACE_GROUP& spacegroup, std::vector<EXACT_OP> operators);

// Row of SPGR_INFO for a number, -1 when there is none.
int ROW_OF_NUMBER(int number);

}  // namespace XTAL
