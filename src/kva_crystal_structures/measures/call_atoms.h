// The atoms of a call: which images of sites of the reference block they are.
#pragma once

#include <string>
#include <vector>

#include "src/kva_crystal_structures/measures/expression.h"
#include "src/kva_crystal_structures/records.h"
#include "src/kva_crystal_structures/wide_reals.h"

namespace KVA_CRYSTAL_STRUCTURES {

// An atom of the reference block as an operator and whole cells put it.
struct BOUND_ATOM {
  int ATOM = 0;  // the one with the label
  int SITE = 0;  // the first at its place, which stands for the site
  int OPERATOR = 1;
  std::array<int, 3> CELLS{};
  WIDE3 X{};  // fractional
};

// A step to an atom that was chosen as the nearest.
struct CHAIN_STEP {
  std::string FROM;  // label, or "centroid"
  std::string TO;
  double LENGTH = 0.0;  // angstroms
  int EQUAL = 0;        // images as near as that one
  double NEXT = 0.0;    // distance of the next one further
};

struct BOUND_ATOMS {
  std::vector<BOUND_ATOM> ATOMS;  // one for each of the expression's
  std::vector<CHAIN_STEP> STEPS;
};

// Binds the atoms of all calls to a reference block; an error names what does not fit. Without a
// code the first atom of a call is the one of the list, and each further one the image nearest to
// the atom or centroid before it of those that do not stand in the call yet.
EXPRESSION_ERROR BIND_ATOMS(const EXPRESSION& expression, const CRYSTAL_STRUCTURE_TYPE& reference,
                            BOUND_ATOMS& bound);

// The text with the code behind every atom that had none.
std::string TEXT_WITH_CODES(const EXPRESSION& expression, const BOUND_ATOMS& bound);

// The points of a call out of its atoms' positions, in order.
void COMBINE_POINTS(const std::vector<POINT_ITEM>& items, const WIDE3* positions,
                    std::vector<WIDE3>& points);

}  // namespace KVA_CRYSTAL_STRUCTURES
