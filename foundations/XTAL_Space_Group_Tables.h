// The tabulated settings, generators and Wyckoff positions: rows only.
#pragma once

#include <array>
#include <string_view>

namespace XTAL {

// One tabulated setting. Limits of the asymmetric unit in 1/24 of the cell edge.
struct SPGR_INFO_TYPE {
  int N;                   // International Tables number
  std::string_view HM;     // Hermann-Mauguin symbol
  std::string_view HALL;   // Hall symbol
  int LAUE;                // index into LAUE_CLASSES, from 1
  int PG;                  // index into POINT_GROUPS, from 1
  std::array<int, 6> ASU;  // xmin, xmax, ymin, ymax, zmin, zmax
};
extern const std::array<SPGR_INFO_TYPE, 612> SPGR_INFO;

extern const std::array<std::string_view, 16> LAUE_CLASSES;
extern const std::array<std::string_view, 32> POINT_GROUPS;

// Generators of the standard setting, operators separated by ";".
struct IT_GEN_TYPE {
  std::string_view HM;
  std::string_view GENERATORS;
};
extern const std::array<IT_GEN_TYPE, 230> IT_GEN;

// Wyckoff positions of a key, general position first. Orbits FIRST to FIRST + COUNT - 1 of
// WYCKOFF_ORBITS, from 0.
struct WYCKOFF_INFO_TYPE {
  std::string_view HM;
  int FIRST;
  int COUNT;
};
extern const std::array<WYCKOFF_INFO_TYPE, 273> WYCKOFF_INFO;

struct WYCKOFF_ORBIT_INFO {
  int MULTIPLICITY;
  std::string_view LETTER;
  std::string_view COORDINATES;
};
extern const std::array<WYCKOFF_ORBIT_INFO, 2042> WYCKOFF_ORBITS;

// Symbols met in files that are no tabulated setting, with their Hall symbols.
struct EXTRA_SYMBOL {
  std::string_view HM;
  int N;
  std::string_view HALL;
};
extern const std::array<EXTRA_SYMBOL, 130> EXTRA_SYMBOLS;

}  // namespace XTAL
