// What the blocks of a CIF mean: cell, space group, sites and conditions of each structure in it.
// Prints nothing: what a user must be told is kept with the structure.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cifcode/cif_full/tree.h"
#include "src/kva_crystal_structures/records.h"

namespace KVA_CIFFULL {

using KVA_CRYSTAL_STRUCTURES::ATOM_TYPE;
using KVA_CRYSTAL_STRUCTURES::CRYSTAL_STRUCTURE_TYPE;
using KVA_UTILITIES::LIST;
using KVA_UTILITIES::VECTOR3;
using KVA_UTILITIES::VECTOR6;

// A number of the file with its esd; 0 and 0 where it gives none.
struct VALUE_STD {
  float VALUE = 0.0f;
  float STD = 0.0f;
};

enum class BLOCK_STATUS {
  READ,
  PASSED_OVER,  // no cell or no site in it
  NO_CELL       // sites, but no complete cell
};

// A space group with what is wrong with the words that it comes from. TELLING is blank when
// nothing is; it does not name the block.
struct SYMMETRY {
  XTAL::SPACE_GROUP GROUP;
  std::string TELLING;
};

// One block as it was read.
struct STRUCTURE {
  BLOCK_STATUS STATUS = BLOCK_STATUS::PASSED_OVER;
  std::string_view MISSING;       // no cell, as a "length" or "angle" is missing or cannot be read
  std::string_view TITLE;         // part of the file
  std::string_view BYTES;         // of the block
  bool HAS_MODES = false;         // there is a loop of vibrational modes
  XTAL::CRYSTAL_CELL CELL;        // with the esds of the six parameters
  VALUE_STD VOLUME;               // as the file gives it, cubic angstroms
  VALUE_STD T;                    // K
  VALUE_STD P;                    // GPa
  const SYMMETRY* SPG = nullptr;  // lives until the next block is read
  LIST<ATOM_TYPE> ATOMS;
  std::vector<std::string> TELLINGS;  // one a kind, without the block
};

// The words of a block about its symmetry, and the group that they gave.
struct KNOWN_SYMMETRY {
  std::vector<std::string> OPERATORS;
  std::string HALL;
  std::string HM;
  std::string NUMBER;
  std::string SETTING;
  bool RHOMBOHEDRAL = false;  // of the cell
  SYMMETRY RESULT;

  bool SAME_WORDS(const KNOWN_SYMMETRY& other) const;
};

// An element text that has been met, and what it stands for.
struct KNOWN_ELEMENT {
  std::string TEXT;
  std::string CHEMSYMB;  // blank when it names none
  int Z = 0;
};

// A file as its structures are read one by one. What blocks have in common is worked out once.
struct STRUCTURE_READER {
  READER SOURCE;
  BLOCK TREE;
  std::optional<KNOWN_SYMMETRY> LAST_SYMMETRY;
  std::vector<KNOWN_ELEMENT> ELEMENTS;
};

// bytes is the whole file and must outlive the reader.
STRUCTURE_READER STRUCTURES_OF(std::string_view bytes);

// The next block, read or not; false at the end of the file.
bool NEXT_STRUCTURE(STRUCTURE_READER& reader, STRUCTURE& structure);

// ---- parts of the reading, each of one block ----

// A number with its esd, a fraction such as 1/3 included. A broken esd, as in 0.333(, is none.
enum class NUMBER_FOUND { YES, WITH_BROKEN_ESD, NONE };
NUMBER_FOUND READ_NUMBER(std::string_view text, VALUE_STD& number);

// The first value of the field that says something, without blanks around it; blank without one.
std::string_view FIRST_TEXT(const BLOCK& block, FIELD field);

// The bare words behind that value on its line, where the field keeps them; blank without any.
std::string_view WORDS_BEHIND(const BLOCK& block, FIELD field);

// The group of the block; structure has its cell already.
const SYMMETRY& READ_SYMMETRY(const BLOCK& block, const XTAL::CRYSTAL_CELL& cell,
                              std::optional<KNOWN_SYMMETRY>& last);

// Whether the group's operators leave the cell's metric unchanged, to half a percent.
bool METRIC_FITS(const XTAL::SPACE_GROUP& group, const XTAL::CRYSTAL_CELL& cell);

// Sites, elements, charges and displacements into the structure.
void READ_SITES(const BLOCK& block, std::vector<KNOWN_ELEMENT>& elements, STRUCTURE& structure);

// Where a record that the plain reader made differs from the structure: "another cell, 4 sites (not
// 3)", or blank. same_group tells whether both are known to have one space group.
std::string DIFFERENCES(const STRUCTURE& structure, const CRYSTAL_STRUCTURE_TYPE& plain,
                        bool same_group);

}  // namespace KVA_CIFFULL
