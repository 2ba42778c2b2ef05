// Small structures for the tests of the model.
#pragma once

#include <string>
#include <vector>

#include "foundations/XTAL_Scattering_Chemical_Tables.h"
#include "src/kva_crystal_structures/atom_search.h"
#include "src/kva_crystal_structures/records.h"

namespace STRUCTURES {

using namespace KVA_CRYSTAL_STRUCTURES;

struct SITE {
  std::string LABEL;
  VECTOR3 X{};
  VECTOR3 X_STD{};
};

// A record with the cell, group and atoms; occupancies 1, all atoms in use.
inline CRYSTAL_STRUCTURE_TYPE MADE(const VECTOR3& lengths, const VECTOR3& angles,
                                   const std::string& symbol, const std::vector<SITE>& sites,
                                   const VECTOR3& length_esds = {},
                                   const VECTOR3& angle_esds = {}) {
  CRYSTAL_STRUCTURE_TYPE phase;
  INIT_CRYSTAL_STRUCTURE_TYPE(phase);
  phase.BLOCK_TITLE = "test block";
  XTAL::SET_CELL_RECORD(lengths, angles, phase.CELL, " ", length_esds, angle_esds);
  XTAL::SET_SPACEGROUP(symbol, phase.SPG);
  EXPAND_NATOMS(phase, static_cast<int>(sites.size()));
  phase.NATOMS = static_cast<int>(sites.size());
  for (int i = 1; i <= phase.NATOMS; ++i) {
    const SITE& site = sites[static_cast<std::size_t>(i - 1)];
    ATOM_TYPE& atom = phase.ATOM(i);
    atom.LAB = site.LABEL;
    atom.X = site.X;
    atom.X_STD = site.X_STD;
    atom.OCC = 1.0f;
    XTAL::GET_CHEMSYMB(site.LABEL, atom.CHEMSYMB, atom.Z);
    atom.SFACSYMB = atom.CHEMSYMB;
  }
  CLEAN_CRYSTAL_STRUCTURE_TYPE(phase);
  SET_ALLATOM_MULTIP(phase);
  return phase;
}

}  // namespace STRUCTURES
