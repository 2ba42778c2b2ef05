// The atoms of a CIF block: three loops into atom records. Prints nothing; errors go through the
// scanner's error state.
#pragma once

#include <string>
#include <string_view>

#include "cifcode/cif_code_new/scanner.h"
#include "src/kva_crystal_structures/records.h"

namespace KVA_CIFNEW {

// Replaces atom by the atoms in lines start to end. An absent loop leaves natoms 0 and ERR_KVACIF.
void READ_CIF_ATOMARRAY(const FILE_LINES& flines, int start, int end,
                        LIST<KVA_CRYSTAL_STRUCTURES::ATOM_TYPE>& atom, int& natoms);

// A scattering-type text in the form element, sign, number: Fe2+ is "Fe+2", Na+ is "Na+1".
std::string SCAT_FORMAT(std::string_view sin);

}  // namespace KVA_CIFNEW
