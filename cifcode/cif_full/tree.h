// The blocks of a CIF one after the other, each as its items and loops, as far as a structure needs
// them. The memory of a block serves the next one.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "cifcode/cif_full/names.h"
#include "cifcode/cif_full/tokens.h"

namespace KVA_CIFFULL {

// A value where it stands in the file.
struct VALUE {
  const char* FIRST = nullptr;
  std::uint32_t SIZE = 0;
  TOKEN KIND = TOKEN::BARE;

  std::string_view TEXT() const { return {FIRST, SIZE}; }
};

// Whether the value says that there is none: ? or . without quotes. Lists say nothing either.
bool IS_NULL(const VALUE& value);

// Values of one name, row by row; rows of a loop lie STRIDE values apart.
struct COLUMN {
  const VALUE* FIRST = nullptr;
  std::size_t STRIDE = 0;
  int ROWS = 0;
  int LOOP = -1;  // number of the loop, the same for all columns of one; -1 outside loops

  const VALUE& operator()(int row) const {
    return FIRST[static_cast<std::size_t>(row - 1) * STRIDE];
  }
};

// Where a name stands in a block.
struct PLACE {
  int LOOP = -1;  // number of its loop, from 0; -1 for an item outside loops
  int SLOT = -1;  // its place among the loop's values that are kept, or among ITEMS; -1: absent
};

struct ITEM {
  VALUE VALUE_;
  // Bare words behind it on its line: one for a name that takes a unit, all for a symbol.
  std::string_view BEHIND;
};

struct LOOP {
  std::size_t FIRST = 0;   // its first value in VALUES
  std::size_t STRIDE = 0;  // columns that are kept
  int ROWS = 0;
  std::array<std::int8_t, NAME_COUNT> SLOTS{};  // place of each name among the columns, or -1
};

struct BLOCK {
  std::string_view NAME;
  const char* AT = nullptr;  // its first byte
  const char* END = nullptr;
  bool NAMELESS = false;  // the names before the first data_
  std::vector<ITEM> ITEMS;
  std::vector<LOOP> LOOPS;
  std::vector<VALUE> VALUES;
  std::array<PLACE, NAME_COUNT> PLACES;
  FAULTS FOUND;
};

// A file as it is read block by block.
struct READER {
  TOKENS SOURCE;
  TOKEN AHEAD = TOKEN::END;  // the word that has been read but belongs to what follows
  std::string_view AHEAD_TEXT;
};

READER READER_OF(std::string_view bytes);

// The next block with anything in it; false at the end of the file. What is before the first data_
// is a block without a name, and so is global_.
bool NEXT_BLOCK(READER& reader, BLOCK& block);

// The values of a name, without rows when it is absent.
COLUMN COLUMN_OF(const BLOCK& block, int name);

// The values of the first name of the field that stands in the loop (-1: outside loops).
COLUMN COLUMN_OF(const BLOCK& block, FIELD field, int loop);

// Loop of the first name of the field that stands anywhere; LOOP -1 and SLOT -1 without any.
PLACE PLACE_OF(const BLOCK& block, FIELD field);

}  // namespace KVA_CIFFULL
