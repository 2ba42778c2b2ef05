// Texts that lie packed, and their counts.
#include "console_code/kva_utilities/text_list.h"

#include <functional>  // for hash

namespace KVA_UTILITIES {

void ADD_TEXT(std::string_view text, TEXT_LIST& list) {
  list.BYTES += text;
  list.ENDS.push_back(list.BYTES.size());
}

std::string_view TEXT_AT(const TEXT_LIST& list, std::size_t k) {
  const std::size_t start = k == 0 ? 0 : list.ENDS[k - 1];
  return std::string_view(list.BYTES).substr(start, list.ENDS[k] - start);
}

namespace {

// The slots are a power of two in number, and at least half of them are free.
constexpr std::size_t first_slots = 64;

std::size_t NEXT_SLOT(std::size_t slot, const TEXT_COUNTS& counts) {
  return (slot + 1) & (counts.SLOTS.size() - 1);
}

std::size_t FIRST_SLOT(std::uint32_t hash, const TEXT_COUNTS& counts) {
  return hash & (counts.SLOTS.size() - 1);
}

void MAKE_SLOTS(TEXT_COUNTS& counts) {
  if (2 * counts.HASHES.size() < counts.SLOTS.size()) return;
  counts.SLOTS.assign(counts.SLOTS.empty() ? first_slots : 2 * counts.SLOTS.size(), 0);
  for (std::size_t k = 0; k < counts.HASHES.size(); ++k) {
    std::size_t slot = FIRST_SLOT(counts.HASHES[k], counts);
    while (counts.SLOTS[slot] != 0) slot = NEXT_SLOT(slot, counts);
    counts.SLOTS[slot] = static_cast<std::uint32_t>(k + 1);
  }
}

}  // namespace

std::size_t FIND_OR_ADD(std::string_view text, TEXT_COUNTS& counts) {
  MAKE_SLOTS(counts);
  const auto hash = static_cast<std::uint32_t>(std::hash<std::string_view>{}(text));
  std::size_t slot = FIRST_SLOT(hash, counts);
  for (; counts.SLOTS[slot] != 0; slot = NEXT_SLOT(slot, counts)) {
    const std::size_t k = counts.SLOTS[slot] - 1;
    if (counts.HASHES[k] == hash && TEXT_AT(counts.TEXTS, k) == text) return k;
  }
  ADD_TEXT(text, counts.TEXTS);
  counts.COUNTS.push_back(0);
  counts.HASHES.push_back(hash);
  counts.SLOTS[slot] = static_cast<std::uint32_t>(counts.HASHES.size());
  return counts.HASHES.size() - 1;
}

}  // namespace KVA_UTILITIES
