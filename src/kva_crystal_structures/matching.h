// What is doubtful about the atoms of a block that a reference block's centres and ligands were
// matched with.
#pragma once

#include "src/kva_crystal_structures/bonds.h"

namespace KVA_CRYSTAL_STRUCTURES {

// What the matching of all blocks shares. It holds until the reference block changes.
struct MATCH_BASIS {
  ATOM_IMAGES REFERENCE_IMAGES;
  std::vector<BOND_TARGETS> TARGETS;
  std::vector<TARGET> ATOMS;  // matched by themselves, whatever CALC has found around them
  float RADIUS = 0.0f;        // angstroms
};
MATCH_BASIS MATCH_BASIS_OF(const CRYSTAL_STRUCTURE_TYPE& reference);

// Sites of the reference block that are matched doubtfully, and how many there are; each counts
// once. Atom numbers are 0 when there are none.
struct MATCH_FAULTS {
  int OTHER_ELEMENT = 0;        // sites that met another element
  int FIRST_OTHER_ELEMENT = 0;  // the first of them, atom of the reference block
  int MET_THERE = 0;            // and what it met first, atom of the block
  int SHARING = 0;              // sites that share their place with another site
  int FIRST_SHARING = 0;
  bool OTHER_GROUP = false;  // the operators of the space groups differ as sets
};

// Looks through what MEASURE_BLOCK has filled in, and matches the atoms that stand alone. Another
// element: the elements of both sites, those of all atoms that share them, are known and none is
// common (deuterium is hydrogen), and either a cation met an anion or the reference's element
// stands on another site of the block; one cation in the place of another is a solid solution.
// Sharing: two sites, or two ligands of one centre, were found less than SAME_SITE apart.
MATCH_FAULTS MATCH_FAULTS_OF(const MATCH_BASIS& basis, const ATOM_IMAGES& block_images);

// Whether two groups have the same operators, in whatever order.
bool SAME_OPERATORS(const XTAL::SPACE_GROUP& group1, const XTAL::SPACE_GROUP& group2);

}  // namespace KVA_CRYSTAL_STRUCTURES
