// Many texts in a few large pieces of memory, which are let go at once: a million texts of their
// own take as long to be let go as to be made, in one stretch. Prints nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace KVA_UTILITIES {

// Texts one behind the other, counted from 0.
struct TEXT_LIST {
  std::string BYTES;
  std::vector<std::size_t> ENDS;  // of the texts in BYTES
};
void ADD_TEXT(std::string_view text, TEXT_LIST& list);
// Stays as long as nothing is added.
std::string_view TEXT_AT(const TEXT_LIST& list, std::size_t k);

// Texts that differ, each with a count.
struct TEXT_COUNTS {
  TEXT_LIST TEXTS;
  std::vector<int> COUNTS;  // of the texts
  std::vector<std::uint32_t> HASHES;
  std::vector<std::uint32_t> SLOTS;  // where a hash leads: number of a text, from 1; 0: none yet
};
// The number of the text, from 0; a new one is added with the count 0.
std::size_t FIND_OR_ADD(std::string_view text, TEXT_COUNTS& counts);

}  // namespace KVA_UTILITIES
