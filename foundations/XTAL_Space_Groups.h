// Space groups: from a symbol, a number or a list of operators to the complete list of operators,
// and what is asked of them. Prints nothing; failures are told by ERR_SYMM and ERR_SYMM_MESS.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "console_code/kva_utilities/table.h"
#include "foundations/XTAL_Small_Math.h"

namespace XTAL {

using KVA_UTILITIES::LIST;
using KVA_UTILITIES::SHARED_LIST;

struct SYM_OP {
  IMATRIX3 ROT{};  // acts on fractional coordinates as ROT x + TR
  VECTOR3 TR{};    // fractions of the cell, 0 up to 1
};

enum class SYSTEM {
  UNKNOWN,
  TRICLINIC,
  MONOCLINIC,
  ORTHORHOMBIC,
  TETRAGONAL,
  TRIGONAL,
  HEXAGONAL,
  CUBIC
};

struct CRYSTAL_SYSTEM {
  SYSTEM NAME = SYSTEM::UNKNOWN;
  char UNIQUE_AXIS = ' ';  // a, b or c of a monoclinic cell that shows it
  bool operator==(const CRYSTAL_SYSTEM&) const = default;
};

// "Triclinic" ... "Cubic"; blank for an unknown one.
std::string_view SYSTEM_NAME(SYSTEM system);

// The name, or "Mono b-uni" with a unique axis.
std::string SYSTEM_TEXT(const CRYSTAL_SYSTEM& system);

struct WYCKOFF_ORBIT {
  int MULTIPLICITY = 0;     // points in the whole cell
  std::string LETTER;       // a to z
  std::string COORDINATES;  // first point in operator form
};

struct SPACE_GROUP {
  int NUMSPG = 0;        // International Tables number, 0 when no row fits
  std::string SPG_SYMB;  // Hermann-Mauguin symbol, 20 characters
  std::string HALL;      // Hall symbol, 16 characters
  std::string GHALL;     // generalised Hall symbol
  CRYSTAL_SYSTEM CRYSTALSYS;
  std::string LAUE;          // Laue class, 5 characters
  std::string PG;            // point group, 5 characters
  std::string INFO;          // how the record was made
  std::string SG_SETTING;    // "Tabulated Setting" or "Non-standard Setting"
  char SPG_LAT = 'P';        // lattice letter: P A B C I R F Z
  std::string BRAVAIS;       // Bravais lattice in words
  int NUMLAT = 0;            // centring vectors, the null vector included
  LIST<VECTOR3> LATT_TRANS;  // centring vectors, the null vector first
  int CENTRED = 1;           // 0: -1 not at the origin, 1: acentric, 2: -1 at the origin
  VECTOR3 CENTRE_COORD{};    // position of the inversion centre
  int NUMOPS = 0;            // operators without centring and inversion copies
  int MULTIP = 0;            // all operators; 0 for a group that failed
  int NUM_GEN = 0;           // generators, inversion and lattice excepted
  // NUMOPS operators, identity first; their inverted copies; centring copies of both
  SHARED_LIST<SYM_OP> SYMOP;
  SHARED_LIST<std::string> SYMOPSYMB;  // the same as texts, "-x+1/2,y+1/2,-z"
  SHARED_LIST<WYCKOFF_ORBIT> WYCKOFF;
  std::array<std::array<float, 2>, 3> R_ASYM_UNIT{};  // x, y, z; minimum and maximum
};

// Error state, cleared by SET_SPACEGROUP and READ_XSYM when they start.
inline bool ERR_SYMM = false;
inline std::string ERR_SYMM_MESS;  // 150 characters

// Fills spacegroup from a symbol or number (mode blank, "HMS", "HAL", "ITC") or from operator texts
// gen (mode "GEN": closed under multiplication; "FIX": taken as they stand). On failure ERR_SYMM is
// set and MULTIP is 0.
void SET_SPACEGROUP(std::string_view spacegen, SPACE_GROUP& spacegroup,
                    std::span<const std::string> gen = {}, std::string_view mode = "");

// Reads one operator text such as "x+1/2,-y,z-1/4" or "-x-2*z,-y,z" from position start (from 1),
// which is left behind what was read. Factors of axes are whole numbers; terms of an axis add up.
void READ_XSYM(std::string_view text, int& start, IMATRIX3& rot, VECTOR3& tr, bool proper = false);

// ROT x + TR, not reduced to the cell.
VECTOR3 APPLY_OP(const SYM_OP& op, const VECTOR3& x_frac);

// True when v is a translation of the lattice with the letter; for "Z" of the group's own vectors
// no letter can tell, so the group is asked instead.
bool LATTICE_TRANS(const VECTOR3& v, char lat);
bool LATTICE_TRANS(const VECTOR3& v, const SPACE_GROUP& spacegroup);

// Operators that leave x_frac where it is: how many, their numbers (identity first), and the extra
// lattice translation of each.
void GET_STABILIZER(const VECTOR3& x_frac, const SPACE_GROUP& spacegroup, int& order,
                    LIST<int>& ptr, LIST<VECTOR3>& atr);

// True when both hold the same operators, in any order.
bool SPGR_EQUAL(const SPACE_GROUP& spg1, const SPACE_GROUP& spg2);
bool EQUAL_MATRIX(const IMATRIX3& a, const IMATRIX3& b);

// Order of a rotation with its sign: 1, 2, 3, 4, 6, -1, -2, -3, -4, -6; 0 when it is none.
int ROTATION_TYPE(const IMATRIX3& rot);

// Symmetry code of operator number op with whole-cell translations t, as a number: 3.655 is
// 3_655. 0 outside 1 to 196 or -5 to 4.
float SYMTRANS_CODE(int op, const std::array<int, 3>& t);

}  // namespace XTAL
