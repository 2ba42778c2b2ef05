// Where the plain reader's record of a block differs from what the block says.
#include <algorithm>  // for max
#include <cmath>      // for abs

#include "cifcode/cif_full/structure.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"
#include "src/kva_crystal_structures/displacement.h"

namespace KVA_CIFFULL {

using namespace KVA_UTILITIES;
using namespace KVA_CRYSTAL_STRUCTURES;

namespace {

// Two readings of one number may differ in the last bits that a 32-bit real tells.
bool ALIKE(float a, float b) {
  constexpr float told = 4e-7f;  // of the value
  return a == b || std::abs(a - b) <= told * std::max(std::abs(a), std::abs(b));
}

template <std::size_t N>
bool ALIKE(const std::array<float, N>& a, const std::array<float, N>& b) {
  for (std::size_t k = 0; k < N; ++k)
    if (!ALIKE(a[k], b[k])) return false;
  return true;
}

bool SAME_CELL(const XTAL::CRYSTAL_CELL& a, const XTAL::CRYSTAL_CELL& b) {
  return ALIKE(a.CELL, b.CELL) && ALIKE(a.ANG, b.ANG);
}

float U_OF(const ATOM_TYPE& atom) {
  return atom.UEQ != 0.0f ? atom.UEQ : atom.BISO / EIGHT_PI_SQ;
}

// Tensors where there are, else the isotropic values.
bool SAME_DISPLACEMENT(const ATOM_TYPE& a, const ATOM_TYPE& b) {
  if (a.THTYPE != b.THTYPE) return false;
  if (a.THTYPE == "isotr") return ALIKE(U_OF(a), U_OF(b));
  return a.UTYPE == b.UTYPE && ALIKE(a.U, b.U);
}

// What is compared atom by atom, in the order in which it is told.
enum ATOM_PART { POSITIONS, ELEMENTS, OCCUPANCIES, DISPLACEMENTS, CHARGES };
constexpr std::array<std::string_view, 5> part_words{"other positions", "other elements",
                                                     "other occupancies", "other displacements",
                                                     "charges"};  // ORDER ATOM_PART

bool SAME_PART(ATOM_PART part, const ATOM_TYPE& a, const ATOM_TYPE& b) {
  switch (part) {
    case POSITIONS:
      return ALIKE(a.X, b.X);
    case ELEMENTS:
      return a.CHEMSYMB == b.CHEMSYMB;
    case OCCUPANCIES:
      return ALIKE(a.OCC, b.OCC);
    case DISPLACEMENTS:
      return SAME_DISPLACEMENT(a, b);
    case CHARGES:
      return ALIKE(a.CHARGE, b.CHARGE);
  }
  return true;
}

// Label of the first atom that the two have differently; blank when there is none.
std::string FIRST_DIFFERENT(const STRUCTURE& structure, const CRYSTAL_STRUCTURE_TYPE& plain,
                            ATOM_PART part) {
  for (int i = 1; i <= plain.NATOMS; ++i)
    if (!SAME_PART(part, structure.ATOMS(i), plain.ATOM(i))) return structure.ATOMS(i).LAB;
  return "";
}

// A condition as it is once those that are absent have their usual values.
float GIVEN_OR(float usual, float value) {
  return std::abs(value) < TINY_REAL ? usual : value;
}

void ADD(std::string& told, const std::string& words) {
  if (!told.empty()) told += ", ";
  told += words;
}

// "other positions, first O1".
void COMPARE_ATOMS(const STRUCTURE& structure, const CRYSTAL_STRUCTURE_TYPE& plain,
                   std::string& told) {
  for (const ATOM_PART part : {POSITIONS, ELEMENTS, OCCUPANCIES, DISPLACEMENTS}) {
    const std::string label = FIRST_DIFFERENT(structure, plain, part);
    if (!label.empty()) ADD(told, std::string(part_words[part]) + ", first " + label);
  }
}

void COMPARE_CONDITIONS(const STRUCTURE& structure, const CRYSTAL_STRUCTURE_TYPE& plain,
                        std::string& told) {
  const float plain_t = plain.PT(TEMPERATURE, PT_VALUE);
  const float plain_p = plain.PT(PRESSURE, PT_VALUE);
  if (!ALIKE(GIVEN_OR(ROOM_TEMPERATURE, std::max(structure.T.VALUE, 0.0f)),
             GIVEN_OR(ROOM_TEMPERATURE, std::max(plain_t, 0.0f))))
    ADD(told, "another temperature");
  if (!ALIKE(GIVEN_OR(ONE_ATMOSPHERE, structure.P.VALUE), GIVEN_OR(ONE_ATMOSPHERE, plain_p)))
    ADD(told, "another pressure");
}

}  // namespace

std::string DIFFERENCES(const STRUCTURE& structure, const CRYSTAL_STRUCTURE_TYPE& plain,
                        bool same_group) {
  std::string told;
  const int sites = structure.ATOMS.COUNT();
  if (!SAME_CELL(structure.CELL, plain.CELL)) ADD(told, "another cell");
  if (!same_group) ADD(told, "another space group (" + structure.SPG->GROUP.SPG_SYMB + ")");
  if (sites != plain.NATOMS)
    ADD(told, INTEGER_COLUMNS(sites) + " sites (not " + INTEGER_COLUMNS(plain.NATOMS) + ")");
  else
    COMPARE_ATOMS(structure, plain, told);
  COMPARE_CONDITIONS(structure, plain, told);
  if (sites == plain.NATOMS && !FIRST_DIFFERENT(structure, plain, CHARGES).empty())
    ADD(told, std::string(part_words[CHARGES]));
  return told;
}

}  // namespace KVA_CIFFULL
