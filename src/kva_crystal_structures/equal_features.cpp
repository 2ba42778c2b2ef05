// Operators that take one feature to another.
#include "src/kva_crystal_structures/equal_features.h"

#include <algorithm>  // for reverse
#include <cmath>      // for abs, round

#include "foundations/XTAL_Small_Math.h"
#include "src/kva_crystal_structures/atom_search.h"
#include "src/kva_crystal_structures/uncertainty.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::IMATRIX3;

namespace {

// ---- points ----

VECTOR3 WHOLE_CELLS(const VECTOR3& v) {
  return {std::round(v[0]), std::round(v[1]), std::round(v[2])};
}

// Whether the operator takes the one to the other; the first points settle the translation.
bool TAKES(const XTAL::SYM_OP& op, const FEATURE& from, const FEATURE& to,
           const CRYSTAL_STRUCTURE_TYPE& phase) {
  if (from.size() != to.size()) return false;
  VECTOR3 cells{};
  for (std::size_t k = 0; k < from.size(); ++k) {
    if (from[k].ATOM != to[k].ATOM) return false;
    const VECTOR3 apart = XTAL::SUBTRACT(to[k].X, XTAL::APPLY_OP(op, from[k].X));
    if (k == 0) cells = WHOLE_CELLS(apart);
    if (!(CRYST_DIST(XTAL::SUBTRACT(apart, cells), phase.CELL.GD) <= MATCH_RADIUS)) return false;
  }
  return true;
}

bool ARE_EQUAL(const FEATURE& a, const FEATURE& b, LIKENESS likeness,
               const CRYSTAL_STRUCTURE_TYPE& phase) {
  if (a.empty() || b.empty()) return a.empty() && b.empty();
  FEATURE turned = a;
  std::reverse(turned.begin(), turned.end());
  for (int s = 1; s <= phase.SPG.MULTIP; ++s) {
    const XTAL::SYM_OP& op = phase.SPG.SYMOP(s);
    if (TAKES(op, a, b, phase)) return true;
    if (likeness == LIKENESS::EITHER_WAY && TAKES(op, turned, b, phase)) return true;
  }
  return false;
}

// Equality is transitive, so that the firsts stand for all that are equal to them.
template <class ARE_SAME>
std::vector<std::size_t> FIRSTS(std::size_t count, const ARE_SAME& are_same) {
  std::vector<std::size_t> firsts;
  for (std::size_t k = 0; k < count; ++k) {
    std::size_t first = 0;
    while (first < k && !(firsts[first] == first && are_same(first, k))) ++first;
    firsts.push_back(first);
  }
  return firsts;
}

// ---- axes ----

// The axis that the operator takes axis k to, with its sign; AXIS 3 when it is none of them.
struct IMAGE_OF_AXIS {
  std::size_t AXIS = 3;
  int SIGN = 0;
};
IMAGE_OF_AXIS IMAGE_OF(const IMATRIX3& rot, std::size_t k) {
  IMAGE_OF_AXIS image;
  for (std::size_t row = 0; row < 3; ++row) {
    if (rot[row][k] == 0) continue;
    if (image.SIGN != 0 || std::abs(rot[row][k]) != 1) return {};
    image = {row, rot[row][k]};
  }
  return image;
}

// The angle opposite axis k is taken to the one opposite its image, where both of its legs are
// axes again that point the same way.
bool TAKES_AXIS(const IMATRIX3& rot, std::size_t from, std::size_t to) {
  return IMAGE_OF(rot, from).AXIS == to;
}

bool TAKES_ANGLE(const IMATRIX3& rot, std::size_t from, std::size_t to) {
  const IMAGE_OF_AXIS first = IMAGE_OF(rot, (from + 1) % 3);
  const IMAGE_OF_AXIS second = IMAGE_OF(rot, (from + 2) % 3);
  if (first.AXIS == 3 || second.AXIS == 3 || first.AXIS == to || second.AXIS == to) return false;
  return first.AXIS != second.AXIS && first.SIGN == second.SIGN;
}

}  // namespace

std::vector<std::size_t> FIRST_EQUALS(const CRYSTAL_STRUCTURE_TYPE& phase,
                                      const std::vector<FEATURE>& features, LIKENESS likeness) {
  return FIRSTS(features.size(), [&](std::size_t a, std::size_t b) {
    return ARE_EQUAL(features[a], features[b], likeness, phase);
  });
}

std::vector<std::size_t> FIRST_EQUAL_AXES(const CRYSTAL_STRUCTURE_TYPE& phase) {
  return FIRSTS(6, [&](std::size_t a, std::size_t b) {
    if (a / 3 != b / 3) return false;
    for (int s = 1; s <= phase.SPG.MULTIP; ++s) {
      const IMATRIX3& rot = phase.SPG.SYMOP(s).ROT;
      if (a < 3 ? TAKES_AXIS(rot, a, b) : TAKES_ANGLE(rot, a - 3, b - 3)) return true;
    }
    return false;
  });
}

}  // namespace KVA_CRYSTAL_STRUCTURES
