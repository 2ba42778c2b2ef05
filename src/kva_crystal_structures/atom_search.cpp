// The neighbour search, the search for an atom by position or name, and site multiplicities.
#include "src/kva_crystal_structures/atom_search.h"

#include <algorithm>  // for any_of, all_of, max, min, min_element, sort, unique
#include <cmath>      // for abs, cbrt, isfinite, round

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/matrix.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CRYSTAL_STRUCTURES {

using KVA_UTILITIES::IMATRIX3;
using KVA_UTILITIES::INDEXALL;
using KVA_UTILITIES::NOTNUM;

namespace {

// ---- images in boxes ----

// Operators to try: the reduced ones and, in a centric group, their inverted copies. Centring is
// added by the search itself.
int OPERATORS_TO_TRY(const XTAL::SPACE_GROUP& group) {
  constexpr int acentric = 1;
  const int wanted = group.CENTRED == acentric ? group.NUMOPS : 2 * group.NUMOPS;
  return std::min(wanted, group.SYMOP.COUNT());
}

bool IS_FINITE(const VECTOR3& v) {
  return std::isfinite(v[0]) && std::isfinite(v[1]) && std::isfinite(v[2]);
}

int BOXES_ALONG(float edge_reciprocal, float box_width, float most) {
  const float wanted = 1.0f / (edge_reciprocal * box_width);
  return wanted > 1.0f ? static_cast<int>(std::min(wanted, most)) : 1;
}

// Boxes of some 1.5 angstroms, along each axis no more than would leave most boxes empty; a few
// images are only cut into slices along the axis with the widest spacing of lattice planes. Images
// that are no numbers have no place, so that all then go into one box.
std::array<int, 3> BOXES_FOR(const XTAL::CRYSTAL_CELL& cell,
                             const std::vector<ATOM_IMAGE>& images) {
  constexpr float box_width = 1.5f;
  constexpr float slice_width = 1.0f;
  constexpr std::size_t few = 100;
  std::array<int, 3> boxes{1, 1, 1};
  const bool finite = std::all_of(images.begin(), images.end(),
                                  [](const ATOM_IMAGE& image) { return IS_FINITE(image.X); });
  if (!finite) return boxes;
  const float count = static_cast<float>(images.size());
  const VECTOR3& reciprocal = cell.RCELL;
  if (images.size() < few) {
    const auto widest = static_cast<std::size_t>(
        std::min_element(reciprocal.begin(), reciprocal.end()) - reciprocal.begin());
    boxes[widest] = BOXES_ALONG(reciprocal[widest], slice_width, 1.0f + count);
    return boxes;
  }
  for (std::size_t k = 0; k < 3; ++k)
    boxes[k] = BOXES_ALONG(reciprocal[k], box_width, 1.0f + std::cbrt(count));
  return boxes;
}

int BOX_NUMBER(const ATOM_IMAGES& images, int b1, int b2, int b3) {
  return (b1 * images.BOXES[1] + b2) * images.BOXES[2] + b3;
}

int BOX_OF(const ATOM_IMAGES& images, const VECTOR3& x) {
  std::array<int, 3> b{};
  for (std::size_t k = 0; k < 3; ++k) {
    const int boxes = images.BOXES[k];
    if (boxes > 1) b[k] = std::min(static_cast<int>(x[k] * static_cast<float>(boxes)), boxes - 1);
  }
  return BOX_NUMBER(images, b[0], b[1], b[2]);
}

void SORT_INTO_BOXES(ATOM_IMAGES& images) {
  const int boxes = images.BOXES[0] * images.BOXES[1] * images.BOXES[2];
  images.BOX_START.assign(static_cast<std::size_t>(boxes) + 1, 0);
  std::vector<std::size_t> box_of;
  for (const ATOM_IMAGE& image : images.IMAGES) {
    box_of.push_back(static_cast<std::size_t>(BOX_OF(images, image.X)));
    ++images.BOX_START[box_of.back() + 1];
  }
  for (std::size_t box = 1; box < images.BOX_START.size(); ++box)
    images.BOX_START[box] += images.BOX_START[box - 1];
  std::vector<int> next = images.BOX_START;
  images.BOXED.resize(images.IMAGES.size());
  for (std::size_t i = 0; i < box_of.size(); ++i)
    images.BOXED[static_cast<std::size_t>(next[box_of[i]]++)] = static_cast<int>(i);
}

}  // namespace

ATOM_IMAGES IMAGES_OF(const CRYSTAL_STRUCTURE_TYPE& phase) {
  ATOM_IMAGES images{phase, {}, {1, 1, 1}, {}, {}};
  const int operators = OPERATORS_TO_TRY(phase.SPG);
  images.IMAGES.reserve(static_cast<std::size_t>(phase.NATOMS) *
                        static_cast<std::size_t>(operators));
  for (int atom = 1; atom <= phase.NATOMS; ++atom)
    for (int op = 1; op <= operators; ++op)
      images.IMAGES.push_back(
          {XTAL::MODULO_LAT(XTAL::APPLY_OP(phase.SPG.SYMOP(op), phase.ATOM(atom).X)), atom, op});
  images.BOXES = BOXES_FOR(phase.CELL, images.IMAGES);
  SORT_INTO_BOXES(images);
  return images;
}

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

// Distance of the lattice planes across each axis tells how far along it dmax reaches; the margin
// is wider than the rounding of a coordinate difference.
VECTOR3 REACH_OF(const XTAL::CRYSTAL_CELL& cell, float dmax) {
  constexpr float margin = 1e-4f;
  VECTOR3 reach{};
  for (std::size_t k = 0; k < 3; ++k) reach[k] = dmax * cell.RCELL[k] * (1.0f + margin) + margin;
  return reach;
}

VECTOR3 LONGEST_CENTRING_OF(const XTAL::SPACE_GROUP& group) {
  VECTOR3 longest{};
  for (const VECTOR3& centring : group.LATT_TRANS)
    for (std::size_t k = 0; k < 3; ++k) longest[k] = std::max(longest[k], centring[k]);
  return longest;
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

// Boxes along one axis that hold all that lies within reach of x; they go on behind the last with
// the first.
struct BOX_RANGE {
  int FIRST = 0;
  int COUNT = 0;
};

BOX_RANGE BOXES_IN_REACH(float x, float reach, int boxes) {
  constexpr float margin = 1e-4f;  // more than the rounding of a coordinate
  const float half = std::max(reach, 0.0f) + margin;
  if (boxes == 1 || !(half < 0.5f)) return {0, boxes};
  const float n = static_cast<float>(boxes);
  // One cell further on, where cutting off the fraction rounds down.
  const int first = static_cast<int>((x - half + 1.0f) * n);
  const int last = static_cast<int>((x + half + 1.0f) * n);
  return {first < boxes ? first : first - boxes, std::min(last - first + 1, boxes)};
}

int WRAPPED(int box, int boxes) {
  return box < boxes ? box : box - boxes;
}

// Whether the image comes within reach of x along every axis, in whatever cell.
bool WITHIN_REACH(const VECTOR3& image, const VECTOR3& x, const VECTOR3& reach) {
  for (std::size_t k = 0; k < 3; ++k) {
    const float apart = std::abs(image[k] - x[k]);
    if (std::min(apart, 1.0f - apart) > reach[k]) return false;
  }
  return true;
}

// Appends what one box holds within reach of x.
void ADD_FROM_BOX(const ATOM_IMAGES& images, int box, const VECTOR3& x, const VECTOR3& reach,
                  std::vector<int>& near) {
  const auto start = images.BOX_START.begin() + box;
  for (int at = start[0]; at < start[1]; ++at) {
    const int i = images.BOXED[static_cast<std::size_t>(at)];
    if (WITHIN_REACH(images.IMAGES[static_cast<std::size_t>(i)].X, x, reach)) near.push_back(i);
  }
}

// Appends what the boxes near x hold within reach of it.
void ADD_FROM_BOXES(const ATOM_IMAGES& images, const VECTOR3& x, const VECTOR3& reach,
                    std::vector<int>& near) {
  const std::array<int, 3>& n = images.BOXES;
  std::array<BOX_RANGE, 3> r;
  for (std::size_t k = 0; k < 3; ++k) r[k] = BOXES_IN_REACH(x[k], reach[k], n[k]);
  for (int i = 0; i < r[0].COUNT; ++i)
    for (int j = 0; j < r[1].COUNT; ++j)
      for (int k = 0; k < r[2].COUNT; ++k)
        ADD_FROM_BOX(images,
                     BOX_NUMBER(images, WRAPPED(r[0].FIRST + i, n[0]),
                                WRAPPED(r[1].FIRST + j, n[1]), WRAPPED(r[2].FIRST + k, n[2])),
                     x, reach, near);
}

// Positions of the images that can come into reach, in the order of discovery.
std::vector<int> IMAGES_IN_REACH(const SEARCH& search, const ATOM_IMAGES& images) {
  std::vector<int> near;
  near.reserve(MAX_BONDS);
  for (const VECTOR3& centring : search.PHASE.SPG.LATT_TRANS)
    ADD_FROM_BOXES(images, XTAL::MODULO_LAT(XTAL::SUBTRACT(search.ORIGIN, centring)), search.REACH,
                   near);
  // Every centring vector can bring the same image into reach.
  std::sort(near.begin(), near.end());
  near.erase(std::unique(near.begin(), near.end()), near.end());
  return near;
}

}  // namespace

void DISTANCE_ARRAY(const ATOM_IMAGES& images, const VECTOR3& x_frac, float dmin, float dmax,
                    int& count, NEIGHBOUR_TABLE& table, std::string_view options) {
  count = 0;
  table.ASSIGN(MAX_BONDS);
  if (!IS_FINITE(x_frac) || NOTNUM(dmin) || NOTNUM(dmax)) return;
  SEARCH search{images.PHASE, x_frac, dmin, dmax};
  if (INDEXALL(options, "OMIT") > 0) search.LOWEST_USE = ATOM_OMITTED;
  search.EVERY_OPERATOR = INDEXALL(options, "FINDOPS") > 0;
  search.REACH = REACH_OF(images.PHASE.CELL, dmax);
  search.LONGEST_CENTRING = LONGEST_CENTRING_OF(images.PHASE.SPG);
  if (!search.EVERY_OPERATOR) search.ORIGIN = XTAL::MODULO_LAT(x_frac);
  for (int i : IMAGES_IN_REACH(search, images))
    if (!CONSIDER_COPIES(search, images.IMAGES[static_cast<std::size_t>(i)], count, table)) return;
}

void DISTANCE_ARRAY(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x_frac, float dmin,
                    float dmax, int& count, NEIGHBOUR_TABLE& table, std::string_view options) {
  DISTANCE_ARRAY(IMAGES_OF(phase), x_frac, dmin, dmax, count, table, options);
}

// ---- an atom by position or name ----

namespace {

std::string COORDINATE_TEXT(const VECTOR3& x_frac) {
  std::string text;
  for (float x : x_frac) text += KVA_UTILITIES::REAL_COLUMNS(x, 10, 5);
  return text;
}

}  // namespace

FOUND_ATOM FIND_ATOM(const ATOM_IMAGES& images, const VECTOR3& x_frac, std::string_view options,
                     float dmax) {
  constexpr float at_the_point = -0.1f;  // a minimum that lets an atom at distance 0 in
  const std::string_view search_options = INDEXALL(options, "OMIT") > 0 ? "OMIT" : "";
  INIT_ERR_KVASTRUCTURES();
  int count = 0;
  NEIGHBOUR_TABLE table;
  DISTANCE_ARRAY(images, x_frac, at_the_point, dmax, count, table, search_options);
  FOUND_ATOM found;
  if (count == 0) {
    SET_ERR_KVASTRUCTURES("No atom found near to xyz =" + COORDINATE_TEXT(x_frac) + " in block " +
                          images.PHASE.BLOCK_TITLE);
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
