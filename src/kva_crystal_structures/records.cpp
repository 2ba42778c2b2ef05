// Upkeep of the phase record: initial values, room for atoms, copies, cleaning.
#include "src/kva_crystal_structures/records.h"

#include <algorithm>  // for lower_bound, max, sort
#include <cmath>      // for abs, isfinite
#include <exception>
#include <numeric>  // for accumulate
#include <utility>  // for pair

#include "console_code/kva_utilities/text.h"

namespace KVA_CRYSTAL_STRUCTURES {

// ---- error state ----

namespace {
constexpr int message_length = 256;
}

void INIT_ERR_KVASTRUCTURES() {
  ERR_KVASTRUCTURES = false;
  ERR_KVASTRUCTURES_MESS.clear();
  WARN_KVASTRUCTURES = false;
  WARN_KVASTRUCTURES_MESS.clear();
}

void SET_ERR_KVASTRUCTURES(const std::string& text) {
  ERR_KVASTRUCTURES = true;
  ERR_KVASTRUCTURES_MESS = KVA_UTILITIES::CUT_TEXT(text, message_length);
}

void SET_WARN_KVASTRUCTURES(const std::string& text) {
  WARN_KVASTRUCTURES = true;
  WARN_KVASTRUCTURES_MESS = KVA_UTILITIES::CUT_TEXT(text, message_length);
}

// ---- tables ----

float BOND_TABLE::operator()(int i, int j, int column) const {
  const auto& rows = CENTRES(i);
  const auto row = static_cast<std::size_t>(j - 1);
  return row < rows.size() ? rows[row](column) : 0.0f;
}

float& BOND_TABLE::operator()(int i, int j, int column) {
  auto& rows = CENTRES(i);
  const std::size_t row = KVA_UTILITIES::POSITION(j, MAX_BONDS);
  if (row >= rows.size()) rows.resize(row + 1);
  return rows[row](column);
}

void BOND_TABLE::ASSIGN(int n) {
  CENTRES.ASSIGN(n, {});
}

void BOND_TABLE::CLEAR_ROW(int i, int j) {
  auto& rows = CENTRES(i);
  const auto row = static_cast<std::size_t>(j - 1);
  if (row < rows.size()) rows[row].FILL(0.0f);
}

VECTOR3 BOND_TABLE::VECTOR(int i, int j) const {
  return {(*this)(i, j, BOND_VECTOR_X), (*this)(i, j, BOND_VECTOR_Y), (*this)(i, j, BOND_VECTOR_Z)};
}

namespace {

// Row of the pair j < k among all pairs of a centre: (1,2), (1,3), (2,3), (1,4), ...
std::size_t PAIR_ROW(int j, int k) {
  return static_cast<std::size_t>((k - 1) * (k - 2) / 2 + j - 1);
}

}  // namespace

float ANGLE_TABLE::operator()(int i, int j, int k, int column) const {
  const auto& rows = CENTRES(i);
  if (j < 1 || k <= j) return 0.0f;
  const std::size_t row = PAIR_ROW(j, k);
  return row < rows.size() ? rows[row](column) : 0.0f;
}

float& ANGLE_TABLE::operator()(int i, int j, int k, int column) {
  auto& rows = CENTRES(i);
  const std::size_t row = KVA_UTILITIES::POSITION(static_cast<int>(PAIR_ROW(j, k)) + 1,
                                                  MAX_BONDS * (MAX_BONDS - 1) / 2);
  if (row >= rows.size()) rows.resize(row + 1);
  return rows[row](column);
}

void ANGLE_TABLE::ASSIGN(int n) {
  CENTRES.ASSIGN(n, {});
}

// ---- one record ----

int CAPACITY(const CRYSTAL_STRUCTURE_TYPE& phase) {
  return phase.ATOM.COUNT();
}

namespace {

// Room for n atoms, with empty results.
void ALLOCATE_TABLES(CRYSTAL_STRUCTURE_TYPE& phase, int n) {
  phase.ATOM_USE.ASSIGN(n, ATOM_OMITTED);
  phase.ATOM_DUP.ASSIGN(n);
  phase.NBONDS.ASSIGN(n, 0);
  phase.BONDS.ASSIGN(n);
  phase.BOND_CEN.ASSIGN(n);
  phase.NANGLES.ASSIGN(n, 0);
  phase.BANGLES.ASSIGN(n);
  phase.POLYHEDRON.ASSIGN(n);
}

// Puts atom j on the list of the duplicates of atom i, if there is room.
void NOTE_DUPLICATE(CRYSTAL_STRUCTURE_TYPE& phase, int i, int j) {
  phase.ATOM_USE(j) = -i;
  for (int slot = 1; slot <= MAX_DUPLICATES; ++slot) {
    if (phase.ATOM_DUP(i, slot) != 0) continue;
    phase.ATOM_DUP(i, slot) = j;
    return;
  }
}

// Atoms by their place along x, without those that have none.
using ATOMS_ALONG_X = std::vector<std::pair<float, int>>;

ATOMS_ALONG_X SORTED_ALONG_X(const CRYSTAL_STRUCTURE_TYPE& phase) {
  ATOMS_ALONG_X along_x;
  for (int i = 1; i <= phase.NATOMS; ++i)
    if (std::isfinite(phase.ATOM(i).X[0])) along_x.emplace_back(phase.ATOM(i).X[0], i);
  std::sort(along_x.begin(), along_x.end());
  return along_x;
}

// Atoms behind atom i on its site, in order.
std::vector<int> ON_SITE_OF(const CRYSTAL_STRUCTURE_TYPE& phase, const ATOMS_ALONG_X& along_x,
                            const VECTOR3& reach, int i) {
  const VECTOR3& x = phase.ATOM(i).X;
  std::vector<int> behind;
  auto near = std::lower_bound(along_x.begin(), along_x.end(), std::pair(x[0] - reach[0], 0));
  for (; near != along_x.end() && near->first <= x[0] + reach[0]; ++near) {
    const int j = near->second;
    if (j <= i) continue;
    const VECTOR3& other = phase.ATOM(j).X;
    if (std::abs(other[1] - x[1]) > reach[1]) continue;
    if (XTAL::DISTANCE_FRAC(x, other, phase.CELL) < SAME_SITE) behind.push_back(j);
  }
  std::sort(behind.begin(), behind.end());
  return behind;
}

// Only atoms that follow each other along x, at nearly the same y, can share a site, so that not
// every pair is measured.
void MARK_DUPLICATES(CRYSTAL_STRUCTURE_TYPE& phase) {
  constexpr float margin = 1e-4f;  // more than the rounding of a coordinate difference
  VECTOR3 reach{};
  for (std::size_t k = 0; k < 3; ++k)
    reach[k] = SAME_SITE * phase.CELL.RCELL[k] * (1.0f + margin) + margin;
  const ATOMS_ALONG_X along_x = SORTED_ALONG_X(phase);
  for (int i = 1; i < phase.NATOMS; ++i) {
    if (phase.ATOM_USE(i) <= ATOM_OMITTED) continue;
    for (int j : ON_SITE_OF(phase, along_x, reach, i)) NOTE_DUPLICATE(phase, i, j);
  }
}

CRYSTAL_STRUCTURE_TYPE EMPTY_RECORD() {
  constexpr int metadata_pairs = 10;
  CRYSTAL_STRUCTURE_TYPE phase;
  XTAL::SET_CELL_RECORD({10.0f, 10.0f, 10.0f}, {90.0f, 90.0f, 90.0f}, phase.CELL, " ");
  XTAL::SET_SPACEGROUP("P1", phase.SPG);
  phase.ATOM.ASSIGN(START_CAPACITY, ATOM_TYPE{});
  ALLOCATE_TABLES(phase, START_CAPACITY);
  phase.PT.ASSIGN(PT_ROWS);
  phase.METADATA.ASSIGN(metadata_pairs);
  RAMAN::ALLOCATE_MODE_LIST(1, phase.MODE_LIST);
  phase.MODE_LIST.NMODES = 0;
  return phase;
}

}  // namespace

void INIT_CRYSTAL_STRUCTURE_TYPE(CRYSTAL_STRUCTURE_TYPE& phase) {
  static const CRYSTAL_STRUCTURE_TYPE empty = EMPTY_RECORD();
  phase = empty;
}

void INIT_CRYSTAL_STRUCTURE_LIST(STRUCTURE_LIST& list) {
  for (CRYSTAL_STRUCTURE_TYPE& phase : list) INIT_CRYSTAL_STRUCTURE_TYPE(phase);
}

void ALLOCATE_CRYSTAL_STRUCTURE_LIST(STRUCTURE_LIST& list, int n) {
  INIT_ERR_KVASTRUCTURES();
  if (n < 1) return SET_ERR_KVASTRUCTURES("Allocate_crystal_structurelist called with n < 1");
  list.CLEAR();
  try {
    list.RESIZE(n);
    INIT_CRYSTAL_STRUCTURE_LIST(list);
  } catch (const std::exception&) {  // no memory, or more than a vector can hold
    list.CLEAR();
    SET_ERR_KVASTRUCTURES("error allocating arrays in Allocate_crystal_structurelist");
  }
}

CRYSTAL_STRUCTURE_TYPE COPY_CRYSTAL_STRUCTURE(const CRYSTAL_STRUCTURE_TYPE& phase) {
  return phase;
}

void COPY_STRUCTURES_USED(const STRUCTURE_LIST& source, const LIST<int>& iuse,
                          const LIST<int>& isort, STRUCTURE_LIST& destination, int& count) {
  count = 0;
  for (int block : isort) {
    if (block < 1 || block > iuse.COUNT() || block > source.COUNT() || iuse(block) == 0) continue;
    ++count;
    if (count > destination.COUNT()) destination.RESIZE(count);
    destination(count) = COPY_CRYSTAL_STRUCTURE(source(block));
  }
}

void CLEAN_CRYSTAL_STRUCTURE_TYPE(CRYSTAL_STRUCTURE_TYPE& phase) {
  phase.ATOM_USE.ASSIGN(CAPACITY(phase), ATOM_OMITTED);
  for (int i = 1; i <= phase.NATOMS; ++i) {
    phase.ATOM(i).X = XTAL::MODULO_LAT(phase.ATOM(i).X);
    phase.ATOM_USE(i) = ATOM_USED;
    for (int slot = 1; slot <= MAX_DUPLICATES; ++slot) phase.ATOM_DUP(i, slot) = 0;
  }
  MARK_DUPLICATES(phase);
}

void EXPAND_NATOMS(CRYSTAL_STRUCTURE_TYPE& phase, int n) {
  const int wanted = n > 0 ? n : CAPACITY(phase);
  const int capacity = std::max(wanted, phase.NATOMS);
  phase.ATOM.RESIZE(capacity);
  ALLOCATE_TABLES(phase, capacity);
  CLEAN_CRYSTAL_STRUCTURE_TYPE(phase);
}

void CLEAR_GEOMETRY(CRYSTAL_STRUCTURE_TYPE& phase) {
  const int n = CAPACITY(phase);
  phase.NBONDS.ASSIGN(n, 0);
  phase.BONDS.ASSIGN(n);
  phase.NANGLES.ASSIGN(n, 0);
  phase.BANGLES.ASSIGN(n);
  phase.POLYHEDRON.ASSIGN(n);
}

VECTOR3 CENTRE_POSITION(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  return {phase.BOND_CEN(i, CENTRE_X), phase.BOND_CEN(i, CENTRE_Y), phase.BOND_CEN(i, CENTRE_Z)};
}

int SUM_NBONDS(const CRYSTAL_STRUCTURE_TYPE& phase) {
  return std::accumulate(phase.NBONDS.begin(), phase.NBONDS.end(), 0);
}

}  // namespace KVA_CRYSTAL_STRUCTURES
