// Structures drawn by lot, in any space group.
#pragma once

#include <random>

#include "console_code/kva_utilities/text.h"
#include "structures.h"

namespace RANDOM_STRUCTURES {

using namespace STRUCTURES;

inline constexpr int largest_group_number = 230;

// What is drawn by lot, the same in every run and with every library.
struct LOTS {
  std::mt19937 RANDOM;

  int BELOW(int n) { return static_cast<int>(RANDOM() % static_cast<unsigned>(n)); }
  float UNIT() { return static_cast<float>(RANDOM() >> 8) / 16777216.0f; }
  float BETWEEN(float low, float high) { return low + (high - low) * UNIT(); }
  template <std::size_t N>
  float ONE_OF(const std::array<float, N>& values) {
    return values[static_cast<std::size_t>(BELOW(static_cast<int>(N)))];
  }
};

struct CELL {
  VECTOR3 LENGTHS{};
  VECTOR3 ANGLES{90.0f, 90.0f, 90.0f};
};

inline bool SYSTEM_IS(const XTAL::SPACE_GROUP& group, XTAL::SYSTEM system) {
  return group.CRYSTALSYS.NAME == system;
}

// A cell that the group allows, from much smaller to much larger than the usual radii. Some have a
// few atoms in a space as large as a protein's.
inline CELL RANDOM_CELL(const XTAL::SPACE_GROUP& group, LOTS& lots) {
  CELL cell;
  const float scale = lots.BELOW(6) == 0 ? 15.0f : 1.0f;
  for (float& length : cell.LENGTHS) length = scale * lots.BETWEEN(1.2f, 16.0f);
  if (SYSTEM_IS(group, XTAL::SYSTEM::TRICLINIC))
    for (float& angle : cell.ANGLES) angle = lots.BETWEEN(65.0f, 115.0f);
  if (SYSTEM_IS(group, XTAL::SYSTEM::MONOCLINIC)) cell.ANGLES[1] = lots.BETWEEN(80.0f, 130.0f);
  if (SYSTEM_IS(group, XTAL::SYSTEM::TRIGONAL) || SYSTEM_IS(group, XTAL::SYSTEM::HEXAGONAL))
    cell.ANGLES[2] = 120.0f;
  const bool cubic = SYSTEM_IS(group, XTAL::SYSTEM::CUBIC);
  if (cubic || !(cell.ANGLES[2] < 120.0f) || SYSTEM_IS(group, XTAL::SYSTEM::TETRAGONAL))
    cell.LENGTHS[1] = cell.LENGTHS[0];
  if (cubic) cell.LENGTHS[2] = cell.LENGTHS[0];
  return cell;
}

// A coordinate on a symmetry element, on the border of the cell or close to either, or anywhere.
inline float RANDOM_COORDINATE(LOTS& lots) {
  constexpr std::array<float, 10> special{0.0f, 0.125f,     0.25f, 0.33333f,  0.375f,
                                          0.5f, 0.6666667f, 0.75f, 0.999999f, 0.99999994f};
  constexpr std::array<float, 4> off{0.0f, 0.0f, 1e-6f, -2e-4f};
  return lots.BELOW(2) == 0 ? lots.ONE_OF(special) + lots.ONE_OF(off) : lots.UNIT();
}

inline VECTOR3 RANDOM_POSITION(LOTS& lots) {
  return {RANDOM_COORDINATE(lots), RANDOM_COORDINATE(lots), RANDOM_COORDINATE(lots)};
}

inline CRYSTAL_STRUCTURE_TYPE RANDOM_STRUCTURE(int number, LOTS& lots) {
  constexpr int most_atoms = 5;
  const std::string symbol = std::to_string(number);
  XTAL::SPACE_GROUP group;
  XTAL::SET_SPACEGROUP(symbol, group);
  const CELL cell = RANDOM_CELL(group, lots);
  std::vector<SITE> sites;
  const int atoms = 1 + lots.BELOW(most_atoms);
  for (int i = 0; i < atoms; ++i)
    sites.push_back({"O" + std::to_string(i), RANDOM_POSITION(lots), {0.001f, 0.002f, 0.003f}});
  if (lots.BELOW(3) == 0) sites.push_back({"Si", sites[0].X});  // a mixed site
  CRYSTAL_STRUCTURE_TYPE phase =
      MADE(cell.LENGTHS, cell.ANGLES, symbol, sites, {0.01f, 0.02f, 0.03f});
  if (atoms > 1 && lots.BELOW(3) == 0) phase.ATOM_USE(2) = ATOM_OMITTED;
  return phase;
}

}  // namespace RANDOM_STRUCTURES
