// Bonds of one phase record: the search over all atoms, the classes of atom pairs left out, and
// the measuring of a reference block's bonds in another block.
#pragma once

#include <array>
#include <string_view>
#include <vector>

#include "src/kva_crystal_structures/uncertainty.h"

namespace KVA_CRYSTAL_STRUCTURES {

// Classes of atom pairs that can be excluded; BONDEX(class) is true when it is.
enum BOND_CLASS { EQUIV_SAME_ATOM = 1, SAME_ELEMENT, CATION_CATION, ANION_ANION, BOND_CLASSES = 4 };
using BOND_EXCLUSION = ROW<bool, BOND_CLASSES>;
inline constexpr ROW<std::string_view, BOND_CLASSES> BONDEXLABEL{
    {"equiv same atom", "same element", "cation-cation", "anion-anion"}};

inline constexpr float LONGEST_SHORT_BOND = 3.0f;  // angstroms, upper limit of SHORT_BOND
inline constexpr float SRB_FACTOR = 0.03799544f;   // 3 / (8 pi^2), of the rigid-bond correction

// Bonds of atom i from dmin to dmax angstroms.
void CALC_BONDS_NATOM(CRYSTAL_STRUCTURE_TYPE& phase, int i, float dmin, float dmax);

// Bonds of all atoms in use, without the excluded classes (none given: nothing is excluded), and
// SHORT_BOND. More than MAX_BONDS around an atom sets the warning.
void CALC_BONDS_ALLATOMS(CRYSTAL_STRUCTURE_TYPE& phase, float dmin, float dmax,
                         const BOND_EXCLUSION* bondex = nullptr);
void EXCLUDE_BOND_TYPES(CRYSTAL_STRUCTURE_TYPE& phase, const BOND_EXCLUSION* bondex);
bool EXCLUDEBOND(const CRYSTAL_STRUCTURE_TYPE& phase, int centre, int ligand,
                 const BOND_EXCLUSION& bondex);

// False for He, O, F, Ne, Cl, Ar, Br, Kr, I, Xe, At and Rn, true for every other atomic number.
bool ISCATION(int z);

// Radius in angstroms within which an atom of another block matches one of the reference block.
float MATCHING_RADIUS(const CRYSTAL_STRUCTURE_TYPE& reference);
float MATCHING_RADIUS(float shortest_bond);

// Where a centre of the reference block and its ligands lie there: what is looked for in every
// block. Fractional; in the order of the bonds.
struct TARGET {
  int ATOM = 0;  // atom of the reference block
  VECTOR3 X{};
};
struct BOND_TARGETS {
  TARGET CENTRE;
  std::vector<TARGET> LIGANDS;
};
std::vector<BOND_TARGETS> TARGETS_OF(const CRYSTAL_STRUCTURE_TYPE& reference);

// Measures the reference's bonds in a block, the reference block included, with the block's own
// ruler: NBONDS, BONDS columns 1 to 12 and BOND_CEN. What lies at a target is what FIND_ATOM finds
// there within the radius; a ligand that is found where the centre is, to SAME_SITE, is none.
void MEASURE_BLOCK(const std::vector<BOND_TARGETS>& targets, const RULER& ruler,
                   CRYSTAL_STRUCTURE_TYPE& block, float radius);

}  // namespace KVA_CRYSTAL_STRUCTURES
