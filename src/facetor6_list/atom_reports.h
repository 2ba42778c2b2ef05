// The reports on cells and atoms, as data, with a row for each of some places of the display order.
#pragma once

#include <vector>

#include "src/facetor6_list/report.h"
#include "src/kva_crystal_structures/atom_search.h"

namespace FACETOR_LIST {

// Lengths in angstroms, angles in degrees, volume.
REPORT CELL_REPORT(bool with_esds, const std::vector<int>& places);

// The atom of a block that lies where an atom of the reference block does.
struct MATCHED_ATOM {
  int PLACE = 0;
  KVA_CRYSTAL_STRUCTURES::FOUND_ATOM FOUND;  // its ATOM is 0 when there is none
};
using MATCHED_ATOMS = std::vector<MATCHED_ATOM>;

// For each of some atoms of the reference block the atoms of the blocks at some places. They are
// looked for block by block, as all searches of a block share its images.
std::vector<MATCHED_ATOMS> MATCH_ATOMS(const std::vector<int>& of, const std::vector<int>& places);

// Fractional coordinates and occupancies of the atoms matched with atom i, with what shares their
// sites.
REPORT XYZ_REPORT(int i, bool with_esds, const MATCHED_ATOMS& atoms);

// Their displacement tensors, as they are at the position of atom i.
enum class TENSOR_FORM { U, BETA };
REPORT ADP_REPORT(int i, TENSOR_FORM form, bool with_esds, const MATCHED_ATOMS& atoms);

}  // namespace FACETOR_LIST
