// The rule of the neighbour search as plain nested loops: the judge of the search, and the measure
// of its speed.
#pragma once

#include <algorithm>  // for max, min
#include <array>
#include <cmath>    // for floor
#include <cstdlib>  // for abs
#include <vector>

#include "src/kva_crystal_structures/records.h"

namespace PLAIN_LOOPS {

using namespace KVA_CRYSTAL_STRUCTURES;

struct NEIGHBOURS {
  int COUNT = 0;
  bool FULL = false;
  std::vector<std::array<float, 6>> ROWS;  // distance, vector, atom, operator
};

// What is asked of a search.
struct QUESTION {
  VECTOR3 ORIGIN{};
  float DMIN = 0.0f;
  float DMAX = 0.0f;
  bool OMITTED = false;
  bool FINDOPS = false;
};

// Which offsets of whole cells a pass tries: those next to the cell of the atoms, or the others as
// far as dmax may reach from the origin.
enum class PASS { NEXT, FURTHER };

// First and last offset along an axis. Nothing within dmax lies more lattice planes away than this.
inline std::array<int, 2> OFFSETS(const CRYSTAL_STRUCTURE_TYPE& phase, const QUESTION& asked,
                                  PASS pass, std::size_t k) {
  if (pass == PASS::NEXT) return {-1, 1};
  const float planes = std::clamp(asked.DMAX * phase.CELL.RCELL[k], 0.0f, 20.0f) + 3.0f;
  const float around = std::floor(std::min(std::max(asked.ORIGIN[k], -1000.0f), 1000.0f));
  return {std::max(static_cast<int>(around - planes), -20),
          std::min(static_cast<int>(around + planes), 20)};
}

// One pass; false when the table is full.
inline bool ADD_PASS(const CRYSTAL_STRUCTURE_TYPE& phase, const QUESTION& asked, PASS pass,
                     NEIGHBOURS& found) {
  const int ops = phase.SPG.CENTRED == 1 ? phase.SPG.NUMOPS : 2 * phase.SPG.NUMOPS;
  const auto [first1, last1] = OFFSETS(phase, asked, pass, 0);
  const auto [first2, last2] = OFFSETS(phase, asked, pass, 1);
  const auto [first3, last3] = OFFSETS(phase, asked, pass, 2);
  for (int atom = 1; atom <= phase.NATOMS; ++atom) {
    if (phase.ATOM_USE(atom) < (asked.OMITTED ? 0 : 1)) continue;
    for (int op = 1; op <= ops; ++op) {
      const VECTOR3 image =
          XTAL::MODULO_LAT(XTAL::APPLY_OP(phase.SPG.SYMOP(op), phase.ATOM(atom).X));
      for (int t1 = first1; t1 <= last1; ++t1)
        for (int t2 = first2; t2 <= last2; ++t2)
          for (int t3 = first3; t3 <= last3; ++t3) {
            if (pass == PASS::FURTHER && std::abs(t1) < 2 && std::abs(t2) < 2 && std::abs(t3) < 2)
              continue;
            for (int c = 1; c <= phase.SPG.NUMLAT; ++c) {
              const VECTOR3 t{static_cast<float>(t1), static_cast<float>(t2),
                              static_cast<float>(t3)};
              const VECTOR3 candidate = XTAL::ADD(XTAL::ADD(image, t), phase.SPG.LATT_TRANS(c));
              const VECTOR3 delta = XTAL::SUBTRACT(candidate, asked.ORIGIN);
              const float d = XTAL::LENGTH(XTAL::MULTIPLY(phase.CELL.CR_ORTH_CEL, delta));
              if (d > asked.DMAX || d < asked.DMIN) continue;
              bool listed = false;
              for (const auto& row : found.ROWS) {
                const VECTOR3 apart = XTAL::MULTIPLY(
                    phase.CELL.CR_ORTH_CEL, XTAL::SUBTRACT(delta, {row[1], row[2], row[3]}));
                listed = listed || XTAL::DOT(apart, apart) < 0.01f;
              }
              if (listed && !asked.FINDOPS) continue;
              if (found.COUNT == 20) {
                found.FULL = true;
                return false;
              }
              ++found.COUNT;
              found.ROWS.push_back({d, delta[0], delta[1], delta[2], static_cast<float>(atom),
                                    static_cast<float>(op)});
            }
          }
    }
  }
  return true;
}

// The pass over the next cells first, so that what it finds stands before all others.
inline NEIGHBOURS SEARCH(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x, float dmin,
                         float dmax, bool omitted, bool findops) {
  const QUESTION asked{findops ? x : XTAL::MODULO_LAT(x), dmin, dmax, omitted, findops};
  NEIGHBOURS found;
  if (ADD_PASS(phase, asked, PASS::NEXT, found)) ADD_PASS(phase, asked, PASS::FURTHER, found);
  return found;
}

}  // namespace PLAIN_LOOPS
