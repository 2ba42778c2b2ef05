// The rule of the neighbour search as plain nested loops: the judge of the search, and the measure
// of its speed.
#pragma once

#include <array>
#include <vector>

#include "src/kva_crystal_structures/records.h"

namespace PLAIN_LOOPS {

using namespace KVA_CRYSTAL_STRUCTURES;

struct NEIGHBOURS {
  int COUNT = 0;
  bool FULL = false;
  std::vector<std::array<float, 6>> ROWS;  // distance, vector, atom, operator
};

inline NEIGHBOURS SEARCH(const CRYSTAL_STRUCTURE_TYPE& phase, const VECTOR3& x, float dmin,
                         float dmax, bool omitted, bool findops) {
  NEIGHBOURS found;
  const int ops = phase.SPG.CENTRED == 1 ? phase.SPG.NUMOPS : 2 * phase.SPG.NUMOPS;
  const VECTOR3 origin = findops ? x : XTAL::MODULO_LAT(x);
  for (int atom = 1; atom <= phase.NATOMS; ++atom) {
    if (phase.ATOM_USE(atom) < (omitted ? 0 : 1)) continue;
    for (int op = 1; op <= ops; ++op) {
      const VECTOR3 image =
          XTAL::MODULO_LAT(XTAL::APPLY_OP(phase.SPG.SYMOP(op), phase.ATOM(atom).X));
      for (int t1 = -1; t1 <= 1; ++t1)
        for (int t2 = -1; t2 <= 1; ++t2)
          for (int t3 = -1; t3 <= 1; ++t3)
            for (int c = 1; c <= phase.SPG.NUMLAT; ++c) {
              const VECTOR3 t{static_cast<float>(t1), static_cast<float>(t2),
                              static_cast<float>(t3)};
              const VECTOR3 candidate = XTAL::ADD(XTAL::ADD(image, t), phase.SPG.LATT_TRANS(c));
              const VECTOR3 delta = XTAL::SUBTRACT(candidate, origin);
              const float d = XTAL::LENGTH(XTAL::MULTIPLY(phase.CELL.CR_ORTH_CEL, delta));
              if (d > dmax || d < dmin) continue;
              bool listed = false;
              for (const auto& row : found.ROWS) {
                const VECTOR3 apart = XTAL::MULTIPLY(
                    phase.CELL.CR_ORTH_CEL, XTAL::SUBTRACT(delta, {row[1], row[2], row[3]}));
                listed = listed || XTAL::DOT(apart, apart) < 0.01f;
              }
              if (listed && !findops) continue;
              if (found.COUNT == 20) {
                found.FULL = true;
                return found;
              }
              ++found.COUNT;
              found.ROWS.push_back({d, delta[0], delta[1], delta[2], static_cast<float>(atom),
                                    static_cast<float>(op)});
            }
    }
  }
  return found;
}

}  // namespace PLAIN_LOOPS
