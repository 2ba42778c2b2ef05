// The neighbour search, the search for an atom by position or name, and site multiplicities.
#include "src/kva_crystal_structures/atom_search.h"

#include <algorithm>  // for any_of
#include <cmath>      // for abs, isfinite, round

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/matrix.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::INDEXALL;
using KVA_UTILITIES::NOTNUM;

namespace {

// ---- the neighbour search ----

// What one search looks for.
struct SEARCH {
  const CRYSTAL_STRUCTURE_TYPE& PHASE;
  VECTOR3 ORIGIN{};
  float DMIN = 0.0f;
  float DMAX = 0.0f;
  bool OMITTED_TOO = false;     // "OMIT"
  bool EVERY_OPERATOR = false;  // "FINDOPS"
  VECTOR3 REACH{};              // fraction of each cell edge beyond which nothing is in range
};

// Distance of the lattice planes across each axis tells how far along it dmax reaches; the margin
// is wider than the rounding of a coordinate difference.
VECTOR3 REACH_OF(const XTAL::CRYSTAL_CELL& cell, float dmax) {
  constexpr float margin = 1e-4f;
  VECTOR3 reach{};
  for (std::size_t k = 0; k < 3; ++k) reach[k] = dmax * cell.RCELL[k] * (1.0f + margin) + margin;
  return reach;
}

// Operators to try: the reduced ones and, in a centric group, their inverted copies. Centring is
// added by the search itself.
int OPERATORS_TO_TRY(const XTAL::SPACE_GROUP& group) {
  constexpr int acentric = 1;
  const int wanted = group.CENTRED == acentric ? group.NUMOPS : 2 * group.NUMOPS;
  return std::min(wanted, group.SYMOP.COUNT());
}

bool ALREADY_LISTED(const SEARCH& search, const VECTOR3& delta_frac, int count,
                    const NEIGHBOUR_TABLE& table) {
  for (int r = 1; r <= count; ++r) {
    const VECTOR3 listed{table(r, NEIGHBOUR_VECTOR_X), table(r, NEIGHBOUR_VECTOR_X + 1),
                         table(r, NEIGHBOUR_VECTOR_X + 2)};
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
  for (int k = 0; k < 3; ++k)
    table(count, NEIGHBOUR_VECTOR_X + k) = delta_frac[static_cast<std::size_t>(k)];
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
  // A centring vector adds 0 up to 1.
  const float delta = reduced[k] - search.ORIGIN[k];
  OFFSETS offsets;
  while (offsets.FIRST <= 1 && delta + static_cast<float>(offsets.FIRST) + 1.0f < -search.REACH[k])
    ++offsets.FIRST;
  while (offsets.LAST >= -1 && delta + static_cast<float>(offsets.LAST) > search.REACH[k])
    --offsets.LAST;
  return offsets;
}

// All images of one atom under one operator; false when the table has no room for one of them.
bool CONSIDER_IMAGES(const SEARCH& search, const VECTOR3& reduced, int atom, int op, int& count,
                     NEIGHBOUR_TABLE& table) {
  std::array<OFFSETS, 3> t;
  for (std::size_t k = 0; k < 3; ++k) {
    t[k] = OFFSETS_IN_REACH(search, reduced, k);
    if (t[k].FIRST > t[k].LAST) return true;
  }
  for (int t1 = t[0].FIRST; t1 <= t[0].LAST; ++t1)
    for (int t2 = t[1].FIRST; t2 <= t[1].LAST; ++t2)
      for (int t3 = t[2].FIRST; t3 <= t[2].LAST; ++t3) {
        const VECTOR3 cell{static_cast<float>(t1), static_cast<float>(t2), static_cast<float>(t3)};
        for (const VECTOR3& centring : search.PHASE.SPG.LATT_TRANS) {
          const VECTOR3 candidate = XTAL::ADD(XTAL::ADD(reduced, cell), centring);
          if (!CONSIDER(search, candidate, atom, op, count, table)) return false;
        }
      }
  return true;
}

bool IS_FINITE(const VECTOR3& v) {
  return std::isfinite(v[0]) && std::isfinite(v[1]) && std::isfinite(v[2]);
}

}  // namespace

void DISTANCE_ARRAY(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x_frac, float dmin,
                    float dmax, int& count, NEIGHBOUR_TABLE& table, std::string_view options) {
  count = 0;
  table.ASSIGN(MAX_BONDS);
  if (!IS_FINITE(x_frac) || NOTNUM(dmin) || NOTNUM(dmax)) return;
  SEARCH search{phase, x_frac, dmin, dmax};
  search.OMITTED_TOO = INDEXALL(options, "OMIT") > 0;
  search.EVERY_OPERATOR = INDEXALL(options, "FINDOPS") > 0;
  search.REACH = REACH_OF(phase.CELL, dmax);
  if (!search.EVERY_OPERATOR) search.ORIGIN = XTAL::MODULO_LAT(x_frac);

  const int lowest_use = search.OMITTED_TOO ? ATOM_OMITTED : ATOM_USED;
  const int operators = OPERATORS_TO_TRY(phase.SPG);
  for (int atom = 1; atom <= phase.NATOMS; ++atom) {
    if (phase.ATOM_USE(atom) < lowest_use) continue;
    for (int op = 1; op <= operators; ++op) {
      const VECTOR3 reduced =
          XTAL::MODULO_LAT(XTAL::APPLY_OP(phase.SPG.SYMOP(op), phase.ATOM(atom).X));
      if (!CONSIDER_IMAGES(search, reduced, atom, op, count, table)) return;
    }
  }
}

// ---- an atom by position or name ----

namespace {

std::string COORDINATE_TEXT(const VECTOR3& x_frac) {
  std::string text;
  for (float x : x_frac) text += KVA_UTILITIES::REAL_COLUMNS(x, 10, 5);
  return text;
}

}  // namespace

FOUND_ATOM FIND_ATOM(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x_frac,
                     std::string_view options, float dmax) {
  constexpr float at_the_point = -0.1f;  // a minimum that lets an atom at distance 0 in
  const std::string_view search_options = INDEXALL(options, "OMIT") > 0 ? "OMIT" : "";
  INIT_ERR_KVASTRUCTURES();
  int count = 0;
  NEIGHBOUR_TABLE table;
  DISTANCE_ARRAY(phase, x_frac, at_the_point, dmax, count, table, search_options);
  FOUND_ATOM found;
  if (count == 0) {
    SET_ERR_KVASTRUCTURES("No atom found near to xyz =" + COORDINATE_TEXT(x_frac) + " in block " +
                          phase.BLOCK_TITLE);
    return found;
  }
  int nearest = 1;
  for (int r = 2; r <= count; ++r)
    if (table(r, NEIGHBOUR_DISTANCE) < table(nearest, NEIGHBOUR_DISTANCE)) nearest = r;
  found.ATOM = static_cast<int>(table(nearest, NEIGHBOUR_ATOM));
  found.OPERATOR = static_cast<int>(table(nearest, NEIGHBOUR_OPERATOR));
  for (int k = 0; k < 3; ++k)
    found.X[static_cast<std::size_t>(k)] =
        x_frac[static_cast<std::size_t>(k)] + table(nearest, NEIGHBOUR_VECTOR_X + k);
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

void SET_ATOM_MULTIP(CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  std::vector<VECTOR3> positions{phase.ATOM(i).X};
  for (int op = 2; op <= phase.SPG.MULTIP; ++op) {
    const VECTOR3 image = XTAL::MODULO_LAT(XTAL::APPLY_OP(phase.SPG.SYMOP(op), phase.ATOM(i).X));
    const bool known =
        std::any_of(positions.begin(), positions.end(), [&](const VECTOR3& position) {
          return XTAL::LATTICE_TRANS(XTAL::SUBTRACT(image, position), phase.SPG);
        });
    if (!known) positions.push_back(image);
  }
  phase.ATOM(i).MULT = static_cast<int>(positions.size());
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

VECTOR3 DIFFERENCE(const VECTOR3& a, const VECTOR3& b) {
  return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

}  // namespace

float SYMMETRY_CODE(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int op, const VECTOR3& x_frac) {
  // The search numbers the operators without centring; the copies of each stand in the list at
  // equal distances.
  const XTAL::SPACE_GROUP& group = phase.SPG;
  const int step = group.MULTIP / std::max(group.NUMLAT, 1);
  int code_op = op;
  VECTOR3 shift = DIFFERENCE(x_frac, XTAL::APPLY_OP(group.SYMOP(op), phase.ATOM(i).X));
  for (int copy = op + step; step > 0 && copy <= group.MULTIP; copy += step) {
    const VECTOR3 other = DIFFERENCE(x_frac, XTAL::APPLY_OP(group.SYMOP(copy), phase.ATOM(i).X));
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
