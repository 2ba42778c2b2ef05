// Published bond-valence parameters and atomic properties: rows only.
#pragma once

#include <array>
#include <string_view>

namespace XTAL {

inline constexpr int NUMBER_OF_ANIONS = 14;

// Anion labels, the order of the columns of BVS_TABLE.
extern const std::array<std::string_view, NUMBER_OF_ANIONS> BVS_ANIONS;

// Parameters of one cation against each anion, for s = exp((D0 - d) / B).
struct BVS_TABLE_TYPE {
  std::string_view SYMB;                   // element and signed charge, upper case: "AC+3"
  std::array<float, NUMBER_OF_ANIONS> D0;  // angstroms; 0 where none is known
  std::array<float, NUMBER_OF_ANIONS> B;   // softness, angstroms
  std::array<int, NUMBER_OF_ANIONS> REF;   // number of the reference in BVS_REFERENCES
};
extern const std::array<BVS_TABLE_TYPE, 247> BVS_TABLE;

// Where the parameters come from, numbered from 0 ("Unknown"); at most 80 characters.
extern const std::array<std::string_view, 37> BVS_REFERENCES;

// One element and oxidation state.
struct AP_TABLE_TYPE {
  int Z;                  // atomic number
  std::string_view SYMB;  // upper case
  int OXIDATION;          // this state
  int DEFAULT_OXIDATION;  // the state assumed when none is given
  float MASS;             // atomic mass
  float RADIUS;           // covalent radius, angstroms
};
extern const std::array<AP_TABLE_TYPE, 183> AP_TABLE;

}  // namespace XTAL
