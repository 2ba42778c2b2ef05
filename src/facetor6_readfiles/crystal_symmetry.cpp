// The operators that an output of the CRYSTAL program prints, and whether a space group fits the
// atoms that it lists. The program may shift the origin, or lower the symmetry below the group that
// was given; the number of the group alone does not tell.
#include "src/facetor6_readfiles/crystal_symmetry.h"

#include <array>
#include <cmath>  // for abs, lround
#include <string>

#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"
#include "src/kva_crystal_structures/atom_search.h"

namespace FACETOR_READFILES {

using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

// ---- printed operators ----

namespace {

// A row of the table: number, number of the inverse, rotation by rows, translation.
constexpr std::size_t row_numbers = 14;
constexpr std::size_t first_rotation = 2;
constexpr std::size_t first_translation = 11;

// One field of the operator, such as "-x+y+8/12"; blank when a factor is not -1, 0 or 1.
// Translations are printed with two decimals: those that occur are multiples of 1/12.
std::string OPERATOR_FIELD(const std::vector<NUMBER>& row, std::size_t axis) {
  constexpr std::string_view letters = "xyz";
  std::string field;
  for (std::size_t k = 0; k < 3; ++k) {
    const float factor = row[first_rotation + 3 * axis + k].VAL;
    if (std::abs(factor) > 1.0f || std::abs(factor) != std::round(std::abs(factor))) return "";
    if (factor != 0.0f) field += std::string(factor > 0.0f ? "+" : "-") + letters[k];
  }
  const float twelfths = 12.0f * row[first_translation + axis].VAL;
  if (!(std::abs(twelfths) < 12.5f)) return "";
  const long n = std::lround(twelfths);
  return field + (n < 0 ? "-" : "+") + std::to_string(std::labs(n)) + "/12";
}

std::string OPERATOR_TEXT(const std::vector<NUMBER>& row) {
  std::string text;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const std::string field = OPERATOR_FIELD(row, axis);
    if (field.empty()) return "";
    text += (axis > 0 ? "," : "") + field;
  }
  return text;
}

}  // namespace

std::vector<std::string> PRINTED_OPERATORS(const FILE_LINES& flines, int start) {
  std::vector<std::string> operators;
  int line = start;
  while (line <= flines.COUNT() && INDEXALL(flines(line), "SYMMOPS - TRANSLATORS IN FRACTION") == 0)
    ++line;
  while (line <= flines.COUNT() && INDEXALL(flines(line), "ROTATION MATRICES") == 0) ++line;
  for (++line; line <= flines.COUNT(); ++line) {
    const std::vector<NUMBER> row = NUM_FROM_TEXT(flines(line));
    const std::string text = row.size() == row_numbers ? OPERATOR_TEXT(row) : "";
    if (text.empty()) break;
    operators.push_back(text);
  }
  return operators;
}

// ---- group and atoms ----

namespace {

bool DIFFER_BY_LATTICE(const VECTOR3& a, const VECTOR3& b, const XTAL::SPACE_GROUP& group) {
  constexpr float tolerance = 0.001f;
  for (const VECTOR3& centring : group.LATT_TRANS) {
    bool same = true;
    for (std::size_t k = 0; k < 3; ++k) {
      const float difference = a[k] - b[k] - centring[k];
      same = same && std::abs(difference - std::round(difference)) < tolerance;
    }
    if (same) return true;
  }
  return false;
}

bool IS_IMAGE(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x_frac) {
  for (int i = 1; i <= phase.NATOMS; ++i)
    for (const XTAL::SYM_OP& op : phase.SPG.SYMOP)
      if (DIFFER_BY_LATTICE(XTAL::APPLY_OP(op, phase.ATOM(i).X), x_frac, phase.SPG)) return true;
  return false;
}

}  // namespace

bool GENERATES(CRYSTAL_STRUCTURE_TYPE& phase, const std::vector<VECTOR3>& listed,
               float lattice_points) {
  SET_ALLATOM_MULTIP(phase);
  const auto centrings = static_cast<float>(phase.SPG.LATT_TRANS.COUNT());
  if (lattice_points > 0.0f && std::abs(centrings - lattice_points) > 0.5f) return false;
  std::size_t images = 0;
  for (int i = 1; i <= phase.NATOMS; ++i) images += static_cast<std::size_t>(phase.ATOM(i).MULT);
  if (images != listed.size()) return false;
  for (const VECTOR3& x_frac : listed)
    if (!IS_IMAGE(phase, x_frac)) return false;
  return true;
}

}  // namespace FACETOR_READFILES
