// Looking up a data name: a table by hash, made at compile time.
#include "cifcode/cif_full/names.h"

#include <cstdint>

namespace KVA_CIFFULL {

namespace {

consteval bool ROWS_STAND_BY_FIELD() {
  for (std::size_t i = 1; i < NAMES.size(); ++i)
    if (NAMES[i].FILLS < NAMES[i - 1].FILLS) return false;
  return true;
}
static_assert(ROWS_STAND_BY_FIELD(), "the names of a field stand together");

// ---- names as they are compared ----

constexpr char PLAIN(char c) {
  if (c >= 'A' && c <= 'Z') return static_cast<char>(c + ('a' - 'A'));
  return c == '.' ? '_' : c;
}

// G. Fowler, L. C. Noll, K.-P. Vo: FNV-1a.
constexpr std::uint32_t HASH(std::string_view name) {
  std::uint32_t hash = 2166136261U;
  for (char c : name) hash = (hash ^ static_cast<unsigned char>(PLAIN(c))) * 16777619U;
  return hash;
}

constexpr bool SAME_NAME(std::string_view name, std::string_view row) {
  if (name.size() != row.size()) return false;
  for (std::size_t i = 0; i < name.size(); ++i)
    if (PLAIN(name[i]) != row[i]) return false;
  return true;
}

// ---- the table ----

constexpr std::size_t slots = 256;
using SLOTS = std::array<short, slots>;  // numbers of rows, NO_NAME when empty

consteval SLOTS FILLED_SLOTS() {
  SLOTS table{};
  table.fill(NO_NAME);
  for (std::size_t row = 0; row < NAMES.size(); ++row) {
    std::size_t slot = HASH(NAMES[row].NAME) % slots;
    while (table[slot] != NO_NAME) slot = (slot + 1) % slots;
    table[slot] = static_cast<short>(row);
  }
  return table;
}

constexpr SLOTS name_slots = FILLED_SLOTS();

consteval std::array<NAME_RANGE, FIELD_COUNT> RANGES() {
  std::array<NAME_RANGE, FIELD_COUNT> ranges{};
  for (int row = 0; row < NAME_COUNT; ++row) {
    NAME_RANGE& range = ranges[NAMES[static_cast<std::size_t>(row)].FILLS];
    if (range.END == 0) range.FIRST = row;
    range.END = row + 1;
  }
  return ranges;
}

constexpr std::array<NAME_RANGE, FIELD_COUNT> name_ranges = RANGES();

constexpr std::size_t LONGEST_NAME() {
  std::size_t longest = 0;
  for (const NAME_ROW& row : NAMES) longest = row.NAME.size() > longest ? row.NAME.size() : longest;
  return longest;
}

}  // namespace

int NAME_NUMBER(std::string_view name) {
  if (name.size() > LONGEST_NAME()) return NO_NAME;
  for (std::size_t slot = HASH(name) % slots; name_slots[slot] != NO_NAME;
       slot = (slot + 1) % slots) {
    const int number = name_slots[slot];
    if (SAME_NAME(name, NAMES[static_cast<std::size_t>(number)].NAME)) return number;
  }
  return NO_NAME;
}

NAME_RANGE NAMES_OF(FIELD field) {
  return name_ranges[field];
}

}  // namespace KVA_CIFFULL
