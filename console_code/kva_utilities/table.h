// 1-based tables, and the named columns' way in: A(i), A(i, j). Calculates nothing.
#pragma once

#include <array>
#include <cstddef>  // std::size_t
#include <cstdlib>  // std::abort
#include <memory>   // std::shared_ptr
#include <utility>  // std::move
#include <vector>

namespace KVA_UTILITIES {

// Index tests are made in every build but Release.
#ifdef NDEBUG
inline constexpr bool BOUNDS_CHECKED = false;
#else
inline constexpr bool BOUNDS_CHECKED = true;
#endif

// Position in storage of the 1-based index i of n; ends a checked build when i lies outside.
constexpr std::size_t POSITION(int i, std::size_t n) {
  const auto position = static_cast<std::size_t>(i - 1);
  if (BOUNDS_CHECKED && position >= n) std::abort();
  return position;
}

// Growable list, numbered from 1.
template <class T>
struct LIST {
  std::vector<T> ITEMS;

  T& operator()(int i) { return ITEMS[POSITION(i, ITEMS.size())]; }
  const T& operator()(int i) const { return ITEMS[POSITION(i, ITEMS.size())]; }
  int COUNT() const { return static_cast<int>(ITEMS.size()); }
  void RESIZE(int n) { ITEMS.resize(static_cast<std::size_t>(n)); }
  void ASSIGN(int n, const T& value) { ITEMS.assign(static_cast<std::size_t>(n), value); }
  void ADD(const T& value) { ITEMS.push_back(value); }
  void ADD(T&& value) { ITEMS.push_back(std::move(value)); }
  void CLEAR() { ITEMS.clear(); }
  auto begin() { return ITEMS.begin(); }
  auto end() { return ITEMS.end(); }
  auto begin() const { return ITEMS.begin(); }
  auto end() const { return ITEMS.end(); }
};

// List that stays as it was made and is held once by all copies of it, numbered from 1. A new list
// is assigned whole.
template <class T>
struct SHARED_LIST {
  std::shared_ptr<const std::vector<T>> HELD;  // blank while the list is empty
  inline static const std::vector<T> NONE{};

  SHARED_LIST() = default;
  SHARED_LIST(std::vector<T> items)
      : HELD(std::make_shared<const std::vector<T>>(std::move(items))) {}

  const std::vector<T>& ITEMS() const { return HELD ? *HELD : NONE; }
  const T& operator()(int i) const { return ITEMS()[POSITION(i, ITEMS().size())]; }
  int COUNT() const { return static_cast<int>(ITEMS().size()); }
  auto begin() const { return ITEMS().begin(); }
  auto end() const { return ITEMS().end(); }
};

// vector<bool> has no T&; flags are kept as ints that hold 0 or 1.
using FLAGS = LIST<int>;

// Array of fixed size N, numbered from 1.
template <class T, int N>
struct ROW {
  std::array<T, static_cast<std::size_t>(N)> ITEMS{};

  constexpr T& operator()(int i) { return ITEMS[POSITION(i, ITEMS.size())]; }
  constexpr const T& operator()(int i) const { return ITEMS[POSITION(i, ITEMS.size())]; }
  static constexpr int COUNT() { return N; }
  constexpr void FILL(const T& value) { ITEMS.fill(value); }
  auto begin() { return ITEMS.begin(); }
  auto end() { return ITEMS.end(); }
  auto begin() const { return ITEMS.begin(); }
  auto end() const { return ITEMS.end(); }
};

// N neighbouring columns of a row as a vector, and a vector put into them.
template <std::size_t N, int NCOL>
constexpr std::array<float, N> VECTOR_AT(const ROW<float, NCOL>& row, int first_column) {
  std::array<float, N> v{};
  for (float& component : v) component = row(first_column++);
  return v;
}
template <std::size_t N, int NCOL>
constexpr void PUT_VECTOR(ROW<float, NCOL>& row, int first_column, const std::array<float, N>& v) {
  for (float component : v) row(first_column++) = component;
}

// Rows of NCOL columns each, A(i) and A(i, column), both from 1.
template <class T, int NCOL>
struct TABLE {
  std::vector<ROW<T, NCOL>> ROWS;

  ROW<T, NCOL>& operator()(int i) { return ROWS[POSITION(i, ROWS.size())]; }
  const ROW<T, NCOL>& operator()(int i) const { return ROWS[POSITION(i, ROWS.size())]; }
  T& operator()(int i, int column) { return ROWS[POSITION(i, ROWS.size())](column); }
  const T& operator()(int i, int column) const { return ROWS[POSITION(i, ROWS.size())](column); }
  int COUNT() const { return static_cast<int>(ROWS.size()); }
  void ASSIGN(int n) { ROWS.assign(static_cast<std::size_t>(n), ROW<T, NCOL>{}); }
};

}  // namespace KVA_UTILITIES
