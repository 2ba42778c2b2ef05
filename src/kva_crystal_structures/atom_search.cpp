// The neighbour search, the search for an atom by position or name, and site multiplicities.
#include "src/kva_crystal_structures/atom_search.h"

#include <algorithm>  // for any_of, all_of, max
#include <cmath>      // for abs, isfinite, round

#include "console_code/kva_utilities/matrix.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::IMATRIX3;
using KVA_UTILITIES::INDEXALL;
using KVA_UTILITIES::NOTNUM;
using KVA_UTILITIES::PUT_VECTOR;
using KVA_UTILITIES::VECTOR_AT;

namespace {

// ---- the neighbour search ----

// What one search looks for.
struct SEARCH {
  const CRYSTAL_STRUCTURE_TYPE& PHASE;
  VECTOR3 ORIGIN{};
  float DMIN = 0.0f;
  float DMAX = 0.0f;
  int LOWEST_USE = ATOM_USED;   // ATOM_OMITTED with "OMIT"
  bool EVERY_OPERATOR = false;  // "FINDOPS"
  VECTOR3 REACH{};              // fraction of each cell edge beyond which nothing is in range
  VECTOR3 LONGEST_CENTRING{};   // largest component of a centring vector along each edge
};

VECTOR3 LONGEST_CENTRING_OF(const XTAL::SPACE_GROUP& group) {
  VECTOR3 longest{};
  for (const VECTOR3& centring : group.LATT_TRANS)
    for (std::size_t k = 0; k < 3; ++k) longest[k] = std::max(longest[k], centring[k]);
  return longest;
}

bool ALREADY_LISTED(const SEARCH& search, const VECTOR3& delta_frac, int count,
                    const NEIGHBOUR_TABLE& table) {
  for (int r = 1; r <= count; ++r) {
    const VECTOR3 listed = VECTOR_AT<3>(table(r), NEIGHBOUR_VECTOR_X);
    const VECTOR3 apart_cart =
        XTAL::MULTIPLY(search.PHASE.CELL.CR_ORTH_CEL, XTAL::SUBTRACT(delta_frac, listed));
    if (XTAL::DOT(apart_cart, apart_cart) < SAME_NEIGHBOUR_SQ) return true;
  }
  return false;
}

// Lists the candidate if it is in range and new; false when the table has no room for it.
bool CONSIDER(const SEARCH& search, const VECTOR3& candidate, int atom, int op, int& count,
              NEIGHBOUR_TABLE& table) {
  const VECTOR3 delta_frac = XTAL::SUBTRACT(candidate, search.ORIGIN);
  for (std::size_t k = 0; k < 3; ++k)
    if (std::abs(delta_frac[k]) > search.REACH[k]) return true;
  const float distance = XTAL::LENGTH(XTAL::MULTIPLY(search.PHASE.CELL.CR_ORTH_CEL, delta_frac));
  if (distance > search.DMAX || distance < search.DMIN) return true;
  if (!search.EVERY_OPERATOR && ALREADY_LISTED(search, delta_frac, count, table)) return true;
  if (count == MAX_BONDS) {
    SET_WARN_KVASTRUCTURES("Too many distances around atom: try decreasing dmax-dmin");
    return false;
  }
  ++count;
  table(count, NEIGHBOUR_DISTANCE) = distance;
  PUT_VECTOR(table(count), NEIGHBOUR_VECTOR_X, delta_frac);
  table(count, NEIGHBOUR_ATOM) = static_cast<float>(atom);
  table(count, NEIGHBOUR_OPERATOR) = static_cast<float>(op);
  return true;
}

// Cell offsets -1, 0, 1 along axis k for which the reduced coordinate, whatever centring vector is
// added to it, can come into reach.
struct OFFSETS {
  int FIRST = -1;
  int LAST = 1;
};

OFFSETS OFFSETS_IN_REACH(const SEARCH& search, const VECTOR3& reduced, std::size_t k) {
  const float delta = reduced[k] - search.ORIGIN[k];
  const float longest = delta + search.LONGEST_CENTRING[k];
  OFFSETS offsets;
  while (offsets.FIRST <= 1 && longest + static_cast<float>(offsets.FIRST) < -search.REACH[k])
    ++offsets.FIRST;
  while (offsets.LAST >= -1 && delta + static_cast<float>(offsets.LAST) > search.REACH[k])
    --offsets.LAST;
  return offsets;
}

// One image and its copies in the neighbouring cells; false when the table has no room for one.
bool CONSIDER_COPIES(const SEARCH& search, const ATOM_IMAGE& image, int& count,
                     NEIGHBOUR_TABLE& table) {
  if (search.PHASE.ATOM_USE(image.ATOM) < search.LOWEST_USE) return true;
  std::array<OFFSETS, 3> t;
  for (std::size_t k = 0; k < 3; ++k) {
    t[k] = OFFSETS_IN_REACH(search, image.X, k);
    if (t[k].FIRST > t[k].LAST) return true;
  }
  for (int t1 = t[0].FIRST; t1 <= t[0].LAST; ++t1)
    for (int t2 = t[1].FIRST; t2 <= t[1].LAST; ++t2)
      for (int t3 = t[2].FIRST; t3 <= t[2].LAST; ++t3) {
        const VECTOR3 cell{static_cast<float>(t1), static_cast<float>(t2), static_cast<float>(t3)};
        for (const VECTOR3& centring : search.PHASE.SPG.LATT_TRANS) {
          const VECTOR3 candidate = XTAL::ADD(XTAL::ADD(image.X, cell), centring);
          if (!CONSIDER(search, candidate, image.ATOM, image.OPERATOR, count, table)) return false;
        }
      }
  return true;
}

}  // namespace

void DISTANCE_ARRAY(const ATOM_IMAGES& images, const VECTOR3& x_frac, float dmin, float dmax,
                    int& count, NEIGHBOUR_TABLE& table, std::string_view options) {
  count = 0;
  table.ASSIGN(MAX_BONDS);
  if (!XTAL::IS_FINITE(x_frac) || NOTNUM(dmin) || NOTNUM(dmax)) return;
  SEARCH search{images.PHASE, x_frac, dmin, dmax};
  if (INDEXALL(options, "OMIT") > 0) search.LOWEST_USE = ATOM_OMITTED;
  search.EVERY_OPERATOR = INDEXALL(options, "FINDOPS") > 0;
  search.REACH = XTAL::REACH_OF(images.PHASE.CELL, dmax);
  search.LONGEST_CENTRING = LONGEST_CENTRING_OF(images.PHASE.SPG);
  if (!search.EVERY_OPERATOR) search.ORIGIN = XTAL::MODULO_LAT(x_frac);
  for (const ATOM_IMAGE* image : IMAGES_NEAR(images, search.ORIGIN, search.REACH))
    if (!CONSIDER_COPIES(search, *image, count, table)) return;
}

void DISTANCE_ARRAY(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x_frac, float dmin,
                    float dmax, int& count, NEIGHBOUR_TABLE& table, std::string_view options) {
  DISTANCE_ARRAY(IMAGES_OF(phase), x_frac, dmin, dmax, count, table, options);
}

// ---- an atom by position or name ----

FOUND_ATOM FIND_ATOM(const ATOM_IMAGES& images, const VECTOR3& x_frac, std::string_view options,
                     float dmax) {
  constexpr float at_the_point = -0.1f;  // a minimum that lets an atom at distance 0 in
  const std::string_view search_options = INDEXALL(options, "OMIT") > 0 ? "OMIT" : "";
  int count = 0;
  NEIGHBOUR_TABLE table;
  DISTANCE_ARRAY(images, x_frac, at_the_point, dmax, count, table, search_options);
  FOUND_ATOM found;
  if (count == 0) return found;
  int nearest = 1;
  for (int r = 2; r <= count; ++r)
    if (table(r, NEIGHBOUR_DISTANCE) < table(nearest, NEIGHBOUR_DISTANCE)) nearest = r;
  found.ATOM = static_cast<int>(table(nearest, NEIGHBOUR_ATOM));
  found.OPERATOR = static_cast<int>(table(nearest, NEIGHBOUR_OPERATOR));
  found.X = XTAL::ADD(x_frac, VECTOR_AT<3>(table(nearest), NEIGHBOUR_VECTOR_X));
  return found;
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

// Whether an operator other than a translation brings the position close to where it is, whole
// cells apart. The list holds the centred copies of all operators, so that whole cells are enough.
bool IS_NEAR_SYMMETRY_ELEMENT(const XTAL::SPACE_GROUP& group, const VECTOR3& x_frac) {
  constexpr float near = 0.01f;  // far more than what counts as one position
  const IMATRIX3& identity = group.SYMOP(1).ROT;
  for (int op = 2; op <= group.MULTIP; ++op) {
    if (group.SYMOP(op).ROT == identity) continue;
    const VECTOR3 apart = XTAL::SUBTRACT(XTAL::APPLY_OP(group.SYMOP(op), x_frac), x_frac);
    if (std::all_of(apart.begin(), apart.end(),
                    [](float d) { return !(std::abs(d - std::round(d)) > near); }))
      return true;
  }
  return false;
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
  // In a general position all images are distinct.
  const bool general = group.MULTIP > 0 && !IS_NEAR_SYMMETRY_ELEMENT(group, x_frac);
  phase.ATOM(i).MULT =
      general ? group.MULTIP / std::max(group.NUMLAT, 1) : COUNT_POSITIONS(group, x_frac);
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
  std::string text;
  float code = 0.0f;
  XTAL::WRITE_SYMTRANS_CODE(code_op, t, text, code);
  return code;
}

}  // namespace KVA_CRYSTAL_STRUCTURES
