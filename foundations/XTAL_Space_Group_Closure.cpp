// From generators to the sorted group: closing, centring, inversion, the order of the operators.
#include <algorithm>  // for all_of, any_of, find
#include <cmath>      // for round, abs
#include <cstdint>    // for uint64_t
#include <numeric>    // for gcd
#include <set>
#include <span>
#include <unordered_set>

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "foundations/XTAL_Space_Group_Parts.h"

namespace XTAL {

using namespace KVA_UTILITIES;

// ---- closing ----

namespace {

// Elements and translations as digits of one number.
struct HASH_OF_OP {
  std::size_t operator()(const EXACT_OP& op) const {
    std::uint64_t digits = 0;
    for (const auto& row : op.ROT)
      for (const int element : row) digits = 3U * digits + static_cast<unsigned>(element + 1);
    for (const int units : op.TR) digits = 31U * digits + static_cast<unsigned>(units);
    return static_cast<std::size_t>(digits);
  }
};

// The operators found so far, in order, with a quick way to ask for one.
struct GROUP_TABLE {
  std::vector<EXACT_OP> ORDER;
  std::unordered_set<EXACT_OP, HASH_OF_OP> KNOWN;
  std::vector<std::size_t> MULTIPLIED;  // for each row how many of its products are known

  // False when it is known.
  bool ADD(const EXACT_OP& op) {
    if (!KNOWN.insert(op).second) return false;
    ORDER.push_back(op);
    MULTIPLIED.push_back(0);
    return true;
  }
};

// Adds the products of all pairs, row by row; false when the group grows beyond every space group.
bool ADD_PRODUCTS(GROUP_TABLE& table) {
  for (std::size_t i = 0; i < table.ORDER.size(); ++i) {
    for (std::size_t j = table.MULTIPLIED[i]; j < table.ORDER.size(); ++j) {
      const EXACT_OP product = PRODUCT(table.ORDER[i], table.ORDER[j]);
      const bool is_new = table.ADD(product);
      if (is_new && (table.ORDER.size() > LARGEST_GROUP || ROTATION_TYPE(product.ROT) == 0))
        return false;
    }
    table.MULTIPLIED[i] = table.ORDER.size();
  }
  return true;
}

}  // namespace

std::vector<EXACT_OP> CLOSE_GROUP(const std::vector<EXACT_OP>& generators) {
  GROUP_TABLE table;
  table.ADD({IDENTITY, {}});
  for (const EXACT_OP& generator : generators) table.ADD(generator);
  const bool sensible = std::all_of(table.ORDER.begin(), table.ORDER.end(),
                                    [](const EXACT_OP& op) { return ROTATION_TYPE(op.ROT) != 0; });
  bool closed = false;
  while (sensible && !closed && table.ORDER.size() <= LARGEST_GROUP) {
    const std::size_t before = table.ORDER.size();
    if (!ADD_PRODUCTS(table)) break;
    closed = table.ORDER.size() == before;
  }
  if (closed) return table.ORDER;
  SET_ERR_SYMM("Dimension of Table exceeded (I)");
  return {};
}

// ---- sorting ----

namespace {

// The parts of a group.
struct SORTED_GROUP {
  std::vector<std::array<int, 3>> CENTRING{{0, 0, 0}};  // null vector first
  std::vector<EXACT_OP> REDUCED;
  bool CENTRIC = false;
  std::array<int, 3> INVERSION_TR{};  // translation of the inversion
};

// Notes an inversion; the one at the origin, if there is one, counts.
void NOTE_INVERSION(const std::array<int, 3>& tr, SORTED_GROUP& sorted) {
  if (!sorted.CENTRIC || tr == std::array<int, 3>{}) sorted.INVERSION_TR = tr;
  sorted.CENTRIC = true;
}

SORTED_GROUP SORT_GROUP(const std::vector<EXACT_OP>& operators) {
  SORTED_GROUP sorted;
  for (const EXACT_OP& op : operators) {
    if (op.ROT == IDENTITY && op.TR != std::array<int, 3>{}) sorted.CENTRING.push_back(op.TR);
    if (op.ROT == INVERSION) NOTE_INVERSION(op.TR, sorted);
  }
  std::set<IMATRIX3> classes;  // rotations that have a representative
  for (const EXACT_OP& op : operators) {
    const IMATRIX3 inverted = NEGATIVE(op.ROT);
    if (classes.contains(op.ROT) || (sorted.CENTRIC && classes.contains(inverted))) continue;
    classes.insert(op.ROT);
    sorted.REDUCED.push_back(op);
  }
  return sorted;
}

// ---- lattice ----

// Centring vectors in 24ths: of A, B and C, which together are those of F, of I, and of R.
constexpr std::array<std::array<int, 3>, 6> centrings{
    {{0, 12, 12}, {12, 0, 12}, {12, 12, 0}, {12, 12, 12}, {16, 8, 8}, {8, 16, 16}}};

consteval std::span<const std::array<int, 3>> CENTRINGS_FROM(std::size_t first, std::size_t count) {
  return std::span(centrings).subspan(first, count);
}

struct LATTICE {
  char LETTER;
  std::string_view WORDS;
  std::span<const std::array<int, 3>> VECTORS;  // besides the null vector
};

constexpr std::array<LATTICE, 7> lattices{{
    {'P', "primitive", {}},
    {'A', "A-face centred", CENTRINGS_FROM(0, 1)},
    {'B', "B-face centred", CENTRINGS_FROM(1, 1)},
    {'C', "C-face centred", CENTRINGS_FROM(2, 1)},
    {'I', "body centred", CENTRINGS_FROM(3, 1)},
    {'R', "rhombohedral, hexagonal axes", CENTRINGS_FROM(4, 2)},
    {'F', "all-face centred", CENTRINGS_FROM(0, 3)},
}};

std::array<int, 3> UNITS_OF_VECTOR(const std::array<int, 3>& in_24ths) {
  return {in_24ths[0] * UNITS_OF_24TH, in_24ths[1] * UNITS_OF_24TH, in_24ths[2] * UNITS_OF_24TH};
}

bool HAS_VECTORS(const LATTICE& lattice, const std::vector<std::array<int, 3>>& centring) {
  return centring.size() == lattice.VECTORS.size() + 1 &&
         std::all_of(lattice.VECTORS.begin(), lattice.VECTORS.end(), [&](const auto& vector) {
           return std::find(centring.begin(), centring.end(), UNITS_OF_VECTOR(vector)) !=
                  centring.end();
         });
}

void SET_LATTICE(const SORTED_GROUP& sorted, SPACE_GROUP& spacegroup) {
  spacegroup.NUMLAT = static_cast<int>(sorted.CENTRING.size());
  for (const auto& vector : sorted.CENTRING)
    spacegroup.LATT_TRANS.ADD(REAL_FROM({IDENTITY, vector}).TR);
  spacegroup.SPG_LAT = 'Z';
  spacegroup.BRAVAIS = "unconventional centring";
  for (const LATTICE& lattice : lattices)
    if (HAS_VECTORS(lattice, sorted.CENTRING)) {
      spacegroup.SPG_LAT = lattice.LETTER;
      spacegroup.BRAVAIS = lattice.WORDS;
    }
}

// ---- operator texts ----

// A translation as "+1/2", or with 4 decimals when it is no n/24.
std::string TRANSLATION_TEXT(int units) {
  if (units == 0) return "";
  if (units % UNITS_OF_24TH != 0) {
    const SYM_OP op = REAL_FROM({IDENTITY, {units, 0, 0}});
    return "+" + REAL_COLUMNS(op.TR[0], 6, 4);
  }
  const int in_24ths = units / UNITS_OF_24TH;
  const int divisor = std::gcd(in_24ths, 24);
  return "+" + INTEGER_COLUMNS(in_24ths / divisor) + "/" + INTEGER_COLUMNS(24 / divisor);
}

std::string FIELD_TEXT(const std::array<int, 3>& row, int units) {
  constexpr std::string_view axes = "xyz";
  std::string text;
  for (std::size_t k = 0; k < 3; ++k) {
    if (row[k] == 0) continue;
    if (row[k] < 0) text += '-';
    if (row[k] > 0 && !text.empty()) text += '+';
    if (std::abs(row[k]) > 1) text += INTEGER_COLUMNS(std::abs(row[k]));
    text += axes[k];
  }
  return text + TRANSLATION_TEXT(units);
}

std::string OPERATOR_TEXT(const EXACT_OP& op) {
  return FIELD_TEXT(op.ROT[0], op.TR[0]) + "," + FIELD_TEXT(op.ROT[1], op.TR[1]) + "," +
         FIELD_TEXT(op.ROT[2], op.TR[2]);
}

// ---- the list of operators ----

// Reduced operators, their inverted copies, and both again for each further centring vector.
std::vector<EXACT_OP> EXPANDED(const SORTED_GROUP& sorted) {
  std::vector<EXACT_OP> block = sorted.REDUCED;
  const EXACT_OP inversion{INVERSION, sorted.INVERSION_TR};
  if (sorted.CENTRIC)
    for (const EXACT_OP& op : sorted.REDUCED) block.push_back(PRODUCT(inversion, op));
  std::vector<EXACT_OP> all;
  for (const auto& vector : sorted.CENTRING)
    for (const EXACT_OP& op : block) all.push_back(PRODUCT({IDENTITY, vector}, op));
  return all;
}

void SET_INVERSION(const SORTED_GROUP& sorted, SPACE_GROUP& spacegroup) {
  constexpr int centre_off_origin = 0;
  constexpr int acentric = 1;
  constexpr int centre_at_origin = 2;
  spacegroup.CENTRED = acentric;
  if (!sorted.CENTRIC) return;
  const VECTOR3 tr = REAL_FROM({INVERSION, sorted.INVERSION_TR}).TR;
  spacegroup.CENTRED =
      sorted.INVERSION_TR == std::array<int, 3>{} ? centre_at_origin : centre_off_origin;
  for (std::size_t k = 0; k < 3; ++k) spacegroup.CENTRE_COORD[k] = 0.5f * tr[k];
}

}  // namespace

void SET_OPERATOR_LIST(const std::vector<EXACT_OP>& operators, SPACE_GROUP& spacegroup) {
  spacegroup.MULTIP = static_cast<int>(operators.size());
  std::vector<SYM_OP> reals;
  std::vector<std::string> texts;
  for (const EXACT_OP& op : operators) {
    reals.push_back(REAL_FROM(op));
    texts.push_back(OPERATOR_TEXT(op));
  }
  spacegroup.SYMOP = std::move(reals);
  spacegroup.SYMOPSYMB = std::move(texts);
}

bool FILL_FROM_OPERATORS(const std::vector<EXACT_OP>& operators, SPACE_GROUP& spacegroup) {
  if (operators.size() > LARGEST_GROUP) {
    SET_ERR_SYMM("Dimension of Table exceeded (II)");
    return false;
  }
  const SORTED_GROUP sorted = SORT_GROUP(operators);
  const std::vector<EXACT_OP> all = EXPANDED(sorted);
  if (all.size() != operators.size()) {
    SET_ERR_SYMM("Lattice Type couldn't be determined");
    return false;
  }
  SET_LATTICE(sorted, spacegroup);
  SET_INVERSION(sorted, spacegroup);
  spacegroup.NUMOPS = static_cast<int>(sorted.REDUCED.size());
  SET_OPERATOR_LIST(all, spacegroup);
  return true;
}

// ---- questions about a group ----

namespace {

constexpr float same_translation = 0.0004f;  // per component

// Differences of positions are small, so that a conversion does what rounding would.
bool IS_WHOLE(float component) {
  constexpr float largest_converted = 1e6f;
  if (!(std::abs(component) < largest_converted))
    return std::abs(component - std::round(component)) < same_translation;
  const float rest = std::abs(component - static_cast<float>(static_cast<int>(component)));
  return rest < same_translation || 1.0f - rest < same_translation;
}

bool IS_WHOLE(const VECTOR3& v) {
  return IS_WHOLE(v[0]) && IS_WHOLE(v[1]) && IS_WHOLE(v[2]);
}

}  // namespace

bool LATTICE_TRANS(const VECTOR3& v, char lat) {
  const char letter = U_CASE(std::string(1, lat))[0];
  for (const LATTICE& lattice : lattices) {
    if (lattice.LETTER != letter) continue;
    return IS_WHOLE(v) ||
           std::any_of(lattice.VECTORS.begin(), lattice.VECTORS.end(), [&v](const auto& vector) {
             return IS_WHOLE(SUBTRACT(v, REAL_FROM({IDENTITY, UNITS_OF_VECTOR(vector)}).TR));
           });
  }
  return letter == 'Z' && IS_WHOLE(v);
}

bool LATTICE_TRANS(const VECTOR3& v, const SPACE_GROUP& spacegroup) {
  return std::any_of(spacegroup.LATT_TRANS.begin(), spacegroup.LATT_TRANS.end(),
                     [&v](const VECTOR3& vector) {
                       return IS_WHOLE(v[0] - vector[0]) && IS_WHOLE(v[1] - vector[1]) &&
                              IS_WHOLE(v[2] - vector[2]);
                     });
}

namespace {

// A translation by whole cells that makes the difference vanish: at most one along each axis for a
// position in the cell, more for one outside.
bool FIND_TRANSLATION(const VECTOR3& difference, VECTOR3& translation) {
  constexpr float largest_sum = 0.0004f;  // of the absolute components that are left
  float sum = 0.0f;
  for (std::size_t k = 0; k < 3; ++k) {
    const float cells = -std::round(difference[k]);
    translation[k] = cells == 0.0f ? 0.0f : cells;
    sum += std::abs(difference[k] + cells);
    if (sum > largest_sum) return false;
  }
  return sum <= largest_sum;
}

}  // namespace

void GET_STABILIZER(const VECTOR3& x_frac, const SPACE_GROUP& spacegroup, int& order,
                    LIST<int>& ptr, LIST<VECTOR3>& atr) {
  order = 1;
  ptr.ASSIGN(1, 1);
  atr.ASSIGN(1, VECTOR3{});
  for (int i = 2; i <= spacegroup.MULTIP; ++i) {
    VECTOR3 translation{};
    const VECTOR3 difference = SUBTRACT(APPLY_OP(spacegroup.SYMOP(i), x_frac), x_frac);
    if (!FIND_TRANSLATION(difference, translation)) continue;
    ++order;
    ptr.ADD(i);
    atr.ADD(translation);
  }
}

bool SPGR_EQUAL(const SPACE_GROUP& spg1, const SPACE_GROUP& spg2) {
  if (spg1.MULTIP == 0 || spg1.MULTIP != spg2.MULTIP) return false;
  const std::set<std::string> texts(spg2.SYMOPSYMB.begin(), spg2.SYMOPSYMB.end());
  return std::all_of(spg1.SYMOPSYMB.begin(), spg1.SYMOPSYMB.end(),
                     [&texts](const std::string& text) { return texts.contains(text); });
}

}  // namespace XTAL
