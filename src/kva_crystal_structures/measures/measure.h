// Measures: expressions followed through the blocks, with esds by full propagation. The derivative
// of each quantity by every independent parameter is a central difference in 64-bit reals; what two
// quantities share, in one expression too, makes them correlated.
#pragma once

#include <cstdint>  // for int64_t
#include <optional>
#include <string>
#include <vector>

#include "src/kva_crystal_structures/atom_search.h"
#include "src/kva_crystal_structures/matching.h"
#include "src/kva_crystal_structures/measures/call_atoms.h"
#include "src/kva_crystal_structures/measures/free_parameters.h"
#include "src/kva_crystal_structures/valence.h"

namespace KVA_CRYSTAL_STRUCTURES {

struct MEASURE {
  std::string NAME;  // as typed
  int NUMBER = 0;    // of the definition, never given twice
  EXPRESSION FORMULA;
  BOUND_ATOMS BOUND;    // to the reference block
  std::string PROBLEM;  // why it does not fit the reference block; blank when it does
};

// ---- one block ----

// A block as measures see it. It holds as its images do.
struct MEASURED_BLOCK {
  const CRYSTAL_STRUCTURE_TYPE& PHASE;
  int NUMBER = 0;
  ATOM_IMAGES IMAGES;
  WIDE6 CELL{};
  WIDE33 FRAME{};
  std::vector<FREE_PARAMETER> CELL_PARAMETERS;  // those with an esd
  std::vector<WIDE33> FRAMES_UP;                // frames of the cell with each a step larger
  std::vector<WIDE33> FRAMES_DOWN;              // and smaller
  std::vector<std::optional<std::vector<FREE_PARAMETER>>> SITES;  // by atom, made when asked for
};
MEASURED_BLOCK MEASURED_BLOCK_OF(const CRYSTAL_STRUCTURE_TYPE& phase, int number);

// What the measuring of all blocks shares.
struct MEASURE_SETTINGS {
  const CRYSTAL_STRUCTURE_TYPE& REFERENCE;
  float RADIUS = 0.0f;         // angstroms, within which atoms match
  const LIST<BV_PAIR>& PAIRS;  // of the valences
  bool VALENCES = false;       // valences have been calculated
};

// ---- values ----

// Contribution of one parameter: derivative times the parameter's esd.
struct ESD_TERM {
  std::int64_t PARAMETER = 0;
  double SHARE = 0.0;
};
double VARIANCE_OF(const std::vector<ESD_TERM>& terms);

// A value with its dependence on the parameters. A value that there is not is not finite.
struct MEASURED {
  double VALUE = 0.0;
  std::vector<ESD_TERM> TERMS;  // each parameter once
  double INDEPENDENT = 0.0;     // variance if the quantities in it were independent
};

// Value and esd for a report.
struct MEASURED_VALUE {
  bool FOUND = false;
  float VALUE = 0.0f;
  float ESD = 0.0f;  // 0: none
};
MEASURED_VALUE AS_VALUE(const MEASURED& measured);

// All measures in the reference block, in the order of the list, and what stands inside ref(...).
struct MEASURED_REFERENCE {
  std::vector<std::size_t> ORDER;  // see ORDER_OF_USE
  std::vector<MEASURED> VALUES;
  std::vector<std::vector<MEASURED>> CALLS;  // of each measure, by call
};
MEASURED_REFERENCE MEASURE_REFERENCE(const std::vector<MEASURE>& measures,
                                     const MEASURE_SETTINGS& settings, MEASURED_BLOCK& reference);

// All measures in a block.
std::vector<MEASURED> MEASURE_IN_BLOCK(const std::vector<MEASURE>& measures,
                                       const MEASURE_SETTINGS& settings,
                                       const MEASURED_REFERENCE& in_reference,
                                       MEASURED_BLOCK& block);

// What of the measures is matched in other blocks: the atoms of their calls, and the polyhedra.
MATCH_BASIS MATCH_BASIS_OF(const std::vector<MEASURE>& measures,
                           const CRYSTAL_STRUCTURE_TYPE& reference, float radius);

// Places in the list in an order in which every measure stands behind those that it uses. Measures
// that use themselves are left out.
std::vector<std::size_t> ORDER_OF_USE(const std::vector<MEASURE>& measures);

// Place of the measure with the name, ignoring case; the size of the list when there is none.
std::size_t FIND_MEASURE(const std::vector<MEASURE>& measures, std::string_view name);

// Shortest distance between two sites of a record, as SHORT_BOND has it of the bonds.
float SHORTEST_DISTANCE(const CRYSTAL_STRUCTURE_TYPE& phase);

}  // namespace KVA_CRYSTAL_STRUCTURES
