// Bond valences by the exponential law, weighted by occupancy, and their sums.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "src/kva_crystal_structures/records.h"

namespace KVA_CRYSTAL_STRUCTURES {

// One cation-anion pair and its parameters.
struct BV_PAIR {
  std::string CATION;  // "SI+4", 4 characters
  std::string ANION;   // "O-2", 4 characters
  float B = 0.0f;      // softness, angstroms
  float D0 = 0.0f;     // bond-valence parameter, angstroms
  std::string SOURCE;  // where the parameters come from, 128 characters
};

inline constexpr int NUMBER_OF_ELEMENTS = 92;  // elements with a default charge

// Whether the scattering factor symbol is too short to have a charge; "O-2" is not.
bool WITHOUT_CHARGE(const ATOM_TYPE& atom);

// Whether the element has a default charge.
bool HAS_DEFAULT_CHARGE(const ATOM_TYPE& atom);

// The label by which the atom stands in pairs: its scattering factor symbol. XTAL::NO_ELEMENT,
// which stands in no pair, for one without a charge that can be given none.
std::string VALENCE_LABEL(const ATOM_TYPE& atom);

// Row of the pair whose labels begin with the two given, ignoring case; 0 when there is none.
int FIND_BVLOCAL(std::string_view label_1, std::string_view label_2, const LIST<BV_PAIR>& pairs);

// How the valence of one bond depends on its length: exponentials weighted by occupancies.
struct VALENCE_LAW {
  struct TERM {
    float D0 = 0.0f;  // angstroms
    float B = 0.0f;   // angstroms
    float OCC = 0.0f;
  };
  std::array<TERM, 1 + MAX_DUPLICATES> TERMS{};
  int COUNT = 0;
  float COMMON_OCC = 0.0f;  // of the site with one species
};

// Law of bond m of centre i; without terms when there are no parameters, or when both sites hold
// several species.
VALENCE_LAW VALENCE_LAW_OF(const CRYSTAL_STRUCTURE_TYPE& phase, int i, int m,
                           const LIST<BV_PAIR>& pairs);

// The valence in 64-bit reals.
double VALENCE_BY_LAW(const VALENCE_LAW& law, double length);

// Fills BONDS columns 13 and 14 and POLYHEDRON columns 21 and 22. An empty table does nothing.
void CALC_VALENCE_ALLBONDS(CRYSTAL_STRUCTURE_TYPE& phase, const LIST<BV_PAIR>& pairs);

}  // namespace KVA_CRYSTAL_STRUCTURES
