// The images of a record's atoms under its symmetry, and which of them lie near a point: what keeps
// the searches of atom_search.h from looking at all images each time where these are many.
#pragma once

#include <vector>

#include "src/kva_crystal_structures/records.h"

namespace KVA_CRYSTAL_STRUCTURES {

// An atom as one operator puts it into the cell.
struct ATOM_IMAGE {
  VECTOR3 X{};  // each coordinate 0 up to 1
  int ATOM = 0;
  int OPERATOR = 0;
};

// The images of all atoms of a record, sorted into boxes: what all searches of one record share.
// They hold until an atom moves or the cell or the group changes; use flags may change.
struct ATOM_IMAGES {
  const CRYSTAL_STRUCTURE_TYPE& PHASE;
  std::vector<ATOM_IMAGE> IMAGES;     // box by box
  std::array<int, 3> BOXES{1, 1, 1};  // along each cell edge
  std::vector<int> BOX_START;         // where each box begins, and behind them the end
};
ATOM_IMAGES IMAGES_OF(const CRYSTAL_STRUCTURE_TYPE& phase);

// Those that have a copy within reach (fractions of the cell edges) of x_frac, by whatever whole
// cells and centring vector, in the order of discovery: by atom, then by operator.
std::vector<const ATOM_IMAGE*> IMAGES_NEAR(const ATOM_IMAGES& images, const VECTOR3& x_frac,
                                           const VECTOR3& reach);

}  // namespace KVA_CRYSTAL_STRUCTURES
