// Upkeep of the phase record: initial values, room for atoms, copies, cleaning.
#include "src/kva_crystal_structures/records.h"

#include <algorithm>  // for max
#include <exception>
#include <numeric>  // for accumulate

#include "console_code/kva_utilities/text.h"
#include "src/kva_crystal_structures/shared_sites.h"

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

ROW<float, BOND_COLUMNS>& BOND_TABLE::ROW_OF(int i, int j) {
  auto& rows = CENTRES(i);
  const std::size_t row = KVA_UTILITIES::POSITION(j, MAX_BONDS);
  if (row >= rows.size()) rows.resize(row + 1);
  return rows[row];
}

float& BOND_TABLE::operator()(int i, int j, int column) {
  return ROW_OF(i, j)(column);
}

void BOND_TABLE::ASSIGN(int n) {
  CENTRES.ASSIGN(n, {});
}

void BOND_TABLE::MAKE_ROOM(int i, int n) {
  CENTRES(i).reserve(static_cast<std::size_t>(n));
}

int BOND_TABLE::ROWS_OF(int i) const {
  return static_cast<int>(CENTRES(i).size());
}

void BOND_TABLE::CLEAR_ROW(int i, int j) {
  ROW_OF(i, j).FILL(0.0f);
}

int BOND_TABLE::CENTRE(int i, int j) const {
  return static_cast<int>((*this)(i, j, BOND_CENTRE));
}

int BOND_TABLE::LIGAND(int i, int j) const {
  return static_cast<int>((*this)(i, j, BOND_LIGAND));
}

int BOND_TABLE::OPERATOR(int i, int j) const {
  return static_cast<int>((*this)(i, j, BOND_OPERATOR));
}

VECTOR3 BOND_TABLE::VECTOR(int i, int j) const {
  return KVA_UTILITIES::VECTOR_AT<3>(ROW_OF(i, j), BOND_VECTOR_X);
}

void BOND_TABLE::PUT_VECTOR(int i, int j, const VECTOR3& v) {
  KVA_UTILITIES::PUT_VECTOR(ROW_OF(i, j), BOND_VECTOR_X, v);
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

ROW<float, ANGLE_COLUMNS>& ANGLE_TABLE::ROW_OF(int i, int j, int k) {
  auto& rows = CENTRES(i);
  const std::size_t row = KVA_UTILITIES::POSITION(static_cast<int>(PAIR_ROW(j, k)) + 1,
                                                  MAX_BONDS * (MAX_BONDS - 1) / 2);
  if (row >= rows.size()) {
    rows.reserve(PAIR_ROW(k, k + 1));  // all pairs of k with those before it
    rows.resize(row + 1);
  }
  return rows[row];
}

float& ANGLE_TABLE::operator()(int i, int j, int k, int column) {
  return ROW_OF(i, j, k)(column);
}

void ANGLE_TABLE::ASSIGN(int n) {
  CENTRES.ASSIGN(n, {});
}

const std::string& TEXT_PAIRS::operator()(int pair, int column) const {
  static const ROW<std::string, 2> blank;
  return pair <= ITEMS.COUNT() ? ITEMS(pair)(column) : blank(column);
}

std::string& TEXT_PAIRS::operator()(int pair, int column) {
  const auto row = static_cast<int>(KVA_UTILITIES::POSITION(pair, PAIRS)) + 1;
  if (row > ITEMS.COUNT()) ITEMS.RESIZE(row);
  return ITEMS(row)(column);
}

// ---- one record ----

int CAPACITY(const CRYSTAL_STRUCTURE_TYPE& phase) {
  return phase.ATOM.COUNT();
}

namespace {

// A table of n rows that takes no more memory than these, whatever it held.
template <class TABLE, class... VALUE>
void ALLOCATE(TABLE& table, int n, const VALUE&... value) {
  table = {};
  table.ASSIGN(n, value...);
}

// Room for n atoms, with empty results.
void ALLOCATE_TABLES(CRYSTAL_STRUCTURE_TYPE& phase, int n) {
  ALLOCATE(phase.ATOM_USE, n, ATOM_OMITTED);
  ALLOCATE(phase.ATOM_DUP, n);
  ALLOCATE(phase.NBONDS, n, 0);
  ALLOCATE(phase.BONDS, n);
  ALLOCATE(phase.BOND_CEN, n);
  ALLOCATE(phase.NANGLES, n, 0);
  ALLOCATE(phase.BANGLES, n);
  ALLOCATE(phase.POLYHEDRON, n);
}

CRYSTAL_STRUCTURE_TYPE EMPTY_RECORD() {
  CRYSTAL_STRUCTURE_TYPE phase;
  XTAL::SET_CELL_RECORD({10.0f, 10.0f, 10.0f}, {90.0f, 90.0f, 90.0f}, phase.CELL, " ");
  XTAL::SET_SPACEGROUP("P1", phase.SPG);
  phase.ATOM.ASSIGN(START_CAPACITY, ATOM_TYPE{});
  ALLOCATE_TABLES(phase, START_CAPACITY);
  phase.PT.ASSIGN(PT_ROWS);
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
  phase.ATOM.ITEMS.shrink_to_fit();
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

int CENTRE_NUMBER(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  return static_cast<int>(phase.BOND_CEN(i, CENTRE_ATOM));
}

VECTOR3 CENTRE_POSITION(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  return KVA_UTILITIES::VECTOR_AT<3>(phase.BOND_CEN(i), CENTRE_X);
}

void SET_CENTRE(CRYSTAL_STRUCTURE_TYPE& phase, int i, int atom, const VECTOR3& x_frac) {
  phase.BOND_CEN(i, CENTRE_ATOM) = static_cast<float>(atom);
  KVA_UTILITIES::PUT_VECTOR(phase.BOND_CEN(i), CENTRE_X, x_frac);
}

int SUM_NBONDS(const CRYSTAL_STRUCTURE_TYPE& phase) {
  return std::accumulate(phase.NBONDS.begin(), phase.NBONDS.end(), 0);
}

}  // namespace KVA_CRYSTAL_STRUCTURES
