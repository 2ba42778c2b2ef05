// The neighbour search, the search for an atom by position or name, and site multiplicities.
#include "src/kva_crystal_structures/atom_search.h"

#include <algorithm>  // for any_of, all_of, find_if, max, max_element, min
#include <cmath>      // for abs, isfinite, round

#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::IMATRIX3;
using KVA_UTILITIES::INDEXALL;
using KVA_UTILITIES::NOTNUM;
using KVA_UTILITIES::PUT_VECTOR;
using KVA_UTILITIES::VECTOR_AT;

namespace {

// ---- what is in range ----

// Every operator makes an image of every atom, and whole cells and centring vectors make the copies
// of it. A search wants those from dmin to dmax, and of those at one place the first.

// A copy of an atom's image near the point of a search.
struct COPY {
  VECTOR3 DELTA{};  // fractional, from the point
  float DISTANCE = 0.0f;
  int ATOM = 0;
  int OPERATOR = 0;
};

// What one search looks for.
struct SEARCH {
  const CRYSTAL_STRUCTURE_TYPE& PHASE;
  VECTOR3 ORIGIN{};
  float DMIN = 0.0f;
  float DMAX = 0.0f;
  int LOWEST_USE = ATOM_USED;  // ATOM_OMITTED with "OMIT"
  // What follows from these, so that not all copies are looked at.
  VECTOR3 REACH{};             // fraction of each cell edge beyond which nothing is in range
  VECTOR3 LONGEST_CENTRING{};  // largest component of a centring vector along each edge
  std::array<int, 3> FURTHEST_CELL{};  // cells along each edge behind which nothing is in range
};

// Whether a copy of an image at the candidate position is in range; if so, how far away it is.
bool IN_RANGE(const SEARCH& search, const VECTOR3& candidate, COPY& copy) {
  copy.DELTA = XTAL::SUBTRACT(candidate, search.ORIGIN);
  for (std::size_t k = 0; k < 3; ++k)
    if (std::abs(copy.DELTA[k]) > search.REACH[k]) return false;
  copy.DISTANCE = XTAL::LENGTH(XTAL::MULTIPLY(search.PHASE.CELL.CR_ORTH_CEL, copy.DELTA));
  return !(copy.DISTANCE > search.DMAX || copy.DISTANCE < search.DMIN);
}

// Two copies so close together count as one neighbour.
bool ARE_ONE_NEIGHBOUR(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& delta1_frac,
                       const VECTOR3& delta2_frac) {
  const VECTOR3 apart_cart =
      XTAL::MULTIPLY(phase.CELL.CR_ORTH_CEL, XTAL::SUBTRACT(delta1_frac, delta2_frac));
  return XTAL::DOT(apart_cart, apart_cart) < SAME_NEIGHBOUR_SQ;
}

// ---- what is out of reach, and is not looked at ----

VECTOR3 LONGEST_CENTRING_OF(const XTAL::SPACE_GROUP& group) {
  VECTOR3 longest{};
  for (const VECTOR3& centring : group.LATT_TRANS)
    for (std::size_t k = 0; k < 3; ++k) longest[k] = std::max(longest[k], centring[k]);
  return longest;
}

// Coordinates from 0 up to 1 that are moved by one cell more than this stay out of reach, whatever
// centring vector is added; at least 1.
int FURTHEST_CELL_OF(const SEARCH& search, std::size_t k) {
  const float below = 1.0f - search.ORIGIN[k] + search.LONGEST_CENTRING[k];
  const float above = -search.ORIGIN[k];
  int cells = 1;
  while (cells < MOST_CELLS && (below - static_cast<float>(cells + 1) >= -search.REACH[k] ||
                                above + static_cast<float>(cells + 1) <= search.REACH[k]))
    ++cells;
  return cells;
}

SEARCH SEARCH_AROUND(const ATOM_IMAGES& images, const VECTOR3& origin, float dmin, float dmax,
                     std::string_view options) {
  SEARCH search{images.PHASE, origin, dmin, dmax};
  if (INDEXALL(options, "OMIT") > 0) search.LOWEST_USE = ATOM_OMITTED;
  search.REACH = XTAL::REACH_OF(images.PHASE.CELL, dmax);
  search.LONGEST_CENTRING = LONGEST_CENTRING_OF(images.PHASE.SPG);
  for (std::size_t k = 0; k < 3; ++k) search.FURTHEST_CELL[k] = FURTHEST_CELL_OF(search, k);
  return search;
}

// Cell offsets along axis k, at most so many cells each way, for which the reduced coordinate,
// whatever centring vector is added to it, can come into reach.
struct OFFSETS {
  int FIRST = 0;
  int LAST = 0;
};

OFFSETS OFFSETS_IN_REACH(const SEARCH& search, const VECTOR3& reduced, std::size_t k, int most) {
  const float delta = reduced[k] - search.ORIGIN[k];
  const float longest = delta + search.LONGEST_CENTRING[k];
  OFFSETS t{-most, most};
  while (t.FIRST <= most && longest + static_cast<float>(t.FIRST) < -search.REACH[k]) ++t.FIRST;
  while (t.LAST >= -most && delta + static_cast<float>(t.LAST) > search.REACH[k]) --t.LAST;
  return t;
}

// ---- the copies of an image ----

// Which of them a search visits.
enum class CELLS { NEXT, FURTHER, ALL };  // offsets -1, 0, 1; all others; both

bool ARE_NEXT(int t1, int t2, int t3) {
  return std::abs(t1) <= 1 && std::abs(t2) <= 1 && std::abs(t3) <= 1;
}

// Visits the copies of one image that are in range: by cell offset, then by centring vector. False
// when a visit wants no more.
template <class VISIT>
bool VISIT_COPIES(const SEARCH& search, const ATOM_IMAGE& image, CELLS cells, VISIT visit) {
  if (search.PHASE.ATOM_USE(image.ATOM) < search.LOWEST_USE) return true;
  std::array<OFFSETS, 3> t;
  for (std::size_t k = 0; k < 3; ++k) {
    const int most = cells == CELLS::NEXT ? 1 : search.FURTHEST_CELL[k];
    t[k] = OFFSETS_IN_REACH(search, image.X, k, most);
    if (t[k].FIRST > t[k].LAST) return true;
  }
  COPY copy{{}, 0.0f, image.ATOM, image.OPERATOR};
  for (int t1 = t[0].FIRST; t1 <= t[0].LAST; ++t1)
    for (int t2 = t[1].FIRST; t2 <= t[1].LAST; ++t2)
      for (int t3 = t[2].FIRST; t3 <= t[2].LAST; ++t3) {
        if (cells == CELLS::FURTHER && ARE_NEXT(t1, t2, t3)) continue;
        const VECTOR3 cell{static_cast<float>(t1), static_cast<float>(t2), static_cast<float>(t3)};
        for (const VECTOR3& centring : search.PHASE.SPG.LATT_TRANS) {
          const VECTOR3 candidate = XTAL::ADD(XTAL::ADD(image.X, cell), centring);
          if (IN_RANGE(search, candidate, copy) && !visit(copy)) return false;
        }
      }
  return true;
}

// ---- the neighbour search ----

struct NEIGHBOUR_LIST {
  int& COUNT;
  NEIGHBOUR_TABLE& TABLE;
  bool EVERY_OPERATOR = false;  // "FINDOPS"
};

bool IS_LISTED(const SEARCH& search, const COPY& copy, const NEIGHBOUR_LIST& list) {
  for (int r = 1; r <= list.COUNT; ++r)
    if (ARE_ONE_NEIGHBOUR(search.PHASE, copy.DELTA,
                          VECTOR_AT<3>(list.TABLE(r), NEIGHBOUR_VECTOR_X)))
      return true;
  return false;
}

// Lists a copy if it is new; false when the table has no room for it.
bool LIST_COPY(const SEARCH& search, const COPY& copy, NEIGHBOUR_LIST& list) {
  if (!list.EVERY_OPERATOR && IS_LISTED(search, copy, list)) return true;
  if (list.COUNT == MAX_BONDS) {
    SET_WARN_KVASTRUCTURES("Too many distances around atom: try decreasing dmax-dmin");
    return false;
  }
  ROW<float, NEIGHBOUR_COLUMNS>& row = list.TABLE(++list.COUNT);
  row(NEIGHBOUR_DISTANCE) = copy.DISTANCE;
  PUT_VECTOR(row, NEIGHBOUR_VECTOR_X, copy.DELTA);
  row(NEIGHBOUR_ATOM) = static_cast<float>(copy.ATOM);
  row(NEIGHBOUR_OPERATOR) = static_cast<float>(copy.OPERATOR);
  return true;
}

// Lists the copies in the next or in the further cells; false when the table has no room for one.
bool LIST_COPIES(const SEARCH& search, const std::vector<const ATOM_IMAGE*>& near, CELLS cells,
                 NEIGHBOUR_LIST& list) {
  const auto visit = [&](const COPY& copy) { return LIST_COPY(search, copy, list); };
  for (const ATOM_IMAGE* image : near)
    if (!VISIT_COPIES(search, *image, cells, visit)) return false;
  return true;
}

}  // namespace

void DISTANCE_ARRAY(const ATOM_IMAGES& images, const VECTOR3& x_frac, float dmin, float dmax,
                    int& count, NEIGHBOUR_TABLE& table, std::string_view options) {
  count = 0;
  table.ASSIGN(MAX_BONDS);
  if (!XTAL::IS_FINITE(x_frac) || NOTNUM(dmin) || NOTNUM(dmax)) return;
  NEIGHBOUR_LIST list{count, table, INDEXALL(options, "FINDOPS") > 0};
  const VECTOR3 origin = list.EVERY_OPERATOR ? x_frac : XTAL::MODULO_LAT(x_frac);
  const SEARCH search = SEARCH_AROUND(images, origin, dmin, dmax, options);
  const std::vector<const ATOM_IMAGE*> near = IMAGES_NEAR(images, origin, search.REACH);
  if (!LIST_COPIES(search, near, CELLS::NEXT, list)) return;
  const int furthest = *std::max_element(search.FURTHEST_CELL.begin(), search.FURTHEST_CELL.end());
  if (furthest == 1 || !LIST_COPIES(search, near, CELLS::FURTHER, list)) return;
  if (furthest == MOST_CELLS)
    SET_WARN_KVASTRUCTURES("dmax reaches over more cells than are searched: try decreasing dmax");
}

void DISTANCE_ARRAY(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x_frac, float dmin,
                    float dmax, int& count, NEIGHBOUR_TABLE& table, std::string_view options) {
  DISTANCE_ARRAY(IMAGES_OF(phase), x_frac, dmin, dmax, count, table, options);
}

// ---- an atom by position or name ----

namespace {

constexpr float same_distance = 0.001f;  // angstroms: what is closer than this is at the point

// Copies at their own places, those that count as another left out. A copy at the point itself
// stands alone, even where an earlier one lies close.
std::vector<COPY> DISTINCT_COPIES(const SEARCH& search,
                                  const std::vector<const ATOM_IMAGE*>& near) {
  std::vector<COPY> distinct;
  const auto visit = [&](const COPY& copy) {
    if (!(copy.DISTANCE > same_distance)) {
      distinct.assign(1, copy);
      return false;
    }
    const bool known = std::any_of(distinct.begin(), distinct.end(), [&](const COPY& other) {
      return ARE_ONE_NEIGHBOUR(search.PHASE, copy.DELTA, other.DELTA);
    });
    if (!known) distinct.push_back(copy);
    return true;
  };
  for (const ATOM_IMAGE* image : near)
    if (!VISIT_COPIES(search, *image, CELLS::ALL, visit)) break;
  return distinct;
}

// The nearest copy; of those at one distance the first.
const COPY& NEAREST(const std::vector<COPY>& copies) {
  float shortest = copies.front().DISTANCE;
  for (const COPY& copy : copies) shortest = std::min(shortest, copy.DISTANCE);
  return *std::find_if(copies.begin(), copies.end(), [&](const COPY& copy) {
    return !(copy.DISTANCE > shortest + same_distance);
  });
}

}  // namespace

FOUND_ATOM FIND_ATOM(const ATOM_IMAGES& images, const VECTOR3& x_frac, std::string_view options,
                     float dmax) {
  constexpr float at_the_point = -0.1f;  // a minimum that lets an atom at distance 0 in
  if (!XTAL::IS_FINITE(x_frac) || NOTNUM(dmax)) return {};
  const SEARCH search =
      SEARCH_AROUND(images, XTAL::MODULO_LAT(x_frac), at_the_point, dmax, options);
  const std::vector<COPY> copies =
      DISTINCT_COPIES(search, IMAGES_NEAR(images, search.ORIGIN, search.REACH));
  if (copies.empty()) return {};
  const COPY& nearest = NEAREST(copies);
  return {nearest.ATOM, XTAL::ADD(x_frac, nearest.DELTA), nearest.OPERATOR};
}

std::vector<int> FIND_ALLATOMS_BY_NAME(const CRYSTAL_STRUCTURE_TYPE& phase, std::string_view name,
                                       std::string_view options) {
  const bool duplicates_too = INDEXALL(options, "dup") > 0;
  const bool omitted_too = INDEXALL(options, "omit") > 0;
  std::vector<int> atoms;
  for (int i = 1; i <= phase.NATOMS; ++i) {
    if (phase.ATOM_USE(i) < ATOM_OMITTED && !duplicates_too) continue;
    if (phase.ATOM_USE(i) == ATOM_OMITTED && !omitted_too) continue;
    if (KVA_UTILITIES::BEGINS_WITH(phase.ATOM(i).LAB, name)) atoms.push_back(i);
  }
  return atoms;
}

// ---- multiplicities and codes ----

namespace {

// Operators that leave the position where it is, whole cells apart: 1 in a general position. The
// list holds the centred copies of all operators, so that whole cells are enough. 0 where an
// operator brings the position near to where it is, but not as near as rounding does.
int COUNT_FIXING(const XTAL::SPACE_GROUP& group, const VECTOR3& x_frac) {
  // More and less than what counts as one position, and that by more than any axes can make of it:
  // with elements up to 9 an operator stretches a difference 27 times.
  constexpr float near = 0.02f;
  constexpr float here = 1.2e-5f;
  int count = 1;
  for (int op = 2; op <= group.MULTIP; ++op) {
    const VECTOR3 apart = XTAL::SUBTRACT(XTAL::APPLY_OP(group.SYMOP(op), x_frac), x_frac);
    float most = 0.0f;
    for (std::size_t k = 0; k < 3 && !(most > near); ++k)
      most = std::max(std::abs(apart[k] - std::round(apart[k])), most);
    if (most > near) continue;
    if (!(most < here)) return 0;
    ++count;
  }
  return count;
}

// Distinct positions among the images, compared one by one.
int COUNT_POSITIONS(const XTAL::SPACE_GROUP& group, const VECTOR3& x_frac) {
  std::vector<VECTOR3> positions{x_frac};
  for (int op = 2; op <= group.MULTIP; ++op) {
    const VECTOR3 image = XTAL::MODULO_LAT(XTAL::APPLY_OP(group.SYMOP(op), x_frac));
    const bool known =
        std::any_of(positions.begin(), positions.end(), [&](const VECTOR3& position) {
          return XTAL::LATTICE_TRANS(XTAL::SUBTRACT(image, position), group);
        });
    if (!known) positions.push_back(image);
  }
  return static_cast<int>(positions.size());
}

}  // namespace

void SET_ATOM_MULTIP(CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  const XTAL::SPACE_GROUP& group = phase.SPG;
  const VECTOR3& x_frac = phase.ATOM(i).X;
  // Each position is reached by as many operators as leave it where it is.
  const int fixing = group.MULTIP > 0 ? COUNT_FIXING(group, x_frac) : 0;
  phase.ATOM(i).MULT = fixing > 0 ? group.MULTIP / (std::max(group.NUMLAT, 1) * fixing)
                                  : COUNT_POSITIONS(group, x_frac);
}

void SET_ALLATOM_MULTIP(CRYSTAL_STRUCTURE_TYPE& phase) {
  for (int i = 1; i <= phase.NATOMS; ++i) SET_ATOM_MULTIP(phase, i);
}

namespace {

// How far v is from whole cells: the sum over the components.
float OFF_LATTICE(const VECTOR3& v) {
  float sum = 0.0f;
  for (float component : v) sum += std::abs(component - std::round(component));
  return sum;
}

}  // namespace

float SYMMETRY_CODE(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int op, const VECTOR3& x_frac) {
  // The search numbers the operators without centring; the copies of each stand in the list at
  // equal distances.
  const XTAL::SPACE_GROUP& group = phase.SPG;
  const int step = group.MULTIP / std::max(group.NUMLAT, 1);
  int code_op = op;
  VECTOR3 shift = XTAL::SUBTRACT(x_frac, XTAL::APPLY_OP(group.SYMOP(op), phase.ATOM(i).X));
  for (int copy = op + step; step > 0 && copy <= group.MULTIP; copy += step) {
    const VECTOR3 other =
        XTAL::SUBTRACT(x_frac, XTAL::APPLY_OP(group.SYMOP(copy), phase.ATOM(i).X));
    if (!(OFF_LATTICE(other) < OFF_LATTICE(shift))) continue;
    code_op = copy;
    shift = other;
  }
  std::array<int, 3> t{};
  for (std::size_t k = 0; k < 3; ++k) {
    const float cells = std::round(shift[k]);
    t[k] = std::isfinite(cells) && std::abs(cells) < 1000.0f ? static_cast<int>(cells) : 1000;
  }
  return XTAL::SYMTRANS_CODE(code_op, t);
}

}  // namespace KVA_CRYSTAL_STRUCTURES
